#pragma once

#include <QString>
#include <QTest>

/// Agrega a la prueba en curso la columna "nombre" y una fila por cada nombre que una pantalla
/// tiene que mostrar tal cual, aunque a un programa descuidado le diga otra cosa.
inline void filasDeNombresHostiles()
{
    constexpr int kLargo = 10'000;
    QTest::addColumn<QString>("nombre");
    QTest::newRow("con marcas de reemplazo") << QStringLiteral("Ana %1 %2 %n %%");
    QTest::newRow("con forma de HTML") << QStringLiteral("<b>Ana</b> & <img src=\"x\">");
    QTest::newRow("de derecha a izquierda") << QStringLiteral("\u202Eليلى\u202C שירה");
    QTest::newRow("con renglones") << QStringLiteral("Ana\nBeto\r\n\tCaro");
    QTest::newRow("con dibujos") << QStringLiteral("Añá 🦜👩‍👧");
    QTest::newRow("larguísimo") << QString(kLargo, u'W');
}
