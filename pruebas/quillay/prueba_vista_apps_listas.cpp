#include "quillay/vista_apps.h"

#include "ombu/apps_registro.h"

#include "pruebas/apoyo/principal.h"
#include "pruebas/quillay/inicio.h"
#include "pruebas/quillay/nombres_hostiles.h"

#include <QDir>

using namespace Qt::StringLiterals;

using ombu::Recientes;

namespace {

constexpr int kRolRuta = Qt::UserRole;
constexpr int kRolApp = Qt::UserRole + 1;

QDateTime hace(qint64 minutos)
{
    return QDateTime::currentDateTime().addSecs(-60 * minutos);
}

/// Anota un reciente a esa persona, como lo haría una app.
void anotar(const QString &persona, const QString &ruta, const QString &app,
            const QDateTime &cuando = hace(1), bool temporal = false)
{
    Recientes::registrar(u"id-"_s + persona, {ruta, app, cuando, temporal});
}

QImage imagen(const QIcon &icono)
{
    return icono.pixmap(64, 64).toImage();
}

QImage iconoDe(const QString &id)
{
    return imagen(QIcon(u":/apps/%1.png"_s.arg(id)));
}

void verificarVacio(const QListWidget *lista, const QString &texto)
{
    QCOMPARE(lista->count(), 1);
    const QListWidgetItem *entrada = lista->item(0);
    QCOMPARE(entrada->text(), texto);
    QCOMPARE(entrada->flags(), Qt::NoItemFlags);
    QVERIFY(entrada->icon().isNull());
    QVERIFY(entrada->toolTip().isEmpty());
    QVERIFY(entrada->data(kRolRuta).isNull());
    QVERIFY(entrada->data(kRolApp).isNull());
}

} // namespace

