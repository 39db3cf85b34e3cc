#include "ombu/perfiles_locales.h"

#include "ombu/archivo_json.h"
#include "ombu/sesion.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QUuid>

#include <array>

using namespace Qt::StringLiterals;

namespace ombu {

namespace {

constexpr auto kId = "id"_L1;
constexpr auto kNombre = "nombre"_L1;
constexpr auto kColor = "color"_L1;

constexpr std::array kColores{
    "#1A6BAF"_L1, "#6B3FA0"_L1, "#D4570A"_L1, "#2E8B57"_L1,
    "#C2185B"_L1, "#00838F"_L1, "#F9A825"_L1, "#5D4037"_L1,
};

void escribir(const QList<Perfil> &perfiles)
{
    QJsonArray lista;
    for (const Perfil &perfil : perfiles) {
        lista.append(
            QJsonObject{{kId, perfil.id}, {kNombre, perfil.nombre}, {kColor, perfil.color}});
    }
    escribirDocumentoJson(PerfilesLocales::rutaArchivo(), QJsonDocument(lista));
}

} // namespace

QString PerfilesLocales::rutaArchivo()
{
    return Sesion::dirDatos() + "/perfiles.json"_L1;
}

QList<Perfil> PerfilesLocales::listar()
{
    QList<Perfil> perfiles;
    const QJsonArray lista = leerDocumentoJson(rutaArchivo()).array();
    for (const auto &valor : lista) {
        const QJsonObject objeto = valor.toObject();
        perfiles.append(
            {objeto[kId].toString(), objeto[kNombre].toString(), objeto[kColor].toString()});
    }
    return perfiles;
}

Perfil PerfilesLocales::crear(const QString &nombre)
{
    QList<Perfil> perfiles = listar();
    Perfil nuevo{QUuid::createUuid().toString(QUuid::WithoutBraces), nombre.trimmed(),
                 kColores.at(static_cast<std::size_t>(perfiles.size()) % kColores.size())};
    perfiles.append(nuevo);
    escribir(perfiles);
    return nuevo;
}

} // namespace ombu
