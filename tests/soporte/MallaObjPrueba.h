// Test support: the `v` and `f` lines of an OBJ file built into a mesh, for tests on models
// that other tools wrote. Every other line is ignored.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "modelo/Modelo3D.h"

namespace cad::prueba
{

struct MallaObj
{
    Modelo3D modelo;  // a vertex per `v` line, a face per `f` line (not sharp, material 0)
    std::vector<std::vector<int32_t>> caras;  // each face's corners as read, from 0
};

// False when the file can't be read or a corner names no vertex read before it (0, or
// beyond either end); a negative corner counts back from the last vertex read.
bool leeMallaObj(const std::string& ruta, MallaObj& malla);

}  // namespace cad::prueba
