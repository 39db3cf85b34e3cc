#pragma once

#include <QString>

namespace instalador {

/// Da a todas las cuentas de la computadora permiso para crear, cambiar y borrar lo que hay y lo
/// que haya en `carpeta`. Da false si esta cuenta no puede darlo.
bool compartirCarpeta(const QString &carpeta);

} // namespace instalador
