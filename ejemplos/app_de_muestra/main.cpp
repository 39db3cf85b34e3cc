#include "ombu/apps_registro.h"
#include "trabajo.h"
#include "ventana_muestra.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QMessageBox>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace {

// Quién es esta app lo dice el nombre de su ejecutable: ceibo.exe es Ceibo.
const ombu::AppInfo *identidad()
{
    const QFileInfo ejecutable(QApplication::applicationFilePath());
    const ombu::AppInfo *app = ombu::appPorId(ejecutable.completeBaseName().toLower());
    return app && muestra::sabeGuardar(app->id) ? app : nullptr;
}

QString proyectoPedido()
{
    QCommandLineParser opciones;
    const QCommandLineOption proyecto(
        u"proyecto"_s, QApplication::translate("main", "Proyecto que se abre al empezar."),
        u"nombre"_s);
    opciones.addOption(proyecto);
    opciones.process(QApplication::arguments());
    return opciones.value(proyecto);
}

// Las apps viven en una carpeta del lanzador y comparten con él los textos de Qt en español.
void instalarTraduccion(QTranslator &traductor)
{
    const QString carpeta = QApplication::applicationDirPath() + "/../shared/translations"_L1;
    if (traductor.load(QLocale(u"es"_s), u"qtbase"_s, u"_"_s, carpeta))
        QApplication::installTranslator(&traductor);
}

// Una app de verdad la lleva compilada; esta es la misma para las cinco y la lee de su carpeta.
QString versionInstalada()
{
    QFile archivo(QApplication::applicationDirPath() + "/version.txt"_L1);
    return archivo.open(QIODevice::ReadOnly) ? QString::fromUtf8(archivo.readAll()).trimmed()
                                             : QString();
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication aplicacion(argc, argv);
    QTranslator traductor;
    instalarTraduccion(traductor);

    const ombu::AppInfo *app = identidad();
    if (!app) {
        QMessageBox::critical(
            nullptr, QApplication::translate("main", "App de muestra"),
            QApplication::translate("main", "Este programa tiene que llamarse como una app de la "
                                            "suite; por ejemplo, ceibo.exe."));
        return 1;
    }
    QApplication::setApplicationName(app->nombre);
    QApplication::setOrganizationName(u"Lumbre"_s);
    QApplication::setApplicationVersion(versionInstalada());

    muestra::VentanaMuestra ventana(*app);
    if (const QString proyecto = proyectoPedido(); !proyecto.isEmpty())
        ventana.abrir(proyecto);
    ventana.show();
    return QApplication::exec();
}
