#include "pruebas/apoyo/entorno_de_escuela.h"

#include "pruebas/apoyo/carpetas_de_windows.h"
#include "pruebas/apoyo/hora_de_windows.h"

#include <QDir>

#include <windows.h>

using namespace Qt::StringLiterals;

namespace {

// En la pantalla de las pruebas no hay quien administre las ventanas, y wine esperaría dos segundos
// por cada una.
void noAdministrarLasVentanas()
{
    constexpr wchar_t kNo[] = L"N";
    RegSetKeyValueW(HKEY_CURRENT_USER, L"Software\\Wine\\X11 Driver", L"Managed", REG_SZ, kNo,
                    sizeof(kNo));
}

} // namespace

QProcessEnvironment entornoDeEscuela(const QString &raiz)
{
    QProcessEnvironment entorno = QProcessEnvironment::systemEnvironment();
    if (!entorno.contains(u"QUILLAY_COMPUTADORA_DESCARTABLE"_s))
        qFatal("Las pruebas cambian carpetas de la cuenta: hay que correrlas con ctest, en wine");

    const QString personal = raiz + "/personal"_L1;
    carpetas_de_windows::mudar(carpetas_de_windows::kDocumentos, personal + "/Documents"_L1);
    carpetas_de_windows::mudar(carpetas_de_windows::kDatosDeProgramas,
                               personal + "/AppData/Local"_L1);

    noAdministrarLasVentanas();

    entorno.insert(u"ProgramData"_s, raiz + "/ProgramData"_L1);
    entorno.insert(u"HOME"_s, personal);
    for (const QString &variable : {u"TMP"_s, u"TEMP"_s})
        entorno.insert(variable, QDir::toNativeSeparators(raiz + "/temporal"_L1));
    entorno.remove(u"TZ"_s); // Es la de Debian: la hora local sale de la zona de esta computadora.
    entorno.insert(u"QT_FORCE_STDERR_LOGGING"_s, u"1"_s);
    if (entorno.contains(u"QUILLAY_RELOJ"_s))
        entorno.insert(QString::fromLatin1(reloj::kArchivoDelReloj), raiz + "/reloj"_L1);
    return entorno;
}
