// Fuzz target: the document reader over arbitrary bytes, once into a new drawing and once
// more over the document that the first read left.
#include <cstddef>
#include <cstdint>

#include "base/SerializadorBinarioLectura.h"
#include "documento/Dibujo.h"

namespace
{

void lee(cad::Dibujo& dibujo, const uint8_t* datos, size_t n)
{
    cad::SerializadorBinarioLectura lector(datos, n);
    dibujo.lee(lector);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* datos, size_t n)
{
    cad::Dibujo dibujo;
    dibujo.nuevoDocumento();
    lee(dibujo, datos, n);
    // Loading over a loaded document is what opening a second file in one editor does.
    lee(dibujo, datos, n);
    return 0;
}
