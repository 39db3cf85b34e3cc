#include "pruebas/apoyo/programas.h"

#include <QProcess>

#include <csignal>
#include <sys/prctl.h>

namespace debian {

namespace {

constexpr int kPlazoMs = 20000;

} // namespace

QString ruta(const QString &ruta)
{
    return ruta;
}

Resultado correr(const QString &programa, const QStringList &argumentos, const QString &carpeta)
{
    QProcess proceso;
    proceso.setWorkingDirectory(carpeta);
    proceso.start(programa, argumentos);
    if (!proceso.waitForFinished() || proceso.exitStatus() != QProcess::NormalExit)
        return {-1, proceso.errorString().toUtf8()};
    return {proceso.exitCode(), proceso.readAllStandardError()};
}

struct Servicio::Detalle
{
    QProcess proceso;
};

Servicio::Servicio(const QString &programa, const QStringList &argumentos)
    : m_detalle(std::make_unique<Detalle>())
{
    QProcess &proceso = m_detalle->proceso;
    proceso.setProcessChannelMode(QProcess::ForwardedChannels);
    proceso.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    proceso.start(programa, argumentos);
    proceso.waitForStarted();
}

Servicio::~Servicio()
{
    m_detalle->proceso.terminate();
    m_detalle->proceso.waitForFinished(kPlazoMs);
}

bool Servicio::esperar(int ms)
{
    QProcess &proceso = m_detalle->proceso;
    return proceso.state() == QProcess::NotRunning || proceso.waitForFinished(ms);
}

} // namespace debian
