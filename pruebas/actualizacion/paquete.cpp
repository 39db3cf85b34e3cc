#include "pruebas/actualizacion/paquete.h"

#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/programas.h"

#include <QDir>
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
    if (archivos.isEmpty()) // Su único registro, el final.
        return QByteArray::fromHex("504b0506") + QByteArray(18, '\0');

    const QTemporaryDir temporal;
    const QString contenido = temporal.filePath(u"contenido"_s);
    const QString paquete = temporal.filePath(u"paquete.zip"_s);
    escribirArbol(contenido, archivos);

    // Marca como UTF-8 los nombres que lo son; el programa zip, no.
    const debian::Resultado zip =
        debian::correr(QStringLiteral(RUTA_PYTHON),
                       {u"-m"_s, u"zipfile"_s, u"-c"_s, debian::ruta(paquete), u"."_s}, contenido);
    if (zip.codigo != 0)
        qFatal("No se pudo armar el paquete: %s", zip.errores.constData());
    return escuela::leer(paquete);
}
