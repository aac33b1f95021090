// Polilinea: an open or closed chain of 3D vertices, and the logic it shares with Poligono.
#pragma once

#include <string>

#include "base/geometria/Polilinea3D.h"
#include "entidades/Entidad.h"

namespace cad
{

// Tag "Pg1" and a u16 block below 1,000 vertices; "PolyLn1" and a u32 block from 1,000 on,
// where a u16 length could no longer hold the body. Body after the common prefix:
// escribeBooleano cerrada, escribeEnteroSinSigno the vertex count, escribePunto3 each vertex.
//
// Reading a file never trusts its count: a count larger than the bytes left in the file
// could hold (24 per vertex) makes `lee` return false with no vertex, before anything is
// reserved, so a damaged file cannot exhaust memory or abort the process.
//
// Hot elements: one vertex per vertex in order, then edge i from vertex i to the next for
// each i below numeroAristas(), the last one wrapping round to vertex 0 when closed. A drag
// of kind 1 moves vertex `indice` to `posicion`. A drag of kind 3 expects the edge's two ends
// as they were at the grab in `extra[0]` and `extra[1]`, the grabbed point in `punto` and
// the current point in `posicion`; vertex `indice` and the next one (modulo the count) move
// rigidly by `posicion` - `punto`. Indices outside the chain, edges the chain does not have,
// and edge drags without both ends in `extra` are ignored.
//
// Snap: mask bit 1 every vertex, bit 2 the midpoint of each side, bit 16 each side, in that
// order. The closing side of a closed chain is offered neither as midpoint nor as side.
//
// Sheet: category 1 "Geometría" with the list "Vértice" and the read-only "Longitud";
// category 2 "Varios" with "Cerrada" ("1" or "0"; any non-zero integer written closes it).
class Polilinea : public EntidadLineal, public Polilinea3D<double>
{
public:
    Polilinea() = default;
    // Copies n points; a null array or a count below 1 gives an empty chain.
    Polilinea(int n, const Punto3<double>* puntos);

    // Varies with the size; see the class comment.
    const char* etiqueta() const override;
    void escribe(SerializadorEscrituraBase& w) override;
    bool lee(SerializadorLecturaBase& r) override;
    Entidad* clona() const override { return new Polilinea(*this); }
    int tamanoBloque() const override;
    // POLYLINE with flags 9 when closed and 8 when open, one VERTEX per vertex, SEQEND.
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

// The operations that Polilinea and Poligono share: both are an entity in front of the same
// vertex chain, and differ only in body, tag, painting and DXF flags. The entity argument is
// the owner of the chain; category 0 of the sheet goes to Entidad's own rows.
namespace cadenaVertices
{

// n points from `puntos`, or none for a null array or a count below 1.
void asigna(Polilinea3D<double>& c, int n, const Punto3<double>* puntos);
// escribeEnteroSinSigno the count, then escribePunto3 per vertex.
void escribe(const Polilinea3D<double>& c, SerializadorEscrituraBase& w);
// The count and the vertices; false, with no vertex kept, when the count cannot fit in what
// the file still holds or a vertex comes short.
bool lee(Polilinea3D<double>& c, SerializadorLecturaBase& r);
// setCapa, then POLYLINE with `flags`, VERTEX per vertex, SEQEND.
void exportaDXF(const Entidad& e, const Polilinea3D<double>& c, int flags, ExportaDXF& dxf);
void traslada(Polilinea3D<double>& c, const Vector3D<double>& v);
const Punto3<double>* coordenada(const Polilinea3D<double>& c, int i);
void puntosCalientes(Entidad& e, const Polilinea3D<double>& c, PuntosCalientes& p);
void aplicaPuntoCaliente(Polilinea3D<double>& c, const elemento_arrastrado_t& e);
bool getReferenciaEntidades(const Entidad& e, const Polilinea3D<double>& c, ReferenciaEntidades& r);

int numeroPropiedadesCategoria(const Entidad& e, int categoria);
bool getPropiedad(const Entidad& e, const Polilinea3D<double>& c, int categoria, int indice,
                  Prop& p);
bool setPropiedad(Entidad& e, Polilinea3D<double>& c, int categoria, int indice, const Prop& p);
int numeroElementosLista(const Entidad& e, const Polilinea3D<double>& c, int categoria, int indice);
bool getElementoLista(const Entidad& e, const Polilinea3D<double>& c, int categoria, int indice,
                      int i, double& x, double& y, double& z);
bool setElementoLista(Entidad& e, Polilinea3D<double>& c, int categoria, int indice, int i,
                      const double* xyz);

}  // namespace cadenaVertices

}  // namespace cad
