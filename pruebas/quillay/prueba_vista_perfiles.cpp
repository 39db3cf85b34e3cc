#include "quillay/vista_perfiles.h"

#include "pruebas/apoyo/archivos_ilegibles.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/quillay/nombres_hostiles.h"
#include "pruebas/quillay/pantalla_de_perfiles.h"

#include <QApplication>
#include <QLabel>
#include <QMetaMethod>
#include <QPushButton>
#include <QVBoxLayout>

#include <limits>

using namespace Qt::StringLiterals;

using ombu::Perfil;
using ombu::PerfilesLocales;
using quillay::VistaPerfiles;

namespace {

QImage puntoDe(const QString &color)
{
    guardarPerfiles({{u"a-1"_s, u"Ana"_s, color}});
    PantallaDePerfiles pantalla;
    pantalla.vista.refrescar();
    return pantalla.lista->item(0)->icon().pixmap(24, 24).toImage();
}

} // namespace

class PruebaVistaPerfiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { escuela::vaciar(); }

    void suUnicoMetodoParaElSistemaDeObjetosEsLaSenal()
    {
        const QMetaObject &meta = VistaPerfiles::staticMetaObject;
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
        const QMetaMethod senal = meta.method(meta.methodOffset());
        QCOMPARE(senal.methodSignature(), QByteArray("perfilElegido(ombu::Perfil)"));
        QCOMPARE(senal.methodType(), QMetaMethod::Signal);
    }

    void disponeTituloAvisoListaYBoton()
    {
        const VistaPerfiles vista(nullptr);
        const auto *caja = qobject_cast<QVBoxLayout *>(vista.layout());
        QVERIFY(caja);
        QCOMPARE(caja->contentsMargins(), QMargins(48, 32, 48, 32));
        QCOMPARE(caja->count(), 4);

        const auto *titulo = qobject_cast<QLabel *>(caja->itemAt(0)->widget());
        QCOMPARE(titulo->text(), u"¿Quién va a trabajar?"_s);
        QCOMPARE(titulo->styleSheet(), u"font-size: 20px; font-weight: bold;"_s);
        const auto *aviso = qobject_cast<QLabel *>(caja->itemAt(1)->widget());
        QCOMPARE(aviso->text(), u"Sin conexión a Aulared — perfiles de esta computadora."_s);
        QCOMPARE(aviso->styleSheet(), u"color: #666;"_s);
        const auto *lista = qobject_cast<QListWidget *>(caja->itemAt(2)->widget());
        QCOMPARE(lista->iconSize(), QSize(24, 24));
        const auto *crear = qobject_cast<QPushButton *>(caja->itemAt(3)->widget());
        QCOMPARE(crear->text(), u"Crear nuevo perfil"_s);

        for (int i = 0; i < caja->count(); ++i)
            QCOMPARE(caja->stretch(i), i == 2 ? 1 : 0);
    }

    void noLeeLosPerfilesHastaQueSeRefresca()
    {
        guardarAnaYBeto();
        PantallaDePerfiles pantalla;
        QCOMPARE(pantalla.filas(), QStringList());
        pantalla.vista.refrescar();
        QCOMPARE(pantalla.filas(), QStringList({u"Beto"_s, u"Ana"_s}));
    }

    void refrescarReemplazaLaListaYNoEligeNinguno()
    {
        guardarAnaYBeto();
        PantallaDePerfiles pantalla;
        pantalla.vista.refrescar();
        pantalla.lista->setCurrentRow(1);
        guardarPerfiles({{u"c-3"_s, u"Caro"_s, u"#0000FF"_s}});
        pantalla.vista.refrescar();
        QCOMPARE(pantalla.filas(), QStringList{u"Caro"_s});
        QCOMPARE(pantalla.lista->currentRow(), -1);
        QVERIFY(pantalla.lista->selectedItems().isEmpty());
        QCOMPARE(pantalla.elegidos.size(), 0);
    }

    void dosPerfilesConElMismoNombreSonDosFilas()
    {
        guardarPerfiles({{u"1"_s, u"Ana"_s, u"#FF0000"_s}, {u"2"_s, u"Ana"_s, u"#00FF00"_s}});
        PantallaDePerfiles pantalla;
        pantalla.vista.refrescar();
        QCOMPARE(pantalla.filas(), QStringList({u"Ana"_s, u"Ana"_s}));
        pantalla.vista.elegirFila(1);
        QCOMPARE(pantalla.elegido().id, u"2"_s);
    }

    void unArchivoIlegibleSeVeComoUnaListaVacia_data() { filasDeArchivosIlegibles(); }

    void unArchivoIlegibleSeVeComoUnaListaVacia()
    {
        QFETCH(const Estropeo, estropear);
        guardarAnaYBeto();
        PantallaDePerfiles pantalla;
        pantalla.vista.refrescar();
        estropear(PerfilesLocales::rutaArchivo());
        pantalla.vista.refrescar();
        QCOMPARE(pantalla.filas(), QStringList());
        pantalla.vista.elegirFila(0);
        QCOMPARE(pantalla.elegidos.size(), 0);
    }

    void cadaNombreSeMuestraTalCual_data() { filasDeNombresHostiles(); }

    void cadaNombreSeMuestraTalCual()
    {
        QFETCH(const QString, nombre);
        guardarPerfiles({{u"1"_s, nombre, u"#FF0000"_s}});
        PantallaDePerfiles pantalla;
        pantalla.vista.refrescar();
        en_pantalla::mostrar(pantalla.vista);
        QCOMPARE(pantalla.filas(), QStringList{nombre});
        QVERIFY(pantalla.vista.minimumSizeHint().width() < 920);
        pantalla.vista.elegirFila(0);
        QCOMPARE(pantalla.elegido().nombre, nombre);
    }

    void milPerfilesSeListanTodosYCadaFilaEligeElSuyo()
    {
        constexpr int kCuantos = 1000;
        QList<Perfil> perfiles;
        for (int i = 0; i < kCuantos; ++i)
            perfiles.append({u"id-%1"_s.arg(i), u"Persona %1"_s.arg(i), u"#1A6BAF"_s});
        guardarPerfiles(perfiles);
        PantallaDePerfiles pantalla;
        pantalla.vista.refrescar();
        QCOMPARE(pantalla.lista->count(), kCuantos);
        for (int i = 0; i < kCuantos; ++i) {
            pantalla.vista.elegirFila(i);
            const auto elegido = pantalla.elegidos.takeFirst().constFirst().value<Perfil>();
            QCOMPARE(elegido.id, u"id-%1"_s.arg(i));
        }
    }

    void elPuntoEsUnCirculoDelColorDelPerfilSinContorno()
    {
        const QImage punto = puntoDe(u"#1A6BAF"_s);
        QCOMPARE(punto.size(), QSize(24, 24));
        const QColor color = QColor::fromString("#1A6BAF");
        for (const QPoint &adentro : {QPoint(12, 12), QPoint(3, 12), QPoint(20, 12), QPoint(12, 3),
                                      QPoint(12, 20), QPoint(6, 6)}) {
            QCOMPARE(punto.pixelColor(adentro), color);
        }
        for (const QPoint &afuera : {QPoint(0, 0), QPoint(23, 23), QPoint(1, 12), QPoint(22, 12),
                                     QPoint(12, 1), QPoint(12, 22), QPoint(3, 3), QPoint(20, 20)}) {
            QCOMPARE(punto.pixelColor(afuera).alpha(), 0);
        }
    }

    void elBordeDelPuntoEsSuave()
    {
        const QImage punto = puntoDe(u"#000000"_s);
        int intermedios = 0;
        for (int y = 0; y < punto.height(); ++y) {
            for (int x = 0; x < punto.width(); ++x) {
                const int opacidad = punto.pixelColor(x, y).alpha();
                intermedios += opacidad > 0 && opacidad < 255 ? 1 : 0;
            }
        }
        QVERIFY2(intermedios >= 16, QByteArray::number(intermedios).constData());
    }

    void unColorQueNoSeEntiendeIgualTieneSuFila_data()
    {
        QTest::addColumn<QString>("color");
        QTest::newRow("vacío") << u""_s;
        QTest::newRow("no es un color") << u"celestito"_s;
    }

    void unColorQueNoSeEntiendeIgualTieneSuFila()
    {
        QFETCH(const QString, color);
        const QImage punto = puntoDe(color);
        QCOMPARE(punto.size(), QSize(24, 24));
        QCOMPARE(punto.pixelColor(0, 0).alpha(), 0);
    }

    void elegirUnaFilaEmiteSuPerfilEntero()
    {
        guardarAnaYBeto();
        PantallaDePerfiles pantalla;
        pantalla.vista.refrescar();
        pantalla.vista.elegirFila(1);
        QCOMPARE(pantalla.elegido().id, u"a-1"_s);
        QCOMPARE(pantalla.elegido().nombre, u"Ana"_s);
        QCOMPARE(pantalla.elegido().color, u"#FF0000"_s);
    }

    void elegirUnaFilaQueNoExisteNoHaceNada_data()
    {
        QTest::addColumn<int>("fila");
        QTest::newRow("ninguna") << -1;
        QTest::newRow("después de la última") << 2;
        QTest::newRow("muy negativa") << std::numeric_limits<int>::min();
        QTest::newRow("enorme") << std::numeric_limits<int>::max();
    }

    void elegirUnaFilaQueNoExisteNoHaceNada()
    {
        QFETCH(const int, fila);
        guardarAnaYBeto();
        PantallaDePerfiles pantalla;
        pantalla.vista.refrescar();
        pantalla.vista.elegirFila(fila);
        QCOMPARE(pantalla.elegidos.size(), 0);
    }

    void alLlegarElTecladoEstaEnLaLista()
    {
        guardarAnaYBeto();
        PantallaDePerfiles pantalla;
        pantalla.vista.refrescar();
        en_pantalla::mostrar(pantalla.vista);
        pantalla.vista.setFocus();
        QVERIFY(pantalla.lista->hasFocus());
        QVERIFY(pantalla.lista->selectedItems().isEmpty());
    }

    void unDobleClicEnUnaFilaLaElige()
    {
        guardarAnaYBeto();
        PantallaDePerfiles pantalla;
        pantalla.vista.refrescar();
        en_pantalla::mostrar(pantalla.vista);
        en_pantalla::dobleClic(pantalla.lista, 1);
        QCOMPARE(pantalla.elegido().nombre, u"Ana"_s);
    }

    void laTeclaIntroEligeLaFilaActual()
    {
        guardarAnaYBeto();
        PantallaDePerfiles pantalla;
        pantalla.vista.refrescar();
        en_pantalla::mostrar(pantalla.vista);
        pantalla.lista->setCurrentRow(0);
        pantalla.lista->setFocus();
        QTest::keyClick(pantalla.lista, Qt::Key_Return);
        QCOMPARE(pantalla.elegido().nombre, u"Beto"_s);
    }

    void activarSinFilaActualNoEmiteNada()
    {
        guardarAnaYBeto();
        PantallaDePerfiles pantalla;
        pantalla.vista.refrescar();
        Q_EMIT pantalla.lista->itemActivated(pantalla.lista->item(0));
        QCOMPARE(pantalla.elegidos.size(), 0);
    }

    void cuentaLaFilaActualYNoLaActivada()
    {
        guardarAnaYBeto();
        PantallaDePerfiles pantalla;
        pantalla.vista.refrescar();
        pantalla.lista->setCurrentRow(1);
        Q_EMIT pantalla.lista->itemActivated(pantalla.lista->item(0));
        QCOMPARE(pantalla.elegido().nombre, u"Ana"_s);
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaVistaPerfiles, QApplication>(argc, argv);
}

#include "prueba_vista_perfiles.moc"
