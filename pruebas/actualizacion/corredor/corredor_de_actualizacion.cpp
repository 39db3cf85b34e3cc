// Un lanzador sin ventana que acepta todo lo que se le ofrece. Imprime cada señal del actualizador
// en un renglón, con sus argumentos separados por "|".
//
//   corredor_de_actualizacion CARPETA MANIFIESTO DESCARGAS

#include "quillay/actualizador.h"

#include <QCoreApplication>
#include <QTextStream>
#include <QTimer>

using namespace Qt::StringLiterals;

using quillay::Actualizacion;
using quillay::Actualizador;

namespace {

void decir(const QStringList &campos)
{
    QTextStream(stdout) << campos.join(u'|') << Qt::endl;
}

void aceptar(Actualizador &actualizador, const QList<Actualizacion> &pendientes)
{
    QStringList campos{u"disponibles"_s};
    for (const Actualizacion &una : pendientes)
        campos += {una.componente, una.versionLocal, una.versionNueva};
    decir(campos);
    actualizador.aplicar(pendientes);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication aplicacion(argc, argv);
    const QStringList argumentos = QCoreApplication::arguments();
    if (argumentos.size() != 4)
        qFatal("Faltan la carpeta y las dos direcciones");

    const QString &carpeta = argumentos.at(1);
    Actualizador actualizador(carpeta, QUrl(argumentos.at(2)), QUrl(argumentos.at(3)), nullptr);
    QObject::connect(&actualizador, &Actualizador::actualizacionesDisponibles, &actualizador,
                     [&](const QList<Actualizacion> &lista) { aceptar(actualizador, lista); });
    QObject::connect(&actualizador, &Actualizador::componenteActualizado, &actualizador,
                     [](const QString &componente, const QString &version) {
                         decir({u"actualizado"_s, componente, version});
                     });
    QObject::connect(&actualizador, &Actualizador::error, &actualizador,
                     [](const QString &mensaje) {
                         decir({u"error"_s, mensaje});
                     });
    const auto terminar = [](const QString &como) {
        decir({como});
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    };
    QObject::connect(&actualizador, &Actualizador::sinActualizaciones, &actualizador,
                     [=] { terminar(u"sin actualizaciones"_s); });
    QObject::connect(&actualizador, &Actualizador::terminado, &actualizador,
                     [=] { terminar(u"terminado"_s); });

    Actualizador::limpiarRestos(carpeta);
    actualizador.verificar();
    return QCoreApplication::exec();
}
