"""Qué nombres de archivo y qué versiones sirven en Windows y en una dirección web."""

import re
import unicodedata

from .problemas import Codigo, Problema

_PROHIBIDOS = '<>:"|?*\\'
_RESERVADO = re.compile(r"(con|prn|aux|nul|conin\$|conout\$|(com|lpt)[0-9¹²³]) *(\..*)?", re.I)
_VERSION_MAXIMA = 150  # bytes: con el componente y lo que se agrega entra en un nombre de archivo


def sin_mayusculas(nombre):
    """El nombre como lo compara Windows: letra por letra, sin distinguir mayúsculas."""
    return "".join(may if len(may := letra.upper()) == 1 else letra for letra in nombre)


def defecto_de_nombre(nombre):
    """Por qué Windows no acepta este nombre de archivo o carpeta; None si lo acepta."""
    if any(ord(letra) < 32 for letra in nombre):
        return "tiene caracteres de control"
    if any(0xD800 <= ord(letra) <= 0xDFFF for letra in nombre):
        return "no está escrito en UTF-8"
    if malos := [letra for letra in _PROHIBIDOS if letra in nombre]:
        return f"tiene {' '.join(malos)}"
    if nombre[-1] in ". ":
        return "termina en punto o en espacio"
    if _RESERVADO.fullmatch(nombre):
        return "está reservado"
    return None


def _defecto_de_version(version):
    if not version:
        return "está vacía"
    if any(unicodedata.category(letra)[0] == "C" or letra in "\u2028\u2029" for letra in version):
        return "tiene caracteres invisibles"
    if malos := [letra for letra in _PROHIBIDOS + "/%#" if letra in version]:
        return f"tiene {' '.join(malos)}"
    if ".." in version:
        return "tiene dos puntos seguidos"
    if version != version.strip():
        return "empieza o termina con un espacio"
    if len(version.encode()) > _VERSION_MAXIMA:
        return "es demasiado larga"
    return None


def exigir_version(version):
    if defecto := _defecto_de_version(version):
        raise Problema(Codigo.VERSION, f"La versión «{version}» no sirve para un nombre de archivo "
                       f"y una dirección: {defecto}.")
