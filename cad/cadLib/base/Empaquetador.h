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
    template <class T>
    void pon(const T& v)
    {
        if (n_ + sizeof(T) > datos_.size())
        {
            vacia();
        }
        std::memcpy(datos_.data() + n_, &v, sizeof(T));
        n_ += sizeof(T);
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
    static constexpr size_t kTrozo = 1 << 18;
    SerializadorEscrituraBase& s_;
    std::vector<uint8_t> datos_;
    size_t n_ = 0;
};

}  // namespace cad
