#pragma once

#include "pruebas/apoyo/relanzar.h"

#include <QTest>

/// El main de un archivo de pruebas: corre `Prueba` en una escuela temporal propia, con una
/// aplicación de tipo `Aplicacion` (QCoreApplication o QApplication).
template<typename Prueba, typename Aplicacion>
int correr(int argc, char **argv)
{
    if (const std::optional<int> codigo = relanzarEnEscuela(argc, argv))
        return *codigo;
    Aplicacion aplicacion(argc, argv);
    Prueba prueba;
    return QTest::qExec(&prueba, argc, argv);
}
