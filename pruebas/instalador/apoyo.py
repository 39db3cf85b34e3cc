"""Lo que comparten las pruebas del instalador: una computadora con Windows para cada una.

Los instaladores están en la carpeta QUILLAY_INSTALADORES, que hizo armar.py.
"""

import hashlib
import json
import os
import subprocess
import sys
import tempfile
import unittest
from functools import partial
from pathlib import Path

from armar import VIEJA

sys.dont_write_bytecode = True

RAIZ = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(RAIZ / "pruebas/recorrido"))
import espera  # noqa: E402

# Instalar lleva más que mostrar una pantalla.
esperar = partial(espera.esperar, plazo=60)

CON_WINE = RAIZ / "para_windows/con_wine"
INSTALADORES = Path(os.environ["QUILLAY_INSTALADORES"])
SIN_ADMINISTRADOR = os.environ["QUILLAY_SIN_ADMINISTRADOR"]
VERSION = os.environ["QUILLAY_VERSION"]

# Los códigos de salida, como están en docs/instalacion.md.
LISTO, PARAMETROS, SIN_PERMISOS, CARPETA, SIN_LUGAR, NO_SE_PUDO_ESCRIBIR = 0, 3, 4, 5, 6, 7
OTRO_INSTALADOR, SIN_PERMISOS_COMUNES = 9, 10

TODOS = r"C:\Lumbre\Quillay"
PROPIA = r"C:\users\{}\AppData\Local\Programs\Quillay"
CLAVE = r"Software\Microsoft\Windows\CurrentVersion\Uninstall\Quillay"
DESINSTALADOR = "desinstalar.exe"
PROPIOS = {"config.json", "versiones.json", DESINSTALADOR}


