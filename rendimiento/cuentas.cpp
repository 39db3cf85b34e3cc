#include "rendimiento/cuentas.h"

#include <QLocale>
#include <QTextStream>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace medicion {

namespace {

QString numero(double valor)
{
    return QLocale(QLocale::Spanish, QLocale::Argentina).toString(valor, 'f', 2);
}

void imprimir(const Comparacion &medido, const QString &meta, bool cumple)
{
    QTextStream(stdout) << u"%1: %2 %4; piso %3 %4; %5 veces. Meta: %6. %7."_s.arg(
                               medido.que, numero(medido.nuestro), numero(medido.piso),
                               medido.unidad, numero(medido.nuestro / medido.piso), meta,
                               cumple ? u"Se cumple"_s : u"NO SE CUMPLE"_s)
                        << Qt::endl;
}

} // namespace

double mediana(std::vector<double> valores)
{
    const auto medio = valores.begin() + static_cast<std::ptrdiff_t>(valores.size() / 2);
    std::nth_element(valores.begin(), medio, valores.end());
    return *medio;
}

void informarVeces(const Comparacion &medido, double maximo)
{
    imprimir(medido, u"hasta %1 veces"_s.arg(numero(maximo)),
             medido.nuestro <= maximo * medido.piso);
}

void informarValor(const Comparacion &medido, double maximo)
{
    imprimir(medido, u"hasta %1 %2"_s.arg(numero(maximo), medido.unidad), medido.nuestro <= maximo);
}

void informarAgregado(const Comparacion &medido, double maximo)
{
    const double agregado = medido.nuestro - medido.piso;
    imprimir(
        medido,
        u"agregar hasta %1 %2 (agrega %3)"_s.arg(numero(maximo), medido.unidad, numero(agregado)),
        agregado <= maximo);
}

} // namespace medicion
