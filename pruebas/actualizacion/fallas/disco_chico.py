#!/usr/bin/env python3
"""Una actualización en un disco de verdad al que le falta lugar, de a poco, hasta que alcanza.

El disco es un tmpfs montado para este proceso solo. Donde no se puede montar, la prueba se saltea.
"""

import ctypes
import os
import subprocess
import sys
import tempfile
from collections import Counter
from pathlib import Path

from escuela import Computadora, Programas, Servidor
from revision import Revision, completar, exigir

SALTEADA = 77
LIBC = ctypes.CDLL(None)
REMONTAR = 32  # MS_REMOUNT
PAGINA = 4096
PASO = 1  # Páginas de más en cada vuelta.
DE_SOBRA = "64m"


def montar(disco, tamano, modo=0):
    """Llama al sistema: la orden mount, sin ser root, no deja cambiar un tmpfs ya montado."""
    return LIBC.mount(b"tmpfs", os.fsencode(disco), b"tmpfs", modo, f"size={tamano}".encode()) == 0


def dar_lugar(disco, tamano):
    exigir(montar(disco, tamano, REMONTAR), "no se pudo cambiar el tamaño del disco")


def con_lugar(computadora, paginas):
    """Una actualización con esas páginas libres; da los motivos de las fallas."""
    dar_lugar(computadora.base, DE_SOBRA)
    computadora.preparar()
    disco = os.statvfs(computadora.base)
    usado = (disco.f_blocks - disco.f_bfree) * disco.f_bsize
    dar_lugar(computadora.base, usado + paginas * PAGINA)

    codigo, dicho = computadora.actualizar()
    exigir(codigo == 0, "terminó con", codigo)
    revision = Revision(computadora)
    fallos = revision.revisar_dicho(dicho, ("guardar", "extraer", "reemplazar"))
    exigir(not revision.provisorios, "quedaron", revision.provisorios)
    exigir(not list(computadora.temporal.iterdir()), "quedaron archivos temporales")

    dar_lugar(computadora.base, DE_SOBRA)
    completar(computadora)
    return fallos.values()


def adentro(opciones):
    with tempfile.TemporaryDirectory(prefix="disco-") as carpeta:
        base = Path(carpeta).resolve()
        disco, publicado = base / "disco", base / "publicado"
        disco.mkdir()
        publicado.mkdir()
        if not montar(disco, DE_SOBRA):
            print("Salteada: aquí no se puede montar un tmpfs")
            return SALTEADA
        try:
            probar(Computadora(disco, Programas(opciones), Servidor(publicado).url))
        finally:
            subprocess.run(["umount", "-l", disco], check=False)
    return 0


def probar(computadora):
    motivos, paginas = Counter(), 0
    while fallos := con_lugar(computadora, paginas):
        motivos.update(fallos)
        paginas += PASO
    print(f"Discos chicos: {paginas // PASO}, hasta que alcanzó con {paginas * PAGINA // 1024} KiB "
          f"libres. Fallas: {', '.join(f'{c} {m}' for m, c in motivos.most_common())}")
    exigir(motivos["extraer"] and motivos["reemplazar"], "no faltó lugar para todo:", motivos)


def main():
    analizador = Programas.analizador(__doc__)
    analizador.add_argument("--adentro", action="store_true", help="el disco ya se puede montar")
    opciones = analizador.parse_args()
    if opciones.adentro:
        return adentro(opciones)

    apartado = ["unshare", "--mount", *([] if os.geteuid() == 0 else ["--map-root-user"])]
    if subprocess.run([*apartado, "true"], check=False, stderr=subprocess.DEVNULL).returncode != 0:
        print("Salteada: aquí no se puede montar nada para un proceso solo")
        return SALTEADA
    return subprocess.run([*apartado, sys.executable, "-B", *sys.argv, "--adentro"],
                          check=False).returncode


if __name__ == "__main__":
    sys.exit(main())
