// Modelo3D: the winged-edge polygon mesh behind solids, surfaces and photographs.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "base/geometria/Punto3.h"
#include "base/geometria/Rect3.h"
#include "base/geometria/Vector2D.h"
#include "base/geometria/Vector3D.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

class Entidad;
class SerializadorEscrituraBase;
class SerializadorLecturaBase;

// One vertex. `arista` is one edge that touches it, -1 when none does (a fresh or a dead
// vertex).
struct vertice_t
{
    Punto3<double> punto;
    Vector2D<float> uv;
    int32_t arista = -1;

    bool esValido() const { return arista != -1; }
};

// One edge: oriented vertice[0] -> vertice[1] when walked in cara[0], the other way in cara[1].
// A dead edge has -1 in every index field.
struct Arista
{
    int32_t vertice[2] = {-1, -1};
    int32_t siguienteCara0 = -1;
    int32_t anteriorCara0 = -1;
    int32_t siguienteCara1 = -1;
    int32_t anteriorCara1 = -1;
    int32_t cara[2] = {-1, -1};
    int32_t viva = 0;  // sharp: a face with such an edge is painted flat

    // Neither end is -1 (an unsigned comparison, as the file stores them).
    bool esValida() const
    {
        return static_cast<uint32_t>(vertice[0]) < 0xFFFFFFFFU &&
               static_cast<uint32_t>(vertice[1]) < 0xFFFFFFFFU;
    }
    bool tieneDosCaras() const { return cara[0] != -1 && cara[1] != -1; }
    bool esFrontera() const { return cara[0] == -1 || cara[1] == -1; }
    bool toca(int32_t v) const { return vertice[0] == v || vertice[1] == v; }
    // The end of this edge that `otra` does not have, else vertice[1].
    int32_t otroVertice(const Arista& otra) const
    {
        return otra.toca(vertice[0]) ? vertice[1] : vertice[0];
    }
    // The edge after this one around `c`: side 0 first, as every walk takes it; -1 when the
    // edge names `c` on neither side.
    int32_t siguienteEn(int32_t c) const
    {
        return cara[0] == c ? siguienteCara0 : (cara[1] == c ? siguienteCara1 : -1);
    }
    int32_t anteriorEn(int32_t c) const
    {
        return cara[0] == c ? anteriorCara0 : (cara[1] == c ? anteriorCara1 : -1);
    }
};

// One face. `arista` -1 marks a deleted face; a zero normal is one not computed yet.
struct cara_t
{
    int32_t arista = -1;
    Vector3D<float> normal;
    uint16_t material = 0;
};

static_assert(sizeof(vertice_t) == 40 && sizeof(Arista) == 36 && sizeof(cara_t) == 20,
              "the mesh records are the memory of a survey model: keep them packed");

class Aristas;

// An edge handle: the index and the table; -1 and null past either end.
struct handle_arista_t
{
    int32_t indice = -1;
    Aristas* aristas = nullptr;
};

// The edge table and its two notification hooks, plain functions of an index that do nothing
// outside an edit.
class Aristas
{
public:
    using aviso_t = void (*)(int32_t);

    Aristas() = default;
    // A copy takes the records; its hooks are the idle ones.
    Aristas(const Aristas& otra) : lista(otra.lista) {}
    Aristas(Aristas&& otra) noexcept : lista(std::move(otra.lista)) {}
    Aristas& operator=(const Aristas& otra)
    {
        lista = otra.lista;
        return *this;
    }
    Aristas& operator=(Aristas&& otra) noexcept
    {
        lista = std::move(otra.lista);
        return *this;
    }

    std::vector<Arista>::iterator begin() { return lista.begin(); }
    std::vector<Arista>::iterator end() { return lista.end(); }
    std::vector<Arista>::const_iterator begin() const { return lista.begin(); }
    std::vector<Arista>::const_iterator end() const { return lista.end(); }
    Arista& operator[](int32_t i) { return lista[static_cast<size_t>(i)]; }
    const Arista& operator[](int32_t i) const { return lista[static_cast<size_t>(i)]; }
    int32_t size() const { return static_cast<int32_t>(lista.size()); }
    bool empty() const { return lista.empty(); }
    bool enRango(int32_t i) const { return i >= 0 && i < size(); }

