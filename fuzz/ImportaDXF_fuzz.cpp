// Fuzz target: the DXF reader over arbitrary bytes. What it builds must save and load again
// with as many layers and entities; anything else stops the process.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/Dibujo.h"
#include "intercambio/ImportaDXF.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* datos, size_t n)
{
    cad::Dibujo dibujo;
    dibujo.nuevoDocumento();
    {
        cad::ImportaDXF lector(&dibujo);
        lector.lee(reinterpret_cast<const char*>(datos), n);
    }
    dibujo.guardaEstado();
    cad::SerializadorBinarioEscritura w;
    dibujo.escribe(w);
    const auto bytes = w.bytes();
    cad::Dibujo otro;
    otro.nuevoDocumento();
    cad::SerializadorBinarioLectura r(bytes.data(), bytes.size());
    if (!otro.lee(r) || otro.entidades.size() != dibujo.entidades.size() ||
        otro.capas.size() != dibujo.capas.size())
    {
        std::fprintf(stderr, "importa DXF: lo importado no se vuelve a leer igual\n");
        std::abort();
    }
    return 0;
}
