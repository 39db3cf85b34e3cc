"""Una computadora con componentes viejos, un servidor con los nuevos y una actualización entera."""

import argparse
import functools
import http.server
import os
import shutil
import subprocess
import threading
import zipfile
from pathlib import Path

LANZADOR_VIEJO = {"quillay.exe": b"MZ quillay 1" * 2000, "shared/Qt6Core.dll": b"Qt 1" * 9000,
                  "shared/translations/es.qm": b"igual", "leeme.txt": b"1"}
LANZADOR_NUEVO = {"quillay.exe": b"MZ quillay 2" * 2500, "shared/Qt6Core.dll": b"Qt 2" * 7000,
                  "shared/translations/es.qm": b"igual", "leeme.txt": b"",
                  "shared/Qt6Svg.dll": b"nuevo", "ayuda/uno/dos.txt": b"nuevo"}
GARZA_VIEJA = {"garza.exe": b"MZ garza 1" * 300, "datos/igual.dat": b"igual" * 50,
               "datos/formas/uno.dat": b"1" * 70000, "fin.txt": b"uno"}
GARZA_NUEVA = {"garza.exe": b"MZ garza 2" * 400, "datos/igual.dat": b"igual" * 50,
               "datos/formas/uno.dat": b"2" * 60000, "fin.txt": b"dos, y m\xc3\xa1s largo",
               "nuevo.txt": b"nuevo", "pinceles/Canci\u00f3n 2.png": b"nuevo"}
PROPIOS = {"config.json": b"{}", "Garza/propio.txt": b"propio", "Zorzal/zorzal.exe": b"MZ zorzal"}
CARPETAS = {"launcher": "", "garza": "Garza/"}
EN_USO = "quillay.exe"


def en_carpeta(componente, archivos):
    return {CARPETAS[componente] + nombre: datos for nombre, datos in archivos.items()}


VIEJOS = {"launcher": LANZADOR_VIEJO, "garza": en_carpeta("garza", GARZA_VIEJA)}
NUEVOS = {"launcher": LANZADOR_NUEVO, "garza": en_carpeta("garza", GARZA_NUEVA)}


def versiones(garza, launcher):
    """El `versiones.json` entero, tal como lo escribe el lanzador."""
    return (f'{{\n    "garza": "{garza}",\n    "launcher": "{launcher}",\n'
            f'    "zorzal": "1"\n}}\n').encode()


class Servidor:
    """Publica los paquetes de la versión 2 por HTTP en loopback."""

    def __init__(self, carpeta):
        self.carpeta = carpeta
        (carpeta / "manifiesto.json").write_text('{"garza": "2", "launcher": "2", "zorzal": "1"}')
        for componente, archivos in (("garza", GARZA_NUEVA), ("launcher", LANZADOR_NUEVO)):
            with zipfile.ZipFile(carpeta / f"{componente}-2.zip", "w", zipfile.ZIP_DEFLATED) as zip_:
                for nombre, datos in archivos.items():
                    zip_.writestr(nombre, datos)
        atender = functools.partial(Callado, directory=str(carpeta))
        self.http = Sufrido(("127.0.0.1", 0), atender)
        self.url = f"http://127.0.0.1:{self.http.server_port}"
        threading.Thread(target=self.http.serve_forever, daemon=True).start()


class Sufrido(http.server.ThreadingHTTPServer):
    """No se queja de quien muere mientras le contesta."""

    def handle_error(self, *_):
        pass


class Callado(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *_):
        pass


class Programas:
    """Lo compilado que hace falta, tal como lo dicen las opciones de cada guion."""

    def __init__(self, opciones):
        self.corredor = opciones.corredor.resolve()
        self.falla_en = opciones.falla_en.resolve()
        self.powershell = opciones.powershell.resolve()

    @staticmethod
    def analizador(documentacion):
        analizador = argparse.ArgumentParser(description=documentacion.splitlines()[0])
        for opcion in ("--corredor", "--falla-en", "--powershell"):
            analizador.add_argument(opcion, type=Path, required=True)
        return analizador


class Computadora:
    """La carpeta del lanzador y la temporal, dentro de una."""

    def __init__(self, base, programas, url):
        self.base, self.programas, self.url = base, programas, url
        self.lanzador = base / "Quillay"
        self.temporal = base / "temporal"

    def preparar(self):
        for carpeta in (self.lanzador, self.temporal):
            shutil.rmtree(carpeta, ignore_errors=True)
            carpeta.mkdir(parents=True)
        archivos = {**VIEJOS["launcher"], **VIEJOS["garza"], **PROPIOS,
                    "versiones.json": versiones(1, 1), "resto.dll.viejo": b"0"}
        for nombre, datos in archivos.items():
            ruta = self.lanzador / nombre
            ruta.parent.mkdir(parents=True, exist_ok=True)
            ruta.write_bytes(datos)

    def orden(self):
        return [self.programas.corredor, self.lanzador, f"{self.url}/manifiesto.json", self.url]

    def entorno(self, **mas):
        return {**os.environ, "TMPDIR": str(self.temporal), "LC_ALL": "C.UTF-8",
                "PATH": f"{self.programas.powershell.parent}:{os.environ['PATH']}", **mas}

    def actualizar(self, delante=(), **entorno):
        """Corre una actualización entera; da el código de salida y los renglones que imprimió."""
        salida = subprocess.run([*delante, *self.orden()], env=self.entorno(**entorno), timeout=100,
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
        return salida.returncode, salida.stdout.decode().splitlines()

    def actualizar_con_falla(self, modo="", en=0, registro=""):
        return self.actualizar(LD_PRELOAD=str(self.programas.falla_en), FALLA_BAJO=str(self.base),
                               FALLA_MODO=modo, FALLA_EN=str(en), FALLA_REGISTRO=str(registro),
                               FALLA_EN_USO=str(self.lanzador / EN_USO))

    def archivos(self):
        return {str(ruta.relative_to(self.lanzador)): ruta.read_bytes()
                for ruta in self.lanzador.rglob("*") if ruta.is_file()}
