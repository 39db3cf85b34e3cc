#!/usr/bin/env python3
"""Una actualización interrumpida en cada una de sus operaciones con archivos.

Cuenta las operaciones con las que el actualizador cambia archivos y repite la actualización desde
cero una vez por cada una: matándolo justo antes, haciéndola fallar y llenando el disco desde ahí.
Después de cada vez revisa lo que quedó, y que el arranque siguiente lo complete.
"""

import concurrent.futures
import os
import re
import subprocess
import sys
import tempfile
import time
from collections import Counter
from pathlib import Path

from escuela import Computadora, Programas, Servidor
from revision import Incumplido, Revision, completar, exigir

# El nombre de cada operación en strace, y qué renglones suyos cuentan.
DE_STRACE = re.compile(r"(?:\d+ +)?(openat|write|sendfile|ioctl|ftruncate|fdatasync|fsync|fchmod|"
                       r"chmod|utimensat|mkdir|rmdir|unlink|unlinkat|link|linkat|rename|renameat2|"
                       r"renameat|mkdirat|fchmodat|truncate|fallocate|copy_file_range|pwrite64|"
                       r"writev|symlink|creat)\((.*)")
ESCRIBE = re.compile(r"O_(WRONLY|RDWR|CREAT|TRUNC)")


def contar(computadora, registro):
    """Las operaciones de una actualización sin fallas: pares de nombre y ruta."""
    computadora.preparar()
    registro.unlink(missing_ok=True)
    codigo, dicho = computadora.actualizar_con_falla(registro=registro)
    exigir(codigo == 0, "la actualización sin fallas terminó con", codigo)
    exigir(not Revision(computadora).revisar_dicho(dicho), "sin fallas se dijo", dicho)
    completar(computadora)
    return [tuple(r.split("|", 1)) for r in registro.read_text().splitlines()]


def comparar_con_strace(computadora, salida, registro):
    """Lo que cuenta la biblioteca es lo que ve strace. Da falso si strace no puede correr."""
    if subprocess.run(["strace", "-o", "/dev/null", "true"], check=False,
                      stderr=subprocess.DEVNULL).returncode != 0:
        return False
    computadora.preparar()
    registro.unlink(missing_ok=True)
    entorno = {"LD_PRELOAD": computadora.programas.falla_en, "FALLA_BAJO": computadora.base,
               "FALLA_REGISTRO": registro}
    para_el_corredor = [f"-E{variable}={valor}" for variable, valor in entorno.items()]
    codigo, _ = computadora.actualizar(["strace", "-y", "-s0", "-o", salida, *para_el_corredor])
    exigir(codigo == 0, "con strace terminó con", codigo)
    vistas = [nombre for nombre, resto in map(separar, salida.read_text().splitlines())
              if nombre and f"{computadora.base}/" in resto and cuenta(nombre, resto)]
    contadas = [renglon.split("|")[0] for renglon in registro.read_text().splitlines()]
    exigir(vistas == contadas, "strace ve", Counter(vistas), "y se contaron", Counter(contadas))
    return True


def separar(renglon):
    hallado = DE_STRACE.match(renglon)
    return hallado.groups() if hallado else (None, "")


def cuenta(nombre, resto):
    if nombre == "openat":
        return ESCRIBE.search(resto)
    return nombre != "ioctl" or "CLONE" in resto


