// The editor over a drawing: interactive commands, their waits, undo, picking and snapping,
// the rubber band and the host callbacks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "base/FicheroAtomico.h"
#include "base/Propiedades.h"
#include "base/geometria/Punto3.h"
#include "base/geometria/Vector3D.h"
#include "documento/SeleccionEntidades.h"
#include "editor/LineaComandos.h"
#include "editor/MenuContexto.h"
#include "editor/ModificadorVertice.h"
#include "entidades/SistemaLocal.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

class Capa;
class Comando;
class Dibujo;
class Entidad;
class LineaElastica;
class Material;
class Modelo3D;
class Objeto3D;
class Polilinea;
struct elemento_seleccionado_t;

// An interactive command is an ordinary member function that returns when the user has
// finished it. While it waits it spins the event pump (one step of the thread's
// ColaMensajes per call), and the host goes on delivering typed lines, clicks, cancels,
// repaints and even other commands to this same object from inside that pump.
//
// Each wait opens a scope of its own, so the host sees a kInicio/kFin pair per wait and one
// for the command. A command started from inside the pump displaces the one that waits:
// when it returns, the waiting scope finds `comandoInterrumpido`, reports kCancelado and
// ends as if refused, without printing, so the outer command unwinds.
class EditorDibujo : public Propiedades, public LineaComandos, public MenuContexto
{
public:
    enum actualiza_e
    {
        kControl = 0,
        kPropiedades = 1,
        kCapas = 2,
        kCapaActual = 3,
        kDocumento = 4
    };
    enum seleccion_e
    {
        kVentana = 0,
        kPolilinea = 1,
        kEsfera = 2
    };
    enum enumEstadoComandoInteractivo
    {
        kInicio = 0,
        kFin = 1,
        kCancelado = 2
    };
    enum enumEdicionEntidades
    {
        kBorrar = 0,
        kModificarTemporal = 1,
        kModificarDefinitivo = 2,
        kInsertar = 3,
        kCancelar = 4,
        kIniciaEdicion = 5,
        kTerminaEdicion = 6,
        kIniciaBloque = 7,
        kTerminaBloque = 8
    };
    enum enumInsercionEntidades
    {
        kEntidadBorrada = 0,
        kEntidadInsertada = 1
    };
    // The document's cursor types (Dibujo::setTipoCursor).
    enum tipo_cursor_e
    {
        kCursorIndeterminado = 0,
        kCursorPorDefecto = 1,
        kCursorSeleccionCoordenadas = 2,
        kCursorSeleccionEntidades = 3
    };

    using FuncionActualiza = std::function<void(actualiza_e)>;
    using FuncionSalidaTexto = std::function<void(const char*)>;
    using FuncionVisorPropiedades = std::function<void()>;
    using ReactorComandoInteractivo = std::function<void(enumEstadoComandoInteractivo)>;
    using ReactorEdicionEntidades =
        std::function<bool(int64_t, enumEdicionEntidades, int, double, double, double)>;
    using ReactorInsercionEntidades = std::function<bool(int64_t, enumInsercionEntidades)>;

    // The display may be null; operations that need it say so. Installs the pump: one
    // ejecutaUno() of the calling thread's ColaMensajes.
    EditorDibujo(Dibujo* dibujo, PantallaCAD* pantalla);
    // Clears the update callback first, so the last notice reaches nobody; takes every
    // entity out of the selection, marks the view changed and drops both undo stacks.
    ~EditorDibujo() override;
    EditorDibujo(const EditorDibujo&) = delete;
    EditorDibujo& operator=(const EditorDibujo&) = delete;

    Dibujo* dibujo() const { return dibujo_; }
    PantallaCAD* pantalla() const { return pantalla_; }

    // Store the pointer, nothing else.
    void setActualiza(FuncionActualiza f) { funcionActualiza = std::move(f); }
    void setSalidaTexto(FuncionSalidaTexto f) { funcionSalidaTexto = std::move(f); }
    void setVisorPropiedades(FuncionVisorPropiedades f) { visorPropiedades = std::move(f); }
    void setReactorEdicionEntidades(ReactorEdicionEntidades f)
    {
        reactorEdicionEntidades = std::move(f);
    }
    void setReactorComandoInteractivo(ReactorComandoInteractivo f)
    {
        reactorComandoInteractivo = std::move(f);
    }
    void setReactorInsercionEntidades(ReactorInsercionEntidades f)
    {
        reactorInsercionEntidades = std::move(f);
    }

    // --- frame ---------------------------------------------------------------------------
    // Notifies the host. For kPropiedades and kDocumento the notice goes only when the set
    // of selected or highlighted entities changed since the last one (or `forzar`).
    void actualiza(actualiza_e tipo, bool forzar = false);
    // Reads a document file (UTF-8 path) and activates the local system it names. False
    // when the read failed; the drawing may then be partly replaced. Throws
    // std::logic_error for a path that is not UTF-8.
    bool cargaDocumento(const char* ruta);
    // Writes the state variables and the document; true also when the file didn't open.
    // The file is written whole or not at all: a failure leaves the previous one as it was.
    bool guardaDocumento(const char* ruta);
    // The checked forms that hosts use: the same steps, and `resultado` says what failed.
    // A load that fails leaves the drawing as it was (see Dibujo::leeFichero), and one that
    // succeeds tells how many damaged entities it kept; a save that fails leaves the
    // previous file. Throw std::logic_error for a path that is not UTF-8.
    bool cargaDocumento(const char* ruta, resultadoFichero_t& resultado);
    bool guardaDocumento(const char* ruta, resultadoFichero_t& resultado);

