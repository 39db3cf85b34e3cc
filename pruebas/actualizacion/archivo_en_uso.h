#pragma once

#include <QString>

#include <memory>

/// Mientras existe, este proceso ve al archivo de `ruta` como Windows ve a un programa abierto: no
/// se puede borrar, tampoco con otro nombre, pero se le puede cambiar el nombre.
class ArchivoEnUso
{
public:
    enum Traba {
        NoSeBorra,
        NiSeRenombra ///< Como si otro programa lo tuviera abierto sin compartirlo.
    };

    explicit ArchivoEnUso(const QString &ruta, Traba traba = NoSeBorra);
    ~ArchivoEnUso();

    ArchivoEnUso(const ArchivoEnUso &) = delete;
    ArchivoEnUso &operator=(const ArchivoEnUso &) = delete;

private:
    struct Detalle;
    std::unique_ptr<Detalle> m_detalle;
};
