#include "ombu/sesion.h"

#include "pruebas/apoyo/archivos_ilegibles.h"
#include "pruebas/apoyo/disco_lleno.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/reloj.h"
#include "pruebas/ombu/sesion_guardada.h"

#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

using ombu::ModoSesion;
using ombu::Sesion;

namespace {

constexpr int kMaximo32 = std::numeric_limits<int>::max();
constexpr int kMinimo32 = std::numeric_limits<int>::min();

QDateTime alEmpezar()
{
    return QDateTime(QDate(2025, 3, 14), QTime(9, 0));
}

// A cuántos segundos del comienzo está el reloj.
void ponerElRelojA(qint64 segundos)
{
    reloj::poner(alEmpezar().addSecs(segundos));
}

std::unique_ptr<Sesion> iniciar(int minutos = 0)
{
    return std::unique_ptr<Sesion>(
        Sesion::iniciar(ModoSesion::Standalone, {}, u"Ana"_s, {}, minutos, nullptr));
}

// A cuántos segundos del comienzo fue la última actividad que dice el archivo.
qint64 actividadGuardada()
{
    const QString texto = sesion_guardada::leer()["ultima_actividad"_L1].toString();
    return alEmpezar().secsTo(ombu::fechaDeTexto(texto));
}

void caso(const char *nombre, int estimacion, qint64 transcurrido, qint64 inactividad, bool vale)
{
    QTest::newRow(nombre) << estimacion << transcurrido << inactividad << vale;
}

void filasConEstimacion()
{
    caso("60 min, recién empezada", 60, 0, 0, true);
    caso("60 min, a los 60:59 sin actividad", 60, 3659, 3659, true);
    caso("60 min, a los 60:59 sin actividad desde antes", 60, 3659, 1'000'000, true);
    caso("60 min, a los 61:00 con actividad de 15:59", 60, 3660, 959, true);
    caso("60 min, a los 61:00 con actividad de 16:00", 60, 3660, 960, false);
    caso("60 min, a los 75:59 con actividad de 15:59", 60, 4559, 959, true);
    caso("60 min, a los 75:59 con actividad de 16:00", 60, 4559, 960, false);
    caso("60 min, a los 75:59 con actividad de ahora", 60, 4559, 0, true);
    caso("60 min, a los 76:00 con actividad de ahora", 60, 4560, 0, false);
    caso("60 min, al día siguiente", 60, 86'400, 0, false);
    caso("1 min, a los 1:59 sin actividad", 1, 119, 960, true);
    caso("1 min, a los 2:00 con actividad de 15:59", 1, 120, 959, true);
    caso("1 min, a los 2:00 con actividad de 16:00", 1, 120, 960, false);
    caso("1 min, a los 16:59 con actividad de ahora", 1, 1019, 0, true);
    caso("1 min, a los 17:00 con actividad de ahora", 1, 1020, 0, false);
    caso("300 min, a los 300:59 sin actividad", 300, 18'059, 18'059, true);
    caso("la mayor estimación que no desborda", kMaximo32 - 15, 0, 0, true);
    caso("la menor estimación que desborda", kMaximo32 - 14, 0, 0, false);
    caso("la mayor estimación", kMaximo32, 0, 0, false);
}

void filasSinEstimacion()
{
    for (const int sin : {0, -1, -5, kMinimo32}) {
        const auto fila = [sin](const char *caso, qint64 transcurrido, qint64 inactividad,
                                bool vale) {
            QTest::addRow("%d min, %s", sin, caso) << sin << transcurrido << inactividad << vale;
        };
        fila("recién empezada", 0, 0, true);
        fila("a los 90:59 sin actividad", 5459, 5459, true);
        fila("a los 90:59 sin actividad desde antes", 5459, 1'000'000, true);
        fila("a los 91:00 con actividad de 15:59", 5460, 959, true);
        fila("a los 91:00 con actividad de 16:00", 5460, 960, false);
        fila("a los 240:59 con actividad de 15:59", 14'459, 959, true);
        fila("a los 240:59 con actividad de 16:00", 14'459, 960, false);
        fila("a los 240:59 con actividad de ahora", 14'459, 0, true);
        fila("a los 241:00 con actividad de ahora", 14'460, 0, false);
        fila("a los 241:00 con actividad futura", 14'460, -60, false);
    }
}

void filasConElRelojAtrasado()
{
    caso("60 min, empieza dentro de una hora", 60, -3600, 0, true);
    caso("60 min, empieza dentro de una hora y no hay actividad", 60, -3600, 5000, true);
    caso("sin estimación, empieza dentro de una hora", 0, -3600, -3600, true);
    caso("sin estimación, empieza dentro de una hora y no hay actividad", 0, -3600, 5000, true);
    caso("60 min, en la gracia y con actividad futura", 60, 4000, -500, true);
    caso("sin estimación, pasado el tramo libre y con actividad futura", 0, 6000, -500, true);
}

} // namespace

class PruebaReglasDeSesion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        ponerElRelojA(0);
    }

    void laTablaDeVigencia_data()
    {
        QTest::addColumn<int>("estimacion");
        QTest::addColumn<qint64>("transcurrido");
        QTest::addColumn<qint64>("inactividad");
        QTest::addColumn<bool>("vale");
        filasConEstimacion();
        filasSinEstimacion();
        filasConElRelojAtrasado();
    }

    void laTablaDeVigencia()
    {
        QFETCH(const int, estimacion);
        QFETCH(const qint64, transcurrido);
        QFETCH(const qint64, inactividad);
        const QDateTime ahora = alEmpezar();
        QTEST(Sesion::evaluarReglas(ahora.addSecs(-transcurrido), ahora.addSecs(-inactividad),
                                    estimacion, ahora),
              "vale");
    }

    void laVigenciaDelArchivoSigueLaMismaTabla_data() { laTablaDeVigencia_data(); }

    void laVigenciaDelArchivoSigueLaMismaTabla()
    {
        QFETCH(const int, estimacion);
        QFETCH(const qint64, transcurrido);
        QFETCH(const qint64, inactividad);
        const auto sesion = iniciar();
        sesion_guardada::escribir(sesion_guardada::deAna(
            alEmpezar().addSecs(-transcurrido), alEmpezar().addSecs(-inactividad), estimacion));
        const QByteArray archivo = escuela::leer(sesion_guardada::ruta());
        QTEST(sesion->esValida(), "vale");
        QCOMPARE(escuela::leer(sesion_guardada::ruta()), archivo);
        QTEST(std::unique_ptr<Sesion>(Sesion::cargar(nullptr)) != nullptr, "vale");
    }

    void laFraccionDeSegundoNoCuenta()
    {
        const QDateTime inicio = alEmpezar();
        QVERIFY(Sesion::evaluarReglas(inicio, inicio, 0, inicio.addMSecs(5'459'999)));
        QVERIFY(!Sesion::evaluarReglas(inicio, inicio, 0, inicio.addMSecs(5'460'000)));
    }

    void enUnArchivoLaEstimacionQueNoEsEnteraEsNinguna_data()
    {
        QTest::addColumn<QJsonValue>("estimacion");
        QTest::newRow("con decimales") << QJsonValue(90.5);
        QTest::newRow("texto") << QJsonValue(u"90"_s);
        QTest::newRow("no entra en 32 bits") << QJsonValue(4294967296.0 + 90);
        QTest::newRow("ausente") << QJsonValue(QJsonValue::Undefined);
    }

    void enUnArchivoLaEstimacionQueNoEsEnteraEsNinguna()
    {
        QFETCH(const QJsonValue, estimacion);
        const auto sesion = iniciar();
        QJsonObject objeto = sesion_guardada::deAna(alEmpezar(), alEmpezar().addSecs(14'000), 90);
        sesion_guardada::escribir(objeto);
        ponerElRelojA(14'459);
        QVERIFY(!sesion->esValida());

        objeto[u"duracion_estimada_min"_s] = estimacion;
        sesion_guardada::escribir(objeto);
        QVERIFY(sesion->esValida());
        ponerElRelojA(14'460);
        QVERIFY(!sesion->esValida());
    }

    void sinUnaFechaNoVale()
    {
        const auto sesion = iniciar();
        for (const QString &clave : {u"inicio_sesion"_s, u"ultima_actividad"_s}) {
            for (const QJsonValue &valor :
                 {QJsonValue(QJsonValue::Undefined), QJsonValue(u"2025-03-14 09:00:00"_s)}) {
                QJsonObject objeto = sesion_guardada::deAna(alEmpezar(), alEmpezar(), 0);
                objeto[clave] = valor;
                sesion_guardada::escribir(objeto);
                QVERIFY2(!sesion->esValida(), qPrintable(clave));
            }
        }
    }

    void conElArchivoIlegibleNoVale_data() { filasDeArchivosIlegibles(); }

    void conElArchivoIlegibleNoVale()
    {
        QFETCH(const Estropeo, estropear);
        const auto sesion = iniciar();
        QVERIFY(sesion->esValida());
        estropear(sesion_guardada::ruta());
        QVERIFY(!sesion->esValida());
    }

    void siOtroProcesoBorraElArchivoDejaDeValer()
    {
        const auto sesion = iniciar();
        QVERIFY(QFile::remove(sesion_guardada::ruta()));
        QVERIFY(!sesion->esValida());
    }

    void laActividadDeOtroProcesoLaMantieneViva()
    {
        const auto sesion = iniciar();
        ponerElRelojA(5400);
        escuela::sonda({u"anotar-reciente"_s, u"/dibujo.cln"_s, u"calandria"_s});
        QCOMPARE(sesion->ultimaActividad(), alEmpezar());
        ponerElRelojA(5400 + 959);
        QVERIFY(sesion->esValida());
        ponerElRelojA(5400 + 960);
        QVERIFY(!sesion->esValida());
    }

    void laActividadQueTodaviaNoSeEscribioNoCuenta()
    {
        const auto sesion = iniciar(1);
        ponerElRelojA(29);
        sesion->registrarActividad();
        QCOMPARE(sesion->ultimaActividad(), alEmpezar().addSecs(29));
        ponerElRelojA(959);
        QVERIFY(sesion->esValida());
        ponerElRelojA(960);
        QVERIFY(!sesion->esValida());
    }

    void laActividadSeEscribeALos30SegundosDeLaEscrituraAnterior()
    {
        const auto sesion = iniciar();
        QByteArray esperado = escuela::leer(sesion_guardada::ruta());
        ponerElRelojA(29);
        sesion->registrarActividad();
        QCOMPARE(sesion->ultimaActividad(), alEmpezar().addSecs(29));
        QCOMPARE(sesion->ultimaActividad().timeSpec(), Qt::LocalTime);
        QCOMPARE(escuela::leer(sesion_guardada::ruta()), esperado);

        ponerElRelojA(30);
        sesion->registrarActividad();
        esperado.replace(R"("ultima_actividad": "2025-03-14T09:00:00")",
                         R"("ultima_actividad": "2025-03-14T09:00:30")");
        QCOMPARE(escuela::leer(sesion_guardada::ruta()), esperado);
    }

    void laActividadContinuaSeEscribeALoSumoCada30Segundos()
    {
        const auto sesion = iniciar();
        QList<qint64> escrituras{actividadGuardada()};
        for (qint64 segundo = 0; segundo <= 125; ++segundo) {
            ponerElRelojA(segundo);
            sesion->registrarActividad();
            sesion->registrarActividad();
            if (actividadGuardada() != escrituras.last())
                escrituras.append(actividadGuardada());
        }
        QCOMPARE(escrituras, (QList<qint64>{0, 30, 60, 90, 120}));
        QCOMPARE(sesion->ultimaActividad(), alEmpezar().addSecs(125));
    }

    void guardarTambienCuentaComoEscritura()
    {
        const auto sesion = iniciar();
        ponerElRelojA(20);
        QVERIFY(sesion->guardar());
        ponerElRelojA(49);
        sesion->registrarActividad();
        QCOMPARE(actividadGuardada(), 0);
        ponerElRelojA(50);
        sesion->registrarActividad();
        QCOMPARE(actividadGuardada(), 50);
    }

    void laPrimeraActividadDeUnaSesionCargadaSeEscribeEnseguida()
    {
        iniciar();
        const std::unique_ptr<Sesion> sesion(Sesion::cargar(nullptr));
        ponerElRelojA(1);
        sesion->registrarActividad();
        QCOMPARE(actividadGuardada(), 1);
        ponerElRelojA(2);
        sesion->registrarActividad();
        QCOMPARE(actividadGuardada(), 1);
    }

    void unaEscrituraQueFallaSeVuelveAIntentarConLaProximaActividad()
    {
        const auto sesion = iniciar();
        const QByteArray anterior = escuela::leer(sesion_guardada::ruta());
        ponerElRelojA(30);
        {
            const DiscoLleno lleno(10);
            sesion->registrarActividad();
        }
        QCOMPARE(escuela::leer(sesion_guardada::ruta()), anterior);
        QCOMPARE(sesion->ultimaActividad(), alEmpezar().addSecs(30));

        ponerElRelojA(31);
        sesion->registrarActividad();
        QCOMPARE(actividadGuardada(), 31);
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaReglasDeSesion, QCoreApplication>(argc, argv);
}

#include "prueba_reglas_de_sesion.moc"
