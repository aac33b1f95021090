#include "entidades/EntidadDesconocida.h"

#include <cstring>

namespace cad
{

EntidadDesconocida::EntidadDesconocida(const char* t)
{
    if (t != nullptr)
    {
        std::strncpy(tag, t, sizeof tag - 1);
    }
}

int EntidadDesconocida::tamanoBloque() const
{
    const size_t n = std::strlen(tag);
    return n < 4 ? 0 : (n < 8 ? 1 : 2);
}

}  // namespace cad
