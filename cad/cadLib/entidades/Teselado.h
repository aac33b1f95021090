// What the solids share: their meshes written to DXF, and the tessellators of the box and the
// cylinder.
#pragma once

#include <cstdint>

namespace cad
{

class ExportaDXF;
class Modelo3D;

// One 3DFACE of three corners per triangle of every live face, in face order, of colour
// `color` (a DXF colour index, 256 by layer). A deleted face has no corners and writes nothing.
void exportaModeloDXF(const Modelo3D& modelo, ExportaDXF& dxf, int color);

}  // namespace cad
