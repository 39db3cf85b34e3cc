#include "quillay/color_legible.h"

#include <QColor>

#include <cmath>

namespace quillay {

namespace {

constexpr double kContrasteMinimo = 4.5;
constexpr int kPasosMaximos = 8;
constexpr int kFactorOscurecer = 115;

// Componente sRGB a luz lineal y luminancia relativa: definiciones de WCAG 2.
double lineal(double componente)
{
    return componente <= 0.03928 ? componente / 12.92 : std::pow((componente + 0.055) / 1.055, 2.4);
}

double luminancia(const QColor &color)
{
    return 0.2126 * lineal(color.redF()) + 0.7152 * lineal(color.greenF()) +
           0.0722 * lineal(color.blueF());
}

double contrasteConBlanco(const QColor &color)
{
    return 1.05 / (luminancia(color) + 0.05);
}

} // namespace

QString colorLegible(const QString &color)
{
    QColor legible = QColor::fromString(color);
    for (int paso = 0; paso < kPasosMaximos && contrasteConBlanco(legible) < kContrasteMinimo;
         ++paso) {
        legible = legible.darker(kFactorOscurecer);
    }
    return legible.name();
}

} // namespace quillay