class PruebaVistaAppsListas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        escuela::instalarApp(u"ceibo"_s);
    }

    void losTrabajosSeVenDelMasNuevoAlMasViejoConSuFecha()
    {
        guardarTrabajo(u"c1"_s, u"Mi casa"_s, QDateTime(QDate(2025, 3, 4), QTime(9, 5, 59)));
        guardarTrabajo(u"c2"_s, u"El puente"_s, QDateTime(QDate(2025, 3, 14), QTime(18, 30)));
        const Inicio en;
        QCOMPARE(en.filas(1), QStringList({u"El puente    —    14/03/2025 18:30"_s,
                                           u"Mi casa    —    04/03/2025 09:05"_s}));
    }

    void cadaTrabajoLlevaSuRutaSuAppYSuIcono()
    {
        const QString ruta = guardarTrabajo(u"c1"_s, u"Mi casa"_s);
        const Inicio en;
        const QListWidgetItem *entrada = en.lista(1)->item(0);
        QCOMPARE(entrada->toolTip(), ruta);
        QCOMPARE(entrada->data(kRolRuta).toString(), ruta);
        QCOMPARE(entrada->data(kRolApp).toString(), u"ceibo"_s);
        QCOMPARE(imagen(entrada->icon()), iconoDe(u"ceibo"_s));
        QVERIFY(entrada->flags().testFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled));
    }

    void elNombreDeUnTrabajoSeMuestraTalCual_data() { filasDeNombresHostiles(); }

    void elNombreDeUnTrabajoSeMuestraTalCual()
    {
        QFETCH(const QString, nombre);
        guardarTrabajo(u"c1"_s, nombre, QDateTime(QDate(2025, 3, 4), QTime(9, 5)));
        const Inicio en;
        QCOMPARE(en.filas(1), QStringList{nombre + u"    —    04/03/2025 09:05"_s});
        QVERIFY(en.pestanas->minimumSizeHint().width() < 920);
    }

    void cadaAppInstaladaTieneSusTrabajos()
    {
        escuela::instalarApp(u"garza"_s);
        guardarTrabajo(u"c1"_s, u"Mi casa"_s);
        escuela::escribir(escuela::dirDocumentos() + "/Garza/proyectos/g1/project.json"_L1,
                          R"({"projectName": "El robot"})");
        const Inicio en;
        QVERIFY(en.filas(1).constFirst().startsWith("Mi casa "_L1));
        QVERIFY(en.filas(2).constFirst().startsWith("El robot "_L1));
        QCOMPARE(en.lista(2)->item(0)->data(kRolApp).toString(), u"garza"_s);
        QCOMPARE(imagen(en.lista(2)->item(0)->icon()), iconoDe(u"garza"_s));
    }

    void sinTrabajosLoDice()
    {
        const Inicio en;
        verificarVacio(en.lista(1), u"Todavía no hay trabajos de Ceibo."_s);
    }

    void sinRecientesLoDice()
    {
        const Inicio en;
        verificarVacio(
            en.recientes(),
            u"Todavía no hay nada reciente. Lo que abras o guardes va a aparecer acá."_s);
    }

    void unaSesionSinIntegrantesNoTieneRecientes()
    {
        anotar(u"Ana"_s, u"/t/uno"_s, u"ceibo"_s);
        anotar(QString(), u"/t/dos"_s, u"ceibo"_s);
        const Inicio en(QStringList{});
        QCOMPARE(en.recientes()->item(0)->flags(), Qt::NoItemFlags);
    }

    void cadaListaSeNombraParaQuienNoLaVe()
    {
        const Inicio en;
        QCOMPARE(en.recientes()->accessibleName(), u"Archivos recientes"_s);
        QCOMPARE(en.lista(1)->accessibleName(), u"Trabajos de Ceibo"_s);
    }

    void losRecientesDeTodosSeVenDelMasNuevoAlMasViejo()
    {
        anotar(u"Ana"_s, u"/t/tres"_s, u"ceibo"_s, hace(30));
        anotar(u"Ana"_s, u"/t/uno"_s, u"ceibo"_s, hace(10));
        anotar(u"Beto"_s, u"/t/cuatro"_s, u"garza"_s, hace(40));
        anotar(u"Beto"_s, u"/t/dos"_s, u"garza"_s, hace(20));
        anotar(u"Caro"_s, u"/t/ajeno"_s, u"garza"_s, hace(0));
        const Inicio en({u"Ana"_s, u"Beto"_s});
        QCOMPARE(en.filas(0), QStringList({u"uno"_s, u"dos"_s, u"tres"_s, u"cuatro"_s}));
    }

    void losQueNoTienenFechaVanAlFinal()
    {
        anotar(u"Beto"_s, u"/t/sin fecha"_s, u"ceibo"_s, QDateTime());
        anotar(u"Ana"_s, u"/t/viejo"_s, u"ceibo"_s, QDateTime(QDate(1960, 1, 1), QTime(0, 0)));
        const Inicio en({u"Beto"_s, u"Ana"_s});
        QCOMPARE(en.filas(0), QStringList({u"viejo"_s, u"sin fecha"_s}));
    }

    void elMismoArchivoDeDosPersonasEsElDeLaPrimeraAunqueSeaMasViejo()
    {
        anotar(u"Ana"_s, u"/t/dibujo"_s, u"ceibo"_s, hace(60));
        anotar(u"Ana"_s, u"/t/otro"_s, u"ceibo"_s, hace(30));
        anotar(u"Beto"_s, u"/t/dibujo"_s, u"garza"_s, hace(1));
        const Inicio en({u"Ana"_s, u"Beto"_s});
        QCOMPARE(en.filas(0), QStringList({u"otro"_s, u"dibujo"_s}));
        QCOMPARE(en.recientes()->item(1)->data(kRolApp).toString(), u"ceibo"_s);
    }

    void entrePersonasLasMayusculasDistinguenArchivos()
    {
        anotar(u"Ana"_s, u"/t/dibujo"_s, u"ceibo"_s, hace(1));
        anotar(u"Beto"_s, u"/t/Dibujo"_s, u"ceibo"_s, hace(2));
        const Inicio en({u"Ana"_s, u"Beto"_s});
        QCOMPARE(en.filas(0), QStringList({u"dibujo"_s, u"Dibujo"_s}));
    }

    void noHayUnMaximoDeRecientesParaElGrupo()
    {
        constexpr int kPorPersona = 30;
        const QStringList personas{u"Ana"_s, u"Beto"_s, u"Caro"_s};
        for (const QString &persona : personas) {
            for (int i = 0; i < kPorPersona; ++i)
                anotar(persona, u"/t/%1-%2"_s.arg(persona).arg(i), u"ceibo"_s, hace(i));
        }
        const Inicio en(personas);
        QCOMPARE(en.recientes()->count(), 90);
    }

    void unRecienteSeVeConLosColoresDeSuApp_data()
    {
        QTest::addColumn<QString>("app");
        QTest::addColumn<QString>("fondo"); // Vacío: ninguno.
        QTest::addColumn<bool>("conIcono");
        QTest::newRow("de la primera suite") << u"garza"_s << u"#CCE6E9"_s << true;
        QTest::newRow("de la segunda, que no tiene ícono") << u"tordo"_s << u"#D6E7F5"_s << false;
        QTest::newRow("de una app desconocida") << u"tero"_s << QString() << false;
        QTest::newRow("sin app") << QString() << QString() << false;
    }

    void unRecienteSeVeConLosColoresDeSuApp()
    {
        QFETCH(const QString, app);
        QFETCH(const QString, fondo);
        QFETCH(const bool, conIcono);
        anotar(u"Ana"_s, u"/t/Mi dibujo.dat"_s, app);
        const Inicio en;
        const QListWidgetItem *entrada = en.recientes()->item(0);
        QCOMPARE(entrada->text(), u"Mi dibujo.dat"_s);
        QCOMPARE(entrada->toolTip(), u"/t/Mi dibujo.dat"_s);
        QCOMPARE(entrada->data(kRolRuta).toString(), u"/t/Mi dibujo.dat"_s);
        QCOMPARE(entrada->data(kRolApp).toString(), app);
        QCOMPARE(entrada->background(),
                 fondo.isEmpty() ? QBrush() : QBrush(QColor::fromString(fondo)));
        QCOMPARE(imagen(entrada->icon()), conIcono ? iconoDe(app) : QImage());
    }

    void losQueYaNoExistenYLosTemporalesSeVenIgual()
    {
        const QString ruta = escuela::dirDocumentos() + "/existe.dat"_L1;
        escuela::escribir(ruta, "x");
        anotar(u"Ana"_s, u"/no/falta.dat"_s, u"ceibo"_s, hace(3));
        anotar(u"Ana"_s, u"/t/temporal.dat"_s, u"ceibo"_s, hace(2), true);
        anotar(u"Ana"_s, ruta, u"ceibo"_s, hace(1));
        const Inicio en;
        QCOMPARE(en.filas(0), QStringList({u"existe.dat"_s, u"temporal.dat"_s, u"falta.dat"_s}));
        for (int fila = 1; fila < 3; ++fila) {
            QCOMPARE(en.recientes()->item(fila)->flags(), en.recientes()->item(0)->flags());
            QCOMPARE(en.recientes()->item(fila)->background(),
                     en.recientes()->item(0)->background());
        }
    }

    void elNombreDeUnRecienteSeMuestraTalCual_data() { filasDeNombresHostiles(); }

    void elNombreDeUnRecienteSeMuestraTalCual()
    {
        QFETCH(QString, nombre);
        nombre.remove(u'/'); // De una ruta se muestra lo que sigue a la última barra.
        const QString ruta = u"/t/%1/"_s + nombre;
        anotar(u"Ana"_s, ruta, u"ceibo"_s);
        const Inicio en;
        QCOMPARE(en.filas(0), QStringList{nombre});
        QCOMPARE(en.recientes()->item(0)->toolTip(), ruta);
        QVERIFY(en.pestanas->minimumSizeHint().width() < 920);
    }

    void cadaRefrescoLeeElDiscoDeNuevo()
    {
        Inicio en;
        anotar(u"Ana"_s, u"/t/uno"_s, u"ceibo"_s);
        guardarTrabajo(u"c1"_s, u"Mi casa"_s);
        en.vista.mostrarSesion(en.sesion.get());
        QCOMPARE(en.filas(0), QStringList{u"uno"_s});
        QVERIFY(en.filas(1).constFirst().startsWith("Mi casa "_L1));
    }

    void losDatosIlegiblesSeVenComoSiNoHubieraNinguno()
    {
        escuela::escribir(Recientes::rutaArchivo(u"id-Ana"_s), "[{");
        escuela::escribir(escuela::dirDocumentos() + "/Ceibo"_L1, "no soy una carpeta");
        const Inicio en;
        QCOMPARE(en.recientes()->item(0)->flags(), Qt::NoItemFlags);
        QCOMPARE(en.lista(1)->item(0)->flags(), Qt::NoItemFlags);
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaVistaAppsListas, QApplication>(argc, argv);
}

#include "prueba_vista_apps_listas.moc"
