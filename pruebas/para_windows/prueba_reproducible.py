#!/usr/bin/env python3
"""Lo que se publica no depende de la carpeta ni de la hora en que se compila."""

import argparse
import shutil
import subprocess
import tempfile
from pathlib import Path

RAIZ = Path(__file__).resolve().parents[2]


def copiar_fuentes(destino):
    """Los archivos del proyecto tal como están ahora, sin lo que se compiló."""
    lista = subprocess.run(["git", "-C", RAIZ, "ls-files", "-z", "--cached", "--others",
                            "--exclude-standard"], capture_output=True, text=True, check=True)
    for nombre in filter(None, lista.stdout.split("\0")):
        if (RAIZ / nombre).is_file():
            (destino / nombre).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(RAIZ / nombre, destino / nombre)


def main():
    opciones = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    opciones.add_argument("publicado", type=Path, help="la carpeta que deja ./windows")
    pedido = opciones.parse_args()

    with tempfile.TemporaryDirectory(prefix="otra carpeta, con ñ ") as carpeta:
        copia = Path(carpeta) / "quillay"
        copiar_fuentes(copia)
        subprocess.run([copia / "windows", "-DQUILLAY_PRUEBAS=OFF"], check=True)
        esta = (pedido.publicado / "SHA256SUMS").read_text()
        otra = (copia / "build/windows/SHA256SUMS").read_text()
    assert esta == otra, f"dos compilaciones iguales dieron distinto:\n{esta}\n{otra}"


if __name__ == "__main__":
    main()
