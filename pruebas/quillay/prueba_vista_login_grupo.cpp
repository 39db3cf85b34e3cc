#include "quillay/vista_login.h"

#include "pruebas/apoyo/principal.h"
#include "pruebas/quillay/ingreso.h"
#include "pruebas/quillay/nombres_hostiles.h"

#include <QApplication>

using namespace Qt::StringLiterals;

using ombu::Integrante;

namespace {

/// Lo que dijo la única señal `sesionLista`.
struct Grupo
{
    explicit Grupo(const Ingreso &en)
    {
        if (en.listas.size() != 1)
            qFatal("Señales de sesión lista: %d", static_cast<int>(en.listas.size()));
        const QList<QVariant> &datos = en.listas.constFirst();
        token = datos.at(0).toString();
        const auto integrantes = datos.at(1).value<QList<Integrante>>();
        for (const Integrante &integrante : integrantes) {
            ids.append(integrante.id);
            nombres.append(integrante.nombre);
            colores.append(integrante.color);
        }
        duracionEstimadaMin = datos.at(2).toInt();
    }

    QString token;
    QStringList ids;
    QStringList nombres;
    QStringList colores;
    int duracionEstimadaMin;
};

} // namespace

class PruebaVistaLoginGrupo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void alEntrarElPrimeroSePuedeAgregarOtroOEmpezar()
    {
        Ingreso en;
        en_pantalla::mostrar(en.vista);
        en.entrar(u"ana"_s);
        QCOMPARE(en.filas(), QStringList{u"Ana Paz"_s});
        QVERIFY(en.lista->item(0)->icon().isNull());
        QCOMPARE(en.mensaje->text(), QString());
        QCOMPARE(en.usuario->text(), QString());
        QCOMPARE(en.clave->text(), QString());
        QVERIFY(en.usuario->hasFocus());
        QVERIFY(en.botonEntrar->isEnabled());
        QCOMPARE(en.botonEntrar->text(), u"Agregar otro integrante"_s);
        QVERIFY(en.botonEmpezar->isEnabled());
        QCOMPARE(en.listas.size(), 0);
    }

    void unGrupoLlevaLosIntegrantesEnOrdenYElTokenDelPrimero()
    {
        Ingreso en;
        en.entrar(u"ana"_s);
        en.contestar(R"({"token": "t-beto", "id": "beto-2", "nombre": "Beto Ruiz"})");
        en.entrar(u"beto"_s);
        en.contestar(R"({"token": "t-caro", "id": "caro-0", "nombre": "Caro Díaz"})");
        en.entrar(u"caro"_s);
        en_pantalla::apretar(en.botonEmpezar);

        const Grupo grupo(en);
        QCOMPARE(grupo.token, u"t-ana"_s);
        QCOMPARE(grupo.ids, QStringList({u"ana-1"_s, u"beto-2"_s, u"caro-0"_s}));
        QCOMPARE(grupo.nombres, QStringList({u"Ana Paz"_s, u"Beto Ruiz"_s, u"Caro Díaz"_s}));
        QCOMPARE(grupo.colores, QStringList(3, QString()));
        QCOMPARE(en.filas(), grupo.nombres);
    }

    void unIntegranteQueNoPuedeEntrarNoCambiaElGrupo()
    {
        Ingreso en;
        en.entrar(u"ana"_s);
        en.contestar("{}", 401);
        en.entrar(u"beto"_s);
        QCOMPARE(en.filas(), QStringList{u"Ana Paz"_s});
        QCOMPARE(en.botonEntrar->text(), u"Agregar otro integrante"_s);
        QVERIFY(en.botonEmpezar->isEnabled());
        QVERIFY(!en.indicarDuracion->isEnabled());
        QVERIFY(!en.duracion->isEnabled());
    }

    void loQueElServicioNoDiceEsLoQueEstaEscrito_data()
    {
        QTest::addColumn<QByteArray>("respuesta");
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("nombre");
        QTest::newRow("ni id ni nombre") << QByteArray(R"({"token": "t"})") << u"ana"_s << u"ana"_s;
        QTest::newRow("sin id") << QByteArray(R"({"token": "t", "nombre": "Ana Paz"})") << u"ana"_s
                                << u"Ana Paz"_s;
        QTest::newRow("sin nombre")
            << QByteArray(R"({"token": "t", "id": "17"})") << u"17"_s << u"ana"_s;
    }

    void loQueElServicioNoDiceEsLoQueEstaEscrito()
    {
        QFETCH(const QByteArray, respuesta);
        QFETCH(const QString, id);
        QFETCH(const QString, nombre);
        Ingreso en;
        en.contestar(respuesta);
        en.entrar(u"  ana "_s);
        en_pantalla::apretar(en.botonEmpezar);
        const Grupo grupo(en);
        QCOMPARE(grupo.ids, QStringList{id});
        QCOMPARE(grupo.nombres, QStringList{nombre});
    }

    void siSeCorrigeElUsuarioMientrasEsperaValeElCorregido()
    {
        Ingreso en;
        en.contestar(R"({"token": "t"})");
        en.escribir(u"ana"_s, u"secreta"_s);
        en_pantalla::apretar(en.botonEntrar);
        en.usuario->setText(u" anita "_s);
        QTRY_VERIFY(en.botonEntrar->isEnabled());
        en_pantalla::apretar(en.botonEmpezar);
        QCOMPARE(en.ultimoPedido()[u"usuario"_s].toString(), u"ana"_s);
        QCOMPARE(Grupo(en).ids, QStringList{u"anita"_s});
        QCOMPARE(Grupo(en).nombres, QStringList{u"anita"_s});
    }

    void quienYaEstaNoEntraDosVeces_data()
    {
        QTest::addColumn<QByteArray>("respuesta");
        QTest::addColumn<QString>("repetido");
        QTest::newRow("el servicio no da id") << QByteArray(R"({"token": "t"})") << u" ana "_s;
        QTest::newRow("el id es el usuario")
            << QByteArray(R"({"token": "t", "id": "ana", "nombre": "Ana"})") << u"ana"_s;
        QTest::newRow("el id es lo que se escribe después")
            << QByteArray(R"({"token": "t", "id": "17", "nombre": "Ana"})") << u"17"_s;
    }

    void quienYaEstaNoEntraDosVeces()
    {
        QFETCH(const QByteArray, respuesta);
        QFETCH(const QString, repetido);
        Ingreso en;
        en.contestar(respuesta);
        en.entrar(u"ana"_s);
        en.escribir(repetido, u"secreta"_s);
        en_pantalla::apretar(en.botonEntrar);
        QCOMPARE(en.mensaje->text(), u"Esa persona ya está en la sesión."_s);
        QVERIFY(en.botonEntrar->isEnabled());
        QCOMPARE(en.lista->count(), 1);
        QCOMPARE(en.usuario->text(), repetido);

        en.entrar(u"otra"_s); // El segundo pedido que llega es este.
        QCOMPARE(en.servidor.pedidos().size(), 2);
    }

    void elQueSeRepiteNoTieneQueSerElUltimo()
    {
        Ingreso en;
        en.contestar(R"({"token": "t"})");
        en.entrar(u"ana"_s);
        en.entrar(u"beto"_s);
        en.escribir(u"ana"_s, u"secreta"_s);
        en_pantalla::apretar(en.botonEntrar);
        QCOMPARE(en.mensaje->text(), u"Esa persona ya está en la sesión."_s);
    }

    void conOtroIdLaMismaPersonaPuedeEntrarDosVeces()
    {
        Ingreso en;
        en.entrar(u"ana"_s);
        en.entrar(u"ana"_s);
        QCOMPARE(en.filas(), QStringList({u"Ana Paz"_s, u"Ana Paz"_s}));
    }

    void conOtrasMayusculasEsOtraPersona()
    {
        Ingreso en;
        en.contestar(R"({"token": "t"})");
        en.entrar(u"ana"_s);
        en.entrar(u"Ana"_s);
        QCOMPARE(en.filas(), QStringList({u"ana"_s, u"Ana"_s}));
    }

    void losNombresSeMuestranTalCual_data() { filasDeNombresHostiles(); }

    void losNombresSeMuestranTalCual()
    {
        QFETCH(const QString, nombre);
        Ingreso en;
        en.contestar(
            QJsonDocument(QJsonObject{{u"token"_s, u"t"_s}, {u"nombre"_s, nombre}}).toJson());
        en.entrar(u"ana"_s);
        QCOMPARE(en.filas(), QStringList{nombre});
        QVERIFY(en.vista.minimumSizeHint().width() < 920);
        en_pantalla::apretar(en.botonEmpezar);
        QCOMPARE(Grupo(en).nombres, QStringList{nombre});
    }

    void laDuracionSePuedeElegirSoloSiSeIndica()
    {
        const Ingreso en;
        en.indicarDuracion->setChecked(true);
        QVERIFY(en.duracion->isEnabled());
        en.indicarDuracion->setChecked(false);
        QVERIFY(!en.duracion->isEnabled());
    }

    void laDuracionQueSeInforma_data()
    {
        QTest::addColumn<int>("elegida");
        QTest::addColumn<bool>("indicada");
        QTest::addColumn<int>("informada");
        QTest::newRow("sin tocar nada") << 120 << false << 0;
        QTest::newRow("elegida pero sin indicar") << 90 << false << 0;
        QTest::newRow("indicada sin cambiarla") << 120 << true << 120;
        QTest::newRow("indicada y cambiada") << 90 << true << 90;
    }

    void laDuracionQueSeInforma()
    {
        QFETCH(const int, elegida);
        QFETCH(const bool, indicada);
        QFETCH(const int, informada);
        Ingreso en;
        en.duracion->setValue(elegida);
        en.indicarDuracion->setChecked(indicada);
        en.entrar(u"ana"_s);
        en_pantalla::apretar(en.botonEmpezar);
        QCOMPARE(Grupo(en).duracionEstimadaMin, informada);
    }

    void desdeElPrimerIntegranteLaDuracionQuedaFija_data()
    {
        QTest::addColumn<bool>("indicada");
        QTest::newRow("indicada") << true;
        QTest::newRow("sin indicar") << false;
    }

    void desdeElPrimerIntegranteLaDuracionQuedaFija()
    {
        QFETCH(const bool, indicada);
        Ingreso en;
        en.indicarDuracion->setChecked(indicada);
        en.entrar(u"ana"_s);
        QVERIFY(!en.indicarDuracion->isEnabled());
        QVERIFY(!en.duracion->isEnabled());
        QCOMPARE(en.indicarDuracion->isChecked(), indicada);
    }

    void empezarNoVaciaLaPantalla()
    {
        Ingreso en;
        en.entrar(u"ana"_s);
        en_pantalla::apretar(en.botonEmpezar);
        QCOMPARE(en.filas(), QStringList{u"Ana Paz"_s});
        QVERIFY(en.botonEmpezar->isEnabled());
    }

    void empezarConLaTeclaIntro()
    {
        Ingreso en;
        en_pantalla::mostrar(en.vista);
        en.entrar(u"ana"_s);
        en.botonEmpezar->setFocus();
        QTest::keyClick(en.botonEmpezar, Qt::Key_Return);
        QCOMPARE(Grupo(en).token, u"t-ana"_s);
    }

    void reiniciarVaciaTodoMenosLaDuracionElegida()
    {
        Ingreso en;
        en.indicarDuracion->setChecked(true);
        en.duracion->setValue(90);
        en.entrar(u"ana"_s);
        en.contestar("{}", 401);
        en.entrar(u"beto"_s);
        en.vista.reiniciar();

        QCOMPARE(en.filas(), QStringList());
        QCOMPARE(en.usuario->text(), QString());
        QCOMPARE(en.clave->text(), QString());
        QCOMPARE(en.mensaje->text(), QString());
        QCOMPARE(en.botonEntrar->text(), u"Entrar"_s);
        QVERIFY(en.botonEntrar->isEnabled());
        QVERIFY(!en.botonEmpezar->isEnabled());
        QVERIFY(en.indicarDuracion->isEnabled());
        QVERIFY(!en.indicarDuracion->isChecked());
        QVERIFY(!en.duracion->isEnabled());
        QCOMPARE(en.duracion->value(), 90);
        QCOMPARE(en.listas.size(), 0);
    }

    void despuesDeReiniciarElGrupoEsOtro()
    {
        Ingreso en;
        en.indicarDuracion->setChecked(true);
        en.entrar(u"ana"_s);
        en.vista.reiniciar();
        en.contestar(R"({"token": "t-beto", "id": "beto-2", "nombre": "Beto Ruiz"})");
        en.entrar(u"beto"_s);
        en_pantalla::apretar(en.botonEmpezar);
        const Grupo grupo(en);
        QCOMPARE(grupo.token, u"t-beto"_s);
        QCOMPARE(grupo.ids, QStringList{u"beto-2"_s});
        QCOMPARE(grupo.duracionEstimadaMin, 0);
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaVistaLoginGrupo, QApplication>(argc, argv);
}

#include "prueba_vista_login_grupo.moc"
