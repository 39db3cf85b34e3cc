#include "quillay/vista_perfiles.h"

#include <QIcon>
#include <QInputDialog>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quillay {

namespace {

constexpr QSize kTamanoIcono(24, 24);
constexpr QRect kCirculo(2, 2, 20, 20);

QIcon punto(const QString &color)
{
    QPixmap imagen(kTamanoIcono);
    imagen.fill(Qt::transparent);
    QPainter pintor(&imagen);
    pintor.setRenderHint(QPainter::Antialiasing);
    pintor.setPen(Qt::NoPen);
    pintor.setBrush(QColor::fromString(color));
    pintor.drawEllipse(kCirculo);
    return imagen;
}

} // namespace

VistaPerfiles::VistaPerfiles(QWidget *parent)
    : QWidget(parent)
    , m_lista(new QListWidget)
{
    auto *titulo = new QLabel(tr("¿Quién va a trabajar?"));
    titulo->setStyleSheet(u"font-size: 20px; font-weight: bold;"_s);
    auto *aviso = new QLabel(tr("Sin conexión a Aulared — perfiles de esta computadora."));
    aviso->setStyleSheet(u"color: #666;"_s);
    m_lista->setIconSize(kTamanoIcono);
    m_lista->setAccessibleName(tr("Perfiles de esta computadora"));
    setFocusProxy(m_lista);
    auto *crear = new QPushButton(tr("Crear nuevo perfil"));
    crear->setAutoDefault(true);

    auto *caja = new QVBoxLayout(this);
    caja->setContentsMargins(48, 32, 48, 32);
    caja->addWidget(titulo);
    caja->addWidget(aviso);
    caja->addWidget(m_lista, 1);
    caja->addWidget(crear);

    connect(m_lista, &QListWidget::itemActivated, this,
            [this] { elegirFila(m_lista->currentRow()); });
    connect(crear, &QPushButton::clicked, this, &VistaPerfiles::crearPerfil);
}

void VistaPerfiles::refrescar()
{
    m_perfiles = ombu::PerfilesLocales::listar();
    m_lista->clear();
    for (const ombu::Perfil &perfil : std::as_const(m_perfiles))
        m_lista->addItem(new QListWidgetItem(punto(perfil.color), perfil.nombre));
}

void VistaPerfiles::crearPerfil()
{
    const QString nombre = QInputDialog::getText(this, tr("Nuevo perfil"), tr("Nombre:"));
    if (nombre.trimmed().isEmpty())
        return;

    const ombu::Perfil perfil = ombu::PerfilesLocales::crear(nombre);
    refrescar();
    Q_EMIT perfilElegido(perfil);
}

void VistaPerfiles::elegirFila(int fila)
{
    if (fila >= 0 && fila < m_perfiles.size())
        Q_EMIT perfilElegido(m_perfiles.at(fila));
}

} // namespace quillay
