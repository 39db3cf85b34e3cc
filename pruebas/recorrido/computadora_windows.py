"""La escuela de ejemplo en una computadora con Windows: los programas corren con wine."""

import os
import shutil
from pathlib import Path

from escuela import App, Escuela
from pantalla import arrancar

RAIZ = Path(__file__).resolve().parents[2]
# La pantalla le da a cada recorrido una carpeta personal nueva, y el modelo está en la de siempre.
CACHE = os.environ.get("XDG_CACHE_HOME", str(Path.home() / ".cache"))
LANZADOR = "C:\\Quillay\\quillay.exe"


class EscuelaConWindows(Escuela):
    """Las carpetas de la escuela son las de la computadora: `C:\\Quillay`, ProgramData y Documentos."""

    def __init__(self, compilacion, carpeta, con_red, portatil, powershell):
        super().__init__(compilacion, carpeta, con_red)
        self._portatil = portatil
        self._powershell = powershell
        self._computadora = Path(carpeta).resolve() / "computadora"

    def opciones_de_armado(self):
        return ["--windows", self._portatil]

    def __enter__(self):
        super().__enter__()
        (self.lanzador / "powershell.exe").symlink_to(self._powershell)
        self._correr(["cmd", "/c", "exit"]).wait()
        disco = self._computadora / "drive_c"
        cuenta = next(c for c in (disco / "users").iterdir() if c.name != "Public")
        self._poner(disco / "Quillay", self.lanzador)
        self._poner(disco / "ProgramData", self.archivo_sesion.parents[1])
        self._poner(cuenta / "Documents", self.documentos)
        return self

    def __exit__(self, *_):
        super().__exit__()
        self._correr(["--apagar"]).wait()

    @staticmethod
    def _poner(lugar, carpeta):
        shutil.rmtree(lugar, ignore_errors=True)
        lugar.symlink_to(carpeta)

    def _correr(self, orden):
        entorno = {**os.environ, **self.variables(), "XDG_CACHE_HOME": CACHE,
                   "QUILLAY_WINEPREFIX": str(self._computadora)}
        return arrancar([RAIZ / "para_windows/con_wine", *orden], env=entorno)

    def abrir_lanzador(self):
        return self.acompanar(self._correr([LANZADOR]))

    def ejecutable(self, app):
        return f"C:\\Quillay\\{app}\\{app.lower()}.exe"

    def apps_abiertas(self, app):
        """Los procesos de wine llevan como orden la ruta de Windows y los argumentos."""
        abiertas = []
        for proceso in Path("/proc").glob("[0-9]*"):
            try:
                orden = (proceso / "cmdline").read_text().rstrip("\0").split("\0")
                suya = f"WINEPREFIX={self._computadora}\0" in (proceso / "environ").read_text()
            except (OSError, UnicodeDecodeError):
                continue
            if suya and orden and orden[0].replace("/", "\\") == self.ejecutable(app):
                abiertas.append(App(int(proceso.name), orden))
        return abiertas
