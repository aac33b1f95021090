// What the host prints of a drawing.
#pragma once

#include <iosfwd>

namespace Fendrix
{
class WrapDibujoCAD;
}

namespace tarvelo
{

// A readable summary: layers with colour name or RGB and flags, materials, styles,
// variables, views.
void imprimeResumen(Fendrix::WrapDibujoCAD& dibujo, std::ostream& salida);
// Layers, entity counts by kind, extents.
void imprimeInfo(Fendrix::WrapDibujoCAD& dibujo, std::ostream& salida);
// Compares what a save and a load must keep; writes each difference and returns their count.
int comparaDibujos(Fendrix::WrapDibujoCAD& a, Fendrix::WrapDibujoCAD& b, std::ostream& salida);

}  // namespace tarvelo
