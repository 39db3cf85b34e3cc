#pragma once

#include <QString>

#include <chrono>
#include <ctime>
#include <vector>

namespace medicion {

/// El valor del medio, que no se mueve por una interrupción ajena.
/// @param valores al menos uno.
double mediana(std::vector<double> valores);

/// Milisegundos de reloj que tarda `operacion`.
template<typename Operacion>
double milisegundos(const Operacion &operacion)
{
    const auto antes = std::chrono::steady_clock::now();
    operacion();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - antes)
        .count();
}

/// Milisegundos de procesador que usa `operacion` en este proceso: no cuenta lo que la máquina
/// dedica mientras tanto a otros.
template<typename Operacion>
double milisegundosDeProcesador(const Operacion &operacion)
{
    const std::clock_t antes = std::clock();
    operacion();
    return static_cast<double>(std::clock() - antes) * 1000 / CLOCKS_PER_SEC;
}

/// Lo nuestro y el piso, medidos en la misma corrida.
struct Comparacion
{
    QString que;
    double nuestro;
    double piso;
    QString unidad;
};

/// Imprime una línea con los dos valores, cuántas veces el piso es lo nuestro y, como meta, un
/// máximo de veces.
void informarVeces(const Comparacion &medido, double maximo);

/// Lo mismo, con un máximo para el valor nuestro.
void informarValor(const Comparacion &medido, double maximo);

/// Lo mismo, con un máximo para lo que lo nuestro agrega al piso.
void informarAgregado(const Comparacion &medido, double maximo);

} // namespace medicion
