#include "pruebas/actualizacion/powershell.h"

#include "pruebas/apoyo/escuela_temporal.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace powershell {

namespace {

/// Solo esa carpeta delante de las del sistema.
void buscarEn(const QString &carpeta)
{
    static const QByteArray delSistema = qgetenv("PATH");
    QDir().mkpath(carpeta);
    qputenv("PATH", QFile::encodeName(carpeta) + ':' + delSistema);
}

void usarGuion(const QByteArray &guion)
{
    const QString carpeta = escuela::dirPersonal() + "/programas"_L1;
    const QString programa = carpeta + "/powershell.exe"_L1;
    buscarEn(carpeta);
    escuela::escribir(programa, "#!/bin/bash\n" + guion);
    QFile::setPermissions(programa, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

} // namespace

void usarElDeMuestra()
{
    const QByteArray registrar = " >> '" + QFile::encodeName(registro()) + "'\n";
    usarGuion(R"(printf '%s\0' "$@")" + registrar + R"(printf '\n')" + registrar +
              "exec '" RUTA_POWERSHELL_DE_MUESTRA R"(' "$@")");
}

void usarUnoQueFalla(const Falla &falla)
{
    QByteArray guion = "paquete=$(cut -d\"'\" -f2 <<<\"$4\")\n"
                       "destino=$(cut -d\"'\" -f4 <<<\"$4\")\n";
    if (falla.deja)
        guion += "mkdir \"$destino\"\necho nuevo > \"$destino/a.txt\"\n";
    if (!falla.copiaEn.isEmpty())
        guion += "cp -r \"$(dirname \"$paquete\")\" '" + falla.copiaEn.toUtf8() + "'\n";
    guion += falla.seCae ? QByteArray("kill -9 $$") : "exit " + QByteArray::number(falla.codigo);
    usarGuion(guion);
}

void usarNinguno()
{
    buscarEn(escuela::dirPersonal() + "/sin-programas"_L1);
}

} // namespace powershell
