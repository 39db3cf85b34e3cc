#pragma once

#include "quillay/actualizador.h"
#include "quillay/ventana_launcher.h"

#include "pruebas/actualizacion/paquete.h"
#include "pruebas/apoyo/servidor_guionado.h"

#include <QJsonObject>
#include <QStringList>

class QNetworkReply;

/// Un lanzador instalado, con Garza y él mismo en versiones viejas, y el servidor que publica las
/// nuevas: garza pasa de la 1.4.0 a la 1.5.0 y launcher, de la 2.1.0 a la 2.2.0.
struct LanzadorConServidor
{
    LanzadorConServidor();

    static void configurar(const QJsonObject &configuracion);
    static void instalar(const QJsonObject &versiones);
    void publicar(const QJsonObject &versiones);

    /// Una dirección del servidor, tal como se escribe en la configuración.
    QString direccion(const QString &ruta) const { return servidor.url().toString() + ruta; }

    /// Un archivo de la carpeta del lanzador.
    static QString ruta(const QString &nombre);

    /// Todo lo que hay en esa carpeta, menos el ejecutable de la prueba.
    static Arbol instalado();

    ServidorGuionado servidor;
};

/// La ventana recién abierta, y cada mensaje que pasa por su barra de estado, con "|" y los
/// milisegundos que dura.
struct VentanaAbierta
{
    VentanaAbierta();

    QList<QNetworkReply *> pedidosEnCurso() const;

    quillay::VentanaLauncher ventana;
    quillay::Actualizador *actualizador; ///< El suyo; nulo si no tiene.
    QStringList mensajes;
    bool sinActualizaciones = false;
    bool termino = false;

private:
    void anotar(const QString &mensaje);
};
