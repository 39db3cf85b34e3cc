#include "ombu/apps_registro.h"

#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace ombu {

namespace {

AppInfo app(const QString &id, const QString &nombre, const QString &color,
            const QString &colorClaro, const QString &carpeta, const QStringList &extensiones = {},
            const QStringList &extensionesSecundarias = {})
{
    return {id,      nombre,         color,       colorClaro,
            carpeta, id + ".exe"_L1, extensiones, extensionesSecundarias};
}

template<typename Condicion>
const AppInfo *buscar(const Condicion &cumple)
{
    for (const QList<AppInfo> *suite : {&appsOmbu(), &appsQuillay()}) {
        const auto app = std::find_if(suite->cbegin(), suite->cend(), cumple);
        if (app != suite->cend())
            return &*app;
    }
    return nullptr;
}

} // namespace

const QList<AppInfo> &appsQuillay()
{
    static const QList<AppInfo> apps{
        app(u"ceibo"_s, u"Ceibo"_s, u"#F9A825"_s, u"#FDEFCE"_s, u"Ceibo"_s),
        app(u"garza"_s, u"Garza"_s, u"#00838F"_s, u"#CCE6E9"_s, u"Garza"_s),
        app(u"hornero"_s, u"Hornero"_s, u"#E53935"_s, u"#FAD7D7"_s, u"Hornero"_s),
        app(u"zorzal"_s, u"Zorzal"_s, u"#43A047"_s, u"#D9EDDA"_s, u"Zorzal"_s),
        app(u"benteveo"_s, u"Benteveo"_s, u"#7CB342"_s, u"#E5F0D8"_s, u"Benteveo"_s),
    };
    return apps;
}

const QList<AppInfo> &appsOmbu()
{
    static const QList<AppInfo> apps{
        app(u"calandria"_s, u"Calandria"_s, u"#7B3FD4"_s, u"#E9DDF9"_s, u"Calandria"_s, {u"cln"_s},
            {u"clt"_s}),
        app(u"tordo"_s, u"Tordo"_s, u"#1A6BAF"_s, u"#D6E7F5"_s, u"Tordo"_s, {u"trd"_s}, {u"trt"_s}),
        app(u"nandu"_s, u"Ñandú"_s, u"#D4570A"_s, u"#F8DFCD"_s, u"Nandu"_s, {u"ndu"_s}, {u"ndt"_s}),
    };
    return apps;
}

const AppInfo *appPorId(const QString &id)
{
    return buscar([&id](const AppInfo &app) { return app.id == id; });
}

const AppInfo *appPorExtension(const QString &extension)
{
    const QString buscada = extension.toLower();
    return buscar([&buscada](const AppInfo &app) {
        return app.extensiones.contains(buscada) || app.extensionesSecundarias.contains(buscada);
    });
}

QString rutaEjecutable(const AppInfo &app, const QString &dirLanzador)
{
    return dirLanzador + u'/' + app.carpeta + u'/' + app.ejecutable;
}

bool estaInstalada(const AppInfo &app, const QString &dirLanzador)
{
    return QFile::exists(rutaEjecutable(app, dirLanzador));
}

} // namespace ombu
