#pragma once

#include "ombu/sesion.h"

#include <QHash>
#include <QIcon>
#include <QPointer>
#include <QString>
#include <QWidget>

class QAbstractButton;
class QBoxLayout;
class QLabel;
class QListWidget;
class QTabWidget;

namespace ombu {
struct AppInfo;
struct ArchivoReciente;
} // namespace ombu

namespace quillay {

/// Pantalla de inicio: quién trabaja, las apps de la suite, los archivos recientes y los trabajos
/// guardados de cada app. Desde aquí se abren las apps.
class VistaApps : public QWidget
{
    Q_OBJECT

public:
    /// @param dirApp carpeta del lanzador; las apps se buscan debajo de ella.
    VistaApps(const QString &dirApp, QWidget *parent);

    /// Muestra `sesion` (que no puede ser nula ni pasa a ser de la vista) y vuelve a leer del disco
    /// recientes y trabajos. El teclado queda donde estaba.
    void mostrarSesion(ombu::Sesion *sesion);

    /// Deja de usar la sesión, porque va a destruirse. Lo mostrado queda hasta la próxima.
    void olvidarSesion();

    /// Lleva el teclado a la primera app instalada o, si no hay ninguna, a la lista a la vista.
    void enfocarInicio();

Q_SIGNALS:
    void cerrarSesionPedido();

private:
    QBoxLayout *crearCabecera();
    QBoxLayout *crearFilaDeApps();
    QAbstractButton *crearBotonDeApp(const ombu::AppInfo &app);
    void rehacerPestanas(const QStringList &ids);
    void retirarPestanas();

    QListWidget *crearLista(const QString &nombreAccesible);
    QListWidget *crearListaProyectos(const ombu::AppInfo &app);
    QListWidget *crearListaRecientes(const QStringList &ids);
    static void agregarVacio(QListWidget *lista, const QString &texto);

    void abrirApp(const QString &id, const QString &proyecto);
    void abrirReciente(const ombu::ArchivoReciente &archivo);
    void avisar(const QString &texto);

    QListWidget *listaActual() const;
    QString rutaElegida() const;

    QString m_dirApp;
    QPointer<ombu::Sesion> m_sesion;
    QLabel *m_etiquetaSesion;
    QTabWidget *m_pestanas;
    QAbstractButton *m_primeraApp = nullptr; ///< La primera instalada.
    QHash<QString, QIcon> m_iconos; ///< Uno por app: compartirlo ahorra memoria en cada refresco.
};

} // namespace quillay
