#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

namespace ombu {

/// Un perfil de esta computadora, para trabajar sin conexión.
struct Perfil
{
    QString id;     ///< UUID sin llaves.
    QString nombre; ///< Nombre que se muestra.
    QString color;  ///< "#RRGGBB".
};

/// Los perfiles de esta computadora, comunes a todas sus cuentas (`perfiles.json`).
///
/// No guarda nada en memoria: cada operación lee el archivo de nuevo.
class PerfilesLocales
{
public:
    PerfilesLocales() = delete;

    static QString rutaArchivo();

    /// Todos los perfiles, en el orden en que se crearon; vacía si el archivo falta o no se
    /// entiende.
    static QList<Perfil> listar();

    /// Crea un perfil con `nombre` (sin los espacios de los bordes), lo agrega al archivo y lo
    /// devuelve, también si no se pudo guardar. El color depende de cuántos perfiles había.
    static Perfil crear(const QString &nombre);
};

} // namespace ombu

Q_DECLARE_METATYPE(ombu::Perfil)
