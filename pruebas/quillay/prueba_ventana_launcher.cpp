#include "quillay/ventana_launcher.h"

#include "ombu/perfiles_locales.h"
#include "quillay/vista_apps.h"
#include "quillay/vista_login.h"
#include "quillay/vista_perfiles.h"

#include "pruebas/apoyo/archivos_ilegibles.h"
#include "pruebas/apoyo/caja_contestada.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/reloj.h"
#include "pruebas/apoyo/servidor_guionado.h"
#include "pruebas/apoyo/teclear.h"
#include "pruebas/ombu/sesion_guardada.h"
#include "pruebas/quillay/lanzador.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QLineEdit>

using namespace Qt::StringLiterals;

using ombu::PerfilesLocales;

namespace {

QDateTime ahora()
{
    return QDateTime(QDate(2025, 3, 14), QTime(10, 0));
}

void guardarSesionDeAna()
{
    sesion_guardada::escribir(sesion_guardada::deAna(ahora(), ahora(), 0));
}

/// Un servicio que contesta que está, configurado en el lanzador.
struct ServicioDisponible : ServidorGuionado
{
    ServicioDisponible()
    {
        contestar("/api/ping", {});
        configurarAulared(url().toString());
    }
};

/// Si al servicio no le llegó ningún pedido antes que este.
bool nadiePregunto(const ServidorGuionado &servidor)
{
    ombu::AuthAulared cliente(servidor.url(), nullptr);
    QSignalSpy respuesta(&cliente, &ombu::AuthAulared::disponible);
    cliente.verificarConexion();
    return respuesta.wait() && servidor.pedidos().size() == 1;
}

} // namespace

