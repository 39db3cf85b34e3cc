"""Los parámetros: lo que se configura con ellos y los que se rechazan."""

import unittest

from apoyo import (CARPETA, INSTALADORES, LISTO, PARAMETROS, TODOS, VERSION,
                   PruebaDeInstalador)

DIRECCION = "https://aulared.escuela.example:8443/a/b?c=d&e=%20f#g"


class PruebaParametros(PruebaDeInstalador):
    def configuracion(self):
        return self.json(TODOS, "config.json")

    def test_las_tres_direcciones_quedan_letra_por_letra(self):
        self.instalar(f"/AULARED={DIRECCION}", f"/MANIFIESTO={DIRECCION}&m", "/DESCARGAS=http://d")
        self.assertEqual(self.configuracion(), {"aulared_url": DIRECCION,
                                                "manifiesto_url": DIRECCION + "&m",
                                                "descargas_base": "http://d"})

    def test_entre_comillas_o_sin_ellas_es_lo_mismo(self):
        instalador = self.desde_windows(INSTALADORES / f"{VERSION}.exe")
        for escrita in (f'"/AULARED={DIRECCION}"', f'/AULARED="{DIRECCION}"',
                        "/aulared=" + DIRECCION.replace("&", "^&")):
            with self.subTest(escrita):
                orden = f"{instalador} /S /MANIFIESTO=http://m/x.json {escrita}"
                self.assertEqual(self.correr_escrito(orden.replace("%", "%%")), LISTO)
                self.assertEqual(self.configuracion()["aulared_url"], DIRECCION)
                self.assertEqual(self.configuracion()["manifiesto_url"], "http://m/x.json")

    def test_comillas_barras_y_acentos_quedan_bien_escritos_en_el_json(self):
        rara = 'https://ñandú.example/"con comillas"\\y\\barras\\\\'
        self.instalar(f"/AULARED={rara}")
        self.assertEqual(self.configuracion()["aulared_url"], rara)

    def test_la_configuracion_esta_en_utf8_sin_marca(self):
        self.instalar("/AULARED=https://ñ.example")
        texto = (self.en_windows(TODOS) / "config.json").read_bytes()
        self.assertTrue(texto.startswith(b"{"))
        self.assertIn("https://ñ.example".encode(), texto)

    def test_sin_el_parametro_la_marca_de_equipo_queda_como_estaba(self):
        self.instalar()
        self.assertFalse((self.datos / "equipo.json").exists())
        (self.datos / "equipo.json").write_bytes(b"de antes")
        self.instalar()
        self.assertEqual((self.datos / "equipo.json").read_bytes(), b"de antes")

    def test_marca_la_computadora_como_equipo_y_le_quita_la_marca(self):
        self.instalar("/EQUIPO")
        self.assertTrue((self.datos / "equipo.json").exists())
        self.instalar("/EQUIPO=no")
        self.assertFalse((self.datos / "equipo.json").exists())

    def test_un_parametro_mal_escrito_no_instala_nada(self):
        for malo in ("/AULAREDES=https://a", "/MODO=todo", "/MODO", "/AULARED=escuela.example",
                     "/AULARED=", "/AULARED", "/CARPETA=", "/EQUIPO=quizás", "/s", "suelto",
                     "/AULARED=https://" + "a" * 1100):
            with self.subTest(malo):
                self.exigir_intacto(malo, codigo=PARAMETROS)

    def test_la_carpeta_tiene_que_ser_completa(self):
        for mala in ("Quillay", r"\Quillay", "C:\\", "C:", "C:Quillay", r"\\servidor\Quillay"):
            with self.subTest(mala):
                self.exigir_intacto(f"/CARPETA={mala}", codigo=CARPETA)

    def test_en_una_carpeta_con_otras_cosas_no_instala(self):
        ajena = self.en_windows(r"C:\Fotos")
        ajena.mkdir()
        (ajena / "cumple.jpg").write_bytes(b"foto")
        self.exigir_intacto(r"/CARPETA=C:\Fotos", codigo=CARPETA)

    def test_una_carpeta_vacia_sirve(self):
        self.en_windows(r"C:\Vacia").mkdir()
        self.instalar(r"/CARPETA=C:\Vacia")
        self.exigir_instalado(r"C:\Vacia")

    def test_no_se_instala_dos_veces_en_lugares_distintos(self):
        self.instalar()
        self.exigir_intacto(r"/CARPETA=C:\Otra", codigo=CARPETA)


if __name__ == "__main__":
    unittest.main()
