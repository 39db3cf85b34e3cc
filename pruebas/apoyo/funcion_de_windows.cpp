#include "pruebas/apoyo/funcion_de_windows.h"

#include <QtGlobal>

#include <windows.h>

#include <cstring>

namespace {

constexpr auto kQt = L"Qt6Core.dll";

template<typename T>
T *en(HMODULE biblioteca, ULONGLONG lugar)
{
    return reinterpret_cast<T *>(reinterpret_cast<char *>(biblioteca) + lugar);
}

/// El lugar de la tabla de importación de `biblioteca` donde está la dirección de esa función.
ULONGLONG *direccionImportada(HMODULE biblioteca, const char *nombre)
{
    const auto *dos = en<IMAGE_DOS_HEADER>(biblioteca, 0);
    const auto *cabecera = en<IMAGE_NT_HEADERS>(biblioteca, static_cast<ULONGLONG>(dos->e_lfanew));
    const DWORD tabla =
        cabecera->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (const auto *otra = en<IMAGE_IMPORT_DESCRIPTOR>(biblioteca, tabla); otra->Name; ++otra) {
        const auto *funcion = en<IMAGE_THUNK_DATA>(biblioteca, otra->OriginalFirstThunk);
        auto *direccion = en<IMAGE_THUNK_DATA>(biblioteca, otra->FirstThunk);
        for (; funcion->u1.AddressOfData; ++funcion, ++direccion) {
            if (IMAGE_SNAP_BY_ORDINAL(funcion->u1.Ordinal))
                continue;
            const auto *importada = en<IMAGE_IMPORT_BY_NAME>(biblioteca, funcion->u1.AddressOfData);
            if (std::strcmp(reinterpret_cast<const char *>(importada->Name), nombre) == 0)
                return &direccion->u1.Function;
        }
    }
    return nullptr;
}

} // namespace

void reemplazarFuncionDeWindows(const char *nombre, void *nueva)
{
    ULONGLONG *direccion = direccionImportada(GetModuleHandleW(kQt), nombre);
    DWORD proteccion = 0;
    if (!direccion || !VirtualProtect(direccion, sizeof(*direccion), PAGE_READWRITE, &proteccion)) {
        qFatal("No se pudo reemplazar %s", nombre);
    }
    *direccion = reinterpret_cast<ULONGLONG>(nueva);
    VirtualProtect(direccion, sizeof(*direccion), proteccion, &proteccion);
}
