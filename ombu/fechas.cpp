#include "ombu/fechas.h"

namespace ombu {

QString textoDeFecha(const QDateTime &fecha)
{
    return fecha.toString(Qt::ISODate);
}

QDateTime fechaDeTexto(const QString &texto)
{
    // Qt también acepta un espacio en lugar de la T (RFC 3339), que no es ISO 8601.
    constexpr qsizetype kLargoDia = 10;
    if (texto.size() > kLargoDia && texto.at(kLargoDia) != u'T')
        return {};
    return QDateTime::fromString(texto, Qt::ISODate).toLocalTime();
}

bool masNueva(const QDateTime &a, const QDateTime &b)
{
    if (a.isValid() != b.isValid())
        return a.isValid();
    return a > b;
}

} // namespace ombu
