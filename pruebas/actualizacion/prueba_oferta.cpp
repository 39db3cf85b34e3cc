#include "quillay/ventana_launcher.h"

#include "quillay/actualizador.h"

#include "pruebas/actualizacion/archivo_en_uso.h"
#include "pruebas/actualizacion/paquete.h"
#include "pruebas/actualizacion/powershell.h"
#include "pruebas/apoyo/caja_contestada.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/servidor_guionado.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QStatusBar>
#include <QTimer>

using namespace Qt::StringLiterals;

using quillay::Actualizador;
using quillay::VentanaLauncher;

namespace {

QString rutaDe(const QString &nombre)
{
    return escuela::dirLanzador() + u'/' + nombre;
}

QByteArray json(const QJsonObject &objeto)
{
    return QJsonDocument(objeto).toJson();
}

/// Todo lo instalado, menos el ejecutable de esta prueba.
Arbol instalado()
{
    Arbol arbol = leerArbol(escuela::dirLanzador());
    arbol.remove(QFileInfo(QCoreApplication::applicationFilePath()).fileName());
    return arbol;
}

/// La ventana, y cada mensaje que pasa por su barra de estado con los milisegundos que dura.
struct Lanzador
{
    Lanzador()
        : actualizador(ventana.findChild<Actualizador *>())
    {
        QObject::connect(ventana.statusBar(), &QStatusBar::messageChanged, &ventana,
                         [this](const QString &mensaje) { anotar(mensaje); });
        ventana.show();
        if (!actualizador)
            return;
        QObject::connect(actualizador, &Actualizador::sinActualizaciones, &ventana,
                         [this] { sinActualizaciones = true; });
        QObject::connect(actualizador, &Actualizador::terminado, &ventana,
                         [this] { termino = true; });
    }

    void anotar(const QString &mensaje)
    {
        const auto *reloj = ventana.statusBar()->findChild<QTimer *>();
        if (!mensaje.isEmpty())
            mensajes.append(mensaje + u'|' + QString::number(reloj ? reloj->interval() : 0));
    }

    QList<QNetworkReply *> pedidosEnCurso() const
    {
        return actualizador->findChild<QNetworkAccessManager *>()->findChildren<QNetworkReply *>();
    }

    VentanaLauncher ventana;
    Actualizador *actualizador;
    QStringList mensajes;
    bool sinActualizaciones = false;
    bool termino = false;
};

} // namespace

