#pragma once

#include "ombu/perfiles_locales.h"
#include "quillay/vista_perfiles.h"

#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/quillay/en_pantalla.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QListWidget>
#include <QSignalSpy>

/// Escribe el archivo de perfiles de la computadora.
inline void guardarPerfiles(const QList<ombu::Perfil> &perfiles)
{
    QJsonArray lista;
    for (const ombu::Perfil &perfil : perfiles) {
        lista.append(QJsonObject{{QStringLiteral("id"), perfil.id},
                                 {QStringLiteral("nombre"), perfil.nombre},
                                 {QStringLiteral("color"), perfil.color}});
    }
    escuela::escribir(ombu::PerfilesLocales::rutaArchivo(), QJsonDocument(lista).toJson());
}

inline void guardarAnaYBeto()
{
    guardarPerfiles({{QStringLiteral("b-2"), QStringLiteral("Beto"), QStringLiteral("#00FF00")},
                     {QStringLiteral("a-1"), QStringLiteral("Ana"), QStringLiteral("#FF0000")}});
}

/// La pantalla, con lo que una prueba mira de ella.
struct PantallaDePerfiles
{
    PantallaDePerfiles()
        : elegidos(&vista, &quillay::VistaPerfiles::perfilElegido)
        , lista(vista.findChild<QListWidget *>())
    {
    }

    QStringList filas() const
    {
        QStringList textos;
        for (int fila = 0; fila < lista->count(); ++fila)
            textos.append(lista->item(fila)->text());
        return textos;
    }

    /// El perfil de la única vez que se eligió uno.
    ombu::Perfil elegido() const
    {
        return elegidos.size() == 1 ? elegidos.constFirst().constFirst().value<ombu::Perfil>()
                                    : ombu::Perfil();
    }

    quillay::VistaPerfiles vista{nullptr};
    QSignalSpy elegidos;
    QListWidget *lista;
};
