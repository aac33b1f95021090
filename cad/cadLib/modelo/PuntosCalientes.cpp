#include "modelo/PuntosCalientes.h"

#include <limits>

#include "base/Configuracion.h"
#include "base/geometria/Linea3D.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

void PuntosCalientes::nuevosPuntosTipo(int n, const Punto3<double>* p, int32_t tipo)
{
    for (int i = 0; i < n; ++i)
    {
        elemento_seleccionado_t e;
        e.entidad = entidad;
        e.punto = p[i];
        e.tipo = tipo;
        puntos.push_back(e);
    }
}

void PuntosCalientes::nuevaCara(int n, const Punto3<double>* p, const std::array<float, 3>& normal)
{
    caras.emplace_back(p, p + n);
    normalesCaras.push_back(normal);
}

void PuntosCalientes::nuevoVector(const Punto3<double>& origen, const Punto3<double>& p)
{
    elemento_seleccionado_t e;
    e.entidad = entidad;
    e.origen = origen;
    e.punto = p;
    e.tipo = kTipoVector;
    puntos.push_back(e);
}

void PuntosCalientes::nuevoAzimut(const Punto3<double>& origen, const Punto3<double>& p)
{
    elemento_seleccionado_t e;
    e.entidad = entidad;
    e.origen = origen;
    e.punto = p;
    e.tipo = kTipoAzimut;
    puntos.push_back(e);
}

void PuntosCalientes::numeraPuntos()
{
    int32_t contador[7] = {0, 0, 0, 0, 0, 0, 0};
    for (auto& e : puntos)
    {
        if (e.tipo >= 0 && e.tipo < 7)
        {
            e.indice = contador[e.tipo]++;
        }
    }
}

elemento_seleccionado_t PuntosCalientes::masCercano(const Punto3<double>& p) const
{
    elemento_seleccionado_t mejor;
    mejor.entidad = entidad;
    double distancia = std::numeric_limits<double>::max();
    for (const auto& e : puntos)
    {
        const double d = e.punto.distanciaCuadrado(p);
        if (d < distancia)
        {
            distancia = d;
            mejor = e;
        }
    }
    return mejor;
}

void PuntosCalientes::dibuja(PantallaCAD& pantalla) const
{
    const Configuracion& c = Configuracion::instancia();
    const uint32_t puntosColor = c.color(Configuracion::kPuntosCalientes).ABGR();
    const uint32_t vectores = c.color(Configuracion::kVectoresCalientes).ABGR();
    const uint32_t azimuts = c.color(Configuracion::kAzimutsCalientes).ABGR();
    for (const auto& e : puntos)
    {
        if (e.tipo == kTipoVector)
        {
            pantalla.dibujaLinea(Linea3D<double>(e.origen, e.punto), puntosColor, nullptr);
            pantalla.dibujaMarca(e.punto, 5, vectores);
        }
        else if (e.tipo == kTipoAzimut)
        {
            pantalla.dibujaLinea(Linea3D<double>(e.origen, e.punto), vectores, nullptr);
            pantalla.dibujaMarca(e.punto, 0, azimuts);
        }
        else
        {
            pantalla.dibujaMarca(e.punto, 0, puntosColor);
        }
    }
}

void PuntosCalientes::dibujaAristasYCaras(PantallaCAD& pantalla) const
{
    const Configuracion& c = Configuracion::instancia();
    const uint32_t colorAristas = c.color(Configuracion::kAristasCalientes).ABGR();
    const uint32_t colorCaras = c.color(Configuracion::kCarasCalientes).ABGR();
    for (const auto& a : aristas)
    {
        pantalla.dibujaLinea(Linea3D<double>(a.first, a.second), colorAristas, nullptr);
    }
    for (const auto& cara : caras)
    {
        pantalla.dibujaPoligono(static_cast<int>(cara.size()), cara.data(), colorCaras, nullptr);
    }
}

}  // namespace cad
