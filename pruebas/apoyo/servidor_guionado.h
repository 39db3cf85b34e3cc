#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QTcpServer>
#include <QUrl>

#include <chrono>

class QTcpSocket;

/// Un servidor HTTP de loopback que contesta lo que dice su guion y recuerda lo que le pidieron.
/// Sirve para lo que un servidor de verdad no hace: colgarse, cortar, mentir.
class ServidorGuionado : public QObject
{
    Q_OBJECT

public:
    struct Pedido
    {
        QByteArray metodo;
        QByteArray ruta;                         ///< Con su consulta, tal como llegó.
        QHash<QByteArray, QByteArray> cabeceras; ///< Nombres en minúsculas.
        QByteArray cuerpo;
    };

    struct Respuesta
    {
        int estado = 200;
        QByteArray cuerpo = {};
        std::chrono::milliseconds demora{0};
        enum Modo {
            Completa,
            Nunca,     ///< Acepta el pedido y calla.
            Cortada,   ///< Promete el cuerpo entero, manda la mitad y cierra.
            SinCerrar, ///< Manda la mitad y deja la conexión abierta.
            Basura     ///< Contesta algo que no es HTTP.
        } modo = Completa;
        QHash<QByteArray, QByteArray> cabeceras = {};
    };

    ServidorGuionado();

    QUrl url(const QString &ruta = {}) const;

    /// Lo que se contesta a los pedidos de `ruta` (sin consulta); lo demás recibe 404.
    void contestar(const QByteArray &ruta, const Respuesta &respuesta);

    const QList<Pedido> &pedidos() const { return m_pedidos; }
    void olvidarPedidos() { m_pedidos.clear(); }

Q_SIGNALS:
    void pedidoRecibido();

private:
    void atender(QTcpSocket *conexion);
    void procesar(QTcpSocket *conexion, const Pedido &pedido);
    static void enviar(QTcpSocket *conexion, const Respuesta &respuesta);

    QHash<QByteArray, Respuesta> m_guion;
    QHash<QTcpSocket *, QByteArray> m_recibido;
    QList<Pedido> m_pedidos;
    QTcpServer m_servidor; ///< El último: al destruirse cierra conexiones, que usan lo demás.
};
