#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/servidor_guionado.h"
#include "pruebas/ombu/cliente_espiado.h"

#include <QNetworkReply>
#include <QPointer>
#include <QTcpServer>

#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using ombu::AuthAulared;
using Respuesta = ServidorGuionado::Respuesta;

namespace {

// Una dirección de este equipo en la que nadie escucha.
QUrl direccionRechazada()
{
    QTcpServer servidor;
    if (!servidor.listen(QHostAddress::LocalHost))
        qFatal("No se pudo reservar un puerto");
    return QUrl(u"http://127.0.0.1:%1"_s.arg(servidor.serverPort()));
}

} // namespace

class PruebaAuthAulared : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void conUnaDireccionQueNoSirveContestaDentroDeLaLlamadaSinPedirNada_data()
    {
        QTest::addColumn<QUrl>("base");
        QTest::newRow("ausente") << QUrl();
        QTest::newRow("vacía") << QUrl(u""_s);
        QTest::newRow("puerto imposible") << QUrl(u"http://127.0.0.1:99999"_s);
        QTest::newRow("servidor mal escrito") << QUrl(u"http://[127.0.0.1/auth"_s);
    }

    void conUnaDireccionQueNoSirveContestaDentroDeLaLlamadaSinPedirNada()
    {
        QFETCH(const QUrl, base);
        ClienteEspiado cliente(base);
        cliente.auth.verificarConexion();
        QCOMPARE(cliente.avisos(), 1);
        QCOMPARE(cliente.disponible.value(0), QVariantList{false});
        QVERIFY(cliente.auth.findChildren<QNetworkReply *>().isEmpty());
    }

    void entrarConUnaDireccionQueNoSirveNoConecta_data()
    {
        conUnaDireccionQueNoSirveContestaDentroDeLaLlamadaSinPedirNada_data();
    }

    void entrarConUnaDireccionQueNoSirveNoConecta()
    {
        QFETCH(const QUrl, base);
        ClienteEspiado cliente(base);
        cliente.auth.login(u"ana"_s, u"1234"_s);
        QVERIFY(cliente.auth.findChild<QNetworkReply *>()->url().host().isEmpty());
        QVERIFY(cliente.esperarAviso());
        QCOMPARE(cliente.avisos(), 1);
        QCOMPARE(cliente.motivo(), QString::fromUtf8(motivos::kSinConexion));
    }

    void laRutaSeAgregaALaDeLaDireccion_data()
    {
        QTest::addColumn<QString>("base");
        QTest::addColumn<QByteArray>("ruta");
        QTest::addColumn<QByteArray>("consulta");
        QTest::newRow("sin ruta") << u""_s << QByteArray() << QByteArray();
        // Qt no manda dos barras al comienzo: parecerían un servidor.
        QTest::newRow("solo la barra") << u"/"_s << QByteArray() << QByteArray();
        QTest::newRow("con ruta") << u"/auth"_s << QByteArray("/auth") << QByteArray();
        QTest::newRow("terminada en barra") << u"/auth/"_s << QByteArray("/auth/") << QByteArray();
        QTest::newRow("honda") << u"/a/b"_s << QByteArray("/a/b") << QByteArray();
        QTest::newRow("con consulta") << u"/auth?escuela=12&x=%20"_s << QByteArray("/auth")
                                      << QByteArray("?escuela=12&x=%20");
        QTest::newRow("con fragmento") << u"/auth#arriba"_s << QByteArray("/auth") << QByteArray();
        QTest::newRow("con espacio y eñe")
            << u"/la ñ"_s << QByteArray("/la%20%C3%B1") << QByteArray();
        QTest::newRow("con por ciento") << u"/100%25"_s << QByteArray("/100%25") << QByteArray();
        QTest::newRow("con signo de pregunta")
            << u"/que%3F"_s << QByteArray("/que%3F") << QByteArray();
    }

    void laRutaSeAgregaALaDeLaDireccion()
    {
        QFETCH(const QString, base);
        QFETCH(const QByteArray, ruta);
        QFETCH(const QByteArray, consulta);
        const ServidorGuionado servidor;
        ClienteEspiado ping(servidor.url(base));
        ping.auth.verificarConexion();
        QVERIFY(ping.esperarAviso());
        ClienteEspiado login(servidor.url(base));
        login.auth.login(u"ana"_s, u"1234"_s);
        QVERIFY(login.esperarAviso());

        QCOMPARE(servidor.pedidos().size(), 2);
        QCOMPARE(servidor.pedidos().at(0).ruta, ruta + "/api/ping" + consulta);
        QCOMPARE(servidor.pedidos().at(1).ruta, ruta + "/api/sesiones" + consulta);
    }

    void elPingEsUnGetSinCuerpoNiCabecerasPropias()
    {
        const ServidorGuionado servidor;
        ClienteEspiado cliente(servidor.url());
        cliente.auth.verificarConexion();
        QVERIFY(cliente.esperarAviso());
        const ServidorGuionado::Pedido pedido = servidor.pedidos().constFirst();
        QCOMPARE(pedido.metodo, "GET");
        QCOMPARE(pedido.cuerpo, QByteArray());
        for (const char *cabecera : {"content-type", "content-length", "authorization", "cookie"})
            QVERIFY2(!pedido.cabeceras.contains(cabecera), cabecera);
    }

    void elServicioEstaDisponibleSoloSiContestaBien_data()
    {
        QTest::addColumn<Respuesta>("respuesta");
        QTest::addColumn<bool>("esperado");
        QTest::newRow("200 vacío") << Respuesta{} << true;
        QTest::newRow("200 con cualquier cosa") << Respuesta{.cuerpo = "<html>"} << true;
        QTest::newRow("201") << Respuesta{.estado = 201} << true;
        QTest::newRow("204") << Respuesta{.estado = 204} << true;
        for (const int estado : {400, 401, 403, 404, 500, 503})
            QTest::addRow("%d", estado) << Respuesta{.estado = estado, .cuerpo = "{}"} << false;
        QTest::newRow("cortada") << Respuesta{.cuerpo = "{}", .modo = Respuesta::Cortada} << false;
        QTest::newRow("basura") << Respuesta{.modo = Respuesta::Basura} << false;
    }

    void elServicioEstaDisponibleSoloSiContestaBien()
    {
        QFETCH(const Respuesta, respuesta);
        QFETCH(const bool, esperado);
        ServidorGuionado servidor;
        servidor.contestar("/api/ping", respuesta);
        ClienteEspiado cliente(servidor.url());
        cliente.auth.verificarConexion();
        QCOMPARE(cliente.avisos(), 0);
        QVERIFY(cliente.esperarAviso());
        QCOMPARE(cliente.disponible.value(0), QVariantList{esperado});
        QTRY_VERIFY(cliente.auth.findChildren<QNetworkReply *>().isEmpty());
        QCOMPARE(cliente.avisos(), 1);
    }

    void siNadieEscuchaNoEstaDisponibleNiSePuedeEntrar()
    {
        const QUrl base = direccionRechazada();
        ClienteEspiado ping(base);
        ping.auth.verificarConexion();
        QVERIFY(ping.esperarAviso());
        QCOMPARE(ping.disponible.value(0), QVariantList{false});
        ClienteEspiado login(base);
        login.auth.login(u"ana"_s, u"1234"_s);
        QVERIFY(login.esperarAviso());
        QCOMPARE(login.motivo(), QString::fromUtf8(motivos::kSinConexion));
    }

    void cadaPreguntaTieneSuPropiaRespuesta()
    {
        ServidorGuionado servidor;
        servidor.contestar("/api/ping", {});
        servidor.contestar("/api/sesiones", {.estado = 401});
        ClienteEspiado cliente(servidor.url());
        cliente.auth.verificarConexion();
        cliente.auth.login(u"ana"_s, u"1"_s);
        cliente.auth.verificarConexion();
        QTRY_COMPARE(cliente.avisos(), 3);
        QCOMPARE(cliente.disponible.size(), 2);
        QCOMPARE(cliente.fallas.size(), 1);
        QTRY_VERIFY(cliente.auth.findChildren<QNetworkReply *>().isEmpty());
        QCOMPARE(cliente.avisos(), 3);
        QCOMPARE(servidor.pedidos().size(), 3);
    }

    void siElClienteSeDestruyeMientrasEsperaNoHayAvisos()
    {
        ServidorGuionado servidor;
        QSignalSpy pedidos(&servidor, &ServidorGuionado::pedidoRecibido);
        servidor.contestar("/api/ping", {.demora = 50ms});
        servidor.contestar("/api/sesiones", {.cuerpo = R"({"token":"t"})", .demora = 50ms});
        auto dueno = std::make_unique<QObject>();
        auto *auth = new AuthAulared(servidor.url(), dueno.get());
        QSignalSpy disponible(auth, &AuthAulared::disponible);
        QSignalSpy exitos(auth, &AuthAulared::loginExitoso);
        QSignalSpy fallas(auth, &AuthAulared::loginFallido);
        auth->verificarConexion();
        auth->login(u"ana"_s, u"1"_s);
        QTRY_COMPARE(pedidos.size(), 2);
        const QPointer<QNetworkReply> espera = auth->findChild<QNetworkReply *>();
        QVERIFY(espera);
        dueno.reset();
        QVERIFY(!espera);

        // Para cuando contesta este, ya se habría contestado a los otros.
        ClienteEspiado posterior(servidor.url());
        posterior.auth.login(u"beto"_s, u"2"_s);
        QVERIFY(posterior.esperarAviso());
        QCOMPARE(disponible.size() + exitos.size() + fallas.size(), 0);
    }

    // Todas las esperas a la vez: juntas duran lo que la más larga.
    void elPingEspera3SegundosYElLogin8()
    {
        ServidorGuionado servidor;
        const QByteArray cuerpo = R"({"token":"t"})";
        const auto preparar = [&](const QString &base, const Respuesta &respuesta) {
            servidor.contestar(base.toUtf8() + "/api/ping", respuesta);
            servidor.contestar(base.toUtf8() + "/api/sesiones", respuesta);
            return std::make_unique<ClienteEspiado>(servidor.url(base));
        };
        // Los márgenes dejan lugar al 5 % en que se corren los temporizadores de Qt.
        const auto pingATiempo = preparar(u"/a"_s, {.demora = 2600ms});
        const auto pingTarde = preparar(u"/b"_s, {.demora = 3400ms});
        const auto pingNunca = preparar(u"/c"_s, {.modo = Respuesta::Nunca});
        const auto pingSinFin = preparar(u"/d"_s, {.cuerpo = cuerpo, .modo = Respuesta::SinCerrar});
        const auto loginATiempo = preparar(u"/e"_s, {.cuerpo = cuerpo, .demora = 7200ms});
        const auto loginTarde = preparar(u"/f"_s, {.cuerpo = cuerpo, .demora = 9000ms});
        const auto loginNunca = preparar(u"/g"_s, {.modo = Respuesta::Nunca});
        const auto loginSinFin =
            preparar(u"/h"_s, {.cuerpo = cuerpo, .modo = Respuesta::SinCerrar});

        for (const auto *cliente : {&pingATiempo, &pingTarde, &pingNunca, &pingSinFin})
            (*cliente)->auth.verificarConexion();
        for (const auto *cliente : {&loginATiempo, &loginTarde, &loginNunca, &loginSinFin})
            (*cliente)->auth.login(u"ana"_s, u"1"_s);

        QVERIFY(pingATiempo->esperarAviso());
        QCOMPARE(pingATiempo->disponible.value(0), QVariantList{true});
        for (const auto *cliente : {&pingTarde, &pingNunca, &pingSinFin}) {
            QVERIFY((*cliente)->esperarAviso());
            QCOMPARE((*cliente)->disponible.value(0), QVariantList{false});
        }
        QVERIFY(loginATiempo->esperarAviso());
        QCOMPARE(loginATiempo->exitos.size(), 1);
        for (const auto *cliente : {&loginTarde, &loginNunca, &loginSinFin}) {
            QVERIFY((*cliente)->esperarAviso());
            QCOMPARE((*cliente)->motivo(), QString::fromUtf8(motivos::kSinConexion));
        }
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaAuthAulared, QCoreApplication>(argc, argv);
}

#include "prueba_auth_aulared.moc"
