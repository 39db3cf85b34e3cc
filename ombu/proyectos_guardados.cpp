#include "ombu/proyectos_guardados.h"

#include "ombu/archivo_json.h"
#include "ombu/fechas.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonObject>
#include <QStandardPaths>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace ombu {

namespace {

/// Dónde guarda una app sus trabajos y cómo se llaman.
struct Regla
{
    QLatin1StringView idApp;
    QLatin1StringView carpeta;     ///< Relativa a Documentos.
    QLatin1StringView archivoJson; ///< Descripción dentro de cada carpeta; vacío: no tiene.
    QLatin1StringView clave;       ///< Clave del nombre en la descripción.
    QLatin1StringView extension;   ///< No vacía: cada trabajo es un archivo suelto.
};

constexpr auto kReglas = std::to_array<Regla>({
    {"garza"_L1, "/Garza/proyectos"_L1, "project.json"_L1, "projectName"_L1, {}},
    {"ceibo"_L1, "/Ceibo"_L1, "proyecto.json"_L1, "nombre"_L1, {}},
    {"zorzal"_L1, "/Zorzal"_L1, "proyecto.json"_L1, "nombre"_L1, {}},
    {"benteveo"_L1, "/Benteveo"_L1, "project.json"_L1, "name"_L1, {}},
    {"hornero"_L1, "/Quillay/Hornero/Video"_L1, {}, {}, {}},
    {"hornero"_L1, "/Quillay/Hornero/Animacion"_L1, {}, {}, {}},
    {"calandria"_L1, "/Calandria"_L1, {}, {}, "cln"_L1},
    {"tordo"_L1, "/Tordo"_L1, {}, {}, "trd"_L1},
    {"nandu"_L1, "/Nandu"_L1, {}, {}, "ndu"_L1},
});

// Toma el nombre y la fecha de la descripción; false si no se puede abrir: no es un trabajo.
bool completarConDescripcion(ProyectoGuardado &proyecto, const QString &archivoJson,
                             const QString &clave)
{
    QFile descripcion(proyecto.ruta + u'/' + archivoJson);
    if (!descripcion.open(QIODevice::ReadOnly))
        return false;

    const QString nombre = leerDocumentoJson(descripcion).object()[clave].toString().trimmed();
    if (!nombre.isEmpty())
        proyecto.nombre = nombre;

    const QDateTime modificada = descripcion.fileTime(QFileDevice::FileModificationTime).toUTC();
    if (masNueva(modificada, proyecto.modificado))
        proyecto.modificado = modificada;
    return true;
}

QList<ProyectoGuardado> carpetas(const QString &carpeta, const QString &archivoJson,
                                 const QString &clave)
{
    QList<ProyectoGuardado> proyectos;
    QDirIterator subcarpetas(carpeta, QDir::Dirs | QDir::NoDotAndDotDot);
    while (subcarpetas.hasNext()) {
        const QFileInfo subcarpeta = subcarpetas.nextFileInfo();
        ProyectoGuardado proyecto{subcarpeta.fileName(), subcarpeta.absoluteFilePath(),
                                  subcarpeta.lastModified().toUTC()};
        if (!archivoJson.isEmpty() && !completarConDescripcion(proyecto, archivoJson, clave))
            continue;
        proyectos.append(proyecto);
    }
    return proyectos;
}

QList<ProyectoGuardado> archivos(const QString &carpeta, const QString &extension)
{
    QList<ProyectoGuardado> proyectos;
    QDirIterator encontrados(carpeta, {"*."_L1 + extension}, QDir::Files);
    while (encontrados.hasNext()) {
        const QFileInfo archivo = encontrados.nextFileInfo();
        proyectos.append({archivo.completeBaseName(), archivo.absoluteFilePath(),
                          archivo.lastModified().toUTC()});
    }
    return proyectos;
}

// Las fechas van en UTC: comparar horas locales consulta la zona horaria cada vez.
QList<ProyectoGuardado> buscar(const Regla &regla, const QString &documentos)
{
    const QString carpeta = documentos + regla.carpeta;
    return regla.extension.isEmpty() ? carpetas(carpeta, regla.archivoJson, regla.clave)
                                     : archivos(carpeta, regla.extension);
}

} // namespace

QList<ProyectoGuardado> proyectosGuardados(const QString &idApp)
{
    const QString documentos = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    QList<ProyectoGuardado> proyectos;
    for (const Regla &regla : kReglas) {
        if (regla.idApp == idApp)
            proyectos.append(buscar(regla, documentos));
    }
    std::sort(proyectos.begin(), proyectos.end(),
              [](const ProyectoGuardado &a, const ProyectoGuardado &b) {
                  return masNueva(a.modificado, b.modificado);
              });
    for (ProyectoGuardado &proyecto : proyectos)
        proyecto.modificado = proyecto.modificado.toLocalTime();
    return proyectos;
}

} // namespace ombu
