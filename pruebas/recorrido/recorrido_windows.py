#!/usr/bin/python3 -B
"""Recorre el programa de Windows con el teclado, en una computadora virtual de wine.

Ahí no hay un lector de pantalla que cuente lo que se ve: se comprueban las ventanas, los procesos y
lo que queda escrito, y cada paso deja su imagen.
"""

import argparse
import subprocess
import tempfile
from datetime import datetime
from pathlib import Path

import manos
from computadora_windows import EscuelaConWindows
from espera import esperar
from pantalla import Pantalla
from pasos import CERRAR_VENTANA, Pasos

PROYECTO = "La cabaña encantada"
# La mitad de abajo de la ventana, donde no titila ningún cursor.
ABAJO = "900x370+190+310"


def esperar_adelante(titulo):
    """Espera a que esa ventana sea la que recibe las teclas."""
    esperar(f"«{titulo}» adelante", lambda: subprocess.run(
        ["xdotool", "getactivewindow", "getwindowname"], capture_output=True, text=True,
        check=False).stdout.strip() == titulo)


def esperar_otra_imagen(antes):
    esperar("que cambie lo que se ve", lambda: Pantalla.foto(ABAJO) != antes)


class EnWindows(Pasos):
    """Se actualizan dos componentes, dos integrantes trabajan con una app, y después un perfil."""

    def correr(self):
        manos.apartar_el_mouse()
        self.actualizar()
        self.entrar()
        self.trabajar()
        self.reabrir()
        self.salir()

    def abrir(self, titulo="Quillay"):
        self.proceso = self.escuela.abrir_lanzador()
        esperar_adelante(titulo)

    def cerrar(self):
        manos.pulsar(CERRAR_VENTANA)
        assert self.proceso.wait(20) == 0, "el lanzador no terminó bien"

    def actualizar(self):
        carpeta = self.escuela.lanzador
        viejo = carpeta / "quillay.exe.viejo"
        with self.paso("oferta de versiones nuevas"):
            self.abrir("Hay una versión nueva de Quillay")
        with self.paso("componentes actualizados"):
            manos.pulsar("Return")
            esperar("las versiones nuevas anotadas", lambda: {
                quien for quien, version in self.escuela.versiones().items()
                if version == "1.1.0"} == {"garza", "launcher"})
            assert viejo.is_file(), "el ejecutable en uso no quedó a un lado"
            assert (carpeta / "quillay.exe").is_file() and (carpeta / "novedades.txt").is_file()
            assert (carpeta / "Garza/version.txt").read_text().strip() == "1.1.0"
        with self.paso("lo nuevo abierto"):
            self.cerrar()
            self.abrir()
            esperar("los restos borrados", lambda: not list(carpeta.rglob("*.viejo")))

    def entrar(self):
        with self.paso("ingreso"):
            perfiles = Pantalla.foto(ABAJO)
            esperar_otra_imagen(perfiles)
        with self.paso("primera integrante"):
            self.identificarse("ana", "luna123")
            assert self.escuela.sesion() is None
        with self.paso("segundo integrante"):
            self.identificarse("inaki", "nube321")
        with self.paso("inicio"):
            ingreso = Pantalla.foto(ABAJO)
            manos.pulsar("shift+Tab", "space")
            sesion = esperar("la sesión", self.escuela.sesion)
            esperar_otra_imagen(ingreso)
            assert [p["nombre"] for p in sesion["integrantes"]] == ["Ana", "Iñaki"], sesion
            assert sesion["modo"] == "aulared" and sesion["token"], sesion

    @staticmethod
    def identificarse(usuario, clave):
        antes = Pantalla.foto(ABAJO)
        manos.escribir(usuario)
        manos.pulsar("Tab")
        manos.escribir(clave)
        manos.pulsar("Return")
        esperar_otra_imagen(antes)

    def trabajar(self):
        with self.paso("app abierta con su botón"):
            manos.pulsar("space")
            self.comprobar_app("Ceibo")
            esperar_adelante("Ceibo")
        with self.paso("proyecto guardado"):
            empezo = datetime.now().replace(microsecond=0)
            manos.escribir(PROYECTO)
            manos.pulsar("Return")
            esperar_adelante(f"{PROYECTO} — Ceibo")
            assert (self.escuela.documentos / f"Ceibo/{PROYECTO}/proyecto.json").is_file()
            for persona in ("ana", "inaki"):
                entrada = self.escuela.recientes(persona)[0]
                assert entrada["ruta"].endswith(f"Documents/Ceibo/{PROYECTO}"), entrada
            actividad = datetime.fromisoformat(self.escuela.sesion()["ultima_actividad"])
            assert actividad >= empezo, self.escuela.sesion()
        self.cerrar_app("Ceibo")

    def reabrir(self):
        with self.paso("proyecto entre los recientes"):
            manos.pulsar(*["Tab"] * 6)
        with self.paso("proyecto abierto con Enter"):
            manos.pulsar("Home", "Return")
            self.comprobar_app("Ceibo", "--proyecto", PROYECTO)
            esperar_adelante(f"{PROYECTO} — Ceibo")
        self.cerrar_app("Ceibo")
        with self.paso("pestaña de Garza"):
            manos.pulsar("shift+Tab", "Right", "Right")
        with self.paso("la Garza nueva"):
            manos.pulsar("Tab", "Home", "Return")
            self.comprobar_app("Garza", "--proyecto", "Mural del patio")
            esperar_adelante("Mural del patio — Garza")
        self.cerrar_app("Garza")

    def cerrar_app(self, app):
        manos.pulsar(CERRAR_VENTANA)
        esperar(f"{app} cerrada", lambda: not self.escuela.apps_abiertas(app))
        esperar_adelante("Quillay")

    def salir(self):
        with self.paso("perfil nuevo"):
            manos.pulsar(*["shift+Tab"] * 7, "space")
            esperar("la sesión borrada", lambda: not self.escuela.archivo_sesion.exists())
            manos.pulsar("Tab", "space")
            esperar_adelante("Nuevo perfil")
            manos.escribir("Begoña")
        with self.paso("inicio sin conexión"):
            manos.pulsar("Return")
            sesion = esperar("la sesión", self.escuela.sesion)
            assert sesion["modo"] == "standalone" and sesion["grupo"] == "Begoña", sesion
            assert self.escuela.perfiles()[-1]["nombre"] == "Begoña"
        self.cerrar()


def main():
    opciones = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    opciones.add_argument("--compilacion", type=Path, required=True,
                          help="carpeta donde se compiló para Windows")
    opciones.add_argument("--portatil", type=Path, required=True, help="carpeta portátil")
    opciones.add_argument("--powershell", type=Path, required=True,
                          help="programa que hace de PowerShell")
    opciones.add_argument("--capturas", type=Path, required=True,
                          help="carpeta para las imágenes")
    pedido = opciones.parse_args()
    pedido.capturas.mkdir(parents=True, exist_ok=True)
    for vieja in pedido.capturas.glob("*.png"):
        vieja.unlink()
    with tempfile.TemporaryDirectory(prefix="escuela-") as carpeta, Pantalla():
        escuela = EscuelaConWindows(pedido.compilacion, Path(carpeta) / "escuela", True,
                                    pedido.portatil, pedido.powershell.resolve())
        with escuela:
            EnWindows(escuela, pedido.capturas).correr()


if __name__ == "__main__":
    main()