    // printf-style; the text (at most 2047 bytes) becomes the current prompt and goes to
    // the host's text callback and to the display's prompt line.
    void mensaje(const char* formato, ...) __attribute__((format(printf, 2, 3)));
    // A user text by group and number, with its built-in Spanish wording.
    const char* texto(int grupo, int numero, const char* porDefecto) const;
    // Guards of what a caller stores in the drawing: false, after telling the user, for a
    // string longer than the file can hold ("Texto demasiado largo: N bytes (el máximo es
    // 65534)") or a coordinate that is not finite ("Coordenada no válida").
    bool admiteCadena(const std::string& s);
    bool admiteCoordenadas(const double* valores, size_t n);
    // When cancelado is set: resets the input, prints "* Cancelado *", true.
    bool cancelaEntrada();

    // The overlay paint pass: rubber band, drags, snap marker, vertex marks and the cursor
    // glyph on top of the scene. The bool is not consulted.
    void dibuja(PantallaCAD& p, bool entidadesDibujadas);

    bool dentroComandoInteractivo() const { return nivelComando > 0; }
    // Keys reach the editor as text and cancels; this is accepted and ignored.
    void teclaPulsada(int codigo, bool shift, bool control, bool alt);
    // Sets cancelado and drops the drag in progress.
    void cancelaComando() override;
    void deselecciona();

    // --- scopes ----------------------------------------------------------------------------
    void iniciaComandoInteractivo(bool transparente);
    void finComandoInteractivo();

    // --- waits ----------------------------------------------------------------------------
    // Any typed line; false on cancel, interruption or a pump that has gone.
    bool esperaEntrada(const char* prompt, std::string& respuesta);
    bool entradaBool(const char* prompt, bool aceptaVacio, bool* resultado);
    bool entradaInt(const char* prompt, bool aceptaVacio, int* resultado);
    bool entradaDoble(const char* prompt, bool aceptaVacio, double* resultado);
    bool entradaString(const char* prompt, bool aceptaVacio, std::string* resultado);
    // A left click (snapped or on the active plane), typed coordinates, an option of
    // listaOpciones() (when `opcion` is given) or a number (when `valor` is given). Enter
    // alone ends with false and no text.
    bool getPunto(const char* prompt, cursor_t& cursor, int* opcion, double* valor,
                  bool abreAmbito);
    bool getPunto(const char* prompt, cursor_t& cursor, bool abreAmbito = true);
    // A point on the plane through `base` that faces the viewer; the reference plane stays
    // changed afterwards.
    bool getPuntoEnPlano(const char* prompt, const Punto3<double>& base, cursor_t& cursor);
    // Two raw clicks; a and b get pixel (x, y) pairs.
    bool getVentana(const char* prompt1, const char* prompt2, int* a, int* b);
    // Two points, with the snap settings as they are.
    bool getVentana(const char* prompt1, const char* prompt2, Punto3<double>* a, Punto3<double>* b);
    bool getCirculo(const char* prompt1, const char* prompt2, Punto3<double>* centro,
                    double* radio);
    bool getCirculo(const char* prompt1, const char* prompt2, Punto3<double>* centro,
                    Punto3<double>* borde);
    // Adds the entities under a left click to `seleccion`; true when something was hit. An
    // option ends the wait with false and its index in `opcion` (when given).
    bool seleccionaEntidad(const char* prompt, SeleccionEntidades& seleccion,
                           cursor_t* cursor = nullptr, int* opcion = nullptr);
    // As seleccionaEntidad, refusing (without asking again) an entity of another file tag.
    bool seleccionaEntidadTipo(const char* etiqueta, const char* prompt,
                               SeleccionEntidades& seleccion, cursor_t* cursor = nullptr);
    // Highlights an entity, or takes its highlight off, and asks for a repaint.
    void resalta(Entidad* e, bool si);
    // Clicks add and highlight; Enter ends.
    bool seleccionaEntidades(const char* prompt, SeleccionEntidades& seleccion);
    // Window, pixel contour or sphere, then selects what lies inside.
    bool comandoSeleccionaEntidades(const char* prompt1, const char* prompt2, seleccion_e tipo);
    // The display's cursor, in an empty cursor_t.
    cursor_t posicionCursor();
    // The display's next click, its point and ray taken to drawing coordinates; `estado`
    // 1 left, 2 right. False when there is none (or no display).
    bool leeEvento(cursor_t& cursor, int& estado);

    // --- picking and snapping --------------------------------------------------------------
    // What a click means: the snap, else the ray's hit on the active plane. False only when
    // neither gives a point.
    bool compruebaPunto(cursor_t& cursor);
    // Adds the entities in the pick box around the cursor pixel that are not yet marked.
    bool entidadesBajoPixel(const cursor_t& cursor, SeleccionEntidades& seleccion);

    // --- undo -----------------------------------------------------------------------------
    bool puedeDeshacer() const { return !comandosDeshacer.empty(); }
    bool puedeRehacer() const { return !comandosRehacer.empty(); }
    // Nothing happens on an empty stack.
    void deshacer();
    void rehacer();
    // Pushes the step, drops the redo side and performs the step through its rehacer.
    void registraComando(Comando* comando);
    void vaciaComandos();

