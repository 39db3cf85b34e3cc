"""Un paquete: escribirlo, comprobarlo y compararlo con una carpeta."""

import stat
import zipfile
import zlib
from contextlib import contextmanager

from .problemas import Codigo, Problema, leyendo

_BLOQUE = 1 << 20
# La fecha más vieja de un zip: con una fija, publicar dos veces lo mismo da los mismos bytes.
_FECHA = (1980, 1, 1, 0, 0, 0)
_UNIX = 3
_PARCIAL = "Quillay: parcial desde "


def escribir(salida, archivos, desde=None):
    """Escribe el paquete en el archivo binario `salida`; con `desde`, anotado como parcial."""
    with zipfile.ZipFile(salida, "w", zipfile.ZIP_DEFLATED) as paquete:
        for archivo in archivos:
            _agregar(paquete, archivo)
        paquete.comment = _comentario(desde)


def _agregar(paquete, archivo):
    entrada = zipfile.ZipInfo(archivo.relativa, _FECHA)
    entrada.compress_type = zipfile.ZIP_DEFLATED
    entrada.create_system = _UNIX
    entrada.external_attr = _modo(archivo) << 16
    entrada.file_size = archivo.tamano
    with leyendo(archivo.ruta):
        origen = open(archivo.ruta, "rb")
    with origen, paquete.open(entrada, "w") as destino:
        for bloque in _bloques(origen, archivo.ruta):
            destino.write(bloque)


def _modo(archivo):
    return stat.S_IFREG | (0o755 if archivo.ejecutable else 0o644)


def _bloques(origen, ruta):
    while True:
        with leyendo(ruta):
            bloque = origen.read(_BLOQUE)
        if not bloque:
            return
        yield bloque


def _comentario(desde):
    return (_PARCIAL + desde).encode() if desde else b""


class Paquete:
    """Un paquete publicado, abierto para leerlo. Falla si falta o no se entiende."""

    def __init__(self, ruta):
        self._ruta = ruta
        if not ruta.exists():
            raise Problema(Codigo.PAQUETE, f"No existe el paquete {ruta}.")
        with self._leyendo():
            self._zip = zipfile.ZipFile(ruta)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._zip.close()

    def exigir_sano(self):
        """Lee todo el paquete y falla si algo no se puede extraer."""
        with self._leyendo():
            danado = self._zip.testzip()
        if danado:
            raise self._problema(f"no se puede extraer {danado}")

    def nombres(self):
        return set(self._zip.namelist())

    def parcial_desde(self):
        """La versión sobre la que se aplica un paquete parcial; None si es completo."""
        comentario = self._zip.comment.decode(errors="replace")
        return comentario[len(_PARCIAL):] if comentario.startswith(_PARCIAL) else None

    def cambiados(self, archivos):
        """De `archivos`, los que no están aquí o no son iguales byte por byte."""
        return [archivo for archivo in archivos if not self._tiene(archivo)]

    def es_igual(self, archivos, desde):
        """Si contiene exactamente esos archivos, y es parcial desde esa versión."""
        return (self._zip.comment == _comentario(desde)
                and sorted(self._zip.namelist()) == [archivo.relativa for archivo in archivos]
                and not self.cambiados(archivos))

    def _tiene(self, archivo):
        try:
            entrada = self._zip.getinfo(archivo.relativa)
        except KeyError:
            return False
        if entrada.file_size != archivo.tamano or entrada.external_attr >> 16 != _modo(archivo):
            return False
        with leyendo(archivo.ruta):
            origen = open(archivo.ruta, "rb")
        with origen, self._leyendo(), self._zip.open(entrada) as guardado:
            for bloque in _bloques(origen, archivo.ruta):
                if guardado.read(len(bloque)) != bloque:
                    return False
            return not guardado.read(1)  # al llegar al final, zipfile comprueba la suma

    @contextmanager
    def _leyendo(self):
        try:
            yield
        except _FALLAS_DE_LECTURA as falla:
            raise self._problema("no se puede leer") from falla

    def _problema(self, detalle):
        return Problema(Codigo.PAQUETE, f"El paquete {self._ruta} está dañado: {detalle}.")


# Las que da zipfile según qué bytes estén mal.
_FALLAS_DE_LECTURA = (OSError, zipfile.BadZipFile, zlib.error, NotImplementedError, RuntimeError,
                      EOFError, ValueError)
