// Cubo: a box between two opposite corners, tessellated afresh at every paint.
#pragma once

#include <string>

#include "base/geometria/Punto3.h"
#include "base/geometria/Vector3D.h"
#include "entidades/Entidad.h"

namespace cad
{

// File tag "Cb1", type name "Cubo". Body after the common prefix: minimo, maximo (three f64
// each). The transform is not stored, although the box is drawn through it: a box read back
// stands in drawing coordinates. It keeps no mesh and no material: each paint builds a
// temporary model (material 0, representation 1). Its one defining point is `minimo`,
// untransformed, whatever the index asked for.
class Cubo : public EntidadConVolumen
{
public:
    Cubo() = default;
    Cubo(const Punto3<double>& minimo_, const Punto3<double>& maximo_);

    const char* etiqueta() const override { return kFirmaEntidadCubo; }
    void escribe(SerializadorEscrituraBase& w) override;
    // Reads on after a failed field; false when any field did not come whole.
    bool lee(SerializadorLecturaBase& r) override;
    Entidad* clona() const override { return new Cubo(*this); }
    // A box writes no DXF record, not even its layer.
    void exportaDXF(ExportaDXF& dxf) const override;
    // Adds v to both corners (in the box's own coordinates).
    void traslada(const Vector3D<double>& v) override;
    int numCoordenadas() const override { return 1; }
    const Punto3<double>* coordenada(int i) const override;
    // The box of the eight corners carried by the transform; always true.
    bool volumen(Rect3<double>& caja) const override;
    // On the inner side of (or on) every one of the six transformed faces; a flat box has no
    // inside.
    bool interior(const Punto3<double>& p) const override;
    void puntosCalientesEdicion(PuntosCalientes& p, int a, int b) override;
    // One vertex (kind 1) at `minimo` as drawn.
    void puntosCalientes(PuntosCalientes& p) override;
    // Kind 1 moves the whole box so that the drawn `minimo` lands on the drag's position; an
    // azimuth turns the transform; anything else does nothing.
    void aplicaPuntoCaliente(const elemento_arrastrado_t& e) override;
    // With mask bit 8, `minimo` as drawn, kind 8.
    bool getReferenciaEntidades(ReferenciaEntidades& r) const override;
    void dibuja(PantallaCAD& p) const override;
    // The box tessellation of material 0, carried by the transform; the lists are emptied
    // first.
    void generaModelo(Modelo3D& m) const override;

    // Category 1 "Geometría": "Posición", "Incremento" (writable), "Área", "Volumen".
    int numeroCategorias() const override { return 2; }
    int numeroPropiedadesCategoria(int categoria) const override;
    bool getPropiedad(int categoria, int indice, Prop& p) const override;
    bool setPropiedad(int categoria, int indice, const Prop& p) override;

    Punto3<double> minimo;
    Punto3<double> maximo;

private:
    // The eight corners as drawn, corner k taking maximo's x, y, z for bits 1, 2, 4 of k.
    void esquinas(Punto3<double> (&v)[8]) const;
};

}  // namespace cad
