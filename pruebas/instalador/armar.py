"""Arma los dos instaladores de las pruebas: el de esta versión y el de una anterior.

  armar.py COMPILACIÓN QT VERSIÓN DESTINO
"""

import shutil
import subprocess
import sys
from pathlib import Path

RAIZ = Path(__file__).resolve().parents[2]
VIEJA = "0.9.0"
# Lo que traía la versión anterior y esta no, y lo que no traía.
SOLO_EN_LA_VIEJA = ("Qt6Svg.dll", "shared/notas.txt")
SOLO_EN_LA_NUEVA = "tls"


def armar(compilacion, qt, version, destino):
    shutil.rmtree(destino, ignore_errors=True)
    destino.mkdir(parents=True)
    nueva, vieja = destino / version, destino / VIEJA
    subprocess.run([RAIZ / "para_windows/armar_portatil", compilacion, qt, nueva,
                    destino / "simbolos"], check=True)
    shutil.copytree(nueva, vieja)
    shutil.rmtree(vieja / SOLO_EN_LA_NUEVA)
    for nombre in SOLO_EN_LA_VIEJA:
        (vieja / nombre).write_text("de la versión anterior", encoding="utf-8")
    with open(vieja / "quillay.exe", "ab") as ejecutable:
        ejecutable.write(b"la anterior")

    preparador = compilacion / "para_windows/instalador/preparar_instalacion.exe"
    for carpeta, rapido in ((nueva, []), (vieja, ["--rapido"])):
        subprocess.run([RAIZ / "para_windows/armar_instalador", *rapido, carpeta, preparador,
                        carpeta.name, destino / f"{carpeta.name}.exe"], check=True)


if __name__ == "__main__":
    armar(Path(sys.argv[1]), Path(sys.argv[2]), sys.argv[3], Path(sys.argv[4]))
