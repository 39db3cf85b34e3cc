#include "quillay/vista_apps.h"

#include "ombu/apps_registro.h"
#include "ombu/fechas.h"
#include "ombu/proyectos_guardados.h"
#include "ombu/recientes.h"
#include "quillay/boton_de_app.h"

#include <QApplication>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QSet>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quillay {

namespace {

constexpr int kRolRuta = Qt::UserRole;
constexpr int kRolApp = Qt::UserRole + 1;

QString ultimoComponente(const QString &ruta)
{
    return QFileInfo(ruta).fileName();
}

/// Los recientes de todas esas personas, cada ruta una sola vez, del más nuevo al más viejo.
QList<ombu::ArchivoReciente> reunirRecientes(const QStringList &ids)
{
    QList<ombu::ArchivoReciente> reunidos;
    QSet<QString> vistos;
    for (const QString &id : ids) {
        const QList<ombu::ArchivoReciente> suyos = ombu::Recientes::listar(id);
        for (const ombu::ArchivoReciente &archivo : suyos) {
            if (vistos.contains(archivo.ruta))
                continue;
            vistos.insert(archivo.ruta);
            reunidos.append(archivo);
        }
    }
    std::sort(reunidos.begin(), reunidos.end(),
              [](const ombu::ArchivoReciente &a, const ombu::ArchivoReciente &b) {
                  return ombu::masNueva(a.ultimoUso, b.ultimoUso);
              });
    return reunidos;
}

QListWidgetItem *crearEntrada(const QString &texto, const QString &ruta, const QString &idApp)
{
    auto *entrada = new QListWidgetItem(texto);
    entrada->setToolTip(ruta);
    entrada->setData(kRolRuta, ruta);
    entrada->setData(kRolApp, idApp);
    return entrada;
}

void elegirRuta(QListWidget *lista, const QString &ruta)
{
    for (int fila = 0; fila < lista->count(); ++fila) {
        if (lista->item(fila)->data(kRolRuta).toString() == ruta) {
            lista->setCurrentRow(fila);
            return;
        }
    }
}

} // namespace

VistaApps::VistaApps(const QString &dirApp, QWidget *parent)
    : QWidget(parent)
    , m_dirApp(dirApp)
    , m_etiquetaSesion(new QLabel)
    , m_pestanas(new QTabWidget)
{
    m_pestanas->setDocumentMode(true);
    m_pestanas->setStyleSheet(u"QTabBar::tab { font-size: 13px; padding: 7px 14px; }"
                              "QTabBar::tab:selected { font-weight: bold; }"_s);

    auto *caja = new QVBoxLayout(this);
    caja->setContentsMargins(32, 24, 32, 24);
    caja->addLayout(crearCabecera());
    caja->addSpacing(8);
    caja->addLayout(crearFilaDeApps());
    caja->addSpacing(16);
    caja->addWidget(m_pestanas, 1);

    connect(qApp, &QApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState estado) {
                if (estado == Qt::ApplicationActive && m_sesion)
                    mostrarSesion(m_sesion);
            });
}

QBoxLayout *VistaApps::crearCabecera()
{
    m_etiquetaSesion->setTextFormat(Qt::PlainText); // Los nombres los escribe cualquiera.
    m_etiquetaSesion->setMinimumWidth(1); // Un grupo muy largo se corta; no agranda la ventana.
    m_etiquetaSesion->setStyleSheet(u"font-size: 16px; font-weight: bold;"_s);
    auto *cerrar = new QPushButton(tr("Cerrar sesión"));
    connect(cerrar, &QPushButton::clicked, this, &VistaApps::cerrarSesionPedido);

    auto *fila = new QHBoxLayout;
    fila->addWidget(m_etiquetaSesion);
    fila->addStretch();
    fila->addWidget(cerrar);
    return fila;
}

QBoxLayout *VistaApps::crearFilaDeApps()
{
    auto *fila = new QHBoxLayout;
    fila->setSpacing(18);
    for (const ombu::AppInfo &app : ombu::appsQuillay())
        fila->addWidget(crearBotonDeApp(app));
    fila->addStretch();
    return fila;
}

QAbstractButton *VistaApps::crearBotonDeApp(const ombu::AppInfo &app)
{
    const QIcon icono(u":/apps/%1.png"_s.arg(app.id));
    m_iconos.insert(app.id, icono);

    const bool instalada = ombu::estaInstalada(app, m_dirApp);
    auto *boton = new BotonDeApp(app, icono, instalada, this);
    boton->setToolTip((instalada ? tr("Abrir %1") : tr("%1 no está instalada en esta computadora."))
                          .arg(app.nombre));
    if (instalada && !m_primeraApp)
        m_primeraApp = boton;

    connect(boton, &BotonDeApp::clicked, this, [this, id = app.id] { abrirApp(id, {}); });
    return boton;
}

void VistaApps::mostrarSesion(ombu::Sesion *sesion)
{
    m_sesion = sesion;

    QStringList nombres;
    QStringList ids;
    for (const ombu::Integrante &integrante : sesion->integrantes()) {
        nombres.append(integrante.nombre);
        ids.append(integrante.id);
    }
    m_etiquetaSesion->setText(nombres.size() > 1
                                  ? tr("Sesión grupal: %1").arg(nombres.join(", "_L1))
                                  : tr("Sesión de %1").arg(nombres.value(0)));
    rehacerPestanas(ids);
}

