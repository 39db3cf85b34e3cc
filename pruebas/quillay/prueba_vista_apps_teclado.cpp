#include "quillay/vista_apps.h"

#include "pruebas/apoyo/principal.h"
#include "pruebas/quillay/inicio.h"

#include <QTabBar>

using namespace Qt::StringLiterals;

namespace {

/// Dos recientes de Ana, de Ceibo: "uno" es el más nuevo.
void anotarDosRecientes()
{
    const QDateTime ahora = QDateTime::currentDateTime();
    ombu::Recientes::registrar(u"id-Ana"_s, {u"/t/dos"_s, u"ceibo"_s, ahora.addSecs(-120), false});
    ombu::Recientes::registrar(u"id-Ana"_s, {u"/t/uno"_s, u"ceibo"_s, ahora.addSecs(-60), false});
}

} // namespace

class PruebaVistaAppsTeclado : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        escuela::instalarApp(u"garza"_s);
        escuela::instalarApp(u"ceibo"_s);
        anotarDosRecientes();
    }

    void alLlegarElTecladoEstaEnLaPrimeraAppInstalada()
    {
        QFile::remove(escuela::dirLanzador() + "/Ceibo/ceibo.exe"_L1);
        escuela::instalarApp(u"hornero"_s);
        Inicio en;
        en_pantalla::mostrar(en.vista);
        en.vista.enfocarInicio();
        QCOMPARE(QApplication::focusWidget(), en_pantalla::boton(en.vista, u"Garza"_s));
    }

    void alLlegarSinNingunaAppElTecladoEstaEnLaLista()
    {
        escuela::vaciar();
        anotarDosRecientes();
        Inicio en;
        en_pantalla::mostrar(en.vista);
        en.vista.enfocarInicio();
        QCOMPARE(QApplication::focusWidget(), en.recientes());
    }

    void elTabuladorRecorreLaPantallaDeArribaAAbajo()
    {
        Inicio en;
        en_pantalla::mostrar(en.vista);
        const QList<QWidget *> camino{en_pantalla::boton(en.vista, u"Cerrar sesión"_s),
                                      en_pantalla::boton(en.vista, u"Ceibo"_s),
                                      en_pantalla::boton(en.vista, u"Garza"_s),
                                      en.pestanas->tabBar(), en.recientes()};
        camino.constFirst()->setFocus();
        for (const QWidget *siguiente : camino.sliced(1) + camino.first(1)) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), siguiente);
        }
    }

    void refrescarDejaElTecladoEnLaListaYEnLaMismaEntrada()
    {
        Inicio en;
        en_pantalla::mostrar(en.vista);
        en.recientes()->setCurrentRow(1);
        en.recientes()->setFocus();
        en.vista.mostrarSesion(en.sesion.get());
        QCOMPARE(QApplication::focusWidget(), en.recientes());
        QCOMPARE(en.recientes()->currentItem()->text(), u"dos"_s);
    }

    void refrescarSigueALaEntradaAunqueCambieDeLugar()
    {
        Inicio en;
        en_pantalla::mostrar(en.vista);
        en.recientes()->setCurrentRow(0);
        en.recientes()->setFocus();
        ombu::Recientes::registrar(u"id-Ana"_s,
                                   {u"/t/tres"_s, u"ceibo"_s, QDateTime::currentDateTime(), false});
        en.vista.mostrarSesion(en.sesion.get());
        QCOMPARE(en.filas(0), QStringList({u"tres"_s, u"uno"_s, u"dos"_s}));
        QCOMPARE(en.recientes()->currentItem()->text(), u"uno"_s);
    }

    void siLaEntradaYaNoEstaElTecladoIgualQuedaEnLaLista()
    {
        Inicio en;
        en_pantalla::mostrar(en.vista);
        en.recientes()->setCurrentRow(0);
        en.recientes()->setFocus();
        QFile::remove(ombu::Recientes::rutaArchivo(u"id-Ana"_s));
        en.vista.mostrarSesion(en.sesion.get());
        QCOMPARE(QApplication::focusWidget(), en.recientes());
        QVERIFY(!en.recientes()->currentItem());
    }

    void siLaPestanaYaNoEstaElTecladoPasaALaPrimeraLista()
    {
        Inicio en;
        en_pantalla::mostrar(en.vista);
        en.pestanas->setCurrentIndex(2);
        en.lista(2)->setFocus();
        QFile::remove(escuela::dirLanzador() + "/Garza/garza.exe"_L1);
        en.vista.mostrarSesion(en.sesion.get());
        QCOMPARE(QApplication::focusWidget(), en.recientes());
    }

    void refrescarNoSacaElTecladoDeDondeEste_data()
    {
        QTest::addColumn<QString>("boton"); // Vacío: los títulos de las pestañas.
        QTest::newRow("una app") << u"Garza"_s;
        QTest::newRow("cerrar sesión") << u"Cerrar sesión"_s;
        QTest::newRow("los títulos de las pestañas") << QString();
    }

    void refrescarNoSacaElTecladoDeDondeEste()
    {
        QFETCH(const QString, boton);
        Inicio en;
        en_pantalla::mostrar(en.vista);
        QWidget *elegido = boton.isEmpty()
                               ? static_cast<QWidget *>(en.pestanas->tabBar())
                               : static_cast<QWidget *>(en_pantalla::boton(en.vista, boton));
        elegido->setFocus();
        en.vista.mostrarSesion(en.sesion.get());
        QCOMPARE(QApplication::focusWidget(), elegido);
    }

    void volverDeOtroProgramaDejaElTecladoEnLaMismaEntrada()
    {
        Inicio en;
        en_pantalla::mostrar(en.vista);
        en.recientes()->setCurrentRow(1);
        en.recientes()->setFocus();
        en_pantalla::irAOtroPrograma();
        en_pantalla::volver(en.vista);
        QTRY_COMPARE(QApplication::focusWidget(), en.recientes());
        QCOMPARE(en.recientes()->currentItem()->text(), u"dos"_s);
    }

    void abrirConIntroDejaElTecladoEnLaListaYEnLoAbierto()
    {
        Inicio en;
        en_pantalla::mostrar(en.vista);
        en.abrirConIntro(0, 1);
        QCOMPARE(en.filas(0), QStringList({u"dos"_s, u"uno"_s}));
        QCOMPARE(QApplication::focusWidget(), en.recientes());
        QCOMPARE(en.recientes()->currentItem()->text(), u"dos"_s);
    }

    void despuesDeAbrirConIntroLasFlechasSiguenDesdeAhi()
    {
        Inicio en;
        en_pantalla::mostrar(en.vista);
        en.abrirConIntro(0, 1);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(escuela::arranquesDe(u"ceibo"_s, 2).size(), 2);
        QCOMPARE(en.filas(0), QStringList({u"uno"_s, u"dos"_s}));
        QCOMPARE(QApplication::focusWidget(), en.recientes());
    }

    void abrirConElMouseTambienLoDejaEnLaLista()
    {
        Inicio en;
        en_pantalla::mostrar(en.vista);
        en_pantalla::dobleClic(en.recientes(), 1);
        QCOMPARE(en.filas(0), QStringList({u"dos"_s, u"uno"_s}));
        QCOMPARE(QApplication::focusWidget(), en.recientes());
    }

    void lasFlechasDeUnaListaVaciaNoSeVanDeElla()
    {
        QFile::remove(ombu::Recientes::rutaArchivo(u"id-Ana"_s));
        Inicio en;
        en_pantalla::mostrar(en.vista);
        en.recientes()->setFocus();
        QTest::keyClick(en.recientes(), Qt::Key_Down);
        QTest::keyClick(en.recientes(), Qt::Key_Return);
        QVERIFY(!en.recientes()->currentItem());
        QCOMPARE(QApplication::focusWidget(), en.recientes());
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaVistaAppsTeclado, QApplication>(argc, argv);
}

#include "prueba_vista_apps_teclado.moc"
