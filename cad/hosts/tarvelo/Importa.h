// The `importa` order: a DXF or OBJ file into a drawing, with a report of what came in.
#pragma once

#include <iosfwd>
#include <string>

namespace tarvelo
{

// Reads `entrada` (.dxf or .obj, by its extension, any case) into the drawing `salida` when
// that file exists, or into a new one, prints what came in on `informe` and saves to `salida`.
// An empty `salida` is the input's name with ".cad". Failures, and progress for inputs over
// 50 MB, go to `errores`. Returns the process's exit code.
int importa(const std::string& entrada, std::string salida, std::ostream& informe,
            std::ostream& errores);

}  // namespace tarvelo
