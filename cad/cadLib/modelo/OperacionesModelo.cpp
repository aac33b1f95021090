// Operations on whole models: union, a hole by a polyline, contour lines.
#include "modelo/OperacionesModelo.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <deque>
#include <limits>
#include <set>
#include <tuple>

namespace cad
{

void Modelo3D::agrega(const Modelo3D& otro)
{
    const auto nv = static_cast<int32_t>(vertices_.size());
    const int32_t na = aristas_.size();
    const auto nc = static_cast<int32_t>(caras_.size());
    const auto mas = [](int32_t i, int32_t k) { return i == -1 ? -1 : i + k; };
    vertices_.reserve(vertices_.size() + otro.vertices_.size());
    // A vertex keeps its `arista`, which names an edge of this model's part of the table until
    // an edit touches the vertex: that is how the union has always behaved.
    vertices_.insert(vertices_.end(), otro.vertices_.begin(), otro.vertices_.end());
    aristas_.lista.reserve(aristas_.lista.size() + otro.aristas_.lista.size());
    for (Arista a : otro.aristas_)
    {
        // A dead edge stays dead: shifting its -1 ends would turn it into a live edge between
        // two vertices it never joined.
        a.vertice[0] = mas(a.vertice[0], nv);
        a.vertice[1] = mas(a.vertice[1], nv);
        a.siguienteCara0 = mas(a.siguienteCara0, na);
        a.anteriorCara0 = mas(a.anteriorCara0, na);
        a.siguienteCara1 = mas(a.siguienteCara1, na);
        a.anteriorCara1 = mas(a.anteriorCara1, na);
        a.cara[0] = mas(a.cara[0], nc);
        a.cara[1] = mas(a.cara[1], nc);
        aristas_.lista.push_back(a);
    }
    caras_.reserve(caras_.size() + otro.caras_.size());
    for (cara_t c : otro.caras_)
    {
        // Shifted even when -1: a deleted face of the other model comes back naming an edge.
        c.arista += na;
        caras_.push_back(c);
    }
    modificado = 1;
}

void desplazaFrontera(Modelo3D& modelo, double distancia)
{
    const auto nv = static_cast<int32_t>(modelo.vertices().size());
    std::set<int32_t> frontera;
    for (const Arista& a : modelo.aristas())
    {
        if (a.esFrontera())
        {
            for (const int32_t v : a.vertice)
            {
                // A dead edge has no ends to move.
                if (v >= 0 && v < nv)
                {
                    frontera.insert(v);
                }
            }
        }
    }
    const Punto3<double> c = modelo.centroide();
    for (const int32_t v : frontera)
    {
        const Punto3<double> p = modelo.getVertice(v).punto;
        modelo.setPunto(v, p + (p - c).unit() * distancia);
    }
}

void uneExtension(const Modelo3D& a, const Modelo3D& b, Modelo3D& salida)
{
    // An empty model has no centroid: the other one's vertices must not turn into NaN.
    double d = a.centroide().distancia(b.centroide());
    d = std::isfinite(d) ? d : 0;
    Modelo3D copiaA(a);
    Modelo3D copiaB(b);
    desplazaFrontera(copiaA, d);
    desplazaFrontera(copiaB, d);
    salida = copiaA;
    salida.agrega(copiaB);
}

namespace
{

// The product of the last three points' two steps, the turning of a cycle where it ends.
template <class Puntos>
Vector3D<double> giroFinal(const Puntos& p)
{
    Vector3D<double> giro(0, 0, 0);
    for (size_t k = 2; k < p.size(); ++k)
    {
        giro = (p[k - 1] - p[k - 2]).cross(p[k] - p[k - 1]);
    }
    return giro;
}

}  // namespace

bool huecoPolilinea(Modelo3D& modelo, int32_t cara, const std::vector<Punto3<double>>& puntos,
                    bool cerrada)
{
    if (!cerrada)
    {
        return false;
    }
    std::vector<int32_t> ciclo;
    modelo.getVerticesCara(cara, ciclo);
    if (ciclo.size() < 3 || puntos.size() < 3)
    {
        return false;
    }
    std::vector<Punto3<double>> esquinas;
    esquinas.reserve(ciclo.size());
    for (const int32_t v : ciclo)
    {
        esquinas.push_back(modelo.getVertice(v).punto);
    }
    const Vector3D<float> nf = modelo.normalCara(cara);
    const Vector3D<double> n(nf.x, nf.y, nf.z);
    // A face whose first corners lie in a line has no normal: every point would project to
    // the origin, so the face is left as it is.
    if (!(n.modulo() > 0))
    {
        return false;
    }
    const Plano3D<double> plano(esquinas[0], n);
    std::vector<Punto3<double>> h;
    h.reserve(puntos.size());
    for (const Punto3<double>& p : puntos)
    {
        h.push_back(plano.proyecta(p));
    }
    // The hole must turn against the face's boundary.
    if (giroFinal(h).unit().dot(giroFinal(esquinas)) > 0)
    {
        std::reverse(h.begin(), h.end());
    }
    size_t mi = 0;
    size_t mj = 0;
    double mejor = std::numeric_limits<double>::max();
    for (size_t i = 0; i < h.size(); ++i)
    {
        for (size_t j = 0; j < esquinas.size(); ++j)
        {
            const double d = h[i].distancia(esquinas[j]);
            if (d < mejor)
            {
                mejor = d;
                mi = i;
                mj = j;
            }
        }
    }
    modelo.borraCara(cara);
    std::vector<int32_t> nuevo;
    nuevo.reserve(ciclo.size() + h.size() + 2);
    for (size_t k = 0; k <= ciclo.size(); ++k)
    {
        nuevo.push_back(ciclo[(mj + k) % ciclo.size()]);
    }
    const auto base = static_cast<int32_t>(modelo.vertices().size());
    for (const Punto3<double>& p : h)
    {
        modelo.nuevoVertice(p, Vector2D<float>(0, 0));
    }
    for (size_t k = 0; k <= h.size(); ++k)
    {
        nuevo.push_back(base + static_cast<int32_t>((mi + k) % h.size()));
    }
    modelo.nuevaCara(static_cast<int>(nuevo.size()), nuevo.data(), true, 0);
    return true;
}

namespace
{

// Levels of a sweep: a vertex's height is its position along the sweep's normal, a level's
// value the height of its plane, and a vertex's value on the plane of a level is height
// minus level. A side crosses a level when exactly one end has a value of 0 or more, which is
// height >= level, exactly.
struct Barrido
{
    const Modelo3D& modelo;
    std::vector<double> alturas;  // per vertex record
    std::vector<double> niveles;  // ascending

