#pragma once

#include <QDateTime>

/// El reloj de pared de las pruebas que se declaran con RELOJ: queda detenido en la hora que se le
/// pone, para este proceso y para los que lance. Los temporizadores siguen el tiempo verdadero.
namespace reloj {

void poner(const QDateTime &hora);

} // namespace reloj
