"""Una escuela de ejemplo en marcha: su servicio, su lanzador y lo que queda escrito en disco."""

import json
import os
import shlex
import subprocess
from dataclasses import dataclass
from datetime import datetime, timedelta
from pathlib import Path

from espera import esperar
from pantalla import arrancar, terminar

EJEMPLOS = Path(__file__).resolve().parents[2] / "ejemplos"

# Alcanza para ver los perfiles mientras el lanzador pregunta, y le sobra para conseguir respuesta.
DEMORA_PING = 1.5


@dataclass
class App:
    """Una app de la suite que está abierta."""

    pid: int
    argumentos: list


class Escuela:
    """Se arma al entrar en el `with`; al salir se cierra lo que se abrió."""

    def __init__(self, compilacion, carpeta, con_red):
        self._compilacion = compilacion
        self._carpeta = Path(carpeta).resolve()
        self._con_red = con_red
        self._procesos = []

    def __enter__(self):
        direcciones = self._arrancar_servidores() if self._con_red else []
        subprocess.run([EJEMPLOS / "armar_escuela", self._compilacion, self._carpeta,
                        *self.opciones_de_armado(), *direcciones], check=True)
        return self

    def __exit__(self, *_):
        for proceso in reversed(self._procesos):
            terminar(proceso)

    def opciones_de_armado(self):
        return []

    def _arrancar_servidores(self):
        aulared = self._arrancar_servidor("servicio_aulared", "--demora-ping", str(DEMORA_PING))
        paquetes = self._arrancar_servidor("servidor_de_paquetes", self._carpeta / "Publicado")
        return ["--aulared", aulared, "--paquetes", paquetes]

    def _arrancar_servidor(self, nombre, *argumentos):
        """Arranca un servidor de ejemplo y devuelve la dirección que imprime."""
        servidor = self.acompanar(arrancar([EJEMPLOS / nombre / f"{nombre}.py", *argumentos],
                                           stdout=subprocess.PIPE, text=True))
        return servidor.stdout.readline().strip()

    def abrir_lanzador(self):
        """Arranca el lanzador y devuelve su proceso."""
        entorno = {**os.environ, **self.variables()}
        return self.acompanar(arrancar([self.lanzador / "quillay"], env=entorno))

    def acompanar(self, proceso):
        """Lo termina cuando se cierre la escuela."""
        self._procesos.append(proceso)
        return proceso

    def variables(self):
        """El entorno con que se arrancan los programas de la escuela."""
        renglones = shlex.split((self._carpeta / "entorno").read_text(encoding="utf-8"))
        return dict(renglon.split("=", 1) for renglon in renglones)

    @property
    def lanzador(self):
        """La carpeta donde está instalado."""
        return self._carpeta / "Quillay"

    def versiones(self):
        """Las versiones instaladas, por componente."""
        return json.loads((self.lanzador / "versiones.json").read_text(encoding="utf-8"))

    @property
    def documentos(self):
        return self._carpeta / "Casa/Documents"

    @property
    def archivo_sesion(self):
        return self._carpeta / "ProgramData/Lumbre/sesion.json"

    def sesion(self):
        """Lo que dice el archivo de sesión, o None si no está."""
        return self._leer("sesion.json")

    def envejecer_sesion(self):
        """Escribe que empezó hace 100 minutos y que hace 10 que nadie toca la computadora."""
        sesion = self.sesion()
        ahora = datetime.now().replace(microsecond=0)
        sesion["inicio_sesion"] = (ahora - timedelta(minutes=100)).isoformat()
        sesion["ultima_actividad"] = (ahora - timedelta(minutes=10)).isoformat()
        nuevo = self.archivo_sesion.with_suffix(".nuevo")
        nuevo.write_text(json.dumps(sesion), encoding="utf-8")
        nuevo.replace(self.archivo_sesion)
        return sesion

    def perfiles(self):
        return self._leer("perfiles.json")

    def recientes(self, persona):
        """Los archivos recientes de una persona, del más nuevo al más viejo."""
        return self._leer(f"recientes/{persona}.json") or []

    def apps_abiertas(self, app):
        """Los procesos que ahora corren el ejecutable de `app`."""
        ejecutable = str(self.ejecutable(app))
        abiertas = []
        for proceso in Path("/proc").glob("[0-9]*"):
            try:
                if os.readlink(proceso / "exe") != ejecutable:
                    continue
                argumentos = (proceso / "cmdline").read_bytes().decode().split("\0")[:-1]
            except OSError:
                continue
            # Entre el fork y el exec todavía es el lanzador; sin argumentos, ya terminó.
            if argumentos:
                abiertas.append(App(int(proceso.name), argumentos))
        return abiertas

    def ejecutable(self, app):
        return self.lanzador / app / f"{app.lower()}.exe"

    def esperar_app(self, app):
        """La única app abierta de ese nombre, cuando aparece."""
        abiertas = esperar(f"{app} abierta", lambda: self.apps_abiertas(app))
        assert len(abiertas) == 1, f"{app} se abrió más de una vez: {abiertas}"
        return abiertas[0]

    def _leer(self, archivo):
        try:
            texto = (self.archivo_sesion.parent / archivo).read_text(encoding="utf-8")
        except FileNotFoundError:
            return None
        return json.loads(texto)
