// Una actualización de 300 MB en 3.000 archivos, comparada con bajarla, extraerla y copiarla con
// programas de Debian. En Linux, QFile::copy() espera a que cada archivo esté en el disco y cp no:
// por eso hay también un piso que lo hace. Además, la búsqueda de versiones
// nuevas con 10.000 componentes.

#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/relanzar.h"
#include "pruebas/apoyo/servidor_web.h"
#include "quillay/actualizador.h"
#include "rendimiento/cuentas.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTextStream>

#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int kVeces = 3;
constexpr int kArchivos = 3000;
constexpr qsizetype kBytesPorArchivo = 100'000;
constexpr int kComponentes = 10'000;
constexpr double kMaximoVeces = 1.1;
constexpr double kMaximoVecesElPaquete = 1.5;
constexpr double kMaximoAgregadoAlVerificarMs = 10;
constexpr double kMebibyte = 1'048'576;

const QString kPaquete = u"/paquetes/garza-2.zip"_s;

QString publicado()
{
    return escuela::dirPersonal() + "/publicado"_L1;
}

QString instalado()
{
    return escuela::dirPersonal() + "/Quillay"_L1;
}

void exigir(bool condicion, const char *que)
{
    if (!condicion)
        qFatal("No se pudo medir: %s", que);
}

/// Corre una orden de bash y da los recursos que usaron ella y los programas que llamó.
rusage correr(const QString &orden)
{
    std::string interprete = "bash";
    std::string opcion = "-ec";
    std::string texto = orden.toStdString();
    std::vector<char *> argumentos{interprete.data(), opcion.data(), texto.data(), nullptr};
    pid_t pid = 0;
    exigir(posix_spawnp(&pid, "bash", nullptr, nullptr, argumentos.data(), environ) == 0, "bash");
    int estado = 0;
    rusage recursos = {};
    wait4(pid, &estado, 0, &recursos);
    exigir(WIFEXITED(estado) && WEXITSTATUS(estado) == 0, texto.c_str());
    return recursos;
}

/// Bytes que no se comprimen del todo, como los de un programa.
QByteArray contenido(quint32 numero)
{
    QByteArray bytes(kBytesPorArchivo, '\0');
    for (char &byte : bytes) {
        numero = numero * 1664525 + 1013904223;
        byte = static_cast<char>('0' + ((numero >> 16) & 63U));
    }
    return bytes;
}

void publicarPaquete()
{
    const QString carpeta = escuela::dirPersonal() + "/version-2"_L1;
    for (int i = 0; i < kArchivos; ++i) {
        const QString nombre = u"%1/grupo %2/archivo %3.bin"_s.arg(carpeta).arg(i % 60).arg(i);
        escuela::escribir(nombre, contenido(static_cast<quint32>(i)));
    }
    QDir().mkpath(publicado() + "/paquetes"_L1);
    correr(u"cd '%1' && zip -q -1 -r '%2' ."_s.arg(carpeta, publicado() + kPaquete));
    escuela::escribir(publicado() + "/manifiesto.json"_L1, R"({"garza": "2"})");
}

/// La versión anterior, toda distinta, ya bajada al disco.
void instalarLaAnterior()
{
    QDir(instalado()).removeRecursively();
    QDir().mkpath(instalado());
    correr(u"cp -r '%1/version-2' '%2/Garza' && find '%2' -name '*.bin' -exec truncate -s -1 {} + "
           "&& sync"_s.arg(escuela::dirPersonal(), instalado()));
    escuela::escribir(instalado() + "/versiones.json"_L1, R"({"garza": "1"})");
}

/// Un powershell.exe que anota cuándo empieza y cuándo termina.
void prepararPowershell()
{
    const QString carpeta = escuela::dirPersonal() + "/programas"_L1;
    const QString programa = carpeta + "/powershell.exe"_L1;
    escuela::escribir(programa, "#!/bin/bash\ndate +%s%N > \"$HOME/empieza\"\n"
                                "'" RUTA_POWERSHELL_DE_MUESTRA "' \"$@\" || exit\n"
                                "date +%s%N > \"$HOME/termina\"\n");
    QFile::setPermissions(programa, QFile::ReadOwner | QFile::ExeOwner);
    qputenv("PATH", carpeta.toUtf8() + ':' + qgetenv("PATH"));
}

