"""Lo que va en un paquete y cómo llega."""

import os
import stat
import unittest
import zipfile
from contextlib import redirect_stderr, redirect_stdout
from io import StringIO
from unittest import mock

from apoyo import NOMBRES, PruebaDePublicar, arbol, restos
from publicacion.opciones import opciones


class PruebaPaquete(PruebaDePublicar):
    def test_arriba_de_todo_va_el_contenido_de_la_carpeta(self):
        self.publicar()
        self.assertEqual(self.nombres(), ["datos/uno.txt", "garza.exe"])
        self.assertEqual(self.manifiesto(), {"garza": "1.5.0"})
        self.assertEqual(restos(self.servidor), [])

    def test_lo_que_extrae_el_lanzador_es_lo_publicado(self):
        self.armar("Garza", {nombre: os.urandom(3000) for nombre in NOMBRES})
        self.armar("Garza", {"vacio.txt": b"", "grande.bin": bytes(3 << 20)})
        self.armar("Garza", {"pin\u0303ata.txt": b"NFD"})
        self.publicar()
        self.assertEqual(arbol(self.extraer(self.paquete(), self.base / "x")), arbol(self.garza))

    def test_los_nombres_que_no_son_ascii_van_marcados_como_utf8(self):
        self.armar("Garza", {nombre: b"x" for nombre in NOMBRES})
        self.publicar()
        with zipfile.ZipFile(self.paquete()) as paquete:
            for entrada in paquete.infolist():
                marcado = bool(entrada.flag_bits & 0x800)
                self.assertEqual(marcado, not entrada.filename.isascii(), entrada.filename)

    def test_publicar_lo_mismo_en_dos_servidores_da_los_mismos_bytes(self):
        self.publicar()
        primero = self.paquete().read_bytes()
        self.paquete().unlink()
        for ruta in self.garza.rglob("*"):
            os.utime(ruta, (10**9, 10**9))
        self.garza.joinpath("datos/uno.txt").chmod(0o600)
        self.publicar()
        self.assertEqual(self.paquete().read_bytes(), primero)

    def test_las_entradas_van_comprimidas_y_en_orden(self):
        self.armar("Garza", {f"{letra}.txt": b"a" * 10000 for letra in "zñaB"})
        self.publicar()
        with zipfile.ZipFile(self.paquete()) as paquete:
            self.assertEqual(paquete.namelist(), sorted(paquete.namelist()))
            self.assertLess(paquete.getinfo("z.txt").compress_size, 100)
            self.assertEqual({entrada.date_time for entrada in paquete.infolist()},
                             {(1980, 1, 1, 0, 0, 0)})

    def test_lo_ejecutable_se_extrae_ejecutable(self):
        self.publicar()
        destino = self.extraer(self.paquete(), self.base / "x")
        self.assertTrue((destino / "garza.exe").stat().st_mode & stat.S_IXUSR)
        self.assertFalse((destino / "datos/uno.txt").stat().st_mode & stat.S_IXUSR)

    def test_lo_publicado_lo_puede_leer_el_servidor_web_con_cualquier_umask(self):
        salida = self.correr(*self.argumentos(), umask=0o077)
        self.assertEqual(salida.returncode, 0, salida.stderr)
        for ruta in (self.paquete(), self.servidor / "manifiesto.json"):
            self.assertEqual(stat.S_IMODE(ruta.stat().st_mode), 0o644)
        self.assertEqual(stat.S_IMODE(self.paquete().parent.stat().st_mode), 0o755)

    def test_los_viejo_no_van(self):
        self.armar("Garza", {"garza.exe.viejo": b"x", "datos/B.VIEJO": b"x"})
        salida = self.publicar()
        self.assertEqual(self.nombres(), ["datos/uno.txt", "garza.exe"])
        self.assertIn("No va en el paquete: datos/B.VIEJO, garza.exe.viejo.", salida.stdout)

    def test_una_carpeta_vacia_no_va_y_se_avisa(self):
        (self.garza / "plantillas/propias").mkdir(parents=True)
        salida = self.publicar()
        self.assertEqual(self.nombres(), ["datos/uno.txt", "garza.exe"])
        self.assertIn("carpetas vacías", salida.stderr)
        self.assertIn("plantillas/propias", salida.stderr)


