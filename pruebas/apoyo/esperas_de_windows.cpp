#include "pruebas/apoyo/esperas_de_windows.h"

#include "pruebas/apoyo/funcion_de_windows.h"

#include <windows.h>

#include <atomic>

namespace {

/// Una espera de Windows que no avisa si ya nadie espera. Queda en memoria hasta el final, porque
/// el aviso que llega tarde la mira.
struct Espera
{
    PTP_WAIT_CALLBACK avisar;
    void *contexto;
    PTP_WAIT verdadera = nullptr;
    std::atomic<bool> esperando = false;
};

// Para Qt es un PTP_WAIT, que solo usa para dárselo a estas funciones.
Espera *espera(PTP_WAIT deQt)
{
    return reinterpret_cast<Espera *>(deQt);
}

void CALLBACK avisarSiEspera(PTP_CALLBACK_INSTANCE instancia, PVOID contexto, PTP_WAIT,
                             TP_WAIT_RESULT resultado)
{
    auto *const esta = static_cast<Espera *>(contexto);
    if (esta->esperando.exchange(false))
        esta->avisar(instancia, esta->contexto, reinterpret_cast<PTP_WAIT>(esta), resultado);
}

PTP_WAIT WINAPI crear(PTP_WAIT_CALLBACK avisar, PVOID contexto, PTP_CALLBACK_ENVIRON entorno)
{
    auto *const nueva = new Espera{avisar, contexto};
    nueva->verdadera = CreateThreadpoolWait(&avisarSiEspera, nueva, entorno);
    return reinterpret_cast<PTP_WAIT>(nueva);
}

void WINAPI esperar(PTP_WAIT deQt, HANDLE objeto, PFILETIME plazo)
{
    espera(deQt)->esperando = objeto != nullptr;
    SetThreadpoolWait(espera(deQt)->verdadera, objeto, plazo);
}

void WINAPI terminarAvisos(PTP_WAIT deQt, BOOL cancelar)
{
    WaitForThreadpoolWaitCallbacks(espera(deQt)->verdadera, cancelar);
}

void WINAPI cerrar(PTP_WAIT deQt)
{
    CloseThreadpoolWait(espera(deQt)->verdadera);
}

} // namespace

void corregirEsperasDeWindows()
{
    reemplazarFuncionDeWindows("CreateThreadpoolWait", reinterpret_cast<void *>(&crear));
    reemplazarFuncionDeWindows("SetThreadpoolWait", reinterpret_cast<void *>(&esperar));
    reemplazarFuncionDeWindows("WaitForThreadpoolWaitCallbacks",
                               reinterpret_cast<void *>(&terminarAvisos));
    reemplazarFuncionDeWindows("CloseThreadpoolWait", reinterpret_cast<void *>(&cerrar));
}
