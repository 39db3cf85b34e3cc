"""Los paquetes con solo los archivos que cambiaron."""

import shutil
import unittest

from apoyo import PruebaDePublicar, arbol
from publicacion.problemas import Codigo


class PruebaParcial(PruebaDePublicar):
    def setUp(self):
        super().setUp()
        self.publicar("1.0")
        self.instalada = self.base / "instalada"
        shutil.copytree(self.garza, self.instalada)
        self.armar("Garza", {"datos/uno.txt": b"UNO", "datos/dos.txt": b"dos"})

    def parcial(self, version="1.1", desde="1.0", *mas):
        return self.argumentos(version, "--desde-version", desde, *mas)

    def test_lleva_los_archivos_nuevos_y_los_cambiados(self):
        self.publicar("1.1", "--desde-version", "1.0")
        self.assertEqual(self.nombres("1.1"), ["datos/dos.txt", "datos/uno.txt"])

    def test_sobre_esa_version_deja_lo_mismo_que_uno_completo(self):
        self.publicar("1.1", "--desde-version", "1.0")
        self.extraer(self.paquete("1.1"), self.instalada)
        self.assertEqual(arbol(self.instalada), arbol(self.garza))

    def test_avisa_que_no_sirve_para_las_demas_versiones(self):
        salida = self.publicar("1.1", "--desde-version", "1.0")
        self.assertIn("está bien solo donde hay garza 1.0", salida.stderr)

    def test_dice_que_archivos_no_va_a_borrar(self):
        (self.garza / "datos/uno.txt").unlink()
        salida = self.publicar("1.1", "--desde-version", "1.0")
        self.assertIn("no los borra: datos/uno.txt.", salida.stderr)

    def test_un_cambio_que_conserva_el_tamano_o_solo_da_permiso_tambien_cuenta(self):
        self.armar("Garza", {"datos/uno.txt": b"onu"})
        (self.garza / "garza.exe").chmod(0o644)
        self.publicar("1.1", "--desde-version", "1.0")
        self.assertEqual(self.nombres("1.1"), ["datos/dos.txt", "datos/uno.txt", "garza.exe"])

    def test_publicar_dos_veces_el_mismo_parcial_esta_bien(self):
        self.publicar("1.1", "--desde-version", "1.0")
        self.assertIn("Ya estaba", self.publicar("1.1", "--desde-version", "1.0").stdout)

    def test_uno_completo_no_es_lo_mismo_que_un_parcial(self):
        self.publicar("1.1", "--desde-version", "1.0")
        self.exigir_falla(Codigo.YA_PUBLICADA, *self.argumentos("1.1"))

    def test_no_se_hace_a_partir_de_otro_parcial(self):
        self.publicar("1.1", "--desde-version", "1.0")
        self.armar("Garza", {"datos/tres.txt": b"tres"})
        self.exigir_falla(Codigo.PAQUETE, *self.parcial("1.2", "1.1"), menciona=("parcial",))

    def test_hace_falta_el_paquete_de_esa_version(self):
        self.exigir_falla(Codigo.PAQUETE, *self.parcial(desde="0.9"), menciona=("No existe",))
        self.exigir_falla(Codigo.VERSION, *self.parcial(desde="a/b"))
        self.exigir_falla(Codigo.VERSION, *self.parcial("1.0", "1.0"))

    def test_si_nada_cambio_no_hay_paquete(self):
        self.armar("Garza", {"datos/uno.txt": b"uno"})
        (self.garza / "datos/dos.txt").unlink()
        self.exigir_falla(Codigo.SIN_CAMBIOS, *self.parcial())


if __name__ == "__main__":
    unittest.main()
