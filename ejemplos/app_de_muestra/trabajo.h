#pragma once

#include "ombu/proyectos_guardados.h"

#include <QString>

#include <optional>

namespace muestra {

/// Si se sabe dónde guarda sus trabajos la app `idApp`.
bool sabeGuardar(const QString &idApp);

/// El trabajo de `idApp` que se guardó en la carpeta `carpeta` (el nombre solo, como lo da el
/// lanzador después de `--proyecto`); vacío si no existe.
std::optional<ombu::ProyectoGuardado> buscarTrabajo(const QString &idApp, const QString &carpeta);

/// Guarda un trabajo llamado `nombre` donde el lanzador busca los de `idApp`; si ya estaba, lo
/// reemplaza. Vacío si no se pudo escribir.
std::optional<ombu::ProyectoGuardado> guardarTrabajo(const QString &idApp, const QString &nombre);

} // namespace muestra
