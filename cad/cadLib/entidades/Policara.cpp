// Policara: bulk body, painting by one or many materials, snap on the corners, and sheet.
#include "entidades/Policara.h"

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <cstring>
#include <unordered_map>
#include <utility>

#include "base/Empaquetador.h"
#include "base/FicheroAtomico.h"
#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "documento/Capa.h"
#include "documento/ReferenciaEntidades.h"
#include "documento/VariablesPintura.h"
#include "intercambio/ExportaDXF.h"
#include "modelo/Modelo3D.h"
#include "modelo/PuntosCalientes.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

namespace
{

// Bytes of one record in the file.
constexpr size_t kBytesPunto = 24;    // 3 x f64
constexpr size_t kBytesEsquina = 34;  // u32, 2 x f64, 3 x f32, u16
constexpr size_t kBytesEntero = 4;
// Corners unpacked per read: large enough that the per-call cost vanishes, small enough to
// stay in the cache while it is unpacked.
constexpr size_t kEsquinasPorTrozo = 1 << 14;
// The largest piece handed to one byte read or write, whose length is a u32.
constexpr size_t kTrozoMaximo = size_t{1} << 30;

static_assert(sizeof(Punto3<double>) == kBytesPunto && sizeof(int32_t) == kBytesEntero,
              "points and integers go to the file as they lie in memory");

template <class T>
T toma(const uint8_t*& p)
{
    T v;
    std::memcpy(&v, p, sizeof(T));
    p += sizeof(T);
    return v;
}

// Room for exactly `n` records, in huge pages where the system gives them: touching fresh
// memory page by page costs more than the copy into it.
template <class T>
void reservaExacta(std::vector<T>& v, size_t n)
{
    v.reserve(n);
    paginasGrandes(v.data(), n * sizeof(T));
}

// The bytes of `n` integers exactly as a u32 count and escribeEnteroSinSigno per item put
// them, in large pieces.
void escribeEnteros(SerializadorEscrituraBase& w, const std::vector<int32_t>& v)
{
    w.escribeLongitud32(static_cast<uint32_t>(v.size()));
    const auto* datos = reinterpret_cast<const uint8_t*>(v.data());
    for (size_t hecho = 0, total = v.size() * kBytesEntero; hecho < total;)
    {
        const size_t n = std::min(kTrozoMaximo, total - hecho);
        w.escribeBytes(datos + hecho, static_cast<uint32_t>(n));
        hecho += n;
    }
}

// A u32 count and that many u32 items, the count checked against the bytes left before
// anything is reserved.
bool leeEnteros(SerializadorLecturaBase& r, std::vector<int32_t>& v)
{
    uint32_t n = 0;
    if (!r.leeLongitud32(n) || n > r.bytesDisponibles() / kBytesEntero)
    {
        return false;
    }
    std::vector<int32_t> leidos;
    reservaExacta(leidos, n);
    leidos.resize(n);
    auto* datos = reinterpret_cast<uint8_t*>(leidos.data());
    for (size_t hecho = 0, total = size_t{n} * kBytesEntero; hecho < total;)
    {
        const size_t trozo = std::min(kTrozoMaximo, total - hecho);
        if (!r.leeBytes(datos + hecho, static_cast<uint32_t>(trozo)))
        {
            return false;
        }
        hecho += trozo;
    }
    v = std::move(leidos);
    return true;
}

bool leePuntos(SerializadorLecturaBase& r, std::vector<Punto3<double>>& v)
{
    uint32_t n = 0;
    if (!r.leeLongitud32(n) || n > r.bytesDisponibles() / kBytesPunto)
    {
        return false;
    }
    std::vector<Punto3<double>> leidos;
    reservaExacta(leidos, n);
    leidos.resize(n);
    if (!r.leePuntos(leidos.data(), n))
    {
        return false;
    }
    v = std::move(leidos);
    return true;
}

// The corners, each `indice` checked against the `puntos` count as it comes.
bool leeEsquinas(SerializadorLecturaBase& r, size_t puntos, std::vector<esquina_t>& v)
{
    uint32_t n = 0;
    if (!r.leeLongitud32(n) || n > r.bytesDisponibles() / kBytesEsquina)
    {
        return false;
    }
    std::vector<esquina_t> leidas;
    reservaExacta(leidas, n);
    std::vector<uint8_t> trozo(std::min<size_t>(kEsquinasPorTrozo, n) * kBytesEsquina);
    for (size_t hechas = 0; hechas < n;)
    {
        const size_t cuantas = std::min<size_t>(kEsquinasPorTrozo, n - hechas);
        if (!r.leeBytes(trozo.data(), static_cast<uint32_t>(cuantas * kBytesEsquina)))
        {
            return false;
        }
        const uint8_t* p = trozo.data();
        for (size_t i = 0; i < cuantas; ++i)
        {
            esquina_t e;
            e.indice = toma<int32_t>(p);
            e.uv.x = toma<double>(p);
            e.uv.y = toma<double>(p);
            e.normal.x = toma<float>(p);
            e.normal.y = toma<float>(p);
            e.normal.z = toma<float>(p);
            e.material = toma<uint16_t>(p);
            if (e.indice < 0 || static_cast<size_t>(e.indice) >= puntos)
            {
                return false;
            }
            leidas.push_back(e);
        }
        hechas += cuantas;
    }
    v = std::move(leidas);
    return true;
}

// Every face start leaves room for its `lados` corners.
bool carasCaben(const std::vector<int32_t>& caras, int lados, size_t esquinas)
{
    return std::all_of(caras.begin(), caras.end(),
                       [&](int32_t c)
                       { return c >= 0 && static_cast<size_t>(c) + lados <= esquinas; });
}

// Pairs within the face counts, neither count going back from one pair to the next.
bool cambiosValidos(const std::vector<int32_t>& cambios, size_t triangulos, size_t cuadrilateros)
{
    if (cambios.size() % 2 != 0)
    {
        return false;
    }
    int32_t t = 0;
    int32_t q = 0;
    for (size_t k = 0; k < cambios.size(); k += 2)
    {
        if (cambios[k] < t || cambios[k + 1] < q || static_cast<size_t>(cambios[k]) > triangulos ||
            static_cast<size_t>(cambios[k + 1]) > cuadrilateros)
        {
            return false;
        }
        t = cambios[k];
        q = cambios[k + 1];
    }
    return true;
}

}  // namespace

