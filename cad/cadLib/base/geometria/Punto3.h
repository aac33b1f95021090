// Punto3: a plain three-coordinate point, and `invalido`, the system's undefined point.
#pragma once

#include <cmath>
#include <limits>
#include <type_traits>

#include "base/geometria/Vector3D.h"

namespace cad
{

template <typename T>
struct Punto3
{
    T x{};
    T y{};
    T z{};

    constexpr Punto3() = default;
    constexpr Punto3(T x_, T y_, T z_) : x(x_), y(y_), z(z_) {}
    explicit constexpr Punto3(const T (&v)[3]) : x(v[0]), y(v[1]), z(v[2]) {}

    // Narrowing conversion, e.g. a kernel point turned into float display data.
    template <typename U>
        requires(!std::is_same_v<U, T>)
    explicit constexpr Punto3(const Punto3<U>& p)
        : x(static_cast<T>(p.x)), y(static_cast<T>(p.y)), z(static_cast<T>(p.z))
    {
    }

    constexpr Punto3& operator=(const T (&v)[3])
    {
        x = v[0];
        y = v[1];
        z = v[2];
        return *this;
    }

    // Exact comparison of the three numbers; points that differ in the last bit differ.
    constexpr bool operator==(const Punto3&) const = default;

    constexpr Punto3 operator-() const { return {-x, -y, -z}; }

    // Squared distance, summed in the order x, y, z.
    constexpr T distanciaCuadrado(const Punto3& o) const
    {
        const T dx = x - o.x;
        const T dy = y - o.y;
        const T dz = z - o.z;
        return dx * dx + dy * dy + dz * dz;
    }
    T distancia(const Punto3& o) const { return std::sqrt(distanciaCuadrado(o)); }

    static constexpr Punto3 puntoMedio(const Punto3& a, const Punto3& b)
    {
        return {(a.x + b.x) * T(0.5), (a.y + b.y) * T(0.5), (a.z + b.z) * T(0.5)};
    }

    // The vector that carries `o` onto this point.
    constexpr Vector3D<T> operator-(const Punto3& o) const { return {x - o.x, y - o.y, z - o.z}; }

    constexpr Punto3 operator+(const Vector3D<T>& v) const { return {x + v.x, y + v.y, z + v.z}; }
    constexpr Punto3 operator-(const Vector3D<T>& v) const { return {x - v.x, y - v.y, z - v.z}; }
    constexpr Punto3& operator+=(const Vector3D<T>& v) { return *this = *this + v; }
    constexpr Punto3& operator-=(const Vector3D<T>& v) { return *this = *this - v; }
};

// The undefined point: the largest finite double in all three coordinates. Callers compare
// against it with == to tell "no point" from a real one.
inline const Punto3<double> invalido{std::numeric_limits<double>::max(),
                                     std::numeric_limits<double>::max(),
                                     std::numeric_limits<double>::max()};

}  // namespace cad
