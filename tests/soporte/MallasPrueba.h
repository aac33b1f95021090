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

}  // namespace cad::prueba