double instante(const QString &archivo)
{
    return escuela::leer(escuela::dirPersonal() + u'/' + archivo).trimmed().toDouble() / 1e6;
}

double ahora()
{
    correr(u"date +%s%N > \"$HOME/ahora\""_s);
    return instante(u"ahora"_s);
}

struct Vueltas
{
    std::vector<double> total;
    std::vector<double> bajar;
    std::vector<double> extraer;
    std::vector<double> copiar;
    std::vector<double> copiarFirme; ///< Con cada archivo confirmado en el disco.
    std::vector<double> totalFirme;
    std::vector<double> memoria;
};

void medirLaNuestra(const ServidorWeb &servidor, Vueltas &vueltas)
{
    instalarLaAnterior();
    const QString orden = u"exec '%1' '%2' '%3' '%4' > \"$HOME/dicho\""_s.arg(
        QStringLiteral(RUTA_CORREDOR), instalado(), servidor.url(u"/manifiesto.json"_s).toString(),
        servidor.url(u"/paquetes"_s).toString());
    const double antes = ahora();
    rusage recursos = {};
    vueltas.total.push_back(medicion::milisegundos([&] { recursos = correr(orden); }));
    exigir(escuela::leer(escuela::dirPersonal() + "/dicho"_L1).contains("actualizado|garza|2"),
           "la actualización falló");
    vueltas.bajar.push_back(instante(u"empieza"_s) - antes);
    vueltas.extraer.push_back(instante(u"termina"_s) - instante(u"empieza"_s));
    vueltas.copiar.push_back(vueltas.total.back() - vueltas.bajar.back() - vueltas.extraer.back());
    vueltas.memoria.push_back(static_cast<double>(recursos.ru_maxrss) / 1024);
}

void medirElPiso(const ServidorWeb &servidor, Vueltas &vueltas)
{
    instalarLaAnterior();
    const QString temporal = escuela::dirPersonal() + "/temporal"_L1;
    QDir().mkpath(temporal);
    const auto milisegundos = [](const QString &orden) {
        return medicion::milisegundos([&] { correr(orden); });
    };
    vueltas.bajar.push_back(milisegundos(
        u"curl -sf -o '%1/p.zip' '%2'"_s.arg(temporal, servidor.url(kPaquete).toString())));
    vueltas.extraer.push_back(milisegundos(u"unzip -q -o '%1/p.zip' -d '%1/c'"_s.arg(temporal)));
    vueltas.copiar.push_back(
        milisegundos(u"cp -a '%1/c/.' '%2/Garza' && rm -r '%1'"_s.arg(temporal, instalado())));
    const double confirmar =
        milisegundos(u"find '%1/Garza' -name '*.bin' -exec sync --data {} +"_s.arg(instalado()));
    vueltas.copiarFirme.push_back(vueltas.copiar.back() + confirmar);
    vueltas.total.push_back(vueltas.bajar.back() + vueltas.extraer.back() + vueltas.copiar.back());
    vueltas.totalFirme.push_back(vueltas.total.back() + confirmar);
}

