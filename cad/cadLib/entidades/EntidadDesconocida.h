// An entity of a kind this version does not know: it keeps its tag and bytes for the file.
#pragma once

#include "entidades/Entidad.h"

namespace cad
{

// Reads the common prefix; everything behind it stays in datosDesconocidos, which the
// entity list writes back. It paints, moves and offers nothing.
class EntidadDesconocida : public Entidad
{
public:
    // The tag is cut to 19 characters.
    explicit EntidadDesconocida(const char* tag);

    const char* etiqueta() const override { return tag; }
    // Only the tag follows: the common fields and the stored bytes do not.
    Entidad* clona() const override { return new EntidadDesconocida(tag); }
    // The length field the tag announces: below 4 characters u16, below 8 u32, else u64.
    int tamanoBloque() const override;
    void exportaDXF(ExportaDXF&) const override {}
    void traslada(const Vector3D<double>&) override {}
    int numCoordenadas() const override { return 0; }
    const Punto3<double>* coordenada(int) const override { return nullptr; }
    void puntosCalientesEdicion(PuntosCalientes&, int, int) override {}
    void puntosCalientes(PuntosCalientes&) override {}
    void aplicaPuntoCaliente(const elemento_arrastrado_t&) override {}
    void dibuja(PantallaCAD&) const override {}

    char tag[20] = {};
};

}  // namespace cad
