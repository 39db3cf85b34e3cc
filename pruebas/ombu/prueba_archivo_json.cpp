#include "ombu/archivo_json.h"

#include "pruebas/apoyo/archivos_ilegibles.h"
#include "pruebas/apoyo/disco_lleno.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/reemplazo_impedido.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

#include <filesystem>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qsizetype kMaximo = 67'108'864; // 64 MiB

QString rutaDePrueba()
{
    return escuela::dirDatos() + "/prueba.json"_L1;
}

QJsonDocument documentoDe(qsizetype largo)
{
    return QJsonDocument(QJsonObject{{u"texto"_s, QString(largo, u'a')}});
}

void soltarEnUnMomento(ReemplazoImpedido &impedido)
{
    std::this_thread::sleep_for(50ms);
    impedido.soltar();
}

} // namespace

class PruebaArchivoJson : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { escuela::vaciar(); }

    void seEscribeConSangriaClavesEnOrdenYEnUtf8()
    {
        const QJsonObject objeto{
            {u"nombre"_s, u"Ñandú"_s},
            {u"cantidad"_s, 3},
            {u"lista"_s, QJsonArray{true, QJsonObject{}}},
        };
        QVERIFY(ombu::escribirDocumentoJson(rutaDePrueba(), QJsonDocument(objeto)));
        QCOMPARE(escuela::leer(rutaDePrueba()), QByteArray(R"({
    "cantidad": 3,
    "lista": [
        true,
        {
        }
    ],
    "nombre": "Ñandú"
}
)"));
    }

    void loEscritoSeLeeIgual()
    {
        const QJsonDocument documento(
            QJsonArray{u"\"comillas\" \\ \n \u0000 🎨"_s, 1.5, QJsonValue()});
        QVERIFY(ombu::escribirDocumentoJson(rutaDePrueba(), documento));
        QCOMPARE(ombu::leerDocumentoJson(rutaDePrueba()), documento);
    }

    void laMarcaDeUtf8NoMolesta()
    {
        escuela::escribir(rutaDePrueba(), "\xEF\xBB\xBF[\"ñ\"]");
        QCOMPARE(ombu::leerDocumentoJson(rutaDePrueba()), QJsonDocument(QJsonArray{u"ñ"_s}));
    }

    void unByteNuloDentroDeUnTextoEsParteDelTexto()
    {
        escuela::escribir(rutaDePrueba(), "[\"a" + QByteArray(1, '\0') + "b\"]");
        QCOMPARE(ombu::leerDocumentoJson(rutaDePrueba()), QJsonDocument(QJsonArray{u"a\0b"_s}));
    }

    void unArchivoQueNoExisteDaNulo()
    {
        QVERIFY(ombu::leerDocumentoJson(rutaDePrueba()).isNull());
        QVERIFY(!QFile::exists(rutaDePrueba()));
    }

    void unaCarpetaDaNulo() { QVERIFY(ombu::leerDocumentoJson(escuela::dirDatos()).isNull()); }

    void unEnlaceRotoDaNulo()
    {
        QVERIFY(QFile::link(u"no-existe"_s, rutaDePrueba()));
        QVERIFY(ombu::leerDocumentoJson(rutaDePrueba()).isNull());
    }

    void loIlegibleDaNulo_data() { filasDeArchivosIlegibles(); }

    void loIlegibleDaNulo()
    {
        QFETCH(const Estropeo, estropear);
        estropear(rutaDePrueba());
        QVERIFY(ombu::leerDocumentoJson(rutaDePrueba()).isNull());
    }

    void unDocumentoCortadoEnCualquierLugarDaNulo()
    {
        const QByteArray entero = R"({"a": [1, {"b": "ñ\n"}], "c": null})";
        for (qsizetype largo = 0; largo < entero.size(); ++largo) {
            escuela::escribir(rutaDePrueba(), entero.first(largo));
            QVERIFY2(ombu::leerDocumentoJson(rutaDePrueba()).isNull(),
                     entero.first(largo).constData());
        }
        escuela::escribir(rutaDePrueba(), entero);
        QVERIFY(ombu::leerDocumentoJson(rutaDePrueba()).isObject());
    }

    void hasta64MibSeLeeYUnByteMasNo()
    {
        const QByteArray texto = "[1" + QByteArray(kMaximo - 3, ' ') + "]";
        QCOMPARE(texto.size(), kMaximo);
        escuela::escribir(rutaDePrueba(), texto);
        QCOMPARE(ombu::leerDocumentoJson(rutaDePrueba()), QJsonDocument(QJsonArray{1}));

        escuela::escribir(rutaDePrueba(), texto + ' ');
        QVERIFY(ombu::leerDocumentoJson(rutaDePrueba()).isNull());
    }

    void cincoMegasSeEscribenYSeLeen()
    {
        const QJsonDocument documento = documentoDe(5'000'000);
        QVERIFY(ombu::escribirDocumentoJson(rutaDePrueba(), documento));
        QCOMPARE(ombu::leerDocumentoJson(rutaDePrueba()), documento);
    }

    void unArchivoAbiertoSeLeeIgual()
    {
        escuela::escribir(rutaDePrueba(), "[1]");
        QFile archivo(rutaDePrueba());
        QVERIFY(archivo.open(QIODevice::ReadOnly));
        QCOMPARE(ombu::leerDocumentoJson(archivo), QJsonDocument(QJsonArray{1}));
    }

    // Quien tenía abierto el anterior lo sigue viendo entero: el nuevo es otro archivo.
    void elNuevoReemplazaSinTocarElAnterior()
    {
        const QString anterior = escuela::dirDatos() + "/anterior.json"_L1;
        escuela::escribir(anterior, "[\"anterior\"]");
        std::filesystem::create_hard_link(anterior.toStdString(), rutaDePrueba().toStdString());

        QVERIFY(ombu::escribirDocumentoJson(rutaDePrueba(), QJsonDocument(QJsonArray{1})));
        QCOMPARE(escuela::leer(anterior), "[\"anterior\"]");
        QCOMPARE(escuela::leer(rutaDePrueba()), "[\n    1\n]\n");
        QCOMPARE(escuela::archivosBajo(escuela::dirDatos()),
                 (QStringList{u"anterior.json"_s, u"prueba.json"_s}));
    }

    void unoMasCortoNoDejaRestosDelAnterior()
    {
        QVERIFY(ombu::escribirDocumentoJson(rutaDePrueba(), documentoDe(50'000)));
        QVERIFY(ombu::escribirDocumentoJson(rutaDePrueba(), QJsonDocument(QJsonArray{})));
        QCOMPARE(escuela::leer(rutaDePrueba()), "[\n]\n");
    }

    void sinLaCarpetaNoSeEscribe()
    {
        const QString ruta = escuela::dirDatos() + "/no-existe/prueba.json"_L1;
        QVERIFY(!ombu::escribirDocumentoJson(ruta, documentoDe(1)));
        QVERIFY(!QDir(escuela::dirDatos() + "/no-existe"_L1).exists());
    }

    void sobreUnaCarpetaNoSeEscribe()
    {
        QVERIFY(QDir().mkpath(rutaDePrueba()));
        QVERIFY(!ombu::escribirDocumentoJson(rutaDePrueba(), documentoDe(1)));
        QVERIFY(QDir(rutaDePrueba()).exists());
        QVERIFY(escuela::archivosBajo(escuela::dirDatos()).isEmpty());
    }

    void conElDiscoLlenoQuedaElAnterior_data()
    {
        QTest::addColumn<qsizetype>("largo");
        QTest::newRow("menos que un bloque") << qsizetype{100};
        QTest::newRow("menos que el búfer de Qt") << qsizetype{9'000};
        QTest::newRow("más que el búfer de Qt") << qsizetype{40'000};
        QTest::newRow("mucho más") << qsizetype{3'000'000};
    }

    void conElDiscoLlenoQuedaElAnterior()
    {
        QFETCH(const qsizetype, largo);
        const QByteArray anterior = "[\"anterior\"]\n";
        escuela::escribir(rutaDePrueba(), anterior);
        const QJsonDocument nuevo = documentoDe(largo);

        const QList<quint64> discos = discosEnLosQueNoEntra(nuevo.toJson().size());
        for (const quint64 disco : discos) {
            const DiscoLleno lleno(disco);
            QVERIFY2(!ombu::escribirDocumentoJson(rutaDePrueba(), nuevo),
                     QByteArray::number(disco).constData());
            QCOMPARE(escuela::leer(rutaDePrueba()), anterior);
            QCOMPARE(escuela::archivosBajo(escuela::dirDatos()), QStringList{u"prueba.json"_s});
        }
    }

    void conElLugarJustoSeEscribe_data() { conElDiscoLlenoQuedaElAnterior_data(); }

    void conElLugarJustoSeEscribe()
    {
        QFETCH(const qsizetype, largo);
        const QByteArray texto = documentoDe(largo).toJson();
        const DiscoLleno lleno(static_cast<quint64>(texto.size()));
        QVERIFY(ombu::escribirDocumentoJson(rutaDePrueba(), documentoDe(largo)));
        QCOMPARE(escuela::leer(rutaDePrueba()), texto);
    }

    void siNoSePuedeReemplazarQuedaElAnterior()
    {
        escuela::escribir(rutaDePrueba(), "[]");
        {
            const ReemplazoImpedido impedido(rutaDePrueba());
            if (!impedido.vale())
                QSKIP("Solo un administrador puede montar algo sobre el archivo");
            QVERIFY(!ombu::escribirDocumentoJson(rutaDePrueba(), documentoDe(1)));
            QCOMPARE(escuela::archivosBajo(escuela::dirDatos()), QStringList{u"prueba.json"_s});
        }
        QCOMPARE(escuela::leer(rutaDePrueba()), "[]");
    }

    void loQueOtroSueltaEnseguidaSeReemplazaIgual()
    {
        escuela::escribir(rutaDePrueba(), "[]");
        ReemplazoImpedido impedido(rutaDePrueba());
        if (!impedido.vale())
            QSKIP("Solo un administrador puede montar algo sobre el archivo");
        const std::jthread otro([&impedido] { soltarEnUnMomento(impedido); });
        QVERIFY(ombu::escribirDocumentoJson(rutaDePrueba(), documentoDe(1)));
        QCOMPARE(escuela::leer(rutaDePrueba()), documentoDe(1).toJson());
    }

    void loQueOtroSueltaEnseguidaSeBorraIgual()
    {
        escuela::escribir(rutaDePrueba(), "[]");
        ReemplazoImpedido impedido(rutaDePrueba());
        if (!impedido.vale())
            QSKIP("Solo un administrador puede montar algo sobre el archivo");
        const std::jthread otro([&impedido] { soltarEnUnMomento(impedido); });
        QVERIFY(ombu::borrarArchivo(rutaDePrueba()));
        QVERIFY(!QFile::exists(rutaDePrueba()));
    }

    void loQueNoSePuedeBorrarQueda()
    {
        escuela::escribir(rutaDePrueba(), "[]");
        {
            const ReemplazoImpedido impedido(rutaDePrueba());
            if (!impedido.vale())
                QSKIP("Solo un administrador puede montar algo sobre el archivo");
            QVERIFY(!ombu::borrarArchivo(rutaDePrueba()));
        }
        QCOMPARE(escuela::leer(rutaDePrueba()), "[]");
    }

    void borrarLoQueNoEstaNoHaceNada() { QVERIFY(!ombu::borrarArchivo(rutaDePrueba())); }

    void conElDiscoLlenoNoApareceUnArchivoNuevo()
    {
        const DiscoLleno lleno(10);
        QVERIFY(!ombu::escribirDocumentoJson(rutaDePrueba(), documentoDe(100)));
        QVERIFY(escuela::archivosBajo(escuela::dirDatos()).isEmpty());
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaArchivoJson, QCoreApplication>(argc, argv);
}

#include "prueba_archivo_json.moc"
