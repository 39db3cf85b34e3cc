#!/usr/bin/env python3
"""La carpeta portátil: qué lleva, de qué depende y cómo está hecho su ejecutable."""

import argparse
import re
import subprocess
import sys
import unittest
from pathlib import Path

from binarios import encabezado, importadas, secciones

CONTENIDO = {
    "quillay.exe",
    "Qt6Core.dll", "Qt6Gui.dll", "Qt6Network.dll", "Qt6Widgets.dll",
    "libgcc_s_seh-1.dll", "libstdc++-6.dll", "libwinpthread-1.dll",
    "platforms/qwindows.dll", "styles/qwindowsvistastyle.dll", "tls/qschannelbackend.dll",
    "shared/translations/qtbase_es.qm",
    *(f"licencias/{nombre}.txt"
      for nombre in ("quillay", "qt", "gcc", "mingw-w64", "LGPL-3", "GPL-3")),
}
# Lo que trae todo Windows 10 de 64 bits y usan Quillay y Qt.
DE_WINDOWS = set("""
    advapi32.dll api-ms-win-core-synch-l1-2-0.dll api-ms-win-core-winrt-l1-1-0.dll
    api-ms-win-core-winrt-string-l1-1-0.dll authz.dll bcrypt.dll comdlg32.dll crypt32.dll
    d3d11.dll d3d9.dll dnsapi.dll dwmapi.dll dwrite.dll dxgi.dll gdi32.dll imm32.dll iphlpapi.dll
    kernel32.dll mpr.dll msvcrt.dll netapi32.dll ole32.dll oleaut32.dll secur32.dll shcore.dll
    shell32.dll shlwapi.dll user32.dll userenv.dll uxtheme.dll version.dll winhttp.dll winmm.dll
    ws2_32.dll wtsapi32.dll
""".split())
MAXIMO_BYTES = 30 * 1024 * 1024


class Portatil(unittest.TestCase):
    carpeta = None

    def setUp(self):
        self.ejecutable = self.carpeta / "quillay.exe"
        self.binarios = [r for r in self.carpeta.rglob("*") if r.suffix in (".exe", ".dll")]

    def test_lleva_exactamente_lo_que_hace_falta(self):
        archivos = {str(r.relative_to(self.carpeta)) for r in self.carpeta.rglob("*")
                    if r.is_file()}
        self.assertEqual(archivos, CONTENIDO)

    def test_lo_que_importa_esta_en_la_carpeta_o_es_de_windows(self):
        propias = {r.name.lower() for r in self.carpeta.glob("*.dll")}
        for binario in self.binarios:
            with self.subTest(binario.name):
                self.assertEqual(importadas(binario) - propias - DE_WINDOWS, set())

    def test_no_hay_bibliotecas_que_nadie_importe(self):
        pedidas = set().union(*map(importadas, self.binarios))
        self.assertEqual({r.name for r in self.carpeta.glob("*.dll")
                          if r.name.lower() not in pedidas}, set())

    def test_no_lleva_simbolos_de_depuracion(self):
        for binario in self.binarios:
            with self.subTest(binario.name):
                self.assertEqual([s for s in secciones(binario) if "debug" in s], [])

    def test_ocupa_lo_previsto(self):
        ocupado = sum(r.stat().st_size for r in self.carpeta.rglob("*") if r.is_file())
        self.assertLessEqual(ocupado, MAXIMO_BYTES)

    def test_el_ejecutable_es_de_ventanas_y_no_de_consola(self):
        self.assertRegex(encabezado(self.ejecutable), r"Subsystem\s+0+2\s+\(Windows GUI\)")

    def test_cada_binario_se_carga_en_direcciones_al_azar_y_no_ejecuta_datos(self):
        for binario in self.binarios:
            with self.subTest(binario.name):
                rasgos = encabezado(binario)
                for rasgo in ("HIGH_ENTROPY_VA", "DYNAMIC_BASE", "NX_COMPAT"):
                    self.assertIn(rasgo, rasgos)

    def test_los_recursos_dicen_que_es_y_como_se_corre(self):
        contenido = self.ejecutable.read_bytes()
        for texto in ("Quillay", "Lumbre", "ProductVersion", "CompanyName"):
            self.assertIn(texto.encode("utf-16-le"), contenido)
        manifiesto = re.search(rb"<assembly.*?</assembly>", contenido, re.DOTALL).group().decode()
        for rasgo in ('level="asInvoker"', "longPathAware", "PerMonitorV2",
                      "Microsoft.Windows.Common-Controls", "{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"):
            self.assertIn(rasgo, manifiesto)

    def test_el_icono_tiene_todos_los_tamanos(self):
        salida = subprocess.run(["identify", "-format", "%w ", ICONO], capture_output=True,
                                text=True, check=True).stdout
        self.assertTrue({16, 24, 32, 48, 256} <= set(map(int, salida.split())), salida)
        # En el ejecutable van enteros, imagen por imagen.
        cabecera = ICONO.read_bytes()
        largo, comienzo = (int.from_bytes(cabecera[n:n + 4], "little") for n in (14, 18))
        self.assertIn(cabecera[comienzo:comienzo + largo], self.ejecutable.read_bytes())


ICONO = Path(__file__).resolve().parents[2] / "para_windows/quillay.ico"

if __name__ == "__main__":
    opciones = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    opciones.add_argument("portatil", type=Path)
    pedido, resto = opciones.parse_known_args()
    Portatil.carpeta = pedido.portatil
    unittest.main(argv=[sys.argv[0], *resto])
