// Test support: objects of the document written to and read from memory, with no file between.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "base/ObjetoCAD.h"
#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"

namespace cad::prueba
{

inline std::vector<uint8_t> bytesDe(ObjetoCAD& objeto)
{
    SerializadorBinarioEscritura w;
    objeto.escribe(w);
    return w.bytes();
}

// `objeto.lee` over the first `n` bytes, all of them by default.
inline bool leeDe(const std::vector<uint8_t>& bytes, ObjetoCAD& objeto, size_t n = SIZE_MAX)
{
    SerializadorBinarioLectura r(bytes.data(), std::min(n, bytes.size()));
    return objeto.lee(r);
}

// The unknown tail an object keeps.
inline std::vector<uint8_t> colaDe(const ObjetoCAD& objeto)
{
    return {objeto.datosDesconocidos, objeto.datosDesconocidos + objeto.tamanoDatosDesconocidos};
}

// The bytes of a value as the little-endian file holds it.
template <class T>
std::vector<uint8_t> le(T valor)
{
    std::vector<uint8_t> b(sizeof valor);
    std::memcpy(b.data(), &valor, sizeof valor);
    return b;
}

}  // namespace cad::prueba
