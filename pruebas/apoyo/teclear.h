#pragma once

class QString;
class QWidget;

/// Escribe `texto` en `campo`, tecla por tecla. QTest::keyClicks() solo conoce las de ASCII.
void teclear(QWidget *campo, const QString &texto);
