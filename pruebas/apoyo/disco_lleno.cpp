#include "pruebas/apoyo/disco_lleno.h"

QList<quint64> discosEnLosQueNoEntra(qsizetype bytes)
{
    constexpr quint64 kBloque = 4096;
    constexpr quint64 kBufer = 16384;
    const auto total = static_cast<quint64>(bytes);
    QList<quint64> discos{0, 1, total / 2, kBloque, kBufer, total - 1};
    discos.removeIf([total](quint64 disco) { return disco >= total; });
    return discos;
}
