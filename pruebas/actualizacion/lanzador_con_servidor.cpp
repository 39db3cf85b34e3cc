#include "pruebas/actualizacion/lanzador_con_servidor.h"

#include "pruebas/apoyo/escuela_temporal.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QStatusBar>
#include <QTimer>

using namespace Qt::StringLiterals;

using quillay::Actualizador;

LanzadorConServidor::LanzadorConServidor()
{
    configurar({{u"manifiesto_url"_s, direccion(u"/m.json"_s)},
                {u"descargas_base"_s, direccion(u"/d"_s)}});
    instalar({{u"launcher"_s, u"2.1.0"_s}, {u"garza"_s, u"1.4.0"_s}});
    publicar({{u"launcher"_s, u"2.2.0"_s}, {u"garza"_s, u"1.5.0"_s}});
    servidor.contestar("/d/garza-1.5.0.zip", {.cuerpo = comprimir({{u"garza.exe"_s, "1.5.0"}})});
    servidor.contestar("/d/launcher-2.2.0.zip",
                       {.cuerpo = comprimir({{u"quillay.exe"_s, "2.2.0"}})});
}

void LanzadorConServidor::configurar(const QJsonObject &configuracion)
{
    escuela::escribir(ruta(u"config.json"_s), QJsonDocument(configuracion).toJson());
}

void LanzadorConServidor::instalar(const QJsonObject &versiones)
{
    escuela::escribir(ruta(u"versiones.json"_s), QJsonDocument(versiones).toJson());
}

void LanzadorConServidor::publicar(const QJsonObject &versiones)
{
    servidor.contestar("/m.json", {.cuerpo = QJsonDocument(versiones).toJson()});
}

QString LanzadorConServidor::ruta(const QString &nombre)
{
    return escuela::dirLanzador() + u'/' + nombre;
}

Arbol LanzadorConServidor::instalado()
{
    Arbol arbol = leerArbol(escuela::dirLanzador());
    arbol.remove(QFileInfo(QCoreApplication::applicationFilePath()).fileName());
    return arbol;
}

VentanaAbierta::VentanaAbierta()
    : actualizador(ventana.findChild<Actualizador *>())
{
    QObject::connect(ventana.statusBar(), &QStatusBar::messageChanged, &ventana,
                     [this](const QString &mensaje) { anotar(mensaje); });
    ventana.show();
    if (!actualizador)
        return;
    QObject::connect(actualizador, &Actualizador::sinActualizaciones, &ventana,
                     [this] { sinActualizaciones = true; });
    QObject::connect(actualizador, &Actualizador::terminado, &ventana, [this] { termino = true; });
}

QList<QNetworkReply *> VentanaAbierta::pedidosEnCurso() const
{
    return actualizador->findChild<QNetworkAccessManager *>()->findChildren<QNetworkReply *>();
}

// La barra de estado ya puso en hora su único temporizador cuando avisa.
void VentanaAbierta::anotar(const QString &mensaje)
{
    const auto *reloj = ventana.statusBar()->findChild<QTimer *>();
    if (!mensaje.isEmpty())
        mensajes.append(mensaje + u'|' + QString::number(reloj ? reloj->interval() : 0));
}
