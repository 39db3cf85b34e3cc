#pragma once

#include "ombu/fechas.h"
#include "ombu/sesion.h"

#include "pruebas/apoyo/escuela_temporal.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace ombu {

inline bool operator==(const Integrante &a, const Integrante &b)
{
    return a.id == b.id && a.nombre == b.nombre && a.color == b.color;
}

} // namespace ombu

/// El archivo de sesión como lo dejaría otro programa de la suite, sin pasar por la biblioteca.
namespace sesion_guardada {

inline QString ruta()
{
    return escuela::dirDatos() + QStringLiteral("/sesion.json");
}

inline void escribir(const QJsonObject &objeto)
{
    escuela::escribir(ruta(), QJsonDocument(objeto).toJson());
}

inline QJsonObject leer()
{
    return QJsonDocument::fromJson(escuela::leer(ruta())).object();
}

/// Los datos de una sesión de Ana, sin conexión, con esas fechas y esa estimación.
inline QJsonObject deAna(const QDateTime &inicio, const QDateTime &ultimaActividad, int minutos)
{
    return {
        {QStringLiteral("token"), QString()},
        {QStringLiteral("grupo"), QStringLiteral("Ana")},
        {QStringLiteral("modo"), QStringLiteral("standalone")},
        {QStringLiteral("inicio_sesion"), ombu::textoDeFecha(inicio)},
        {QStringLiteral("ultima_actividad"), ombu::textoDeFecha(ultimaActividad)},
        {QStringLiteral("duracion_estimada_min"), minutos},
        {QStringLiteral("integrantes"),
         QJsonArray{QJsonObject{{QStringLiteral("id"), QStringLiteral("ana-1")},
                                {QStringLiteral("nombre"), QStringLiteral("Ana")},
                                {QStringLiteral("color"), QStringLiteral("celeste")}}}},
    };
}

} // namespace sesion_guardada
