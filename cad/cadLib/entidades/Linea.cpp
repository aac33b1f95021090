// Linea: body, painting, hot elements, snap, DXF record and property sheet.
#include "entidades/Linea.h"

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

const char* Linea::etiqueta() const
{
    return kFirmaEntidadLinea;
}

void Linea::escribe(SerializadorEscrituraBase& w)
{
    Entidad::escribe(w);
    w.escribePunto3(origen);
    w.escribePunto3(extremo);
}

bool Linea::lee(SerializadorLecturaBase& r)
{
    bool ok = Entidad::lee(r);
    ok = r.leePunto3(origen) && ok;
    ok = r.leePunto3(extremo) && ok;
    return ok;
}

void Linea::exportaDXF(ExportaDXF& dxf) const
{
    // An entity outside a drawing has no layer; it goes to "0", which every DXF file has.
    const Capa* c = capa.get();
    dxf.setCapa(c != nullptr ? c->nombre : "0");
    dxf.linea(indiceColorCercano(), origen.x, origen.y, origen.z, extremo.x, extremo.y, extremo.z);
}

void Linea::traslada(const Vector3D<double>& v)
{
    origen += v;
    extremo += v;
}

const Punto3<double>* Linea::coordenada(int i) const
{
    if (i == 0)
    {
        return &origen;
    }
    return i == 1 ? &extremo : nullptr;
}

void Linea::puntosCalientesEdicion(PuntosCalientes& p, int a, int b)
{
    (void)a;
    (void)b;
    puntosCalientes(p);
}

void Linea::puntosCalientes(PuntosCalientes& p)
{
    p.entidad = this;
    const Punto3<double> extremos[2] = {origen, extremo};
    p.nuevosPuntos(2, extremos);
    p.nuevaArista(origen, extremo);
    p.numeraPuntos();
}

void Linea::aplicaPuntoCaliente(const elemento_arrastrado_t& e)
{
    if (e.tipo == kTipoVertice)
    {
        if (e.indice == 0)
        {
            origen = e.posicion;
        }
        else if (e.indice == 1)
        {
            extremo = e.posicion;
        }
    }
    else if (e.tipo == kTipoArista && e.indice == 0 && e.extra.size() >= 2)
    {
        // From the ends at the grab, not the current ones: the drag reports absolute
        // positions, so repeated calls must not accumulate the move.
        origen = e.posicion + (e.extra[0] - e.punto);
        extremo = e.posicion + (e.extra[1] - e.punto);
    }
}

bool Linea::getReferenciaEntidades(ReferenciaEntidades& r) const
{
    // The offers name the entity that wins; the snap never changes it.
    Entidad* yo = const_cast<Linea*>(this);
    bool tomado = false;
    if ((r.mascara & kExtremos) != 0)
    {
        tomado = r.ofrecePunto(yo, origen, kExtremos) || tomado;
        tomado = r.ofrecePunto(yo, extremo, kExtremos) || tomado;
    }
    if ((r.mascara & kPuntosMedios) != 0)
    {
        tomado =
            r.ofrecePunto(yo, Punto3<double>::puntoMedio(origen, extremo), kPuntosMedios) || tomado;
    }
    if ((r.mascara & kCercano) != 0)
    {
        tomado = r.ofreceSegmento(yo, Segmento{origen, extremo}) || tomado;
    }
    return tomado;
}

void Linea::dibuja(PantallaCAD& p) const
{
    void* pick = const_cast<Entidad*>(static_cast<const Entidad*>(this));
    p.dibujaLinea(*this, resuelveColorABGR(), pick);
}

int Linea::numeroPropiedadesCategoria(int categoria) const
{
    return categoria == 1 ? 4 : Entidad::numeroPropiedadesCategoria(categoria);
}

bool Linea::getPropiedad(int categoria, int indice, Prop& p) const
{
    if (categoria != 1)
    {
        return Entidad::getPropiedad(categoria, indice, p);
    }
    const auto coordenadas =
        [&p](const char* nombre, TipoProp::Valor tipo, double x, double y, double z)
    {
        p.nombre = nombre;
        p.tipo = tipo;
        p.x = x;
        p.y = y;
        p.z = z;
        return true;
    };
    const Vector3D<double> incremento = extremo - origen;
    switch (indice)
    {
        case 0:
            return coordenadas("Inicio", TipoProp::Coordenada, origen.x, origen.y, origen.z);
        case 1:
            return coordenadas("Fin", TipoProp::Coordenada, extremo.x, extremo.y, extremo.z);
        case 2:
            return coordenadas("Incremento", TipoProp::Vector, incremento.x, incremento.y,
                               incremento.z);
        case 3:
            p.nombre = "Longitud";
            p.tipo = TipoProp::DoblePositivo;
            p.soloLectura = true;
            p.asignaDoble(origen.distancia(extremo));
            return true;
        default:
            return false;
    }
}

bool Linea::setPropiedad(int categoria, int indice, const Prop& p)
{
    if (categoria != 1)
    {
        return Entidad::setPropiedad(categoria, indice, p);
    }
    const Punto3<double> valor(p.x, p.y, p.z);
    switch (indice)
    {
        case 0:
            origen = valor;
            return true;
        case 1:
            extremo = valor;
            return true;
        case 2:
            extremo = origen + Vector3D<double>(p.x, p.y, p.z);
            return true;
        default:
            // The length is derived: there is nothing to write.
            return false;
    }
}

}  // namespace cad
