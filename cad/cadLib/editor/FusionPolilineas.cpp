#include "editor/FusionPolilineas.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace cad
{

namespace
{

constexpr double kDosPi = 6.283185308;
constexpr double kPi = kDosPi / 2.0;
// Below this an angular step or a total turn is noise.
constexpr double kGiroMinimo = 1e-6;
// Two crossings this close, in place and in plan, are one seen from two sides.
constexpr double kMismoCruce = 1e-9;

// The point at parameter t of segment a-b; the ends themselves at 0 and 1, so that a place on
// a vertex compares equal to it.
Punto3<double> interpola(const Punto3<double>& a, const Punto3<double>& b, double t)
{
    if (t == 0.0)
    {
        return a;
    }
    if (t == 1.0)
    {
        return b;
    }
    return a + (b - a) * t;
}

double distanciaPlanta(const Punto3<double>& a, const Punto3<double>& b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

int numeroLados(const CadenaPuntos& c, bool cerrada)
{
    const int n = static_cast<int>(c.size());
    if (n < 2)
    {
        return 0;
    }
    return cerrada ? n : n - 1;
}

const Punto3<double>& finLado(const CadenaPuntos& c, int lado)
{
    return c[(static_cast<size_t>(lado) + 1) % c.size()];
}

// Appends p unless it repeats the last point: joins must not leave a zero-length side.
void anade(CadenaPuntos& c, const Punto3<double>& p)
{
    if (c.empty() || !(c.back() == p))
    {
        c.push_back(p);
    }
}

// The point at place s (side + parameter) of an open chain, s within [0, n - 1].
Punto3<double> puntoEn(const CadenaPuntos& c, double s)
{
    const int n = static_cast<int>(c.size());
    s = std::clamp(s, 0.0, static_cast<double>(n - 1));
    const int lado = std::min(static_cast<int>(std::floor(s)), n - 2);
    return interpola(c[lado], c[lado + 1], s - lado);
}

// Where an end of the origin stands in for a crossing, or a crossing itself: its place on the
// destination (s), on the origin (r), the point, and how far in plan it lies off the
// destination.
struct extremo_t
{
    double s = 0.0;
    double r = 0.0;
    Punto3<double> punto;
    double distancia = 0.0;
};

// The origin's vertices strictly between places r1 and r2, in the order from r1 to r2.
void tramoOrigen(const CadenaPuntos& origen, double r1, double r2, CadenaPuntos& salida)
{
    const int m = static_cast<int>(origen.size());
    if (r1 <= r2)
    {
        for (int v = static_cast<int>(std::floor(r1)) + 1; v < m && v < r2; ++v)
        {
            anade(salida, origen[v]);
        }
    }
    else
    {
        for (int v = static_cast<int>(std::ceil(r1)) - 1; v >= 0 && v > r2; --v)
        {
            anade(salida, origen[v]);
        }
    }
}

bool esVertice(const CadenaPuntos& c, int v, const Punto3<double>& p)
{
    return v >= 0 && v < static_cast<int>(c.size()) && c[v] == p;
}

// With fewer than two crossings, the origin's ends take their place: each end where it is
// nearest to the destination (one end gives way to a single crossing). On an open destination an
// end whose nearest place is an end of the destination, without lying on it, goes beyond that end
// (half a side out), so that the origin extends the chain there instead of folding back onto it.
void extremosCercanos(const CadenaPuntos& destino, const CadenaPuntos& origen, bool anillo,
                      const std::vector<cruceCadenas_t>& cruces, extremo_t& a, extremo_t& b)
{
    const int n = static_cast<int>(destino.size());
    extremo_t e[2];
    for (int i = 0; i < 2; ++i)
    {
        const Punto3<double>& p = i == 0 ? origen.front() : origen.back();
        const lugarCadena_t l = lugarMasCercano(destino, false, p);
        e[i].s = l.lado + l.t;
        e[i].r = i == 0 ? 0.0 : static_cast<double>(origen.size() - 1);
        e[i].punto = p;
        e[i].distancia = l.distancia;
        if (!anillo && l.distancia > 0.0)
        {
            if (e[i].s == n - 1)
            {
                e[i].s = n - 0.5;
            }
            else if (e[i].s == 0.0)
            {
                e[i].s = -0.5;
            }
        }
    }
    if (cruces.size() == 1)
    {
        // A single crossing is where the origin meets the chain: it takes the place of the end
        // nearer to the chain, whose overshoot would otherwise become a spur.
        const cruceCadenas_t& c = cruces.front();
        extremo_t& cerca = e[1].distancia < e[0].distancia ? e[1] : e[0];
        cerca = {c.ladoA + c.tA, c.ladoB + c.tB, c.punto, 0.0};
    }
    int primero = e[1].s < e[0].s ? 1 : 0;
    if (e[0].s == e[1].s)
    {
        // Both beyond the same end: the nearer one joins first beyond the last vertex and
        // last before the first one, so the origin runs away from the chain.
        if (e[0].s > n - 1)
        {
            primero = e[1].distancia < e[0].distancia ? 1 : 0;
        }
        else if (e[0].s < 0.0)
        {
            primero = e[1].distancia < e[0].distancia ? 0 : 1;
        }
    }
    a = e[primero];
    b = e[1 - primero];
}

}  // namespace

Punto3<double> centroide(const CadenaPuntos& puntos)
{
    Punto3<double> c(0, 0, 0);
    if (puntos.empty())
    {
        return c;
    }
    for (const auto& p : puntos)
    {
        c.x += p.x;
        c.y += p.y;
        c.z += p.z;
    }
    const double n = static_cast<double>(puntos.size());
    return Punto3<double>(c.x / n, c.y / n, c.z / n);
}

int orientacionCadena(const CadenaPuntos& puntos, const Punto3<double>& centro, bool cerrada)
{
    const auto angulo = [&](const Punto3<double>& p)
    {
        double a = std::atan2(p.y - centro.y, p.x - centro.x);
        if (a < 0.0)
        {
            a += kDosPi;
        }
        return a;
    };
    const int lados = numeroLados(puntos, cerrada);
    double total = 0.0;
    for (int i = 0; i < lados; ++i)
    {
        double paso = angulo(finLado(puntos, i)) - angulo(puntos[i]);
        if (paso > kPi)
        {
            paso -= kDosPi;
        }
        else if (paso < -kPi)
        {
            paso += kDosPi;
        }
        if (std::fabs(paso) < kGiroMinimo)
        {
            continue;
        }
        total += paso;
    }
    if (std::fabs(total) < kGiroMinimo)
    {
        return 0;
    }
    return total > 0.0 ? -1 : 1;
}

bool cruceSegmentos(const Punto3<double>& a, const Punto3<double>& b, const Punto3<double>& c,
                    const Punto3<double>& d, double& t, double& u)
{
    const double rx = b.x - a.x;
    const double ry = b.y - a.y;
    const double sx = d.x - c.x;
    const double sy = d.y - c.y;
    const double det = rx * sy - ry * sx;
    if (det == 0.0)
    {
        return false;
    }
    t = ((c.x - a.x) * sy - (c.y - a.y) * sx) / det;
    u = ((c.x - a.x) * ry - (c.y - a.y) * rx) / det;
    return t >= 0.0 && t <= 1.0 && u >= 0.0 && u <= 1.0;
}

bool cadenaSeCruza(const CadenaPuntos& puntos)
{
    const int lados = numeroLados(puntos, false);
    double t = 0.0;
    double u = 0.0;
    for (int i = 0; i < lados; ++i)
    {
        for (int j = i + 2; j < lados; ++j)
        {
            if (cruceSegmentos(puntos[i], puntos[i + 1], puntos[j], puntos[j + 1], t, u))
            {
                return true;
            }
        }
    }
    return false;
}

lugarCadena_t lugarMasCercano(const CadenaPuntos& cadena, bool cerrada, const Punto3<double>& p)
{
    lugarCadena_t mejor;
    double mejorDistancia = std::numeric_limits<double>::infinity();
    const int lados = numeroLados(cadena, cerrada);
    for (int i = 0; i < lados; ++i)
    {
        const Punto3<double>& a = cadena[i];
        const Punto3<double>& b = finLado(cadena, i);
        const double dx = b.x - a.x;
        const double dy = b.y - a.y;
        const double l2 = dx * dx + dy * dy;
        double t = 0.0;
        if (l2 > 0.0)
        {
            t = std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / l2, 0.0, 1.0);
        }
        const Punto3<double> q = interpola(a, b, t);
        const double d = distanciaPlanta(p, q);
        if (d < mejorDistancia)
        {
            mejorDistancia = d;
            mejor.lado = i;
            mejor.t = t;
            mejor.punto = q;
            mejor.distancia = d;
        }
    }
    return mejor;
}

std::vector<cruceCadenas_t> crucesCadenas(const CadenaPuntos& a, bool cerradaA,
                                          const CadenaPuntos& b, bool cerradaB)
{
    std::vector<cruceCadenas_t> cruces;
    const int ladosA = numeroLados(a, cerradaA);
    const int ladosB = numeroLados(b, cerradaB);
    for (int i = 0; i < ladosA; ++i)
    {
        for (int k = 0; k < ladosB; ++k)
        {
            double t = 0.0;
            double u = 0.0;
            if (!cruceSegmentos(a[i], finLado(a, i), b[k], finLado(b, k), t, u))
            {
                continue;
            }
            cruceCadenas_t c{i, t, k, u, interpola(a[i], finLado(a, i), t)};
            // A crossing through a vertex is met once from each side that meets there.
            const bool repetido =
                std::any_of(cruces.begin(), cruces.end(),
                            [&](const cruceCadenas_t& o)
                            {
                                return std::fabs((o.ladoB + o.tB) - (k + u)) < kMismoCruce &&
                                       distanciaPlanta(o.punto, c.punto) < kMismoCruce;
                            });
            if (!repetido)
            {
                cruces.push_back(c);
            }
        }
    }
    return cruces;
}

CadenaPuntos recortaEnPoligono(const CadenaPuntos& origen, const CadenaPuntos& poligono)
{
    const int m = static_cast<int>(origen.size());
    const int lados = numeroLados(poligono, true);
    if (m < 2 || lados == 0)
    {
        return origen;
    }
    // The crossing of side k of the origin that comes first (or last) along it, only beyond
    // parameter `desde`.
    const auto cruceLado =
        [&](int k, bool ultimo, double desde, double& tCruce, Punto3<double>& punto)
    {
        bool hay = false;
        for (int i = 0; i < lados; ++i)
        {
            double t = 0.0;
            double u = 0.0;
            if (!cruceSegmentos(origen[k], origen[k + 1], poligono[i], finLado(poligono, i), t,
                                u) ||
                t <= desde)
            {
                continue;
            }
            if (!hay || (ultimo ? t > tCruce : t < tCruce))
            {
                hay = true;
                tCruce = t;
                punto = interpola(poligono[i], finLado(poligono, i), u);
            }
        }
        return hay;
    };
    int inicio = -1;
    double tInicio = 0.0;
    Punto3<double> puntoInicio;
    for (int k = 0; k + 1 < m && inicio < 0; ++k)
    {
        if (cruceLado(k, false, -1.0, tInicio, puntoInicio))
        {
            inicio = k;
        }
    }
    if (inicio < 0)
    {
        return origen;
    }
    // From the end, down to the side of the first crossing: on that side only a crossing
    // beyond the first one, so that one straight side through the polygon is cut at both ends.
    int fin = -1;
    double tFin = 0.0;
    Punto3<double> puntoFin;
    for (int k = m - 2; k >= inicio && fin < 0; --k)
    {
        if (cruceLado(k, true, k == inicio ? tInicio : -1.0, tFin, puntoFin))
        {
            fin = k;
        }
    }
    CadenaPuntos recortado;
    anade(recortado, puntoInicio);
    const int ultimo = fin >= 0 ? fin : m - 1;
    for (int v = inicio + 1; v <= ultimo; ++v)
    {
        anade(recortado, origen[v]);
    }
    if (fin >= 0)
    {
        anade(recortado, puntoFin);
    }
    return recortado;
}

double longitudTramo(const CadenaPuntos& cadena, double s1, double s2)
{
    if (cadena.size() < 2 || s2 <= s1)
    {
        return 0.0;
    }
    double total = 0.0;
    Punto3<double> anterior = puntoEn(cadena, s1);
    for (int v = static_cast<int>(std::floor(s1)) + 1; v < s2; ++v)
    {
        total += anterior.distancia(cadena[v]);
        anterior = cadena[v];
    }
    return total + anterior.distancia(puntoEn(cadena, s2));
}

bool fusionaPoligono(const CadenaPuntos& destino, const CadenaPuntos& origen,
                     CadenaPuntos& resultado)
{
    CadenaPuntos poligono = destino;
    const bool coincide = poligono.size() > 1 && poligono.back() == poligono.front();
    if (coincide)
    {
        poligono.pop_back();
    }
    if (poligono.size() < 2 || origen.size() < 2)
    {
        return false;
    }
    // Both chains are brought to run clockwise round the polygon's centre, so that the origin
    // always replaces the stretch it runs alongside, whichever way each was drawn.
    const Punto3<double> centro = centroide(poligono);
    const bool invertido = orientacionCadena(poligono, centro, true) < 0;
    if (invertido)
    {
        std::reverse(poligono.begin(), poligono.end());
    }
    CadenaPuntos tramo = recortaEnPoligono(origen, poligono);
    if (orientacionCadena(tramo, centro, false) < 0)
    {
        std::reverse(tramo.begin(), tramo.end());
    }
    if (tramo.size() < 2)
    {
        return false;
    }
    const lugarCadena_t l1 = lugarMasCercano(poligono, true, tramo.front());
    const lugarCadena_t l2 = lugarMasCercano(poligono, true, tramo.back());
    const int i1 = l1.lado;
    const int i2 = l2.lado;
    const int n = static_cast<int>(poligono.size());
    CadenaPuntos nuevo;
    const auto copia = [&](int desde, int hasta)
    {
        for (int v = desde; v <= hasta; ++v)
        {
            anade(nuevo, poligono[v]);
        }
    };
    const auto copiaTramo = [&]()
    {
        for (const auto& p : tramo)
        {
            anade(nuevo, p);
        }
    };
    if (i1 < i2 || (i1 == i2 && l1.t <= l2.t))
    {
        // The ends follow the boundary's way round: the stretch from the first to the last
        // goes, and with both on one side (ties included) only the piece between them.
        copia(0, i1);
        copiaTramo();
        copia(i2 + 1, n - 1);
    }
    else if (i1 == i2)
    {
        // The origin runs nearly all the way round and comes back behind its start: it
        // replaces everything but the piece between its ends.
        copiaTramo();
    }
    else
    {
        // The stretch to replace runs through vertex 0.
        copia(i2 + 1, i1);
        copiaTramo();
    }
    if (nuevo.size() > 1 && nuevo.back() == nuevo.front())
    {
        nuevo.pop_back();
    }
    if (coincide)
    {
        nuevo.push_back(nuevo.front());
    }
    if (invertido)
    {
        std::reverse(nuevo.begin(), nuevo.end());
    }
    resultado = std::move(nuevo);
    return true;
}

bool fusionaCadena(CadenaPuntos& destino, const CadenaPuntos& origen, const AvisoVertice& aviso)
{
    const int n = static_cast<int>(destino.size());
    if (n < 2 || origen.size() < 2)
    {
        return false;
    }
    const bool anillo = destino.back() == destino.front();
    extremo_t a;
    extremo_t b;
    const std::vector<cruceCadenas_t> cruces = crucesCadenas(destino, false, origen, false);
    if (cruces.size() >= 2)
    {
        const auto porLugar = [](const cruceCadenas_t& x, const cruceCadenas_t& y)
        { return x.ladoA + x.tA < y.ladoA + y.tA; };
        const auto [primero, ultimo] = std::minmax_element(cruces.begin(), cruces.end(), porLugar);
        a = {primero->ladoA + primero->tA, primero->ladoB + primero->tB, primero->punto, 0.0};
        b = {ultimo->ladoA + ultimo->tA, ultimo->ladoB + ultimo->tB, ultimo->punto, 0.0};
    }
    else
    {
        extremosCercanos(destino, origen, anillo, cruces, a, b);
    }

    // On a ring the shorter arc goes; on equal lengths the one from the first crossing to the
    // second, as on an open chain.
    bool envuelve = false;
    if (anillo)
    {
        const double arco = longitudTramo(destino, a.s, b.s);
        const double resto = longitudTramo(destino, 0.0, n - 1.0) - arco;
        envuelve = resto < arco;
    }

    // Deletes `cuantos` vertices from index `indice` on; a refused one stays and is stepped over.
    const auto borra = [&](int indice, int cuantos)
    {
        for (int i = 0; i < cuantos && indice < static_cast<int>(destino.size()); ++i)
        {
            if (aviso(false, indice, destino[indice]))
            {
                destino.erase(destino.begin() + indice);
            }
            else
            {
                ++indice;
            }
        }
    };
    const auto inserta = [&](int indice, const CadenaPuntos& puntos)
    {
        for (const auto& p : puntos)
        {
            if (aviso(true, indice, p))
            {
                destino.insert(destino.begin() + indice, p);
                ++indice;
            }
        }
    };

    CadenaPuntos nuevos;
    if (!envuelve)
    {
        const int antesA = static_cast<int>(std::floor(a.s));
        const int trasB = static_cast<int>(std::ceil(b.s));
        if (!esVertice(destino, antesA, a.punto))
        {
            nuevos.push_back(a.punto);
        }
        tramoOrigen(origen, a.r, b.r, nuevos);
        if (!esVertice(destino, trasB, b.punto))
        {
            anade(nuevos, b.punto);
        }
        borra(antesA + 1, std::max(0, trasB - antesA - 1));
        inserta(antesA + 1, nuevos);
    }
    else
    {
        const int trasA = static_cast<int>(std::ceil(a.s));
        const int antesB = static_cast<int>(std::floor(b.s));
        if (!esVertice(destino, antesB, b.punto))
        {
            nuevos.push_back(b.punto);
        }
        tramoOrigen(origen, b.r, a.r, nuevos);
        if (!esVertice(destino, trasA, a.punto))
        {
            anade(nuevos, a.punto);
        }
        borra(antesB + 1, n - 1 - antesB);
        borra(0, trasA);
        inserta(static_cast<int>(destino.size()), nuevos);
    }
    if (anillo && !destino.empty() && !(destino.back() == destino.front()))
    {
        inserta(static_cast<int>(destino.size()), CadenaPuntos{destino.front()});
    }
    return true;
}

}  // namespace cad
