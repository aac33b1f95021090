// Polilinea3D: an open or closed chain of 3D vertices.
#pragma once

#include <utility>
#include <vector>

#include "base/geometria/Punto3.h"

namespace cad
{

// A closed polyline does not repeat its first vertex: closure is the flag alone, and the last
// edge wraps round from the last vertex to the first.
template <typename T>
struct Polilinea3D
{
    std::vector<Punto3<T>> vertices;
    bool cerrada = false;

    Polilinea3D() = default;
    explicit Polilinea3D(std::vector<Punto3<T>> vertices_, bool cerrada_ = false)
        : vertices(std::move(vertices_)), cerrada(cerrada_)
    {
    }

    int numeroVertices() const { return static_cast<int>(vertices.size()); }
    bool esCerrada() const { return cerrada; }

    // Closed: one edge per vertex (one vertex gives one edge onto itself). Open: vertices
    // minus one, never below 0.
    int numeroAristas() const
    {
        const int n = numeroVertices();
        if (cerrada)
        {
            return n;
        }
        return n > 0 ? n - 1 : 0;
    }

    // Edge i, from vertex i to vertex (i + 1) modulo the count. Precondition:
    // 0 <= i < numeroAristas(); not range-checked.
    std::pair<Punto3<T>, Punto3<T>> arista(int i) const
    {
        const auto n = vertices.size();
        const auto k = static_cast<std::size_t>(i);
        return {vertices[k], vertices[(k + 1) % n]};
    }

    // Sum of the edge lengths; 0 for a polyline with no edges.
    T longitud() const
    {
        T total = 0;
        for (int i = 0; i < numeroAristas(); ++i)
        {
            const auto [p, q] = arista(i);
            total += p.distancia(q);
        }
        return total;
    }
};

}  // namespace cad
