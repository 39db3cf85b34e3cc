#include "quillay/arranque.h"

#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/programas.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QPushButton>
#include <QTranslator>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

/// Dónde puede estar el catálogo en español.
enum Carpeta { JuntoAlPrograma = 1, UnNivelMasArriba = 2, LaDeQt = 4 };
Q_DECLARE_FLAGS(Carpetas, Carpeta)
Q_DECLARE_OPERATORS_FOR_FLAGS(Carpetas)

QString rutaDe(Carpeta carpeta)
{
    switch (carpeta) {
    case JuntoAlPrograma:
        return escuela::dirLanzador() + "/shared/translations"_L1;
    case UnNivelMasArriba:
        return QDir::cleanPath(escuela::dirLanzador() + "/../shared/translations"_L1);
    case LaDeQt:
        break;
    }
    return QLibraryInfo::path(QLibraryInfo::TranslationsPath);
}

/// Pone en `carpeta` un catálogo de Qt que traduce "Cancel" como `cancelar`.
void ponerCatalogo(const QString &carpeta, const QString &cancelar, const QString &idioma = u"es"_s)
{
    const QString ts = escuela::dirPersonal() + "/catalogo.ts"_L1;
    escuela::escribir(
        ts, u"<?xml version=\"1.0\" encoding=\"utf-8\"?><!DOCTYPE TS>"
            "<TS version=\"2.1\" language=\"%1\"><context>"
            "<name>QPlatformTheme</name><message><source>Cancel</source>"
            "<translation>%2</translation></message></context></TS>"_s.arg(idioma, cancelar)
                .toUtf8());
    QDir().mkpath(carpeta);
    const QString qm = carpeta + u"/qtbase_%1.qm"_s.arg(idioma);
    const QStringList argumentos{u"-silent"_s, debian::ruta(ts), u"-qm"_s, debian::ruta(qm)};
    if (debian::correr(QStringLiteral(RUTA_LRELEASE), argumentos).codigo != 0)
        qFatal("lrelease no hizo el catálogo");
}

QString cancelar()
{
    return QCoreApplication::translate("QPlatformTheme", "Cancel");
}

QList<QTranslator *> traductores()
{
    return qApp->findChildren<QTranslator *>();
}

/// La aplicación, con una carpeta de traducciones de Qt que no es la del sistema.
class AplicacionConSuQt : public QApplication
{
public:
    AplicacionConSuQt(int &argc, char **argv)
        : QApplication(configurarQt(argc, argv[0]), argv)
    {
    }

private:
    static int &configurarQt(int &argc, const char *programa)
    {
        const QString carpeta = QFileInfo(QFile::decodeName(programa)).absolutePath();
        const QString paths = u"[Paths]\nPrefix=/\nPlugins=%1\nTranslations=%2/traducciones\n"_s;
        escuela::escribir(carpeta + "/qt.conf"_L1,
                          paths.arg(QStringLiteral(CARPETA_PLUGINS), carpeta).toUtf8());
        return argc;
    }
};

} // namespace

