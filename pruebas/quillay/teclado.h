#pragma once

#include <QWidget>

namespace en_pantalla {

/// Pide el teclado para esa ventana. En la pantalla de las pruebas nadie lo reparte.
void darTeclado(WId ventana);

/// El teclado no queda para ninguna ventana de este programa.
void soltarTeclado();

} // namespace en_pantalla
