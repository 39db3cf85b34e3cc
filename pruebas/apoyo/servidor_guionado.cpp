#include "pruebas/apoyo/servidor_guionado.h"

#include <QTcpSocket>
#include <QTimer>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

std::optional<ServidorGuionado::Pedido> leerPedido(const QByteArray &recibido)
{
    const qsizetype finCabeceras = recibido.indexOf("\r\n\r\n");
    if (finCabeceras < 0)
        return std::nullopt;

    const QList<QByteArray> lineas = recibido.first(finCabeceras).split('\n');
    const QList<QByteArray> primera = lineas.first().trimmed().split(' ');
    ServidorGuionado::Pedido pedido{primera.value(0), primera.value(1), {}, {}};
    for (const QByteArray &linea : lineas.sliced(1)) {
        const qsizetype dosPuntos = linea.indexOf(':');
        pedido.cabeceras.insert(linea.first(dosPuntos).toLower(),
                                linea.sliced(dosPuntos + 1).trimmed());
    }
    const qsizetype largo = pedido.cabeceras.value("content-length").toLongLong();
    pedido.cuerpo = recibido.sliced(finCabeceras + 4);
    if (pedido.cuerpo.size() < largo)
        return std::nullopt;
    return pedido;
}

} // namespace

ServidorGuionado::ServidorGuionado()
{
    if (!m_servidor.listen(QHostAddress::LocalHost))
        qFatal("El servidor de pruebas no pudo escuchar");
    connect(&m_servidor, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *conexion = m_servidor.nextPendingConnection()) {
            connect(conexion, &QTcpSocket::readyRead, this,
                    [this, conexion] { atender(conexion); });
            connect(conexion, &QTcpSocket::disconnected, this, [this, conexion] {
                m_recibido.remove(conexion);
                conexion->deleteLater();
            });
        }
    });
}

QUrl ServidorGuionado::url(const QString &ruta) const
{
    return QUrl(u"http://127.0.0.1:%1%2"_s.arg(m_servidor.serverPort()).arg(ruta));
}

void ServidorGuionado::contestar(const QByteArray &ruta, const Respuesta &respuesta)
{
    m_guion.insert(ruta, respuesta);
}

void ServidorGuionado::atender(QTcpSocket *conexion)
{
    QByteArray &recibido = m_recibido[conexion];
    recibido += conexion->readAll();
    const std::optional<Pedido> pedido = leerPedido(recibido);
    if (!pedido)
        return;
    recibido.clear();
    procesar(conexion, *pedido);
}

void ServidorGuionado::procesar(QTcpSocket *conexion, const Pedido &pedido)
{
    m_pedidos.append(pedido);
    Q_EMIT pedidoRecibido();

    const QByteArray ruta = pedido.ruta.split('?').first();
    const Respuesta respuesta = m_guion.value(ruta, Respuesta{.estado = 404});
    if (respuesta.modo != Respuesta::Nunca)
        QTimer::singleShot(respuesta.demora, conexion, [=] { enviar(conexion, respuesta); });
}

void ServidorGuionado::enviar(QTcpSocket *conexion, const Respuesta &respuesta)
{
    if (respuesta.modo == Respuesta::Basura) {
        conexion->write("\x00\x01 esto no es HTTP \xff\r\n\r\n");
        conexion->disconnectFromHost();
        return;
    }

    QByteArray cabecera = "HTTP/1.1 " + QByteArray::number(respuesta.estado) + " Guion\r\n";
    cabecera += "Content-Length: " + QByteArray::number(respuesta.cuerpo.size()) + "\r\n";
    for (auto it = respuesta.cabeceras.cbegin(); it != respuesta.cabeceras.cend(); ++it)
        cabecera += it.key() + ": " + it.value() + "\r\n";
    conexion->write(cabecera + "\r\n");

    const bool entera = respuesta.modo == Respuesta::Completa;
    conexion->write(entera ? respuesta.cuerpo
                           : respuesta.cuerpo.first(respuesta.cuerpo.size() / 2));
    if (respuesta.modo == Respuesta::Cortada)
        conexion->disconnectFromHost();
}