    // Offers the entity to the insertion reactor, whose false is a veto (the entity then stays
    // with the caller), and inserts it as an undoable step.
    bool nuevaEntidad(Entidad* e);
    // The same, owning the entity: a refused one is destroyed here.
    bool nuevaEntidad(std::unique_ptr<Entidad> e);
    // The undoable deletion; the reactor may veto. No update notice.
    bool borraEntidad(Entidad* e);
    // Takes an entity out of the drawing and destroys it with no undo step. Every step that
    // names it goes too: a step left behind would bring a freed entity back on redo, or name a
    // later entity that reuses its address.
    void destruyeSinDeshacer(Entidad* e);

    // Layer helpers. Each returns false when the layer does not exist; the three that name a
    // layer refuse a name that admiteCadena refuses.
    bool nuevaCapa(Capa* capa, bool hacerActual);
    bool posicionaCapa(Capa* capa);
    bool capaActual(const char* nombre);
    bool muestraCapa(const char* nombre);
    bool colorCapa(const char* nombre, int32_t rgba);
    bool renombraCapa(const char* nombre, const char* nuevoNombre);
    bool borraCapa(const char* nombre);
    bool setColorActualIndice(int indice);
    void setColorActualRGB(int32_t rgb);

    // --- local system ---------------------------------------------------------------------
    void activaSistemaLocal(const SistemaLocal& sistema);
    void quitaSistemaLocal();
    SistemaLocal sistemaLocalActual() const { return sistemaLocalActivo; }
    // From the active local system to drawing coordinates.
    Punto3<double> aDocumento(const Punto3<double>& p) const;
    Vector3D<double> aDocumento(const Vector3D<double>& v) const;
    // The pick point and ray of a display cursor, which come in the active local system.
    void cursorADocumento(cursor_t& cursor) const;

    // --- vertex drags and marks (EditorDibujoArrastre.cpp) -----------------------------------
    // The drag of one hot element: a modifier follows the cursor while "Seleccione nueva
    // coordenada" waits (the paint pass moves the entity); accepted, the entity takes the
    // point; refused or cancelled, it goes back. An edge or a face has no modifier: the wait
    // runs and nothing moves. False, with no wait, when there is nothing to drag (no entity,
    // index -1, an entity not in the drawing, or one on a locked layer, which is said on the
    // text channel); otherwise the wait's result.
    bool editaPunto(const elemento_seleccionado_t& elemento);
    // Marks hot points inicio..fin (inclusive, positions in the entity's hot point list) of
    // an entity of the drawing; only vertices (kind 1) take a mark, and positions past the
    // last point are skipped. The entity gets an entry even when nothing is marked. An
    // entity not in the drawing is ignored.
    void marcaVerticesEntidad(Entidad* e, uint32_t inicio, uint32_t fin);
    // Drops the entity's entry and its marks. The entity is not looked at, so this also
    // clears the marks of one that no longer exists.
    void quitaMarcasVerticesEntidad(Entidad* e);

    // --- creation commands: points, lines, faces, planes (EditorDibujoCreacion.cpp), solids
    // (EditorDibujoSolidos.cpp) ---------------------------------------------------------------
    // Each asks for points until an answer is refused (Enter alone, a cancel, a command that
    // displaces it) and returns how many entities it made; every entity made is one undo step.
    // Points until refused; the count made.
    int comandoPunto();
    // Lines from point to point until refused; the count made.
    int comandoLinea();
    // A strip of triangles, each an Objeto3D of one face on the current material: after the
    // third point every further point adds a triangle on the last two.
    int comandoCara3D3();
    // One four-sided Objeto3D face on the current material, the parallelogram of three points.
    int comandoCara3D4();
    // Points until refused, then one Plano fitted to them with them as its contour; the count
    // of points, 0 (nothing made) with fewer than three.
    int comandoCara();
    // Planes point by point: the plane appears at the second point and grows with each one; a
    // plane left with fewer than three points is destroyed with no undo step. The count made.
    int comandoPlano();
    // A plane, then a polyline of three or more points that becomes its contour; the polyline
    // is destroyed with no undo step. False when refused or nothing changed.
    bool comandoContornoPlano();
    // A plane, then a point or a typed distance: a copy moved along the normal. Repeats.
    int comandoParalelaPlano();
    // A plane and a line: a new plane through the line's midpoint, square to the first and
    // holding the line, with the first one's layer, colour and line style. Repeats.
    int comandoPerpendicularPlano();
    // Boxes by corner, opposite corner and height, in the active local system. Points only.
    int comandoCubo();
    // The same as Prisma models on the current material; a number answers the height.
    int comandoModeloCubo();
    // Cylinders by centre, radius and height on the current material; a number answers the
    // radius (along X) or the height (along Z).
    int comandoModeloCilindro();
    // Spheres by centre and radius on the current material; a number answers the radius.
    int comandoModeloEsfera();
    // Picks until refused (a right click or a cancel; Enter is no answer to a pick), then each
    // picked plane of three or more points, cylinder, model box, sphere or polyface (its
    // faces on shared vertices, see Policara::aModelo) becomes an Objeto3D with its layer,
    // colour and line style and the current material. The source is destroyed
    // with no undo step, and only after the host accepted the new object. The count made.
    int comandoConvierteObjeto3D();
    // The material new faces and models take: 0 (none) on a new drawing and after a load.
    // An id that is neither 0 nor a material of the drawing is ignored.
    int16_t materialActual() const;
    void setMaterialActual(int16_t id);