// ---------------------------------------------------------------------------------------
// File body

void Policara::escribe(SerializadorEscrituraBase& w)
{
    Entidad::escribe(w);
    // The bytes of escribeVectorPuntos, of escribeLongitud32 with the corner fields one call
    // each, and of escribeVectorEnteros; a million faces would otherwise cost millions of calls.
    w.escribeLongitud32(static_cast<uint32_t>(puntos.size()));
    w.escribePuntos(puntos.data(), puntos.size());
    w.escribeLongitud32(static_cast<uint32_t>(esquinas.size()));
    Empaquetador e(w, kBytesEsquina * esquinas.size());
    for (const esquina_t& c : esquinas)
    {
        e.pon(static_cast<uint32_t>(c.indice), c.uv.x, c.uv.y, c.normal.x, c.normal.y, c.normal.z,
              c.material);
    }
    e.vacia();
    escribeEnteros(w, triangulos);
    escribeEnteros(w, cuadrilateros);
    escribeEnteros(w, cambiosMaterial);
}

bool Policara::lee(SerializadorLecturaBase& r)
{
    puntos.clear();
    esquinas.clear();
    triangulos.clear();
    cuadrilateros.clear();
    cambiosMaterial.clear();
    aristasDibujo.clear();
    poligonosDibujo.clear();
    const bool prefijo = Entidad::lee(r);
    // Read into locals and taken only whole: a refused body leaves the geometry empty.
    std::vector<Punto3<double>> p;
    std::vector<esquina_t> e;
    std::vector<int32_t> t;
    std::vector<int32_t> q;
    std::vector<int32_t> c;
    if (!leePuntos(r, p) || !leeEsquinas(r, p.size(), e) || !leeEnteros(r, t) ||
        !carasCaben(t, 3, e.size()) || !leeEnteros(r, q) || !carasCaben(q, 4, e.size()) ||
        !leeEnteros(r, c) || !cambiosValidos(c, t.size(), q.size()))
    {
        return false;
    }
    puntos = std::move(p);
    esquinas = std::move(e);
    triangulos = std::move(t);
    cuadrilateros = std::move(q);
    cambiosMaterial = std::move(c);
    return prefijo;
}

