// Prisma: a box between two opposite corners with a material, and the mesh made from it.
#pragma once

#include <cstdint>
#include <string>

#include "base/geometria/Matriz4.h"
#include "base/geometria/Punto3.h"
#include "entidades/Entidad.h"
#include "modelo/Modelo3D.h"

namespace cad
{

// File tag "Pr1", type name "Prisma". Body after the transform: minimo, maximo (three f64
// each), material (u16).
//
// The box is drawn centred: its mesh is the box of size maximo - minimo about the origin,
// carried by the transform whose translation is the midpoint of the two corners. The
// operations that change the corners keep that translation on the midpoint; one read from a
// file is kept as stored, and the mesh is placed on the midpoint anyway.
//
// The mesh is made when the solid is painted while `sucio` is raised; until then the solid
// has no defining points. Every change of a parameter raises `sucio`.
class Prisma : public EntidadConVolumen
{
public:
    Prisma() = default;
    Prisma(const Punto3<double>& minimo_, const Punto3<double>& maximo_, uint16_t idMaterial = 0);

    const char* etiqueta() const override { return kFirmaEntidadPrisma; }
    void escribe(SerializadorEscrituraBase& w) override;
    // Reads on after a failed field; false when any field did not come whole. Raises `sucio`.
    bool lee(SerializadorLecturaBase& r) override;
    Entidad* clona() const override { return new Prisma(*this); }
    // One 3DFACE per triangle of a fresh tessellation; the solid's own mesh is not touched.
    void exportaDXF(ExportaDXF& dxf) const override;
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
    // The twelve edges of the box as drawn: four along each axis of the box; no points.
    void puntosCalientes(PuntosCalientes& p) override;
    // An azimuth turns the transform (and raises `sucio`); nothing else is taken.
    void aplicaPuntoCaliente(const elemento_arrastrado_t& e) override;
    // With mask bit 8, the corner of `minimo` as drawn, kind 8.
    bool getReferenciaEntidades(ReferenciaEntidades& r) const override;
    void setMaterial(uint16_t m) override;
    uint16_t material() const override { return material_; }
    // Makes the mesh first when `sucio`, then paints it in the drawing's representation of
    // models.
    void dibuja(PantallaCAD& p) const override;
    // Empties `m` and fills it with the box of `material`, placed as described above. Only
    // filling the solid's own mesh clears `sucio`.
    void generaModelo(Modelo3D& m) const override;

    // Category 1 "Geometría": "Posición" (minimo) and "Incremento" (maximo - minimo), which
    // raise `sucio` when written, then "Área" and "Volumen", read-only. Category 2 "Varios":
    // "Material".
    int numeroCategorias() const override { return 3; }
    int numeroPropiedadesCategoria(int categoria) const override;
    bool getPropiedad(int categoria, int indice, Prop& p) const override;
    bool setPropiedad(int categoria, int indice, const Prop& p) override;

    // The corners; whoever writes them directly raises `sucio`.
    Punto3<double> minimo;
    Punto3<double> maximo;
    mutable bool sucio = true;
    // The mesh of the last paint.
    mutable Modelo3D modelo;

private:
    // The transform with its translation on the midpoint of the corners.
    Matriz4<double> colocacion() const;
    // Back on the midpoint after the corners moved, and the mesh out of date.
    void cambiado();

    uint16_t material_ = 0;
};

}  // namespace cad