    // --- polylines and their merges (EditorDibujoPolilineas.cpp) ---------------------------
    // Polylines from point to point with the options "Borrar" and "Cerrar"; with `unaSola`
    // one polyline and back. `resultado` (when given) gets the last polyline made. Enter ends
    // a polyline and asks for the next; a cancel keeps what was drawn and ends the command.
    // Each polyline is one undo step. The count made.
    int comandoPolilinea(bool unaSola, bool cerrada, Polilinea** resultado);
    // Set by comandoPolilinea when its last polyline ended in a cancel or was displaced by
    // another command (the polyline is kept all the same), so a caller can unwind.
    bool polilineaAbandonada = false;
    int comandoPolilinea(bool unaSola = false, bool cerrada = false);
    // Merges the open `origen` into `destino` (a polygon merge when `destino` is flagged
    // closed, else a chain merge), announcing each vertex change to the edit reactor; a null
    // argument is picked by the user first. Not undoable, except the deletion of `origen`
    // when `borraOrigen`. False, with both highlights cleared, for the same polyline twice, a
    // closed or self-crossing `origen`, a `destino` of fewer than two vertices, or a refusal.
    bool comandoFusionPolilineas(Polilinea* destino, Polilinea* origen, bool borraOrigen);
    // Draws one polyline (as comandoPolilinea) and merges it into `destino` (picked first when
    // null). False when no polyline was drawn or the merge refused it.
    bool comandoFusionPolilineasNueva(Polilinea* destino, bool borraOrigen);

    // --- editing commands (EditorDibujoEdicion.cpp) ------------------------------------------
    // Of these only the deletions and comandoMoverXYZ leave undo steps; the others change the
    // entities in place, and the edit reactor is where a host keeps their history.
    //
    // Deletes the selected and highlighted entities, or asks for some when there are none; one
    // undo step each. The active local system is dropped first when its entity goes. Ends an
    // outer wait silently. The count deleted.
    int comandoBorrar();
    // An entity, a base and a destination, moved in place with no undo step, until refused.
    // The count moved.
    int comandoMover();
    // Moves the selected and highlighted entities by the vector, one undo step each, with no
    // wait; with none selected it says so and returns 0.
    int comandoMoverXYZ(double dx, double dy, double dz);
    // As comandoMover, once: an unhighlighted copy moved by the vector is inserted as an
    // undoable new entity and the source stays where it was. 1 when a copy went in, else 0.
    int comandoCopiar();
    // Two points with a rubber band from the first to the cursor; `a` and `b` get them in
    // drawing coordinates. False when either wait is refused (`a` may then be set).
    bool comandoDosPuntosLinea(const char* prompt1, const char* prompt2, Punto3<double>* a,
                               Punto3<double>* b);
    // Drags the entity's vertices one after another. A null entity asks for one and edits each
    // entity under the pick (false on a refused pick or when one of them ends false). An
    // `indice` within the entity's coordinates starts with that vertex and no pick. After each
    // accepted drag `repite` asks for another vertex; a refused vertex pick ends with true, a
    // refused or cancelled drag with `repite`. A click off the entity's hot points moves on to
    // the entity under it. Not undoable: the moves go to the edit reactor, and the whole edit
    // is bracketed by kIniciaEdicion / kTerminaEdicion when `anunciaReactores`.
    bool comandoEditar(Entidad* entidad, int indice, bool repite, bool anunciaReactores);
    // Gives the selected and highlighted entities (or one picked when none is) the material of
    // that name, or the current material when `nombre` is null. Materials are named by their
    // texture's file name, else their id in decimal; an unknown name changes nothing. Not
    // undoable. The count given.
    int comandoAsignaMaterial(const std::string* nombre);

    // --- polyline vertex editors (EditorDibujoVertices.cpp) --------------------------------
    // None of these is undoable: each vertex inserted or deleted is offered to the edit
    // reactor first (kInsertar, kBorrar), whose false skips that one vertex, and drags
    // announce their moves as comandoEditar's do. A null polyline is picked first ("Seleccione
    // una polilinea:"). Every command stops at the first refusal and keeps what was done.
    //
    // Deletes the polyline's vertices one click at a time until refused. True when at least
    // one vertex went.
    bool comandoBorrarVertsPol(Polilinea* polilinea);
    // Two vertex picks give a range; its vertices are deleted inside one kIniciaBloque /
    // kTerminaBloque, offered from the highest index down so each announced index is still
    // valid when the host applies it. True when at least one vertex went.
    bool comandoBorrarRangoVertsPol(Polilinea* polilinea);
    // As the range, for every vertex whose pixel lies inside a window of two clicks.
    bool comandoBorrarVentanaVertsPol(Polilinea* polilinea);
    // Inserts a vertex and drags it once. With `indice` -1 the vertex goes where the user
    // clicks, into the side nearest the click (past an end of an open polyline when the
    // click lies beyond it); otherwise it starts halfway along the side that ends at vertex
    // `indice`. A refused or cancelled drag takes the vertex out again. True when the
    // inserted vertex stays.
    //
    //   before:  0 ----------- 1        after:  0 ----- 1 ----- 2
    //                                                 (new)
    bool comandoInsertaVertsPol(Polilinea* polilinea, int indice);
    // As comandoInsertaVertsPol for a profile: the side is found by x and z of the click, the
    // vertex always lands between two existing ones and takes the side's y there. False on a
    // polyline of fewer than two vertices.
    bool comandoInsertaVertsPolPerfil(Polilinea* polilinea);
    // As comandoEditar, but the vertex nearest the pointer is marked as the user moves it, and
    // a click drags that one. An `indice` within the vertices drags it first. Enter ends with
    // true; a cancel or a command that displaces this one ends with false.
    bool comandoEditarVertsPolPerfil(Polilinea* polilinea, int indice);
    // Edits one vertex at a time through a menu of options (open or close, previous, next,
    // move, delete, insert before or after), starting at the vertex nearest the pointer.
    // The null and no-argument forms pick a line first ("Seleccione una linea:"). True when
    // the polyline was changed; a cancel ends with false.
    bool comandoEditPol();
    bool comandoEditPol(Polilinea* polilinea);

