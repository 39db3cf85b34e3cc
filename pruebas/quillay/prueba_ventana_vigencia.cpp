#include "quillay/ventana_launcher.h"

#include "ombu/fechas.h"

#include "pruebas/apoyo/caja_contestada.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/reloj.h"
#include "pruebas/apoyo/servidor_guionado.h"
#include "pruebas/ombu/sesion_guardada.h"
#include "pruebas/quillay/lanzador.h"

#include <QApplication>
#include <QFile>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaximoS = 14460; // Lo que vale una sesión sin estimación, con actividad.

QDateTime alEntrar()
{
    return QDateTime(QDate(2025, 3, 14), QTime(10, 0));
}

/// El lanzador con una sesión guardada que vence a las 10:01:30, retomada a las 10:00:00.
std::unique_ptr<Lanzador> lanzadorPorVencer()
{
    const QDateTime inicio = alEntrar().addSecs(90 - kMaximoS);
    sesion_guardada::escribir(sesion_guardada::deAna(inicio, alEntrar(), 0));
    return std::make_unique<Lanzador>();
}

/// El lanzador con una sesión ya vencida que todavía no se notó.
std::unique_ptr<Lanzador> lanzadorVencido()
{
    auto lanzador = lanzadorPorVencer();
    reloj::poner(alEntrar().addSecs(90));
    return lanzador;
}

void moverElMouse(QWidget &donde)
{
    QMouseEvent movimiento(QEvent::MouseMove, QPointF(5, 5), QPointF(5, 5), Qt::NoButton,
                           Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&donde, &movimiento);
}

} // namespace

