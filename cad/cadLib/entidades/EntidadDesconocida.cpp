#include "entidades/EntidadDesconocida.h"

#include <algorithm>
#include <cstring>

#include "base/SerializadorEscrituraBase.h"

namespace cad
{

EntidadDesconocida::EntidadDesconocida(const char* t)
{
    if (t != nullptr)
    {
        std::strncpy(tag, t, sizeof tag - 1);
    }
}

EntidadDesconocida* EntidadDesconocida::cruda(std::vector<uint8_t> bytes)
{
    auto* e = new EntidadDesconocida("");
    e->bloque = std::move(bytes);
    e->cruda_ = true;
    return e;
}

void EntidadDesconocida::escribe(SerializadorEscrituraBase& w)
{
    if (!cruda_)
    {
        Entidad::escribe(w);
        return;
    }
    // A block may be larger than one write can say.
    const uint8_t* p = bloque.data();
    size_t resto = bloque.size();
    while (resto > 0)
    {
        const auto n = static_cast<uint32_t>(std::min<size_t>(resto, 0x40000000));
        w.escribeBytes(p, n);
        p += n;
        resto -= n;
    }
}

Entidad* EntidadDesconocida::clona() const
{
    return cruda_ ? cruda(bloque) : new EntidadDesconocida(tag);
}

int EntidadDesconocida::tamanoBloque() const
{
    if (cruda_)
    {
        return kBloqueCrudo;
    }
    const size_t n = std::strlen(tag);
    return n < 4 ? 0 : (n < 8 ? 1 : 2);
}

}  // namespace cad
