#pragma once

#include "quillay/actualizador.h"

#include <QStringList>

/// La carpeta de un lanzador instalado, que no es la de esta prueba.
QString carpetaInstalada();

QString rutaVersiones(); ///< Su `versiones.json`.

/// Anota esas versiones como las instaladas.
void instalarVersiones(const QByteArray &versiones);

/// Un actualizador de carpetaInstalada() y lo que fue diciendo, en orden: cada señal es un renglón
/// con su nombre y sus argumentos, separados por "|".
class ActualizadorEspiado : public quillay::Actualizador
{
public:
    explicit ActualizadorEspiado(const QUrl &urlManifiesto, const QUrl &urlDescargas = {});

    /// Busca versiones nuevas, espera la respuesta y da lo dicho desde que se lo llamó.
    QStringList alVerificar();

    /// Aplica, espera a que termine y da lo dicho desde que se lo llamó.
    QStringList alAplicar(const QList<quillay::Actualizacion> &actualizaciones);

    QStringList dicho;

private:
    QStringList esperar(const QStringList &finales) const;
};
