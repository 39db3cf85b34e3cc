#include "ombu/recientes.h"

#include "ombu/archivo_json.h"
#include "ombu/fechas.h"
#include "ombu/sesion.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>

#include <memory>

using namespace Qt::StringLiterals;

namespace ombu {

namespace {

constexpr auto kRuta = "ruta"_L1;
constexpr auto kApp = "app"_L1;
constexpr auto kUltimoUso = "ultimo_uso"_L1;
constexpr auto kTemporal = "temporal"_L1;

constexpr qsizetype kMaximo = 30;

QString claveSegura(QString clave)
{
    static const QRegularExpression inseguros(u"[^A-Za-z0-9_.-]"_s);
    return clave.replace(inseguros, u"_"_s);
}

void escribir(const QString &clave, const QList<ArchivoReciente> &archivos)
{
    QJsonArray lista;
    for (const ArchivoReciente &archivo : archivos) {
        lista.append(QJsonObject{{kRuta, archivo.ruta},
                                 {kApp, archivo.app},
                                 {kUltimoUso, textoDeFecha(archivo.ultimoUso)},
                                 {kTemporal, archivo.temporal}});
    }
    escribirDocumentoJson(Recientes::rutaArchivo(clave), QJsonDocument(lista));
}

} // namespace

QString Recientes::rutaArchivo(const QString &clave)
{
    const QDir carpeta(Sesion::dirDatos() + "/recientes"_L1);
    carpeta.mkpath(u"."_s);
    return carpeta.path() + u'/' + claveSegura(clave) + ".json"_L1;
}

QList<ArchivoReciente> Recientes::listar(const QString &clave)
{
    QList<ArchivoReciente> archivos;
    const QJsonArray lista = leerDocumentoJson(rutaArchivo(clave)).array();
    for (const auto &valor : lista) {
        const QJsonObject objeto = valor.toObject();
        archivos.append({objeto[kRuta].toString(), objeto[kApp].toString(),
                         fechaDeTexto(objeto[kUltimoUso].toString()), objeto[kTemporal].toBool()});
    }
    return archivos;
}

void Recientes::registrar(const QString &clave, const ArchivoReciente &archivo)
{
    QList<ArchivoReciente> archivos = listar(clave);
    archivos.removeIf([&archivo](const ArchivoReciente &anterior) {
        return anterior.ruta.compare(archivo.ruta, Qt::CaseInsensitive) == 0;
    });
    archivos.prepend(archivo);
    if (archivos.size() > kMaximo)
        archivos.resize(kMaximo);
    escribir(clave, archivos);
}

void Recientes::registrarEnSesionActiva(const QString &ruta, const QString &app, bool temporal)
{
    const std::unique_ptr<Sesion> sesion(Sesion::cargar(nullptr));
    if (!sesion)
        return;

    const ArchivoReciente archivo{ruta, app, QDateTime::currentDateTime(), temporal};
    for (const Integrante &integrante : sesion->integrantes())
        registrar(integrante.id, archivo);
    sesion->registrarActividad();
}

} // namespace ombu