    // --- mesh commands (EditorDibujoMalla.cpp) ----------------------------------------------
    // Each asks for an Objeto3D with a mesh ("Seleccione una entidad:"; other entities are
    // ignored and the pick is asked again), highlights it, then waits for one element of its
    // mesh, asking again while the click finds nothing of the kind asked. The element's index
    // is the pick's position in the entity's hot elements, passed to the mesh as it stands:
    // once a face or an edge has died the positions no longer match the records, and an edit
    // may then name a dead record (which the mesh ignores) or another element. Each edit of the
    // mesh is one undo step (editaModelo); none talks to the edit reactor. The entity is
    // selected and highlighted while the command runs and unmarked at its end. False when a
    // wait was refused, unless said otherwise.
    //
    // Deletes the picked face ("Seleccione cara caliente:").
    bool comandoBorraCaraModelo();
    // Reverses every live face of the mesh; no element is asked for. Cached normals stay.
    bool comandoInvierteNormales();
    // Splits the picked edge ("Seleccione una arista:") into `partes` equal pieces; below 2
    // the mesh is left alone, and the command still ends true.
    bool comandoParteArista(int partes);
    // Two hot points ("Seleccione punto caliente:", twice; the first one again is asked
    // again) joined by a new edge across their common face. Returns what the mesh answered:
    // false when they are joined already or share no face.
    bool comandoUneVertices();
    // The picked face becomes a ring of quads around a face of half its size.
    bool comandoParteCara();
    // As comandoParteCara, the inner face left out: a hole.
    bool comandoHueco();
    // Cuts a face: an edge gives the first point ("Seleccione una arista:"), then clicks inside
    // faces add points ("Seleccione puntos dentro de una cara o una arista:") until one lands
    // on an edge or a hot point, which ends the cut. Refusing before that cuts nothing. Returns
    // what the mesh answered.
    bool comandoRecortaCara();
    // Walks the hole behind a boundary edge ("Seleccione una arista frontera:"; an edge with
    // two faces is asked again) and creates nothing: the mesh stays as it was. True when an
    // edge was taken.
    bool comandoRellenaHueco();
    // A hot point, edge or face ("Seleccione punto caliente, arista o cara:") pulled to a new
    // position ("Seleccione nueva coordenada"). A point is dragged; an edge with one face grows
    // a quad towards the point, given on the plane through the grab facing the viewer (that
    // plane stays the reference plane); a face becomes a prism as high as the distance from
    // the grab to the point, always outwards along the face's normal. `cierra` changes
    // nothing here. True when the position was given.
    bool comandoExtrusion(bool cierra);
    // A polyline ("Seleccione una polilinea:"), a base and a destination: a new Objeto3D, the
    // strip swept by the vector, on the current material, inserted as an undoable entity.
    // Repeats until refused; true when at least one was made.
    bool comandoExtrusionEntidad();
    // Deleting a vertex or an edge of a mesh is not offered: both return false at once.
    bool comandoBorraVerticeModelo() { return false; }
    bool comandoBorraAristaModelo() { return false; }

    // Runs one edit of the object's mesh as an undo step: the model before the edit is kept,
    // and undo and redo exchange the two models whole, so an undone edit gives back the very
    // records (and the file bytes) it found. An edit that returns false (or throws) gets the
    // model it found back, since a refused cut may already have split edges; no step is kept
    // then. Returns what `edicion` returned.
    bool editaModelo(Objeto3D& objeto, const std::function<bool(Modelo3D&)>& edicion);

    // --- whole models (EditorDibujoModelos.cpp) ----------------------------------------
    // A mesh object ("Seleccione una entidad:"), a closed polyline ("Seleccione una polilinea
    // cerrada:"; anything else is asked again) and a face ("Seleccione cara caliente:"): the
    // polyline, projected on the face's plane, becomes a hole in it joined to its boundary
    // by a bridge (see huecoPolilinea). Undoable as the other mesh edits; it lives with them
    // in EditorDibujoMalla.cpp. True when the hole was made.
    bool comandoHuecoPolilinea();
    // Contour lines of a mesh object or of a polyface ("Seleccione una entidad:"), every
    // "Incremento de cota de las isolineas" along the reference plane's normal, else the
    // vertical: each chain becomes a Polilinea on the current layer, the master lines (every
    // fifth level) first, each an undoable insertion. An increment not above 0, or so small
    // that the entity's diagonal holds more than 100,000 levels, is refused and asked again.
    // Returns how many were made; -1 when a wait was refused.
    int comandoIsolineas();
    // Two mesh objects ("Selecciona el modelo 1", "Selecciona el modelo 2") become one: a new
    // Objeto3D holding both meshes, their boundaries pushed apart, inserted; the two sources
    // are deleted. Each step undoable. True when the union was made.
    bool uneModelos();

