// VistaGL: the 3D view of the viewer, the OpenGL renderer in a Qt widget with the mouse on it.
#pragma once

#include <QOpenGLWidget>
#include <QPoint>
#include <functional>

#include "PantallaGL.h"

class QRubberBand;

namespace visor
{

// Pixels: Qt counts rows from the top in logical pixels; the display counts them upwards from
// the bottom in framebuffer pixels. Everything handed to the display goes through aPixel.
//
// Mouse: with a command waiting, a left click is the command's click. Otherwise a left click
// selects and a left drag orbits. A middle drag pans, with shift it orbits; the wheel zooms
// about the pointer. After zoomPorVentana the next left drag is a window to zoom to.
class VistaGL : public QOpenGLWidget
{
    Q_OBJECT

public:
    // Whether the view has been painted once.
    bool pintada() const { return pintadaYa; }
    explicit VistaGL(cad::PantallaGL& pantalla, QWidget* padre = nullptr);
    ~VistaGL() override;

    // The host's answers to the mouse, set by the window.
    std::function<bool()> hayOrdenEsperando;
    // Display pixels; `boton` is the kernel display's button (left or right).
    std::function<void(int x, int y, int boton)> alClicar;
    std::function<void(int x, int y)> alMover;       // display pixels
    std::function<void()> alCambiarCamara;           // after an orbit, a pan or a zoom
    std::function<void()> alPintarPrimeraVez;        // once, after the first frame
    std::function<void(const QString&)> alFallarGL;  // the context or the programs failed

    // The next left drag draws a window and zooms to it.
    void zoomPorVentana();
    // Looks straight down at the present target, north up.
    void vistaEnPlanta();
    // The display pixel of a widget position.
    QPoint aPixel(const QPoint& p) const;

protected:
    void initializeGL() override;
    void resizeGL(int w, int h) override;
    void paintGL() override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void wheelEvent(QWheelEvent* e) override;

private:
    void orbita(double dx, double dy);
    void desplaza(double dx, double dy);
    void liberaGL();

    cad::PantallaGL& pantalla;
    QRubberBand* banda = nullptr;
    QPoint inicio;    // widget position of the press
    QPoint anterior;  // of the last move
    Qt::MouseButton boton = Qt::NoButton;
    bool arrastrado = false;
    bool esperandoVentana = false;
    bool pintadaYa = false;
};

}  // namespace visor
