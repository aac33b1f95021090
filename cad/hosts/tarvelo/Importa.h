// The `importa` order: a DXF or OBJ file into a drawing, with a report of what came in.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>

namespace cad
{
class Dibujo;
}

namespace tarvelo
{

// A name ending in .dxf or .obj, in any case.
bool esImportable(const std::string& entrada);

// Adds an importable file to `dibujo`, telling on `informe` what came in (progress for inputs
// over 50 MB on `errores`). False, with the reader's reason in `error`, when it could not be
// read.
bool importaFichero(cad::Dibujo& dibujo, const std::string& entrada, std::ostream& informe,
                    std::ostream& errores, std::string& error);
// The same, telling `progreso` (when set) how far the reading has gone, from 0 to 1.
bool importaFichero(cad::Dibujo& dibujo, const std::string& entrada, std::ostream& informe,
                    const std::function<void(double)>& progreso, std::string& error);

// Reads `entrada` (.dxf or .obj, by its extension, any case) into the drawing `salida` when
// that file exists, or into a new one, prints what came in on `informe` and saves to `salida`.
// An empty `salida` is the input's name with ".cad". Failures, and progress for inputs over
// 50 MB, go to `errores`. Returns the process's exit code.
int importa(const std::string& entrada, std::string salida, std::ostream& informe,
            std::ostream& errores);

}  // namespace tarvelo
