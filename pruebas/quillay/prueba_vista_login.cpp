#include "quillay/vista_login.h"

#include "pruebas/apoyo/principal.h"
#include "pruebas/quillay/ingreso.h"

#include <QApplication>
#include <QMetaMethod>

using namespace Qt::StringLiterals;

using quillay::VistaLogin;

class PruebaVistaLogin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void susMetodosParaElSistemaDeObjetosSonLosDelContrato()
    {
        const QMetaObject &meta = VistaLogin::staticMetaObject;
        QList<QByteArray> nombres;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            nombres.append(meta.method(i).name());
        QCOMPARE(nombres, QList<QByteArray>({"sesionLista", "intentarLogin", "alLoginExitoso",
                                             "alLoginFallido"}));
        QCOMPARE(meta.method(meta.methodOffset()).methodType(), QMetaMethod::Signal);
        QCOMPARE(meta.method(meta.methodOffset() + 1).access(), QMetaMethod::Private);
    }

    void disponeLaPantallaDeArribaAAbajo()
    {
        const Ingreso en;
        const auto *caja = qobject_cast<QVBoxLayout *>(en.vista.layout());
        QVERIFY(caja);
        QCOMPARE(caja->contentsMargins(), QMargins(48, 32, 48, 32));
        QCOMPARE(caja->count(), 8);

        const auto *titulo = qobject_cast<QLabel *>(en.enCaja(0));
        QCOMPARE(titulo->text(), u"Iniciar sesión — Aulared"_s);
        QCOMPARE(titulo->styleSheet(), u"font-size: 20px; font-weight: bold;"_s);
        QVERIFY(qobject_cast<QFormLayout *>(caja->itemAt(1)->layout()));
        QCOMPARE(en.botonEntrar->text(), u"Entrar"_s);
        QVERIFY(en.botonEntrar->isDefault());
        QCOMPARE(en.mensaje->text(), QString());
        QVERIFY(en.mensaje->wordWrap());
        QCOMPARE(en.mensaje->styleSheet(), u"color: #B03030;"_s);
        QCOMPARE(qobject_cast<QLabel *>(en.enCaja(4))->text(), u"Integrantes de la sesión:"_s);
        QCOMPARE(en.lista->maximumHeight(), 120);
        QCOMPARE(en.botonEmpezar->text(), u"Empezar a trabajar"_s);
        QVERIFY(caja->itemAt(7)->spacerItem());

        for (int i = 0; i < caja->count(); ++i) {
            QCOMPARE(caja->stretch(i), 0);
            QCOMPARE(caja->itemAt(i)->alignment(), Qt::Alignment());
        }
        QCOMPARE(caja->itemAt(7)->expandingDirections(), Qt::Vertical);
    }

    void elFormularioTieneUnRotuloPorCampo()
    {
        const Ingreso en;
        const auto *formulario =
            qobject_cast<QFormLayout *>(en.vista.layout()->itemAt(1)->layout());
        QCOMPARE(formulario->rowCount(), 4);
        const auto rotulo = [formulario](const QWidget *campo) {
            const auto *etiqueta = qobject_cast<const QLabel *>(
                formulario->labelForField(const_cast<QWidget *>(campo)));
            return etiqueta ? etiqueta->text() : QString();
        };
        QCOMPARE(rotulo(en.usuario), u"Usuario:"_s);
        QCOMPARE(rotulo(en.clave), u"Contraseña:"_s);
        QCOMPARE(rotulo(en.indicarDuracion), QString());
        QCOMPARE(rotulo(en.duracion), u"Duración:"_s);
        QCOMPARE(en.usuario->echoMode(), QLineEdit::Normal);
        QCOMPARE(en.clave->echoMode(), QLineEdit::Password);
        QCOMPARE(en.indicarDuracion->text(), u"Indicar duración estimada de la sesión"_s);
        QCOMPARE(en.duracion->minimum(), 15);
        QCOMPARE(en.duracion->maximum(), 480);
        QCOMPARE(en.duracion->value(), 120);
        QCOMPARE(en.duracion->suffix(), u" min"_s);
    }

    void empiezaVaciaYSinTecladoPuesto()
    {
        const Ingreso en;
        QCOMPARE(en.usuario->text(), QString());
        QCOMPARE(en.clave->text(), QString());
        QCOMPARE(en.filas(), QStringList());
        QVERIFY(en.botonEntrar->isEnabled());
        QVERIFY(!en.botonEmpezar->isEnabled());
        QVERIFY(en.indicarDuracion->isEnabled());
        QVERIFY(!en.indicarDuracion->isChecked());
        QVERIFY(!en.duracion->isEnabled());
        QCOMPARE(en.vista.focusWidget(), nullptr);
    }

    void alLlegarElTecladoEstaEnElUsuario()
    {
        Ingreso en;
        en_pantalla::mostrar(en.vista);
        en.vista.setFocus();
        QVERIFY(en.usuario->hasFocus());
    }

    void elTabuladorRecorreLaPantallaDeArribaAAbajo()
    {
        Ingreso en;
        en.indicarDuracion->setChecked(true);
        en_pantalla::mostrar(en.vista);
        en.usuario->setFocus();
        for (const QWidget *siguiente :
             {static_cast<QWidget *>(en.clave), static_cast<QWidget *>(en.indicarDuracion),
              static_cast<QWidget *>(en.duracion), static_cast<QWidget *>(en.botonEntrar),
              static_cast<QWidget *>(en.lista)}) {
            QTest::keyClick(en.vista.focusWidget(), Qt::Key_Tab);
            QCOMPARE(en.vista.focusWidget(), siguiente);
        }
    }

    void enviaElUsuarioSinEspaciosYLaClaveTalCual()
    {
        Ingreso en;
        en.entrar(u"  ana \t"_s, u" dos espacios "_s);
        QCOMPARE(en.ultimoPedido(),
                 QJsonObject({{u"usuario"_s, u"ana"_s}, {u"clave"_s, u" dos espacios "_s}}));
    }

    void unaClaveDeSoloEspaciosCuenta()
    {
        Ingreso en;
        en.entrar(u"ana"_s, u"   "_s);
        QCOMPARE(en.ultimoPedido()[u"clave"_s].toString(), u"   "_s);
        QCOMPARE(en.filas(), QStringList{u"Ana Paz"_s});
    }

    void loQueSeEscribeLlegaTalCualAlServicio_data()
    {
        QTest::addColumn<QString>("texto");
        QTest::newRow("comillas y barras") << u"a\"b\\c'/{}"_s;
        QTest::newRow("acentos y dibujos") << u"ñandú🦜"_s;
        QTest::newRow("marcas de reemplazo") << u"%1%2%n"_s;
        QTest::newRow("larguísimo") << QString(10'000, u'w');
    }

    void loQueSeEscribeLlegaTalCualAlServicio()
    {
        QFETCH(const QString, texto);
        Ingreso en;
        en.usuario->setText(texto);
        en.clave->setText(texto);
        en_pantalla::apretar(en.botonEntrar);
        QTRY_COMPARE(en.filas(), QStringList{u"Ana Paz"_s});
        QCOMPARE(en.ultimoPedido(), QJsonObject({{u"usuario"_s, texto}, {u"clave"_s, texto}}));
    }

    void sinUsuarioOSinClaveLoDiceYNoPregunta_data()
    {
        QTest::addColumn<QString>("usuario");
        QTest::addColumn<QString>("clave");
        QTest::newRow("nada") << u""_s << u""_s;
        QTest::newRow("sin usuario") << u""_s << u"secreta"_s;
        QTest::newRow("usuario de espacios") << u" \u00A0\t "_s << u"secreta"_s;
        QTest::newRow("sin clave") << u"ana"_s << u""_s;
    }

    void sinUsuarioOSinClaveLoDiceYNoPregunta()
    {
        QFETCH(const QString, usuario);
        QFETCH(const QString, clave);
        Ingreso en;
        en.usuario->setText(usuario);
        en.clave->setText(clave);
        en_pantalla::apretar(en.botonEntrar);
        QCOMPARE(en.mensaje->text(), u"Completá usuario y contraseña."_s);
        QVERIFY(en.botonEntrar->isEnabled());
        QCOMPARE(en.usuario->text(), usuario);
        QCOMPARE(en.clave->text(), clave);

        en.entrar(u"ana"_s); // El primer pedido que llega es este.
        QCOMPARE(en.servidor.pedidos().size(), 1);
    }

    void laTeclaIntroEnLaClaveEnvia()
    {
        Ingreso en;
        en.escribir(u"ana"_s, u"secreta"_s);
        QTest::keyClick(en.clave, Qt::Key_Return);
        QTRY_COMPARE(en.filas(), QStringList{u"Ana Paz"_s});
    }

    void laTeclaIntroEnElUsuarioNoEnvia()
    {
        Ingreso en;
        en_pantalla::mostrar(en.vista);
        en.escribir(u"ana"_s, u"secreta"_s);
        QTest::keyClick(en.usuario, Qt::Key_Return);
        QCOMPARE(en.mensaje->text(), QString());
        QVERIFY(en.botonEntrar->isEnabled());
    }

    void laTeclaIntroEnElBotonEnvia()
    {
        Ingreso en;
        en_pantalla::mostrar(en.vista);
        en.escribir(u"ana"_s, u"secreta"_s);
        en.botonEntrar->setFocus();
        QTest::keyClick(en.botonEntrar, Qt::Key_Return);
        QTRY_COMPARE(en.filas(), QStringList{u"Ana Paz"_s});
    }

    void mientrasEsperaSoloCambiaElMensajeYElBotonEntrar()
    {
        Ingreso en;
        en.servidor.contestar("/api/sesiones", {.modo = ServidorGuionado::Respuesta::Nunca});
        en.indicarDuracion->setChecked(true);
        en.escribir(u"ana"_s, u"secreta"_s);
        en_pantalla::apretar(en.botonEntrar);
        QTRY_COMPARE(en.servidor.pedidos().size(), 1);

        QCOMPARE(en.mensaje->text(), u"Verificando..."_s);
        QVERIFY(!en.botonEntrar->isEnabled());
        QCOMPARE(en.botonEntrar->text(), u"Entrar"_s);
        QVERIFY(en.indicarDuracion->isEnabled());
        QVERIFY(en.duracion->isEnabled());
        QVERIFY(!en.botonEmpezar->isEnabled());
        QCOMPARE(en.usuario->text(), u"ana"_s);
        QCOMPARE(en.clave->text(), u"secreta"_s);
    }

    void mientrasEsperaLaTeclaIntroMandaOtroPedidoYCadaRespuestaCuenta()
    {
        Ingreso en;
        en.escribir(u"ana"_s, u"secreta"_s);
        QTest::keyClick(en.clave, Qt::Key_Return);
        QTest::keyClick(en.clave, Qt::Key_Return);
        QTRY_COMPARE(en.filas(), QStringList({u"Ana Paz"_s, u"Ana Paz"_s}));
        QCOMPARE(en.servidor.pedidos().size(), 2);
    }

    void siElServicioNoLaDejaEntrarDiceElMotivoYConservaLoEscrito_data()
    {
        QTest::addColumn<int>("estado");
        QTest::addColumn<QByteArray>("cuerpo");
        QTest::addColumn<QString>("motivo");
        QTest::newRow("clave equivocada")
            << 401 << QByteArray("{}") << u"Usuario o contraseña incorrectos."_s;
        QTest::newRow("servicio roto")
            << 500 << QByteArray("{}") << u"No se pudo conectar con Aulared."_s;
        QTest::newRow("respuesta sin sentido")
            << 200 << QByteArray("<html>") << u"Respuesta inválida del servidor."_s;
    }

    void siElServicioNoLaDejaEntrarDiceElMotivoYConservaLoEscrito()
    {
        QFETCH(const int, estado);
        QFETCH(const QByteArray, cuerpo);
        QFETCH(const QString, motivo);
        Ingreso en;
        en.contestar(cuerpo, estado);
        en.entrar(u" ana "_s);
        QCOMPARE(en.mensaje->text(), motivo);
        QVERIFY(en.botonEntrar->isEnabled());
        QCOMPARE(en.botonEntrar->text(), u"Entrar"_s);
        QCOMPARE(en.usuario->text(), u" ana "_s);
        QCOMPARE(en.clave->text(), u"secreta"_s);
        QCOMPARE(en.filas(), QStringList());
        QVERIFY(!en.botonEmpezar->isEnabled());
        QVERIFY(en.indicarDuracion->isEnabled());
    }

    void despuesDeUnaFallaSePuedeVolverAIntentar()
    {
        Ingreso en;
        en.contestar("{}", 401);
        en.entrar(u"ana"_s);
        en.contestar(R"({"token": "t"})");
        en_pantalla::apretar(en.botonEntrar);
        QCOMPARE(en.mensaje->text(), u"Verificando..."_s);
        QTRY_COMPARE(en.filas(), QStringList{u"ana"_s});
        QCOMPARE(en.mensaje->text(), QString());
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaVistaLogin, QApplication>(argc, argv);
}

#include "prueba_vista_login.moc"
