#include "pruebas/apoyo/escuela_temporal.h"

#include <QFile>

#include <array>
#include <sys/time.h>

using namespace Qt::StringLiterals;

namespace escuela {

QString dirDatosDeLaCuenta()
{
    return dirPersonal() + "/.local/share"_L1;
}

void fechar(const QString &ruta, const QDateTime &fecha)
{
    const timeval tiempo{fecha.toSecsSinceEpoch(), 0};
    const std::array tiempos{tiempo, tiempo};
    if (utimes(QFile::encodeName(ruta).constData(), tiempos.data()) != 0)
        qFatal("No se pudo fechar %s", qUtf8Printable(ruta));
}

} // namespace escuela
