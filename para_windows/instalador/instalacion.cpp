#include "para_windows/instalador/instalacion.h"

#include "ombu/archivo_json.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonObject>
#include <QTextStream>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace instalador {

namespace {

constexpr auto kViejo = ".viejo"_L1;
constexpr auto kComponenteLauncher = "launcher"_L1;
constexpr auto kSi = "si"_L1;

const QStringList &clavesDeConfiguracion()
{
    static const QStringList claves{u"aulared_url"_s, u"manifiesto_url"_s, u"descargas_base"_s};
    return claves;
}

bool anotar(Pedido &pedido, const QString &clave, const QString &valor)
{
    if (clave == "carpeta"_L1)
        pedido.carpeta = valor;
    else if (clave == "nuevos"_L1)
        pedido.nuevos = valor;
    else if (clave == "version"_L1)
        pedido.version = valor;
    else if (clave == "compartida"_L1)
        pedido.compartida = valor == kSi;
    else if (clave == "equipo"_L1)
        pedido.equipo = valor == kSi;
    else if (clavesDeConfiguracion().contains(clave))
        pedido.configuracion.insert(clave, valor);
    else
        return false;
    return true;
}

/// Un archivo ya movido a su lugar, y cómo volver atrás.
struct Movido
{
    QString nuevo;  ///< De dónde vino.
    QString ruta;   ///< Dónde está.
    QString previo; ///< Adónde fue a parar el anterior; vacío si no había.
};

/// Un nombre libre para apartar `ruta`: puede haber un ".viejo" que todavía está en uso.
QString nombreApartado(const QString &ruta)
{
    QString apartado = ruta + kViejo;
    for (int n = 2; QFile::exists(apartado) && !QFile::remove(apartado); ++n)
        apartado = ruta + u'.' + QString::number(n) + kViejo;
    return apartado;
}

std::optional<Movido> mover(const QString &nuevo, const QString &ruta)
{
    Movido movido{nuevo, ruta, {}};
    if (QFile::exists(ruta)) {
        movido.previo = nombreApartado(ruta);
        if (!QFile::rename(ruta, movido.previo))
            return std::nullopt;
    }
    if (QFile::rename(nuevo, ruta))
        return movido;
    if (!movido.previo.isEmpty())
        QFile::rename(movido.previo, ruta);
    return std::nullopt;
}

void volverAtras(const QList<Movido> &movidos)
{
    std::for_each(movidos.crbegin(), movidos.crend(), [](const Movido &movido) {
        QFile::rename(movido.ruta, movido.nuevo);
        if (!movido.previo.isEmpty())
            QFile::rename(movido.previo, movido.ruta);
    });
}

} // namespace

std::optional<Pedido> leerPedido(const QString &ruta)
{
    QFile archivo(ruta);
    if (!archivo.open(QIODevice::ReadOnly))
        return std::nullopt;

    QTextStream texto(&archivo);
    texto.setEncoding(QStringConverter::Utf16);
    Pedido pedido;
    for (QString renglon; texto.readLineInto(&renglon);) {
        const qsizetype igual = renglon.indexOf(u'=');
        if (igual < 0 || !anotar(pedido, renglon.left(igual), renglon.mid(igual + 1)))
            return std::nullopt;
    }
    if (pedido.carpeta.isEmpty() || pedido.nuevos.isEmpty() || pedido.version.isEmpty())
        return std::nullopt;
    return pedido;
}

bool reemplazarArchivos(const QString &nuevos, const QString &carpeta)
{
    const QDir origen(nuevos);
    const QDir destino(carpeta);
    QStringList rutas;
    QDirIterator archivos(nuevos, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (archivos.hasNext())
        rutas.append(origen.relativeFilePath(archivos.next()));

    QList<Movido> movidos;
    for (const QString &relativa : rutas) {
        const QString ruta = destino.filePath(relativa);
        destino.mkpath(QFileInfo(relativa).path());
        const auto movido = mover(origen.filePath(relativa), ruta);
        if (!movido) {
            volverAtras(movidos);
            return false;
        }
        movidos.append(*movido);
    }

    // Los que están en uso los borra el lanzador la próxima vez que se abre.
    for (const Movido &movido : movidos)
        QFile::remove(movido.previo);
    return true;
}

bool configurar(const QString &carpeta, const QMap<QString, QString> &valores)
{
    const QString ruta = carpeta + "/config.json"_L1;
    const bool habia = QFile::exists(ruta);
    if (habia && valores.isEmpty())
        return true;

    QJsonObject objeto = ombu::leerDocumentoJson(ruta).object();
    if (!habia) {
        for (const QString &clave : clavesDeConfiguracion())
            objeto.insert(clave, QString());
    }
    for (auto valor = valores.cbegin(); valor != valores.cend(); ++valor)
        objeto.insert(valor.key(), valor.value());
    return ombu::escribirDocumentoJson(ruta, QJsonDocument(objeto));
}

bool anotarVersion(const QString &carpeta, const QString &version)
{
    const QString ruta = carpeta + "/versiones.json"_L1;
    QJsonObject objeto = ombu::leerDocumentoJson(ruta).object();
    objeto.insert(kComponenteLauncher, version);
    return ombu::escribirDocumentoJson(ruta, QJsonDocument(objeto));
}

bool marcarEquipo(const QString &datos, bool marcado)
{
    const QString ruta = datos + "/equipo.json"_L1;
    if (QFile::exists(ruta) == marcado)
        return true;
    return marcado ? ombu::escribirDocumentoJson(ruta, QJsonDocument(QJsonObject()))
                   : QFile::remove(ruta);
}

} // namespace instalador
