#pragma once

#include <QMetaType>
#include <QString>

#include <functional>

/// Deja en `ruta` un archivo que no se puede leer como JSON.
using Estropeo = std::function<void(const QString &ruta)>;
Q_DECLARE_METATYPE(Estropeo)

/// Agrega a la prueba en curso la columna "estropear" (de tipo Estropeo) y una fila por cada manera
/// en que un archivo JSON puede llegar dañado: cortado, vacío, ajeno, desmedido...
void filasDeArchivosIlegibles();
