"""Lo que no se puede publicar: cada caso con su código, su explicación y nada cambiado."""

import os
import resource
import shutil
import socket
import unittest
from unittest import mock

from apoyo import PruebaDePublicar, arbol, restos
from publicacion import paquete
from publicacion.opciones import opciones
from publicacion.problemas import Codigo, Problema


class PruebaLineaDeOrdenes(PruebaDePublicar):
    def test_habla_en_espanol(self):
        casos = {(): "falta decir: ORDEN", ("nada",): "no es una de las posibles",
                 ("revisar",): "falta decir: --servidor",
                 ("revisar", "--servidor"): "falta su valor",
                 ("revisar", "--servidor", "x", "y"): "no se entiende: y"}
        for argumentos, texto in casos.items():
            salida = self.correr(*argumentos)
            self.assertEqual(salida.returncode, 2)
            self.assertIn(texto, salida.stderr)
            self.assertTrue(salida.stderr.startswith("uso: "))

    def test_la_ayuda_esta_entera_en_espanol(self):
        for orden in ((), ("paquete",), ("apuntar",), ("revisar",), ("versiones",)):
            salida = self.correr(*orden, "--help")
            self.assertEqual(salida.returncode, 0)
            for ajeno in ("usage", "options:", "positional", "show this"):
                self.assertNotIn(ajeno, salida.stdout)


