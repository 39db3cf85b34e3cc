#include "ombu/archivo_json.h"

#include <QFile>
#include <QSaveFile>
#include <QThread>

namespace ombu {

namespace {

// Ningún archivo de la suite se le acerca; uno mayor agotaría la memoria al leerlo.
constexpr qint64 kTamanoMaximo = 67'108'864; // 64 MiB

// En Windows no se puede reemplazar ni borrar un archivo mientras otro programa lo lee, y las apps
// y el lanzador leen los mismos: a quien lee le alcanza con mucho menos que esto.
constexpr int kIntentos = 10;
constexpr unsigned long kEntreIntentosMs = 20;

enum class Escritura { Hecha, SinReemplazar, Fallida };

Escritura intentarEscribir(const QString &ruta, const QByteArray &texto)
{
    QSaveFile archivo(ruta);
    if (!archivo.open(QIODevice::WriteOnly))
        return Escritura::Fallida;

    // QSaveFile 6.4 confirma aunque falle el vaciado del búfer: hay que comprobarlo antes.
    if (archivo.write(texto) != texto.size() || !archivo.flush()) {
        archivo.cancelWriting();
        return Escritura::Fallida;
    }
    return archivo.commit() ? Escritura::Hecha : Escritura::SinReemplazar;
}

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
    Escritura escritura = intentarEscribir(ruta, texto);
    for (int intento = 1; escritura == Escritura::SinReemplazar && intento < kIntentos; ++intento) {
        QThread::msleep(kEntreIntentosMs);
        escritura = intentarEscribir(ruta, texto);
    }
    return escritura == Escritura::Hecha;
}

bool borrarArchivo(const QString &ruta)
{
    bool borrado = QFile::remove(ruta);
    for (int intento = 1; !borrado && QFile::exists(ruta) && intento < kIntentos; ++intento) {
        QThread::msleep(kEntreIntentosMs);
        borrado = QFile::remove(ruta);
    }
    return borrado;
}

} // namespace ombu
