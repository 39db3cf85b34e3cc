"""El manifiesto: lo que dice después de publicar, de volver atrás y de probar en un aula."""

import json
import shutil
import unittest

from apoyo import PruebaDePublicar, arbol
from publicacion.problemas import Codigo


class PruebaManifiesto(PruebaDePublicar):
    def escribir_manifiesto(self, texto):
        (self.servidor / "manifiesto.json").write_text(texto, encoding="utf-8")

    def test_publicar_agrega_o_cambia_solo_ese_componente(self):
        self.escribir_manifiesto('\ufeff{"zorzal": "3", "nota": {"ñ": [1, null]}, "garza": "1.0"}')
        salida = self.publicar("1.5.0")
        self.assertEqual(self.manifiesto(),
                         {"zorzal": "3", "nota": {"ñ": [1, None]}, "garza": "1.5.0"})
        self.assertIn("garza 1.0 → 1.5.0", salida.stdout)

    def test_se_escribe_con_sangria_y_en_orden(self):
        self.publicar("1")
        self.escribir_manifiesto('{"zorzal": "ñ", "ceibo": "2"}')
        self.publicar("1")
        self.assertEqual((self.servidor / "manifiesto.json").read_text(encoding="utf-8"),
                         '{\n    "ceibo": "2",\n    "garza": "1",\n    "zorzal": "ñ"\n}\n')

    def test_publicar_dos_veces_lo_mismo_no_cambia_nada(self):
        self.publicar()
        antes = arbol(self.servidor)
        fechas = [ruta.stat().st_mtime_ns for ruta in (self.paquete(),
                                                       self.servidor / "manifiesto.json")]
        salida = self.publicar()
        self.assertIn("Ya estaba", salida.stdout)
        self.assertEqual(arbol(self.servidor), antes)
        self.assertEqual([ruta.stat().st_mtime_ns for ruta in
                          (self.paquete(), self.servidor / "manifiesto.json")], fechas)

    def test_reemplazar_pisa_el_paquete_y_avisa_a_quien_no_le_llega(self):
        self.publicar()
        self.armar("Garza", {"datos/uno.txt": b"UNO"})
        salida = self.publicar("1.5.0", "--reemplazar")
        self.assertIn("no va a recibir este cambio", salida.stderr)
        destino = self.extraer(self.paquete(), self.base / "x")
        self.assertEqual(arbol(destino), arbol(self.garza))

    def test_un_permiso_de_ejecucion_distinto_es_otro_contenido(self):
        self.publicar()
        (self.garza / "datos/uno.txt").chmod(0o755)
        self.exigir_falla(Codigo.YA_PUBLICADA, *self.argumentos())

    def test_avisa_de_lo_que_la_actualizacion_no_puede_hacer(self):
        self.armar("Garza", {"datos/viejo.txt": b"x", "ayuda": b"x", "temas/a.txt": b"x"})
        self.publicar("1.0")
        for nombre in ("datos/viejo.txt", "ayuda"):
            (self.garza / nombre).unlink()
        shutil.rmtree(self.garza / "temas")
        self.armar("Garza", {"ayuda/indice.txt": b"x", "temas": b"x"})
        salida = self.publicar("1.1")
        self.assertIn("va a fallar: ayuda, temas.", salida.stderr)
        self.assertIn("no los borra: ayuda, datos/viejo.txt, temas/a.txt.", salida.stderr)

    def test_lo_que_ya_no_esta_no_se_compara_con_un_paquete_que_falta(self):
        self.publicar("1.0")
        self.paquete("1.0").unlink()
        self.assertEqual(self.publicar("1.1").stderr, "")


class PruebaApuntar(PruebaDePublicar):
    def apuntar(self, version, *mas):
        return ["apuntar", "--componente", "garza", "--version", version,
                "--servidor", self.servidor, *mas]

    def setUp(self):
        super().setUp()
        self.publicar("1.0")
        self.armar("Garza", {"datos/dos.txt": b"dos"})
        self.publicar("1.1")

    def test_vuelve_a_una_version_publicada(self):
        salida = self.correr(*self.apuntar("1.0"))
        self.assertEqual(salida.returncode, 0, salida.stderr)
        self.assertIn("garza 1.1 → 1.0", salida.stdout)
        self.assertEqual(self.manifiesto(), {"garza": "1.0"})

    def test_no_apunta_a_un_paquete_que_falta_o_esta_danado(self):
        self.exigir_falla(Codigo.PAQUETE, *self.apuntar("0.9"), menciona=("No existe",))
        self.paquete("1.0").write_bytes(self.paquete("1.0").read_bytes()[:-1])
        self.exigir_falla(Codigo.PAQUETE, *self.apuntar("1.0"), menciona=("dañado",))

    def test_un_aula_prueba_con_otro_manifiesto_y_los_mismos_paquetes(self):
        self.armar("Garza", {"datos/tres.txt": b"tres"})
        self.publicar("2.0", "--manifiesto", "manifiesto-aula5.json")
        self.assertEqual(self.manifiesto(), {"garza": "1.1"})
        self.assertEqual(self.manifiesto("manifiesto-aula5.json"), {"garza": "2.0"})
        self.assertEqual(self.correr(*self.apuntar("2.0")).returncode, 0)
        self.assertEqual(self.manifiesto(), {"garza": "2.0"})

    def test_avisa_si_el_paquete_es_parcial(self):
        self.armar("Garza", {"datos/tres.txt": b"tres"})
        self.publicar("1.2", "--desde-version", "1.1")
        self.assertEqual(self.correr(*self.apuntar("1.0")).stderr, "")
        self.assertIn("solo donde hay garza 1.1", self.correr(*self.apuntar("1.2")).stderr)


