#include "pruebas/apoyo/archivos_ilegibles.h"

#include "pruebas/apoyo/escuela_temporal.h"

#include <QByteArray>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kNiveles = 100'000;
constexpr qsizetype kCincoMegas = 5'000'000;
constexpr qint64 kTerabyte = qint64{1} << 40;

void fila(const char *nombre, const Estropeo &estropear)
{
    QTest::newRow(nombre) << estropear;
}

void filaDeContenido(const char *nombre, const QByteArray &contenido)
{
    fila(nombre, [contenido](const QString &ruta) { escuela::escribir(ruta, contenido); });
}

// Disperso: dice pesar eso, pero no ocupa lugar.
void escribirDesmedido(const QString &ruta)
{
    escuela::escribir(ruta, "[]");
    if (!QFile::resize(ruta, kTerabyte))
        qFatal("No se pudo agrandar %s", qUtf8Printable(ruta));
}

} // namespace

void filasDeArchivosIlegibles()
{
    QTest::addColumn<Estropeo>("estropear");
    filaDeContenido("vacío", {});
    filaDeContenido("solo espacios", " \r\n\t ");
    filaDeContenido("solo la marca de UTF-8", "\xEF\xBB\xBF");
    filaDeContenido("objeto cortado", R"({"grupo": "Los teros", "integ)");
    filaDeContenido("lista cortada", R"([{"id": "1", "nombre": "Ana"},)");
    filaDeContenido("objeto y algo más", "{} {}");
    filaDeContenido("lista y algo más", "[] hola");
    filaDeContenido("coma de más", R"([{"id": "1"},])");
    filaDeContenido("comillas simples", "{'id': '1'}");
    filaDeContenido("palabras", "Hola, soy un archivo de texto.");
    filaDeContenido("ni objeto ni lista: nulo", "null");
    filaDeContenido("ni objeto ni lista: número", "17");
    filaDeContenido("ni objeto ni lista: texto", R"("Ana")");
    filaDeContenido("bytes nulos", QByteArray(512, '\0'));
    filaDeContenido("objeto con bytes nulos detrás", "{}" + QByteArray(16, '\0'));
    filaDeContenido("lista con bytes nulos detrás", "[]" + QByteArray(16, '\0'));
    filaDeContenido("UTF-8 inválido", "[{\"nombre\": \"An\xE1\"}]");
    filaDeContenido("UTF-8 de más de lo necesario", "{\"nombre\": \"\xC0\xAF\"}");
    filaDeContenido("UTF-16", QByteArray("[\0]\0", 4));
    filaDeContenido("100.000 listas anidadas",
                    QByteArray(kNiveles, '[') + QByteArray(kNiveles, ']'));
    filaDeContenido("100.000 objetos anidados",
                    QByteArray("{\"a\":").repeated(kNiveles) + "1" + QByteArray(kNiveles, '}'));
    filaDeContenido("100.000 listas sin cerrar", QByteArray(kNiveles, '['));
    filaDeContenido("5 MB de basura", QByteArray(kCincoMegas, '{'));
    fila("desmedido", escribirDesmedido);
}
