"""Los componentes que el lanzador sabe actualizar, como los conoce ombu/apps_registro.cpp."""

from .problemas import Codigo, Problema

LAUNCHER = "launcher"

# id de la app: su carpeta dentro de la del lanzador. El ejecutable es el id más ".exe".
CARPETAS = {
    "ceibo": "Ceibo",
    "garza": "Garza",
    "hornero": "Hornero",
    "zorzal": "Zorzal",
    "benteveo": "Benteveo",
    "calandria": "Calandria",
    "tordo": "Tordo",
    "nandu": "Nandu",
}

COMPONENTES = (LAUNCHER, *CARPETAS)


def exigir_componente(componente):
    if componente not in COMPONENTES:
        raise Problema(Codigo.COMPONENTE, f"No existe el componente «{componente}»: "
                       f"los que hay son {', '.join(COMPONENTES)}.")


def ejecutables(componente):
    """Los nombres que puede tener el ejecutable; el lanzador, en Debian, va sin extensión."""
    return ("quillay.exe", "quillay") if componente == LAUNCHER else (f"{componente}.exe",)
