// Todo texto que se ve pasa por la traducción, con su clase como contexto: lo comprueba la misma
// herramienta con que un traductor los junta.

#include "pruebas/apoyo/escuela_temporal.h"
#include "pruebas/apoyo/principal.h"
#include "pruebas/apoyo/programas.h"

#include <QCoreApplication>
#include <QFile>
#include <QMap>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

using Textos = QMap<QString, QStringList>; ///< Por contexto, en orden alfabético.

/// Los textos que lupdate encuentra en las fuentes.
Textos textosDeLasFuentes()
{
    const QString fuentes = QStringLiteral(CARPETA_FUENTES);
    const QString ts = escuela::dirPersonal() + "/textos.ts"_L1;
    const debian::Resultado lupdate = debian::correr(
        QStringLiteral(RUTA_LUPDATE), {u"-silent"_s, u"-I"_s, fuentes, fuentes + "/ombu"_L1,
                                       fuentes + "/quillay"_L1, u"-ts"_s, debian::ruta(ts)});
    if (lupdate.codigo != 0)
        qFatal("lupdate no juntó los textos");
    if (!lupdate.errores.isEmpty())
        qFatal("lupdate avisó: %s", lupdate.errores.constData());

    Textos textos;
    QString contexto;
    QXmlStreamReader xml(escuela::leer(ts));
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == "name"_L1)
            contexto = xml.readElementText();
        else if (xml.isStartElement() && xml.name() == "source"_L1)
            textos[contexto].append(xml.readElementText());
    }
    for (QStringList &deUnContexto : textos)
        deUnContexto.sort();
    return textos;
}

Textos textosEsperados()
{
    Textos textos{
        {u"ombu::AuthAulared"_s,
         {u"Usuario o contraseña incorrectos."_s, u"No se pudo conectar con Aulared."_s,
          u"Respuesta inválida del servidor."_s}},
        {u"quillay::Actualizador"_s,
         {u"No se pudo descargar %1 %2: %3"_s, u"No se pudo guardar la descarga de %1."_s,
          u"No se pudo extraer el paquete de %1."_s,
          u"No se pudo reemplazar los archivos de %1."_s}},
        {u"quillay::VentanaLauncher"_s,
         {u"Quillay"_s, u"Grupo de %1"_s, u"No se pudo crear el archivo de sesión."_s,
          u"La sesión terminó. Volvé a iniciar sesión."_s, u"%1 actualizado a %2"_s,
          u"%1: de la %2 a la %3"_s, u"Hay una versión nueva de Quillay"_s,
          u"Hay versiones nuevas para bajar:\n\n%1\n\nSe bajan solo las partes que cambiaron. Si "
          "ahora no es buen momento, te lo volvemos a ofrecer la próxima vez que abras Quillay."_s,
          u"Actualizar ahora"_s, u"Más tarde"_s}},
        {u"quillay::VistaApps"_s,
         {u"Cerrar sesión"_s, u"Abrir %1"_s, u"%1 no está instalada en esta computadora."_s,
          u"Sesión grupal: %1"_s, u"Sesión de %1"_s, u"Recientes"_s, u"Archivos recientes"_s,
          u"Trabajos de %1"_s, u"%1    —    %2"_s, u"Todavía no hay trabajos de %1."_s,
          u"Todavía no hay nada reciente. Lo que abras o guardes va a aparecer acá."_s,
          u"No se reconoce con qué app abrir este proyecto."_s, u"No se pudo abrir %1."_s,
          u"Quillay"_s}},
        {u"quillay::VistaLogin"_s,
         {u"Iniciar sesión — Aulared"_s, u"Usuario:"_s, u"Contraseña:"_s,
          u"Indicar duración estimada de la sesión"_s, u"Duración:"_s, u" min"_s, u"Entrar"_s,
          u"Agregar otro integrante"_s, u"Integrantes de la sesión:"_s,
          u"Integrantes de la sesión"_s, u"Empezar a trabajar"_s,
          u"Completá usuario y contraseña."_s, u"Esa persona ya está en la sesión."_s,
          u"Verificando..."_s}},
        {u"quillay::VistaPerfiles"_s,
         {u"¿Quién va a trabajar?"_s, u"Sin conexión a Aulared — perfiles de esta computadora."_s,
          u"Perfiles de esta computadora"_s, u"Crear nuevo perfil"_s, u"Nuevo perfil"_s,
          u"Nombre:"_s}},
    };
    for (QStringList &deUnContexto : textos)
        deUnContexto.sort();
    return textos;
}

} // namespace

class PruebaTextos : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void losContextosSonLasClasesQueMuestranTextos()
    {
        QCOMPARE(textosDeLasFuentes().keys(), textosEsperados().keys());
    }

    void cadaClaseTieneExactamenteSusTextos_data()
    {
        QTest::addColumn<QString>("contexto");
        const QStringList contextos = textosEsperados().keys();
        for (const QString &contexto : contextos)
            QTest::newRow(qUtf8Printable(contexto)) << contexto;
    }

    void cadaClaseTieneExactamenteSusTextos()
    {
        QFETCH(const QString, contexto);
        QCOMPARE(textosDeLasFuentes().value(contexto), textosEsperados().value(contexto));
    }
};

int main(int argc, char *argv[])
{
    return correr<PruebaTextos, QCoreApplication>(argc, argv);
}

#include "prueba_textos.moc"
