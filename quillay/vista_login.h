#pragma once

#include "ombu/sesion.h"

#include <QList>
#include <QString>
#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QSpinBox;

namespace ombu {
class AuthAulared;
}

namespace quillay {

/// Pantalla para iniciar una sesión en línea: los integrantes entran uno después de otro, cada uno
/// con su contraseña, y después empiezan a trabajar juntos.
class VistaLogin : public QWidget
{
    Q_OBJECT

public:
    /// @param auth el cliente del servicio; no pasa a ser de la vista y tiene que vivir más que
    /// ella.
    VistaLogin(ombu::AuthAulared *auth, QWidget *parent);

    /// Vacía el grupo y el formulario. La duración elegida queda, pero sin tildar.
    void reiniciar();

Q_SIGNALS:
    /// El grupo está completo.
    /// @param token el del primer integrante que entró.
    /// @param duracionEstimadaMin minutos; 0 si no se indicó.
    void sesionLista(const QString &token, const QList<ombu::Integrante> &integrantes,
                     int duracionEstimadaMin);

private Q_SLOTS:
    void intentarLogin();
    void alLoginExitoso(const QString &token, const QString &id, const QString &nombre);
    void alLoginFallido(const QString &motivo);

private:
    void armarPantalla();
    void conectar();
    void refrescarIntegrantes();
    bool estaEnLaSesion(const QString &id) const;
    QString usuarioEscrito() const;
    int duracionEstimadaMin() const;

    ombu::AuthAulared *m_auth;
    QList<ombu::Integrante> m_integrantes; ///< En el orden en que entraron.
    QString m_token;                       ///< Vacío hasta que entra el primero.

    QLineEdit *m_usuario;
    QLineEdit *m_clave;
    QCheckBox *m_indicarDuracion;
    QSpinBox *m_duracion;
    QPushButton *m_entrar;
    QLabel *m_mensaje;
    QListWidget *m_lista;
    QPushButton *m_empezar;
};

} // namespace quillay