    // Levels that cross the span from `bajo` to `alto`: those with bajo < nivel <= alto.
    std::pair<size_t, size_t> rango(double bajo, double alto) const
    {
        const auto primero = std::upper_bound(niveles.begin(), niveles.end(), bajo);
        const auto fin = std::upper_bound(primero, niveles.end(), alto);
        return {static_cast<size_t>(primero - niveles.begin()),
                static_cast<size_t>(fin - niveles.begin())};
    }

    // Where the side u-w meets level i. The two ends are taken in one order whatever side the
    // caller walks them from, by position and then by index, so that every face on the edge
    // (and a face on a copy of its vertices) gets the same bits; an end on the level is the
    // hit itself.
    Punto3<double> corte(int32_t u, int32_t w, size_t i) const
    {
        const Punto3<double>& pu = modelo.getVertice(u).punto;
        const Punto3<double>& pw = modelo.getVertice(w).punto;
        if (std::tie(pw.x, pw.y, pw.z, w) < std::tie(pu.x, pu.y, pu.z, u))
        {
            return corte(w, u, i);
        }
        const double vu = alturas[static_cast<size_t>(u)] - niveles[i];
        const double vw = alturas[static_cast<size_t>(w)] - niveles[i];
        if (vu == 0)
        {
            return pu;
        }
        if (vw == 0)
        {
            return pw;
        }
        // The ends lie on either side, so the ratio is within 0..1 however short the side
        // is along the normal: a crossing always has its hit.
        return pu + (pw - pu) * (vu / (vu - vw));
    }

