// PanelOrdenes: the viewer's command line, its output and the options of the waiting command.
#pragma once

#include <QLineEdit>
#include <QStringList>
#include <QWidget>

class QHBoxLayout;
class QLabel;
class QPlainTextEdit;

namespace visor
{

// A line edit that keeps what was entered: up and down walk the history, Escape gives "esc".
class EntradaOrdenes : public QLineEdit
{
    Q_OBJECT

public:
    explicit EntradaOrdenes(QWidget* padre = nullptr);

signals:
    void linea(const QString& texto);

protected:
    void keyPressEvent(QKeyEvent* e) override;

private:
    QStringList historia;
    int posicion = 0;  // historia.size() while editing a new line
};

class PanelOrdenes : public QWidget
{
    Q_OBJECT

public:
    explicit PanelOrdenes(QWidget* padre = nullptr);

    // One line of the session's output.
    void anade(const QString& linea);
    // The marker the next line answers and, while a command waits, its option words as
    // buttons; the same state skips the rebuild.
    void muestraEstado(const QString& marcador, const QStringList& opciones);
    QString salida() const;

signals:
    // A line to hand to the session: typed, or an option button's word.
    void linea(const QString& texto);

private:
    QPlainTextEdit* texto;
    QLabel* etiquetaMarcador;
    EntradaOrdenes* entrada;
    QWidget* barraOpciones;
    QHBoxLayout* disposicionOpciones;
    QString marcadorMostrado;
    QStringList opcionesMostradas;
};

}  // namespace visor
