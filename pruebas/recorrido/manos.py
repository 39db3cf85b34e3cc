"""Las manos de quien usa la computadora: teclas y clics de verdad."""

import subprocess


def _xdotool(*orden):
    subprocess.run(["xdotool", *map(str, orden)], check=True, stdout=subprocess.DEVNULL)


def pulsar(*teclas):
    _xdotool("key", "--delay", 20, *teclas)


def escribir(texto):
    _xdotool("type", "--delay", 10, "--", texto)


def clic(control):
    _xdotool("mousemove", "--sync", *control.centro(), "click", 1)


def apartar_el_mouse():
    """Que no quede nada marcado por tenerlo encima."""
    _xdotool("mousemove", 0, 0)


def doble_clic(control):
    _xdotool("mousemove", *control.centro(), "click", "--repeat", 2, "--delay", 60, 1)
