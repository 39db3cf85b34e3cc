#include "pruebas/apoyo/programas.h"

#include "pruebas/apoyo/escuela_temporal.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <windows.h>

using namespace Qt::StringLiterals;

namespace debian {

namespace {

constexpr int kPlazoMs = 30000;

// wine arranca programas de Debian, pero no deja esperarlos ni terminarlos: lo hace este guion, y
// se habla con él por archivos. Deja en "codigo" cómo terminó; si se borra "vivo", lo termina.
constexpr auto kGuion = R"(
control=$1; carpeta=$2; shift 2
cd "$carpeta" || exit 1
LC_ALL=C.UTF-8 "$@" >"$control/salida" 2>"$control/errores" </dev/null &
programa=$!
while [ -e "$control/vivo" ] && kill -0 $programa 2>/dev/null; do sleep 0.02; done
kill $programa 2>/dev/null
wait $programa
echo $? >"$control/codigo.parcial"
mv "$control/codigo.parcial" "$control/codigo"
)"_L1;

/// La carpeta de Debian que wine muestra como esa unidad.
QString carpetaDeLaUnidad(const QString &unidad)
{
    using Traduccion = char *(CDECL *)(const wchar_t *);
    const HMODULE sistema = GetModuleHandleW(L"kernel32.dll");
    const auto traducir = reinterpret_cast<Traduccion>(
        reinterpret_cast<void *>(GetProcAddress(sistema, "wine_get_unix_file_name")));
    if (!traducir)
        qFatal("Esta prueba usa programas de Debian y solo corre con wine");
    return QString::fromUtf8(traducir(reinterpret_cast<const wchar_t *>(unidad.utf16())));
}

/// Un programa en marcha y la carpeta por la que se le habla.
class EnMarcha
{
public:
    EnMarcha(const QString &programa, const QStringList &argumentos, const QString &carpeta)
    {
        escuela::escribir(m_control.filePath(u"vivo"_s), {});
        const QStringList todos =
            QStringList{u"-c"_s, kGuion, u"sh"_s, ruta(m_control.path()), ruta(carpeta), programa} +
            argumentos;
        if (!QProcess::startDetached(u"Z:\\bin\\sh"_s, todos))
            qFatal("No se pudo correr %s", qUtf8Printable(programa));
    }

    bool esperar(int ms) const
    {
        const QString codigo = m_control.filePath(u"codigo"_s);
        const QDeadlineTimer plazo(ms);
        while (!QFile::exists(codigo) && !plazo.hasExpired())
            QThread::msleep(5);
        return QFile::exists(codigo);
    }

    void terminar() const { QFile::remove(m_control.filePath(u"vivo"_s)); }

    Resultado resultado() const
    {
        return {escuela::leer(m_control.filePath(u"codigo"_s)).trimmed().toInt(),
                escuela::leer(m_control.filePath(u"errores"_s))};
    }

private:
    QTemporaryDir m_control;
};

} // namespace

QString ruta(const QString &ruta)
{
    const QString entera = QDir::cleanPath(QDir().absoluteFilePath(ruta));
    return QDir::cleanPath(carpetaDeLaUnidad(entera.first(2) + u'\\') + entera.sliced(2));
}

Resultado correr(const QString &programa, const QStringList &argumentos, const QString &carpeta)
{
    const EnMarcha proceso(programa, argumentos, carpeta);
    if (!proceso.esperar(kPlazoMs)) {
        proceso.terminar();
        return {-1, "no terminó"};
    }
    return proceso.resultado();
}

struct Servicio::Detalle
{
    EnMarcha proceso;
};

Servicio::Servicio(const QString &programa, const QStringList &argumentos)
    : m_detalle(new Detalle{{programa, argumentos, {}}})
{
}

Servicio::~Servicio()
{
    m_detalle->proceso.terminar();
    m_detalle->proceso.esperar(kPlazoMs);
}

bool Servicio::esperar(int ms)
{
    return m_detalle->proceso.esperar(ms);
}

} // namespace debian
