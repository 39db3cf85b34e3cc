#include "quillay/arranque.h"
#include "quillay/ventana_launcher.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication aplicacion(argc, argv);
    quillay::prepararAplicacion(aplicacion);

    quillay::VentanaLauncher ventana;
    ventana.show();
    return QApplication::exec();
}
