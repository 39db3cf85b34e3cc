// Lo que puede contestar el servidor del manifiesto, y lo que se le pide.

#include "pruebas/actualizacion/actualizador_espiado.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/servidor_guionado.h"

#include <QTcpServer>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

using Respuesta = ServidorGuionado::Respuesta;
Q_DECLARE_METATYPE(Respuesta)

namespace {

const QString kNada = u"sin actualizaciones"_s;
const QString kGarza = u"disponibles|garza|1|2"_s;

QByteArray manifiesto()
{
    return R"({"garza": "2"})";
}

QUrl direccionSinServidor()
{
    QTcpServer servidor;
    servidor.listen(QHostAddress::LocalHost);
    return QUrl(u"http://127.0.0.1:%1/m.json"_s.arg(servidor.serverPort()));
}

/// Un manifiesto que se entiende y pesa `bytes`; lo de Garza está al final.
QByteArray manifiestoDe(qsizetype bytes)
{
    const QByteArray otra = R"("a": "1", )";
    return '{' + otra.repeated(bytes / otra.size()) + manifiesto().sliced(1);
}

} // namespace

class PruebaManifiesto : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        instalarVersiones(R"({"garza": "1"})");
    }

    void sePideConUnGetComun()
    {
        ServidorGuionado servidor;
        servidor.contestar("/m.json", {.cuerpo = manifiesto()});
        ActualizadorEspiado actualizador(servidor.url(u"/m.json?aula=5"_s));
        QCOMPARE(actualizador.alVerificar(), QStringList{kGarza});

        QCOMPARE(servidor.pedidos().size(), 1);
        const ServidorGuionado::Pedido &pedido = servidor.pedidos().constFirst();
        QCOMPARE(pedido.metodo, "GET");
        QCOMPARE(pedido.ruta, "/m.json?aula=5");
        QVERIFY(pedido.cuerpo.isEmpty());
        QList<QByteArray> cabeceras = pedido.cabeceras.keys();
        std::sort(cabeceras.begin(), cabeceras.end());
        QCOMPARE(cabeceras, (QList<QByteArray>{"accept-encoding", "accept-language", "connection",
                                               "host", "user-agent"}));
    }

    void cadaVerificacionLoPideDeNuevo()
    {
        ServidorGuionado servidor;
        ActualizadorEspiado actualizador(servidor.url(u"/m.json"_s));
        servidor.contestar("/m.json", {.cuerpo = manifiesto()});
        QCOMPARE(actualizador.alVerificar(), QStringList{kGarza});
        servidor.contestar("/m.json", {.cuerpo = "{}"});
        QCOMPARE(actualizador.alVerificar(), QStringList{kNada});
        servidor.contestar("/m.json", {.estado = 500});
        QCOMPARE(actualizador.alVerificar(), QStringList{kNada});
        QCOMPARE(servidor.pedidos().size(), 3);
    }

    void sigueUnaRedireccion()
    {
        ServidorGuionado servidor;
        servidor.contestar("/m.json", {.estado = 302, .cabeceras = {{"Location", "/otro.json"}}});
        servidor.contestar("/otro.json", {.cuerpo = manifiesto()});
        ActualizadorEspiado actualizador(servidor.url(u"/m.json"_s));
        QCOMPARE(actualizador.alVerificar(), QStringList{kGarza});
    }

    void unaFallaEsIgualQueNoTenerNada_data()
    {
        QTest::addColumn<Respuesta>("respuesta");
        for (const int estado : {400, 401, 403, 404, 407, 410, 418, 429, 500, 502, 503, 504, 599}) {
            QTest::addRow("código %d, con un manifiesto", estado)
                << Respuesta{.estado = estado, .cuerpo = manifiesto()};
        }
        QTest::newRow("código 204") << Respuesta{.estado = 204};
        QTest::newRow("cortada") << Respuesta{.cuerpo = manifiesto() + QByteArray(5000, ' '),
                                              .modo = Respuesta::Cortada};
        QTest::newRow("ni siquiera HTTP") << Respuesta{.modo = Respuesta::Basura};
        QTest::newRow("redirección en círculo")
            << Respuesta{.estado = 302, .cabeceras = {{"Location", "/m.json"}}};
        QTest::newRow("redirección a otro protocolo")
            << Respuesta{.estado = 302, .cabeceras = {{"Location", "file:///etc/passwd"}}};
    }

    void unaFallaEsIgualQueNoTenerNada()
    {
        QFETCH(const Respuesta, respuesta);
        ServidorGuionado servidor;
        servidor.contestar("/m.json", respuesta);
        ActualizadorEspiado actualizador(servidor.url(u"/m.json"_s));
        QCOMPARE(actualizador.alVerificar(), QStringList{kNada});
    }

    void sinNadieDelOtroLadoNoHayNada_data()
    {
        QTest::addColumn<QUrl>("direccion");
        QTest::newRow("no escucha nadie") << direccionSinServidor();
        QTest::newRow("un nombre que no existe") << QUrl(u"http://escuela.invalid/m.json"_s);
        QTest::newRow("un protocolo desconocido") << QUrl(u"paloma://escuela/m.json"_s);
        QTest::newRow("una ruta suelta") << QUrl(u"m.json"_s);
    }

    void sinNadieDelOtroLadoNoHayNada()
    {
        QFETCH(const QUrl, direccion);
        ActualizadorEspiado actualizador(direccion);
        QCOMPARE(actualizador.alVerificar(), QStringList{kNada});
    }

    void loQueNoEsUnObjetoEsUnManifiestoVacio_data()
    {
        QTest::addColumn<QByteArray>("cuerpo");
        QTest::newRow("vacío") << QByteArray();
        QTest::newRow("lista") << QByteArray(R"([{"garza": "2"}])");
        QTest::newRow("texto") << QByteArray(R"("garza")");
        QTest::newRow("cortado") << QByteArray(R"({"garza": "2")");
        QTest::newRow("y algo más") << manifiesto() + "{}";
        QTest::newRow("página web") << QByteArray("<html><body>Portal cautivo</body></html>");
        QTest::newRow("UTF-16") << QByteArray(R"({ " g a r z a " :   " 2 " } )").replace(' ', '\0');
        QTest::newRow("UTF-8 inválido") << QByteArray("{\"garza\": \"\xff\"}");
        QTest::newRow("anidado 100.000 veces")
            << QByteArray("{\"garza\":").repeated(100'000) + "\"2\"" + QByteArray(100'000, '}');
        QTest::newRow("50 MB de basura") << QByteArray(50'000'000, '{');
    }

    void loQueNoEsUnObjetoEsUnManifiestoVacio()
    {
        QFETCH(const QByteArray, cuerpo);
        ServidorGuionado servidor;
        servidor.contestar("/m.json", {.cuerpo = cuerpo});
        ActualizadorEspiado actualizador(servidor.url(u"/m.json"_s));
        QCOMPARE(actualizador.alVerificar(), QStringList{kNada});
    }

    void unoDe50MegasSeLee()
    {
        ServidorGuionado servidor;
        servidor.contestar("/m.json", {.cuerpo = manifiestoDe(50'000'000)});
        ActualizadorEspiado actualizador(servidor.url(u"/m.json"_s));
        QCOMPARE(actualizador.alVerificar(), QStringList{kGarza});
    }

    void laMarcaDeUtf8NoMolesta()
    {
        ServidorGuionado servidor;
        servidor.contestar("/m.json", {.cuerpo = "\xEF\xBB\xBF" + manifiesto()});
        ActualizadorEspiado actualizador(servidor.url(u"/m.json"_s));
        QCOMPARE(actualizador.alVerificar(), QStringList{kGarza});
    }

    void destruirloEsperandoLaRespuestaNoDiceNada()
    {
        ServidorGuionado servidor;
        servidor.contestar("/m.json", {.modo = Respuesta::Nunca});
        auto actualizador = std::make_unique<ActualizadorEspiado>(servidor.url(u"/m.json"_s));
        QStringList dicho;
        connect(actualizador.get(), &quillay::Actualizador::sinActualizaciones, this,
                [&] { dicho.append(kNada); });
        actualizador->verificar();
        QVERIFY(QTest::qWaitFor([&] { return servidor.pedidos().size() == 1; }));
        actualizador.reset();
        QCoreApplication::processEvents();
        QVERIFY(dicho.isEmpty());
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaManifiesto, QCoreApplication>(argc, argv);
}

#include "prueba_manifiesto.moc"
