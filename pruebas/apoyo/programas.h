#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>

/// Los programas de Debian que ayudan a probar: nginx, openssl, zip y las herramientas de Qt. Las
/// pruebas de Windows llaman a los mismos, desde la computadora virtual.
namespace debian {

/// La misma ruta, como la ve un programa de Debian.
QString ruta(const QString &ruta);

struct Resultado
{
    int codigo = -1;
    QByteArray errores; ///< Lo que dijo por la salida de errores.
};

/// Corre `programa` en `carpeta` y espera a que termine.
Resultado correr(const QString &programa, const QStringList &argumentos,
                 const QString &carpeta = {});

/// Un programa que corre mientras existe este objeto, y nunca después de este proceso.
class Servicio
{
public:
    Servicio(const QString &programa, const QStringList &argumentos);
    ~Servicio();

    Servicio(const Servicio &) = delete;
    Servicio &operator=(const Servicio &) = delete;

    /// Espera `ms` a que termine por su cuenta; verdadero si terminó.
    bool esperar(int ms);

private:
    struct Detalle;
    std::unique_ptr<Detalle> m_detalle;
};

} // namespace debian
