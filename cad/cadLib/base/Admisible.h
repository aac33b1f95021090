// What the drawing admits from outside: strings the document file can hold, finite numbers.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>

namespace cad
{

// The file stores each string behind a 16-bit length rounded up to even: 65534 bytes is the
// last length that reads back. One byte more wraps the field to 0 and corrupts what follows.
inline constexpr size_t kLongitudMaximaCadena = 65534;

// True when `s` (its bytes, not its characters) fits in the document file.
inline bool cadenaAdmisible(const std::string& s)
{
    return s.size() <= kLongitudMaximaCadena;
}

// True when none of the `n` values is NaN or infinite: such a value would reach the extent,
// the snap and the files as it is.
inline bool numerosFinitos(const double* valores, size_t n)
{
    return std::all_of(valores, valores + n, [](double v) { return std::isfinite(v); });
}

}  // namespace cad
