// Capa: a named layer with visibility and lock flags, a colour and a line style.
#pragma once

#include <cstdint>
#include <string>

#include "base/Color.h"
#include "base/ObjetoCAD.h"
#include "documento/EstiloLinea.h"

namespace cad
{

// Block "Cp1", u16 length: u64 id, nombre, flags (i32), colour (6 bytes), line style
// (10 bytes), then the unknown tail of a newer file.
class Capa : public ObjetoCAD
{
public:
    // The line style starts at its defaults.
    Capa(const std::string& nombreCapa, const ColorCapa& colorCapa, int32_t flagsCapa);

    const char* etiqueta() const override { return "Cp1"; }
    void escribe(SerializadorEscrituraBase& w) override;
    // False when the block is not a "Cp1" block; the block is then left open: its tag and
    // length are consumed and its body is not, so the caller must not go on reading items
    // behind it. Otherwise all fields are read, none stopping the others, and the result is
    // that of finLectura, false also when a field ran past the file's end.
    bool lee(SerializadorLecturaBase& r) override;

    std::string nombre;  // unique within a drawing
    ColorCapa color;
    EstiloLineaCapa estiloLinea;
    int32_t flags;  // bit 0 visible, bit 1 locked
};

}  // namespace cad
