// Cara3D: body, painting, hot elements, snap, DXF record and sheet of a three- or four-corner
// face.
#include "entidades/Cara3D.h"

#include <algorithm>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "documento/Capa.h"
#include "documento/ReferenciaEntidades.h"
#include "intercambio/ExportaDXF.h"
#include "modelo/PuntosCalientes.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

Cara3D::Cara3D(int n, const Punto3<double>* esquinas)
{
    numeroVertices = n >= 4 ? 4 : 3;
    if (esquinas != nullptr && n > 0)
    {
        std::copy(esquinas, esquinas + std::min(n, numeroVertices), vertices);
    }
    vertices[numeroVertices] = vertices[0];
}

void Cara3D::ponEsquina(int i, const Punto3<double>& p)
{
    vertices[i] = p;
    if (i == 0)
    {
        vertices[numeroVertices] = p;
    }
}

void Cara3D::escribe(SerializadorEscrituraBase& w)
{
    EntidadConSuperficie::escribe(w);
    w.escribeCortoSinSigno(static_cast<uint16_t>(numeroVertices));
    for (int i = 0; i < numeroVertices; ++i)
    {
        w.escribePunto3(vertices[i]);
    }
}

bool Cara3D::lee(SerializadorLecturaBase& r)
{
    const bool ok = EntidadConSuperficie::lee(r);
    uint16_t n = 0;
    // Five slots hold at most four corners and the repeat: any other count is a damaged
    // file, and nothing of the face changes.
    if (!r.leeCortoSinSigno(n) || (n != 3 && n != 4))
    {
        return false;
    }
    Punto3<double> leidas[4];
    for (int i = 0; i < n; ++i)
    {
        Punto3<double>& p = leidas[i];
        if (!r.leeDoble(p.x) || !r.leeDoble(p.y) || !r.leeDoble(p.z))
        {
            return false;
        }
    }
    numeroVertices = n;
    std::copy(leidas, leidas + n, vertices);
    vertices[n] = vertices[0];
    return ok;
}

void Cara3D::exportaDXF(ExportaDXF& dxf) const
{
    // An entity outside a drawing has no layer; it goes to "0", which every DXF file has.
    const Capa* propia = capa.get();
    dxf.setCapa(propia != nullptr ? propia->nombre : "0");
    dxf.cara(numeroVertices, vertices, indiceColorCercano());
}

void Cara3D::traslada(const Vector3D<double>& v)
{
    for (int i = 0; i <= numeroVertices; ++i)
    {
        vertices[i] += v;
    }
}

const Punto3<double>* Cara3D::coordenada(int i) const
{
    return esEsquina(i) ? &vertices[i] : nullptr;
}

void Cara3D::puntosCalientesEdicion(PuntosCalientes& p, int a, int b)
{
    (void)a;
    (void)b;
    puntosCalientes(p);
}

void Cara3D::puntosCalientes(PuntosCalientes& p)
{
    p.entidad = this;
    p.nuevosPuntos(numeroVertices, vertices);
    for (int i = 0; i < numeroVertices; ++i)
    {
        p.nuevaArista(vertices[i], vertices[i + 1]);
    }
    p.numeraPuntos();
}

void Cara3D::aplicaPuntoCaliente(const elemento_arrastrado_t& e)
{
    if (e.tipo == kTipoVertice)
    {
        if (esEsquina(e.indice))
        {
            ponEsquina(e.indice, e.posicion);
        }
        return;
    }
    if (e.tipo == kTipoArista)
    {
        if (esEsquina(e.indice) && e.extra.size() >= 2)
        {
            // From the ends at the grab, not the current ones: the drag reports absolute
            // positions, so repeated calls must not accumulate the move.
            const int siguiente = (e.indice + 1) % numeroVertices;
            ponEsquina(e.indice, e.posicion + (e.extra[0] - e.punto));
            ponEsquina(siguiente, e.posicion + (e.extra[1] - e.punto));
        }
        return;
    }
    EntidadTransformada::aplicaPuntoCaliente(e);
}

bool Cara3D::getReferenciaEntidades(ReferenciaEntidades& r) const
{
    bool tomado = false;
    if ((r.mascara & kExtremos) != 0)
    {
        for (int i = 0; i < numeroVertices; ++i)
        {
            tomado = r.ofrecePunto(this, vertices[i], kExtremos) || tomado;
        }
    }
    if ((r.mascara & kPuntosMedios) != 0)
    {
        // The repeat makes the closing side one like the others.
        for (int i = 0; i < numeroVertices; ++i)
        {
            const Punto3<double> medio = vertices[i] + (vertices[i + 1] - vertices[i]) * 0.5;
            tomado = r.ofrecePunto(this, medio, kPuntosMedios) || tomado;
        }
    }
    return tomado;
}

void Cara3D::dibuja(PantallaCAD& p) const
{
    void* pick = const_cast<Entidad*>(static_cast<const Entidad*>(this));
    p.dibujaPolilinea(numeroVertices + 1, vertices, true, resuelveColorABGR(), pick);
}

// ---------------------------------------------------------------------------------------
// Property sheet

int Cara3D::numeroPropiedadesCategoria(int categoria) const
{
    return categoria == 1 ? 1 : Entidad::numeroPropiedadesCategoria(categoria);
}

bool Cara3D::getPropiedad(int categoria, int indice, Prop& p) const
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

bool Cara3D::setPropiedad(int categoria, int indice, const Prop& p)
{
    if (categoria == 1)
    {
        // The corners go through the list operations.
        return false;
    }
    return Entidad::setPropiedad(categoria, indice, p);
}

int Cara3D::numeroElementosLista(int categoria, int indice) const
{
    if (categoria == 1 && indice == 0)
    {
        return numeroVertices;
    }
    return Entidad::numeroElementosLista(categoria, indice);
}

bool Cara3D::getElementoLista(int categoria, int indice, int i, double& x, double& y,
                              double& z) const
{
    if (categoria != 1 || indice != 0)
    {
        return Entidad::getElementoLista(categoria, indice, i, x, y, z);
    }
    if (!esEsquina(i))
    {
        return false;
    }
    x = vertices[i].x;
    y = vertices[i].y;
    z = vertices[i].z;
    return true;
}

bool Cara3D::setElementoLista(int categoria, int indice, int i, const double* xyz)
{
    if (categoria != 1 || indice != 0)
    {
        return Entidad::setElementoLista(categoria, indice, i, xyz);
    }
    if (xyz == nullptr || !esEsquina(i))
    {
        return false;
    }
    ponEsquina(i, Punto3<double>(xyz[0], xyz[1], xyz[2]));
    return true;
}

}  // namespace cad
