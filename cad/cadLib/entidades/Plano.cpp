// Plano: contour edits, fitting, cuts against other planes, file body, snap, hot points, paint.
#include "entidades/Plano.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "base/geometria/SistemaLocal3D.h"
#include "documento/Capa.h"
#include "documento/ReferenciaEntidades.h"
#include "intercambio/ExportaDXF.h"
#include "modelo/Modelo3D.h"
#include "modelo/PuntosCalientes.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

namespace
{

constexpr double kMax = std::numeric_limits<double>::max();
// Below this length of the cross product of two unit sides, a contour point is collinear.
constexpr double kColineal = 1e-05;
// sin^2 of the angle between two normals below which the planes count as parallel.
constexpr double kParalelo = 1e-18;
// Relative length below which a side vector in extiende is only rounding noise.
constexpr double kSinLado = 1e-9;
// Bytes of one contour point in the file: three f64.
constexpr uint64_t kBytesPunto = 24;

// The straight line where two planes meet: a point and a unit direction.
struct recta_t
{
    Punto3<double> origen;
    Vector3D<double> direccion;

    double parametro(const Punto3<double>& p) const { return (p - origen).dot(direccion); }
    Punto3<double> pie(const Punto3<double>& p) const { return origen + direccion * parametro(p); }
};

// The common line of two planes, its origin the line's point nearest to `cerca`. Anchored
// beside the contours, the parameters along the line stay small at survey coordinates.
bool rectaComun(const Plano3D<double>& p1, const Plano3D<double>& p2, const Punto3<double>& cerca,
                recta_t& recta)
{
    const Vector3D<double> bruta1(p1.a, p1.b, p1.c);
    const Vector3D<double> bruta2(p2.a, p2.b, p2.c);
    const double m1 = bruta1.modulo();
    const double m2 = bruta2.modulo();
    if (!(m1 > 0.0) || !(m2 > 0.0))
    {
        return false;
    }
    const Vector3D<double> n1 = bruta1 / m1;
    const Vector3D<double> n2 = bruta2 / m2;
    const Vector3D<double> u = n1.cross(n2);
    const double seno2 = u.dot(u);
    if (!(seno2 > kParalelo))
    {
        return false;
    }
    // Signed distances from `cerca`, negated: the offsets the foot must travel along n1, n2.
    const Vector3D<double> c(cerca.x, cerca.y, cerca.z);
    const double h1 = -(n1.dot(c) + p1.d / m1);
    const double h2 = -(n2.dot(c) + p2.d / m2);
    const double coseno = n1.dot(n2);
    const double alfa = (h1 - h2 * coseno) / seno2;
    const double beta = (h2 - h1 * coseno) / seno2;
    recta.origen = cerca + n1 * alfa + n2 * beta;
    recta.direccion = u.unit();
    return true;
}

Punto3<double> centroCaja(const std::vector<Punto3<double>>& v)
{
    Rect3<double> caja;
    for (const auto& p : v)
    {
        caja.amplia(p);
    }
    return caja.centro();
}

Punto3<double> centroide(const std::vector<Punto3<double>>& v)
{
    Vector3D<double> s;
    for (const auto& p : v)
    {
        s += Vector3D<double>(p.x, p.y, p.z);
    }
    s /= static_cast<double>(v.size());
    return {s.x, s.y, s.z};
}

// The component of w square to both the line and the unit normal n.
Vector3D<double> transversal(const Vector3D<double>& w, const recta_t& recta,
                             const Vector3D<double>& n)
{
    Vector3D<double> r = w - recta.direccion * w.dot(recta.direccion);
    return r - n * r.dot(n);
}

using Punto2D = std::array<double, 2>;

double cruz2(const Punto2D& u, const Punto2D& v)
{
    return u[0] * v[1] - u[1] * v[0];
}

// Inside or on the edges of the triangle (a, b, c), whichever its orientation.
bool enTriangulo(const Punto2D& p, const Punto2D& a, const Punto2D& b, const Punto2D& c)
{
    const double d1 = cruz2({b[0] - a[0], b[1] - a[1]}, {p[0] - a[0], p[1] - a[1]});
    const double d2 = cruz2({c[0] - b[0], c[1] - b[1]}, {p[0] - b[0], p[1] - b[1]});
    const double d3 = cruz2({a[0] - c[0], a[1] - c[1]}, {p[0] - c[0], p[1] - c[1]});
    const bool negativo = d1 < 0.0 || d2 < 0.0 || d3 < 0.0;
    const bool positivo = d1 > 0.0 || d2 > 0.0 || d3 > 0.0;
    return !(negativo && positivo);
}

}  // namespace

