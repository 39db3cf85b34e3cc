#include "ombu/recientes.h"
#include "ombu/sesion.h"

#include "pruebas/apoyo/disco_lleno.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/reloj.h"
#include "pruebas/ombu/sesion_guardada.h"

#include <QDir>
#include <QProcess>

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

using ombu::ArchivoReciente;
using ombu::Integrante;
using ombu::ModoSesion;
using ombu::Recientes;
using ombu::Sesion;

namespace {

QDateTime alEmpezar()
{
    return QDateTime(QDate(2025, 3, 14), QTime(9, 5));
}

void iniciar(const QStringList &ids)
{
    QList<Integrante> integrantes;
    for (const QString &id : ids)
        integrantes.append({id, u"Ana"_s, {}});
    const std::unique_ptr<Sesion> sesion(
        Sesion::iniciar(ModoSesion::Aulared, u"a1b2"_s, u"Ana"_s, integrantes, 0, nullptr));
    QVERIFY(sesion);
}

QString rutaDe(const QString &clave)
{
    return escuela::dirDatos() + "/recientes/"_L1 + clave + ".json"_L1;
}

bool esJsonEntero(const QString &ruta)
{
    const QByteArray texto = escuela::leer(ruta);
    return texto.isNull() || !QJsonDocument::fromJson(texto).isNull();
}

} // namespace

