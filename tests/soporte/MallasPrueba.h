// Test support: small meshes built face by face, and mesh bodies in memory.
#pragma once

#include <cstdint>
#include <vector>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "modelo/Modelo3D.h"

namespace cad::prueba
{

// A grid of nx by ny quads, vertex (i, j) at (i, j, 0), faces anticlockwise from above.
inline void cuadricula(Modelo3D& m, int nx, int ny)
{
    for (int j = 0; j <= ny; ++j)
    {
        for (int i = 0; i <= nx; ++i)
        {
            m.nuevoVertice(Punto3<double>(i, j, 0));
        }
    }
    for (int j = 0; j < ny; ++j)
    {
        for (int i = 0; i < nx; ++i)
        {
            const int32_t a = j * (nx + 1) + i;
            const int32_t q[4] = {a, a + 1, a + nx + 2, a + nx + 1};
            m.nuevaCara(4, q, false, 0);
        }
    }
}

// The unit cube on eight shared vertices, every face anticlockwise seen from outside.
inline void cubo(Modelo3D& m)
{
    for (int i = 0; i < 8; ++i)
    {
        m.nuevoVertice(Punto3<double>(i & 1, (i >> 1) & 1, (i >> 2) & 1));
    }
    const int32_t caras[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                 {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
    for (const auto& c : caras)
    {
        m.nuevaCara(4, c, false, 0);
    }
}

inline std::vector<uint8_t> cuerpoDe(const Modelo3D& m)
{
    SerializadorBinarioEscritura w;
    m.escribe(w);
    return w.bytes();
}

inline bool leeCuerpo(const std::vector<uint8_t>& b, Modelo3D& m)
{
    SerializadorBinarioLectura r(b.data(), b.size());
    return m.lee(r);
}

// The records as lee reads them, written straight from the lists: unlike escribe, edges keep
// both faces and dead records stay.
inline std::vector<uint8_t> imagenDe(const Modelo3D& m)
{
    std::vector<uint8_t> b;
    const auto pon = [&b](const auto& v)
    {
        const auto* p = reinterpret_cast<const uint8_t*>(&v);
        b.insert(b.end(), p, p + sizeof v);
    };
    pon(static_cast<uint32_t>(m.vertices().size()));
    for (const vertice_t& v : m.vertices())
    {
        pon(v.punto.x), pon(v.punto.y), pon(v.punto.z), pon(v.uv.x), pon(v.uv.y), pon(v.arista);
    }
    pon(static_cast<uint32_t>(m.aristas().size()));
    for (const Arista& a : m.aristas())
    {
        pon(a.vertice[0]), pon(a.vertice[1]), pon(a.siguienteCara0), pon(a.anteriorCara0);
        pon(a.siguienteCara1), pon(a.anteriorCara1), pon(a.cara[0]), pon(a.cara[1]), pon(a.viva);
    }
    pon(static_cast<uint32_t>(m.caras().size()));
    for (const cara_t& c : m.caras())
    {
        pon(c.arista), pon(c.material);
    }
    return b;
}

}  // namespace cad::prueba
