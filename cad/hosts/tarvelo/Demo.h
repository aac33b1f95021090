// The subcommands of the command-line host.
#pragma once

#include <iosfwd>

namespace Fendrix
{
class WrapDibujoCAD;
}

namespace tarvelo
{

// Builds the sample drawing through the facade.
void construyeDemo(Fendrix::WrapDibujoCAD& dibujo);
// A readable summary: layers with colour name or RGB and flags, materials, styles, variables.
void imprimeResumen(Fendrix::WrapDibujoCAD& dibujo, std::ostream& salida);

}  // namespace tarvelo
