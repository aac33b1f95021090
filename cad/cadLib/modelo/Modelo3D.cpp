#include "modelo/Modelo3D.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <unordered_set>

#include "base/Empaquetador.h"
#include "base/FicheroAtomico.h"
#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "entidades/Entidad.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

namespace
{

// The model an edit runs on. One per thread: a helper thread that builds its own model never
// writes into the host's.
thread_local Modelo3D* modeloActual = nullptr;

// A short list held on the stack, spilling to the heap past N entries: the star of a survey
// vertex has a handful of edges, and a million-face build must not allocate per lookup.
template <size_t N>
class PilaLocal
{
public:
    void mete(int32_t v)
    {
        if (resto_.empty() && n_ < N)
        {
            fijo_[n_++] = v;
        }
        else
        {
            resto_.push_back(v);
        }
    }
    int32_t saca()
    {
        if (!resto_.empty())
        {
            const int32_t v = resto_.back();
            resto_.pop_back();
            return v;
        }
        return fijo_[--n_];
    }
    bool vacia() const { return n_ == 0 && resto_.empty(); }

private:
    int32_t fijo_[N];
    size_t n_ = 0;
    std::vector<int32_t> resto_;
};

// The set of seen edges of one star: a linear search while small, hashed beyond.
class VistasLocal
{
public:
    void anade(int32_t v)
    {
        if (contiene(v))
        {
            return;
        }
        if (n_ < kFijo)
        {
            fijo_[n_++] = v;
        }
        else
        {
            resto_.insert(v);
        }
    }
    bool contiene(int32_t v) const
    {
        for (size_t i = 0; i < n_; ++i)
        {
            if (fijo_[i] == v)
            {
                return true;
            }
        }
        return !resto_.empty() && resto_.count(v) != 0;
    }

private:
    static constexpr size_t kFijo = 48;
    int32_t fijo_[kFijo];
    size_t n_ = 0;
    std::unordered_set<int32_t> resto_;
};

// Makes room for `n` more records; the fresh part of a large list comes in huge pages, as a
// survey model's first touch of its memory costs more than filling it.
template <class T>
void reservaLista(std::vector<T>& v, size_t n)
{
    const size_t antes = v.capacity();
    v.reserve(v.size() + n);
    if (v.capacity() != antes)
    {
        paginasGrandes(v.data() + v.size(), (v.capacity() - v.size()) * sizeof(T));
    }
}

// One more record: the list doubles as a vector would, its new part in huge pages.
template <class T>
void anade(std::vector<T>& v, const T& registro)
{
    if (v.size() == v.capacity())
    {
        reservaLista(v, std::max<size_t>(v.size(), 64));
    }
    v.push_back(registro);
}

}  // namespace

bool enTriangulo(const Punto3<double>& w, const Punto3<double>& p, const Punto3<double>& q,
                 const Punto3<double>& r, double vuelta)
{
    if (w == p || w == q || w == r)
    {
        return false;
    }
    const Vector3D<double> a = (p - w).unit();
    const Vector3D<double> b = (q - w).unit();
    const Vector3D<double> c = (r - w).unit();
    const auto angulo = [](const Vector3D<double>& u, const Vector3D<double>& v)
    { return std::acos(std::clamp(u.dot(v), -1.0, 1.0)); };
    return angulo(a, b) + angulo(b, c) + angulo(c, a) >= vuelta;
}

// -------------------------------------------------------------------------------------------
// The edge table

int32_t Aristas::nueva(const Arista& a)
{
    anade(lista, a);
    return static_cast<int32_t>(lista.size() - 1);
}

int32_t Aristas::aristasValidas() const
{
    int32_t n = 0;
    for (const Arista& a : lista)
    {
        // Only -1 and -2 fail: the test has always been this unsigned comparison.
        if (static_cast<uint32_t>(a.vertice[0]) <= 0xFFFFFFFDU &&
            static_cast<uint32_t>(a.vertice[1]) <= 0xFFFFFFFDU)
        {
            ++n;
        }
    }
    return n;
}

template <class Para>
int32_t Aristas::recorreIncidentes(int32_t vertice, int32_t inicial, std::vector<int32_t>* out,
                                   Para para) const
{
    if (inicial == -1)
    {
        return -1;
    }
    PilaLocal<64> pila;
    VistasLocal vistas;
    pila.mete(inicial);
    while (!pila.vacia())
    {
        const int32_t e = pila.saca();
        if (!enRango(e))
        {
            continue;
        }
        const Arista& a = lista[static_cast<size_t>(e)];
        if (!a.esValida() || !a.toca(vertice))
        {
            continue;
        }
        // Membership is tested when a wing is pushed, not when it is taken: an edge pushed
        // by two neighbours before its turn comes twice, as the stack order dictates.
        vistas.anade(e);
        if (out != nullptr)
        {
            out->push_back(e);
        }
        if (para(a))
        {
            return e;
        }
        for (const int32_t w :
             {a.siguienteCara0, a.anteriorCara0, a.siguienteCara1, a.anteriorCara1})
        {
            if (w != -1 && !vistas.contiene(w))
            {
                pila.mete(w);
            }
        }
    }
    return -1;
}

