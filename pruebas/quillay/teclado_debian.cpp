#include "pruebas/quillay/teclado.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

namespace en_pantalla {

void darTeclado(WId ventana)
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_set_input_focus(x11->connection(), XCB_INPUT_FOCUS_NONE, static_cast<xcb_window_t>(ventana),
                        XCB_CURRENT_TIME);
    xcb_flush(x11->connection());
}

void soltarTeclado()
{
    darTeclado(XCB_NONE);
}

} // namespace en_pantalla
