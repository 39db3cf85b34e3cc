#include "pruebas/apoyo/reloj.h"

#include "pruebas/apoyo/escuela_temporal.h"

using namespace Qt::StringLiterals;

namespace reloj {

void poner(const QDateTime &hora)
{
    const QString archivo = qEnvironmentVariable("FAKETIME_TIMESTAMP_FILE");
    if (archivo.isEmpty())
        qFatal("La prueba no se declaró con RELOJ: hay que correrla con ctest");
    escuela::escribir(archivo, hora.toString(u"yyyy-MM-dd HH:mm:ss"_s).toUtf8() + '\n');
    if (QDateTime::currentDateTime().secsTo(hora) != 0)
        qFatal("El reloj de las pruebas no obedece");
}

} // namespace reloj
