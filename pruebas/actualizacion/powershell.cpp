#include "pruebas/actualizacion/powershell.h"

#include "pruebas/apoyo/escuela_temporal.h"

using namespace Qt::StringLiterals;

namespace powershell {

QString registro()
{
    return escuela::dirPersonal() + "/llamadas-a-powershell"_L1;
}

QList<QStringList> llamadas()
{
    QList<QStringList> todas;
    const QList<QByteArray> lineas = escuela::leer(registro()).split('\n');
    for (const QByteArray &linea : lineas.first(lineas.size() - 1)) {
        const QStringList campos = QString::fromUtf8(linea).split(QChar(u'\0'));
        todas.append(campos.first(campos.size() - 1));
    }
    return todas;
}

} // namespace powershell
