#pragma once

/// Las variables de entorno con que una prueba le dice a su PowerShell qué hacer.
namespace encargos {

inline constexpr auto kRegistro = "QUILLAY_POWERSHELL_REGISTRO"; ///< Dónde anota las llamadas.
inline constexpr auto kCodigo = "QUILLAY_POWERSHELL_CODIGO";     ///< Falla, con este código.
inline constexpr auto kSeCae = "QUILLAY_POWERSHELL_SE_CAE";      ///< Falla cayéndose.
inline constexpr auto kDeja = "QUILLAY_POWERSHELL_DEJA";         ///< Al fallar deja un archivo.
inline constexpr auto kCopiaEn = "QUILLAY_POWERSHELL_COPIA_EN";  ///< Al fallar copia la carpeta.

} // namespace encargos
