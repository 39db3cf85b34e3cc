"""La línea de órdenes: opciones, ayuda en español y códigos de salida."""

import argparse
import os
import signal
import sys
from pathlib import Path

from . import ordenes
from .catalogo import COMPONENTES
from .problemas import Codigo, Problema, motivo
from .servidor import MANIFIESTO

# Los textos propios de argparse que puede ver quien usa la herramienta.
_TEXTOS = {
    "usage: ": "uso: ",
    "options": "opciones",
    "positional arguments": "argumentos",
    "show this help message and exit": "muestra esta ayuda y termina",
    "the following arguments are required: %s": "falta decir: %s",
    "unrecognized arguments: %s": "no se entiende: %s",
    "argument %(argument_name)s: %(message)s": "%(argument_name)s: %(message)s",
    "expected one argument": "falta su valor",
    "expected at least one argument": "falta al menos uno",
    "invalid choice: %(value)r (choose from %(choices)s)":
        "%(value)r no es una de las posibles: %(choices)s",
}


def ejecutar(argumentos):
    """Cumple una orden y da el código de salida."""
    for salida in (sys.stdout, sys.stderr):
        salida.reconfigure(errors="backslashreplace")
    for senal in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(senal, _interrumpir)
    pedido = opciones().parse_args(argumentos)
    try:
        pedido.orden(pedido)
        sys.stdout.flush()
    except Problema as problema:
        return _fallar(problema, problema.codigo)
    except BrokenPipeError:
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
        return Codigo.ESCRITURA
    except OSError as falla:
        return _fallar(f"{falla.filename or 'no se pudo terminar'}: {motivo(falla)}", Codigo.ESCRITURA)
    except KeyboardInterrupt:
        return _fallar("interrumpido", 128 + signal.SIGINT)
    return 0


def _interrumpir(*_):
    raise KeyboardInterrupt


def _fallar(explicacion, codigo):
    print(f"publicar: error: {_en_un_renglon(explicacion)}", file=sys.stderr)
    return int(codigo)


def _en_un_renglon(texto):
    """Deja a la vista lo que no se puede imprimir, por ejemplo un salto de renglón en un nombre."""
    return "".join(letra if letra.isprintable() else ascii(letra)[1:-1] for letra in str(texto))


def opciones():
    """El intérprete de la línea de órdenes."""
    argparse._ = lambda texto: _TEXTOS.get(texto, texto)  # su única traducción posible
    principal = argparse.ArgumentParser(
        prog="publicar", allow_abbrev=False,
        description="Publica componentes de Quillay en la carpeta de un servidor web.",
        epilog="Cada clase de falla tiene su código de salida; están en docs/publicar.md.")
    subordenes = principal.add_subparsers(required=True, metavar="ORDEN", dest="nombre",
                                          title="órdenes")
    _orden_paquete(_nueva(subordenes, "paquete", ordenes.publicar_paquete,
                          "arma el paquete de un componente y lo publica"))
    _orden_apuntar(_nueva(subordenes, "apuntar", ordenes.apuntar,
                          "vuelve a ofrecer una versión que ya está publicada"))
    _de_servidor(_nueva(subordenes, "revisar", ordenes.revisar,
                        "comprueba que lo publicado esté entero"))
    _orden_versiones(_nueva(subordenes, "versiones", ordenes.armar_versiones,
                            "arma el primer versiones.json de una instalación"))
    return principal


def _nueva(subordenes, nombre, orden, ayuda):
    suborden = subordenes.add_parser(nombre, help=ayuda, description=ayuda.capitalize() + ".",
                                     allow_abbrev=False)
    suborden.set_defaults(orden=orden)
    return suborden


def _de_servidor(suborden):
    suborden.add_argument("--servidor", type=Path, required=True, metavar="CARPETA",
                          help="la que entrega el servidor web")
    suborden.add_argument("--manifiesto", default=MANIFIESTO, metavar="NOMBRE",
                          help=f"archivo del manifiesto, dentro de esa carpeta ({MANIFIESTO})")


def _de_version(suborden):
    suborden.add_argument("--componente", required=True, help=", ".join(COMPONENTES))
    suborden.add_argument("--version", required=True, metavar="VERSIÓN",
                          help="un texto cualquiera, por ejemplo 1.5.0")


def _orden_paquete(suborden):
    _de_version(suborden)
    suborden.add_argument("--carpeta", type=Path, required=True,
                          help="donde está instalado el componente")
    _de_servidor(suborden)
    suborden.add_argument("--desde-version", metavar="VERSIÓN",
                          help="solo los archivos que cambiaron desde esta versión publicada; "
                               "sirve si TODAS las computadoras la tienen")
    suborden.add_argument("--reemplazar", action="store_true",
                          help="pisa el paquete si esa versión ya tenía otro contenido")


def _orden_apuntar(suborden):
    _de_version(suborden)
    _de_servidor(suborden)


def _orden_versiones(suborden):
    suborden.add_argument("--manifiesto", type=Path, metavar="ARCHIVO",
                          help="de dónde se toman las versiones que no se digan")
    suborden.add_argument("--salida", type=Path, required=True, metavar="ARCHIVO",
                          help="el versiones.json, en la carpeta del lanzador")
    suborden.add_argument("--reemplazar", action="store_true", help="pisa la salida si existe")
    suborden.add_argument("instalados", nargs="+", metavar="COMPONENTE[=VERSIÓN]",
                          help="cada componente instalado en esa computadora")
