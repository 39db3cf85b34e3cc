#include "quillay/vista_apps.h"

#include "ombu/apps_registro.h"

#include "pruebas/apoyo/principal.h"
#include "pruebas/quillay/inicio.h"
#include "pruebas/quillay/nombres_hostiles.h"

#include <QDir>
#include <QFile>
#include <QMetaMethod>
#include <QPushButton>
#include <QToolButton>

using namespace Qt::StringLiterals;

using quillay::VistaApps;

namespace {

QStringList ids()
{
    return {u"ceibo"_s, u"garza"_s, u"hornero"_s, u"zorzal"_s, u"benteveo"_s};
}

QStringList nombres()
{
    return {u"Ceibo"_s, u"Garza"_s, u"Hornero"_s, u"Zorzal"_s, u"Benteveo"_s};
}

void instalar(const QStringList &apps)
{
    for (const QString &id : apps)
        escuela::instalarApp(id);
}

void desinstalar(const QString &id)
{
    QFile::remove(ombu::rutaEjecutable(*ombu::appPorId(id), escuela::dirLanzador()));
}

/// Los botones de las apps, en el orden en que están puestos.
QList<QToolButton *> botonesDeApps(const VistaApps &vista)
{
    QList<QToolButton *> botones;
    const QLayout *fila = vista.layout()->itemAt(2)->layout();
    for (int i = 0; i < fila->count(); ++i) {
        if (auto *boton = qobject_cast<QToolButton *>(fila->itemAt(i)->widget()))
            botones.append(boton);
    }
    return botones;
}

QImage iconoDe(const QString &id)
{
    return QIcon(u":/apps/%1.png"_s.arg(id)).pixmap(64, 64).toImage();
}

} // namespace

