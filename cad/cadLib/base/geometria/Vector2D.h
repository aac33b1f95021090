// Vector2D: a plain two-component vector.
#pragma once

#include <cmath>

namespace cad
{

template <typename T>
struct Vector2D
{
    T x{};
    T y{};

    constexpr Vector2D() = default;
    constexpr Vector2D(T x_, T y_) : x(x_), y(y_) {}

    constexpr bool operator==(const Vector2D&) const = default;

    constexpr Vector2D operator+(const Vector2D& o) const { return {x + o.x, y + o.y}; }
    constexpr Vector2D operator-(const Vector2D& o) const { return {x - o.x, y - o.y}; }
    constexpr Vector2D operator*(T k) const { return {x * k, y * k}; }

    constexpr T dot(const Vector2D& o) const { return x * o.x + y * o.y; }

    // Length computed in double whatever T is, then narrowed back.
    T modulo() const { return static_cast<T>(std::sqrt(static_cast<double>(dot(*this)))); }
};

}  // namespace cad
