#include "pruebas/apoyo/sistema.h"

#include "pruebas/apoyo/esperas_de_windows.h"

#include <cstdlib>

namespace sistema {

void preparar()
{
    corregirEsperasDeWindows();
}

const bool kDistingueMayusculas = false;
const bool kHayPermisoDeEjecucion = false;
const bool kHayComillasEnLosNombres = false;
const char *const kVariableTemporal = "TMP";

// qputenv() la pasa a la codificación de la cuenta, que no tiene todas las letras.
void ponerVariable(const char *nombre, const QString &valor)
{
    _wputenv_s(qUtf16Printable(QString::fromLatin1(nombre)), qUtf16Printable(valor));
}

} // namespace sistema
