// Actualizar programas de Windows de verdad mientras están abiertos.

#include "quillay/actualizador.h"

#include "pruebas/actualizacion/actualizador_espiado.h"
#include "pruebas/actualizacion/paquete.h"
#include "pruebas/actualizacion/powershell.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/servidor_guionado.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <windows.h>

using namespace Qt::StringLiterals;

using quillay::Actualizacion;
using quillay::Actualizador;

namespace {

constexpr int kPlazoMs = 30000;

const Actualizacion kLanzador{u"launcher"_s, u"2.1"_s, u"2.2"_s};

/// El quillay.exe de esta compilación. Con algo detrás es otro archivo, y el mismo programa.
QByteArray programa(const QByteArray &version)
{
    return escuela::leer(QStringLiteral(RUTA_QUILLAY)) + version;
}

QByteArray json(const QJsonObject &objeto)
{
    return QJsonDocument(objeto).toJson();
}

HWND ventanaDe(const QProcess &proceso, const QString &titulo)
{
    HWND ventana = nullptr;
    while ((ventana = FindWindowExW(nullptr, ventana, nullptr, qUtf16Printable(titulo)))) {
        DWORD duenio = 0;
        GetWindowThreadProcessId(ventana, &duenio);
        if (duenio == static_cast<DWORD>(proceso.processId()) && IsWindowVisible(ventana))
            break;
    }
    return ventana;
}

/// Un programa abierto, y su ventana vista desde afuera.
class ProgramaAbierto
{
public:
    explicit ProgramaAbierto(const QString &ruta)
    {
        m_proceso.setProcessChannelMode(QProcess::ForwardedChannels);
        m_proceso.start(ruta, QStringList());
        if (!QTest::qWaitFor([&] { return ventanaDe(m_proceso, u"Quillay"_s); }, kPlazoMs))
            qFatal("No se abrió %s", qUtf8Printable(ruta));
    }

    ~ProgramaAbierto()
    {
        m_proceso.kill();
        m_proceso.waitForFinished();
    }

    ProgramaAbierto(const ProgramaAbierto &) = delete;
    ProgramaAbierto &operator=(const ProgramaAbierto &) = delete;

    /// Aprieta Intro en el diálogo que se llama así, cuando aparece.
    bool aceptar(const QString &titulo)
    {
        const auto aparecio = [&] {
            return ventanaDe(m_proceso, titulo) != nullptr;
        };
        if (!QTest::qWaitFor(aparecio, kPlazoMs))
            return false;
        const HWND dialogo = ventanaDe(m_proceso, titulo);
        PostMessageW(dialogo, WM_KEYDOWN, VK_RETURN, 0x001C0001);
        PostMessageW(dialogo, WM_KEYUP, VK_RETURN, static_cast<LPARAM>(0xC01C0001));
        return true;
    }

    bool estaAbierto() const { return m_proceso.state() == QProcess::Running; }

    bool cerrar()
    {
        PostMessageW(ventanaDe(m_proceso, u"Quillay"_s), WM_CLOSE, 0, 0);
        return m_proceso.waitForFinished(kPlazoMs) && m_proceso.exitCode() == 0;
    }

private:
    QProcess m_proceso;
};

} // namespace

