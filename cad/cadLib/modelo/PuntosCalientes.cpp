#include "modelo/PuntosCalientes.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/Configuracion.h"
#include "base/geometria/Linea3D.h"
#include "modelo/Modelo3D.h"
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

vista_t vista_t::de(PantallaCAD& pantalla)
{
    vista_t v;
    Matriz4<double> modelo;
    pantalla.getProyeccion(v.matriz);
    pantalla.getVista(modelo);
    v.matriz = v.matriz * modelo;
    pantalla.getOrigenVista(v.origen);
    pantalla.getTamanoVista(v.ancho, v.alto);
    return v;
}

namespace
{

// Screen positions of world points. A point the view can't place (behind a perspective
// camera) leaves the last position standing: 0, 0 before the first.
class Proyector
{
public:
    explicit Proyector(const vista_t& v) : v_(v) {}

    void proyecta(const Punto3<double>& p)
    {
        const Matriz4<double>& m = v_.matriz;
        const double qx = p.x - v_.origen.x;
        const double qy = p.y - v_.origen.y;
        const double qz = p.z - v_.origen.z;
        const double x = m[0] * qx + m[4] * qy + m[8] * qz + m[12];
        const double y = m[1] * qx + m[5] * qy + m[9] * qz + m[13];
        const double z = m[2] * qx + m[6] * qy + m[10] * qz + m[14];
        const double w = m[3] * qx + m[7] * qy + m[11] * qz + m[15];
        if (w == 1.0 || (z / w >= 0.0 && w > 0.0))
        {
            sx_ = ((x / w) * 0.5 + 0.5) * v_.ancho;
            sy_ = ((y / w) * 0.5 + 0.5) * v_.alto;
        }
    }
    // The square window of `t` pixels to each side, edges included.
    bool enVentana(const cursor_t& c, int t) const
    {
        return std::abs(sx_ - c.x) <= t && std::abs(sy_ - c.y) <= t;
    }

private:
    const vista_t& v_;
    double sx_ = 0.0;
    double sy_ = 0.0;
};

double distanciaRayo(const Punto3<double>& origen, const Vector3D<double>& d,
                     const Punto3<double>& p)
{
    return d.cross(p - origen).modulo() / d.modulo();
}

constexpr double kTolCara = 0.00001;

// Plain ear clipping: the first corner whose triangle holds no other corner is cut. When no
// corner qualifies the polygon has no ear to give and its clipping ends there.
void orejas(std::vector<Punto3<double>> l, std::vector<Punto3<double>>& triples)
{
    while (l.size() > 3)
    {
        const size_t n = l.size();
        size_t oreja = n;
        for (size_t i = 0; i < n && oreja == n; ++i)
        {
            const Punto3<double>& p = l[(i + n - 1) % n];
            const Punto3<double>& q = l[i];
            const Punto3<double>& r = l[(i + 1) % n];
            const bool vacia = std::none_of(l.begin(), l.end(),
                                            [&](const Punto3<double>& w)
                                            { return enTriangulo(w, p, q, r, kVueltaOreja); });
            if (vacia)
            {
                oreja = i;
            }
        }
        if (oreja == n)
        {
            return;
        }
        triples.insert(triples.end(), {l[(oreja + n - 1) % n], l[oreja], l[(oreja + 1) % n]});
        l.erase(l.begin() + static_cast<std::ptrdiff_t>(oreja));
    }
    if (l.size() == 3)
    {
        triples.insert(triples.end(), l.begin(), l.end());
    }
}

// False only when the line surely misses the polygon: it passes outside the polygon's box
// widened by a hundredth of its diagonal. A hit farther out than that from every triangle
// sees its sides under angles that fall short of the full turn by far more than the
// tolerance, so no hit the exact test would accept is lost; non-finite corners never skip.
bool puedeTocar(const std::vector<Punto3<double>>& poligono, const Punto3<double>& o,
                const Vector3D<double>& d)
{
    Punto3<double> lo = poligono[0];
    Punto3<double> hi = poligono[0];
    for (const Punto3<double>& p : poligono)
    {
        lo = {std::min(lo.x, p.x), std::min(lo.y, p.y), std::min(lo.z, p.z)};
        hi = {std::max(hi.x, p.x), std::max(hi.y, p.y), std::max(hi.z, p.z)};
    }
    const double margen = 0.01 * (hi - lo).modulo() + 2.0 * kTolCara;
    double tmin = -std::numeric_limits<double>::infinity();
    double tmax = std::numeric_limits<double>::infinity();
    const double origen[3] = {o.x, o.y, o.z};
    const double dir[3] = {d.x, d.y, d.z};
    const double bajo[3] = {lo.x - margen, lo.y - margen, lo.z - margen};
    const double alto[3] = {hi.x + margen, hi.y + margen, hi.z + margen};
    for (int k = 0; k < 3; ++k)
    {
        if (dir[k] == 0.0)
        {
            if (origen[k] < bajo[k] || origen[k] > alto[k])
            {
                return false;
            }
            continue;
        }
        double t1 = (bajo[k] - origen[k]) / dir[k];
        double t2 = (alto[k] - origen[k]) / dir[k];
        if (t1 > t2)
        {
            std::swap(t1, t2);
        }
        tmin = t1 > tmin ? t1 : tmin;
        tmax = t2 < tmax ? t2 : tmax;
    }
    return !(tmin > tmax);
}

}  // namespace