    // Appends a record and returns its index.
    int32_t nueva(const Arista& a);
    // Records whose two ends are valid, an end counting as invalid when it is -1 or -2.
    int32_t aristasValidas() const;
    // Appends the edges around `vertice` reached from `inicial` through the wings, in the
    // order of a depth-first stack; edges that don't touch the vertex end a branch.
    void incidentes(std::vector<int32_t>& out, int32_t vertice, int32_t inicial) const;
    // The edge between v1 and v2 found around v1 from a1, else around v2 from a2 when a1 is
    // -1; -1 when there is none.
    int32_t busca(int32_t v1, int32_t v2, int32_t a1, int32_t a2) const;

    // Splits edge `arista` at the existing vertex `nuevo`: the edge keeps its index and its end
    // vertice[0] (p), a new edge takes nuevo-q, and on each side the neighbour at q is relinked
    // to it. An edge with no face is left as it is. Invalidates pointers and references into
    // the table (it may grow); the alNuevaArista hook sees the new edge.
    //
    //      before                 after
    //   p ---- a ---> q        p -- a --> nuevo -- N --> q
    //   (faces on either side keep their index and gain one corner)
    void parte(int32_t nuevo, int32_t arista);
    // Appends the edges of the chain s0..sk (k >= 1) across face `cara`, whose edges in walk
    // order are `aristasCara`; both ends lie on the face's cycle. The new records carry `cara`
    // on both sides until reasignaCara relabels one loop; the face's edges at s0 and sk are
    // relinked to the chain. False, and nothing changed, when the ends are not found on the
    // face. Calls no hook: `arista` of the chain's vertices is left as it was. Invalidates
    // pointers into the table.
    //
    //      before                 after (both loops still named `cara`)
    //   +------s0------+        +------s0------+
    //   |              |        |       |      |
    //   |              |        |       x      |   side 0 of the chain: loop s0->sk
    //   |              |        |       |      |   side 1: loop sk->s0
    //   +------sk------+        +------sk------+
    bool parteCara(const std::vector<int32_t>& cadena,
                   const std::vector<handle_arista_t>& aristasCara, int32_t cara);
    // Walks from `arista` around face `caraVieja` and names `caraNueva` on the side it walks,
    // until the walk comes back. Stops, having written what it reached, where the cycle breaks.
    void reasignaCara(int32_t arista, int32_t caraVieja, int32_t caraNueva);
    // The first record with `cara` on a side, or -1 (also for a negative `cara`).
    int32_t aristaDeCara(int32_t cara) const;

    std::vector<Arista> lista;
    aviso_t alNuevoVertice = &sinAviso;
    aviso_t alNuevaArista = &sinAviso;

    static void sinAviso(int32_t) {}

private:
    // The search of incidentes, stopping at the first edge that `para` accepts.
    template <class Para>
    int32_t recorreIncidentes(int32_t vertice, int32_t inicial, std::vector<int32_t>* out,
                              Para para) const;
};

// Walks an edge table by position.
class TIteradorAristas
{
public:
    explicit TIteradorAristas(Aristas& a, int32_t posicion = 0) : aristas_(a), pos_(posicion) {}
    virtual ~TIteradorAristas() = default;

    // The current position, then one step forward.
    virtual handle_arista_t siguiente();
    // One step back, then that position.
    virtual handle_arista_t anterior();
    // The current position, without moving.
    virtual handle_arista_t actual();

private:
    handle_arista_t en(int32_t i);

    Aristas& aristas_;
    int32_t pos_;
};

// A full turn less 1e-5: the angle sum at which ear clipping takes a corner to lie inside.
inline constexpr double kVueltaOreja = 6.283175307179587;

// Is `w` in the triangle p, q, r? A point equal to a corner is not; otherwise the three angles
// it sees the sides under must add up to `vuelta` at least.
bool enTriangulo(const Punto3<double>& w, const Punto3<double>& p, const Punto3<double>& q,
                 const Punto3<double>& r, double vuelta);

// The representations a model paints in, as the display takes them.
using representacion_modelos = PantallaCAD::representacion;

class Modelo3D
{
public:
    Modelo3D() = default;
    // Copies the five lists; the rest starts afresh.
    Modelo3D(const Modelo3D& otro);
    Modelo3D& operator=(const Modelo3D& otro);
    virtual ~Modelo3D();