class PruebaRecientesDeLaSesion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        reloj::poner(alEmpezar());
    }

    void sinSesionNoSeEscribeNada()
    {
        Recientes::registrarEnSesionActiva(u"/a.trd"_s, u"tordo"_s, false);
        QVERIFY(escuela::archivosBajo(escuela::dirDatos()).isEmpty());
        QVERIFY(!QDir(escuela::dirDatos() + "/recientes"_L1).exists());
    }

    void conUnaSesionVencidaNoSeAnotaNada()
    {
        iniciar({u"17"_s});
        reloj::poner(alEmpezar().addSecs(14460));
        Recientes::registrarEnSesionActiva(u"/a.trd"_s, u"tordo"_s, false);
        QVERIFY(escuela::archivosBajo(escuela::dirDatos()).isEmpty());
    }

    void cadaIntegranteRecibeElArchivoConLaHoraDeAhora_data()
    {
        QTest::addColumn<bool>("temporal");
        QTest::newRow("temporal") << true;
        QTest::newRow("permanente") << false;
    }

    void cadaIntegranteRecibeElArchivoConLaHoraDeAhora()
    {
        QFETCH(const bool, temporal);
        iniciar({u"17"_s, u"9"_s, u"ana.pérez"_s});
        Recientes::registrar(u"9"_s, {u"/viejo.cln"_s, u"calandria"_s, alEmpezar(), false});
        reloj::poner(alEmpezar().addSecs(75));
        Recientes::registrarEnSesionActiva(u"/Ñ/a.trd"_s, u"tordo"_s, temporal);

        QCOMPARE(escuela::archivosBajo(escuela::dirDatos()),
                 (QStringList{u"recientes/17.json"_s, u"recientes/9.json"_s,
                              u"recientes/ana.p_rez.json"_s, u"sesion.json"_s}));
        for (const QString &clave : {u"17"_s, u"9"_s, u"ana.pérez"_s}) {
            const ArchivoReciente archivo = Recientes::listar(clave).constFirst();
            QCOMPARE(archivo.ruta, u"/Ñ/a.trd"_s);
            QCOMPARE(archivo.app, u"tordo"_s);
            QCOMPARE(archivo.ultimoUso, alEmpezar().addSecs(75));
            QCOMPARE(archivo.temporal, temporal);
        }
        QCOMPARE(Recientes::listar(u"17"_s).size(), 1);
        QCOMPARE(Recientes::listar(u"9"_s).size(), 2);
        QVERIFY(escuela::leer(rutaDe(u"17"_s)).contains(R"("ultimo_uso": "2025-03-14T09:06:15")"));
    }

    void anotarCuentaComoActividadEnseguidaYNoCambiaNadaMas()
    {
        iniciar({u"17"_s, u"9"_s});
        QByteArray esperado = escuela::leer(sesion_guardada::ruta());
        reloj::poner(alEmpezar().addSecs(1));
        Recientes::registrarEnSesionActiva(u"/a.trd"_s, u"tordo"_s, false);
        esperado.replace(R"("ultima_actividad": "2025-03-14T09:05:00")",
                         R"("ultima_actividad": "2025-03-14T09:05:01")");
        QCOMPARE(escuela::leer(sesion_guardada::ruta()), esperado);
    }

    void unaSesionSinIntegrantesSoloCuentaActividad()
    {
        iniciar({});
        reloj::poner(alEmpezar().addSecs(40));
        Recientes::registrarEnSesionActiva(u"/a.trd"_s, u"tordo"_s, false);
        QCOMPARE(escuela::archivosBajo(escuela::dirDatos()), QStringList{u"sesion.json"_s});
        QCOMPARE(sesion_guardada::leer()["ultima_actividad"_L1].toString(),
                 u"2025-03-14T09:05:40"_s);
    }

    void siUnaListaNoSePuedeEscribirLasDemasYLaActividadSi()
    {
        iniciar({u"17"_s, u"9"_s});
        QVERIFY(QDir().mkpath(rutaDe(u"17"_s)));
        reloj::poner(alEmpezar().addSecs(40));
        Recientes::registrarEnSesionActiva(u"/a.trd"_s, u"tordo"_s, false);
        QCOMPARE(Recientes::listar(u"9"_s).size(), 1);
        QCOMPARE(sesion_guardada::leer()["ultima_actividad"_L1].toString(),
                 u"2025-03-14T09:05:40"_s);
    }

    void conElDiscoLlenoNoCambiaNada()
    {
        iniciar({u"17"_s, u"9"_s});
        Recientes::registrarEnSesionActiva(u"/a.trd"_s, u"tordo"_s, false);
        const QStringList rutas{sesion_guardada::ruta(), rutaDe(u"17"_s), rutaDe(u"9"_s)};
        const QStringList archivos = escuela::archivosBajo(escuela::dirDatos());
        QByteArrayList anteriores;
        for (const QString &ruta : rutas)
            anteriores.append(escuela::leer(ruta));

        reloj::poner(alEmpezar().addSecs(40));
        const qsizetype menor = std::min_element(anteriores.cbegin(), anteriores.cend(),
                                                 [](const QByteArray &a, const QByteArray &b) {
                                                     return a.size() < b.size();
                                                 })
                                    ->size();
        const QList<quint64> discos = discosEnLosQueNoEntra(menor);
        for (const quint64 disco : discos) {
            const DiscoLleno lleno(disco);
            Recientes::registrarEnSesionActiva(u"/b.trd"_s, u"tordo"_s, false);
            for (qsizetype i = 0; i < rutas.size(); ++i)
                QCOMPARE(escuela::leer(rutas.at(i)), anteriores.at(i));
            QCOMPARE(escuela::archivosBajo(escuela::dirDatos()), archivos);
        }
    }

    void loQueAnotaOtroProcesoApareceEnLaProximaLectura()
    {
        iniciar({u"17"_s});
        Recientes::registrarEnSesionActiva(u"/a.trd"_s, u"tordo"_s, false);
        escuela::sonda({u"anotar-reciente"_s, u"/b.cln"_s, u"calandria"_s});
        Recientes::registrarEnSesionActiva(u"/A.TRD"_s, u"tordo"_s, false);
        const QList<ArchivoReciente> archivos = Recientes::listar(u"17"_s);
        QCOMPARE(archivos.size(), 2);
        QCOMPARE(archivos.at(0).ruta, u"/A.TRD"_s);
        QCOMPARE(archivos.at(1).ruta, u"/b.cln"_s);
    }

    void variosProcesosALaVezNuncaDejanUnArchivoPorLaMitad()
    {
        iniciar({u"17"_s, u"9"_s});
        constexpr int kProcesos = 4;
        std::vector<std::unique_ptr<QProcess>> procesos;
        procesos.reserve(kProcesos);
        for (int i = 0; i < kProcesos; ++i) {
            procesos.push_back(
                escuela::lanzarSonda({u"repetir"_s, u"40"_s, u"anotar-reciente"_s,
                                      u"/%1/"_s.arg(i) + QString(5000, u'ñ'), u"tordo"_s}));
        }

        int lecturas = 0;
        for (const auto &proceso : procesos) {
            while (!proceso->waitForFinished(0)) {
                QVERIFY(esJsonEntero(sesion_guardada::ruta()));
                QVERIFY(esJsonEntero(rutaDe(u"17"_s)));
                QVERIFY(esJsonEntero(rutaDe(u"9"_s)));
                ++lecturas;
            }
            QCOMPARE(proceso->exitCode(), 0);
        }

        QVERIFY(lecturas > 0);
        QVERIFY(!Recientes::listar(u"17"_s).isEmpty());
        QVERIFY(Recientes::listar(u"17"_s).size() <= kProcesos);
        QVERIFY(std::unique_ptr<Sesion>(Sesion::cargar(nullptr)));
        QCOMPARE(escuela::archivosBajo(escuela::dirDatos()),
                 (QStringList{u"recientes/17.json"_s, u"recientes/9.json"_s, u"sesion.json"_s}));
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaRecientesDeLaSesion, QCoreApplication>(argc, argv);
}

#include "prueba_recientes_de_la_sesion.moc"