bool puntoEnSegmento(const Punto3<double>& a, const Punto3<double>& b, const Punto3<double>& p,
                     double tol)
{
    if (!(std::abs(a.x - b.x) < tol))
    {
        const Vector3D<double> d = b - a;
        const double t = (p.x - a.x) / d.x;
        // No guard for a zero dy or dz: the comparison with a NaN or an infinity fails, and
        // which edges can be found depends on it.
        if (!(std::abs(t - (p.y - a.y) / d.y) < tol) || !(std::abs(t - (p.z - a.z) / d.z) < tol))
        {
            return false;
        }
    }
    return p.x >= std::min(a.x, b.x) - tol && p.x <= std::max(a.x, b.x) + tol &&
           p.y >= std::min(a.y, b.y) - tol && p.y <= std::max(a.y, b.y) + tol &&
           p.z >= std::min(a.z, b.z) - 0.001 && p.z <= std::max(a.z, b.z) + 0.001;
}

bool intersecaCara(const std::vector<Punto3<double>>& poligono, const Punto3<double>& origen,
                   const Vector3D<double>& direccion, Punto3<double>& punto, double& distancia)
{
    distancia = std::numeric_limits<double>::max();
    if (poligono.size() < 3 || !puedeTocar(poligono, origen, direccion))
    {
        return false;
    }
    std::vector<Punto3<double>> triples;
    orejas(poligono, triples);
    const Vector3D<double> r0(origen);
    bool tocada = false;
    // From the last triple to the first: on a tie the earlier tested, the later one, stays.
    for (size_t t = triples.size(); t >= 3; t -= 3)
    {
        const Punto3<double>& a = triples[t - 3];
        const Punto3<double>& b = triples[t - 2];
        const Punto3<double>& c = triples[t - 1];
        const Vector3D<double> n = (b - a).cross(c - a).unit();
        const double desplazamiento = -Vector3D<double>(a).dot(n);
        const double den = n.dot(direccion);
        if (!(std::abs(den) > 0.0000001))
        {
            continue;
        }
        const double s = -(n.dot(r0) + desplazamiento) / den;
        const Punto3<double> h = origen + direccion * s;
        bool interior =
            h.distancia(a) < kTolCara || h.distancia(b) < kTolCara || h.distancia(c) < kTolCara;
        if (!interior)
        {
            // A hit on a corner was taken above, so the corner exclusion changes nothing here.
            interior = enTriangulo(h, a, b, c, 6.283185307179586 - kTolCara) &&
                       std::abs(desplazamiento - -Vector3D<double>(h).dot(n)) < kTolCara;
        }
        if (!interior)
        {
            continue;
        }
        const double d = (h - origen).modulo();
        if (d < distancia)
        {
            distancia = d;
            punto = h;
            tocada = true;
        }
    }
    return tocada;
}

