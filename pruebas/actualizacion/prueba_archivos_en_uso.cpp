// Actualizar lo que está abierto, con las reglas de Windows para los archivos en uso.

#include "quillay/actualizador.h"

#include "pruebas/actualizacion/actualizador_espiado.h"
#include "pruebas/actualizacion/archivo_en_uso.h"
#include "pruebas/actualizacion/paquete.h"
#include "pruebas/actualizacion/powershell.h"
#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/servidor_guionado.h"

#include <QDir>

#include <memory>

using namespace Qt::StringLiterals;

using quillay::Actualizacion;
using quillay::Actualizador;

namespace {

const Actualizacion kLanzador{u"launcher"_s, u"2.1"_s, u"2.2"_s};

QStringList actualizado()
{
    return {u"actualizado|launcher|2.2"_s, u"terminado"_s};
}

QStringList noSeReemplazo()
{
    return {u"error|No se pudo reemplazar los archivos de launcher."_s, u"terminado"_s};
}

QByteArray versionesDeAntes()
{
    return "{\n    \"launcher\": \"2.1\"\n}\n";
}

QString ejecutable()
{
    return carpetaInstalada() + "/quillay.exe"_L1;
}

} // namespace

class PruebaArchivosEnUso : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        escuela::vaciar();
        powershell::usarElDeMuestra();
        escribirArbol(carpetaInstalada(),
                      {{u"quillay.exe"_s, "2.1"}, {u"versiones.json"_s, versionesDeAntes()}});
        m_servidor.contestar("/d/launcher-2.2.zip",
                             {.cuerpo = comprimir({{u"quillay.exe"_s, "2.2"}})});
        m_servidor.contestar("/d/launcher-2.3.zip",
                             {.cuerpo = comprimir({{u"quillay.exe"_s, "2.3"}})});
        m_actualizador = std::make_unique<ActualizadorEspiado>(QUrl(), m_servidor.url(u"/d"_s));
    }

    void elLanzadorAbiertoQuedaAUnLadoYSeBorraEnElArranqueSiguiente()
    {
        auto enUso = std::make_unique<ArchivoEnUso>(ejecutable());
        QCOMPARE(m_actualizador->alAplicar({kLanzador}), actualizado());
        const QByteArray versiones = "{\n    \"launcher\": \"2.2\"\n}\n";
        QCOMPARE(leerArbol(carpetaInstalada()), (Arbol{{u"quillay.exe"_s, "2.2"},
                                                       {u"quillay.exe.viejo"_s, "2.1"},
                                                       {u"versiones.json"_s, versiones}}));

        enUso.reset(); // Se cierra el lanzador.
        Actualizador::limpiarRestos(carpetaInstalada());
        QCOMPARE(leerArbol(carpetaInstalada()),
                 (Arbol{{u"quillay.exe"_s, "2.2"}, {u"versiones.json"_s, versiones}}));
    }

    void limpiarDejaElViejoQueSigueEnUso()
    {
        Arbol viejos{{u"quillay.exe.viejo"_s, "2.0"}};
        for (int i = 0; i < 50; ++i) // Para que los haya antes y después, en cualquier orden.
            viejos.insert(u"%1.viejo"_s.arg(i), "0");
        escribirArbol(carpetaInstalada(), viejos);
        const ArchivoEnUso enUso(ejecutable() + ".viejo"_L1);
        Actualizador::limpiarRestos(carpetaInstalada());
        QCOMPARE(leerArbol(carpetaInstalada()), (Arbol{{u"quillay.exe"_s, "2.1"},
                                                       {u"quillay.exe.viejo"_s, "2.0"},
                                                       {u"versiones.json"_s, versionesDeAntes()}}));
    }

    void actualizarElLanzadorDosVecesSinCerrarloFalla()
    {
        const ArchivoEnUso original(ejecutable());
        QCOMPARE(m_actualizador->alAplicar({kLanzador}), actualizado());
        const Arbol antes = leerArbol(carpetaInstalada());

        const ArchivoEnUso otraVez(ejecutable()); // Otra ventana abrió el nuevo.
        QCOMPARE(m_actualizador->alAplicar({{u"launcher"_s, u"2.2"_s, u"2.3"_s}}), noSeReemplazo());
        QCOMPARE(leerArbol(carpetaInstalada()), antes);
    }

    void loQueNoSePuedeBorrarNiRenombrarFalla()
    {
        const Arbol antes = leerArbol(carpetaInstalada());
        const ArchivoEnUso enUso(ejecutable(), ArchivoEnUso::NiSeRenombra);
        QCOMPARE(m_actualizador->alAplicar({kLanzador}), noSeReemplazo());
        QCOMPARE(leerArbol(carpetaInstalada()), antes);
    }

    void alFallarUnArchivoLosDemasQuedanViejosONuevos()
    {
        Arbol viejos{{u"versiones.json"_s, versionesDeAntes()}};
        Arbol nuevos;
        for (int i = 0; i < 20; ++i) {
            viejos.insert(u"%1.txt"_s.arg(i), "viejo");
            nuevos.insert(u"%1.txt"_s.arg(i), "nuevo");
        }
        escribirArbol(carpetaInstalada(), viejos);
        m_servidor.contestar("/d/launcher-2.2.zip", {.cuerpo = comprimir(nuevos)});
        const ArchivoEnUso enUso(carpetaInstalada() + "/7.txt"_L1, ArchivoEnUso::NiSeRenombra);

        QCOMPARE(m_actualizador->alAplicar({kLanzador}), noSeReemplazo());
        const Arbol despues = leerArbol(carpetaInstalada());
        for (auto it = nuevos.cbegin(); it != nuevos.cend(); ++it)
            QVERIFY(despues.value(it.key()) == "viejo" || despues.value(it.key()) == "nuevo");
        QCOMPARE(despues.value(u"7.txt"_s), "viejo");
        QCOMPARE(despues.value(u"versiones.json"_s), versionesDeAntes());
    }

    void despuesDeUnaFallaSigueElSiguiente()
    {
        m_servidor.contestar("/d/zorzal-2.zip", {.cuerpo = comprimir({{u"a.txt"_s, "a"}})});
        const ArchivoEnUso enUso(ejecutable(), ArchivoEnUso::NiSeRenombra);
        QCOMPARE(
            m_actualizador->alAplicar({kLanzador, {u"zorzal"_s, u"1"_s, u"2"_s}}),
            (QStringList{noSeReemplazo().constFirst(), u"actualizado|zorzal|2"_s, u"terminado"_s}));
        QCOMPARE(escuela::leer(rutaVersiones()),
                 QByteArray("{\n    \"launcher\": \"2.1\",\n    \"zorzal\": \"2\"\n}\n"));
    }

    void unComponenteDesconocidoFallaDespuesDeBajarYExtraer()
    {
        m_servidor.contestar("/d/loro-2.zip", {.cuerpo = comprimir({{u"a.txt"_s, "a"}})});
        const Arbol antes = leerArbol(carpetaInstalada());
        QCOMPARE(
            m_actualizador->alAplicar({{u"loro"_s, u"1"_s, u"2"_s}}),
            (QStringList{u"error|No se pudo reemplazar los archivos de loro."_s, u"terminado"_s}));
        QCOMPARE(powershell::llamadas().size(), 1);
        QCOMPARE(leerArbol(carpetaInstalada()), antes);
    }

private:
    ServidorGuionado m_servidor;
    std::unique_ptr<ActualizadorEspiado> m_actualizador;
};

int main(int argc, char *argv[])
{
    return correr<PruebaArchivosEnUso, QCoreApplication>(argc, argv);
}

#include "prueba_archivos_en_uso.moc"
