// Punto: body, painting, hot element, snap, DXF record and sheet of a drawn point.
#include "entidades/Punto.h"

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "documento/Capa.h"
#include "documento/ReferenciaEntidades.h"
#include "intercambio/ExportaDXF.h"
#include "modelo/PuntosCalientes.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

Punto::Punto(const Punto3<double>& p) : Punto3<double>(p) {}

Punto::Punto(double px, double py, double pz) : Punto3<double>(px, py, pz) {}

Punto::Punto(double px, double py, double pz, int rgb) : Punto3<double>(px, py, pz)
{
    color.setRGB(static_cast<uint32_t>(rgb));
}

void Punto::escribe(SerializadorEscrituraBase& w)
{
    Entidad::escribe(w);
    w.escribeDoble(x);
    w.escribeDoble(y);
    w.escribeDoble(z);
}

bool Punto::lee(SerializadorLecturaBase& r)
{
    bool ok = Entidad::lee(r);
    ok = r.leeDoble(x) && ok;
    ok = r.leeDoble(y) && ok;
    ok = r.leeDoble(z) && ok;
    return ok;
}

std::string Punto::capaDXF() const
{
    const Capa* c = capa.get();
    return c != nullptr ? c->nombre : "0";
}

void* Punto::pick() const
{
    // The display hands picks back as Entidad*, so the pointer must be that subobject's.
    return const_cast<Entidad*>(static_cast<const Entidad*>(this));
}

void Punto::exportaDXF(ExportaDXF& dxf) const
{
    dxf.setCapa(capaDXF());
    dxf.punto(indiceColorCercano(), x, y, z);
}

void Punto::traslada(const Vector3D<double>& v)
{
    x += v.x;
    y += v.y;
    z += v.z;
}

const Punto3<double>* Punto::coordenada(int i) const
{
    (void)i;
    return this;
}

void Punto::puntosCalientesEdicion(PuntosCalientes& p, int a, int b)
{
    (void)a;
    (void)b;
    puntosCalientes(p);
}

void Punto::puntosCalientes(PuntosCalientes& p)
{
    p.entidad = this;
    p.nuevoPunto(*this);
    p.numeraPuntos();
}

void Punto::aplicaPuntoCaliente(const elemento_arrastrado_t& e)
{
    if (e.tipo == kTipoVertice)
    {
        x = e.posicion.x;
        y = e.posicion.y;
        z = e.posicion.z;
    }
}

bool Punto::getReferenciaEntidades(ReferenciaEntidades& r) const
{
    if ((r.mascara & kPuntosInsercion) == 0)
    {
        return false;
    }
    // The offer keeps a mutable entity pointer; the snap only hands it back to the caller.
    return r.ofrecePunto(const_cast<Punto*>(this), *this, kPuntosInsercion);
}

void Punto::dibuja(PantallaCAD& p) const
{
    p.dibujaPunto(*this, resuelveColorABGR(), pick());
}

// ---------------------------------------------------------------------------------------
// Property sheet

int Punto::numeroPropiedadesCategoria(int categoria) const
{
    return categoria == 1 ? 1 : Entidad::numeroPropiedadesCategoria(categoria);
}

bool Punto::getPropiedad(int categoria, int indice, Prop& p) const
{
    if (categoria != 1)
    {
        return Entidad::getPropiedad(categoria, indice, p);
    }
    if (indice != 0)
    {
        return false;
    }
    p.nombre = "Posición";
    p.tipo = TipoProp::Coordenada;
    p.x = x;
    p.y = y;
    p.z = z;
    return true;
}

bool Punto::setPropiedad(int categoria, int indice, const Prop& p)
{
    if (categoria != 1)
    {
        return Entidad::setPropiedad(categoria, indice, p);
    }
    if (indice != 0)
    {
        return false;
    }
    x = p.x;
    y = p.y;
    z = p.z;
    return true;
}

}  // namespace cad