class Corrida:
    """Las repeticiones con una falla, y lo que se fue viendo."""

    def __init__(self, programas, url, base, operaciones):
        self.programas, self.url, self.base = programas, url, base
        self.operaciones = operaciones
        self.fallados = []
        self.resultados = {modo: Counter() for modo in ("matar", "error", "lleno")}
        self.maximo = 0

    def una(self, modo, en):
        with tempfile.TemporaryDirectory(dir=self.base) as carpeta:
            computadora = Computadora(Path(carpeta), self.programas, self.url)
            computadora.preparar()
            codigo, dicho = computadora.actualizar_con_falla(modo, en)
            revision = Revision(computadora)
            if modo == "matar":
                exigir(codigo == -9, "no murió: terminó con", codigo)
                resultado = "con un archivo ausente" if any(revision.ausentes.values()) else "enteras"
            else:
                exigir(codigo == 0, "terminó con", codigo)
                fallos = revision.revisar_dicho(dicho, self.motivos(modo, en))
                exigir(modo == "lleno" or len(fallos) <= 1, "un error hizo fallar", fallos)
                exigir(not revision.provisorios, "quedaron", revision.provisorios)
                resultado = next(iter(fallos.values()), "sin consecuencias")
            completar(computadora)
            return resultado, max(map(len, revision.ausentes.values()))

    def motivos(self, modo, en):
        """Qué se puede decir cuando falla esa operación."""
        if modo == "lleno":
            return ("guardar", "extraer", "reemplazar")
        nombre, ruta = self.operaciones[en - 1]
        if "/temporal/" in ruta:
            return ("extraer",) if nombre == "write" else ("guardar",)
        return ("reemplazar",) if "versiones.json" not in ruta else ()

    def correr(self, puntos):
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as hilos:
            tareas = {hilos.submit(self.una, *punto): punto for punto in puntos}
            for tarea in concurrent.futures.as_completed(tareas):
                self.anotar(*tareas[tarea], tarea)

    def anotar(self, modo, en, tarea):
        try:
            resultado, ausentes = tarea.result()
        except Incumplido as falla:
            nombre, ruta = self.operaciones[en - 1]
            self.fallados.append(f"{modo} en la operación {en} ({nombre} {ruta}): {falla}")
            return
        self.resultados[modo][resultado] += 1
        self.maximo = max(self.maximo, ausentes)


def informar(corrida, segundos):
    operaciones = corrida.operaciones
    por_nombre = ", ".join(f"{n} {c}" for n, c in Counter(n for n, _ in operaciones).most_common())
    print(f"Operaciones de una actualización: {len(operaciones)} ({por_nombre})")
    for modo, nombre in (("matar", "Muertes"), ("error", "Errores"), ("lleno", "Discos llenos")):
        veces = corrida.resultados[modo]
        detalle = ", ".join(f"{c} {r}" for r, c in veces.most_common())
        print(f"{nombre}: {veces.total()} ({detalle})")
    print(f"Archivos ausentes a la vez en un componente: {corrida.maximo} como mucho")
    print(f"Incumplimientos: {len(corrida.fallados)}. {segundos:.0f} s")
    for fallado in corrida.fallados[:20]:
        print("  " + fallado, file=sys.stderr)


def main():
    analizador = Programas.analizador(__doc__)
    analizador.add_argument("--cada", type=int, default=1, help="probar una de cada tantas fallas")
    opciones = analizador.parse_args()
    programas = Programas(opciones)

    inicio = time.monotonic()
    with tempfile.TemporaryDirectory(prefix="fallas-") as carpeta:
        base = Path(carpeta).resolve()
        publicado = base / "publicado"
        publicado.mkdir()
        servidor = Servidor(publicado)
        computadora = Computadora(base / "modelo", programas, servidor.url)
        operaciones = contar(computadora, base / "registro")
        if not comparar_con_strace(computadora, base / "strace", base / "registro"):
            print("Sin comparar con strace: aquí no puede seguir a otro proceso")

        corrida = Corrida(programas, servidor.url, base, operaciones)
        puntos = [(modo, en) for en in range(1, len(operaciones) + 1)
                  for turno, modo in enumerate(("matar", "error", "lleno"))
                  if (en + turno) % opciones.cada == 0]
        corrida.correr(puntos)
        informar(corrida, time.monotonic() - inicio)
    return 1 if corrida.fallados else 0


if __name__ == "__main__":
    sys.exit(main())
