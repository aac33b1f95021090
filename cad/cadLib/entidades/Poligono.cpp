// Poligono: its body, painting and DXF flags; the rest is the chain logic of Polilinea.
#include "entidades/Poligono.h"

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "entidades/Firmas.h"
#include "entidades/Polilinea.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

Poligono::Poligono(int n, const Punto3<double>* puntos)
{
    cadenaVertices::asigna(*this, n, puntos);
}

const char* Poligono::etiqueta() const
{
    return kFirmaEntidadPolilinea;
}

void Poligono::escribe(SerializadorEscrituraBase& w)
{
    Entidad::escribe(w);
    cadenaVertices::escribe(*this, w);
}

bool Poligono::lee(SerializadorLecturaBase& r)
{
    vertices.clear();
    const bool ok = Entidad::lee(r);
    return cadenaVertices::lee(*this, r) && ok;
}

void Poligono::exportaDXF(ExportaDXF& dxf) const
{
    // Always closed in DXF, whatever the in-memory flag says: it is a surface.
    cadenaVertices::exportaDXF(*this, *this, 9, dxf);
}

void Poligono::traslada(const Vector3D<double>& v)
{
    cadenaVertices::traslada(*this, v);
}

const Punto3<double>* Poligono::coordenada(int i) const
{
    return cadenaVertices::coordenada(*this, i);
}

void Poligono::puntosCalientesEdicion(PuntosCalientes& p, int a, int b)
{
    (void)a;
    (void)b;
    puntosCalientes(p);
}

void Poligono::puntosCalientes(PuntosCalientes& p)
{
    cadenaVertices::puntosCalientes(*this, *this, p);
}

void Poligono::aplicaPuntoCaliente(const elemento_arrastrado_t& e)
{
    cadenaVertices::aplicaPuntoCaliente(*this, e);
}

bool Poligono::getReferenciaEntidades(ReferenciaEntidades& r) const
{
    return cadenaVertices::getReferenciaEntidades(*this, *this, r);
}

void Poligono::dibuja(PantallaCAD& p) const
{
    if (vertices.empty())
    {
        return;
    }
    void* pick = const_cast<Entidad*>(static_cast<const Entidad*>(this));
    p.dibujaPoligono(numeroVertices(), vertices.data(), resuelveColorABGR(), pick);
}

int Poligono::numeroPropiedadesCategoria(int categoria) const
{
    return cadenaVertices::numeroPropiedadesCategoria(*this, categoria);
}

bool Poligono::getPropiedad(int categoria, int indice, Prop& p) const
{
    return cadenaVertices::getPropiedad(*this, *this, categoria, indice, p);
}

bool Poligono::setPropiedad(int categoria, int indice, const Prop& p)
{
    return cadenaVertices::setPropiedad(*this, *this, categoria, indice, p);
}

int Poligono::numeroElementosLista(int categoria, int indice) const
{
    return cadenaVertices::numeroElementosLista(*this, *this, categoria, indice);
}

bool Poligono::getElementoLista(int categoria, int indice, int i, double& x, double& y,
                                double& z) const
{
    return cadenaVertices::getElementoLista(*this, *this, categoria, indice, i, x, y, z);
}

bool Poligono::setElementoLista(int categoria, int indice, int i, const double* xyz)
{
    return cadenaVertices::setElementoLista(*this, *this, categoria, indice, i, xyz);
}

}  // namespace cad