Entidad* Policara::clona() const
{
    auto* copia = new Policara;
    static_cast<Propiedades&>(*copia) = *this;
    copia->id = id;
    copia->color = color;
    copia->estiloLinea = estiloLinea;
    copia->estado = estado;
    copia->capa = capa;
    return copia;
}

void Policara::exportaDXF(ExportaDXF& dxf) const
{
    // An entity outside a drawing has no layer; it goes to "0", which every DXF file has.
    const Capa* propia = capa.get();
    dxf.setCapa(propia != nullptr ? propia->nombre : "0");
}

// ---------------------------------------------------------------------------------------
// Geometry

void Policara::traslada(const Vector3D<double>& v)
{
    for (Punto3<double>& p : puntos)
    {
        p += v;
    }
}

const Punto3<double>* Policara::coordenada(int i) const
{
    return i >= 0 && static_cast<size_t>(i) < puntos.size() ? &puntos[static_cast<size_t>(i)]
                                                            : nullptr;
}

Rect3<double> Policara::extension() const
{
    Rect3<double> caja;
    for (const Punto3<double>& p : puntos)
    {
        caja.amplia(p);
    }
    return caja;
}

bool Policara::caraValida(int32_t inicio, int lados) const
{
    if (inicio < 0 || static_cast<size_t>(inicio) + static_cast<size_t>(lados) > esquinas.size())
    {
        return false;
    }
    for (int k = 0; k < lados; ++k)
    {
        const int32_t i = esquinas[static_cast<size_t>(inicio + k)].indice;
        if (i < 0 || static_cast<size_t>(i) >= puntos.size())
        {
            return false;
        }
    }
    return true;
}

template <class F>
void Policara::recorreCaras(F&& f) const
{
    for (const int32_t t : triangulos)
    {
        if (caraValida(t, 3))
        {
            f(t, 3);
        }
    }
    for (const int32_t q : cuadrilateros)
    {
        if (caraValida(q, 4))
        {
            f(q, 4);
        }
    }
}

void Policara::aModelo(Modelo3D& m) const
{
    const auto base = static_cast<int32_t>(m.vertices().size());
    m.reserva(puntos.size(), 3 * (triangulos.size() + cuadrilateros.size()),
              triangulos.size() + cuadrilateros.size());
    for (const Punto3<double>& p : puntos)
    {
        m.nuevoVertice(p);
    }
    // Per side (its two point indices, lower first): how many faces walk it, and from which
    // end the first one does.
    struct uso_t
    {
        uint8_t caras = 0;
        int32_t desde = -1;
    };
    std::unordered_map<uint64_t, uso_t> usos;
    usos.reserve(2 * (triangulos.size() + cuadrilateros.size()));
    const auto clave = [](int32_t a, int32_t b)
    {
        const auto x = static_cast<uint32_t>(std::min(a, b));
        const auto y = static_cast<uint32_t>(std::max(a, b));
        return (static_cast<uint64_t>(x) << 32) | y;
    };
    recorreCaras(
        [&](int32_t inicio, int lados)
        {
            int32_t v[4];
            Punto3<double> p[4];
            Vector2D<float> uv[4];
            for (int k = 0; k < lados; ++k)
            {
                const esquina_t& e = esquinas[static_cast<size_t>(inicio + k)];
                v[k] = e.indice;
                p[k] = puntos[static_cast<size_t>(e.indice)];
                uv[k] = Vector2D<float>(static_cast<float>(e.uv.x), static_cast<float>(e.uv.y));
            }
            for (int k = 0; k < lados; ++k)
            {
                if (std::count(v, v + lados, v[k]) > 1)
                {
                    return;
                }
            }
            const uint16_t primero = esquinas[static_cast<size_t>(inicio)].material;
            const uint16_t material = primero == 0xFFFF ? 0 : primero;
            bool propia = false;
            for (int k = 0; k < lados && !propia; ++k)
            {
                const auto u = usos.find(clave(v[k], v[(k + 1) % lados]));
                propia = u != usos.end() && (u->second.caras >= 2 || u->second.desde == v[k]);
            }
            if (propia)
            {
                m.nuevaCara(lados, p, uv, false, material);
                return;
            }
            int32_t enModelo[4];
            for (int k = 0; k < lados; ++k)
            {
                uso_t& u = usos[clave(v[k], v[(k + 1) % lados])];
                u.desde = u.caras == 0 ? v[k] : u.desde;
                ++u.caras;
                enModelo[k] = base + v[k];
                m.setCoordenadasUV(enModelo[k], uv[k]);
            }
            m.nuevaCara(lados, enModelo, false, material);
        });
}

