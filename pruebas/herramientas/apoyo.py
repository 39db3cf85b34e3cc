"""Lo que comparten las pruebas de las herramientas: carpetas temporales y la herramienta misma."""

import json
import os
import subprocess
import sys
import tempfile
import unittest
import zipfile
from pathlib import Path

RAIZ = Path(__file__).resolve().parents[2]
PUBLICAR = RAIZ / "herramientas/publicar"
POWERSHELL = RAIZ / "ejemplos/powershell/powershell.exe"

sys.dont_write_bytecode = True
sys.path.insert(0, str(PUBLICAR.parent))

# Nombres que un paquete tiene que llevar y traer iguales.
NOMBRES = ("Canción del ñandú 2.txt", "a b/ç 漢字.txt", "emoji 🎨.png", "datos/ÁÉÍ/ñ'ñ.dat",
           "con espacios/y $signos & más (1).txt")


class PruebaDePublicar(unittest.TestCase):
    """Cada prueba tiene una carpeta propia, con la del servidor y la de Garza instalada."""

    def setUp(self):
        temporal = tempfile.TemporaryDirectory(prefix="publicar-")
        self.addCleanup(temporal.cleanup)
        self.base = Path(temporal.name)
        self.servidor = self.base / "servidor"
        self.servidor.mkdir()
        self.garza = self.armar("Garza", {"garza.exe": b"MZ garza", "datos/uno.txt": b"uno"})

    def armar(self, carpeta, archivos):
        """Agrega a una carpeta esos archivos; los ".exe" se pueden ejecutar."""
        raiz = self.base / carpeta
        for nombre, contenido in archivos.items():
            ruta = raiz / nombre
            ruta.parent.mkdir(parents=True, exist_ok=True)
            ruta.write_bytes(contenido)
            ruta.chmod(0o755 if nombre.endswith(".exe") else 0o644)
        return raiz

    def correr(self, *argumentos, delante=(), **opciones):
        """Corre la herramienta; `delante` es la orden que la envuelve, si hay."""
        return subprocess.run([*delante, sys.executable, "-B", PUBLICAR, *argumentos],
                              capture_output=True, encoding="utf-8", timeout=60, check=False,
                              **opciones)

    def argumentos(self, version="1.5.0", *mas, componente="garza", carpeta=None):
        return ["paquete", "--componente", componente, "--version", version,
                "--carpeta", carpeta or self.garza, "--servidor", self.servidor, *mas]

    def publicar(self, *argumentos, **opciones):
        """Publica y exige que salga bien."""
        salida = self.correr(*self.argumentos(*argumentos, **opciones))
        self.assertEqual(salida.returncode, 0, salida.stderr)
        return salida

    def exigir_falla(self, codigo, *argumentos, menciona=(), **opciones):
        """La orden da ese código, lo explica en un renglón y no cambia nada."""
        antes = arbol(self.base)
        salida = self.correr(*argumentos, **opciones)
        self.assertEqual(salida.returncode, codigo, salida.stderr)
        errores = [r for r in salida.stderr.splitlines() if not r.startswith("Aviso: ")]
        self.assertEqual(len(errores), 1, salida.stderr)
        self.assertTrue(errores[0].startswith("publicar: error: "), salida.stderr)
        for texto in menciona:
            self.assertIn(texto, errores[0])
        self.assertEqual(arbol(self.base), antes)
        return salida

    def manifiesto(self, nombre="manifiesto.json"):
        return json.loads((self.servidor / nombre).read_text(encoding="utf-8"))

    def paquete(self, version="1.5.0", componente="garza"):
        return self.servidor / "paquetes" / f"{componente}-{version}.zip"

    def nombres(self, *de_paquete, **opciones):
        with zipfile.ZipFile(self.paquete(*de_paquete, **opciones)) as paquete:
            return paquete.namelist()

    def extraer(self, paquete, destino):
        """Lo extrae con la orden del lanzador."""
        orden = f"Expand-Archive -LiteralPath '{paquete}' -DestinationPath '{destino}' -Force"
        subprocess.run([POWERSHELL, "-NoProfile", "-NonInteractive", "-Command", orden], check=True)
        return destino


def arbol(carpeta):
    """Lo que hay bajo una carpeta, para comparar. No cuenta el candado ni una "paquetes" vacía."""
    hallado = {}
    for ruta in sorted(carpeta.rglob("*")):
        relativa = str(ruta.relative_to(carpeta))
        if ruta.is_symlink():
            hallado[relativa] = os.readlink(ruta)
        elif ruta.is_file() and ruta.name != ".publicar.candado":
            estado = ruta.stat()
            contenido = ruta.read_bytes() if estado.st_size < 1 << 20 else estado.st_size
            hallado[relativa] = (contenido, bool(estado.st_mode & 0o100))
    return hallado


def restos(carpeta):
    """Archivos provisorios que quedaron."""
    return [ruta.name for ruta in carpeta.rglob(".*") if ruta.name != ".publicar.candado"]
