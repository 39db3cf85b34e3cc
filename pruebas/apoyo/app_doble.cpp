// La app instalada de las pruebas: anota cómo la llamaron, en una sola escritura, y termina.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdlib>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    const QCoreApplication aplicacion(argc, argv);
    const QString id = QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
    const QString personal = qEnvironmentVariable("HOME");
    if (QFile::exists(personal + "/muere-"_L1 + id))
        std::abort();
    const QStringList campos =
        QStringList{QDir::currentPath()} + QCoreApplication::arguments().sliced(1);

    QFile registro(personal + "/arranques-"_L1 + id);
    if (!registro.open(QIODevice::Append | QIODevice::Unbuffered))
        return 1;
    registro.write((campos.join(u'\t') + u'\n').toUtf8());
    return 0;
}
