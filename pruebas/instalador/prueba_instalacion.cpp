#include "ombu/archivo_json.h"
#include "para_windows/instalador/instalacion.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

#include <memory>

using namespace Qt::StringLiterals;

class PruebaInstalacion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void lee_un_pedido_con_signos_y_acentos();
    void rechaza_un_pedido_que_no_entiende_data();
    void rechaza_un_pedido_que_no_entiende();
    void rechaza_un_pedido_que_no_existe();

    void mueve_lo_nuevo_y_no_toca_lo_demas();
    void no_deja_apartado_lo_que_no_esta_en_uso();
    void si_un_archivo_no_se_puede_mover_vuelven_los_anteriores();

    void una_configuracion_nueva_tiene_las_tres_claves();
    void cambia_las_claves_pedidas_y_conserva_las_otras();
    void sin_nada_que_cambiar_no_toca_la_configuracion();
    void anota_la_version_del_lanzador_y_conserva_las_de_las_apps();
    void pone_y_saca_la_marca_de_equipo();

private:
    QString ruta(const QString &relativa) const { return m_base->filePath(relativa); }
    void escribir(const QString &relativa, const QByteArray &contenido) const;
    QByteArray leer(const QString &relativa) const;
    QJsonObject json(const QString &relativa) const;
    QString pedido(const QString &texto) const;

    std::unique_ptr<QTemporaryDir> m_base;
};

void PruebaInstalacion::init()
{
    m_base = std::make_unique<QTemporaryDir>();
    QVERIFY(m_base->isValid());
}

void PruebaInstalacion::escribir(const QString &relativa, const QByteArray &contenido) const
{
    QDir().mkpath(QFileInfo(ruta(relativa)).path());
    QFile archivo(ruta(relativa));
    QVERIFY(archivo.open(QIODevice::WriteOnly));
    QCOMPARE(archivo.write(contenido), contenido.size());
}

QByteArray PruebaInstalacion::leer(const QString &relativa) const
{
    QFile archivo(ruta(relativa));
    return archivo.open(QIODevice::ReadOnly) ? archivo.readAll() : QByteArray("(no está)");
}

QJsonObject PruebaInstalacion::json(const QString &relativa) const
{
    return ombu::leerDocumentoJson(ruta(relativa)).object();
}

// Como lo escribe el instalador: UTF-16 con marca y renglones de Windows.
QString PruebaInstalacion::pedido(const QString &texto) const
{
    QFile archivo(ruta(u"pedido.txt"_s));
    if (archivo.open(QIODevice::WriteOnly)) {
        QTextStream salida(&archivo);
        salida.setEncoding(QStringConverter::Utf16LE);
        salida.setGenerateByteOrderMark(true);
        salida << texto;
    }
    return archivo.fileName();
}

void PruebaInstalacion::lee_un_pedido_con_signos_y_acentos()
{
    const auto leido = instalador::leerPedido(
        pedido(u"carpeta=C:\\Ñandú & Cía\r\nnuevos=C:\\n\r\nversion=1.2.3\r\n"
               "aulared_url=https://a/b?c=d&e=\"%20\"\\#\r\nequipo=no\r\ncompartida=si\r\n"_s));
    QVERIFY(leido);
    QCOMPARE(leido->carpeta, u"C:\\Ñandú & Cía"_s);
    QCOMPARE(leido->nuevos, u"C:\\n"_s);
    QCOMPARE(leido->version, u"1.2.3"_s);
    QCOMPARE(leido->configuracion,
             (QMap<QString, QString>{{u"aulared_url"_s, u"https://a/b?c=d&e=\"%20\"\\#"_s}}));
    QCOMPARE(leido->equipo, std::optional(false));
    QVERIFY(leido->compartida);
}

void PruebaInstalacion::rechaza_un_pedido_que_no_entiende_data()
{
    QTest::addColumn<QString>("texto");
    const QString bien = u"carpeta=a\r\nnuevos=b\r\nversion=c\r\n"_s;
    QTest::newRow("vacío") << QString();
    QTest::newRow("sin carpeta") << u"nuevos=b\r\nversion=c\r\n"_s;
    QTest::newRow("sin nuevos") << u"carpeta=a\r\nversion=c\r\n"_s;
    QTest::newRow("sin versión") << u"carpeta=a\r\nnuevos=b\r\n"_s;
    QTest::newRow("clave desconocida") << QString(bien + u"aulared=https://a\r\n"_s);
    QTest::newRow("renglón sin igual") << QString(bien + u"equipo\r\n"_s);
}

void PruebaInstalacion::rechaza_un_pedido_que_no_entiende()
{
    QFETCH(const QString, texto);
    QVERIFY(!instalador::leerPedido(pedido(texto)));
}

void PruebaInstalacion::rechaza_un_pedido_que_no_existe()
{
    QVERIFY(!instalador::leerPedido(ruta(u"no_esta.txt"_s)));
}

