#include "pruebas/actualizacion/archivo_en_uso.h"

#include "pruebas/apoyo/funcion_de_windows.h"

#include <QDir>

#include <windows.h>

#include <algorithm>
#include <vector>

namespace {

/// El mismo archivo, aunque cambie de nombre.
struct Identidad
{
    DWORD volumen = 0;
    quint64 numero = 0;

    bool operator==(const Identidad &) const = default;
};

HANDLE abrir(LPCWSTR ruta, DWORD acceso, DWORD comparte)
{
    return CreateFileW(ruta, acceso, comparte, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS,
                       nullptr);
}

Identidad identidadDe(LPCWSTR ruta)
{
    constexpr DWORD kConTodos = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE archivo = abrir(ruta, 0, kConTodos);
    BY_HANDLE_FILE_INFORMATION datos{};
    const bool existe = GetFileInformationByHandle(archivo, &datos);
    CloseHandle(archivo);
    if (!existe)
        return {};
    return {datos.dwVolumeSerialNumber,
            (quint64{datos.nFileIndexHigh} << 32) | datos.nFileIndexLow};
}

std::vector<Identidad> &noSeBorran()
{
    static std::vector<Identidad> archivos;
    return archivos;
}

BOOL WINAPI borrarLoQueNoEsteEnUso(LPCWSTR ruta)
{
    const std::vector<Identidad> &trabados = noSeBorran();
    if (std::find(trabados.begin(), trabados.end(), identidadDe(ruta)) == trabados.end())
        return DeleteFileW(ruta);
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

} // namespace

struct ArchivoEnUso::Detalle
{
    Identidad identidad;
    HANDLE abierto = INVALID_HANDLE_VALUE;
};

// El archivo de la prueba no es un programa que se pueda abrir: que no se borre se simula (los
// programas de verdad están en prueba_windows_en_uso). Lo que no se comparte se abre de verdad.
ArchivoEnUso::ArchivoEnUso(const QString &ruta, Traba traba)
    : m_detalle(std::make_unique<Detalle>())
{
    static const bool vigilado =
        (reemplazarFuncionDeWindows("DeleteFileW",
                                    reinterpret_cast<void *>(&borrarLoQueNoEsteEnUso)),
         true);
    Q_UNUSED(vigilado)

    const QString nativa = QDir::toNativeSeparators(ruta);
    const auto *nombre = qUtf16Printable(nativa);
    m_detalle->identidad = identidadDe(nombre);
    if (m_detalle->identidad == Identidad{})
        qFatal("No existe %s", qUtf8Printable(ruta));
    if (traba == NiSeRenombra)
        m_detalle->abierto = abrir(nombre, GENERIC_READ, FILE_SHARE_READ);
    else
        noSeBorran().push_back(m_detalle->identidad);
}

ArchivoEnUso::~ArchivoEnUso()
{
    std::erase(noSeBorran(), m_detalle->identidad);
    if (m_detalle->abierto != INVALID_HANDLE_VALUE)
        CloseHandle(m_detalle->abierto);
}