// ---------------------------------------------------------------------------------------
// Construction and contour edits

Plano::Plano(const Plano3D<double>& plano, int n, const Punto3<double>* puntos)
    : Plano3D<double>(plano), referencia(invalido)
{
    if (n > 0 && puntos != nullptr)
    {
        contorno.vertices.assign(puntos, puntos + n);
        referencia = puntos[0];
    }
}

Plano::Plano(int n, const Punto3<double>* puntos) : referencia(0, 0, 0)
{
    if (n > 0 && puntos != nullptr)
    {
        contorno.vertices.assign(puntos, puntos + n);
        referencia = puntos[0];
    }
    if (contorno.numeroVertices() > 2)
    {
        Plano3D<double>::operator=(ajustaPlano(contorno.vertices));
    }
}

bool Plano::tieneNormal() const
{
    return Vector3D<double>(a, b, c).modulo() > umbralParalelismo;
}

void Plano::reproyecta()
{
    if (!tieneNormal())
    {
        return;
    }
    for (auto& p : contorno.vertices)
    {
        p = proyecta(p);
    }
}

void Plano::reajusta()
{
    if (contorno.numeroVertices() > 2)
    {
        Plano3D<double>::operator=(ajustaPlano(contorno.vertices));
        reproyecta();
    }
}

void Plano::nuevoVertice(const Punto3<double>& p)
{
    contorno.vertices.push_back(p);
    if (contorno.numeroVertices() > 2)
    {
        Plano3D<double>::operator=(ajustaPlano(contorno.vertices));
    }
    reproyecta();
}

void Plano::setContorno(const Polilinea3D<double>& p)
{
    if (&p != &contorno)
    {
        contorno.vertices = p.vertices;
        contorno.cerrada = p.cerrada;
    }
    reproyecta();
}

void Plano::aModelo(Modelo3D& m) const
{
    const int n = contorno.numeroVertices();
    std::vector<int32_t> indices(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i)
    {
        indices[static_cast<size_t>(i)] = m.nuevoVertice(contorno.vertices[static_cast<size_t>(i)]);
    }
    m.nuevaCara(n, indices.data(), false, 0);
}

void Plano::paralela(double distancia)
{
    const Vector3D<double> desplazamiento = normal() * distancia;
    for (auto& p : contorno.vertices)
    {
        p += desplazamiento;
    }
    d -= distancia;
}

void Plano::traslada(const Vector3D<double>& v)
{
    for (auto& p : contorno.vertices)
    {
        p += v;
    }
}

// ---------------------------------------------------------------------------------------
// Cuts against other planes

bool Plano::interseccion(const Plano& otro, Punto3<double>* inicio, Punto3<double>* fin) const
{
    const auto& propios = contorno.vertices;
    const auto& ajenos = otro.contorno.vertices;
    if (propios.empty() || ajenos.empty())
    {
        return false;
    }
    const Punto3<double> cerca =
        Punto3<double>::puntoMedio(centroCaja(propios), centroCaja(ajenos));
    recta_t recta;
    if (!rectaComun(*this, otro, cerca, recta))
    {
        return false;
    }
    // Each contour covers [minimo, maximo] of the line; the overlap is the cut.
    double desde = -kMax;
    double hasta = kMax;
    for (const auto* v : {&propios, &ajenos})
    {
        double minimo = kMax;
        double maximo = -kMax;
        for (const auto& p : *v)
        {
            const double t = recta.parametro(p);
            minimo = std::min(minimo, t);
            maximo = std::max(maximo, t);
        }
        desde = std::max(desde, minimo);
        hasta = std::min(hasta, maximo);
    }
    if (!(desde <= hasta))
    {
        return false;
    }
    if (inicio != nullptr)
    {
        *inicio = recta.origen + recta.direccion * desde;
    }
    if (fin != nullptr)
    {
        *fin = recta.origen + recta.direccion * hasta;
    }
    return true;
}

