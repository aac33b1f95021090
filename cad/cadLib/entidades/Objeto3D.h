// Objeto3D: a free polygon mesh standing in the drawing.
#pragma once

#include <cstdint>
#include <string>

#include "entidades/Entidad.h"
#include "modelo/Modelo3D.h"

namespace cad
{

// File tag "Ob1", type name "Objeto3D". Body after the common prefix: the mesh's body
// (Modelo3D::escribe, a compact copy: private vertices per face, dead records dropped). The
// transform is neither stored nor used: the mesh stands in drawing coordinates.
//
// The object owns its mesh alone: it deletes it, and a copy copies it. A null mesh is allowed: such
// an object has no points, paints and exports nothing, writes the body of an empty mesh and gets a
// new mesh when it reads one. The mesh may outgrow its 16-bit block; the list's reader takes such
// a block by the body's own counts.
class Objeto3D : public EntidadConVolumen
{
public:
    Objeto3D() = default;
    // Takes ownership of `m` (null allowed).
    explicit Objeto3D(Modelo3D* m);
    Objeto3D(const Objeto3D& otro);
    Objeto3D& operator=(const Objeto3D& otro);
    // The mesh changes hands without a copy; `otro` is left with none.
    Objeto3D(Objeto3D&& otro);
    Objeto3D& operator=(Objeto3D&& otro);
    ~Objeto3D() override;

    const char* etiqueta() const override { return kFirmaEntidadObjeto3D; }
    void escribe(SerializadorEscrituraBase& w) override;
    // The prefix, then the mesh (into a new one when there is none). False when a field of
    // the prefix or the mesh's body did not come whole; a refused mesh is left empty.
    bool lee(SerializadorLecturaBase& r) override;
    Entidad* clona() const override { return new Objeto3D(*this); }
    // The layer, then one 3DFACE of three corners per triangle of each live face, in the
    // entity's colour.
    void exportaDXF(ExportaDXF& dxf) const override;
    // Adds v to every vertex record, dead ones included.
    void traslada(const Vector3D<double>& v) override;
    // Every vertex record, dead ones included; null outside them.
    int numCoordenadas() const override;
    const Punto3<double>* coordenada(int i) const override;
    void puntosCalientesEdicion(PuntosCalientes& p, int a, int b) override;
    // Every vertex record as kind 1, every edge whose two ends are valid, every face with a
    // corner list and its normal. Edge and face positions count the kept ones only.
    void puntosCalientes(PuntosCalientes& p) override;
    // Kind 1 moves vertex record `indice` to the drag's position. Kind 3 moves both ends of
    // the `indice`-th kept edge rigidly from where they stood at the grab (`extra`), so a
    // repeated call moves them no further. Normals are not recomputed. An azimuth turns the
    // unused transform; anything else, or out of range, does nothing.
    void aplicaPuntoCaliente(const elemento_arrastrado_t& e) override;
    // Bit 1 the valid vertices, kind 1; bit 2 the midpoints of the edges with two valid ends,
    // kind 2.
    bool getReferenciaEntidades(ReferenciaEntidades& r) const override;
    // Writes the id into every face record.
    void setMaterial(uint16_t m) override;
    // The first face record's material; 0 with no face.
    uint16_t material() const override;
    // The mesh in the drawing's representation of models.
    void dibuja(PantallaCAD& p) const override;
    // `m` becomes a copy of the mesh; with none, `m` is left alone.
    void generaModelo(Modelo3D& m) const override;

    // Category 1 "Geometría": "Vértices" and "Caras", the valid vertices and live faces,
    // read-only. Category 2 "Varios": "Material", written to every face.
    int numeroCategorias() const override { return 3; }
    int numeroPropiedadesCategoria(int categoria) const override;
    bool getPropiedad(int categoria, int indice, Prop& p) const override;
    bool setPropiedad(int categoria, int indice, const Prop& p) override;

    // Owned by this object alone; null allowed. Whoever puts another mesh here deletes the
    // one it replaces.
    Modelo3D* modelo = nullptr;
};

}  // namespace cad
