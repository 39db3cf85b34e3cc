#include "pruebas/apoyo/relanzar.h"

#include "pruebas/apoyo/entorno_de_escuela.h"
#include "pruebas/apoyo/sistema.h"

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

void crearCarpetas(const QString &raiz)
{
    for (const QString &carpeta :
         {u"lanzador"_s, u"ProgramData/Lumbre"_s, u"personal/Documents"_s, u"temporal"_s}) {
        QDir(raiz).mkpath(carpeta);
    }
}

} // namespace

std::optional<int> relanzarEnEscuela(int argc, char **argv)
{
    sistema::preparar();
    if (qEnvironmentVariableIsSet(kMarca.data()))
        return std::nullopt;

    const QCoreApplication aplicacion(argc, argv);
    const QTemporaryDir escuela;
    crearCarpetas(escuela.path());

    const QFileInfo yo(QCoreApplication::applicationFilePath());
    const QString copia = escuela.filePath("lanzador/"_L1 + yo.fileName());
    if (!QFile::copy(yo.filePath(), copia))
        qFatal("No se pudo copiar la prueba a %s", qUtf8Printable(copia));

    QProcessEnvironment entorno = entornoDeEscuela(escuela.path());
    entorno.insert(kMarca, u"1"_s);
    QProcess prueba;
    prueba.setProcessChannelMode(QProcess::ForwardedChannels);
    prueba.setInputChannelMode(QProcess::ForwardedInputChannel);
    prueba.setProcessEnvironment(entorno);
    prueba.start(copia, QCoreApplication::arguments().sliced(1));
    prueba.waitForFinished(-1);
    return prueba.exitStatus() == QProcess::NormalExit ? prueba.exitCode() : 128;
}