bool Plano::extiende(const Plano& destino)
{
    auto& v = contorno.vertices;
    const auto& ajenos = destino.contorno.vertices;
    if (v.empty() || ajenos.empty() || !tieneNormal())
    {
        return false;
    }
    const Punto3<double> cerca = Punto3<double>::puntoMedio(centroCaja(v), centroCaja(ajenos));
    recta_t recta;
    if (!rectaComun(*this, destino, cerca, recta))
    {
        return false;
    }
    const Vector3D<double> n = normal();

    // The side of the line where the destination lies, seen in this plane. A destination
    // square to this plane projects onto the line itself and tells no side: then the side
    // away from this contour's own bulk is taken.
    const Punto3<double> suyo = centroide(ajenos);
    Vector3D<double> lado = transversal(suyo - recta.origen, recta, n);
    if (lado.modulo() <= kSinLado * (1.0 + (suyo - recta.origen).modulo()))
    {
        const Punto3<double> propio = centroide(v);
        lado = -transversal(propio - recta.origen, recta, n);
        if (lado.modulo() <= kSinLado * (1.0 + (propio - recta.origen).modulo()))
        {
            return false;
        }
    }

    for (auto& p : v)
    {
        p = proyecta(p);
        if ((p - recta.pie(p)).dot(lado) > 0.0)
        {
            p = recta.pie(p);
        }
    }

    // Points that the clamping lined up with both neighbours go; the first point is kept.
    const std::size_t total = v.size();
    if (total < 3)
    {
        return true;
    }
    std::vector<bool> marcado(total, false);
    for (std::size_t i = 1; i < total; ++i)
    {
        const Vector3D<double> antes = v[i] - v[i - 1];
        const Vector3D<double> despues = v[(i + 1) % total] - v[i];
        if (antes.modulo() > 0.0 && despues.modulo() > 0.0 &&
            antes.unit().cross(despues.unit()).modulo() < kColineal)
        {
            marcado[i] = true;
        }
    }
    for (std::size_t i = total; i-- > 1;)
    {
        if (marcado[i])
        {
            v.erase(v.begin() + static_cast<std::ptrdiff_t>(i));
        }
    }
    return true;
}

bool Plano::une(Plano& otro)
{
    if (numCoordenadas() < 1 || otro.numCoordenadas() < 1)
    {
        return false;
    }
    extiende(otro);
    otro.extiende(*this);
    return true;
}

Plano* Plano::perpendicular(const Linea3D<double>& linea) const
{
    const Vector3D<double> n = normal();
    const Vector3D<double> u = linea.ObtenerVector().unit();
    // The new plane's normal: square to the line and lying in this plane.
    const Vector3D<double> m = u.cross(n).unit();
    if (m == Vector3D<double>() || n == Vector3D<double>())
    {
        return nullptr;
    }
    const Punto3<double> medio = Punto3<double>::puntoMedio(linea.origen, linea.extremo);
    // In this plane: x along the line's trace, y square to it. In the new plane, y becomes
    // the old normal, which turns the contour a quarter about the line.
    const Vector3D<double> x = n.cross(m);
    SistemaLocal3D<double> origen;
    origen.setOrigen(medio);
    origen.setVectoresXYZ(x, m, n);
    SistemaLocal3D<double> nuevo;
    nuevo.setOrigen(medio);
    nuevo.setVectoresXYZ(x, n, m);

    std::vector<Punto3<double>> puntos;
    puntos.reserve(contorno.vertices.size());
    for (const auto& p : contorno.vertices)
    {
        Punto3<double> local = origen.getMatrizALocal() * p;
        local.z = 0.0;  // the line's distance off this plane is dropped: the new plane holds it
        puntos.push_back(nuevo.getMatrizAGlobal() * local);
    }
    return new Plano(static_cast<int>(puntos.size()), puntos.data());
}

