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

std::vector<const ArchivoEnUso *> &archivosEnUso()
{
    static std::vector<const ArchivoEnUso *> archivos;
    return archivos;
}

const ArchivoEnUso *trabado(const char *ruta)
{
    const auto &archivos = archivosEnUso();
    const auto it = std::find_if(archivos.begin(), archivos.end(),
                                 [ruta](const ArchivoEnUso *archivo) { return archivo->es(ruta); });
    return it == archivos.end() ? nullptr : *it;
}

bool sePuedeRenombrar(const char *ruta)
{
    const ArchivoEnUso *archivo = trabado(ruta);
    return archivo == nullptr || archivo->traba() == ArchivoEnUso::NoSeBorra;
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

ArchivoEnUso::ArchivoEnUso(const QString &ruta, Traba traba)
    : m_traba(traba)
{
    struct stat datos = {};
    if (stat(QFile::encodeName(ruta).constData(), &datos) != 0)
        qFatal("No existe %s", qUtf8Printable(ruta));
    m_dispositivo = datos.st_dev;
    m_nodo = datos.st_ino;
    archivosEnUso().push_back(this);
}

ArchivoEnUso::~ArchivoEnUso()
{
    std::erase(archivosEnUso(), this);
}

bool ArchivoEnUso::es(const char *ruta) const
{
    struct stat datos = {};
    return stat(ruta, &datos) == 0 && datos.st_dev == m_dispositivo && datos.st_ino == m_nodo;
}
