"""Esperar a que algo pase, con un plazo."""

import time

PLAZO = 20
ENTRE_INTENTOS = 0.05


def esperar(que, condicion, plazo=PLAZO):
    """Lo primero verdadero que dé `condicion()`; si no llega en `plazo` segundos, falla.

    `que` dice qué se esperaba: un texto, o una función que lo arma recién cuando falla.
    """
    limite = time.monotonic() + plazo
    while True:
        valor = condicion()
        if valor:
            return valor
        if time.monotonic() > limite:
            raise AssertionError(f"No llegó a tiempo: {que() if callable(que) else que}")
        time.sleep(ENTRE_INTENTOS)
