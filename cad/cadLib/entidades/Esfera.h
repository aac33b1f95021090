// Esfera: the parametric sphere, tessellated on demand into a mesh it keeps for painting.
#pragma once

#include <cstdint>
#include <string>

#include "base/geometria/Punto3.h"
#include "documento/VariablesPintura.h"
#include "entidades/Entidad.h"
#include "modelo/Modelo3D.h"

namespace cad
{

// The sphere keeps only its parameters in the file; the mesh is made again whenever `sucio`
// says it is out of date, at the next paint. Its transform exists (it is a solid) but is
// neither stored nor used.
class Esfera : public EntidadConVolumen
{
public:
    // Unit sphere at the origin, material 0, not yet tessellated.
    Esfera() = default;
    Esfera(const Punto3<double>& centroEsfera, double radioEsfera, uint16_t materialEsfera = 0);

    const char* etiqueta() const override { return kFirmaEntidadEsfera; }
    // Prefix of Entidad alone (no transform), centro, radio, material.
    void escribe(SerializadorEscrituraBase& w) override;
    // False on a short body; whatever came is kept and `sucio` is raised in any case, so the
    // mesh is made again at the next paint.
    bool lee(SerializadorLecturaBase& r) override;
    Entidad* clona() const override { return new Esfera(*this); }

    // One 3DFACE per triangle of a fresh tessellation, in the nearest palette colour.
    void exportaDXF(ExportaDXF& dxf) const override;
    // Moves the centre; the mesh follows at the next paint.
    void traslada(const Vector3D<double>& v) override;
    // The vertex records of the kept mesh: 0 before the first tessellation, and stale after
    // a change until the next paint.
    int numCoordenadas() const override;
    // Null outside the vertex records.
    const Punto3<double>* coordenada(int i) const override;
    // True without computing anything; the box is left as it was.
    bool volumen(Rect3<double>& caja) const override;
    // True for any point.
    bool interior(const Punto3<double>& p) const override;
    void puntosCalientesEdicion(PuntosCalientes& p, int a, int b) override;
    // No hot element: the set only learns its entity.
    void puntosCalientes(PuntosCalientes& p) override;
    // With mask bit 8, the centre as an insertion point (kind 8).
    bool getReferenciaEntidades(ReferenciaEntidades& r) const override;
    // Raises `sucio`: the faces carry the material.
    void setMaterial(uint16_t m) override;
    uint16_t material() const override { return material_; }
    // Tessellates again when `sucio`, then paints the mesh in `modo`.
    void dibuja(PantallaCAD& p) const override;

    // The sphere's tessellation (see teselaEsfera).
    void generaModelo(Modelo3D& m) const override;
    // Empties the vertex, edge and face lists of `m` and fills them with 60 meridians and 20
    // parallels around `centro`, unrotated.
    virtual void teselaEsfera(Modelo3D& m) const;

    // Category 1, "Geometría": "Centro" and "Radio", editable, then "Área" and "Volumen",
    // computed and read-only. Category 2, "Varios": "Material". Every write raises `sucio`.
    int numeroCategorias() const override { return 3; }
    int numeroPropiedadesCategoria(int categoria) const override;
    bool getPropiedad(int categoria, int indice, Prop& p) const override;
    bool setPropiedad(int categoria, int indice, const Prop& p) override;

    mutable bool sucio = true;  // the mesh is out of date
    Punto3<double> centro;
    double radio = 1.0;
    uint16_t material_ = 0;
    mutable Modelo3D modelo;  // remade while painting
    representacion_modelos modo =
        static_cast<representacion_modelos>(kRepresentacionModelosDefecto);

protected:
    // Writes and reads centro, radio and material: the fields the sphere and the 360
    // photograph share after their different prefixes.
    void escribeCampos(SerializadorEscrituraBase& w) const;
    bool leeCampos(SerializadorLecturaBase& r);
    // The tessellation of the steps above with the given divisions: the two poles first, then
    // for each meridian i = 0..meridianos (both ends, the texture seam) the rings j = 1 to
    // paralelos - 1, ring 1 next to the pole at +z. Divisions outside
    // divisionesAdmisibles leave the lists empty.
    void teselaDivisiones(Modelo3D& m, int meridianos, int paralelos) const;
    // Makes the kept mesh again if it is out of date.
    void actualizaModelo() const;
    // The value the display reports when a primitive of this entity is picked.
    void* pick() const;
};

// The largest number of faces (meridianos times paralelos) a sphere is tessellated into, and
// of meridians, which all meet at each pole (joining a face there searches the pole's fan, so
// the cost grows with its square). A photograph sphere of 256 by 128 divisions stays within
// both; a file that asks for more gets an empty mesh rather than one its few bytes cannot
// justify, and a load that takes seconds.
inline constexpr int64_t kMaximoCarasEsfera = int64_t{1} << 15;
inline constexpr int kMaximoMeridianos = 1024;

// At least 3 and at most kMaximoMeridianos meridians, at least 2 parallels, and no more than
// kMaximoCarasEsfera faces.
bool divisionesAdmisibles(int meridianos, int paralelos);

}  // namespace cad
