// Polilinea, and the vertex-chain operations it shares with Poligono.
#include "entidades/Polilinea.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "documento/Capa.h"
#include "documento/ReferenciaEntidades.h"
#include "entidades/Firmas.h"
#include "intercambio/ExportaDXF.h"
#include "modelo/PuntosCalientes.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

namespace
{

// From this many vertices on the body no longer fits a u16 block length.
constexpr int kVerticesBloqueLargo = 1000;
// Three doubles per vertex in the file.
constexpr uint64_t kBytesVertice = 24;

}  // namespace

// ---------------------------------------------------------------------------------------
// The shared chain operations

namespace cadenaVertices
{

void asigna(Polilinea3D<double>& c, int n, const Punto3<double>* puntos)
{
    c.vertices.clear();
    if (puntos != nullptr && n > 0)
    {
        c.vertices.assign(puntos, puntos + n);
    }
}

void escribe(const Polilinea3D<double>& c, SerializadorEscrituraBase& w)
{
    w.escribeEnteroSinSigno(static_cast<uint32_t>(c.vertices.size()));
    w.escribePuntos(c.vertices.data(), c.vertices.size());
}

bool lee(Polilinea3D<double>& c, SerializadorLecturaBase& r)
{
    c.vertices.clear();
    uint32_t n = 0;
    if (!r.leeEnteroSinSigno(n))
    {
        return false;
    }
    // The count comes from the file: check it against what the file can still hold before
    // reserving, so a lying count fails here instead of exhausting memory.
    if (n > r.bytesDisponibles() / kBytesVertice)
    {
        return false;
    }
    c.vertices.resize(n);
    if (!r.leePuntos(c.vertices.data(), n))
    {
        c.vertices.clear();
        return false;
    }
    return true;
}

void exportaDXF(const Entidad& e, const Polilinea3D<double>& c, int flags, ExportaDXF& dxf)
{
    // An entity outside a drawing has no layer; it goes to "0", which every DXF file has.
    const Capa* capa = e.capa.get();
    dxf.setCapa(capa != nullptr ? capa->nombre : "0");
    dxf.inicioPolilinea(flags, e.indiceColorCercano());
    for (const auto& v : c.vertices)
    {
        dxf.verticePolilinea(v.x, v.y, v.z);
    }
    dxf.finPolilinea();
}

void traslada(Polilinea3D<double>& c, const Vector3D<double>& v)
{
    for (auto& p : c.vertices)
    {
        p += v;
    }
}

const Punto3<double>* coordenada(const Polilinea3D<double>& c, int i)
{
    return i >= 0 && i < c.numeroVertices() ? &c.vertices[static_cast<size_t>(i)] : nullptr;
}

void puntosCalientes(Entidad& e, const Polilinea3D<double>& c, PuntosCalientes& p)
{
    p.entidad = &e;
    p.nuevosPuntos(c.numeroVertices(), c.vertices.data());
    for (int i = 0; i < c.numeroAristas(); ++i)
    {
        const auto [a, b] = c.arista(i);
        p.nuevaArista(a, b);
    }
    p.numeraPuntos();
}

void aplicaPuntoCaliente(Polilinea3D<double>& c, const elemento_arrastrado_t& e)
{
    const int n = c.numeroVertices();
    if (e.indice < 0 || e.indice >= n)
    {
        return;
    }
    const auto i = static_cast<size_t>(e.indice);
    if (e.tipo == kTipoVertice)
    {
        c.vertices[i] = e.posicion;
    }
    else if (e.tipo == kTipoArista && e.indice < c.numeroAristas() && e.extra.size() >= 2)
    {
        // From the ends at the grab, not the current ones: the drag reports absolute
        // positions, so repeated calls must not accumulate the move.
        const size_t siguiente = (i + 1) % static_cast<size_t>(n);
        c.vertices[i] = e.posicion + (e.extra[0] - e.punto);
        c.vertices[siguiente] = e.posicion + (e.extra[1] - e.punto);
    }
}

bool getReferenciaEntidades(const Entidad& e, const Polilinea3D<double>& c, ReferenciaEntidades& r)
{
    // The offers name the entity that wins; the snap never changes it.
    Entidad* yo = const_cast<Entidad*>(&e);
    const auto& v = c.vertices;
    // Only the sides between consecutive vertices: the closing side is never offered.
    const size_t lados = v.empty() ? 0 : v.size() - 1;
    bool tomado = false;
    if ((r.mascara & kExtremos) != 0)
    {
        for (const auto& p : v)
        {
            tomado = r.ofrecePunto(yo, p, kExtremos) || tomado;
        }
    }
    if ((r.mascara & kPuntosMedios) != 0)
    {
        for (size_t i = 0; i < lados; ++i)
        {
            const Punto3<double> medio = Punto3<double>::puntoMedio(v[i], v[i + 1]);
            tomado = r.ofrecePunto(yo, medio, kPuntosMedios) || tomado;
        }
    }
    if ((r.mascara & kCercano) != 0)
    {
        for (size_t i = 0; i < lados; ++i)
        {
            tomado = r.ofreceSegmento(yo, Segmento{v[i], v[i + 1]}) || tomado;
        }
    }
    return tomado;
}

int numeroPropiedadesCategoria(const Entidad& e, int categoria)
{
    if (categoria == 1)
    {
        return 2;
    }
    return categoria == 2 ? 1 : e.Entidad::numeroPropiedadesCategoria(categoria);
}

bool getPropiedad(const Entidad& e, const Polilinea3D<double>& c, int categoria, int indice,
                  Prop& p)
{
    if (categoria == 1 && indice == 0)
    {
        p.nombre = "Vértice";
        p.tipo = TipoProp::ListaCoordenadas;
        return true;
    }
    if (categoria == 1 && indice == 1)
    {
        p.nombre = "Longitud";
        p.tipo = TipoProp::Doble;
        p.soloLectura = true;
        p.asignaDoble(c.longitud());
        return true;
    }
    if (categoria == 2 && indice == 0)
    {
        p.nombre = "Cerrada";
        p.tipo = TipoProp::Booleano;
        p.valor = c.cerrada ? "1" : "0";
        return true;
    }
    if (categoria == 1 || categoria == 2)
    {
        return false;
    }
    return e.Entidad::getPropiedad(categoria, indice, p);
}

bool setPropiedad(Entidad& e, Polilinea3D<double>& c, int categoria, int indice, const Prop& p)
{
    if (categoria == 2 && indice == 0)
    {
        // Any non-zero integer closes; text that is no number reads as 0 and opens. strtol
        // saturates out of range, which is still non-zero.
        c.cerrada = std::strtol(p.valor.c_str(), nullptr, 10) != 0;
        return true;
    }
    if (categoria == 1 || categoria == 2)
    {
        // The vertices go through the list operations and the length is derived.
        return false;
    }
    return e.Entidad::setPropiedad(categoria, indice, p);
}

int numeroElementosLista(const Entidad& e, const Polilinea3D<double>& c, int categoria, int indice)
{
    if (categoria == 1 && indice == 0)
    {
        return c.numeroVertices();
    }
    return e.Entidad::numeroElementosLista(categoria, indice);
}

bool getElementoLista(const Entidad& e, const Polilinea3D<double>& c, int categoria, int indice,
                      int i, double& x, double& y, double& z)
{
    if (categoria != 1 || indice != 0)
    {
        return e.Entidad::getElementoLista(categoria, indice, i, x, y, z);
    }
    const Punto3<double>* v = coordenada(c, i);
    if (v == nullptr)
    {
        return false;
    }
    x = v->x;
    y = v->y;
    z = v->z;
    return true;
}

bool setElementoLista(Entidad& e, Polilinea3D<double>& c, int categoria, int indice, int i,
                      const double* xyz)
{
    if (categoria != 1 || indice != 0)
    {
        return e.Entidad::setElementoLista(categoria, indice, i, xyz);
    }
    if (xyz == nullptr || i < 0 || i >= c.numeroVertices())
    {
        return false;
    }
    c.vertices[static_cast<size_t>(i)] = Punto3<double>(xyz[0], xyz[1], xyz[2]);
    return true;
}

}  // namespace cadenaVertices

