"""Instalar encima: de una versión anterior, de una en uso y de una dañada."""

import subprocess
import unittest

from apoyo import DESINSTALADOR, INSTALADORES, TODOS, VERSION, PruebaDeInstalador, arbol
from armar import SOLO_EN_LA_VIEJA, VIEJA

CONFIGURACION = {"aulared_url": "https://a", "manifiesto_url": "https://m", "otra": [1, {"x": 2}]}


class PruebaActualizar(PruebaDeInstalador):
    def setUp(self):
        super().setUp()
        self.carpeta = self.en_windows(TODOS)

    def test_de_una_version_anterior_conserva_la_configuracion_las_apps_y_los_datos(self):
        self.instalar_vieja()
        self.exigir_instalado(version=VIEJA)
        self.escribir_json(TODOS, "config.json", CONFIGURACION)
        self.escribir_json(TODOS, "versiones.json", {"launcher": VIEJA, "garza": "1.4.0"})
        self.escribir_json(r"C:\ProgramData\Lumbre", "perfiles.json", [{"nombre": "Ana"}])
        garza = self.carpeta / "Garza/garza.exe"
        garza.parent.mkdir()
        garza.write_bytes(b"MZ garza")

        self.instalar()

        self.exigir_instalado(ademas=("Garza/garza.exe", *SOLO_EN_LA_VIEJA))
        self.assertEqual(self.json(TODOS, "config.json"), CONFIGURACION)
        self.assertEqual(self.json(TODOS, "versiones.json"), {"launcher": VERSION,
                                                             "garza": "1.4.0"})
        self.assertEqual(self.json(r"C:\ProgramData\Lumbre", "perfiles.json"), [{"nombre": "Ana"}])
        self.assertEqual(garza.read_bytes(), b"MZ garza")
        self.assertEqual(self.registro()["DisplayVersion"], VERSION)

    def test_los_parametros_cambian_solo_sus_claves(self):
        self.instalar()
        self.escribir_json(TODOS, "config.json", CONFIGURACION)
        self.instalar("/MANIFIESTO=https://nuevo")
        self.assertEqual(self.json(TODOS, "config.json"),
                         CONFIGURACION | {"manifiesto_url": "https://nuevo"})

    def test_una_configuracion_que_no_se_entiende_queda_como_esta_si_nadie_la_cambia(self):
        self.instalar()
        (self.carpeta / "config.json").write_bytes(b'{"aulared_url": ')
        self.instalar()
        self.assertEqual((self.carpeta / "config.json").read_bytes(), b'{"aulared_url": ')

    def test_sin_decir_la_carpeta_actualiza_donde_esta(self):
        self.instalar_vieja(r"/CARPETA=C:\Otra\Quillay")
        self.instalar()
        self.exigir_instalado(r"C:\Otra\Quillay", ademas=SOLO_EN_LA_VIEJA)
        self.assertFalse(self.carpeta.exists())

    def test_toma_una_carpeta_portatil(self):
        self.en_windows(r"C:\Lumbre").mkdir()
        subprocess.run(["cp", "-r", INSTALADORES / VIEJA, self.carpeta], check=True)
        self.instalar()
        self.exigir_instalado(ademas=SOLO_EN_LA_VIEJA)

    def test_con_el_lanzador_abierto_aparta_los_archivos_en_uso(self):
        self.instalar_vieja()
        self.abrir_quillay()
        self.instalar()
        apartados = [nombre for nombre in arbol(self.carpeta) if nombre.endswith(".viejo")]
        self.assertIn("quillay.exe.viejo", apartados)
        self.exigir_instalado(ademas=(*SOLO_EN_LA_VIEJA, *apartados))

    def test_se_puede_actualizar_dos_veces_con_el_mismo_lanzador_abierto(self):
        self.instalar_vieja()
        self.abrir_quillay()
        self.instalar()
        self.instalar()
        self.assertEqual((self.carpeta / "quillay.exe").read_bytes(),
                         (INSTALADORES / VERSION / "quillay.exe").read_bytes())

    def test_al_abrirlo_despues_no_quedan_los_apartados(self):
        self.instalar_vieja()
        self.abrir_quillay()
        self.instalar()
        self.apagar()
        self.abrir_quillay()
        self.exigir_instalado(ademas=SOLO_EN_LA_VIEJA)

    def test_repara_una_instalacion_a_la_que_le_falta_el_ejecutable(self):
        self.instalar()
        (self.carpeta / "quillay.exe").rename(self.carpeta / "quillay.exe.viejo")
        self.instalar()
        self.exigir_instalado(ademas=("quillay.exe.viejo",))

    def test_repara_archivos_cortados_y_carpetas_que_faltan(self):
        self.instalar()
        (self.carpeta / "Qt6Core.dll").write_bytes(b"MZ")
        (self.carpeta / "platforms/qwindows.dll").unlink()
        (self.carpeta / "platforms").rmdir()
        (self.carpeta / "versiones.json").write_bytes(b"")
        (self.carpeta / DESINSTALADOR).unlink()
        self.instalar()
        self.exigir_instalado()

    def test_termina_una_instalacion_que_se_corto(self):
        self.instalar()
        restos = self.carpeta / "instalando/platforms"
        restos.mkdir(parents=True)
        (restos / "qwindows.dll").write_bytes(b"a medias")
        (restos / "ajeno.dll").write_bytes(b"de otra version")
        self.instalar()
        self.exigir_instalado()

    def test_instalar_dos_veces_no_cambia_nada(self):
        self.instalar("/AULARED=https://a")
        antes = self.todo()
        self.instalar()
        despues = self.todo()
        for nombre in antes:
            if not nombre.endswith(".lnk"):  # lleva fechas
                self.assertEqual(despues.pop(nombre), antes[nombre], nombre)


if __name__ == "__main__":
    unittest.main()