elemento_seleccionado_t PuntosCalientes::cercanoRayo(const vista_t&, const cursor_t& cursor) const
{
    elemento_seleccionado_t r;
    r.entidad = entidad;
    const Punto3<double>& r0 = cursor.posicion;
    const Vector3D<double> d = (r0 + cursor.direccion) - r0;
    double mejor = std::numeric_limits<double>::max();
    for (const auto& e : puntos)
    {
        const double dist = distanciaRayo(r0, d, e.punto);
        if (dist < mejor)
        {
            r = e;
            mejor = dist;
        }
    }
    return r;
}

elemento_seleccionado_t PuntosCalientes::cercano(const vista_t& vista, const cursor_t& cursor) const
{
    const int t = Configuracion::instancia().valor(Configuracion::kVentanaReferencia);
    const Punto3<double>& r0 = cursor.posicion;
    const Vector3D<double> d = (r0 + cursor.direccion) - r0;
    Proyector proyector(vista);

    elemento_seleccionado_t r;
    r.entidad = entidad;
    double mejor = std::numeric_limits<double>::max();
    for (const auto& e : puntos)
    {
        const double dist = distanciaRayo(r0, d, e.punto);
        if (dist < mejor)
        {
            r = e;
            mejor = dist;
        }
    }
    proyector.proyecta(r.punto);
    if (proyector.enVentana(cursor, t))
    {
        return r;
    }
    // The best distance stays: an edge must lie nearer the ray than the nearest point did,
    // even though that point fell outside the window.
    r.tipo = kTipoNinguno;
    for (size_t i = 0; i < aristas.size(); ++i)
    {
        const Punto3<double>& a = aristas[i].first;
        const Punto3<double>& b = aristas[i].second;
        const Vector3D<double> e = b - a;
        const Vector3D<double> n = d.cross(e);
        const Vector3D<double> ra = r0 - a;
        const double g = std::abs(ra.dot(n)) / n.modulo();
        if (!(g < mejor))
        {
            continue;
        }
        const double ca = d.dot(d);
        const double cb = d.dot(e);
        const double cc = e.dot(e);
        const double p = ra.dot(d);
        const double rr = ra.dot(e);
        const double den = ca * cc - cb * cb;
        double s = 0.0;
        if (!(den < 0.00000001))
        {
            s = (rr * ca - p * cb) / den;
        }
        else
        {
            s = cb > cc ? p / cb : rr / cc;
        }
        const Punto3<double> q = a + e * s;
        const double dist = distanciaRayo(r0, d, q);
        proyector.proyecta(q);
        if (puntoEnSegmento(a, b, q, 0.001) && mejor > dist && proyector.enVentana(cursor, t))
        {
            r.punto = q;
            r.tipo = kTipoArista;
            r.indice = static_cast<int32_t>(i);
            mejor = dist;
        }
    }
    if (r.tipo == kTipoArista)
    {
        return r;
    }
    double frente = std::numeric_limits<double>::max();
    double detras = std::numeric_limits<double>::max();
    Punto3<double> puntoDetras;
    int32_t caraDetras = -1;
    for (size_t i = 0; i < caras.size(); ++i)
    {
        Punto3<double> h;
        double dist = 0.0;
        if (!intersecaCara(caras[i], r0, cursor.direccion, h, dist))
        {
            continue;
        }
        const Vector3D<double> n(normalesCaras[i][0], normalesCaras[i][1], normalesCaras[i][2]);
        if (n.dot(cursor.direccion) < 0.0)
        {
            if (dist < frente)
            {
                frente = dist;
                r.punto = h;
                r.tipo = kTipoCara;
                r.indice = static_cast<int32_t>(i);
            }
        }
        else if (dist < detras)
        {
            detras = dist;
            puntoDetras = h;
            caraDetras = static_cast<int32_t>(i);
        }
    }
    if (r.tipo != kTipoNinguno)
    {
        return r;
    }
    r.entidad = entidad;
    r.origen = Punto3<double>(0, 0, 0);
    r.punto = puntoDetras;
    r.tipo = caraDetras != -1 ? kTipoCara : kTipoNinguno;
    r.indice = caraDetras;
    return r;
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
