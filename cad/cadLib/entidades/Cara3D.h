// Cara3D: a single flat-drawn face of three or four corners.
#pragma once

#include <cstdint>
#include <string>

#include "base/geometria/Punto3.h"
#include "entidades/Entidad.h"

namespace cad
{

// The corners lie in drawing coordinates; the transformation of the base is carried and
// saved but does not place them. `vertices` holds the corners followed by a repeat of the
// first one at position `numeroVertices`, so a walk over the sides reads corner i + 1
// without wrapping, and the display gets the outline as a closed loop. Every operation that
// writes corner 0 keeps the repeat in step.
//
// Body after EntidadConSuperficie's (prefix, transformation, mapping list), in a u16 block:
// escribeCortoSinSigno the count, then escribePunto3 per corner. The repeat is not stored;
// the reader restores it. A count other than 3 or 4 reads false and changes nothing.
//
// Hot elements: the corners, kind 1, then the sides in corner order, side i from corner i to
// corner i + 1, the last closing the loop. A drag of kind 1 moves corner `indice` to
// `posicion`. A drag of kind 3 expects the side's two ends as they were at the grab in
// `extra[0]` and `extra[1]`, the grabbed point in `punto` and the current point in
// `posicion`; both ends move rigidly by `posicion` - `punto`. A drag of kind 6 turns the
// transformation, as in every transformed entity. Other kinds, indices outside the face and
// side drags without both grab ends are ignored.
//
// Snap: mask bit 1 each corner, kind 1; bit 2 each side's midpoint, the closing side
// included, kind 2.
class Cara3D : public EntidadConSuperficie
{
public:
    // A triangle with its corners at the origin.
    Cara3D() = default;
    // A quadrilateral when n is 4 or more (the first four corners), otherwise a triangle.
    // Corners beyond the n given, or all of them for a null array, stay at the origin.
    Cara3D(int n, const Punto3<double>* esquinas);

    const char* etiqueta() const override { return kFirmaEntidadCara3D; }
    void escribe(SerializadorEscrituraBase& w) override;
    bool lee(SerializadorLecturaBase& r) override;
    Entidad* clona() const override { return new Cara3D(*this); }

    // setCapa, then one 3DFACE of the corners with the entity's colour index (a triangle's
    // record repeats its last corner).
    void exportaDXF(ExportaDXF& dxf) const override;
    // Moves every corner, the repeat too.
    void traslada(const Vector3D<double>& v) override;
    int numCoordenadas() const override { return numeroVertices; }
    // Corner i; null outside the corners (the repeat is no coordinate).
    const Punto3<double>* coordenada(int i) const override;
    void puntosCalientesEdicion(PuntosCalientes& p, int a, int b) override;
    void puntosCalientes(PuntosCalientes& p) override;
    void aplicaPuntoCaliente(const elemento_arrastrado_t& e) override;
    bool getReferenciaEntidades(ReferenciaEntidades& r) const override;
    // dibujaPolilinea of the corners and the repeat, closed, in the entity's colour or the
    // layer's when by layer.
    void dibuja(PantallaCAD& p) const override;

    // Category 1, "Geometría": the list "Vértice", one element per corner; writing element
    // 0 writes the repeat too.
    int numeroCategorias() const override { return 2; }
    int numeroPropiedadesCategoria(int categoria) const override;
    bool getPropiedad(int categoria, int indice, Prop& p) const override;
    bool setPropiedad(int categoria, int indice, const Prop& p) override;
    int numeroElementosLista(int categoria, int indice) const override;
    bool getElementoLista(int categoria, int indice, int i, double& x, double& y,
                          double& z) const override;
    bool setElementoLista(int categoria, int indice, int i, const double* xyz) override;

    int32_t numeroVertices = 3;
    Punto3<double> vertices[5];

private:
    // Whether i names a corner.
    bool esEsquina(int i) const { return i >= 0 && i < numeroVertices; }
    // Corner i takes p; the repeat follows corner 0.
    void ponEsquina(int i, const Punto3<double>& p);
};

}  // namespace cad
