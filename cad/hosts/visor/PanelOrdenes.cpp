#include "PanelOrdenes.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

namespace visor
{

EntradaOrdenes::EntradaOrdenes(QWidget* padre) : QLineEdit(padre)
{
    connect(this, &QLineEdit::returnPressed, this,
            [this]()
            {
                const QString t = text();
                if (!t.trimmed().isEmpty() && (historia.isEmpty() || historia.back() != t))
                {
                    historia.push_back(t);
                }
                posicion = historia.size();
                clear();
                emit linea(t);
            });
}

void EntradaOrdenes::keyPressEvent(QKeyEvent* e)
{
    if (e->key() == Qt::Key_Up && posicion > 0)
    {
        setText(historia[--posicion]);
        return;
    }
    if (e->key() == Qt::Key_Down && posicion < historia.size())
    {
        ++posicion;
        setText(posicion < historia.size() ? historia[posicion] : QString());
        return;
    }
    if (e->key() == Qt::Key_Escape)
    {
        clear();
        emit linea(QStringLiteral("esc"));
        return;
    }
    QLineEdit::keyPressEvent(e);
}

PanelOrdenes::PanelOrdenes(QWidget* padre) : QWidget(padre)
{
    texto = new QPlainTextEdit(this);
    texto->setReadOnly(true);
    texto->setMaximumBlockCount(5000);
    texto->setFont(QFont(QStringLiteral("DejaVu Sans Mono")));
    etiquetaMarcador = new QLabel(QStringLiteral(">"), this);
    entrada = new EntradaOrdenes(this);
    barraOpciones = new QWidget(this);
    disposicionOpciones = new QHBoxLayout(barraOpciones);
    disposicionOpciones->setContentsMargins(0, 0, 0, 0);
    disposicionOpciones->addStretch();

    auto* fila = new QHBoxLayout;
    fila->addWidget(etiquetaMarcador);
    fila->addWidget(entrada, 1);
    auto* columna = new QVBoxLayout(this);
    columna->setContentsMargins(2, 2, 2, 2);
    columna->addWidget(texto, 1);
    columna->addWidget(barraOpciones);
    columna->addLayout(fila);
    connect(entrada, &EntradaOrdenes::linea, this, &PanelOrdenes::linea);
    setFocusProxy(entrada);
}

void PanelOrdenes::anade(const QString& linea)
{
    texto->appendPlainText(linea);
    texto->verticalScrollBar()->setValue(texto->verticalScrollBar()->maximum());
}

QString PanelOrdenes::salida() const
{
    return texto->toPlainText();
}

void PanelOrdenes::muestraEstado(const QString& marcador, const QStringList& opciones)
{
    if (marcador == marcadorMostrado && opciones == opcionesMostradas)
    {
        return;
    }
    marcadorMostrado = marcador;
    opcionesMostradas = opciones;
    etiquetaMarcador->setText(marcador);
    while (disposicionOpciones->count() > 1)
    {
        QLayoutItem* item = disposicionOpciones->takeAt(0);
        delete item->widget();
        delete item;
    }
    int i = 0;
    for (const QString& opcion : opciones)
    {
        auto* b = new QPushButton(opcion, barraOpciones);
        b->setFocusPolicy(Qt::NoFocus);
        connect(b, &QPushButton::clicked, this, [this, opcion]() { emit linea(opcion); });
        disposicionOpciones->insertWidget(i++, b);
    }
    barraOpciones->setVisible(!opciones.isEmpty());
}

}  // namespace visor
