#include "rendimiento/memoria_residente.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace medicion {

namespace {

// Cada línea es "Clave:   cantidad kB".
double mebibytes(const QByteArray &resumen, QByteArrayView clave)
{
    const QByteArray valor = resumen.sliced(resumen.indexOf(clave) + clave.size());
    return valor.first(valor.indexOf("kB")).trimmed().toDouble() / 1024;
}

} // namespace

MemoriaResidente memoriaResidente(qint64 pid)
{
    QFile archivo(u"/proc/%1/smaps_rollup"_s.arg(pid));
    if (!archivo.open(QIODevice::ReadOnly))
        qFatal("No se pudo leer la memoria del proceso %lld", pid);
    const QByteArray resumen = archivo.readAll();
    return {mebibytes(resumen, "\nRss:"), mebibytes(resumen, "\nPss:")};
}

} // namespace medicion
