// Poligono: a chain of 3D vertices painted as a filled surface.
#pragma once

#include <string>

#include "base/geometria/Polilinea3D.h"
#include "entidades/Entidad.h"

namespace cad
{

// The same data as a Polilinea, kept as a class of its own because it paints filled. Tag
// "Pg1", u16 block, whatever the size. Body after the common prefix: escribeEnteroSinSigno
// the vertex count, escribePunto3 each vertex; the `cerrada` flag is not in the body and stays
// as the chain has it, so hot edges, length and "Cerrada" follow it as for a polyline.
//
// The tag is the one a short Polilinea writes, and the entity list's factory tries Polilinea
// first: a saved polygon comes back as a Polilinea reading this body. The format stands so.
// From 2,730 vertices on the block outgrows its u16 length field, which then wraps.
//
// Hot elements, drags (the edge drag's convention included), snap, count checking on read
// and the property sheet are those of Polilinea; see there.
class Poligono : public Entidad, public Polilinea3D<double>
{
public:
    Poligono() = default;
    // Copies n points; a null array or a count below 1 gives an empty chain.
    Poligono(int n, const Punto3<double>* puntos);

    const char* etiqueta() const override;
    void escribe(SerializadorEscrituraBase& w) override;
    bool lee(SerializadorLecturaBase& r) override;
    Entidad* clona() const override { return new Poligono(*this); }
    // POLYLINE with flags 9, one VERTEX per vertex, SEQEND: the first vertex is not repeated.
    void exportaDXF(ExportaDXF& dxf) const override;
    void traslada(const Vector3D<double>& v) override;
    int numCoordenadas() const override { return numeroVertices(); }
    // Vertex i; null outside the chain.
    const Punto3<double>* coordenada(int i) const override;
    void puntosCalientesEdicion(PuntosCalientes& p, int a, int b) override;
    void puntosCalientes(PuntosCalientes& p) override;
    void aplicaPuntoCaliente(const elemento_arrastrado_t& e) override;
    bool getReferenciaEntidades(ReferenciaEntidades& r) const override;
    // Nothing at all for an empty chain.
    void dibuja(PantallaCAD& p) const override;

    int numeroCategorias() const override { return 3; }
    int numeroPropiedadesCategoria(int categoria) const override;
    bool getPropiedad(int categoria, int indice, Prop& p) const override;
    bool setPropiedad(int categoria, int indice, const Prop& p) override;
    int numeroElementosLista(int categoria, int indice) const override;
    bool getElementoLista(int categoria, int indice, int i, double& x, double& y,
                          double& z) const override;
    bool setElementoLista(int categoria, int indice, int i, const double* xyz) override;
};

}  // namespace cad
