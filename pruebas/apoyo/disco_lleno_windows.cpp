#include "pruebas/apoyo/disco_lleno.h"

#include "pruebas/apoyo/funcion_de_windows.h"

#include <windows.h>

#include <algorithm>
#include <limits>

namespace {

constexpr quint64 kSinLimite = std::numeric_limits<quint64>::max();

quint64 limite = kSinLimite;

BOOL noHayLugar()
{
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

/// Escribe lo que entra; si no es todo, falla.
BOOL WINAPI escribirHastaElLimite(HANDLE archivo, LPCVOID datos, DWORD cantidad, LPDWORD escritos,
                                  LPOVERLAPPED solapado)
{
    LARGE_INTEGER lugar{};
    if (limite == kSinLimite || GetFileType(archivo) != FILE_TYPE_DISK ||
        !SetFilePointerEx(archivo, {}, &lugar, FILE_CURRENT)) {
        return WriteFile(archivo, datos, cantidad, escritos, solapado);
    }
    const auto ocupado = static_cast<quint64>(lugar.QuadPart);
    const quint64 libre = limite - std::min(limite, ocupado);
    if (libre >= cantidad)
        return WriteFile(archivo, datos, cantidad, escritos, solapado);
    WriteFile(archivo, datos, static_cast<DWORD>(libre), escritos, solapado);
    return noHayLugar();
}

BOOL WINAPI copiarHastaElLimite(LPCWSTR origen, LPCWSTR destino, BOOL fallarSiExiste)
{
    WIN32_FILE_ATTRIBUTE_DATA datos{};
    GetFileAttributesExW(origen, GetFileExInfoStandard, &datos);
    const quint64 bytes = (quint64{datos.nFileSizeHigh} << 32) | datos.nFileSizeLow;
    return bytes > limite ? noHayLugar() : CopyFileW(origen, destino, fallarSiExiste);
}

void vigilarLasEscrituras()
{
    reemplazarFuncionDeWindows("WriteFile", reinterpret_cast<void *>(&escribirHastaElLimite));
    reemplazarFuncionDeWindows("CopyFileW", reinterpret_cast<void *>(&copiarHastaElLimite));
}

} // namespace

DiscoLleno::DiscoLleno(quint64 bytesPorArchivo)
    : m_anterior(limite)
{
    static const bool vigilado = (vigilarLasEscrituras(), true);
    Q_UNUSED(vigilado)
    limite = bytesPorArchivo;
}

DiscoLleno::~DiscoLleno()
{
    limite = m_anterior;
}
