"""Una pantalla propia y entera: servidor X, bus de sesión, accesibilidad y manejador de ventanas.

Nada de lo que arranca queda cuando termina, ni siquiera si a este proceso lo matan.
"""

import ctypes
import os
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

from espera import esperar

PR_SET_PDEATHSIG = 1
PR_SET_CHILD_SUBREAPER = 36
_LIBC = ctypes.CDLL(None, use_errno=True)

# Lo que traiga la sesión de quien lanza la prueba no tiene que cambiar lo que se prueba.
AJENAS = ("WAYLAND_DISPLAY", "XAUTHORITY", "AT_SPI_BUS_ADDRESS", "NO_AT_BRIDGE", "LANGUAGE",
          "QT_QPA_PLATFORM", "QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE", "QT_SCALE_FACTOR",
          "QT_ACCESSIBILITY", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME")


def arrancar(orden, **opciones):
    """Arranca un proceso que recibe SIGTERM si este muere antes que él."""
    return subprocess.Popen(
        orden, preexec_fn=lambda: _LIBC.prctl(PR_SET_PDEATHSIG, signal.SIGTERM), **opciones)


def terminar(proceso, plazo=5):
    """Le pide que termine y espera; si no quiere, lo mata."""
    if proceso.poll() is None:
        proceso.terminate()
        try:
            proceso.wait(plazo)
        except subprocess.TimeoutExpired:
            proceso.kill()
            proceso.wait()
    if proceso.stdout:
        proceso.stdout.close()


def hijos():
    """Los procesos cuyo padre es este, también los que heredó."""
    numeros = Path("/proc/self/task").glob("*/children")
    return [int(numero) for lista in numeros for numero in lista.read_text().split()]


def terminar_herederos(plazo=5):
    """Termina lo que dejaron suelto los procesos que ya terminaron: las apps, el bus accesible."""
    limite = time.monotonic() + plazo
    while hijos():
        tarde = time.monotonic() > limite
        for hijo in hijos():
            os.kill(hijo, signal.SIGKILL if tarde else signal.SIGTERM)
            os.waitpid(hijo, 0 if tarde else os.WNOHANG)
        time.sleep(0.02)


class Pantalla:
    """Mientras dura el `with`, el entorno de este proceso apunta a la pantalla propia."""

    def __enter__(self):
        self._procesos = []
        self._entorno_previo = dict(os.environ)
        self._carpeta = tempfile.mkdtemp(prefix="pantalla-")
        _LIBC.prctl(PR_SET_CHILD_SUBREAPER, 1)
        try:
            self._preparar_entorno()
            self._arrancar_servidor_x()
            self._arrancar_bus()
            self._arrancar_ventanas()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for proceso in reversed(self._procesos):
            terminar(proceso)
        terminar_herederos()
        os.environ.clear()
        os.environ.update(self._entorno_previo)
        shutil.rmtree(self._carpeta, ignore_errors=True)

    @staticmethod
    def foto(*recorte):
        """Lo que se ve ahora, en formato PPM; `recorte` es ANCHOxALTO+X+Y."""
        cortar = [argumento for zona in recorte for argumento in ("-crop", zona)]
        return subprocess.run(["import", "-window", "root", *cortar, "ppm:-"],
                              check=True, capture_output=True).stdout

    @staticmethod
    def fotografiar(ruta):
        """Guarda en `ruta` una imagen de la pantalla entera, cuando deja de cambiar."""
        anterior = b""
        for _ in range(20):
            imagen = Pantalla.foto()
            if imagen == anterior:
                break
            anterior = imagen
        subprocess.run(["convert", "ppm:-", str(ruta)], input=imagen, check=True)

    def _preparar_entorno(self):
        for nombre in AJENAS:
            os.environ.pop(nombre, None)
        os.environ.update(HOME=self._carpeta, XDG_RUNTIME_DIR=self._carpeta, LC_ALL="C.UTF-8",
                          QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")

    def _arrancar(self, orden):
        proceso = arrancar(orden, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self._procesos.append(proceso)
        return proceso

    def _primera_linea(self, orden):
        linea = self._arrancar(orden).stdout.readline().strip()
        if not linea:
            raise RuntimeError(f"{orden[0]} no arrancó")
        return linea

    def _arrancar_servidor_x(self):
        numero = self._primera_linea(["Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24",
                                      "-nolisten", "tcp", "-noreset", "-wr"])
        os.environ["DISPLAY"] = f":{numero}"
        # Un teclado con ñ: lo que no está en el teclado, xdotool lo escribe con trampas que fallan.
        subprocess.run(["setxkbmap", "es"], check=True)

    def _arrancar_bus(self):
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = self._primera_linea(
            ["dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1"])

    def _arrancar_ventanas(self):
        openbox = self._arrancar(["openbox"])
        esperar("el manejador de ventanas",
                lambda: openbox.poll() is None and self._hay_manejador())

    @staticmethod
    def _hay_manejador():
        return subprocess.run(["xdotool", "get_num_desktops"], capture_output=True,
                              check=False).returncode == 0