// ---------------------------------------------------------------------------------------
// File body

void Plano::escribe(SerializadorEscrituraBase& w)
{
    Entidad::escribe(w);
    w.escribeDoble(a);
    w.escribeDoble(b);
    w.escribeDoble(c);
    w.escribeDoble(d);
    w.escribePunto3(referencia);
    w.escribeEnteroSinSigno(static_cast<uint32_t>(contorno.vertices.size()));
    w.escribePuntos(contorno.vertices.data(), contorno.vertices.size());
}

bool Plano::lee(SerializadorLecturaBase& r)
{
    const bool prefijo = Entidad::lee(r);
    contorno.vertices.clear();
    contorno.cerrada = false;
    if (!r.leeDoble(a) || !r.leeDoble(b) || !r.leeDoble(c) || !r.leeDoble(d) ||
        !r.leePunto3(referencia))
    {
        return false;
    }
    uint32_t cuenta = 0;
    if (!r.leeEnteroSinSigno(cuenta))
    {
        return false;
    }
    // A count the source cannot hold is a damaged file: refuse it before reserving.
    if (static_cast<uint64_t>(cuenta) > r.bytesDisponibles() / kBytesPunto)
    {
        return false;
    }
    contorno.vertices.reserve(cuenta);
    for (uint32_t i = 0; i < cuenta; ++i)
    {
        Punto3<double> p;
        if (!r.leePunto3(p))
        {
            return false;
        }
        contorno.vertices.push_back(p);
    }
    return prefijo;
}

void Plano::exportaDXF(ExportaDXF& dxf) const
{
    const Capa* propia = capa.get();
    dxf.setCapa(propia != nullptr ? propia->nombre : "0");
    dxf.inicioPolilinea(8, indiceColorCercano());
    for (const auto& p : contorno.vertices)
    {
        dxf.verticePolilinea(p.x, p.y, p.z);
    }
    dxf.finPolilinea();
}

// ---------------------------------------------------------------------------------------
// Hot points and snap

const Punto3<double>* Plano::coordenada(int i) const
{
    if (i < 0 || i >= contorno.numeroVertices())
    {
        return nullptr;
    }
    return &contorno.vertices[static_cast<std::size_t>(i)];
}

void Plano::puntosCalientes(PuntosCalientes& p)
{
    p.entidad = this;
    const int n = contorno.numeroVertices();
    p.nuevosPuntosAuxiliares(n, contorno.vertices.data());
    for (int i = 0; i < n; ++i)
    {
        const auto [desde, hasta] = contorno.arista(i);
        p.nuevaArista(desde, hasta);
    }
    p.numeraPuntos();
}

void Plano::aplicaPuntoCaliente(const elemento_arrastrado_t& e)
{
    const int n = contorno.numeroVertices();
    if (e.indice < 0 || e.indice >= n)
    {
        return;
    }
    auto& v = contorno.vertices;
    const auto i = static_cast<std::size_t>(e.indice);
    if (e.tipo == kTipoAuxiliar)
    {
        // With no normal the point is taken as dragged, not sent to the origin.
        v[i] = tieneNormal() ? proyecta(e.posicion) : e.posicion;
    }
    else if (e.tipo == kTipoArista && e.extra.size() >= 2)
    {
        const Vector3D<double> arrastre = e.posicion - e.punto;
        v[i] = e.extra[0] + arrastre;
        v[(i + 1) % v.size()] = e.extra[1] + arrastre;
    }
}

