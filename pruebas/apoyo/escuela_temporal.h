#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <memory>

class QProcess;

/// La computadora de una escuela, en una carpeta temporal: la del lanzador, ProgramData, la carpeta
/// personal y Documentos. La prepara relanzar() para cada proceso de prueba y la borra al final;
/// aquí solo se la consulta, se la llena y se la vacía.
namespace escuela {

QString dirLanzador();
QString dirProgramData();
QString dirDatos(); ///< ProgramData/Lumbre.
QString dirPersonal();
QString dirDocumentos();
QString dirDatosDeLaCuenta(); ///< Donde los programas guardan lo suyo en la carpeta personal.

/// Deja la escuela como recién preparada: sin datos, sin documentos y sin apps instaladas.
void vaciar();

/// Escribe `contenido` en `ruta`, creando las carpetas que falten.
void escribir(const QString &ruta, const QByteArray &contenido);

/// El contenido de `ruta`; nulo si no existe.
QByteArray leer(const QString &ruta);

/// Cambia la fecha de modificación de un archivo o una carpeta.
void fechar(const QString &ruta, const QDateTime &fecha);

/// Nombres de todos los archivos que hay bajo `carpeta`, relativos y en orden.
QStringList archivosBajo(const QString &carpeta);

/// Instala en el lanzador un programa de verdad como la app `id`. Al arrancar deja dicho con qué
/// argumentos lo llamaron y en qué carpeta (ver arranquesDe()).
void instalarApp(const QString &id);

/// Desde ahora la app `id`, ya instalada, se cae apenas arranca.
void hacerMorirAlArrancar(const QString &id);

/// Espera a que la app `id` haya arrancado `veces` veces y da, por arranque, sus argumentos.
/// Lo que no llegue en cinco segundos no está en el resultado.
QList<QStringList> arranquesDe(const QString &id, int veces);

/// Corre en otro proceso una operación de la biblioteca (ver sonda_ombu.cpp) y da lo que imprimió.
/// `entorno` ("CLAVE=valor", o "CLAVE" para quitarla) se suma al de esta prueba.
QString sonda(const QStringList &argumentos, const QStringList &entorno = {});

/// Lo mismo, sin esperar a que termine.
std::unique_ptr<QProcess> lanzarSonda(const QStringList &argumentos,
                                      const QStringList &entorno = {});

} // namespace escuela
