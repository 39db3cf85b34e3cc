#include "pruebas/actualizacion/actualizador_espiado.h"

#include "pruebas/apoyo/escuela_temporal.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

using quillay::Actualizacion;

namespace {

// Alcanza para una transferencia que se cuelga, que se corta sola a los 30 segundos.
constexpr int kPlazoMs = 40000;

} // namespace

QString carpetaInstalada()
{
    return escuela::dirPersonal() + "/Quillay"_L1;
}

QString rutaVersiones()
{
    return carpetaInstalada() + "/versiones.json"_L1;
}

void instalarVersiones(const QByteArray &versiones)
{
    escuela::escribir(rutaVersiones(), versiones);
}

ActualizadorEspiado::ActualizadorEspiado(const QUrl &urlManifiesto, const QUrl &urlDescargas)
    : Actualizador(carpetaInstalada(), urlManifiesto, urlDescargas, nullptr)
{
    connect(this, &Actualizador::actualizacionesDisponibles, this,
            [this](const QList<Actualizacion> &pendientes) {
                QStringList renglon{u"disponibles"_s};
                for (const Actualizacion &una : pendientes)
                    renglon += {una.componente, una.versionLocal, una.versionNueva};
                dicho.append(renglon.join(u'|'));
            });
    connect(this, &Actualizador::sinActualizaciones, this,
            [this] { dicho.append(u"sin actualizaciones"_s); });
    connect(this, &Actualizador::componenteActualizado, this,
            [this](const QString &componente, const QString &version) {
                dicho.append("actualizado|"_L1 + componente + u'|' + version);
            });
    connect(this, &Actualizador::error, this,
            [this](const QString &mensaje) { dicho.append("error|"_L1 + mensaje); });
    connect(this, &Actualizador::terminado, this, [this] { dicho.append(u"terminado"_s); });
}

QStringList ActualizadorEspiado::alVerificar()
{
    dicho.clear();
    verificar();
    return esperar({u"sin actualizaciones"_s, u"disponibles"_s});
}

QStringList ActualizadorEspiado::alAplicar(const QList<Actualizacion> &actualizaciones)
{
    dicho.clear();
    aplicar(actualizaciones);
    return esperar({u"terminado"_s});
}

QStringList ActualizadorEspiado::esperar(const QStringList &finales) const
{
    const auto llego = [&] {
        return !dicho.isEmpty() && finales.contains(dicho.constLast().section(u'|', 0, 0));
    };
    if (!QTest::qWaitFor(llego, kPlazoMs))
        qFatal("El actualizador no terminó");
    return dicho;
}
