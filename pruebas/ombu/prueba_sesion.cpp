#include "ombu/sesion.h"

#include "pruebas/apoyo/disco_lleno.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/reloj.h"
#include "pruebas/ombu/sesion_guardada.h"

#include <QDir>
#include <QFile>

#include <memory>

using namespace Qt::StringLiterals;

using ombu::Integrante;
using ombu::ModoSesion;
using ombu::Sesion;

namespace {

QDateTime alEmpezar()
{
    return QDateTime(QDate(2025, 3, 14), QTime(9, 5));
}

QStringList archivosDeDatos()
{
    return escuela::archivosBajo(escuela::dirDatos());
}

// Sin dueño: la prueba la suelta al terminar.
std::unique_ptr<Sesion> iniciar(const QString &grupo = u"Ana"_s)
{
    return std::unique_ptr<Sesion>(Sesion::iniciar(
        ModoSesion::Standalone, {}, grupo, {{u"ana-1"_s, u"Ana"_s, u"celeste"_s}}, 0, nullptr));
}

std::unique_ptr<Sesion> cargar()
{
    return std::unique_ptr<Sesion>(Sesion::cargar(nullptr));
}

} // namespace

class PruebaSesion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        reloj::poner(alEmpezar());
        QCOMPARE(Sesion::rutaArchivo(), sesion_guardada::ruta());
    }

    void iniciarEscribeElArchivoDeUnGrupoEnLinea()
    {
        const std::unique_ptr<Sesion> sesion(Sesion::iniciar(
            ModoSesion::Aulared, u"a1b2"_s, u"Los Teros"_s,
            {{u"17"_s, u"Ana"_s, {}}, {u"9"_s, u"Ñacho Pérez"_s, u"rojo"_s}}, 90, nullptr));
        QVERIFY(sesion);
        QCOMPARE(escuela::leer(sesion_guardada::ruta()), QByteArray(R"({
    "duracion_estimada_min": 90,
    "grupo": "Los Teros",
    "inicio_sesion": "2025-03-14T09:05:00",
    "integrantes": [
        {
            "color": "",
            "id": "17",
            "nombre": "Ana"
        },
        {
            "color": "rojo",
            "id": "9",
            "nombre": "Ñacho Pérez"
        }
    ],
    "modo": "aulared",
    "token": "a1b2",
    "ultima_actividad": "2025-03-14T09:05:00"
}
)"));
        QCOMPARE(archivosDeDatos(), QStringList{u"sesion.json"_s});
    }

    void iniciarEscribeElArchivoDeUnaPersonaSinConexion()
    {
        const std::unique_ptr<Sesion> sesion(
            Sesion::iniciar(ModoSesion::Standalone, {}, {}, {}, -5, nullptr));
        QVERIFY(sesion);
        QCOMPARE(escuela::leer(sesion_guardada::ruta()), QByteArray(R"({
    "duracion_estimada_min": -5,
    "grupo": "",
    "inicio_sesion": "2025-03-14T09:05:00",
    "integrantes": [
    ],
    "modo": "standalone",
    "token": "",
    "ultima_actividad": "2025-03-14T09:05:00"
}
)"));
    }

    void iniciarDaLaSesionConSusDatosYSuDueno()
    {
        QObject dueno;
        const QList<Integrante> integrantes{{u"2"_s, u"Beto"_s, {}}, {u"1"_s, u"Ana"_s, {}}};
        const Sesion *sesion = Sesion::iniciar(ModoSesion::Aulared, u"a1b2"_s, u"Los Teros"_s,
                                               integrantes, 45, &dueno);
        QVERIFY(sesion);
        QCOMPARE(sesion->parent(), &dueno);
        QCOMPARE(sesion->modo(), ModoSesion::Aulared);
        QCOMPARE(sesion->token(), u"a1b2"_s);
        QCOMPARE(sesion->grupo(), u"Los Teros"_s);
        QCOMPARE(sesion->integrantes(), integrantes);
        QCOMPARE(sesion->inicio(), alEmpezar());
        QCOMPARE(sesion->ultimaActividad(), alEmpezar());
        QCOMPARE(sesion->duracionEstimadaMin(), 45);
        QVERIFY(sesion->esValida());
    }

    void iniciarReemplazaALaSesionAnterior()
    {
        QVERIFY(iniciar(u"Los Teros"_s));
        QVERIFY(iniciar(u"Ana"_s));
        QCOMPARE(cargar()->grupo(), u"Ana"_s);
    }

    void loGuardadoSeCargaIgual()
    {
        const QList<Integrante> integrantes{{u"2"_s, u"Beto"_s, {}}, {u"1"_s, u"Ana"_s, u"rojo"_s}};
        QVERIFY(std::unique_ptr<Sesion>(Sesion::iniciar(
            ModoSesion::Aulared, u"a1b2"_s, u"\t\"Ñ\" \\ 🎨"_s, integrantes, 45, nullptr)));
        reloj::poner(alEmpezar().addSecs(600));
        QObject dueno;
        const Sesion *sesion = Sesion::cargar(&dueno);
        QVERIFY(sesion);
        QCOMPARE(sesion->parent(), &dueno);
        QCOMPARE(sesion->modo(), ModoSesion::Aulared);
        QCOMPARE(sesion->token(), u"a1b2"_s);
        QCOMPARE(sesion->grupo(), u"\t\"Ñ\" \\ 🎨"_s);
        QCOMPARE(sesion->integrantes(), integrantes);
        QCOMPARE(sesion->inicio(), alEmpezar());
        QCOMPARE(sesion->ultimaActividad(), alEmpezar());
        QCOMPARE(sesion->duracionEstimadaMin(), 45);
    }

    void unaSesionDe5MegasSeGuardaYSeCargaEntera()
    {
        const QString grupo(5'000'000, u'ñ');
        QVERIFY(iniciar(grupo));
        QCOMPARE(cargar()->grupo(), grupo);
    }

    void cerrarBorraElArchivoYNoTocaElObjeto()
    {
        const auto sesion = iniciar();
        Sesion::cerrar();
        QVERIFY(archivosDeDatos().isEmpty());
        QVERIFY(!cargar());
        QCOMPARE(sesion->grupo(), u"Ana"_s);
        QVERIFY(!sesion->esValida());
    }

    void cerrarSinSesionNoHaceNada()
    {
        escuela::escribir(escuela::dirDatos() + "/otro.json"_L1, "{}");
        Sesion::cerrar();
        QCOMPARE(archivosDeDatos(), QStringList{u"otro.json"_s});
    }

    void conUnaCarpetaEnLugarDelArchivoNoHaySesionNiSePuedeIniciar()
    {
        QVERIFY(QDir().mkpath(sesion_guardada::ruta()));
        QVERIFY(!cargar());
        QVERIFY(!iniciar());
        Sesion::cerrar();
        QVERIFY(QDir(sesion_guardada::ruta()).exists());
        QVERIFY(archivosDeDatos().isEmpty());
    }

    void siNoSePuedeEscribirIniciarDaNuloYNoDejaNada()
    {
        QVERIFY(QDir(escuela::dirDatos()).removeRecursively());
        escuela::escribir(escuela::dirDatos(), "un archivo donde iba la carpeta");
        QObject dueno;
        QVERIFY(!Sesion::iniciar(ModoSesion::Aulared, u"t"_s, u"g"_s, {}, 0, &dueno));
        QVERIFY(dueno.children().isEmpty());
        QVERIFY(!cargar());
    }

    void conElDiscoLlenoQuedaLaSesionAnterior()
    {
        const QString grupo(20'000, u'b');
        const auto nueva = iniciar(grupo);
        const QByteArray textoNuevo = escuela::leer(sesion_guardada::ruta());
        QVERIFY(iniciar(u"Ana"_s));
        const QByteArray anterior = escuela::leer(sesion_guardada::ruta());

        const QList<quint64> discos = discosEnLosQueNoEntra(textoNuevo.size());
        for (const quint64 disco : discos) {
            const DiscoLleno lleno(disco);
            QVERIFY(!nueva->guardar());
            QVERIFY(!iniciar(grupo));
            QCOMPARE(escuela::leer(sesion_guardada::ruta()), anterior);
            QCOMPARE(archivosDeDatos(), QStringList{u"sesion.json"_s});
        }

        const DiscoLleno justo(static_cast<quint64>(textoNuevo.size()));
        QVERIFY(nueva->guardar());
        QCOMPARE(escuela::leer(sesion_guardada::ruta()), textoNuevo);
    }

    void otroProcesoVeLaSesionMientrasDura()
    {
        const auto sesion = iniciar(u"Los Ñandúes"_s);
        QCOMPARE(escuela::sonda({u"cargar"_s}), u"Los Ñandúes"_s);
        Sesion::cerrar();
        QCOMPARE(escuela::sonda({u"cargar"_s}), u"ninguna"_s);
    }

    void otroProcesoBorraUnaSesionVencida()
    {
        const auto sesion = iniciar();
        reloj::poner(alEmpezar().addSecs(14460));
        QCOMPARE(escuela::sonda({u"cargar"_s}), u"ninguna"_s);
        QVERIFY(archivosDeDatos().isEmpty());
        QVERIFY(!sesion->esValida());
    }

    void elUltimoQueEscribeGana()
    {
        const auto sesion = iniciar();
        reloj::poner(alEmpezar().addSecs(300));
        escuela::sonda({u"anotar-reciente"_s, u"/dibujo.cln"_s, u"calandria"_s});
        QCOMPARE(sesion_guardada::leer()["ultima_actividad"_L1].toString(),
                 u"2025-03-14T09:10:00"_s);
        QVERIFY(sesion->guardar());
        QCOMPARE(sesion_guardada::leer()["ultima_actividad"_L1].toString(),
                 u"2025-03-14T09:05:00"_s);
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaSesion, QCoreApplication>(argc, argv);
}

#include "prueba_sesion.moc"
