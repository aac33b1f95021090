// Rect3: an axis-aligned 3D box, empty when inverted; used for extents.
#pragma once

#include <algorithm>

#include "base/geometria/Punto3.h"

namespace cad
{

template <typename T>
struct Rect3
{
    // The default is the empty, inverted box.
    Punto3<T> minimo{0, 0, 0};
    Punto3<T> maximo{-1, -1, -1};

    constexpr Rect3() = default;
    constexpr Rect3(const Punto3<T>& minimo_, const Punto3<T>& maximo_)
        : minimo(minimo_), maximo(maximo_)
    {
    }

    constexpr bool operator==(const Rect3&) const = default;

    constexpr Punto3<T> centro() const
    {
        return {(maximo.x + minimo.x) * T(0.5), (maximo.y + minimo.y) * T(0.5),
                (maximo.z + minimo.z) * T(0.5)};
    }

    // True when maximo >= minimo on every axis. Any NaN makes the box invalid, since every
    // comparison with it is false.
    constexpr bool esValido() const
    {
        return maximo.x >= minimo.x && maximo.y >= minimo.y && maximo.z >= minimo.z;
    }

    // Grows the box to hold `punto`. An invalid (empty) box is replaced by the zero-size box
    // at the point, so the default box does not reach back to the origin.
    constexpr void amplia(const Punto3<T>& punto)
    {
        if (!esValido())
        {
            minimo = punto;
            maximo = punto;
            return;
        }
        minimo = {std::min(minimo.x, punto.x), std::min(minimo.y, punto.y),
                  std::min(minimo.z, punto.z)};
        maximo = {std::max(maximo.x, punto.x), std::max(maximo.y, punto.y),
                  std::max(maximo.z, punto.z)};
    }

    // Grows the box to hold `otra`; an empty box adds nothing, so an entity without points
    // can't drag an extent to its inverted corners.
    constexpr void une(const Rect3& otra)
    {
        if (otra.esValido())
        {
            amplia(otra.minimo);
            amplia(otra.maximo);
        }
    }
};

}  // namespace cad
