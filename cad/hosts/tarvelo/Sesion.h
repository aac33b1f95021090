// The drawing session of the command-line host: a command line over the kernel's editor, fed
// from a terminal or from a script.
#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Fendrix/Fendrix.h"
#include "PantallaReferencia.h"

namespace tarvelo
{

// One drawing, its editor and a display. The session's own display has a fixed camera whose
// pixel (x, y) shows drawing point (x, y, 0): 800 by 600 pixels seen from above, one pixel
// per drawing unit, whatever drawing is open, until a view order moves it (vistainicial puts
// it back). A host with a display of its own (the viewer)
// gives it instead and keeps moving its camera; clicks then name that display's pixels.
//
// Input comes one line per step of the thread's message queue. Read from a stream, the
// session installs the queue's external step, which reads a line and posts its handling as
// a message (ejecuta). A host with an event loop of its own calls entraLinea instead and
// sets the external step to one blocking step of its loop. With no command running a line
// names an order. While a command of the editor waits, the kernel pumps the same queue from
// inside the command, so the next line answers its prompt; a line "/nombre" runs an order
// from inside the wait (an interactive one displaces the command that waits), "esc"
// cancels and "clic X Y" clicks a pixel; "clic X Y derecho" clicks with the right button,
// which ends a prompt for entities, where Enter means nothing.
//
// Not thread-safe: everything runs on the thread that calls ejecuta or entraLinea.
class Sesion
{
public:
    struct opciones_t
    {
        // Each line read is written after the input marker, so that the output reads as a
        // transcript; otherwise the marker is written before reading, as a terminal prompt.
        bool eco = false;
        // A failed order (unknown name, bad arguments, a file that can't be read or
        // written) ends the session, as a script must not go on from a wrong state.
        bool detieneAlFallar = false;
    };

    // Lines read from `entrada`, over the session's own display with its fixed camera.
    Sesion(std::istream& entrada, std::ostream& salida, opciones_t opciones);
    // Lines given through entraLinea, over the host's display, whose camera the session
    // leaves alone.
    Sesion(cad::PantallaReferencia& pantalla, std::ostream& salida, opciones_t opciones);
    ~Sesion();
    Sesion(const Sesion&) = delete;
    Sesion& operator=(const Sesion&) = delete;

    // Reads the drawing the session starts with, which becomes the file `guarda` writes by
    // default. False, with the reason written, when it can't be read; the drawing then
    // stays empty.
    bool abreInicial(const std::string& fichero);

    // An empty drawing in place of the open one, with a fresh editor.
    void nuevo();
    // Reads `fichero` in place of the open drawing, which becomes the file `guarda` writes.
    // False, with the reason in `mensaje`, when it can't be read: the drawing stays as it
    // was, its undo history does not. `danadas` counts the entities of a damaged file kept
    // unread, `mensaje` then saying so.
    bool abre(const std::string& fichero, std::string& mensaje, int64_t& danadas);

    // Runs until `sal` or the end of the input; at the end of the input a command that
    // still waits is cancelled first. Returns 0, or 1 when an order failed under
    // detieneAlFallar. Installs the queue's external step for the run and removes it after.
    int ejecuta();
    // Runs the lines of `lineas` as a script, as ejecuta runs its input, on the drawing as it
    // stands; it can be called again with more lines. Returns ejecuta's code for this run.
    // The drawing is kept whatever it holds: nothing is said of unsaved changes, and `sal`
    // ends the script at once.
    int ejecutaGuion(std::istream& lineas);

