#include "pruebas/apoyo/relanzar.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kMarca = "QUILLAY_EN_ESCUELA"_L1;

QProcessEnvironment entornoDe(const QString &raiz)
{
    QProcessEnvironment entorno = QProcessEnvironment::systemEnvironment();
    // La sesión gráfica del desarrollador sigue siendo la suya.
    if (!entorno.contains(u"XAUTHORITY"_s))
        entorno.insert(u"XAUTHORITY"_s, QDir::homePath() + "/.Xauthority"_L1);

    entorno.insert(kMarca, u"1"_s);
    entorno.insert(u"ProgramData"_s, raiz + "/ProgramData"_L1);
    entorno.insert(u"HOME"_s, raiz + "/personal"_L1);
    entorno.insert(u"XDG_RUNTIME_DIR"_s, raiz + "/ejecucion"_L1);
    entorno.insert(u"TMPDIR"_s, raiz + "/temporal"_L1);
    // En UTC, una fecha que se guardara sin pasar a la hora local parecería bien.
    entorno.insert(u"TZ"_s, u"<-03>3"_s);
    for (const QString &variable : {u"XDG_DATA_HOME"_s, u"XDG_CONFIG_HOME"_s, u"XDG_CACHE_HOME"_s})
        entorno.remove(variable);

    if (entorno.contains(u"QUILLAY_LIBFAKETIME"_s)) {
        entorno.insert(u"LD_PRELOAD"_s, entorno.value(u"QUILLAY_LIBFAKETIME"_s));
        entorno.insert(u"FAKETIME_TIMESTAMP_FILE"_s, raiz + "/reloj"_L1);
        entorno.insert(u"FAKETIME_NO_CACHE"_s, u"1"_s);
        entorno.insert(u"FAKETIME_DONT_FAKE_MONOTONIC"_s, u"1"_s);
        entorno.insert(u"NO_FAKE_STAT"_s, u"1"_s);
    }
    return entorno;
}

void crearCarpetas(const QString &raiz)
{
    for (const QString &carpeta : {u"lanzador"_s, u"ProgramData/Lumbre"_s, u"personal/Documents"_s,
                                   u"ejecucion"_s, u"temporal"_s}) {
        QDir(raiz).mkpath(carpeta);
    }
    QFile::setPermissions(raiz + "/ejecucion"_L1,
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

} // namespace

std::optional<int> relanzarEnEscuela(int argc, char **argv)
{
    if (qEnvironmentVariableIsSet(kMarca.data()))
        return std::nullopt;

    const QCoreApplication aplicacion(argc, argv);
    const QTemporaryDir escuela;
    crearCarpetas(escuela.path());

    const QFileInfo yo(QCoreApplication::applicationFilePath());
    const QString copia = escuela.filePath("lanzador/"_L1 + yo.fileName());
    if (!QFile::copy(yo.filePath(), copia))
        qFatal("No se pudo copiar la prueba a %s", qUtf8Printable(copia));

    QProcess prueba;
    prueba.setProcessChannelMode(QProcess::ForwardedChannels);
    prueba.setInputChannelMode(QProcess::ForwardedInputChannel);
    prueba.setProcessEnvironment(entornoDe(escuela.path()));
    prueba.start(copia, QCoreApplication::arguments().sliced(1));
    prueba.waitForFinished(-1);
    return prueba.exitStatus() == QProcess::NormalExit ? prueba.exitCode() : 128;
}
