// Test support: a user's session written down as a script, played through the message queue.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "PantallaReferencia.h"
#include "base/geometria/Punto3.h"
#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"

namespace cad::prueba
{

// Every step becomes one message on the thread's ColaMensajes, posted before the command
// starts; the command's waits then run them one per pump step, as a host's event loop would.
// When a wait finds the queue empty the script is over: the hook records a test failure and
// cancels, so a command that asks for more than the script gives never hangs a test.
class GuionSesion
{
public:
    GuionSesion(EditorDibujo& editor, PantallaReferencia& pantalla);
    // Runs whatever the command did not read, then takes the hook away.
    ~GuionSesion();
    GuionSesion(const GuionSesion&) = delete;
    GuionSesion& operator=(const GuionSesion&) = delete;

    // A typed line, as the host hands it to introPulsado.
    GuionSesion& escribe(const std::string& linea);
    // Enter alone.
    GuionSesion& intro() { return escribe(""); }
    // A click at a pixel of the display's viewport (y grows upwards).
    GuionSesion& clic(int x, int y, int boton = PantallaCAD::kBotonIzquierdo);
    // A click at the pixel where the display shows a drawing point.
    GuionSesion& clicEn(const Punto3<double>& p, int boton = PantallaCAD::kBotonIzquierdo);
    // The pointer moves there, without a click.
    GuionSesion& mueve(int x, int y);
    // The host's cancel (Escape during a command).
    GuionSesion& cancela();
    // Anything else the host might do from its event loop: start another command, paint.
    GuionSesion& ejecuta(std::function<void()> accion);

    // How many times a wait found the script exhausted.
    int agotado = 0;
    // With false, running out of script is expected: no failure is recorded.
    bool agotarEsFallo = true;

private:
    EditorDibujo& editor;
    PantallaReferencia& pantalla;
};

// A drawing, a reference display with a working camera and an editor, wired together: pixel
// (x, y) shows drawing point (x, y, 0) in an 800 by 600 viewport seen from above, one pixel
// per unit. Everything the editor prints is kept in `textos`, and every state the interactive
// reactor reports in `estados` as one string ("I" kInicio, "F" kFin, "C" kCancelado).
struct SesionEditor
{
    SesionEditor();
    ~SesionEditor();

    // Sends the drawing to the display (both paint passes), so that it can be picked.
    void pinta();
    // The editor's overlay pass alone.
    void pintaSuperposicion();
    // What the editor printed, without the cleared prompt line each wait leaves behind.
    std::vector<std::string> prompts() const;

    Dibujo dibujo;
    PantallaReferencia pantalla;
    EditorDibujo* editor = nullptr;
    std::vector<std::string> textos;
    std::string estados;
};

}  // namespace cad::prueba
