#include "quillay/actualizador.h"

#include "pruebas/actualizacion/actualizador_espiado.h"
#include "pruebas/actualizacion/paquete.h"
#include "pruebas/actualizacion/powershell.h"
#include "pruebas/apoyo/disco_lleno.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/servidor_guionado.h"
#include "pruebas/apoyo/sistema.h"

#include <QDir>

using namespace Qt::StringLiterals;

using powershell::Falla;
Q_DECLARE_METATYPE(Falla)

namespace {

QByteArray versionesDeAntes()
{
    return "{\n    \"ceibo\": \"1\",\n    \"garza\": \"1\"\n}\n";
}

QStringList actualizado()
{
    return {u"actualizado|garza|2"_s, u"terminado"_s};
}

QStringList noSeExtrajo()
{
    return {u"error|No se pudo extraer el paquete de garza."_s, u"terminado"_s};
}

/// Lo que se dice al actualizar Garza con ese paquete.
QStringList alActualizarCon(const QByteArray &paquete)
{
    ServidorGuionado servidor;
    servidor.contestar("/d/garza-2.zip", {.cuerpo = paquete});
    ActualizadorEspiado actualizador({}, servidor.url(u"/d"_s));
    return actualizador.alAplicar({{u"garza"_s, u"1"_s, u"2"_s}});
}

Arbol instaladoAntes()
{
    return {{u"Garza/a.txt"_s, "viejo"}, {u"versiones.json"_s, versionesDeAntes()}};
}

QByteArray paqueteComun()
{
    return comprimir({{u"a.txt"_s, "nuevo"}});
}

/// Mientras existe, las carpetas temporales se crean en una con ese nombre.
class CarpetaTemporal
{
public:
    explicit CarpetaTemporal(const QString &nombre)
        : m_ruta(m_anterior + u'/' + nombre)
    {
        QDir().mkpath(m_ruta);
        sistema::ponerVariable(sistema::kVariableTemporal, m_ruta);
    }

    ~CarpetaTemporal()
    {
        sistema::ponerVariable(sistema::kVariableTemporal, m_anterior);
        QDir(m_ruta).removeRecursively();
    }

    CarpetaTemporal(const CarpetaTemporal &) = delete;
    CarpetaTemporal &operator=(const CarpetaTemporal &) = delete;

private:
    QString m_anterior = qEnvironmentVariable(sistema::kVariableTemporal);
    QString m_ruta;
};

} // namespace