    // --- planes (EditorDibujoPlanos.cpp) -------------------------------------------------
    // Two "Pn1" planes picked in one selection ("Selecciona el primer plano", "Selecciona el
    // segundo plano"), each extended towards the other. True when both were given.
    bool comandoUnePlanos();
    // The first plane ("Selecciona el plano a extender") extended up to the second
    // ("Selecciona el plano destino"), when both have at least three coordinates.
    bool comandoExtiendePlanos();

    // --- measuring (EditorDibujoMedidas.cpp) ------------------------------------------------
    // A measurement stays on the drawing: the measured sides become a Polilinea and each value
    // a Texto beside it (style "Estandar", font "Arial", 3 decimals, centred, turned 45
    // degrees), each an undoable insertion; the values also go to the text callback, in the
    // catalogue's wording when that converts exactly the figures given, else the built-in one.
    // Inserting texts makes "Estandar" the current style, adding it only when it is missing.
    //
    // Two points: a closed polyline through both and the elbow below the higher one, and the
    // 3D distance (beside A-B), the plan distance (beside the level side) and the height
    // difference (beside the plumb side) as texts: four undo steps. The 3D distance; 0 when a
    // wait was refused (nothing is inserted then).
    double comandoDistancia();
    // The same two waits with the rubber band, nothing inserted: the points and distances go
    // to the pointers given (any may be null); with `inserta` the result is printed. False,
    // with the pointers untouched, when a wait was refused.
    bool comandoDistancia(Punto3<double>* a, Punto3<double>* b, double* d3, double* d2,
                          bool inserta);
    // As the form above without printing, in a scope opened with `transparente`; the
    // entities selected or highlighted at the start lose their highlight at the end.
    bool comandoDistanciaConSnap(Punto3<double>* a, Punto3<double>* b, double* d3, double* d2,
                                 bool transparente);
    // One open polyline drawn (comandoPolilinea): each side's 3D length as a text; the total.
    // 0, with nothing printed, when no polyline was drawn.
    double comandoDistanciaPolilinea();
    // One closed polyline drawn: each side's length, and the sum of x[i] y[i+1] - y[i] x[i+1]
    // at the vertices' centroid. That figure is twice the plan area, signed by the turning
    // (clockwise is negative), and is what the command reports and returns.
    double comandoArea();
    // One closed polyline of three distinct vertices: its angles in gons, one text at each
    // vertex. Any other polyline (which stays drawn) is refused with "La polilínea ha de
    // tener tres lados".
    void comandoAngulo();
    // A text at the centre of an entity of the drawing, 10 below the top of its box, at that
    // height and laid out as the measure texts; one undo step. A null text, an entity not in
    // the drawing or with an empty box does nothing; a text too long for the file or a height
    // that is not positive and finite is told on the text channel and not stored.
    void textoEnEntidad(Entidad* entidad, double altura, const std::string* texto);

    // --- view, reference plane and local system (EditorDibujoVistas.cpp) --------------------
    // Every display call here is skipped when there is no display; the rest still runs.
    //
    // Pan and rotation: a transparent scope in the display's interaction mode (1 pan, 0 free
    // rotation) while the pump spins, until a cancel ("* Cancelado *"), `terminado`, a typed
    // line or Enter, or a command started meanwhile ends it. The scope's close gives the
    // interaction mode back. Always true.
    bool comandoEncuadre();
    bool comandoRotacion();
    // Two raw clicks ("Seleccione coordenada inicial de la ventana:", "Seleccione coordenada
    // final de la ventana:", or the prompts given) in a transparent scope: the display zooms
    // to that pixel rectangle, lesser corner first, and the view is copied into the
    // document's current view. False when refused.
    bool comandoZoomVentana();
    bool comandoZoomVentana(const std::string& mensaje1, const std::string& mensaje2);
    // Each zoom copies the display's view into the document's current view and sends
    // kControl. The pixel window may be given from either corner (a negative size); the box
    // form takes each pair in either order.
    void zoomEscala(double escala);
    void zoomVentana(int x, int y, int ancho, int alto);
    void zoomVentana(double x0, double x1, double y0, double y1, double z0, double z1);
    // The whole drawing (nothing when it is empty), or one entity's box, fills the view. An
    // entity not in the drawing does nothing. True.
    bool zoomExtension();
    bool zoomExtension(Entidad* entidad);
    // "Planta" (a plan plane at a typed height), "Vista" (facing the viewer through a point
    // snapped with every mode), or an entity: a plane, a line and a third point (or
    // "Vertical"), a polyline or polygon's fitted plane, a face of a model. Prints "Plano de
    // referencia establecido." and returns true when the reference plane changed; an entity
    // that gives no plane prints why and changes nothing.
    bool comandoPlanoReferencia();
    // The plane facing the viewer through its present origin, or when there is none through
    // the point of the view axis level with the centre of the drawing's box. Nothing without
    // a display.
    void setPlanoReferenciaVista();
    // A point, snapped with every mode (the drawing's snap settings come back afterwards),
    // becomes the display's rotation centre. False when refused.
    bool comandoCentroRotacion();
    // An origin (typed, or clicked anywhere but on a plane) and two axis points, or a click on
    // a plane, then an origin and the X axis (kept in the plane; Y is the normal crossed with
    // X). The axes are made unit and square. A name also puts a SistemaLocal entity in the
    // drawing as an undoable step. Activates the system (an unnamed one lasts until the next
    // paint, which keeps only systems the drawing holds); false, changing nothing, when a wait
    // is refused, the points give no frame, the name is too long or the host refuses the
    // insertion.
    bool comandoSistemaLocal(const std::string* nombre);
    // In a transparent scope: the display's camera at a picked camera shot (its station,
    // looking where the glyph looks, with the vertical lens angle in degrees) or 360 photo
    // (its centre, keeping the direction). True when the camera moved.
    bool comandoPosicionCamara();
    // Three planes: an undoable Punto at their common point. False, inserting nothing, when a
    // pick is refused or the planes share no single point (two parallel, or a common line).
    bool comandoInterseccionPlanos();

