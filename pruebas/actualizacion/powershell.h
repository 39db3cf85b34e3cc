#pragma once

#include <QStringList>

/// Qué encuentra este proceso cuando busca "powershell.exe".
namespace powershell {

/// Uno que cumple la orden de extraer y rechaza las demás. Anota con qué lo llamaron.
void usarElDeMuestra();

/// Cómo falla un Powershell.
struct Falla
{
    int codigo = 1;       ///< Con el que termina.
    bool seCae = false;   ///< No termina por su cuenta, y no hay código.
    bool deja = false;    ///< Antes deja un "a.txt" en la carpeta de destino.
    QString copiaEn = {}; ///< Antes copia ahí la carpeta del paquete.
};

void usarUnoQueFalla(const Falla &falla);

void usarNinguno();

/// Donde el de muestra anota con qué lo llamaron: un renglón por vez, con un nulo tras cada
/// argumento.
QString registro();

/// Los argumentos con que se llamó al de muestra, de cada vez.
QList<QStringList> llamadas();

} // namespace powershell
