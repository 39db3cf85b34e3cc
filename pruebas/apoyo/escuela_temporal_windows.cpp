#include "pruebas/apoyo/escuela_temporal.h"

#include <QDir>

#include <windows.h>

using namespace Qt::StringLiterals;

namespace escuela {

QString dirDatosDeLaCuenta()
{
    return dirPersonal() + "/AppData/Local"_L1;
}

// QFile::setFileTime() no sirve para carpetas.
void fechar(const QString &ruta, const QDateTime &fecha)
{
    constexpr qint64 kDe1601A1970S = 11'644'473'600;
    const auto decimasDeMicro =
        static_cast<quint64>(fecha.toSecsSinceEpoch() + kDe1601A1970S) * 10'000'000;
    const FILETIME tiempo{static_cast<DWORD>(decimasDeMicro),
                          static_cast<DWORD>(decimasDeMicro >> 32)};
    const HANDLE archivo =
        CreateFileW(qUtf16Printable(QDir::toNativeSeparators(ruta)), FILE_WRITE_ATTRIBUTES,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                    FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    const bool fechado = SetFileTime(archivo, nullptr, &tiempo, &tiempo);
    CloseHandle(archivo);
    if (!fechado)
        qFatal("No se pudo fechar %s", qUtf8Printable(ruta));
}

} // namespace escuela