    // --- the property front and the clipboard (EditorDibujoPropiedades.cpp,
    // EditorDibujoPortapapeles.cpp) ---------------------------------------------------------
    // One clipboard for the process, so that entities travel between drawings. copiar takes
    // copies of the selected and highlighted entities with the materials they use, by
    // value; cortar also deletes the originals, one undo step each; pegar inserts fresh
    // copies (undoable, offered to the insertion reactor) and can be repeated. Pasting adds
    // a material the drawing lacks and reuses an equal one; a layer the drawing lacks
    // becomes the current layer. An empty clipboard pastes nothing; copying with nothing
    // selected keeps what the clipboard held.
    void cortar();
    void copiar();
    void pegar();
    // Asks for an entity and calls the property viewer with it highlighted for the call.
    // Whether one was picked.
    bool comandoPropiedades();

    // The editor's own sheet, shown when nothing is selected: category "General" with row 0
    // "Entidad" (read-only, "Sin selección") and row 1 "Capa", an Enumerado of the layers
    // holding the current one; writing it changes the current layer.
    int numeroCategorias() const override;
    std::string nombreCategoria(int categoria) const override;
    int numeroPropiedadesCategoria(int categoria) const override;
    bool getPropiedad(int categoria, int indice, Prop& p) const override;
    bool setPropiedad(int categoria, int indice, const Prop& p) override;
    int numeroValoresEnumerados(int categoria, int indice) const override;
    bool valorEnumerado(int categoria, int indice, int i, std::string& texto) const override;
    bool getEnumerado(int categoria, int indice, int& i) const override;
    bool setEnumerado(int categoria, int indice, int i) override;
    int numeroElementosLista(int categoria, int indice) const override;
    bool getElementoLista(int categoria, int indice, int i, double& x, double& y,
                          double& z) const override;
    bool setElementoLista(int categoria, int indice, int i, const double* xyz) override;

    // The sheet of an entity by pointer. A pointer that is not in the drawing (null, deleted)
    // gets the editor's own sheet for reading and changes nothing. The layer row ("Capa",
    // category 0 index 1) goes through the layer list: its choices are the drawing's layers,
    // and a write is an undoable change to an existing layer (an unknown name changes
    // nothing). A material row's text becomes the material's name: its texture's file name,
    // else its id. A successful write marks the drawing changed and sends kControl; a write
    // to a coordinate list also marks the edited vertex on the display.
    int numeroCategorias(Entidad* e) const;
    std::string nombreCategoria(Entidad* e, int categoria) const;
    int numeroPropiedadesCategoria(Entidad* e, int categoria) const;
    bool getPropiedad(Entidad* e, int categoria, int indice, Prop& p) const;
    bool setPropiedad(Entidad* e, int categoria, int indice, const Prop& p);
    int numeroValoresEnumerados(Entidad* e, int categoria, int indice) const;
    bool valorEnumerado(Entidad* e, int categoria, int indice, int i, std::string& texto) const;
    bool getEnumerado(Entidad* e, int categoria, int indice, int& i) const;
    bool setEnumerado(Entidad* e, int categoria, int indice, int i);
    int numeroElementosLista(Entidad* e, int categoria, int indice) const;
    bool getElementoLista(Entidad* e, int categoria, int indice, int i, double& x, double& y,
                          double& z) const;
    // `xyz` points to three doubles; null changes nothing.
    bool setElementoLista(Entidad* e, int categoria, int indice, int i, const double* xyz);

    // The same by host handle; an unknown handle is no entity. getPropiedad also gives the
    // material's idExterno and shows the layer row as an Enumerado. setPropiedad first
    // stores the Prop's idExterno into its material; on the layer row it changes the
    // entity's layer (undoable) and, with or without an entity, the current layer too; a
    // write that was taken marks the drawing changed; kControl goes in any case.
    int numeroCategorias(int64_t handle) const;
    std::string nombreCategoria(int64_t handle, int categoria) const;
    int numeroPropiedadesCategoria(int64_t handle, int categoria) const;
    bool getPropiedad(int64_t handle, int categoria, int indice, Prop& p) const;
    bool setPropiedad(int64_t handle, int categoria, int indice, const Prop& p);
    int numeroValoresEnumerados(int64_t handle, int categoria, int indice) const;
    bool valorEnumerado(int64_t handle, int categoria, int indice, int i, std::string& texto) const;
    bool getEnumerado(int64_t handle, int categoria, int indice, int& i) const;
    // On the layer row, the same as setPropiedad with that layer's name.
    bool setEnumerado(int64_t handle, int categoria, int indice, int i);
    int numeroElementosLista(int64_t handle, int categoria, int indice) const;
    bool getElementoLista(int64_t handle, int categoria, int indice, int i, double& x, double& y,
                          double& z) const;
    bool setElementoLista(int64_t handle, int categoria, int indice, int i, const double* xyz);

