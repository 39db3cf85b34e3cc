#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/servidor_guionado.h"
#include "pruebas/ombu/cliente_espiado.h"

#include <QNetworkReply>
#include <QTranslator>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace motivos;

using Respuesta = ServidorGuionado::Respuesta;

class PruebaLoginAulared : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void elLoginMandaLosDosTextosTalComoEstan_data()
    {
        QTest::addColumn<QString>("usuario");
        QTest::addColumn<QString>("clave");
        QTest::addColumn<QByteArray>("cuerpo");
        QTest::newRow("simples") << u"ana"_s << u"1234"_s
                                 << QByteArray(R"({"clave":"1234","usuario":"ana"})");
        QTest::newRow("con espacios")
            << u" ana  b "_s << u" 1 "_s << QByteArray(R"({"clave":" 1 ","usuario":" ana  b "})");
        QTest::newRow("vacíos") << u""_s << u""_s << QByteArray(R"({"clave":"","usuario":""})");
        QTest::newRow("con acentos")
            << u"ñandú"_s << u"🎨"_s << QByteArray(R"({"clave":"🎨","usuario":"ñandú"})");
        QTest::newRow("con comillas, barras y saltos")
            << u"a\"b\""_s << u"\\\n\t/"_s
            << QByteArray(R"({"clave":"CLAVE","usuario":"USUARIO"})")
                   .replace("CLAVE", R"(\\\n\t/)")
                   .replace("USUARIO", R"(a\"b\")");
    }

    void elLoginMandaLosDosTextosTalComoEstan()
    {
        QFETCH(const QString, usuario);
        QFETCH(const QString, clave);
        const ServidorGuionado servidor;
        ClienteEspiado cliente(servidor.url());
        cliente.auth.login(usuario, clave);
        QVERIFY(cliente.esperarAviso());
        QCOMPARE(servidor.pedidos().size(), 1);
        const ServidorGuionado::Pedido pedido = servidor.pedidos().constFirst();
        QCOMPARE(pedido.metodo, "POST");
        QCOMPARE(pedido.cabeceras.value("content-type"), "application/json");
        QTEST(pedido.cuerpo, "cuerpo");
    }

    void cadaFallaDelLoginTieneSuMotivo_data()
    {
        QTest::addColumn<Respuesta>("respuesta");
        QTest::addColumn<QByteArray>("motivo");
        const QByteArray conToken = R"({"token":"t"})";
        const auto fila = [](const char *caso, const Respuesta &respuesta, const char *motivo) {
            QTest::newRow(caso) << respuesta << QByteArray(motivo);
        };
        fila("401", {.estado = 401}, kMalos);
        fila("401 con token", {.estado = 401, .cuerpo = conToken}, kMalos);
        fila("401 que pide credenciales",
             {.estado = 401, .cabeceras = {{"WWW-Authenticate", "Basic realm=\"x\""}}}, kMalos);
        fila("401 cortado", {.estado = 401, .cuerpo = conToken, .modo = Respuesta::Cortada},
             kSinConexion);
        fila("400", {.estado = 400, .cuerpo = conToken}, kSinConexion);
        fila("403", {.estado = 403, .cuerpo = conToken}, kSinConexion);
        fila("404", {.estado = 404, .cuerpo = conToken}, kSinConexion);
        fila("500", {.estado = 500, .cuerpo = conToken}, kSinConexion);
        fila("503", {.estado = 503, .cuerpo = conToken}, kSinConexion);
        fila("200 cortado", {.cuerpo = conToken, .modo = Respuesta::Cortada}, kSinConexion);
        fila("basura", {.modo = Respuesta::Basura}, kSinConexion);
        fila("204", {.estado = 204}, kInvalida);
        fila("200 vacío", {}, kInvalida);
        fila("que no es JSON", {.cuerpo = "<html>token</html>"}, kInvalida);
        fila("JSON cortado", {.cuerpo = R"({"token":"t")"}, kInvalida);
        fila("UTF-8 inválido", {.cuerpo = "{\"token\":\"t\",\"id\":\"\xE1\"}"}, kInvalida);
        fila("bytes nulos", {.cuerpo = QByteArray(64, '\0')}, kInvalida);
        fila("100.000 niveles",
             {.cuerpo = R"({"token":"t","id":)" + QByteArray(100'000, '[') +
                        QByteArray(100'000, ']') + "}"},
             kInvalida);
        fila("lista", {.cuerpo = "[" + conToken + "]"}, kInvalida);
        fila("solo un texto", {.cuerpo = R"("token")"}, kInvalida);
        fila("sin token", {.cuerpo = R"({"id":"17","nombre":"Ana"})"}, kInvalida);
        fila("token vacío", {.cuerpo = R"({"token":"","nombre":"Ana"})"}, kInvalida);
        fila("token nulo", {.cuerpo = R"({"token":null})"}, kInvalida);
        fila("token numérico", {.cuerpo = R"({"token":17})"}, kInvalida);
        fila("token booleano", {.cuerpo = R"({"token":true})"}, kInvalida);
        fila("token en una lista", {.cuerpo = R"({"token":["t"]})"}, kInvalida);
        fila("token en un objeto", {.cuerpo = R"({"token":{"token":"t"}})"}, kInvalida);
        fila("token con mayúscula", {.cuerpo = R"({"Token":"t"})"}, kInvalida);
    }

    void cadaFallaDelLoginTieneSuMotivo()
    {
        QFETCH(const Respuesta, respuesta);
        QFETCH(const QByteArray, motivo);
        ServidorGuionado servidor;
        servidor.contestar("/api/sesiones", respuesta);
        ClienteEspiado cliente(servidor.url());
        cliente.auth.login(u"ana"_s, u"1234"_s);
        QVERIFY(cliente.esperarAviso());
        QCOMPARE(cliente.motivo(), QString::fromUtf8(motivo));
        QTRY_VERIFY(cliente.auth.findChildren<QNetworkReply *>().isEmpty());
        QCOMPARE(cliente.avisos(), 1);
    }

    void unLoginBuenoDaTokenIdYNombre_data()
    {
        QTest::addColumn<Respuesta>("respuesta");
        QTest::addColumn<QStringList>("aviso");
        const auto fila = [](const char *caso, const QByteArray &cuerpo, const QStringList &aviso) {
            QTest::newRow(caso) << Respuesta{.cuerpo = cuerpo} << aviso;
        };
        const QStringList soloToken{u"t"_s, {}, {}};
        fila("completo", R"({"nombre":"Ana","id":"17","token":"a1b2","otra":[1]})",
             {u"a1b2"_s, u"17"_s, u"Ana"_s});
        fila("con acentos", R"({"token":"ñ","id":"é","nombre":" Ñandú 🎨 "})",
             {u"ñ"_s, u"é"_s, u" Ñandú 🎨 "_s});
        fila("con la marca de UTF-8", "\xEF\xBB\xBF{\"token\":\"t\"}", soloToken);
        fila("solo token", R"({"token":"t"})", soloToken);
        fila("token de espacios", R"({"token":" "})", {u" "_s, {}, {}});
        fila("id numérico", R"({"token":"t","id":17,"nombre":"Ana"})", {u"t"_s, {}, u"Ana"_s});
        fila("nombre numérico", R"({"token":"t","id":"17","nombre":3})", {u"t"_s, u"17"_s, {}});
        fila("nulos", R"({"token":"t","id":null,"nombre":null})", soloToken);
        fila("listas y objetos", R"({"token":"t","id":["17"],"nombre":{"a":"b"}})", soloToken);
        fila("de 5 MB",
             QByteArray(R"({"token":"t","nombre":"LARGO"})")
                 .replace("LARGO", QByteArray(5'000'000, 'a')),
             {u"t"_s, {}, QString(5'000'000, u'a')});
        QTest::newRow("201") << Respuesta{.estado = 201, .cuerpo = R"({"token":"t"})"} << soloToken;
    }

    void unLoginBuenoDaTokenIdYNombre()
    {
        QFETCH(const Respuesta, respuesta);
        QFETCH(const QStringList, aviso);
        ServidorGuionado servidor;
        servidor.contestar("/api/sesiones", respuesta);
        ClienteEspiado cliente(servidor.url());
        cliente.auth.login(u"ana"_s, u"1234"_s);
        QVERIFY(cliente.esperarAviso());
        QVERIFY(cliente.exitos.size() == 1);
        for (qsizetype i = 0; i < aviso.size(); ++i)
            QVERIFY(cliente.exitos.at(0).at(i).toString() == aviso.at(i));
        QTRY_VERIFY(cliente.auth.findChildren<QNetworkReply *>().isEmpty());
        QCOMPARE(cliente.avisos(), 1);
    }

    void dosLoginsALaVezSonDosPedidosYContestanEnElOrdenEnQueTerminan()
    {
        ServidorGuionado servidor;
        QSignalSpy pedidos(&servidor, &ServidorGuionado::pedidoRecibido);
        ClienteEspiado cliente(servidor.url());
        servidor.contestar("/api/sesiones", {.cuerpo = R"({"token":"lento"})", .demora = 300ms});
        cliente.auth.login(u"ana"_s, u"1"_s);
        QTRY_COMPARE(pedidos.size(), 1);
        servidor.contestar("/api/sesiones", {.cuerpo = R"({"token":"rápido"})"});
        cliente.auth.login(u"beto"_s, u"2"_s);
        QTRY_COMPARE(cliente.exitos.size(), 2);
        QCOMPARE(cliente.exitos.at(0).at(0).toString(), u"rápido"_s);
        QCOMPARE(cliente.exitos.at(1).at(0).toString(), u"lento"_s);
        QCOMPARE(servidor.pedidos().at(0).cuerpo, R"({"clave":"1","usuario":"ana"})");
        QCOMPARE(servidor.pedidos().at(1).cuerpo, R"({"clave":"2","usuario":"beto"})");
    }

    void losTextosSeTraducenEnElContextoDeLaClase()
    {
        struct Traductor : QTranslator
        {
            bool isEmpty() const override { return false; }
            QString translate(const char *contexto, const char *texto, const char * /*aclaracion*/,
                              int /*n*/) const override
            {
                return QString::fromUtf8(contexto) + u'|' + QString::fromUtf8(texto);
            }
        } traductor;
        QVERIFY(QCoreApplication::installTranslator(&traductor));
        ServidorGuionado servidor;
        const QList<std::pair<Respuesta, const char *>> casos{
            {{.estado = 401}, kMalos}, {{.estado = 500}, kSinConexion}, {{}, kInvalida}};
        for (const auto &[respuesta, motivo] : casos) {
            servidor.contestar("/api/sesiones", respuesta);
            ClienteEspiado cliente(servidor.url());
            cliente.auth.login(u"ana"_s, u"1"_s);
            QVERIFY(cliente.esperarAviso());
            QCOMPARE(cliente.motivo(), "ombu::AuthAulared|"_L1 + QString::fromUtf8(motivo));
        }
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaLoginAulared, QCoreApplication>(argc, argv);
}

#include "prueba_login_aulared.moc"
