// An entity of a kind this version does not know: it keeps its tag and bytes for the file.
#pragma once

#include <cstdint>
#include <vector>

#include "entidades/Entidad.h"

namespace cad
{

// Reads the common prefix; everything behind it stays in datosDesconocidos, which the
// entity list writes back. It paints, moves and offers nothing.
//
// A raw one (cruda()) holds a whole block of a damaged file, tag field and length included,
// that could not be read as its kind: it is written back byte for byte, so that a damaged
// file loses nothing by being opened and saved, and its tag is empty, so that nothing takes
// it for the kind it claimed to be.
class EntidadDesconocida : public Entidad
{
public:
    // The tag is cut to 19 characters.
    explicit EntidadDesconocida(const char* tag);
    // A raw one over the bytes of a damaged block.
    static EntidadDesconocida* cruda(std::vector<uint8_t> bloque);

    const char* etiqueta() const override { return tag; }
    // The prefix for a raw one: its bytes stand in for its whole block.
    void escribe(SerializadorEscrituraBase& w) override;
    // Only the tag follows: the common fields and the stored bytes do not. A raw one is
    // copied whole, as its bytes are all it has.
    Entidad* clona() const override;
    // The length field the tag announces: below 4 characters u16, below 8 u32, else u64. A
    // raw one answers kBloqueCrudo: it writes its block itself.
    int tamanoBloque() const override;
    void exportaDXF(ExportaDXF&) const override {}
    void traslada(const Vector3D<double>&) override {}
    int numCoordenadas() const override { return 0; }
    const Punto3<double>* coordenada(int) const override { return nullptr; }
    void puntosCalientesEdicion(PuntosCalientes&, int, int) override {}
    void puntosCalientes(PuntosCalientes&) override {}
    void aplicaPuntoCaliente(const elemento_arrastrado_t&) override {}
    void dibuja(PantallaCAD&) const override {}

    bool esCruda() const { return cruda_; }

    char tag[20] = {};
    // A raw one's block, as it stood in the file.
    std::vector<uint8_t> bloque;

private:
    bool cruda_ = false;
};

}  // namespace cad