// ---------------------------------------------------------------------------------------
// Polilinea

Polilinea::Polilinea(int n, const Punto3<double>* puntos)
{
    cadenaVertices::asigna(*this, n, puntos);
}

const char* Polilinea::etiqueta() const
{
    return numeroVertices() >= kVerticesBloqueLargo ? kFirmaEntidadPolilineaLarga
                                                    : kFirmaEntidadPolilinea;
}

int Polilinea::tamanoBloque() const
{
    return numeroVertices() >= kVerticesBloqueLargo ? kBloque32 : kBloque16;
}

void Polilinea::escribe(SerializadorEscrituraBase& w)
{
    Entidad::escribe(w);
    w.escribeBooleano(cerrada);
    cadenaVertices::escribe(*this, w);
}

bool Polilinea::lee(SerializadorLecturaBase& r)
{
    vertices.clear();
    const bool ok = Entidad::lee(r);
    if (!r.leeBooleano(cerrada))
    {
        return false;
    }
    return cadenaVertices::lee(*this, r) && ok;
}

void Polilinea::exportaDXF(ExportaDXF& dxf) const
{
    cadenaVertices::exportaDXF(*this, *this, cerrada ? 9 : 8, dxf);
}

void Polilinea::traslada(const Vector3D<double>& v)
{
    cadenaVertices::traslada(*this, v);
}