class PruebaVentanaVigencia : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        reloj::poner(alEntrar());
    }

    void elTemporizadorEsDeUnMinutoExactoYSeRepite()
    {
        const Lanzador en;
        QCOMPARE(en.temporizador->interval(), 60000);
        QCOMPARE(en.temporizador->timerType(), Qt::PreciseTimer);
        QVERIFY(!en.temporizador->isSingleShot());
        QVERIFY(!en.temporizador->isActive());
    }

    void elPrimerChequeoEsUnMinutoDespuesDeEntrar()
    {
        Lanzador en;
        en.ventana.iniciarSesionStandalone({u"1"_s, u"Ana"_s, {}});
        QVERIFY(en.temporizador->isActive());
        const int falta = en.temporizador->remainingTime();
        QVERIFY2(falta > 55000 && falta <= 60000, QByteArray::number(falta).constData());
    }

    void elTemporizadorCorreSoloConUnaSesion()
    {
        Lanzador en;
        en.ventana.iniciarSesionStandalone({u"1"_s, u"Ana"_s, {}});
        QVERIFY(en.temporizador->isActive());
        en.ventana.cerrarSesion();
        QVERIFY(!en.temporizador->isActive());
        en.ventana.iniciarSesionStandalone({u"1"_s, u"Ana"_s, {}});
        QVERIFY(en.temporizador->isActive());
    }

    void unVencimientoSeNotaEnElChequeoSiguiente()
    {
        const std::unique_ptr<Lanzador> en = lanzadorPorVencer();
        const CajaContestada caja;
        reloj::poner(alEntrar().addSecs(60));
        en->pasarUnMinuto();
        QVERIFY(!caja.seMostro());
        QCOMPARE(en->pagina(), Lanzador::Inicio);
        reloj::poner(alEntrar().addSecs(120));
        en->pasarUnMinuto();
        QVERIFY(caja.seMostro());
        QCOMPARE(en->pagina(), Lanzador::Perfiles);
    }

    void venceAlSegundo()
    {
        const std::unique_ptr<Lanzador> en = lanzadorPorVencer();
        reloj::poner(alEntrar().addSecs(89));
        const CajaContestada caja;
        en->ventana.chequearExpiracion();
        QVERIFY(!caja.seMostro());
        reloj::poner(alEntrar().addSecs(90));
        en->ventana.chequearExpiracion();
        QVERIFY(caja.seMostro());
    }

    void alVencerLoDiceYVuelveAElegir()
    {
        const std::unique_ptr<Lanzador> en = lanzadorVencido();
        const QPointer<ombu::Sesion> sesion = en->sesion();
        const CajaContestada caja;
        en->pasarUnMinuto();
        QCOMPARE(caja.titulo(), u"Quillay"_s);
        QCOMPARE(caja.texto(), u"La sesión terminó. Volvé a iniciar sesión."_s);
        QCOMPARE(caja.icono(), QMessageBox::Information);
        QCOMPARE(caja.botones(), QStringList{u"OK"_s});
        QCOMPARE(en->pagina(), Lanzador::Perfiles);
        QVERIFY(!en->temporizador->isActive());
        QVERIFY(!QFile::exists(sesion_guardada::ruta()));
        QTRY_VERIFY(!sesion);
    }

    void alVencerConElServicioDisponibleSeOfreceElIngreso()
    {
        ServidorGuionado servicio;
        servicio.contestar("/api/ping", {});
        configurarAulared(servicio.url().toString());
        const std::unique_ptr<Lanzador> en = lanzadorVencido();
        const CajaContestada caja;
        en->pasarUnMinuto();
        QCOMPARE(en->pagina(), Lanzador::Perfiles);
        QTRY_COMPARE(en->pagina(), Lanzador::Ingreso);
    }

    void conElAvisoDeVencimientoAbiertoNadaTocaLaSesion()
    {
        const std::unique_ptr<Lanzador> en = lanzadorVencido();
        en_pantalla::mostrar(en->ventana);
        const QByteArray guardada = escuela::leer(sesion_guardada::ruta());
        int avisos = 0;
        CajaContestada caja;
        caja.antesDeContestar([&] {
            ++avisos;
            moverElMouse(en->ventana);
            en->ventana.chequearExpiracion();
            Q_EMIT qApp->applicationStateChanged(Qt::ApplicationActive);
            QCoreApplication::processEvents();
            Q_EMIT qApp->applicationStateChanged(Qt::ApplicationActive);
            QVERIFY(!en->temporizador->isActive());
            QCOMPARE(escuela::leer(sesion_guardada::ruta()), guardada);
        });
        en->pasarUnMinuto();
        QCOMPARE(avisos, 1);
        QCOMPARE(en->pagina(), Lanzador::Perfiles);
    }

    void laActividadDeUnaAppMantieneVivaLaSesion()
    {
        // Pasado el tramo libre, vale mientras la última actividad tenga menos de 16 minutos.
        const QDateTime inicio = alEntrar().addSecs(-6000);
        sesion_guardada::escribir(sesion_guardada::deAna(inicio, alEntrar(), 0));
        const Lanzador en;
        reloj::poner(alEntrar().addSecs(959));
        escuela::sonda({u"anotar-reciente"_s, u"/t/dibujo"_s, u"ceibo"_s});
        reloj::poner(alEntrar().addSecs(960));
        const CajaContestada caja;
        en.pasarUnMinuto();
        QVERIFY(!caja.seMostro());
        QCOMPARE(en.pagina(), Lanzador::Inicio);
    }

    void sinActividadDeNadieLaSesionVence()
    {
        const QDateTime inicio = alEntrar().addSecs(-6000);
        sesion_guardada::escribir(sesion_guardada::deAna(inicio, alEntrar(), 0));
        const Lanzador en;
        reloj::poner(alEntrar().addSecs(960));
        const CajaContestada caja;
        en.pasarUnMinuto();
        QVERIFY(caja.seMostro());
    }

    void unaSesionBorradaPorOtroProgramaTerminaEnElChequeoSiguiente()
    {
        Lanzador en;
        en.ventana.iniciarSesionStandalone({u"1"_s, u"Ana"_s, {}});
        QFile::remove(sesion_guardada::ruta());
        QCOMPARE(en.pagina(), Lanzador::Inicio);
        const CajaContestada caja;
        en.pasarUnMinuto();
        QVERIFY(caja.seMostro());
        QCOMPARE(en.pagina(), Lanzador::Perfiles);
    }

    void chequearSinSesionNoHaceNada()
    {
        Lanzador en;
        const CajaContestada caja;
        en.ventana.chequearExpiracion();
        QVERIFY(!caja.seMostro());
        QCOMPARE(en.pagina(), Lanzador::Perfiles);
    }

    void despuesDeVencerSePuedeEmpezarOtraSesion()
    {
        const std::unique_ptr<Lanzador> en = lanzadorVencido();
        {
            const CajaContestada caja;
            en->pasarUnMinuto();
        }
        en->ventana.iniciarSesionStandalone({u"2"_s, u"Beto"_s, {}});
        QCOMPARE(en->cabecera(), u"Sesión de Beto"_s);
        QVERIFY(en->temporizador->isActive());
        const CajaContestada caja;
        en->pasarUnMinuto();
        QVERIFY(!caja.seMostro());
    }

    void venceMientrasSeAvisaQueUnaAppNoAbre()
    {
        escuela::instalarApp(u"ceibo"_s);
        const std::unique_ptr<Lanzador> en = lanzadorPorVencer();
        QFile::remove(escuela::dirLanzador() + "/Ceibo/ceibo.exe"_L1);
        CajaContestada aviso;
        std::unique_ptr<CajaContestada> vencimiento;
        aviso.antesDeContestar([&] {
            vencimiento = std::make_unique<CajaContestada>();
            reloj::poner(alEntrar().addSecs(90));
            en->pasarUnMinuto();
        });
        en_pantalla::apretar(en_pantalla::boton(en->ventana, u"Ceibo"_s));
        QCOMPARE(aviso.texto(), u"No se pudo abrir Ceibo."_s);
        QCOMPARE(vencimiento->texto(), u"La sesión terminó. Volvé a iniciar sesión."_s);
        QCOMPARE(en->pagina(), Lanzador::Perfiles);
        QVERIFY(!QFile::exists(sesion_guardada::ruta()));
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaVentanaVigencia, QApplication>(argc, argv);
}

#include "prueba_ventana_vigencia.moc"
