// Test support: the fixed-camera overrides of the recording display.
#include "soporte/PantallaGrabadora.h"

namespace cad::prueba
{

std::string texto(const Punto3<double>& p)
{
    return PantallaReferencia::texto(p);
}

template <typename Zoom>
void PantallaGrabadora::sinMoverCamara(Zoom hazZoom)
{
    const Punto3<double> p = posicion;
    const Punto3<double> o = objetivo;
    const double z = zoom;
    hazZoom();
    posicion = p;
    objetivo = o;
    zoom = z;
}

void PantallaGrabadora::getVista(Matriz4<double>& v)
{
    v = vista;
}
void PantallaGrabadora::getProyeccion(Matriz4<double>& p)
{
    p = proyeccion;
}
void PantallaGrabadora::tamanoPixel(double& tamano)
{
    tamano = pixel;
}
void PantallaGrabadora::getNormalVista(Vector3D<double>& normal)
{
    normal = direccion;
}

bool PantallaGrabadora::setCamara(const Punto3<double>& p, const Punto3<double>& o,
                                  const Vector3D<double>& a, double z, double ang)
{
    PantallaReferencia::setCamara(p, o, a, z, ang);
    return camaraReconstruye;
}

bool PantallaGrabadora::setCamaraFoto(const Punto3<double>& p, const Punto3<double>& o,
                                      const Vector3D<double>& a, double vision, double g)
{
    PantallaReferencia::setCamaraFoto(p, o, a, vision, g);
    return camaraReconstruye;
}

void PantallaGrabadora::getCamara(Punto3<double>& p, Punto3<double>& o, Vector3D<double>& d,
                                  Vector3D<double>& a, double& z, double& ang)
{
    PantallaReferencia::getCamara(p, o, d, a, z, ang);
    d = direccion;
}

void PantallaGrabadora::zoomEscala(double factor)
{
    sinMoverCamara([&] { PantallaReferencia::zoomEscala(factor); });
}

void PantallaGrabadora::zoomExtension(const Rect3<double>& caja)
{
    sinMoverCamara([&] { PantallaReferencia::zoomExtension(caja); });
}

void PantallaGrabadora::zoomVentana(const Punto2<int>& a, const Punto2<int>& b)
{
    sinMoverCamara([&] { PantallaReferencia::zoomVentana(a, b); });
}

}  // namespace cad::prueba
