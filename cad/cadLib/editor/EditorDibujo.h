// The editor over a drawing: interactive commands, their waits, undo, picking and snapping,
// the rubber band and the host callbacks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
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
#include "entidades/SistemaLocal.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

class Capa;
class Comando;
class Dibujo;
class Entidad;
class LineaElastica;
class ModificadorVertice;
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
    bool getVentana(const char* prompt1, const char* prompt2, Punto3<double>* a,
                    Punto3<double>* b);
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
    // The undoable deletion; the reactor may veto. No update notice.
    bool borraEntidad(Entidad* e);

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
    // coordenada" waits; accepted, the entity keeps the point; refused, it goes back. False
    // when there was nothing to drag or the wait was refused.
    bool editaPunto(const elemento_seleccionado_t& elemento);
    // Persistent marks on vertices inicio..fin (inclusive) of an entity of the drawing.
    void marcaVerticesEntidad(Entidad* e, uint32_t inicio, uint32_t fin);
    void quitaMarcasVerticesEntidad(Entidad* e);
    // --- end of vertex drags and marks ---

    // --- creation commands: points, lines, faces, planes, solids (EditorDibujoCreacion.cpp) --
    // Points until refused; the count made.
    int comandoPunto();
    // Lines from point to point until refused; the count made.
    int comandoLinea();
    int comandoCara3D3();
    int comandoCara3D4();
    int comandoCara();
    int comandoPlano();
    bool comandoContornoPlano();
    int comandoParalelaPlano();
    int comandoPerpendicularPlano();
    int comandoCubo();
    int comandoModeloCubo();
    int comandoModeloCilindro();
    int comandoModeloEsfera();
    int comandoConvierteObjeto3D();
    // The material new faces and models take: 0 (none) on a new drawing and after a load.
    int16_t materialActual() const;
    void setMaterialActual(int16_t id);
    // --- end of creation commands ---

    // --- polylines and their merges (EditorDibujoPolilineas.cpp) ---------------------------
    // Polylines from point to point with the options "Borrar" and "Cerrar"; with `unaSola`
    // one polyline and back. `resultado` (when given) gets the last polyline made. The count
    // made.
    int comandoPolilinea(bool unaSola, bool cerrada, Polilinea** resultado);
    int comandoPolilinea(bool unaSola = false, bool cerrada = false);
    bool comandoFusionPolilineas(Polilinea* destino, Polilinea* origen, bool borraOrigen);
    bool comandoFusionPolilineasNueva(Polilinea* destino, bool borraOrigen);
    // --- end of polylines ---

    // --- the property front and the clipboard (EditorDibujoPropiedades.cpp,
    // EditorDibujoPortapapeles.cpp) ---------------------------------------------------------
    void cortar();
    void copiar();
    void pegar();
    bool comandoPropiedades();
    // --- end of the property front and the clipboard ---

    float getFactorVertical() const { return factorVertical; }
    void setFactorVertical(float f) { factorVertical = f; }

    Dibujo* dibujo_;
    PantallaCAD* pantalla_;
    LineaElastica* lineaElastica = nullptr;
    std::vector<ModificadorVertice*> modificadores;
    std::map<Entidad*, std::vector<ModificadorVertice*>*> marcasVertices;
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

// True when no two non-adjacent sides of the closed polygon cross (in x and y).
bool poligonoSimple(const std::vector<Punto3<double>>& puntos);

}  // namespace cad
