// FusionPolilineas: the plan geometry behind merging one polyline into another.
#pragma once

#include <functional>
#include <vector>

#include "base/geometria/Punto3.h"

namespace cad
{

using CadenaPuntos = std::vector<Punto3<double>>;

// A place on a chain: side `lado` (from vertex lado to the next) at parameter `t` in [0, 1],
// so that lado + t runs along the chain; `punto` is that place in 3D and `distancia` how far
// in plan the point asked about lies from it.
struct lugarCadena_t
{
    int lado = -1;
    double t = 0.0;
    Punto3<double> punto;
    double distancia = 0.0;
};

// Where two chains cross in plan: the side and parameter on each. The point lies on the first
// chain, so a merged chain keeps the elevation of the one being changed.
struct cruceCadenas_t
{
    int ladoA = -1;
    double tA = 0.0;
    int ladoB = -1;
    double tB = 0.0;
    Punto3<double> punto;
};

// Mean of the vertices; the origin for none.
Punto3<double> centroide(const CadenaPuntos& puntos);

// Which way the chain turns around `centro`, from the sum of its angular steps (angles in
// [0, 2 pi), each step taken the short way round, steps below 1e-6 ignored; with `cerrada`
// the step from the last vertex back to the first counts too). 0 when the total is below
// 1e-6, -1 when it turns counter-clockwise (positive total), 1 when clockwise.
int orientacionCadena(const CadenaPuntos& puntos, const Punto3<double>& centro, bool cerrada);

// Plan crossing of segments a-b and c-d, ends included; parallel segments never cross. `t`
// and `u` are the parameters on a-b and on c-d.
bool cruceSegmentos(const Punto3<double>& a, const Punto3<double>& b, const Punto3<double>& c,
                    const Punto3<double>& d, double& t, double& u);

// True when two sides of the open chain that share no vertex cross in plan.
bool cadenaSeCruza(const CadenaPuntos& puntos);

// The place of the chain nearest in plan to `p`; on equal distances the earlier side. Side -1
// for a chain with no side.
lugarCadena_t lugarMasCercano(const CadenaPuntos& cadena, bool cerrada, const Punto3<double>& p);

// Every crossing of the sides of `a` with those of `b`, one per place of `a` (a crossing at a
// shared vertex is not counted twice), in the order of the sides of `a`.
std::vector<cruceCadenas_t> crucesCadenas(const CadenaPuntos& a, bool cerradaA,
                                          const CadenaPuntos& b, bool cerradaB);

// The origin cut to the part between its first and its last crossing with the closed chain:
// each end that crosses is replaced by its crossing point. An origin with no crossing is
// returned whole.
CadenaPuntos recortaEnPoligono(const CadenaPuntos& origen, const CadenaPuntos& poligono);

// The length of the open chain from place s1 to place s2 (s = side + parameter, s1 <= s2).
double longitudTramo(const CadenaPuntos& cadena, double s1, double s2);

// The polygon merge. `destino` is the vertex list of a closed polyline (its last vertex may
// repeat the first), `origen` an open chain. The origin, trimmed to the polygon, replaces the
// stretch of the boundary between the places nearest to its ends; both run the same way
// round whatever their drawn order, and the result keeps the destination's orientation and
// its repeated last vertex. False, and `resultado` untouched, when nothing can change.
bool fusionaPoligono(const CadenaPuntos& destino, const CadenaPuntos& origen,
                     CadenaPuntos& resultado);

// Told before each vertex change of fusionaCadena: an insertion (`insertar`) or a deletion at
// `indice` of the list as it stands, with the vertex. False refuses that one change.
using AvisoVertice = std::function<bool(bool insertar, int indice, const Punto3<double>& p)>;

// The chain merge, in place on the vertex list of an open polyline (whose last vertex may
// repeat the first: a ring). The stretch of `destino` between two crossings with `origen` is
// replaced by the origin between them; with fewer than two crossings the origin's own ends
// stand in for them, placed where they are nearest to `destino` (a single crossing replaces
// the end nearer to `destino`), and an end beyond an end of `destino` extends it there. On a ring
// the shorter of the two arcs between the crossings is replaced, the one from the first to the
// second when they are equal, and the ring is closed again. False when either chain has fewer than
// two vertices.
bool fusionaCadena(CadenaPuntos& destino, const CadenaPuntos& origen, const AvisoVertice& aviso);

}  // namespace cad
