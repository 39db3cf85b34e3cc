"""Una publicación cortada en cualquier escritura, y dos a la vez."""

import fcntl
import itertools
import json
import os
import re
import shutil
import signal
import subprocess
import sys
import unittest
import zipfile

from apoyo import PUBLICAR, PruebaDePublicar, arbol, restos

ESCRITURAS = ("mkdir", "chmod", "write", "fchmod", "fsync", "rename", "unlink")
ERRORES = {"write": "ENOSPC", "fsync": "EIO", "rename": "EACCES", "mkdir": "ENOSPC",
           "fchmod": "EPERM"}


class PruebaCortes(PruebaDePublicar):
    """Cuenta las escrituras de una publicación y la repite interrumpida en cada una."""

    def setUp(self):
        super().setUp()
        self.armar("Garza", {"datos/uno.txt": os.urandom(30_000)})
        self.armar("Garza", {"datos/cambia.txt": b"antes"})
        self.vuelta = itertools.count()

    def preparar(self, antes):
        """Deja publicada la versión `antes`, si hay, y Garza lista para publicar otra."""
        if antes:
            self.publicar(antes)
        self.armar("Garza", {"datos/cambia.txt": b"despues"})
        self.plantilla = self.servidor

    def estrenar_servidor(self):
        """Uno nuevo, como lo dejó preparar()."""
        self.servidor = self.base / f"servidor-{next(self.vuelta)}"
        shutil.copytree(self.plantilla, self.servidor)

    def contar(self, argumentos):
        """Cuántas veces se hace cada llamada al sistema de ESCRITURAS."""
        self.estrenar_servidor()
        cuentas = self.base / "cuentas"
        salida = self.correr(*self.argumentos(*argumentos), delante=(
            "strace", "-f", "-o", cuentas, "-e", f"trace={','.join(ESCRITURAS)}"))
        self.assertEqual(salida.returncode, 0, salida.stderr)
        llamadas = re.findall(r"^\d+ +(\w+)\(", cuentas.read_text(errors="replace"), re.M)
        self.esperado = arbol(self.servidor)
        self.assertGreaterEqual(llamadas.count("write"), 3)
        self.assertGreaterEqual(llamadas.count("rename"), 1)
        return {nombre: llamadas.count(nombre) for nombre in ESCRITURAS}

    def interrumpir(self, argumentos, llamada, inyeccion):
        """Publica en un servidor nuevo con esa falla; da lo que había antes y cómo terminó."""
        self.estrenar_servidor()
        previo = arbol(self.servidor)
        salida = self.correr(*self.argumentos(*argumentos), delante=(
            "strace", "-f", "-qq", "-o", "/dev/null", "-e", f"trace={llamada}",
            "-e", f"inject={llamada}:{inyeccion}"))
        return previo, salida

    def exigir_todo_entero(self, previo):
        """El manifiesto es el de antes o el de después, y lo que nombra está completo."""
        ruta = self.servidor / "manifiesto.json"
        antes = json.loads(previo["manifiesto.json"][0]) if previo else None
        actual = json.loads(ruta.read_text(encoding="utf-8")) if ruta.exists() else None
        self.assertIn(actual, (antes, {"garza": self.version}))
        for version in (actual or {}).values():
            with zipfile.ZipFile(self.paquete(version)) as paquete:
                self.assertIsNone(paquete.testzip())
                self.assertIn("garza.exe", paquete.namelist())
        for ruta in self.servidor.glob("paquetes/[!.]*"):
            with zipfile.ZipFile(ruta) as paquete:
                self.assertIsNone(paquete.testzip())

    def exigir_que_se_complete(self, argumentos):
        self.publicar(*argumentos)
        self.assertEqual(arbol(self.servidor), self.esperado)
        self.assertEqual(restos(self.servidor), [])

    def recorrer(self, antes, *argumentos):
        self.version = argumentos[0]
        self.preparar(antes)
        for llamada, veces in self.contar(argumentos).items():
            for vez in range(1, veces + 1):
                with self.subTest(mata_en=llamada, vez=vez):
                    self.matar(argumentos, llamada, vez)
                if llamada in ERRORES:
                    with self.subTest(falla=llamada, vez=vez):
                        self.fallar(argumentos, llamada, vez)

    def matar(self, argumentos, llamada, vez):
        previo, salida = self.interrumpir(argumentos, llamada, f"signal=KILL:when={vez}")
        self.assertEqual(salida.returncode, -signal.SIGKILL)
        self.exigir_todo_entero(previo)
        self.exigir_que_se_complete(argumentos)

    def fallar(self, argumentos, llamada, vez):
        previo, salida = self.interrumpir(argumentos, llamada,
                                          f"error={ERRORES[llamada]}:when={vez}")
        self.assertNotEqual(salida.returncode, 0)
        self.assertNotIn("Traceback", salida.stderr)
        self.assertEqual(restos(self.servidor), [])
        self.exigir_todo_entero(previo)
        self.exigir_que_se_complete(argumentos)

    def test_la_primera_publicacion(self):
        self.recorrer(None, "1.1")

    def test_una_version_nueva(self):
        self.recorrer("1.0", "1.1")

    def test_el_reemplazo_de_una_version(self):
        self.recorrer("1.1", "1.1", "--reemplazar")

    def test_una_interrupcion_amable_no_deja_restos(self):
        self.preparar("1.0")
        for senal in ("INT", "TERM", "HUP"):
            with self.subTest(senal=senal):
                previo, salida = self.interrumpir(("1.1",), "write", f"signal={senal}:when=2")
                self.assertEqual(salida.returncode, 130)
                self.assertEqual(salida.stderr, "publicar: error: interrumpido\n")
                self.assertEqual(arbol(self.servidor), previo)


class PruebaDosALaVez(PruebaDePublicar):
    def test_varios_que_publican_a_la_vez_quedan_todos_en_el_manifiesto(self):
        ids = ("ceibo", "garza", "hornero", "zorzal", "benteveo", "tordo")
        procesos = []
        for componente in ids:
            carpeta = self.armar(componente, {f"{componente}.exe": os.urandom(100_000)})
            argumentos = self.argumentos(componente=componente, carpeta=carpeta)
            procesos.append(subprocess.Popen([sys.executable, "-B", PUBLICAR, *argumentos],
                                             stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        for proceso in procesos:
            self.assertEqual(proceso.wait(60), 0)
        self.assertEqual(self.manifiesto(), dict.fromkeys(ids, "1.5.0"))
        self.assertEqual(self.correr("revisar", "--servidor", self.servidor).returncode, 0)

    def test_el_segundo_espera_y_lo_dice(self):
        self.publicar("1.0")
        with open(self.servidor / ".publicar.candado", "rb") as candado:
            fcntl.flock(candado, fcntl.LOCK_EX)
            proceso = subprocess.Popen([sys.executable, "-B", PUBLICAR, *self.argumentos("1.1")],
                                       stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
            self.addCleanup(proceso.kill)
            self.assertIn("Espero", proceso.stderr.readline())
            self.assertEqual(self.manifiesto(), {"garza": "1.0"})
        with proceso.stderr:
            self.assertEqual(proceso.wait(60), 0)
        self.assertEqual(self.manifiesto(), {"garza": "1.1"})


if __name__ == "__main__":
    unittest.main()
