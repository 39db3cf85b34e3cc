"""Lo que tiene que cumplirse después de una actualización, haya salido como haya salido."""

import re

from escuela import EN_USO, NUEVOS, PROPIOS, VIEJOS, versiones

MENSAJES = {"descargar": "No se pudo descargar {} 2: ",
            "guardar": "No se pudo guardar la descarga de {}.",
            "extraer": "No se pudo extraer el paquete de {}.",
            "reemplazar": "No se pudo reemplazar los archivos de {}."}
PROVISORIO = re.compile(r"versiones\.json\.\w{6}|(.*/)?qt_temp\.\w{6}")


class Incumplido(Exception):
    pass


def exigir(condicion, *detalle):
    if not condicion:
        raise Incumplido(" ".join(map(str, detalle)))


class Revision:
    """Compara lo instalado con lo viejo y lo nuevo."""

    def __init__(self, computadora):
        self.archivos = computadora.archivos()
        self.versiones = self.versiones_anotadas()
        self.ausentes = {componente: self.revisar_componente(componente) for componente in VIEJOS}
        self.provisorios = self.revisar_el_resto()

    def versiones_anotadas(self):
        posibles = {versiones(garza, launcher): {"garza": garza, "launcher": launcher}
                    for garza in (1, 2) for launcher in (1, 2)}
        anotadas = self.archivos.get("versiones.json")
        exigir(anotadas in posibles, "versiones.json no está entero:", anotadas)
        return posibles[anotadas]

    def completo(self, componente):
        return all(self.archivos.get(n) == datos for n, datos in NUEVOS[componente].items())

    def revisar_componente(self, componente):
        """Cada archivo es el viejo entero o el nuevo entero; da los que faltan."""
        viejos, nuevos = VIEJOS[componente], NUEVOS[componente]
        for nombre in viejos.keys() | nuevos.keys():
            exigir(self.archivos.get(nombre) in (viejos.get(nombre), nuevos.get(nombre), None),
                   nombre, "no es ni el viejo ni el nuevo")
        exigir(self.versiones[componente] == 1 or self.completo(componente),
               "se anotó la versión 2 de", componente, "y le faltan archivos")
        ausentes = [nombre for nombre in viejos if nombre not in self.archivos]
        exigir(len(ausentes) <= 1, "faltan", ausentes)
        return ausentes

    def revisar_el_resto(self):
        """Lo ajeno a los componentes está igual; da los archivos provisorios que quedaron."""
        conocidos = {"versiones.json", "resto.dll.viejo"}
        for componente in VIEJOS:
            conocidos |= VIEJOS[componente].keys() | NUEVOS[componente].keys()
        resto = {n: datos for n, datos in self.archivos.items() if n not in conocidos}
        for nombre, datos in PROPIOS.items():
            exigir(resto.pop(nombre, None) == datos, nombre, "cambió")
        for nombre in [n for n in resto if n.endswith(".viejo")]:
            exigir(resto.pop(nombre) == VIEJOS_TODOS.get(nombre.removesuffix(".viejo")), nombre,
                   "no es el viejo")
        exigir(all(PROVISORIO.fullmatch(nombre) for nombre in resto), "sobran", list(resto))
        return list(resto)

    def revisar_dicho(self, dicho, esperados=tuple(MENSAJES)):
        """Lo que se dijo es lo que pasó; da los componentes que fallaron, con su motivo."""
        exigir(dicho[-1:] == ["terminado"], "no terminó:", dicho)
        exigir(dicho[0] == "disponibles|garza|1|2|launcher|1|2", "ofreció", dicho[0])
        exigir(len(dicho) == 4, "no hubo un resultado por componente:", dicho)
        return {componente: motivo for componente, renglon in zip(("garza", "launcher"), dicho[1:])
                if (motivo := self.resultado(componente, renglon, esperados))}

    def resultado(self, componente, renglon, esperados):
        if renglon == f"actualizado|{componente}|2":
            exigir(self.completo(componente), "se dio por actualizado", componente)
            return None
        exigir(self.versiones[componente] == 1, "falló pero se anotó", componente)
        for motivo in esperados:
            if renglon == "error|" + MENSAJES[motivo].format(componente):
                return motivo
        raise Incumplido(f"se dijo {renglon!r} y se esperaba {esperados}")


VIEJOS_TODOS = VIEJOS["launcher"] | VIEJOS["garza"]


def completar(computadora):
    """El arranque siguiente, ya sin fallas, ofrece lo que falta y deja exactamente lo publicado."""
    antes = Revision(computadora)
    codigo, dicho = computadora.actualizar()
    exigir(codigo == 0, "el arranque siguiente terminó con", codigo)
    faltan = [componente for componente, version in antes.versiones.items() if version == 1]
    esperado = ["|".join(["disponibles", *(f"{componente}|1|2" for componente in faltan)]),
                *(f"actualizado|{componente}|2" for componente in faltan), "terminado"]
    exigir(dicho == (esperado if faltan else ["sin actualizaciones"]), "al reintentar:", dicho)

    despues = computadora.archivos()
    for nombre in antes.provisorios:
        despues.pop(nombre)
    publicado = {**VIEJOS_TODOS, **NUEVOS["launcher"], **NUEVOS["garza"], **PROPIOS,
                 "versiones.json": versiones(2, 2)}
    exigir(despues == publicado, "no quedó lo publicado:",
           [n for n in despues.keys() | publicado.keys() if despues.get(n) != publicado.get(n)])
    exigir(EN_USO + ".viejo" not in despues, "quedó el ejecutable anterior")
