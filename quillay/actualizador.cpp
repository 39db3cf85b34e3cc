#include "quillay/actualizador.h"

#include "ombu/apps_registro.h"
#include "ombu/archivo_json.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace quillay {

namespace {

constexpr int kEsperaMs = 30000;
constexpr auto kComponenteLauncher = "launcher"_L1;
constexpr auto kCarpetaBase = "."_L1;
constexpr auto kViejo = ".viejo"_L1;

/// Carpeta del componente relativa a la del lanzador; vacía si no se conoce.
QString carpetaDe(const QString &componente)
{
    if (componente == kComponenteLauncher)
        return kCarpetaBase;
    const ombu::AppInfo *app = ombu::appPorId(componente);
    return app ? app->carpeta : QString();
}

bool extraer(const QString &paquete, const QString &destino)
{
    const QString orden =
        u"Expand-Archive -LiteralPath '%1' -DestinationPath '%2' -Force"_s.arg(paquete, destino);
    return QProcess::execute(u"powershell.exe"_s,
                             {u"-NoProfile"_s, u"-NonInteractive"_s, u"-Command"_s, orden}) == 0;
}

// En Windows un ejecutable en uso no se puede borrar, pero sí cambiar de nombre.
bool apartar(const QString &ruta)
{
    return !QFile::exists(ruta) || QFile::remove(ruta) || QFile::rename(ruta, ruta + kViejo);
}

} // namespace

Actualizador::Actualizador(const QString &carpetaBase, const QUrl &urlManifiesto,
                           const QUrl &urlDescargas, QObject *parent)
    : QObject(parent)
    , m_carpetaBase(carpetaBase)
    , m_urlManifiesto(urlManifiesto)
    , m_urlDescargas(urlDescargas)
    , m_red(new QNetworkAccessManager(this))
{
    m_red->setTransferTimeout(kEsperaMs);
}

void Actualizador::verificar()
{
    if (!m_urlManifiesto.isValid() || m_urlManifiesto.isEmpty()) {
        Q_EMIT sinActualizaciones();
        return;
    }
    QNetworkReply *respuesta = m_red->get(QNetworkRequest(m_urlManifiesto));
    connect(respuesta, &QNetworkReply::finished, this, [this, respuesta] {
        respuesta->deleteLater();
        if (respuesta->error() == QNetworkReply::NoError)
            compararVersiones(respuesta->readAll());
        else
            Q_EMIT sinActualizaciones();
    });
}

void Actualizador::compararVersiones(const QByteArray &manifiesto)
{
    const QJsonObject publicadas = QJsonDocument::fromJson(manifiesto).object();
    const QMap<QString, QString> locales = versionesLocales();

    QList<Actualizacion> pendientes;
    for (auto local = locales.cbegin(); local != locales.cend(); ++local) {
        const QString publicada = publicadas[local.key()].toString();
        if (!publicada.isEmpty() && publicada != local.value())
            pendientes.append({local.key(), local.value(), publicada});
    }

    if (pendientes.isEmpty())
        Q_EMIT sinActualizaciones();
    else
        Q_EMIT actualizacionesDisponibles(pendientes);
}

QString Actualizador::rutaVersiones() const
{
    return m_carpetaBase + "/versiones.json"_L1;
}

QMap<QString, QString> Actualizador::versionesLocales() const
{
    QMap<QString, QString> versiones;
    const QJsonObject objeto = ombu::leerDocumentoJson(rutaVersiones()).object();
    for (auto it = objeto.begin(); it != objeto.end(); ++it)
        versiones.insert(it.key(), it.value().toString());
    return versiones;
}

void Actualizador::guardarVersionLocal(const QString &componente, const QString &version)
{
    QMap<QString, QString> versiones = versionesLocales();
    versiones.insert(componente, version);

    QJsonObject objeto;
    for (auto it = versiones.cbegin(); it != versiones.cend(); ++it)
        objeto.insert(it.key(), it.value());
    ombu::escribirDocumentoJson(rutaVersiones(), QJsonDocument(objeto));
}

