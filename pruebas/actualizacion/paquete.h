#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

/// Archivos con su contenido, por ruta relativa.
using Arbol = QMap<QString, QByteArray>;

/// Escribe todos esos archivos bajo `carpeta`.
void escribirArbol(const QString &carpeta, const Arbol &archivos);

/// Todos los archivos que hay bajo `carpeta`, también los ocultos.
Arbol leerArbol(const QString &carpeta);

/// Un paquete zip con esos archivos.
QByteArray comprimir(const Arbol &archivos);
