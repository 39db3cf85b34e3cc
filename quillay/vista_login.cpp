#include "quillay/vista_login.h"

#include "ombu/auth_aulared.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quillay {

VistaLogin::VistaLogin(ombu::AuthAulared *auth, QWidget *parent)
    : QWidget(parent)
    , m_auth(auth)
    , m_usuario(new QLineEdit)
    , m_clave(new QLineEdit)
    , m_indicarDuracion(new QCheckBox(tr("Indicar duración estimada de la sesión")))
    , m_duracion(new QSpinBox)
    , m_entrar(new QPushButton(tr("Entrar")))
    , m_mensaje(new QLabel)
    , m_lista(new QListWidget)
    , m_empezar(new QPushButton(tr("Empezar a trabajar")))
{
    m_clave->setEchoMode(QLineEdit::Password);
    m_duracion->setRange(15, 480);
    m_duracion->setValue(120);
    m_duracion->setSuffix(tr(" min"));
    m_duracion->setEnabled(false);
    m_entrar->setDefault(true);
    m_mensaje->setWordWrap(true);
    m_mensaje->setStyleSheet(u"color: #B03030;"_s);
    m_lista->setMaximumHeight(120);
    m_lista->setAccessibleName(tr("Integrantes de la sesión"));
    m_empezar->setAutoDefault(true);
    m_empezar->setEnabled(false);

    setFocusProxy(m_usuario);

    armarPantalla();
    conectar();
}

void VistaLogin::armarPantalla()
{
    auto *titulo = new QLabel(tr("Iniciar sesión — Aulared"));
    titulo->setStyleSheet(u"font-size: 20px; font-weight: bold;"_s);

    auto *formulario = new QFormLayout;
    formulario->addRow(tr("Usuario:"), m_usuario);
    formulario->addRow(tr("Contraseña:"), m_clave);
    formulario->addRow(m_indicarDuracion);
    formulario->addRow(tr("Duración:"), m_duracion);

    auto *rotuloLista = new QLabel(tr("Integrantes de la sesión:"));
    rotuloLista->setBuddy(m_lista);

    auto *caja = new QVBoxLayout(this);
    caja->setContentsMargins(48, 32, 48, 32);
    caja->addWidget(titulo);
    caja->addLayout(formulario);
    caja->addWidget(m_entrar);
    caja->addWidget(m_mensaje);
    caja->addWidget(rotuloLista);
    caja->addWidget(m_lista);
    caja->addWidget(m_empezar);
    caja->addStretch();
}

void VistaLogin::conectar()
{
    connect(m_indicarDuracion, &QCheckBox::toggled, m_duracion, &QSpinBox::setEnabled);
    connect(m_entrar, &QPushButton::clicked, this, &VistaLogin::intentarLogin);
    connect(m_clave, &QLineEdit::returnPressed, this, &VistaLogin::intentarLogin);
    connect(m_auth, &ombu::AuthAulared::loginExitoso, this, &VistaLogin::alLoginExitoso);
    connect(m_auth, &ombu::AuthAulared::loginFallido, this, &VistaLogin::alLoginFallido);
    connect(m_empezar, &QPushButton::clicked, this,
            [this] { Q_EMIT sesionLista(m_token, m_integrantes, duracionEstimadaMin()); });
}

void VistaLogin::reiniciar()
{
    m_integrantes.clear();
    m_token.clear();
    m_usuario->clear();
    m_clave->clear();
    m_mensaje->clear();
    m_indicarDuracion->setChecked(false);
    refrescarIntegrantes();
}

void VistaLogin::intentarLogin()
{
    const QString usuario = usuarioEscrito();
    const QString clave = m_clave->text();
    if (usuario.isEmpty() || clave.isEmpty()) {
        m_mensaje->setText(tr("Completá usuario y contraseña."));
        return;
    }
    if (estaEnLaSesion(usuario)) {
        m_mensaje->setText(tr("Esa persona ya está en la sesión."));
        return;
    }
    m_entrar->setEnabled(false);
    m_mensaje->setText(tr("Verificando..."));
    m_auth->login(usuario, clave);
}

void VistaLogin::alLoginExitoso(const QString &token, const QString &id, const QString &nombre)
{
    m_entrar->setEnabled(true);
    m_mensaje->clear();
    if (m_token.isEmpty())
        m_token = token;

    const QString escrito = usuarioEscrito();
    m_integrantes.append(
        {id.isEmpty() ? escrito : id, nombre.isEmpty() ? escrito : nombre, QString()});

    m_usuario->clear();
    m_clave->clear();
    m_usuario->setFocus();
    refrescarIntegrantes();
}

void VistaLogin::alLoginFallido(const QString &motivo)
{
    m_entrar->setEnabled(true);
    m_mensaje->setText(motivo);
}

void VistaLogin::refrescarIntegrantes()
{
    m_lista->clear();
    for (const ombu::Integrante &integrante : std::as_const(m_integrantes))
        m_lista->addItem(integrante.nombre);

    const bool hayIntegrantes = !m_integrantes.isEmpty();
    m_empezar->setEnabled(hayIntegrantes);
    m_entrar->setText(hayIntegrantes ? tr("Agregar otro integrante") : tr("Entrar"));
    m_indicarDuracion->setEnabled(!hayIntegrantes);
    m_duracion->setEnabled(!hayIntegrantes && m_indicarDuracion->isChecked());
}

bool VistaLogin::estaEnLaSesion(const QString &id) const
{
    return std::any_of(m_integrantes.cbegin(), m_integrantes.cend(),
                       [&id](const ombu::Integrante &integrante) { return integrante.id == id; });
}

QString VistaLogin::usuarioEscrito() const
{
    return m_usuario->text().trimmed();
}

int VistaLogin::duracionEstimadaMin() const
{
    return m_indicarDuracion->isChecked() ? m_duracion->value() : 0;
}

} // namespace quillay
