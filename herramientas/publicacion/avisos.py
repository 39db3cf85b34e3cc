"""Lo que se puede publicar pero conviene saber antes."""

import unicodedata

from .catalogo import CARPETAS

# Windows corta en 260 caracteres, contando el cero final. Un nombre de cuenta tiene hasta 20.
_CERCA_DEL_LIMITE = 240
_INSTALACION = "C:\\Program Files\\Quillay\\"
_EXTRACCION = f"C:\\Users\\{'x' * 20}\\AppData\\Local\\Temp\\Quillay-XXXXXX\\contenido\\"
_VIEJO = ".viejo"

_MUCHOS_ARCHIVOS = 2000
_MUCHOS_BYTES = 300 * 1000 * 1000


def de_carpeta(contenido, componente):
    """Los avisos sobre el contenido de un paquete, antes de armarlo."""
    avisos = []
    relativas = [archivo.relativa for archivo in contenido.archivos]
    if ocultos := [r for r in relativas if any(n.startswith(".") for n in r.split("/"))]:
        avisos.append("El lanzador de Debian no instala los archivos ocultos (el de Windows sí): "
                      f"{_algunos(ocultos)}.")
    if contenido.vacias:
        avisos.append("Las carpetas vacías no se crean al actualizar: "
                      f"{_algunos(contenido.vacias)}.")
    if descompuestos := [r for r in relativas if not unicodedata.is_normalized("NFC", r)]:
        avisos.append("Estos nombres llevan los acentos separados de las letras, como en un Mac, y "
                      "se publican así; una app puede no encontrarlos: "
                      f"{_algunos(descompuestos)}.")
    if corchetes := [r for r in relativas if "[" in r or "]" in r]:
        avisos.append("PowerShell usa los corchetes como comodines; probá el paquete en un Windows: "
                      f"{_algunos(corchetes)}.")
    return avisos + _de_largo(relativas, componente) + _de_cantidad(relativas)


def _de_largo(relativas, componente):
    carpeta = CARPETAS.get(componente, "")
    instalada = _INSTALACION + (carpeta and carpeta + "\\")
    largo, peor = max((max(_largo(instalada + relativa + _VIEJO), _largo(_EXTRACCION + relativa)),
                       relativa) for relativa in relativas)
    if largo < _CERCA_DEL_LIMITE:
        return []
    return [f"En Windows una ruta llegaría a {largo} caracteres, y el límite es 259: {peor}."]


def _largo(ruta):
    return len(ruta.encode("utf-16-le")) // 2


def _de_cantidad(relativas):
    if len(relativas) <= _MUCHOS_ARCHIVOS:
        return []
    return [f"Son {len(relativas)} archivos: PowerShell los extrae despacio y mientras tanto el "
            "lanzador no responde."]


def de_tamano(bytes_):
    if bytes_ <= _MUCHOS_BYTES:
        return []
    return [f"El paquete ocupa {tamano(bytes_)}: el lanzador lo tiene entero en memoria antes de "
            "guardarlo."]


def de_reemplazo(componente, version):
    return [f"Una computadora que ya tiene {componente} {version} no va a recibir este cambio: "
            "para que llegue a todas, publicalo con otra versión."]


def de_parcial(componente, desde):
    return [f"Es un paquete parcial: está bien solo donde hay {componente} {desde}. Se le ofrece a "
            "toda computadora con otra versión, y una que no tenga esa queda con archivos de dos "
            "versiones."]


def de_cambio(nombres, archivos, anterior):
    """Lo que la actualización no puede hacer si están instalados los archivos `nombres`."""
    avisos = []
    nuevos = {archivo.relativa for archivo in archivos}
    choques = (_carpetas(nombres) & nuevos) | (_carpetas(nuevos) & set(nombres))
    if choques:
        avisos.append(f"En la {anterior} eran carpeta lo que ahora es archivo, o al revés, y la "
                      f"actualización va a fallar: {_algunos(sorted(choques))}.")
    if quitados := sorted(set(nombres) - nuevos):
        avisos.append(f"Estos archivos de la {anterior} ya no están, pero la actualización no los "
                      f"borra: {_algunos(quitados, 20)}.")
    return avisos


def _carpetas(relativas):
    return {relativa[:corte] for relativa in relativas
            for corte, letra in enumerate(relativa) if letra == "/"}


def _algunos(nombres, maximo=5):
    resto = f" y {len(nombres) - maximo} más" if len(nombres) > maximo else ""
    return ", ".join(nombres[:maximo]) + resto


def cantidad(cosas, nombre):
    """Cuántas son: "1 archivo", "2 archivos"."""
    return f"{len(cosas)} {nombre}{'' if len(cosas) == 1 else 's'}"


def tamano(bytes_):
    """Un tamaño para leer: "3,4 MB"."""
    for unidad, valor in (("GB", 10**9), ("MB", 10**6), ("kB", 10**3)):
        if bytes_ >= valor:
            return f"{bytes_ / valor:.1f} {unidad}".replace(".", ",")
    return f"{bytes_} bytes"
