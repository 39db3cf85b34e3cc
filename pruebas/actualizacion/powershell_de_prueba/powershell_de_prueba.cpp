// En wine, el PowerShell que llama el lanzador para extraer un paquete: cumple exactamente esa
// orden y rechaza cualquier otra. Lo que tenga que hacer de otro modo se le dice por el entorno
// (ver powershell_windows.cpp).

#include "pruebas/actualizacion/powershell_de_prueba/encargos.h"
#include "pruebas/apoyo/funcion_de_windows.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <private/qzipreader_p.h>

#include <windows.h>

using namespace Qt::StringLiterals;

namespace {

void registrar(const QStringList &argumentos)
{
    QFile registro(qEnvironmentVariable(encargos::kRegistro));
    if (!registro.open(QIODevice::Append | QIODevice::Unbuffered))
        return;
    QByteArray llamada;
    for (const QString &argumento : argumentos)
        llamada += argumento.toUtf8() + '\0';
    registro.write(llamada + '\n');
}

quint32 crc32(const QByteArray &datos)
{
    constexpr quint32 kPolinomio = 0xEDB88320;
    quint32 resto = ~quint32{0};
    for (const char byte : datos) {
        resto ^= static_cast<uchar>(byte);
        for (int bit = 0; bit < 8; ++bit)
            resto = (resto >> 1) ^ ((resto & 1) != 0 ? kPolinomio : 0);
    }
    return ~resto;
}

/// El registro con que termina un paquete, que aquí no lleva comentario, está entero.
bool estaEntero(const QString &paquete)
{
    constexpr qint64 kLargoDelFinal = 22;
    QFile archivo(paquete);
    return archivo.open(QIODevice::ReadOnly) &&
           archivo.seek(qMax(qint64{0}, archivo.size() - kLargoDelFinal)) &&
           archivo.read(4) == "PK\x05\x06";
}

bool extraerArchivo(const QZipReader &zip, const QZipReader::FileInfo &entrada, const QDir &destino)
{
    const QString ruta = destino.filePath(entrada.filePath);
    const QByteArray datos = zip.fileData(entrada.filePath);
    if (datos.size() != entrada.size || crc32(datos) != entrada.crc ||
        !destino.mkpath(QFileInfo(ruta).path())) {
        return false;
    }
    QFile archivo(ruta);
    return archivo.open(QIODevice::WriteOnly) && archivo.write(datos) == datos.size();
}

bool extraer(const QString &paquete, const QDir &destino)
{
    if (!estaEntero(paquete) || !destino.mkpath(u"."_s))
        return false;
    const QZipReader zip(paquete);
    const QList<QZipReader::FileInfo> entradas = zip.fileInfoList();
    for (const QZipReader::FileInfo &entrada : entradas) {
        const bool lista = entrada.isDir ? destino.mkpath(entrada.filePath)
                                         : extraerArchivo(zip, entrada, destino);
        if (!lista)
            return false;
    }
    return zip.status() == QZipReader::NoError;
}

void copiarCarpeta(const QDir &origen, const QString &destino)
{
    QDir().mkpath(destino);
    const QFileInfoList archivos = origen.entryInfoList(QDir::Files | QDir::Hidden);
    for (const QFileInfo &archivo : archivos)
        QFile::copy(archivo.filePath(), destino + u'/' + archivo.fileName());
}

int fallar(const QString &paquete, const QDir &destino)
{
    if (qEnvironmentVariableIsSet(encargos::kDeja)) {
        destino.mkpath(u"."_s);
        QFile archivo(destino.filePath(u"a.txt"_s));
        if (archivo.open(QIODevice::WriteOnly))
            archivo.write("nuevo\n");
    }
    if (qEnvironmentVariableIsSet(encargos::kCopiaEn))
        copiarCarpeta(QFileInfo(paquete).dir(), qEnvironmentVariable(encargos::kCopiaEn));
    if (qEnvironmentVariableIsSet(encargos::kSeCae))
        TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_ACCESS_VIOLATION));
    return qEnvironmentVariableIntValue(encargos::kCodigo);
}

// QZipReader busca los archivos por su nombre en la codificación de la cuenta, que no tiene todas
// las letras.
int WINAPI desdeUtf8(UINT, DWORD opciones, LPCCH texto, int largo, LPWSTR destino, int lugar)
{
    return MultiByteToWideChar(CP_UTF8, opciones, texto, largo, destino, lugar);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication aplicacion(argc, argv);
    reemplazarFuncionDeWindows("MultiByteToWideChar", reinterpret_cast<void *>(&desdeUtf8));
    const QStringList argumentos = QCoreApplication::arguments().sliced(1);
    registrar(argumentos);

    static const QRegularExpression kOrden(
        u"^Expand-Archive -LiteralPath '([^']*)' -DestinationPath '([^']*)' -Force$"_s);
    const QRegularExpressionMatch orden = kOrden.match(argumentos.value(3));
    if (argumentos.size() != 4 || !orden.hasMatch() ||
        argumentos.first(3) != QStringList{u"-NoProfile"_s, u"-NonInteractive"_s, u"-Command"_s}) {
        qWarning("powershell.exe: orden desconocida: %s", qUtf8Printable(argumentos.join(u' ')));
        return 1;
    }
    const QString paquete = orden.captured(1);
    const QDir destino(orden.captured(2));
    if (qEnvironmentVariableIsSet(encargos::kCodigo))
        return fallar(paquete, destino);
    return extraer(paquete, destino) ? 0 : 1;
}
