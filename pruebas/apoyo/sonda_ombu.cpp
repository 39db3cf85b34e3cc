// Otro proceso de la suite: hace una operación de la biblioteca, dicha por sus argumentos.
// Con "repetir" y un número delante, la hace esa cantidad de veces.

#include "ombu/perfiles_locales.h"
#include "ombu/recientes.h"
#include "ombu/sesion.h"

#include <QCoreApplication>
#include <QTextStream>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

QString hacer(const QStringList &argumentos)
{
    const QString &operacion = argumentos.at(1);
    if (operacion == "dir-datos"_L1)
        return ombu::Sesion::dirDatos();
    if (operacion == "equipo"_L1)
        return ombu::Sesion::equipoDeAulared() ? u"si"_s : u"no"_s;
    if (operacion == "crear-perfil"_L1)
        return ombu::PerfilesLocales::crear(argumentos.at(2)).id;
    if (operacion == "anotar-reciente"_L1) {
        ombu::Recientes::registrarEnSesionActiva(argumentos.at(2), argumentos.at(3), false);
        return {};
    }
    if (operacion == "cargar"_L1) {
        const std::unique_ptr<ombu::Sesion> sesion(ombu::Sesion::cargar(nullptr));
        return sesion ? sesion->grupo() : u"ninguna"_s;
    }
    qFatal("La sonda no conoce %s", qUtf8Printable(operacion));
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication aplicacion(argc, argv);
    QStringList argumentos = QCoreApplication::arguments();
    int veces = 1;
    if (argumentos.at(1) == "repetir"_L1) {
        veces = argumentos.at(2).toInt();
        argumentos.remove(1, 2);
    }
    for (int vez = 0; vez < veces; ++vez)
        QTextStream(stdout) << hacer(argumentos) << Qt::endl;
    return 0;
}
