#include "quillay/arranque.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <memory>

#ifdef Q_OS_WIN
#    include <windows.h>
#endif

using namespace Qt::StringLiterals;

namespace quillay {

namespace {

void identificar(QApplication &aplicacion)
{
    aplicacion.setApplicationName(u"Quillay"_s);
    aplicacion.setOrganizationName(u"Lumbre"_s);
    aplicacion.setWindowIcon(QIcon(u":/quillay.png"_s));
}

// Solo los textos propios de Qt (botones de los mensajes); los del lanzador ya están en español.
void instalarTraduccion(QApplication &aplicacion)
{
    const QString dirApp = QApplication::applicationDirPath();
    const QStringList carpetas{
        dirApp + "/shared/translations"_L1,
        dirApp + "/../shared/translations"_L1,
        QLibraryInfo::path(QLibraryInfo::TranslationsPath),
    };

    auto traductor = std::make_unique<QTranslator>(&aplicacion);
    for (const QString &carpeta : carpetas) {
        if (traductor->load(QLocale(u"es"_s), u"qtbase"_s, u"_"_s, carpeta)) {
            QApplication::installTranslator(traductor.release());
            return;
        }
    }
}

void agregarCarpetaDeBibliotecas()
{
#ifdef Q_OS_WIN
    const QString carpeta = QApplication::applicationDirPath() + "/shared"_L1;
    SetDllDirectoryW(qUtf16Printable(carpeta));
#endif
}

} // namespace

void prepararAplicacion(QApplication &aplicacion)
{
    identificar(aplicacion);
    instalarTraduccion(aplicacion);
    agregarCarpetaDeBibliotecas();
}

} // namespace quillay