class PruebaRevisar(PruebaDePublicar):
    def revisar(self):
        return self.correr("revisar", "--servidor", self.servidor)

    def test_todo_bien(self):
        self.publicar()
        salida = self.revisar()
        self.assertEqual((salida.returncode, salida.stdout), (0, "garza 1.5.0: bien\n"))

    def test_senala_cada_cosa_que_esta_mal(self):
        self.publicar()
        carpeta = self.armar("Ceibo", {"ceibo.exe": b"x" * 1000})
        self.publicar(componente="ceibo", carpeta=carpeta)
        self.paquete(componente="ceibo").write_bytes(b"PK")
        versiones = self.manifiesto() | {"tordo": "1", "nandu": 2, "colibri": "1", "zorzal": "a/b"}
        (self.servidor / "manifiesto.json").write_text(json.dumps(versiones), encoding="utf-8")
        salida = self.revisar()
        self.assertEqual(salida.returncode, Codigo.PAQUETE)
        renglones = dict(r.split(": ", 1) for r in salida.stdout.splitlines())
        self.assertEqual(renglones["garza 1.5.0"], "bien")
        self.assertIn("dañado", renglones["ceibo 1.5.0"])
        self.assertIn("No existe", renglones["tordo 1"])
        self.assertIn("no es un texto", renglones["nandu 2"])
        self.assertIn("ningún lanzador", renglones["colibri 1"])
        self.assertIn("no sirve", renglones["zorzal a/b"])
        self.assertIn("hay que arreglar 5", salida.stderr)

    def test_sin_manifiesto(self):
        self.exigir_falla(Codigo.MANIFIESTO, "revisar", "--servidor", self.servidor)


class PruebaVersiones(PruebaDePublicar):
    def setUp(self):
        super().setUp()
        self.publicar("1.5.0")
        self.salida = self.base / "versiones.json"

    def versiones(self, *instalados):
        return ["versiones", "--manifiesto", self.servidor / "manifiesto.json",
                "--salida", self.salida, *instalados]

    def test_toma_del_manifiesto_las_versiones_que_no_se_dicen(self):
        salida = self.correr(*self.versiones("launcher=2.1.0", "garza", "ceibo=1=a"))
        self.assertEqual(salida.returncode, 0, salida.stderr)
        self.assertEqual(json.loads(self.salida.read_text(encoding="utf-8")),
                         {"ceibo": "1=a", "garza": "1.5.0", "launcher": "2.1.0"})

    def test_sin_manifiesto_hay_que_decirlas_todas(self):
        orden = ["versiones", "--salida", self.salida]
        self.exigir_falla(Codigo.VERSIONES, *orden, "garza", menciona=("garza=VERSIÓN",))
        self.assertEqual(self.correr(*orden, "garza=1").returncode, 0)

    def test_no_adivina(self):
        self.exigir_falla(Codigo.VERSIONES, *self.versiones("ceibo"))
        self.exigir_falla(Codigo.VERSIONES, *self.versiones("garza", "garza=1"))
        self.exigir_falla(Codigo.COMPONENTE, *self.versiones("Garza=1"))
        self.exigir_falla(Codigo.VERSION, *self.versiones("garza="))

    def test_no_pisa_lo_que_anota_una_instalacion(self):
        self.salida.write_text("{}", encoding="utf-8")
        self.exigir_falla(Codigo.VERSIONES, *self.versiones("garza"), menciona=("--reemplazar",))
        self.assertEqual(self.correr(*self.versiones("garza", "--reemplazar")).returncode, 0)
        self.assertEqual(json.loads(self.salida.read_text(encoding="utf-8")), {"garza": "1.5.0"})

    def test_la_carpeta_de_la_salida_no_existe(self):
        self.salida = self.base / "no/versiones.json"
        self.exigir_falla(Codigo.CARPETA, *self.versiones("garza"))


if __name__ == "__main__":
    unittest.main()
