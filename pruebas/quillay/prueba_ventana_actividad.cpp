#include "quillay/ventana_launcher.h"

#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/reloj.h"
#include "pruebas/ombu/sesion_guardada.h"
#include "pruebas/quillay/lanzador.h"

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QWheelEvent>

#include <functional>

using namespace Qt::StringLiterals;

using Gesto = std::function<void(QWidget &)>;
Q_DECLARE_METATYPE(Gesto)

namespace {

QDateTime alEntrar()
{
    return QDateTime(QDate(2025, 3, 14), QTime(10, 0));
}

/// El lanzador con una sesión que él empezó (y guardó) a las 10:00:00.
struct ConSesion : Lanzador
{
    ConSesion() { ventana.iniciarSesionStandalone({u"1"_s, u"Ana"_s, {}}); }

    QTime actividad() const { return sesion()->ultimaActividad().time(); }
};

QString actividadGuardada()
{
    return sesion_guardada::leer()[u"ultima_actividad"_s].toString().section(u'T', 1);
}

void mover(QWidget &donde)
{
    QMouseEvent movimiento(QEvent::MouseMove, QPointF(5, 5), QPointF(5, 5), Qt::NoButton,
                           Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&donde, &movimiento);
}

void enviar(QWidget &donde, QEvent::Type tipo)
{
    QMouseEvent evento(tipo, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton, Qt::LeftButton,
                       Qt::NoModifier);
    QCoreApplication::sendEvent(&donde, &evento);
}

void rodar(QWidget &donde)
{
    QWheelEvent rueda(QPointF(5, 5), QPointF(5, 5), {}, QPoint(0, 120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&donde, &rueda);
}

} // namespace

class PruebaVentanaActividad : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        reloj::poner(alEntrar());
    }

    void estosGestosSonActividad_data()
    {
        QTest::addColumn<Gesto>("gesto");
        QTest::newRow("apretar un botón del mouse")
            << Gesto([](QWidget &w) { enviar(w, QEvent::MouseButtonPress); });
        QTest::newRow("mover el mouse") << Gesto(mover);
        QTest::newRow("apretar una tecla")
            << Gesto([](QWidget &w) { QTest::keyPress(&w, Qt::Key_A); });
        QTest::newRow("girar la rueda") << Gesto(rodar);
    }

    void estosGestosSonActividad()
    {
        QFETCH(const Gesto, gesto);
        const ConSesion en;
        QWidget otra; // De toda la aplicación, no solo de la ventana.
        reloj::poner(alEntrar().addSecs(7));
        gesto(otra);
        QCOMPARE(en.actividad(), QTime(10, 0, 7));
    }

    void ningunOtroEventoEsActividad()
    {
        ConSesion en;
        reloj::poner(alEntrar().addSecs(7));
        const QList<int> cuentan{QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::KeyPress,
                                 QEvent::Wheel};
        for (int tipo = QEvent::None; tipo <= QEvent::MaxUser; ++tipo) {
            QEvent evento(static_cast<QEvent::Type>(tipo));
            if (!cuentan.contains(tipo))
                en.ventana.eventFilter(&en.ventana, &evento);
        }
        QCOMPARE(en.actividad(), QTime(10, 0, 0));
    }

    void soltarYHacerDobleClicNoSonActividad_data()
    {
        QTest::addColumn<QEvent::Type>("tipo");
        QTest::newRow("soltar el botón") << QEvent::MouseButtonRelease;
        QTest::newRow("doble clic") << QEvent::MouseButtonDblClick;
    }

    void soltarYHacerDobleClicNoSonActividad()
    {
        QFETCH(const QEvent::Type, tipo);
        ConSesion en;
        reloj::poner(alEntrar().addSecs(7));
        enviar(en.ventana, tipo);
        QTest::keyRelease(&en.ventana, Qt::Key_A);
        QCOMPARE(en.actividad(), QTime(10, 0, 0));
    }

    void noConsumeNingunEvento()
    {
        ConSesion en;
        for (int tipo = QEvent::None; tipo < QEvent::User; ++tipo) {
            QEvent evento(static_cast<QEvent::Type>(tipo));
            QVERIFY2(!en.ventana.eventFilter(&en.ventana, &evento),
                     QByteArray::number(tipo).constData());
        }
    }

    void loQueSeEscribeLlegaASuCampo()
    {
        const ConSesion en;
        QLineEdit campo;
        QTest::keyClicks(&campo, u"hola"_s);
        QCOMPARE(campo.text(), u"hola"_s);
    }

    void moverElMouseSinPararEscribeElArchivoCadaTreintaSegundos()
    {
        ConSesion en;
        QStringList escritas{actividadGuardada()};
        for (int segundo = 1; segundo <= 95; ++segundo) {
            reloj::poner(alEntrar().addSecs(segundo));
            mover(en.ventana);
            mover(en.ventana);
            if (actividadGuardada() != escritas.constLast())
                escritas.append(actividadGuardada());
        }
        QCOMPARE(escritas,
                 QStringList({u"10:00:00"_s, u"10:00:30"_s, u"10:01:00"_s, u"10:01:30"_s}));
        QCOMPARE(en.actividad(), QTime(10, 1, 35));
    }

    void laPrimeraActividadDeUnaSesionRetomadaSeEscribeYa()
    {
        sesion_guardada::escribir(
            sesion_guardada::deAna(alEntrar().addSecs(-600), alEntrar().addSecs(-60), 0));
        Lanzador en;
        reloj::poner(alEntrar().addSecs(1));
        mover(en.ventana);
        QCOMPARE(actividadGuardada(), u"10:00:01"_s);
    }

    void sinSesionNoSeAnotaNada()
    {
        Lanzador en;
        mover(en.ventana);
        QVERIFY(!QFile::exists(sesion_guardada::ruta()));
    }

    void despuesDeCerrarLaSesionNoSeAnotaNada()
    {
        ConSesion en;
        en.ventana.cerrarSesion();
        reloj::poner(alEntrar().addSecs(60));
        mover(en.ventana); // La sesión soltada todavía no se destruyó.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        mover(en.ventana);
        QVERIFY(!QFile::exists(sesion_guardada::ruta()));
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaVentanaActividad, QApplication>(argc, argv);
}

#include "prueba_ventana_actividad.moc"
