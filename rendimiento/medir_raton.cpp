// Lo que agrega a cada movimiento del mouse anotarlo como actividad de la sesión.

#include "pruebas/apoyo/relanzar.h"
#include "quillay/ventana_launcher.h"
#include "rendimiento/cuentas.h"
#include "rendimiento/escuela_de_medicion.h"

#include <QApplication>
#include <QMouseEvent>

using namespace Qt::StringLiterals;

namespace {

constexpr int kTandas = 31;
constexpr int kMovimientos = 10000;
constexpr double kMaximoUs = 3;

/// Microsegundos que lleva entregarle un movimiento a `ventana`.
double medirTanda(QWidget &ventana)
{
    const double ms = medicion::milisegundosDeProcesador([&ventana] {
        for (int i = 0; i < kMovimientos; ++i) {
            const QPointF donde(i % 900, i % 500);
            QMouseEvent movimiento(QEvent::MouseMove, donde, donde, Qt::NoButton, Qt::NoButton,
                                   Qt::NoModifier);
            QCoreApplication::sendEvent(&ventana, &movimiento);
        }
    });
    return ms * 1000 / kMovimientos;
}

} // namespace

int main(int argc, char *argv[])
{
    if (const std::optional<int> codigo = relanzarEnEscuela(argc, argv))
        return *codigo;
    const QApplication aplicacion(argc, argv);

    medicion::guardarSesion(1);
    quillay::VentanaLauncher lanzador;
    QMainWindow pelada;
    pelada.resize(lanzador.size());
    lanzador.show();
    pelada.show();
    QApplication::processEvents();

    std::vector<double> nuestros;
    std::vector<double> piso;
    for (int tanda = 0; tanda < kTandas; ++tanda) {
        nuestros.push_back(medirTanda(lanzador));
        qApp->removeEventFilter(&lanzador);
        piso.push_back(medirTanda(pelada));
        qApp->installEventFilter(&lanzador);
    }
    medicion::informarAgregado({u"Movimiento del mouse con una sesión"_s,
                                medicion::mediana(nuestros), medicion::mediana(piso), u"µs"_s},
                               kMaximoUs);
    return 0;
}
