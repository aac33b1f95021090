// PantallaGL: the reference display's retained scene drawn with OpenGL 3.3 core.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "PantallaReferencia.h"

namespace cad
{

// One retained scene, two ways to use it: everything the kernel describes is kept by
// PantallaReferencia (camera, cursor, click queue, geometric picking) and this class turns
// that scene into GPU buffers and draws it.
//
// GL side: every GL call needs the host's context current. iniciaGL prepares the programs,
// pinta draws into the framebuffer that is bound, liberaGL frees what was made; the host calls
// all three with its context current. entidadesEnRectangulo renders an id buffer, so it calls
// `hazActual` first when the host set it (a widget's makeCurrent).
//
// Precision: the scene stays in doubles; each GPU buffer holds floats relative to its own
// origin (the centre of what it holds), and the matrices that reach the GPU are made in doubles
// relative to that origin, so coordinates of millions of metres draw millimetres steadily.
//
// Rebuilds: the buffers are built again only after the kernel changed the scene (limpia or a
// primitive added); a camera move redraws what is there. The overlay, small and
// short-lived, is rebuilt on each frame.
//
// Pixels are as in PantallaReferencia: x to the right, y upwards from the bottom edge, which
// is also the order of glReadPixels.
class PantallaGL : public PantallaReferencia
{
public:
    PantallaGL();
    ~PantallaGL() override;
    PantallaGL(const PantallaGL&) = delete;
    PantallaGL& operator=(const PantallaGL&) = delete;

    // Compiles the programs; needs a current OpenGL 3.3 core context. False with the reason.
    bool iniciaGL(std::string& error);
    // Frees every GL object; with the same context current. Harmless when nothing was made.
    void liberaGL();
    bool glIniciado() const;

    // Draws the scene and the overlay into the bound framebuffer over a viewport of
    // ancho by alto pixels, building the GPU buffers first when the scene changed.
    void pinta();
    // Builds the GPU buffers now when the scene changed since they were built.
    void construyeBuffers();

    // Picks through an id buffer of the present view: the pick values of the primitives
    // drawn in the rectangle (limits included), each once, in the order the scene gave them.
    // With incluyeOcultas the primitives hidden behind others count too (the geometric
    // answer of the reference display). Without a GL context it answers geometrically.
    void entidadesEnRectangulo(const Rect2<int>& rectangulo, bool incluyeOcultas,
                               std::vector<void*>& picks) override;

    // Folder against which relative texture paths are read (the drawing's folder).
    std::string carpetaTexturas;

    // Makes the host's context current for GL work outside pinta (picking).
    std::function<void()> hazActual;
    // Called when the scene changed, so that the host schedules a repaint.
    std::function<void()> alCambiar;

    // What the last build and frame cost, for the benchmarks and the viewer's status bar.
    struct estadisticas_t
    {
        double msConstruccion = 0.0;  // last build of the scene's buffers
        size_t bytesGPU = 0;          // bytes of vertex and index data held
        size_t construcciones = 0;    // builds so far
        size_t primitivas = 0;        // primitives of the last build
    };
    const estadisticas_t& estadisticas() const;
    // Why the image of a textured material could not be used, by material id; such a
    // material paints in its colour.
    const std::map<int16_t, std::string>& erroresTexturas() const;

    // The kernel's calls that change the retained scene mark it for a rebuild.
    void limpia() override;
    void dibujaPunto(const Punto3<double>& p, uint32_t color, void* pick) override;
    void dibujaGrupoPuntos(int n, const Punto3<double>* puntos, const uint32_t* colores,
                           void* pick) override;
    void dibujaVector(const Punto3<double>& origen, const Punto3<double>& extremo, uint32_t color,
                      float grosor, void* pick) override;
    void dibujaLinea(const Linea3D<double>& linea, uint32_t color, void* pick) override;
    void dibujaPolilinea(int n, const Punto3<double>* puntos, bool cerrada, uint32_t color,
                         void* pick) override;
    void dibujaPoligono(int n, const Punto3<double>* puntos, uint32_t color, void* pick) override;
    void dibujaTextoAncho(const Punto3<double>& posicion, const wchar_t* texto, uint32_t color,
                          int alineacion, float altura, float rotacion, const char* fuente,
                          int estilo, void* pick) override;
    void dibujaTexto(const Punto3<double>& posicion, const char* texto, uint32_t color,
                     int alineacion, float altura, float rotacion, const char* fuente, int estilo,
                     void* pick) override;
    void nuevaTextura(int16_t idMaterial, const char* imagen, uint32_t color,
                      float brillo) override;
    void nuevoMaterial(int16_t idMaterial, uint32_t color, float brillo) override;
    void finObjeto(void* pick) override;
    void inicioSuperposicion() override;
    void finSuperposicion() override;
    void dibujaMarca(const Punto3<double>& posicion, int tipo, uint32_t color) override;
    void setCursor(const cursor_t& c) override;
    void inicioDibujo() override;
    void finDibujo() override;

private:
    struct gl_t;
    void cambia();
    // One build of the scene's buffers.
    void construyeEscena();
    // After the overlay the editor draws the cursor's glyph in pixels of the viewport: what
    // comes then is kept apart, replaced on each pass, and never enters the scene.
    bool enGlifoCursor() const { return trasSuperposicion && !enSuperposicion; }
    bool trasSuperposicion = false;
    std::vector<primitiva_t> glifoCursor;
    std::unique_ptr<gl_t> gl;
    bool sucia = true;
};

}  // namespace cad
