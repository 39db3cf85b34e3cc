#pragma once

#include <QString>

/// En qué se diferencian, para quien los prueba, los sistemas en los que corren las pruebas.
namespace sistema {

/// Lo que hace falta en este sistema antes de que una prueba use Qt.
void preparar();

/// Si "a.txt" y "A.txt" son dos archivos.
extern const bool kDistingueMayusculas;

/// Si un archivo puede no tener permiso de ejecución.
extern const bool kHayPermisoDeEjecucion;

/// Si el nombre de un archivo puede tener comillas dobles.
extern const bool kHayComillasEnLosNombres;

/// La variable de entorno que dice dónde se crean las carpetas temporales.
extern const char *const kVariableTemporal;

/// Cambia una variable de entorno de este proceso, cualesquiera sean sus letras.
void ponerVariable(const char *nombre, const QString &valor);

} // namespace sistema
