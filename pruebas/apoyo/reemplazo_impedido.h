#pragma once

#include <QString>

#include <memory>

/// Mientras existe, el archivo de `ruta` no se puede reemplazar por otro, aunque sí escribir a su
/// lado.
class ReemplazoImpedido
{
public:
    explicit ReemplazoImpedido(const QString &ruta);
    ~ReemplazoImpedido();

    ReemplazoImpedido(const ReemplazoImpedido &) = delete;
    ReemplazoImpedido &operator=(const ReemplazoImpedido &) = delete;

    /// Falso si no se pudo impedir: en Debian hace falta ser administrador.
    bool vale() const { return m_detalle != nullptr; }

    /// Lo permite de nuevo. Se puede llamar desde otro hilo.
    void soltar();

private:
    struct Detalle;
    std::unique_ptr<Detalle> m_detalle;
};
