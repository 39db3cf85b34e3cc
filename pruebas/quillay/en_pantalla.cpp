#include "pruebas/quillay/en_pantalla.h"

#include "pruebas/quillay/teclado.h"

#include <QAbstractButton>
#include <QApplication>
#include <QListWidget>
#include <QTest>

namespace en_pantalla {

namespace {

bool estaActiva()
{
    return QGuiApplication::applicationState() == Qt::ApplicationActive;
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
    soltarTeclado();
    if (!QTest::qWaitFor([] { return !estaActiva(); }))
        qFatal("La aplicación no soltó el teclado");
}

void volver(QWidget &ventana)
{
    darTeclado(ventana.winId());
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
