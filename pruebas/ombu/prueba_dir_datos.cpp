#include "ombu/sesion.h"

#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

using ombu::Sesion;

// La carpeta se elige una vez por proceso: cada caso se prueba en otro proceso.
namespace {

constexpr auto kSinProgramData = "ProgramData"_L1;

QString dirPropia()
{
    return escuela::dirDatosDeLaCuenta() + "/Lumbre"_L1;
}

QString marcaEn(const QString &dir)
{
    return dir + "/equipo.json"_L1;
}

// Lumbre se puede crear, pero no escribir: el archivo con que se prueba es una carpeta.
void impedirEscribirEnLumbre()
{
    if (!QDir(escuela::dirDatos()).mkpath(u".prueba_escritura"_s))
        qFatal("No se pudo crear .prueba_escritura");
}

QString dirDatosElegida(const QStringList &entorno = {})
{
    return escuela::sonda({u"dir-datos"_s}, entorno);
}

bool esEquipoDeAulared(const QStringList &entorno = {})
{
    return escuela::sonda({u"equipo"_s}, entorno) == "si"_L1;
}

} // namespace

class PruebaDirDatos : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QVERIFY(QDir::setCurrent(escuela::dirProgramData()));
        escuela::vaciar();
    }

    void esLumbreBajoProgramDataYNoQuedanRestosDeLaPrueba()
    {
        QCOMPARE(dirDatosElegida(), escuela::dirDatos());
        QVERIFY(escuela::archivosBajo(escuela::dirDatos()).isEmpty());
        QVERIFY(!QDir(dirPropia()).exists());
    }

    void seCreaConLasCarpetasQueFalten()
    {
        const QString programData = escuela::dirPersonal() + u"/a/b/ñ c"_s;
        QCOMPARE(dirDatosElegida({"ProgramData="_L1 + programData}), programData + "/Lumbre"_L1);
        QVERIFY(QDir(programData + "/Lumbre"_L1).exists());
    }

    void unProgramDataRelativoDaUnaRutaAbsoluta()
    {
        QVERIFY(QDir::setCurrent(escuela::dirPersonal()));
        QCOMPARE(dirDatosElegida({u"ProgramData=comun"_s}),
                 escuela::dirPersonal() + "/comun/Lumbre"_L1);
    }

    void sinProgramDataEsLaDeLaCuenta_data()
    {
        QTest::addColumn<QString>("entorno");
        QTest::newRow("ausente") << QString(kSinProgramData);
        QTest::newRow("vacío") << u"ProgramData="_s;
    }

    void sinProgramDataEsLaDeLaCuenta()
    {
        QFETCH(const QString, entorno);
        QCOMPARE(dirDatosElegida({entorno}), dirPropia());
        QVERIFY(QDir(dirPropia()).exists());
        QVERIFY(escuela::archivosBajo(dirPropia()).isEmpty());
    }

    void siLumbreNoSePuedeCrearEsLaDeLaCuenta()
    {
        QVERIFY(QDir(escuela::dirDatos()).removeRecursively());
        escuela::escribir(escuela::dirDatos(), "un archivo donde iba la carpeta");
        QCOMPARE(dirDatosElegida(), dirPropia());
        QVERIFY(QDir(dirPropia()).exists());
    }

    void siProgramDataEsUnArchivoEsLaDeLaCuenta()
    {
        const QString archivo = escuela::dirPersonal() + "/archivo"_L1;
        escuela::escribir(archivo, "no soy una carpeta");
        QCOMPARE(dirDatosElegida({"ProgramData="_L1 + archivo}), dirPropia());
    }

    void siEnLumbreNoSePuedeEscribirEsLaDeLaCuenta()
    {
        impedirEscribirEnLumbre();
        QCOMPARE(dirDatosElegida(), dirPropia());
        QVERIFY(QDir(dirPropia()).exists());
    }

    void unRestoDeOtraPruebaDeEscrituraNoMolesta()
    {
        escuela::escribir(escuela::dirDatos() + "/.prueba_escritura"_L1, "resto");
        QCOMPARE(dirDatosElegida(), escuela::dirDatos());
        QVERIFY(escuela::archivosBajo(escuela::dirDatos()).isEmpty());
    }

    void seEligeUnaSolaVezPorProceso()
    {
        QCOMPARE(Sesion::dirDatos(), escuela::dirDatos());

        const QByteArray programData = qgetenv("ProgramData");
        qputenv("ProgramData", QFile::encodeName(escuela::dirPersonal()));
        const QString otraVez = Sesion::dirDatos();
        qputenv("ProgramData", programData);
        QCOMPARE(otraVez, escuela::dirDatos());

        impedirEscribirEnLumbre();
        QCOMPARE(Sesion::dirDatos(), escuela::dirDatos());
    }

    void sinMarcaNoEsEquipoDeAulared() { QVERIFY(!esEquipoDeAulared()); }

    void conCualquierMarcaEsEquipoDeAulared_data()
    {
        QTest::addColumn<QByteArray>("contenido");
        QTest::newRow("vacía") << QByteArray();
        QTest::newRow("con un objeto") << QByteArray("{}");
        QTest::newRow("que dice que no") << QByteArray(R"({"equipo": false})");
        QTest::newRow("que no es JSON") << QByteArray("\0\xFF basura", 8);
    }

    void conCualquierMarcaEsEquipoDeAulared()
    {
        QFETCH(const QByteArray, contenido);
        escuela::escribir(marcaEn(escuela::dirDatos()), contenido);
        QVERIFY(esEquipoDeAulared());
        QCOMPARE(escuela::leer(marcaEn(escuela::dirDatos())), contenido);
    }

    void laMarcaSeBuscaCadaVez()
    {
        QVERIFY(!Sesion::equipoDeAulared());
        escuela::escribir(marcaEn(escuela::dirDatos()), {});
        QVERIFY(Sesion::equipoDeAulared());
        QVERIFY(QFile::remove(marcaEn(escuela::dirDatos())));
        QVERIFY(!Sesion::equipoDeAulared());
    }

    void laMarcaDeLumbreValeAunqueAhiNoSePuedaEscribir()
    {
        impedirEscribirEnLumbre();
        escuela::escribir(marcaEn(escuela::dirDatos()), {});
        QCOMPARE(dirDatosElegida(), dirPropia());
        QVERIFY(esEquipoDeAulared());
    }

    void laMarcaDeLaCuentaValeSiEsaEsLaCarpetaDeDatos()
    {
        escuela::escribir(marcaEn(dirPropia()), {});
        QVERIFY(esEquipoDeAulared({kSinProgramData}));

        impedirEscribirEnLumbre();
        QVERIFY(esEquipoDeAulared());
    }

    void laMarcaDeLaCuentaNoValeSiLaCarpetaDeDatosEsOtra()
    {
        escuela::escribir(marcaEn(dirPropia()), {});
        QVERIFY(!esEquipoDeAulared());
    }

    void sinProgramDataSuMarcaNoVale()
    {
        escuela::escribir(marcaEn(escuela::dirDatos()), {});
        QVERIFY(!esEquipoDeAulared({kSinProgramData}));
        QVERIFY(!esEquipoDeAulared({u"ProgramData="_s}));
    }

    void sinProgramDataNoSeBuscaLaMarcaEnLaCarpetaActual()
    {
        escuela::escribir(marcaEn(escuela::dirPersonal() + "/Lumbre"_L1), {});
        QVERIFY(QDir::setCurrent(escuela::dirPersonal()));
        QVERIFY(!esEquipoDeAulared({kSinProgramData}));
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaDirDatos, QCoreApplication>(argc, argv);
}

#include "prueba_dir_datos.moc"
