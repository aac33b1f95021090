// The longest string that the document file can hold, and the test applied where one enters.
#pragma once

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

}  // namespace cad
