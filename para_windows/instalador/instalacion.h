#pragma once

#include <QMap>
#include <QString>

#include <optional>

namespace instalador {

/// Lo que preparar_instalacion tiene que hacer después de que el instalador extrajo los archivos.
struct Pedido
{
    QString carpeta;                      ///< Donde queda instalado Quillay.
    QString nuevos;                       ///< Los archivos extraídos, en el mismo disco.
    QString version;                      ///< La del lanzador que se instala.
    QMap<QString, QString> configuracion; ///< Claves de `config.json` que cambian.
    std::optional<bool> equipo;           ///< Si la computadora pasa a ser, o deja de ser, equipo.
    bool compartida = false;              ///< Si todas las cuentas pueden escribir en `carpeta`.
};

/// Lee un pedido de un archivo UTF-16 con un "clave=valor" por renglón.
/// Da nulo si no se puede leer, si falta algo o si hay una clave desconocida.
std::optional<Pedido> leerPedido(const QString &ruta);

/// Mueve los archivos de `nuevos` a `carpeta`, con sus subcarpetas, en lugar de los que estuvieran.
/// Los que están en uso quedan al lado, con ".viejo" al final. Lo demás de `carpeta` no se toca.
/// Si algo falla da false y vuelve a dejar los anteriores.
bool reemplazarArchivos(const QString &nuevos, const QString &carpeta);

/// Pone estos valores en el `config.json` de `carpeta` y conserva los otros. Si no había archivo,
/// lo crea con las tres claves que lee el lanzador; si no hay nada que cambiar, no lo toca.
bool configurar(const QString &carpeta, const QMap<QString, QString> &valores);

/// Anota en el `versiones.json` de `carpeta` la versión del lanzador; conserva las de las apps.
bool anotarVersion(const QString &carpeta, const QString &version);

/// Marca la computadora como equipo de Aulared, o le quita la marca, en la carpeta de datos
/// `datos`.
bool marcarEquipo(const QString &datos, bool marcado);

} // namespace instalador
