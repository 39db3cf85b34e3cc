#pragma once

#include <QString>

/// Las carpetas de la cuenta, que Windows busca en el registro y no en el entorno.
namespace carpetas_de_windows {

inline constexpr auto kDocumentos = L"Personal";
inline constexpr auto kDatosDeProgramas = L"Local AppData";

/// Desde ahora esa carpeta de la cuenta es `ruta`.
void mudar(const wchar_t *carpeta, const QString &ruta);

} // namespace carpetas_de_windows
