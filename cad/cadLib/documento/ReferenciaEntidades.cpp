#include "documento/ReferenciaEntidades.h"

#include <cmath>

namespace cad
{

namespace
{

Vector3D<double> cruz(const Vector3D<double>& a, const Vector3D<double>& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double punto(const Vector3D<double>& a, const Vector3D<double>& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

}  // namespace

ReferenciaEntidades::ReferenciaEntidades(PantallaCAD* p, const Punto3<double>& pos,
                                         const Vector3D<double>& dir, int32_t m, double t)
    : pantalla(p), posicion(pos), direccion(dir), mascara(m), tolerancia(t), puntoMejor(pos)
{
    rayo[0] = posicion;
    rayo[1] = posicion + direccion;
    if (pantalla != nullptr)
    {
        Matriz4<double> vista;
        pantalla->getProyeccion(proyeccion);
        pantalla->getVista(vista);
        proyeccion = proyeccion * vista;
        pantalla->getOrigenVista(origenVista);
    }
}

bool ReferenciaEntidades::enCubo(const Punto3<double>& q) const
{
    const Punto3<double> v(q.x - origenVista.x, q.y - origenVista.y, q.z - origenVista.z);
    const Punto3<double> r = proyeccion * v;
    return r.x >= -1.0 && r.x <= 1.0 && r.y >= -1.0 && r.y <= 1.0 && r.z >= -1.0 && r.z <= 1.0;
}

double ReferenciaEntidades::distanciaRayo(const Punto3<double>& q) const
{
    const Vector3D<double> d = rayo[1] - rayo[0];
    return cruz(d, q - rayo[0]).modulo() / d.modulo();
}

bool ReferenciaEntidades::toma(const Entidad* e, const Punto3<double>& q, double distancia,
                               int tipo)
{
    distanciaMejor = distancia;
    puntoMejor = q;
    // The snapped entity goes back to the caller as a plain pointer, as the cursor holds it.
    entidadMejor = const_cast<Entidad*>(e);
    tipoMejor = tipo;
    return true;
}

bool ReferenciaEntidades::ofrecePunto(const Entidad* e, const Punto3<double>& q, int tipo)
{
    if (!enCubo(q))
    {
        return false;
    }
    const double d = distanciaRayo(q);
    if (d < distanciaMejor || distanciaMejor < 0.0)
    {
        return toma(e, q, d, tipo);
    }
    return false;
}

bool ReferenciaEntidades::ofreceSegmento(const Entidad* e, const Segmento& s)
{
    const Vector3D<double> d = rayo[1] - rayo[0];
    const Vector3D<double> l = s.b - s.a;
    const Vector3D<double> n = cruz(d, l);
    const Vector3D<double> w = rayo[0] - s.a;
    // A side parallel to the ray has no single nearest point; its distance would be NaN,
    // which no later offer could beat.
    if (n.modulo() == 0.0)
    {
        return false;
    }
    const double g = std::fabs(punto(w, n)) / n.modulo();
    const double a = punto(d, d);
    const double b = punto(d, l);
    const double c = punto(l, l);
    const double p = punto(w, d);
    const double r = punto(w, l);
    const double den = a * c - b * b;
    double t = 0.0;
    if (den >= 1e-8)
    {
        t = (r * a - p * b) / den;
    }
    else
    {
        t = b > c ? p / b : r / c;
    }
    if (!(t >= 0.0 && t <= 1.0))
    {
        return false;
    }
    const Punto3<double> q = s.a + l * t;
    if (!enCubo(q))
    {
        return false;
    }
    if (g < distanciaMejor || distanciaMejor < 0.0)
    {
        return toma(e, q, g, kCercano);
    }
    return false;
}

bool ReferenciaEntidades::ofrecePlano(const Entidad* e, const Plano3D<double>& plano)
{
    Punto3<double> impacto;
    if (!plano.interseccionLineaPlano(Linea3D<double>(rayo[0], rayo[1]), impacto))
    {
        return false;
    }
    if (!enCubo(impacto))
    {
        return false;
    }
    return toma(e, impacto, 0.0, 0);
}

bool ReferenciaEntidades::ofreceTriangulo(const Entidad* e, const Triangulo& t)
{
    const Vector3D<double> normal = cruz(t.v[1] - t.v[0], t.v[2] - t.v[0]).unit();
    if (punto(normal, direccion) < 0.0)
    {
        return false;
    }
    bool tomado = false;
    for (const auto& v : t.v)
    {
        tomado = ofrecePunto(e, v, kExtremos) || tomado;
    }
    return tomado;
}

}  // namespace cad
