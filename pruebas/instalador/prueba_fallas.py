"""Lo que impide instalar: no cambia nada y el código dice qué pasó."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

from apoyo import (INSTALADORES, NO_SE_PUDO_ESCRIBIR, OTRO_INSTALADOR, SIN_LUGAR,
                   SIN_PERMISOS_COMUNES, TODOS, VERSION, PruebaDeInstalador, arbol, esperar)
from armar import VIEJA

# Root también obedece los permisos de los archivos cuando no tiene estas capacidades.
COMO_UNO_MAS = ("setpriv", "--bounding-set=-all", "--inh-caps=-all", "--ambient-caps=-all") \
    if os.geteuid() == 0 else ()


class PruebaFallas(PruebaDeInstalador):
    delante = COMO_UNO_MAS

    def setUp(self):
        super().setUp()
        self.carpeta = self.en_windows(TODOS)

    def impedir_escribir(self, carpeta):
        carpeta.chmod(0o555)
        self.addCleanup(carpeta.chmod, 0o755)

    def test_donde_no_se_puede_escribir_no_instala(self):
        protegida = self.en_windows(r"C:\Protegida")
        protegida.mkdir()
        self.impedir_escribir(protegida)
        self.exigir_intacto(r"/CARPETA=C:\Protegida\Quillay", codigo=NO_SE_PUDO_ESCRIBIR)

    def test_sobre_una_instalacion_que_no_se_puede_cambiar_queda_la_anterior(self):
        self.instalar_vieja()
        self.impedir_escribir(self.carpeta)
        self.exigir_intacto(codigo=NO_SE_PUDO_ESCRIBIR)
        self.exigir_instalado(version=VIEJA)

    def test_si_no_se_puede_reemplazar_un_archivo_vuelven_todos_los_anteriores(self):
        self.instalar_vieja()
        self.impedir_escribir(self.carpeta / "styles")
        self.exigir_intacto(codigo=NO_SE_PUDO_ESCRIBIR)
        self.exigir_instalado(version=VIEJA)

    def test_si_no_puede_preparar_la_carpeta_de_datos_instala_y_lo_dice(self):
        programdata = self.en_windows(r"C:\ProgramData")
        self.impedir_escribir(programdata)
        self.instalar("/MODO=usuario", codigo=SIN_PERMISOS_COMUNES)
        self.exigir_instalado(self.propia)

    def test_dos_instaladores_a_la_vez_no_se_mezclan(self):
        primero = self.iniciar(INSTALADORES / f"{VERSION}.exe", "/S")
        esperar("el primer instalador", (self.carpeta / "instalando").exists)
        self.instalar(codigo=OTRO_INSTALADOR)
        self.assertEqual(primero.wait(timeout=60), 0)
        self.exigir_instalado()


class PruebaDiscoChico(PruebaDeInstalador):
    """Con la unidad D: en un disco de pocos MB."""

    def disco(self, megas):
        carpeta = Path(tempfile.mkdtemp(prefix="disco-"))
        self.addCleanup(carpeta.rmdir)
        montar = subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={megas}m", "tmpfs", carpeta],
                                capture_output=True, check=False)
        if montar.returncode:
            self.skipTest("hace falta ser root y poder montar un disco")
        self.addCleanup(subprocess.run, ["umount", "--lazy", carpeta], check=True)
        (self.prefijo / "dosdevices/d:").symlink_to(carpeta)
        return carpeta

    def test_sin_lugar_no_instala_ni_deja_carpetas(self):
        disco = self.disco(10)
        self.instalar(r"/CARPETA=D:\Lumbre\Quillay", codigo=SIN_LUGAR)
        self.assertEqual(list(disco.iterdir()), [])

    def test_sin_lugar_para_actualizar_la_anterior_sigue_andando(self):
        disco = self.disco(50)
        self.instalar_vieja(r"/CARPETA=D:\Quillay")
        antes = arbol(disco)
        self.instalar(codigo=SIN_LUGAR)
        self.assertEqual(arbol(disco), antes)
        self.abrir_quillay(r"D:\Quillay")

    def test_si_se_llena_mientras_extrae_no_deja_restos(self):
        disco = self.disco(45)
        relleno = disco / "relleno"
        proceso = self.iniciar(INSTALADORES / f"{VERSION}.exe", "/S", r"/CARPETA=D:\Quillay")
        esperar("el primer archivo extraído", lambda: list(disco.rglob("*.dll")))
        with open(relleno, "wb") as archivo:
            try:
                while True:
                    archivo.write(bytes(1 << 20))
            except OSError:
                pass
        self.assertEqual(proceso.wait(timeout=60), NO_SE_PUDO_ESCRIBIR)
        self.assertEqual([ruta.name for ruta in disco.iterdir()], ["relleno"])


if __name__ == "__main__":
    unittest.main()
