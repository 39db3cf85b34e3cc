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

QList<quint64> discosEnLosQueNoEntra(qsizetype bytes)
{
    constexpr quint64 kBloque = 4096;
    constexpr quint64 kBufer = 16384;
    const auto total = static_cast<quint64>(bytes);
    QList<quint64> discos{0, 1, total / 2, kBloque, kBufer, total - 1};
    discos.removeIf([total](quint64 disco) { return disco >= total; });
    return discos;
}
