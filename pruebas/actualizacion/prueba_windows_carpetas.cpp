// Las carpetas de Windows donde están los programas, los datos y los trabajos, con cualquier
// nombre.

#include "ombu/proyectos_guardados.h"
#include "quillay/actualizador.h"

#include "pruebas/actualizacion/paquete.h"
#include "pruebas/apoyo/carpetas_de_windows.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"

#include <QCoreApplication>
#include <QDir>

using namespace Qt::StringLiterals;

using quillay::Actualizador;

namespace {

void filasDeCarpetas()
{
    QTest::addColumn<QString>("nombre");
    QTest::newRow("letras comunes") << u"Aula"_s;
    QTest::newRow("espacios y acentos") << u"Aula de la Ñandú Íñiga"_s;
    QTest::newRow("un dibujo") << u"Aula 🎨"_s;
    QTest::newRow("una comilla") << u"Aula O'Higgins"_s;
}

void filaLarga()
{
    QTest::newRow("más de 260 letras") << QStringList(6, QString(60, u'ñ')).join(u'/');
}

/// Un trabajo de Ceibo en esa carpeta de documentos; su ruta.
QString guardarTrabajo(const QString &documentos, const QString &nombre)
{
    const QString trabajo = documentos + "/Ceibo/"_L1 + nombre;
    escuela::escribir(trabajo + "/proyecto.json"_L1, R"({"nombre": "La casa"})");
    return trabajo;
}

} // namespace

class PruebaWindowsCarpetas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { escuela::vaciar(); }

    void cleanup()
    {
        carpetas_de_windows::mudar(carpetas_de_windows::kDocumentos, escuela::dirDocumentos());
    }

    void losTrabajosSeEncuentranEnLosDocumentosMudados_data() { filasDeCarpetas(); }

    void losTrabajosSeEncuentranEnLosDocumentosMudados()
    {
        QFETCH(const QString, nombre);
        const QString documentos = escuela::dirPersonal() + "/otro disco/"_L1 + nombre;
        const QString trabajo = guardarTrabajo(documentos, u"Mi casa"_s);
        guardarTrabajo(escuela::dirDocumentos(), u"De antes"_s);

        carpetas_de_windows::mudar(carpetas_de_windows::kDocumentos, documentos);
        const QList<ombu::ProyectoGuardado> trabajos = ombu::proyectosGuardados(u"ceibo"_s);
        QCOMPARE(trabajos.size(), 1);
        QCOMPARE(trabajos.constFirst().nombre, u"La casa"_s);
        QCOMPARE(trabajos.constFirst().ruta, trabajo);
    }

    void unTrabajoDeRutaLargaSeEncuentra()
    {
        const QString trabajo = guardarTrabajo(escuela::dirDocumentos(), QString(220, u'n'));
        QVERIFY(trabajo.size() > 260);
        QCOMPARE(ombu::proyectosGuardados(u"ceibo"_s).constFirst().ruta, trabajo);
    }

    void losDatosSeGuardanBajoProgramData_data()
    {
        filasDeCarpetas();
        filaLarga();
    }

    void losDatosSeGuardanBajoProgramData()
    {
        QFETCH(const QString, nombre);
        const QString programData = escuela::dirPersonal() + u'/' + nombre;
        const QStringList entorno{"ProgramData="_L1 + QDir::toNativeSeparators(programData)};
        QCOMPARE(escuela::sonda({u"dir-datos"_s}, entorno), programData + "/Lumbre"_L1);
        const QString id = escuela::sonda({u"crear-perfil"_s, u"Ana"_s}, entorno);
        QVERIFY(!id.isEmpty());
        QVERIFY(escuela::leer(programData + "/Lumbre/perfiles.json"_L1).contains(id.toUtf8()));
    }

    void unComponenteSeReemplazaEnEsaCarpeta_data()
    {
        filasDeCarpetas();
        filaLarga();
    }

    void unComponenteSeReemplazaEnEsaCarpeta()
    {
        QFETCH(const QString, nombre);
        const QString base = escuela::dirPersonal() + u'/' + nombre;
        const QString origen = escuela::dirPersonal() + "/contenido"_L1;
        escribirArbol(base, {{u"Garza/garza.exe"_s, "1"}, {u"Garza/resto.viejo"_s, "0"}});
        escribirArbol(origen, {{u"garza.exe"_s, "2"}, {u"datos/Canción 🎨.txt"_s, "la la"}});

        Actualizador actualizador(base, {}, {}, nullptr);
        QVERIFY(actualizador.reemplazarComponente(u"garza"_s, origen));
        Actualizador::limpiarRestos(base);
        QCOMPARE(leerArbol(base),
                 (Arbol{{u"Garza/garza.exe"_s, "2"}, {u"Garza/datos/Canción 🎨.txt"_s, "la la"}}));
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaWindowsCarpetas, QCoreApplication>(argc, argv);
}

#include "prueba_windows_carpetas.moc"
