// EstiloTexto: a named font and size for text entities.
#pragma once

#include <cstdint>
#include <string>

#include "base/ObjetoCAD.h"

namespace cad
{

// Block "ET1", u16 length: u64 id, nombre, fuente, u32 tamano, the two style marks as
// booleans, then the unknown tail.
class EstiloTexto : public ObjetoCAD
{
public:
    // No name, no font, size 0, no marks.
    EstiloTexto() = default;
    EstiloTexto(const std::string& nombreEstilo, const std::string& fuenteEstilo,
                uint32_t tamanoEstilo, bool negritaEstilo = false, bool cursivaEstilo = false);

    const char* etiqueta() const override { return "ET1"; }
    void escribe(SerializadorEscrituraBase& w) override;
    // False for a block of another tag. Otherwise every field is read even after one fails,
    // and the result is the AND of all of them and of finLectura.
    bool lee(SerializadorLecturaBase& r) override;

    std::string nombre;  // unique in a drawing; compared exactly
    std::string fuente;  // font name
    uint32_t tamano = 0;
    // Style marks, carried through as they stand; the display decides what they do.
    bool negrita = false;
    bool cursiva = false;
};

}  // namespace cad