void PruebaInstalacion::mueve_lo_nuevo_y_no_toca_lo_demas()
{
    escribir(u"q/quillay.exe"_s, "viejo");
    escribir(u"q/Garza/garza.exe"_s, "garza");
    escribir(u"nuevos/quillay.exe"_s, "nuevo");
    escribir(u"nuevos/platforms/qwindows.dll"_s, "complemento");

    QVERIFY(instalador::reemplazarArchivos(ruta(u"nuevos"_s), ruta(u"q"_s)));

    QCOMPARE(leer(u"q/quillay.exe"_s), "nuevo");
    QCOMPARE(leer(u"q/platforms/qwindows.dll"_s), "complemento");
    QCOMPARE(leer(u"q/Garza/garza.exe"_s), "garza");
}

void PruebaInstalacion::no_deja_apartado_lo_que_no_esta_en_uso()
{
    escribir(u"q/quillay.exe"_s, "viejo");
    escribir(u"q/quillay.exe.viejo"_s, "más viejo");
    escribir(u"nuevos/quillay.exe"_s, "nuevo");
    QVERIFY(instalador::reemplazarArchivos(ruta(u"nuevos"_s), ruta(u"q"_s)));
    QCOMPARE(QDir(ruta(u"q"_s)).entryList(QDir::Files), QStringList{u"quillay.exe"_s});
}

void PruebaInstalacion::si_un_archivo_no_se_puede_mover_vuelven_los_anteriores()
{
    escribir(u"q/a.dll"_s, "viejo a");
    escribir(u"q/z.dll"_s, "viejo z");
    escribir(u"q/carpeta"_s, "un archivo donde va una carpeta");
    escribir(u"nuevos/a.dll"_s, "nuevo a");
    escribir(u"nuevos/carpeta/b.dll"_s, "nuevo b");
    escribir(u"nuevos/z.dll"_s, "nuevo z");

    QVERIFY(!instalador::reemplazarArchivos(ruta(u"nuevos"_s), ruta(u"q"_s)));

    QCOMPARE(leer(u"q/a.dll"_s), "viejo a");
    QCOMPARE(leer(u"q/z.dll"_s), "viejo z");
    QCOMPARE(QDir(ruta(u"q"_s)).entryList(QDir::Files),
             (QStringList{u"a.dll"_s, u"carpeta"_s, u"z.dll"_s}));
    QCOMPARE(leer(u"nuevos/a.dll"_s), "nuevo a");
}

void PruebaInstalacion::una_configuracion_nueva_tiene_las_tres_claves()
{
    QVERIFY(instalador::configurar(m_base->path(), {{u"aulared_url"_s, u"https://a"_s}}));
    QCOMPARE(json(u"config.json"_s), (QJsonObject{{u"aulared_url"_s, u"https://a"_s},
                                                  {u"manifiesto_url"_s, QString()},
                                                  {u"descargas_base"_s, QString()}}));
}

void PruebaInstalacion::cambia_las_claves_pedidas_y_conserva_las_otras()
{
    escribir(u"config.json"_s, R"({"aulared_url": "https://a", "otra": [1, 2]})");
    QVERIFY(instalador::configurar(m_base->path(), {{u"manifiesto_url"_s, u"https://m"_s}}));
    QCOMPARE(json(u"config.json"_s), (QJsonObject{{u"aulared_url"_s, u"https://a"_s},
                                                  {u"manifiesto_url"_s, u"https://m"_s},
                                                  {u"otra"_s, QJsonArray{1, 2}}}));
}

void PruebaInstalacion::sin_nada_que_cambiar_no_toca_la_configuracion()
{
    escribir(u"config.json"_s, "{ a medio escribir");
    QVERIFY(instalador::configurar(m_base->path(), {}));
    QCOMPARE(leer(u"config.json"_s), "{ a medio escribir");
}

void PruebaInstalacion::anota_la_version_del_lanzador_y_conserva_las_de_las_apps()
{
    escribir(u"versiones.json"_s, R"({"garza": "1.4.0", "launcher": "0.9.0"})");
    QVERIFY(instalador::anotarVersion(m_base->path(), u"1.0.0"_s));
    QCOMPARE(json(u"versiones.json"_s),
             (QJsonObject{{u"garza"_s, u"1.4.0"_s}, {u"launcher"_s, u"1.0.0"_s}}));
}

void PruebaInstalacion::pone_y_saca_la_marca_de_equipo()
{
    const QString marca = ruta(u"equipo.json"_s);
    QVERIFY(instalador::marcarEquipo(m_base->path(), false));
    QVERIFY(!QFile::exists(marca));
    QVERIFY(instalador::marcarEquipo(m_base->path(), true));
    QVERIFY(QFile::exists(marca));
    QVERIFY(instalador::marcarEquipo(m_base->path(), true));
    QVERIFY(instalador::marcarEquipo(m_base->path(), false));
    QVERIFY(!QFile::exists(marca));
}

QTEST_GUILESS_MAIN(PruebaInstalacion)
#include "prueba_instalacion.moc"
