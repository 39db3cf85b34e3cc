#include "pruebas/quillay/teclado.h"

#include <windows.h>

namespace en_pantalla {

void darTeclado(WId ventana)
{
    SetForegroundWindow(reinterpret_cast<HWND>(ventana));
}

void soltarTeclado()
{
    SetForegroundWindow(GetDesktopWindow());
}

} // namespace en_pantalla
