#include "pruebas/apoyo/carpetas_de_windows.h"

#include <QDir>

#include <windows.h>

namespace carpetas_de_windows {

void mudar(const wchar_t *carpeta, const QString &ruta)
{
    constexpr auto kClave =
        L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";
    const QString nativa = QDir::toNativeSeparators(ruta);
    const auto bytes = static_cast<DWORD>((nativa.size() + 1) * qsizetype{sizeof(QChar)});
    if (RegSetKeyValueW(HKEY_CURRENT_USER, kClave, carpeta, REG_EXPAND_SZ, nativa.utf16(), bytes) !=
        ERROR_SUCCESS) {
        qFatal("No se pudo mudar una carpeta de la cuenta a %s", qUtf8Printable(ruta));
    }
}

} // namespace carpetas_de_windows
