// El piso del arranque y de la memoria: lo menos que puede ser un programa de Qt con una ventana.

#include <QApplication>
#include <QMainWindow>

int main(int argc, char *argv[])
{
    const QApplication aplicacion(argc, argv);
    QMainWindow ventana;
    ventana.resize(920, 580);
    ventana.show();
    return QApplication::exec();
}
