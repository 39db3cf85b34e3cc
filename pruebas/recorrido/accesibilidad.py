#!/usr/bin/python3 -B
"""Usa el lanzador como quien no ve la pantalla o no usa el mouse.

Encuentra cada control por su rol y su nombre, recorre cada pantalla con Tab y hace todo con el
teclado.
"""

import manos
from espera import esperar
from pasos import Recorrido, correr

# Lo que solo acomoda a otros controles.
ESTRUCTURA = ("frame", "filler", "layered pane")
APPS = ("Ceibo", "Garza", "Hornero", "Benteveo")
SIN_INSTALAR = "Zorzal"


class Accesibilidad(Recorrido):
    """Lo que se comprueba en todas las pantallas."""

    def comprobar_controles(self, *esperados):
        """Que a la vista estén exactamente esos controles (rol y nombre), en ese orden."""
        def vistos():
            return tuple((control.rol, control.nombre.rstrip(":"))
                         for control in self.lanzador.controles()
                         if control.rol not in ESTRUCTURA)
        esperar(lambda: f"los controles {esperados}\nestán {vistos()}",
                lambda: vistos() == esperados)
        mudos = [control for control in self.lanzador.controles() if not control.nombre
                 and "focusable" in control.estados and control.rol not in ESTRUCTURA]
        assert not mudos, f"se llega con el teclado y no tienen nombre: {mudos}"

    def comprobar_vuelta(self, *esperados):
        """Que Tab, desde el primero, pase por esos controles en orden y vuelva a empezar."""
        self.comprobar_teclas("Tab", esperados)
        self.comprobar_teclas("shift+Tab", esperados[:1] + esperados[:0:-1])

    def comprobar_teclas(self, tecla, esperados):
        self.esperar_teclado_en(*esperados[0])
        for rol, nombre in (*esperados[1:], esperados[0]):
            manos.pulsar(tecla)
            self.esperar_teclado_en(rol, nombre)

    def esperar_teclado_en(self, rol, nombre):
        """Espera a que el teclado esté en ese control, o en algo elegido dentro de él."""
        def ahi():
            return any((control.rol, control.nombre.rstrip(":")) == (rol, nombre)
                       for control in self.lanzador.controles() if control.enfocado)
        esperar(lambda: f"el teclado en {rol} «{nombre}»; está en {self.lanzador.enfocado()}", ahi)


