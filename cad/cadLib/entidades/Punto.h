// Punto: a drawn point, and the shared base of the entities that stand at one position.
#pragma once

#include <string>

#include "base/geometria/Punto3.h"
#include "entidades/Entidad.h"

namespace cad
{

// The position is the entity's own x, y, z. Texto and PuntoControl derive from it and share
// its position, its hot element, its snap and its "Geometría" sheet.
class Punto : public EntidadPuntual, public Punto3<double>
{
public:
    // At the origin.
    Punto() = default;
    explicit Punto(const Punto3<double>& p);
    Punto(double px, double py, double pz);
    // The three low bytes of `rgb` (0xRRGGBB, blue lowest, as the sheet's "Color" text reads
    // it) become a true colour: alpha 255, index 512.
    Punto(double px, double py, double pz, int rgb);

    const char* etiqueta() const override { return kFirmaEntidadPunto; }
    // Prefix, then x, y, z as doubles.
    void escribe(SerializadorEscrituraBase& w) override;
    // Goes on after a failed prefix, as every entity does; true only if all came whole.
    bool lee(SerializadorLecturaBase& r) override;
    Entidad* clona() const override { return new Punto(*this); }

    void exportaDXF(ExportaDXF& dxf) const override;
    void traslada(const Vector3D<double>& v) override;
    // The position whatever the index: there is only one point.
    const Punto3<double>* coordenada(int i) const override;
    void puntosCalientesEdicion(PuntosCalientes& p, int a, int b) override;
    // One vertex (kind 1) at the position, numbered.
    void puntosCalientes(PuntosCalientes& p) override;
    // Only a vertex drag (kind 1) moves the point, to the drag's `posicion`.
    void aplicaPuntoCaliente(const elemento_arrastrado_t& e) override;
    // With mask bit 8, the position as an insertion point (kind 8).
    bool getReferenciaEntidades(ReferenciaEntidades& r) const override;
    void dibuja(PantallaCAD& p) const override;

    // Category 1, "Geometría": "Posición", an editable coordinate.
    int numeroCategorias() const override { return 2; }
    int numeroPropiedadesCategoria(int categoria) const override;
    bool getPropiedad(int categoria, int indice, Prop& p) const override;
    bool setPropiedad(int categoria, int indice, const Prop& p) override;

protected:
    // The name of the layer to make current in the DXF writer; "0", which every DXF file
    // has, for an entity that never entered a drawing.
    std::string capaDXF() const;
    // The value the display reports when a primitive of this entity is picked.
    void* pick() const;
};

}  // namespace cad
