#pragma once

#include <QtGlobal>

#include <sys/resource.h>

/// Mientras existe, ningún archivo de este proceso puede pasar de `bytesPorArchivo`: lo que sobra
/// falla como en un disco lleno, con una escritura cortada de verdad.
class DiscoLleno
{
public:
    explicit DiscoLleno(quint64 bytesPorArchivo);
    ~DiscoLleno();

    DiscoLleno(const DiscoLleno &) = delete;
    DiscoLleno &operator=(const DiscoLleno &) = delete;

private:
    rlimit m_anterior;
};
