#include "pruebas/apoyo/disco_lleno.h"

#include <csignal>

DiscoLleno::DiscoLleno(quint64 bytesPorArchivo)
{
    std::signal(SIGXFSZ, SIG_IGN); // Sin esto, pasarse del límite termina el proceso.
    getrlimit(RLIMIT_FSIZE, &m_anterior);
    const rlimit limite{bytesPorArchivo, m_anterior.rlim_max};
    if (setrlimit(RLIMIT_FSIZE, &limite) != 0)
        qFatal("No se pudo limitar el tamaño de los archivos");
}

DiscoLleno::~DiscoLleno()
{
    setrlimit(RLIMIT_FSIZE, &m_anterior);
}
