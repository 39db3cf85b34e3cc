"""La carpeta del servidor: sus nombres, quién escribe en ella y cómo, y el manifiesto."""

import fcntl
import json
import os
import sys
from contextlib import contextmanager
from pathlib import Path

from .problemas import Codigo, Problema, escribiendo, leyendo

MANIFIESTO = "manifiesto.json"
PAQUETES = "paquetes"

# Con un punto adelante: el servidor web no los entrega.
_CANDADO = ".publicar.candado"
_TEMPORAL = ".{}.parcial"


class Servidor:
    """La carpeta que entrega el servidor web."""

    def __init__(self, carpeta, manifiesto):
        if not carpeta.is_dir():
            raise Problema(Codigo.SERVIDOR, f"La carpeta del servidor no existe: {carpeta}. "
                           "Creala antes de publicar por primera vez.")
        if Path(manifiesto).name != manifiesto or manifiesto.startswith("."):
            raise Problema(Codigo.MANIFIESTO, f"«{manifiesto}» no es un nombre de archivo: el "
                           "manifiesto va en la carpeta del servidor.")
        self.carpeta = carpeta.resolve()
        self.paquetes = self.carpeta / PAQUETES
        self.manifiesto = self.carpeta / manifiesto

    def paquete(self, componente, version):
        return self.paquetes / f"{componente}-{version}.zip"

    @contextmanager
    def reservado(self):
        """Mientras dura, nadie más publica; empieza sin restos de una publicación cortada."""
        ruta = self.carpeta / _CANDADO
        with escribiendo(ruta):
            candado = os.open(ruta, os.O_RDONLY | os.O_CREAT, 0o644)
        try:
            _esperar_turno(candado)
            with escribiendo(self.carpeta):
                if not self.paquetes.is_dir():
                    self.paquetes.mkdir()
                    self.paquetes.chmod(0o755)
                for carpeta in (self.carpeta, self.paquetes):
                    for resto in carpeta.glob(_TEMPORAL.format("*")):
                        resto.unlink()
            yield
        finally:
            os.close(candado)


def _esperar_turno(candado):
    try:
        fcntl.flock(candado, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except BlockingIOError:
        print("Espero a que termine otra publicación…", file=sys.stderr, flush=True)
        fcntl.flock(candado, fcntl.LOCK_EX)


@contextmanager
def borrador(ruta):
    """Da el nombre provisorio con que se prepara `ruta`; al final no queda nada con ese nombre."""
    provisorio = ruta.with_name(_TEMPORAL.format(ruta.name))
    try:
        yield provisorio
    finally:
        provisorio.unlink(missing_ok=True)


def escribir(provisorio, llenar):
    """Escribe con `llenar(archivo)` un archivo que puede leer cualquiera, y lo baja al disco."""
    with escribiendo(provisorio), open(provisorio, "wb") as archivo:
        llenar(archivo)
        archivo.flush()
        os.fchmod(archivo.fileno(), 0o644)
        os.fsync(archivo.fileno())


def colocar(provisorio, ruta):
    """Le da a lo escrito su nombre definitivo: quien lea encuentra lo anterior o lo nuevo."""
    with escribiendo(ruta):
        os.replace(provisorio, ruta)
        carpeta = os.open(ruta.parent, os.O_RDONLY | os.O_DIRECTORY)
        try:
            os.fsync(carpeta)
        finally:
            os.close(carpeta)


def escribir_json(provisorio, objeto):
    texto = json.dumps(objeto, ensure_ascii=False, indent=4, sort_keys=True) + "\n"
    escribir(provisorio, lambda archivo: archivo.write(texto.encode()))


def leer_versiones(ruta):
    """El objeto JSON de un manifiesto, o nada si todavía no hay. Uno roto no se adivina."""
    if not os.path.lexists(ruta):
        return {}
    if ruta.is_symlink() or not ruta.is_file():
        raise Problema(Codigo.MANIFIESTO, f"{ruta} no es un archivo común.")
    with leyendo(ruta):
        contenido = ruta.read_bytes()
    try:
        versiones = json.loads(contenido.decode("utf-8-sig"), parse_constant=_rechazar)
        json.dumps(versiones, ensure_ascii=False).encode()
    except (ValueError, RecursionError) as falla:
        lugar = f" (renglón {falla.lineno})" if isinstance(falla, json.JSONDecodeError) else ""
        raise Problema(Codigo.MANIFIESTO, f"{ruta} no es un JSON en UTF-8{lugar}. Corregilo: no se "
                       "lo va a pisar.") from falla
    if not isinstance(versiones, dict):
        raise Problema(Codigo.MANIFIESTO, f"{ruta} no es un objeto JSON «componente: versión». "
                       "Corregilo: no se lo va a pisar.")
    return versiones


def _rechazar(constante):
    raise ValueError(f"{constante} no es JSON")