class PruebaExtraccion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        powershell::usarElDeMuestra();
        escribirArbol(carpetaInstalada(), instaladoAntes());
    }

    void cleanup() { QVERIFY2(QDir(QDir::tempPath()).isEmpty(), "quedaron archivos temporales"); }

    void llamaAPowershellConCuatroArgumentos()
    {
        QCOMPARE(alActualizarCon(paqueteComun()), actualizado());
        QCOMPARE(powershell::llamadas().size(), 1);

        const QStringList argumentos = powershell::llamadas().constFirst();
        QCOMPARE(argumentos.size(), 4);
        QCOMPARE(argumentos.first(3),
                 (QStringList{u"-NoProfile"_s, u"-NonInteractive"_s, u"-Command"_s}));

        const QString temporal = argumentos.at(3).section(u'\'', 1, 1).section(u'/', 0, -2);
        QCOMPARE(argumentos.at(3),
                 u"Expand-Archive -LiteralPath '%1/garza.zip' -DestinationPath '%1/contenido' "
                 "-Force"_s.arg(temporal));
        QCOMPARE(temporal.section(u'/', 0, -2), QDir::tempPath());
        QVERIFY(!QFile::exists(temporal));
    }

    void cadaComponenteTieneSuCarpetaTemporal()
    {
        alActualizarCon(paqueteComun());
        alActualizarCon(paqueteComun());
        QCOMPARE(powershell::llamadas().size(), 2);
        QVERIFY(powershell::llamadas().at(0).at(3) != powershell::llamadas().at(1).at(3));
    }

    void enLaCarpetaTemporalSoloEstaElPaqueteEntero()
    {
        const QString copia = escuela::dirPersonal() + "/lo-que-habia"_L1;
        powershell::usarUnoQueFalla({.copiaEn = copia});
        const QByteArray paquete = comprimir({{u"a.bin"_s, QByteArray(100'000, 'x')}});
        QCOMPARE(alActualizarCon(paquete), noSeExtrajo());
        QCOMPARE(leerArbol(copia), (Arbol{{u"garza.zip"_s, paquete}}));
    }

    void siPowershellFallaSeDiceYNoCambiaNada_data()
    {
        QTest::addColumn<Falla>("falla");
        QTest::newRow("código 1") << Falla{.codigo = 1};
        QTest::newRow("código 255") << Falla{.codigo = 255};
        QTest::newRow("código 1 después de extraer") << Falla{.codigo = 1, .deja = true};
        QTest::newRow("se cayó") << Falla{.seCae = true};
        QTest::newRow("se cayó después de extraer") << Falla{.seCae = true, .deja = true};
    }

    void siPowershellFallaSeDiceYNoCambiaNada()
    {
        QFETCH(const Falla, falla);
        powershell::usarUnoQueFalla(falla);
        QCOMPARE(alActualizarCon(paqueteComun()), noSeExtrajo());
        QCOMPARE(leerArbol(carpetaInstalada()), instaladoAntes());
    }

    void sinPowershellNoSeExtraeNada()
    {
        powershell::usarNinguno();
        QCOMPARE(alActualizarCon(paqueteComun()), noSeExtrajo());
        QCOMPARE(leerArbol(carpetaInstalada()), instaladoAntes());
    }

    void siUnoNoSeExtraeSigueElSiguiente()
    {
        ServidorGuionado servidor;
        servidor.contestar("/d/ceibo-2.zip", {.cuerpo = "basura"});
        servidor.contestar("/d/garza-2.zip", {.cuerpo = paqueteComun()});
        ActualizadorEspiado actualizador({}, servidor.url(u"/d"_s));
        QCOMPARE(
            actualizador.alAplicar({{u"ceibo"_s, u"1"_s, u"2"_s}, {u"garza"_s, u"1"_s, u"2"_s}}),
            QStringList{u"error|No se pudo extraer el paquete de ceibo."_s} + actualizado());
    }

    void unPaqueteDanadoNoSeExtrae_data()
    {
        QTest::addColumn<QByteArray>("paquete");
        QByteArray contenido; // Que no se comprima a casi nada.
        for (unsigned int i = 1; contenido.size() < 4096; ++i)
            contenido += QByteArray::number(i * 2654435761U);
        const QByteArray bueno = comprimir({{u"a.txt"_s, contenido}});
        QByteArray danado = bueno;
        danado[bueno.size() / 2] = static_cast<char>(~danado.at(bueno.size() / 2));

        QTest::newRow("vacío, sin un byte") << QByteArray();
        QTest::newRow("página web") << QByteArray("<html><body>Portal cautivo</body></html>");
        QTest::newRow("basura") << QByteArray(100'000, 'x');
        QTest::newRow("un byte cambiado") << danado;
        QTest::newRow("sin el último byte") << bueno.chopped(1);
        QTest::newRow("por la mitad") << bueno.first(bueno.size() / 2);
        QTest::newRow("solo el principio") << bueno.first(30);
    }

    void unPaqueteDanadoNoSeExtrae()
    {
        QFETCH(const QByteArray, paquete);
        QCOMPARE(alActualizarCon(paquete), noSeExtrajo());
        QCOMPARE(leerArbol(carpetaInstalada()), instaladoAntes());
    }

    void unPaqueteSinArchivosActualizaSinTocarNada()
    {
        QCOMPARE(alActualizarCon(comprimir({})), actualizado());
        QCOMPARE(escuela::leer(carpetaInstalada() + "/Garza/a.txt"_L1), "viejo");
        QCOMPARE(escuela::leer(rutaVersiones()),
                 QByteArray("{\n    \"ceibo\": \"1\",\n    \"garza\": \"2\"\n}\n"));
    }

    void unaCarpetaTemporalConComillaNoSeExtrae()
    {
        const CarpetaTemporal temporal(u"cuenta de O'Higgins"_s);
        QCOMPARE(alActualizarCon(paqueteComun()), noSeExtrajo());
        QVERIFY(powershell::llamadas().constFirst().at(3).contains("O'Higgins/"_L1));
        QCOMPARE(leerArbol(carpetaInstalada()), instaladoAntes());
    }

    void unaCarpetaTemporalConOtrosSignosSirve_data()
    {
        QTest::addColumn<QString>("nombre");
        QTest::newRow("espacios") << u"Ana María"_s;
        QTest::newRow("acentos") << u"Íñigo"_s;
        QTest::newRow("emoji") << u"🎨"_s;
        QTest::newRow("signos de Powershell") << u"$env `a` & ; (1) [2]"_s;
        if (sistema::kHayComillasEnLosNombres)
            QTest::newRow("comillas dobles") << u"la \"casa\""_s;
        QTest::newRow("marcas de reemplazo") << u"%1 %2"_s;
    }

    void unaCarpetaTemporalConOtrosSignosSirve()
    {
        QFETCH(const QString, nombre);
        const CarpetaTemporal temporal(nombre);
        QCOMPARE(alActualizarCon(paqueteComun()), actualizado());
        QCOMPARE(escuela::leer(carpetaInstalada() + "/Garza/a.txt"_L1), "nuevo");
    }

    void conElDiscoLlenoLaDescargaCortadaNoSeExtrae()
    {
        const QByteArray paquete = comprimir({{u"a.txt"_s, QByteArray("nuevo ").repeated(500)}});
        const QList<quint64> discos = discosEnLosQueNoEntra(paquete.size());
        QVERIFY(!discos.isEmpty());
        for (const quint64 disco : discos) {
            const DiscoLleno lleno(disco);
            QCOMPARE(alActualizarCon(paquete), noSeExtrajo());
            QCOMPARE(leerArbol(carpetaInstalada()), instaladoAntes());
        }
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaExtraccion, QCoreApplication>(argc, argv);
}

#include "prueba_extraccion.moc"
