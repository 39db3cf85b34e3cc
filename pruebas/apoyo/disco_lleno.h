#pragma once

#include <QList>
#include <QtGlobal>

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
    quint64 m_anterior;
};

/// Los tamaños de disco en los que no entra un archivo de `bytes`: cortan su escritura al empezar,
/// por la mitad, en un límite de bloque o de búfer y justo antes de terminar.
QList<quint64> discosEnLosQueNoEntra(qsizetype bytes);