    // A line typed by the user, handled as ejecuta handles a line read: echoed after the
    // marker under `eco`, then posted to the thread's queue. With no order running nothing
    // pumps the queue, so the line runs here, and an order it starts returns only when done.
    void entraLinea(const std::string& linea);
    // An order given as its words (a path with blanks stays one argument), run at once: as
    // "/nombre" when a command waits.
    void ejecutaOrden(const std::vector<std::string>& palabras);
    // While the session ends: cancels the command that waits, one per call, as a message.
    // True when nothing runs any more.
    bool pasoAlTerminar();
    // Starts the way out, as `sal` repeated does.
    void termina() { terminando = true; }
    bool terminada() const { return terminando; }
    // An order is running (and, when it waits, pumping the queue).
    bool ocupada() const { return profundidad > 0; }
    // The exit code ejecuta would give.
    int codigo() const { return fallada && opciones.detieneAlFallar ? 1 : 0; }
    // The "[Opcion/Opcion]>" or ">" that the next line answers.
    std::string marcador();
    // The drawing file `guarda` writes by default; empty for a new drawing.
    const std::string& fichero() const { return ficheroActual; }
    Fendrix::WrapDibujoCAD& fachada() { return dibujo; }
    Fendrix::WrapPantallaCAD& dispositivo() { return envoltorio; }
    // Called after another drawing replaced the open one (abre, nuevo), for a host that
    // places its own camera.
    std::function<void()> alCambiarDibujo;

private:
    struct orden_t
    {
        std::string nombre;
        std::string argumentos;  // as the help shows them
        std::string ayuda;
        size_t minimo = 0;  // argument counts
        size_t maximo = 0;
        // Refused while a command waits: it would replace the drawing under that command.
        bool soloSinOrden = false;
        // Runs the order; false when it failed, after writing why.
        std::function<bool(const std::vector<std::string>&)> ejecuta;
    };

    Sesion(std::unique_ptr<cad::PantallaReferencia> propia, cad::PantallaReferencia* ajena,
           std::ostream& salida, opciones_t opciones);

    // Pumps the thread's queue, reading from `entrada`, until the run ends.
    void recorre();
    // The queue's external step: reads one line and posts it.
    void paso();
    // The next line, trimmed; false at the end of the input. Comments (echoed) and empty
    // lines with no command waiting are skipped here.
    bool leeLinea(std::string& linea);
    // Counts and trims a line and echoes it; false for a line that asks nothing (a
    // comment, or Enter with no command waiting).
    bool admiteLinea(std::string& linea);
    void atiende(const std::string& linea);
    void atiendeEnEspera(const std::string& linea);
    // Runs an order line; `desdeEspera` when it came as "/nombre" inside a wait.
    void ejecutaOrden(const std::string& texto, bool desdeEspera);
    void ejecutaPalabras(const std::vector<std::string>& palabras, bool desdeEspera);
    // Parses "clic X Y [derecho]" into the pixel and the display's button; false, after
    // writing why, for anything else.
    bool leeClic(const std::vector<std::string>& palabras, int& x, int& y, int& boton);
    // A whole decimal integer, or false; for clicks and for the orders' arguments alike.
    static bool entero(const std::string& texto, long& valor);
    // Marks the session failed; under detieneAlFallar it also starts the way out.
    void falla();

    // Sends the drawing to the display, both passes, when the drawing asks for it, so that
    // the click about to be delivered picks and snaps what is there now. Only clicks need
    // the display's scene: a repaint per input line made typing N points cost N^2.
    void repinta();
    // Places the fixed camera and keeps it as the drawing's view; with the host's display,
    // tells the host instead.
    void fijaCamara();
    // A fresh editor, with an empty undo history, over the display.
    void reiniciaEditor();
    // Reads `fichero` into the session's drawing; false, with the reason, when it can't.
    bool abreDibujo(const std::string& fichero);

    // The entities as "Linea (0,0,0)-(10,0,0)", in list order, with their handles.
    std::vector<std::pair<int64_t, std::string>> describeEntidades();
    // Writes what an undo or redo changed, comparing the lists before and after.
    void cuentaCambios(const char* que, const std::vector<std::pair<int64_t, std::string>>& antes);

