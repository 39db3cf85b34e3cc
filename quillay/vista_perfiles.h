#pragma once

#include "ombu/perfiles_locales.h"

#include <QList>
#include <QWidget>

class QListWidget;

namespace quillay {

/// Pantalla para trabajar sin conexión: elegir un perfil de esta computadora o crear uno.
class VistaPerfiles : public QWidget
{
    Q_OBJECT

public:
    /// Arma la pantalla vacía; hay que llamar a refrescar() antes de mostrarla.
    explicit VistaPerfiles(QWidget *parent);

    /// Vuelve a leer los perfiles y rehace la lista.
    void refrescar();

    /// Pregunta un nombre, crea el perfil y lo elige. Cancelar o un nombre en blanco no hacen nada.
    void crearPerfil();

    /// Elige el perfil de la fila `fila`; una fila que no existe no hace nada.
    void elegirFila(int fila);

Q_SIGNALS:
    void perfilElegido(const ombu::Perfil &perfil);

private:
    QListWidget *m_lista;
    QList<ombu::Perfil> m_perfiles; ///< En el orden de las filas.
};

} // namespace quillay