class PruebaDeInstalador(unittest.TestCase):
    """Cada prueba tiene su computadora, que se borra al terminar."""

    maxDiff = None
    delante = ()  # la orden que envuelve a cada programa de Windows, si hay

    def setUp(self):
        temporal = tempfile.TemporaryDirectory(prefix="computadora-", ignore_cleanup_errors=True)
        self.addCleanup(temporal.cleanup)
        self.prefijo = Path(temporal.name, "wine")
        self.addCleanup(self.apagar)
        self.correr("cmd", "/c", "exit 0")
        self.cuenta = next(ruta.name for ruta in self.en_windows(r"C:\users").iterdir()
                           if ruta.name != "Public")

    def apagar(self):
        subprocess.run([CON_WINE, "--apagar"], env=self.entorno(), check=False)

    def entorno(self):
        return os.environ | {"QUILLAY_WINEPREFIX": str(self.prefijo)}

    def iniciar(self, *orden):
        """Empieza un programa de Windows; al terminar la prueba se termina."""
        proceso = subprocess.Popen([*self.delante, CON_WINE, *orden], env=self.entorno(),
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(proceso.wait)
        self.addCleanup(proceso.kill)
        return proceso

    def correr(self, *orden):
        """Corre un programa de Windows y da su código de salida."""
        return self.iniciar(*orden).wait(timeout=120)

    def correr_escrito(self, orden):
        """Corre una orden tal como está escrita, sin que nadie le agregue comillas."""
        guion = self.en_windows(r"C:\windows\orden.cmd")
        guion.write_bytes(f"start /wait \"\" {orden}\r\nexit %ERRORLEVEL%\r\n".encode())
        return self.correr("cmd", "/c", r"C:\windows\orden.cmd")

    def en_windows(self, ruta):
        """Dónde está acá la ruta "C:\\..." de esa computadora."""
        unidad, _, resto = ruta.partition("\\")
        return self.prefijo / "dosdevices" / unidad.lower() / resto.replace("\\", "/")

    @staticmethod
    def desde_windows(ruta):
        """Cómo se llama en Windows un archivo de esta computadora."""
        return "Z:" + str(ruta).replace("/", "\\")

    @property
    def propia(self):
        """La carpeta de una instalación para una sola cuenta."""
        return PROPIA.format(self.cuenta)

    @property
    def datos(self):
        return self.en_windows(r"C:\ProgramData\Lumbre")

    def instalar(self, *parametros, version=VERSION, codigo=LISTO):
        """Corre el instalador sin ventanas y exige que termine con ese código."""
        salida = self.correr(INSTALADORES / f"{version}.exe", "/S", *parametros)
        self.assertEqual(salida, codigo)

    def instalar_vieja(self, *parametros):
        self.instalar(*parametros, version=VIEJA)

    def desinstalar(self, *parametros, carpeta=TODOS):
        """Desinstala sin ventanas y espera a que termine: lo hace una copia del desinstalador."""
        programa = self.en_windows(carpeta) / DESINSTALADOR
        self.correr(programa, "/S", *parametros)
        esperar("el final de la desinstalación", lambda: not programa.exists())

    def desinstalar_en_el_lugar(self, *parametros, carpeta=TODOS):
        """Desinstala sin la copia y da el código de salida; el desinstalador queda."""
        programa = self.en_windows(carpeta) / DESINSTALADOR
        return self.correr(programa, "/S", *parametros, f"_?={carpeta}")

    def exigir_igual(self, antes):
        """La computadora está como `antes`; le da tiempo a una desinstalación para terminar."""
        try:
            esperar("lo de antes", lambda: self.todo() == antes, plazo=5)
        except AssertionError:
            self.assertEqual(self.todo(), antes)

    def exigir_intacto(self, *parametros, codigo):
        """Ese pedido da ese código y no cambia nada de la computadora."""
        antes = self.todo()
        self.instalar(*parametros, codigo=codigo)
        self.assertEqual(self.todo(), antes)

    def exigir_instalado(self, carpeta=TODOS, version=VERSION, ademas=()):
        """En `carpeta` está la versión portátil, lo que agrega el instalador y nada más."""
        esperado = arbol(INSTALADORES / version)
        instalado = arbol(self.en_windows(carpeta))
        self.assertEqual(set(instalado), set(esperado) | PROPIOS | set(ademas))
        self.assertEqual({nombre: instalado[nombre] for nombre in esperado}, esperado)
        self.assertEqual(self.json(carpeta, "versiones.json")["launcher"], version)

    def todo(self):
        """Todos los archivos y carpetas de la computadora, sin los que venían con wine."""
        raiz = self.en_windows("C:")
        hallado = {}
        for carpeta, _, archivos in os.walk(raiz):
            relativa = Path(carpeta).relative_to(raiz)
            if relativa.parts[:1] == ("windows",) or "Temp" in relativa.parts:
                continue
            hallado[f"{relativa}/"] = None
            hallado |= {str(relativa / nombre): suma(Path(carpeta, nombre))
                        for nombre in archivos if not de_wine(Path(carpeta, nombre))}
        return hallado

    def json(self, carpeta, nombre):
        return json.loads((self.en_windows(carpeta) / nombre).read_bytes())

    def escribir_json(self, carpeta, nombre, objeto):
        ruta = self.en_windows(carpeta) / nombre
        ruta.parent.mkdir(parents=True, exist_ok=True)
        ruta.write_text(json.dumps(objeto), encoding="utf-8")

    def registro(self, raiz="HKLM"):
        """Los valores con que Quillay figura entre las aplicaciones instaladas."""
        salida = self.en_windows(r"C:\registro.txt")
        self.correr("cmd", "/c", rf"reg query {raiz}\{CLAVE} > C:\registro.txt 2>nul")
        renglones = salida.read_text(encoding="cp437", errors="replace").splitlines()
        salida.unlink()
        partes = (renglon.split(None, 2) for renglon in renglones if renglon.startswith("    "))
        return {nombre: valor for nombre, _, valor in partes}

    def menu(self, carpeta=r"C:\ProgramData"):
        return self.en_windows(carpeta + r"\Microsoft\Windows\Start Menu\Programs\Quillay.lnk")

    def menu_propio(self):
        return self.menu(rf"C:\users\{self.cuenta}\AppData\Roaming")

    def abrir_quillay(self, carpeta=TODOS):
        """Abre lo instalado y espera su ventana."""
        proceso = self.iniciar(self.en_windows(carpeta) / "quillay.exe")
        self.esperar_ventana("^Quillay$")
        return proceso

    def esperar_ventana(self, titulo):
        return esperar(f"la ventana {titulo}", lambda: self.ventana(titulo))

    def ventana(self, titulo):
        busqueda = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", titulo],
                                  capture_output=True, text=True, check=False)
        return busqueda.stdout.split()[0] if busqueda.stdout else None


def arbol(carpeta):
    """Los archivos de una carpeta y sus subcarpetas, con la suma de su contenido."""
    return {str(ruta.relative_to(carpeta)): suma(ruta)
            for ruta in sorted(carpeta.rglob("*")) if ruta.is_file()}


def suma(ruta):
    return hashlib.sha256(ruta.read_bytes()).hexdigest()[:16]


def de_wine(ruta):
    """Si es un archivo compartido por enlaces con las demás computadoras."""
    return ruta.is_symlink() or ruta.stat().st_nlink > 1
