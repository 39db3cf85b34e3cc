#pragma once

#include <QProcessEnvironment>
#include <QString>

/// Con qué entorno se ve como propia la escuela que está en la carpeta `raiz`, ya creada.
QProcessEnvironment entornoDeEscuela(const QString &raiz);
