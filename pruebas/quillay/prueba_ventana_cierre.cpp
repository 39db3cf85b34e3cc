#include "quillay/ventana_launcher.h"

#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/servidor_guionado.h"
#include "pruebas/apoyo/teclear.h"
#include "pruebas/quillay/lanzador.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QPointer>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

void empezar(Lanzador &en, const QString &nombre = u"Ana"_s)
{
    en.ventana.iniciarSesionStandalone({u"id-"_s + nombre, nombre, {}});
}

int pestanas(const Lanzador &en)
{
    return en.pila->widget(Lanzador::Inicio)->findChild<QTabWidget *>()->count();
}

/// Espera a que el servicio conteste y da cuántas respuestas llegaron en total.
qsizetype respuestasTras(Lanzador &en, qsizetype cuantas)
{
    static_cast<void>(QTest::qWaitFor([&] { return en.respuestas.size() >= cuantas; }));
    return en.respuestas.size();
}

} // namespace

class PruebaVentanaCierre : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        m_servicio = std::make_unique<ServidorGuionado>();
        m_servicio->contestar("/api/ping", {});
        configurarAulared(m_servicio->url().toString());
    }

    void cerrarSesionLaTerminaEnElDiscoYVuelveAElegir()
    {
        Lanzador en;
        empezar(en);
        const QPointer<ombu::Sesion> sesion = en.sesion();
        QVERIFY(QFile::exists(ombu::Sesion::rutaArchivo()));
        en.cerrarSesion();
        QVERIFY(!QFile::exists(ombu::Sesion::rutaArchivo()));
        QCOMPARE(en.pagina(), Lanzador::Perfiles);
        QVERIFY(!en.temporizador->isActive());
        QTRY_VERIFY(!sesion);
        QTRY_COMPARE(en.pagina(), Lanzador::Ingreso);
        QCOMPARE(m_servicio->pedidos().size(), 2); // Al abrir y al cerrar la sesión.
    }

    void alVolverAlIngresoNoQuedaNadaDelGrupoAnterior()
    {
        Lanzador en;
        QTRY_COMPARE(en.pagina(), Lanzador::Ingreso);
        auto *usuario = en.pila->widget(Lanzador::Ingreso)->findChild<QLineEdit *>();
        usuario->setText(u"ana"_s);
        empezar(en);
        en.cerrarSesion();
        QTRY_COMPARE(en.pagina(), Lanzador::Ingreso);
        QCOMPARE(usuario->text(), QString());
    }

    void cerrarDosVecesEnUnaMismaCorridaDaLoMismo()
    {
        Lanzador en;
        QCOMPARE(respuestasTras(en, 1), 1);
        for (int vez = 1; vez <= 2; ++vez) {
            empezar(en);
            QCOMPARE(en.pagina(), Lanzador::Inicio);
            en.cerrarSesion();
            QCOMPARE(en.pagina(), Lanzador::Perfiles);
            QCOMPARE(respuestasTras(en, 1 + vez), 1 + vez); // Una sola pregunta por vez.
            QCOMPARE(en.pagina(), Lanzador::Ingreso);
        }
        m_servicio->contestar("/api/ping", {.estado = 500});
        empezar(en);
        en.cerrarSesion();
        QCOMPARE(respuestasTras(en, 4), 4);
        QCOMPARE(en.pagina(), Lanzador::Perfiles);
    }

    void cerrarSinSesionSoloVuelveAElegir()
    {
        Lanzador en;
        QTRY_COMPARE(en.pagina(), Lanzador::Ingreso);
        en.ventana.cerrarSesion();
        QCOMPARE(en.pagina(), Lanzador::Perfiles);
        QTRY_COMPARE(en.pagina(), Lanzador::Ingreso);
    }

    void cerrarAunqueYaNoEsteElArchivo()
    {
        Lanzador en;
        empezar(en);
        QFile::remove(ombu::Sesion::rutaArchivo());
        en.cerrarSesion();
        QCOMPARE(en.pagina(), Lanzador::Perfiles);
    }

    void volverAlLanzadorDespuesDeCerrarNoTocaLaSesionSoltada()
    {
        Lanzador en;
        en_pantalla::mostrar(en.ventana);
        empezar(en);
        const QPointer<ombu::Sesion> sesion = en.sesion();
        en.cerrarSesion();
        escuela::instalarApp(u"ceibo"_s); // Un refresco agregaría su pestaña.
        const int antes = pestanas(en);

        QVERIFY(sesion); // Soltada, pero todavía no destruida.
        Q_EMIT qApp->applicationStateChanged(Qt::ApplicationActive);
        QCOMPARE(pestanas(en), antes);

        en_pantalla::irAOtroPrograma();
        QVERIFY(!sesion);
        en_pantalla::volver(en.ventana);
        QCOMPARE(pestanas(en), antes);
    }

    void otraSesionDespuesDeCerrarSeVeComoSuya()
    {
        Lanzador en;
        empezar(en, u"Ana"_s);
        en.cerrarSesion();
        empezar(en, u"Beto"_s);
        QCOMPARE(en.pagina(), Lanzador::Inicio);
        QCOMPARE(en.cabecera(), u"Sesión de Beto"_s);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(en.sesion()->grupo(), u"Beto"_s);
    }

    void alLlegarAlInicioElTecladoEstaEnUnaAppYNuncaEnCerrarSesion()
    {
        escuela::instalarApp(u"garza"_s);
        Lanzador en;
        en_pantalla::mostrar(en.ventana);
        empezar(en);
        QCOMPARE(QApplication::focusWidget(), en_pantalla::boton(en.ventana, u"Garza"_s));
        en.cerrarSesion();
        empezar(en);
        QCOMPARE(QApplication::focusWidget(), en_pantalla::boton(en.ventana, u"Garza"_s));
    }

    void alLlegarAlInicioSinAppsElTecladoEstaEnLosRecientes()
    {
        Lanzador en;
        en_pantalla::mostrar(en.ventana);
        empezar(en);
        auto *titulos = en.pila->widget(Lanzador::Inicio)->findChild<QTabWidget *>();
        QCOMPARE(QApplication::focusWidget(), titulos->widget(0));
    }

    void alRetomarUnaSesionElTecladoTambienEstaEnUnaApp()
    {
        escuela::instalarApp(u"garza"_s);
        {
            Lanzador en;
            empezar(en);
        }
        Lanzador en;
        en_pantalla::mostrar(en.ventana);
        QCOMPARE(QApplication::focusWidget(), en_pantalla::boton(en.ventana, u"Garza"_s));
    }

    void alCerrarSesionElTecladoPasaALaPantallaQueLlega()
    {
        Lanzador en;
        en_pantalla::mostrar(en.ventana);
        QTRY_COMPARE(en.pagina(), Lanzador::Ingreso);
        const auto *usuario = en.pila->widget(Lanzador::Ingreso)->findChild<QLineEdit *>();
        QCOMPARE(QApplication::focusWidget(), usuario);
        empezar(en);
        en.cerrarSesion();
        const auto *perfiles = en.pila->widget(Lanzador::Perfiles)->findChild<QListWidget *>();
        QCOMPARE(QApplication::focusWidget(), perfiles);
        QTRY_COMPARE(en.pagina(), Lanzador::Ingreso);
        QCOMPARE(QApplication::focusWidget(), usuario);
    }

    void alVolverAlIngresoElTecladoNoQuedaEnElBotonConQueSeEmpezo()
    {
        m_servicio->contestar("/api/sesiones", {.cuerpo = R"({"token": "t"})"});
        Lanzador en;
        en_pantalla::mostrar(en.ventana);
        QTRY_COMPARE(en.pagina(), Lanzador::Ingreso);
        const QList<QLineEdit *> campos =
            en.pila->widget(Lanzador::Ingreso)->findChildren<QLineEdit *>();
        teclear(campos.at(0), u"ana"_s);
        teclear(campos.at(1), u"secreta"_s);
        QTest::keyClick(campos.at(1), Qt::Key_Return);
        QAbstractButton *empezar = en_pantalla::boton(en.ventana, u"Empezar a trabajar"_s);
        QTRY_VERIFY(empezar->isEnabled());
        empezar->setFocus();
        QTest::keyClick(empezar, Qt::Key_Return);
        QCOMPARE(en.pagina(), Lanzador::Inicio);

        en.cerrarSesion();
        QTRY_COMPARE(en.pagina(), Lanzador::Ingreso);
        QCOMPARE(QApplication::focusWidget(), campos.at(0));
    }

    void laRespuestaDelServicioNoSacaElTecladoDeLosPerfiles()
    {
        m_servicio->contestar("/api/ping", {.estado = 500});
        Lanzador en;
        en_pantalla::mostrar(en.ventana);
        QWidget *crear = en_pantalla::boton(en.ventana, u"Crear nuevo perfil"_s);
        crear->setFocus();
        const qsizetype antes = en.respuestas.size();
        en.auth->verificarConexion();
        QVERIFY(respuestasTras(en, antes + 1) > antes);
        QCOMPARE(QApplication::focusWidget(), crear);
    }

private:
    std::unique_ptr<ServidorGuionado> m_servicio;
};

int main(int argc, char *argv[])
{
    return correr<PruebaVentanaCierre, QApplication>(argc, argv);
}

#include "prueba_ventana_cierre.moc"
