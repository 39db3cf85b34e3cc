#pragma once

#include "pruebas/apoyo/programas.h"

#include <QString>
#include <QTemporaryDir>
#include <QUrl>

#include <memory>

/// Un nginx de verdad que publica una carpeta en un puerto libre de loopback, con la configuración
/// que muestra la documentación. Se apaga al destruirse.
class ServidorWeb
{
public:
    enum Protocolo { Http, Https };

    /// @param carpeta la que se publica; tiene que existir.
    /// @param protocolo con Https lleva un certificado a nombre de "localhost", firmado por una
    /// autoridad hecha para la ocasión, en la que nadie confía (ver confianza.h).
    explicit ServidorWeb(const QString &carpeta, Protocolo protocolo = Http);

    ServidorWeb(const ServidorWeb &) = delete;
    ServidorWeb &operator=(const ServidorWeb &) = delete;

    /// @param nombre con qué nombre se llega a él.
    QUrl url(const QString &ruta = {}, const QString &nombre = QStringLiteral("localhost")) const;

    /// Certificado de la autoridad que firmó el de este servidor.
    QString rutaAutoridad() const { return m_base.filePath(QStringLiteral("autoridad.crt")); }

private:
    bool encender(const QString &carpeta);

    Protocolo m_protocolo;
    quint16 m_puerto = 0;
    QTemporaryDir m_base;
    std::unique_ptr<debian::Servicio> m_nginx;
};
