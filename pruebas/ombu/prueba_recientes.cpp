#include "ombu/recientes.h"

#include "pruebas/apoyo/archivos_ilegibles.h"
#include "pruebas/apoyo/disco_lleno.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/sistema.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

using ombu::ArchivoReciente;
using ombu::Recientes;

namespace {

QString dirRecientes()
{
    return escuela::dirDatos() + "/recientes"_L1;
}

QString rutaDeAna()
{
    return dirRecientes() + "/ana.json"_L1;
}

QDateTime laHora(int segundos = 0)
{
    return QDateTime(QDate(2025, 3, 14), QTime(9, 5)).addSecs(segundos);
}

void registrar(const QString &ruta, int segundos = 0)
{
    Recientes::registrar(u"ana"_s, {ruta, u"tordo"_s, laHora(segundos), false});
}

QStringList rutasDeAna()
{
    QStringList rutas;
    const QList<ArchivoReciente> archivos = Recientes::listar(u"ana"_s);
    for (const ArchivoReciente &archivo : archivos)
        rutas.append(archivo.ruta);
    return rutas;
}

// Las rutas "/primera", "/primera - 1", ..., "/ultima".
QStringList rutasNumeradas(int primera, int ultima)
{
    QStringList rutas;
    for (int i = primera; i >= ultima; --i)
        rutas.append(u"/%1"_s.arg(i));
    return rutas;
}

void escribirLista(int cantidad, const QString &relleno = {})
{
    QJsonArray lista;
    for (const QString &ruta : rutasNumeradas(cantidad, 1))
        lista.append(QJsonObject{{u"ruta"_s, ruta}, {u"app"_s, relleno}});
    escuela::escribir(rutaDeAna(), QJsonDocument(lista).toJson());
}

} // namespace

