// La memoria que ocupa el lanzador en reposo, con la pantalla de inicio a la vista.

#include "ombu/apps_registro.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/relanzar.h"
#include "rendimiento/cuentas.h"
#include "rendimiento/escuela_de_medicion.h"
#include "rendimiento/memoria_residente.h"
#include "rendimiento/pantalla.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

constexpr int kVeces = 3;
constexpr double kMaximoVeces = 1.2;

struct Memorias
{
    std::vector<double> total;
    std::vector<double> proporcional;

    void anotar(const medicion::ProgramaEnPantalla &programa)
    {
        programa.esperarReposo();
        const medicion::MemoriaResidente memoria = medicion::memoriaResidente(programa.pid());
        total.push_back(memoria.total);
        proporcional.push_back(memoria.proporcional);
    }
};

} // namespace

int main(int argc, char *argv[])
{
    if (const std::optional<int> codigo = relanzarEnEscuela(argc, argv))
        return *codigo;
    const QCoreApplication aplicacion(argc, argv);

    const QString lanzador = medicion::instalarLanzador();
    for (const ombu::AppInfo &app : ombu::appsQuillay())
        escuela::instalarApp(app.id);
    medicion::guardarSesion(1);

    medicion::Pantalla pantalla;
    Memorias nuestras;
    Memorias piso;
    for (int vez = 0; vez < kVeces; ++vez) {
        nuestras.anotar(medicion::ProgramaEnPantalla(pantalla, lanzador));
        piso.anotar(medicion::ProgramaEnPantalla(pantalla, medicion::ventanaPelada()));
    }
    medicion::informarVeces({u"Memoria en el inicio, residente"_s,
                             medicion::mediana(nuestras.total), medicion::mediana(piso.total),
                             u"MiB"_s},
                            kMaximoVeces);
    medicion::informarVeces({u"Memoria en el inicio, proporcional"_s,
                             medicion::mediana(nuestras.proporcional),
                             medicion::mediana(piso.proporcional), u"MiB"_s},
                            kMaximoVeces);
    return 0;
}
