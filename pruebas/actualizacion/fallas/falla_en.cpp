// Cuenta cada operación que cambia archivos bajo una carpeta y puede hacer fallar una de ellas.
// Se carga con LD_PRELOAD; los procesos que lance el programa no la heredan. Se gobierna con:
//
//   FALLA_BAJO      la carpeta
//   FALLA_REGISTRO  archivo, fuera de ella, al que se agrega un renglón por operación
//   FALLA_EN        el número de una operación, desde 1
//   FALLA_MODO      qué pasa al llegar a ella, sin hacerla:
//                   "matar"  el proceso muere
//                   "error"  da EIO, una vez
//                   "lleno"  da ENOSPC, y desde ahí todas las que necesitan lugar
//   FALLA_EN_USO    un archivo que no se puede borrar, tampoco con otro nombre, como en Windows un
//                   programa abierto

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <linux/fs.h>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

enum class Modo { Nada, Matar, Error, Lleno };
enum class Lugar { NoNecesita, Necesita };

struct Plan
{
    std::string bajo;
    int registro = -1;
    long en = 0;
    Modo modo = Modo::Nada;
    struct stat enUso = {};
    long cuenta = 0;
};

std::string variable(const char *nombre)
{
    const char *valor = getenv(nombre);
    return valor ? valor : "";
}

Modo modoDe(const std::string &nombre)
{
    if (nombre == "matar")
        return Modo::Matar;
    if (nombre == "error")
        return Modo::Error;
    return nombre == "lleno" ? Modo::Lleno : Modo::Nada;
}

long abrir(const char *ruta, int modo, mode_t permisos)
{
    return syscall(SYS_openat, AT_FDCWD, ruta, modo, permisos);
}

