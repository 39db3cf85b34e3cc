#include "rendimiento/escuela_de_medicion.h"

#include "ombu/recientes.h"
#include "ombu/sesion.h"
#include "pruebas/apoyo/escuela_temporal.h"

#include <QFile>
#include <QHash>

#include <memory>

using namespace Qt::StringLiterals;

namespace medicion {

namespace {

struct Lugar
{
    QString carpeta; ///< Relativa a Documentos.
    QString archivo;
    QByteArray clave;
};

Lugar lugarDe(const QString &id)
{
    static const QHash<QString, Lugar> lugares{
        {u"garza"_s, {u"Garza/proyectos"_s, u"project.json"_s, "projectName"}},
        {u"ceibo"_s, {u"Ceibo"_s, u"proyecto.json"_s, "nombre"}},
        {u"zorzal"_s, {u"Zorzal"_s, u"proyecto.json"_s, "nombre"}},
        {u"benteveo"_s, {u"Benteveo"_s, u"project.json"_s, "name"}},
    };
    return lugares.value(id);
}

} // namespace

QString instalarLanzador()
{
    QString copia = escuela::dirLanzador() + "/quillay"_L1;
    if (!QFile::copy(QStringLiteral(RUTA_QUILLAY), copia))
        qFatal("No se pudo copiar el lanzador a %s", qUtf8Printable(copia));
    escuela::escribir(escuela::dirLanzador() + "/config.json"_L1, "{}");
    return copia;
}

QString ventanaPelada()
{
    return QStringLiteral(RUTA_VENTANA_PELADA);
}

void crearTrabajos(const QString &id, int cantidad)
{
    const Lugar lugar = lugarDe(id);
    for (int i = 0; i < cantidad; ++i) {
        const QByteArray contenido = "{\n    \"" + lugar.clave + "\": \"Trabajo de clase " +
                                     QByteArray::number(i) +
                                     "\",\n    \"autor\": \"Ana\",\n    \"version\": 3\n}\n";
        escuela::escribir(
            u"%1/trabajo-%2/%3"_s.arg(carpetaDeTrabajos(id)).arg(i).arg(lugar.archivo), contenido);
    }
}

QString carpetaDeTrabajos(const QString &id)
{
    return escuela::dirDocumentos() + u'/' + lugarDe(id).carpeta;
}

QString archivoDeDescripcion(const QString &id)
{
    return lugarDe(id).archivo;
}

QStringList guardarSesion(int cantidad)
{
    QList<ombu::Integrante> integrantes;
    QStringList claves;
    for (int i = 1; i <= cantidad; ++i) {
        claves.append(u"persona-%1"_s.arg(i));
        integrantes.append({claves.last(), u"Persona %1"_s.arg(i), u"#1A6BAF"_s});
    }
    const std::unique_ptr<ombu::Sesion> sesion(ombu::Sesion::iniciar(
        ombu::ModoSesion::Standalone, {}, u"Grupo"_s, integrantes, 0, nullptr));
    if (!sesion)
        qFatal("No se pudo guardar la sesión");
    return claves;
}

void llenarRecientes(const QString &clave)
{
    constexpr int kLlena = 30;
    const QDateTime ahora = QDateTime::currentDateTime();
    for (int i = 0; i < kLlena; ++i) {
        const QString ruta = u"%1/%2/trabajo-%3"_s.arg(escuela::dirDocumentos(), clave).arg(i);
        ombu::Recientes::registrar(clave, {ruta, u"garza"_s, ahora.addSecs(-i), false});
    }
}

} // namespace medicion
