// GrupoPuntos: bulk body, painting, snap, DXF records and sheet of a point group.
#include "entidades/GrupoPuntos.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "base/Empaquetador.h"
#include "base/FicheroAtomico.h"
#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "documento/Capa.h"
#include "documento/ReferenciaEntidades.h"
#include "intercambio/ExportaDXF.h"
#include "modelo/PuntosCalientes.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

namespace
{

// x, y, z as doubles and the colour as an int32.
constexpr size_t kBytesPunto = 28;
// Records per read: large enough that the per-call cost vanishes, small enough to stay in
// the cache while it is unpacked.
constexpr size_t kPuntosPorTrozo = 1 << 15;

template <class T>
T toma(const uint8_t*& p)
{
    T v;
    std::memcpy(&v, p, sizeof(T));
    p += sizeof(T);
    return v;
}

}  // namespace

GrupoPuntos::GrupoPuntos(int n, const Punto3<double>* puntos_, const uint32_t* colores_)
{
    if (puntos_ == nullptr || n < 1)
    {
        return;
    }
    puntos.assign(puntos_, puntos_ + n);
    if (colores_ != nullptr)
    {
        colores.assign(colores_, colores_ + n);
    }
}

void GrupoPuntos::nuevoPunto(const Punto3<double>& p, uint32_t color_)
{
    puntos.push_back(p);
    colores.push_back(color_);
}

void GrupoPuntos::escribe(SerializadorEscrituraBase& w)
{
    Entidad::escribe(w);
    const size_t n = puntos.size();
    w.escribeLongitud32(static_cast<uint32_t>(n));
    // The same bytes as escribeDoble x, y, z and escribeEntero per point, in large pieces.
    Empaquetador e(w, kBytesPunto * n);
    for (size_t i = 0; i < n; ++i)
    {
        const Punto3<double>& p = puntos[i];
        // A group built without colours writes 0 for them: the count promises a colour for
        // every point.
        e.pon(p.x, p.y, p.z, i < colores.size() ? colores[i] : uint32_t{0});
    }
    e.vacia();
}

bool GrupoPuntos::lee(SerializadorLecturaBase& r)
{
    // Released, not only emptied: a reload must not hold the old cloud beside the new one.
    puntos = {};
    colores = {};
    const bool ok = Entidad::lee(r);
    uint32_t n = 0;
    if (!r.leeLongitud32(n))
    {
        return false;
    }
    // The count comes from the file: one the source cannot hold is refused before anything
    // is reserved.
    if (n > r.bytesDisponibles() / kBytesPunto)
    {
        return false;
    }
    // Exact capacity: a cloud of millions must not carry the slack of a growing vector.
    std::vector<Punto3<double>> leidos;
    std::vector<uint32_t> suyos;
    leidos.reserve(n);
    suyos.reserve(n);
    // Touching fresh memory page by page costs more than the copy into it.
    paginasGrandes(leidos.data(), n * sizeof(Punto3<double>));
    paginasGrandes(suyos.data(), n * sizeof(uint32_t));
    std::vector<uint8_t> trozo(std::min<size_t>(kPuntosPorTrozo, n) * kBytesPunto);
    for (size_t hechos = 0; hechos < n;)
    {
        const size_t cuantos = std::min<size_t>(kPuntosPorTrozo, n - hechos);
        if (!r.leeBytes(trozo.data(), static_cast<uint32_t>(cuantos * kBytesPunto)))
        {
            return false;
        }
        const uint8_t* p = trozo.data();
        for (size_t i = 0; i < cuantos; ++i)
        {
            const double x = toma<double>(p);
            const double y = toma<double>(p);
            const double z = toma<double>(p);
            leidos.emplace_back(x, y, z);
            suyos.push_back(toma<uint32_t>(p));
        }
        hechos += cuantos;
    }
    puntos = std::move(leidos);
    colores = std::move(suyos);
    return ok;
}

void GrupoPuntos::exportaDXF(ExportaDXF& dxf) const
{
    // An entity outside a drawing has no layer; it goes to "0", which every DXF file has.
    const Capa* propia = capa.get();
    dxf.setCapa(propia != nullptr ? propia->nombre : "0");
    const bool porCapa = color.colorCAD == 256;
    const int delGrupo = indiceColorCercano();
    // Clouds repeat their colours; the palette search is kept for the last one met.
    uint32_t ultimo = 0;
    int indiceUltimo = ExportaDXF::indiceColor(0, 0, 0);
    for (size_t i = 0; i < puntos.size(); ++i)
    {
        int indice = delGrupo;
        if (porCapa)
        {
            const uint32_t c = i < colores.size() ? colores[i] : 0;
            if (c != ultimo)
            {
                ultimo = c;
                indiceUltimo =
                    ExportaDXF::indiceColor(static_cast<uint8_t>(c), static_cast<uint8_t>(c >> 8),
                                            static_cast<uint8_t>(c >> 16));
            }
            indice = indiceUltimo;
        }
        const Punto3<double>& p = puntos[i];
        dxf.punto(indice, p.x, p.y, p.z);
    }
}

void GrupoPuntos::traslada(const Vector3D<double>& v)
{
    (void)v;
}

const Punto3<double>* GrupoPuntos::coordenada(int i) const
{
    // A negative index turns into a huge one and is refused too.
    return &puntos.at(static_cast<size_t>(i));
}

Rect3<double> GrupoPuntos::extension() const
{
    Rect3<double> caja;
    for (const Punto3<double>& p : puntos)
    {
        caja.amplia(p);
    }
    return caja;
}

void GrupoPuntos::puntosCalientesEdicion(PuntosCalientes& p, int a, int b)
{
    (void)p;
    (void)a;
    (void)b;
}

void GrupoPuntos::puntosCalientes(PuntosCalientes& p)
{
    (void)p;
}

void GrupoPuntos::aplicaPuntoCaliente(const elemento_arrastrado_t& e)
{
    (void)e;
}

bool GrupoPuntos::getReferenciaEntidades(ReferenciaEntidades& r) const
{
    if ((r.mascara & kPuntosInsercion) == 0 || puntos.empty())
    {
        return false;
    }
    bool tomado = false;
    for (const Punto3<double>& p : puntos)
    {
        tomado = r.ofrecePunto(this, p, r.mascara) || tomado;
    }
    return tomado;
}

void GrupoPuntos::dibuja(PantallaCAD& p) const
{
    if (puntos.empty() || color.colorCAD != 256)
    {
        return;
    }
    void* pick = const_cast<Entidad*>(static_cast<const Entidad*>(this));
    const int n = static_cast<int>(puntos.size());
    if (colores.size() >= puntos.size())
    {
        p.dibujaGrupoPuntos(n, puntos.data(), colores.data(), pick);
        return;
    }
    // The display reads a colour for every point: a short vector is never handed over.
    std::vector<uint32_t> completos(puntos.size(), 0);
    std::copy(colores.begin(), colores.end(), completos.begin());
    p.dibujaGrupoPuntos(n, puntos.data(), completos.data(), pick);
}

// ---------------------------------------------------------------------------------------
// Property sheet

int GrupoPuntos::numeroPropiedadesCategoria(int categoria) const
{
    return categoria == 1 ? 1 : Entidad::numeroPropiedadesCategoria(categoria);
}

bool GrupoPuntos::getPropiedad(int categoria, int indice, Prop& p) const
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

bool GrupoPuntos::setPropiedad(int categoria, int indice, const Prop& p)
{
    if (categoria == 1)
    {
        return false;
    }
    return Entidad::setPropiedad(categoria, indice, p);
}

}  // namespace cad
