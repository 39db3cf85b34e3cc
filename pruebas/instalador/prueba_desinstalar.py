"""Desinstalar: qué se va y qué queda."""

import shutil
import unittest

from apoyo import (CARPETA, DESINSTALADOR, LISTO, NO_SE_PUDO_ESCRIBIR, PARAMETROS,
                   SIN_ADMINISTRADOR, SIN_PERMISOS, TODOS, PruebaDeInstalador, esperar)

DE_LAS_PERSONAS = {
    r"C:\ProgramData\Lumbre": ("perfiles.json", "sesion.json"),
    r"C:\ProgramData\Lumbre\recientes": ("ana.json",),
    r"C:\users\{}\Documents\Garza\Mi dibujo": ("project.json",),
}


class PruebaDesinstalar(PruebaDeInstalador):
    def setUp(self):
        super().setUp()
        self.carpeta = self.en_windows(TODOS)

    def trabajar(self):
        """Deja lo que dejan las personas al usar la computadora."""
        for carpeta, nombres in DE_LAS_PERSONAS.items():
            for nombre in nombres:
                self.escribir_json(carpeta.format(self.cuenta), nombre, {"de": "Ana"})

    def test_la_computadora_queda_como_antes(self):
        antes = self.todo()
        self.instalar("/MODO=todos")
        self.desinstalar()
        self.exigir_igual(antes)
        self.assertEqual(self.registro(), {})

    def test_la_de_una_cuenta_tambien(self):
        self.en_windows(self.propia).parent.mkdir(parents=True)
        antes = self.todo()
        self.instalar("/MODO=usuario")
        self.desinstalar(carpeta=self.propia)
        self.exigir_igual(antes)
        self.assertEqual(self.registro("HKCU"), {})

    def test_la_orden_anotada_en_windows_desinstala_sin_preguntar(self):
        antes = self.todo()
        self.instalar("/MODO=todos")
        self.correr_escrito(self.registro()["QuietUninstallString"])
        esperar("el final de la desinstalación", lambda: not self.carpeta.exists())
        self.exigir_igual(antes)

    def test_se_van_las_apps_y_lo_que_trajo_una_actualizacion(self):
        antes = self.todo()
        self.instalar()
        for nombre in ("Garza/garza.exe", "Garza/datos/uno.dat", "Nandu/nandu.exe", "Qt6Svg.dll",
                       "shared/nuevo.qm", "quillay.exe.viejo", "platforms/qwindows.dll.viejo",
                       "versiones.json.AbCdEf"):
            (self.carpeta / nombre).parent.mkdir(parents=True, exist_ok=True)
            (self.carpeta / nombre).write_bytes(b"MZ")
        self.desinstalar()
        self.exigir_igual(antes)

    def test_lo_que_guardo_alguien_en_la_carpeta_queda(self):
        self.instalar()
        (self.carpeta / "Mis cosas").mkdir()
        (self.carpeta / "Mis cosas/dibujo.png").write_bytes(b"dibujo")
        (self.carpeta / "notas.txt").write_bytes(b"notas")
        self.desinstalar()
        self.assertEqual({ruta.name for ruta in self.carpeta.rglob("*")},
                         {"Mis cosas", "dibujo.png", "notas.txt"})

    def test_los_datos_y_los_trabajos_quedan(self):
        self.instalar("/EQUIPO")
        self.trabajar()
        antes = self.todo()
        self.desinstalar()
        borrado = {nombre for nombre in antes if nombre not in self.todo()}
        menu = str(self.menu().relative_to(self.en_windows("C:")))
        self.assertEqual({nombre for nombre in borrado if not nombre.startswith("Lumbre/")},
                         {menu})

    def test_si_se_pide_se_van_los_datos_pero_no_los_trabajos(self):
        self.instalar("/EQUIPO")
        self.trabajar()
        self.escribir_json(rf"C:\users\{self.cuenta}\AppData\Local\Lumbre", "sesion.json", {})
        self.desinstalar("/BORRARDATOS")
        self.assertFalse(self.datos.exists())
        self.assertFalse(self.en_windows(rf"C:\users\{self.cuenta}\AppData\Local\Lumbre").exists())
        trabajo = rf"C:\users\{self.cuenta}\Documents\Garza\Mi dibujo\project.json"
        self.assertTrue(self.en_windows(trabajo).exists())

    def test_con_quillay_abierto_no_borra_nada(self):
        self.instalar()
        self.abrir_quillay()
        antes = self.todo()
        self.assertEqual(self.desinstalar_en_el_lugar(), NO_SE_PUDO_ESCRIBIR)
        self.assertEqual(self.todo(), antes)

    def test_con_una_app_abierta_no_borra_nada(self):
        self.instalar()
        (self.carpeta / "Garza").mkdir()
        shutil.copy(self.en_windows(TODOS) / "quillay.exe", self.carpeta / "Garza/garza.exe")
        for biblioteca in self.carpeta.glob("*.dll"):
            shutil.copy(biblioteca, self.carpeta / "Garza")
        shutil.copytree(self.carpeta / "platforms", self.carpeta / "Garza/platforms")
        self.iniciar(self.carpeta / "Garza/garza.exe")
        self.esperar_ventana("^Quillay$")
        antes = self.todo()
        self.assertEqual(self.desinstalar_en_el_lugar(), NO_SE_PUDO_ESCRIBIR)
        self.assertEqual(self.todo(), antes)

    def test_sin_la_copia_da_el_codigo_y_deja_solo_el_desinstalador(self):
        self.instalar()
        self.assertEqual(self.desinstalar_en_el_lugar(), LISTO)
        self.assertEqual([ruta.name for ruta in self.carpeta.rglob("*")], [DESINSTALADOR])
        self.instalar()
        self.exigir_instalado()

    def test_un_parametro_mal_escrito_no_borra_nada(self):
        self.instalar()
        antes = self.todo()
        for malo in ("/BORRAR", "/BORRARDATOS=no", "/s"):
            self.assertEqual(self.desinstalar_en_el_lugar(malo), PARAMETROS)
        self.assertEqual(self.todo(), antes)

    def test_sin_permisos_no_desinstala_la_de_todos(self):
        self.instalar("/MODO=todos")
        antes = self.todo()
        codigo = self.correr(SIN_ADMINISTRADOR, self.carpeta / DESINSTALADOR, "/S", f"_?={TODOS}")
        self.assertEqual(codigo, SIN_PERMISOS)
        self.assertEqual(self.todo(), antes)

    def test_una_copia_del_desinstalador_en_otra_carpeta_no_borra_nada(self):
        self.instalar()
        ajena = self.en_windows(r"C:\Fotos")
        (ajena / "shared").mkdir(parents=True)
        (ajena / "shared/cumple.jpg").write_bytes(b"foto")
        shutil.copy(self.carpeta / DESINSTALADOR, ajena)
        antes = self.todo()
        self.assertEqual(self.desinstalar_en_el_lugar(carpeta=r"C:\Fotos"), CARPETA)
        self.assertEqual(self.todo(), antes)

    def test_se_puede_volver_a_instalar(self):
        self.instalar("/MODO=todos")
        self.desinstalar()
        self.instalar("/MODO=todos")
        self.exigir_instalado()


if __name__ == "__main__":
    unittest.main()
