#include "ombu/proyectos_guardados.h"

#include "pruebas/apoyo/archivos_ilegibles.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

using ombu::ProyectoGuardado;
using ombu::proyectosGuardados;

namespace {

QString enDocumentos(const QString &ruta)
{
    return escuela::dirDocumentos() + u'/' + ruta;
}

void escribir(const QString &ruta, const QByteArray &contenido = {})
{
    escuela::escribir(enDocumentos(ruta), contenido);
}

void crearCarpeta(const QString &ruta)
{
    if (!QDir().mkpath(enDocumentos(ruta)))
        qFatal("No se pudo crear %s", qUtf8Printable(ruta));
}

QDateTime alas(int hora)
{
    return QDateTime(QDate(2025, 3, 14), QTime(hora, 0));
}

void fechar(const QString &ruta, int hora)
{
    escuela::fechar(enDocumentos(ruta), alas(hora));
}

QStringList nombresDe(const QString &idApp)
{
    QStringList nombres;
    const QList<ProyectoGuardado> proyectos = proyectosGuardados(idApp);
    for (const ProyectoGuardado &proyecto : proyectos)
        nombres.append(proyecto.nombre);
    return nombres;
}

// Los nombres sin importar las fechas.
QStringList nombresEnOrdenAlfabetico(const QString &idApp)
{
    QStringList nombres = nombresDe(idApp);
    nombres.sort();
    return nombres;
}

} // namespace

