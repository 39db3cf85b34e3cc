#include "pruebas/apoyo/confianza.h"

using namespace Qt::StringLiterals;

struct Confianza::Detalle
{
};

Confianza::Confianza(const ServidorWeb &)
{
    qFatal("wine no encuentra a la autoridad que firmó un certificado, aunque Qt se la dé");
}

Confianza::~Confianza() = default;

bool Confianza::sePuede()
{
    return false;
}

QString Confianza::textoSinConfianza()
{
    return u"The issuer certificate could not be found"_s;
}