class PruebaVentanaLauncher : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        reloj::poner(ahora());
    }

    void noAgregaNadaAlSistemaDeObjetos()
    {
        const QMetaObject &meta = quillay::VentanaLauncher::staticMetaObject;
        QCOMPARE(meta.methodCount(), meta.methodOffset());
        QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    }

    void tieneTituloTamanoYTresPantallasApiladas()
    {
        const Lanzador en;
        QCOMPARE(en.ventana.windowTitle(), u"Quillay"_s);
        QCOMPARE(en.ventana.size(), QSize(920, 580));
        QVERIFY(en.ventana.minimumSize().isNull());
        QCOMPARE(en.ventana.maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
        QVERIFY(en.pila);
        QCOMPARE(en.pila->count(), 3);
        QVERIFY(qobject_cast<quillay::VistaLogin *>(en.pila->widget(Lanzador::Ingreso)));
        QVERIFY(qobject_cast<quillay::VistaPerfiles *>(en.pila->widget(Lanzador::Perfiles)));
        QVERIFY(qobject_cast<quillay::VistaApps *>(en.pila->widget(Lanzador::Inicio)));
    }

    void alMostrarseConservaSuTamano()
    {
        guardarSesionDeAna();
        Lanzador en;
        en_pantalla::mostrar(en.ventana);
        QCOMPARE(en.ventana.size(), QSize(920, 580));
    }

    void unaSesionVigenteSeRetomaSinPreguntarPorElServicio()
    {
        const ServicioDisponible servicio;
        guardarSesionDeAna();
        const Lanzador en;
        QCOMPARE(en.pagina(), Lanzador::Inicio);
        QCOMPARE(en.cabecera(), u"Sesión de Ana"_s);
        QCOMPARE(en.sesion()->parent(), &en.ventana);
        QVERIFY(en.temporizador->isActive());
        QVERIFY(nadiePregunto(servicio));
        QCOMPARE(en.pagina(), Lanzador::Inicio);
    }

    void unaSesionVencidaSeBorraYSeVuelveAElegir()
    {
        const QDateTime ayer = ahora().addDays(-1);
        sesion_guardada::escribir(sesion_guardada::deAna(ayer, ayer, 0));
        const Lanzador en;
        QCOMPARE(en.pagina(), Lanzador::Perfiles);
        QVERIFY(!en.sesion());
        QVERIFY(!en.temporizador->isActive());
        QVERIFY(!QFile::exists(sesion_guardada::ruta()));
    }

    void unArchivoDeSesionIlegibleEsComoQueNoHayaSesion_data() { filasDeArchivosIlegibles(); }

    void unArchivoDeSesionIlegibleEsComoQueNoHayaSesion()
    {
        QFETCH(const Estropeo, estropear);
        estropear(sesion_guardada::ruta());
        const Lanzador en;
        QCOMPARE(en.pagina(), Lanzador::Perfiles);
        QVERIFY(QFile::exists(sesion_guardada::ruta()));
    }

    void sinUnaDireccionUtilizableSeOfrecenLosPerfilesYNoSePregunta_data()
    {
        QTest::addColumn<QString>("direccion");
        QTest::newRow("sin configurar") << QString();
        QTest::newRow("vacía") << u""_s;
        QTest::newRow("inválida") << u"http://[mal"_s;
    }

    void sinUnaDireccionUtilizableSeOfrecenLosPerfilesYNoSePregunta()
    {
        QFETCH(const QString, direccion);
        PerfilesLocales::crear(u"Ana"_s);
        if (!direccion.isNull())
            configurarAulared(direccion);
        const Lanzador en;
        QCOMPARE(en.pagina(), Lanzador::Perfiles);
        QCOMPARE(en.perfiles(), QStringList{u"Ana"_s});
        en.auth->verificarConexion();
        QCOMPARE(en.respuestas.size(), 1); // Contesta en el momento: no sale a la red.
    }

    void siElServicioNoRespondeLosPerfilesSeQuedan_data()
    {
        QTest::addColumn<int>("estado"); // 0: no hay nadie escuchando.
        QTest::newRow("no está") << 0;
        QTest::newRow("contesta que no existe") << 404;
        QTest::newRow("contesta que está roto") << 500;
    }

    void siElServicioNoRespondeLosPerfilesSeQuedan()
    {
        QFETCH(const int, estado);
        auto servidor = std::make_unique<ServidorGuionado>();
        servidor->contestar("/api/ping", {.estado = estado});
        configurarAulared(servidor->url().toString());
        if (estado == 0)
            servidor.reset();
        Lanzador en;
        QCOMPARE(en.pagina(), Lanzador::Perfiles);
        PerfilesLocales::crear(u"Ana"_s);
        QVERIFY(en.respuestas.wait());
        QCOMPARE(en.pagina(), Lanzador::Perfiles);
        QCOMPARE(en.perfiles(), QStringList{u"Ana"_s}); // Con la respuesta se los vuelve a leer.
    }

    void siElServicioRespondeElIngresoReemplazaALosPerfiles()
    {
        const ServicioDisponible servicio;
        PerfilesLocales::crear(u"Ana"_s);
        Lanzador en;
        QCOMPARE(en.pagina(), Lanzador::Perfiles);
        QCOMPARE(en.perfiles(), QStringList{u"Ana"_s});
        QVERIFY(!en.temporizador->isActive());
        QTRY_COMPARE(en.pagina(), Lanzador::Ingreso);
        QVERIFY(!en.temporizador->isActive());
        QCOMPARE(servicio.pedidos().size(), 1);
        QCOMPARE(servicio.pedidos().constFirst().ruta, QByteArray("/api/ping"));
    }

    void elIngresoSeMuestraReiniciado()
    {
        const ServicioDisponible servicio;
        const Lanzador en;
        auto *usuario = en.pila->widget(Lanzador::Ingreso)->findChild<QLineEdit *>();
        usuario->setText(u"alguien"_s);
        QTRY_COMPARE(en.pagina(), Lanzador::Ingreso);
        QCOMPARE(usuario->text(), QString());
    }

    void elegirUnPerfilMientrasSePreguntaEmpiezaSuSesion()
    {
        const ServicioDisponible servicio;
        const ombu::Perfil beto = PerfilesLocales::crear(u"Beto"_s);
        Lanzador en;
        auto *lista = en.pila->widget(Lanzador::Perfiles)->findChild<QListWidget *>();
        lista->setCurrentRow(0);
        QTest::keyClick(lista, Qt::Key_Return);
        QCOMPARE(en.pagina(), Lanzador::Inicio);
        QCOMPARE(en.cabecera(), u"Sesión de Beto"_s);
        QVERIFY(en.temporizador->isActive());
        QCOMPARE(
            sesion_guardada::leer(),
            QJsonObject({{u"token"_s, QString()},
                         {u"grupo"_s, u"Beto"_s},
                         {u"modo"_s, u"standalone"_s},
                         {u"inicio_sesion"_s, u"2025-03-14T10:00:00"_s},
                         {u"ultima_actividad"_s, u"2025-03-14T10:00:00"_s},
                         {u"duracion_estimada_min"_s, 0},
                         {u"integrantes"_s, QJsonArray{QJsonObject{{u"id"_s, beto.id},
                                                                   {u"nombre"_s, u"Beto"_s},
                                                                   {u"color"_s, beto.color}}}}}));

        QVERIFY(en.respuestas.wait()); // La respuesta que llega tarde no cambia nada.
        QCOMPARE(en.respuestas.constFirst().constFirst().toBool(), true);
        QCOMPARE(en.pagina(), Lanzador::Inicio);
    }

    void unaRespuestaTardiaDeQueNoHayServicioTampocoCambiaNada()
    {
        ServidorGuionado servidor; // Contesta 404.
        configurarAulared(servidor.url().toString());
        Lanzador en;
        en.ventana.iniciarSesionStandalone({u"1"_s, u"Ana"_s, {}});
        QVERIFY(en.respuestas.wait());
        QCOMPARE(en.pagina(), Lanzador::Inicio);
    }

    void crearUnPerfilEmpiezaSuSesion()
    {
        Lanzador en;
        const CajaContestada caja(CajaContestada::Aceptar, u"Ana"_s);
        en_pantalla::apretar(en_pantalla::boton(en.ventana, u"Crear nuevo perfil"_s));
        QVERIFY(caja.seMostro());
        QCOMPARE(en.pagina(), Lanzador::Inicio);
        QCOMPARE(en.sesion()->integrantes().constFirst().id, PerfilesLocales::listar().at(0).id);
    }

    void losQueIngresanEmpiezanSuSesion()
    {
        ServicioDisponible servicio;
        servicio.contestar("/api/sesiones", {.cuerpo = R"({"token": "t-1", "nombre": "Ana"})"});
        Lanzador en;
        QTRY_COMPARE(en.pagina(), Lanzador::Ingreso);
        const QList<QLineEdit *> campos =
            en.pila->widget(Lanzador::Ingreso)->findChildren<QLineEdit *>();
        teclear(campos.at(0), u"ana"_s);
        teclear(campos.at(1), u"secreta"_s);
        en_pantalla::apretar(en_pantalla::boton(en.ventana, u"Entrar"_s));
        QAbstractButton *empezar = en_pantalla::boton(en.ventana, u"Empezar a trabajar"_s);
        QTRY_VERIFY(empezar->isEnabled());
        en_pantalla::apretar(empezar);
        QCOMPARE(en.pagina(), Lanzador::Inicio);
        QCOMPARE(en.sesion()->modo(), ombu::ModoSesion::Aulared);
        QCOMPARE(en.sesion()->token(), u"t-1"_s);
        QCOMPARE(en.sesion()->duracionEstimadaMin(), 0);
    }

    void elNombreDeUnaSesionEnLinea_data()
    {
        QTest::addColumn<QStringList>("personas");
        QTest::addColumn<QString>("grupo");
        QTest::newRow("una persona") << QStringList{u"Ana"_s} << u"Ana"_s;
        QTest::newRow("dos") << QStringList{u"Beto"_s, u"Ana"_s} << u"Grupo de Beto"_s;
        QTest::newRow("tres") << QStringList{u"Ana"_s, u"Bruno"_s, u"Carla"_s} << u"Grupo de Ana"_s;
        QTest::newRow("con marcas") << QStringList{u"%1 %2"_s, u"Ana"_s} << u"Grupo de %1 %2"_s;
    }

    void elNombreDeUnaSesionEnLinea()
    {
        QFETCH(const QStringList, personas);
        QFETCH(const QString, grupo);
        QList<ombu::Integrante> integrantes;
        for (const QString &nombre : personas)
            integrantes.append({u"id-"_s + nombre, nombre, {}});
        Lanzador en;
        en.ventana.iniciarSesionAulared(u"t-1"_s, integrantes, 90);
        QCOMPARE(en.pagina(), Lanzador::Inicio);
        QVERIFY(en.temporizador->isActive());
        QCOMPARE(en.sesion()->integrantes(), integrantes);
        const QJsonObject guardada = sesion_guardada::leer();
        QCOMPARE(guardada[u"grupo"_s].toString(), grupo);
        QCOMPARE(guardada[u"modo"_s].toString(), u"aulared"_s);
        QCOMPARE(guardada[u"token"_s].toString(), u"t-1"_s);
        QCOMPARE(guardada[u"duracion_estimada_min"_s].toInt(), 90);
    }

    void siNoSePuedeGuardarLaSesionLoDiceYSeQuedaDondeEstaba_data()
    {
        QTest::addColumn<bool>("enLinea");
        QTest::newRow("en el ingreso") << true;
        QTest::newRow("en los perfiles") << false;
    }

    void siNoSePuedeGuardarLaSesionLoDiceYSeQuedaDondeEstaba()
    {
        QFETCH(const bool, enLinea);
        auto servicio = enLinea ? std::make_unique<ServicioDisponible>() : nullptr;
        Lanzador en;
        const Lanzador::Pagina pagina = enLinea ? Lanzador::Ingreso : Lanzador::Perfiles;
        QTRY_COMPARE(en.pagina(), pagina);
        QDir().mkpath(sesion_guardada::ruta()); // Una carpeta en su lugar.

        const auto empezar = [&] {
            if (enLinea)
                en.ventana.iniciarSesionAulared(u"t"_s, {{u"1"_s, u"Ana"_s, {}}}, 0);
            else
                en.ventana.iniciarSesionStandalone({u"1"_s, u"Ana"_s, {}});
        };
        const CajaContestada caja;
        empezar();
        QVERIFY(caja.seMostro());
        QCOMPARE(caja.titulo(), u"Quillay"_s);
        QCOMPARE(caja.texto(), u"No se pudo crear el archivo de sesión."_s);
        QCOMPARE(caja.icono(), QMessageBox::Warning);
        QCOMPARE(caja.botones(), QStringList{u"OK"_s});
        QCOMPARE(en.pagina(), pagina);
        QVERIFY(!en.sesion());
        QVERIFY(!en.temporizador->isActive());

        QDir().rmdir(sesion_guardada::ruta());
        empezar();
        QCOMPARE(en.pagina(), Lanzador::Inicio);
    }

    void cerrarLaVentanaDejaLaSesionYAlVolverAAbrirSeRetoma()
    {
        const QList<ombu::Integrante> integrantes{{u"2"_s, u"Beto"_s, {}}, {u"1"_s, u"Ana"_s, {}}};
        {
            Lanzador en;
            en.ventana.iniciarSesionAulared(u"t"_s, integrantes, 90);
            en_pantalla::mostrar(en.ventana);
            en.ventana.close();
        }
        QVERIFY(QFile::exists(sesion_guardada::ruta()));
        const Lanzador otra;
        QCOMPARE(otra.pagina(), Lanzador::Inicio);
        QCOMPARE(otra.cabecera(), u"Sesión grupal: Beto, Ana"_s);
        QCOMPARE(otra.sesion()->integrantes(), integrantes);
        QVERIFY(otra.temporizador->isActive());
    }

    void alAbrirBorraLosRestosDeUnaActualizacion()
    {
        const QString resto = escuela::dirLanzador() + "/Ceibo/ceibo.exe.viejo"_L1;
        escuela::escribir(resto, "x");
        const Lanzador en;
        QVERIFY(!QFile::exists(resto));
    }

    void milPerfilesSeOfrecenTodos()
    {
        QJsonArray lista;
        for (int i = 0; i < 1000; ++i)
            lista.append(QJsonObject{{u"id"_s, QString::number(i)}, {u"nombre"_s, u"Ana"_s}});
        escuela::escribir(PerfilesLocales::rutaArchivo(), QJsonDocument(lista).toJson());
        const Lanzador en;
        QCOMPARE(en.perfiles().size(), 1000);
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaVentanaLauncher, QApplication>(argc, argv);
}

#include "prueba_ventana_launcher.moc"