Plan leerPlan()
{
    Plan plan;
    plan.bajo = variable("FALLA_BAJO") + '/';
    plan.en = atol(variable("FALLA_EN").c_str());
    plan.modo = modoDe(variable("FALLA_MODO"));
    const std::string registro = variable("FALLA_REGISTRO");
    if (!registro.empty()) {
        plan.registro = static_cast<int>(
            abrir(registro.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
    }
    const std::string enUso = variable("FALLA_EN_USO");
    if (!enUso.empty())
        stat(enUso.c_str(), &plan.enUso);
    unsetenv("LD_PRELOAD");
    return plan;
}

// En la construcción de la biblioteca: antes de que el programa lance procesos.
Plan plan = leerPlan();

bool bajo(const std::string &ruta)
{
    return plan.bajo.size() > 1 && ruta.compare(0, plan.bajo.size(), plan.bajo) == 0;
}

std::string rutaDe(int descriptor)
{
    std::array<char, 4096> ruta;
    const std::string enlace = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t largo = readlink(enlace.c_str(), ruta.data(), ruta.size());
    return largo > 0 ? std::string(ruta.data(), static_cast<std::size_t>(largo)) : std::string();
}

void registrar(const char *operacion, const std::string &ruta)
{
    if (plan.registro < 0)
        return;
    const std::string renglon = operacion + std::string("|") + ruta + '\n';
    syscall(SYS_write, plan.registro, renglon.data(), renglon.size());
}

/// El error que hay que dar en lugar de hacer la operación; 0 si hay que hacerla.
int errorDe(const char *operacion, const std::string &ruta, Lugar lugar)
{
    if (!bajo(ruta))
        return 0;
    ++plan.cuenta;
    registrar(operacion, ruta);
    const bool ahora = plan.cuenta == plan.en;
    if (plan.modo == Modo::Matar && ahora)
        raise(SIGKILL);
    if (plan.modo == Modo::Error && ahora)
        return EIO;
    const bool desdeAhora = plan.en > 0 && plan.cuenta >= plan.en;
    return plan.modo == Modo::Lleno && desdeAhora && lugar == Lugar::Necesita ? ENOSPC : 0;
}

template<typename Resultado, typename Operacion>
Resultado operar(const char *nombre, const std::string &ruta, Lugar lugar,
                 const Operacion &operacion)
{
    if (const int error = errorDe(nombre, ruta, lugar)) {
        errno = error;
        return -1;
    }
    return static_cast<Resultado>(operacion());
}

bool enUso(const char *ruta)
{
    struct stat datos = {};
    return plan.enUso.st_ino != 0 && stat(ruta, &datos) == 0 && datos.st_ino == plan.enUso.st_ino &&
           datos.st_dev == plan.enUso.st_dev;
}

} // namespace

extern "C" {

int open64(const char *ruta, int modo, ...)
{
    va_list argumentos;
    va_start(argumentos, modo);
    const mode_t permisos = va_arg(argumentos, mode_t);
    va_end(argumentos);
    const auto operacion = [=] {
        return abrir(ruta, modo, permisos);
    };
    if ((modo & (O_WRONLY | O_RDWR | O_CREAT | O_TRUNC)) == 0)
        return static_cast<int>(operacion());
    return operar<int>("openat", ruta, Lugar::Necesita, operacion);
}

ssize_t write(int archivo, const void *bytes, size_t cantidad)
{
    return operar<ssize_t>("write", rutaDe(archivo), Lugar::Necesita,
                           [=] { return syscall(SYS_write, archivo, bytes, cantidad); });
}

ssize_t sendfile(int destino, int origen, off_t *desde, size_t cantidad) noexcept
{
    return operar<ssize_t>("sendfile", rutaDe(destino), Lugar::Necesita,
                           [=] { return syscall(SYS_sendfile, destino, origen, desde, cantidad); });
}

int ioctl(int archivo, unsigned long pedido, ...) noexcept
{
    va_list argumentos;
    va_start(argumentos, pedido);
    void *dato = va_arg(argumentos, void *);
    va_end(argumentos);
    const auto operacion = [=] {
        return syscall(SYS_ioctl, archivo, pedido, dato);
    };
    if (pedido != FICLONE)
        return static_cast<int>(operacion());
    return operar<int>("ioctl", rutaDe(archivo), Lugar::Necesita, operacion);
}

int ftruncate64(int archivo, off64_t largo) noexcept
{
    return operar<int>("ftruncate", rutaDe(archivo), Lugar::Necesita,
                       [=] { return syscall(SYS_ftruncate, archivo, largo); });
}

int ftruncate(int archivo, off_t largo) noexcept
{
    return ftruncate64(archivo, largo);
}

int fdatasync(int archivo)
{
    return operar<int>("fdatasync", rutaDe(archivo), Lugar::NoNecesita,
                       [=] { return syscall(SYS_fdatasync, archivo); });
}

int fchmod(int archivo, mode_t permisos) noexcept
{
    return operar<int>("fchmod", rutaDe(archivo), Lugar::NoNecesita,
                       [=] { return syscall(SYS_fchmod, archivo, permisos); });
}

int futimens(int archivo, const timespec *tiempos) noexcept
{
    return operar<int>("utimensat", rutaDe(archivo), Lugar::NoNecesita,
                       [=] { return syscall(SYS_utimensat, archivo, nullptr, tiempos, 0); });
}

int chmod(const char *ruta, mode_t permisos) noexcept
{
    return operar<int>("chmod", ruta, Lugar::NoNecesita,
                       [=] { return syscall(SYS_chmod, ruta, permisos); });
}

int mkdir(const char *ruta, mode_t permisos) noexcept
{
    return operar<int>("mkdir", ruta, Lugar::Necesita,
                       [=] { return syscall(SYS_mkdir, ruta, permisos); });
}

int rmdir(const char *ruta) noexcept
{
    return operar<int>("rmdir", ruta, Lugar::NoNecesita, [=] { return syscall(SYS_rmdir, ruta); });
}

int unlink(const char *ruta) noexcept
{
    return operar<int>("unlink", ruta, Lugar::NoNecesita, [=] {
        if (enUso(ruta)) {
            errno = EBUSY;
            return -1L;
        }
        return syscall(SYS_unlink, ruta);
    });
}

int link(const char *ruta, const char *nueva) noexcept
{
    return operar<int>("link", nueva, Lugar::Necesita,
                       [=] { return syscall(SYS_link, ruta, nueva); });
}

int linkat(int carpeta, const char *ruta, int otra, const char *nueva, int modo) noexcept
{
    return operar<int>("linkat", nueva, Lugar::Necesita,
                       [=] { return syscall(SYS_linkat, carpeta, ruta, otra, nueva, modo); });
}

int rename(const char *ruta, const char *nueva) noexcept
{
    return operar<int>("rename", nueva, Lugar::NoNecesita,
                       [=] { return syscall(SYS_rename, ruta, nueva); });
}

int renameat2(int carpeta, const char *ruta, int otra, const char *nueva,
              unsigned int modo) noexcept
{
    return operar<int>("renameat2", nueva, Lugar::NoNecesita,
                       [=] { return syscall(SYS_renameat2, carpeta, ruta, otra, nueva, modo); });
}
}
