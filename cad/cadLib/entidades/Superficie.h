// Superficie: a mesh model placed in the drawing by a transformation.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "entidades/Entidad.h"
#include "modelo/Modelo3D.h"

namespace cad
{

// File tag "Superficie3D001", type name "Superficie", in a u64 block: a reader takes the
// length's width from the tag's size, and a 15-character tag means u64. Body: that of
// EntidadConSuperficie (prefix, transformation, mapping list), then the model's body, which
// is written as a compact copy (Modelo3D::escribe): a reloaded surface has private vertices
// per face.
//
// The coordinates are the model's vertex records in the model's own frame; the
// transformation is carried and saved, and `traslada` changes only it. The extent is the
// constant empty box, so a surface never widens a drawing's extent.
//
// Snap offers nothing: the result is whether the request had mask bit 1. No hot elements, no
// DXF records (not even the layer). Painting hands the model to the display in the
// representation of the drawing being painted (kVarRepresentacionModelos), shaded by default.
class Superficie : public EntidadConSuperficie
{
public:
    Superficie() = default;

    // --- entity contract ----------------------------------------------------------------
    const char* etiqueta() const override { return kFirmaEntidadSuperficie; }
    void escribe(SerializadorEscrituraBase& w) override;
    // False when the base fails (the model is then emptied) or the model's body is refused.
    bool lee(SerializadorLecturaBase& r) override;
    // A new Superficie with the common fields (id, layer, colour, line style, state): identity
    // transformation, no mappings, an empty model.
    Entidad* clona() const override;
    // 2, u64: the only width a reader derives for this tag.
    int tamanoBloque() const override { return 2; }
    void exportaDXF(ExportaDXF& dxf) const override;
    // Adds v to the translation of `transformacion`; the model stays.
    void traslada(const Vector3D<double>& v) override;
    int numCoordenadas() const override;
    // The position of vertex record i, dead ones included; null outside.
    const Punto3<double>* coordenada(int i) const override;
    // Always (0, 0, 0)-(-1, -1, -1).
    Rect3<double> extension() const override;
    void puntosCalientesEdicion(PuntosCalientes& p, int a, int b) override;
    void puntosCalientes(PuntosCalientes& p) override;
    bool getReferenciaEntidades(ReferenciaEntidades& r) const override;
    void dibuja(PantallaCAD& p) const override;

    // --- property sheet -----------------------------------------------------------------
    // Read-only rows. "Varios": vertex records and live faces. "Leyenda", in drawing
    // coordinates: the box of the vertex records (X, Y, Z minimum and maximum; zeros for an
    // empty model), the area of the live faces, the valid edges and the distinct materials.
    int numeroCategorias() const override { return 3; }
    std::string nombreCategoria(int categoria) const override;
    int numeroPropiedadesCategoria(int categoria) const override;
    bool getPropiedad(int categoria, int indice, Prop& p) const override;
    bool setPropiedad(int categoria, int indice, const Prop& p) override;

    Modelo3D& modelo() { return modelo_; }
    const Modelo3D& modelo() const { return modelo_; }

    // A second mapping list of the class's shape, kept empty and not saved.
    std::vector<mapeo_t> mapeosSecundarios;

private:
    // Mutable: painting caches the face normals in it.
    mutable Modelo3D modelo_;

public:
    // 1 from construction; nothing reads it.
    int32_t vista = 1;
};

}  // namespace cad
