#!/usr/bin/env python3
"""El servidor web de la escuela de ejemplo: entrega los archivos de una carpeta.

Escucha en un puerto libre de esta máquina e imprime su dirección en el primer renglón. La carpeta
puede llenarse después.
"""

import argparse
import signal
import sys
from functools import partial
from http.server import SimpleHTTPRequestHandler, ThreadingHTTPServer


class Entrega(SimpleHTTPRequestHandler):
    def log_message(self, *_):
        """Sin registro: un servidor de ejemplo no tiene a quién contarle."""


def main():
    opciones = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    opciones.add_argument("carpeta", help="lo que entrega")
    carpeta = opciones.parse_args().carpeta

    signal.signal(signal.SIGTERM, lambda *_: sys.exit(0))
    with ThreadingHTTPServer(("127.0.0.1", 0), partial(Entrega, directory=carpeta)) as servidor:
        print(f"http://127.0.0.1:{servidor.server_port}", flush=True)
        try:
            servidor.serve_forever()
        except KeyboardInterrupt:
            pass


if __name__ == "__main__":
    main()
