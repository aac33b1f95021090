// Rect2: an axis-aligned 2D rectangle, empty when inverted; used for pixel windows.
#pragma once

#include "base/geometria/Punto2.h"

namespace cad
{

template <typename T>
struct Rect2
{
    // The default is the empty, inverted rectangle.
    Punto2<T> minimo{0, 0};
    Punto2<T> maximo{-1, -1};

    constexpr Rect2() = default;
    constexpr Rect2(const Punto2<T>& minimo_, const Punto2<T>& maximo_)
        : minimo(minimo_), maximo(maximo_)
    {
    }

    constexpr bool operator==(const Rect2&) const = default;

    // True when maximo >= minimo on both axes; a degenerate one-pixel rectangle is valid.
    constexpr bool esValido() const { return maximo.x >= minimo.x && maximo.y >= minimo.y; }
};

}  // namespace cad
