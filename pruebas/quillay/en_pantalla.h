#pragma once

#include <QString>

class QAbstractButton;
class QListWidget;
class QObject;
class QWidget;

/// Lo que hace una persona frente a una ventana de verdad.
namespace en_pantalla {

/// Muestra `ventana` y espera a que tenga el teclado.
void mostrar(QWidget &ventana);

/// El teclado pasa a otro programa; vuelve cuando esta aplicación ya no está activa.
void irAOtroPrograma();

/// Vuelve de otro programa a `ventana`.
void volver(QWidget &ventana);

/// El botón visible u oculto que dice `texto` bajo `raiz`. Tiene que haber exactamente uno.
QAbstractButton *boton(const QObject &raiz, const QString &texto);

void apretar(QAbstractButton *boton);

/// Hace doble clic en una entrada de la lista a la vista.
void dobleClic(QListWidget *lista, int fila);

} // namespace en_pantalla
