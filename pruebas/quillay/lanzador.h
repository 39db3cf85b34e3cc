#pragma once

#include "ombu/auth_aulared.h"
#include "ombu/sesion.h"
#include "quillay/ventana_launcher.h"

#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/quillay/en_pantalla.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QListWidget>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTimer>

/// Escribe el `config.json` del lanzador, con la dirección del servicio.
inline void configurarAulared(const QString &direccion)
{
    escuela::escribir(
        escuela::dirLanzador() + QStringLiteral("/config.json"),
        QJsonDocument(QJsonObject{{QStringLiteral("aulared_url"), direccion}}).toJson());
}

/// El lanzador recién abierto, y lo que una prueba mira de él.
struct Lanzador
{
    enum Pagina { Ingreso, Perfiles, Inicio };

    Pagina pagina() const { return static_cast<Pagina>(pila->currentIndex()); }

    /// La sesión de la ventana, o nulo.
    ombu::Sesion *sesion() const { return ventana.findChild<ombu::Sesion *>(); }

    QString cabecera() const { return pila->widget(Inicio)->findChild<QLabel *>()->text(); }

    QStringList perfiles() const
    {
        const auto *lista = pila->widget(Perfiles)->findChild<QListWidget *>();
        QStringList nombres;
        for (int fila = 0; fila < lista->count(); ++fila)
            nombres.append(lista->item(fila)->text());
        return nombres;
    }

    /// Hace lo que el temporizador al cumplirse un minuto.
    void pasarUnMinuto() const
    {
        QTimerEvent minuto(temporizador->timerId());
        QCoreApplication::sendEvent(temporizador, &minuto);
    }

    void cerrarSesion() const
    {
        en_pantalla::apretar(en_pantalla::boton(ventana, QStringLiteral("Cerrar sesión")));
    }

    quillay::VentanaLauncher ventana;
    QStackedWidget *pila = qobject_cast<QStackedWidget *>(ventana.centralWidget());
    QTimer *temporizador = ventana.findChild<QTimer *>({}, Qt::FindDirectChildrenOnly);
    ombu::AuthAulared *auth = ventana.findChild<ombu::AuthAulared *>();
    QSignalSpy respuestas{auth, &ombu::AuthAulared::disponible}; ///< Las que llegan después.
};
