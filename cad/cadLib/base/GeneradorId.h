// Small integer ids by family name, with ids given back reused first (material ids).
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace cad
{

struct contador_t
{
    int32_t siguiente = 1;     // next fresh id
    std::vector<int> libres;   // ids given back; the last one is reused first
};

class GeneradorId
{
public:
    // A new id of the family: the last one given back, else the next fresh one. An unknown
    // family is created and gives 1.
    int nuevoId(const std::string& nombre);
    // Gives an id back to a family that exists; an unknown family does nothing.
    void liberaId(const std::string& nombre, int id);
    // Rebuilds a family from the ids in use after a read: next = highest + 1, and every
    // missing id below the highest is free, ascending.
    void reinicia(const std::string& nombre, const std::vector<int16_t>& enUso);

    const contador_t* familia(const std::string& nombre) const;

    std::map<std::string, contador_t> contadores;
};

}  // namespace cad
