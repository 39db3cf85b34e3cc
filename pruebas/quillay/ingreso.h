#pragma once

#include "ombu/auth_aulared.h"
#include "quillay/vista_login.h"

#include "pruebas/apoyo/servidor_guionado.h"
#include "pruebas/apoyo/teclear.h"
#include "pruebas/quillay/en_pantalla.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>
#include <QVBoxLayout>

/// La pantalla de ingreso con un servicio guionado detrás, y lo que una prueba mira de ella.
struct Ingreso
{
    Ingreso() { contestar(R"({"token": "t-ana", "id": "ana-1", "nombre": "Ana Paz"})"); }

    void contestar(const QByteArray &cuerpo, int estado = 200)
    {
        servidor.contestar("/api/sesiones", {.estado = estado, .cuerpo = cuerpo});
    }

    void escribir(const QString &quien, const QString &secreto) const
    {
        usuario->clear();
        teclear(usuario, quien);
        clave->clear();
        teclear(clave, secreto);
    }

    /// Escribe, aprieta el botón y espera la respuesta del servicio.
    void entrar(const QString &quien, const QString &secreto = QStringLiteral("secreta")) const
    {
        escribir(quien, secreto);
        en_pantalla::apretar(botonEntrar);
        if (!QTest::qWaitFor([this] { return botonEntrar->isEnabled(); }))
            qFatal("El servicio no contestó");
    }

    /// Los datos que llegaron al servicio en el último pedido.
    QJsonObject ultimoPedido() const
    {
        return QJsonDocument::fromJson(servidor.pedidos().constLast().cuerpo).object();
    }

    QStringList filas() const
    {
        QStringList textos;
        for (int fila = 0; fila < lista->count(); ++fila)
            textos.append(lista->item(fila)->text());
        return textos;
    }

    QWidget *enCaja(int lugar) const { return vista.layout()->itemAt(lugar)->widget(); }

    QWidget *enFormulario(int fila) const
    {
        const auto *formulario = qobject_cast<QFormLayout *>(vista.layout()->itemAt(1)->layout());
        const auto papel = fila == 2 ? QFormLayout::SpanningRole : QFormLayout::FieldRole;
        return formulario->itemAt(fila, papel)->widget();
    }

    ServidorGuionado servidor;
    ombu::AuthAulared auth{servidor.url(), nullptr};
    quillay::VistaLogin vista{&auth, nullptr};
    QSignalSpy listas{&vista, &quillay::VistaLogin::sesionLista};

    QLineEdit *usuario = qobject_cast<QLineEdit *>(enFormulario(0));
    QLineEdit *clave = qobject_cast<QLineEdit *>(enFormulario(1));
    QCheckBox *indicarDuracion = qobject_cast<QCheckBox *>(enFormulario(2));
    QSpinBox *duracion = qobject_cast<QSpinBox *>(enFormulario(3));
    QPushButton *botonEntrar = qobject_cast<QPushButton *>(enCaja(2));
    QLabel *mensaje = qobject_cast<QLabel *>(enCaja(3));
    QListWidget *lista = qobject_cast<QListWidget *>(enCaja(5));
    QPushButton *botonEmpezar = qobject_cast<QPushButton *>(enCaja(6));
};
