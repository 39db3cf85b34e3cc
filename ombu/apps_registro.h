#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace ombu {

/// Una app de la suite, tal como la conoce el lanzador.
struct AppInfo
{
    QString id;              ///< Clave en minúsculas ASCII, única entre las dos suites.
    QString nombre;          ///< Nombre que ve la gente.
    QString color;           ///< Color principal, "#RRGGBB".
    QString colorClaro;      ///< Tinte claro del mismo tono, "#RRGGBB".
    QString carpeta;         ///< Carpeta de instalación, directamente bajo la del lanzador.
    QString ejecutable;      ///< Archivo ejecutable dentro de `carpeta`.
    QStringList extensiones; ///< De sus documentos: en minúsculas, sin punto.
    QStringList extensionesSecundarias; ///< Otras que también le pertenecen.
};

/// Las apps de la primera suite, en el orden en que se muestran.
/// La lista vive hasta el final del programa.
const QList<AppInfo> &appsQuillay();

/// Las apps de la segunda suite. La lista vive hasta el final del programa.
const QList<AppInfo> &appsOmbu();

/// La app cuyo `id` es exactamente `id`, o nulo. Apunta al catálogo: no se libera.
const AppInfo *appPorId(const QString &id);

/// La app dueña de `extension` (sin punto, en mayúsculas o minúsculas), o nulo.
const AppInfo *appPorExtension(const QString &extension);

/// Dónde está el ejecutable de `app` en un lanzador instalado en `dirLanzador`.
QString rutaEjecutable(const AppInfo &app, const QString &dirLanzador);

/// Si el ejecutable de `app` existe en este momento bajo `dirLanzador`.
bool estaInstalada(const AppInfo &app, const QString &dirLanzador);

} // namespace ombu
