#pragma once

class QApplication;

namespace quillay {

/// Da al proceso su identidad (nombre, organización, ícono), las traducciones de Qt al español y
/// la carpeta compartida de bibliotecas. Se llama una vez, antes de crear ventanas.
void prepararAplicacion(QApplication &aplicacion);

} // namespace quillay