void VistaApps::rehacerPestanas(const QStringList &ids)
{
    const int indice = m_pestanas->currentIndex();
    const QWidget *lista = listaActual();
    const bool tecladoEnLista = lista != nullptr && window()->focusWidget() == lista;
    const QString ruta = rutaElegida();

    retirarPestanas();
    m_pestanas->addTab(crearListaRecientes(ids), tr("Recientes"));
    for (const ombu::AppInfo &app : ombu::appsQuillay()) {
        if (ombu::estaInstalada(app, m_dirApp))
            m_pestanas->addTab(crearListaProyectos(app), m_iconos.value(app.id), app.nombre);
    }

    if (indice >= 0 && indice < m_pestanas->count())
        m_pestanas->setCurrentIndex(indice);
    if (!ruta.isEmpty())
        elegirRuta(listaActual(), ruta);
    if (tecladoEnLista)
        listaActual()->setFocus();
}

// Las listas retiradas quedan ocultas y vacías hasta que la vista se destruya. Se vacían después,
// porque una de ellas puede estar atendiendo la tecla o el clic que causó este refresco.
void VistaApps::retirarPestanas()
{
    for (int i = 0; i < m_pestanas->count(); ++i) {
        auto *lista = qobject_cast<QListWidget *>(m_pestanas->widget(i));
        QMetaObject::invokeMethod(lista, &QListWidget::clear, Qt::QueuedConnection);
    }
    m_pestanas->clear();
}

void VistaApps::olvidarSesion()
{
    m_sesion.clear();
}

void VistaApps::enfocarInicio()
{
    if (m_primeraApp)
        m_primeraApp->setFocus();
    else
        listaActual()->setFocus();
}

QListWidget *VistaApps::listaActual() const
{
    return qobject_cast<QListWidget *>(m_pestanas->currentWidget());
}

QString VistaApps::rutaElegida() const
{
    const QListWidget *lista = listaActual();
    const QListWidgetItem *elegida = lista ? lista->currentItem() : nullptr;
    return elegida ? elegida->data(kRolRuta).toString() : QString();
}

QListWidget *VistaApps::crearLista(const QString &nombreAccesible)
{
    auto *lista = new QListWidget;
    // Medir cada nombre en cada refresco cuesta más que leerlos del disco; los largos se abrevian.
    lista->setUniformItemSizes(true);
    lista->setAccessibleName(nombreAccesible);
    connect(lista, &QListWidget::itemActivated, this, [this](const QListWidgetItem *entrada) {
        const QString ruta = entrada->data(kRolRuta).toString();
        if (!ruta.isEmpty()) {
            abrirReciente(
                {ruta, entrada->data(kRolApp).toString(), QDateTime::currentDateTime(), false});
        }
    });
    return lista;
}

QListWidget *VistaApps::crearListaProyectos(const ombu::AppInfo &app)
{
    QListWidget *lista = crearLista(tr("Trabajos de %1").arg(app.nombre));
    const QList<ombu::ProyectoGuardado> proyectos = ombu::proyectosGuardados(app.id);
    for (const ombu::ProyectoGuardado &proyecto : proyectos) {
        const QString fecha = proyecto.modificado.toString(u"dd/MM/yyyy HH:mm"_s);
        const QString texto = tr("%1    —    %2").arg(proyecto.nombre, fecha);
        QListWidgetItem *entrada = crearEntrada(texto, proyecto.ruta, app.id);
        entrada->setIcon(m_iconos.value(app.id));
        lista->addItem(entrada);
    }
    if (proyectos.isEmpty())
        agregarVacio(lista, tr("Todavía no hay trabajos de %1.").arg(app.nombre));
    return lista;
}

QListWidget *VistaApps::crearListaRecientes(const QStringList &ids)
{
    QListWidget *lista = crearLista(tr("Archivos recientes"));
    const QList<ombu::ArchivoReciente> recientes = reunirRecientes(ids);
    for (const ombu::ArchivoReciente &archivo : recientes) {
        QListWidgetItem *entrada =
            crearEntrada(ultimoComponente(archivo.ruta), archivo.ruta, archivo.app);
        if (const ombu::AppInfo *app = ombu::appPorId(archivo.app)) {
            entrada->setBackground(QColor::fromString(app->colorClaro));
            entrada->setIcon(m_iconos.value(app->id));
        }
        lista->addItem(entrada);
    }
    if (recientes.isEmpty()) {
        agregarVacio(lista,
                     tr("Todavía no hay nada reciente. Lo que abras o guardes va a aparecer acá."));
    }
    return lista;
}

void VistaApps::agregarVacio(QListWidget *lista, const QString &texto)
{
    auto *entrada = new QListWidgetItem(texto);
    entrada->setFlags(Qt::NoItemFlags);
    lista->addItem(entrada);
}

void VistaApps::abrirReciente(const ombu::ArchivoReciente &archivo)
{
    if (archivo.app.isEmpty()) {
        avisar(tr("No se reconoce con qué app abrir este proyecto."));
        return;
    }
    abrirApp(archivo.app, archivo.ruta);
    if (!m_sesion)
        return;

    ombu::ArchivoReciente usado = archivo;
    usado.ultimoUso = QDateTime::currentDateTime();
    for (const ombu::Integrante &integrante : m_sesion->integrantes())
        ombu::Recientes::registrar(integrante.id, usado);
    mostrarSesion(m_sesion);
}

void VistaApps::abrirApp(const QString &id, const QString &proyecto)
{
    const ombu::AppInfo *app = ombu::appPorId(id);
    if (!app)
        return;

    QStringList argumentos;
    if (!proyecto.isEmpty())
        argumentos = {u"--proyecto"_s, ultimoComponente(proyecto)};

    if (!QProcess::startDetached(ombu::rutaEjecutable(*app, m_dirApp), argumentos))
        avisar(tr("No se pudo abrir %1.").arg(app->nombre));
    else if (m_sesion)
        m_sesion->registrarActividad();
}

void VistaApps::avisar(const QString &texto)
{
    QMessageBox::warning(this, tr("Quillay"), texto);
}

} // namespace quillay
