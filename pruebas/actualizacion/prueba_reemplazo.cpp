#include "quillay/actualizador.h"

#include "ombu/apps_registro.h"

#include "pruebas/actualizacion/actualizador_espiado.h"
#include "pruebas/actualizacion/paquete.h"
#include "pruebas/apoyo/disco_lleno.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"

#include <QDir>

using namespace Qt::StringLiterals;

using quillay::Actualizador;

namespace {

QString origen()
{
    return escuela::dirPersonal() + "/contenido"_L1;
}

QString carpetaGarza()
{
    return carpetaInstalada() + "/Garza"_L1;
}

/// Reemplaza el componente por esos archivos, ya extraídos.
bool reemplazar(const QString &componente, const Arbol &archivos)
{
    QDir().mkpath(origen());
    escribirArbol(origen(), archivos);
    ActualizadorEspiado actualizador({});
    const bool resultado = actualizador.reemplazarComponente(componente, origen());
    return resultado && actualizador.dicho.isEmpty();
}

} // namespace

class PruebaReemplazo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        QDir().mkpath(carpetaInstalada());
    }

    void elLanzadorEstaEnSuCarpetaYCadaAppEnLaSuya_data()
    {
        QTest::addColumn<QString>("componente");
        QTest::addColumn<QString>("carpeta");
        QTest::newRow("launcher") << u"launcher"_s << QString();
        for (const auto &apps : {ombu::appsQuillay(), ombu::appsOmbu()}) {
            for (const ombu::AppInfo &app : apps)
                QTest::newRow(qUtf8Printable(app.id)) << app.id << app.carpeta + u'/';
        }
    }

    void elLanzadorEstaEnSuCarpetaYCadaAppEnLaSuya()
    {
        QFETCH(const QString, componente);
        QFETCH(const QString, carpeta);
        QVERIFY(reemplazar(componente, {{u"a.txt"_s, "a"}}));
        QCOMPARE(leerArbol(carpetaInstalada()), (Arbol{{carpeta + "a.txt"_L1, "a"}}));
    }

    void unComponenteDesconocidoNoTieneCarpeta_data()
    {
        QTest::addColumn<QString>("componente");
        for (const QString &id : {u"loro"_s, u""_s, u"."_s, u".."_s, u"Garza"_s, u"Launcher"_s,
                                  u"LAUNCHER"_s, u"garza "_s, u"Garza/"_s, u"../Garza"_s}) {
            QTest::addRow("\"%s\"", qUtf8Printable(id)) << id;
        }
    }

    void unComponenteDesconocidoNoTieneCarpeta()
    {
        QFETCH(const QString, componente);
        escribirArbol(carpetaInstalada(), {{u"a.txt"_s, "viejo"}});
        QVERIFY(!reemplazar(componente, {{u"a.txt"_s, "nuevo"}}));
        QCOMPARE(leerArbol(escuela::dirPersonal()),
                 (Arbol{{u"Quillay/a.txt"_s, "viejo"}, {u"contenido/a.txt"_s, "nuevo"}}));
    }

    void agregaReemplazaYDejaLoQueElPaqueteNoTrae()
    {
        escribirArbol(carpetaGarza(), {{u"cambia.txt"_s, "viejo y más largo"},
                                       {u"datos/cambia.txt"_s, "viejo"},
                                       {u"igual.txt"_s, "igual"},
                                       {u"propio.txt"_s, "propio"},
                                       {u"datos/propio.txt"_s, "propio"},
                                       {u".oculto"_s, "propio"}});
        QVERIFY(reemplazar(u"garza"_s, {{u"cambia.txt"_s, "nuevo"},
                                        {u"datos/cambia.txt"_s, "nuevo"},
                                        {u"igual.txt"_s, "igual"},
                                        {u"agregado.txt"_s, "nuevo"},
                                        {u"datos/agregado.txt"_s, "nuevo"}}));
        QCOMPARE(leerArbol(carpetaGarza()), (Arbol{{u"cambia.txt"_s, "nuevo"},
                                                   {u"datos/cambia.txt"_s, "nuevo"},
                                                   {u"igual.txt"_s, "igual"},
                                                   {u"agregado.txt"_s, "nuevo"},
                                                   {u"datos/agregado.txt"_s, "nuevo"},
                                                   {u"propio.txt"_s, "propio"},
                                                   {u"datos/propio.txt"_s, "propio"},
                                                   {u".oculto"_s, "propio"}}));
    }

    void creaLasCarpetasDeUnArchivoDosNivelesAdentro()
    {
        QVERIFY(reemplazar(u"garza"_s, {{u"uno/dos/a.txt"_s, "a"}}));
        QCOMPARE(leerArbol(carpetaInstalada()), (Arbol{{u"Garza/uno/dos/a.txt"_s, "a"}}));
    }

    void creaLaCarpetaDelComponenteConLasQueFalten()
    {
        QDir(carpetaInstalada()).removeRecursively();
        QVERIFY(reemplazar(u"garza"_s, {}));
        QVERIFY(QFileInfo(carpetaGarza()).isDir());
    }

    void unaCarpetaSinArchivosNoSeCrea()
    {
        QDir().mkpath(origen() + "/vacía"_L1);
        QVERIFY(reemplazar(u"garza"_s, {{u"a.txt"_s, "a"}}));
        QVERIFY(!QFile::exists(carpetaGarza() + "/vacía"_L1));
    }

    void losArchivosOcultosDelPaqueteNoSeCopian()
    {
        QVERIFY(reemplazar(u"garza"_s, {{u".oculto"_s, "x"},
                                        {u".carpeta/a.txt"_s, "x"},
                                        {u"datos/.oculto"_s, "x"},
                                        {u"datos/a.txt"_s, "a"}}));
        QCOMPARE(leerArbol(carpetaGarza()), (Arbol{{u"datos/a.txt"_s, "a"}}));
    }

    void losNombresYLosContenidosLleganIntactos()
    {
        QByteArray todos(1024, '\0');
        for (int i = 0; i < todos.size(); ++i)
            todos[i] = static_cast<char>(i % 256);
        const Arbol archivos{
            {u"Canción del ñandú 2.txt"_s, "ñ"}, {u"a b/ç 漢字.txt"_s, "a\r\nb\n"},
            {u"emoji 🎨/🐦.png"_s, todos},         {u"ñ'ñ & $x (1) [2] %1 #.dat"_s, "x"},
            {u"sin extensión"_s, "x"},           {u"vacío"_s, ""},
            {u"grande"_s, todos.repeated(3000)}};
        QVERIFY(reemplazar(u"garza"_s, archivos));
        QCOMPARE(leerArbol(carpetaGarza()), archivos);
        QCOMPARE(leerArbol(origen()), archivos);
    }

    void unViejoQueYaEstabaNoMolestaSiElArchivoSePuedeBorrar()
    {
        escribirArbol(carpetaGarza(), {{u"a.exe"_s, "1"}, {u"a.exe.viejo"_s, "0"}});
        QVERIFY(reemplazar(u"garza"_s, {{u"a.exe"_s, "2"}}));
        QCOMPARE(leerArbol(carpetaGarza()), (Arbol{{u"a.exe"_s, "2"}, {u"a.exe.viejo"_s, "0"}}));
    }

    void loQueSeBorraNoDejaUnViejo()
    {
        escribirArbol(carpetaGarza(), {{u"a.exe"_s, "1"}});
        QVERIFY(reemplazar(u"garza"_s, {{u"a.exe"_s, "2"}}));
        QCOMPARE(leerArbol(carpetaGarza()), (Arbol{{u"a.exe"_s, "2"}}));
    }

    void dondeHayUnArchivoNoSePuedePonerUnaCarpeta()
    {
        escribirArbol(carpetaGarza(), {{u"datos"_s, "un archivo"}});
        QVERIFY(!reemplazar(u"garza"_s, {{u"datos/a.txt"_s, "a"}}));
        QCOMPARE(leerArbol(carpetaGarza()), (Arbol{{u"datos"_s, "un archivo"}}));
    }

    void unaCarpetaConElNombreDelArchivoQuedaAUnLado()
    {
        escribirArbol(carpetaGarza(), {{u"datos/a.txt"_s, "a"}});
        QVERIFY(reemplazar(u"garza"_s, {{u"datos"_s, "un archivo"}}));
        QCOMPARE(leerArbol(carpetaGarza()),
                 (Arbol{{u"datos"_s, "un archivo"}, {u"datos.viejo/a.txt"_s, "a"}}));
    }

    void loQueNoSePuedeBorrarNiApartarFalla()
    {
        const Arbol antes{{u"datos/a.txt"_s, "a"}, {u"datos.viejo"_s, "0"}};
        escribirArbol(carpetaGarza(), antes);
        QVERIFY(!reemplazar(u"garza"_s, {{u"datos"_s, "un archivo"}}));
        QCOMPARE(leerArbol(carpetaGarza()), antes);
    }

    void siNoSePuedeCopiarNoQuedaUnArchivoCortado()
    {
        const QByteArray nuevo(100'000, 'x');
        const QList<quint64> discos = discosEnLosQueNoEntra(nuevo.size());
        for (const quint64 disco : discos) {
            escribirArbol(carpetaGarza(), {{u"a.bin"_s, "viejo"}, {u"propio.txt"_s, "propio"}});
            escribirArbol(origen(), {{u"a.bin"_s, nuevo}});
            const DiscoLleno lleno(disco);
            QVERIFY(!ActualizadorEspiado({}).reemplazarComponente(u"garza"_s, origen()));
            QCOMPARE(leerArbol(carpetaGarza()), (Arbol{{u"propio.txt"_s, "propio"}}));
        }
    }

    void limpiarBorraLosViejosDeTodasLasCarpetas()
    {
        escribirArbol(carpetaInstalada(), {{u"quillay.exe"_s, "1"},
                                           {u"quillay.exe.viejo"_s, "0"},
                                           {u"shared/Qt6Core.dll.viejo"_s, "0"},
                                           {u"Garza/datos/ñandú 🎨.viejo"_s, "0"},
                                           {u"Garza/viejo"_s, "1"},
                                           {u"Garza/a.viejo.txt"_s, "1"},
                                           {u"Garza/a.viejos"_s, "1"},
                                           {u"Garza/aviejo"_s, "1"},
                                           {u"Garza/carpeta.viejo/a.txt"_s, "1"},
                                           {u"Garza/carpeta.viejo/b.viejo"_s, "0"}});
        Actualizador::limpiarRestos(carpetaInstalada());
        QCOMPARE(leerArbol(carpetaInstalada()), (Arbol{{u"quillay.exe"_s, "1"},
                                                       {u"Garza/viejo"_s, "1"},
                                                       {u"Garza/a.viejo.txt"_s, "1"},
                                                       {u"Garza/a.viejos"_s, "1"},
                                                       {u"Garza/aviejo"_s, "1"},
                                                       {u"Garza/carpeta.viejo/a.txt"_s, "1"}}));
    }

    void limpiarNoSaleDeLaCarpeta()
    {
        const QString afuera = escuela::dirPersonal() + "/otra"_L1;
        escribirArbol(afuera, {{u"a.viejo"_s, "0"}});
        QVERIFY(QFile::link(afuera, carpetaInstalada() + "/enlace"_L1));
        Actualizador::limpiarRestos(carpetaInstalada());
        QCOMPARE(leerArbol(afuera), (Arbol{{u"a.viejo"_s, "0"}}));
    }

    void limpiarUnaCarpetaQueNoExisteNoHaceNada()
    {
        Actualizador::limpiarRestos(carpetaGarza());
        QVERIFY(!QFile::exists(carpetaGarza()));
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaReemplazo, QCoreApplication>(argc, argv);
}

#include "prueba_reemplazo.moc"
