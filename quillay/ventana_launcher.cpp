#include "quillay/ventana_launcher.h"

#include "ombu/archivo_json.h"
#include "ombu/auth_aulared.h"
#include "quillay/actualizador.h"
#include "quillay/vista_apps.h"
#include "quillay/vista_login.h"
#include "quillay/vista_perfiles.h"

#include <QApplication>
#include <QEvent>
#include <QJsonObject>
#include <QMessageBox>
#include <QPushButton>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace quillay {

namespace {

constexpr QSize kTamanoInicial(920, 580);
constexpr int kEntreChequeosMs = 60000;
constexpr int kAvisoActualizadoMs = 8000;
constexpr int kAvisoErrorMs = 10000;

QString nombreVisible(const QString &componente)
{
    if (componente == "launcher"_L1)
        return VentanaLauncher::tr("Quillay");
    return componente.left(1).toUpper() + componente.mid(1);
}

bool esActividad(QEvent::Type tipo)
{
    return tipo == QEvent::MouseButtonPress || tipo == QEvent::MouseMove ||
           tipo == QEvent::KeyPress || tipo == QEvent::Wheel;
}

} // namespace

VentanaLauncher::VentanaLauncher(QWidget *parent)
    : QMainWindow(parent)
    , m_dirApp(QApplication::applicationDirPath())
    , m_auth(new ombu::AuthAulared(QUrl(leerConfig(u"aulared_url"_s)), this))
    , m_pila(new QStackedWidget(this))
    , m_vistaLogin(new VistaLogin(m_auth, nullptr))
    , m_vistaPerfiles(new VistaPerfiles(nullptr))
    , m_vistaApps(new VistaApps(m_dirApp, nullptr))
    , m_temporizador(new QTimer(this))
{
    setWindowTitle(tr("Quillay"));
    resize(kTamanoInicial);
    crearPantallas();
    crearTemporizador();
    qApp->installEventFilter(this);
    Actualizador::limpiarRestos(m_dirApp);
    decidirPantallaInicial();
    chequearActualizaciones();
}

void VentanaLauncher::crearPantallas()
{
    m_pila->addWidget(m_vistaLogin);
    m_pila->addWidget(m_vistaPerfiles);
    m_pila->addWidget(m_vistaApps);
    setCentralWidget(m_pila);

    connect(m_vistaLogin, &VistaLogin::sesionLista, this, &VentanaLauncher::iniciarSesionAulared);
    connect(m_vistaPerfiles, &VistaPerfiles::perfilElegido, this,
            &VentanaLauncher::iniciarSesionStandalone);
    connect(m_vistaApps, &VistaApps::cerrarSesionPedido, this, &VentanaLauncher::cerrarSesion);
}

void VentanaLauncher::crearTemporizador()
{
    m_temporizador->setInterval(kEntreChequeosMs);
    m_temporizador->setTimerType(Qt::PreciseTimer);
    connect(m_temporizador, &QTimer::timeout, this, &VentanaLauncher::chequearExpiracion);
}

void VentanaLauncher::decidirPantallaInicial()
{
    if (ombu::Sesion *guardada = ombu::Sesion::cargar(this)) {
        entrarConSesion(guardada);
        return;
    }
    connect(m_auth, &ombu::AuthAulared::disponible, this, &VentanaLauncher::elegirPorConexion);
    mostrarPerfiles();
    m_auth->verificarConexion();
}

void VentanaLauncher::elegirPorConexion(bool hayConexion)
{
    if (m_sesion)
        return;
    if (!hayConexion) {
        mostrarPerfiles();
        return;
    }
    m_vistaLogin->reiniciar();
    mostrarPantalla(m_vistaLogin);
}

void VentanaLauncher::mostrarPerfiles()
{
    m_vistaPerfiles->refrescar();
    mostrarPantalla(m_vistaPerfiles);
}

// El teclado va a la pantalla que llega; si ya estaba a la vista queda donde lo tenían.
void VentanaLauncher::mostrarPantalla(QWidget *pantalla)
{
    if (pantalla == m_pila->currentWidget())
        return;
    m_pila->setCurrentWidget(pantalla);
    pantalla->setFocus();
}

void VentanaLauncher::iniciarSesionAulared(const QString &token,
                                           const QList<ombu::Integrante> &integrantes,
                                           int duracionEstimadaMin)
{
    const QString &primero = integrantes.constFirst().nombre;
    const QString grupo = integrantes.size() > 1 ? tr("Grupo de %1").arg(primero) : primero;
    empezar(ombu::ModoSesion::Aulared, token, grupo, integrantes, duracionEstimadaMin);
}

