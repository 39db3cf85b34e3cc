#include "ombu/sesion.h"

#include "ombu/archivo_json.h"
#include "ombu/fechas.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QStandardPaths>

#include <memory>

using namespace Qt::StringLiterals;

namespace ombu {

namespace {

constexpr auto kToken = "token"_L1;
constexpr auto kGrupo = "grupo"_L1;
constexpr auto kModo = "modo"_L1;
constexpr auto kInicio = "inicio_sesion"_L1;
constexpr auto kUltimaActividad = "ultima_actividad"_L1;
constexpr auto kDuracionEstimada = "duracion_estimada_min"_L1;
constexpr auto kIntegrantes = "integrantes"_L1;
constexpr auto kId = "id"_L1;
constexpr auto kNombre = "nombre"_L1;
constexpr auto kColor = "color"_L1;

constexpr auto kModoAulared = "aulared"_L1;
constexpr auto kModoStandalone = "standalone"_L1;

constexpr quint32 kGraciaMin = 15;
constexpr qint64 kLimiteInactividadS = 960; // 16 minutos
constexpr qint64 kTramoLibreS = 5460;       // 91 minutos
constexpr qint64 kMaximoS = 14460;          // 241 minutos
constexpr qint64 kEntreEscriturasS = 30;

// La marca de equipo vale aunque en esta carpeta no se pueda escribir.
QString dirComun()
{
    const QString programData = qEnvironmentVariable("ProgramData");
    return programData.isEmpty() ? QString() : programData + "/Lumbre"_L1;
}

bool sePuedeEscribir(const QDir &carpeta)
{
    QFile prueba(carpeta.filePath(u".prueba_escritura"_s));
    if (!prueba.open(QIODevice::WriteOnly))
        return false;
    prueba.close();
    prueba.remove();
    return true;
}

QString elegirDirDatos()
{
    if (const QString comun = dirComun(); !comun.isEmpty()) {
        const QDir carpeta(comun);
        if (carpeta.mkpath(u"."_s) && sePuedeEscribir(carpeta))
            return carpeta.absolutePath();
    }
    const QDir propia(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                      "/Lumbre"_L1);
    propia.mkpath(u"."_s);
    return propia.absolutePath();
}

QJsonObject leerJson(const QString &ruta, bool *ok)
{
    const QJsonDocument documento = leerDocumentoJson(ruta);
    if (documento.isObject())
        *ok = true;
    return documento.object();
}

QJsonArray aJson(const QList<Integrante> &integrantes)
{
    QJsonArray lista;
    for (const Integrante &integrante : integrantes) {
        lista.append(QJsonObject{
            {kId, integrante.id}, {kNombre, integrante.nombre}, {kColor, integrante.color}});
    }
    return lista;
}

QList<Integrante> integrantesDeJson(const QJsonArray &lista)
{
    QList<Integrante> integrantes;
    for (const auto &valor : lista) {
        const QJsonObject objeto = valor.toObject();
        integrantes.append(
            {objeto[kId].toString(), objeto[kNombre].toString(), objeto[kColor].toString()});
    }
    return integrantes;
}

QDateTime fecha(const QJsonObject &objeto, QLatin1StringView clave)
{
    return fechaDeTexto(objeto[clave].toString());
}

bool valeConEstimacion(qint64 minutos, qint64 inactividadS, qint32 estimacionMin)
{
    // La suma desborda a propósito en 32 bits: una estimación desmedida no da sesión eterna.
    const auto tope = static_cast<qint32>(static_cast<quint32>(estimacionMin) + kGraciaMin);
    if (minutos > tope)
        return false;
    return minutos <= estimacionMin || inactividadS < kLimiteInactividadS;
}

bool valeSinEstimacion(qint64 transcurridoS, qint64 inactividadS)
{
    if (transcurridoS >= kMaximoS)
        return false;
    return transcurridoS < kTramoLibreS || inactividadS < kLimiteInactividadS;
}

} // namespace

Sesion::Sesion(QObject *parent)
    : QObject(parent)
{
}

QString Sesion::dirDatos()
{
    static const QString dir = elegirDirDatos();
    return dir;
}

QString Sesion::rutaArchivo()
{
    return dirDatos() + "/sesion.json"_L1;
}

Sesion *Sesion::iniciar(ModoSesion modo, const QString &token, const QString &grupo,
                        const QList<Integrante> &integrantes, int duracionEstimadaMin,
                        QObject *parent)
{
    std::unique_ptr<Sesion> sesion(new Sesion(parent));
    sesion->m_modo = modo;
    sesion->m_token = token;
    sesion->m_grupo = grupo;
    sesion->m_integrantes = integrantes;
    sesion->m_duracionEstimadaMin = duracionEstimadaMin;
    sesion->m_inicio = QDateTime::currentDateTime();
    sesion->m_ultimaActividad = sesion->m_inicio;
    return sesion->guardar() ? sesion.release() : nullptr;
}

Sesion *Sesion::cargar(QObject *parent)
{
    bool ok = false;
    const QJsonObject objeto = leerJson(rutaArchivo(), &ok);
    if (!ok)
        return nullptr;

    std::unique_ptr<Sesion> sesion(new Sesion(parent));
    sesion->m_token = objeto[kToken].toString();
    sesion->m_grupo = objeto[kGrupo].toString();
    sesion->m_modo =
        objeto[kModo].toString() == kModoAulared ? ModoSesion::Aulared : ModoSesion::Standalone;
    sesion->m_inicio = fecha(objeto, kInicio);
    sesion->m_ultimaActividad = fecha(objeto, kUltimaActividad);
    sesion->m_duracionEstimadaMin = objeto[kDuracionEstimada].toInt();
    sesion->m_integrantes = integrantesDeJson(objeto[kIntegrantes].toArray());

    if (sesion->m_inicio.isValid() && sesion->esValida())
        return sesion.release();

    cerrar();
    return nullptr;
}

void Sesion::cerrar()
{
    borrarArchivo(rutaArchivo());
}

bool Sesion::equipoDeAulared()
{
    constexpr auto kMarca = "/equipo.json"_L1;
    const QString comun = dirComun();
    return (!comun.isEmpty() && QFile::exists(comun + kMarca)) ||
           QFile::exists(dirDatos() + kMarca);
}

bool Sesion::evaluarReglas(const QDateTime &inicio, const QDateTime &ultimaActividad,
                           int duracionEstimadaMin, const QDateTime &ahora)
{
    const qint64 transcurridoS = inicio.secsTo(ahora);
    const qint64 inactividadS = ultimaActividad.secsTo(ahora);
    return duracionEstimadaMin >= 1
               ? valeConEstimacion(transcurridoS / 60, inactividadS, duracionEstimadaMin)
               : valeSinEstimacion(transcurridoS, inactividadS);
}

bool Sesion::esValida() const
{
    bool ok = false;
    const QJsonObject objeto = leerJson(rutaArchivo(), &ok);
    const QDateTime inicio = fecha(objeto, kInicio);
    const QDateTime ultimaActividad = fecha(objeto, kUltimaActividad);
    return ok && inicio.isValid() && ultimaActividad.isValid() &&
           evaluarReglas(inicio, ultimaActividad, objeto[kDuracionEstimada].toInt(),
                         QDateTime::currentDateTime());
}

void Sesion::registrarActividad()
{
    // En UTC: pasa por aquí cada movimiento del mouse, y calcular la hora local es caro.
    m_ultimaActividad = QDateTime::currentDateTimeUtc();
    if (!m_ultimoGuardado.isValid() ||
        m_ultimoGuardado.secsTo(m_ultimaActividad) >= kEntreEscriturasS) {
        guardar();
    }
}

bool Sesion::guardar() const
{
    const QJsonObject objeto{
        {kToken, m_token},
        {kGrupo, m_grupo},
        {kModo, m_modo == ModoSesion::Standalone ? kModoStandalone : kModoAulared},
        {kInicio, textoDeFecha(m_inicio)},
        {kUltimaActividad, textoDeFecha(ultimaActividad())},
        {kDuracionEstimada, m_duracionEstimadaMin},
        {kIntegrantes, aJson(m_integrantes)},
    };
    if (!escribirDocumentoJson(rutaArchivo(), QJsonDocument(objeto)))
        return false;
    m_ultimoGuardado = QDateTime::currentDateTimeUtc();
    return true;
}

} // namespace ombu
