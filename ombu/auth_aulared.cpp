#include "ombu/auth_aulared.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

using namespace Qt::StringLiterals;

namespace ombu {

namespace {

constexpr int kEsperaPingMs = 3000;
constexpr int kEsperaLoginMs = 8000;
constexpr int kHttpNoAutorizado = 401;

} // namespace

AuthAulared::AuthAulared(const QUrl &base, QObject *parent)
    : QObject(parent)
    , m_base(base)
    , m_red(new QNetworkAccessManager(this))
{
    m_red->setTransferTimeout(kEsperaLoginMs);
}

void AuthAulared::verificarConexion()
{
    if (!m_base.isValid() || m_base.isEmpty()) {
        Q_EMIT disponible(false);
        return;
    }

    QNetworkRequest pedido(direccion(u"/api/ping"_s));
    pedido.setTransferTimeout(kEsperaPingMs);
    QNetworkReply *respuesta = m_red->get(pedido);
    connect(respuesta, &QNetworkReply::finished, this, [this, respuesta] {
        Q_EMIT disponible(respuesta->error() == QNetworkReply::NoError);
        respuesta->deleteLater();
    });
}

void AuthAulared::login(const QString &usuario, const QString &clave)
{
    QNetworkRequest pedido(direccion(u"/api/sesiones"_s));
    pedido.setHeader(QNetworkRequest::ContentTypeHeader, u"application/json"_s);
    const QJsonObject cuerpo{{u"usuario"_s, usuario}, {u"clave"_s, clave}};

    QNetworkReply *respuesta =
        m_red->post(pedido, QJsonDocument(cuerpo).toJson(QJsonDocument::Compact));
    connect(respuesta, &QNetworkReply::finished, this, [this, respuesta] {
        respuesta->deleteLater();
        procesarLogin(*respuesta);
    });
}

QUrl AuthAulared::direccion(const QString &ruta) const
{
    // Ponerle una ruta a una dirección inválida la daría por buena, en otro puerto.
    if (!m_base.isValid())
        return {};
    QUrl url = m_base;
    url.setPath(url.path(QUrl::FullyDecoded) + ruta, QUrl::DecodedMode);
    return url;
}

void AuthAulared::procesarLogin(QNetworkReply &respuesta)
{
    if (respuesta.error() != QNetworkReply::NoError) {
        const int estado = respuesta.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        Q_EMIT loginFallido(estado == kHttpNoAutorizado ? tr("Usuario o contraseña incorrectos.")
                                                        : tr("No se pudo conectar con Aulared."));
        return;
    }

    const QJsonObject datos = QJsonDocument::fromJson(respuesta.readAll()).object();
    const QString token = datos["token"_L1].toString();
    if (token.isEmpty()) {
        Q_EMIT loginFallido(tr("Respuesta inválida del servidor."));
        return;
    }
    Q_EMIT loginExitoso(token, datos["id"_L1].toString(), datos["nombre"_L1].toString());
}

} // namespace ombu
