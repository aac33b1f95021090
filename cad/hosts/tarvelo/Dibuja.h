// The `dibuja` order: a drawing rendered with OpenGL, without a window, into a PNG file.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace tarvelo
{

// `argumentos` are the order's own: FICHERO.cad SALIDA.png [--vista planta|iso|NOMBRE]
// [--tamano ANCHOxALTO] [--modo 0..5]. Reads the drawing, renders it headless from the view
// asked for (planta by default, fitted to the drawing's extent) and writes the PNG, replacing
// the old one only when complete. One line on `salida` when it worked; failures, each with
// its reason, on `errores`. Returns the process's exit code.
int dibuja(const std::vector<std::string>& argumentos, std::ostream& salida, std::ostream& errores);

}  // namespace tarvelo