void VentanaLauncher::iniciarSesionStandalone(const ombu::Perfil &perfil)
{
    const ombu::Integrante integrante{perfil.id, perfil.nombre, perfil.color};
    empezar(ombu::ModoSesion::Standalone, {}, perfil.nombre, {integrante}, 0);
}

void VentanaLauncher::empezar(ombu::ModoSesion modo, const QString &token, const QString &grupo,
                              const QList<ombu::Integrante> &integrantes, int duracionEstimadaMin)
{
    ombu::Sesion *nueva =
        ombu::Sesion::iniciar(modo, token, grupo, integrantes, duracionEstimadaMin, this);
    if (nueva)
        entrarConSesion(nueva);
    else
        QMessageBox::warning(this, tr("Quillay"), tr("No se pudo crear el archivo de sesión."));
}

void VentanaLauncher::entrarConSesion(ombu::Sesion *sesion)
{
    m_sesion = sesion;
    m_vistaApps->mostrarSesion(sesion);
    mostrarPantalla(m_vistaApps);
    m_vistaApps->enfocarInicio();
    m_temporizador->start();
}

void VentanaLauncher::cerrarSesion()
{
    m_temporizador->stop();
    if (m_sesion) {
        ombu::Sesion::cerrar();
        soltarSesion();
    }
    decidirPantallaInicial();
}

void VentanaLauncher::chequearExpiracion()
{
    if (!m_sesion || m_sesion->esValida())
        return;
    m_temporizador->stop();
    soltarSesion();
    QMessageBox::information(this, tr("Quillay"), tr("La sesión terminó. Volvé a iniciar sesión."));
    decidirPantallaInicial();
}

// La vista la olvida ya mismo: hasta que se destruya, un refresco todavía podría alcanzarla.
void VentanaLauncher::soltarSesion()
{
    m_vistaApps->olvidarSesion();
    m_sesion->deleteLater();
    m_sesion = nullptr;
}

void VentanaLauncher::chequearActualizaciones()
{
    if (ombu::Sesion::equipoDeAulared())
        return;

    m_actualizador = new Actualizador(m_dirApp, QUrl(leerConfig(u"manifiesto_url"_s)),
                                      QUrl(leerConfig(u"descargas_base"_s)), this);
    connect(m_actualizador, &Actualizador::actualizacionesDisponibles, this,
            &VentanaLauncher::ofrecerActualizaciones);
    connect(m_actualizador, &Actualizador::componenteActualizado, this,
            [this](const QString &componente, const QString &version) {
                statusBar()->showMessage(tr("%1 actualizado a %2").arg(componente, version),
                                         kAvisoActualizadoMs);
            });
    connect(m_actualizador, &Actualizador::error, this,
            [this](const QString &mensaje) { statusBar()->showMessage(mensaje, kAvisoErrorMs); });
    m_actualizador->verificar();
}

void VentanaLauncher::ofrecerActualizaciones(const QList<Actualizacion> &pendientes)
{
    QStringList lineas;
    for (const Actualizacion &pendiente : pendientes) {
        lineas.append(tr("%1: de la %2 a la %3")
                          .arg(nombreVisible(pendiente.componente), pendiente.versionLocal,
                               pendiente.versionNueva));
    }

    QMessageBox caja(this);
    caja.setIcon(QMessageBox::Information);
    caja.setWindowTitle(tr("Hay una versión nueva de Quillay"));
    caja.setTextFormat(Qt::PlainText);
    caja.setText(tr("Hay versiones nuevas para bajar:\n\n%1\n\n"
                    "Se bajan solo las partes que cambiaron. Si ahora no es buen momento, "
                    "te lo volvemos a ofrecer la próxima vez que abras Quillay.")
                     .arg(lineas.join(u'\n')));
    QPushButton *actualizar = caja.addButton(tr("Actualizar ahora"), QMessageBox::AcceptRole);
    caja.addButton(tr("Más tarde"), QMessageBox::RejectRole);
    caja.setDefaultButton(actualizar);
    caja.exec();
    if (caja.clickedButton() == actualizar)
        m_actualizador->aplicar(pendientes);
}

QString VentanaLauncher::leerConfig(const QString &clave) const
{
    return ombu::leerDocumentoJson(m_dirApp + "/config.json"_L1).object()[clave].toString();
}

bool VentanaLauncher::eventFilter(QObject *objeto, QEvent *evento)
{
    if (m_sesion && esActividad(evento->type()))
        m_sesion->registrarActividad();
    return QMainWindow::eventFilter(objeto, evento);
}

} // namespace quillay
