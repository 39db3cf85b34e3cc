"""Lo que dicen de sí mismos los ejecutables y las bibliotecas de Windows."""

import re
import subprocess

OBJDUMP = "x86_64-w64-mingw32-objdump"


def _objdump(opcion, binario):
    return subprocess.run([OBJDUMP, opcion, binario], capture_output=True, text=True,
                          check=True).stdout


def importadas(binario):
    """Los nombres, en minúsculas, de las bibliotecas que importa."""
    return {n.lower() for n in re.findall(r"DLL Name: (\S+)", _objdump("-p", binario))}


def encabezado(binario):
    """El texto del encabezado PE: subsistema, características, fecha."""
    return _objdump("-p", binario).partition("The Data Directory")[0]


def secciones(binario):
    return re.findall(r"^ +\d+ (\S+)", _objdump("-h", binario), re.MULTILINE)
