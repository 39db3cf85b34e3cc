#pragma once

#include <QByteArray>
#include <QStringList>

/// Qué encuentra este proceso cuando busca "powershell.exe".
namespace powershell {

/// El de muestra de Debian, que cumple la orden. Anota con qué lo llamaron.
void usarElDeMuestra();

/// Un guion de bash en su lugar.
void usarGuion(const QByteArray &guion);

void usarNinguno();

/// Los argumentos con que se llamó al de muestra, de cada vez.
QList<QStringList> llamadas();

} // namespace powershell
