"""Lo que la herramienta y la documentación dicen igual que el lanzador y entre sí."""

import re
import shlex
import unittest

from apoyo import RAIZ
from publicacion.catalogo import CARPETAS
from publicacion.opciones import opciones
from publicacion.problemas import Codigo

DOCUMENTO = (RAIZ / "docs/publicar.md").read_text(encoding="utf-8")


class PruebaCoincidencias(unittest.TestCase):
    def test_el_catalogo_es_el_del_lanzador(self):
        fuente = (RAIZ / "ombu/apps_registro.cpp").read_text(encoding="utf-8")
        apps = re.findall(r'app\(u"(\w+)"_s,\s*u"[^"]+"_s,\s*u"#\w+"_s,\s*u"#\w+"_s,\s*u"(\w+)"_s',
                          fuente)
        self.assertEqual(len(apps), 8)
        self.assertEqual(dict(apps), CARPETAS)
        self.assertIn('id + ".exe"_L1', fuente)

    def test_la_documentacion_tiene_todos_los_codigos(self):
        tabla = DOCUMENTO.split("## Códigos de salida")[1]
        codigos = {int(codigo) for codigo in re.findall(r"^\| (\d+) \|", tabla, re.M)}
        self.assertEqual(codigos, {int(codigo) for codigo in Codigo} | {2, 130})

    def test_las_ordenes_de_la_documentacion_se_entienden(self):
        bloques = re.findall(r"```sh\n(.*?)```", DOCUMENTO, re.S)
        renglones = "".join(bloques).replace("\\\n", " ").splitlines()
        self.assertGreaterEqual(len(renglones), 7)
        for renglon in renglones:
            programa, *argumentos = shlex.split(renglon)
            self.assertEqual(programa, "herramientas/publicar")
            self.assertTrue(callable(opciones().parse_args(argumentos).orden), renglon)

    def test_los_mensajes_de_la_documentacion_son_los_del_lanzador(self):
        fuente = (RAIZ / "quillay/actualizador.cpp").read_text(encoding="utf-8")
        mensajes = re.findall(r"^\| (No se pudo [^|…]+)…", DOCUMENTO, re.M)
        self.assertEqual(len(mensajes), 4)
        for mensaje in mensajes:
            self.assertIn(f'tr("{mensaje}', fuente)


if __name__ == "__main__":
    unittest.main()
