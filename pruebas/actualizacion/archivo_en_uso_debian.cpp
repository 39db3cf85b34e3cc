#include "pruebas/actualizacion/archivo_en_uso.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace {

struct Trabado
{
    dev_t dispositivo;
    ino_t nodo;
    ArchivoEnUso::Traba traba;
};

std::vector<const Trabado *> &archivosEnUso()
{
    static std::vector<const Trabado *> archivos;
    return archivos;
}

const Trabado *trabado(const char *ruta)
{
    struct stat datos = {};
    if (stat(ruta, &datos) != 0)
        return nullptr;
    const auto &archivos = archivosEnUso();
    const auto it =
        std::find_if(archivos.begin(), archivos.end(), [&datos](const Trabado *archivo) {
            return archivo->dispositivo == datos.st_dev && archivo->nodo == datos.st_ino;
        });
    return it == archivos.end() ? nullptr : *it;
}

bool sePuedeRenombrar(const char *ruta)
{
    const Trabado *archivo = trabado(ruta);
    return archivo == nullptr || archivo->traba == ArchivoEnUso::NoSeBorra;
}

} // namespace

// Las que llama Qt: por estar en el ejecutable reemplazan a las de la biblioteca de C.
extern "C" {

int unlink(const char *ruta) noexcept
{
    if (trabado(ruta) != nullptr) {
        errno = EBUSY;
        return -1;
    }
    return static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, ruta, 0));
}

int renameat2(int carpeta, const char *ruta, int otraCarpeta, const char *nueva,
              unsigned int modo) noexcept
{
    if (!sePuedeRenombrar(ruta)) {
        errno = EBUSY;
        return -1;
    }
    return static_cast<int>(syscall(SYS_renameat2, carpeta, ruta, otraCarpeta, nueva, modo));
}

int rename(const char *ruta, const char *nueva) noexcept
{
    return renameat2(AT_FDCWD, ruta, AT_FDCWD, nueva, 0);
}
}

struct ArchivoEnUso::Detalle : Trabado
{
};

ArchivoEnUso::ArchivoEnUso(const QString &ruta, Traba traba)
{
    struct stat datos = {};
    if (stat(QFile::encodeName(ruta).constData(), &datos) != 0)
        qFatal("No existe %s", qUtf8Printable(ruta));
    m_detalle = std::make_unique<Detalle>(Detalle{{datos.st_dev, datos.st_ino, traba}});
    archivosEnUso().push_back(m_detalle.get());
}

ArchivoEnUso::~ArchivoEnUso()
{
    std::erase(archivosEnUso(), m_detalle.get());
}
