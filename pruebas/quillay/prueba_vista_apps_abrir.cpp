#include "quillay/vista_apps.h"

#include "ombu/apps_registro.h"
#include "ombu/fechas.h"

#include "pruebas/apoyo/caja_contestada.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/reloj.h"
#include "pruebas/apoyo/sistema.h"
#include "pruebas/quillay/inicio.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

using ombu::ArchivoReciente;
using ombu::Recientes;

namespace {

QDateTime alEmpezar()
{
    return QDateTime(QDate(2025, 3, 14), QTime(9, 5));
}

/// Cuándo se abre: cinco minutos después de empezar.
QDateTime alAbrir()
{
    return alEmpezar().addSecs(300);
}

QString ejecutable(const QString &id)
{
    return ombu::rutaEjecutable(*ombu::appPorId(id), escuela::dirLanzador());
}

void anotar(const QString &persona, const QString &ruta, const QString &app)
{
    Recientes::registrar(u"id-"_s + persona, {ruta, app, alEmpezar().addDays(-1), true});
}

/// Los recientes de una persona, cada uno como "ruta app fecha temporal".
QStringList recientesDe(const QString &persona)
{
    QStringList textos;
    const QList<ArchivoReciente> archivos = Recientes::listar(u"id-"_s + persona);
    for (const ArchivoReciente &archivo : archivos) {
        textos.append(u"%1 %2 %3 %4"_s.arg(archivo.ruta, archivo.app,
                                           ombu::textoDeFecha(archivo.ultimoUso),
                                           archivo.temporal ? u"sí"_s : u"no"_s));
    }
    return textos;
}

/// Maneras en que una app del catálogo puede no arrancar.
enum Falla { Falta, SinPermiso, NoEsUnPrograma };

void estropear(const QString &id, Falla falla)
{
    QFile programa(ejecutable(id));
    switch (falla) {
    case Falta:
        programa.remove();
        break;
    case SinPermiso:
        programa.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        break;
    case NoEsUnPrograma:
        programa.remove();
        escuela::escribir(programa.fileName(), QByteArray("\x01\x02\x03", 3));
        programa.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        break;
    }
}

void filasDeFallas()
{
    QTest::addColumn<Falla>("falla");
    QTest::newRow("no está") << Falta;
    if (sistema::kHayPermisoDeEjecucion)
        QTest::newRow("no se puede ejecutar") << SinPermiso;
    QTest::newRow("no es un programa") << NoEsUnPrograma;
}

void verificarAviso(const CajaContestada &caja, const QString &texto)
{
    QVERIFY(caja.seMostro());
    QCOMPARE(caja.titulo(), u"Quillay"_s);
    QCOMPARE(caja.texto(), texto);
    QCOMPARE(caja.icono(), QMessageBox::Warning);
    QCOMPARE(caja.botones(), QStringList{u"OK"_s});
}

} // namespace

