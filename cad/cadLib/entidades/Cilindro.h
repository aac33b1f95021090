// Cilindro: a vertical cylinder of a radius and a height with a material, and its mesh.
#pragma once

#include <cstdint>
#include <string>

#include "base/geometria/Punto3.h"
#include "entidades/Entidad.h"
#include "modelo/Modelo3D.h"

namespace cad
{

// File tag "Cl1", type name "Cilindro". Body after the transform: radio, altura (f64),
// material (u16). The centre of the base has no field: it is the transform's translation,
// and the axis is the transform's Z.
//
// The mesh (Teselado's cylinder of 12 sides) is made when the solid is painted while `sucio`
// is raised; until then the solid has no defining points. Every change of a parameter, of
// the transform through traslada or an azimuth drag, and a read raise `sucio`.
class Cilindro : public EntidadConVolumen
{
public:
    Cilindro() = default;
    Cilindro(const Punto3<double>& centro, double radio_, double altura_, uint16_t idMaterial = 0);

    const char* etiqueta() const override { return kFirmaEntidadCilindro; }
    void escribe(SerializadorEscrituraBase& w) override;
    // Reads on after a failed field; false when any field did not come whole. Raises `sucio`.
    bool lee(SerializadorLecturaBase& r) override;
    Entidad* clona() const override { return new Cilindro(*this); }
    // One 3DFACE per triangle of a fresh tessellation; the solid's own mesh is not touched.
    void exportaDXF(ExportaDXF& dxf) const override;
    // Moves the transform's translation.
    void traslada(const Vector3D<double>& v) override;
    // The vertex records of the mesh as last made: 0 before the first paint, and stale after a
    // change until the next one.
    int numCoordenadas() const override;
    const Punto3<double>* coordenada(int i) const override;
    // True, the box left as it was: a solid of this kind is not measured.
    bool volumen(Rect3<double>& caja) const override;
    // True for any point.
    bool interior(const Punto3<double>& p) const override;
    void puntosCalientesEdicion(PuntosCalientes& p, int a, int b) override;
    // None: the cylinder is edited through its sheet.
    void puntosCalientes(PuntosCalientes& p) override;
    // An azimuth turns the transform (and raises `sucio`); nothing else is taken.
    void aplicaPuntoCaliente(const elemento_arrastrado_t& e) override;
    // With mask bit 8, the centre of the base, kind 8.
    bool getReferenciaEntidades(ReferenciaEntidades& r) const override;
    void setMaterial(uint16_t m) override;
    uint16_t material() const override { return material_; }
    // Makes the mesh first when `sucio`, then paints it in the drawing's representation of
    // models.
    void dibuja(PantallaCAD& p) const override;
    // Empties `m` and fills it with the cylinder of `radio`, `altura` and the material, carried
    // by the transform. Only filling the solid's own mesh clears `sucio`.
    void generaModelo(Modelo3D& m) const override;

    // Category 1 "Geometría": "Centro", "Radio", "Altura" (writable, raising `sucio`), "Área"
    // of the side alone and "Volumen", read-only. Category 2 "Varios": "Material".
    int numeroCategorias() const override { return 3; }
    int numeroPropiedadesCategoria(int categoria) const override;
    bool getPropiedad(int categoria, int indice, Prop& p) const override;
    bool setPropiedad(int categoria, int indice, const Prop& p) override;

    // Whoever writes these directly raises `sucio`.
    double radio = 0.0;
    double altura = 0.0;
    mutable bool sucio = true;
    // The mesh of the last paint.
    mutable Modelo3D modelo;

private:
    uint16_t material_ = 0;
};

}  // namespace cad
