// Modelo3D and Aristas, the topological edits: splitting, joining, cutting, deleting,
// reversing, extruding.
#include <algorithm>
#include <set>

#include "modelo/Modelo3D.h"
#include "modelo/PuntosCalientes.h"

namespace cad
{

namespace
{

int32_t& siguienteDe(Arista& a, int lado)
{
    return lado == 0 ? a.siguienteCara0 : a.siguienteCara1;
}

int32_t& anteriorDe(Arista& a, int lado)
{
    return lado == 0 ? a.anteriorCara0 : a.anteriorCara1;
}

// The wing of `x` that points to `hacia`, next or previous, on the side that carries `cara`
// first: a face's edges need not all carry it on the same side (a cube built face by face
// mixes them), and writing the other side would break the neighbour's cycle.
int32_t* alaHacia(Arista& x, int32_t cara, bool siguiente, int32_t hacia)
{
    for (const bool conCara : {true, false})
    {
        for (int lado = 0; lado < 2; ++lado)
        {
            if (conCara != (x.cara[lado] == cara))
            {
                continue;
            }
            int32_t& ala = siguiente ? siguienteDe(x, lado) : anteriorDe(x, lado);
            if (ala == hacia)
            {
                return &ala;
            }
        }
    }
    return nullptr;
}

// Room for one more record without moving the others during an edit that holds references.
void reservaUna(std::vector<Arista>& lista)
{
    if (lista.size() == lista.capacity())
    {
        lista.reserve(std::max<size_t>(2 * lista.size(), 64));
    }
}

// Both ends name vertex records: an edge filled in code may hold any index, and -2 passes
// esValida.
bool extremosEnRango(const Arista& a, size_t nv)
{
    return a.vertice[0] >= 0 && static_cast<size_t>(a.vertice[0]) < nv && a.vertice[1] >= 0 &&
           static_cast<size_t>(a.vertice[1]) < nv;
}

}  // namespace

// -------------------------------------------------------------------------------------------
// Edge-table primitives

void Aristas::parte(int32_t nuevo, int32_t arista)
{
    if (!enRango(arista) || !lista[static_cast<size_t>(arista)].esValida())
    {
        return;
    }
    reservaUna(lista);
    const int32_t n = size();
    Arista& e = lista[static_cast<size_t>(arista)];
    const int32_t q = e.vertice[1];

    struct Enlace
    {
        int32_t* deE;  // e's wing towards the neighbour at q
        int32_t* deX;  // the neighbour's wing back to e
        bool siguiente;
        int32_t vecino;
        int32_t cara;
    };
    Enlace enlaces[2];
    int lados = 0;
    for (int lado = 0; lado < 2; ++lado)
    {
        if (siguienteDe(e, lado) < 0)
        {
            continue;
        }
        // Side 0 runs p -> q, so the neighbour at q follows e there and precedes it on side
        // 1; the wings decide when the record says otherwise.
        bool siguiente = lado == 0;
        int32_t x = siguiente ? siguienteDe(e, lado) : anteriorDe(e, lado);
        if (!enRango(x) || !lista[static_cast<size_t>(x)].toca(q))
        {
            siguiente = !siguiente;
            x = siguiente ? siguienteDe(e, lado) : anteriorDe(e, lado);
        }
        if (!enRango(x) || !lista[static_cast<size_t>(x)].toca(q))
        {
            return;
        }
        int32_t* vuelta = alaHacia(lista[static_cast<size_t>(x)], e.cara[lado], !siguiente, arista);
        if (vuelta == nullptr)
        {
            return;
        }
        enlaces[lados++] = {siguiente ? &siguienteDe(e, lado) : &anteriorDe(e, lado), vuelta,
                            siguiente, x, e.cara[lado]};
    }
    if (lados == 0)
    {
        return;  // an isolated edge is not split
    }
    Arista pieza;
    pieza.vertice[0] = nuevo;
    pieza.vertice[1] = q;
    for (int i = 0; i < lados; ++i)
    {
        const Enlace& l = enlaces[i];
        *l.deE = n;
        *l.deX = n;
        // The first filled side lands in cara[0]. Its wings follow that face's walk, so a face
        // that lay on side 1 of e walks vecino -> N -> e and its cycle still closes.
        pieza.cara[i] = l.cara;
        siguienteDe(pieza, i) = l.siguiente ? l.vecino : arista;
        anteriorDe(pieza, i) = l.siguiente ? arista : l.vecino;
    }
    e.vertice[1] = nuevo;
    lista.push_back(pieza);
    alNuevaArista(n);
}

bool Aristas::parteCara(const std::vector<int32_t>& cadena,
                        const std::vector<handle_arista_t>& aristasCara, int32_t cara)
{
    if (cadena.size() < 2 || cadena.front() == cadena.back())
    {
        return false;
    }
    const int32_t s0 = cadena.front();
    const int32_t sk = cadena.back();
    const auto toca = [this](int32_t e, int32_t v)
    { return enRango(e) && lista[static_cast<size_t>(e)].toca(v); };
    std::vector<int32_t> h;
    for (const handle_arista_t& a : aristasCara)
    {
        if (toca(a.indice, s0) || toca(a.indice, sk))
        {
            h.push_back(a.indice);
            if (h.size() == 4)
            {
                break;
            }
        }
    }
    if (h.size() < 3)
    {
        return false;
    }
    size_t giro = 0;
    while (giro < h.size() && !(toca(h[giro], s0) && toca(h[(giro + 1) % h.size()], s0)))
    {
        ++giro;
    }
    if (giro == h.size())
    {
        return false;
    }
    std::rotate(h.begin(), h.begin() + static_cast<std::ptrdiff_t>(giro), h.end());
    // The walk meets s0 between a1 and a2. At sk it meets pk then nk: b1, b2 with four
    // handles; with three, one boundary edge joins s0 and sk and stands in for one of them,
    // on whichever side of s0 it lies.
    const int32_t a1 = h[0];
    const int32_t a2 = h[1];
    int32_t pk = h[2];
    int32_t nk = h.size() == 4 ? h[3] : -1;
    if (h.size() == 3)
    {
        if (toca(a2, sk))
        {
            pk = a2;
            nk = h[2];
        }
        else
        {
            pk = h[2];
            nk = a1;
        }
    }
    const auto m = static_cast<int32_t>(size());
    const auto k = static_cast<int32_t>(cadena.size() - 1);
    const int32_t ultima = m + k - 1;
    int32_t* alas[4] = {
        alaHacia(lista[static_cast<size_t>(a1)], cara, true, a2),
        alaHacia(lista[static_cast<size_t>(a2)], cara, false, a1),
        alaHacia(lista[static_cast<size_t>(pk)], cara, true, nk),
        alaHacia(lista[static_cast<size_t>(nk)], cara, false, pk),
    };
    if (std::find(std::begin(alas), std::end(alas), nullptr) != std::end(alas))
    {
        return false;
    }
    *alas[0] = m;
    *alas[1] = m;
    *alas[2] = ultima;
    *alas[3] = ultima;
    lista.reserve(lista.size() + static_cast<size_t>(k));
    for (int32_t i = 0; i < k; ++i)
    {
        Arista r;
        r.vertice[0] = cadena[static_cast<size_t>(i)];
        r.vertice[1] = cadena[static_cast<size_t>(i) + 1];
        r.cara[0] = cara;
        r.cara[1] = cara;
        r.anteriorCara0 = i == 0 ? a1 : m + i - 1;
        r.siguienteCara1 = i == 0 ? a2 : m + i - 1;
        r.siguienteCara0 = i == k - 1 ? nk : m + i + 1;
        r.anteriorCara1 = i == k - 1 ? pk : m + i + 1;
        lista.push_back(r);
    }
    return true;
}

void Aristas::reasignaCara(int32_t arista, int32_t caraVieja, int32_t caraNueva)
{
    int32_t e = arista;
    for (int32_t pasos = 0; pasos < size() && enRango(e); ++pasos)
    {
        Arista& a = lista[static_cast<size_t>(e)];
        int32_t siguiente = -1;
        if (a.cara[0] == caraVieja)
        {
            siguiente = a.siguienteCara0;
            a.cara[0] = caraNueva;
        }
        else if (a.cara[1] == caraVieja)
        {
            siguiente = a.siguienteCara1;
            a.cara[1] = caraNueva;
        }
        else
        {
            return;
        }
        if (siguiente == arista)
        {
            return;
        }
        e = siguiente;
    }
}

int32_t Aristas::aristaDeCara(int32_t cara) const
{
    if (cara < 0)
    {
        return -1;
    }
    for (int32_t e = 0; e < size(); ++e)
    {
        const Arista& a = lista[static_cast<size_t>(e)];
        if (a.cara[0] == cara || a.cara[1] == cara)
        {
            return e;
        }
    }
    return -1;
}

// -------------------------------------------------------------------------------------------
// Deleting

void Modelo3D::borraCara(int32_t cara)
{
    if (cara < 0 || static_cast<size_t>(cara) >= caras_.size() ||
        caras_[static_cast<size_t>(cara)].arista == -1)
    {
        return;
    }
    std::vector<int32_t> ciclo;
    getAristasCara(cara, ciclo);
    std::set<int32_t> sueltos;
    for (const int32_t e : ciclo)
    {
        Arista& a = aristas_[e];
        for (int lado = 0; lado < 2; ++lado)
        {
            if (a.cara[lado] == cara)
            {
                siguienteDe(a, lado) = -1;
                anteriorDe(a, lado) = -1;
                a.cara[lado] = -1;
            }
        }
        if (a.cara[0] == -1 && a.cara[1] == -1)
        {
            sueltos.insert(a.vertice[0]);
            sueltos.insert(a.vertice[1]);
            a.vertice[0] = -1;
            a.vertice[1] = -1;
        }
    }
    const auto nv = static_cast<int32_t>(vertices_.size());
    std::vector<int32_t> estrella;
    for (const int32_t v : sueltos)
    {
        if (v < 0 || v >= nv)
        {
            continue;
        }
        vertice_t& vertice = vertices_[static_cast<size_t>(v)];
        // The star is searched from the vertex's own edge; when that one has just died it
        // leads nowhere, and a surviving edge of the deleted cycle at v is the way in, so a
        // vertex that keeps live edges is not taken for dead.
        int32_t inicial = vertice.arista;
        if (!aristas_.enRango(inicial) || !aristas_[inicial].esValida())
        {
            const auto viva = std::find_if(
                ciclo.begin(), ciclo.end(),
                [&](int32_t e) { return aristas_[e].esValida() && aristas_[e].toca(v); });
            inicial = viva != ciclo.end() ? *viva : -1;
        }
        estrella.clear();
        aristas_.incidentes(estrella, v, inicial);
        vertice.arista = -1;
        for (auto it = estrella.rbegin(); it != estrella.rend(); ++it)
        {
            if (aristas_[*it].esValida())
            {
                vertice.arista = *it;
                break;
            }
        }
    }
    caras_[static_cast<size_t>(cara)].arista = -1;
}

// -------------------------------------------------------------------------------------------
// Splitting edges

int32_t Modelo3D::insertaVertice(const Punto3<double>& punto, int32_t arista)
{
    iniciaEdicion();
    const int32_t v = nuevoVertice(punto);
    aristas_.parte(v, arista);
    terminaEdicion();
    return v;
}

void Modelo3D::parteArista(int32_t arista, int n)
{
    if (n < 2 || !aristas_.enRango(arista) || !extremosEnRango(aristas_[arista], vertices_.size()))
    {
        return;
    }
    const Punto3<double> p = vertices_[static_cast<size_t>(aristas_[arista].vertice[0])].punto;
    const Punto3<double> q = vertices_[static_cast<size_t>(aristas_[arista].vertice[1])].punto;
    const Vector3D<double> d = q - p;
    iniciaEdicion();
    const auto primero = static_cast<int32_t>(vertices_.size());
    for (int i = 1; i < n; ++i)
    {
        nuevoVertice(p + d * (1.0 - static_cast<double>(i) / n));
    }
    // Each split pulls the far end of `arista` towards p, so the same index is split again.
    for (int i = 0; i < n - 1; ++i)
    {
        aristas_.parte(primero + i, arista);
    }
    terminaEdicion();
}

// -------------------------------------------------------------------------------------------
// Joining vertices across a face

void Modelo3D::carasDeVertice(int32_t v, std::vector<int32_t>& out) const
{
    out.clear();
    for (const Arista& a : aristas_)
    {
        if (a.esValida() && a.toca(v))
        {
            for (const int32_t c : a.cara)
            {
                if (c != -1)
                {
                    out.push_back(c);
                }
            }
        }
    }
    std::sort(out.begin(), out.end());
    out.erase(std::unique(out.begin(), out.end()), out.end());
}

bool Modelo3D::uneVertices(int32_t v1, int32_t v2)
{
    const auto nv = static_cast<int32_t>(vertices_.size());
    if (v1 < 0 || v1 >= nv || v2 < 0 || v2 >= nv)
    {
        return false;
    }
    if (aristas_.busca(v1, v2, vertices_[static_cast<size_t>(v1)].arista,
                       vertices_[static_cast<size_t>(v2)].arista) != -1)
    {
        return false;
    }
    return uneCadena({v1, v2});
}

bool Modelo3D::uneCadena(const std::vector<int32_t>& cadena)
{
    const auto nv = static_cast<int32_t>(vertices_.size());
    if (cadena.size() < 2 ||
        std::any_of(cadena.begin(), cadena.end(), [nv](int32_t v) { return v < 0 || v >= nv; }))
    {
        return false;
    }
    std::vector<int32_t> primeras;
    std::vector<int32_t> ultimas;
    carasDeVertice(cadena.front(), primeras);
    carasDeVertice(cadena.back(), ultimas);
    const auto comun = std::find_if(
        primeras.begin(), primeras.end(),
        [&](int32_t c) { return std::binary_search(ultimas.begin(), ultimas.end(), c); });
    if (comun == primeras.end())
    {
        return false;
    }
    const int32_t f = *comun;
    std::vector<handle_arista_t> handles;
    getHandlesCara(f, handles);
    const int32_t m = aristas_.size();
    if (!aristas_.parteCara(cadena, handles, f))
    {
        return false;
    }
    cara_t copia = caras_[static_cast<size_t>(f)];
    copia.arista = m;
    const auto g = static_cast<int32_t>(caras_.size());
    caras_.push_back(copia);
    aristas_.reasignaCara(m, f, g);
    caras_[static_cast<size_t>(f)].arista = aristas_.aristaDeCara(f);
    caras_[static_cast<size_t>(g)].arista = aristas_.aristaDeCara(g);
    return true;
}

int32_t Modelo3D::buscaVertice(const Punto3<double>& punto) const
{
    for (size_t v = 0; v < vertices_.size(); ++v)
    {
        if (vertices_[v].punto == punto)
        {
            return static_cast<int32_t>(v);
        }
    }
    return -1;
}

int32_t Modelo3D::buscaArista(const Punto3<double>& punto) const
{
    for (int32_t e = 0; e < aristas_.size(); ++e)
    {
        const Arista& a = aristas_[e];
        if (!extremosEnRango(a, vertices_.size()))
        {
            continue;
        }
        if (puntoEnSegmento(vertices_[static_cast<size_t>(a.vertice[0])].punto,
                            vertices_[static_cast<size_t>(a.vertice[1])].punto, punto, 0.001))
        {
            return e;
        }
    }
    return -1;
}

bool Modelo3D::recortaCara(const std::vector<Punto3<double>>& polilinea)
{
    if (polilinea.size() < 2)
    {
        return false;
    }
    std::vector<Punto3<double>> puntos = polilinea;
    std::vector<int32_t> cadena;
    // An end on a vertex is taken as it is; one on an edge splits it. An end on nothing gives
    // a bare vertex, which shares no face, so the cut below is refused.
    const auto extremo = [&](const Punto3<double>& p)
    {
        const int32_t v = buscaVertice(p);
        if (v != -1)
        {
            cadena.push_back(v);
            return;
        }
        const int32_t e = buscaArista(p);
        cadena.push_back(static_cast<int32_t>(vertices_.size()));
        insertaVertice(p, e);
    };
    extremo(puntos.front());
    puntos.erase(puntos.begin());
    while (puntos.size() >= 2)
    {
        cadena.push_back(nuevoVertice(puntos.front()));
        puntos.erase(puntos.begin());
    }
    extremo(puntos.front());
    return uneCadena(cadena);
}

// -------------------------------------------------------------------------------------------
// Reversing

void Modelo3D::invierteCara(int32_t cara)
{
    std::vector<Arista*> ciclo;
    getPunterosCara(cara, ciclo);
    for (auto it = ciclo.rbegin(); it != ciclo.rend(); ++it)
    {
        Arista& a = **it;
        if (a.cara[0] == cara)
        {
            std::swap(a.siguienteCara0, a.anteriorCara0);
        }
        else if (a.cara[1] == cara)
        {
            // Not the side-1 pair: this exchange is the long-standing behaviour on side 1.
            std::swap(a.anteriorCara0, a.siguienteCara1);
        }
    }
}

void Modelo3D::invierteNormales()
{
    for (size_t c = 0; c < caras_.size(); ++c)
    {
        if (caras_[c].arista != -1)
        {
            invierteCara(static_cast<int32_t>(c));
        }
    }
}

// -------------------------------------------------------------------------------------------
// Extrusion and insets

void Modelo3D::extruyeArista(int32_t arista, const Vector3D<double>& vector)
{
    if (!aristas_.enRango(arista) || !aristas_[arista].esValida() ||
        aristas_[arista].tieneDosCaras())
    {
        return;
    }
    if (!extremosEnRango(aristas_[arista], vertices_.size()))
    {
        return;
    }
    const int32_t a = aristas_[arista].vertice[0];
    const int32_t b = aristas_[arista].vertice[1];
    iniciaEdicion();
    const int32_t a2 = nuevoVertice(vertices_[static_cast<size_t>(a)].punto + vector);
    const int32_t b2 = nuevoVertice(vertices_[static_cast<size_t>(b)].punto + vector);
    const int32_t quad[4] = {a, a2, b2, b};
    nuevaCara(4, quad, true, 0);
    terminaEdicion();
}

void Modelo3D::extruyeAristaHasta(int32_t arista, const Punto3<double>& punto)
{
    if (!aristas_.enRango(arista) || !aristas_[arista].esValida())
    {
        return;
    }
    const Arista& e = aristas_[arista];
    if (!extremosEnRango(e, vertices_.size()))
    {
        return;
    }
    const Punto3<double> medio =
        Punto3<double>::puntoMedio(vertices_[static_cast<size_t>(e.vertice[0])].punto,
                                   vertices_[static_cast<size_t>(e.vertice[1])].punto);
    extruyeArista(arista, punto - medio);
}

// The ring of quads (L[j], b+j, b+i, L[i]) between a face's cycle and its copy from b on.
void Modelo3D::anillo(const std::vector<int32_t>& ciclo, int32_t b)
{
    const auto n = static_cast<int32_t>(ciclo.size());
    for (int32_t i = 0; i < n; ++i)
    {
        const int32_t j = (i + 1) % n;
        const int32_t quad[4] = {ciclo[static_cast<size_t>(j)], b + j, b + i,
                                 ciclo[static_cast<size_t>(i)]};
        nuevaCara(4, quad, true, 0);
    }
}

void Modelo3D::tapa(int32_t b, int32_t n)
{
    std::vector<int32_t> indices(static_cast<size_t>(n));
    for (int32_t i = 0; i < n; ++i)
    {
        indices[static_cast<size_t>(i)] = b + i;
    }
    nuevaCara(n, indices.data(), true, 0);
}

void Modelo3D::extruyeCara(int32_t cara, float distancia)
{
    std::vector<int32_t> ciclo;
    getVerticesCara(cara, ciclo);
    if (ciclo.size() < 3)
    {
        return;
    }
    // The product is taken in single precision, as the cached normal is.
    const Vector3D<float> s = normalCara(cara) * distancia;
    iniciaEdicion();
    const auto b = static_cast<int32_t>(vertices_.size());
    for (const int32_t v : ciclo)
    {
        nuevoVertice(vertices_[static_cast<size_t>(v)].punto + Vector3D<double>(s.x, s.y, s.z));
    }
    borraCara(cara);
    anillo(ciclo, b);
    tapa(b, static_cast<int32_t>(ciclo.size()));
    terminaEdicion();
}

void Modelo3D::parteCara(int32_t cara, bool cerrada)
{
    std::vector<int32_t> ciclo;
    getVerticesCara(cara, ciclo);
    if (ciclo.size() < 3)
    {
        return;
    }
    const Punto3<double> c = centroCara(cara);
    iniciaEdicion();
    borraCara(cara);
    const auto b = static_cast<int32_t>(vertices_.size());
    for (const int32_t v : ciclo)
    {
        nuevoVertice(c + (vertices_[static_cast<size_t>(v)].punto - c) * 0.5);
    }
    anillo(ciclo, b);
    if (cerrada)
    {
        tapa(b, static_cast<int32_t>(ciclo.size()));
    }
    terminaEdicion();
}

Modelo3D::Modelo3D(const std::vector<Punto3<double>>& polilinea, bool cerrada,
                   const Vector3D<double>& vector)
{
    const auto n = static_cast<int32_t>(polilinea.size());
    for (const Punto3<double>& p : polilinea)
    {
        nuevoVertice(p);
    }
    for (const Punto3<double>& p : polilinea)
    {
        nuevoVertice(p + vector);
    }
    iniciaEdicion();
    for (int32_t i = 1; i < n; ++i)
    {
        const int32_t quad[4] = {i - 1, i, i + n, i + n - 1};
        nuevaCara(4, quad, true, 0);
    }
    if (cerrada && n > 2)
    {
        const int32_t quad[4] = {n - 1, 0, n, 2 * n - 1};
        nuevaCara(4, quad, true, 0);
    }
    terminaEdicion();
}

}  // namespace cad
