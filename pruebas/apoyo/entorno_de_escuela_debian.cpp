#include "pruebas/apoyo/entorno_de_escuela.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

void simularReloj(QProcessEnvironment &entorno, const QString &raiz)
{
    entorno.insert(u"LD_PRELOAD"_s, entorno.value(u"QUILLAY_LIBFAKETIME"_s));
    entorno.insert(u"FAKETIME_TIMESTAMP_FILE"_s, raiz + "/reloj"_L1);
    entorno.insert(u"FAKETIME_NO_CACHE"_s, u"1"_s);
    entorno.insert(u"FAKETIME_DONT_FAKE_MONOTONIC"_s, u"1"_s);
    entorno.insert(u"NO_FAKE_STAT"_s, u"1"_s);
}

} // namespace

QProcessEnvironment entornoDeEscuela(const QString &raiz)
{
    const QString ejecucion = raiz + "/ejecucion"_L1;
    QDir().mkpath(ejecucion);
    QFile::setPermissions(ejecucion, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    QProcessEnvironment entorno = QProcessEnvironment::systemEnvironment();
    // La sesión gráfica del desarrollador sigue siendo la suya.
    if (!entorno.contains(u"XAUTHORITY"_s))
        entorno.insert(u"XAUTHORITY"_s, QDir::homePath() + "/.Xauthority"_L1);

    entorno.insert(u"ProgramData"_s, raiz + "/ProgramData"_L1);
    entorno.insert(u"HOME"_s, raiz + "/personal"_L1);
    entorno.insert(u"XDG_RUNTIME_DIR"_s, ejecucion);
    entorno.insert(u"TMPDIR"_s, raiz + "/temporal"_L1);
    // En UTC, una fecha que se guardara sin pasar a la hora local parecería bien.
    entorno.insert(u"TZ"_s, u"<-03>3"_s);
    for (const QString &variable : {u"XDG_DATA_HOME"_s, u"XDG_CONFIG_HOME"_s, u"XDG_CACHE_HOME"_s})
        entorno.remove(variable);
    if (entorno.contains(u"QUILLAY_LIBFAKETIME"_s))
        simularReloj(entorno, raiz);
    return entorno;
}
