#include "quillay/boton_de_app.h"

#include "ombu/apps_registro.h"
#include "quillay/color_legible.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace quillay {

namespace {

constexpr QSize kTamano(150, 132);
constexpr QSize kTamanoIcono(64, 64);
constexpr int kRadio = 12;

QString estilo(const ombu::AppInfo &app)
{
    return u"QToolButton {  background-color: #FFFFFF; color: %1;  font-size: 14px; "
           "font-weight: bold;  border: 1px solid #D8D8D8; border-radius: 12px;  "
           "padding-top: 12px; padding-bottom: 10px; }"
           "QToolButton:hover {  background-color: %2; border-color: %3; }"
           "QToolButton:pressed { background-color: #ECECEC; }"
           "QToolButton:disabled {  background-color: #F2F2F2; color: #9A9A9A;  "
           "border-color: #E2E2E2; }"_s.arg(colorLegible(app.color), app.colorClaro, app.color);
}

} // namespace

BotonDeApp::BotonDeApp(const ombu::AppInfo &app, const QIcon &icono, bool instalada,
                       QWidget *parent)
    : QToolButton(parent)
    , m_color(QColor::fromString(colorLegible(app.color)))
{
    setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    setIcon(icono);
    setIconSize(kTamanoIcono);
    setText(app.nombre);
    setFixedSize(kTamano);
    setCursor(Qt::PointingHandCursor);
    setStyleSheet(estilo(app));
    setEnabled(instalada);
}

void BotonDeApp::paintEvent(QPaintEvent *evento)
{
    QToolButton::paintEvent(evento);
    if (!hasFocus())
        return;

    QPainter pintor(this);
    pintor.setRenderHint(QPainter::Antialiasing);
    pintor.setPen(QPen(m_color, 2));
    pintor.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kRadio - 1, kRadio - 1);
}

} // namespace quillay