void Aristas::incidentes(std::vector<int32_t>& out, int32_t vertice, int32_t inicial) const
{
    recorreIncidentes(vertice, inicial, &out, [](const Arista&) { return false; });
}

int32_t Aristas::busca(int32_t v1, int32_t v2, int32_t a1, int32_t a2) const
{
    // The first edge of the star, in the order incidentes gives it, that touches the other
    // end: the search stops there instead of collecting the whole star.
    if (a1 != -1)
    {
        return recorreIncidentes(v1, a1, nullptr, [v2](const Arista& a) { return a.toca(v2); });
    }
    if (a2 != -1)
    {
        return recorreIncidentes(v2, a2, nullptr, [v1](const Arista& a) { return a.toca(v1); });
    }
    return -1;
}

handle_arista_t TIteradorAristas::en(int32_t i)
{
    if (!aristas_.enRango(i))
    {
        return {};
    }
    return {i, &aristas_};
}

handle_arista_t TIteradorAristas::siguiente()
{
    const handle_arista_t h = en(pos_);
    if (pos_ < aristas_.size())
    {
        ++pos_;
    }
    return h;
}

handle_arista_t TIteradorAristas::anterior()
{
    if (pos_ >= 0)
    {
        --pos_;
    }
    return en(pos_);
}

handle_arista_t TIteradorAristas::actual()
{
    return en(pos_);
}

// -------------------------------------------------------------------------------------------
// Life of a model

Modelo3D::Modelo3D(const Modelo3D& otro)
    : coloresVertices(otro.coloresVertices),
      coloresCaras(otro.coloresCaras),
      vertices_(otro.vertices_),
      aristas_(otro.aristas_),
      caras_(otro.caras_)
{
}

Modelo3D& Modelo3D::operator=(const Modelo3D& otro)
{
    if (this == &otro)
    {
        return *this;
    }
    vertices_ = otro.vertices_;
    coloresVertices = otro.coloresVertices;
    coloresCaras = otro.coloresCaras;
    aristas_ = otro.aristas_;
    caras_ = otro.caras_;
    return *this;
}

Modelo3D::~Modelo3D()
{
    // A model destroyed inside its own edit must not stay current.
    if (profundidadEdicion_ > 0 && modeloActual == this)
    {
        modeloActual = contextoGuardado_;
    }
}

bool Modelo3D::proyectaUV()
{
    Vector3D<double> n(0, 0, 0);
    for (size_t c = 0; c < caras_.size(); ++c)
    {
        if (caras_[c].arista >= 0)
        {
            const Vector3D<float> f = normalCara(static_cast<int32_t>(c));
            n += Vector3D<double>(f.x, f.y, f.z);
        }
    }
    const double largo = n.modulo();
    if (!(largo > 0.0))
    {
        return false;
    }
    n = n / largo;
    // The first axis lies across the normal's smallest component, so it is never parallel.
    const double ax = std::abs(n.x);
    const double ay = std::abs(n.y);
    const double az = std::abs(n.z);
    const Vector3D<double> base = ax <= ay && ax <= az   ? Vector3D<double>(1, 0, 0)
                                  : ay <= ax && ay <= az ? Vector3D<double>(0, 1, 0)
                                                         : Vector3D<double>(0, 0, 1);
    const Vector3D<double> e1 = n.cross(base).unit();
    const Vector3D<double> e2 = n.cross(e1);
    const Rect3<double> r = caja();
    const Punto3<double> centro = Punto3<double>::puntoMedio(r.minimo, r.maximo);
    double minimo[2] = {std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    double maximo[2] = {-std::numeric_limits<double>::max(), -std::numeric_limits<double>::max()};
    for (const vertice_t& v : vertices_)
    {
        if (v.esValido())
        {
            const Vector3D<double> d = v.punto - centro;
            const double st[2] = {d.dot(e1), d.dot(e2)};
            for (int k = 0; k < 2; ++k)
            {
                minimo[k] = std::min(minimo[k], st[k]);
                maximo[k] = std::max(maximo[k], st[k]);
            }
        }
    }
    if (!(maximo[0] > minimo[0]) || !(maximo[1] > minimo[1]))
    {
        return false;
    }
    for (vertice_t& v : vertices_)
    {
        if (v.esValido())
        {
            const Vector3D<double> d = v.punto - centro;
            v.uv = Vector2D<float>(
                static_cast<float>((d.dot(e1) - minimo[0]) / (maximo[0] - minimo[0])),
                static_cast<float>((d.dot(e2) - minimo[1]) / (maximo[1] - minimo[1])));
        }
    }
    return true;
}

Rect3<double> Modelo3D::caja() const
{
    Rect3<double> caja;
    for (const vertice_t& v : vertices_)
    {
        caja.amplia(v.punto);
    }
    return caja;
}

Punto3<double> Modelo3D::centroide() const
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    for (const vertice_t& v : vertices_)
    {
        x += v.punto.x;
        y += v.punto.y;
        z += v.punto.z;
    }
    const auto n = static_cast<double>(vertices_.size());
    return {x / n, y / n, z / n};
}

