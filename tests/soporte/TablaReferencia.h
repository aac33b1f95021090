// Test support: the reference tables that independent readers wrote for the shared data.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace cad::prueba
{

using filaTabla_t = std::map<std::string, std::string>;

// The rows of a tab-separated file whose first line names the columns; a short row gives
// empty values for the columns it lacks.
std::vector<filaTabla_t> leeTablaTSV(const std::string& ruta);
// A column as a number; 0 when it is empty or missing.
uint64_t numeroColumna(const filaTabla_t& fila, const std::string& columna);

}  // namespace cad::prueba
