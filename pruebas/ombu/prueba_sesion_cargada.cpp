#include "ombu/sesion.h"

#include "pruebas/apoyo/archivos_ilegibles.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/reloj.h"
#include "pruebas/ombu/sesion_guardada.h"

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

std::unique_ptr<Sesion> cargar()
{
    return std::unique_ptr<Sesion>(Sesion::cargar(nullptr));
}

// La sesión de Ana empezada ahora, con `clave` en `valor` (o sin ella, si no está definido).
void guardarCon(const QString &clave, const QJsonValue &valor)
{
    QJsonObject objeto = sesion_guardada::deAna(alEmpezar(), alEmpezar(), 0);
    if (valor.isUndefined())
        objeto.remove(clave);
    else
        objeto.insert(clave, valor);
    sesion_guardada::escribir(objeto);
}

} // namespace

class PruebaSesionCargada : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        reloj::poner(alEmpezar());
    }

    void lasFechasSeCarganPorSeparado()
    {
        sesion_guardada::escribir(
            sesion_guardada::deAna(alEmpezar().addSecs(-600), alEmpezar().addSecs(-60), 0));
        const auto sesion = cargar();
        QCOMPARE(sesion->inicio(), alEmpezar().addSecs(-600));
        QCOMPARE(sesion->ultimaActividad(), alEmpezar().addSecs(-60));
    }

    void sinArchivoNoHaySesion()
    {
        QVERIFY(!cargar());
        QVERIFY(archivosDeDatos().isEmpty());
    }

    void soloAularedEnMinusculasEsEnLinea_data()
    {
        QTest::addColumn<QJsonValue>("modo");
        QTest::addColumn<ModoSesion>("esperado");
        QTest::newRow("aulared") << QJsonValue(u"aulared"_s) << ModoSesion::Aulared;
        QTest::newRow("standalone") << QJsonValue(u"standalone"_s) << ModoSesion::Standalone;
        QTest::newRow("con mayúscula") << QJsonValue(u"Aulared"_s) << ModoSesion::Standalone;
        QTest::newRow("con un espacio") << QJsonValue(u"aulared "_s) << ModoSesion::Standalone;
        QTest::newRow("otra palabra") << QJsonValue(u"online"_s) << ModoSesion::Standalone;
        QTest::newRow("vacío") << QJsonValue(u""_s) << ModoSesion::Standalone;
        QTest::newRow("número") << QJsonValue(0) << ModoSesion::Standalone;
        QTest::newRow("ausente") << QJsonValue(QJsonValue::Undefined) << ModoSesion::Standalone;
    }

    void soloAularedEnMinusculasEsEnLinea()
    {
        QFETCH(const QJsonValue, modo);
        guardarCon(u"modo"_s, modo);
        QTEST(cargar()->modo(), "esperado");
    }

    void laEstimacionEsUnEnteroONada_data()
    {
        QTest::addColumn<QJsonValue>("minutos");
        QTest::addColumn<int>("esperada");
        QTest::newRow("entera") << QJsonValue(90) << 90;
        QTest::newRow("negativa") << QJsonValue(-5) << -5;
        QTest::newRow("con decimales") << QJsonValue(90.5) << 0;
        QTest::newRow("no entra en 32 bits") << QJsonValue(2147483648.0) << 0;
        QTest::newRow("enorme") << QJsonValue(1e300) << 0;
        QTest::newRow("texto") << QJsonValue(u"90"_s) << 0;
        QTest::newRow("booleano") << QJsonValue(true) << 0;
        QTest::newRow("lista") << QJsonValue(QJsonArray{90}) << 0;
        QTest::newRow("nula") << QJsonValue() << 0;
        QTest::newRow("ausente") << QJsonValue(QJsonValue::Undefined) << 0;
    }

    void laEstimacionEsUnEnteroONada()
    {
        QFETCH(const QJsonValue, minutos);
        guardarCon(u"duracion_estimada_min"_s, minutos);
        QTEST(cargar()->duracionEstimadaMin(), "esperada");
    }

    void losTextosQueFaltanONoSonTextosQuedanVacios_data()
    {
        QTest::addColumn<QJsonValue>("valor");
        QTest::newRow("ausente") << QJsonValue(QJsonValue::Undefined);
        QTest::newRow("nulo") << QJsonValue();
        QTest::newRow("número") << QJsonValue(17);
        QTest::newRow("lista") << QJsonValue(QJsonArray{u"a"_s});
        QTest::newRow("objeto") << QJsonValue(QJsonObject{{u"a"_s, u"b"_s}});
    }

    void losTextosQueFaltanONoSonTextosQuedanVacios()
    {
        QFETCH(const QJsonValue, valor);
        guardarCon(u"token"_s, valor);
        QCOMPARE(cargar()->token(), QString());
        guardarCon(u"grupo"_s, valor);
        QCOMPARE(cargar()->grupo(), QString());
    }

    void cadaElementoDaUnIntegranteAunqueLeFaltenDatos()
    {
        guardarCon(u"integrantes"_s,
                   QJsonArray{QJsonObject{{u"id"_s, u"1"_s}, {u"nombre"_s, u"Ana"_s}},
                              QJsonObject{{u"id"_s, 2}, {u"color"_s, u"rojo"_s}}, u"Beto"_s, 17,
                              QJsonValue(), QJsonArray{}});
        QCOMPARE(cargar()->integrantes(),
                 (QList<Integrante>{{u"1"_s, u"Ana"_s, {}}, {{}, {}, u"rojo"_s}, {}, {}, {}, {}}));
    }

    void sinListaDeIntegrantesNoHayNinguno_data()
    {
        QTest::addColumn<QJsonValue>("valor");
        QTest::newRow("ausente") << QJsonValue(QJsonValue::Undefined);
        QTest::newRow("nula") << QJsonValue();
        QTest::newRow("texto") << QJsonValue(u"Ana"_s);
        QTest::newRow("un solo integrante, suelto") << QJsonValue(QJsonObject{{u"id"_s, u"1"_s}});
    }

    void sinListaDeIntegrantesNoHayNinguno()
    {
        QFETCH(const QJsonValue, valor);
        guardarCon(u"integrantes"_s, valor);
        QVERIFY(cargar()->integrantes().isEmpty());
    }

    void sinUnaFechaBienEscritaSeBorra_data()
    {
        QTest::addColumn<QJsonValue>("fecha");
        QTest::newRow("ausente") << QJsonValue(QJsonValue::Undefined);
        QTest::newRow("nula") << QJsonValue();
        QTest::newRow("número") << QJsonValue(1741943100);
        QTest::newRow("vacía") << QJsonValue(u""_s);
        QTest::newRow("con un espacio en lugar de la T") << QJsonValue(u"2025-03-14 09:05:00"_s);
        QTest::newRow("a la argentina") << QJsonValue(u"14/03/2025 09:05:00"_s);
        QTest::newRow("cortada") << QJsonValue(u"2025-03-14T09:"_s);
        QTest::newRow("de un día que no existe") << QJsonValue(u"2025-02-30T09:05:00"_s);
    }

    void sinUnaFechaBienEscritaSeBorra()
    {
        QFETCH(const QJsonValue, fecha);
        for (const QString &clave : {u"inicio_sesion"_s, u"ultima_actividad"_s}) {
            guardarCon(clave, fecha);
            QVERIFY2(!cargar(), qPrintable(clave));
            QVERIFY2(archivosDeDatos().isEmpty(), qPrintable(clave));
        }
    }

    void unaSesionVencidaSeBorra()
    {
        sesion_guardada::escribir(
            sesion_guardada::deAna(alEmpezar().addSecs(-14459), alEmpezar(), 0));
        QVERIFY(cargar());
        reloj::poner(alEmpezar().addSecs(1));
        QVERIFY(!cargar());
        QVERIFY(archivosDeDatos().isEmpty());
    }

    void unArchivoIlegibleNoEsUnaSesionPeroSeQuedaDondeEsta_data()
    {
        filasDeArchivosIlegibles();
        QTest::newRow("una lista en lugar del objeto") << Estropeo([](const QString &ruta) {
            escuela::escribir(
                ruta, QJsonDocument(QJsonArray{sesion_guardada::deAna(alEmpezar(), alEmpezar(), 0)})
                          .toJson());
        });
        QTest::newRow("una sesión cortada al final") << Estropeo([](const QString &ruta) {
            const QJsonDocument sesion(sesion_guardada::deAna(alEmpezar(), alEmpezar(), 0));
            escuela::escribir(ruta, sesion.toJson().chopped(2));
        });
    }

    void unArchivoIlegibleNoEsUnaSesionPeroSeQuedaDondeEsta()
    {
        QFETCH(const Estropeo, estropear);
        estropear(sesion_guardada::ruta());
        const qint64 tamano = QFile(sesion_guardada::ruta()).size();
        QVERIFY(!cargar());
        QCOMPARE(archivosDeDatos(), QStringList{u"sesion.json"_s});
        QCOMPARE(QFile(sesion_guardada::ruta()).size(), tamano);

        const std::unique_ptr<Sesion> nueva(
            Sesion::iniciar(ModoSesion::Standalone, {}, u"Beto"_s, {}, 0, nullptr));
        QVERIFY(nueva);
        QCOMPARE(cargar()->grupo(), u"Beto"_s);
    }

    void unObjetoVacioSeLeeYSeBorra()
    {
        escuela::escribir(sesion_guardada::ruta(), "{}");
        QVERIFY(!cargar());
        QVERIFY(archivosDeDatos().isEmpty());
    }

    void laMarcaDeUtf8NoMolesta()
    {
        const QJsonDocument sesion(sesion_guardada::deAna(alEmpezar(), alEmpezar(), 0));
        escuela::escribir(sesion_guardada::ruta(), "\xEF\xBB\xBF" + sesion.toJson());
        QCOMPARE(cargar()->grupo(), u"Ana"_s);
    }

    void unaSesionQueNoSirveNoLeDejaNadaASuDueno()
    {
        sesion_guardada::escribir(sesion_guardada::deAna(alEmpezar().addDays(-1), alEmpezar(), 0));
        QObject dueno;
        QVERIFY(!Sesion::cargar(&dueno));
        QVERIFY(dueno.children().isEmpty());
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaSesionCargada, QCoreApplication>(argc, argv);
}

#include "prueba_sesion_cargada.moc"
