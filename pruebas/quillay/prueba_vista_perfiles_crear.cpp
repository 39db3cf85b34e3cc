#include "quillay/vista_perfiles.h"

#include "pruebas/apoyo/caja_contestada.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/quillay/pantalla_de_perfiles.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QInputDialog>

using namespace Qt::StringLiterals;

using ombu::Perfil;
using ombu::PerfilesLocales;

class PruebaVistaPerfilesCrear : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { escuela::vaciar(); }

    void crearPreguntaElNombreEnUnDialogoVacio()
    {
        PantallaDePerfiles pantalla;
        CajaContestada caja(CajaContestada::Cancelar);
        caja.antesDeContestar([&pantalla] {
            const auto *dialogo = qobject_cast<QInputDialog *>(QApplication::activeModalWidget());
            QVERIFY(dialogo);
            QCOMPARE(dialogo->parentWidget(), &pantalla.vista);
            QCOMPARE(dialogo->textEchoMode(), QLineEdit::Normal);
            QCOMPARE(dialogo->textValue(), QString());
        });
        pantalla.vista.crearPerfil();
        QVERIFY(caja.seMostro());
        QCOMPARE(caja.titulo(), u"Nuevo perfil"_s);
        QCOMPARE(caja.texto(), u"Nombre:"_s);
    }

    void elBotonAbreElDialogo_data()
    {
        QTest::addColumn<bool>("conTeclado");
        QTest::newRow("con el mouse") << false;
        QTest::newRow("con la tecla Intro") << true;
    }

    void elBotonAbreElDialogo()
    {
        QFETCH(const bool, conTeclado);
        PantallaDePerfiles pantalla;
        en_pantalla::mostrar(pantalla.vista);
        QAbstractButton *crear = en_pantalla::boton(pantalla.vista, u"Crear nuevo perfil"_s);
        const CajaContestada caja(CajaContestada::Aceptar, u"Ana"_s);
        if (conTeclado) {
            crear->setFocus();
            QTest::keyClick(crear, Qt::Key_Return);
        } else {
            en_pantalla::apretar(crear);
        }
        QVERIFY(caja.seMostro());
        QCOMPARE(pantalla.elegido().nombre, u"Ana"_s);
    }

    void crearGuardaMuestraAlFinalYElige()
    {
        guardarAnaYBeto();
        PantallaDePerfiles pantalla;
        pantalla.vista.refrescar();
        const CajaContestada caja(CajaContestada::Aceptar, u"  Caro Díaz \t"_s);
        pantalla.vista.crearPerfil();

        const Perfil caro = pantalla.elegido();
        QCOMPARE(caro.nombre, u"Caro Díaz"_s);
        QCOMPARE(caro.color, u"#D4570A"_s); // El tercero de la paleta.
        QCOMPARE(pantalla.filas(), QStringList({u"Beto"_s, u"Ana"_s, u"Caro Díaz"_s}));
        const QList<Perfil> guardados = PerfilesLocales::listar();
        QCOMPARE(guardados.size(), 3);
        QCOMPARE(guardados.at(2).id, caro.id);
        QCOMPARE(guardados.at(2).nombre, caro.nombre);
    }

    void sinUnNombreNoSeCreaNada_data()
    {
        QTest::addColumn<CajaContestada::Respuesta>("respuesta");
        QTest::addColumn<QString>("escrito");
        QTest::newRow("cancelar") << CajaContestada::Cancelar << u""_s;
        QTest::newRow("cancelar con un nombre escrito") << CajaContestada::Cancelar << u"Ana"_s;
        QTest::newRow("aceptar sin escribir") << CajaContestada::Aceptar << u""_s;
        QTest::newRow("aceptar con espacios") << CajaContestada::Aceptar << u" \u00A0  "_s;
    }

    void sinUnNombreNoSeCreaNada()
    {
        QFETCH(const CajaContestada::Respuesta, respuesta);
        QFETCH(const QString, escrito);
        PantallaDePerfiles pantalla;
        const CajaContestada caja(respuesta, escrito);
        pantalla.vista.crearPerfil();
        QVERIFY(caja.seMostro());
        QCOMPARE(pantalla.elegidos.size(), 0);
        QVERIFY(escuela::archivosBajo(escuela::dirDatos()).isEmpty());
    }

    void siNoSePuedeGuardarIgualSeEligeElNuevo()
    {
        QDir().mkpath(PerfilesLocales::rutaArchivo()); // Una carpeta en su lugar.
        PantallaDePerfiles pantalla;
        const CajaContestada caja(CajaContestada::Aceptar, u"Ana"_s);
        pantalla.vista.crearPerfil();
        QCOMPARE(pantalla.elegido().nombre, u"Ana"_s);
        QCOMPARE(pantalla.filas(), QStringList());
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaVistaPerfilesCrear, QApplication>(argc, argv);
}

#include "prueba_vista_perfiles_crear.moc"