    // By the row's name, compared without regard to ASCII case; the first match in sheet
    // order wins. False for an unknown handle or name. Reads convert the row's text (atof,
    // atoi). Writes format the value first, so a double keeps three significant digits; a
    // write to "Color" takes the value as a packed colour, one to "Capa" is the undoable
    // layer change.
    bool getPropiedad(int64_t handle, const std::string& nombre, double& valor) const;
    bool getPropiedad(int64_t handle, const std::string& nombre, int& valor) const;
    bool getPropiedad(int64_t handle, const std::string& nombre, std::string& valor) const;
    bool setPropiedad(int64_t handle, const std::string& nombre, double valor);
    bool setPropiedad(int64_t handle, const std::string& nombre, int valor);
    bool setPropiedad(int64_t handle, const std::string& nombre, const std::string& valor);

    float getFactorVertical() const { return factorVertical; }
    void setFactorVertical(float f) { factorVertical = f; }

    Dibujo* dibujo_;
    PantallaCAD* pantalla_;
    LineaElastica* lineaElastica = nullptr;
    ListaModificadores modificadores;  // the drag in progress
    // Persistent vertex marks per entity. An entry may outlive its entity (deleted, or the
    // drawing reloaded): it is then never painted, and only quitaMarcasVerticesEntidad,
    // which does not look at the entity, removes it.
    std::map<Entidad*, ListaModificadores> marcasVertices;
    float factorVertical = 1.0F;
    std::vector<Comando*> comandosDeshacer;
    std::vector<Comando*> comandosRehacer;
    std::function<void()> procesoEventos;
    FuncionActualiza funcionActualiza;
    FuncionSalidaTexto funcionSalidaTexto;
    ReactorComandoInteractivo reactorComandoInteractivo;
    ReactorEdicionEntidades reactorEdicionEntidades;
    ReactorInsercionEntidades reactorInsercionEntidades;
    FuncionVisorPropiedades visorPropiedades;
    bool incluyeOcultas = false;
    SistemaLocal sistemaLocalActivo;
    bool haySistemaLocal = false;
    std::string ultimoMensaje;
    int32_t nivelComando = 0;
    bool comandoInterrumpido = false;
    std::vector<bool> pilaTransparentes;
    Punto3<double> marcaReferencia;
    int32_t tipoMarcaReferencia = 0;  // 0: no marker
    std::recursive_mutex seccionCritica;

private:
    // Steps 4 and 5 of a load: the file's local system, the prompt cleared, the notices.
    void trasCargar();
    // The loop of the typed waits: `toma` reads a non-empty line and gives null, or the text
    // of its refusal, after which the prompt is asked again.
    bool entradaTecleada(const char* prompt, bool aceptaVacio,
                         const std::function<const char*(const std::string&)>& toma);
    // After a pump step, the endings every wait tests first: cancel (with its text),
    // `terminado`, interruption (before `terminado` when `interrupcionAntes`).
    bool finEspera(bool interrupcionAntes);
    // The pan and rotation: a transparent scope in that interaction mode while the pump
    // spins, until a cancel, Enter, a typed line or a command that displaces it.
    void esperaTransparente(int modo);
    // Throws away the display's pending click, as each wait does when it starts.
    void descartaEvento();
    // Typed coordinates, when the line held them, into the cursor: drawing coordinates in
    // `referencia`, never snapped.
    bool tomaCoordenadas(cursor_t& cursor);
    // The ending every wait shares when it finds the flag: clears it, reports kCancelado
    // and kControl. True when the wait was interrupted.
    bool atiendeInterrupcion();
    // Prints a pending error, then the prompt again.
    void repiteMensaje(const char* error);
    // Fills the cursor's plane points from its ray.
    void proyecta(cursor_t& cursor);
    // The reference plane through `base` facing the viewer, and the temporary plane on it.
    void planoHaciaVista(const Punto3<double>& base);
    // The contour capture of comandoSeleccionaEntidades, into pixels or a sphere.
    bool capturaContorno(const char* prompt1, const char* prompt2, seleccion_e tipo,
                         std::vector<Punto3<double>>& contorno);
    bool seleccionaContorno(const std::vector<Punto3<double>>& contorno);
    // The snap settings, saved and forced for a wait, then given back.
    struct ajustesReferencia_t
    {
        bool global = false;
        int32_t mascara = 0;
    };
    ajustesReferencia_t fuerzaReferencia(int32_t mascara);
    void restauraReferencia(const ajustesReferencia_t& a);
};

// The name a material goes by: its texture's file name, else its id in decimal.
std::string nombreMaterial(const Material& m);

// True when no two non-adjacent sides of the closed polygon cross (in x and y).
bool poligonoSimple(const std::vector<Punto3<double>>& puntos);

}  // namespace cad
