#include "quillay/color_legible.h"

#include "pruebas/apoyo/principal.h"

#include <QColor>
#include <QCoreApplication>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

using quillay::colorLegible;

namespace {

double lineal(int componente)
{
    const double c = componente / 255.0;
    return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

double contrasteConBlanco(const QString &color)
{
    const QColor c = QColor::fromString(color);
    return 1.05 / (0.2126 * lineal(c.red()) + 0.7152 * lineal(c.green()) +
                   0.0722 * lineal(c.blue()) + 0.05);
}

/// Colores repartidos por todo el cubo RGB, con sus esquinas.
QStringList coloresDeMuestra()
{
    constexpr int kPaso = 15;
    QStringList colores;
    for (int rojo = 0; rojo <= 255; rojo += kPaso) {
        for (int verde = 0; verde <= 255; verde += kPaso) {
            for (int azul = 0; azul <= 255; azul += kPaso)
                colores.append(QColor(rojo, verde, azul).name());
        }
    }
    return colores;
}

} // namespace

class PruebaColorLegible : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oscureceHastaQueSeLee_data()
    {
        QTest::addColumn<QString>("color");
        QTest::addColumn<QString>("legible");
        QTest::newRow("Ceibo: cuatro pasos") << u"#F9A825"_s << u"#8e6015"_s;
        QTest::newRow("Garza: ninguno") << u"#00838F"_s << u"#00838f"_s;
        QTest::newRow("Hornero: uno") << u"#E53935"_s << u"#c7322e"_s;
        QTest::newRow("Zorzal: dos") << u"#43A047"_s << u"#337936"_s;
        QTest::newRow("Benteveo: tres") << u"#7CB342"_s << u"#52762b"_s;
        QTest::newRow("blanco: seis") << u"#FFFFFF"_s << u"#6e6e6e"_s;
        QTest::newRow("celeste: cinco") << u"#00FFFF"_s << u"#007f7f"_s;
        QTest::newRow("gris que apenas se lee") << u"#767676"_s << u"#767676"_s;
        QTest::newRow("gris que por poco no se lee") << u"#777777"_s << u"#676767"_s;
        QTest::newRow("negro") << u"#000000"_s << u"#000000"_s;
    }

    void oscureceHastaQueSeLee()
    {
        QFETCH(const QString, color);
        QFETCH(const QString, legible);
        QCOMPARE(colorLegible(color), legible);
    }

    void cualquierColorTerminaLeyendose()
    {
        constexpr double kRedondeo = 0.06; // De los componentes a 8 bits.
        const QStringList colores = coloresDeMuestra();
        for (const QString &color : colores) {
            const double contraste = contrasteConBlanco(colorLegible(color));
            QVERIFY2(contraste > 4.5 - kRedondeo, qUtf8Printable(color));
        }
    }

    void elQueYaSeLeeNoCambia()
    {
        QStringList colores = coloresDeMuestra();
        colores.removeIf([](const QString &color) { return contrasteConBlanco(color) < 4.5; });
        QVERIFY(!colores.isEmpty());
        for (const QString &color : std::as_const(colores))
            QCOMPARE(colorLegible(color), color);
    }

    void conservaElTono()
    {
        constexpr float kTolerancia = 0.02F; // De tono, sobre 1.
        for (const QString &color : {u"#F9A825"_s, u"#E53935"_s, u"#43A047"_s, u"#7CB342"_s}) {
            const float antes = QColor::fromString(color).hsvHueF();
            const float despues = QColor::fromString(colorLegible(color)).hsvHueF();
            QVERIFY2(std::abs(antes - despues) < kTolerancia, qUtf8Printable(color));
        }
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaColorLegible, QCoreApplication>(argc, argv);
}

#include "prueba_color_legible.moc"
