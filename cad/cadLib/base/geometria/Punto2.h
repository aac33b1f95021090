// Punto2: a plain two-coordinate point, used for pixels and flat drawing data.
#pragma once

namespace cad
{

template <typename T>
struct Punto2
{
    T x{};
    T y{};

    constexpr Punto2() = default;
    constexpr Punto2(T x_, T y_) : x(x_), y(y_) {}

    // Exact comparison, no tolerance: pixel and drawing coordinates are compared as stored.
    constexpr bool operator==(const Punto2&) const = default;
};

}  // namespace cad