void medirUnaActualizacion()
{
    publicarPaquete();
    prepararPowershell();
    const ServidorWeb servidor(publicado());
    Vueltas nuestras;
    Vueltas piso;
    for (int vez = 0; vez < kVeces; ++vez) {
        medirLaNuestra(servidor, nuestras);
        medirElPiso(servidor, piso);
    }

    const auto comparar = [](const QString &que, const std::vector<double> &nuestro,
                             const std::vector<double> &suyo) {
        return medicion::Comparacion{que, medicion::mediana(nuestro) / 1000,
                                     medicion::mediana(suyo) / 1000, u"s"_s};
    };
    medicion::informarVeces(
        comparar(u"Actualización de 300 MB en 3.000 archivos"_s, nuestras.total, piso.total),
        kMaximoVeces);
    medicion::informarVeces(comparar(u"  bajar"_s, nuestras.bajar, piso.bajar), kMaximoVeces);
    medicion::informarVeces(comparar(u"  extraer"_s, nuestras.extraer, piso.extraer), kMaximoVeces);
    medicion::informarVeces(comparar(u"  copiar"_s, nuestras.copiar, piso.copiar), kMaximoVeces);
    medicion::informarVeces(comparar(u"  copiar, si el piso también confirma cada archivo"_s,
                                     nuestras.copiar, piso.copiarFirme),
                            kMaximoVeces);
    medicion::informarVeces(
        comparar(u"La actualización, si el piso también confirma cada archivo"_s, nuestras.total,
                 piso.totalFirme),
        kMaximoVeces);

    const auto paquete = static_cast<double>(QFileInfo(publicado() + kPaquete).size()) / kMebibyte;
    medicion::informarVeces({u"Memoria al actualizar, contra el tamaño del paquete"_s,
                             medicion::mediana(nuestras.memoria), paquete, u"MiB"_s},
                            kMaximoVecesElPaquete);
}

QByteArray versiones(const QString &version)
{
    QJsonObject objeto;
    for (int i = 0; i < kComponentes; ++i)
        objeto.insert(u"componente-%1"_s.arg(i), version);
    return QJsonDocument(objeto).toJson();
}

void esperarLaOferta(quillay::Actualizador &actualizador)
{
    QEventLoop bucle;
    qsizetype ofrecidos = 0;
    QObject::connect(&actualizador, &quillay::Actualizador::actualizacionesDisponibles, &bucle,
                     [&](const QList<quillay::Actualizacion> &pendientes) {
                         ofrecidos = pendientes.size();
                         bucle.quit();
                     });
    QObject::connect(&actualizador, &quillay::Actualizador::sinActualizaciones, &bucle,
                     &QEventLoop::quit);
    actualizador.verificar();
    bucle.exec();
    exigir(ofrecidos == kComponentes, "no se ofrecieron todos los componentes");
}

/// Bajar el manifiesto y leer los dos archivos, sin compararlos.
void bajarYLeer(QNetworkAccessManager &red, const QUrl &url)
{
    QEventLoop bucle;
    QNetworkReply *respuesta = red.get(QNetworkRequest(url));
    QObject::connect(respuesta, &QNetworkReply::finished, &bucle, &QEventLoop::quit);
    bucle.exec();
    const auto publicadas = QJsonDocument::fromJson(respuesta->readAll());
    const auto locales = QJsonDocument::fromJson(escuela::leer(instalado() + "/versiones.json"_L1));
    respuesta->deleteLater();
    exigir(publicadas.object().size() == locales.object().size(), "no se leyó el manifiesto");
}

void medirLaBusqueda()
{
    escuela::escribir(publicado() + "/muchos.json"_L1, versiones(u"2"_s));
    escuela::escribir(instalado() + "/versiones.json"_L1, versiones(u"1"_s));
    const ServidorWeb servidor(publicado());
    const QUrl url = servidor.url(u"/muchos.json"_s);
    quillay::Actualizador actualizador(instalado(), url, {}, nullptr);
    QNetworkAccessManager red;

    std::vector<double> nuestros;
    std::vector<double> piso;
    for (int vez = 0; vez < 21; ++vez) {
        nuestros.push_back(medicion::milisegundos([&] { esperarLaOferta(actualizador); }));
        piso.push_back(medicion::milisegundos([&] { bajarYLeer(red, url); }));
    }
    medicion::informarAgregado({u"Buscar versiones nuevas de 10.000 componentes"_s,
                                medicion::mediana(nuestros), medicion::mediana(piso), u"ms"_s},
                               kMaximoAgregadoAlVerificarMs);
}

} // namespace

int main(int argc, char *argv[])
{
    if (const std::optional<int> codigo = relanzarEnEscuela(argc, argv))
        return *codigo;
    const QCoreApplication aplicacion(argc, argv);
    medirUnaActualizacion();
    medirLaBusqueda();
    return 0;
}
