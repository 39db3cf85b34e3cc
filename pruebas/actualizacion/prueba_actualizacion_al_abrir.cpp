// La búsqueda que hace la ventana al abrirse, y lo que va diciendo al actualizar.

#include "pruebas/actualizacion/archivo_en_uso.h"
#include "pruebas/actualizacion/lanzador_con_servidor.h"
#include "pruebas/actualizacion/powershell.h"
#include "pruebas/apoyo/caja_contestada.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"

#include <QApplication>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QStatusBar>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

QByteArray json(const QJsonObject &objeto)
{
    return QJsonDocument(objeto).toJson();
}

} // namespace

class PruebaActualizacionAlAbrir : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        powershell::usarElDeMuestra();
        m_lanzador = std::make_unique<LanzadorConServidor>();
    }

    void conIntroSeActualizaYSeDiceCadaComponente()
    {
        CajaContestada caja;
        const VentanaAbierta lanzador;
        QVERIFY(QTest::qWaitFor([&] { return lanzador.termino; }, 20000));
        QCOMPARE(lanzador.mensajes, (QStringList{u"garza actualizado a 1.5.0|8000"_s,
                                                 u"launcher actualizado a 2.2.0|8000"_s}));
        QCOMPARE(lanzador.ventana.statusBar()->currentMessage(), u"launcher actualizado a 2.2.0"_s);
        QCOMPARE(escuela::leer(LanzadorConServidor::ruta(u"Garza/garza.exe"_s)), "1.5.0");
        QCOMPARE(escuela::leer(LanzadorConServidor::ruta(u"quillay.exe"_s)), "2.2.0");
        QCOMPARE(escuela::leer(LanzadorConServidor::ruta(u"versiones.json"_s)),
                 json({{u"garza"_s, u"1.5.0"_s}, {u"launcher"_s, u"2.2.0"_s}}));
    }

    void unaFallaSeDiceDiezSegundosYSigueElSiguiente()
    {
        m_lanzador->servidor.contestar("/d/garza-1.5.0.zip", {.estado = 404});
        CajaContestada caja;
        const VentanaAbierta lanzador;
        QVERIFY(QTest::qWaitFor([&] { return lanzador.termino; }, 20000));
        QCOMPARE(lanzador.mensajes,
                 (QStringList{
                     u"No se pudo descargar garza 1.5.0: Error transferring %1 - server "
                     "replied: Guion|10000"_s.arg(m_lanzador->direccion(u"/d/garza-1.5.0.zip"_s)),
                     u"launcher actualizado a 2.2.0|8000"_s}));
    }

    void losDemasErroresTambienSeDicen()
    {
        powershell::usarNinguno();
        CajaContestada caja;
        const VentanaAbierta lanzador;
        QVERIFY(QTest::qWaitFor([&] { return lanzador.termino; }, 20000));
        QCOMPARE(lanzador.mensajes,
                 (QStringList{u"No se pudo extraer el paquete de garza.|10000"_s,
                              u"No se pudo extraer el paquete de launcher.|10000"_s}));
    }

    void sinNadaNuevoNoSeDiceNada()
    {
        m_lanzador->publicar({{u"garza"_s, u"1.4.0"_s}});
        const CajaContestada caja;
        const VentanaAbierta lanzador;
        QVERIFY(QTest::qWaitFor([&] { return lanzador.sinActualizaciones; }));
        QVERIFY(!caja.seMostro());
        QVERIFY(lanzador.mensajes.isEmpty());
    }

    void siNoSePuedeAveriguarNoSeDiceNada()
    {
        m_lanzador->servidor.contestar("/m.json", {.estado = 500});
        const CajaContestada caja;
        const VentanaAbierta lanzador;
        QVERIFY(QTest::qWaitFor([&] { return lanzador.sinActualizaciones; }));
        QVERIFY(!caja.seMostro());
        QVERIFY(lanzador.mensajes.isEmpty());
    }

    void sinDireccionDelManifiestoNoSePideNada_data()
    {
        QTest::addColumn<QJsonObject>("configuracion");
        const QString base = m_lanzador->direccion(u"/d"_s);
        QTest::newRow("sin la clave") << QJsonObject{{u"descargas_base"_s, base}};
        QTest::newRow("vacía") << QJsonObject{{u"manifiesto_url"_s, u""_s},
                                              {u"descargas_base"_s, base}};
        QTest::newRow("un número")
            << QJsonObject{{u"manifiesto_url"_s, 42}, {u"descargas_base"_s, base}};
    }

    void sinDireccionDelManifiestoNoSePideNada()
    {
        QFETCH(const QJsonObject, configuracion);
        LanzadorConServidor::configurar(configuracion);
        const CajaContestada caja;
        const VentanaAbierta lanzador;
        QVERIFY(lanzador.actualizador);
        QVERIFY(lanzador.pedidosEnCurso().isEmpty());
        QVERIFY(!caja.seMostro());
    }

    void enUnEquipoDeAularedNoSeBuscaNada()
    {
        escuela::escribir(escuela::dirDatos() + "/equipo.json"_L1, {});
        const CajaContestada caja;
        const VentanaAbierta lanzador;
        QVERIFY(!lanzador.actualizador);
        QVERIFY(lanzador.ventana.findChildren<QNetworkReply *>().isEmpty());
        QVERIFY(!caja.seMostro());
    }

    void seBuscaUnaSolaVezPorArranque()
    {
        m_lanzador->publicar({});
        VentanaAbierta lanzador;
        QVERIFY(QTest::qWaitFor([&] { return lanzador.sinActualizaciones; }));
        lanzador.ventana.cerrarSesion();
        lanzador.ventana.chequearExpiracion();
        QVERIFY(lanzador.pedidosEnCurso().isEmpty());
        QCOMPARE(m_lanzador->servidor.pedidos().size(), 1);
    }

    void lasDireccionesSeLeenConTolerancia()
    {
        LanzadorConServidor::configurar(
            {{u"manifiesto_url"_s, m_lanzador->direccion(u"/mi manifiesto ñ.json"_s)},
             {u"descargas_base"_s, m_lanzador->direccion(u"/mis paquetes/"_s)}});
        m_lanzador->servidor.contestar("/mi%20manifiesto%20%C3%B1.json",
                                       {.cuerpo = json({{u"garza"_s, u"1.5.0"_s}})});
        CajaContestada caja;
        const VentanaAbierta lanzador;
        QVERIFY(QTest::qWaitFor([&] { return lanzador.termino; }, 20000));
        QCOMPARE(m_lanzador->servidor.pedidos().constLast().ruta,
                 "/mis%20paquetes/garza-1.5.0.zip");
    }

    void alArrancarSeBorranLosViejosAntesDeBuscar()
    {
        escribirArbol(escuela::dirLanzador(),
                      {{u"quillay.exe.viejo"_s, "0"}, {u"Garza/a.dll.viejo"_s, "0"}});
        LanzadorConServidor::configurar({});
        const VentanaAbierta lanzador;
        QVERIFY(!QFile::exists(LanzadorConServidor::ruta(u"quillay.exe.viejo"_s)));
        QVERIFY(!QFile::exists(LanzadorConServidor::ruta(u"Garza/a.dll.viejo"_s)));
    }

    void elLanzadorSeActualizaMientrasCorreYSeLimpiaAlReabrirlo()
    {
        m_lanzador->publicar({{u"launcher"_s, u"2.2.0"_s}});
        escuela::escribir(LanzadorConServidor::ruta(u"quillay.exe"_s), "2.1.0");
        {
            const ArchivoEnUso enUso(LanzadorConServidor::ruta(u"quillay.exe"_s));
            CajaContestada caja;
            const VentanaAbierta lanzador;
            QVERIFY(QTest::qWaitFor([&] { return lanzador.termino; }, 20000));
            QCOMPARE(lanzador.mensajes, QStringList{u"launcher actualizado a 2.2.0|8000"_s});
            QCOMPARE(escuela::leer(LanzadorConServidor::ruta(u"quillay.exe"_s)), "2.2.0");
            QCOMPARE(escuela::leer(LanzadorConServidor::ruta(u"quillay.exe.viejo"_s)), "2.1.0");
        }
        const CajaContestada caja;
        const VentanaAbierta lanzador;
        QVERIFY(!QFile::exists(LanzadorConServidor::ruta(u"quillay.exe.viejo"_s)));
        QVERIFY(QTest::qWaitFor([&] { return lanzador.sinActualizaciones; }));
        QVERIFY(!caja.seMostro());
    }

private:
    std::unique_ptr<LanzadorConServidor> m_lanzador;
};

int main(int argc, char *argv[])
{
    return correr<PruebaActualizacionAlAbrir, QApplication>(argc, argv);
}

#include "prueba_actualizacion_al_abrir.moc"
