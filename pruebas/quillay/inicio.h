#pragma once

#include "ombu/recientes.h"
#include "ombu/sesion.h"
#include "quillay/vista_apps.h"

#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/quillay/en_pantalla.h"

#include <QAbstractButton>
#include <QApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QListWidget>
#include <QSignalSpy>
#include <QTabWidget>
#include <QVBoxLayout>

#include <memory>

/// La pantalla de inicio de una sesión, y lo que una prueba mira de ella. Las apps que haya que ver
/// instaladas se instalan antes de crearla.
struct Inicio
{
    explicit Inicio(const QStringList &personas = {QStringLiteral("Ana")})
        : sesion(sesionDe(personas))
    {
        vista.mostrarSesion(sesion.get());
    }

    /// Una sesión guardada de esas personas; el `id` de cada una es "id-" y su nombre.
    static std::unique_ptr<ombu::Sesion> sesionDe(const QStringList &personas)
    {
        QList<ombu::Integrante> integrantes;
        for (const QString &nombre : personas)
            integrantes.append({QStringLiteral("id-%1").arg(nombre), nombre, {}});
        return std::unique_ptr<ombu::Sesion>(
            ombu::Sesion::iniciar(ombu::ModoSesion::Aulared, QStringLiteral("t"),
                                  QStringLiteral("Los teros"), integrantes, 0, nullptr));
    }

    QStringList titulos() const
    {
        QStringList textos;
        for (int i = 0; i < pestanas->count(); ++i)
            textos.append(pestanas->tabText(i));
        return textos;
    }

    QListWidget *lista(int pestana) const
    {
        return qobject_cast<QListWidget *>(pestanas->widget(pestana));
    }

    QListWidget *recientes() const { return lista(0); }

    QStringList filas(int pestana) const
    {
        QStringList textos;
        for (int fila = 0; fila < lista(pestana)->count(); ++fila)
            textos.append(lista(pestana)->item(fila)->text());
        return textos;
    }

    /// Elige una entrada de la pestaña a la vista y la abre con la tecla Intro.
    void abrirConIntro(int pestana, qsizetype fila) const
    {
        lista(pestana)->setCurrentRow(static_cast<int>(fila));
        lista(pestana)->setFocus();
        QTest::keyClick(lista(pestana), Qt::Key_Return);
    }

    std::unique_ptr<ombu::Sesion> sesion;
    quillay::VistaApps vista{escuela::dirLanzador(), nullptr};
    QTabWidget *pestanas = vista.findChild<QTabWidget *>();
    QLabel *cabecera = vista.findChild<QLabel *>();
};

/// Guarda un trabajo de Ceibo en Documentos, con esa fecha, y da su ruta.
inline QString guardarTrabajo(const QString &carpeta, const QString &nombre,
                              const QDateTime &modificado = QDateTime::currentDateTime())
{
    QString ruta = escuela::dirDocumentos() + QStringLiteral("/Ceibo/") + carpeta;
    const QString descripcion = ruta + QStringLiteral("/proyecto.json");
    escuela::escribir(descripcion,
                      QJsonDocument(QJsonObject{{QStringLiteral("nombre"), nombre}}).toJson());
    escuela::fechar(descripcion, modificado);
    escuela::fechar(ruta, modificado);
    return ruta;
}
