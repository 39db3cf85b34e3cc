"""Lo publicado, bajado por HTTPS del nginx que muestra la documentación."""

import os
import socket
import ssl
import subprocess
import unittest
import urllib.error
import urllib.request
from urllib.parse import quote

from apoyo import RAIZ, PruebaDePublicar, arbol

EJEMPLO = RAIZ / "docs/nginx.conf.ejemplo"

ALREDEDOR = """
daemon off;
worker_processes 1;
pid {base}/nginx.pid;
error_log stderr;
{usuario}
events {{ }}
http {{
    include /etc/nginx/mime.types;
    access_log off;
    client_body_temp_path {base}/tmp; proxy_temp_path {base}/tmp; fastcgi_temp_path {base}/tmp;
    uwsgi_temp_path {base}/tmp; scgi_temp_path {base}/tmp;
{ejemplo}
}}
"""


class PruebaNginx(PruebaDePublicar):
    def setUp(self):
        super().setUp()
        self.hacer_certificado()
        self.puerto = puerto_libre()
        configuracion = self.base / "nginx.conf"
        configuracion.write_text(ALREDEDOR.format(
            base=self.base, ejemplo=self.adaptar(EJEMPLO.read_text(encoding="utf-8")),
            usuario="user root;" if os.geteuid() == 0 else ""), encoding="utf-8")
        self.nginx = subprocess.Popen(["nginx", "-p", self.base, "-c", configuracion,
                                       "-e", "stderr"], stderr=subprocess.PIPE, text=True)
        self.addCleanup(self.cerrar)
        self.esperar()

    def hacer_certificado(self):
        subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt",
                        "ec_paramgen_curve:prime256v1", "-nodes", "-days", "2",
                        "-subj", "/CN=localhost", "-addext", "subjectAltName=DNS:localhost",
                        "-keyout", self.base / "servidor.key", "-out", self.base / "servidor.crt"],
                       check=True, capture_output=True)

    def adaptar(self, texto):
        """El ejemplo con el puerto y las carpetas de esta prueba; lo demás, tal cual."""
        for original, propio in (("listen 443 ssl;", f"listen 127.0.0.1:{self.puerto} ssl;"),
                                 ("listen [::]:443 ssl;", ""),
                                 ("/etc/ssl/quillay", str(self.base)),
                                 ("/srv/quillay", str(self.servidor))):
            self.assertIn(original, texto)
            texto = texto.replace(original, propio)
        return texto

    def esperar(self):
        while self.nginx.poll() is None:
            try:
                socket.create_connection(("127.0.0.1", self.puerto), 1).close()
                return
            except ConnectionRefusedError:
                continue
        self.fail(self.nginx.stderr.read())

    def cerrar(self):
        self.nginx.terminate()
        with self.nginx.stderr:
            self.nginx.wait(20)

    def bajar(self, ruta, **cabeceras):
        contexto = ssl.create_default_context(cafile=self.base / "servidor.crt")
        pedido = urllib.request.Request(f"https://localhost:{self.puerto}/{quote(ruta)}",
                                        headers=cabeceras)
        return urllib.request.urlopen(pedido, context=contexto, timeout=20)

    def codigo(self, ruta, **cabeceras):
        try:
            with self.bajar(ruta, **cabeceras) as respuesta:
                return respuesta.status
        except urllib.error.HTTPError as falla:
            with falla:
                return falla.code

    def test_el_manifiesto_nunca_se_guarda_por_el_camino(self):
        self.publicar()
        self.publicar("2", "--manifiesto", "manifiesto-aula5.json")
        for nombre, version in (("manifiesto.json", b"1.5.0"), ("manifiesto-aula5.json", b'"2"')):
            with self.bajar(nombre) as respuesta:
                self.assertEqual(respuesta.headers["Cache-Control"], "no-store")
                self.assertEqual(respuesta.headers["Content-Type"], "application/json")
                self.assertIn(version, respuesta.read())

    def test_lo_que_baja_es_lo_publicado(self):
        self.publicar("1.5 ñ+&")
        with self.bajar("paquetes/garza-1.5 ñ+&.zip") as respuesta:
            self.assertEqual(respuesta.headers["Content-Type"], "application/zip")
            (self.base / "bajado.zip").write_bytes(respuesta.read())
        destino = self.extraer(self.base / "bajado.zip", self.base / "x")
        self.assertEqual(arbol(destino), arbol(self.garza))

    def test_un_paquete_reemplazado_se_vuelve_a_bajar(self):
        self.publicar()
        with self.bajar("paquetes/garza-1.5.0.zip") as respuesta:
            self.assertEqual(respuesta.headers["Cache-Control"], "no-cache")
            marca = respuesta.headers["ETag"]
        self.assertEqual(self.codigo("paquetes/garza-1.5.0.zip", **{"If-None-Match": marca}), 304)
        self.armar("Garza", {"datos/dos.txt": b"dos"})
        self.publicar("1.5.0", "--reemplazar")
        self.assertEqual(self.codigo("paquetes/garza-1.5.0.zip", **{"If-None-Match": marca}), 200)

    def test_lo_que_no_es_para_bajar_no_se_entrega(self):
        self.publicar()
        self.assertTrue((self.servidor / ".publicar.candado").exists())
        (self.paquete().parent / ".garza-2.zip.parcial").write_bytes(b"PK")
        (self.servidor / ".manifiesto.json.parcial").write_bytes(b"{")
        for ruta in (".publicar.candado", "paquetes/.garza-2.zip.parcial",
                     ".manifiesto.json.parcial", "paquetes/garza-9.zip"):
            self.assertEqual(self.codigo(ruta), 404, ruta)
        self.assertEqual(self.codigo("paquetes/"), 403)


def puerto_libre():
    with socket.socket() as conector:
        conector.bind(("127.0.0.1", 0))
        return conector.getsockname()[1]


if __name__ == "__main__":
    unittest.main()