    // The orders, in SesionOrdenes.cpp. Those of the kernel's commands print what the
    // command gives back: a count, or whether it ended well.
    void creaOrdenes();
    // The editing, vertex and mesh orders (SesionEdicion.cpp), called by creaOrdenes.
    void creaOrdenesEdicion();
    // Writes `si` or `no` for a command that answers whether it ended well, and succeeds.
    bool informaSiNo(bool hecho, const char* si, const char* no);
    // An order for a kernel command that asks for everything itself: no arguments, its count
    // reported by informa.
    orden_t ordenCuenta(const char* nombre, const char* ayuda, std::function<long()> ejecuta,
                        const char* singular, const char* plural);
    // The measuring, view, plane, local-system and survey orders (SesionVistas.cpp).
    void creaOrdenesVistas();
    // Writes where the display looks and its scale, and succeeds.
    bool informaVista();
    bool ordenZoomEscala(const std::vector<std::string>& argumentos);
    bool ordenPlanoReferencia();
    bool ordenSistemaLocal(const std::vector<std::string>& argumentos);
    // A DXF plan or an OBJ model added to the open drawing, with the reader's report.
    bool ordenImporta(const std::vector<std::string>& argumentos);
    bool ordenPuntoControl(const std::vector<std::string>& argumentos);
    bool ordenTomaCamara(const std::vector<std::string>& argumentos);
    // The arguments from `desde` on as numbers into `valores`; false, after saying which one
    // is not a number, for the first that is not.
    bool numeros(const char* orden, const std::vector<std::string>& argumentos, size_t desde,
                 double* valores);
    // A finite decimal number, or false; from_chars, so that no locale reads "1.5" as 1.
    static bool real(const std::string& texto, double& valor);
    bool ordenMueveXYZ(const std::vector<std::string>& argumentos);
    bool ordenParteArista(const std::vector<std::string>& argumentos);
    bool ordenAsignaMaterial(const std::vector<std::string>& argumentos);
    // Appends a group of orders under the title `ayuda` shows above them.
    void agregaGrupo(const char* titulo, std::vector<orden_t> grupo);
    // Writes "N <singular|plural>" and succeeds: a command that made nothing is no failure.
    bool informa(long n, const char* singular, const char* plural);
    bool ordenPolilinea(const std::vector<std::string>& argumentos);
    // The two merges; `nueva` draws the source polyline instead of picking it.
    bool ordenFusiona(const std::vector<std::string>& argumentos, bool nueva);
    // Copy, cut and paste of the selection through the kernel's clipboard.
    bool ordenPortapapeles(const std::string& cual);
    bool ordenMaterial(const std::vector<std::string>& argumentos);
    bool ordenMateriales();
    bool ordenSelecciona();
    bool ordenDeshacer(bool rehacer);
    bool ordenGuarda(const std::vector<std::string>& argumentos);
    bool ordenAbre(const std::vector<std::string>& argumentos);
    bool ordenDXF(const std::vector<std::string>& argumentos);
    bool ordenReferencia(const std::vector<std::string>& argumentos);
    bool ordenLista();
    bool ordenAyuda();
    bool ordenSal();
    // A click with no command running: selects the entity under the pixel.
    bool clicSinOrden(int x, int y);

    std::istream* entrada = nullptr;  // null when the host gives the lines
    std::ostream& salida;
    opciones_t opciones;

    // The display outlives the drawing's editor, which refers to it. `propia` is the
    // session's own, made when the host gives none.
    std::unique_ptr<cad::PantallaReferencia> propia;
    cad::PantallaReferencia& pantalla;
    const bool camaraFija;
    Fendrix::WrapPantallaCAD envoltorio;
    Fendrix::WrapDibujoCAD dibujo;

    std::vector<orden_t> ordenes;
    // Where each group of `ordenes` starts, with its title.
    std::vector<std::pair<size_t, std::string>> grupos;
    std::string ficheroActual;
    int numeroLinea = 0;
    // Orders running now; more than one when an order was started from inside a wait.
    int profundidad = 0;
    // Set by `sal`, the end of the input or a failure that stops: each step then cancels
    // the command that waits, and with none the main loop ends.
    bool terminando = false;
    bool salir = false;
    bool fallada = false;
    bool avisoCambiosDado = false;
    int cancelacionesAlTerminar = 0;
};

}  // namespace tarvelo
