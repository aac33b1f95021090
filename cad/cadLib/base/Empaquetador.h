// Bulk bodies (a mesh, a point group, a polyface) written without one serialiser call per
// field.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "base/SerializadorEscrituraBase.h"

namespace cad
{

// Gathers native-order bytes of plain values, as the binary writer puts them, and hands
// them on in large pieces: one call per field would cost more than the copying.
class Empaquetador
{
public:
    // `total`, the bytes to come, only sizes the buffer: a small body needs a small one.
    Empaquetador(SerializadorEscrituraBase& s, size_t total)
        : s_(s), datos_(std::clamp(total, size_t{64}, kTrozo))
    {
    }
    // The values one after the other, with one test of room for the whole record.
    template <class... T>
    void pon(const T&... v)
    {
        if (n_ + (sizeof(T) + ...) > datos_.size())
        {
            vacia();
        }
        (copia(v), ...);
    }
    void vacia()
    {
        if (n_ != 0)
        {
            s_.escribeBytes(datos_.data(), static_cast<uint32_t>(n_));
            n_ = 0;
        }
    }

private:
    template <class T>
    void copia(const T& v)
    {
        std::memcpy(datos_.data() + n_, &v, sizeof(T));
        n_ += sizeof(T);
    }

    // As large as the binary writer's flush, so that a whole piece goes to the file uncopied.
    static constexpr size_t kTrozo = size_t{1} << 20;
    SerializadorEscrituraBase& s_;
    std::vector<uint8_t> datos_;
    size_t n_ = 0;
};

}  // namespace cad
