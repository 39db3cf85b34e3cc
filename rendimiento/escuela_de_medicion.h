#pragma once

#include <QString>
#include <QStringList>

/// Con qué se llena la escuela temporal para medir, y los programas que se miden en ella.
namespace medicion {

/// Copia el lanzador a su carpeta, con un `config.json` sin direcciones, y da su ruta.
QString instalarLanzador();

/// El programa que sirve de piso.
QString ventanaPelada();

/// Crea `cantidad` trabajos de la app `id` (garza, ceibo, zorzal o benteveo), cada uno con su
/// descripción.
void crearTrabajos(const QString &id, int cantidad);

/// Dónde guarda sus trabajos la app `id`.
QString carpetaDeTrabajos(const QString &id);

/// Nombre del archivo que describe cada trabajo de la app `id`.
QString archivoDeDescripcion(const QString &id);

/// Deja guardada una sesión que vale, con `cantidad` integrantes, y da sus claves.
QStringList guardarSesion(int cantidad);

/// Llena la lista de recientes de la persona `clave`, que no comparte ninguno con otra.
void llenarRecientes(const QString &clave);

} // namespace medicion
