#include "pruebas/apoyo/confianza.h"

#include "pruebas/apoyo/servidor_web.h"

#include <QSslConfiguration>

using namespace Qt::StringLiterals;

struct Confianza::Detalle
{
    QSslConfiguration anterior = QSslConfiguration::defaultConfiguration();
};

Confianza::Confianza(const ServidorWeb &servidor)
    : m_detalle(std::make_unique<Detalle>())
{
    QSslConfiguration confiada = m_detalle->anterior;
    if (!confiada.addCaCertificates(servidor.rutaAutoridad()))
        qFatal("No se pudo leer la autoridad de prueba");
    QSslConfiguration::setDefaultConfiguration(confiada);
}

Confianza::~Confianza()
{
    QSslConfiguration::setDefaultConfiguration(m_detalle->anterior);
}

bool Confianza::sePuede()
{
    return true;
}

QString Confianza::textoSinConfianza()
{
    return u"The issuer certificate of a locally looked up certificate could not be found"_s;
}
