"""Lo que hay en la carpeta instalada de un componente y va en su paquete."""

import os
import stat
from dataclasses import dataclass, field
from pathlib import Path

from .catalogo import CARPETAS, LAUNCHER, ejecutables
from .nombres import defecto_de_nombre, sin_mayusculas
from .problemas import Codigo, Problema, leyendo

# De la escuela y no del componente: un paquete del lanzador nunca los pisa. Los que siguen a
# "versiones.json" son restos de una escritura cortada, y "instalando", de una instalación cortada.
_DE_LA_ESCUELA = ("config.json", "versiones.json", "desinstalar.exe", "instalando")


@dataclass(frozen=True)
class Archivo:
    relativa: str  # con "/", desde la carpeta del componente
    ruta: Path
    tamano: int
    ejecutable: bool


@dataclass
class Contenido:
    archivos: list = field(default_factory=list)  # en orden alfabético
    omitidos: list = field(default_factory=list)  # relativas; las carpetas terminan en "/"
    vacias: list = field(default_factory=list)


def reunir(carpeta, componente):
    """El Contenido de `carpeta`. Falla si algo de ella no se puede publicar."""
    if not carpeta.is_dir():
        que = "no es una carpeta" if carpeta.exists() else "no existe"
        raise Problema(Codigo.CARPETA, f"La carpeta del componente {que}: {carpeta}")
    contenido = Contenido()
    _recorrer(carpeta, "", componente == LAUNCHER, contenido)
    contenido.archivos.sort(key=lambda archivo: archivo.relativa)
    if not contenido.archivos:
        raise Problema(Codigo.VACIA, f"No hay nada para publicar en {carpeta}.")
    _exigir_ejecutable(carpeta, componente, contenido)
    return contenido


def _recorrer(carpeta, prefijo, es_launcher, contenido):
    """Suma a `contenido` lo de una carpeta; dice cuántos archivos aportó."""
    with leyendo(carpeta):
        entradas = sorted(os.scandir(carpeta), key=lambda entrada: entrada.name)
    vistos = {}
    antes = len(contenido.archivos)
    for entrada in entradas:
        relativa = prefijo + entrada.name
        if _va_afuera(entrada, es_launcher and not prefijo):
            contenido.omitidos.append(relativa + "/" * entrada.is_dir())
            continue
        _exigir_nombre(relativa, entrada.name, vistos)
        if entrada.is_dir(follow_symlinks=False):
            if not _recorrer(Path(entrada.path), relativa + "/", es_launcher, contenido):
                contenido.vacias.append(relativa)
        else:
            contenido.archivos.append(_archivo(entrada, relativa))
    return len(contenido.archivos) - antes


def _va_afuera(entrada, es_raiz_del_launcher):
    nombre = entrada.name.lower()
    if nombre.endswith(".viejo") and not entrada.is_dir(follow_symlinks=False):
        return True
    if not es_raiz_del_launcher:
        return False
    resto = nombre.lstrip(".").startswith("versiones.json.")
    de_una_app = nombre in (carpeta.lower() for carpeta in CARPETAS.values())
    return de_una_app or nombre in _DE_LA_ESCUELA or resto


def _exigir_nombre(relativa, nombre, vistos):
    if defecto := defecto_de_nombre(nombre):
        raise Problema(Codigo.NOMBRE, f"Windows no acepta el nombre «{relativa}»: {defecto}.")
    igual = vistos.setdefault(sin_mayusculas(nombre), relativa)
    if igual != relativa:
        raise Problema(Codigo.NOMBRE,
                       f"En Windows «{igual}» y «{relativa}» son el mismo nombre.")


def _archivo(entrada, relativa):
    with leyendo(relativa):
        estado = entrada.stat(follow_symlinks=False)
    if stat.S_ISLNK(estado.st_mode):
        raise Problema(Codigo.ENLACE, f"«{relativa}» es un enlace simbólico: poné en su lugar una "
                       "copia de lo que señala.")
    if not stat.S_ISREG(estado.st_mode):
        raise Problema(Codigo.ENLACE, f"«{relativa}» no es un archivo común.")
    with leyendo(relativa), open(entrada.path, "rb"):
        pass
    return Archivo(relativa, Path(entrada.path), estado.st_size, bool(estado.st_mode & 0o111))


def _exigir_ejecutable(carpeta, componente, contenido):
    esperados = ejecutables(componente)
    if not any(archivo.relativa.lower() in esperados for archivo in contenido.archivos):
        raise Problema(Codigo.EJECUTABLE, f"En {carpeta} no está {' ni '.join(esperados)}: "
                       f"¿es la carpeta de {componente}?")