class PruebaPedidos(PruebaDePublicar):
    def setUp(self):
        super().setUp()
        self.publicar("1.0")

    def test_un_componente_que_no_esta_en_el_catalogo(self):
        for componente in ("Garza", "", ".", "quillay"):
            self.exigir_falla(Codigo.COMPONENTE, *self.argumentos(componente=componente),
                              menciona=("launcher", "benteveo", "nandu"))

    def test_una_version_que_rompe_un_nombre_o_una_direccion(self):
        for version in ("", "1/2", "1\\2", "..", "1..2", "1\n", "1\t0", " 1", "1 ", "1%20", "1#a",
                        "1?", "1:0", "1\u200b", "1\u2028", "x" * 151, "ñ" * 80):
            with self.subTest(version=version):
                self.exigir_falla(Codigo.VERSION, *self.argumentos(version))

    def test_otras_versiones_raras_sirven(self):
        for version in ("2", "1.5.0-rc 1", "2024.ñandú", "1.0+dos", "v1.", "x" * 150):
            with self.subTest(version=version):
                self.publicar(version)
                self.assertEqual(self.manifiesto(), {"garza": version})

    def test_la_carpeta_no_existe_o_no_es_una_carpeta(self):
        self.exigir_falla(Codigo.CARPETA, *self.argumentos(carpeta=self.base / "no"),
                          menciona=("no existe",))
        self.exigir_falla(Codigo.CARPETA, *self.argumentos(carpeta=self.garza / "garza.exe"),
                          menciona=("no es una carpeta",))

    def test_la_carpeta_y_la_del_servidor_estan_una_dentro_de_la_otra(self):
        self.armar("servidor/Garza", {"garza.exe": b"x"})
        self.exigir_falla(Codigo.CARPETA, *self.argumentos(carpeta=self.servidor / "Garza"))
        self.exigir_falla(Codigo.CARPETA, *self.argumentos(carpeta=self.base))
        self.exigir_falla(Codigo.CARPETA, *self.argumentos(carpeta=self.servidor))

    def test_no_hay_nada_que_publicar(self):
        vacia = self.armar("vacia", {"garza.exe.viejo": b"x"})
        (vacia / "datos/mas").mkdir(parents=True)
        self.exigir_falla(Codigo.VACIA, *self.argumentos(carpeta=vacia))

    def test_es_la_carpeta_de_otro_componente(self):
        self.exigir_falla(Codigo.EJECUTABLE, *self.argumentos(componente="ceibo"),
                          menciona=("ceibo.exe",))
        self.exigir_falla(Codigo.EJECUTABLE, *self.argumentos(componente="launcher"),
                          menciona=("quillay.exe",))

    def test_un_enlace_simbolico(self):
        for destino in ("garza.exe", "datos", "no existe", "/"):
            (self.garza / "enlace").symlink_to(destino)
            self.exigir_falla(Codigo.ENLACE, *self.argumentos(), menciona=("enlace",))
            (self.garza / "enlace").unlink()

    def test_un_archivo_especial(self):
        os.mkfifo(self.garza / "datos/tubo")
        self.exigir_falla(Codigo.ENLACE, *self.argumentos(), menciona=("datos/tubo",))
        (self.garza / "datos/tubo").unlink()
        with socket.socket(socket.AF_UNIX) as conector:
            conector.bind(str(self.garza / "conector"))
            self.exigir_falla(Codigo.ENLACE, *self.argumentos(), menciona=("conector",))

    def test_un_nombre_que_windows_no_acepta(self):
        for nombre in ("a<b", "a>b", "a:b", 'a"b', "a|b", "a?b", "a*b", "a\\b", "punto.", "blanco ",
                       "a\nb", "CON", "nul.txt", "Aux.tar.gz", "com1", "LPT9.x", "prn .txt", "COM²",
                       "CONIN$", os.fsdecode(b"latin-\xf1")):
            for lugar in (nombre, f"datos/{nombre}", f"{nombre}/x"):
                with self.subTest(lugar=lugar):
                    self.armar("Garza", {lugar: b"x"})
                    self.exigir_falla(Codigo.NOMBRE, *self.argumentos())
                    borrar(self.garza, lugar)

    def test_nombres_que_solo_se_parecen_a_los_reservados(self):
        parecidos = ("console.txt", "com10", "null", "mi.con", "COM", ".con", "auxiliar/prn_1")
        self.armar("Garza", {nombre: b"x" for nombre in parecidos})
        self.publicar()
        self.assertLessEqual(set(parecidos), set(self.nombres()))

    def test_dos_nombres_que_para_windows_son_el_mismo(self):
        for uno, otro in (("Año.txt", "AÑO.TXT"), ("datos/x", "DATOS/y"), ("datos/a", "datos/A")):
            self.armar("Garza", {uno: b"x", otro: b"y"})
            self.exigir_falla(Codigo.NOMBRE, *self.argumentos(), menciona=("mismo nombre",))
            borrar(self.garza, uno)
            borrar(self.garza, otro)

    def test_nombres_que_solo_python_cree_iguales(self):
        self.armar("Garza", {"straße": b"x", "STRASSE": b"y"})
        self.publicar()

    def test_la_carpeta_del_servidor_no_existe(self):
        shutil.rmtree(self.servidor)
        self.exigir_falla(Codigo.SERVIDOR, *self.argumentos(), menciona=("no existe",))
        self.servidor.write_bytes(b"")
        self.exigir_falla(Codigo.SERVIDOR, *self.argumentos())

    def test_el_manifiesto_no_es_un_objeto_json(self):
        for roto in (b"", b"{", b'{"garza": "1.0",}', b"[]", b"null", b'"1.0"', b'{"a": NaN}',
                     b'{"garza": "\xf1"}', b'{"garza": "\\ud800"}', b"[" * 100000):
            (self.servidor / "manifiesto.json").write_bytes(roto)
            for orden in (self.argumentos("1.1"),
                          ["apuntar", "--componente", "garza", "--version", "1.0",
                           "--servidor", self.servidor],
                          ["versiones", "--manifiesto", self.servidor / "manifiesto.json",
                           "--salida", self.base / "v.json", "garza"]):
                with self.subTest(roto=roto[:30], orden=orden[0]):
                    self.exigir_falla(Codigo.MANIFIESTO, *orden)

    def test_el_manifiesto_no_es_un_archivo(self):
        (self.servidor / "manifiesto.json").rename(self.servidor / "otro.json")
        (self.servidor / "manifiesto.json").symlink_to("otro.json")
        self.exigir_falla(Codigo.MANIFIESTO, *self.argumentos("1.1"))
        (self.servidor / "manifiesto.json").unlink()
        (self.servidor / "manifiesto.json").mkdir()
        self.exigir_falla(Codigo.MANIFIESTO, *self.argumentos("1.1"))

    def test_el_nombre_del_manifiesto_se_va_de_la_carpeta(self):
        for nombre in ("../m.json", "/m.json", "a/m.json", "", ".", "..", ".oculto", "paquetes"):
            self.exigir_falla(Codigo.MANIFIESTO, *self.argumentos("1.1", "--manifiesto", nombre))

    def test_la_version_ya_esta_publicada_con_otro_contenido(self):
        self.armar("Garza", {"datos/uno.txt": b"UNO"})
        self.exigir_falla(Codigo.YA_PUBLICADA, *self.argumentos("1.0"), menciona=("--reemplazar",))
        (self.garza / "datos/uno.txt").unlink()
        self.exigir_falla(Codigo.YA_PUBLICADA, *self.argumentos("1.0"))
        self.armar("Garza", {"datos/uno.txt": b"uno", "datos/dos.txt": b"dos"})
        self.exigir_falla(Codigo.YA_PUBLICADA, *self.argumentos("1.0"))

    def test_el_paquete_publicado_esta_danado(self):
        entero = self.paquete("1.0").read_bytes()
        cambiado = bytearray(entero)
        cambiado[44] ^= 0xFF
        for danado in (b"", b"hola", entero[:-30], bytes(cambiado)):
            self.paquete("1.0").write_bytes(danado)
            self.exigir_falla(Codigo.PAQUETE, *self.argumentos("1.0"))
            self.exigir_falla(Codigo.PAQUETE, *self.argumentos("1.1", "--desde-version", "1.0"))
            self.publicar("1.0", "--reemplazar")
            self.assertEqual(self.paquete("1.0").read_bytes(), entero)


