// Con un traductor que marca todo lo que le preguntan, lo que se ve sin marca no se tradujo.

#include "pruebas/apoyo/caja_contestada.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/servidor_guionado.h"
#include "pruebas/quillay/ingreso.h"
#include "pruebas/quillay/inicio.h"
#include "pruebas/quillay/lanzador.h"

#include "ombu/perfiles_locales.h"
#include "quillay/vista_perfiles.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QDir>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace {

/// Traduce todo como «contexto|texto».
class Marcador : public QTranslator
{
    Q_OBJECT

public:
    QString translate(const char *contexto, const char *texto, const char *aclaracion,
                      int cantidad) const override
    {
        Q_UNUSED(aclaracion);
        Q_UNUSED(cantidad);
        return u'«' + QString::fromUtf8(contexto) + u'|' + QString::fromUtf8(texto) + u'»';
    }

    bool isEmpty() const override { return false; }
};

/// Todo lo que `raiz` le dice a alguien, con los ojos o con un lector de pantalla.
QStringList textosDe(const QWidget &raiz)
{
    QStringList textos{raiz.windowTitle(), raiz.accessibleName(), raiz.toolTip()};
    const QList<QWidget *> hijos = raiz.findChildren<QWidget *>();
    for (const QWidget *hijo : hijos) {
        textos << hijo->toolTip() << hijo->accessibleName() << hijo->accessibleDescription()
               << hijo->statusTip() << hijo->whatsThis();
        if (const auto *etiqueta = qobject_cast<const QLabel *>(hijo))
            textos << etiqueta->text();
        if (const auto *boton = qobject_cast<const QAbstractButton *>(hijo))
            textos << boton->text();
        if (const auto *campo = qobject_cast<const QLineEdit *>(hijo))
            textos << campo->placeholderText();
        if (const auto *numero = qobject_cast<const QSpinBox *>(hijo))
            textos << numero->suffix() << numero->prefix();
        if (const auto *pestanas = qobject_cast<const QTabWidget *>(hijo)) {
            for (int i = 0; i < pestanas->count(); ++i)
                textos << pestanas->tabText(i) << pestanas->tabToolTip(i);
        }
        if (const auto *lista = qobject_cast<const QListWidget *>(hijo)) {
            for (int fila = 0; fila < lista->count(); ++fila)
                textos << lista->item(fila)->text();
        }
    }
    textos.removeAll(QString());
    return textos;
}

/// Los que no salieron del traductor como un texto de esa clase.
QStringList sinTraducir(QStringList textos, const QString &clase)
{
    const QString marca = u'«' + clase + u'|';
    textos.removeIf(
        [&marca](const QString &texto) { return texto.startsWith(marca) && texto.endsWith(u'»'); });
    return textos;
}

QString deQuillay(const QString &clase, const QString &texto)
{
    return u"«quillay::%1|%2»"_s.arg(clase, texto);
}

} // namespace

