// Test support: the reference display with a fixed camera that the tests set by hand.
#pragma once

#include <string>

#include "PantallaReferencia.h"

namespace cad::prueba
{

// Records every call as one line (see PantallaReferencia) and retains what it is sent, but
// its camera only moves when a test or setCamara moves it: the zoom operations are recorded
// and leave it, getCamara and getNormalVista give `direccion` as set, setCamara answers
// `camaraReconstruye`, and the matrices and pixel size are the fields below, so that a test
// states the exact view the kernel reads. Picking projects through those same matrices.
class PantallaGrabadora : public PantallaReferencia
{
public:
    void getVista(Matriz4<double>& v) override;
    void getProyeccion(Matriz4<double>& p) override;
    void tamanoPixel(double& tamano) override;
    void getNormalVista(Vector3D<double>& normal) override;
    bool setCamara(const Punto3<double>& posicion, const Punto3<double>& objetivo,
                   const Vector3D<double>& arriba, double zoom, double angulo) override;
    bool setCamaraFoto(const Punto3<double>& posicion, const Punto3<double>& objetivo,
                       const Vector3D<double>& arriba, double anguloVision, double giro) override;
    void getCamara(Punto3<double>& posicion, Punto3<double>& objetivo, Vector3D<double>& direccion,
                   Vector3D<double>& arriba, double& zoom, double& angulo) override;
    void zoomEscala(double factor) override;
    void zoomExtension(const Rect3<double>& caja) override;
    void zoomVentana(const Punto2<int>& esquina1, const Punto2<int>& esquina2) override;

    Vector3D<double> direccion{0, 0, -1};
    bool camaraReconstruye = false;  // what setCamara answers
    Matriz4<double> vista;           // identity unless a test sets it
    Matriz4<double> proyeccion;
    double pixel = 1.0;

private:
    // Runs a base zoom for its recorded line, then puts the camera back.
    template <typename Zoom>
    void sinMoverCamara(Zoom zoom);
};

std::string texto(const Punto3<double>& p);

}  // namespace cad::prueba
