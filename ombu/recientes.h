#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

namespace ombu {

/// Un archivo que alguien usó hace poco.
struct ArchivoReciente
{
    QString ruta;          ///< Ruta completa.
    QString app;           ///< `id` de la app que lo usó.
    QDateTime ultimoUso;   ///< Hora local; inválida si el archivo no lo decía bien.
    bool temporal = false; ///< Marca de quien lo anota; aquí no cambia nada.
};

/// Los archivos recientes de cada persona: una lista por persona, sea cual sea la app.
///
/// La clave de una persona es el `id` de integrante o de perfil. Lo que no se puede leer cuenta
/// como lista vacía y lo que no se puede escribir deja la anterior; ninguna falla se informa.
class Recientes
{
public:
    Recientes() = delete;

    /// Archivo de la persona `clave`. Crea la carpeta que lo contiene.
    static QString rutaArchivo(const QString &clave);

    /// Los archivos de la persona, del más nuevo al más viejo.
    static QList<ArchivoReciente> listar(const QString &clave);

    /// Pone `archivo` al frente de la lista de la persona, sin repetir rutas (que se comparan sin
    /// distinguir mayúsculas) y con 30 entradas como máximo.
    static void registrar(const QString &clave, const ArchivoReciente &archivo);

    /// Anota el archivo, con la hora de ahora, a cada integrante de la sesión guardada y lo cuenta
    /// como actividad. Es lo que llaman las apps al abrir o guardar. Sin sesión no hace nada.
    static void registrarEnSesionActiva(const QString &ruta, const QString &app, bool temporal);
};

} // namespace ombu
