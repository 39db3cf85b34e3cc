// Buscar y aplicar actualizaciones de un nginx configurado como dice la documentación.

#include "quillay/actualizador.h"

#include "pruebas/actualizacion/actualizador_espiado.h"
#include "pruebas/actualizacion/paquete.h"
#include "pruebas/actualizacion/powershell.h"
#include "pruebas/apoyo/confianza.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/programas.h"
#include "pruebas/apoyo/servidor_web.h"

#include <QDir>
#include <QSslSocket>

using namespace Qt::StringLiterals;

using quillay::Actualizacion;

namespace {

constexpr auto kSinConfianza = "wine no encuentra a la autoridad que firmó el certificado";

const QString kVersion = u"2 ñ+&%?#"_s; // De lo que un nombre de archivo admite y una dirección no.

QList<Actualizacion> soloGarza()
{
    return {{u"garza"_s, u"1"_s, kVersion}};
}

Arbol instaladoAntes()
{
    return {{u"Garza/garza.exe"_s, "1"},
            {u"Garza/propio.txt"_s, "propio"},
            {u"versiones.json"_s, R"({"garza": "1"})"}};
}

Arbol paquetePublicado()
{
    return {{u"garza.exe"_s, "2"}, {u"datos/Canción 🎨.txt"_s, "la la"}};
}

QString publicado()
{
    return escuela::dirPersonal() + "/publicado"_L1;
}

ActualizadorEspiado actualizadorDe(const ServidorWeb &servidor)
{
    return ActualizadorEspiado(servidor.url(u"/manifiesto.json"_s), servidor.url(u"/paquetes"_s));
}

} // namespace

class PruebaServidorDeVerdad : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        powershell::usarElDeMuestra();
        escribirArbol(carpetaInstalada(), instaladoAntes());
        publicar();
    }

    void cleanup() { debian::correr(u"rm"_s, {u"-rf"_s, debian::ruta(publicado())}); }

    void seActualizaPorHttp()
    {
        const ServidorWeb servidor(publicado());
        actualizarEntero(servidor);
    }

    void seActualizaPorHttps()
    {
        if (!Confianza::sePuede())
            QSKIP(kSinConfianza);
        const ServidorWeb servidor(publicado(), ServidorWeb::Https);
        const Confianza confianza(servidor);
        actualizarEntero(servidor);
    }

    void deUnServidorSinConfianzaNoSeOfreceNada()
    {
        const ServidorWeb servidor(publicado(), ServidorWeb::Https);
        ActualizadorEspiado actualizador = actualizadorDe(servidor);
        QCOMPARE(actualizador.alVerificar(), QStringList{u"sin actualizaciones"_s});
    }

    void deUnServidorSinConfianzaNoSeInstalaNada()
    {
        const ServidorWeb servidor(publicado(), ServidorWeb::Https);
        noSeInstala(actualizadorDe(servidor),
                    "SSL handshake failed: "_L1 + Confianza::textoSinConfianza());
    }

    void elNombreDelCertificadoTieneQueSerElDelServidor()
    {
        if (!Confianza::sePuede())
            QSKIP(kSinConfianza);
        const ServidorWeb servidor(publicado(), ServidorWeb::Https);
        const Confianza confianza(servidor);
        noSeInstala(ActualizadorEspiado({}, servidor.url(u"/paquetes"_s, u"127.0.0.1"_s)),
                    u"SSL handshake failed: The host name did not match any of the valid hosts for "
                    "this certificate"_s);
    }

    void laConfianzaEnUnaAutoridadNoAlcanzaAOtra()
    {
        if (!Confianza::sePuede())
            QSKIP(kSinConfianza);
        const ServidorWeb conocido(publicado(), ServidorWeb::Https);
        const ServidorWeb otro(publicado(), ServidorWeb::Https);
        const Confianza confianza(conocido);
        ActualizadorEspiado delConocido = actualizadorDe(conocido);
        ActualizadorEspiado delOtro = actualizadorDe(otro);
        QCOMPARE(delConocido.alVerificar(), QStringList{u"disponibles|garza|1|"_s + kVersion});
        QCOMPARE(delOtro.alVerificar(), QStringList{u"sin actualizaciones"_s});
    }

    void unPaqueteQueNoEstaSeDice()
    {
        const ServidorWeb servidor(publicado());
        ActualizadorEspiado actualizador = actualizadorDe(servidor);
        QCOMPARE(actualizador.alAplicar({{u"garza"_s, u"1"_s, u"9"_s}}),
                 (QStringList{u"error|No se pudo descargar garza 9: Error transferring %1 - server "
                              "replied: Not Found"_s.arg(
                                  servidor.url(u"/paquetes/garza-9.zip"_s).toString()),
                              u"terminado"_s}));
        QCOMPARE(leerArbol(carpetaInstalada()), instaladoAntes());
    }

    void sinElServidorNoHayNada()
    {
        QUrl manifiesto;
        {
            const ServidorWeb servidor(publicado());
            manifiesto = servidor.url(u"/manifiesto.json"_s);
        }
        QCOMPARE(ActualizadorEspiado(manifiesto).alVerificar(),
                 QStringList{u"sin actualizaciones"_s});
    }

private:
    // El servidor está en Debian: el nombre del paquete puede ser uno que Windows no admite.
    static void publicar()
    {
        escribirArbol(publicado(),
                      {{u"manifiesto.json"_s, R"({"garza": ")" + kVersion.toUtf8() + R"("})"},
                       {u"paquetes/paquete.zip"_s, comprimir(paquetePublicado())}});
        const QString nombre = "garza-"_L1 + kVersion + ".zip"_L1;
        const debian::Resultado mudanza =
            debian::correr(u"mv"_s, {u"paquete.zip"_s, nombre}, publicado() + "/paquetes"_L1);
        QVERIFY2(mudanza.codigo == 0, mudanza.errores.constData());
    }

    static void actualizarEntero(const ServidorWeb &servidor)
    {
        ActualizadorEspiado actualizador = actualizadorDe(servidor);
        QCOMPARE(actualizador.alVerificar(), QStringList{u"disponibles|garza|1|"_s + kVersion});
        QCOMPARE(actualizador.alAplicar(soloGarza()),
                 (QStringList{u"actualizado|garza|"_s + kVersion, u"terminado"_s}));
        QCOMPARE(
            leerArbol(carpetaInstalada()),
            (Arbol{{u"Garza/garza.exe"_s, "2"},
                   {u"Garza/propio.txt"_s, "propio"},
                   {u"Garza/datos/Canción 🎨.txt"_s, "la la"},
                   {u"versiones.json"_s, "{\n    \"garza\": \"" + kVersion.toUtf8() + "\"\n}\n"}}));
        QCOMPARE(actualizador.alVerificar(), QStringList{u"sin actualizaciones"_s});
    }

    static void noSeInstala(ActualizadorEspiado &&actualizador, const QString &motivo)
    {
        const QStringList dicho = actualizador.alAplicar(soloGarza());
        QCOMPARE(dicho.size(), 2);
        QCOMPARE(dicho.constFirst(),
                 u"error|No se pudo descargar garza %1: %2"_s.arg(kVersion, motivo));
        QCOMPARE(leerArbol(carpetaInstalada()), instaladoAntes());
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaServidorDeVerdad, QCoreApplication>(argc, argv);
}

#include "prueba_servidor_de_verdad.moc"
