#pragma once

#include <QString>

#include <sys/types.h>

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

    bool es(const char *ruta) const;
    Traba traba() const { return m_traba; }

private:
    dev_t m_dispositivo = 0;
    ino_t m_nodo = 0;
    Traba m_traba;
};
