"""Lo que puede salir mal, y el código de salida de cada cosa."""

import errno
from contextlib import contextmanager
from enum import IntEnum


class Codigo(IntEnum):
    """Código de salida. El 2 es de argparse y el 130, de Ctrl+C."""

    COMPONENTE = 3  # no está en el catálogo
    VERSION = 4  # no sirve para un nombre de archivo o una dirección
    CARPETA = 5  # no existe, no es una carpeta o no puede ser esa
    VACIA = 6  # no hay nada que publicar
    EJECUTABLE = 7  # la carpeta no es la del componente
    ILEGIBLE = 8
    NOMBRE = 9  # Windows no lo acepta
    ENLACE = 10  # enlaces simbólicos y otros archivos especiales
    SERVIDOR = 11  # no existe o no se puede escribir
    MANIFIESTO = 12  # no se entiende
    YA_PUBLICADA = 13  # con otro contenido
    PAQUETE = 14  # falta o está dañado
    ESPACIO = 15  # disco lleno
    ESCRITURA = 16  # cualquier otra falla al escribir
    COMPROBACION = 17  # lo escrito no es lo que se quiso escribir
    SIN_CAMBIOS = 18  # un paquete parcial sin archivos
    VERSIONES = 19  # no se puede armar el registro de versiones


class Problema(Exception):
    """Una falla con su explicación, lista para mostrar."""

    def __init__(self, codigo, mensaje):
        super().__init__(mensaje)
        self.codigo = codigo


_SIN_LUGAR = {errno.ENOSPC, errno.EDQUOT, errno.EFBIG}
_SIN_PERMISO = {errno.EACCES, errno.EPERM, errno.EROFS}


# Los textos del sistema vienen en su idioma.
_MOTIVOS = {
    errno.EACCES: "no tenés permiso",
    errno.EPERM: "el sistema no lo permite",
    errno.EROFS: "el disco es de solo lectura",
    errno.ENOENT: "no existe",
    errno.ENOTDIR: "no es una carpeta",
    errno.EISDIR: "es una carpeta",
    errno.EIO: "falla del disco",
    errno.ENOSPC: "no hay lugar en el disco",
    errno.ENAMETOOLONG: "el nombre es demasiado largo",
    errno.ELOOP: "los enlaces simbólicos dan vueltas",
}


def motivo(falla):
    """Por qué falló una operación del sistema, para completar una oración."""
    return _MOTIVOS.get(falla.errno, falla.strerror)


@contextmanager
def escribiendo(ruta):
    """Convierte las fallas del sistema al escribir `ruta` en un Problema."""
    try:
        yield
    except OSError as falla:
        if falla.errno in _SIN_LUGAR:
            raise Problema(Codigo.ESPACIO,
                           f"No hay lugar en el disco para escribir {ruta}.") from falla
        if falla.errno in _SIN_PERMISO:
            raise Problema(Codigo.SERVIDOR,
                           f"No se puede escribir {ruta}: {motivo(falla)}.") from falla
        raise Problema(Codigo.ESCRITURA, f"No se pudo escribir {ruta}: {motivo(falla)}.") from falla


@contextmanager
def leyendo(ruta):
    """Convierte las fallas del sistema al leer `ruta` en un Problema."""
    try:
        yield
    except OSError as falla:
        raise Problema(Codigo.ILEGIBLE, f"No se pudo leer {ruta}: {motivo(falla)}.") from falla