bool Plano::getReferenciaEntidades(ReferenciaEntidades& r) const
{
    const Entidad* yo = this;
    const auto& v = contorno.vertices;
    bool tomado = false;
    if ((r.mascara & kExtremos) != 0)
    {
        for (const auto& p : v)
        {
            tomado = r.ofrecePunto(yo, p, kExtremos) || tomado;
        }
    }
    if ((r.mascara & kCercano) != 0)
    {
        tomado = r.ofrecePlano(yo, *this) || tomado;
    }
    if ((r.mascara & kPuntosMedios) != 0)
    {
        for (std::size_t i = 1; i < v.size(); ++i)
        {
            tomado = r.ofrecePunto(yo, Punto3<double>::puntoMedio(v[i - 1], v[i]), kPuntosMedios) ||
                     tomado;
        }
    }
    return tomado;
}

// ---------------------------------------------------------------------------------------
// Paint

std::vector<int> Plano::triangula() const
{
    const int n = contorno.numeroVertices();
    std::vector<int> triangulos;
    if (n < 3)
    {
        return triangulos;
    }
    // Work in 2D inside the plane, about the first point, against the normal painted.
    const Vector3D<double> nn{Vector3D<float>(normal())};
    const Vector3D<double> eje =
        std::abs(nn.x) < 0.6 ? Vector3D<double>(1, 0, 0) : Vector3D<double>(0, 1, 0);
    const Vector3D<double> e1 = nn.cross(eje).unit();
    const Vector3D<double> e2 = nn.cross(e1);
    std::vector<Punto2D> q;
    q.reserve(static_cast<std::size_t>(n));
    for (const auto& p : contorno.vertices)
    {
        const Vector3D<double> w = p - contorno.vertices[0];
        q.push_back({w.dot(e1), w.dot(e2)});
    }
    double area = 0.0;
    for (std::size_t i = 0; i < q.size(); ++i)
    {
        area += cruz2(q[i], q[(i + 1) % q.size()]);
    }
    // Positive for a corner that turns the way the whole contour does.
    const double sentido = area < 0.0 ? -1.0 : 1.0;
    auto giro = [&](int i, int j, int k)
    {
        const Punto2D& pi = q[static_cast<std::size_t>(i)];
        const Punto2D& pj = q[static_cast<std::size_t>(j)];
        const Punto2D& pk = q[static_cast<std::size_t>(k)];
        return sentido * cruz2({pj[0] - pi[0], pj[1] - pi[1]}, {pk[0] - pj[0], pk[1] - pj[1]});
    };

    // With no normal there is no 2D view to clip in: the fan is all that can be done.
    bool convexo = true;
    for (int i = 0; i < n && convexo && nn != Vector3D<double>(); ++i)
    {
        convexo = giro(i, (i + 1) % n, (i + 2) % n) >= 0.0;
    }
    std::vector<int> quedan(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i)
    {
        quedan[static_cast<std::size_t>(i)] = i;
    }
    // Ear clipping: cut a convex corner whose triangle holds no other remaining corner.
    while (!convexo && quedan.size() > 3)
    {
        const std::size_t m = quedan.size();
        bool cortada = false;
        for (std::size_t j = 0; j < m && !cortada; ++j)
        {
            const int i0 = quedan[(j + m - 1) % m];
            const int i1 = quedan[j];
            const int i2 = quedan[(j + 1) % m];
            if (!(giro(i0, i1, i2) > 0.0))
            {
                continue;
            }
            const Punto2D& a0 = q[static_cast<std::size_t>(i0)];
            const Punto2D& a1 = q[static_cast<std::size_t>(i1)];
            const Punto2D& a2 = q[static_cast<std::size_t>(i2)];
            bool vacia = true;
            for (const int k : quedan)
            {
                const Punto2D& pk = q[static_cast<std::size_t>(k)];
                // Corners repeated at the ear's own positions do not block it.
                if (pk != a0 && pk != a1 && pk != a2 && enTriangulo(pk, a0, a1, a2))
                {
                    vacia = false;
                    break;
                }
            }
            if (vacia)
            {
                triangulos.insert(triangulos.end(), {i0, i1, i2});
                quedan.erase(quedan.begin() + static_cast<std::ptrdiff_t>(j));
                cortada = true;
            }
        }
        // A self-crossing or degenerate rest has no ear: the fan below closes it.
        if (!cortada)
        {
            break;
        }
    }
    for (std::size_t j = 1; j + 1 < quedan.size(); ++j)
    {
        triangulos.insert(triangulos.end(), {quedan[0], quedan[j], quedan[j + 1]});
    }
    return triangulos;
}

