#pragma once

#include <QToolButton>

namespace ombu {
struct AppInfo;
}

namespace quillay {

/// El botón grande de una app: ícono arriba, nombre abajo, en los colores de la app. Con el teclado
/// encima dibuja un borde en el color de su texto.
class BotonDeApp : public QToolButton
{
    Q_OBJECT

public:
    /// @param instalada si la app está en esta computadora; si no, el botón queda deshabilitado.
    BotonDeApp(const ombu::AppInfo &app, const QIcon &icono, bool instalada, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *evento) override;

private:
    QColor m_color;
};

} // namespace quillay
