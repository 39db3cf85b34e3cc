#include "pruebas/apoyo/reemplazo_impedido.h"

#include <QDir>

#include <windows.h>

struct ReemplazoImpedido::Detalle
{
    HANDLE archivo;
};

// Otro programa lo tiene abierto y no deja que lo borren.
ReemplazoImpedido::ReemplazoImpedido(const QString &ruta)
{
    const HANDLE archivo = CreateFileW(qUtf16Printable(QDir::toNativeSeparators(ruta)),
                                       GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                       OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (archivo != INVALID_HANDLE_VALUE)
        m_detalle.reset(new Detalle{archivo});
}

void ReemplazoImpedido::soltar()
{
    CloseHandle(m_detalle->archivo);
    m_detalle.reset();
}

ReemplazoImpedido::~ReemplazoImpedido()
{
    if (vale())
        soltar();
}
