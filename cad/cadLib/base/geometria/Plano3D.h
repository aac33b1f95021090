// Plano3D: the plane a x + b y + c z + d = 0, with (a, b, c) kept as given, not normalised.
#pragma once

#include <cmath>

#include "base/geometria/Linea3D.h"
#include "base/geometria/Punto3.h"
#include "base/geometria/Vector3D.h"

namespace cad
{

template <typename T>
struct Plano3D
{
    // Below this |a dx + b dy + c dz| a line counts as parallel to the plane.
    static constexpr double umbralParalelismo = 1e-07;

    T a{};
    T b{};
    T c{};
    T d{};

    // All zeros: no plane at all, until one is assigned.
    constexpr Plano3D() = default;
    constexpr Plano3D(T a_, T b_, T c_, T d_) : a(a_), b(b_), c(c_), d(d_) {}
    // Through `p` with normal `n`, the normal kept unnormalised.
    constexpr Plano3D(const Punto3<T>& p, const Vector3D<T>& n)
        : a(n.x), b(n.y), c(n.z), d(-(n.x * p.x + n.y * p.y + n.z * p.z))
    {
    }

    constexpr bool operator==(const Plano3D&) const = default;

    // Unit normal; the zero vector for the all-zero plane.
    Vector3D<T> normal() const { return Vector3D<T>(a, b, c).unit(); }

    // Intersects the infinite line (t is not clamped to the segment) with the plane. Returns
    // false and leaves `punto` untouched when the line is parallel or the data are NaN. The
    // threshold is tested on the raw product with the unnormalised normal and line vector, so a
    // short line or a small (a, b, c) can be reported parallel; callers rely on that.
    bool interseccionLineaPlano(const Linea3D<T>& linea, Punto3<T>& punto) const
    {
        const Vector3D<T> v = linea.ObtenerVector();
        const T den = a * v.x + b * v.y + c * v.z;
        // Written as "not greater" so that a NaN also counts as parallel.
        if (!(std::abs(den) > umbralParalelismo))
        {
            return false;
        }
        const Punto3<T>& o = linea.origen;
        const T t = -(a * o.x + d + b * o.y + c * o.z) / den;
        punto = o + v * t;
        return true;
    }

    // Foot of the perpendicular from `punto`. A plane with no usable normal (all zero, or
    // shorter than the parallel threshold) sends every point to the origin.
    Punto3<T> proyecta(const Punto3<T>& punto) const
    {
        const Linea3D<T> perpendicular(punto, normal());
        Punto3<T> resultado(0, 0, 0);
        interseccionLineaPlano(perpendicular, resultado);
        return resultado;
    }
};

}  // namespace cad
