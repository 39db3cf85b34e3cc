#include "ombu/apps_registro.h"

#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"

#include <QDir>
#include <QFile>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

QList<ombu::AppInfo> todasLasApps()
{
    return ombu::appsQuillay() + ombu::appsOmbu();
}

QStringList idsDe(const QList<ombu::AppInfo> &suite)
{
    QStringList ids;
    for (const ombu::AppInfo &app : suite)
        ids.append(app.id);
    return ids;
}

} // namespace

class PruebaAppsRegistro : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { escuela::vaciar(); }

    void lasSuitesTienenSusAppsEnElOrdenEnQueSeMuestran()
    {
        QCOMPARE(idsDe(ombu::appsQuillay()),
                 (QStringList{u"ceibo"_s, u"garza"_s, u"hornero"_s, u"zorzal"_s, u"benteveo"_s}));
        QCOMPARE(idsDe(ombu::appsOmbu()), (QStringList{u"calandria"_s, u"tordo"_s, u"nandu"_s}));
    }

    void cadaAppTieneSusDatos_data()
    {
        QTest::addColumn<QString>("nombre");
        QTest::addColumn<QString>("color");
        QTest::addColumn<QString>("colorClaro");
        QTest::addColumn<QString>("carpeta");
        QTest::addColumn<QString>("ejecutable");
        QTest::addColumn<QStringList>("extensiones");
        QTest::addColumn<QStringList>("extensionesSecundarias");

        const QStringList sin;
        QTest::newRow("ceibo") << u"Ceibo"_s << u"#F9A825"_s << u"#FDEFCE"_s << u"Ceibo"_s
                               << u"ceibo.exe"_s << sin << sin;
        QTest::newRow("garza") << u"Garza"_s << u"#00838F"_s << u"#CCE6E9"_s << u"Garza"_s
                               << u"garza.exe"_s << sin << sin;
        QTest::newRow("hornero") << u"Hornero"_s << u"#E53935"_s << u"#FAD7D7"_s << u"Hornero"_s
                                 << u"hornero.exe"_s << sin << sin;
        QTest::newRow("zorzal") << u"Zorzal"_s << u"#43A047"_s << u"#D9EDDA"_s << u"Zorzal"_s
                                << u"zorzal.exe"_s << sin << sin;
        QTest::newRow("benteveo") << u"Benteveo"_s << u"#7CB342"_s << u"#E5F0D8"_s << u"Benteveo"_s
                                  << u"benteveo.exe"_s << sin << sin;
        QTest::newRow("calandria")
            << u"Calandria"_s << u"#7B3FD4"_s << u"#E9DDF9"_s << u"Calandria"_s
            << u"calandria.exe"_s << QStringList{u"cln"_s} << QStringList{u"clt"_s};
        QTest::newRow("tordo") << u"Tordo"_s << u"#1A6BAF"_s << u"#D6E7F5"_s << u"Tordo"_s
                               << u"tordo.exe"_s << QStringList{u"trd"_s} << QStringList{u"trt"_s};
        QTest::newRow("nandu") << u"Ñandú"_s << u"#D4570A"_s << u"#F8DFCD"_s << u"Nandu"_s
                               << u"nandu.exe"_s << QStringList{u"ndu"_s} << QStringList{u"ndt"_s};
    }

    void cadaAppTieneSusDatos()
    {
        const QString id = QString::fromLatin1(QTest::currentDataTag());
        const ombu::AppInfo *app = ombu::appPorId(id);
        QVERIFY(app);
        QCOMPARE(app->id, id);
        QTEST(app->nombre, "nombre");
        QTEST(app->color, "color");
        QTEST(app->colorClaro, "colorClaro");
        QTEST(app->carpeta, "carpeta");
        QTEST(app->ejecutable, "ejecutable");
        QTEST(app->extensiones, "extensiones");
        QTEST(app->extensionesSecundarias, "extensionesSecundarias");
    }

    void losIdsYLasExtensionesNoSeRepiten()
    {
        QStringList ids;
        QStringList extensiones;
        for (const ombu::AppInfo &app : todasLasApps()) {
            ids += app.id;
            extensiones += app.extensiones + app.extensionesSecundarias;
        }
        QCOMPARE(QSet<QString>(ids.cbegin(), ids.cend()).size(), 8);
        QCOMPARE(QSet<QString>(extensiones.cbegin(), extensiones.cend()).size(), 6);
    }

    void laListaEsSiempreLaMisma()
    {
        QCOMPARE(&ombu::appsQuillay(), &ombu::appsQuillay());
        QCOMPARE(&ombu::appsOmbu(), &ombu::appsOmbu());
        QCOMPARE(ombu::appPorId(u"garza"_s), &ombu::appsQuillay().at(1));
        QCOMPARE(ombu::appPorId(u"tordo"_s), &ombu::appsOmbu().at(1));
    }

    void unIdQueNoEsExactoNoSeEncuentra_data()
    {
        QTest::addColumn<QString>("id");
        QTest::newRow("vacío") << u""_s;
        QTest::newRow("nulo") << QString();
        QTest::newRow("con mayúscula") << u"Garza"_s;
        QTest::newRow("con un espacio") << u"garza "_s;
        QTest::newRow("cortado") << u"garz"_s;
        QTest::newRow("el nombre que se muestra") << u"Ñandú"_s;
        QTest::newRow("desconocido") << u"carpincho"_s;
    }

    void unIdQueNoEsExactoNoSeEncuentra()
    {
        QFETCH(const QString, id);
        QVERIFY(!ombu::appPorId(id));
    }

    void unaExtensionLlevaASuApp_data()
    {
        QTest::addColumn<QString>("id");
        QTest::newRow("cln") << u"calandria"_s;
        QTest::newRow("clt") << u"calandria"_s;
        QTest::newRow("CLT") << u"calandria"_s;
        QTest::newRow("trd") << u"tordo"_s;
        QTest::newRow("TrT") << u"tordo"_s;
        QTest::newRow("ndu") << u"nandu"_s;
        QTest::newRow("NDT") << u"nandu"_s;
    }

    void unaExtensionLlevaASuApp()
    {
        QFETCH(const QString, id);
        const QString extension = QString::fromLatin1(QTest::currentDataTag());
        QCOMPARE(ombu::appPorExtension(extension), ombu::appPorId(id));
    }

    void unaExtensionQueNoEsDeNadieNoLlevaANinguna_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::newRow("vacía") << u""_s;
        QTest::newRow("con el punto") << u".trd"_s;
        QTest::newRow("con un espacio") << u"trd "_s;
        QTest::newRow("cortada") << u"tr"_s;
        QTest::newRow("de otro programa") << u"png"_s;
        QTest::newRow("un id") << u"garza"_s;
    }

    void unaExtensionQueNoEsDeNadieNoLlevaANinguna()
    {
        QFETCH(const QString, extension);
        QVERIFY(!ombu::appPorExtension(extension));
    }

    void elEjecutableEstaEnLaCarpetaDeSuApp()
    {
        QCOMPARE(ombu::rutaEjecutable(*ombu::appPorId(u"garza"_s), u"C:/Quillay"_s),
                 u"C:/Quillay/Garza/garza.exe"_s);
        QCOMPARE(ombu::rutaEjecutable(*ombu::appPorId(u"nandu"_s), u"/suite"_s),
                 u"/suite/Nandu/nandu.exe"_s);
    }

    void estaInstaladaMientrasExistaSuEjecutable()
    {
        const ombu::AppInfo &garza = *ombu::appPorId(u"garza"_s);
        const QString dir = escuela::dirLanzador();
        QVERIFY(!ombu::estaInstalada(garza, dir));

        QVERIFY(QDir(dir).mkpath(u"Garza"_s));
        QVERIFY(!ombu::estaInstalada(garza, dir));

        escuela::instalarApp(u"garza"_s);
        QVERIFY(ombu::estaInstalada(garza, dir));
        QVERIFY(!ombu::estaInstalada(garza, escuela::dirDocumentos()));
        QVERIFY(!ombu::estaInstalada(*ombu::appPorId(u"ceibo"_s), dir));

        QVERIFY(QFile::remove(ombu::rutaEjecutable(garza, dir)));
        QVERIFY(!ombu::estaInstalada(garza, dir));
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaAppsRegistro, QCoreApplication>(argc, argv);
}

#include "prueba_apps_registro.moc"
