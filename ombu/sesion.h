#pragma once

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>

namespace ombu {

/// Cómo se inició una sesión.
enum class ModoSesion {
    Aulared = 0,   ///< En línea, con el servicio Aulared.
    Standalone = 1 ///< Sin conexión, con un perfil de esta computadora.
};

/// Una de las personas que trabajan en la sesión.
struct Integrante
{
    QString id;     ///< Identificador del servicio o del perfil local.
    QString nombre; ///< Nombre que se muestra.
    QString color;  ///< Color como texto; vacío en las sesiones en línea.
};

/// Quién está trabajando en esta computadora, y desde cuándo.
///
/// La sesión se guarda en un archivo que comparten el lanzador y las apps de la suite. Los objetos
/// son copias de ese archivo: los crean iniciar() y cargar(), y son de quien los recibe.
/// Todas las fechas son hora local de la computadora.
class Sesion : public QObject
{
    Q_OBJECT

public:
    /// Carpeta de datos común a todas las cuentas de la computadora: %ProgramData%/Lumbre o, si no
    /// se puede usar, la carpeta de datos de la cuenta. Se elige una vez por proceso.
    static QString dirDatos();

    /// Ruta del archivo de sesión, `sesion.json`.
    static QString rutaArchivo();

    /// Empieza una sesión ahora y la guarda; nulo si no se pudo escribir el archivo.
    /// @param duracionEstimadaMin minutos que el grupo espera trabajar; 0 si no lo dijo.
    static Sesion *iniciar(ModoSesion modo, const QString &token, const QString &grupo,
                           const QList<Integrante> &integrantes, int duracionEstimadaMin,
                           QObject *parent);

    /// La sesión guardada, si todavía vale; si no, nulo. Una vencida se borra del disco; un archivo
    /// que no se puede leer como objeto JSON se deja donde está.
    static Sesion *cargar(QObject *parent);

    /// Termina la sesión guardada borrando su archivo. No toca los objetos en memoria.
    static void cerrar();

    /// Si esta computadora está marcada (con un archivo `equipo.json`) como equipo de Aulared.
    static bool equipoDeAulared();

    /// La regla de vigencia: si vale en `ahora` una sesión con esos datos. No lee ningún archivo.
    /// @param duracionEstimadaMin minutos; 0 o menos es "sin estimación".
    static bool evaluarReglas(const QDateTime &inicio, const QDateTime &ultimaActividad,
                              int duracionEstimadaMin, const QDateTime &ahora);

    /// Aplica la regla a lo que dice ahora el archivo, no a este objeto: así también cuenta la
    /// actividad que anotaron las apps, y una sesión borrada por otra deja de valer.
    bool esValida() const;

    /// Anota que alguien está usando la computadora. Escribe el archivo a lo sumo cada 30 segundos.
    void registrarActividad();

    /// Escribe el archivo de sesión entero; false, sin tocar el anterior, si no se pudo.
    bool guardar() const;

    ModoSesion modo() const { return m_modo; }
    QString token() const { return m_token; }
    QString grupo() const { return m_grupo; }
    const QList<Integrante> &integrantes() const { return m_integrantes; }
    QDateTime inicio() const { return m_inicio; }
    QDateTime ultimaActividad() const { return m_ultimaActividad.toLocalTime(); }
    int duracionEstimadaMin() const { return m_duracionEstimadaMin; }

private:
    explicit Sesion(QObject *parent);

    ModoSesion m_modo = ModoSesion::Standalone;
    QString m_token;
    QString m_grupo;
    QList<Integrante> m_integrantes;
    QDateTime m_inicio;
    QDateTime m_ultimaActividad;
    int m_duracionEstimadaMin = 0;
    mutable QDateTime m_ultimoGuardado; ///< Inválida hasta la primera escritura de este objeto.
};

} // namespace ombu
