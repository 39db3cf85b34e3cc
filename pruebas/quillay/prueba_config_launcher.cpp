#include "quillay/ventana_launcher.h"

#include "pruebas/apoyo/archivos_ilegibles.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/servidor_guionado.h"
#include "pruebas/quillay/lanzador.h"

#include <QApplication>
#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

QString rutaConfig()
{
    return escuela::dirLanzador() + "/config.json"_L1;
}

} // namespace

class PruebaConfigLauncher : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { escuela::vaciar(); }

    void leeCadaClaveDelArchivoQueEstaJuntoAlPrograma()
    {
        const Lanzador en;
        const QJsonObject config{{u"aulared_url"_s, u"https://aulared.ejemplo/escuela"_s},
                                 {u"manifiesto_url"_s, u"https://ejemplo/ñ.json"_s},
                                 {u"descargas_base"_s, u"https://ejemplo/paquetes"_s},
                                 {u"otra"_s, u"también"_s}};
        escuela::escribir(rutaConfig(), QJsonDocument(config).toJson());
        QCOMPARE(en.ventana.leerConfig(u"aulared_url"_s), u"https://aulared.ejemplo/escuela"_s);
        QCOMPARE(en.ventana.leerConfig(u"manifiesto_url"_s), u"https://ejemplo/ñ.json"_s);
        QCOMPARE(en.ventana.leerConfig(u"descargas_base"_s), u"https://ejemplo/paquetes"_s);
        QCOMPARE(en.ventana.leerConfig(u"otra"_s), u"también"_s);
        QCOMPARE(en.ventana.leerConfig(u"no_esta"_s), QString());
    }

    void loQueNoEsUnTextoSeLeeVacio_data()
    {
        QTest::addColumn<QByteArray>("valor");
        QTest::newRow("número") << QByteArray("42");
        QTest::newRow("verdadero") << QByteArray("true");
        QTest::newRow("nulo") << QByteArray("null");
        QTest::newRow("lista") << QByteArray(R"(["x"])");
        QTest::newRow("objeto") << QByteArray(R"({"aulared_url": "x"})");
    }

    void loQueNoEsUnTextoSeLeeVacio()
    {
        QFETCH(const QByteArray, valor);
        const Lanzador en;
        escuela::escribir(rutaConfig(), "{\"aulared_url\": " + valor + "}");
        QCOMPARE(en.ventana.leerConfig(u"aulared_url"_s), QString());
    }

    void unArchivoIlegibleEsComoQueNoEste_data() { filasDeArchivosIlegibles(); }

    void unArchivoIlegibleEsComoQueNoEste()
    {
        QFETCH(const Estropeo, estropear);
        estropear(rutaConfig());
        const Lanzador en;
        QCOMPARE(en.pagina(), Lanzador::Perfiles);
        QCOMPARE(en.ventana.leerConfig(u"aulared_url"_s), QString());
    }

    void unaListaEnLaRaizEsComoQueNoEste()
    {
        const Lanzador en;
        escuela::escribir(rutaConfig(), R"([{"aulared_url": "x"}])");
        QCOMPARE(en.ventana.leerConfig(u"aulared_url"_s), QString());
    }

    void sinArchivoOConUnaCarpetaEnSuLugarSeLeeVacio()
    {
        const Lanzador en;
        QCOMPARE(en.ventana.leerConfig(u"aulared_url"_s), QString());
        QDir().mkpath(rutaConfig());
        QCOMPARE(en.ventana.leerConfig(u"aulared_url"_s), QString());
    }

    void cadaLecturaVuelveAlArchivo()
    {
        const Lanzador en;
        escuela::escribir(rutaConfig(), R"({"aulared_url": "antes"})");
        QCOMPARE(en.ventana.leerConfig(u"aulared_url"_s), u"antes"_s);
        escuela::escribir(rutaConfig(), R"({"aulared_url": "después"})");
        QCOMPARE(en.ventana.leerConfig(u"aulared_url"_s), u"después"_s);
    }

    void cambiarElServicioValeDesdeElProximoArranque()
    {
        ServidorGuionado deAntes;
        ServidorGuionado deDespues;
        configurarAulared(deAntes.url().toString());
        Lanzador en;
        configurarAulared(deDespues.url().toString());
        QVERIFY(en.respuestas.wait());
        en.ventana.decidirPantallaInicial();
        QVERIFY(en.respuestas.wait());
        QCOMPARE(deAntes.pedidos().size(), 2);
        QCOMPARE(deDespues.pedidos().size(), 0);

        Lanzador otro;
        QVERIFY(otro.respuestas.wait());
        QCOMPARE(deDespues.pedidos().size(), 1);
    }

    void leerNoEscribeNada()
    {
        const QByteArray config = R"({"aulared_url":   "antes"})";
        escuela::escribir(rutaConfig(), config);
        const Lanzador en;
        en.ventana.leerConfig(u"aulared_url"_s);
        QCOMPARE(escuela::leer(rutaConfig()), config);
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaConfigLauncher, QApplication>(argc, argv);
}

#include "prueba_config_launcher.moc"
