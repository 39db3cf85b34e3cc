#include "trabajo.h"

#include "ombu/archivo_json.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStandardPaths>

#include <array>

using namespace Qt::StringLiterals;

namespace muestra {

namespace {

/// Lo que una app escribe al guardar. Una app de verdad tiene un solo renglón: el suyo.
struct Formato
{
    QLatin1StringView idApp;
    QLatin1StringView carpeta;     ///< Relativa a Documentos; cada trabajo es una subcarpeta.
    QLatin1StringView descripcion; ///< Archivo JSON dentro de ella; vacío: no lleva.
    QLatin1StringView clave;       ///< Clave del nombre en la descripción.
};

constexpr auto kFormatos = std::to_array<Formato>({
    {"ceibo"_L1, "/Ceibo"_L1, "proyecto.json"_L1, "nombre"_L1},
    {"garza"_L1, "/Garza/proyectos"_L1, "project.json"_L1, "projectName"_L1},
    {"hornero"_L1, "/Quillay/Hornero/Video"_L1, {}, {}},
    {"zorzal"_L1, "/Zorzal"_L1, "proyecto.json"_L1, "nombre"_L1},
    {"benteveo"_L1, "/Benteveo"_L1, "project.json"_L1, "name"_L1},
});

const Formato *formatoDe(const QString &idApp)
{
    for (const Formato &formato : kFormatos) {
        if (formato.idApp == idApp)
            return &formato;
    }
    return nullptr;
}

// El punto inicial escondería la carpeta; el resto no se puede usar en un nombre de Windows.
QString carpetaPara(QString nombre)
{
    static const QRegularExpression inseguros(u"^\\.|[<>:\"/\\\\|?*\\x00-\\x1f]|[. ]$"_s);
    return nombre.replace(inseguros, u"_"_s);
}

// Lo que la descripción ya decía y esta app no conoce, queda.
bool describir(const Formato &formato, const QString &carpeta, const QString &nombre)
{
    if (formato.descripcion.isEmpty())
        return true;
    const QString ruta = carpeta + u'/' + formato.descripcion;
    QJsonObject descripcion = ombu::leerDocumentoJson(ruta).object();
    descripcion[formato.clave] = nombre;
    return ombu::escribirDocumentoJson(ruta, QJsonDocument(descripcion));
}

} // namespace

bool sabeGuardar(const QString &idApp)
{
    return formatoDe(idApp) != nullptr;
}

std::optional<ombu::ProyectoGuardado> buscarTrabajo(const QString &idApp, const QString &carpeta)
{
    const QList<ombu::ProyectoGuardado> guardados = ombu::proyectosGuardados(idApp);
    for (const ombu::ProyectoGuardado &proyecto : guardados) {
        if (QFileInfo(proyecto.ruta).fileName() == carpeta)
            return proyecto;
    }
    return std::nullopt;
}

std::optional<ombu::ProyectoGuardado> guardarTrabajo(const QString &idApp, const QString &nombre)
{
    const Formato *formato = formatoDe(idApp);
    if (!formato)
        return std::nullopt;

    const QString documentos = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString carpeta = carpetaPara(nombre);
    const QString ruta = documentos + formato->carpeta + u'/' + carpeta;
    if (!QDir().mkpath(ruta) || !describir(*formato, ruta, nombre))
        return std::nullopt;
    return buscarTrabajo(idApp, carpeta);
}

} // namespace muestra
