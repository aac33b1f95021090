// Hot elements: the pickable points, edges, faces, vectors and azimuths of one entity.
#pragma once

#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "base/geometria/Matriz4.h"
#include "base/geometria/Punto3.h"

namespace cad
{

class Entidad;
class PantallaCAD;
struct cursor_t;

// The view a pick is ranked in: the origin subtracted before projecting, the projection times
// the model-view matrix, and the viewport in pixels.
struct vista_t
{
    Punto3<double> origen;
    Matriz4<double> matriz;
    double ancho = 0.0;
    double alto = 0.0;

    // The display's current view.
    static vista_t de(PantallaCAD& pantalla);
};

// Whether P lies on the segment A-B within `tol`. A segment with extent in x compares the
// parameters of the three axes, so one flat in y or z never matches (a division by zero),
// which decides what the pick and the edge search can find.
bool puntoEnSegmento(const Punto3<double>& a, const Punto3<double>& b, const Punto3<double>& p,
                     double tol);

// Where the line through `origen` along `direccion` meets a polygon, cut into triangles by
// plain ear clipping; false when it misses. `distancia` is measured from `origen`.
bool intersecaCara(const std::vector<Punto3<double>>& poligono, const Punto3<double>& origen,
                   const Vector3D<double>& direccion, Punto3<double>& punto, double& distancia);

// The kind of a hot element. The values are compared numerically and index the per-kind
// counters of numeraPuntos.
enum tipo_punto_e : int32_t
{
    kTipoNinguno = 0,
    kTipoVertice = 1,
    kTipoAuxiliar = 2,  // second class of point (a plane's contour)
    kTipoArista = 3,
    kTipoCara = 4,
    kTipoVector = 5,
    kTipoAzimut = 6
};

// A hot point record, and the result of a pick.
struct elemento_seleccionado_t
{
    Entidad* entidad = nullptr;  // owner, not owned here
    Punto3<double> origen;       // start of a vector or azimuth; 0 for plain points
    Punto3<double> punto;        // the element's position, or the point that was hit
    int32_t tipo = kTipoNinguno;
    int32_t indice = -1;  // running number within its kind; -1 until assigned
};

// What a drag hands to the entity: the element, where it goes, and what the drag keeps.
struct elemento_arrastrado_t
{
    elemento_arrastrado_t() = default;
    explicit elemento_arrastrado_t(const elemento_seleccionado_t& e)
        : entidad(e.entidad), origen(e.origen), punto(e.punto), tipo(e.tipo), indice(e.indice)
    {
    }

    Entidad* entidad = nullptr;
    Punto3<double> origen;
    Punto3<double> punto;
    int32_t tipo = kTipoNinguno;
    int32_t indice = -1;
    Punto3<double> posicion;            // the value handed to the entity
    std::vector<Punto3<double>> extra;  // what the drag remembers (an edge's ends at the grab)
    Matriz4<double> matriz;
};

// Lives on the stack of one command or paint pass: filled once by an entity, then dropped.
// Nothing in it refers to live entity storage.
class PuntosCalientes
{
public:
    PuntosCalientes() = default;

    bool hayPuntos() const { return !puntos.empty(); }
    void nuevoPunto(const Punto3<double>& p) { nuevosPuntosTipo(1, &p, kTipoVertice); }
    void nuevosPuntos(int n, const Punto3<double>* p) { nuevosPuntosTipo(n, p, kTipoVertice); }
    void nuevosPuntosAuxiliares(int n, const Punto3<double>* p)
    {
        nuevosPuntosTipo(n, p, kTipoAuxiliar);
    }
    // Each record: the set's entity, origin 0, index -1.
    void nuevosPuntosTipo(int n, const Punto3<double>* p, int32_t tipo);
    void nuevaArista(const Punto3<double>& a, const Punto3<double>& b)
    {
        aristas.emplace_back(a, b);
    }
    std::pair<Punto3<double>, Punto3<double>> arista(int i) const
    {
        return aristas[static_cast<size_t>(i)];
    }
    void nuevaCara(int n, const Punto3<double>* p, const std::array<float, 3>& normal);
    int numeroCaras() const { return static_cast<int>(caras.size()); }
    void setBase(const Punto3<double>& p) { base = p; }
    void nuevoVector(const Punto3<double>& origen, const Punto3<double>& p);
    void nuevoAzimut(const Punto3<double>& origen, const Punto3<double>& p);
    // Gives each record the running number of its kind, in order.
    void numeraPuntos();
    elemento_seleccionado_t punto(int i) const { return puntos[static_cast<size_t>(i)]; }
    // The record whose point is nearest in world distance; an empty record when none.
    elemento_seleccionado_t masCercano(const Punto3<double>& p) const;
    // The element under the cursor, by kind first: a point in the pixel window, else an edge
    // nearer the ray than any point, else the nearest front face, else a back face.
    elemento_seleccionado_t cercano(const vista_t& vista, const cursor_t& cursor) const;
    // The record nearest the cursor's ray, with no pixel window.
    elemento_seleccionado_t cercanoRayo(const vista_t& vista, const cursor_t& cursor) const;
    // Paints the records of `puntos` in the configured hot colours.
    void dibuja(PantallaCAD& pantalla) const;
    // Paints the hot edges and faces in their configured colours.
    void dibujaAristasYCaras(PantallaCAD& pantalla) const;

    Entidad* entidad = nullptr;
    Punto3<double> base;
    std::vector<elemento_seleccionado_t> puntos;
    std::vector<std::pair<Punto3<double>, Punto3<double>>> aristas;
    std::vector<std::vector<Punto3<double>>> caras;
    std::vector<std::array<float, 3>> normalesCaras;
};

}  // namespace cad
