#include "pruebas/actualizacion/powershell.h"

#include "pruebas/actualizacion/powershell_de_prueba/encargos.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/sistema.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace powershell {

namespace {

QStringList caminoSinPowershell()
{
    QStringList camino = qEnvironmentVariable("PATH").split(u';');
    camino.removeIf(
        [](const QString &carpeta) { return QFile::exists(carpeta + "/powershell.exe"_L1); });
    return camino;
}

void buscarEn(const QStringList &camino)
{
    sistema::ponerVariable("PATH", camino.join(u';'));
}

void sinEncargos()
{
    for (const char *encargo : {encargos::kRegistro, encargos::kCodigo, encargos::kSeCae,
                                encargos::kDeja, encargos::kCopiaEn}) {
        qunsetenv(encargo);
    }
}

} // namespace

void usarElDeMuestra()
{
    const QFileInfo programa(QStringLiteral(RUTA_POWERSHELL_DE_MUESTRA));
    sinEncargos();
    buscarEn(QStringList{QDir::toNativeSeparators(programa.path())} + caminoSinPowershell());
    sistema::ponerVariable(encargos::kRegistro, registro());
}

void usarUnoQueFalla(const Falla &falla)
{
    usarElDeMuestra();
    qputenv(encargos::kCodigo, QByteArray::number(falla.codigo));
    if (falla.seCae)
        qputenv(encargos::kSeCae, "1");
    if (falla.deja)
        qputenv(encargos::kDeja, "1");
    if (!falla.copiaEn.isEmpty())
        sistema::ponerVariable(encargos::kCopiaEn, falla.copiaEn);
}

void usarNinguno()
{
    buscarEn(caminoSinPowershell());
}

} // namespace powershell
