#include "pruebas/apoyo/sistema.h"

#include <QFile>

namespace sistema {

void preparar() {}

const bool kDistingueMayusculas = true;
const bool kHayPermisoDeEjecucion = true;
const bool kHayComillasEnLosNombres = true;
const char *const kVariableTemporal = "TMPDIR";

void ponerVariable(const char *nombre, const QString &valor)
{
    qputenv(nombre, QFile::encodeName(valor));
}

} // namespace sistema