void Plano::dibuja(PantallaCAD& p) const
{
    const int n = contorno.numeroVertices();
    if (n < 3)
    {
        return;
    }
    const Punto3<double>* v = contorno.vertices.data();
    std::vector<uint32_t> lados;
    lados.reserve(static_cast<std::size_t>(2 * n));
    for (int i = 0; i < n; ++i)
    {
        lados.push_back(static_cast<uint32_t>(i));
        lados.push_back(static_cast<uint32_t>((i + 1) % n));
    }
    const Vector3D<float> nf(normal());
    const std::vector<Vector3D<float>> normales(static_cast<std::size_t>(n), nf);
    std::vector<int32_t> caras;
    const std::vector<int> triangulos = triangula();
    for (std::size_t t = 0; t + 2 < triangulos.size(); t += 3)
    {
        caras.insert(caras.end(), {3, triangulos[t], triangulos[t + 1], triangulos[t + 2]});
    }

    p.setModoLinea(PantallaCAD::kLineaDiscontinua);
    p.dibujaPolilinea(n, v, true, 0xFFFFFFFFU, nullptr);
    p.setModoLinea(PantallaCAD::kLineaContinua);
    // Full shine and half opacity: the plane is painted half see-through.
    p.setColorMaterial(resuelveColorABGR(), 1.0F, 0.5F);
    p.iniciaObjeto(resuelveColorABGR(3), PantallaCAD::kAlambrica);
    p.vertices(n, v);
    p.normales(n, normales.data());
    p.aristas(static_cast<int>(lados.size()), lados.data());
    p.caras(static_cast<int>(caras.size()), caras.data());
    // The pick must be the Entidad address: the display gives back exactly what it gets.
    p.finObjeto(static_cast<Entidad*>(const_cast<Plano*>(this)));
}

// ---------------------------------------------------------------------------------------
// Property sheet

int Plano::numeroPropiedadesCategoria(int categoria) const
{
    return categoria == 1 ? 1 : Entidad::numeroPropiedadesCategoria(categoria);
}

bool Plano::getPropiedad(int categoria, int indice, Prop& p) const
{
    if (categoria != 1)
    {
        return Entidad::getPropiedad(categoria, indice, p);
    }
    if (indice != 0)
    {
        return false;
    }
    p.nombre = "Vértice";
    p.tipo = TipoProp::ListaCoordenadas;
    return true;
}

int Plano::numeroElementosLista(int categoria, int indice) const
{
    return categoria == 1 && indice == 0 ? numCoordenadas() : 0;
}

bool Plano::getElementoLista(int categoria, int indice, int i, double& x, double& y,
                             double& z) const
{
    const Punto3<double>* p = categoria == 1 && indice == 0 ? coordenada(i) : nullptr;
    if (p == nullptr)
    {
        return false;
    }
    x = p->x;
    y = p->y;
    z = p->z;
    return true;
}

bool Plano::setElementoLista(int categoria, int indice, int i, const double* xyz)
{
    if (categoria != 1 || indice != 0 || xyz == nullptr || coordenada(i) == nullptr)
    {
        return false;
    }
    contorno.vertices[static_cast<std::size_t>(i)] = Punto3<double>(xyz[0], xyz[1], xyz[2]);
    reajusta();
    return true;
}

}  // namespace cad