class PruebaWindowsEnUso : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        powershell::usarElDeMuestra();
        for (const char *version : {"2.2", "2.3"}) {
            m_servidor.contestar(QByteArray("/d/launcher-") + version + ".zip",
                                 {.cuerpo = comprimir({{u"quillay.exe"_s, programa(version)}})});
        }
        m_servidor.contestar("/d/garza-2.2.zip",
                             {.cuerpo = comprimir({{u"garza.exe"_s, programa("2.2")}})});
    }

    void elLanzadorAbiertoSeActualizaASiMismo_data()
    {
        QTest::addColumn<QString>("carpeta");
        QTest::newRow("letras comunes") << u"Quillay"_s;
        QTest::newRow("espacios y acentos") << u"Los programas de la Ñandú"_s;
        QTest::newRow("un dibujo") << u"Quillay 🎨"_s;
        QTest::newRow("una comilla") << u"Programas de O'Higgins"_s;
    }

    void elLanzadorAbiertoSeActualizaASiMismo()
    {
        QFETCH(const QString, carpeta);
        const QString base = escuela::dirPersonal() + u'/' + carpeta;
        const QByteArray configuracion =
            json({{u"manifiesto_url"_s, m_servidor.url(u"/m.json"_s).toString()},
                  {u"descargas_base"_s, m_servidor.url(u"/d"_s).toString()}});
        const QByteArray actuales = json({{u"launcher"_s, u"2.2"_s}});
        escribirArbol(base, {{u"quillay.exe"_s, programa("2.1")},
                             {u"config.json"_s, configuracion},
                             {u"versiones.json"_s, json({{u"launcher"_s, u"2.1"_s}})}});
        m_servidor.contestar("/m.json", {.cuerpo = actuales});
        {
            ProgramaAbierto lanzador(base + "/quillay.exe"_L1);
            QVERIFY(lanzador.aceptar(u"Hay una versión nueva de Quillay"_s));
            const auto anotado = [&] {
                return escuela::leer(base + "/versiones.json"_L1) == actuales;
            };
            QVERIFY(QTest::qWaitFor(anotado, kPlazoMs));
            QVERIFY(lanzador.estaAbierto());
            QCOMPARE(leerArbol(base), (Arbol{{u"quillay.exe"_s, programa("2.2")},
                                             {u"quillay.exe.viejo"_s, programa("2.1")},
                                             {u"config.json"_s, configuracion},
                                             {u"versiones.json"_s, actuales}}));
            QVERIFY(lanzador.cerrar());
        }
        ProgramaAbierto nuevo(base + "/quillay.exe"_L1);
        QCOMPARE(leerArbol(base), (Arbol{{u"quillay.exe"_s, programa("2.2")},
                                         {u"config.json"_s, configuracion},
                                         {u"versiones.json"_s, actuales}}));
        QVERIFY(nuevo.cerrar());
    }

    void unaAppAbiertaSeActualiza()
    {
        const QString garza = carpetaInstalada() + "/Garza/garza.exe"_L1;
        escribirArbol(carpetaInstalada(), {{u"Garza/garza.exe"_s, programa("2.1")}});
        ActualizadorEspiado actualizador({}, m_servidor.url(u"/d"_s));
        {
            const ProgramaAbierto app(garza);
            QCOMPARE(actualizador.alAplicar({{u"garza"_s, u"2.1"_s, u"2.2"_s}}),
                     (QStringList{u"actualizado|garza|2.2"_s, u"terminado"_s}));
            QCOMPARE(escuela::leer(garza), programa("2.2"));
            Actualizador::limpiarRestos(carpetaInstalada());
            QCOMPARE(escuela::leer(garza + ".viejo"_L1), programa("2.1"));
            QVERIFY(app.estaAbierto());
        }
        Actualizador::limpiarRestos(carpetaInstalada());
        QVERIFY(!QFile::exists(garza + ".viejo"_L1));
        QCOMPARE(escuela::leer(garza), programa("2.2"));
    }

    void conElViejoTambienAbiertoNoSeReemplaza()
    {
        const QString quillay = carpetaInstalada() + "/quillay.exe"_L1;
        escribirArbol(carpetaInstalada(), {{u"quillay.exe"_s, programa("2.1")}});
        ActualizadorEspiado actualizador({}, m_servidor.url(u"/d"_s));
        const ProgramaAbierto viejo(quillay);
        QCOMPARE(actualizador.alAplicar({kLanzador}),
                 (QStringList{u"actualizado|launcher|2.2"_s, u"terminado"_s}));
        const ProgramaAbierto nuevo(quillay);
        const Arbol antes = leerArbol(carpetaInstalada());

        QCOMPARE(actualizador.alAplicar({{u"launcher"_s, u"2.2"_s, u"2.3"_s}}),
                 (QStringList{u"error|No se pudo reemplazar los archivos de launcher."_s,
                              u"terminado"_s}));
        QCOMPARE(leerArbol(carpetaInstalada()), antes);
        QVERIFY(viejo.estaAbierto() && nuevo.estaAbierto());
    }

private:
    ServidorGuionado m_servidor;
};

int main(int argc, char *argv[])
{
    return correr<PruebaWindowsEnUso, QCoreApplication>(argc, argv);
}

#include "prueba_windows_en_uso.moc"
