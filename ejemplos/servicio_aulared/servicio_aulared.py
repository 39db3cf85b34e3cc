#!/usr/bin/env python3
"""Servicio Aulared de ejemplo, para probar el lanzador sin el de verdad.

Atiende solo en esta computadora. La primera línea que escribe es su dirección.
"""

import argparse
import hmac
import json
import secrets
import signal
import sys
import time
from http import HTTPStatus
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from pathlib import Path

PEDIDO_MAXIMO = 64 * 1024


class Atencion(BaseHTTPRequestHandler):
    """Un pedido. Los usuarios y la demora son del servidor que lo recibe."""

    protocol_version = "HTTP/1.1"
    timeout = 10

    def do_GET(self):
        if self.path != "/api/ping":
            self.responder(HTTPStatus.NOT_FOUND)
            return
        time.sleep(self.server.demora_ping)
        self.responder(HTTPStatus.OK, {"estado": "ok"})

    def do_POST(self):
        pedido = self.leer_pedido()
        if self.path != "/api/sesiones":
            self.responder(HTTPStatus.NOT_FOUND)
        elif pedido is None:
            self.responder(HTTPStatus.BAD_REQUEST)
        else:
            self.iniciar_sesion(pedido)

    def leer_pedido(self):
        """El objeto JSON {usuario, clave} que se envió, o None."""
        largo = self.headers.get("Content-Length", "")
        if not largo.isdecimal() or int(largo) > PEDIDO_MAXIMO:
            self.close_connection = True
            return None
        try:
            pedido = json.loads(self.rfile.read(int(largo)))
        except (ValueError, RecursionError):
            return None
        if not isinstance(pedido, dict):
            return None
        textos = all(isinstance(pedido.get(clave), str) for clave in ("usuario", "clave"))
        return pedido if textos else None

    def iniciar_sesion(self, pedido):
        persona = self.server.usuarios.get(pedido["usuario"])
        esperada = persona["clave"] if persona else secrets.token_hex()
        if not hmac.compare_digest(esperada.encode(), pedido["clave"].encode("utf-8", "replace")):
            self.responder(HTTPStatus.UNAUTHORIZED)
            return
        self.responder(HTTPStatus.OK, {
            "token": secrets.token_hex(16),
            "id": persona["usuario"],
            "nombre": persona["nombre"],
        })

    def responder(self, estado, objeto=None):
        cuerpo = json.dumps(objeto if objeto is not None else {"error": estado.phrase},
                            ensure_ascii=False).encode()
        self.send_response(estado)
        self.send_header("Content-Type", "application/json; charset=utf-8")
        self.send_header("Content-Length", str(len(cuerpo)))
        self.end_headers()
        self.wfile.write(cuerpo)

    def log_message(self, *_):
        """Sin registro: un servicio de ejemplo no tiene a quién contarle."""


class Servicio(ThreadingHTTPServer):
    def __init__(self, puerto, usuarios, demora_ping):
        super().__init__(("127.0.0.1", puerto), Atencion)
        self.usuarios = usuarios
        self.demora_ping = demora_ping

    def handle_error(self, *_):
        """Un cliente que corta a mitad de camino no es una novedad."""


def leer_opciones():
    opciones = argparse.ArgumentParser(description="Servicio Aulared de ejemplo.")
    opciones.add_argument("--puerto", type=int, default=0, help="0 (si no se dice): uno libre")
    opciones.add_argument("--usuarios", type=Path, metavar="ARCHIVO",
                          default=Path(__file__).with_name("usuarios.json"),
                          help="quiénes pueden entrar; ver LEEME.md")
    opciones.add_argument("--demora-ping", type=float, default=0, metavar="SEGUNDOS",
                          help="cuánto tarda en contestar si está disponible")
    return opciones.parse_args()


def main():
    opciones = leer_opciones()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(0))
    personas = json.loads(opciones.usuarios.read_text(encoding="utf-8"))
    usuarios = {persona["usuario"]: persona for persona in personas}
    with Servicio(opciones.puerto, usuarios, opciones.demora_ping) as servicio:
        print(f"http://127.0.0.1:{servicio.server_port}", flush=True)
        try:
            servicio.serve_forever()
        except KeyboardInterrupt:
            pass


if __name__ == "__main__":
    main()