    // Box of every vertex record, dead ones included; an empty model gives (0,0,0)-(-1,-1,-1).
    virtual Rect3<double> caja() const;
    // Mean of every vertex record; NaN for an empty model.
    Punto3<double> centroide() const;
    void limpia();
    // Appends the records of `otro` (OperacionesModelo.cpp): edge ends, wings and faces are
    // shifted past this model's records, vertices are copied as they are. Two records keep
    // what they had, as the union always did: a vertex's `arista` still names an edge of the
    // first part of the table until an edit touches that vertex, and a deleted face of `otro`
    // (edge -1) comes back naming the last edge of this model. A dead edge stays dead.
    void agrega(const Modelo3D& otro);

    int32_t nuevoVertice(const Punto3<double>& p);
    int32_t nuevoVertice(const Punto3<double>& p, const Vector2D<float>& uv);
    void nuevosVertices(int n, const Punto3<double>* puntos);
    // Makes room for so many more records, so that a big build grows its lists once.
    void reserva(size_t vertices, size_t aristas, size_t caras);
    // A face on existing vertices, in the order given; returns its index, or -1 when no face
    // was made (no corners).
    int32_t nuevaCara(int n, const int32_t* indices, bool viva, uint16_t material);
    // Appends the n corners as new vertices (uv 0,0 when `uvs` is null), then the face.
    int32_t nuevaCara(int n, const Punto3<double>* puntos, const Vector2D<float>* uvs, bool viva,
                      uint16_t material);

    const vertice_t& getVertice(int32_t v) const { return vertices_[static_cast<size_t>(v)]; }
    void setPunto(int32_t v, const Punto3<double>& p)
    {
        vertices_[static_cast<size_t>(v)].punto = p;
    }
    // The face's vertex cycle, starting at its first given corner; empty for a deleted face.
    void getVerticesCara(int32_t cara, std::vector<int32_t>& out) const;
    void getCoordenadasCara(int32_t cara, std::vector<Punto3<double>>& out) const;
    void getAristasCara(int32_t cara, std::vector<int32_t>& out) const;
    void getHandlesCara(int32_t cara, std::vector<handle_arista_t>& out);
    void getPunterosCara(int32_t cara, std::vector<Arista*>& out);
    // Distinct materials of every face record, in order of first appearance, after what `out`
    // already holds.
    void getMaterialesCaras(std::vector<uint16_t>& out) const;
    void setMaterialCara(int32_t cara, uint16_t material)
    {
        caras_[static_cast<size_t>(cara)].material = material;
    }
    uint16_t getMaterialCara(int32_t cara) const
    {
        return caras_[static_cast<size_t>(cara)].material;
    }
    // Old id -> new id; ids the map lacks stay.
    void remapeaMateriales(const std::map<uint16_t, uint16_t>& mapa);
    void setCoordenadasUV(int32_t v, const Vector2D<float>& uv)
    {
        vertices_[static_cast<size_t>(v)].uv = uv;
    }
    void getCoordenadasUV(std::vector<Vector2D<float>>& out) const;
    void getPuntos(std::vector<Punto3<double>>& out) const;
    void getExtremosAristas(std::vector<uint32_t>& out) const;

    // The cached unit normal, computed and kept on first request; a degenerate face keeps
    // answering zero and is computed again each time.
    Vector3D<float> normalCara(int32_t cara);
    void recalculaNormales();
    // One unit normal per vertex record: the sum of its faces' normals; 0,0,1 where none.
    void normalesVertices(std::vector<Vector3D<float>>& out);
    Punto3<double> centroCara(int32_t cara) const;
    // Vertex index triples by ear clipping, choosing the shortest diagonal.
    void triangulaCara(int32_t cara, std::vector<int32_t>& out) const;
    // The corners of a face, in the order nuevaCara was given them; none for a dead face.
    void verticesDeCara(int32_t cara, std::vector<int32_t>& out) const
    {
        verticesCara(cara, out, static_cast<size_t>(aristas_.size()));
    }
    // Texture coordinates by projection: the plane of the mean face normal through the centre
    // of the box, two axes in it, and each vertex's place along them scaled to 0..1. False,
    // and nothing changed, for a model with no face or no extent across that plane.
    bool proyectaUV();
    // The first three corners of the cycle; -1 for those a face lacks.
    void primerosVertices(int32_t cara, int32_t& a, int32_t& b, int32_t& c) const;

