// Encontrar los trabajos guardados de una app, comparado con leer el disco sin nada de Qt.

#include "ombu/proyectos_guardados.h"
#include "pruebas/apoyo/relanzar.h"
#include "rendimiento/cuentas.h"
#include "rendimiento/escuela_de_medicion.h"

#include <QCoreApplication>
#include <QFile>

#include <array>
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kVeces = 11;
constexpr int kPocos = 1000;
constexpr int kMuchos = 10000;
constexpr double kMaximoVeces = 3.0;
constexpr double kMaximoCrecimiento = 1.2;

const QString kApp = u"garza"_s;

/// Fecha de la carpeta; después abrir, fechar y leer su descripción. Da los bytes leídos.
ssize_t leerTrabajo(const std::string &carpeta, const std::string &archivo)
{
    struct stat datos = {};
    if (stat(carpeta.c_str(), &datos) != 0)
        return 0;
    const int descripcion = open((carpeta + '/' + archivo).c_str(), O_RDONLY | O_CLOEXEC);
    if (descripcion < 0 || fstat(descripcion, &datos) != 0)
        return 0;
    std::array<char, 4096> contenido;
    const ssize_t leidos = read(descripcion, contenido.data(), contenido.size());
    close(descripcion);
    return leidos;
}

/// Lo mismo que hay que pedirle al sistema para encontrar los trabajos, y nada más.
int contarTrabajos(const std::string &carpeta, const std::string &archivo)
{
    int cuantos = 0;
    DIR *abierta = opendir(carpeta.c_str());
    // NOLINTNEXTLINE(concurrency-mt-unsafe): la carpeta abierta es solo de esta función.
    while (const dirent *entrada = readdir(abierta)) {
        if (entrada->d_name[0] != '.' && leerTrabajo(carpeta + '/' + entrada->d_name, archivo) > 0)
            ++cuantos;
    }
    closedir(abierta);
    return cuantos;
}

/// Mide con `cantidad` trabajos ya creados y da los microsegundos por trabajo de lo nuestro.
double medir(int cantidad)
{
    const std::string carpeta = medicion::carpetaDeTrabajos(kApp).toStdString();
    const std::string archivo = medicion::archivoDeDescripcion(kApp).toStdString();
    const auto nuestra = [] {
        return static_cast<int>(ombu::proyectosGuardados(kApp).size());
    };
    const auto pelada = [&] {
        return contarTrabajos(carpeta, archivo);
    };

    // Esta primera vuelta, además, trae el disco a la memoria.
    if (nuestra() != cantidad || pelada() != cantidad)
        qFatal("No se encontraron los %d trabajos", cantidad);

    std::vector<double> nuestros;
    std::vector<double> piso;
    for (int vez = 0; vez < kVeces; ++vez) {
        nuestros.push_back(medicion::milisegundosDeProcesador(nuestra));
        piso.push_back(medicion::milisegundosDeProcesador(pelada));
    }
    const double tiempo = medicion::mediana(nuestros);
    medicion::informarVeces({u"Descubrimiento de %1 trabajos"_s.arg(cantidad), tiempo,
                             medicion::mediana(piso), u"ms"_s},
                            kMaximoVeces);
    return tiempo * 1000 / cantidad;
}

} // namespace

int main(int argc, char *argv[])
{
    if (const std::optional<int> codigo = relanzarEnEscuela(argc, argv))
        return *codigo;
    const QCoreApplication aplicacion(argc, argv);

    medicion::crearTrabajos(kApp, kPocos);
    const double conPocos = medir(kPocos);
    medicion::crearTrabajos(kApp, kMuchos);
    const double conMuchos = medir(kMuchos);
    medicion::informarVeces(
        {u"Crecimiento por trabajo, de 1.000 a 10.000"_s, conMuchos, conPocos, u"µs"_s},
        kMaximoCrecimiento);
    return 0;
}