void Modelo3D::limpia()
{
    vertices_.clear();
    coloresVertices.clear();
    coloresCaras.clear();
    aristas_.lista.clear();
    caras_.clear();
}

int32_t Modelo3D::nuevoVertice(const Punto3<double>& p)
{
    return nuevoVertice(p, {0.0F, 0.0F});
}

int32_t Modelo3D::nuevoVertice(const Punto3<double>& p, const Vector2D<float>& uv)
{
    anade(vertices_, vertice_t{p, uv, -1});
    modificado = 1;
    const auto v = static_cast<int32_t>(vertices_.size() - 1);
    aristas_.alNuevoVertice(v);
    return v;
}

void Modelo3D::nuevosVertices(int n, const Punto3<double>* puntos)
{
    for (int i = 0; i < n; ++i)
    {
        nuevoVertice(puntos[i]);
    }
    modificado = 1;
}

void Modelo3D::reserva(size_t vertices, size_t aristas, size_t caras)
{
    reservaLista(vertices_, vertices);
    reservaLista(aristas_.lista, aristas);
    reservaLista(caras_, caras);
}

// -------------------------------------------------------------------------------------------
// Edits and their hooks

Modelo3D* Modelo3D::actual()
{
    return modeloActual;
}

void Modelo3D::avisoNuevaArista(int32_t arista)
{
    Modelo3D* m = modeloActual;
    if (m == nullptr || !m->aristas_.enRango(arista))
    {
        return;
    }
    const auto nv = static_cast<int32_t>(m->vertices_.size());
    for (const int32_t v : m->aristas_[arista].vertice)
    {
        if (v >= 0 && v < nv)
        {
            m->vertices_[static_cast<size_t>(v)].arista = arista;
        }
    }
}

void Modelo3D::iniciaEdicion()
{
    if (profundidadEdicion_++ > 0)
    {
        return;
    }
    contextoGuardado_ = modeloActual;
    modeloActual = this;
    aristas_.alNuevoVertice = &Aristas::sinAviso;
    aristas_.alNuevaArista = &Modelo3D::avisoNuevaArista;
}

void Modelo3D::terminaEdicion()
{
    if (profundidadEdicion_ == 0 || --profundidadEdicion_ > 0)
    {
        return;
    }
    aristas_.alNuevoVertice = &Aristas::sinAviso;
    aristas_.alNuevaArista = &Aristas::sinAviso;
    modeloActual = contextoGuardado_;
    contextoGuardado_ = nullptr;
}

int32_t Modelo3D::nuevaCara(int n, const int32_t* indices, bool viva, uint16_t material)
{
    modificado = 1;
    const auto nv = static_cast<int32_t>(vertices_.size());
    if (n <= 0 || std::any_of(indices, indices + n, [nv](int32_t v) { return v < 0 || v >= nv; }))
    {
        return -1;
    }
    iniciaEdicion();
    // Faces of up to 16 corners, nearly all of a survey, are built without touching the heap.
    constexpr int kFijo = 16;
    int32_t fijo[2 * kFijo];
    std::vector<int32_t> grande;
    int32_t* aristasPrevias = fijo;
    if (n > kFijo)
    {
        grande.resize(2 * static_cast<size_t>(n));
        aristasPrevias = grande.data();
    }
    int32_t* lista = aristasPrevias + n;
    for (int i = 0; i < n; ++i)
    {
        aristasPrevias[i] = vertices_[static_cast<size_t>(indices[i])].arista;
    }
    for (int i = 0; i < n; ++i)
    {
        const int j = (i + 1) % n;
        lista[i] = aristas_.busca(indices[i], indices[j], aristasPrevias[i], aristasPrevias[j]);
    }
    // The new edges keep their creation order in the list: they are told in that order.
    const auto primeraNueva = static_cast<int32_t>(aristas_.size());
    for (int i = 0; i < n; ++i)
    {
        if (lista[i] == -1)
        {
            Arista a;
            a.vertice[0] = indices[i];
            a.vertice[1] = indices[(i + 1) % n];
            a.viva = viva ? 1 : 0;
            lista[i] = aristas_.nueva(a);
        }
    }
    const auto f = static_cast<int32_t>(caras_.size());
    for (int k = 1; k <= n; ++k)
    {
        Arista& a = aristas_[lista[k - 1]];
        const int32_t siguiente = lista[k % n];
        const int32_t anterior = lista[(n - 2 + k) % n];
        if (a.cara[0] == -1)
        {
            a.siguienteCara0 = siguiente;
            a.anteriorCara0 = anterior;
            a.cara[0] = f;
        }
        else if (a.cara[1] == -1)
        {
            a.siguienteCara1 = siguiente;
            a.anteriorCara1 = anterior;
            a.cara[1] = f;
        }
        else
        {
            // A third face on the edge: nothing is relinked and the face's number lands in
            // anteriorCara1, as it always has.
            a.anteriorCara1 = f;
        }
    }
    for (int32_t e = primeraNueva; e < aristas_.size(); ++e)
    {
        aristas_.alNuevaArista(e);
    }
    int32_t cara = -1;
    if (aristas_[lista[0]].esValida())
    {
        cara_t c;
        c.arista = lista[0];
        c.material = material;
        anade(caras_, c);
        cara = f;
    }
    terminaEdicion();
    return cara;
}

