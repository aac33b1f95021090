// Linea3D: a line given by two of its points.
#pragma once

#include "base/geometria/Punto3.h"
#include "base/geometria/Vector3D.h"

namespace cad
{

// Stored by two points rather than point and direction, so that a drawn segment and the
// infinite line through it share one representation.
template <typename T>
struct Linea3D
{
    Punto3<T> origen;
    Punto3<T> extremo;

    constexpr Linea3D() = default;
    constexpr Linea3D(const Punto3<T>& origen_, const Punto3<T>& extremo_)
        : origen(origen_), extremo(extremo_)
    {
    }
    // Through `p` with direction `v`: the second point is p + v.
    constexpr Linea3D(const Punto3<T>& p, const Vector3D<T>& v) : origen(p), extremo(p + v) {}

    constexpr bool operator==(const Linea3D&) const = default;

    // From `origen` to `extremo`, not normalised.
    constexpr Vector3D<T> ObtenerVector() const { return extremo - origen; }
};

}  // namespace cad
