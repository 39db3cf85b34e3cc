#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

namespace ombu {

/// Un trabajo guardado por una app de la suite.
struct ProyectoGuardado
{
    QString nombre;       ///< Nombre que se muestra.
    QString ruta;         ///< Ruta absoluta de la carpeta o del archivo.
    QDateTime modificado; ///< Última modificación, hora local.
};

/// Los trabajos guardados de la app `idApp` bajo Documentos, del más nuevo al más viejo.
/// Vacía si no hay ninguno o si la app no se conoce. Lee el disco en cada llamada.
QList<ProyectoGuardado> proyectosGuardados(const QString &idApp);

} // namespace ombu
