#pragma once

#include <QString>

#include <memory>

class ServidorWeb;

/// Mientras existe, las conexiones nuevas de este proceso confían en la autoridad de `servidor`.
class Confianza
{
public:
    explicit Confianza(const ServidorWeb &servidor);
    ~Confianza();

    Confianza(const Confianza &) = delete;
    Confianza &operator=(const Confianza &) = delete;

    /// Falso en wine, que no encuentra a la autoridad aunque se la den.
    static bool sePuede();

    /// Con qué palabras dice este sistema que no confía en quien firmó un certificado.
    static QString textoSinConfianza();

private:
    struct Detalle;
    std::unique_ptr<Detalle> m_detalle;
};
