#include "para_windows/instalador/permisos.h"

#include <QDir>

#include <array>
#include <memory>

#include <windows.h>

#include <aclapi.h>

namespace instalador {

namespace {

// Lo que Windows llama "Modificar".
constexpr DWORD kModificar = FILE_GENERIC_READ | FILE_GENERIC_WRITE | FILE_GENERIC_EXECUTE | DELETE;

struct Liberar
{
    void operator()(void *memoria) const { LocalFree(memoria); }
};

template<typename T>
using Local = std::unique_ptr<T, Liberar>;

} // namespace

bool compartirCarpeta(const QString &carpeta)
{
    std::wstring ruta = QDir::toNativeSeparators(carpeta).toStdWString();
    PACL actuales = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetNamedSecurityInfoW(ruta.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                              nullptr, &actuales, nullptr, &descriptor) != ERROR_SUCCESS) {
        return false;
    }
    const Local<void> duenoDelDescriptor(descriptor);

    std::array<BYTE, SECURITY_MAX_SID_SIZE> usuarios{};
    DWORD tamano = usuarios.size();
    if (!CreateWellKnownSid(WinBuiltinUsersSid, nullptr, usuarios.data(), &tamano))
        return false;

    EXPLICIT_ACCESSW permiso{};
    permiso.grfAccessPermissions = kModificar;
    permiso.grfAccessMode = GRANT_ACCESS;
    permiso.grfInheritance = SUB_CONTAINERS_AND_OBJECTS_INHERIT;
    BuildTrusteeWithSidW(&permiso.Trustee, usuarios.data());
    PACL nuevos = nullptr;
    if (SetEntriesInAclW(1, &permiso, actuales, &nuevos) != ERROR_SUCCESS)
        return false;
    const Local<ACL> duenoDeNuevos(nuevos);

    // Windows los extiende, además, a todo lo que ya está en la carpeta.
    return SetNamedSecurityInfoW(ruta.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                 nullptr, nuevos, nullptr) == ERROR_SUCCESS;
}

} // namespace instalador
