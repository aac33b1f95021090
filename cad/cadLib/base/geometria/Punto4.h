// Punto4: a plain homogeneous point (x, y, z, w).
#pragma once

namespace cad
{

template <typename T>
struct Punto4
{
    T x{};
    T y{};
    T z{};
    T w{};

    constexpr Punto4() = default;
    constexpr Punto4(T x_, T y_, T z_, T w_) : x(x_), y(y_), z(z_), w(w_) {}

    constexpr bool operator==(const Punto4&) const = default;
};

}  // namespace cad
