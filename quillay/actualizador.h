#pragma once

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;

namespace quillay {

/// Una actualización pendiente de un componente.
struct Actualizacion
{
    QString componente;   ///< "launcher" o el `id` de una app del catálogo.
    QString versionLocal; ///< La instalada; vacía si el registro local no la decía bien.
    QString versionNueva; ///< La publicada.
};

/// Mantiene al día los componentes instalados: compara sus versiones con las publicadas y baja,
/// extrae y reemplaza los que cambiaron, de a uno.
///
/// Una versión es un texto cualquiera. Se ofrece toda versión publicada distinta de la instalada,
/// sin mirar cuál es mayor: así se puede volver atrás publicando la anterior.
class Actualizador : public QObject
{
    Q_OBJECT

public:
    /// @param carpetaBase carpeta del lanzador; adentro están `versiones.json` y las apps.
    /// @param urlManifiesto de dónde se bajan las versiones publicadas.
    /// @param urlDescargas carpeta de los paquetes, "componente-version.zip".
    Actualizador(const QString &carpetaBase, const QUrl &urlManifiesto, const QUrl &urlDescargas,
                 QObject *parent);

    /// Busca versiones nuevas; contesta con actualizacionesDisponibles() o sinActualizaciones().
    /// Sin una dirección utilizable contesta dentro de la misma llamada.
    void verificar();

    /// Las versiones instaladas, por componente; vacío si el registro falta o no se entiende.
    QMap<QString, QString> versionesLocales() const;

    /// Anota la versión instalada de un componente. Si no se puede escribir queda la anterior.
    void guardarVersionLocal(const QString &componente, const QString &version);

    /// Aplica estas actualizaciones en su orden, en lugar de las que estuvieran en cola. Por cada
    /// una emite componenteActualizado() o error(), y al final terminado().
    void aplicar(const QList<Actualizacion> &actualizaciones);

    /// Aplica la primera de la cola o, si no quedan, emite terminado().
    void aplicarSiguiente();

    /// Copia los archivos de `origen` sobre los del componente; false al primero que no se puede.
    /// Un archivo en uso queda a un lado con el agregado ".viejo". No hay vuelta atrás.
    bool reemplazarComponente(const QString &componente, const QString &origen);

    /// Borra los ".viejo" que haya bajo `carpeta`, salvo los que sigan en uso.
    static void limpiarRestos(const QString &carpeta);

Q_SIGNALS:
    void actualizacionesDisponibles( // clazy:exclude=fully-qualified-moc-types
        const QList<Actualizacion> &pendientes);

    /// No hay nada que ofrecer, o no se pudo averiguar.
    void sinActualizaciones();

    void componenteActualizado(const QString &componente, const QString &version);

    /// @param mensaje una oración lista para mostrar.
    void error(const QString &mensaje);

    void terminado();

private:
    void compararVersiones(const QByteArray &manifiesto);
    QUrl urlPaquete(const Actualizacion &actualizacion) const;
    void completar(const Actualizacion &actualizacion, QNetworkReply &respuesta);
    void instalar(const Actualizacion &actualizacion, const QString &paquete,
                  const QString &contenido);
    QString rutaVersiones() const;

    QString m_carpetaBase;
    QUrl m_urlManifiesto;
    QUrl m_urlDescargas;
    QNetworkAccessManager *m_red;
    QList<Actualizacion> m_pendientes;
};

} // namespace quillay
