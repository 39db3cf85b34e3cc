#pragma once

/// Desde ahora, cuando Qt llame a la función `nombre` de Windows, se llama a `nueva`. Es lo que en
/// Debian se hace cargando antes otra biblioteca.
void reemplazarFuncionDeWindows(const char *nombre, void *nueva);
