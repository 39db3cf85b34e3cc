#include "ombu/archivo_json.h"

#include <QFile>
#include <QSaveFile>
#include <QThread>

namespace ombu {

namespace {

// Ningún archivo de la suite se le acerca; uno mayor agotaría la memoria al leerlo.
constexpr qint64 kTamanoMaximo = 67'108'864; // 64 MiB

// En Windows un archivo que otro programa está leyendo no se puede reemplazar ni borrar, y uno que
// se está reemplazando no se puede abrir. Las apps y el lanzador usan los mismos.
constexpr int kIntentos = 10;
constexpr unsigned long kEntreIntentosMs = 20;

/// Repite `operacion` hasta que dé verdadero, mientras el archivo exista y queden intentos.
template<typename Operacion>
bool insistir(const QString &ruta, const Operacion &operacion)
{
    bool hecho = operacion();
    for (int intento = 1; !hecho && intento < kIntentos && QFile::exists(ruta); ++intento) {
        QThread::msleep(kEntreIntentosMs);
        hecho = operacion();
    }
    return hecho;
}

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
    const bool abierto = insistir(ruta, [&] { return archivo.open(QIODevice::ReadOnly); });
    return abierto ? leerDocumentoJson(archivo) : QJsonDocument();
}

QJsonDocument leerDocumentoJson(QFile &archivo)
{
    return archivo.size() <= kTamanoMaximo ? QJsonDocument::fromJson(archivo.readAll())
                                           : QJsonDocument();
}

bool escribirDocumentoJson(const QString &ruta, const QJsonDocument &documento)
{
    const QByteArray texto = documento.toJson(QJsonDocument::Indented);
    auto escritura = Escritura::Fallida;
    insistir(ruta, [&] {
        escritura = intentarEscribir(ruta, texto);
        return escritura != Escritura::SinReemplazar;
    });
    return escritura == Escritura::Hecha;
}

bool borrarArchivo(const QString &ruta)
{
    return insistir(ruta, [&] { return QFile::remove(ruta); });
}

} // namespace ombu