int32_t Modelo3D::nuevaCara(int n, const Punto3<double>* puntos, const Vector2D<float>* uvs,
                            bool viva, uint16_t material)
{
    if (n <= 0)
    {
        modificado = 1;
        return -1;
    }
    std::vector<int32_t> indices(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i)
    {
        indices[static_cast<size_t>(i)] =
            uvs != nullptr ? nuevoVertice(puntos[i], uvs[i]) : nuevoVertice(puntos[i]);
    }
    return nuevaCara(n, indices.data(), viva, material);
}

// -------------------------------------------------------------------------------------------
// Walks and queries

template <class F>
void Modelo3D::recorreCara(int32_t cara, F&& f) const
{
    if (cara < 0 || static_cast<size_t>(cara) >= caras_.size())
    {
        return;
    }
    const int32_t inicio = caras_[static_cast<size_t>(cara)].arista;
    if (!aristas_.enRango(inicio))
    {
        return;
    }
    int32_t e = inicio;
    for (int32_t pasos = 0; pasos < aristas_.size(); ++pasos)
    {
        if (!f(e))
        {
            return;
        }
        const int32_t siguiente = aristas_[e].siguienteEn(cara);
        if (siguiente == inicio || !aristas_.enRango(siguiente))
        {
            return;
        }
        e = siguiente;
    }
}

void Modelo3D::verticesCara(int32_t cara, std::vector<int32_t>& out, size_t maximo) const
{
    out.clear();
    if (cara < 0 || static_cast<size_t>(cara) >= caras_.size() ||
        !aristas_.enRango(caras_[static_cast<size_t>(cara)].arista))
    {
        return;
    }
    const auto nv = static_cast<int32_t>(vertices_.size());
    // Each edge gives the end it shares with the one before, so the cycle starts at the
    // first corner given to nuevaCara and keeps the input's order.
    int32_t previa = aristas_[caras_[static_cast<size_t>(cara)].arista].anteriorEn(cara);
    recorreCara(cara,
                [&](int32_t e)
                {
                    const Arista& a = aristas_[e];
                    if (aristas_.enRango(previa))
                    {
                        const Arista& p = aristas_[previa];
                        const int32_t v = p.toca(a.vertice[0])   ? a.vertice[0]
                                          : p.toca(a.vertice[1]) ? a.vertice[1]
                                                                 : -1;
                        if (v >= 0 && v < nv)
                        {
                            out.push_back(v);
                        }
                    }
                    previa = e;
                    return out.size() < maximo;
                });
}

void Modelo3D::getVerticesCara(int32_t cara, std::vector<int32_t>& out) const
{
    verticesCara(cara, out, std::numeric_limits<size_t>::max());
}

void Modelo3D::getCoordenadasCara(int32_t cara, std::vector<Punto3<double>>& out) const
{
    std::vector<int32_t> ciclo;
    getVerticesCara(cara, ciclo);
    out.clear();
    out.reserve(ciclo.size());
    for (const int32_t v : ciclo)
    {
        out.push_back(vertices_[static_cast<size_t>(v)].punto);
    }
}

void Modelo3D::getAristasCara(int32_t cara, std::vector<int32_t>& out) const
{
    out.clear();
    recorreCara(cara,
                [&](int32_t e)
                {
                    out.push_back(e);
                    return true;
                });
}

void Modelo3D::getHandlesCara(int32_t cara, std::vector<handle_arista_t>& out)
{
    out.clear();
    recorreCara(cara,
                [&](int32_t e)
                {
                    out.push_back({e, &aristas_});
                    return true;
                });
}

void Modelo3D::getPunterosCara(int32_t cara, std::vector<Arista*>& out)
{
    out.clear();
    recorreCara(cara,
                [&](int32_t e)
                {
                    out.push_back(&aristas_[e]);
                    return true;
                });
}

void Modelo3D::getMaterialesCaras(std::vector<uint16_t>& out) const
{
    std::vector<bool> visto(65536, false);
    for (const uint16_t m : out)
    {
        visto[m] = true;
    }
    for (const cara_t& c : caras_)
    {
        if (!visto[c.material])
        {
            visto[c.material] = true;
            out.push_back(c.material);
        }
    }
}

void Modelo3D::remapeaMateriales(const std::map<uint16_t, uint16_t>& mapa)
{
    for (cara_t& c : caras_)
    {
        const auto it = mapa.find(c.material);
        if (it != mapa.end())
        {
            c.material = it->second;
        }
    }
}

void Modelo3D::getCoordenadasUV(std::vector<Vector2D<float>>& out) const
{
    out.clear();
    out.reserve(vertices_.size());
    for (const vertice_t& v : vertices_)
    {
        out.push_back(v.uv);
    }
}

