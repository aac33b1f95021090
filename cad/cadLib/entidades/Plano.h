// Plano: a bounded plane, an unbounded Plano3D with a contour of points lying on it.
#pragma once

#include <vector>

#include "base/geometria/Linea3D.h"
#include "base/geometria/Plano3D.h"
#include "base/geometria/Polilinea3D.h"
#include "base/geometria/Punto3.h"
#include "entidades/AjustePlano.h"
#include "entidades/Entidad.h"

namespace cad
{

class Modelo3D;

// File tag "Pn1", type name "Plano3D". Body after the common prefix: a, b, c, d (f64), the
// reference point, the u32 contour count and the contour points. The contour's `cerrada` flag
// is not stored.
//
// With three or more contour points, every operation that changes the contour reprojects it
// on the plane. Constructors and traslada do not: they take the points as given. A plane whose
// normal is zero (all coefficients zero, as after Plano(2, puntos)) reprojects nothing, since
// projecting on it would send every point to the origin; a kind-2 drag then takes the point
// as dragged.
class Plano : public EntidadLineal, public Plano3D<double>
{
public:
    // An empty plane for the file reader: all-zero coefficients, reference at the origin.
    Plano() : Plano(0, nullptr) {}
    // The plane as given; the n points become the contour unprojected. `referencia` is the
    // first point, `invalido` with none.
    Plano(const Plano3D<double>& plano, int n, const Punto3<double>* puntos);
    // All-zero plane unless more than two points come, which are then fitted by ajustaPlano
    // (and not projected). `referencia` is the first point, the origin with none.
    Plano(int n, const Punto3<double>* puntos);

    // --- operations of its own ----------------------------------------------------------
    // Appends p; with more than two points refits the plane; then reprojects the contour.
    void nuevoVertice(const Punto3<double>& p);
    // Takes p's points (unless p is this contour) and its flag, and reprojects them; the
    // plane stays.
    void setContorno(const Polilinea3D<double>& p);
    // Moves the contour by distancia along the unit normal and subtracts distancia from d.
    // The new d is exact only when (a, b, c) has unit length; a zero normal leaves the points
    // and still changes d.
    void paralela(double distancia);
    // Appends the contour to `m` as new vertices and one face over them, in order.
    void aModelo(Modelo3D& m) const;
    // Clamps the contour points lying past the line where this plane meets `destino` onto
    // that line, on the side where `destino` lies, then drops points that became collinear.
    // False, with the contour untouched, when either contour is empty, the planes are
    // parallel, or no side can be told.
    bool extiende(const Plano& destino);
    // When both have contour points: this toward `otro`, then `otro` toward this. False when
    // one of them has none.
    bool une(Plano& otro);
    // The part of the line common to both unbounded planes that both contours cover, each
    // contour measured by its extreme projections on the line. Null outputs are skipped.
    // False, outputs untouched, when a contour is empty, the planes are parallel or the two
    // covered stretches do not overlap.
    bool interseccion(const Plano& otro, Punto3<double>* inicio, Punto3<double>* fin) const;
    // A new heap plane through the line's midpoint, holding the line and this plane's normal:
    // the contour is turned a quarter about the line into it and fitted by Plano(n, puntos).
    // The caller owns it and copies any attributes. Null when the line is a point, lies along
    // the normal, or this plane has no normal.
    Plano* perpendicular(const Linea3D<double>& linea) const;

    // --- entity contract ----------------------------------------------------------------
    const char* etiqueta() const override { return kFirmaEntidadPlano; }
    void escribe(SerializadorEscrituraBase& w) override;
    // Stops with false at the first failed read. The contour count is checked against the
    // bytes left in the source before anything is reserved.
    bool lee(SerializadorLecturaBase& r) override;
    Entidad* clona() const override { return new Plano(*this); }
    // The layer (its name, "0" when unbound), then POLYLINE flags 8, one VERTEX per contour
    // point and SEQEND; the closing side is not repeated.
    void exportaDXF(ExportaDXF& dxf) const override;
    // Moves the contour only: the coefficients and `referencia` stay behind.
    void traslada(const Vector3D<double>& v) override;
    int numCoordenadas() const override { return contorno.numeroVertices(); }
    // Null outside the contour.
    const Punto3<double>* coordenada(int i) const override;
    void puntosCalientesEdicion(PuntosCalientes& p, int, int) override { puntosCalientes(p); }
    // The contour points as kind 2, then one edge per side, the closing one included.
    void puntosCalientes(PuntosCalientes& p) override;
    // Kind 2: the point goes to the new position projected on the plane. Kind 3: both ends of
    // the side move rigidly by the drag, unprojected. Out-of-range indices do nothing.
    void aplicaPuntoCaliente(const elemento_arrastrado_t& e) override;
    // Bit 1 the contour points, bit 16 the plane itself, bit 2 the midpoints of the sides
    // except the closing one.
    bool getReferenciaEntidades(ReferenciaEntidades& r) const override;
    // With three or more points: the dashed outline, then one half-transparent object.
    void dibuja(PantallaCAD& p) const override;

    // --- property sheet: category 1 "Geometría" holds the list "Vértice" -----------------
    int numeroCategorias() const override { return 2; }
    int numeroPropiedadesCategoria(int categoria) const override;
    bool getPropiedad(int categoria, int indice, Prop& p) const override;
    int numeroElementosLista(int categoria, int indice) const override;
    bool getElementoLista(int categoria, int indice, int i, double& x, double& y,
                          double& z) const override;
    // Replaces a contour point; with more than two points refits and reprojects the contour.
    bool setElementoLista(int categoria, int indice, int i, const double* xyz) override;

    // Triangles of the contour for painting: three corner indices each, in contour order.
    // A fan for a convex contour, ear clipping otherwise; needs three or more points.
    std::vector<int> triangula() const;

    Polilinea3D<double> contorno;
    Punto3<double> referencia;

private:
    // Long enough for proyecta: a shorter (a, b, c) would send every point to the origin.
    bool tieneNormal() const;
    // Projects every contour point on the plane; nothing when the normal is zero.
    void reproyecta();
    // Fits the plane to the contour and reprojects it, when there are more than two points.
    void reajusta();
};

}  // namespace cad
