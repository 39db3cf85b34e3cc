"""Las páginas, recorridas con el teclado."""

import subprocess
import unittest

from apoyo import (DESINSTALADOR, INSTALADORES, LISTO, SIN_ADMINISTRADOR, TODOS, VERSION,
                   PruebaDeInstalador, esperar)

CANCELADO = 1
NADA = {"aulared_url": "", "manifiesto_url": "", "descargas_base": ""}


class PruebaPaginas(PruebaDeInstalador):
    def abrir(self, *parametros, delante=()):
        """Abre el instalador en la bienvenida."""
        self.proceso = self.iniciar(*delante, INSTALADORES / f"{VERSION}.exe", *parametros)
        self.esperar_ventana("Quillay")
        self.asentada()

    def asentada(self):
        """La imagen de la pantalla cuando deja de cambiar."""
        ultima = b""
        while (actual := foto()) != ultima:
            ultima = actual
        return actual

    def seguir(self, tecla="Return"):
        """Aprieta una tecla que lleva a otra página y espera a que se vea."""
        antes = foto()
        subprocess.run(["xdotool", "key", tecla], check=True)
        esperar("la página que sigue", lambda: foto() != antes)
        self.asentada()

    def escribir(self, texto):
        subprocess.run(["xdotool", "type", "--delay", "20", texto], check=True)
        self.asentada()

    def llegar_a_las_direcciones(self):
        for _ in range(3):  # la bienvenida, para quién y la carpeta
            self.seguir()

    def instalar_y_terminar(self):
        self.seguir()
        esperar("lo instalado", (self.en_windows(TODOS) / "versiones.json").exists)
        esperar("el menú", lambda: self.menu().exists() or self.menu_propio().exists())
        self.asentada()
        self.seguir("space")  # no abrir Quillay
        subprocess.run(["xdotool", "key", "Return"], check=True)
        self.assertEqual(self.proceso.wait(timeout=60), LISTO)

    def test_aceptando_todo_queda_instalado_para_todos(self):
        self.abrir()
        self.llegar_a_las_direcciones()
        self.instalar_y_terminar()
        self.exigir_instalado()
        self.assertEqual(self.json(TODOS, "config.json"), NADA)

    def test_lo_escrito_en_las_direcciones_queda_en_la_configuracion(self):
        self.abrir()
        self.llegar_a_las_direcciones()
        self.escribir("https://aulared.example/a?b=c&d#e\thttps://m.example\thttps://d.example")
        self.instalar_y_terminar()
        self.assertEqual(self.json(TODOS, "config.json"),
                         {"aulared_url": "https://aulared.example/a?b=c&d#e",
                          "manifiesto_url": "https://m.example",
                          "descargas_base": "https://d.example"})

    def test_los_parametros_ya_vienen_escritos(self):
        self.abrir("/AULARED=https://a.example", "/EQUIPO")
        self.llegar_a_las_direcciones()
        self.instalar_y_terminar()
        self.assertEqual(self.json(TODOS, "config.json"),
                         NADA | {"aulared_url": "https://a.example"})
        self.assertTrue((self.datos / "equipo.json").exists())

    def test_una_direccion_incompleta_no_deja_seguir(self):
        self.abrir()
        self.llegar_a_las_direcciones()
        self.escribir("aulared.example")
        self.seguir()  # sale el aviso
        self.assertFalse(self.en_windows(TODOS).exists())
        self.seguir()  # se cierra el aviso
        subprocess.run(["xdotool", "key", "ctrl+a"], check=True)
        self.escribir("https://aulared.example")
        self.instalar_y_terminar()
        self.assertEqual(self.json(TODOS, "config.json")["aulared_url"], "https://aulared.example")

    def test_cancelar_no_cambia_nada(self):
        antes = self.todo()
        self.abrir()
        self.llegar_a_las_direcciones()
        self.seguir("Escape")  # pregunta si de verdad
        subprocess.run(["xdotool", "key", "Return"], check=True)
        self.assertEqual(self.proceso.wait(timeout=60), CANCELADO)
        self.assertEqual(self.todo(), antes)

    def test_al_terminar_se_puede_abrir_quillay(self):
        for modo, menu in (("usuario", self.menu_propio()), ("todos", self.menu())):
            with self.subTest(modo):
                self.abrir(f"/MODO={modo}")
                self.llegar_a_las_direcciones()
                self.seguir()
                esperar("lo instalado", menu.exists)
                self.asentada()
                subprocess.run(["xdotool", "key", "Return"], check=True)
                self.esperar_ventana("^Quillay$")
                self.apagar()

    def test_sin_permisos_elegir_todas_las_cuentas_vuelve_a_empezar_pidiendolos(self):
        self.abrir(delante=(SIN_ADMINISTRADOR,))
        self.seguir()
        subprocess.run(["xdotool", "key", "Return"], check=True)
        self.assertEqual(self.proceso.wait(timeout=60), LISTO)
        self.esperar_ventana("Quillay")
        self.assertFalse(self.en_windows(TODOS).exists())

    def test_el_desinstalador_pregunta_si_borrar_los_datos(self):
        for tecla, quedan in ((None, True), ("alt+p", False)):
            with self.subTest(quedan=quedan):
                self.instalar("/MODO=todos", "/EQUIPO")
                desinstalador = self.en_windows(TODOS) / DESINSTALADOR
                self.iniciar(desinstalador)
                self.esperar_ventana("Quillay")
                self.asentada()
                if tecla:
                    self.seguir(tecla)
                self.seguir()
                esperar("el final", lambda: not self.en_windows(TODOS).exists())
                self.assertEqual(self.datos.exists(), quedan)
                self.asentada()
                subprocess.run(["xdotool", "key", "Return"], check=True)
                esperar("la ventana cerrada", lambda: not self.ventana("Quillay"))


def foto():
    return subprocess.run(["import", "-window", "root", "rgb:-"], capture_output=True,
                          check=True).stdout


if __name__ == "__main__":
    unittest.main()
