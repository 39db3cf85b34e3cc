#include "pruebas/apoyo/reloj.h"

#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/hora_de_windows.h"

namespace reloj {

void poner(const QDateTime &hora)
{
    const QString archivo = qEnvironmentVariable(kArchivoDelReloj);
    if (archivo.isEmpty())
        qFatal("La prueba no se declaró con RELOJ: hay que correrla con ctest");
    escuela::escribir(archivo, QByteArray::number(hora.toMSecsSinceEpoch()));
    static const bool obedece = (obedecerAlReloj(), true);
    Q_UNUSED(obedece)
    if (QDateTime::currentDateTime().secsTo(hora) != 0)
        qFatal("El reloj de las pruebas no obedece");
}

} // namespace reloj
