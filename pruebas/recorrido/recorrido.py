#!/usr/bin/python3 -B
"""Recorre el programa entero como lo usa un alumno: con el teclado, el mouse y lo que se ve.

Comprueba lo que queda escrito en los archivos y lo que se arrancó, y deja una imagen por paso.
"""

import shutil
from datetime import datetime

import manos
from accesible import Programa
from espera import esperar
from pasos import Recorrido, correr

# Con un signo que no va en el nombre de una carpeta: así se ve de dónde sale el que se muestra.
NOMBRE = "Mi barrio: el sur"
CARPETA = "Mi barrio_ el sur"
A_LA_VISTA = {"Ceibo": NOMBRE, "Garza": NOMBRE, "Hornero": CARPETA, "Zorzal": NOMBRE,
              "Benteveo": NOMBRE}


OFERTA = """Hay versiones nuevas para bajar:

Garza: de la 1.0.0 a la 1.1.0
Quillay: de la 1.0.0 a la 1.1.0

Se bajan solo las partes que cambiaron. Si ahora no es buen momento, te lo volvemos a ofrecer la \
próxima vez que abras Quillay."""


class ConRed(Recorrido):
    """En línea: se actualizan dos componentes; después dos integrantes entran, trabajan con una
    app y cierran la sesión."""

    def correr(self):
        self.actualizar()
        self.entrar()
        self.trabajar()
        self.reabrir()
        self.salir()

    def actualizar(self):
        with self.paso("oferta de versiones nuevas"):
            self.abrir_lanzador()
            self.lanzador.buscar("label", OFERTA)
            self.lanzador.esperar_foco("push button", "Actualizar ahora")
        with self.paso("componentes actualizados"):
            manos.pulsar("Return")
            self.lanzador.buscar("status bar", "launcher actualizado a 1.1.0")
            versiones = self.escuela.versiones()
            nuevos = sorted(quien for quien, version in versiones.items() if version == "1.1.0")
            assert nuevos == ["garza", "launcher"], versiones
            assert (self.escuela.lanzador / "novedades.txt").is_file(), "falta lo nuevo"
        # Lo que deja un archivo en uso; en Debian no hace falta apartarlo y no queda solo.
        resto = self.escuela.lanzador / "Garza/garza.exe.viejo"
        resto.write_text("de antes")
        self.cerrar_lanzador()
        self.abrir_lanzador()
        esperar("el resto borrado", lambda: not resto.exists())

    def entrar(self):
        with self.paso("perfiles mientras pregunta"):
            self.lanzador.buscar("label", "¿Quién va a trabajar?")
            self.lanzador.buscar("list item", "Tomás")
            assert not self.lanzador.hay("label", "Iniciar sesión — Aulared")
        with self.paso("ingreso"):
            self.lanzador.buscar("label", "Iniciar sesión — Aulared")
            self.lanzador.esperar_foco("text", "Usuario:")
        with self.paso("clave incorrecta"):
            manos.escribir("ana")
            manos.pulsar("Tab")
            manos.escribir("sol")
            manos.pulsar("Return")
            self.lanzador.buscar("label", "Usuario o contraseña incorrectos.")
            assert self.escuela.sesion() is None, "hay sesión sin que nadie haya entrado"
        with self.paso("primera integrante"):
            manos.pulsar("ctrl+a")
            manos.escribir("luna123")
            manos.pulsar("Return")
            self.lanzador.buscar("list item", "Ana")
            self.lanzador.esperar_foco("text", "Usuario:")
        with self.paso("segundo integrante"):
            manos.escribir("inaki")
            manos.pulsar("Tab")
            manos.escribir("nube321")
            manos.pulsar("Return")
            self.lanzador.buscar("list item", "Iñaki")
        with self.paso("inicio"):
            self.tabular_hasta("push button", "Empezar a trabajar")
            manos.pulsar("Return")
            self.lanzador.buscar("label", "Sesión grupal: Ana, Iñaki")
            sesion = self.escuela.sesion()
            assert [p["id"] for p in sesion["integrantes"]] == ["ana", "inaki"], sesion
            assert sesion["modo"] == "aulared" and sesion["grupo"] == "Grupo de Ana", sesion
            assert sesion["token"], sesion

    def trabajar(self):
        with self.paso("app abierta con su botón"):
            manos.clic(self.lanzador.buscar("push button", "Ceibo"))
            ceibo = Programa(self.comprobar_app("Ceibo").pid)
            ceibo.buscar("frame", "Ceibo")
            ceibo.buscar("label", "Trabajan: Ana, Iñaki.")
            ceibo.esperar_foco("text", "Nombre del proyecto:")
        with self.paso("proyecto guardado"):
            antes = self.escuela.envejecer_sesion()
            empezo = datetime.now().replace(microsecond=0)
            manos.escribir("La cabaña encantada")
            manos.pulsar("Return")
            ceibo.buscar("label", "Se guardó «La cabaña encantada».")
            ceibo.buscar("frame", "La cabaña encantada — Ceibo")
            self.comprobar_guardado(antes, empezo)
        with self.paso("proyecto en la pestaña de la app"):
            self.cerrar_app("Ceibo")
            self.elegir_pestana("Ceibo")
            self.esperar_primero("La cabaña encantada    —    ")
        with self.paso("proyecto entre los recientes"):
            manos.clic(self.lanzador.buscar("page tab", "Recientes"))
            self.lanzador.buscar("list item", "La cabaña encantada")

    def comprobar_guardado(self, antes, empezo):
        """Que Ceibo dejó el trabajo, lo anotó a cada integrante y contó la actividad."""
        proyecto = self.escuela.documentos / "Ceibo/La cabaña encantada"
        assert (proyecto / "proyecto.json").is_file(), "no está el proyecto"
        for persona in ("ana", "inaki"):
            entrada = self.escuela.recientes(persona)[0]
            assert (entrada["ruta"], entrada["app"]) == (str(proyecto), "ceibo"), entrada
        sesion = self.escuela.sesion()
        # El lanzador tiene en memoria otro comienzo: si está el del archivo, escribió la app.
        assert sesion["inicio_sesion"] == antes["inicio_sesion"], sesion
        assert datetime.fromisoformat(sesion["ultima_actividad"]) >= empezo, sesion

    def reabrir(self):
        with self.paso("proyecto abierto con Enter"):
            manos.clic(self.lanzador.buscar("page tab", "Garza"))
            self.tabular_hasta("list item")
            manos.pulsar("Home", "Down", "Return")
            garza = Programa(self.comprobar_app("Garza", "--proyecto", "Afiche reciclaje").pid)
            garza.buscar("label", "Proyecto abierto: Afiche: reciclamos en la escuela")
            garza.buscar("label", "Versión 1.1.0")
            for persona in ("ana", "inaki"):
                assert self.escuela.recientes(persona)[0]["app"] == "garza"
        with self.paso("el teclado sigue en la lista"):
            self.cerrar_app("Garza")
            self.lanzador.esperar_foco("list", "Trabajos de Garza")
            elegida = self.lanzador.esperar_foco("list item")
            assert elegida.nombre.startswith("Afiche: reciclamos"), elegida
        with self.paso("reciente abierto con doble clic"):
            manos.clic(self.lanzador.buscar("page tab", "Recientes"))
            manos.doble_clic(self.lanzador.buscar("list item", "La cabaña encantada"))
            ceibo = Programa(self.comprobar_app("Ceibo", "--proyecto", "La cabaña encantada").pid)
            ceibo.buscar("label", "Proyecto abierto: La cabaña encantada")
        with self.paso("recientes en el orden nuevo"):
            self.cerrar_app("Ceibo")
            esperar("los recientes en el orden nuevo", lambda: self.nombres_de_la_lista() ==
                    ["La cabaña encantada", "Afiche reciclaje"])
        with self.paso("reciente que ya no está"):
            shutil.rmtree(self.escuela.documentos / "Ceibo/La cabaña encantada")
            manos.pulsar("Home", "Return")
            ceibo = Programa(self.comprobar_app("Ceibo", "--proyecto", "La cabaña encantada").pid)
            ceibo.buscar("label", "No se encontró el proyecto «La cabaña encantada»."
                                  " Podés empezar uno nuevo.")
            self.cerrar_app("Ceibo")

    def salir(self):
        with self.paso("sesión cerrada"):
            assert self.escuela.archivo_sesion.exists()
            manos.clic(self.lanzador.buscar("push button", "Cerrar sesión"))
            esperar("la sesión borrada", lambda: not self.escuela.archivo_sesion.exists())
            self.lanzador.buscar("label", "¿Quién va a trabajar?")
        with self.paso("ingreso otra vez"):
            self.lanzador.buscar("label", "Iniciar sesión — Aulared")
            assert not self.lanzador.todos("list item"), "quedaron integrantes de antes"
        self.cerrar_lanzador()


