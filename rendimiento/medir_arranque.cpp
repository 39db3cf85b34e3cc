// Desde que se ejecuta el programa hasta que su ventana se ve.

#include "ombu/apps_registro.h"
#include "ombu/sesion.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/relanzar.h"
#include "rendimiento/cuentas.h"
#include "rendimiento/escuela_de_medicion.h"
#include "rendimiento/pantalla.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPares = 15;
constexpr double kMaximoVeces = 1.3;

struct Tiempos
{
    std::vector<double> aparecer;
    std::vector<double> dibujarse;

    void anotar(const medicion::ProgramaEnPantalla &programa)
    {
        aparecer.push_back(programa.msHastaAparecer());
        dibujarse.push_back(programa.msHastaDibujarse());
    }
};

void medir(medicion::Pantalla &pantalla, const QString &caso, const QString &lanzador)
{
    // El primero de cada uno trae los archivos a la memoria y no se cuenta.
    for (const QString &programa : {lanzador, medicion::ventanaPelada()})
        const medicion::ProgramaEnPantalla primero(pantalla, programa);

    Tiempos nuestros;
    Tiempos piso;
    for (int par = 0; par < kPares; ++par) {
        nuestros.anotar(medicion::ProgramaEnPantalla(pantalla, lanzador));
        piso.anotar(medicion::ProgramaEnPantalla(pantalla, medicion::ventanaPelada()));
    }
    medicion::informarVeces({u"Arranque %1, hasta que aparece la ventana"_s.arg(caso),
                             medicion::mediana(nuestros.aparecer), medicion::mediana(piso.aparecer),
                             u"ms"_s},
                            kMaximoVeces);
    medicion::informarVeces({u"Arranque %1, hasta que está dibujada"_s.arg(caso),
                             medicion::mediana(nuestros.dibujarse),
                             medicion::mediana(piso.dibujarse), u"ms"_s},
                            kMaximoVeces);
}

} // namespace

int main(int argc, char *argv[])
{
    if (const std::optional<int> codigo = relanzarEnEscuela(argc, argv))
        return *codigo;
    const QCoreApplication aplicacion(argc, argv);

    const QString lanzador = medicion::instalarLanzador();
    for (const ombu::AppInfo &app : ombu::appsQuillay())
        escuela::instalarApp(app.id);

    medicion::Pantalla pantalla;
    medir(pantalla, u"sin sesión"_s, lanzador);
    medicion::guardarSesion(1);
    medir(pantalla, u"con sesión"_s, lanzador);
    return 0;
}
