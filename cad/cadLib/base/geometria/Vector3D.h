// Vector3D: a plain three-component vector; float instances do their arithmetic in double.
#pragma once

#include <cmath>
#include <type_traits>

namespace cad
{

template <typename T>
struct Punto3;

// Every operation widens its operands to double and narrows each result back to T. For
// T = double this is the plain arithmetic; for float (display data, mesh normals) it keeps the
// rounding of the values handed on identical to what the double kernel would compute.
template <typename T>
struct Vector3D
{
    T x{};
    T y{};
    T z{};

    constexpr Vector3D() = default;
    constexpr Vector3D(T x_, T y_, T z_) : x(x_), y(y_), z(z_) {}
    explicit constexpr Vector3D(const T (&v)[3]) : x(v[0]), y(v[1]), z(v[2]) {}

    // Narrowing conversions, e.g. a double normal turned into a float one for the display.
    template <typename U>
        requires(!std::is_same_v<U, T>)
    explicit constexpr Vector3D(const Vector3D<U>& v)
        : x(static_cast<T>(v.x)), y(static_cast<T>(v.y)), z(static_cast<T>(v.z))
    {
    }
    template <typename U>
    explicit constexpr Vector3D(const Punto3<U>& p)
        : x(static_cast<T>(p.x)), y(static_cast<T>(p.y)), z(static_cast<T>(p.z))
    {
    }

    // Exact comparison, no tolerance.
    constexpr bool operator==(const Vector3D&) const = default;

    constexpr Vector3D operator-() const { return {-x, -y, -z}; }

    constexpr Vector3D operator+(const Vector3D& o) const
    {
        return {estrecha(ancho(x) + o.x), estrecha(ancho(y) + o.y), estrecha(ancho(z) + o.z)};
    }
    constexpr Vector3D operator-(const Vector3D& o) const
    {
        return {estrecha(ancho(x) - o.x), estrecha(ancho(y) - o.y), estrecha(ancho(z) - o.z)};
    }
    constexpr Vector3D operator*(T k) const
    {
        return {estrecha(ancho(x) * k), estrecha(ancho(y) * k), estrecha(ancho(z) * k)};
    }
    // Division by zero is not trapped: it yields infinities or NaNs like the raw arithmetic.
    constexpr Vector3D operator/(T k) const
    {
        return {estrecha(ancho(x) / k), estrecha(ancho(y) / k), estrecha(ancho(z) / k)};
    }

    constexpr Vector3D& operator+=(const Vector3D& o) { return *this = *this + o; }
    constexpr Vector3D& operator-=(const Vector3D& o) { return *this = *this - o; }
    constexpr Vector3D& operator*=(T k) { return *this = *this * k; }
    constexpr Vector3D& operator/=(T k) { return *this = *this / k; }

    // Scalar product, summed in the order x, y, z.
    constexpr T dot(const Vector3D& o) const
    {
        return estrecha(ancho(x) * o.x + ancho(y) * o.y + ancho(z) * o.z);
    }

    // Right-handed cross product: (1,0,0) x (0,1,0) = (0,0,1).
    constexpr Vector3D cross(const Vector3D& o) const
    {
        return {estrecha(ancho(y) * o.z - ancho(z) * o.y),
                estrecha(ancho(z) * o.x - ancho(x) * o.z),
                estrecha(ancho(x) * o.y - ancho(y) * o.x)};
    }

    // Length, the square root taken in double of the (already narrowed) dot product.
    T modulo() const { return estrecha(std::sqrt(ancho(dot(*this)))); }

    // Unit vector in the same direction. The zero vector gives the zero vector, never NaNs,
    // so callers may normalise degenerate input without checking first.
    Vector3D unit() const
    {
        const T m = modulo();
        if (m == 0.0)
        {
            return {};
        }
        return *this / m;
    }

    // Normalises in place; a zero vector is left as it is. Returns *this for chaining.
    Vector3D& normaliza()
    {
        const T m = modulo();
        if (m != 0.0)
        {
            *this /= m;
        }
        return *this;
    }

private:
    static constexpr double ancho(T v) { return static_cast<double>(v); }
    static constexpr T estrecha(double v) { return static_cast<T>(v); }
};

template <typename T>
constexpr Vector3D<T> operator*(T k, const Vector3D<T>& v)
{
    return v * k;
}

}  // namespace cad
