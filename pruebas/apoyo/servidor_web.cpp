#include "pruebas/apoyo/servidor_web.h"

#include <QFile>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

using namespace Qt::StringLiterals;

namespace {

constexpr int kIntentos = 5;

// Sin procesos hijos: se apaga entero al terminar este, y corre con cualquier usuario.
constexpr auto kAlrededor = R"(
daemon off;
master_process off;
pid %1/nginx.pid;
events { }
http {
    access_log off;
    types { application/json json; }
    client_body_temp_path %1/tmp;
    proxy_temp_path %1/tmp;
    fastcgi_temp_path %1/tmp;
    uwsgi_temp_path %1/tmp;
    scgi_temp_path %1/tmp;
%2
}
)"_L1;

void correr(const QString &programa, const QStringList &argumentos, const QString &carpeta)
{
    const debian::Resultado resultado = debian::correr(programa, argumentos, carpeta);
    if (resultado.codigo != 0)
        qFatal("Falló %s: %s", qUtf8Printable(programa), resultado.errores.constData());
}

QStringList certificado(const QString &nombre, const QString &archivo)
{
    return {u"req"_s,
            u"-x509"_s,
            u"-newkey"_s,
            u"ec"_s,
            u"-pkeyopt"_s,
            u"ec_paramgen_curve:prime256v1"_s,
            u"-nodes"_s,
            u"-days"_s,
            u"2"_s,
            u"-subj"_s,
            "/CN="_L1 + nombre,
            u"-keyout"_s,
            archivo + ".key"_L1,
            u"-out"_s,
            archivo + ".crt"_L1};
}

void certificar(const QString &carpeta)
{
    const QString openssl = QStringLiteral(RUTA_OPENSSL);
    correr(openssl, certificado(u"Autoridad de prueba"_s, u"autoridad"_s), carpeta);
    correr(openssl,
           certificado(u"localhost"_s, u"servidor"_s) +
               QStringList{u"-CA"_s, u"autoridad.crt"_s, u"-CAkey"_s, u"autoridad.key"_s,
                           u"-addext"_s, u"subjectAltName=DNS:localhost"_s, u"-addext"_s,
                           u"basicConstraints=critical,CA:FALSE"_s},
           carpeta);
}

void cambiar(QString &texto, const QString &original, const QString &propio)
{
    if (!texto.contains(original))
        qFatal("La configuración de ejemplo ya no dice: %s", qUtf8Printable(original));
    texto.replace(original, propio);
}

/// El ejemplo de la documentación con lo propio de esta prueba; lo demás, tal cual.
QString servidorDeEjemplo()
{
    QFile archivo(QStringLiteral(RUTA_NGINX_EJEMPLO));
    if (!archivo.open(QIODevice::ReadOnly))
        qFatal("No se encontró la configuración de ejemplo");
    return QString::fromUtf8(archivo.readAll());
}

quint16 puertoLibre()
{
    QTcpServer servidor;
    servidor.listen(QHostAddress::LocalHost);
    return servidor.serverPort();
}

} // namespace

ServidorWeb::ServidorWeb(const QString &carpeta, Protocolo protocolo)
    : m_protocolo(protocolo)
{
    if (protocolo == Https)
        certificar(m_base.path());

    // Otro programa pudo quedarse con el puerto que estaba libre.
    for (int intento = 0; intento < kIntentos; ++intento) {
        if (encender(carpeta))
            return;
    }
    qFatal("nginx no arrancó");
}

bool ServidorWeb::encender(const QString &carpeta)
{
    m_puerto = puertoLibre();
    const bool https = m_protocolo == Https;

    QString servidor = servidorDeEjemplo();
    cambiar(servidor, u"listen 443 ssl;"_s,
            u"listen 127.0.0.1:%1%2;"_s.arg(m_puerto).arg(https ? u" ssl"_s : QString()));
    cambiar(servidor, u"listen [::]:443 ssl;"_s, {});
    const QString base = debian::ruta(m_base.path());
    cambiar(servidor, u"/etc/ssl/quillay"_s, base);
    cambiar(servidor, u"/srv/quillay"_s, debian::ruta(carpeta));
    if (!https)
        cambiar(servidor, u"ssl_certificate"_s, u"# ssl_certificate"_s);

    QFile archivo(m_base.filePath(u"nginx.conf"_s));
    if (!archivo.open(QIODevice::WriteOnly))
        qFatal("No se pudo configurar nginx");
    archivo.write(QString(kAlrededor).arg(base, servidor).toUtf8());
    archivo.close();

    m_nginx = std::make_unique<debian::Servicio>(
        QStringLiteral(RUTA_NGINX),
        QStringList{u"-p"_s, base, u"-c"_s, base + "/nginx.conf"_L1, u"-e"_s, u"stderr"_s});
    while (!m_nginx->esperar(0)) {
        QTcpSocket conexion;
        conexion.connectToHost(QHostAddress::LocalHost, m_puerto);
        const bool contesta = conexion.waitForConnected();
        if (!m_nginx->esperar(10) && contesta)
            return true;
    }
    return false;
}

QUrl ServidorWeb::url(const QString &ruta, const QString &nombre) const
{
    const QString esquema = m_protocolo == Https ? u"https"_s : u"http"_s;
    return QUrl(u"%1://%2:%3%4"_s.arg(esquema, nombre).arg(m_puerto).arg(ruta));
}
