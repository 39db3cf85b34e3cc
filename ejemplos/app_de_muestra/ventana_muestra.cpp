#include "ventana_muestra.h"

#include "ombu/recientes.h"
#include "ombu/sesion.h"
#include "trabajo.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;

namespace muestra {

namespace {

constexpr QSize kTamanoInicial(560, 320);
constexpr int kLargoDelNombre = 60;

// Los colores de la app van en la franja y en los bordes; el texto siempre es oscuro y se lee.
QString estilo(const ombu::AppInfo &app)
{
    return u"QMainWindow { background-color: #FFFFFF; }"
           "QLabel { color: #2B2B2B; font-size: 14px; }"
           "#franja { background-color: %2; border-bottom: 4px solid %1; }"
           "#titulo { font-size: 24px; font-weight: bold; }"
           "#abierto { font-size: 16px; font-weight: bold; }"
           "QLineEdit { color: #2B2B2B; background-color: #FFFFFF; font-size: 14px; padding: 7px;"
           "  border: 1px solid #8A8A8A; border-radius: 6px; }"
           "QPushButton { color: #2B2B2B; background-color: %2; font-size: 14px;"
           "  font-weight: bold; padding: 7px 22px; border: 1px solid %1; border-radius: 6px; }"
           "QPushButton:pressed { background-color: %1; }"
           "QLineEdit:focus, QPushButton:focus { padding: 6px; border: 2px solid #2B2B2B; }"
           "QPushButton:focus { padding: 6px 21px; }"_s.arg(app.color, app.colorClaro);
}

} // namespace

VentanaMuestra::VentanaMuestra(const ombu::AppInfo &app, QWidget *parent)
    : QMainWindow(parent)
    , m_app(app)
    , m_quien(new QLabel)
    , m_abierto(new QLabel(tr("Todavía no hay un proyecto abierto.")))
    , m_nombre(new QLineEdit)
    , m_mensaje(new QLabel)
{
    setWindowTitle(app.nombre);
    setStyleSheet(estilo(app));
    resize(kTamanoInicial);
    m_abierto->setObjectName(u"abierto"_s);
    m_nombre->setMaxLength(kLargoDelNombre);
    for (QLabel *rotulo : {m_quien, m_abierto, m_mensaje}) {
        rotulo->setTextFormat(Qt::PlainText);
        rotulo->setWordWrap(true);
    }

    auto *pantalla = new QWidget;
    auto *caja = new QVBoxLayout(pantalla);
    caja->setContentsMargins(0, 0, 0, 0);
    caja->addWidget(crearFranja());
    caja->addLayout(crearCuerpo());
    setCentralWidget(pantalla);

    // La sesión puede cambiar en el lanzador mientras esta ventana espera atrás.
    connect(qApp, &QApplication::applicationStateChanged, this, &VentanaMuestra::refrescarSesion);
    refrescarSesion();
}

QWidget *VentanaMuestra::crearFranja()
{
    auto *franja = new QFrame;
    franja->setObjectName(u"franja"_s);
    auto *titulo = new QLabel(m_app.nombre);
    titulo->setObjectName(u"titulo"_s);

    auto *primera = new QHBoxLayout;
    primera->addWidget(titulo, 1);
    if (const QString version = QApplication::applicationVersion(); !version.isEmpty())
        primera->addWidget(new QLabel(tr("Versión %1").arg(version)));

    auto *caja = new QVBoxLayout(franja);
    caja->setContentsMargins(32, 16, 32, 16);
    caja->setSpacing(2);
    caja->addLayout(primera);
    caja->addWidget(m_quien);
    return franja;
}

QBoxLayout *VentanaMuestra::crearCuerpo()
{
    auto *cuerpo = new QVBoxLayout;
    cuerpo->setContentsMargins(32, 20, 32, 20);
    cuerpo->setSpacing(12);
    cuerpo->addWidget(m_abierto);
    cuerpo->addLayout(crearFormulario());
    cuerpo->addWidget(m_mensaje);
    cuerpo->addStretch();
    return cuerpo;
}

QBoxLayout *VentanaMuestra::crearFormulario()
{
    auto *rotulo = new QLabel(tr("&Nombre del proyecto:"));
    rotulo->setBuddy(m_nombre);
    auto *boton = new QPushButton(tr("&Guardar"));
    boton->setAutoDefault(true);
    connect(boton, &QPushButton::clicked, this, &VentanaMuestra::guardar);
    connect(m_nombre, &QLineEdit::returnPressed, this, &VentanaMuestra::guardar);

    auto *fila = new QHBoxLayout;
    fila->addWidget(m_nombre, 1);
    fila->addWidget(boton);

    auto *formulario = new QVBoxLayout;
    formulario->setSpacing(4);
    formulario->addWidget(rotulo);
    formulario->addLayout(fila);
    return formulario;
}

void VentanaMuestra::refrescarSesion()
{
    const std::unique_ptr<ombu::Sesion> sesion(ombu::Sesion::cargar(nullptr));
    if (!sesion || sesion->integrantes().isEmpty()) {
        m_quien->setText(tr("Nadie inició sesión."));
        return;
    }
    QStringList nombres;
    for (const ombu::Integrante &integrante : sesion->integrantes())
        nombres.append(integrante.nombre);
    m_quien->setText(
        (nombres.size() > 1 ? tr("Trabajan: %1.") : tr("Trabaja: %1.")).arg(nombres.join(", "_L1)));
}

void VentanaMuestra::abrir(const QString &carpeta)
{
    const std::optional<ombu::ProyectoGuardado> proyecto = buscarTrabajo(m_app.id, carpeta);
    if (!proyecto) {
        m_mensaje->setText(
            tr("No se encontró el proyecto «%1». Podés empezar uno nuevo.").arg(carpeta));
        return;
    }
    mostrarAbierto(*proyecto);
    ombu::Recientes::registrarEnSesionActiva(proyecto->ruta, m_app.id, false);
}

void VentanaMuestra::guardar()
{
    const QString nombre = m_nombre->text().trimmed();
    if (nombre.isEmpty()) {
        m_mensaje->setText(tr("Escribí un nombre para el proyecto."));
        return;
    }
    const std::optional<ombu::ProyectoGuardado> proyecto = guardarTrabajo(m_app.id, nombre);
    if (!proyecto) {
        m_mensaje->setText(tr("No se pudo guardar «%1».").arg(nombre));
        return;
    }
    mostrarAbierto(*proyecto);
    m_mensaje->setText(tr("Se guardó «%1».").arg(proyecto->nombre));
    ombu::Recientes::registrarEnSesionActiva(proyecto->ruta, m_app.id, false);
}

void VentanaMuestra::mostrarAbierto(const ombu::ProyectoGuardado &proyecto)
{
    setWindowTitle(tr("%1 — %2").arg(proyecto.nombre, m_app.nombre));
    m_abierto->setText(tr("Proyecto abierto: %1").arg(proyecto.nombre));
    m_nombre->setText(proyecto.nombre);
    m_mensaje->clear();
}

} // namespace muestra
