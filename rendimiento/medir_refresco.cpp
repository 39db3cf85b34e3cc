// Rehacer la pantalla de inicio, como al volver al lanzador desde otro programa.

#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/relanzar.h"
#include "quillay/vista_apps.h"
#include "rendimiento/cuentas.h"
#include "rendimiento/escuela_de_medicion.h"
#include "rendimiento/memoria_residente.h"

#include <QApplication>
#include <QListWidget>
#include <QTabWidget>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int kTrabajosPorApp = 200;
constexpr int kIntegrantes = 3;
constexpr int kRecientes = 90;
constexpr int kPrevios = 20;
constexpr int kVeces = 50;
constexpr double kMaximoMs = 25;
constexpr double kMaximoMiB = 1;

constexpr std::array kApps{"ceibo"_L1, "garza"_L1, "zorzal"_L1, "benteveo"_L1};

/// El piso: las mismas pestañas, con la misma cantidad de entradas de solo texto ya en memoria.
class PestanasPeladas : public QTabWidget
{
public:
    void rehacer()
    {
        for (int i = 0; i < count(); ++i)
            qobject_cast<QListWidget *>(widget(i))->clear();
        clear();
        agregar(kRecientes);
        for (std::size_t i = 0; i < kApps.size(); ++i)
            agregar(kTrabajosPorApp);
    }

private:
    void agregar(int entradas)
    {
        auto *lista = new QListWidget;
        for (int i = 0; i < entradas; ++i)
            lista->addItem(u"Trabajo de clase    —    21/11/2025 10:00"_s);
        addTab(lista, u"Trabajos"_s);
    }
};

struct Refresco
{
    double ms;
    double mebibytes; ///< Los que quedan ocupados después de cada uno.
};

template<typename Operacion>
Refresco medir(QWidget &ventana, const Operacion &rehacer)
{
    ventana.resize(920, 580);
    ventana.show();
    const auto refrescar = [&] {
        rehacer();
        QApplication::processEvents();
    };
    const auto ocupados = [] {
        return medicion::memoriaResidente(QCoreApplication::applicationPid()).total;
    };

    for (int vez = 0; vez < kPrevios; ++vez)
        refrescar();
    const double antes = ocupados();
    std::vector<double> tiempos(kVeces);
    for (double &tiempo : tiempos)
        tiempo = medicion::milisegundosDeProcesador(refrescar);
    return {medicion::mediana(tiempos), (ocupados() - antes) / kVeces};
}

void llenarEscuela()
{
    for (const QLatin1StringView app : kApps) {
        escuela::instalarApp(app);
        medicion::crearTrabajos(app, kTrabajosPorApp);
    }
    const QStringList claves = medicion::guardarSesion(kIntegrantes);
    for (const QString &clave : claves)
        medicion::llenarRecientes(clave);
}

} // namespace

int main(int argc, char *argv[])
{
    if (const std::optional<int> codigo = relanzarEnEscuela(argc, argv))
        return *codigo;
    const QApplication aplicacion(argc, argv);

    llenarEscuela();
    PestanasPeladas peladas;
    const Refresco piso = medir(peladas, [&] { peladas.rehacer(); });
    peladas.hide();

    quillay::VistaApps vista(escuela::dirLanzador(), nullptr);
    ombu::Sesion *sesion = ombu::Sesion::cargar(&vista);
    const Refresco nuestro = medir(vista, [&] { vista.mostrarSesion(sesion); });

    medicion::informarValor({u"Refresco del inicio, 890 entradas"_s, nuestro.ms, piso.ms, u"ms"_s},
                            kMaximoMs);
    medicion::informarValor(
        {u"Memoria que deja cada refresco"_s, nuestro.mebibytes, piso.mebibytes, u"MiB"_s},
        kMaximoMiB);
    return 0;
}
