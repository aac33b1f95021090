// The subcommands of the command-line host.
#pragma once

#include <string>

namespace Fendrix
{
class WrapDibujoCAD;
}

namespace tarvelo
{

// Builds the sample drawing through the facade: layers, materials, styles, variables, a
// saved view and one entity of every kind the kernel has.
void construyeDemo(Fendrix::WrapDibujoCAD& dibujo);
// Writes the images the demo's materials name (a facade texture, a 360 photo) under `carpeta`, the
// drawing's folder. False, with the reason, when one could not be written.
bool escribeImagenesDemo(const std::string& carpeta, std::string& error);
}  // namespace tarvelo