class PruebaProyectosGuardados : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { escuela::vaciar(); }

    void sinNadaGuardadoLaListaEstaVacia()
    {
        const QStringList ids{u"garza"_s,   u"ceibo"_s,     u"zorzal"_s, u"benteveo"_s,
                              u"hornero"_s, u"calandria"_s, u"tordo"_s,  u"nandu"_s};
        for (const QString &id : ids)
            QVERIFY2(proyectosGuardados(id).isEmpty(), qPrintable(id));
        QVERIFY(QDir(escuela::dirDocumentos()).removeRecursively());
        for (const QString &id : ids)
            QVERIFY2(proyectosGuardados(id).isEmpty(), qPrintable(id));
    }

    void unaAppQueNoEstaEnLaTablaNoTieneProyectos_data()
    {
        QTest::addColumn<QString>("id");
        QTest::newRow("vacía") << u""_s;
        QTest::newRow("con mayúscula") << u"Tordo"_s;
        QTest::newRow("con un espacio") << u"tordo "_s;
        QTest::newRow("desconocida") << u"carpincho"_s;
    }

    void unaAppQueNoEstaEnLaTablaNoTieneProyectos()
    {
        QFETCH(const QString, id);
        escribir(u"Tordo/dibujo.trd"_s);
        escribir(u"carpincho/a/proyecto.json"_s, "{}");
        QVERIFY(proyectosGuardados(id).isEmpty());
    }

    void cadaAppDeCarpetasTieneSuLugarSuArchivoYSuClave_data()
    {
        QTest::addColumn<QString>("carpeta");
        QTest::addColumn<QString>("archivo");
        QTest::addColumn<QByteArray>("clave");
        QTest::newRow("garza") << u"Garza/proyectos"_s << u"project.json"_s
                               << QByteArray("projectName");
        QTest::newRow("ceibo") << u"Ceibo"_s << u"proyecto.json"_s << QByteArray("nombre");
        QTest::newRow("zorzal") << u"Zorzal"_s << u"proyecto.json"_s << QByteArray("nombre");
        QTest::newRow("benteveo") << u"Benteveo"_s << u"project.json"_s << QByteArray("name");
    }

    void cadaAppDeCarpetasTieneSuLugarSuArchivoYSuClave()
    {
        const QString id = QString::fromLatin1(QTest::currentDataTag());
        QFETCH(const QString, carpeta);
        QFETCH(const QString, archivo);
        QFETCH(const QByteArray, clave);

        escribir(carpeta + "/Paisaje/"_L1 + archivo, "{\"" + clave + "\": \" \\tMi ñandú\\n \"}");
        const QList<ProyectoGuardado> proyectos = proyectosGuardados(id);
        QCOMPARE(proyectos.size(), 1);
        QCOMPARE(proyectos.constFirst().nombre, u"Mi ñandú"_s);
        QCOMPARE(proyectos.constFirst().ruta, enDocumentos(carpeta + "/Paisaje"_L1));

        const QByteArrayList claves{"projectName", "nombre", "name", "Nombre"};
        for (const QByteArray &otra : claves) {
            if (otra == clave)
                continue;
            escribir(carpeta + "/Paisaje/"_L1 + archivo,
                     QByteArray(R"({"CLAVE": "Otro"})").replace("CLAVE", otra));
            QCOMPARE(nombresDe(id), QStringList{u"Paisaje"_s});
        }
    }

    void sinSuArchivoDeDescripcionUnaCarpetaNoEsUnProyecto_data()
    {
        cadaAppDeCarpetasTieneSuLugarSuArchivoYSuClave_data();
    }

    void sinSuArchivoDeDescripcionUnaCarpetaNoEsUnProyecto()
    {
        const QString id = QString::fromLatin1(QTest::currentDataTag());
        QFETCH(const QString, carpeta);
        QFETCH(const QString, archivo);
        const QString otro = archivo == "project.json"_L1 ? u"proyecto.json"_s : u"project.json"_s;
        crearCarpeta(carpeta + u"/Vacía"_s);
        escribir(carpeta + "/Ajena/"_L1 + otro, "{}");
        escribir(carpeta + "/Honda/adentro/"_L1 + archivo, "{}");
        crearCarpeta(carpeta + "/Carpeta/"_L1 + archivo);
        escribir(carpeta + u'/' + archivo, "{}");
        QVERIFY(proyectosGuardados(id).isEmpty());
    }

    void sinUnNombreQueSirvaSeUsaElDeLaCarpeta_data()
    {
        filasDeArchivosIlegibles();
        const auto fila = [](const char *caso, const QByteArray &contenido) {
            QTest::newRow(caso) << Estropeo(
                [contenido](const QString &ruta) { escuela::escribir(ruta, contenido); });
        };
        fila("sin la clave", "{}");
        fila("nombre vacío", R"({"projectName": ""})");
        fila("nombre de espacios", R"({"projectName": " \t\n "})");
        fila("nombre numérico", R"({"projectName": 17})");
        fila("nombre nulo", R"({"projectName": null})");
        fila("nombre en una lista", R"({"projectName": ["Mi paisaje"]})");
        fila("lista en lugar de objeto", R"([{"projectName": "Mi paisaje"}])");
        fila("nombre más adentro", R"({"proyecto": {"projectName": "Mi paisaje"}})");
    }

    void sinUnNombreQueSirvaSeUsaElDeLaCarpeta()
    {
        QFETCH(const Estropeo, estropear);
        estropear(enDocumentos(u"Garza/proyectos/Mi.Paisaje ñ/project.json"_s));
        QCOMPARE(nombresDe(u"garza"_s), QStringList{u"Mi.Paisaje ñ"_s});
    }

    void unaDescripcionDe5MegasConMarcaDeUtf8SeLee()
    {
        escribir(u"Ceibo/X/proyecto.json"_s, "\xEF\xBB\xBF{\"relleno\": \"" +
                                                 QByteArray(5'000'000, 'a') +
                                                 "\", \"nombre\": \"Ñ\"}");
        QCOMPARE(nombresDe(u"ceibo"_s), QStringList{u"Ñ"_s});
    }

    void lasCarpetasOcultasYLosArchivosSueltosNoSeListan()
    {
        escribir(u"Ceibo/.oculta/proyecto.json"_s, "{}");
        escribir(u"Ceibo/suelto.json"_s, "{}");
        escribir(u"Ceibo/Visible/proyecto.json"_s, "{}");
        QCOMPARE(nombresDe(u"ceibo"_s), QStringList{u"Visible"_s});
    }

    void horneroJuntaSusDosCarpetasSinLeerNada()
    {
        escribir(u"Quillay/Hornero/Video/Cumple/project.json"_s,
                 R"({"name": "Otro", "nombre": "Otro", "projectName": "Otro"})");
        crearCarpeta(u"Quillay/Hornero/Animacion/Pez"_s);
        crearCarpeta(u"Quillay/Hornero/Otra/Nada"_s);
        escribir(u"Quillay/Hornero/Video/suelto.mp4"_s);
        crearCarpeta(u"Hornero/Nada"_s);
        fechar(u"Quillay/Hornero/Video/Cumple"_s, 10);
        fechar(u"Quillay/Hornero/Animacion/Pez"_s, 11);

        const QList<ProyectoGuardado> proyectos = proyectosGuardados(u"hornero"_s);
        QCOMPARE(proyectos.size(), 2);
        QCOMPARE(proyectos.at(0).nombre, u"Pez"_s);
        QCOMPARE(proyectos.at(0).ruta, enDocumentos(u"Quillay/Hornero/Animacion/Pez"_s));
        QCOMPARE(proyectos.at(0).modificado, alas(11));
        QCOMPARE(proyectos.at(1).nombre, u"Cumple"_s);
        QCOMPARE(proyectos.at(1).ruta, enDocumentos(u"Quillay/Hornero/Video/Cumple"_s));
        QCOMPARE(proyectos.at(1).modificado, alas(10));
    }

    void cadaAppDeArchivosTieneSuLugarYSuExtension_data()
    {
        QTest::addColumn<QString>("carpeta");
        QTest::addColumn<QString>("extension");
        QTest::newRow("calandria") << u"Calandria"_s << u"cln"_s;
        QTest::newRow("tordo") << u"Tordo"_s << u"trd"_s;
        QTest::newRow("nandu") << u"Nandu"_s << u"ndu"_s;
    }

    void cadaAppDeArchivosTieneSuLugarYSuExtension()
    {
        const QString id = QString::fromLatin1(QTest::currentDataTag());
        QFETCH(const QString, carpeta);
        QFETCH(const QString, extension);
        const QString trabajo = carpeta + u"/dibujo ñ."_s + extension;
        escribir(trabajo, "no se lee");
        fechar(trabajo, 10);
        for (const QString &otra : {u"cln"_s, u"clt"_s, u"trd"_s, u"trt"_s, u"ndu"_s, u"ndt"_s}) {
            if (otra != extension)
                escribir(carpeta + "/ajeno."_L1 + otra);
        }

        const QList<ProyectoGuardado> proyectos = proyectosGuardados(id);
        QCOMPARE(proyectos.size(), 1);
        QCOMPARE(proyectos.constFirst().nombre, u"dibujo ñ"_s);
        QCOMPARE(proyectos.constFirst().ruta, enDocumentos(trabajo));
        QCOMPARE(proyectos.constFirst().modificado, alas(10));
        QCOMPARE(proyectos.constFirst().modificado.timeSpec(), Qt::LocalTime);
    }

    void laExtensionSeReconoceEnMayusculas()
    {
        escribir(u"Tordo/dibujo.TRD"_s);
        escribir(u"Tordo/otro.Trd"_s);
        QCOMPARE(nombresEnOrdenAlfabetico(u"tordo"_s), (QStringList{u"dibujo"_s, u"otro"_s}));
    }

    void soloSeQuitaLaUltimaExtension()
    {
        escribir(u"Calandria/mapa.final.cln"_s);
        escribir(u"Calandria/a.cln.cln"_s);
        QCOMPARE(nombresEnOrdenAlfabetico(u"calandria"_s),
                 (QStringList{u"a.cln"_s, u"mapa.final"_s}));
    }

    void lasCarpetasLosOcultosYLosDemasArchivosNoSeListan()
    {
        escribir(u"Tordo/notas.txt"_s);
        escribir(u"Tordo/sin extension trd"_s);
        escribir(u"Tordo/dibujo.trd.bak"_s);
        escribir(u"Tordo/dibujo.xtrd"_s);
        escribir(u"Tordo/.oculto.trd"_s);
        escribir(u"Tordo/adentro/dibujo.trd"_s);
        crearCarpeta(u"Tordo/carpeta.trd"_s);
        QVERIFY(proyectosGuardados(u"tordo"_s).isEmpty());
    }

    void losTrabajosVanDelMasNuevoAlMasViejo()
    {
        constexpr int kTrabajos = 20;
        QStringList esperados;
        for (int i = 0; i < kTrabajos; ++i) {
            const int hora = (i * 7) % kTrabajos; // Sin relación con el orden de los nombres.
            const QString nombre = u"%1"_s.arg(i, 2, 10, QChar(u'0'));
            escribir("Nandu/"_L1 + nombre + ".ndu"_L1);
            fechar("Nandu/"_L1 + nombre + ".ndu"_L1, hora);
        }
        for (int hora = kTrabajos - 1; hora >= 0; --hora)
            esperados.append(u"%1"_s.arg((hora * 3) % kTrabajos, 2, 10, QChar(u'0')));
        QCOMPARE(nombresDe(u"nandu"_s), esperados);
    }

    void laFechaEsLaMasNuevaEntreLaCarpetaYSuDescripcion()
    {
        escribir(u"Zorzal/Carpeta/proyecto.json"_s, "{}");
        fechar(u"Zorzal/Carpeta/proyecto.json"_s, 9);
        fechar(u"Zorzal/Carpeta"_s, 10);
        escribir(u"Zorzal/Descripcion/proyecto.json"_s, "{}");
        fechar(u"Zorzal/Descripcion/proyecto.json"_s, 11);
        fechar(u"Zorzal/Descripcion"_s, 8);

        const QList<ProyectoGuardado> proyectos = proyectosGuardados(u"zorzal"_s);
        QCOMPARE(proyectos.size(), 2);
        QCOMPARE(proyectos.at(0).nombre, u"Descripcion"_s);
        QCOMPARE(proyectos.at(0).modificado.timeSpec(), Qt::LocalTime);
        QCOMPARE(proyectos.at(0).modificado, alas(11));
        QCOMPARE(proyectos.at(1).nombre, u"Carpeta"_s);
        QCOMPARE(proyectos.at(1).modificado, alas(10));
    }

    void seLeeElDiscoCadaVez()
    {
        escribir(u"Tordo/a.trd"_s);
        QCOMPARE(nombresDe(u"tordo"_s), QStringList{u"a"_s});
        QVERIFY(QFile::rename(enDocumentos(u"Tordo/a.trd"_s), enDocumentos(u"Tordo/b.trd"_s)));
        QCOMPARE(nombresDe(u"tordo"_s), QStringList{u"b"_s});
    }

    void nuncaSeEscribeNada()
    {
        escribir(u"Ceibo/X/proyecto.json"_s, R"({"nombre": "Y"})");
        escribir(u"Tordo/a.trd"_s, "a");
        const QStringList antes = escuela::archivosBajo(escuela::dirPersonal());
        proyectosGuardados(u"ceibo"_s);
        proyectosGuardados(u"tordo"_s);
        proyectosGuardados(u"hornero"_s);
        QCOMPARE(escuela::archivosBajo(escuela::dirPersonal()), antes);
        QVERIFY(!QDir(enDocumentos(u"Quillay"_s)).exists());
        QCOMPARE(escuela::leer(enDocumentos(u"Ceibo/X/proyecto.json"_s)), R"({"nombre": "Y"})");
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaProyectosGuardados, QCoreApplication>(argc, argv);
}

#include "prueba_proyectos_guardados.moc"