class EnLinea(Accesibilidad):
    """El ingreso y el inicio."""

    def correr(self):
        self.escuela.ejecutable(SIN_INSTALAR).unlink()
        self.abrir_lanzador()
        self.dejar_la_oferta_para_despues()
        self.ingresar()
        self.agregar_integrantes()
        self.recorrer_inicio()
        self.abrir_trabajo()
        self.fallar_al_abrir()

    def dejar_la_oferta_para_despues(self):
        with self.paso("oferta"):
            self.lanzador.buscar("alert", "Hay una versión nueva de Quillay")
            self.esperar_teclado_en("push button", "Actualizar ahora")
            manos.pulsar("Tab")
            self.esperar_teclado_en("push button", "Más tarde")
            manos.pulsar("Escape")
            esperar("la oferta cerrada", lambda: not self.lanzador.hay("alert"))
            assert self.escuela.versiones()["garza"] == "1.0.0"

    def ingresar(self):
        with self.paso("ingreso"):
            self.lanzador.buscar("label", "Iniciar sesión — Aulared")
            self.comprobar_controles(
                ("label", "Iniciar sesión — Aulared"),
                ("label", "Usuario"), ("text", "Usuario"),
                ("label", "Contraseña"), ("password text", "Contraseña"),
                ("check box", "Indicar duración estimada de la sesión"),
                ("label", "Duración"), ("spin button", "Duración"),
                ("push button", "Entrar"), ("label", ""),
                ("label", "Integrantes de la sesión"), ("list", "Integrantes de la sesión"),
                ("push button", "Empezar a trabajar"))
            assert not self.lanzador.buscar("spin button").habilitado
            assert not self.lanzador.buscar("push button", "Empezar a trabajar").habilitado
            self.comprobar_vuelta(
                ("text", "Usuario"), ("password text", "Contraseña"),
                ("check box", "Indicar duración estimada de la sesión"),
                ("push button", "Entrar"), ("list", "Integrantes de la sesión"))
        with self.paso("duración indicada"):
            self.tabular_hasta("check box")
            manos.pulsar("space")
            esperar("la casilla tildada", lambda: self.lanzador.buscar("check box").tildado)
            manos.pulsar("Tab")
            self.esperar_teclado_en("spin button", "Duración")
            manos.pulsar("ctrl+a")
            manos.escribir("90")
            manos.pulsar("Tab")
            self.esperar_teclado_en("push button", "Entrar")
            assert self.lanzador.buscar("spin button").texto() == "90 min"

    def agregar_integrantes(self):
        with self.paso("error al entrar"):
            manos.pulsar("space")
            self.lanzador.buscar("label", "Completá usuario y contraseña.")
        with self.paso("con una integrante"):
            self.tabular_hasta("text")
            manos.escribir("ana")
            manos.pulsar("Tab")
            manos.escribir("luna123")
            manos.pulsar("Tab", "Tab", "Tab", "space")
            self.lanzador.buscar("list item", "Ana")
            assert not self.lanzador.buscar("check box").habilitado
            self.comprobar_vuelta(
                ("text", "Usuario"), ("password text", "Contraseña"),
                ("push button", "Agregar otro integrante"), ("list", "Integrantes de la sesión"),
                ("push button", "Empezar a trabajar"))
        with self.paso("inicio"):
            self.tabular_hasta("push button", "Empezar a trabajar")
            manos.pulsar("space")
            self.lanzador.buscar("label", "Sesión de Ana")
            assert self.escuela.sesion()["duracion_estimada_min"] == 90

    def recorrer_inicio(self):
        with self.paso("controles del inicio"):
            self.esperar_teclado_en("push button", "Ceibo")
            self.comprobar_controles(
                ("label", "Sesión de Ana"), ("push button", "Cerrar sesión"),
                ("push button", "Ceibo"), ("push button", "Garza"), ("push button", "Hornero"),
                ("push button", "Zorzal"), ("push button", "Benteveo"),
                ("list", "Archivos recientes"),
                ("list item", "Todavía no hay nada reciente."
                              " Lo que abras o guardes va a aparecer acá."),
                ("page tab list", "Recientes"), ("page tab", "Recientes"),
                *(("page tab", app) for app in APPS))
            for app in APPS:
                assert self.lanzador.buscar("push button", app).descripcion == f"Abrir {app}"
            falta = self.lanzador.buscar("push button", SIN_INSTALAR)
            assert falta.descripcion == "Zorzal no está instalada en esta computadora.", falta
            assert not falta.habilitado
            self.comprobar_vuelta(
                *(("push button", app) for app in APPS), ("page tab", "Recientes"),
                ("list", "Archivos recientes"), ("push button", "Cerrar sesión"))
        with self.paso("listas de las apps"):
            self.elegir_pestana("Ceibo")
            for app in APPS:
                self.esperar_teclado_en("page tab", app)
                self.lanzador.buscar("list", f"Trabajos de {app}")
                manos.pulsar("Right")

    def abrir_trabajo(self):
        with self.paso("trabajo abierto con Enter"):
            self.esperar_teclado_en("page tab", APPS[-1])
            manos.pulsar("Tab")
            self.esperar_teclado_en("list", "Trabajos de Benteveo")
            manos.pulsar("Home", "Return")
            self.comprobar_app("Benteveo", "--proyecto", "Laberinto")
        with self.paso("el teclado sigue en la lista"):
            self.cerrar_app("Benteveo")
            self.esperar_teclado_en("list", "Trabajos de Benteveo")
            manos.pulsar("Down")
            elegido = self.lanzador.esperar_foco("list item")
            assert elegido.nombre.startswith("Carrera de caracoles"), elegido

    def fallar_al_abrir(self):
        with self.paso("aviso"):
            self.tabular_hasta("push button", "Garza")
            self.escuela.ejecutable("Garza").unlink()
            manos.pulsar("space")
            self.lanzador.buscar("label", "No se pudo abrir Garza.")
            self.esperar_teclado_en("push button", "Aceptar")
        with self.paso("después del aviso"):
            manos.pulsar("Return")
            self.esperar_teclado_en("push button", "Garza")
        self.cerrar_lanzador()


class Perfiles(Accesibilidad):
    """La elección de perfil."""

    con_red = False

    def correr(self):
        self.abrir_lanzador()
        with self.paso("perfiles"):
            self.comprobar_controles(
                ("label", "¿Quién va a trabajar?"),
                ("label", "Sin conexión a Aulared — perfiles de esta computadora."),
                ("list", "Perfiles de esta computadora"), ("list item", "Tomás"),
                ("push button", "Crear nuevo perfil"))
            self.comprobar_vuelta(("list", "Perfiles de esta computadora"),
                                  ("push button", "Crear nuevo perfil"))
        with self.paso("perfil nuevo"):
            self.tabular_hasta("push button", "Crear nuevo perfil")
            manos.pulsar("space")
            self.lanzador.buscar("dialog", "Nuevo perfil")
            self.comprobar_vuelta(("text", "Nombre"), ("push button", "Aceptar"),
                                  ("push button", "Cancelar"))
        with self.paso("perfil nuevo cancelado"):
            manos.pulsar("Escape")
            self.esperar_teclado_en("push button", "Crear nuevo perfil")
            assert len(self.escuela.perfiles()) == 1
        with self.paso("perfil elegido"):
            manos.pulsar("shift+Tab", "Home", "Return")
            self.lanzador.buscar("label", "Sesión de Tomás")
            self.esperar_teclado_en("push button", "Ceibo")
        self.cerrar_lanzador()


if __name__ == "__main__":
    correr({"en-linea": EnLinea, "perfiles": Perfiles}, __doc__.splitlines()[0])
