// Vector4D: a plain four-component vector, the column type of Matriz4.
#pragma once

#include "base/geometria/Vector3D.h"

namespace cad
{

template <typename T>
struct Vector4D
{
    T x{};
    T y{};
    T z{};
    T w{};

    constexpr Vector4D() = default;
    constexpr Vector4D(T x_, T y_, T z_, T w_) : x(x_), y(y_), z(z_), w(w_) {}
    constexpr Vector4D(const Vector3D<T>& v, T w_) : x(v.x), y(v.y), z(v.z), w(w_) {}

    constexpr bool operator==(const Vector4D&) const = default;

    // Component by index 0..3 (x, y, z, w). Out of range is a caller error and gives w.
    constexpr T& operator[](int i)
    {
        switch (i)
        {
            case 0:
                return x;
            case 1:
                return y;
            case 2:
                return z;
            default:
                return w;
        }
    }
    constexpr const T& operator[](int i) const { return const_cast<Vector4D&>(*this)[i]; }

    // The scalar scales all four components, w included: this is plain vector arithmetic,
    // not a homogeneous point operation.
    constexpr Vector4D operator*(T k) const { return {x * k, y * k, z * k, w * k}; }
    constexpr Vector4D& operator*=(T k) { return *this = *this * k; }

    constexpr Vector4D operator+(const Vector4D& o) const
    {
        return {x + o.x, y + o.y, z + o.z, w + o.w};
    }
    constexpr Vector4D& operator+=(const Vector4D& o) { return *this = *this + o; }
};

}  // namespace cad
