#include "pruebas/apoyo/hora_de_windows.h"
#include "pruebas/apoyo/funcion_de_windows.h"

#include <QFile>

#include <windows.h>

namespace reloj {

namespace {

/// La hora del archivo, o la verdadera si todavía no la hay.
SYSTEMTIME hora()
{
    SYSTEMTIME resultado{};
    QFile archivo(qEnvironmentVariable(kArchivoDelReloj));
    if (!archivo.open(QIODevice::ReadOnly)) {
        GetSystemTime(&resultado);
        return resultado;
    }
    constexpr quint64 kDe1601A1970Ms = 11'644'473'600'000;
    const quint64 decimasDeMicro = (archivo.readAll().toULongLong() + kDe1601A1970Ms) * 10'000;
    const FILETIME tiempo{static_cast<DWORD>(decimasDeMicro),
                          static_cast<DWORD>(decimasDeMicro >> 32)};
    FileTimeToSystemTime(&tiempo, &resultado);
    return resultado;
}

void WINAPI darHora(LPSYSTEMTIME resultado)
{
    *resultado = hora();
}

void WINAPI darHoraLocal(LPSYSTEMTIME resultado)
{
    const SYSTEMTIME universal = hora();
    SystemTimeToTzSpecificLocalTime(nullptr, &universal, resultado);
}

} // namespace

void obedecerAlReloj()
{
    reemplazarFuncionDeWindows("GetSystemTime", reinterpret_cast<void *>(&darHora));
    reemplazarFuncionDeWindows("GetLocalTime", reinterpret_cast<void *>(&darHoraLocal));
}

} // namespace reloj
