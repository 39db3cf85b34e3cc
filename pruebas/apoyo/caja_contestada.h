#pragma once

#include <QMessageBox>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class QDialog;

/// Contesta, como una persona, el próximo diálogo modal que se abra, y recuerda qué decía.
/// Se crea antes de la operación que lo abre y se consulta después.
class CajaContestada : public QObject
{
    Q_OBJECT

public:
    enum Respuesta { Aceptar, Cancelar };

    /// @param respuesta con qué tecla se cierra el diálogo (Intro o Escape).
    /// @param texto lo que se escribe antes, si el diálogo pide un texto.
    explicit CajaContestada(Respuesta respuesta = Aceptar, const QString &texto = {});

    /// Hace `accion` con el diálogo a la vista, antes de contestarlo.
    void antesDeContestar(const std::function<void()> &accion) { m_antes = accion; }

    bool seMostro() const { return m_seMostro; }
    QString titulo() const { return m_titulo; }
    QString texto() const { return m_texto; } ///< El mensaje, o el rótulo del campo.
    QMessageBox::Icon icono() const { return m_icono; }
    QStringList botones() const { return m_botones; } ///< Textos, en el orden en que se agregaron.
    QString botonPredeterminado() const { return m_botonPredeterminado; }

private:
    bool eventFilter(QObject *objeto, QEvent *evento) override;
    void contestar(QDialog *dialogo);
    void anotar(const QMessageBox &caja);

    Respuesta m_respuesta;
    QString m_aEscribir;
    std::function<void()> m_antes;
    bool m_seMostro = false;
    QString m_titulo;
    QString m_texto;
    QMessageBox::Icon m_icono = QMessageBox::NoIcon;
    QStringList m_botones;
    QString m_botonPredeterminado;
};
