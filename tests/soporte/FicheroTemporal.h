// Test support: unique scratch files and whole-file byte access.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace cad::prueba
{

// A path under a scratch folder of this test process; the name keeps its extension.
std::string rutaTemporal(const std::string& nombre);
// A path in the folder of DXF files that the audit test reads after the writers' tests:
// salida/dxf under CAD_TEST_SALIDA, or a fixed temporary folder.
std::string rutaDXF(const std::string& nombre);
std::vector<uint8_t> leeFichero(const std::string& ruta);
void escribeFichero(const std::string& ruta, const std::vector<uint8_t>& bytes);
void escribeFichero(const std::string& ruta, const std::string& texto);
bool existeFichero(const std::string& ruta);
// Files of the scratch folder that a writer left behind: the hidden temporary files that
// an atomic write makes beside its target, which must be gone once the write has ended.
std::vector<std::string> restosTemporales();

}  // namespace cad::prueba
