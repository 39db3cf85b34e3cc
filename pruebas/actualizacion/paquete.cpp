#include "pruebas/actualizacion/paquete.h"

#include "pruebas/apoyo/escuela_temporal.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

void escribirArbol(const QString &carpeta, const Arbol &archivos)
{
    for (auto it = archivos.cbegin(); it != archivos.cend(); ++it)
        escuela::escribir(carpeta + u'/' + it.key(), it.value());
}

Arbol leerArbol(const QString &carpeta)
{
    Arbol archivos;
    const QStringList nombres = escuela::archivosBajo(carpeta);
    for (const QString &nombre : nombres)
        archivos.insert(nombre, escuela::leer(carpeta + u'/' + nombre));
    return archivos;
}

QByteArray comprimir(const Arbol &archivos)
{
    if (archivos.isEmpty()) // zip no hace paquetes vacíos: este es su único registro, el final.
        return QByteArray::fromHex("504b0506") + QByteArray(18, '\0');

    const QTemporaryDir temporal;
    const QString contenido = temporal.filePath(u"contenido"_s);
    const QString paquete = temporal.filePath(u"paquete.zip"_s);
    escribirArbol(contenido, archivos);

    QProcess zip;
    QProcessEnvironment entorno = QProcessEnvironment::systemEnvironment();
    entorno.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    zip.setProcessEnvironment(entorno);
    zip.setWorkingDirectory(contenido);
    zip.start(QStringLiteral(RUTA_ZIP), {u"-q"_s, u"-r"_s, u"-X"_s, paquete, u"."_s});
    if (!zip.waitForFinished() || zip.exitCode() != 0)
        qFatal("No se pudo armar el paquete: %s", zip.readAllStandardError().constData());
    return escuela::leer(paquete);
}
