#include "ombu/perfiles_locales.h"

#include "pruebas/apoyo/archivos_ilegibles.h"
#include "pruebas/apoyo/disco_lleno.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QUuid>

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

using ombu::Perfil;
using ombu::PerfilesLocales;

namespace ombu {

static bool operator==(const Perfil &a, const Perfil &b)
{
    return a.id == b.id && a.nombre == b.nombre && a.color == b.color;
}

} // namespace ombu

namespace {

QString rutaPerfiles()
{
    return escuela::dirDatos() + "/perfiles.json"_L1;
}

QByteArray perfilEscrito(const QByteArray &color, const QByteArray &id, const QByteArray &nombre)
{
    return "    {\n        \"color\": \"" + color + "\",\n        \"id\": \"" + id +
           "\",\n        \"nombre\": \"" + nombre + "\"\n    }";
}

void escribirPerfiles(const QByteArray &contenido)
{
    escuela::escribir(rutaPerfiles(), contenido);
}

} // namespace

class PruebaPerfilesLocales : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { escuela::vaciar(); }

    void elArchivoEstaEnLaCarpetaDeDatos()
    {
        QCOMPARE(PerfilesLocales::rutaArchivo(), rutaPerfiles());
    }

    void sinArchivoNoHayPerfilesNiSeLoCrea()
    {
        QVERIFY(PerfilesLocales::listar().isEmpty());
        QVERIFY(escuela::archivosBajo(escuela::dirDatos()).isEmpty());
    }

    void elArchivoQuedaAsiByteAByte()
    {
        const QByteArray ana = PerfilesLocales::crear(u"Ana"_s).id.toUtf8();
        const QByteArray nacho = PerfilesLocales::crear(u"Ñacho \"Pez\""_s).id.toUtf8();
        QCOMPARE(escuela::leer(rutaPerfiles()),
                 "[\n" + perfilEscrito("#1A6BAF", ana, "Ana") + ",\n" +
                     perfilEscrito("#6B3FA0", nacho, R"(Ñacho \"Pez\")") + "\n]\n");
    }

    void seListanEnElOrdenEnQueSeCrearon()
    {
        const Perfil zoe = PerfilesLocales::crear(u"Zoe"_s);
        const Perfil ana = PerfilesLocales::crear(u"Ana"_s);
        QCOMPARE(PerfilesLocales::listar(), (QList<Perfil>{zoe, ana}));
    }

    void elIdEsUnUuidSinLlavesYNoSeRepite()
    {
        const QString id = PerfilesLocales::crear(u"Ana"_s).id;
        QCOMPARE(id.size(), 36);
        QCOMPARE(QUuid(id).toString(QUuid::WithoutBraces), id);
        QCOMPARE(QUuid(id).version(), QUuid::Random);
        QVERIFY(PerfilesLocales::crear(u"Ana"_s).id != id);
    }

    void elColorDependeSoloDeCuantosPerfilesHabia_data()
    {
        QTest::addColumn<int>("habia");
        QTest::addColumn<QString>("color");
        const QStringList paleta{u"#1A6BAF"_s, u"#6B3FA0"_s, u"#D4570A"_s, u"#2E8B57"_s,
                                 u"#C2185B"_s, u"#00838F"_s, u"#F9A825"_s, u"#5D4037"_s};
        for (int habia = 0; habia < 8; ++habia)
            QTest::addRow("%d", habia) << habia << paleta.at(habia);
        QTest::newRow("8") << 8 << paleta.at(0);
        QTest::newRow("9") << 9 << paleta.at(1);
        QTest::newRow("15") << 15 << paleta.at(7);
        QTest::newRow("16") << 16 << paleta.at(0);
        QTest::newRow("1003") << 1003 << paleta.at(3);
    }

    void elColorDependeSoloDeCuantosPerfilesHabia()
    {
        QFETCH(const int, habia);
        QJsonArray lista;
        for (int i = 0; i < habia; ++i)
            lista.append(QJsonObject{{u"color"_s, u"#1A6BAF"_s}});
        escribirPerfiles(QJsonDocument(lista).toJson());

        QTEST(PerfilesLocales::crear(u"Ana"_s).color, "color");
        QCOMPARE(PerfilesLocales::listar().size(), habia + 1);
        QTEST(PerfilesLocales::listar().constLast().color, "color");
    }

    void elNombreSeGuardaSinEspaciosEnLosBordes()
    {
        QCOMPARE(PerfilesLocales::crear(u" \t Ana  Clara \n"_s).nombre, u"Ana  Clara"_s);
        QCOMPARE(PerfilesLocales::listar().constFirst().nombre, u"Ana  Clara"_s);
    }

    void unNombreVacioSeAceptaIgual()
    {
        QCOMPARE(PerfilesLocales::crear(u"   "_s).nombre, QString());
        QCOMPARE(PerfilesLocales::listar().size(), 1);
    }

    void dosPerfilesConElMismoNombreSonDos()
    {
        const Perfil una = PerfilesLocales::crear(u"Ana"_s);
        const Perfil otra = PerfilesLocales::crear(u"Ana"_s);
        QVERIFY(una.id != otra.id);
        QCOMPARE(PerfilesLocales::listar(), (QList<Perfil>{una, otra}));
    }

    void elOrdenDeLasClavesNoImporta()
    {
        escribirPerfiles(R"([{"nombre":"Ana","otra":[1],"id":"7","color":"rojo"}])");
        QCOMPARE(PerfilesLocales::listar(), (QList<Perfil>{{u"7"_s, u"Ana"_s, u"rojo"_s}}));
    }

    void cadaElementoDaUnPerfilAunqueLeFaltenDatos()
    {
        escribirPerfiles(R"([{"nombre":"Ana"}, {}, 17, null, "Beto", [{"id":"8"}],
            {"id":9,"nombre":["Caro"],"color":null}])");
        QList<Perfil> esperados(7);
        esperados.first().nombre = u"Ana"_s;
        QCOMPARE(PerfilesLocales::listar(), esperados);
    }

    void loQueEscribeOtroProcesoApareceEnLaProximaLectura()
    {
        const Perfil ana = PerfilesLocales::crear(u"Ana"_s);
        const QString beto = escuela::sonda({u"crear-perfil"_s, u"Beto"_s});
        QCOMPARE(PerfilesLocales::listar(), (QList<Perfil>{ana, {beto, u"Beto"_s, u"#6B3FA0"_s}}));
    }

    void unArchivoIlegibleCuentaComoVacioYElProximoPerfilLoReemplaza_data()
    {
        filasDeArchivosIlegibles();
        QTest::newRow("un objeto en lugar de la lista") << Estropeo([](const QString &ruta) {
            escuela::escribir(ruta, R"({"id": "1", "nombre": "Ana", "color": "rojo"})");
        });
    }

    void unArchivoIlegibleCuentaComoVacioYElProximoPerfilLoReemplaza()
    {
        QFETCH(const Estropeo, estropear);
        estropear(rutaPerfiles());
        QVERIFY(PerfilesLocales::listar().isEmpty());

        const Perfil ana = PerfilesLocales::crear(u"Ana"_s);
        QCOMPARE(ana.color, u"#1A6BAF"_s);
        QCOMPARE(PerfilesLocales::listar(), QList<Perfil>{ana});
    }

    void unaListaDe5MegasSeLeeYSeAmpliaEntera()
    {
        constexpr int kPerfiles = 50'000;
        QJsonArray lista;
        for (int i = 0; i < kPerfiles; ++i)
            lista.append(
                QJsonObject{{u"id"_s, QString::number(i)}, {u"nombre"_s, QString(80, u'a')}});
        const QByteArray texto = QJsonDocument(lista).toJson(QJsonDocument::Compact);
        QVERIFY(texto.size() > 5'000'000);
        escribirPerfiles(texto);

        QCOMPARE(PerfilesLocales::listar().size(), kPerfiles);
        const Perfil ana = PerfilesLocales::crear(u"Ana"_s);
        const QList<Perfil> perfiles = PerfilesLocales::listar();
        QCOMPARE(perfiles.size(), kPerfiles + 1);
        QCOMPARE(perfiles.at(kPerfiles - 1).id, QString::number(kPerfiles - 1));
        QCOMPARE(perfiles.last(), ana);
    }

    void sinCarpetaDondeGuardarElPerfilSeCreaIgualPeroNoQueda()
    {
        PerfilesLocales::rutaArchivo(); // La carpeta se elige antes de que deje de servir.
        QVERIFY(QDir(escuela::dirDatos()).removeRecursively());
        const QByteArray noEsCarpeta = "un archivo donde iba la carpeta";
        escuela::escribir(escuela::dirDatos(), noEsCarpeta);

        const Perfil ana = PerfilesLocales::crear(u" Ana "_s);
        QCOMPARE(ana.nombre, u"Ana"_s);
        QCOMPARE(ana.color, u"#1A6BAF"_s);
        QCOMPARE(ana.id.size(), 36);
        QVERIFY(PerfilesLocales::listar().isEmpty());
        QCOMPARE(escuela::leer(escuela::dirDatos()), noEsCarpeta);
    }

    void conUnaCarpetaEnLugarDelArchivoNoSeGuarda()
    {
        QVERIFY(QDir().mkpath(rutaPerfiles() + "/adentro"_L1));
        QCOMPARE(PerfilesLocales::crear(u"Ana"_s).nombre, u"Ana"_s);
        QVERIFY(PerfilesLocales::listar().isEmpty());
        QVERIFY(QDir(rutaPerfiles() + "/adentro"_L1).exists());
        QVERIFY(escuela::archivosBajo(escuela::dirDatos()).isEmpty());
    }

    void conElDiscoLlenoQuedaElArchivoAnterior()
    {
        for (int i = 0; i < 50; ++i)
            PerfilesLocales::crear(u"Ana"_s);
        const QByteArray anterior = escuela::leer(rutaPerfiles());
        QVERIFY(anterior.size() > 4096);

        const QString nombre(20'000, u'a');
        PerfilesLocales::crear(nombre);
        const qsizetype tamano = escuela::leer(rutaPerfiles()).size();
        escribirPerfiles(anterior);

        const QList<quint64> discos = discosEnLosQueNoEntra(tamano);
        for (const quint64 disco : discos) {
            const DiscoLleno lleno(disco);
            QCOMPARE(PerfilesLocales::crear(nombre).nombre, nombre);
            QCOMPARE(escuela::leer(rutaPerfiles()), anterior);
            QCOMPARE(escuela::archivosBajo(escuela::dirDatos()), QStringList{u"perfiles.json"_s});
        }

        const DiscoLleno justo(static_cast<quint64>(tamano));
        const Perfil entra = PerfilesLocales::crear(nombre);
        QCOMPARE(PerfilesLocales::listar().size(), 51);
        QCOMPARE(PerfilesLocales::listar().constLast(), entra);
    }

    void variosProcesosALaVezNuncaDejanElArchivoPorLaMitad()
    {
        constexpr qsizetype kProcesos = 4;
        constexpr qsizetype kPerfiles = 60;
        const QString nombre(500, u'ñ');
        std::vector<std::unique_ptr<QProcess>> procesos;
        procesos.reserve(kProcesos);
        for (qsizetype i = 0; i < kProcesos; ++i) {
            procesos.push_back(escuela::lanzarSonda(
                {u"repetir"_s, QString::number(kPerfiles), u"crear-perfil"_s, nombre}));
        }

        int lecturas = 0;
        for (const auto &proceso : procesos) {
            while (!proceso->waitForFinished(0)) {
                const QByteArray texto = escuela::leer(rutaPerfiles());
                QVERIFY(texto.isNull() || QJsonDocument::fromJson(texto).isArray());
                ++lecturas;
            }
            QCOMPARE(proceso->exitCode(), 0);
        }

        QVERIFY(lecturas > 0);
        const qsizetype quedaron = PerfilesLocales::listar().size();
        QVERIFY(quedaron >= kPerfiles);
        QVERIFY(quedaron <= kProcesos * kPerfiles);
        QCOMPARE(escuela::archivosBajo(escuela::dirDatos()), QStringList{u"perfiles.json"_s});
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaPerfilesLocales, QCoreApplication>(argc, argv);
}

#include "prueba_perfiles_locales.moc"
