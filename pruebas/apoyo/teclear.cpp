#include "pruebas/apoyo/teclear.h"

#include <QTest>

void teclear(QWidget *campo, const QString &texto)
{
    for (const QChar letra : texto)
        QTest::sendKeyEvent(QTest::Click, campo, Qt::Key_unknown, QString(letra), Qt::NoModifier);
}