class PruebaArranque : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        QDir(rutaDe(UnNivelMasArriba)).removeRecursively();
        QVERIFY(rutaDe(LaDeQt).startsWith(escuela::dirLanzador()));
    }

    void cleanup()
    {
        qDeleteAll(traductores());
        QLocale::setDefault(QLocale::c());
        QCOMPARE(cancelar(), u"Cancel"_s);
    }

    void laAplicacionSeLlamaQuillayDeLumbre()
    {
        quillay::prepararAplicacion(*qApp);
        QCOMPARE(QCoreApplication::applicationName(), u"Quillay"_s);
        QCOMPARE(QCoreApplication::organizationName(), u"Lumbre"_s);
    }

    void todasLasVentanasLlevanElIcono()
    {
        quillay::prepararAplicacion(*qApp);
        const QImage icono = QIcon(u":/quillay.png"_s).pixmap(64, 64).toImage();
        QVERIFY(!icono.isNull());
        const QWidget ventana;
        QCOMPARE(ventana.windowIcon().pixmap(64, 64).toImage(), icono);
    }

    void elCatalogoEsElDeLaPrimeraCarpetaQueLoTiene_data()
    {
        QTest::addColumn<Carpetas>("carpetas");
        QTest::addColumn<QString>("esperado");
        QTest::newRow("junto al programa") << Carpetas(JuntoAlPrograma) << u"junto"_s;
        QTest::newRow("un nivel más arriba") << Carpetas(UnNivelMasArriba) << u"arriba"_s;
        QTest::newRow("la de Qt") << Carpetas(LaDeQt) << u"de Qt"_s;
        QTest::newRow("junto y arriba") << (JuntoAlPrograma | UnNivelMasArriba) << u"junto"_s;
        QTest::newRow("junto y la de Qt") << (JuntoAlPrograma | LaDeQt) << u"junto"_s;
        QTest::newRow("arriba y la de Qt") << (UnNivelMasArriba | LaDeQt) << u"arriba"_s;
        QTest::newRow("las tres") << (JuntoAlPrograma | UnNivelMasArriba | LaDeQt) << u"junto"_s;
    }

    void elCatalogoEsElDeLaPrimeraCarpetaQueLoTiene()
    {
        QFETCH(const Carpetas, carpetas);
        QFETCH(const QString, esperado);
        if (carpetas.testFlag(JuntoAlPrograma))
            ponerCatalogo(rutaDe(JuntoAlPrograma), u"junto"_s);
        if (carpetas.testFlag(UnNivelMasArriba))
            ponerCatalogo(rutaDe(UnNivelMasArriba), u"arriba"_s);
        if (carpetas.testFlag(LaDeQt))
            ponerCatalogo(rutaDe(LaDeQt), u"de Qt"_s);
        quillay::prepararAplicacion(*qApp);
        QCOMPARE(cancelar(), esperado);
        QCOMPARE(traductores().size(), 1);
        QCOMPARE(traductores().constFirst()->parent(), qApp);
    }

    void losBotonesDeQtSalenTraducidos()
    {
        ponerCatalogo(rutaDe(JuntoAlPrograma), u"Dejalo"_s);
        quillay::prepararAplicacion(*qApp);
        const QDialogButtonBox botones(QDialogButtonBox::Cancel);
        QCOMPARE(botones.button(QDialogButtonBox::Cancel)->text(), u"Dejalo"_s);
    }

    void sinCatalogoSeSigueSinTraducirYSinTraductor()
    {
        quillay::prepararAplicacion(*qApp);
        QCOMPARE(cancelar(), u"Cancel"_s);
        QVERIFY(traductores().isEmpty());
    }

    void unCatalogoQueNoSirveEsComoQueNoEste()
    {
        escuela::escribir(rutaDe(JuntoAlPrograma) + "/qtbase_es.qm"_L1, "no soy un catálogo");
        ponerCatalogo(rutaDe(LaDeQt), u"de Qt"_s);
        quillay::prepararAplicacion(*qApp);
        QCOMPARE(cancelar(), u"de Qt"_s);
    }

    void elIdiomaDelSistemaNoCuenta()
    {
        QLocale::setDefault(QLocale(QLocale::French));
        ponerCatalogo(rutaDe(JuntoAlPrograma), u"Annuler"_s, u"fr"_s);
        ponerCatalogo(rutaDe(LaDeQt), u"Cancelar"_s);
        quillay::prepararAplicacion(*qApp);
        QCOMPARE(cancelar(), u"Cancelar"_s);
    }

    void conSoloOtroIdiomaNoSeTraduceNada()
    {
        QLocale::setDefault(QLocale(QLocale::French));
        ponerCatalogo(rutaDe(JuntoAlPrograma), u"Annuler"_s, u"fr"_s);
        quillay::prepararAplicacion(*qApp);
        QCOMPARE(cancelar(), u"Cancel"_s);
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaArranque, AplicacionConSuQt>(argc, argv);
}

#include "prueba_arranque.moc"
