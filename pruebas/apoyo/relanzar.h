#pragma once

#include <optional>

/// Prepara una escuela temporal, corre en ella una copia de este mismo ejecutable, con los mismos
/// argumentos y como si estuviera instalado en la carpeta del lanzador, y da su código de salida.
/// Dentro de esa copia no hace nada y da vacío: ahí corren las pruebas.
std::optional<int> relanzarEnEscuela(int argc, char **argv);