void Modelo3D::getPuntos(std::vector<Punto3<double>>& out) const
{
    out.clear();
    out.reserve(vertices_.size());
    for (const vertice_t& v : vertices_)
    {
        out.push_back(v.punto);
    }
}

void Modelo3D::getExtremosAristas(std::vector<uint32_t>& out) const
{
    out.reserve(out.size() + 2 * aristas_.lista.size());
    for (const Arista& a : aristas_)
    {
        out.push_back(static_cast<uint32_t>(a.vertice[0]));
        out.push_back(static_cast<uint32_t>(a.vertice[1]));
    }
}

void Modelo3D::primerosVertices(int32_t cara, int32_t& a, int32_t& b, int32_t& c) const
{
    std::vector<int32_t> ciclo;
    ciclo.reserve(3);
    verticesCara(cara, ciclo, 3);
    ciclo.resize(3, -1);
    a = ciclo[0];
    b = ciclo[1];
    c = ciclo[2];
}

Punto3<double> Modelo3D::centroCara(int32_t cara) const
{
    std::vector<int32_t> ciclo;
    getVerticesCara(cara, ciclo);
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    for (const int32_t v : ciclo)
    {
        const Punto3<double>& p = vertices_[static_cast<size_t>(v)].punto;
        x += p.x;
        y += p.y;
        z += p.z;
    }
    const auto n = static_cast<double>(ciclo.size());
    return {x / n, y / n, z / n};
}

// -------------------------------------------------------------------------------------------
// Normals

Vector3D<float> Modelo3D::calculaNormal(int32_t cara) const
{
    int32_t i0 = -1;
    int32_t i1 = -1;
    int32_t i2 = -1;
    primerosVertices(cara, i0, i1, i2);
    if (i2 == -1)
    {
        return {};
    }
    const Punto3<double>& p0 = vertices_[static_cast<size_t>(i0)].punto;
    const Punto3<double>& p1 = vertices_[static_cast<size_t>(i1)].punto;
    const Punto3<double>& p2 = vertices_[static_cast<size_t>(i2)].punto;
    const Vector3D<double> n = (p0 - p1).cross(p2 - p1);
    const double m = n.modulo();
    if (m == 0.0)
    {
        return {};
    }
    return Vector3D<float>(n / m);
}

Vector3D<float> Modelo3D::normalCara(int32_t cara)
{
    if (cara < 0 || static_cast<size_t>(cara) >= caras_.size())
    {
        return {};
    }
    cara_t& c = caras_[static_cast<size_t>(cara)];
    if (c.normal != Vector3D<float>() || c.arista == -1)
    {
        return c.normal;
    }
    c.normal = calculaNormal(cara);
    return c.normal;
}

void Modelo3D::recalculaNormales()
{
    for (size_t f = 0; f < caras_.size(); ++f)
    {
        if (caras_[f].arista != -1)
        {
            caras_[f].normal = calculaNormal(static_cast<int32_t>(f));
        }
    }
}

void Modelo3D::normalesVertices(std::vector<Vector3D<float>>& out)
{
    recalculaNormales();
    out.assign(vertices_.size(), Vector3D<float>());
    const auto nv = static_cast<int32_t>(vertices_.size());
    const auto nc = static_cast<int32_t>(caras_.size());
    for (const Arista& a : aristas_)
    {
        for (const int32_t cara : a.cara)
        {
            if (cara < 0 || cara >= nc)
            {
                continue;
            }
            const Vector3D<float>& n = caras_[static_cast<size_t>(cara)].normal;
            for (const int32_t v : a.vertice)
            {
                if (v >= 0 && v < nv)
                {
                    out[static_cast<size_t>(v)] += n;
                }
            }
        }
    }
    for (Vector3D<float>& n : out)
    {
        n = n.modulo() == 0.0F ? Vector3D<float>(0.0F, 0.0F, 1.0F) : n.unit();
    }
}

// -------------------------------------------------------------------------------------------
// Triangulation

void Modelo3D::triangulaCara(int32_t cara, std::vector<int32_t>& out) const
{
    out.clear();
    std::vector<int32_t> l;
    getVerticesCara(cara, l);
    if (l.size() < 3)
    {
        return;
    }
    const auto punto = [this](int32_t v) -> const Punto3<double>&
    { return vertices_[static_cast<size_t>(v)].punto; };
    double cx = 0.0;
    double cy = 0.0;
    double cz = 0.0;
    for (const int32_t v : l)
    {
        cx += punto(v).x;
        cy += punto(v).y;
        cz += punto(v).z;
    }
    const auto nl = static_cast<double>(l.size());
    const Punto3<double> centro(cx / nl, cy / nl, cz / nl);
    Vector3D<double> normal;
    for (size_t i = 0; i < l.size(); ++i)
    {
        normal += (punto(l[i]) - centro).cross(punto(l[(i + 1) % l.size()]) - centro);
    }
    normal.normaliza();
    while (l.size() > 3)
    {
        const size_t n = l.size();
        size_t mejor = 0;
        double mejorLongitud = std::numeric_limits<double>::max();
        for (size_t i = 0; i < n; ++i)
        {
            const Punto3<double>& p = punto(l[(i + n - 1) % n]);
            const Punto3<double>& q = punto(l[i]);
            const Punto3<double>& r = punto(l[(i + 1) % n]);
            // Convex only when strictly positive: a NaN corner is not one.
            if (!((r - q).cross(p - q).dot(normal) > 0.0))
            {
                continue;
            }
            const double diagonal = (r - p).modulo();
            if (!(diagonal < mejorLongitud))
            {
                continue;
            }
            const bool vacia = std::none_of(
                l.begin(), l.end(),
                [&](int32_t w) { return enTriangulo(punto(w), p, q, r, kVueltaOreja); });
            if (vacia)
            {
                mejor = i;
                mejorLongitud = diagonal;
            }
        }
        // No corner qualifies: the first is cut all the same, so the loop always ends.
        out.push_back(l[(mejor + n - 1) % n]);
        out.push_back(l[mejor]);
        out.push_back(l[(mejor + 1) % n]);
        l.erase(l.begin() + static_cast<std::ptrdiff_t>(mejor));
    }
    out.insert(out.end(), l.begin(), l.end());
}

