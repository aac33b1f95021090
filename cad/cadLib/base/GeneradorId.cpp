#include "base/GeneradorId.h"

#include <algorithm>

namespace cad
{

int GeneradorId::nuevoId(const std::string& nombre)
{
    auto it = contadores.find(nombre);
    if (it == contadores.end())
    {
        contador_t c;
        c.siguiente = 2;
        contadores.emplace(nombre, c);
        return 1;
    }
    contador_t& c = it->second;
    if (c.libres.empty())
    {
        return c.siguiente++;
    }
    const int id = c.libres.back();
    c.libres.pop_back();
    return id;
}

void GeneradorId::liberaId(const std::string& nombre, int id)
{
    auto it = contadores.find(nombre);
    if (it != contadores.end())
    {
        it->second.libres.push_back(id);
    }
}

void GeneradorId::reinicia(const std::string& nombre, const std::vector<int16_t>& enUso)
{
    contadores.erase(nombre);
    int maximo = 0;
    if (!enUso.empty())
    {
        maximo = *std::max_element(enUso.begin(), enUso.end());
    }
    contador_t c;
    c.siguiente = maximo + 1;
    // A table of marks keeps this linear: the ids come from a file and may be many.
    std::vector<bool> usado(static_cast<size_t>(std::max(maximo, 0)) + 1, false);
    for (int16_t v : enUso)
    {
        if (v > 0)
        {
            usado[static_cast<size_t>(v)] = true;
        }
    }
    for (int v = 1; v < maximo; ++v)
    {
        if (!usado[static_cast<size_t>(v)])
        {
            c.libres.push_back(v);
        }
    }
    contadores.emplace(nombre, std::move(c));
}

const contador_t* GeneradorId::familia(const std::string& nombre) const
{
    auto it = contadores.find(nombre);
    return it == contadores.end() ? nullptr : &it->second;
}

}  // namespace cad
