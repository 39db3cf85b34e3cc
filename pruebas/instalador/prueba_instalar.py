"""Instalar por primera vez: qué queda y dónde."""

import unittest

from apoyo import (INSTALADORES, LISTO, PROPIOS, SIN_ADMINISTRADOR, SIN_PERMISOS, TODOS, VERSION,
                   PruebaDeInstalador, arbol)


class PruebaInstalar(PruebaDeInstalador):
    def test_para_todas_las_cuentas_queda_la_carpeta_portatil_con_su_configuracion(self):
        self.instalar("/MODO=todos")
        self.exigir_instalado()
        self.assertEqual(self.json(TODOS, "versiones.json"), {"launcher": VERSION})
        self.assertEqual(self.json(TODOS, "config.json"),
                         {"aulared_url": "", "manifiesto_url": "", "descargas_base": ""})
        self.assertTrue(self.menu().exists())
        self.assertFalse(self.menu_propio().exists())

    def test_para_una_cuenta_no_necesita_permisos_de_administrador(self):
        codigo = self.correr(SIN_ADMINISTRADOR, INSTALADORES / f"{VERSION}.exe", "/S",
                             "/MODO=usuario")
        self.assertEqual(codigo, LISTO)
        self.exigir_instalado(self.propia)
        self.assertTrue(self.menu_propio().exists())
        self.assertFalse(self.menu().exists())
        self.assertFalse(self.en_windows(TODOS).exists())

    def test_sin_modo_un_administrador_instala_para_todos_y_los_demas_para_si(self):
        self.instalar()
        self.exigir_instalado()
        self.correr(SIN_ADMINISTRADOR, INSTALADORES / f"{VERSION}.exe", "/S")
        self.exigir_instalado(self.propia)

    def test_sin_permisos_no_instala_para_todos(self):
        antes = self.todo()
        codigo = self.correr(SIN_ADMINISTRADOR, INSTALADORES / f"{VERSION}.exe", "/S",
                             "/MODO=todos")
        self.assertEqual(codigo, SIN_PERMISOS)
        self.assertEqual(self.todo(), antes)

    def test_figura_entre_las_aplicaciones_instaladas(self):
        self.instalar("/MODO=todos")
        registro = self.registro()
        tamano = sum((INSTALADORES / VERSION / nombre).stat().st_size
                     for nombre in arbol(INSTALADORES / VERSION))
        self.assertGreater(int(registro.pop("EstimatedSize"), 16), tamano // 1024)
        self.assertEqual(registro, {
            "DisplayName": "Quillay",
            "DisplayVersion": VERSION,
            "Publisher": "Lumbre",
            "DisplayIcon": TODOS + r"\quillay.exe",
            "InstallLocation": TODOS,
            "UninstallString": rf'"{TODOS}\desinstalar.exe"',
            "QuietUninstallString": rf'"{TODOS}\desinstalar.exe" /S',
            "NoModify": "0x1",
            "NoRepair": "0x1",
        })
        self.assertEqual(self.registro("HKCU"), {})

    def test_para_una_cuenta_figura_solo_en_la_suya(self):
        self.instalar("/MODO=usuario")
        self.assertEqual(self.registro("HKCU")["InstallLocation"], self.propia)
        self.assertEqual(self.registro(), {})

    def test_en_una_carpeta_elegida_con_espacios_y_acentos(self):
        carpeta = r"C:\Archivos de la escuela\Ñandú & Cía\Quillay"
        self.instalar("/MODO=todos", f"/CARPETA={carpeta}")
        self.exigir_instalado(carpeta)

    def test_tambien_entiende_la_forma_comun_de_elegir_la_carpeta(self):
        instalador = self.desde_windows(INSTALADORES / f"{VERSION}.exe")
        orden = rf"{instalador} /S /MODO=todos /D=C:\Otra carpeta\Quillay"
        self.assertEqual(self.correr_escrito(orden), LISTO)
        self.exigir_instalado(r"C:\Otra carpeta\Quillay")

    def test_la_entiende_tambien_entre_comillas_y_con_una_barra_al_final(self):
        self.instalar("/MODO=todos", r"/D=C:\Otra carpeta\Quillay")
        self.exigir_instalado(r"C:\Otra carpeta\Quillay")
        self.instalar("/MODO=todos", "/CARPETA=C:\\Otra carpeta\\Quillay\\")
        self.exigir_instalado(r"C:\Otra carpeta\Quillay")

    def test_fuera_de_la_carpeta_quedan_solo_los_datos_y_el_menu(self):
        antes = set(self.todo())
        self.instalar("/MODO=todos")
        nuevos = set(self.todo()) - antes
        afuera = {nombre for nombre in nuevos if not nombre.startswith("Lumbre/")}
        menu = str(self.menu().relative_to(self.en_windows("C:")))
        self.assertEqual(afuera, {"ProgramData/Lumbre/", menu})

    def test_lo_instalado_se_abre(self):
        self.instalar("/MODO=todos")
        self.abrir_quillay()
        self.assertLessEqual(PROPIOS, set(arbol(self.en_windows(TODOS))))


if __name__ == "__main__":
    unittest.main()