class PruebaRecientes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { escuela::vaciar(); }

    void elArchivoLlevaLaClaveDeLaPersonaConGuionesBajos_data()
    {
        QTest::addColumn<QString>("clave");
        QTest::addColumn<QString>("archivo");
        QTest::newRow("número") << u"17"_s << u"17.json"_s;
        QTest::newRow("UUID") << u"0f9a-4B"_s << u"0f9a-4B.json"_s;
        QTest::newRow("letra con acento y espacio") << u"ana.pérez 1"_s << u"ana.p_rez_1.json"_s;
        QTest::newRow("todo lo que se deja") << u"aZ09_.-"_s << u"aZ09_.-.json"_s;
        QTest::newRow("otra carpeta") << u"../../ana"_s << u".._.._ana.json"_s;
        QTest::newRow("ruta de Windows") << u"C:\\ana"_s << u"C__ana.json"_s;
        QTest::newRow("uno por carácter") << u"a@[`{/:b"_s << u"a______b.json"_s;
        QTest::newRow("salto de línea al final") << u"ana\n"_s << u"ana_.json"_s;
        QTest::newRow("byte nulo") << u"a\0b"_s << u"a_b.json"_s;
        QTest::newRow("letras y cifras de otros alfabetos") << u"ßа٣"_s << u"___.json"_s;
        QTest::newRow("vacía") << u""_s << u".json"_s;
    }

    void elArchivoLlevaLaClaveDeLaPersonaConGuionesBajos()
    {
        QFETCH(const QString, clave);
        QFETCH(const QString, archivo);
        QCOMPARE(Recientes::rutaArchivo(clave), dirRecientes() + u'/' + archivo);

        Recientes::registrar(clave, {u"/a"_s, u"tordo"_s, laHora(), false});
        QCOMPARE(Recientes::listar(clave).size(), 1);
        QCOMPARE(escuela::archivosBajo(escuela::dirDatos()),
                 QStringList{"recientes/"_L1 + archivo});
    }

    void pedirLaRutaCreaLaCarpeta()
    {
        QVERIFY(QDir(escuela::dirDatos()).removeRecursively());
        Recientes::rutaArchivo(u"ana"_s);
        QVERIFY(QDir(dirRecientes()).exists());
        QVERIFY(escuela::archivosBajo(escuela::dirDatos()).isEmpty());
    }

    void sinArchivoLaListaEstaVacia()
    {
        QVERIFY(Recientes::listar(u"ana"_s).isEmpty());
        QVERIFY(escuela::archivosBajo(escuela::dirDatos()).isEmpty());
    }

    void elArchivoQuedaAsiByteAByte()
    {
        Recientes::registrar(u"ana"_s, {u"C:/Ñandú/a.ndu"_s, u"nandu"_s, laHora(), true});
        Recientes::registrar(u"ana"_s, {u"/b.trd"_s, u"tordo"_s, laHora(61), false});
        QCOMPARE(escuela::leer(rutaDeAna()), QByteArray(R"([
    {
        "app": "tordo",
        "ruta": "/b.trd",
        "temporal": false,
        "ultimo_uso": "2025-03-14T09:06:01"
    },
    {
        "app": "nandu",
        "ruta": "C:/Ñandú/a.ndu",
        "temporal": true,
        "ultimo_uso": "2025-03-14T09:05:00"
    }
]
)"));
    }

    void loRegistradoSeListaIgual()
    {
        Recientes::registrar(u"ana"_s, {u"C:\\\"Ñ\"\n🎨"_s, u"nandu"_s, laHora(), true});
        const ArchivoReciente leido = Recientes::listar(u"ana"_s).constFirst();
        QCOMPARE(leido.ruta, u"C:\\\"Ñ\"\n🎨"_s);
        QCOMPARE(leido.app, u"nandu"_s);
        QCOMPARE(leido.ultimoUso, laHora());
        QVERIFY(leido.temporal);
    }

    void elNuevoVaAlFrenteAunqueSuHoraSeaAnterior()
    {
        registrar(u"/a"_s, 60);
        registrar(u"/b"_s, 0);
        QCOMPARE(rutasDeAna(), (QStringList{u"/b"_s, u"/a"_s}));
    }

    void cadaPersonaTieneSuLista()
    {
        registrar(u"/a"_s);
        Recientes::registrar(u"beto"_s, {u"/b"_s, u"tordo"_s, laHora(), false});
        QCOMPARE(rutasDeAna(), QStringList{u"/a"_s});
    }

    void unaMayusculaHaceOtraPersona()
    {
        if (!sistema::kDistingueMayusculas)
            QSKIP("Las listas de «ana» y «Ana» son el mismo archivo");
        registrar(u"/a"_s);
        Recientes::registrar(u"Ana"_s, {u"/b"_s, u"tordo"_s, laHora(), false});
        QCOMPARE(rutasDeAna(), QStringList{u"/a"_s});
    }

    void unaRutaNoSeRepiteAunqueCambienLasMayusculas_data()
    {
        QTest::addColumn<QString>("anterior");
        QTest::addColumn<QString>("nueva");
        QTest::newRow("idéntica") << u"/trabajos/dibujo.png"_s << u"/trabajos/dibujo.png"_s;
        QTest::newRow("con mayúsculas")
            << u"c:/trabajos/dibujo.png"_s << u"C:/Trabajos/Dibujo.png"_s;
        QTest::newRow("con eñes y acentos") << u"/ñandú.ndu"_s << u"/ÑANDÚ.NDU"_s;
    }

    void unaRutaNoSeRepiteAunqueCambienLasMayusculas()
    {
        QFETCH(const QString, anterior);
        QFETCH(const QString, nueva);
        escuela::escribir(rutaDeAna(), QJsonDocument(QJsonArray{
                                                         QJsonObject{{u"ruta"_s, u"/otra"_s}},
                                                         QJsonObject{{u"ruta"_s, anterior}},
                                                         QJsonObject{{u"ruta"_s, u"/una"_s}},
                                                         QJsonObject{{u"ruta"_s, anterior}},
                                                     })
                                           .toJson());
        registrar(nueva);
        QCOMPARE(rutasDeAna(), (QStringList{nueva, u"/otra"_s, u"/una"_s}));
    }

    void rutasParecidasSonOtras()
    {
        registrar(u"/a/b"_s);
        registrar(u"/a//b"_s);
        registrar(u"/a\\b"_s);
        registrar(u"/a/b "_s);
        QCOMPARE(rutasDeAna(), (QStringList{u"/a/b "_s, u"/a\\b"_s, u"/a//b"_s, u"/a/b"_s}));
    }

    void laLista31SeQuedaSinElMasViejo()
    {
        for (int i = 1; i <= 30; ++i)
            registrar(u"/%1"_s.arg(i));
        QCOMPARE(rutasDeAna(), rutasNumeradas(30, 1));
        registrar(u"/31"_s);
        QCOMPARE(rutasDeAna(), rutasNumeradas(31, 2));
    }

    void volverAUsarUnoDeLos30NoHaceCaerANinguno()
    {
        escribirLista(30);
        registrar(u"/1"_s);
        QCOMPARE(rutasDeAna(), QStringList{u"/1"_s} + rutasNumeradas(30, 2));
    }

    void unaListaMasLargaSeListaEnteraYSeRecortaAlRegistrar()
    {
        escribirLista(50);
        QCOMPARE(rutasDeAna(), rutasNumeradas(50, 1));
        registrar(u"/51"_s);
        QCOMPARE(rutasDeAna(), rutasNumeradas(51, 22));
    }

    void cadaElementoDaUnArchivoAunqueLeFaltenDatos()
    {
        escuela::escribir(rutaDeAna(), R"([
            {"ruta": "/a"}, {}, 17, null, "/b", [{"ruta": "/c"}],
            {"ruta": 1, "app": [], "ultimo_uso": 20250314, "temporal": 1},
            {"ruta": null, "app": {}, "ultimo_uso": "2025-03-14 09:05:00", "temporal": "true"}])");
        QList<ArchivoReciente> archivos = Recientes::listar(u"ana"_s);
        QCOMPARE(archivos.size(), 8);
        QCOMPARE(archivos.takeFirst().ruta, u"/a"_s);
        for (const ArchivoReciente &archivo : std::as_const(archivos)) {
            QCOMPARE(archivo.ruta, QString());
            QCOMPARE(archivo.app, QString());
            QVERIFY(!archivo.ultimoUso.isValid());
            QVERIFY(!archivo.temporal);
        }
    }

    void unaFechaMalEscritaQuedaVaciaAlRegistrarOtroArchivo()
    {
        escuela::escribir(rutaDeAna(), R"([{"ruta": "/a", "ultimo_uso": "ayer"}])");
        registrar(u"/b"_s);
        const QJsonArray lista = QJsonDocument::fromJson(escuela::leer(rutaDeAna())).array();
        QCOMPARE(lista.at(1)["ruta"_L1].toString(), u"/a"_s);
        QCOMPARE(lista.at(1)["ultimo_uso"_L1], QJsonValue(u""_s));
    }

    void unArchivoIlegibleCuentaComoVacioYElProximoRegistroLoReemplaza_data()
    {
        filasDeArchivosIlegibles();
        QTest::newRow("un objeto en lugar de la lista") << Estropeo([](const QString &ruta) {
            escuela::escribir(ruta, R"({"ruta": "/a", "app": "tordo"})");
        });
    }

    void unArchivoIlegibleCuentaComoVacioYElProximoRegistroLoReemplaza()
    {
        QFETCH(const Estropeo, estropear);
        estropear(rutaDeAna());
        QVERIFY(Recientes::listar(u"ana"_s).isEmpty());
        registrar(u"/b"_s);
        QCOMPARE(rutasDeAna(), QStringList{u"/b"_s});
    }

    void laMarcaDeUtf8NoMolesta()
    {
        escuela::escribir(rutaDeAna(), "\xEF\xBB\xBF[{\"ruta\": \"/ñ\"}]");
        QCOMPARE(rutasDeAna(), QStringList{u"/ñ"_s});
    }

    void unaListaDe5MegasSeLeeEnteraYSeRecortaAlRegistrar()
    {
        escribirLista(50'000, QString(100, u'a'));
        QVERIFY(QFile(rutaDeAna()).size() > 5'000'000);
        QCOMPARE(rutasDeAna(), rutasNumeradas(50'000, 1));
        registrar(u"/50001"_s);
        QCOMPARE(rutasDeAna(), rutasNumeradas(50'001, 49'972));
    }

    void unaClaveQueNoEntraEnUnNombreDeArchivoNoSeGuarda()
    {
        const QString clave(300, u'a');
        Recientes::registrar(clave, {u"/a"_s, u"tordo"_s, laHora(), false});
        QVERIFY(Recientes::listar(clave).isEmpty());
        QVERIFY(escuela::archivosBajo(escuela::dirDatos()).isEmpty());
    }

    void sinCarpetaDondeGuardarNoSeGuardaNiSeRompeNada()
    {
        Recientes::rutaArchivo(u"ana"_s); // La carpeta se elige antes de que deje de servir.
        const QByteArray noEsCarpeta = "un archivo donde iba la carpeta";
        for (const QString &carpeta : {dirRecientes(), escuela::dirDatos()}) {
            QVERIFY(QDir(carpeta).removeRecursively());
            escuela::escribir(carpeta, noEsCarpeta);
            registrar(u"/a"_s);
            QVERIFY(Recientes::listar(u"ana"_s).isEmpty());
            QCOMPARE(escuela::leer(carpeta), noEsCarpeta);
        }
    }

    void conUnaCarpetaEnLugarDelArchivoNoSeGuarda()
    {
        QVERIFY(QDir().mkpath(rutaDeAna()));
        registrar(u"/a"_s);
        QVERIFY(Recientes::listar(u"ana"_s).isEmpty());
        QVERIFY(escuela::archivosBajo(escuela::dirDatos()).isEmpty());
    }

    void conElDiscoLlenoQuedaLaListaAnterior()
    {
        escribirLista(29, QString(600, u'a'));
        const QByteArray anterior = escuela::leer(rutaDeAna());
        registrar(u"/nueva"_s);
        const QByteArray nueva = escuela::leer(rutaDeAna());
        QVERIFY(nueva.size() > 16'384);
        escuela::escribir(rutaDeAna(), anterior);

        const QList<quint64> discos = discosEnLosQueNoEntra(nueva.size());
        for (const quint64 disco : discos) {
            const DiscoLleno lleno(disco);
            registrar(u"/nueva"_s);
            QCOMPARE(escuela::leer(rutaDeAna()), anterior);
            QCOMPARE(escuela::archivosBajo(dirRecientes()), QStringList{u"ana.json"_s});
        }

        const DiscoLleno justo(static_cast<quint64>(nueva.size()));
        registrar(u"/nueva"_s);
        QCOMPARE(escuela::leer(rutaDeAna()), nueva);
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaRecientes, QCoreApplication>(argc, argv);
}

#include "prueba_recientes.moc"
