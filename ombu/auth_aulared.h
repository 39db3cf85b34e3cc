#pragma once

#include <QObject>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;

namespace ombu {

/// Cliente del servicio de autenticación Aulared.
///
/// Cada pregunta es un pedido HTTP y termina en exactamente una señal. No guarda nada entre pedidos
/// ni los pone en fila: dos login() seguidos son dos pedidos.
class AuthAulared : public QObject
{
    Q_OBJECT

public:
    /// @param base dirección del servicio; a su ruta se le agrega la de cada pedido.
    AuthAulared(const QUrl &base, QObject *parent);

    /// Pregunta si el servicio responde (3 s como máximo); contesta con disponible(). Si la
    /// dirección no sirve contesta dentro de la misma llamada, así que hay que conectar antes.
    void verificarConexion();

    /// Pide una sesión para una persona (8 s como máximo); contesta con loginExitoso() o
    /// loginFallido(). Los dos textos se envían tal como están.
    void login(const QString &usuario, const QString &clave);

Q_SIGNALS:
    void disponible(bool hayConexion);

    /// @param id identificador de la persona en el servicio; puede faltar, igual que `nombre`.
    void loginExitoso(const QString &token, const QString &id, const QString &nombre);

    /// @param motivo una oración lista para mostrar.
    void loginFallido(const QString &motivo);

private:
    QUrl direccion(const QString &ruta) const;
    void procesarLogin(QNetworkReply &respuesta);

    QUrl m_base;
    QNetworkAccessManager *m_red;
};

} // namespace ombu