class PruebaSinPermiso(PruebaDePublicar):
    def setUp(self):
        super().setUp()
        self.publicar("1.0")

    def correr(self, *argumentos, **opciones):
        """A root ningún permiso le importa: se le quita ese privilegio."""
        privilegios = "-dac_override,-dac_read_search"
        sin_privilegios = ["setpriv", "--bounding-set", privilegios] if os.geteuid() == 0 else []
        return super().correr(*argumentos, delante=sin_privilegios, **opciones)

    def exigir_falla_sin_permiso(self, codigo, ruta, *argumentos, menciona=()):
        antes = arbol(self.base)
        ruta.chmod(0o555 if codigo == Codigo.SERVIDOR else 0)
        try:
            salida = self.correr(*argumentos)
        finally:
            ruta.chmod(0o755 if ruta.is_dir() else 0o644)
        self.assertEqual(salida.returncode, codigo, salida.stderr)
        for texto in menciona:
            self.assertIn(texto, salida.stderr)
        self.assertEqual(arbol(self.base), antes)
        self.assertEqual(restos(self.base), [])

    def test_un_archivo_o_una_carpeta_que_no_se_puede_leer(self):
        for nombre in ("datos/uno.txt", "datos"):
            self.exigir_falla_sin_permiso(Codigo.ILEGIBLE, self.garza / nombre,
                                          *self.argumentos("1.1"), menciona=(nombre, "permiso"))

    def test_el_manifiesto_no_se_puede_leer(self):
        self.exigir_falla_sin_permiso(Codigo.ILEGIBLE, self.servidor / "manifiesto.json",
                                      *self.argumentos("1.1"), menciona=("manifiesto.json",))

    def test_no_se_puede_escribir_en_el_servidor(self):
        for ruta in (self.servidor, self.servidor / "paquetes"):
            self.exigir_falla_sin_permiso(Codigo.SERVIDOR, ruta, *self.argumentos("1.1"),
                                          menciona=("permiso",))

    def test_no_se_puede_escribir_en_un_servidor_sin_estrenar(self):
        nuevo = self.base / "nuevo"
        nuevo.mkdir()
        argumentos = [nuevo if a == self.servidor else a for a in self.argumentos("1.1")]
        self.exigir_falla_sin_permiso(Codigo.SERVIDOR, nuevo, *argumentos, menciona=("permiso",))


class PruebaComprobacion(PruebaDePublicar):
    """Lo escrito se vuelve a leer: si no es lo que se quiso escribir, no se publica."""

    def exigir_que_no_se_publique(self, funcion, reemplazo):
        self.publicar("1.0")
        antes = arbol(self.servidor)
        pedido = opciones().parse_args([str(a) for a in self.argumentos("1.1")])
        with mock.patch(funcion, reemplazo), self.assertRaises(Problema) as falla:
            pedido.orden(pedido)
        self.assertEqual(falla.exception.codigo, Codigo.COMPROBACION)
        self.assertIn("No se publicó", str(falla.exception))
        self.assertEqual(arbol(self.servidor), antes)

    def test_la_carpeta_cambio_mientras_se_armaba_el_paquete(self):
        def escribir_y_cambiar(*argumentos):
            paquete_escribir(*argumentos)
            self.armar("Garza", {"datos/uno.txt": b"UNO"})
        paquete_escribir = paquete.escribir
        self.exigir_que_no_se_publique("publicacion.paquete.escribir", escribir_y_cambiar)

    def test_el_disco_guardo_otra_cosa(self):
        def danar(descriptor):
            os.pwrite(descriptor, b"\xff\xff", 44)
        self.exigir_que_no_se_publique("publicacion.servidor.os.fsync", danar)


class PruebaDiscoLleno(PruebaDePublicar):
    def test_no_entra_el_paquete(self):
        self.publicar("1.0")
        self.armar("Garza", {"grande.bin": os.urandom(200_000)})
        self.exigir_falla(Codigo.ESPACIO, *self.argumentos("1.1"), preexec_fn=disco_de(100_000),
                          menciona=("No hay lugar",))
        self.assertEqual(restos(self.servidor), [])

    def test_no_entra_el_manifiesto(self):
        self.publicar("1.0")
        ruta = self.servidor / "manifiesto.json"
        ruta.write_text('{"ceibo": "%s"}' % ("1" * 5000), encoding="utf-8")
        self.exigir_falla(Codigo.ESPACIO, *self.argumentos("1.1"), preexec_fn=disco_de(3_000))
        self.assertFalse(self.paquete("1.1").exists())
        self.assertEqual(restos(self.servidor), [])

    def test_despues_de_hacer_lugar_se_publica(self):
        self.armar("Garza", {"grande.bin": os.urandom(200_000)})
        self.exigir_falla(Codigo.ESPACIO, *self.argumentos(), preexec_fn=disco_de(100_000))
        self.publicar()


def disco_de(bytes_):
    """Lo que se corre en la herramienta antes de empezar para que ningún archivo pase de ahí."""
    return lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (bytes_, bytes_))


def borrar(raiz, relativa):
    """Borra un archivo y las carpetas que quedan vacías."""
    (raiz / relativa).unlink()
    carpeta = (raiz / relativa).parent
    while carpeta != raiz and not any(carpeta.iterdir()):
        carpeta.rmdir()
        carpeta = carpeta.parent


if __name__ == "__main__":
    unittest.main()