class PruebaOferta : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        powershell::usarElDeMuestra();
        m_servidor.olvidarPedidos();
        configurar({{u"manifiesto_url"_s, direccion(u"/m.json"_s)},
                    {u"descargas_base"_s, direccion(u"/d"_s)}});
        publicar({{u"launcher"_s, u"2.2.0"_s}, {u"garza"_s, u"1.5.0"_s}});
        instalar({{u"launcher"_s, u"2.1.0"_s}, {u"garza"_s, u"1.4.0"_s}});
        m_servidor.contestar("/d/garza-1.5.0.zip",
                             {.cuerpo = comprimir({{u"garza.exe"_s, "1.5.0"}})});
        m_servidor.contestar("/d/launcher-2.2.0.zip",
                             {.cuerpo = comprimir({{u"quillay.exe"_s, "2.2.0"}})});
    }

    void preguntaEnUnaCajaConLoQueCambia()
    {
        CajaContestada caja(CajaContestada::Cancelar);
        QWidget *dialogo = nullptr;
        QWidget *ventanaDeLaCaja = nullptr;
        caja.antesDeContestar([&] {
            dialogo = QApplication::activeModalWidget();
            ventanaDeLaCaja = dialogo ? dialogo->parentWidget() : nullptr;
        });
        const Lanzador lanzador;
        QVERIFY(QTest::qWaitFor([&] { return caja.seMostro() && !caja.titulo().isEmpty(); }));

        QCOMPARE(caja.titulo(), u"Hay una versión nueva de Quillay"_s);
        QCOMPARE(caja.texto(),
                 u"Hay versiones nuevas para bajar:\n\n"
                 "Garza: de la 1.4.0 a la 1.5.0\n"
                 "Quillay: de la 2.1.0 a la 2.2.0\n\n"
                 "Se bajan solo las partes que cambiaron. Si ahora no es buen momento, te lo "
                 "volvemos a ofrecer la próxima vez que abras Quillay."_s);
        QCOMPARE(caja.icono(), QMessageBox::Information);
        QCOMPARE(caja.botones(), (QStringList{u"Actualizar ahora"_s, u"Más tarde"_s}));
        QCOMPARE(caja.botonPredeterminado(), u"Actualizar ahora"_s);
        QVERIFY(dialogo);
        QCOMPARE(ventanaDeLaCaja, &lanzador.ventana);
    }

    void cadaComponenteSeNombraComoSeVe_data()
    {
        QTest::addColumn<QString>("componente");
        QTest::addColumn<QString>("local");
        QTest::addColumn<QString>("nueva");
        QTest::addColumn<QString>("renglon");
        const auto fila = [](const char *nombre, const QString &componente, const QString &local,
                             const QString &nueva, const QString &renglon) {
            QTest::newRow(nombre) << componente << local << nueva << renglon;
        };
        fila("el lanzador", u"launcher"_s, u"1"_s, u"2"_s, u"Quillay: de la 1 a la 2"_s);
        fila("una app", u"garza"_s, u"1"_s, u"2"_s, u"Garza: de la 1 a la 2"_s);
        fila("sin la eñe del nombre", u"nandu"_s, u"1"_s, u"2"_s, u"Nandu: de la 1 a la 2"_s);
        fila("otras mayúsculas", u"garzaNueva"_s, u"1"_s, u"2"_s, u"GarzaNueva: de la 1 a la 2"_s);
        fila("no es el lanzador", u"Launcher"_s, u"1"_s, u"2"_s, u"Launcher: de la 1 a la 2"_s);
        fila("empieza con acento", u"ñandú"_s, u"1"_s, u"2"_s, u"Ñandú: de la 1 a la 2"_s);
        fila("sin nombre", u""_s, u"1"_s, u"2"_s, u": de la 1 a la 2"_s);
        fila("hacia atrás", u"garza"_s, u"2"_s, u"1"_s, u"Garza: de la 2 a la 1"_s);
        fila("sin la instalada", u"garza"_s, u""_s, u"2"_s, u"Garza: de la  a la 2"_s);
        fila("con marcas", u"garza"_s, u"<b>1</b>"_s, u"2<br>"_s,
             u"Garza: de la <b>1</b> a la 2<br>"_s);
        fila("con números de argumento", u"%3%2"_s, u"%1%3"_s, u"%2%1"_s,
             u"%3%2: de la %1%3 a la %2%1"_s);
    }

    void cadaComponenteSeNombraComoSeVe()
    {
        QFETCH(const QString, componente);
        QFETCH(const QString, local);
        QFETCH(const QString, nueva);
        QFETCH(const QString, renglon);
        instalar({{componente, local}});
        publicar({{componente, nueva}});

        CajaContestada caja(CajaContestada::Cancelar);
        Qt::TextFormat formato = Qt::AutoText;
        caja.antesDeContestar([&] {
            const auto *dialogo = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            formato = dialogo ? dialogo->textFormat() : Qt::AutoText;
        });
        const Lanzador lanzador;
        QVERIFY(QTest::qWaitFor([&] { return !caja.texto().isEmpty(); }));
        QCOMPARE(caja.texto().section(u'\n', 2, 2), renglon);
        QCOMPARE(caja.texto().count(u'\n'), 4);
        QCOMPARE(formato, Qt::PlainText);
    }

    void conIntroSeActualizaYSeDiceCadaComponente()
    {
        CajaContestada caja;
        const Lanzador lanzador;
        QVERIFY(QTest::qWaitFor([&] { return lanzador.termino; }, 20000));
        QCOMPARE(lanzador.mensajes, (QStringList{u"garza actualizado a 1.5.0|8000"_s,
                                                 u"launcher actualizado a 2.2.0|8000"_s}));
        QCOMPARE(lanzador.ventana.statusBar()->currentMessage(), u"launcher actualizado a 2.2.0"_s);
        QCOMPARE(escuela::leer(rutaDe(u"Garza/garza.exe"_s)), "1.5.0");
        QCOMPARE(escuela::leer(rutaDe(u"quillay.exe"_s)), "2.2.0");
        QCOMPARE(escuela::leer(rutaDe(u"versiones.json"_s)),
                 json({{u"garza"_s, u"1.5.0"_s}, {u"launcher"_s, u"2.2.0"_s}}));
    }

    void siNoSeActualizaNoCambiaNadaYSeVuelveAOfrecer_data()
    {
        QTest::addColumn<QString>("boton");
        QTest::newRow("con Escape") << QString();
        QTest::newRow("con Más tarde") << u"Más tarde"_s;
        QTest::newRow("cerrando la caja") << u"cerrar"_s;
    }

    void siNoSeActualizaNoCambiaNadaYSeVuelveAOfrecer()
    {
        QFETCH(const QString, boton);
        const Arbol antes = instalado();
        for (int arranque = 1; arranque <= 2; ++arranque) {
            CajaContestada caja(CajaContestada::Cancelar);
            caja.antesDeContestar([&] { contestarCon(boton); });
            const Lanzador lanzador;
            QVERIFY(QTest::qWaitFor([&] { return !caja.titulo().isEmpty(); }));
            QVERIFY(QTest::qWaitFor([] { return !QApplication::activeModalWidget(); }));
            QVERIFY(lanzador.pedidosEnCurso().isEmpty());
            QVERIFY(lanzador.mensajes.isEmpty());
            QVERIFY(!lanzador.termino);
            QCOMPARE(m_servidor.pedidos().size(), arranque);
        }
        QCOMPARE(instalado(), antes);
        QVERIFY(powershell::llamadas().isEmpty());
    }

    void unaFallaSeDiceDiezSegundosYSigueElSiguiente()
    {
        m_servidor.contestar("/d/garza-1.5.0.zip", {.estado = 404});
        CajaContestada caja;
        const Lanzador lanzador;
        QVERIFY(QTest::qWaitFor([&] { return lanzador.termino; }, 20000));
        QCOMPARE(lanzador.mensajes,
                 (QStringList{u"No se pudo descargar garza 1.5.0: Error transferring %1 - server "
                              "replied: Guion|10000"_s.arg(direccion(u"/d/garza-1.5.0.zip"_s)),
                              u"launcher actualizado a 2.2.0|8000"_s}));
    }

    void losDemasErroresTambienSeDicen()
    {
        powershell::usarNinguno();
        CajaContestada caja;
        const Lanzador lanzador;
        QVERIFY(QTest::qWaitFor([&] { return lanzador.termino; }, 20000));
        QCOMPARE(lanzador.mensajes,
                 (QStringList{u"No se pudo extraer el paquete de garza.|10000"_s,
                              u"No se pudo extraer el paquete de launcher.|10000"_s}));
    }

    void sinNadaNuevoNoSeDiceNada()
    {
        publicar({{u"garza"_s, u"1.4.0"_s}});
        const CajaContestada caja;
        const Lanzador lanzador;
        QVERIFY(QTest::qWaitFor([&] { return lanzador.sinActualizaciones; }));
        QVERIFY(!caja.seMostro());
        QVERIFY(lanzador.mensajes.isEmpty());
    }

    void siNoSePuedeAveriguarNoSeDiceNada()
    {
        m_servidor.contestar("/m.json", {.estado = 500});
        const CajaContestada caja;
        const Lanzador lanzador;
        QVERIFY(QTest::qWaitFor([&] { return lanzador.sinActualizaciones; }));
        QVERIFY(!caja.seMostro());
        QVERIFY(lanzador.mensajes.isEmpty());
    }

    void sinDireccionDelManifiestoNoSePideNada_data()
    {
        QTest::addColumn<QJsonObject>("configuracion");
        const QString base = direccion(u"/d"_s);
        QTest::newRow("sin la clave") << QJsonObject{{u"descargas_base"_s, base}};
        QTest::newRow("vacía") << QJsonObject{{u"manifiesto_url"_s, u""_s},
                                              {u"descargas_base"_s, base}};
        QTest::newRow("un número")
            << QJsonObject{{u"manifiesto_url"_s, 42}, {u"descargas_base"_s, base}};
    }

    void sinDireccionDelManifiestoNoSePideNada()
    {
        QFETCH(const QJsonObject, configuracion);
        configurar(configuracion);
        const CajaContestada caja;
        const Lanzador lanzador;
        QVERIFY(lanzador.actualizador);
        QVERIFY(lanzador.pedidosEnCurso().isEmpty());
        QVERIFY(!caja.seMostro());
    }

    void enUnEquipoDeAularedNoSeBuscaNada()
    {
        escuela::escribir(escuela::dirDatos() + "/equipo.json"_L1, {});
        const CajaContestada caja;
        const Lanzador lanzador;
        QVERIFY(!lanzador.actualizador);
        QVERIFY(lanzador.ventana.findChildren<QNetworkReply *>().isEmpty());
        QVERIFY(!caja.seMostro());
    }

    void seBuscaUnaSolaVezPorArranque()
    {
        publicar({});
        Lanzador lanzador;
        QVERIFY(QTest::qWaitFor([&] { return lanzador.sinActualizaciones; }));
        lanzador.ventana.cerrarSesion();
        lanzador.ventana.chequearExpiracion();
        QVERIFY(lanzador.pedidosEnCurso().isEmpty());
        QCOMPARE(m_servidor.pedidos().size(), 1);
    }

    void lasDireccionesSeLeenConTolerancia()
    {
        configurar({{u"manifiesto_url"_s, direccion(u"/mi manifiesto ñ.json"_s)},
                    {u"descargas_base"_s, direccion(u"/mis paquetes/"_s)}});
        m_servidor.contestar("/mi%20manifiesto%20%C3%B1.json",
                             {.cuerpo = json({{u"garza"_s, u"1.5.0"_s}})});
        CajaContestada caja;
        const Lanzador lanzador;
        QVERIFY(QTest::qWaitFor([&] { return lanzador.termino; }, 20000));
        QCOMPARE(m_servidor.pedidos().constLast().ruta, "/mis%20paquetes/garza-1.5.0.zip");
    }

    void alArrancarSeBorranLosViejosAntesDeBuscar()
    {
        escribirArbol(escuela::dirLanzador(),
                      {{u"quillay.exe.viejo"_s, "0"}, {u"Garza/a.dll.viejo"_s, "0"}});
        configurar({});
        const Lanzador lanzador;
        QVERIFY(!QFile::exists(rutaDe(u"quillay.exe.viejo"_s)));
        QVERIFY(!QFile::exists(rutaDe(u"Garza/a.dll.viejo"_s)));
    }

    void elLanzadorSeActualizaMientrasCorreYSeLimpiaAlReabrirlo()
    {
        publicar({{u"launcher"_s, u"2.2.0"_s}});
        escuela::escribir(rutaDe(u"quillay.exe"_s), "2.1.0");
        {
            const ArchivoEnUso enUso(rutaDe(u"quillay.exe"_s));
            CajaContestada caja;
            const Lanzador lanzador;
            QVERIFY(QTest::qWaitFor([&] { return lanzador.termino; }, 20000));
            QCOMPARE(lanzador.mensajes, QStringList{u"launcher actualizado a 2.2.0|8000"_s});
            QCOMPARE(escuela::leer(rutaDe(u"quillay.exe"_s)), "2.2.0");
            QCOMPARE(escuela::leer(rutaDe(u"quillay.exe.viejo"_s)), "2.1.0");
        }
        const CajaContestada caja;
        const Lanzador lanzador;
        QVERIFY(!QFile::exists(rutaDe(u"quillay.exe.viejo"_s)));
        QVERIFY(QTest::qWaitFor([&] { return lanzador.sinActualizaciones; }));
        QVERIFY(!caja.seMostro());
    }

private:
    QString direccion(const QString &ruta) const { return m_servidor.url().toString() + ruta; }

    static void configurar(const QJsonObject &configuracion)
    {
        escuela::escribir(rutaDe(u"config.json"_s), json(configuracion));
    }

    static void instalar(const QJsonObject &versiones)
    {
        escuela::escribir(rutaDe(u"versiones.json"_s), json(versiones));
    }

    void publicar(const QJsonObject &versiones)
    {
        m_servidor.contestar("/m.json", {.cuerpo = json(versiones)});
    }

    /// Contesta la caja a la vista de otro modo que con una tecla.
    static void contestarCon(const QString &boton)
    {
        auto *caja = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (boton == "cerrar"_L1)
            caja->close();
        const QList<QAbstractButton *> botones = caja->buttons();
        for (QAbstractButton *uno : botones) {
            if (uno->text() == boton)
                uno->click();
        }
    }

    ServidorGuionado m_servidor;
};

int main(int argc, char *argv[])
{
    return correr<PruebaOferta, QApplication>(argc, argv);
}

#include "prueba_oferta.moc"