class PruebaVistaAppsAbrir : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        reloj::poner(alEmpezar());
        escuela::instalarApp(u"ceibo"_s);
    }

    void elBotonArrancaLaAppSinArgumentos()
    {
        const Inicio en;
        en_pantalla::apretar(en_pantalla::boton(en.vista, u"Ceibo"_s));
        QCOMPARE(escuela::arranquesDe(u"ceibo"_s, 1), QList<QStringList>{QStringList()});
        QCOMPARE(recientesDe(u"Ana"_s), QStringList());
    }

    void cadaBotonArrancaSuApp()
    {
        escuela::instalarApp(u"garza"_s);
        const Inicio en;
        en_pantalla::apretar(en_pantalla::boton(en.vista, u"Garza"_s));
        QCOMPARE(escuela::arranquesDe(u"garza"_s, 1).size(), 1);
        en_pantalla::apretar(en_pantalla::boton(en.vista, u"Ceibo"_s));
        QCOMPARE(escuela::arranquesDe(u"ceibo"_s, 1).size(), 1);
        QCOMPARE(escuela::arranquesDe(u"garza"_s, 1).size(), 1);
    }

    void unTrabajoArrancaLaAppConElNombreDeSuCarpeta()
    {
        guardarTrabajo(u"Mi casa"_s, u"Otro nombre"_s);
        Inicio en;
        en.pestanas->setCurrentIndex(1);
        en_pantalla::mostrar(en.vista);
        en_pantalla::dobleClic(en.lista(1), 0);
        QCOMPARE(escuela::arranquesDe(u"ceibo"_s, 1),
                 QList<QStringList>{QStringList({u"--proyecto"_s, u"Mi casa"_s})});
    }

    void unRecienteArrancaSuAppConElNombreDelArchivo_data()
    {
        QTest::addColumn<QString>("ruta");
        QTest::addColumn<QString>("nombre");
        QTest::newRow("archivo") << u"/t/dibujos/gato negro.dat"_s << u"gato negro.dat"_s;
        QTest::newRow("que ya no existe") << u"/no/hay/tal.dat"_s << u"tal.dat"_s;
        QTest::newRow("con comillas") << u"/t/a \"b\" 'c' $d `e`"_s << u"a \"b\" 'c' $d `e`"_s;
        QTest::newRow("que parece una opción") << u"/t/--proyecto"_s << u"--proyecto"_s;
        QTest::newRow("con acentos y dibujos") << u"/t/ñandú 🦜"_s << u"ñandú 🦜"_s;
        QTest::newRow("con marcas de reemplazo") << u"/t/%1 %2"_s << u"%1 %2"_s;
    }

    void unRecienteArrancaSuAppConElNombreDelArchivo()
    {
        QFETCH(const QString, ruta);
        QFETCH(const QString, nombre);
        anotar(u"Ana"_s, ruta, u"ceibo"_s);
        const Inicio en;
        en.abrirConIntro(0, 0);
        QCOMPARE(escuela::arranquesDe(u"ceibo"_s, 1),
                 QList<QStringList>{QStringList({u"--proyecto"_s, nombre})});
    }

    void unRecienteDeLaSegundaSuiteTambienSeAbre()
    {
        escuela::instalarApp(u"calandria"_s);
        anotar(u"Ana"_s, u"/t/nota.cln"_s, u"calandria"_s);
        const Inicio en;
        en.abrirConIntro(0, 0);
        QCOMPARE(escuela::arranquesDe(u"calandria"_s, 1).constFirst().constLast(), u"nota.cln"_s);
    }

    void laAppHeredaLaCarpetaDeTrabajo()
    {
        const Inicio en;
        en_pantalla::apretar(en_pantalla::boton(en.vista, u"Ceibo"_s));
        QCOMPARE(escuela::arranquesDe(u"ceibo"_s, 1).size(), 1);
        const QByteArray registro = escuela::leer(escuela::dirPersonal() + "/arranques-ceibo"_L1);
        QCOMPARE(QString::fromUtf8(registro).trimmed(), QDir::currentPath());
    }

    void arrancarUnaAppEsActividad()
    {
        const Inicio en;
        reloj::poner(alAbrir());
        en_pantalla::apretar(en_pantalla::boton(en.vista, u"Ceibo"_s));
        QCOMPARE(en.sesion->ultimaActividad(), alAbrir());
    }

    void unaAppQueNoArrancaNoEsActividad()
    {
        const Inicio en;
        estropear(u"ceibo"_s, NoEsUnPrograma);
        reloj::poner(alAbrir());
        const CajaContestada caja;
        en_pantalla::apretar(en_pantalla::boton(en.vista, u"Ceibo"_s));
        QVERIFY(caja.seMostro());
        QCOMPARE(en.sesion->ultimaActividad(), alEmpezar());
    }

    void siNoArrancaLoDice_data() { filasDeFallas(); }

    void siNoArrancaLoDice()
    {
        QFETCH(const Falla, falla);
        const Inicio en;
        estropear(u"ceibo"_s, falla);
        const CajaContestada caja;
        en_pantalla::apretar(en_pantalla::boton(en.vista, u"Ceibo"_s));
        verificarAviso(caja, u"No se pudo abrir Ceibo."_s);
        QCOMPARE(recientesDe(u"Ana"_s), QStringList());
    }

    void unaAppQueMuereAlArrancarArranco()
    {
        const Inicio en;
        escuela::hacerMorirAlArrancar(u"ceibo"_s);
        reloj::poner(alAbrir());
        const CajaContestada caja;
        en_pantalla::apretar(en_pantalla::boton(en.vista, u"Ceibo"_s));
        QVERIFY(!caja.seMostro());
        QCOMPARE(en.sesion->ultimaActividad(), alAbrir());
    }

    void abrirUnRecienteLoAnotaATodosYLoSubeAlPrimerLugar()
    {
        anotar(u"Beto"_s, u"/t/viejo"_s, u"ceibo"_s);
        anotar(u"Ana"_s, u"/t/otro"_s, u"ceibo"_s);
        reloj::poner(alAbrir());
        const Inicio en({u"Ana"_s, u"Beto"_s});
        en.abrirConIntro(0, en.filas(0).indexOf(u"viejo"_s));

        const QString abierto = u"/t/viejo ceibo 2025-03-14T09:10:00 no"_s;
        QCOMPARE(recientesDe(u"Ana"_s),
                 QStringList({abierto, u"/t/otro ceibo 2025-03-13T09:05:00 sí"_s}));
        QCOMPARE(recientesDe(u"Beto"_s), QStringList{abierto});
        QCOMPARE(en.filas(0), QStringList({u"viejo"_s, u"otro"_s}));
    }

    void abrirUnTrabajoLoAnotaConSuRutaEnteraATodos()
    {
        const QString ruta = guardarTrabajo(u"Mi casa"_s, u"Mi casa"_s);
        const Inicio en({u"Ana"_s, u"Beto"_s});
        en.pestanas->setCurrentIndex(1);
        en.abrirConIntro(1, 0);
        const QStringList anotado{ruta + u" ceibo 2025-03-14T09:05:00 no"_s};
        QCOMPARE(recientesDe(u"Ana"_s), anotado);
        QCOMPARE(recientesDe(u"Beto"_s), anotado);
        QCOMPARE(en.filas(0), QStringList{u"Mi casa"_s});
        QCOMPARE(en.pestanas->currentIndex(), 1);
    }

    void siNoArrancaLoDiceYIgualLoAnotaATodos_data() { filasDeFallas(); }

    void siNoArrancaLoDiceYIgualLoAnotaATodos()
    {
        QFETCH(const Falla, falla);
        anotar(u"Ana"_s, u"/t/viejo"_s, u"ceibo"_s);
        anotar(u"Ana"_s, u"/t/nuevo"_s, u"ceibo"_s);
        const Inicio en({u"Ana"_s, u"Beto"_s});
        estropear(u"ceibo"_s, falla);
        const CajaContestada caja;
        en.abrirConIntro(0, en.filas(0).indexOf(u"viejo"_s));
        verificarAviso(caja, u"No se pudo abrir Ceibo."_s);
        const QString abierto = u"/t/viejo ceibo 2025-03-14T09:05:00 no"_s;
        QCOMPARE(recientesDe(u"Ana"_s).constFirst(), abierto);
        QCOMPARE(recientesDe(u"Beto"_s).constFirst(), abierto);
        QCOMPARE(en.filas(0).constFirst(), u"viejo"_s);
    }

    void unRecienteDeUnaAppDesconocidaSeAnotaSinArrancarNada()
    {
        anotar(u"Ana"_s, u"/t/viejo"_s, u"tero"_s);
        anotar(u"Ana"_s, u"/t/nuevo"_s, u"ceibo"_s);
        const Inicio en({u"Ana"_s, u"Beto"_s});
        reloj::poner(alAbrir());
        const CajaContestada caja;
        en.abrirConIntro(0, en.filas(0).indexOf(u"viejo"_s));
        QVERIFY(!caja.seMostro());
        QCOMPARE(recientesDe(u"Beto"_s), QStringList{u"/t/viejo tero 2025-03-14T09:10:00 no"_s});
        QCOMPARE(en.filas(0), QStringList({u"viejo"_s, u"nuevo"_s}));
        QCOMPARE(en.sesion->ultimaActividad(), alEmpezar()); // Arrancar una la cambiaría.
    }

    void unRecienteSinAppLoDiceYNadaMas()
    {
        anotar(u"Ana"_s, u"/t/viejo"_s, QString());
        const Inicio en({u"Ana"_s, u"Beto"_s});
        const QStringList antes = recientesDe(u"Ana"_s);
        const CajaContestada caja;
        en.abrirConIntro(0, 0);
        verificarAviso(caja, u"No se reconoce con qué app abrir este proyecto."_s);
        QCOMPARE(recientesDe(u"Ana"_s), antes);
        QCOMPARE(recientesDe(u"Beto"_s), QStringList());
        QCOMPARE(en.sesion->ultimaActividad(), alEmpezar());
    }

    void unRecienteSinRutaNoHaceNada()
    {
        anotar(u"Ana"_s, QString(), u"ceibo"_s);
        const Inicio en;
        const QStringList antes = recientesDe(u"Ana"_s);
        reloj::poner(alAbrir());
        const CajaContestada caja;
        en.abrirConIntro(0, 0);
        QVERIFY(!caja.seMostro());
        QCOMPARE(recientesDe(u"Ana"_s), antes);
        QCOMPARE(en.sesion->ultimaActividad(), alEmpezar());
    }

    void elAvisoDeListaVaciaNoSeActivaNiConElTecladoNiConElMouse()
    {
        Inicio en;
        en_pantalla::mostrar(en.vista);
        const QSignalSpy activadas(en.recientes(), &QListWidget::itemActivated);
        en_pantalla::dobleClic(en.recientes(), 0);
        for (const Qt::Key tecla : {Qt::Key_Down, Qt::Key_Home, Qt::Key_End, Qt::Key_Return})
            QTest::keyClick(en.recientes(), tecla);
        QCOMPARE(activadas.size(), 0);
        Q_EMIT en.recientes()->itemActivated(en.recientes()->item(0)); // Ni aunque se pudiera.
        QCOMPARE(recientesDe(u"Ana"_s), QStringList());
    }

    void sinSesionSeAbreIgualPeroNoSeAnotaNiSeActualiza()
    {
        anotar(u"Ana"_s, u"/t/viejo"_s, u"ceibo"_s);
        Inicio en;
        const QStringList antes = recientesDe(u"Ana"_s);
        const QListWidget *lista = en.recientes();
        en.vista.olvidarSesion();
        en.abrirConIntro(0, 0);
        QCOMPARE(escuela::arranquesDe(u"ceibo"_s, 1).size(), 1);
        QCOMPARE(recientesDe(u"Ana"_s), antes);
        QCOMPARE(en.recientes(), lista);
    }

    void unaSesionSinIntegrantesAbreYNoAnotaANadie()
    {
        guardarTrabajo(u"Mi casa"_s, u"Mi casa"_s);
        const Inicio en(QStringList{});
        en.pestanas->setCurrentIndex(1);
        en.abrirConIntro(1, 0);
        QCOMPARE(escuela::arranquesDe(u"ceibo"_s, 1).size(), 1);
        QVERIFY(escuela::archivosBajo(escuela::dirDatos() + "/recientes"_L1).isEmpty());
    }

    void siLaSesionTerminaConElAvisoAbiertoNoSeAnotaNada()
    {
        anotar(u"Ana"_s, u"/t/viejo"_s, u"ceibo"_s);
        Inicio en;
        const QStringList antes = recientesDe(u"Ana"_s);
        estropear(u"ceibo"_s, Falta);
        CajaContestada caja;
        caja.antesDeContestar([&en] { en.sesion.reset(); });
        en.abrirConIntro(0, 0);
        QVERIFY(caja.seMostro());
        QCOMPARE(recientesDe(u"Ana"_s), antes);
    }

    void refrescarConElAvisoAbiertoNoRompeLaListaQueSeEstabaAbriendo_data()
    {
        QTest::addColumn<bool>("conMouse");
        QTest::newRow("con la tecla Intro") << false;
        QTest::newRow("con el mouse") << true;
    }

    void refrescarConElAvisoAbiertoNoRompeLaListaQueSeEstabaAbriendo()
    {
        QFETCH(const bool, conMouse);
        anotar(u"Ana"_s, u"/t/viejo"_s, u"ceibo"_s);
        Inicio en;
        en_pantalla::mostrar(en.vista);
        estropear(u"ceibo"_s, NoEsUnPrograma);
        CajaContestada caja;
        caja.antesDeContestar([&en] {
            en.vista.mostrarSesion(en.sesion.get());
            QCoreApplication::processEvents();
        });
        if (conMouse)
            en_pantalla::dobleClic(en.recientes(), 0);
        else
            en.abrirConIntro(0, 0);
        verificarAviso(caja, u"No se pudo abrir Ceibo."_s);
        QCOMPARE(en.filas(0), QStringList{u"viejo"_s});
        QCOMPARE(en.vista.focusWidget(), en.recientes());
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaVistaAppsAbrir, QApplication>(argc, argv);
}

#include "prueba_vista_apps_abrir.moc"
