#include "ombu/archivo_json.h"

#include <QFile>
#include <QSaveFile>

namespace ombu {

namespace {

// Ningún archivo de la suite se le acerca; uno mayor agotaría la memoria al leerlo.
constexpr qint64 kTamanoMaximo = 67'108'864; // 64 MiB

} // namespace

QJsonDocument leerDocumentoJson(const QString &ruta)
{
    QFile archivo(ruta);
    return archivo.open(QIODevice::ReadOnly) ? leerDocumentoJson(archivo) : QJsonDocument();
}

QJsonDocument leerDocumentoJson(QFile &archivo)
{
    return archivo.size() <= kTamanoMaximo ? QJsonDocument::fromJson(archivo.readAll())
                                           : QJsonDocument();
}

bool escribirDocumentoJson(const QString &ruta, const QJsonDocument &documento)
{
    const QByteArray texto = documento.toJson(QJsonDocument::Indented);

    QSaveFile archivo(ruta);
    if (!archivo.open(QIODevice::WriteOnly))
        return false;

    // QSaveFile 6.4 confirma aunque falle el vaciado del búfer: hay que comprobarlo antes.
    if (archivo.write(texto) != texto.size() || !archivo.flush()) {
        archivo.cancelWriting();
        return false;
    }
    return archivo.commit();
}

} // namespace ombu