const Punto3<double>* Polilinea::coordenada(int i) const
{
    return cadenaVertices::coordenada(*this, i);
}

void Polilinea::puntosCalientesEdicion(PuntosCalientes& p, int a, int b)
{
    (void)a;
    (void)b;
    puntosCalientes(p);
}

void Polilinea::puntosCalientes(PuntosCalientes& p)
{
    cadenaVertices::puntosCalientes(*this, *this, p);
}

void Polilinea::aplicaPuntoCaliente(const elemento_arrastrado_t& e)
{
    cadenaVertices::aplicaPuntoCaliente(*this, e);
}

bool Polilinea::getReferenciaEntidades(ReferenciaEntidades& r) const
{
    return cadenaVertices::getReferenciaEntidades(*this, *this, r);
}

void Polilinea::dibuja(PantallaCAD& p) const
{
    if (vertices.empty())
    {
        return;
    }
    void* pick = const_cast<Entidad*>(static_cast<const Entidad*>(this));
    p.dibujaPolilinea(numeroVertices(), vertices.data(), cerrada, resuelveColorABGR(), pick);
}

int Polilinea::numeroPropiedadesCategoria(int categoria) const
{
    return cadenaVertices::numeroPropiedadesCategoria(*this, categoria);
}

bool Polilinea::getPropiedad(int categoria, int indice, Prop& p) const
{
    return cadenaVertices::getPropiedad(*this, *this, categoria, indice, p);
}

bool Polilinea::setPropiedad(int categoria, int indice, const Prop& p)
{
    return cadenaVertices::setPropiedad(*this, *this, categoria, indice, p);
}

int Polilinea::numeroElementosLista(int categoria, int indice) const
{
    return cadenaVertices::numeroElementosLista(*this, *this, categoria, indice);
}

bool Polilinea::getElementoLista(int categoria, int indice, int i, double& x, double& y,
                                 double& z) const
{
    return cadenaVertices::getElementoLista(*this, *this, categoria, indice, i, x, y, z);
}

bool Polilinea::setElementoLista(int categoria, int indice, int i, const double* xyz)
{
    return cadenaVertices::setElementoLista(*this, *this, categoria, indice, i, xyz);
}

}  // namespace cad