class SinRed(Recorrido):
    """Sin conexión y solo con el teclado: se crea un perfil y la sesión sobrevive al cierre."""

    con_red = False

    def correr(self):
        self.crear_perfil()
        self.seguir_otro_dia()
        self.guardar_con_cada_app()
        self.elegir_perfil()

    def crear_perfil(self):
        with self.paso("perfiles"):
            self.abrir_lanzador()
            self.lanzador.buscar("label", "¿Quién va a trabajar?")
            self.lanzador.esperar_foco("list", "Perfiles de esta computadora")
        with self.paso("perfil nuevo"):
            self.tabular_hasta("push button", "Crear nuevo perfil")
            manos.pulsar("Return")
            self.lanzador.esperar_foco("text", "Nombre:")
            manos.escribir("Begoña")
        with self.paso("inicio"):
            manos.pulsar("Return")
            self.lanzador.buscar("label", "Sesión de Begoña")
            perfil = self.escuela.perfiles()[-1]
            assert (perfil["nombre"], perfil["color"]) == ("Begoña", "#6B3FA0"), perfil
            sesion = self.escuela.sesion()
            assert sesion["modo"] == "standalone" and sesion["integrantes"] == [perfil], sesion

    def seguir_otro_dia(self):
        with self.paso("sesión retomada"):
            antes = self.escuela.sesion()
            self.cerrar_lanzador()
            assert self.escuela.sesion() == antes, "cerrar la ventana cambió la sesión"
            self.abrir_lanzador()
            self.lanzador.buscar("label", "Sesión de Begoña")

    def guardar_con_cada_app(self):
        for app, nombre in A_LA_VISTA.items():
            with self.paso(f"{app} guarda"):
                self.tabular_hasta("push button", app)
                manos.pulsar("space")
                abierta = Programa(self.comprobar_app(app).pid)
                abierta.esperar_foco("text", "Nombre del proyecto:")
                manos.escribir(NOMBRE)
                manos.pulsar("Return")
                abierta.buscar("label", f"Se guardó «{nombre}».")
            self.cerrar_app(app)
        with self.paso("cada app tiene lo que guardó"):
            for app, nombre in A_LA_VISTA.items():
                self.elegir_pestana(app)
                self.esperar_primero(f"{nombre}    —    ")
            manos.clic(self.lanzador.buscar("page tab", "Recientes"))
            esperar("los cinco trabajos entre los recientes",
                    lambda: self.nombres_de_la_lista() == [CARPETA] * len(A_LA_VISTA))

    def elegir_perfil(self):
        with self.paso("sesión cerrada"):
            self.tabular_hasta("push button", "Cerrar sesión")
            manos.pulsar("space")
            esperar("la sesión borrada", lambda: not self.escuela.archivo_sesion.exists())
            self.lanzador.buscar("list item", "Begoña")
        with self.paso("perfil elegido"):
            self.tabular_hasta("list item", "Tomás")
            manos.pulsar("Home", "Return")
            self.lanzador.buscar("label", "Sesión de Tomás")
            assert self.escuela.sesion()["grupo"] == "Tomás"
        self.cerrar_lanzador()


if __name__ == "__main__":
    correr({"con-red": ConRed, "sin-red": SinRed}, __doc__.splitlines()[0])