class PruebaVistaApps : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { escuela::vaciar(); }

    void suUnicoMetodoParaElSistemaDeObjetosEsLaSenal()
    {
        const QMetaObject &meta = VistaApps::staticMetaObject;
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
        QCOMPARE(meta.method(meta.methodOffset()).methodSignature(),
                 QByteArray("cerrarSesionPedido()"));
    }

    void disponeCabeceraAppsYPestanas()
    {
        const VistaApps vista(escuela::dirLanzador(), nullptr);
        const auto *caja = qobject_cast<QVBoxLayout *>(vista.layout());
        QVERIFY(caja);
        QCOMPARE(caja->contentsMargins(), QMargins(32, 24, 32, 24));
        QCOMPARE(caja->count(), 5);
        QVERIFY(qobject_cast<QHBoxLayout *>(caja->itemAt(0)->layout()));
        QCOMPARE(caja->itemAt(1)->spacerItem()->sizeHint().height(), 8);
        QVERIFY(qobject_cast<QHBoxLayout *>(caja->itemAt(2)->layout()));
        QCOMPARE(caja->itemAt(3)->spacerItem()->sizeHint().height(), 16);
        QVERIFY(qobject_cast<QTabWidget *>(caja->itemAt(4)->widget()));
        for (int i = 0; i < caja->count(); ++i)
            QCOMPARE(caja->stretch(i), i == 4 ? 1 : 0);
    }

    void laCabeceraTieneQuienTrabajaYElBotonDeCerrar()
    {
        const VistaApps vista(escuela::dirLanzador(), nullptr);
        const QLayout *fila = vista.layout()->itemAt(0)->layout();
        QCOMPARE(fila->count(), 3);
        const auto *etiqueta = qobject_cast<QLabel *>(fila->itemAt(0)->widget());
        QCOMPARE(etiqueta->text(), QString());
        QCOMPARE(etiqueta->styleSheet(), u"font-size: 16px; font-weight: bold;"_s);
        QCOMPARE(fila->itemAt(1)->expandingDirections(), Qt::Horizontal);
        const auto *cerrar = qobject_cast<QPushButton *>(fila->itemAt(2)->widget());
        QCOMPARE(cerrar->text(), u"Cerrar sesión"_s);
    }

    void lasPestanasTienenSuEstiloYEmpiezanSinNinguna()
    {
        const VistaApps vista(escuela::dirLanzador(), nullptr);
        const auto *pestanas = vista.findChild<QTabWidget *>();
        QCOMPARE(pestanas->count(), 0);
        QVERIFY(pestanas->documentMode());
        QCOMPARE(pestanas->styleSheet(), u"QTabBar::tab { font-size: 13px; padding: 7px 14px; }"
                                         "QTabBar::tab:selected { font-weight: bold; }"_s);
    }

    void hayUnBotonPorAppALaIzquierdaYEnElOrdenDelCatalogo()
    {
        instalar(ids());
        const VistaApps vista(escuela::dirLanzador(), nullptr);
        const auto *fila = qobject_cast<QHBoxLayout *>(vista.layout()->itemAt(2)->layout());
        QCOMPARE(fila->spacing(), 18);
        QCOMPARE(fila->count(), 6);
        QCOMPARE(fila->itemAt(5)->expandingDirections(), Qt::Horizontal);

        const QList<QToolButton *> botones = botonesDeApps(vista);
        QCOMPARE(botones.size(), 5);
        for (int i = 0; i < botones.size(); ++i) {
            QCOMPARE(botones.at(i)->text(), nombres().at(i));
            QVERIFY(!iconoDe(ids().at(i)).isNull());
            QCOMPARE(botones.at(i)->icon().pixmap(64, 64).toImage(), iconoDe(ids().at(i)));
            QVERIFY(botones.at(i)->styleSheet().contains(ombu::appPorId(ids().at(i))->colorClaro));
        }
    }

    void sinNingunaAppInstaladaTodosLosBotonesLoDicen()
    {
        const Inicio en;
        const QList<QToolButton *> botones = botonesDeApps(en.vista);
        QCOMPARE(botones.size(), 5);
        for (int i = 0; i < botones.size(); ++i) {
            QVERIFY(!botones.at(i)->isEnabled());
            QCOMPARE(botones.at(i)->toolTip(),
                     nombres().at(i) + u" no está instalada en esta computadora."_s);
        }
        QCOMPARE(en.titulos(), QStringList{u"Recientes"_s});
    }

    void soloLasInstaladasTienenBotonHabilitadoYPestana()
    {
        instalar({u"zorzal"_s, u"garza"_s});
        const Inicio en;
        const QList<QToolButton *> botones = botonesDeApps(en.vista);
        for (const int instalada : {1, 3}) {
            QVERIFY(botones.at(instalada)->isEnabled());
            QCOMPARE(botones.at(instalada)->toolTip(), "Abrir "_L1 + nombres().at(instalada));
        }
        for (const int ausente : {0, 2, 4})
            QVERIFY(!botones.at(ausente)->isEnabled());
        QCOMPARE(en.titulos(), QStringList({u"Recientes"_s, u"Garza"_s, u"Zorzal"_s}));
        QVERIFY(en.pestanas->tabIcon(0).isNull());
        QCOMPARE(en.pestanas->tabIcon(1).pixmap(64, 64).toImage(), iconoDe(u"garza"_s));
        QCOMPARE(en.pestanas->tabIcon(2).pixmap(64, 64).toImage(), iconoDe(u"zorzal"_s));
    }

    void lasDeLaSegundaSuiteNoAparecen()
    {
        instalar({u"calandria"_s, u"tordo"_s, u"nandu"_s});
        const Inicio en;
        QCOMPARE(botonesDeApps(en.vista).size(), 5);
        QCOMPARE(en.titulos(), QStringList{u"Recientes"_s});
    }

    void unaAppInstaladaDespuesTienePestanaPeroNoBoton()
    {
        Inicio en;
        const QList<QToolButton *> botones = botonesDeApps(en.vista);
        instalar({u"ceibo"_s});
        en.vista.mostrarSesion(en.sesion.get());
        QCOMPARE(en.titulos(), QStringList({u"Recientes"_s, u"Ceibo"_s}));
        QCOMPARE(botonesDeApps(en.vista), botones); // Ni siquiera se rehacen.
        QVERIFY(!botones.at(0)->isEnabled());
    }

    void unaAppDesinstaladaDespuesPierdeLaPestanaPeroNoElBoton()
    {
        instalar({u"ceibo"_s});
        Inicio en;
        desinstalar(u"ceibo"_s);
        en.vista.mostrarSesion(en.sesion.get());
        QCOMPARE(en.titulos(), QStringList{u"Recientes"_s});
        QVERIFY(botonesDeApps(en.vista).at(0)->isEnabled());
    }

    void laCabeceraDiceQuienTrabaja_data()
    {
        QTest::addColumn<QStringList>("personas");
        QTest::addColumn<QString>("cabecera");
        QTest::newRow("nadie") << QStringList() << u"Sesión de "_s;
        QTest::newRow("una persona") << QStringList{u"Ana"_s} << u"Sesión de Ana"_s;
        QTest::newRow("dos") << QStringList{u"Beto"_s, u"Ana"_s} << u"Sesión grupal: Beto, Ana"_s;
        QTest::newRow("tres") << QStringList{u"Ana"_s, u"Beto"_s, u"Caro"_s}
                              << u"Sesión grupal: Ana, Beto, Caro"_s;
    }

    void laCabeceraDiceQuienTrabaja()
    {
        QFETCH(const QStringList, personas);
        QFETCH(const QString, cabecera);
        const Inicio en(personas);
        QCOMPARE(en.cabecera->text(), cabecera);
    }

    void losNombresSeMuestranTalCual_data() { filasDeNombresHostiles(); }

    void losNombresSeMuestranTalCual()
    {
        QFETCH(const QString, nombre);
        const Inicio sola({nombre});
        QCOMPARE(sola.cabecera->text(), u"Sesión de "_s + nombre);
        QCOMPARE(sola.cabecera->textFormat(), Qt::PlainText);
        const Inicio grupo({nombre, u"Beto"_s});
        QCOMPARE(grupo.cabecera->text(), u"Sesión grupal: "_s + nombre + u", Beto"_s);
    }

    void unGrupoLargoNoSacaDeLaVentanaElBotonDeCerrar_data()
    {
        QTest::addColumn<QStringList>("personas");
        QTest::newRow("treinta personas") << QStringList(30, u"Ana Paz"_s);
        QTest::newRow("un nombre larguísimo") << QStringList{QString(10'000, u'W')};
    }

    void unGrupoLargoNoSacaDeLaVentanaElBotonDeCerrar()
    {
        QFETCH(const QStringList, personas);
        const Inicio en(personas);
        QVERIFY2(en.vista.minimumSizeHint().width() < 920,
                 QByteArray::number(en.vista.minimumSizeHint().width()).constData());
    }

    void unaSesionNuevaCambiaLaCabecera()
    {
        Inicio en({u"Ana"_s, u"Beto"_s});
        const std::unique_ptr<ombu::Sesion> otra = Inicio::sesionDe({u"Caro"_s});
        en.vista.mostrarSesion(otra.get());
        QCOMPARE(en.cabecera->text(), u"Sesión de Caro"_s);
    }

    void refrescarConservaLaPestana()
    {
        instalar(ids());
        Inicio en;
        en.pestanas->setCurrentIndex(3);
        en.vista.mostrarSesion(en.sesion.get());
        QCOMPARE(en.pestanas->currentIndex(), 3);
        QCOMPARE(en.pestanas->tabText(3), u"Hornero"_s);
    }

    void laPestanaSeConservaPorSuLugarAunqueSeaOtra()
    {
        instalar({u"garza"_s, u"zorzal"_s});
        Inicio en;
        en.pestanas->setCurrentIndex(2);
        instalar({u"ceibo"_s});
        en.vista.mostrarSesion(en.sesion.get());
        QCOMPARE(en.pestanas->currentIndex(), 2);
        QCOMPARE(en.pestanas->tabText(2), u"Garza"_s);
    }

    void siLaPestanaYaNoEstaSeVeLaPrimera()
    {
        instalar({u"ceibo"_s, u"garza"_s});
        Inicio en;
        en.pestanas->setCurrentIndex(2);
        desinstalar(u"garza"_s);
        en.vista.mostrarSesion(en.sesion.get());
        QCOMPARE(en.titulos(), QStringList({u"Recientes"_s, u"Ceibo"_s}));
        QCOMPARE(en.pestanas->currentIndex(), 0);
    }

    void lasListasRetiradasQuedanOcultasYVaciasMientrasVivaLaPantalla()
    {
        guardarTrabajo(u"Mi casa"_s, u"Mi casa"_s);
        instalar({u"ceibo"_s});
        Inicio en;
        en_pantalla::mostrar(en.vista);
        const int antes = static_cast<int>(en.vista.findChildren<QListWidget *>().size());
        const QPointer<QListWidget> retirada = en.lista(1);
        QCOMPARE(retirada->count(), 1);
        en.vista.mostrarSesion(en.sesion.get());
        QCOMPARE(en.vista.findChildren<QListWidget *>().size(), antes + 2);
        QVERIFY(retirada);
        QVERIFY(retirada->isHidden());
        QCOMPARE(retirada->count(), 1); // Podría estar atendiendo lo que causó el refresco.
        QTRY_COMPARE(retirada->count(), 0);
        QCOMPARE(en.lista(1)->count(), 1);
    }

    void alVolverDeOtroProgramaSeActualizaYAlIrseNo()
    {
        instalar({u"ceibo"_s});
        Inicio en;
        en_pantalla::mostrar(en.vista);
        const QList<QToolButton *> botones = botonesDeApps(en.vista);
        guardarTrabajo(u"Mi casa"_s, u"Mi casa"_s);
        en_pantalla::irAOtroPrograma();
        QCOMPARE(en.filas(1), QStringList{u"Todavía no hay trabajos de Ceibo."_s});
        en_pantalla::volver(en.vista);
        QCOMPARE(en.lista(1)->count(), 1);
        QVERIFY(en.filas(1).constFirst().startsWith(u"Mi casa    —    "_s));
        QCOMPARE(botonesDeApps(en.vista), botones);
    }

    void volverAntesDeLaPrimeraSesionNoHaceNada()
    {
        VistaApps vista(escuela::dirLanzador(), nullptr);
        en_pantalla::mostrar(vista);
        en_pantalla::irAOtroPrograma();
        en_pantalla::volver(vista);
        QCOMPARE(vista.findChild<QTabWidget *>()->count(), 0);
    }

    void volverDespuesDeDestruidaLaSesionNoHaceNada()
    {
        Inicio en;
        en_pantalla::mostrar(en.vista);
        en.sesion.reset();
        instalar({u"ceibo"_s});
        en_pantalla::irAOtroPrograma();
        en_pantalla::volver(en.vista);
        QCOMPARE(en.titulos(), QStringList{u"Recientes"_s});
    }

    void volverDespuesDeOlvidarLaSesionNoHaceNada()
    {
        Inicio en;
        en_pantalla::mostrar(en.vista);
        en.vista.olvidarSesion();
        instalar({u"ceibo"_s});
        en_pantalla::irAOtroPrograma();
        en_pantalla::volver(en.vista);
        QCOMPARE(en.titulos(), QStringList{u"Recientes"_s});
        QCOMPARE(en.cabecera->text(), u"Sesión de Ana"_s);
    }

    void cerrarSesionSoloAvisa()
    {
        Inicio en;
        en_pantalla::mostrar(en.vista);
        const QSignalSpy pedidos(&en.vista, &VistaApps::cerrarSesionPedido);
        en_pantalla::apretar(en_pantalla::boton(en.vista, u"Cerrar sesión"_s));
        QCOMPARE(pedidos.size(), 1);
        QVERIFY(en.sesion->esValida());
        QCOMPARE(en.cabecera->text(), u"Sesión de Ana"_s);
        QCOMPARE(en.titulos(), QStringList{u"Recientes"_s});
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaVistaApps, QApplication>(argc, argv);
}

#include "prueba_vista_apps.moc"
