// Test support: byte vectors, entities written and read in their own block, block parsing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/BloqueSerializacion.h"
#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "entidades/Entidad.h"
#include "soporte/FicheroTemporal.h"

namespace cad::prueba
{

using Bytes = std::vector<uint8_t>;

inline Bytes operator+(Bytes a, const Bytes& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// Writes the entity inside its own block, as the entity list does, and returns the file.
inline Bytes guarda(cad::Entidad& e, const std::string& ruta = rutaTemporal("entidad.bin"))
{
    {
        cad::SerializadorBinarioEscritura w(ruta);
        std::unique_ptr<cad::BloqueSerializacion> b(w.nuevoBloque(e.etiqueta(), e.tamanoBloque()));
        e.escribe(w);
        e.escribeDatosDesconocidos(w);
    }
    return leeFichero(ruta);
}

// Reads one block into `e` as the list does; true when the body and the block's end were
// read. A failed body leaves the block open, as in the list.
template <typename Lector = cad::SerializadorBinarioLectura>
bool carga(const Bytes& bytes, cad::Entidad& e,
           const std::string& ruta = rutaTemporal("entidad.bin"))
{
    escribeFichero(ruta, bytes);
    Lector r(ruta);
    std::unique_ptr<cad::BloqueSerializacion> b(r.leeBloque());
    return e.lee(r) && e.finLectura(r, b.release());
}

// The little-endian number of n bytes at pos.
inline uint64_t num(const Bytes& b, size_t pos, int n)
{
    uint64_t v = 0;
    for (int i = n - 1; i >= 0; --i)
    {
        v = (v << 8) | b.at(pos + static_cast<size_t>(i));
    }
    return v;
}

inline void ponNum(Bytes& b, size_t pos, uint64_t v, int n)
{
    for (int i = 0; i < n; ++i)
    {
        b.at(pos + static_cast<size_t>(i)) = static_cast<uint8_t>(v >> (8 * i));
    }
}

inline void anade(Bytes& b, uint64_t v, int n)
{
    for (int i = 0; i < n; ++i)
    {
        b.push_back(static_cast<uint8_t>(v >> (8 * i)));
    }
}

// A block as a reader finds it: a tag field of 4 bytes and 2 more while the last is not zero,
// then a length as wide as the field's size says (or as forced).
struct Bloque
{
    std::string tag;
    size_t inicio, posLongitud;
    int ancho;
    size_t fin;
    size_t cuerpo() const { return posLongitud + static_cast<size_t>(ancho); }
};

inline Bloque bloqueEn(const Bytes& b, size_t pos, int anchoForzado = 0)
{
    size_t n = 4;
    while (b.at(pos + n - 1) != 0)
    {
        n += 2;
    }
    const int ancho = anchoForzado != 0 ? anchoForzado : (n == 4 ? 2 : (n == 8 ? 4 : 8));
    return {reinterpret_cast<const char*>(&b[pos]), pos, pos + n, ancho,
            pos + n + num(b, pos + n, ancho)};
}

// A section of a document file (sections have u64 lengths) by its tag.
inline Bloque seccion(const Bytes& b, const std::string& tag)
{
    Bloque s = bloqueEn(b, 24, 8);
    while (s.tag != tag)
    {
        s = bloqueEn(b, s.fin, 8);
    }
    return s;
}

// The item blocks of a section, in file order.
inline std::vector<Bloque> items(const Bytes& b, const std::string& tag)
{
    const Bloque s = seccion(b, tag);
    std::vector<Bloque> r;
    for (size_t pos = s.posLongitud + 16; pos < s.fin; pos = r.back().fin)
    {
        r.push_back(bloqueEn(b, pos));
    }
    return r;
}

inline Bytes trozo(const Bytes& b, const Bloque& bl)
{
    return Bytes(b.begin() + static_cast<long>(bl.inicio), b.begin() + static_cast<long>(bl.fin));
}

}  // namespace cad::prueba
