// Corre una orden como la correría una cuenta común: sin el grupo de los administradores.
//
//   sin_administrador.exe PROGRAMA [ARGUMENTOS...]

#include <array>
#include <string>

#include <windows.h>

namespace {

constexpr int kNoSePudo = 99;

/// La línea de órdenes sin este programa, tal como se escribió.
std::wstring ordenPedida()
{
    const std::wstring todo = GetCommandLineW();
    const std::wstring::size_type fin = todo.front() == L'"' ? todo.find(L'"', 1) + 1 : 0;
    return todo.substr(todo.find_first_not_of(L' ', todo.find(L' ', fin)));
}

HANDLE cuentaComun()
{
    HANDLE propia = nullptr;
    std::array<BYTE, SECURITY_MAX_SID_SIZE> administradores{};
    DWORD tamano = administradores.size();
    SID_AND_ATTRIBUTES quitado{administradores.data(), 0};
    HANDLE restringida = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ALL_ACCESS, &propia) ||
        !CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administradores.data(),
                            &tamano) ||
        !CreateRestrictedToken(propia, 0, 1, &quitado, 0, nullptr, 0, nullptr, &restringida)) {
        return nullptr;
    }
    return restringida;
}

} // namespace

int main()
{
    std::wstring orden = ordenPedida();
    STARTUPINFOW inicio{};
    inicio.cb = sizeof inicio;
    PROCESS_INFORMATION proceso{};
    if (!CreateProcessAsUserW(cuentaComun(), nullptr, orden.data(), nullptr, nullptr, FALSE, 0,
                              nullptr, nullptr, &inicio, &proceso)) {
        return kNoSePudo;
    }
    DWORD codigo = kNoSePudo;
    WaitForSingleObject(proceso.hProcess, INFINITE);
    GetExitCodeProcess(proceso.hProcess, &codigo);
    return static_cast<int>(codigo);
}