    // ---------------------------------------------------------------------------------------
    // Topological edits (EdicionMalla.cpp). Records are appended, never removed: a deleted
    // face, edge or vertex keeps its record with -1 in its links, so indices held during an
    // edit stay usable. Indices out of range, or naming dead records, leave the model as it is.

    // Deletes one face. Its edges lose that side; an edge left with no face dies (both ends
    // -1) and a vertex left with no live edge dies (`arista` -1). Neighbours are untouched.
    //
    //      before                 after
    //   a ---- b ---- c        a    b ---- c      a-b, d-a, d-e die (face f was their only
    //   |  f   |  g   |   ->        |  g   |      one), so do a and d; b-e keeps g, b and e
    //   d ---- e ---- h        d    e ---- h      stay alive. Pointers into records stay.
    void borraCara(int32_t cara);
    // A new vertex at `punto` splitting `arista` (see Aristas::parte). Returns its index; the
    // vertex is appended even when the edge can't be split (no face, bad index), bare.
    // Invalidates pointers and references into the vertex and edge tables (both may grow);
    // indices stay.
    int32_t insertaVertice(const Punto3<double>& punto, int32_t arista);
    // Splits the edge into n equal parts (nothing below 2). The edge keeps its index as the
    // piece at its vertice[0]; the n-1 new vertices are appended nearest-to-q first.
    //
    //      before                 after (n = 3)
    //   p ---------- q         p -- arista -- v2 -- v1 -- q
    // Invalidates pointers into the vertex and edge tables; indices stay.
    void parteArista(int32_t arista, int n);
    // A new edge between two vertices of a common face, splitting it in two: the lower-index
    // face is kept for the loop on the chain's side 1, a copy (same normal and material) is
    // appended for the other. False, and nothing changed, when an edge already joins them or
    // they share no face. Does not touch `arista` of the two vertices.
    //
    //      before                 after
    //   v1 ------ b            v1 ------ b
    //   |    f    |            | \   f   |
    //   |         |            |   \     |
    //   d ------ v2            d  g  \ v2
    // Invalidates pointers into the edge and face tables; the kept face's cached normal
    // stays, as its plane does.
    bool uneVertices(int32_t v1, int32_t v2);
    // As uneVertices along a chain of vertices whose ends lie on a common face (the first
    // face, in index order, of both ends). Interior vertices may be bare. False when the ends
    // share no face or don't lie on its cycle.
    // Invalidates pointers into the edge and face tables.
    bool uneCadena(const std::vector<int32_t>& cadena);
    // Sorted distinct faces named by the edges that touch v.
    void carasDeVertice(int32_t v, std::vector<int32_t>& out) const;
    // Cuts a face along points: the first and last must lie on a vertex (exactly) or an edge
    // (within 0.001) of it; the points between become new bare vertices of the chain. Returns
    // what uneCadena returned; the vertices stay appended when it fails.
    //
    //      before                 after
    //   +----------+           +----x-----+
    //   |          |           |     \    |
    //   |          |   ->      |      x   |     x: new vertices, the ends splitting edges
    //   |          |           |       \  |
    //   +----------+           +--------x-+
    // Invalidates pointers into all three tables; indices stay.
    bool recortaCara(const std::vector<Punto3<double>>& polilinea);
    // First vertex record equal to the point, or -1.
    int32_t buscaVertice(const Punto3<double>& punto) const;
    // First live edge on which the point lies within 0.001, or -1.
    int32_t buscaArista(const Punto3<double>& punto) const;
    // A new quad a, a+vector, b+vector, b on a boundary edge a-b; nothing on an edge with two
    // faces (or none alive).
    //
    //   a' ---- b'
    //   |  new  |
    //   a ----- b   <- edge with one face below
    // Invalidates pointers into all three tables; indices stay.
    void extruyeArista(int32_t arista, const Vector3D<double>& vector);
    // The same, by the vector from the edge's midpoint to `punto`.
    void extruyeAristaHasta(int32_t arista, const Punto3<double>& punto);
    // A prism on a face: a top copy moved along the face's normal by `distancia`, one quad per
    // side; the face itself is deleted (its record stays) and the new faces take material 0.
    //
    //      before                 after
    //                           b --- b+1      top: b..b+n-1
    //   L0 ---- L1              |      |       sides: (L[j], b+j, b+i, L[i])
    //                           L0 --- L1
    // Invalidates pointers into all three tables; indices stay, the old face's as a deleted
    // record.
    void extruyeCara(int32_t cara, float distancia);
    // An extruded strip: the polyline's points and the same moved by `vector`, one quad per
    // segment, and one more joining the ends when `cerrada`.
    Modelo3D(const std::vector<Punto3<double>>& polilinea, bool cerrada,
             const Vector3D<double>& vector);
    // Replaces a face by a ring of quads around a copy shrunk by half about its centre;
    // the inner copy is a face when `cerrada`, else a hole.
    //
    //   +--------+          +--------+
    //   |        |          | +----+ |
    //   |        |   ->     | |    | |    inner face when cerrada, hole otherwise
    //   |        |          | +----+ |
    //   +--------+          +--------+
    // Invalidates pointers into all three tables; indices stay, the old face's as a deleted
    // record.
    void parteCara(int32_t cara, bool cerrada);
    // Reverses the wings of one face: next and previous swap on side 0; on side 1 the swap is
    // anteriorCara0 with siguienteCara1, which bends a neighbour's cycle where one shares the
    // edge. An edge the walk reaches that names the face on neither side (a face revived by
    // agrega) is left alone: it is some other face's edge. Cached normals are kept.
    // Rewrites links only: no pointer is invalidated, but the face's cached normal now faces
    // the wrong way until recalculaNormales.
    void invierteCara(int32_t cara);
    // invierteCara of every live face in ascending order.
    void invierteNormales();

