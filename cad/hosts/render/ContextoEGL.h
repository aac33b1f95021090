// A headless OpenGL 3.3 core context through EGL: no window, no X server.
#pragma once

#include <cstdint>
#include <string>

#include "Imagen.h"

namespace cad
{

// A surfaceless EGL context (Mesa's software rasteriser on a machine with no GPU, the GPU when
// there is one) with a framebuffer of colour and depth of a given size bound for drawing.
//
// Not thread-safe; the context is current on the thread that made it.
class ContextoEGL
{
public:
    ContextoEGL() = default;
    ~ContextoEGL();
    ContextoEGL(const ContextoEGL&) = delete;
    ContextoEGL& operator=(const ContextoEGL&) = delete;

    // Makes the context current and its framebuffer of ancho by alto pixels bound. False,
    // with the reason, when no context could be had.
    bool crea(int ancho, int alto, std::string& error);
    // Makes it current again and binds its framebuffer.
    void hazActual();
    // The framebuffer's pixels, rows from the top (glFinish first).
    imagen_t lee();
    // GL_RENDERER of the context, for reports.
    std::string renderizador() const;

private:
    void libera();
    void* pantalla = nullptr;  // EGLDisplay
    void* contexto = nullptr;  // EGLContext
    unsigned framebuffer = 0;
    unsigned color = 0;
    unsigned profundidad = 0;
    int anchoFb = 0;
    int altoFb = 0;
};

}  // namespace cad
