#include "quillay/actualizador.h"

#include "pruebas/actualizacion/actualizador_espiado.h"
#include "pruebas/actualizacion/paquete.h"
#include "pruebas/actualizacion/powershell.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/servidor_guionado.h"
#include "pruebas/apoyo/sistema.h"

#include <QDir>
#include <QTcpServer>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

using quillay::Actualizacion;
using Respuesta = ServidorGuionado::Respuesta;
Q_DECLARE_METATYPE(Respuesta)

namespace {

const Actualizacion kCeibo{u"ceibo"_s, u"1"_s, u"2"_s};
const Actualizacion kGarza{u"garza"_s, u"1"_s, u"2"_s};
const Actualizacion kZorzal{u"zorzal"_s, u"1"_s, u"2"_s};

QByteArray versionesDeAntes()
{
    return "{\n    \"ceibo\": \"1\",\n    \"garza\": \"1\"\n}\n";
}

QList<QByteArray> rutasPedidas(const ServidorGuionado &servidor)
{
    QList<QByteArray> rutas;
    for (const ServidorGuionado::Pedido &pedido : servidor.pedidos())
        rutas.append(pedido.ruta);
    return rutas;
}

} // namespace

class PruebaDescarga : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        powershell::usarElDeMuestra();
        instalarVersiones(versionesDeAntes());
    }

    void unaListaVaciaTerminaEnLaMismaLlamada()
    {
        ActualizadorEspiado actualizador({}, QUrl(u"http://127.0.0.1:1/d"_s));
        actualizador.aplicar({});
        QCOMPARE(actualizador.dicho, QStringList{u"terminado"_s});
    }

    void conLaColaVaciaAplicarSiguienteTermina()
    {
        ActualizadorEspiado actualizador({}, QUrl(u"http://127.0.0.1:1/d"_s));
        actualizador.aplicarSiguiente();
        QCOMPARE(actualizador.dicho, QStringList{u"terminado"_s});
    }

    void laDireccionDelPaqueteSaleDeLaDeDescargas_data()
    {
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("version");
        QTest::addColumn<QByteArray>("ruta");
        const auto fila = [](const char *nombre, const QString &base, const QString &version,
                             const QByteArray &ruta) {
            QTest::newRow(nombre) << base << version << ruta;
        };
        fila("sin barra al final", u"/d"_s, u"1.5.0"_s, "/d/garza-1.5.0.zip");
        fila("con barra al final", u"/d/"_s, u"1.5.0"_s, "/d/garza-1.5.0.zip");
        fila("sin ruta", u""_s, u"1.5.0"_s, "/garza-1.5.0.zip");
        fila("solo la barra", u"/"_s, u"1.5.0"_s, "/garza-1.5.0.zip");
        fila("con carpetas", u"/a/b/c"_s, u"2"_s, "/a/b/c/garza-2.zip");
        fila("con consulta", u"/d?aula=5&x=%2F"_s, u"2"_s, "/d/garza-2.zip?aula=5&x=%2F");
        fila("con consulta y barra", u"/d/?aula=5"_s, u"2"_s, "/d/garza-2.zip?aula=5");
        fila("base codificada", u"/mis%20paquetes/%C3%B1"_s, u"2"_s,
             "/mis%20paquetes/%C3%B1/garza-2.zip");
        fila("base con signos codificados", u"/a%3Fb%23c"_s, u"2"_s, "/a%3Fb%23c/garza-2.zip");
        fila("versión con espacio y acento", u"/d"_s, u"1.5 ñ"_s, "/d/garza-1.5%20%C3%B1.zip");
        fila("versión con signos de dirección", u"/d"_s, u"1?a#b"_s, "/d/garza-1%3Fa%23b.zip");
        fila("versión con porcentaje", u"/d"_s, u"100%"_s, "/d/garza-100%25.zip");
        fila("versión que parece codificada", u"/d"_s, u"1%20"_s, "/d/garza-1%2520.zip");
        fila("versión con más", u"/d"_s, u"1+2"_s, "/d/garza-1+2.zip");
        fila("versión vacía", u"/d"_s, u""_s, "/d/garza-.zip");
    }

    void laDireccionDelPaqueteSaleDeLaDeDescargas()
    {
        QFETCH(const QString, base);
        QFETCH(const QString, version);
        QFETCH(const QByteArray, ruta);
        const ServidorGuionado servidor;
        ActualizadorEspiado actualizador({}, servidor.url(base));
        actualizador.alAplicar({{u"garza"_s, u"1"_s, version}});
        QCOMPARE(rutasPedidas(servidor), QList<QByteArray>{ruta});
    }

    void sePideConUnGetComun()
    {
        const ServidorGuionado servidor;
        ActualizadorEspiado actualizador({}, servidor.url(u"/d"_s));
        actualizador.alAplicar({kGarza});
        const ServidorGuionado::Pedido pedido = servidor.pedidos().value(0);
        QCOMPARE(pedido.metodo, "GET");
        QVERIFY(pedido.cuerpo.isEmpty());
        QCOMPARE(pedido.cabeceras.size(), 5);
        QVERIFY(!pedido.cabeceras.contains("if-modified-since"));
    }

    void sigueUnaRedireccion()
    {
        ServidorGuionado servidor;
        servidor.contestar("/d/garza-2.zip",
                           {.estado = 301, .cabeceras = {{"Location", "/e/otro.zip"}}});
        servidor.contestar("/e/otro.zip", {.cuerpo = comprimir({{u"a.txt"_s, "nuevo"}})});
        ActualizadorEspiado actualizador({}, servidor.url(u"/d"_s));
        QCOMPARE(actualizador.alAplicar({kGarza}),
                 (QStringList{u"actualizado|garza|2"_s, u"terminado"_s}));
    }

    void loQueNoSeBajaSeDiceYNoCambiaNada_data()
    {
        QTest::addColumn<Respuesta>("respuesta");
        QTest::addColumn<QString>("motivo");
        const auto guion = [](int estado) {
            return Respuesta{.estado = estado, .cuerpo = comprimir({{u"a.txt"_s, "nuevo"}})};
        };
        const QString contesto = u"Error transferring %1 - server replied: Guion"_s;
        for (const int estado : {400, 403, 404, 410, 500, 502, 503})
            QTest::addRow("código %d", estado) << guion(estado) << contesto;
        QTest::newRow("código 401") << guion(401) << u"Host requires authentication"_s;

        Respuesta cortada = guion(200);
        cortada.modo = Respuesta::Cortada;
        QTest::newRow("cortada") << cortada << u"Connection closed"_s;
        QTest::newRow("ni siquiera HTTP")
            << Respuesta{.modo = Respuesta::Basura} << u"Connection closed"_s;
        QTest::newRow("redirección en círculo")
            << Respuesta{.estado = 302, .cabeceras = {{"Location", "/d/garza-2.zip"}}}
            << u"Too many redirects"_s;
    }

    void loQueNoSeBajaSeDiceYNoCambiaNada()
    {
        QFETCH(const Respuesta, respuesta);
        QFETCH(const QString, motivo);
        ServidorGuionado servidor;
        servidor.contestar("/d/garza-2.zip", respuesta);
        ActualizadorEspiado actualizador({}, servidor.url(u"/d"_s));

        const QString direccion = servidor.url(u"/d/garza-2.zip"_s).toString();
        const QString razon = motivo.contains(u"%1"_s) ? motivo.arg(direccion) : motivo;
        QCOMPARE(actualizador.alAplicar({kGarza}),
                 (QStringList{u"error|No se pudo descargar garza 2: "_s + razon, u"terminado"_s}));
        QCOMPARE(leerArbol(carpetaInstalada()), (Arbol{{u"versiones.json"_s, versionesDeAntes()}}));
        QVERIFY(powershell::llamadas().isEmpty());
    }

    void sinNadieDelOtroLadoSeDice()
    {
        QTcpServer nadie;
        nadie.listen(QHostAddress::LocalHost);
        const QUrl base(u"http://127.0.0.1:%1/d"_s.arg(nadie.serverPort()));
        nadie.close();
        ActualizadorEspiado actualizador({}, base);
        QCOMPARE(actualizador.alAplicar({kGarza}),
                 (QStringList{u"error|No se pudo descargar garza 2: Connection refused"_s,
                              u"terminado"_s}));
    }

    void sinDireccionDeDescargasSeDice()
    {
        ActualizadorEspiado actualizador({}, {});
        QCOMPARE(actualizador.alAplicar({kGarza}),
                 (QStringList{u"error|No se pudo descargar garza 2: Protocol \"\" is unknown"_s,
                              u"terminado"_s}));
    }

    void siUnoFallaSigueElSiguiente()
    {
        ServidorGuionado servidor;
        servidor.contestar("/d/garza-2.zip", {.cuerpo = comprimir({{u"a.txt"_s, "nuevo"}})});
        ActualizadorEspiado actualizador({}, servidor.url(u"/d"_s));
        const QString direccion = servidor.url(u"/d/ceibo-2.zip"_s).toString();
        QCOMPARE(actualizador.alAplicar({kCeibo, kGarza}),
                 (QStringList{u"error|No se pudo descargar ceibo 2: Error transferring %1 - server "
                              "replied: Guion"_s.arg(direccion),
                              u"actualizado|garza|2"_s, u"terminado"_s}));
        QCOMPARE(escuela::leer(carpetaInstalada() + "/Garza/a.txt"_L1), "nuevo");
        QCOMPARE(escuela::leer(rutaVersiones()),
                 QByteArray("{\n    \"ceibo\": \"1\",\n    \"garza\": \"2\"\n}\n"));
    }

    void vanEnElOrdenDadoYDeAUno()
    {
        ServidorGuionado servidor;
        for (const char *componente : {"zorzal", "ceibo", "garza"}) {
            servidor.contestar(QByteArray("/d/") + componente + "-2.zip",
                               {.cuerpo = comprimir({{u"a.txt"_s, componente}})});
        }
        ActualizadorEspiado actualizador({}, servidor.url(u"/d"_s));
        QStringList alPedir;
        connect(&servidor, &ServidorGuionado::pedidoRecibido, this, [&] {
            alPedir.append(QString::fromUtf8(servidor.pedidos().constLast().ruta) + u'|' +
                           QString::number(actualizador.dicho.size()));
        });
        QCOMPARE(actualizador.alAplicar({kZorzal, kCeibo, kGarza}),
                 (QStringList{u"actualizado|zorzal|2"_s, u"actualizado|ceibo|2"_s,
                              u"actualizado|garza|2"_s, u"terminado"_s}));
        QCOMPARE(alPedir, (QStringList{u"/d/zorzal-2.zip|0"_s, u"/d/ceibo-2.zip|1"_s,
                                       u"/d/garza-2.zip|2"_s}));
    }

    void volverAAplicarReemplazaLaColaQueQuedaba()
    {
        ServidorGuionado servidor;
        ActualizadorEspiado actualizador({}, servidor.url(u"/d"_s));
        actualizador.aplicar({kCeibo, kGarza});
        actualizador.aplicar({kZorzal});
        QVERIFY(QTest::qWaitFor([&] { return actualizador.dicho.count(u"terminado"_s) == 2; }));
        QList<QByteArray> rutas = rutasPedidas(servidor);
        std::sort(rutas.begin(), rutas.end());
        QCOMPARE(rutas, (QList<QByteArray>{"/d/ceibo-2.zip", "/d/zorzal-2.zip"}));
        QCOMPARE(actualizador.dicho.size(), 4);
    }

    void despuesDeTerminarSePuedeVolverAAplicar()
    {
        ServidorGuionado servidor;
        servidor.contestar("/d/garza-2.zip", {.cuerpo = comprimir({{u"a.txt"_s, "dos"}})});
        servidor.contestar("/d/garza-3.zip", {.cuerpo = comprimir({{u"a.txt"_s, "tres"}})});
        ActualizadorEspiado actualizador({}, servidor.url(u"/d"_s));
        actualizador.alAplicar({kGarza});
        QCOMPARE(actualizador.alAplicar({{u"garza"_s, u"2"_s, u"3"_s}}),
                 (QStringList{u"actualizado|garza|3"_s, u"terminado"_s}));
        QCOMPARE(escuela::leer(carpetaInstalada() + "/Garza/a.txt"_L1), "tres");
    }

    void siNoSePuedeGuardarLaDescargaSeDiceYSigueElSiguiente()
    {
        ServidorGuionado servidor;
        servidor.contestar("/d/otra/garza-2.zip", {.cuerpo = comprimir({{u"a.txt"_s, "nuevo"}})});
        servidor.contestar("/d/garza-2.zip", {.cuerpo = comprimir({{u"a.txt"_s, "nuevo"}})});
        ActualizadorEspiado actualizador({}, servidor.url(u"/d"_s));
        QCOMPARE(actualizador.alAplicar({{u"otra/garza"_s, u"1"_s, u"2"_s}, kGarza}),
                 (QStringList{u"error|No se pudo guardar la descarga de otra/garza."_s,
                              u"actualizado|garza|2"_s, u"terminado"_s}));
    }

    void sinCarpetaTemporalNoSePuedeGuardarLaDescarga()
    {
        ServidorGuionado servidor;
        servidor.contestar("/d/garza-2.zip", {.cuerpo = comprimir({{u"a.txt"_s, "nuevo"}})});
        ActualizadorEspiado actualizador({}, servidor.url(u"/d"_s));

        const QString temporal = qEnvironmentVariable(sistema::kVariableTemporal);
        sistema::ponerVariable(sistema::kVariableTemporal,
                               rutaVersiones()); // Un archivo no es una carpeta.
        const QStringList dicho = actualizador.alAplicar({kGarza});
        sistema::ponerVariable(sistema::kVariableTemporal, temporal);

        QCOMPARE(dicho, (QStringList{u"error|No se pudo guardar la descarga de garza."_s,
                                     u"terminado"_s}));
        QCOMPARE(leerArbol(carpetaInstalada()), (Arbol{{u"versiones.json"_s, versionesDeAntes()}}));
    }

    void destruirloMientrasBajaNoCambiaNada()
    {
        ServidorGuionado servidor;
        servidor.contestar("/d/garza-2.zip", {.cuerpo = comprimir({{u"a.txt"_s, "nuevo"}}),
                                              .modo = Respuesta::SinCerrar});
        auto actualizador = std::make_unique<ActualizadorEspiado>(QUrl(), servidor.url(u"/d"_s));
        actualizador->aplicar({kGarza});
        QVERIFY(QTest::qWaitFor([&] { return servidor.pedidos().size() == 1; }));
        actualizador.reset();
        QCoreApplication::processEvents();
        QCOMPARE(leerArbol(carpetaInstalada()), (Arbol{{u"versiones.json"_s, versionesDeAntes()}}));
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaDescarga, QCoreApplication>(argc, argv);
}

#include "prueba_descarga.moc"
