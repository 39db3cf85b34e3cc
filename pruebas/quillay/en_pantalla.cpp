#include "pruebas/quillay/en_pantalla.h"

#include <QAbstractButton>
#include <QApplication>
#include <QListWidget>
#include <QTest>

#include <xcb/xcb.h>

namespace en_pantalla {

namespace {

bool estaActiva()
{
    return QGuiApplication::applicationState() == Qt::ApplicationActive;
}

// En la pantalla de las pruebas no hay un administrador de ventanas: el teclado se da así.
void darTeclado(xcb_window_t ventana)
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_set_input_focus(x11->connection(), XCB_INPUT_FOCUS_NONE, ventana, XCB_CURRENT_TIME);
    xcb_flush(x11->connection());
}

} // namespace

void mostrar(QWidget &ventana)
{
    ventana.show();
    if (!QTest::qWaitForWindowExposed(&ventana))
        qFatal("La ventana no se mostró");
    volver(ventana);
}

void irAOtroPrograma()
{
    darTeclado(XCB_NONE);
    if (!QTest::qWaitFor([] { return !estaActiva(); }))
        qFatal("La aplicación no soltó el teclado");
}

void volver(QWidget &ventana)
{
    darTeclado(static_cast<xcb_window_t>(ventana.winId()));
    if (!QTest::qWaitForWindowActive(&ventana) || !QTest::qWaitFor(estaActiva))
        qFatal("La ventana no recibió el teclado");
}

QAbstractButton *boton(const QObject &raiz, const QString &texto)
{
    QList<QAbstractButton *> botones = raiz.findChildren<QAbstractButton *>();
    botones.removeIf([&texto](const QAbstractButton *uno) { return uno->text() != texto; });
    if (botones.size() != 1)
        qFatal("Botones «%s»: %d", qUtf8Printable(texto), static_cast<int>(botones.size()));
    return botones.constFirst();
}

void apretar(QAbstractButton *boton)
{
    QTest::mouseClick(boton, Qt::LeftButton);
}

void dobleClic(QListWidget *lista, int fila)
{
    const QRect lugar = lista->visualItemRect(lista->item(fila));
    QTest::mouseClick(lista->viewport(), Qt::LeftButton, {}, lugar.center());
    QTest::mouseDClick(lista->viewport(), Qt::LeftButton, {}, lugar.center());
}

} // namespace en_pantalla