    // Each level's hits, face after face, side after side, into salida[level]. The hits of
    // an edge on all its levels are computed once, before the faces are walked.
    void corta(std::vector<std::vector<Punto3<double>>>& salida) const
    {
        const Aristas& aristas = modelo.aristas();
        const auto nv = static_cast<int32_t>(alturas.size());
        const auto vivo = [nv](int32_t v) { return v >= 0 && v < nv; };
        std::vector<int64_t> desde(static_cast<size_t>(aristas.size()) + 1, 0);
        std::vector<uint32_t> primerNivel(static_cast<size_t>(aristas.size()), 0);
        for (int32_t e = 0; e < aristas.size(); ++e)
        {
            const Arista& a = aristas[e];
            int64_t n = 0;
            if (vivo(a.vertice[0]) && vivo(a.vertice[1]))
            {
                const double h0 = alturas[static_cast<size_t>(a.vertice[0])];
                const double h1 = alturas[static_cast<size_t>(a.vertice[1])];
                const auto [i0, i1] = rango(std::min(h0, h1), std::max(h0, h1));
                primerNivel[static_cast<size_t>(e)] = static_cast<uint32_t>(i0);
                n = static_cast<int64_t>(i1 - i0);
            }
            desde[static_cast<size_t>(e) + 1] = desde[static_cast<size_t>(e)] + n;
        }
        std::vector<Punto3<double>> cortes(static_cast<size_t>(desde.back()));
        for (int32_t e = 0; e < aristas.size(); ++e)
        {
            const Arista& a = aristas[e];
            const size_t i0 = primerNivel[static_cast<size_t>(e)];
            for (int64_t k = desde[static_cast<size_t>(e)]; k < desde[static_cast<size_t>(e) + 1];
                 ++k)
            {
                cortes[static_cast<size_t>(k)] =
                    corte(a.vertice[0], a.vertice[1],
                          i0 + static_cast<size_t>(k - desde[static_cast<size_t>(e)]));
            }
        }
        std::vector<int32_t> lados;
        std::vector<int32_t> ciclo;
        for (int32_t f = 0; f < static_cast<int32_t>(modelo.caras().size()); ++f)
        {
            // One walk: corner k is the end that side k shares with the side before it, as
            // getVerticesCara finds it. A face whose walk broke (a damaged record) has a side
            // that shares no end with the one before: it is passed over rather than paired
            // wrongly.
            modelo.getAristasCara(f, lados);
            ciclo.clear();
            for (size_t k = 0; k < lados.size(); ++k)
            {
                const Arista& previa = aristas[lados[k == 0 ? lados.size() - 1 : k - 1]];
                const Arista& a = aristas[lados[k]];
                const int32_t v = previa.toca(a.vertice[0])   ? a.vertice[0]
                                  : previa.toca(a.vertice[1]) ? a.vertice[1]
                                                              : -1;
                if (!vivo(v))
                {
                    break;
                }
                ciclo.push_back(v);
            }
            if (ciclo.size() < 2 || ciclo.size() != lados.size())
            {
                continue;
            }
            double bajo = alturas[static_cast<size_t>(ciclo[0])];
            double alto = bajo;
            for (const int32_t v : ciclo)
            {
                bajo = std::min(bajo, alturas[static_cast<size_t>(v)]);
                alto = std::max(alto, alturas[static_cast<size_t>(v)]);
            }
            const auto [i0, i1] = rango(bajo, alto);
            for (size_t i = i0; i < i1; ++i)
            {
                for (size_t k = 0; k < ciclo.size(); ++k)
                {
                    const int32_t u = ciclo[k];
                    const int32_t w = ciclo[(k + 1) % ciclo.size()];
                    if ((alturas[static_cast<size_t>(u)] >= niveles[i]) ==
                        (alturas[static_cast<size_t>(w)] >= niveles[i]))
                    {
                        continue;
                    }
                    const Arista& a = aristas[lados[k]];
                    const size_t j = primerNivel[static_cast<size_t>(lados[k])];
                    const int64_t pos = desde[static_cast<size_t>(lados[k])] +
                                        static_cast<int64_t>(i) - static_cast<int64_t>(j);
                    if (a.toca(u) && a.toca(w) && i >= j &&
                        pos < desde[static_cast<size_t>(lados[k]) + 1])
                    {
                        salida[i].push_back(cortes[static_cast<size_t>(pos)]);
                    }
                    else
                    {
                        salida[i].push_back(corte(u, w, i));
                    }
                }
            }
        }
    }
};

double altura(const Vector3D<double>& n, const Punto3<double>& p)
{
    return n.x * p.x + n.y * p.y + n.z * p.z;
}

void alturas(const Modelo3D& modelo, const Vector3D<double>& n, std::vector<double>& out)
{
    out.clear();
    out.reserve(modelo.vertices().size());
    for (const vertice_t& v : modelo.vertices())
    {
        out.push_back(altura(n, v.punto));
    }
}

}  // namespace

void cortaPlano(const Modelo3D& modelo, const Plano3D<double>& plano,
                std::vector<Punto3<double>>& puntos)
{
    Barrido barrido{modelo, {}, {-plano.d}};
    alturas(modelo, Vector3D<double>(plano.a, plano.b, plano.c), barrido.alturas);
    std::vector<std::vector<Punto3<double>>> salida(1);
    salida[0].swap(puntos);
    barrido.corta(salida);
    salida[0].swap(puntos);
}

std::vector<double> cotasIsolineas(const Modelo3D& modelo, const Vector3D<double>& direccion,
                                   double intervalo)
{
    std::vector<double> cotas;
    if (!(intervalo > 0) || modelo.vertices().empty())
    {
        return cotas;
    }
    const Rect3<double> caja = modelo.caja();
    const Punto3<double> c = caja.centro();
    const double r = c.distancia(caja.maximo);
    // A sweep that would hold more levels than memory does (a tiny step, a box reaching to
    // the largest doubles) cuts nothing.
    if (!(2 * r / intervalo <= kMaximoCotas))
    {
        return cotas;
    }
    const Punto3<double> p0 = c - direccion * r;
    for (size_t i = 0;; ++i)
    {
        const double t = static_cast<double>(i) * intervalo;
        if (!(t < 2 * r))
        {
            break;
        }
        cotas.push_back(altura(direccion, p0 + direccion * t));
    }
    return cotas;
}

void isolineas(const Modelo3D& modelo, const Vector3D<double>& direccion,
               std::vector<std::vector<Punto3<double>>>& normales,
               std::vector<std::vector<Punto3<double>>>& maestras, double intervalo)
{
    Barrido barrido{modelo, {}, cotasIsolineas(modelo, direccion, intervalo)};
    if (barrido.niveles.empty())
    {
        return;
    }
    // Rounding could in principle make two neighbouring levels swap; the search by range needs
    // them in order, and each level keeps its own list whatever its place.
    std::vector<size_t> orden(barrido.niveles.size());
    for (size_t i = 0; i < orden.size(); ++i)
    {
        orden[i] = i;
    }
    std::stable_sort(orden.begin(), orden.end(),
                     [&](size_t x, size_t y) { return barrido.niveles[x] < barrido.niveles[y]; });
    const std::vector<double> niveles = barrido.niveles;
    for (size_t i = 0; i < orden.size(); ++i)
    {
        barrido.niveles[i] = niveles[orden[i]];
    }
    alturas(modelo, direccion, barrido.alturas);
    std::vector<std::vector<Punto3<double>>> salida(orden.size());
    barrido.corta(salida);
    std::vector<std::vector<Punto3<double>>> porNivel(orden.size());
    for (size_t i = 0; i < orden.size(); ++i)
    {
        porNivel[orden[i]].swap(salida[i]);
    }
    for (size_t i = 0; i < porNivel.size(); ++i)
    {
        (i % 5 == 0 ? maestras : normales).push_back(std::move(porNivel[i]));
    }
}

namespace
{

// The bits of a coordinate as a sort key; -0 and 0 are one coordinate.
uint64_t bits(double c)
{
    c = c == 0 ? 0.0 : c;
    uint64_t b = 0;
    std::memcpy(&b, &c, sizeof b);
    return b;
}

bool cerca(const Punto3<double>& a, const Punto3<double>& b, double tolerancia)
{
    return tolerancia == 0 ? a == b : a.distancia(b) <= tolerancia;
}

// The pairs that chain: a pair within tolerance of itself, and a pair exactly equal (in either
// order) to an earlier one, add nothing. Equal pairs are found by sorting their ends' bits.
std::vector<std::pair<Punto3<double>, Punto3<double>>> paresValidos(
    const std::vector<Punto3<double>>& puntos, double tolerancia)
{
    std::vector<std::pair<Punto3<double>, Punto3<double>>> pares;
    pares.reserve(puntos.size() / 2);
    for (size_t k = 0; k + 1 < puntos.size(); k += 2)
    {
        if (!cerca(puntos[k], puntos[k + 1], tolerancia))
        {
            pares.emplace_back(puntos[k], puntos[k + 1]);
        }
    }
    using clave_t = std::array<uint64_t, 7>;  // the lower end, the higher end, the index
    std::vector<clave_t> claves(pares.size());
    for (size_t k = 0; k < pares.size(); ++k)
    {
        const Punto3<double>& a = pares[k].first;
        const Punto3<double>& b = pares[k].second;
        std::array<uint64_t, 3> ka{bits(a.x), bits(a.y), bits(a.z)};
        std::array<uint64_t, 3> kb{bits(b.x), bits(b.y), bits(b.z)};
        if (kb < ka)
        {
            std::swap(ka, kb);
        }
        claves[k] = {ka[0], ka[1], ka[2], kb[0], kb[1], kb[2], k};
    }
    std::sort(claves.begin(), claves.end());
    std::vector<char> repetido(pares.size(), 0);
    for (size_t c = 1; c < claves.size(); ++c)
    {
        if (std::equal(claves[c].begin(), claves[c].end() - 1, claves[c - 1].begin()))
        {
            repetido[claves[c][6]] = 1;
        }
    }
    size_t quedan = 0;
    for (size_t k = 0; k < pares.size(); ++k)
    {
        if (repetido[k] == 0)
        {
            pares[quedan++] = pares[k];
        }
    }
    pares.resize(quedan);
    return pares;
}

// A chain grows by a pair at its end or at its start: the pair's other point goes there.
// Tried in this order: the pair's first point at the chain's end, its second at the end,
// its first at the start, its second at the start.
bool anade(std::deque<Punto3<double>>& cadena, const std::pair<Punto3<double>, Punto3<double>>& p,
           double tolerancia)
{
    if (cerca(p.first, cadena.back(), tolerancia))
    {
        cadena.push_back(p.second);
    }
    else if (cerca(p.second, cadena.back(), tolerancia))
    {
        cadena.push_back(p.first);
    }
    else if (cerca(p.first, cadena.front(), tolerancia))
    {
        cadena.push_front(p.second);
    }
    else if (cerca(p.second, cadena.front(), tolerancia))
    {
        cadena.push_front(p.first);
    }
    else
    {
        return false;
    }
    return true;
}

void cierra(std::deque<Punto3<double>>& cadena, double tolerancia, std::vector<cadena_t>& out)
{
    cadena_t c;
    c.cerrada = cadena.size() > 2 && cerca(cadena.front(), cadena.back(), tolerancia);
    if (c.cerrada)
    {
        cadena.pop_back();
    }
    c.puntos.assign(cadena.begin(), cadena.end());
    out.push_back(std::move(c));
}

// Chains by exact ends in time proportional to the pairs (and a sort). Every end gets the
// number of its point, so that the pairs at each point can be listed in list order; the
// first pair left at either end of a chain is then at the head of one of two lists, and the
// same pairs join in the same order as the plain search would take them.
void encadenaExacta(const std::vector<std::pair<Punto3<double>, Punto3<double>>>& pares,
                    std::vector<cadena_t>& cadenas)
{
    const size_t n = pares.size();
    struct extremo_t
    {
        uint64_t x, y, z;
        uint32_t cual;  // 2 * pair + end
        bool operator<(const extremo_t& o) const
        {
            return std::tie(x, y, z, cual) < std::tie(o.x, o.y, o.z, o.cual);
        }
        bool mismoPunto(const extremo_t& o) const { return x == o.x && y == o.y && z == o.z; }
    };
    std::vector<extremo_t> extremos(2 * n);
    for (size_t k = 0; k < n; ++k)
    {
        for (uint32_t lado = 0; lado < 2; ++lado)
        {
            const Punto3<double>& p = lado == 0 ? pares[k].first : pares[k].second;
            extremos[2 * k + lado] = {bits(p.x), bits(p.y), bits(p.z),
                                      static_cast<uint32_t>(2 * k + lado)};
        }
    }
    std::sort(extremos.begin(), extremos.end());
    // grupo[2 k + lado]: the number of the point at that end.
    std::vector<uint32_t> grupo(2 * n);
    std::vector<uint32_t> inicioGrupo;  // into `extremos`, one past the last group at the end
    for (size_t e = 0; e < extremos.size(); ++e)
    {
        if (e == 0 || !extremos[e].mismoPunto(extremos[e - 1]))
        {
            inicioGrupo.push_back(static_cast<uint32_t>(e));
        }
        grupo[extremos[e].cual] = static_cast<uint32_t>(inicioGrupo.size() - 1);
    }
    inicioGrupo.push_back(static_cast<uint32_t>(extremos.size()));
    // The ends of each point sorted by `cual` are its pairs in list order; cursor[g] skips
    // those already taken.
    std::vector<uint32_t> cursor(inicioGrupo.begin(), inicioGrupo.end() - 1);
    std::vector<char> usado(n, 0);
    const auto primeroLibre = [&](uint32_t g) -> size_t
    {
        uint32_t& c = cursor[g];
        while (c < inicioGrupo[g + 1] && usado[extremos[c].cual / 2] != 0)
        {
            ++c;
        }
        return c < inicioGrupo[g + 1] ? extremos[c].cual / 2 : n;
    };
    for (size_t inicio = 0; inicio < n; ++inicio)
    {
        if (usado[inicio] != 0)
        {
            continue;
        }
        usado[inicio] = 1;
        std::deque<Punto3<double>> cadena{pares[inicio].first, pares[inicio].second};
        uint32_t frente = grupo[2 * inicio];
        uint32_t fondo = grupo[2 * inicio + 1];
        for (;;)
        {
            const size_t k = std::min(primeroLibre(fondo), primeroLibre(frente));
            if (k == n)
            {
                break;
            }
            usado[k] = 1;
            // As anade tries them: the pair's first point at the chain's end, its second at
            // the end, its first at the start, its second at the start.
            const uint32_t g0 = grupo[2 * k];
            const uint32_t g1 = grupo[2 * k + 1];
            if (g0 == fondo || g1 == fondo)
            {
                cadena.push_back(g0 == fondo ? pares[k].second : pares[k].first);
                fondo = g0 == fondo ? g1 : g0;
            }
            else
            {
                cadena.push_front(g0 == frente ? pares[k].second : pares[k].first);
                frente = g0 == frente ? g1 : g0;
            }
        }
        cierra(cadena, 0, cadenas);
    }
}

}  // namespace

void encadena(const std::vector<Punto3<double>>& puntos, std::vector<cadena_t>& cadenas,
              double tolerancia)
{
    const auto pares = paresValidos(puntos, tolerancia);
    std::vector<char> usado(pares.size(), 0);
    if (tolerancia != 0)
    {
        // Any tolerance: the plain search, each growth by the first pair left that fits.
        for (size_t inicio = 0; inicio < pares.size(); ++inicio)
        {
            if (usado[inicio] != 0)
            {
                continue;
            }
            usado[inicio] = 1;
            std::deque<Punto3<double>> cadena{pares[inicio].first, pares[inicio].second};
            for (bool crece = true; crece;)
            {
                crece = false;
                for (size_t k = inicio + 1; k < pares.size() && !crece; ++k)
                {
                    if (usado[k] == 0 && anade(cadena, pares[k], tolerancia))
                    {
                        usado[k] = 1;
                        crece = true;
                    }
                }
            }
            cierra(cadena, tolerancia, cadenas);
        }
        return;
    }
    encadenaExacta(pares, cadenas);
}

}  // namespace cad
