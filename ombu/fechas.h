#pragma once

#include <QDateTime>
#include <QString>

namespace ombu {

/// La fecha como se guarda en los archivos JSON: hora local en ISO 8601, sin zona ni fracción
/// de segundo ("2025-03-14T09:05:00").
QString textoDeFecha(const QDateTime &fecha);

/// La fecha (hora local) que dice `texto` en ISO 8601; inválida si falta o está mal escrita.
QDateTime fechaDeTexto(const QString &texto);

/// Orden "lo más nuevo primero": si `a` va antes que `b`. Las fechas inválidas van al final.
bool masNueva(const QDateTime &a, const QDateTime &b);

} // namespace ombu
