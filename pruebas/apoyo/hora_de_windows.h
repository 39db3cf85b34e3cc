#pragma once

namespace reloj {

/// La variable de entorno que dice en qué archivo está la hora, en milisegundos desde 1970.
inline constexpr auto kArchivoDelReloj = "QUILLAY_ARCHIVO_DEL_RELOJ";

/// Desde ahora Qt, en este proceso, toma la hora de ese archivo.
void obedecerAlReloj();

} // namespace reloj
