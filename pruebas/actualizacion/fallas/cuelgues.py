#!/usr/bin/env python3
"""Servidores que se cuelgan, con el reloj de verdad.

Lo que no avanza en 30 segundos se corta, y lo que avanza despacio no.
"""

import concurrent.futures
import socketserver
import sys
import tempfile
import threading
import time
from http import HTTPStatus
from http.server import BaseHTTPRequestHandler
from pathlib import Path

from escuela import Computadora, Programas, Servidor
from revision import Incumplido, Revision, completar, exigir

MANIFIESTO = b'{"garza": "2"}'
CORTADO = "error|No se pudo descargar garza 2: Operation canceled"
LENTO_S = 40


class Colgado(BaseHTTPRequestHandler):
    """/como/ruta: contesta esa ruta como se le dice; lo que no es del caso lo contesta bien."""

    def do_GET(self):
        _, como, ruta = self.path.split("/", 2)
        cuerpo = MANIFIESTO if ruta == "manifiesto.json" else self.server.paquete
        que, _, modo = como.partition("-")
        if que != ("manifiesto" if cuerpo is MANIFIESTO else "paquete"):
            modo = "bien"
        if modo != "mudo":
            self.contestar(cuerpo, modo)
        if modo in ("mudo", "mitad"):
            self.server.terminar.wait()

    def contestar(self, cuerpo, modo):
        self.send_response(HTTPStatus.OK)
        self.send_header("Content-Length", str(len(cuerpo)))
        self.end_headers()
        if modo == "lento":
            tramo = -(-len(cuerpo) // LENTO_S)
            for desde in range(0, len(cuerpo), tramo):
                self.wfile.write(cuerpo[desde:desde + tramo])
                time.sleep(1)
        else:
            self.wfile.write(cuerpo[:len(cuerpo) // 2] if modo == "mitad" else cuerpo)

    def log_message(self, *_):
        pass


class ServidorColgado(socketserver.ThreadingTCPServer):
    daemon_threads = True

    def handle_error(self, *_):
        pass


CASOS = {"manifiesto-mudo": ["sin actualizaciones"],
         "manifiesto-mitad": ["sin actualizaciones"],
         "paquete-mudo": ["disponibles|garza|1|2", CORTADO, "terminado"],
         "paquete-mitad": ["disponibles|garza|1|2", CORTADO, "terminado"],
         "paquete-lento": ["disponibles|garza|1|2", "actualizado|garza|2", "terminado"]}


def uno(base, programas, como, esperado, colgado, sano):
    computadora = Computadora(base / como, programas, f"{colgado}/{como}")
    computadora.preparar()
    inicio = time.monotonic()
    codigo, dicho = computadora.actualizar()
    segundos = time.monotonic() - inicio
    exigir(codigo == 0 and dicho == esperado, "se dijo", dicho)
    desde, hasta = (31, 90) if como.endswith("lento") else (28, 45)
    exigir(desde <= segundos <= hasta, "tardó", segundos)
    exigir(not any(Revision(computadora).ausentes.values()), "faltan archivos")
    computadora.url = sano
    completar(computadora)
    return segundos


def main():
    programas = Programas(Programas.analizador(__doc__).parse_args())
    incumplidos = 0
    with tempfile.TemporaryDirectory(prefix="cuelgues-") as carpeta:
        base = Path(carpeta).resolve()
        publicado = base / "publicado"
        publicado.mkdir()
        sano = Servidor(publicado).url
        colgado = ServidorColgado(("127.0.0.1", 0), Colgado)
        colgado.paquete = (publicado / "garza-2.zip").read_bytes()
        colgado.terminar = threading.Event()
        threading.Thread(target=colgado.serve_forever, daemon=True).start()
        url = f"http://127.0.0.1:{colgado.server_address[1]}"

        with concurrent.futures.ThreadPoolExecutor(len(CASOS)) as hilos:
            tareas = {como: hilos.submit(uno, base, programas, como, esperado, url, sano)
                      for como, esperado in CASOS.items()}
            for como, tarea in tareas.items():
                try:
                    print(f"{como}: {tarea.result():.1f} s")
                except Incumplido as falla:
                    incumplidos += 1
                    print(f"{como}: {falla}", file=sys.stderr)
        colgado.terminar.set()
    return 1 if incumplidos else 0


if __name__ == "__main__":
    sys.exit(main())
