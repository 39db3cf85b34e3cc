// Lo que pregunta la ventana cuando hay versiones nuevas.

#include "pruebas/actualizacion/lanzador_con_servidor.h"
#include "pruebas/actualizacion/powershell.h"
#include "pruebas/apoyo/caja_contestada.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"

#include <QAbstractButton>
#include <QApplication>

#include <memory>

using namespace Qt::StringLiterals;

class PruebaOferta : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        powershell::usarElDeMuestra();
        m_lanzador = std::make_unique<LanzadorConServidor>();
    }

    void preguntaEnUnaCajaConLoQueCambia()
    {
        const CajaContestada caja(CajaContestada::Cancelar);
        const VentanaAbierta lanzador;
        QVERIFY(QTest::qWaitFor([&] { return !caja.titulo().isEmpty(); }));
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
    }

    void laCajaBloqueaLaVentana()
    {
        CajaContestada caja(CajaContestada::Cancelar);
        const QWidget *bloqueada = nullptr;
        caja.antesDeContestar(
            [&] { bloqueada = QApplication::activeModalWidget()->parentWidget(); });
        const VentanaAbierta lanzador;
        QVERIFY(QTest::qWaitFor([&] { return !caja.titulo().isEmpty(); }));
        QCOMPARE(bloqueada, &lanzador.ventana);
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
        LanzadorConServidor::instalar({{componente, local}});
        m_lanzador->publicar({{componente, nueva}});

        CajaContestada caja(CajaContestada::Cancelar);
        Qt::TextFormat formato = Qt::AutoText;
        caja.antesDeContestar([&] {
            const auto *dialogo = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            formato = dialogo ? dialogo->textFormat() : Qt::AutoText;
        });
        const VentanaAbierta lanzador;
        QVERIFY(QTest::qWaitFor([&] { return !caja.texto().isEmpty(); }));
        QCOMPARE(caja.texto().section(u'\n', 2, 2), renglon);
        QCOMPARE(caja.texto().count(u'\n'), 4);
        QCOMPARE(formato, Qt::PlainText);
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
        const Arbol antes = LanzadorConServidor::instalado();
        for (int arranque = 1; arranque <= 2; ++arranque) {
            QVERIFY(noSeHaceNadaSiSeContestaCon(boton));
            QCOMPARE(m_lanzador->servidor.pedidos().size(), arranque);
        }
        QCOMPARE(LanzadorConServidor::instalado(), antes);
        QVERIFY(powershell::llamadas().isEmpty());
    }

private:
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

    /// Abre el lanzador y contesta su oferta.
    static bool noSeHaceNadaSiSeContestaCon(const QString &boton)
    {
        CajaContestada caja(CajaContestada::Cancelar);
        caja.antesDeContestar([&] { contestarCon(boton); });
        const VentanaAbierta lanzador;
        return QTest::qWaitFor([&] { return !caja.titulo().isEmpty(); }) &&
               lanzador.pedidosEnCurso().isEmpty() && lanzador.mensajes.isEmpty() &&
               !lanzador.termino;
    }

    std::unique_ptr<LanzadorConServidor> m_lanzador;
};

int main(int argc, char *argv[])
{
    return correr<PruebaOferta, QApplication>(argc, argv);
}

#include "prueba_oferta.moc"