// -------------------------------------------------------------------------------------------
// The persisted body

void Modelo3D::escribe(SerializadorEscrituraBase& s) const
{
    // The compact copy is what nuevaCara would build from each live face on private
    // vertices. Its records follow from the cycles alone (edge i of a face runs from corner
    // i to corner i+1 with its neighbours as wings, a corner's edge is the latest that
    // touches it), so they are written straight away instead of built first.
    std::vector<int32_t> esquinas;
    std::vector<uint32_t> tamanos;
    std::vector<uint16_t> materiales;
    std::vector<int32_t> ciclo;
    for (size_t f = 0; f < caras_.size(); ++f)
    {
        if (caras_[f].arista == -1)
        {
            continue;
        }
        getVerticesCara(static_cast<int32_t>(f), ciclo);
        if (ciclo.empty())
        {
            continue;  // nuevaCara makes no face of no corners
        }
        esquinas.insert(esquinas.end(), ciclo.begin(), ciclo.end());
        tamanos.push_back(static_cast<uint32_t>(ciclo.size()));
        materiales.push_back(caras_[f].material);
    }
    const auto total = static_cast<uint32_t>(esquinas.size());
    Empaquetador e(s, 12 + 72 * static_cast<size_t>(total) + 6 * tamanos.size());
    e.pon(total);
    uint32_t base = 0;
    for (const uint32_t n : tamanos)
    {
        for (uint32_t k = 0; k < n; ++k)
        {
            const vertice_t& v = vertices_[static_cast<size_t>(esquinas[base + k])];
            e.pon(v.punto.x);
            e.pon(v.punto.y);
            e.pon(v.punto.z);
            e.pon(v.uv.x);
            e.pon(v.uv.y);
            e.pon(k == 0 ? base + n - 1 : base + k);
        }
        base += n;
    }
    e.pon(total);
    base = 0;
    uint32_t cara = 0;
    for (const uint32_t n : tamanos)
    {
        for (uint32_t k = 0; k < n; ++k)
        {
            const uint32_t siguiente = base + (k + 1) % n;
            const uint32_t campos[9] = {
                base + k, siguiente,   siguiente, base + (k + n - 1) % n, 0xFFFFFFFFU, 0xFFFFFFFFU,
                cara,     0xFFFFFFFFU, 0};
            for (const uint32_t c : campos)
            {
                e.pon(c);
            }
        }
        base += n;
        ++cara;
    }
    e.pon(static_cast<uint32_t>(tamanos.size()));
    base = 0;
    for (size_t f = 0; f < tamanos.size(); ++f)
    {
        e.pon(base);
        e.pon(materiales[f]);
        base += tamanos[f];
    }
    e.vacia();
}

namespace
{

// Reads `n` records of `tamano` bytes in large pieces, handing each to `toma`. False when the
// source ends first. The count was checked against the bytes left, so nothing huge is
// reserved for a lying header.
template <class Toma>
bool leeRegistros(SerializadorLecturaBase& s, uint32_t n, size_t tamano, Toma toma)
{
    constexpr size_t kPorTrozo = 8192;
    std::vector<uint8_t> trozo(std::min<size_t>(kPorTrozo, n) * tamano);
    for (uint32_t hechos = 0; hechos < n;)
    {
        const auto cuantos = static_cast<uint32_t>(std::min<size_t>(kPorTrozo, n - hechos));
        if (!s.leeBytes(trozo.data(), static_cast<uint32_t>(cuantos * tamano)))
        {
            return false;
        }
        for (uint32_t i = 0; i < cuantos; ++i)
        {
            toma(trozo.data() + i * tamano);
        }
        hechos += cuantos;
    }
    return true;
}

template <class T>
T toma(const uint8_t*& p)
{
    T v;
    std::memcpy(&v, p, sizeof(T));
    p += sizeof(T);
    return v;
}

bool cabe(SerializadorLecturaBase& s, uint32_t n, size_t tamano)
{
    return static_cast<uint64_t>(n) * tamano <= s.bytesDisponibles();
}

}  // namespace