void Policara::puntosCalientesEdicion(PuntosCalientes& p, int a, int b)
{
    (void)a;
    (void)b;
    puntosCalientes(p);
}

void Policara::puntosCalientes(PuntosCalientes& p)
{
    (void)p;
}

void Policara::aplicaPuntoCaliente(const elemento_arrastrado_t& e)
{
    (void)e;
}

bool Policara::getReferenciaEntidades(ReferenciaEntidades& r) const
{
    bool tomado = false;
    const auto punto = [this](int32_t esquina)
    { return puntos[static_cast<size_t>(esquinas[static_cast<size_t>(esquina)].indice)]; };
    if ((r.mascara & kExtremos) != 0)
    {
        recorreCaras(
            [&](int32_t inicio, int lados)
            {
                for (int k = 0; k < lados; ++k)
                {
                    tomado = r.ofrecePunto(this, punto(inicio + k), kExtremos) || tomado;
                }
            });
    }
    if ((r.mascara & kPuntosMedios) != 0)
    {
        recorreCaras(
            [&](int32_t inicio, int lados)
            {
                for (int k = 0; k < lados; ++k)
                {
                    const Punto3<double>& a = punto(inicio + k);
                    const Punto3<double>& b = punto(inicio + (k + 1) % lados);
                    tomado = r.ofrecePunto(this, a + (b - a) * 0.5, kPuntosMedios) || tomado;
                }
            });
    }
    return tomado;
}

// ---------------------------------------------------------------------------------------
// Painting

void Policara::dibuja(PantallaCAD& p) const
{
    // The host's switch hides the models; they stay in the list, the extents and the file.
    if (existeVariablePintura(kVarOcultaModelos))
    {
        return;
    }
    if (cambiosMaterial.empty())
    {
        dibujaUnMaterial(p);
    }
    else
    {
        dibujaPorMateriales(p);
    }
}

void Policara::dibujaUnMaterial(PantallaCAD& p) const
{
    if (aristasDibujo.empty())
    {
        recorreCaras(
            [this](int32_t inicio, int lados)
            {
                for (int k = 0; k < lados; ++k)
                {
                    aristasDibujo.push_back(esquinas[static_cast<size_t>(inicio + k)].indice);
                    aristasDibujo.push_back(
                        esquinas[static_cast<size_t>(inicio + (k + 1) % lados)].indice);
                }
            });
    }
    if (poligonosDibujo.empty())
    {
        recorreCaras(
            [this](int32_t inicio, int lados)
            {
                poligonosDibujo.push_back(lados);
                for (int k = 0; k < lados; ++k)
                {
                    poligonosDibujo.push_back(esquinas[static_cast<size_t>(inicio + k)].indice);
                }
            });
    }
    if (poligonosDibujo.empty())
    {
        return;
    }
    p.iniciaObjeto(resuelveColorABGR(), PantallaCAD::kOculto);
    p.vertices(static_cast<int>(puntos.size()), puntos.data());
    // The edge indices are never negative: the same bits read as unsigned.
    p.aristas(static_cast<int>(aristasDibujo.size()),
              reinterpret_cast<const uint32_t*>(aristasDibujo.data()));
    p.caras(static_cast<int>(poligonosDibujo.size()), poligonosDibujo.data());
    p.finObjeto(const_cast<Entidad*>(static_cast<const Entidad*>(this)));
}

