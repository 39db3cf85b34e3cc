#include "ombu/fechas.h"

#include "pruebas/apoyo/principal.h"

using namespace Qt::StringLiterals;

class PruebaFechas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void seEscribeEnHoraLocalSinZonaNiFraccion()
    {
        const QDateTime fecha(QDate(2025, 3, 14), QTime(9, 5, 0, 123));
        QCOMPARE(ombu::textoDeFecha(fecha), u"2025-03-14T09:05:00"_s);
    }

    void loEscritoSeLeeIgual()
    {
        const QDateTime fecha(QDate(2025, 3, 14), QTime(9, 5));
        QCOMPARE(ombu::fechaDeTexto(ombu::textoDeFecha(fecha)), fecha);
    }

    void unaFechaConZonaSeLeeEnHoraLocal()
    {
        const QDateTime leida = ombu::fechaDeTexto(u"2025-03-14T09:05:00Z"_s);
        QCOMPARE(leida.timeSpec(), Qt::LocalTime);
        QCOMPARE(leida, QDateTime(QDate(2025, 3, 14), QTime(9, 5), Qt::UTC));
    }

    void loQueNoEsIso8601EsInvalido_data()
    {
        QTest::addColumn<QString>("texto");
        QTest::newRow("vacía") << u""_s;
        QTest::newRow("espacio en lugar de la T") << u"2025-03-14 09:05:00"_s;
        QTest::newRow("a la argentina") << u"14/03/2025 09:05"_s;
        QTest::newRow("cortada") << u"2025-03-14T"_s;
        QTest::newRow("día imposible") << u"2025-02-30T09:05:00"_s;
        QTest::newRow("hora imposible") << u"2025-03-14T25:05:00"_s;
        QTest::newRow("palabras") << u"ayer a la tarde"_s;
    }

    void loQueNoEsIso8601EsInvalido()
    {
        QFETCH(const QString, texto);
        QVERIFY(!ombu::fechaDeTexto(texto).isValid());
    }

    void lasInvalidasVanAlFinal()
    {
        const QDateTime vieja(QDate(2020, 1, 1), QTime(0, 0));
        const QDateTime nueva(QDate(2025, 1, 1), QTime(0, 0));
        QVERIFY(ombu::masNueva(nueva, vieja));
        QVERIFY(!ombu::masNueva(vieja, nueva));
        QVERIFY(ombu::masNueva(vieja, {}));
        QVERIFY(!ombu::masNueva({}, vieja));
        const QDateTime antiquisima(QDate(1901, 1, 1), QTime(0, 0));
        QVERIFY(ombu::masNueva(antiquisima, {}));
        QVERIFY(!ombu::masNueva({}, antiquisima));
        QVERIFY(!ombu::masNueva({}, {}));
        QVERIFY(!ombu::masNueva(vieja, vieja));
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaFechas, QCoreApplication>(argc, argv);
}

#include "prueba_fechas.moc"
