#include "rendimiento/pantalla.h"

#include "rendimiento/cuentas.h"

#include <QByteArray>
#include <QFile>

#include <array>
#include <chrono>
#include <cstdlib>
#include <poll.h>
#include <thread>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace medicion {

namespace {

constexpr auto kPaciencia = 20s;

template<typename Valor>
std::unique_ptr<Valor, decltype(&std::free)> respuesta(Valor *valor)
{
    return {valor, &std::free};
}

/// Llama a `llego` cada `intervalo` hasta que dé verdadero.
template<typename Condicion>
void esperar(std::chrono::milliseconds intervalo, const Condicion &llego)
{
    const auto limite = std::chrono::steady_clock::now() + kPaciencia;
    while (!llego()) {
        if (std::chrono::steady_clock::now() > limite)
            qFatal("El programa medido no llegó a mostrarse o a quedar en reposo");
        std::this_thread::sleep_for(intervalo);
    }
}

// Tiempo de procesador, de usuario y de sistema: campos 14 y 15 de /proc/PID/stat.
QList<QByteArray> procesadorUsado(qint64 pid)
{
    QFile archivo(u"/proc/%1/stat"_s.arg(pid));
    if (!archivo.open(QIODevice::ReadOnly))
        qFatal("El programa medido terminó antes de tiempo");
    return archivo.readAll().split(' ').sliced(13, 2);
}

} // namespace

Pantalla::Pantalla()
    : m_conexion(xcb_connect(nullptr, nullptr), &xcb_disconnect)
{
    if (xcb_connection_has_error(m_conexion.get()) != 0)
        qFatal("Esta medición necesita un servidor X");

    const xcb_window_t raiz = xcb_setup_roots_iterator(xcb_get_setup(m_conexion.get())).data->root;
    constexpr std::array<quint32, 1> kEventos{XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY};
    xcb_change_window_attributes(m_conexion.get(), raiz, XCB_CW_EVENT_MASK, kEventos.data());
    xcb_flush(m_conexion.get());
}

std::optional<xcb_window_t> Pantalla::ventanaAparecida()
{
    while (const auto evento = respuesta(xcb_poll_for_event(m_conexion.get()))) {
        constexpr quint8 kEnviadoPorPrograma = 0x80;
        if ((evento->response_type & ~kEnviadoPorPrograma) != XCB_MAP_NOTIFY)
            continue;
        const auto *aparecida = reinterpret_cast<const xcb_map_notify_event_t *>(evento.get());
        if (aparecida->override_redirect ==
            0) // Las auxiliares no son de nadie que mire la pantalla.
            return aparecida->window;
    }
    return std::nullopt;
}

xcb_window_t Pantalla::esperarVentana()
{
    std::optional<xcb_window_t> ventana;
    esperar(0ms, [&] {
        pollfd conexion{xcb_get_file_descriptor(m_conexion.get()), POLLIN, 0};
        ventana = ventanaAparecida();
        if (!ventana)
            poll(&conexion, 1, 1000);
        return ventana.has_value();
    });
    return *ventana;
}

bool Pantalla::estaDibujada(xcb_window_t ventana)
{
    constexpr qint16 kBorde = 4;
    constexpr quint32 kTodosLosPlanos = ~0U;
    const auto imagen =
        respuesta(xcb_get_image_reply(m_conexion.get(),
                                      xcb_get_image(m_conexion.get(), XCB_IMAGE_FORMAT_Z_PIXMAP,
                                                    ventana, kBorde, kBorde, 1, 1, kTodosLosPlanos),
                                      nullptr));
    return imagen && xcb_get_image_data(imagen.get())[0] != 0;
}

void Pantalla::esperarDibujo(xcb_window_t ventana)
{
    esperar(1ms, [&] { return estaDibujada(ventana); });
}

ProgramaEnPantalla::ProgramaEnPantalla(Pantalla &pantalla, const QString &programa,
                                       const QStringList &argumentos)
{
    xcb_window_t ventana = XCB_NONE;
    m_msHastaAparecer = milisegundos([&] {
        m_proceso.start(programa, argumentos);
        ventana = pantalla.esperarVentana();
    });
    m_msHastaDibujarse = m_msHastaAparecer + milisegundos([&] { pantalla.esperarDibujo(ventana); });
}

ProgramaEnPantalla::~ProgramaEnPantalla()
{
    m_proceso.kill();
    m_proceso.waitForFinished();
}

void ProgramaEnPantalla::esperarReposo() const
{
    QList<QByteArray> antes;
    esperar(500ms, [&] {
        const QList<QByteArray> ahora = procesadorUsado(pid());
        return std::exchange(antes, ahora) == ahora;
    });
}

} // namespace medicion
