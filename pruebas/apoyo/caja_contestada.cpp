#include "pruebas/apoyo/caja_contestada.h"

#include "pruebas/apoyo/teclear.h"

#include <QApplication>
#include <QEvent>
#include <QInputDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

CajaContestada::CajaContestada(Respuesta respuesta, const QString &texto)
    : m_respuesta(respuesta)
    , m_aEscribir(texto)
{
    qApp->installEventFilter(this);
}

bool CajaContestada::eventFilter(QObject *objeto, QEvent *evento)
{
    auto *dialogo = qobject_cast<QDialog *>(objeto);
    if (dialogo && evento->type() == QEvent::Show && !m_seMostro) {
        m_seMostro = true;
        QMetaObject::invokeMethod(
            this, [this, dialogo] { contestar(dialogo); }, Qt::QueuedConnection);
    }
    return false;
}

void CajaContestada::contestar(QDialog *dialogo)
{
    if (m_antes)
        m_antes();
    m_titulo = dialogo->windowTitle();
    if (const auto *caja = qobject_cast<QMessageBox *>(dialogo))
        anotar(*caja);
    if (const auto *entrada = qobject_cast<QInputDialog *>(dialogo)) {
        m_texto = entrada->labelText();
        teclear(dialogo->findChild<QLineEdit *>(), m_aEscribir);
    }
    QTest::keyClick(dialogo, m_respuesta == Aceptar ? Qt::Key_Return : Qt::Key_Escape);
}

void CajaContestada::anotar(const QMessageBox &caja)
{
    m_texto = caja.text();
    m_icono = caja.icon();
    const QList<QAbstractButton *> botones = caja.buttons();
    for (const QAbstractButton *boton : botones)
        m_botones.append(boton->text());
    if (caja.defaultButton())
        m_botonPredeterminado = caja.defaultButton()->text();
}
