#pragma once

#include <QString>

namespace quillay {

/// `color` ("#RRGGBB") oscurecido lo necesario para leerse sobre blanco, como "#rrggbb".
/// Busca un contraste de 4,5 a 1 (WCAG 2, nivel AA) y se rinde tras ocho pasos.
QString colorLegible(const QString &color);

} // namespace quillay
