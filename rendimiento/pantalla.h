#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <xcb/xcb.h>

namespace medicion {

/// La pantalla X, mirada desde afuera de los programas que se miden.
class Pantalla
{
public:
    Pantalla();

    /// Espera a que aparezca la próxima ventana.
    xcb_window_t esperarVentana();

    /// Espera a que `ventana` tenga algo dibujado: a que deje de verse el fondo negro.
    void esperarDibujo(xcb_window_t ventana);

private:
    std::optional<xcb_window_t> ventanaAparecida();
    bool estaDibujada(xcb_window_t ventana);

    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> m_conexion;
};

/// Un programa con ventana, corriendo. Se lo termina al destruir este objeto.
class ProgramaEnPantalla
{
public:
    /// Arranca `programa` y vuelve cuando su ventana está dibujada.
    ProgramaEnPantalla(Pantalla &pantalla, const QString &programa,
                       const QStringList &argumentos = {});
    ~ProgramaEnPantalla();

    double msHastaAparecer() const { return m_msHastaAparecer; }
    double msHastaDibujarse() const { return m_msHastaDibujarse; }
    qint64 pid() const { return m_proceso.processId(); }

    /// Espera a que deje de trabajar: medio segundo entero sin usar el procesador.
    void esperarReposo() const;

private:
    QProcess m_proceso;
    double m_msHastaAparecer = 0;
    double m_msHastaDibujarse = 0;
};

} // namespace medicion