class PruebaPaqueteDelLauncher(PruebaDePublicar):
    DEL_LAUNCHER = {"quillay.exe": b"MZ", "shared/translations/qtbase_es.qm": b"qm",
                    "shared/config.json": b"{}", "shared/Garza/g.txt": b"g"}
    DE_LA_ESCUELA = {"config.json": b"{}", "versiones.json": b"{}", "versiones.json.aB3x": b"{",
                     "quillay.exe.viejo": b"MZ", "Ceibo/ceibo.exe": b"c", "Nandu/nandu.exe": b"n",
                     "GARZA/garza.exe": b"g", "desinstalar.exe": b"MZ",
                     "instalando/quillay.exe": b"MZ"}

    def test_no_lleva_las_apps_ni_lo_que_es_de_la_escuela(self):
        carpeta = self.armar("Quillay", self.DEL_LAUNCHER | self.DE_LA_ESCUELA)
        salida = self.publicar("2.2.0", componente="launcher", carpeta=carpeta)
        self.assertEqual(self.nombres("2.2.0", componente="launcher"), sorted(self.DEL_LAUNCHER))
        self.assertIn("No va en el paquete: Ceibo/, GARZA/, Nandu/, config.json, "
                      "desinstalar.exe, instalando/, quillay.exe.viejo, versiones.json, versiones.json.aB3x.", salida.stdout)

    def test_una_app_si_lleva_su_propio_config_json(self):
        self.armar("Garza", {"config.json": b"{}", "versiones.json": b"{}", "Ceibo/x": b"x"})
        self.publicar()
        self.assertIn("config.json", self.nombres())
        self.assertIn("versiones.json", self.nombres())
        self.assertIn("Ceibo/x", self.nombres())

    def test_vale_el_ejecutable_de_debian(self):
        carpeta = self.armar("Quillay", {"quillay": b"ELF"})
        self.publicar("2.2.0", componente="launcher", carpeta=carpeta)


class PruebaAvisos(PruebaDePublicar):
    def test_una_carpeta_comun_no_tiene_avisos(self):
        self.assertEqual(self.publicar().stderr, "")

    def test_avisa_de_los_archivos_ocultos(self):
        self.armar("Garza", {".git/HEAD": b"x", ".oculto": b"x"})
        salida = self.publicar()
        self.assertIn("ocultos", salida.stderr)
        self.assertIn(".git/HEAD, .oculto", salida.stderr)

    def test_avisa_de_los_acentos_separados(self):
        self.armar("Garza", {"cancio\u0301n.txt": b"x"})
        self.assertIn("acentos separados", self.publicar().stderr)

    def test_avisa_de_los_corchetes(self):
        self.armar("Garza", {"[1].txt": b"x"})
        self.assertIn("corchetes", self.publicar().stderr)

    def test_avisa_de_las_rutas_que_se_acercan_al_limite_de_windows(self):
        # C:\Users\(20)\AppData\Local\Temp\Quillay-XXXXXX\contenido\ son 74 caracteres.
        self.armar("Garza", {"c" * 100 + "/" + "n" * 64: b"x"})
        self.assertNotIn("el límite", self.publicar("1.5.0").stderr)
        self.armar("Garza", {"c" * 100 + "/" + "n" * 65: b"x"})
        self.assertIn("240 caracteres", self.publicar("1.5.1").stderr)

    def test_avisa_de_muchos_archivos(self):
        self.armar("Garza", {f"datos/{n}": b"" for n in range(1998)})
        self.assertEqual(self.publicar("1.5.0").stderr, "")
        self.armar("Garza", {"datos/otro": b""})
        self.assertIn("Son 2001 archivos", self.publicar("1.5.1").stderr)

    def test_avisa_de_un_paquete_enorme(self):
        for maximo, avisa in ((100, True), (10**6, False)):
            with (mock.patch("publicacion.avisos._MUCHOS_BYTES", maximo),
                  redirect_stdout(StringIO()), redirect_stderr(StringIO()) as avisos):
                pedido = opciones().parse_args([str(a) for a in self.argumentos()])
                pedido.orden(pedido)
            self.assertEqual("lo tiene entero en memoria" in avisos.getvalue(), avisa)


if __name__ == "__main__":
    unittest.main()
