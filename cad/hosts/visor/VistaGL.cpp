#include "VistaGL.h"

#include <QMouseEvent>
#include <QOpenGLContext>
#include <QRubberBand>
#include <QWheelEvent>
#include <cmath>
#include <string>

namespace visor
{

namespace
{

// Radians per pixel of an orbit drag, and the zoom step of one wheel notch.
constexpr double kRadianesPorPixel = 0.008;
constexpr double kPasoRueda = 1.2;
// A press that moved less than this many pixels before its release is a click.
constexpr int kToleranciaClic = 3;

struct v3
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

v3 operator+(v3 a, v3 b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
v3 operator-(v3 a, v3 b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
v3 operator*(v3 a, double k)
{
    return {a.x * k, a.y * k, a.z * k};
}
double punto(v3 a, v3 b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
v3 cruz(v3 a, v3 b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
double modulo(v3 a)
{
    return std::sqrt(punto(a, a));
}
v3 unitario(v3 a)
{
    const double m = modulo(a);
    return m > 0.0 ? a * (1.0 / m) : a;
}
// Rodrigues: `v` turned by `angulo` about the unit axis `eje`.
v3 gira(v3 v, v3 eje, double angulo)
{
    const double c = std::cos(angulo);
    const double s = std::sin(angulo);
    return v * c + cruz(eje, v) * s + eje * (punto(eje, v) * (1.0 - c));
}

v3 de(const cad::Punto3<double>& p)
{
    return {p.x, p.y, p.z};
}
v3 de(const cad::Vector3D<double>& p)
{
    return {p.x, p.y, p.z};
}
cad::Punto3<double> punto3(v3 a)
{
    return cad::Punto3<double>(a.x, a.y, a.z);
}
cad::Vector3D<double> vector3(v3 a)
{
    return cad::Vector3D<double>(a.x, a.y, a.z);
}

// The camera's right and up directions on screen, made square to the view.
void ejesPantalla(const cad::PantallaReferencia& p, v3& derecha, v3& arriba)
{
    const v3 d = unitario(de(p.objetivo) - de(p.posicion));
    v3 r = cruz(d, de(p.arriba));
    if (modulo(r) < 1e-12)
    {
        r = cruz(d, v3{0, 1, 0});
    }
    derecha = unitario(r);
    arriba = cruz(derecha, d);
}

double zoomDe(const cad::PantallaReferencia& p)
{
    return p.zoom > 0.0 && std::isfinite(p.zoom) ? p.zoom : 1.0;
}

}  // namespace

VistaGL::VistaGL(cad::PantallaGL& pantalla_, QWidget* padre)
    : QOpenGLWidget(padre), pantalla(pantalla_)
{
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(200, 150);
    pantalla.grabando = false;
    // Picking renders an id buffer outside paintGL, with this widget's context.
    pantalla.hazActual = [this]() { makeCurrent(); };
    pantalla.alCambiar = [this]() { update(); };
}

VistaGL::~VistaGL()
{
    liberaGL();
    // The base class destroys the context after this part of the object is gone: its signal
    // must not reach the slot of a VistaGL any more.
    if (context() != nullptr)
    {
        disconnect(context(), nullptr, this, nullptr);
    }
    pantalla.hazActual = nullptr;
    pantalla.alCambiar = nullptr;
}

void VistaGL::liberaGL()
{
    if (pantalla.glIniciado() && context() != nullptr)
    {
        makeCurrent();
        pantalla.liberaGL();
        doneCurrent();
    }
}

void VistaGL::initializeGL()
{
    // A widget moved to another top level gets a new context: the old one's objects go first.
    connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, [this]() { liberaGL(); });
    std::string error;
    if (!pantalla.iniciaGL(error) && alFallarGL)
    {
        alFallarGL(QString::fromStdString(error));
    }
}

void VistaGL::resizeGL(int w, int h)
{
    const double r = devicePixelRatioF();
    pantalla.setTamano(static_cast<int>(std::lround(w * r)), static_cast<int>(std::lround(h * r)));
}

void VistaGL::paintGL()
{
    if (pantalla.glIniciado())
    {
        pantalla.pinta();
    }
    if (!pintadaYa)
    {
        pintadaYa = true;
        if (alPintarPrimeraVez)
        {
            alPintarPrimeraVez();
        }
    }
}

QPoint VistaGL::aPixel(const QPoint& p) const
{
    const double r = devicePixelRatioF();
    const int x = static_cast<int>(std::floor(p.x() * r));
    const int y = static_cast<int>(std::floor(p.y() * r));
    return {x, pantalla.alto - 1 - y};
}

void VistaGL::zoomPorVentana()
{
    esperandoVentana = true;
    setCursor(Qt::CrossCursor);
}

void VistaGL::vistaEnPlanta()
{
    const v3 objetivo = de(pantalla.objetivo);
    const double distancia = std::max(modulo(de(pantalla.posicion) - objetivo), 1.0);
    // Under an active local system the plan is that system's: its Z towards the eye, its Y up.
    const bool local = pantalla.haySistemaLocal;
    const v3 z = local ? unitario(de(pantalla.ejeLocalZ)) : v3{0, 0, 1};
    const v3 y = local ? unitario(de(pantalla.ejeLocalY)) : v3{0, 1, 0};
    pantalla.posicion = punto3(objetivo + z * distancia);
    pantalla.arriba = vector3(y);
    if (alCambiarCamara)
    {
        alCambiarCamara();
    }
    update();
}

void VistaGL::mousePressEvent(QMouseEvent* e)
{
    boton = e->button();
    inicio = anterior = e->pos();
    arrastrado = false;
    if (boton == Qt::LeftButton && esperandoVentana)
    {
        if (banda == nullptr)
        {
            banda = new QRubberBand(QRubberBand::Rectangle, this);
        }
        banda->setGeometry(QRect(inicio, QSize()));
        banda->show();
    }
}

void VistaGL::mouseMoveEvent(QMouseEvent* e)
{
    const QPoint p = e->pos();
    const QPoint d = p - anterior;
    anterior = p;
    if ((p - inicio).manhattanLength() > kToleranciaClic)
    {
        arrastrado = arrastrado || boton != Qt::NoButton;
    }
    const bool enOrden = hayOrdenEsperando && hayOrdenEsperando();
    if (banda != nullptr && banda->isVisible())
    {
        banda->setGeometry(QRect(inicio, p).normalized());
    }
    else if (arrastrado && boton == Qt::MiddleButton)
    {
        if ((e->modifiers() & Qt::ShiftModifier) != 0)
        {
            orbita(d.x(), d.y());
        }
        else
        {
            desplaza(d.x(), d.y());
        }
    }
    else if (arrastrado && boton == Qt::LeftButton && !enOrden)
    {
        orbita(d.x(), d.y());
    }
    if (alMover)
    {
        const QPoint px = aPixel(p);
        alMover(px.x(), px.y());
    }
}

void VistaGL::mouseReleaseEvent(QMouseEvent* e)
{
    if (e->button() != boton)
    {
        return;
    }
    const Qt::MouseButton soltado = boton;
    boton = Qt::NoButton;
    if (banda != nullptr && banda->isVisible())
    {
        banda->hide();
        esperandoVentana = false;
        unsetCursor();
        const QPoint a = aPixel(inicio);
        const QPoint b = aPixel(e->pos());
        pantalla.zoomVentana(cad::Punto2<int>(a.x(), a.y()), cad::Punto2<int>(b.x(), b.y()));
        if (alCambiarCamara)
        {
            alCambiarCamara();
        }
        update();
        return;
    }
    // A right click ends a prompt for entities, where Enter counts for nothing.
    if ((soltado == Qt::LeftButton || soltado == Qt::RightButton) && !arrastrado && alClicar)
    {
        const QPoint px = aPixel(e->pos());
        alClicar(px.x(), px.y(),
                 soltado == Qt::LeftButton ? cad::PantallaCAD::kBotonIzquierdo
                                           : cad::PantallaCAD::kBotonDerecho);
    }
}

void VistaGL::wheelEvent(QWheelEvent* e)
{
    const double pasos = e->angleDelta().y() / 120.0;
    if (pasos == 0.0)
    {
        return;
    }
    const double factor = std::pow(kPasoRueda, pasos);
    // The drawing point under the pointer stays under it: the camera moves along the screen
    // plane by the pointer's offset from the centre, measured before and after the zoom.
    const QPoint px = aPixel(e->position().toPoint());
    const double dx = px.x() + 0.5 - pantalla.ancho / 2.0;
    const double dy = px.y() + 0.5 - pantalla.alto / 2.0;
    v3 derecha;
    v3 arriba;
    ejesPantalla(pantalla, derecha, arriba);
    const double zoom = zoomDe(pantalla);
    const double nuevo = zoom * factor;
    const v3 mueve = (derecha * dx + arriba * dy) * (1.0 / zoom - 1.0 / nuevo);
    pantalla.posicion = punto3(de(pantalla.posicion) + mueve);
    pantalla.objetivo = punto3(de(pantalla.objetivo) + mueve);
    pantalla.zoom = nuevo;
    if (alCambiarCamara)
    {
        alCambiarCamara();
    }
    update();
}

void VistaGL::orbita(double dx, double dy)
{
    // Turns the camera about its target: across the screen about the drawing's z, up and
    // down about the screen's horizontal axis. The up hint turns along, so that a view from
    // straight above keeps its north.
    const v3 objetivo = de(pantalla.objetivo);
    v3 desde = de(pantalla.posicion) - objetivo;
    v3 arriba = de(pantalla.arriba);
    const v3 z{0, 0, 1};
    desde = gira(desde, z, -dx * kRadianesPorPixel);
    arriba = gira(arriba, z, -dx * kRadianesPorPixel);
    v3 derecha;
    v3 arribaPantalla;
    pantalla.posicion = punto3(objetivo + desde);
    pantalla.arriba = vector3(arriba);
    ejesPantalla(pantalla, derecha, arribaPantalla);
    desde = gira(desde, derecha, -dy * kRadianesPorPixel);
    arriba = gira(arribaPantalla, derecha, -dy * kRadianesPorPixel);
    pantalla.posicion = punto3(objetivo + desde);
    pantalla.arriba = vector3(arriba);
    if (alCambiarCamara)
    {
        alCambiarCamara();
    }
    update();
}

void VistaGL::desplaza(double dx, double dy)
{
    const double r = devicePixelRatioF();
    v3 derecha;
    v3 arriba;
    ejesPantalla(pantalla, derecha, arriba);
    // Qt's rows grow downwards, the display's upwards.
    const v3 mueve = (derecha * (-dx * r) + arriba * (dy * r)) * (1.0 / zoomDe(pantalla));
    pantalla.posicion = punto3(de(pantalla.posicion) + mueve);
    pantalla.objetivo = punto3(de(pantalla.objetivo) + mueve);
    if (alCambiarCamara)
    {
        alCambiarCamara();
    }
    update();
}

}  // namespace visor
