#pragma once

#include <QJsonDocument>
#include <QString>

class QFile;

namespace ombu {

/// Lee entero el archivo JSON (UTF-8) de `ruta`.
/// Da un documento nulo si no se puede abrir, si no es JSON o si pesa más de 64 MiB. Si está y no
/// se puede abrir, insiste hasta 200 ms.
QJsonDocument leerDocumentoJson(const QString &ruta);

/// Lo mismo, de un archivo que ya se abrió para leer.
QJsonDocument leerDocumentoJson(QFile &archivo);

/// Reemplaza el archivo de `ruta` por `documento`, con sangría y en UTF-8, de una sola vez:
/// quien lo lea encuentra el anterior entero o el nuevo entero.
/// Da false, sin tocar el anterior, si algo falla, también con el disco lleno a mitad de camino.
/// En Windows otro programa que lo esté leyendo lo impide: insiste hasta 200 ms.
bool escribirDocumentoJson(const QString &ruta, const QJsonDocument &documento);

/// Borra el archivo de `ruta`, con la misma insistencia. Da false si no estaba o no se pudo.
bool borrarArchivo(const QString &ruta);

} // namespace ombu
