#include "pruebas/apoyo/disco_lleno.h"

#include <csignal>
#include <sys/resource.h>

namespace {

rlimit limiteActual()
{
    rlimit limite{};
    getrlimit(RLIMIT_FSIZE, &limite);
    return limite;
}

bool limitar(quint64 bytesPorArchivo)
{
    const rlimit limite{bytesPorArchivo, limiteActual().rlim_max};
    return setrlimit(RLIMIT_FSIZE, &limite) == 0;
}

} // namespace

DiscoLleno::DiscoLleno(quint64 bytesPorArchivo)
    : m_anterior(limiteActual().rlim_cur)
{
    std::signal(SIGXFSZ, SIG_IGN); // Sin esto, pasarse del límite termina el proceso.
    if (!limitar(bytesPorArchivo))
        qFatal("No se pudo limitar el tamaño de los archivos");
}

DiscoLleno::~DiscoLleno()
{
    limitar(m_anterior);
}
