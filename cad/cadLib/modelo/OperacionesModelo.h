// Operations on whole models: the union of two models, a hole cut by a polyline, and contour
// lines.
#pragma once

#include <cstdint>
#include <vector>

#include "base/geometria/Plano3D.h"
#include "base/geometria/Punto3.h"
#include "base/geometria/Vector3D.h"
#include "modelo/Modelo3D.h"

namespace cad
{

// Every end point of an edge record with an empty side (a boundary vertex, or any vertex of
// a model read from a file, whose edges carry one face each) moves `distancia` further away
// from the model's centroid, in ascending index order.
void desplazaFrontera(Modelo3D& modelo, double distancia);

// `salida` becomes a copy of `a` followed by the records of `b` (see Modelo3D::agrega), both
// copies having their boundaries pushed apart by the distance between the two centroids.
// The inputs are left as they are.
void uneExtension(const Modelo3D& a, const Modelo3D& b, Modelo3D& salida);

// Replaces face `cara` by one face with a keyhole boundary: the face's cycle, a bridge from
// its corner nearest to the polyline, the polyline projected on the face's plane and turned
// against the face, and back over the bridge. The new face takes material 0 and `viva` 1.
// False, and nothing changed, when the polyline is not closed; also (beyond that, so that a
// bad pick cannot damage the mesh) for a dead face, a face with fewer than three corners or
// no normal (its first three in a line), or a polyline of fewer than three points.
//
//      before                 after
//   C0 ---------- C3       C0 ---------- C3
//   |             |        | \ H0 --- H1 |      one face: C0 C1 C2 C3 C0 H0 H3 H2 H1 H0
//   |             |   ->   |   |      |  |      (C0-H0 walked both ways: the bridge)
//   |             |        |   H3 --- H2 |
//   C1 ---------- C2       C1 ---------- C2
// Invalidates pointers into all three tables; indices stay, the old face's as a deleted record.
bool huecoPolilinea(Modelo3D& modelo, int32_t cara, const std::vector<Punto3<double>>& puntos,
                    bool cerrada);

// The points where the sides of every face cross `plano`, two per crossing of a face, in
// face order and side order, after what `puntos` holds. A side crosses when exactly one of
// its ends has a plane value of 0 or more; an end with the value 0 is the hit itself, and the
// hit on any other side is computed from its two ends taken in ascending vertex index, so
// that the two faces of an edge get the same bits and chains meet exactly.
void cortaPlano(const Modelo3D& modelo, const Plano3D<double>& plano,
                std::vector<Punto3<double>>& puntos);

// More levels than any survey draws; a sweep that would need more cuts nothing.
inline constexpr double kMaximoCotas = 10000000;

// The heights along `direccion` of the levels isolineas cuts, level 0 first; none when the
// sweep would need more than kMaximoCotas.
std::vector<double> cotasIsolineas(const Modelo3D& modelo, const Vector3D<double>& direccion,
                                   double intervalo);

// Contour sections of the model every `intervalo` along the unit `direccion`, swept from the
// centre of its box less the box's half diagonal, over the whole diagonal: levels 0, 5, 10...
// go to `maestras`, the others to `normales`, one point list per level as cortaPlano makes
// it. Each edge's hits on every level are computed once and shared by its faces. Nothing is
// appended for an `intervalo` that is not above 0 or a model with no vertex.
void isolineas(const Modelo3D& modelo, const Vector3D<double>& direccion,
               std::vector<std::vector<Punto3<double>>>& normales,
               std::vector<std::vector<Punto3<double>>>& maestras, double intervalo);

// One chain of points and whether its ends met.
struct cadena_t
{
    std::vector<Punto3<double>> puntos;
    bool cerrada = false;
};

// Joins the pairs of `puntos` (taken two at a time; an odd last point is ignored) into
// chains: each chain starts at the first pair left and grows, at whichever end, by the first
// pair left in list order that has an end within `tolerancia` of an end of the chain. A pair
// whose two points are within `tolerancia` of each other (a level touching a vertex) and a
// pair equal to one already taken (a level running along an edge between two faces below
// it) add nothing. A chain whose ends meet is closed, its repeated end point dropped. With
// `tolerancia` 0 the points are matched by exact equality in time proportional to their
// number.
void encadena(const std::vector<Punto3<double>>& puntos, std::vector<cadena_t>& cadenas,
              double tolerancia);

}  // namespace cad
