// Fuzz target: whatever the kernel loads it saves so that it loads again as the same drawing.
// Read, save (A), read A, save (B): B must be A, except that a load puts the six default
// variables ahead of the file's, so B holds A's first six variable blocks once more at the
// head of "Vbles.1" (with the count and the lengths grown to match). Any other difference,
// or A failing to load, stops the process.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/Dibujo.h"

namespace
{

using Bytes = std::vector<uint8_t>;

[[noreturn]] void falla(const char* que)
{
    std::fprintf(stderr, "ida y vuelta: %s\n", que);
    std::abort();
}

uint64_t num(const Bytes& b, size_t pos, size_t n)
{
    uint64_t v = 0;
    for (size_t i = n; i-- > 0;)
    {
        v = (v << 8) | b.at(pos + i);
    }
    return v;
}

void ponNum(Bytes& b, size_t pos, uint64_t v, size_t n)
{
    for (size_t i = 0; i < n; ++i)
    {
        b.at(pos + i) = static_cast<uint8_t>(v >> (8 * i));
    }
}

// The size of the variable block at `pos`: a 3-character tag and a u16 length.
size_t tamanoVariable(const Bytes& b, size_t pos)
{
    return 4 + num(b, pos + 4, 2);
}

Bytes guarda(cad::Dibujo& d)
{
    d.guardaEstado();
    cad::SerializadorBinarioEscritura w;
    d.escribe(w);
    return w.bytes();
}

// `a` as a load and a save give it back: its first six variable blocks again ahead of all.
Bytes conSeisDefectosMas(const Bytes& a)
{
    // Outer block: a 16-byte tag and a u64 length; sections: an 8-byte tag and a u64 length.
    size_t pos = 24;
    while (pos + 16 <= a.size() && std::memcmp(&a[pos], "Vbles.1", 8) != 0)
    {
        pos += 8 + num(a, pos + 8, 8);
    }
    if (pos + 24 > a.size())
    {
        falla("lo guardado no tiene variables");
    }
    const size_t primera = pos + 24;
    size_t fin = primera;
    for (int i = 0; i < 6; ++i)
    {
        fin += tamanoVariable(a, fin);
    }
    Bytes b = a;
    b.insert(b.begin() + static_cast<long>(primera), a.begin() + static_cast<long>(primera),
             a.begin() + static_cast<long>(fin));
    const uint64_t seis = fin - primera;
    ponNum(b, pos + 8, num(a, pos + 8, 8) + seis, 8);
    ponNum(b, pos + 16, num(a, pos + 16, 8) + 6, 8);
    ponNum(b, 16, num(a, 16, 8) + seis, 8);
    return b;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* datos, size_t n)
{
    cad::Dibujo original;
    original.nuevoDocumento();
    cad::SerializadorBinarioLectura lector(datos, n);
    if (!original.lee(lector))
    {
        return 0;
    }
    const Bytes a = guarda(original);

    cad::Dibujo releido;
    releido.nuevoDocumento();
    cad::SerializadorBinarioLectura otro(a.data(), a.size());
    if (!releido.lee(otro))
    {
        falla("lo guardado no se puede leer");
    }
    if (releido.entidades.size() != original.entidades.size() ||
        releido.capas.size() != original.capas.size() ||
        releido.entidades.danadas != original.entidades.danadas)
    {
        falla("lo releido no es el mismo dibujo");
    }
    if (guarda(releido) != conSeisDefectosMas(a))
    {
        falla("guardado dos veces, no da los mismos bytes");
    }
    return 0;
}
