// Policara: a polygon soup of triangles and quadrilaterals with per-corner normals, texture
// coordinates and materials, as an OBJ file brings it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/geometria/Punto3.h"
#include "base/geometria/Vector2D.h"
#include "base/geometria/Vector3D.h"
#include "entidades/Entidad.h"

namespace cad
{

class Dibujo;
class Modelo3D;
struct informeOBJ_t;

// One corner of one face. Each corner carries its own normal and texture pair, so painting
// needs no indirection beyond `indice`.
struct esquina_t
{
    int32_t indice = 0;      // into `puntos`
    Vector2D<double> uv;     // texture coordinate
    Vector3D<float> normal;  // unit normal at this corner
    uint16_t material = 0;   // material id of the drawing; 0xFFFF for none
};

// File tag "Poly3D1", type name "PoliCara3D", in a u32 block. No transformation: `puntos` are
// drawing coordinates. A face is the index in `esquinas` of its first corner: a triangle
// takes three corners from there, a quadrilateral four.
//
// Body after the common prefix: u32 point count and x, y, z per point; u32 corner count and
// per corner u32 indice, 2 x f64 uv, 3 x f32 normal, u16 material; then `triangulos`,
// `cuadrilateros` and `cambiosMaterial`, each a u32 count and u32 items. The reader returns
// false at the first field that fails, and also for a body that could not be painted: a
// corner naming no point, a face running past `esquinas`, or a `cambiosMaterial` of odd size
// whose pairs exceed the face counts or go backwards. A refused body leaves the geometry empty.
//
// `cambiosMaterial` holds pairs (triangle count, quad count) at which the material changed.
// Empty, the whole soup paints as one object. Filled, each stretch of faces between two
// pairs (the last pair to the end, and the faces before the first pair, if any, as a stretch
// of their own) paints as one textured object, its material that of its first corner.
//
// Painting and snap skip a face whose corners run out of `esquinas` or name a point that
// does not exist, so a soup filled in code with bad indices paints what it can.
class Policara : public Entidad
{
public:
    Policara() = default;

    // --- entity contract ----------------------------------------------------------------
    const char* etiqueta() const override { return kFirmaEntidadPolicara; }
    void escribe(SerializadorEscrituraBase& w) override;
    bool lee(SerializadorLecturaBase& r) override;
    // A new Policara with the common fields (id, layer, colour, line style, state) and no
    // geometry: a copy through the clipboard comes out empty.
    Entidad* clona() const override;
    int tamanoBloque() const override { return 1; }
    // The layer alone ("0" outside a drawing): a polyface is not exported.
    void exportaDXF(ExportaDXF& dxf) const override;
    // Moves every point; the face lists and the paint caches stay valid.
    void traslada(const Vector3D<double>& v) override;
    int numCoordenadas() const override { return static_cast<int>(puntos.size()); }
    // Point i; null outside.
    const Punto3<double>* coordenada(int i) const override;
    // The box of the points.
    Rect3<double> extension() const override;
    // No hot elements: the soup is not edited by grips.
    void puntosCalientesEdicion(PuntosCalientes& p, int a, int b) override;
    void puntosCalientes(PuntosCalientes& p) override;
    void aplicaPuntoCaliente(const elemento_arrastrado_t& e) override;
    // On the corners of every face, triangles first: bit 1 each corner, kind 1; bit 2 the
    // midpoint of each side, the closing side included, kind 2.
    bool getReferenciaEntidades(ReferenciaEntidades& r) const override;
    // See the class comment; the single-material caches are built on the first paint and
    // kept.
    void dibuja(PantallaCAD& p) const override;

    // --- property sheet -----------------------------------------------------------------
    // "Geometría" holds the list "Vértice" of the points (writes ignored); "Varios" the
    // triangle, quadrilateral and material counts, read-only.
    int numeroCategorias() const override { return 3; }
    int numeroPropiedadesCategoria(int categoria) const override;
    bool getPropiedad(int categoria, int indice, Prop& p) const override;
    bool setPropiedad(int categoria, int indice, const Prop& p) override;
    int numeroElementosLista(int categoria, int indice) const override;
    bool getElementoLista(int categoria, int indice, int i, double& x, double& y,
                          double& z) const override;
    // Always false: the soup's points are not edited from the sheet.
    bool setElementoLista(int categoria, int indice, int i, const double* xyz) override;

    // Fills this empty soup from an OBJ file (UTF-8 path) and its MTL libraries, creating the
    // materials it uses in `dibujo`. A file that cannot be opened leaves the soup empty. With
    // `informe`, what was read, dropped and cut is counted there.
    void importaObj(const std::string& ruta, Dibujo& dibujo, informeOBJ_t* informe = nullptr);

    // A mesh of the valid faces, triangles then quadrilaterals, on the soup's points as shared
    // vertices, so that neighbouring faces stay joined along their common sides. A vertex
    // takes the texture pair of the last corner naming it, a face the material of its first
    // corner (none, 0xFFFF, becomes 0). A face with a repeated point is left out, and a face
    // that would be a third one on a side, or would walk a side the way a face on it already
    // walks it, gets vertices of its own: the mesh stays sound whatever the file held.
    void aModelo(Modelo3D& m) const;

    // Whether the face whose first corner is `inicio`, with `lados` corners, lies inside
    // `esquinas` and names existing points only.
    bool caraValida(int32_t inicio, int lados) const;

    std::vector<Punto3<double>> puntos;
    std::vector<esquina_t> esquinas;
    std::vector<int32_t> triangulos;
    std::vector<int32_t> cuadrilateros;
    std::vector<int32_t> cambiosMaterial;
    // Built on the first single-material paint, never invalidated: pairs of point indices,
    // one per side of each face, and per face its corner count and point indices.
    mutable std::vector<int32_t> aristasDibujo;
    mutable std::vector<int32_t> poligonosDibujo;
    // Kept empty; it holds the class's shape.
    std::vector<int32_t> reservado;

private:
    // The single-material object with the caches.
    void dibujaUnMaterial(PantallaCAD& p) const;
    // One textured object per stretch of `cambiosMaterial`.
    void dibujaPorMateriales(PantallaCAD& p) const;
    // Calls f(inicio, lados) for each valid face, triangles then quadrilaterals.
    template <class F>
    void recorreCaras(F&& f) const;
};

}  // namespace cad
