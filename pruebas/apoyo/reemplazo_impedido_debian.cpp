#include "pruebas/apoyo/reemplazo_impedido.h"

#include <QFile>

#include <sched.h>
#include <sys/mount.h>

struct ReemplazoImpedido::Detalle
{
    QByteArray archivo;
};

// Sobre un archivo que tiene algo montado. El montaje solo lo ve este proceso y termina con él.
ReemplazoImpedido::ReemplazoImpedido(const QString &ruta)
{
    const QByteArray archivo = QFile::encodeName(ruta);
    if (unshare(CLONE_NEWNS) == 0 &&
        mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
        mount(archivo.constData(), archivo.constData(), nullptr, MS_BIND, nullptr) == 0) {
        m_detalle = std::make_unique<Detalle>(Detalle{archivo});
    }
}

void ReemplazoImpedido::soltar()
{
    umount(m_detalle->archivo.constData());
    m_detalle.reset();
}

ReemplazoImpedido::~ReemplazoImpedido()
{
    if (vale())
        soltar();
}
