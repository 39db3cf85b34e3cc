// Desde que se ejecuta el programa de Windows, con wine, hasta que su ventana se ve.
//
//   medir_arranque_en_windows CON_WINE LANZADOR VENTANA_PELADA

#include "rendimiento/cuentas.h"
#include "rendimiento/pantalla.h"

#include <QCoreApplication>
#include <QTextStream>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPares = 31;
constexpr double kMaximoVeces = 1.1;

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication aplicacion(argc, argv);
    const QStringList argumentos = QCoreApplication::arguments();
    if (argumentos.size() != 4) {
        QTextStream(stderr) << "Uso: medir_arranque_en_windows CON_WINE LANZADOR VENTANA_PELADA\n";
        return 2;
    }
    const QString &conWine = argumentos[1];
    const QStringList lanzador{argumentos[2]};
    const QStringList pelada{argumentos[3]};

    // El primero enciende la computadora virtual y no se cuenta.
    medicion::Pantalla pantalla;
    for (const QStringList &programa : {lanzador, pelada})
        const medicion::ProgramaEnPantalla primero(pantalla, conWine, programa);

    std::vector<double> nuestros;
    std::vector<double> piso;
    for (int par = 0; par < kPares; ++par) {
        nuestros.push_back(
            medicion::ProgramaEnPantalla(pantalla, conWine, lanzador).msHastaDibujarse());
        piso.push_back(medicion::ProgramaEnPantalla(pantalla, conWine, pelada).msHastaDibujarse());
    }
    medicion::informarVeces({u"Arranque en Windows, hasta que la ventana está dibujada"_s,
                             medicion::mediana(nuestros), medicion::mediana(piso), u"ms"_s},
                            kMaximoVeces);
    return 0;
}
