#include "pruebas/apoyo/escuela_temporal.h"

#include "ombu/apps_registro.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace escuela {

namespace {

QString registroDeArranques(const QString &id)
{
    return dirPersonal() + "/arranques-"_L1 + id;
}

QList<QStringList> leerArranques(const QString &id)
{
    QList<QStringList> arranques;
    const QList<QByteArray> lineas = leer(registroDeArranques(id)).split('\n');
    for (const QByteArray &linea : lineas.first(lineas.size() - 1))
        arranques.append(QString::fromUtf8(linea).split(u'\t').sliced(1));
    return arranques;
}

// Una app que la prueba anterior dejó abierta puede tener algo en uso hasta que termina.
void borrar(const QString &ruta)
{
    const auto borrado = [&ruta] {
        return QFileInfo(ruta).isDir() ? QDir(ruta).removeRecursively()
                                       : QFile::remove(ruta) || !QFile::exists(ruta);
    };
    if (!QTest::qWaitFor(borrado))
        qFatal("No se pudo borrar %s", qUtf8Printable(ruta));
}

} // namespace

QString dirLanzador()
{
    return QCoreApplication::applicationDirPath();
}

QString dirProgramData()
{
    return qEnvironmentVariable("ProgramData");
}

QString dirDatos()
{
    return dirProgramData() + "/Lumbre"_L1;
}

QString dirPersonal()
{
    return qEnvironmentVariable("HOME");
}

QString dirDocumentos()
{
    return dirPersonal() + "/Documents"_L1;
}

void vaciar()
{
    for (const QString &carpeta : {dirDatos(), dirPersonal()}) {
        borrar(carpeta);
        QDir().mkpath(carpeta);
    }
    QDir().mkpath(dirDocumentos());

    const QFileInfo yo(QCoreApplication::applicationFilePath());
    const QFileInfoList restos =
        QDir(dirLanzador()).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QFileInfo &resto : restos) {
        if (resto != yo)
            borrar(resto.filePath());
    }
}

void escribir(const QString &ruta, const QByteArray &contenido)
{
    QDir().mkpath(QFileInfo(ruta).path());
    QFile archivo(ruta);
    if (!archivo.open(QIODevice::WriteOnly) || archivo.write(contenido) != contenido.size())
        qFatal("No se pudo escribir %s", qUtf8Printable(ruta));
}

QByteArray leer(const QString &ruta)
{
    QFile archivo(ruta);
    return archivo.open(QIODevice::ReadOnly) ? archivo.readAll() : QByteArray();
}

QStringList archivosBajo(const QString &carpeta)
{
    QStringList nombres;
    QDirIterator it(carpeta, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext())
        nombres.append(QDir(carpeta).relativeFilePath(it.next()));
    nombres.sort();
    return nombres;
}

void instalarApp(const QString &id)
{
    const QString destino = ombu::rutaEjecutable(*ombu::appPorId(id), dirLanzador());
    QDir().mkpath(QFileInfo(destino).path());
    if (!QFile::copy(QStringLiteral(RUTA_APP_DOBLE), destino))
        qFatal("No se pudo instalar %s", qUtf8Printable(id));
}

void hacerMorirAlArrancar(const QString &id)
{
    escribir(dirPersonal() + "/muere-"_L1 + id, {});
}

QList<QStringList> arranquesDe(const QString &id, int veces)
{
    QList<QStringList> arranques;
    const auto llegaron = [&] {
        arranques = leerArranques(id);
        return arranques.size() >= veces;
    };
    static_cast<void>(QTest::qWaitFor(llegaron));
    return arranques;
}

std::unique_ptr<QProcess> lanzarSonda(const QStringList &argumentos, const QStringList &entorno)
{
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (const QString &entrada : entorno) {
        const QString clave = entrada.section(u'=', 0, 0);
        if (entrada.contains(u'='))
            variables.insert(clave, entrada.section(u'=', 1));
        else
            variables.remove(clave);
    }
    auto proceso = std::make_unique<QProcess>();
    proceso->setProcessEnvironment(variables);
    proceso->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    proceso->start(QStringLiteral(RUTA_SONDA), argumentos);
    return proceso;
}

QString sonda(const QStringList &argumentos, const QStringList &entorno)
{
    const std::unique_ptr<QProcess> proceso = lanzarSonda(argumentos, entorno);
    if (!proceso->waitForFinished() || proceso->exitCode() != 0) {
        qFatal("Falló la sonda %s: %s; terminó con %#x", qUtf8Printable(argumentos.join(u' ')),
               qUtf8Printable(proceso->errorString()), static_cast<uint>(proceso->exitCode()));
    }
    return QString::fromUtf8(proceso->readAllStandardOutput()).trimmed();
}

} // namespace escuela
