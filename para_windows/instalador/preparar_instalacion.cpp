// La parte del instalador que NSIS no sabe hacer: poner los archivos en su lugar, escribir los JSON
// y dar los permisos. Lo corre el instalador con el archivo del pedido; contesta con el código.

#include "ombu/sesion.h"
#include "para_windows/instalador/instalacion.h"
#include "para_windows/instalador/permisos.h"

#include <QCoreApplication>
#include <QStandardPaths>

namespace {

// Están también en instalador.nsi, que los muestra.
constexpr int kListo = 0;
constexpr int kNoSePudoEscribir = 7;
constexpr int kSinPermisosComunes = 10;

bool instalar(const instalador::Pedido &pedido)
{
    return instalador::reemplazarArchivos(pedido.nuevos, pedido.carpeta) &&
           instalador::anotarVersion(pedido.carpeta, pedido.version) &&
           instalador::configurar(pedido.carpeta, pedido.configuracion);
}

bool prepararDatos(const instalador::Pedido &pedido)
{
    // Si la carpeta común no se puede usar, el lanzador elige una de esta cuenta.
    const QString datos = ombu::Sesion::dirDatos();
    const bool comun =
        !datos.startsWith(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
    const bool compartida = comun && instalador::compartirCarpeta(datos);
    const bool marcado = !pedido.equipo || instalador::marcarEquipo(datos, *pedido.equipo);
    return compartida && marcado;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication aplicacion(argc, argv);
    const QStringList argumentos = QCoreApplication::arguments();
    const auto pedido = instalador::leerPedido(argumentos.value(1));
    if (!pedido || !instalar(*pedido))
        return kNoSePudoEscribir;

    const bool abierta = !pedido->compartida || instalador::compartirCarpeta(pedido->carpeta);
    const bool datos = prepararDatos(*pedido);
    return abierta && datos ? kListo : kSinPermisosComunes;
}
