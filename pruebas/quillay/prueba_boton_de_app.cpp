#include "quillay/boton_de_app.h"

#include "ombu/apps_registro.h"

#include "pruebas/apoyo/principal.h"
#include "pruebas/quillay/en_pantalla.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

using quillay::BotonDeApp;

namespace {

const ombu::AppInfo &ceibo()
{
    return *ombu::appPorId(u"ceibo"_s);
}

QIcon icono()
{
    QPixmap imagen(64, 64);
    imagen.fill(Qt::red);
    return imagen;
}

/// Una ventana con el botón de Ceibo y otro, para poder sacarle el teclado.
struct VentanaConBotones
{
    VentanaConBotones()
        : ceibo(new BotonDeApp(::ceibo(), icono(), true, &ventana))
        , otro(new QToolButton(&ventana))
    {
        auto *fila = new QHBoxLayout(&ventana);
        fila->addWidget(ceibo);
        fila->addWidget(otro);
        otro->setFocusPolicy(Qt::StrongFocus);
        en_pantalla::mostrar(ventana);
    }

    QWidget ventana;
    BotonDeApp *ceibo;
    QToolButton *otro;
};

/// Los colores que hay en el medio de cada borde del botón, a un pixel de afuera.
QList<QColor> coloresDelBorde(BotonDeApp &boton)
{
    const QImage imagen = boton.grab().toImage();
    const int derecha = imagen.width() - 2;
    const int abajo = imagen.height() - 2;
    return {imagen.pixelColor(imagen.width() / 2, 1), imagen.pixelColor(imagen.width() / 2, abajo),
            imagen.pixelColor(1, imagen.height() / 2),
            imagen.pixelColor(derecha, imagen.height() / 2)};
}

} // namespace

class PruebaBotonDeApp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void muestraElNombreDebajoDelIcono()
    {
        const BotonDeApp boton(ceibo(), icono(), true, nullptr);
        QCOMPARE(boton.text(), u"Ceibo"_s);
        QCOMPARE(boton.toolButtonStyle(), Qt::ToolButtonTextUnderIcon);
        QCOMPARE(boton.iconSize(), QSize(64, 64));
        QCOMPARE(boton.icon().pixmap(64, 64).toImage(), icono().pixmap(64, 64).toImage());
    }

    void tieneUnTamanoFijoYElCursorDeUnaMano()
    {
        const BotonDeApp boton(ceibo(), icono(), true, nullptr);
        QCOMPARE(boton.minimumSize(), QSize(150, 132));
        QCOMPARE(boton.maximumSize(), QSize(150, 132));
        QCOMPARE(boton.cursor().shape(), Qt::PointingHandCursor);
    }

    void sePintaConLosColoresDeLaApp_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("texto");
        QTest::addColumn<QString>("fondo");
        QTest::addColumn<QString>("borde");
        QTest::newRow("Ceibo") << u"ceibo"_s << u"#8e6015"_s << u"#FDEFCE"_s << u"#F9A825"_s;
        QTest::newRow("Garza") << u"garza"_s << u"#00838f"_s << u"#CCE6E9"_s << u"#00838F"_s;
        QTest::newRow("Hornero") << u"hornero"_s << u"#c7322e"_s << u"#FAD7D7"_s << u"#E53935"_s;
        QTest::newRow("Zorzal") << u"zorzal"_s << u"#337936"_s << u"#D9EDDA"_s << u"#43A047"_s;
        QTest::newRow("Benteveo") << u"benteveo"_s << u"#52762b"_s << u"#E5F0D8"_s << u"#7CB342"_s;
    }

    void sePintaConLosColoresDeLaApp()
    {
        QFETCH(const QString, id);
        QFETCH(const QString, texto);
        QFETCH(const QString, fondo);
        QFETCH(const QString, borde);
        const BotonDeApp boton(*ombu::appPorId(id), icono(), true, nullptr);
        QCOMPARE(boton.styleSheet(),
                 QString("QToolButton {  background-color: #FFFFFF; color: "_L1 + texto +
                         ";  font-size: 14px; font-weight: bold;  border: 1px solid #D8D8D8; "
                         "border-radius: 12px;  padding-top: 12px; padding-bottom: 10px; }"
                         "QToolButton:hover {  background-color: "_L1 +
                         fondo + "; border-color: "_L1 + borde +
                         "; }QToolButton:pressed { background-color: #ECECEC; }"
                         "QToolButton:disabled {  background-color: #F2F2F2; color: #9A9A9A;  "
                         "border-color: #E2E2E2; }"_L1));
    }

    void instaladaSePuedeApretarConElMouseYConElTeclado()
    {
        VentanaConBotones en;
        const QSignalSpy clics(en.ceibo, &BotonDeApp::clicked);
        en_pantalla::apretar(en.ceibo);
        QCOMPARE(clics.size(), 1);
        en.ceibo->setFocus();
        QTest::keyClick(en.ceibo, Qt::Key_Space);
        QCOMPARE(clics.size(), 2);
    }

    void noInstaladaNoSePuedeApretar()
    {
        BotonDeApp boton(ceibo(), icono(), false, nullptr);
        QVERIFY(!boton.isEnabled());
        const QSignalSpy clics(&boton, &BotonDeApp::clicked);
        en_pantalla::apretar(&boton);
        QCOMPARE(clics.size(), 0);
    }

    void conElTecladoDibujaUnBordeDelColorDelTexto()
    {
        VentanaConBotones en;
        en.ceibo->setFocus();
        QCOMPARE(coloresDelBorde(*en.ceibo), QList<QColor>(4, QColor::fromString("#8e6015")));
    }

    void sinElTecladoNoLoDibuja()
    {
        VentanaConBotones en;
        en.otro->setFocus();
        QCOMPARE(coloresDelBorde(*en.ceibo), QList<QColor>(4, Qt::white));
    }

    void elBordeSigueLasEsquinasRedondeadas()
    {
        VentanaConBotones en;
        en.otro->setFocus();
        const QImage sin = en.ceibo->grab().toImage();
        en.ceibo->setFocus();
        const QImage con = en.ceibo->grab().toImage();
        for (const QPoint &esquina : {con.rect().topLeft(), con.rect().topRight(),
                                      con.rect().bottomLeft(), con.rect().bottomRight()}) {
            QCOMPARE(con.pixelColor(esquina), sin.pixelColor(esquina));
        }
        QCOMPARE(con.pixelColor(con.rect().center()), sin.pixelColor(sin.rect().center()));
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaBotonDeApp, QApplication>(argc, argv);
}

#include "prueba_boton_de_app.moc"
