// What the solids share: their meshes written to DXF, the tessellators of the box and the
// cylinder, and the rows their sheets have in common.
#pragma once

#include <cstdint>
#include <string>

#include "base/geometria/Matriz4.h"
#include "base/geometria/Punto3.h"
#include "base/geometria/Vector3D.h"

namespace cad
{

class Entidad;
class ExportaDXF;
class Modelo3D;
struct Prop;

// One 3DFACE of three corners per triangle of every live face, in face order, of colour
// `color` (a DXF colour index, 256 by layer). A deleted face has no corners and writes nothing.
void exportaModeloDXF(const Modelo3D& modelo, ExportaDXF& dxf, int color);

// Appends the box of corner `base` and edges `tamano` along the axes: eight vertices, corner
// k at base + (k&1 ? x : 0, k&2 ? y : 0, k&4 ? z : 0), texture 0, 0, and six four-sided faces
// of `material` on them, anticlockwise seen from outside while every size is positive (a
// negative size turns its faces inside out). Nothing of what the model held is touched.
void teselaCubo(Modelo3D& modelo, const Punto3<double>& base, const Vector3D<double>& tamano,
                uint16_t material);

// Stations round the Z axis of the cylinder: one per side and a last one on the first, so
// that the seam's vertices carry u = 1.
inline constexpr int kLadosCilindro = 12;
inline constexpr int kEstacionesCilindro = kLadosCilindro + 1;

// Appends the cylinder of axis Z, base centred on the origin: per station i (angle a = i
// turns / 12) a bottom vertex at z 0 with texture (a / 2pi, 0), then a top vertex at `altura`
// with (a / 2pi, 1), both at radio * cos a, radio * sin a (the last station repeats the
// first's position); a quadrilateral per side, then the bottom and the top caps as 12-sided
// polygons over the first 12 stations. All faces of `material`, anticlockwise from outside.
void teselaCilindro(Modelo3D& modelo, uint16_t material, double radio, double altura);

// Carries every vertex record, dead ones included, by `t`. Cached normals are left as they
// are: a tessellation has computed none yet.
void transformaModelo(Modelo3D& modelo, const Matriz4<double>& t);

// The layer a solid's DXF records go to: its own, or "0", which every DXF file has, for a
// solid outside a drawing.
std::string capaDXFSolido(const Entidad& e);

// The row "Material" (kind Material, the id in `material`, and as decimal text in `valor`) of
// category 2, "Varios".
void filaMaterial(Prop& p, uint16_t material);

// The "Geometría" rows of a box given by two opposite corners: 0 "Posición" (minimo), 1
// "Incremento" (maximo - minimo), then, read-only, 2 "Área" |2ab + 2ac + 2bc| and 3 "Volumen"
// |abc| of the three differences: with a corner below the other on one axis the products
// keep their signs inside, so the area is then not the box's surface. False past index 3.
inline constexpr int kFilasCaja = 4;
bool filaCaja(int indice, const Punto3<double>& minimo, const Punto3<double>& maximo, Prop& p);
// Writes row 0 (the box moves, keeping its size) or row 1 (maximo follows); false for the
// read-only rows and past them.
bool escribeFilaCaja(int indice, const Prop& p, Punto3<double>& minimo, Punto3<double>& maximo);

}  // namespace cad
