"""Quién puede escribir en la carpeta de datos y en la del programa.

wine guarda solo los permisos que entran en los de Unix: los del grupo de los usuarios son los del
grupo. Alcanza para ver que se dieron; heredarlos lo prueba cada Windows.
"""

import stat
import unittest

from apoyo import TODOS, PruebaDeInstalador


class PruebaPermisos(PruebaDeInstalador):
    def preparar(self, *rutas):
        for ruta in rutas:
            ruta.mkdir(parents=True, exist_ok=True)
            ruta.chmod(0o700)

    def puede_el_grupo(self, ruta):
        return ruta.stat().st_mode & stat.S_IRWXG == stat.S_IRWXG

    def test_todas_las_cuentas_comparten_los_datos(self):
        self.preparar(self.datos)
        self.instalar("/MODO=usuario")
        self.assertTrue(self.puede_el_grupo(self.datos))

    def test_una_instalacion_para_todos_la_puede_actualizar_cualquiera(self):
        carpeta = self.en_windows(TODOS)
        self.preparar(carpeta)
        self.instalar("/MODO=todos")
        self.assertTrue(self.puede_el_grupo(carpeta))

    def test_en_archivos_de_programa_los_permisos_quedan_como_estaban(self):
        for carpeta in (r"C:\Program Files\Quillay", r"C:\PROGRAM FILES (x86)\Lumbre\Quillay"):
            with self.subTest(carpeta):
                aqui = self.en_windows(carpeta.replace("PROGRAM FILES", "Program Files"))
                self.preparar(aqui)
                self.instalar("/MODO=todos", f"/CARPETA={carpeta}")
                self.assertFalse(self.puede_el_grupo(aqui))
                self.desinstalar(carpeta=carpeta)

    def test_una_instalacion_propia_no_se_comparte(self):
        carpeta = self.en_windows(self.propia)
        self.preparar(carpeta)
        self.instalar("/MODO=usuario")
        self.assertFalse(self.puede_el_grupo(carpeta))


if __name__ == "__main__":
    unittest.main()
