// One snap request: the ray, the mask, and the best candidate the entities have offered.
#pragma once

#include <cstdint>

#include "base/geometria/Matriz4.h"
#include "base/geometria/Plano3D.h"
#include "base/geometria/Punto3.h"
#include "base/geometria/Vector3D.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

class Entidad;

// Bits of the snap mask as the entities test them.
enum mascaraReferenciaEntidades : int32_t
{
    kExtremos = 1,
    kPuntosMedios = 2,
    kReferenciaCuatro = 4,  // accepted and painted; nothing offers it
    kPuntosInsercion = 8,
    kCercano = 16,
    kSinReferencia = 32
};

struct Segmento
{
    Punto3<double> a;
    Punto3<double> b;
};

struct Triangulo
{
    Punto3<double> v[3];
};

// Entities offer candidates; the one nearest to the ray (in world units) wins, earlier
// offers winning ties. A plane hit is stored at distance 0 and so cannot be beaten.
class ReferenciaEntidades
{
public:
    // Reads the display's projection, model view and view origin once.
    ReferenciaEntidades(PantallaCAD* pantalla, const Punto3<double>& posicion,
                        const Vector3D<double>& direccion, int32_t mascara, double tolerancia);

    // True when it took the offer: q projects inside the clip cube and lies nearer to the
    // ray than the best so far (or nothing was taken yet).
    bool ofrecePunto(const Entidad* e, const Punto3<double>& q, int tipo);
    // The point of the segment nearest to the ray, kind 16, ranked by the distance between
    // the two infinite lines.
    bool ofreceSegmento(const Entidad* e, const Segmento& s);
    // The ray's hit on the plane, kind 0 at distance 0: taken whenever it projects inside.
    bool ofrecePlano(const Entidad* e, const Plano3D<double>& plano);
    // A triangle that faces away along the ray offers its three corners, kind 1.
    bool ofreceTriangulo(const Entidad* e, const Triangulo& t);

    bool enCubo(const Punto3<double>& q) const;
    double distanciaRayo(const Punto3<double>& q) const;

    PantallaCAD* pantalla;
    Punto3<double> posicion;
    Vector3D<double> direccion;
    cursor_t cursor;
    int32_t mascara;
    double tolerancia;
    Punto3<double> rayo[2];
    double distanciaMejor = -1.0;
    Punto3<double> puntoMejor;
    Entidad* entidadMejor = nullptr;
    int32_t tipoMejor = 0;
    Matriz4<double> proyeccion;

private:
    bool toma(const Entidad* e, const Punto3<double>& q, double distancia, int tipo);

    Punto3<double> origenVista;
};

}  // namespace cad
