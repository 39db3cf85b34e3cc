#pragma once

#include <QtGlobal>

namespace medicion {

/// La memoria física que ocupa un proceso, en MiB.
struct MemoriaResidente
{
    double total;        ///< Todas sus páginas (Rss).
    double proporcional; ///< Cada página compartida, dividida entre quienes la usan (Pss).
};

/// Lo que ocupa ahora el proceso `pid`.
MemoriaResidente memoriaResidente(qint64 pid);

} // namespace medicion
