// Otro proceso de una prueba con RELOJ vive en la misma hora que ella.

#include "pruebas/apoyo/hora_de_windows.h"

#include <QtGlobal>

namespace {

const bool obedece = [] {
    const bool hayReloj = qEnvironmentVariableIsSet(reloj::kArchivoDelReloj);
    if (hayReloj)
        reloj::obedecerAlReloj();
    return hayReloj;
}();

} // namespace
