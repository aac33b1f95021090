// Linea: a drawn 3D segment from `origen` to `extremo`.
#pragma once

#include <string>

#include "base/geometria/Linea3D.h"
#include "entidades/Entidad.h"

namespace cad
{

// Tag "Ln1", u16 block. Body after the common prefix: escribePunto3 origen, then extremo.
//
// Hot elements: vertex 0 is `origen`, vertex 1 `extremo`, and edge 0 joins them. A drag of
// kind 1 moves vertex `indice` to `posicion` (indices other than 0 and 1 are ignored). A drag
// of kind 3 (edge 0 only) expects the edge's two ends as they were at the grab in `extra[0]`
// and `extra[1]`, the grabbed point in `punto` and the current point in `posicion`; both ends
// then move rigidly by `posicion` - `punto`. A drag without both ends in `extra` is ignored.
//
// Sheet: category 1 "Geometría" holds "Inicio", "Fin", "Incremento" (writing it moves
// `extremo` to `origen` + value) and the read-only "Longitud".
class Linea : public EntidadLineal, public Linea3D<double>
{
public:
    Linea() = default;
    Linea(const Punto3<double>& origen_, const Punto3<double>& extremo_)
        : Linea3D<double>(origen_, extremo_)
    {
    }

    const char* etiqueta() const override;
    void escribe(SerializadorEscrituraBase& w) override;
    // Reads both points even after a failed prefix; false if anything came short.
    bool lee(SerializadorLecturaBase& r) override;
    Entidad* clona() const override { return new Linea(*this); }
    void exportaDXF(ExportaDXF& dxf) const override;
    void traslada(const Vector3D<double>& v) override;
    int numCoordenadas() const override { return 2; }
    // origen for 0, extremo for 1, null otherwise.
    const Punto3<double>* coordenada(int i) const override;
    void puntosCalientesEdicion(PuntosCalientes& p, int a, int b) override;
    void puntosCalientes(PuntosCalientes& p) override;
    void aplicaPuntoCaliente(const elemento_arrastrado_t& e) override;
    // Mask bit 1 both ends, bit 2 the midpoint, bit 16 the segment, tried in that order.
    bool getReferenciaEntidades(ReferenciaEntidades& r) const override;
    void dibuja(PantallaCAD& p) const override;

    int numeroCategorias() const override { return 2; }
    int numeroPropiedadesCategoria(int categoria) const override;
    bool getPropiedad(int categoria, int indice, Prop& p) const override;
    bool setPropiedad(int categoria, int indice, const Prop& p) override;
};

}  // namespace cad
