#include "quillay/actualizador.h"

#include "pruebas/actualizacion/actualizador_espiado.h"
#include "pruebas/apoyo/archivos_ilegibles.h"
#include "pruebas/apoyo/disco_lleno.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/servidor_guionado.h"

#include <QDir>
#include <QMetaMethod>
#include <QNetworkAccessManager>
#include <QNetworkReply>

using namespace Qt::StringLiterals;

using quillay::Actualizador;
using Versiones = QMap<QString, QString>;

namespace {

const QString kNada = u"sin actualizaciones"_s;

} // namespace

class PruebaActualizador : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { escuela::vaciar(); }

    void susUnicosMetodosParaElSistemaDeObjetosSonLasSenales()
    {
        const QList<QByteArray> senales{
            "actualizacionesDisponibles(QList<Actualizacion>)",
            "sinActualizaciones()",
            "componenteActualizado(QString,QString)",
            "error(QString)",
            "terminado()",
        };
        const QMetaObject &meta = Actualizador::staticMetaObject;
        QCOMPARE(meta.methodCount() - meta.methodOffset(), senales.size());
        for (int i = 0; i < senales.size(); ++i) {
            const QMetaMethod metodo = meta.method(meta.methodOffset() + i);
            QCOMPARE(metodo.methodSignature(), senales.at(i));
            QCOMPARE(metodo.methodType(), QMetaMethod::Signal);
        }
    }

    void construirloNoPideNada()
    {
        const ActualizadorEspiado actualizador(QUrl(u"http://127.0.0.1:1/m.json"_s));
        const auto *red = actualizador.findChild<QNetworkAccessManager *>();
        QVERIFY(red);
        QVERIFY(red->findChildren<QNetworkReply *>().isEmpty());
    }

    void unaTransferenciaQueNoAvanzaSeCortaALos30Segundos()
    {
        const ActualizadorEspiado actualizador({});
        QCOMPARE(actualizador.findChild<QNetworkAccessManager *>()->transferTimeout(), 30000);
    }

    void sinDireccionUtilizableContestaEnLaMismaLlamada_data()
    {
        QTest::addColumn<QUrl>("direccion");
        QTest::newRow("ninguna") << QUrl();
        QTest::newRow("vacía") << QUrl(QString());
        QTest::newRow("mal escrita") << QUrl(u"http://[escuela"_s);
        QTest::newRow("puerto imposible") << QUrl(u"http://escuela:99999/m.json"_s);
    }

    void sinDireccionUtilizableContestaEnLaMismaLlamada()
    {
        QFETCH(const QUrl, direccion);
        instalarVersiones(R"({"garza": "1.0"})");
        ActualizadorEspiado actualizador(direccion);
        actualizador.verificar();
        QCOMPARE(actualizador.dicho, QStringList{kNada});
        QVERIFY(actualizador.findChildren<QNetworkReply *>().isEmpty());
    }

    void ofreceLaVersionPublicadaDistintaDeLaInstalada_data()
    {
        QTest::addColumn<QByteArray>("instaladas");
        QTest::addColumn<QByteArray>("publicadas");
        QTest::addColumn<QString>("dicho");
        const auto fila = [](const char *nombre, const QByteArray &instaladas,
                             const QByteArray &publicadas, const QString &dicho) {
            QTest::newRow(nombre) << instaladas << publicadas << dicho;
        };

        fila("la misma", R"({"garza": "1.0"})", R"({"garza": "1.0"})", kNada);
        fila("una anterior", R"({"garza": "1.0"})", R"({"garza": "0.9"})",
             u"disponibles|garza|1.0|0.9"_s);
        fila("la misma y un espacio", R"({"garza": "1.0"})", R"({"garza": "1.0 "})",
             u"disponibles|garza|1.0|1.0 "_s);
        fila("la misma con más ceros", R"({"garza": "1.0"})", R"({"garza": "1.0.0"})",
             u"disponibles|garza|1.0|1.0.0"_s);
        fila("otra mayúscula", R"({"garza": "1.0b"})", R"({"garza": "1.0B"})",
             u"disponibles|garza|1.0b|1.0B"_s);
        fila("la misma letra compuesta de otro modo", R"({"garza": "\u00f1"})",
             R"({"garza": "n\u0303"})", u"disponibles|garza|\u00f1|n\u0303"_s);
        fila("un número no nombra ninguna", R"({"garza": "1"})", R"({"garza": 2})", kNada);
        fila("tampoco un nulo", R"({"garza": "1"})", R"({"garza": null})", kNada);
        fila("tampoco una lista", R"({"garza": "1"})", R"({"garza": ["2"]})", kNada);
        fila("tampoco un texto vacío", R"({"garza": "1"})", R"({"garza": ""})", kNada);
        fila("un espacio es una versión", R"({"garza": "1"})", R"({"garza": " "})",
             u"disponibles|garza|1| "_s);
        fila("un componente que no está instalado", R"({"garza": "1"})",
             R"({"garza": "1", "tordo": "2"})", kNada);
        fila("uno que no está publicado", R"({"garza": "1", "tordo": "1"})", R"({"garza": "1"})",
             kNada);
        fila("otra mayúscula en el componente", R"({"garza": "1"})", R"({"Garza": "2"})", kNada);
        fila("uno que no es del catálogo", R"({"loro": "1"})", R"({"loro": "2"})",
             u"disponibles|loro|1|2"_s);
        fila("varios van por orden alfabético", R"({"zorzal": "1", "ceibo": "1", "launcher": "1"})",
             R"({"launcher": "2", "zorzal": "2", "ceibo": "2"})",
             u"disponibles|ceibo|1|2|launcher|1|2|zorzal|1|2"_s);
        fila("las mayúsculas ordenan antes", R"({"a": "1", "B": "1"})", R"({"a": "2", "B": "2"})",
             u"disponibles|B|1|2|a|1|2"_s);
        fila("solo los que cambiaron", R"({"ceibo": "1", "garza": "1", "zorzal": "1"})",
             R"({"ceibo": "2", "garza": "1", "zorzal": "2"})",
             u"disponibles|ceibo|1|2|zorzal|1|2"_s);
        fila("la instalada es nula", R"({"garza": null})", R"({"garza": "2"})",
             u"disponibles|garza||2"_s);
        fila("la instalada es un número", R"({"garza": 2})", R"({"garza": "2"})",
             u"disponibles|garza||2"_s);
        fila("la instalada es vacía y no hay publicada", R"({"garza": ""})", R"({"garza": ""})",
             kNada);
        fila("registro vacío", "{}", R"({"garza": "2"})", kNada);
        fila("registro que es una lista", R"(["garza"])", R"({"garza": "2"})", kNada);
    }

    void ofreceLaVersionPublicadaDistintaDeLaInstalada()
    {
        QFETCH(const QByteArray, instaladas);
        QFETCH(const QByteArray, publicadas);
        QFETCH(const QString, dicho);
        instalarVersiones(instaladas);
        ServidorGuionado servidor;
        servidor.contestar("/m.json", {.cuerpo = publicadas});

        ActualizadorEspiado actualizador(servidor.url(u"/m.json"_s));
        QCOMPARE(actualizador.alVerificar(), QStringList{dicho});
        QCOMPARE(escuela::leer(rutaVersiones()), instaladas);
    }

    void sinRegistroNoOfreceNada()
    {
        ServidorGuionado servidor;
        servidor.contestar("/m.json", {.cuerpo = R"({"garza": "2"})"});
        ActualizadorEspiado actualizador(servidor.url(u"/m.json"_s));
        QCOMPARE(actualizador.alVerificar(), QStringList{kNada});
        QCOMPARE(servidor.pedidos().size(), 1);
        QVERIFY(!QFile::exists(rutaVersiones()));
    }

    void leeLoInstaladoAlLlegarLaRespuesta()
    {
        instalarVersiones(R"({"garza": "1"})");
        ServidorGuionado servidor;
        servidor.contestar("/m.json", {.cuerpo = R"({"garza": "2"})"});
        connect(&servidor, &ServidorGuionado::pedidoRecibido, this,
                [] { instalarVersiones(R"({"garza": "1.5"})"); });
        ActualizadorEspiado actualizador(servidor.url(u"/m.json"_s));
        QCOMPARE(actualizador.alVerificar(), QStringList{u"disponibles|garza|1.5|2"_s});
    }

    void sinRegistroNoHayVersiones()
    {
        QCOMPARE(ActualizadorEspiado({}).versionesLocales(), Versiones());
    }

    void lasVersionesSonLosTextosDelRegistro()
    {
        instalarVersiones(R"({"zorzal": "2 ñ", "garza": null, "ceibo": 3, "launcher": ""})");
        QCOMPARE(
            ActualizadorEspiado({}).versionesLocales(),
            (Versiones{
                {u"ceibo"_s, {}}, {u"garza"_s, {}}, {u"launcher"_s, {}}, {u"zorzal"_s, u"2 ñ"_s}}));
    }

    void deUnRegistroIlegibleNoHayVersiones_data() { filasDeArchivosIlegibles(); }

    void deUnRegistroIlegibleNoHayVersiones()
    {
        QFETCH(const Estropeo, estropear);
        QDir().mkpath(carpetaInstalada());
        estropear(rutaVersiones());
        QCOMPARE(ActualizadorEspiado({}).versionesLocales(), Versiones());
    }

    void anotarAgregaLaClaveConSangria()
    {
        instalarVersiones(R"({"garza":"1.0"})");
        ActualizadorEspiado actualizador({});
        actualizador.guardarVersionLocal(u"ceibo"_s, u"2.0"_s);
        QCOMPARE(escuela::leer(rutaVersiones()), QByteArray(R"({
    "ceibo": "2.0",
    "garza": "1.0"
}
)"));
        QVERIFY(actualizador.dicho.isEmpty());
        QCOMPARE(escuela::archivosBajo(carpetaInstalada()), QStringList{u"versiones.json"_s});
    }

    void anotarReemplazaSoloEsaVersion()
    {
        instalarVersiones(R"({"zorzal": "3", "garza": "1.0", "ceibo": null})");
        ActualizadorEspiado({}).guardarVersionLocal(u"garza"_s, u"1.1 ñ 🎨"_s);
        QCOMPARE(escuela::leer(rutaVersiones()), QByteArray(R"({
    "ceibo": "",
    "garza": "1.1 ñ 🎨",
    "zorzal": "3"
}
)"));
    }

    void anotarSinRegistroLoEmpieza()
    {
        QDir().mkpath(carpetaInstalada());
        ActualizadorEspiado({}).guardarVersionLocal(u"garza"_s, u"1"_s);
        QCOMPARE(escuela::leer(rutaVersiones()), QByteArray("{\n    \"garza\": \"1\"\n}\n"));
    }

    void anotarSobreUnRegistroIlegibleDejaSoloEsaVersion()
    {
        instalarVersiones(R"(["garza"])");
        ActualizadorEspiado({}).guardarVersionLocal(u"ceibo"_s, u"2"_s);
        QCOMPARE(escuela::leer(rutaVersiones()), QByteArray("{\n    \"ceibo\": \"2\"\n}\n"));
    }

    void anotarSinLaCarpetaNoHaceNada()
    {
        ActualizadorEspiado actualizador({});
        actualizador.guardarVersionLocal(u"garza"_s, u"1"_s);
        QVERIFY(!QFile::exists(carpetaInstalada()));
        QVERIFY(actualizador.dicho.isEmpty());
    }

    void anotarConElDiscoLlenoDejaElAnterior()
    {
        const QByteArray anterior = "{\n    \"garza\": \"1\"\n}\n";
        const QList<quint64> discos = discosEnLosQueNoEntra(anterior.size());
        QVERIFY(!discos.isEmpty());
        for (const quint64 disco : discos) {
            instalarVersiones(anterior);
            ActualizadorEspiado actualizador({});
            const DiscoLleno lleno(disco);
            actualizador.guardarVersionLocal(u"garza"_s, u"2"_s);
            QCOMPARE(escuela::leer(rutaVersiones()), anterior);
            QCOMPARE(escuela::archivosBajo(carpetaInstalada()), QStringList{u"versiones.json"_s});
            QVERIFY(actualizador.dicho.isEmpty());
        }
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaActualizador, QCoreApplication>(argc, argv);
}

#include "prueba_actualizador.moc"