void Policara::dibujaPorMateriales(PantallaCAD& p) const
{
    // Stretch boundaries as (triangles, quads) counts: the start, each pair, the end. A pair
    // past the lists (a soup filled in code) is clamped; a stretch that goes back is empty.
    std::vector<std::pair<size_t, size_t>> cortes = {{0, 0}};
    for (size_t k = 0; k + 1 < cambiosMaterial.size(); k += 2)
    {
        const auto limita = [](int32_t v, size_t n)
        { return std::min(static_cast<size_t>(std::max(v, 0)), n); };
        cortes.emplace_back(limita(cambiosMaterial[k], triangulos.size()),
                            limita(cambiosMaterial[k + 1], cuadrilateros.size()));
    }
    cortes.emplace_back(triangulos.size(), cuadrilateros.size());

    const uint32_t abgr = resuelveColorABGR();
    void* pick = const_cast<Entidad*>(static_cast<const Entidad*>(this));
    std::vector<Punto3<double>> vertices;
    std::vector<Vector3D<float>> normales;
    std::vector<float> uv;
    std::vector<int32_t> poligonos;
    for (size_t k = 0; k + 1 < cortes.size(); ++k)
    {
        vertices.clear();
        normales.clear();
        uv.clear();
        poligonos.clear();
        uint16_t materialTramo = 0;
        const auto anade = [&](int32_t inicio, int lados)
        {
            if (!caraValida(inicio, lados))
            {
                return;
            }
            if (poligonos.empty())
            {
                materialTramo = esquinas[static_cast<size_t>(inicio)].material;
            }
            poligonos.push_back(lados);
            for (int j = 0; j < lados; ++j)
            {
                const esquina_t& e = esquinas[static_cast<size_t>(inicio + j)];
                poligonos.push_back(static_cast<int32_t>(vertices.size()));
                vertices.push_back(puntos[static_cast<size_t>(e.indice)]);
                normales.push_back(e.normal);
                uv.push_back(static_cast<float>(e.uv.x));
                uv.push_back(static_cast<float>(e.uv.y));
            }
        };
        for (size_t t = cortes[k].first; t < cortes[k + 1].first; ++t)
        {
            anade(triangulos[t], 3);
        }
        for (size_t q = cortes[k].second; q < cortes[k + 1].second; ++q)
        {
            anade(cuadrilateros[q], 4);
        }
        if (poligonos.empty())
        {
            continue;
        }
        const int n = static_cast<int>(vertices.size());
        p.setMaterial(static_cast<int16_t>(materialTramo));
        p.iniciaObjeto(abgr, PantallaCAD::kTexturas);
        p.vertices(n, vertices.data());
        p.normales(n, normales.data());
        p.coordenadasUV(n, uv.data());
        p.caras(static_cast<int>(poligonos.size()), poligonos.data());
        p.finObjeto(pick);
    }
}

// ---------------------------------------------------------------------------------------
// Property sheet

int Policara::numeroPropiedadesCategoria(int categoria) const
{
    switch (categoria)
    {
        case 1:
            return 1;
        case 2:
            return 3;
        default:
            return Entidad::numeroPropiedadesCategoria(categoria);
    }
}

bool Policara::getPropiedad(int categoria, int indice, Prop& p) const
{
    if (categoria == 1)
    {
        if (indice != 0)
        {
            return false;
        }
        p.nombre = "Vértice";
        p.tipo = TipoProp::ListaCoordenadas;
        return true;
    }
    if (categoria != 2)
    {
        return Entidad::getPropiedad(categoria, indice, p);
    }
    int valor = 0;
    switch (indice)
    {
        case 0:
            p.nombre = "Triángulos";
            valor = static_cast<int>(triangulos.size());
            break;
        case 1:
            p.nombre = "Cuadriláteros";
            valor = static_cast<int>(cuadrilateros.size());
            break;
        case 2:
        {
            // Distinct ids among the corners, "none" (0xFFFF) counted as one.
            p.nombre = "Materiales";
            std::bitset<65536> vistos;
            for (const esquina_t& e : esquinas)
            {
                vistos.set(e.material);
            }
            valor = static_cast<int>(vistos.count());
            break;
        }
        default:
            return false;
    }
    p.tipo = TipoProp::Entero;
    p.soloLectura = true;
    p.asignaInt(valor);
    return true;
}

bool Policara::setPropiedad(int categoria, int indice, const Prop& p)
{
    // Everything past "General" is derived from the geometry.
    return categoria == 0 && Entidad::setPropiedad(categoria, indice, p);
}

int Policara::numeroElementosLista(int categoria, int indice) const
{
    return categoria == 1 && indice == 0 ? numCoordenadas() : 0;
}

bool Policara::getElementoLista(int categoria, int indice, int i, double& x, double& y,
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

bool Policara::setElementoLista(int categoria, int indice, int i, const double* xyz)
{
    (void)categoria;
    (void)indice;
    (void)i;
    (void)xyz;
    return false;
}

}  // namespace cad
