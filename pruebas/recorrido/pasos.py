"""Lo común a todo lo que maneja el programa desde afuera: pasos numerados, lanzador y apps."""

import argparse
import sys
import tempfile
import time
import unicodedata
from contextlib import contextmanager
from pathlib import Path

import manos
from accesible import Programa
from escuela import Escuela
from espera import esperar
from pantalla import Pantalla

CERRAR_VENTANA = "alt+F4"
TABULADORES = 20


def sin_acentos(texto):
    """Para nombres de archivo que se puedan empaquetar en cualquier parte."""
    return unicodedata.normalize("NFD", texto).encode("ascii", "ignore").decode()


class Pasos:
    """Una serie de pasos sobre una escuela; cada uno deja su imagen, también si falla."""

    def __init__(self, escuela, capturas):
        self.escuela = escuela
        self.capturas = Path(capturas)
        self.proceso = None
        self._numero = 0

    @contextmanager
    def paso(self, nombre):
        self._numero += 1
        archivo = f"{self._numero:02}-{sin_acentos(nombre).replace(' ', '-')}.png"
        empezo = time.monotonic()
        try:
            yield
        except BaseException:
            Pantalla.fotografiar(self.capturas / f"fallo-{archivo}")
            print(f"{self._numero:02} {nombre}: MAL", file=sys.stderr)
            print(self.describir(), file=sys.stderr)
            raise
        Pantalla.fotografiar(self.capturas / archivo)
        print(f"{self._numero:02} {nombre}: bien ({time.monotonic() - empezo:.1f} s)", flush=True)

    def describir(self):
        """Lo que conviene leer cuando un paso falla."""
        return ""

    def comprobar_app(self, app, *argumentos):
        """Que se arrancó esa app, una vez, con esos argumentos; la devuelve."""
        abierta = self.escuela.esperar_app(app)
        esperado = [str(self.escuela.ejecutable(app)), *argumentos]
        assert abierta.argumentos == esperado, f"{abierta.argumentos} != {esperado}"
        return abierta


class Recorrido(Pasos):
    """Los pasos de quien ve la ventana como la cuenta un lector de pantalla."""

    con_red = True
    lanzador = None

    def describir(self):
        return self.lanzador.describir()

    def abrir_lanzador(self):
        self.proceso = self.escuela.abrir_lanzador()
        self.lanzador = Programa(self.proceso.pid)

    def cerrar_lanzador(self):
        manos.pulsar(CERRAR_VENTANA)
        assert self.proceso.wait(10) == 0, "el lanzador no terminó bien"

    def cerrar_app(self, app):
        """Cierra su ventana con el teclado; el lanzador vuelve adelante."""
        manos.pulsar(CERRAR_VENTANA)
        esperar(f"{app} cerrada", lambda: not self.escuela.apps_abiertas(app))
        esperar("el lanzador adelante",
                lambda: "active" in self.lanzador.buscar("frame", "Quillay").estados)

    def tabular_hasta(self, rol, nombre=None):
        """Pulsa Tab hasta que ese control tenga el teclado."""
        for _ in range(TABULADORES):
            actual = esperar("algún control con el teclado", self.lanzador.enfocado)
            if actual.rol == rol and nombre in (None, actual.nombre):
                return actual
            manos.pulsar("Tab")
            esperar("que el teclado pase a otro control",
                    lambda antes=actual: self.lanzador.enfocado() not in (None, antes))
        raise AssertionError(f"Tab no llega a {rol} «{nombre}»")

    def elegir_pestana(self, nombre):
        """Con el teclado: Tab hasta las pestañas y flecha derecha hasta la que se busca."""
        self.tabular_hasta("page tab")
        while True:
            actual = self.lanzador.esperar_foco("page tab").nombre
            if actual == nombre:
                return
            manos.pulsar("Right")
            esperar(f"la pestaña que sigue a {actual}",
                    lambda antes=actual: self.lanzador.hay("page tab") and
                    self.lanzador.enfocado().nombre != antes)

    def nombres_de_la_lista(self):
        return [control.nombre for control in self.lanzador.todos("list item")]

    def esperar_primero(self, comienzo):
        """Espera a que el primero de la lista a la vista empiece con ese texto."""
        esperar(f"«{comienzo}» primero en la lista",
                lambda: (self.nombres_de_la_lista() or [""])[0].startswith(comienzo))


def correr(recorridos, descripcion):
    """Lee las opciones del programa y hace el recorrido que piden, en su propia pantalla."""
    opciones = leer_opciones(recorridos, descripcion)
    opciones.capturas.mkdir(parents=True, exist_ok=True)
    for vieja in opciones.capturas.glob("*.png"):
        vieja.unlink()
    recorrido = recorridos[opciones.recorrido]
    with tempfile.TemporaryDirectory(prefix="escuela-") as temporal, Pantalla():
        carpeta = opciones.escuela or Path(temporal)
        with Escuela(opciones.compilacion, carpeta, recorrido.con_red) as escuela:
            recorrido(escuela, opciones.capturas).correr()


def leer_opciones(recorridos, descripcion):
    opciones = argparse.ArgumentParser(description=descripcion)
    opciones.add_argument("recorrido", choices=recorridos)
    opciones.add_argument("--compilacion", type=Path, required=True,
                          help="carpeta donde se compiló el proyecto")
    opciones.add_argument("--capturas", type=Path, required=True,
                          help="carpeta para las imágenes")
    opciones.add_argument("--escuela", type=Path,
                          help="carpeta de la escuela; si falta, una que después se borra")
    return opciones.parse_args()
