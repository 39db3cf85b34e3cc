#pragma once

#include "ombu/auth_aulared.h"

#include <QSignalSpy>
#include <QTest>

/// Lo que Aulared hace decir al lanzador cuando alguien no puede entrar.
namespace motivos {

inline constexpr auto kMalos = "Usuario o contraseña incorrectos.";
inline constexpr auto kSinConexion = "No se pudo conectar con Aulared.";
inline constexpr auto kInvalida = "Respuesta inválida del servidor.";

} // namespace motivos

/// Un cliente de Aulared y todo lo que avisó.
struct ClienteEspiado
{
    explicit ClienteEspiado(const QUrl &base)
        : auth(base, nullptr)
    {
    }

    /// Espera el primer aviso, del tipo que sea.
    bool esperarAviso()
    {
        return QTest::qWaitFor([this] { return avisos() > 0; }, 15'000);
    }

    qsizetype avisos() const { return disponible.size() + exitos.size() + fallas.size(); }
    QString motivo() const { return fallas.value(0).value(0).toString(); }

    ombu::AuthAulared auth;
    QSignalSpy disponible{&auth, &ombu::AuthAulared::disponible};
    QSignalSpy exitos{&auth, &ombu::AuthAulared::loginExitoso};
    QSignalSpy fallas{&auth, &ombu::AuthAulared::loginFallido};
};