bool Modelo3D::lee(SerializadorLecturaBase& s)
{
    vertices_.clear();
    aristas_.lista.clear();
    caras_.clear();
    const auto desecha = [this]
    {
        vertices_.clear();
        aristas_.lista.clear();
        caras_.clear();
        return false;
    };
    constexpr size_t kVertice = 36;
    constexpr size_t kArista = 36;
    constexpr size_t kCara = 6;
    uint32_t n = 0;
    if (!s.leeEnteroSinSigno(n) || !cabe(s, n, kVertice))
    {
        return desecha();
    }
    reservaLista(vertices_, n);
    bool completo = leeRegistros(s, n, kVertice,
                                 [this](const uint8_t* p)
                                 {
                                     vertice_t v;
                                     v.punto.x = toma<double>(p);
                                     v.punto.y = toma<double>(p);
                                     v.punto.z = toma<double>(p);
                                     v.uv.x = toma<float>(p);
                                     v.uv.y = toma<float>(p);
                                     v.arista = toma<int32_t>(p);
                                     vertices_.push_back(v);
                                 });
    if (!completo || !s.leeEnteroSinSigno(n) || !cabe(s, n, kArista))
    {
        return desecha();
    }
    reservaLista(aristas_.lista, n);
    completo = leeRegistros(s, n, kArista,
                            [this](const uint8_t* p)
                            {
                                Arista a;
                                int32_t campos[9];
                                std::memcpy(campos, p, sizeof campos);
                                a.vertice[0] = campos[0];
                                a.vertice[1] = campos[1];
                                a.siguienteCara0 = campos[2];
                                a.anteriorCara0 = campos[3];
                                a.siguienteCara1 = campos[4];
                                a.anteriorCara1 = campos[5];
                                a.cara[0] = campos[6];
                                a.cara[1] = campos[7];
                                a.viva = campos[8];
                                aristas_.lista.push_back(a);
                            });
    if (!completo || !s.leeEnteroSinSigno(n) || !cabe(s, n, kCara))
    {
        return desecha();
    }
    reservaLista(caras_, n);
    completo = leeRegistros(s, n, kCara,
                            [this](const uint8_t* p)
                            {
                                cara_t c;
                                c.arista = toma<int32_t>(p);
                                c.material = toma<uint16_t>(p);
                                caras_.push_back(c);
                            });
    // Records from a file are trusted only once every link checks out: a walk over a broken
    // cycle would run away or index outside the lists.
    if (!completo || !estructuraSana())
    {
        return desecha();
    }
    return true;
}

bool Modelo3D::estructuraSana() const
{
    const auto nv = static_cast<int32_t>(vertices_.size());
    const auto nc = static_cast<int32_t>(caras_.size());
    const auto viva = [this](int32_t e)
    { return aristas_.enRango(e) && aristas_[e].vertice[0] != -1 && aristas_[e].vertice[1] != -1; };
    for (int32_t e = 0; e < aristas_.size(); ++e)
    {
        const Arista& a = aristas_[e];
        if (a.vertice[0] == -1 && a.vertice[1] == -1)
        {
            const int32_t campos[6] = {a.siguienteCara0, a.anteriorCara0, a.siguienteCara1,
                                       a.anteriorCara1,  a.cara[0],       a.cara[1]};
            if (std::any_of(campos, campos + 6, [](int32_t c) { return c != -1; }))
            {
                return false;
            }
            continue;
        }
        if (a.vertice[0] < 0 || a.vertice[0] >= nv || a.vertice[1] < 0 || a.vertice[1] >= nv)
        {
            return false;
        }
        for (int lado = 0; lado < 2; ++lado)
        {
            const int32_t cara = a.cara[lado];
            const int32_t siguiente = lado == 0 ? a.siguienteCara0 : a.siguienteCara1;
            const int32_t anterior = lado == 0 ? a.anteriorCara0 : a.anteriorCara1;
            if (cara == -1)
            {
                if (siguiente != -1 || anterior != -1)
                {
                    return false;
                }
                continue;
            }
            if (cara < 0 || cara >= nc || caras_[static_cast<size_t>(cara)].arista == -1 ||
                !viva(siguiente) || !viva(anterior))
            {
                return false;
            }
            // Next and previous undo each other on every side, which makes each face's walk
            // a permutation of its edges: from any edge it comes back to that edge.
            const Arista& n = aristas_[siguiente];
            if (n.anteriorEn(cara) != e || aristas_[anterior].siguienteEn(cara) != e ||
                !(n.toca(a.vertice[0]) || n.toca(a.vertice[1])))
            {
                return false;
            }
        }
    }
    for (int32_t v = 0; v < nv; ++v)
    {
        const int32_t e = vertices_[static_cast<size_t>(v)].arista;
        if (e != -1 && (!aristas_.enRango(e) || !aristas_[e].toca(v)))
        {
            return false;
        }
    }
    for (int32_t f = 0; f < nc; ++f)
    {
        const int32_t e = caras_[static_cast<size_t>(f)].arista;
        if (e != -1 && (!viva(e) || (aristas_[e].cara[0] != f && aristas_[e].cara[1] != f)))
        {
            return false;
        }
    }
    return true;
}

