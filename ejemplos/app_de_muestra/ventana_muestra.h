#pragma once

#include "ombu/apps_registro.h"
#include "ombu/proyectos_guardados.h"

#include <QMainWindow>

class QBoxLayout;
class QLabel;
class QLineEdit;

namespace muestra {

/// La ventana de una app de la suite: dice quién trabaja, muestra el proyecto abierto y lo guarda.
class VentanaMuestra : public QMainWindow
{
    Q_OBJECT

public:
    explicit VentanaMuestra(const ombu::AppInfo &app, QWidget *parent = nullptr);

    /// Abre el trabajo guardado en la carpeta `carpeta` (el nombre solo); si no existe, lo dice.
    void abrir(const QString &carpeta);

private:
    QWidget *crearFranja();
    QBoxLayout *crearCuerpo();
    QBoxLayout *crearFormulario();
    void refrescarSesion();
    void guardar();
    void mostrarAbierto(const ombu::ProyectoGuardado &proyecto);

    const ombu::AppInfo &m_app;
    QLabel *m_quien;
    QLabel *m_abierto;
    QLineEdit *m_nombre;
    QLabel *m_mensaje;
};

} // namespace muestra