void Actualizador::aplicar(const QList<Actualizacion> &actualizaciones)
{
    m_pendientes = actualizaciones;
    aplicarSiguiente();
}

void Actualizador::aplicarSiguiente()
{
    if (m_pendientes.isEmpty()) {
        Q_EMIT terminado();
        return;
    }
    const Actualizacion actualizacion = m_pendientes.takeFirst();
    QNetworkReply *respuesta = m_red->get(QNetworkRequest(urlPaquete(actualizacion)));
    connect(respuesta, &QNetworkReply::finished, this, [this, respuesta, actualizacion] {
        respuesta->deleteLater();
        completar(actualizacion, *respuesta);
    });
}

QUrl Actualizador::urlPaquete(const Actualizacion &actualizacion) const
{
    QString ruta = m_urlDescargas.path(QUrl::FullyDecoded);
    if (!ruta.endsWith(u'/'))
        ruta += u'/';
    ruta += actualizacion.componente + u'-' + actualizacion.versionNueva + ".zip"_L1;

    QUrl url = m_urlDescargas;
    url.setPath(ruta, QUrl::DecodedMode);
    return url;
}

void Actualizador::completar(const Actualizacion &actualizacion, QNetworkReply &respuesta)
{
    if (respuesta.error() != QNetworkReply::NoError) {
        Q_EMIT error(tr("No se pudo descargar %1 %2: %3")
                         .arg(actualizacion.componente, actualizacion.versionNueva,
                              respuesta.errorString()));
        aplicarSiguiente();
        return;
    }

    const QTemporaryDir temporal;
    QFile paquete(temporal.filePath(actualizacion.componente + ".zip"_L1));
    if (!paquete.open(QIODevice::WriteOnly)) {
        Q_EMIT error(tr("No se pudo guardar la descarga de %1.").arg(actualizacion.componente));
        aplicarSiguiente();
        return;
    }
    paquete.write(respuesta.readAll());
    paquete.close();

    instalar(actualizacion, paquete.fileName(), temporal.filePath(u"contenido"_s));
    aplicarSiguiente();
}

void Actualizador::instalar(const Actualizacion &actualizacion, const QString &paquete,
                            const QString &contenido)
{
    const QString &componente = actualizacion.componente;
    if (!extraer(paquete, contenido)) {
        Q_EMIT error(tr("No se pudo extraer el paquete de %1.").arg(componente));
        return;
    }
    if (!reemplazarComponente(componente, contenido)) {
        Q_EMIT error(tr("No se pudo reemplazar los archivos de %1.").arg(componente));
        return;
    }
    guardarVersionLocal(componente, actualizacion.versionNueva);
    Q_EMIT componenteActualizado(componente, actualizacion.versionNueva);
}

bool Actualizador::reemplazarComponente(const QString &componente, const QString &origen)
{
    const QString carpeta = carpetaDe(componente);
    if (carpeta.isEmpty())
        return false;

    const QDir destino(carpeta == kCarpetaBase ? m_carpetaBase : m_carpetaBase + u'/' + carpeta);
    destino.mkpath(u"."_s);

    const QDir raiz(origen);
    QDirIterator archivos(origen, QDir::Files, QDirIterator::Subdirectories);
    while (archivos.hasNext()) {
        const QString archivo = archivos.next();
        const QString relativa = raiz.relativeFilePath(archivo);
        const QString ruta = destino.filePath(relativa);
        destino.mkpath(QFileInfo(relativa).path());
        if (!apartar(ruta) || !QFile::copy(archivo, ruta))
            return false;
    }
    return true;
}

void Actualizador::limpiarRestos(const QString &carpeta)
{
    QDirIterator restos(carpeta, {u"*"_s + kViejo}, QDir::Files, QDirIterator::Subdirectories);
    while (restos.hasNext())
        QFile::remove(restos.next());
}

} // namespace quillay