class PruebaTextosTraducidos : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        QCoreApplication::installTranslator(&m_marcador);
    }

    void losDelIngreso()
    {
        Ingreso en;
        QVERIFY(textosDe(en.vista).size() >= 9);
        QCOMPARE(sinTraducir(textosDe(en.vista), u"quillay::VistaLogin"_s), QStringList());
        en.entrar(u"ana"_s);
        QCOMPARE(sinTraducir(textosDe(en.vista), u"quillay::VistaLogin"_s),
                 QStringList{u"Ana Paz"_s});
    }

    void losMensajesDelIngreso()
    {
        Ingreso en;
        en_pantalla::apretar(en.botonEntrar);
        QCOMPARE(en.mensaje->text(),
                 deQuillay(u"VistaLogin"_s, u"Completá usuario y contraseña."_s));
        en.contestar("{}", 401);
        en.escribir(u"ana"_s, u"secreta"_s);
        en_pantalla::apretar(en.botonEntrar);
        QCOMPARE(en.mensaje->text(), deQuillay(u"VistaLogin"_s, u"Verificando..."_s));
        QTRY_COMPARE(en.mensaje->text(),
                     u"«ombu::AuthAulared|Usuario o contraseña incorrectos.»"_s);
        en.contestar(R"({"token": "t"})");
        en.entrar(u"ana"_s);
        en.escribir(u"ana"_s, u"secreta"_s);
        en_pantalla::apretar(en.botonEntrar);
        QCOMPARE(en.mensaje->text(),
                 deQuillay(u"VistaLogin"_s, u"Esa persona ya está en la sesión."_s));
    }

    void losDeLosPerfiles()
    {
        ombu::PerfilesLocales::crear(u"Ana"_s);
        quillay::VistaPerfiles vista(nullptr);
        vista.refrescar();
        QVERIFY(textosDe(vista).size() >= 5);
        QCOMPARE(sinTraducir(textosDe(vista), u"quillay::VistaPerfiles"_s), QStringList{u"Ana"_s});
    }

    void losDeLaPreguntaPorUnPerfilNuevo()
    {
        quillay::VistaPerfiles vista(nullptr);
        const CajaContestada caja(CajaContestada::Cancelar);
        vista.crearPerfil();
        QCOMPARE(caja.titulo(), deQuillay(u"VistaPerfiles"_s, u"Nuevo perfil"_s));
        QCOMPARE(caja.texto(), deQuillay(u"VistaPerfiles"_s, u"Nombre:"_s));
    }

    void losDelInicio()
    {
        escuela::instalarApp(u"ceibo"_s);
        escuela::instalarApp(u"garza"_s);
        guardarTrabajo(u"Mi casa"_s, u"Mi casa"_s);
        const Inicio en;
        QStringList resto = sinTraducir(textosDe(en.vista), u"quillay::VistaApps"_s);
        resto.removeIf([](const QString &texto) { return texto.startsWith(u"«Q"_s); }); // De Qt.
        resto.sort();
        // Solo los nombres de las apps: el botón de cada una y la pestaña de las instaladas.
        QCOMPARE(resto, QStringList({u"Benteveo"_s, u"Ceibo"_s, u"Ceibo"_s, u"Garza"_s, u"Garza"_s,
                                     u"Hornero"_s, u"Zorzal"_s}));
        QCOMPARE(en.cabecera->text(), deQuillay(u"VistaApps"_s, u"Sesión de Ana"_s));
    }

    void losDeUnaSesionGrupal()
    {
        const Inicio en({u"Ana"_s, u"Beto"_s});
        QCOMPARE(en.cabecera->text(), deQuillay(u"VistaApps"_s, u"Sesión grupal: Ana, Beto"_s));
    }

    void losAvisosDelInicio()
    {
        escuela::instalarApp(u"ceibo"_s);
        ombu::Recientes::registrar(u"id-Ana"_s, {u"/t/dibujo"_s, {}, {}, false});
        const Inicio en;
        QFile::remove(escuela::dirLanzador() + "/Ceibo/ceibo.exe"_L1);
        const CajaContestada noAbre;
        en_pantalla::apretar(en_pantalla::boton(en.vista, u"Ceibo"_s));
        QCOMPARE(noAbre.titulo(), deQuillay(u"VistaApps"_s, u"Quillay"_s));
        QCOMPARE(noAbre.texto(), deQuillay(u"VistaApps"_s, u"No se pudo abrir Ceibo."_s));

        const CajaContestada sinApp;
        en.abrirConIntro(0, 0);
        QCOMPARE(sinApp.titulo(), deQuillay(u"VistaApps"_s, u"Quillay"_s));
        QCOMPARE(sinApp.texto(),
                 deQuillay(u"VistaApps"_s, u"No se reconoce con qué app abrir este proyecto."_s));
    }

    void losDeLaVentana()
    {
        Lanzador en;
        QCOMPARE(en.ventana.windowTitle(), deQuillay(u"VentanaLauncher"_s, u"Quillay"_s));
        en.ventana.iniciarSesionAulared(u"t"_s, {{u"1"_s, u"Ana"_s, {}}, {u"2"_s, u"Beto"_s, {}}},
                                        0);
        QCOMPARE(en.sesion()->grupo(), deQuillay(u"VentanaLauncher"_s, u"Grupo de Ana"_s));
    }

    void losAvisosDeLaVentana()
    {
        Lanzador en;
        const auto empezar = [&] {
            en.ventana.iniciarSesionStandalone({u"1"_s, u"Ana"_s, {}});
        };
        QDir().mkpath(ombu::Sesion::rutaArchivo());
        const CajaContestada noSePudo;
        empezar();
        QCOMPARE(noSePudo.titulo(), deQuillay(u"VentanaLauncher"_s, u"Quillay"_s));
        QCOMPARE(noSePudo.texto(),
                 deQuillay(u"VentanaLauncher"_s, u"No se pudo crear el archivo de sesión."_s));

        QDir().rmdir(ombu::Sesion::rutaArchivo());
        empezar();
        QFile::remove(ombu::Sesion::rutaArchivo());
        const CajaContestada termino;
        en.pasarUnMinuto();
        QCOMPARE(termino.titulo(), deQuillay(u"VentanaLauncher"_s, u"Quillay"_s));
        QCOMPARE(termino.texto(),
                 deQuillay(u"VentanaLauncher"_s, u"La sesión terminó. Volvé a iniciar sesión."_s));
    }

    void losDeLaOfertaDeActualizar()
    {
        ServidorGuionado servidor;
        servidor.contestar("/versiones.json", {.cuerpo = R"({"launcher": "2"})"});
        escuela::escribir(escuela::dirLanzador() + "/versiones.json"_L1, R"({"launcher": "1"})");
        const QJsonObject config{
            {u"manifiesto_url"_s, servidor.url(u"/versiones.json"_s).toString()}};
        escuela::escribir(escuela::dirLanzador() + "/config.json"_L1,
                          QJsonDocument(config).toJson());
        const CajaContestada oferta(CajaContestada::Cancelar);
        const Lanzador en;
        QTRY_VERIFY(!oferta.titulo().isEmpty());
        QStringList textos{oferta.titulo(), oferta.texto()};
        textos += oferta.botones();
        QCOMPARE(sinTraducir(textos, u"quillay::VentanaLauncher"_s), QStringList());
        QCOMPARE(textos.size(), 4);
        QVERIFY(oferta.texto().contains(
            deQuillay(u"VentanaLauncher"_s,
                      deQuillay(u"VentanaLauncher"_s, u"Quillay"_s) + u": de la 1 a la 2"_s)));
    }

private:
    Marcador m_marcador;
};

int main(int argc, char *argv[])
{
    return correr<PruebaTextosTraducidos, QApplication>(argc, argv);
}

#include "prueba_textos_traducidos.moc"