// -------------------------------------------------------------------------------------------
// Painting

void Modelo3D::dibuja(PantallaCAD& pantalla, int modo, Entidad* entidad)
{
    if (vertices_.empty() && caras_.empty())
    {
        return;
    }
    const bool sombreado = modo == PantallaCAD::kRealista || modo == PantallaCAD::kTexturas;
    std::vector<Vector3D<float>> normalesCompartidas;
    if (sombreado)
    {
        normalesVertices(normalesCompartidas);
    }
    std::vector<uint16_t> materiales;
    getMaterialesCaras(materiales);
    std::vector<uint32_t> extremos;
    getExtremosAristas(extremos);
    const uint32_t abgr = entidad != nullptr ? entidad->resuelveColorABGR() : 0xFFFFFFFFU;
    const uint32_t argb = (abgr & 0xFF00FF00U) | ((abgr & 0xFFU) << 16) | ((abgr >> 16) & 0xFFU);
    // Faces coloured one by one bring their own corners, so each corner can carry its face's
    // colour.
    const bool porCara = modo == PantallaCAD::kConceptual && !coloresCaras.empty();

    std::vector<Punto3<double>> puntos;
    std::vector<float> uv;
    std::vector<Vector3D<float>> normales;
    std::vector<uint32_t> colores;
    std::vector<int32_t> poligonos;
    std::vector<int32_t> ciclo;
    for (auto m = materiales.rbegin(); m != materiales.rend(); ++m)
    {
        if (sombreado)
        {
            pantalla.setMaterial(static_cast<int16_t>(*m));
        }
        puntos.clear();
        uv.clear();
        normales.clear();
        colores.clear();
        poligonos.clear();
        if (!porCara)
        {
            getPuntos(puntos);
            for (const vertice_t& v : vertices_)
            {
                uv.push_back(v.uv.x);
                uv.push_back(v.uv.y);
            }
            normales = normalesCompartidas;
        }
        for (size_t f = 0; f < caras_.size(); ++f)
        {
            if (caras_[f].material != *m)
            {
                continue;
            }
            const auto cara = static_cast<int32_t>(f);
            getVerticesCara(cara, ciclo);
            if (ciclo.empty())
            {
                continue;
            }
            bool plana = false;
            recorreCara(cara,
                        [&](int32_t e)
                        {
                            plana = aristas_[e].viva != 0;
                            return !plana;
                        });
            poligonos.push_back(static_cast<int32_t>(ciclo.size()));
            if (!plana && !porCara)
            {
                poligonos.insert(poligonos.end(), ciclo.begin(), ciclo.end());
                continue;
            }
            // Private corners: a flat face's own normal, or its own colour.
            const Vector3D<float> normal = plana ? normalCara(cara) : Vector3D<float>();
            const uint32_t color = f < coloresCaras.size() ? coloresCaras[f] : abgr;
            for (const int32_t v : ciclo)
            {
                const vertice_t& vertice = vertices_[static_cast<size_t>(v)];
                poligonos.push_back(static_cast<int32_t>(puntos.size()));
                puntos.push_back(vertice.punto);
                uv.push_back(vertice.uv.x);
                uv.push_back(vertice.uv.y);
                normales.push_back(normal);
                if (porCara)
                {
                    colores.push_back(color);
                }
            }
        }
        pantalla.iniciaObjeto(abgr, modo);
        pantalla.vertices(static_cast<int>(puntos.size()), puntos.data());
        const auto daAristas = [&]
        { pantalla.aristas(static_cast<int>(extremos.size()), extremos.data()); };
        const auto daColoresVertices = [&]
        {
            if (!coloresVertices.empty())
            {
                pantalla.coloresVertices(static_cast<int>(coloresVertices.size()),
                                         coloresVertices.data());
            }
        };
        const auto daPoligonos = [&]
        { pantalla.caras(static_cast<int>(poligonos.size()), poligonos.data()); };
        switch (modo)
        {
            case PantallaCAD::kAlambrica:
                daAristas();
                daColoresVertices();
                break;
            case PantallaCAD::kConceptual:
                if (porCara)
                {
                    pantalla.coloresVertices(static_cast<int>(colores.size()), colores.data());
                }
                else
                {
                    pantalla.setColorMaterial(argb, 0.8F, 1.0F);
                }
                daPoligonos();
                break;
            case PantallaCAD::kOculto:
            case PantallaCAD::kRayosX:
                daAristas();
                daColoresVertices();
                daPoligonos();
                break;
            case PantallaCAD::kRealista:
                daColoresVertices();
                pantalla.normales(static_cast<int>(normales.size()), normales.data());
                daPoligonos();
                break;
            case PantallaCAD::kTexturas:
                pantalla.coordenadasUV(static_cast<int>(uv.size() / 2), uv.data());
                daPoligonos();
                break;
            default:
                break;
        }
        pantalla.finObjeto(transformable != 0 ? entidad : nullptr);
    }
}

}  // namespace cad