    // Installs the edit hooks and makes this the current model; terminaEdicion undoes both.
    void iniciaEdicion();
    void terminaEdicion();
    // The model an edit is running on, or null.
    static Modelo3D* actual();

    // The body as a compact copy: private vertices per face, one face per edge.
    void escribe(SerializadorEscrituraBase& s) const;
    // False when a count can't be read or the records don't form a sound mesh.
    bool lee(SerializadorLecturaBase& s);

    void dibuja(PantallaCAD& pantalla, int modo, Entidad* entidad);

    std::vector<vertice_t>& vertices() { return vertices_; }
    const std::vector<vertice_t>& vertices() const { return vertices_; }
    Aristas& aristas() { return aristas_; }
    const Aristas& aristas() const { return aristas_; }
    std::vector<cara_t>& caras() { return caras_; }
    const std::vector<cara_t>& caras() const { return caras_; }

    std::vector<uint32_t> coloresVertices;
    std::vector<uint32_t> coloresCaras;
    int32_t modificado = 0;

private:
    // Calls `f(arista)` for each edge of the face's cycle. The walk ends where the cycle
    // closes, and also where a record breaks it, after at most as many steps as there are
    // edges: no walk of a damaged model can run forever.
    template <class F>
    void recorreCara(int32_t cara, F&& f) const;
    // The vertex cycle of a face into `out`, stopping after `maximo` corners.
    void verticesCara(int32_t cara, std::vector<int32_t>& out, size_t maximo) const;
    Vector3D<float> calculaNormal(int32_t cara) const;
    // Quads (L[j], b+j, b+i, L[i]) from a cycle to its copy numbered from b, and the copy's
    // face: the two halves of an extrusion and of an inset.
    void anillo(const std::vector<int32_t>& ciclo, int32_t b);
    void tapa(int32_t b, int32_t n);
    // Whether the records read from a file form a mesh every walk can trust.
    bool estructuraSana() const;
    // The edit hook: the new edge becomes the `arista` of both its ends in the current model.
    static void avisoNuevaArista(int32_t arista);

    double reservado_[6] = {0, 0, 0, 0, 0, 0};
    Modelo3D* contextoGuardado_ = nullptr;
    std::vector<vertice_t> vertices_;
    Aristas aristas_;
    std::vector<cara_t> caras_;

public:
    int32_t transformable = 1;

private:
    // Kept for the file's shape of the class; nothing fills it.
    std::unique_ptr<std::vector<int32_t>> cacheAdyacencia_;
    // Nested edits of one model (a face built inside a larger edit) keep the hooks until the
    // outermost one ends.
    int32_t profundidadEdicion_ = 0;
};

}  // namespace cad
