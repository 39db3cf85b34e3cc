#pragma once

#include "ombu/perfiles_locales.h"
#include "ombu/sesion.h"

#include <QList>
#include <QMainWindow>

class QStackedWidget;
class QTimer;

namespace ombu {
class AuthAulared;
}

namespace quillay {

class Actualizador;
struct Actualizacion;
class VistaApps;
class VistaLogin;
class VistaPerfiles;

/// La única ventana del lanzador: decide qué pantalla se ve, empieza y termina sesiones y vigila
/// que no venzan.
class VentanaLauncher : public QMainWindow
{
    Q_OBJECT

public:
    explicit VentanaLauncher(QWidget *parent = nullptr);

    /// Retoma la sesión guardada si todavía vale. Si no, ofrece los perfiles de la computadora
    /// mientras averigua si hay conexión, y el inicio de sesión en línea en cuanto la haya.
    void decidirPantallaInicial();

    void iniciarSesionAulared(const QString &token, const QList<ombu::Integrante> &integrantes,
                              int duracionEstimadaMin);
    void iniciarSesionStandalone(const ombu::Perfil &perfil);

    /// Trabaja con `sesion`, que pasa a ser la de la ventana.
    void entrarConSesion(ombu::Sesion *sesion);

    /// Termina la sesión, también en el disco, y vuelve a elegir pantalla.
    void cerrarSesion();

    /// Si la sesión guardada venció, lo dice y vuelve a elegir pantalla.
    void chequearExpiracion();

    /// Busca versiones nuevas y, si hay, las ofrece. En un equipo de Aulared no hace nada.
    void chequearActualizaciones();

    /// El texto de `clave` en el `config.json` que está junto al ejecutable; vacío si no hay.
    QString leerConfig(const QString &clave) const;

    /// Anota como actividad de la sesión los clics, las teclas, la rueda y los movimientos del
    /// mouse de toda la aplicación. No consume ningún evento.
    bool eventFilter(QObject *objeto, QEvent *evento) override;

private:
    void crearPantallas();
    void crearTemporizador();
    void elegirPorConexion(bool hayConexion);
    void mostrarPerfiles();
    void mostrarPantalla(QWidget *pantalla);
    void empezar(ombu::ModoSesion modo, const QString &token, const QString &grupo,
                 const QList<ombu::Integrante> &integrantes, int duracionEstimadaMin);
    void soltarSesion();
    void ofrecerActualizaciones(const QList<Actualizacion> &pendientes);

    QString m_dirApp;
    ombu::Sesion *m_sesion = nullptr;
    ombu::AuthAulared *m_auth;
    Actualizador *m_actualizador = nullptr; ///< Nulo en un equipo de Aulared.
    QStackedWidget *m_pila;
    VistaLogin *m_vistaLogin;
    VistaPerfiles *m_vistaPerfiles;
    VistaApps *m_vistaApps;
    QTimer *m_temporizador;
};

} // namespace quillay
