#include "ContextoEGL.h"

#include <cstdio>
#include <cstring>
#include <map>
#include <mutex>

#include <EGL/egl.h>
#include <EGL/eglext.h>

#define GL_GLEXT_PROTOTYPES
#include <GL/glcorearb.h>

namespace cad
{

namespace
{

// A display is one per process for its platform, and eglTerminate ends every context on it:
// it is terminated only when the last context made here goes.
std::mutex cerrojoPantallas;
std::map<EGLDisplay, int> usosPantalla;

bool tieneExtension(const char* lista, const char* nombre)
{
    if (lista == nullptr)
    {
        return false;
    }
    const size_t n = std::strlen(nombre);
    for (const char* p = std::strstr(lista, nombre); p != nullptr; p = std::strstr(p + n, nombre))
    {
        if ((p == lista || p[-1] == ' ') && (p[n] == ' ' || p[n] == '\0'))
        {
            return true;
        }
    }
    return false;
}

// The display to render on without a window system: Mesa's surfaceless platform, else the
// first device, else the default display.
EGLDisplay abrePantalla()
{
    const char* clientes = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    auto obtenPlataforma = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(
        eglGetProcAddress("eglGetPlatformDisplayEXT"));
    if (obtenPlataforma != nullptr)
    {
        if (tieneExtension(clientes, "EGL_MESA_platform_surfaceless"))
        {
            EGLDisplay p =
                obtenPlataforma(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
            if (p != EGL_NO_DISPLAY && eglInitialize(p, nullptr, nullptr) == EGL_TRUE)
            {
                return p;
            }
        }
        auto consultaDispositivos =
            reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
        if (consultaDispositivos != nullptr && tieneExtension(clientes, "EGL_EXT_platform_device"))
        {
            EGLDeviceEXT dispositivo = nullptr;
            EGLint n = 0;
            if (consultaDispositivos(1, &dispositivo, &n) == EGL_TRUE && n > 0)
            {
                EGLDisplay p = obtenPlataforma(EGL_PLATFORM_DEVICE_EXT, dispositivo, nullptr);
                if (p != EGL_NO_DISPLAY && eglInitialize(p, nullptr, nullptr) == EGL_TRUE)
                {
                    return p;
                }
            }
        }
    }
    EGLDisplay p = eglGetDisplay(EGL_DEFAULT_DISPLAY);
    if (p != EGL_NO_DISPLAY && eglInitialize(p, nullptr, nullptr) == EGL_TRUE)
    {
        return p;
    }
    return EGL_NO_DISPLAY;
}

std::string codigoEGL(EGLint codigo)
{
    char texto[32];
    std::snprintf(texto, sizeof texto, "0x%04X", static_cast<unsigned>(codigo));
    return texto;
}

}  // namespace

ContextoEGL::~ContextoEGL()
{
    libera();
}

bool ContextoEGL::crea(int ancho, int alto, std::string& error)
{
    libera();
    if (ancho < 1 || alto < 1)
    {
        error = "el tamaño de la imagen debe ser de al menos 1x1 píxeles";
        return false;
    }
    EGLDisplay p = abrePantalla();
    if (p == EGL_NO_DISPLAY)
    {
        error =
            "no hay ninguna pantalla EGL para dibujar (falta el controlador de OpenGL de "
            "Mesa, paquetes libegl-mesa0 y libgl1-mesa-dri)";
        return false;
    }
    {
        const std::lock_guard<std::mutex> guardia(cerrojoPantallas);
        ++usosPantalla[p];
    }
    pantalla = p;
    if (eglBindAPI(EGL_OPENGL_API) != EGL_TRUE)
    {
        error = "EGL no ofrece OpenGL de escritorio";
        libera();
        return false;
    }
    const char* extensiones = eglQueryString(p, EGL_EXTENSIONS);
    if (!tieneExtension(extensiones, "EGL_KHR_surfaceless_context"))
    {
        error = "EGL no admite contextos sin ventana (EGL_KHR_surfaceless_context)";
        libera();
        return false;
    }
    EGLConfig configuracion = EGL_NO_CONFIG_KHR;
    if (!tieneExtension(extensiones, "EGL_KHR_no_config_context"))
    {
        const EGLint atributos[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_NONE};
        EGLint n = 0;
        if (eglChooseConfig(p, atributos, &configuracion, 1, &n) != EGL_TRUE || n < 1)
        {
            error = "EGL no tiene ninguna configuración para OpenGL";
            libera();
            return false;
        }
    }
    const EGLint atributosContexto[] = {EGL_CONTEXT_MAJOR_VERSION,
                                        3,
                                        EGL_CONTEXT_MINOR_VERSION,
                                        3,
                                        EGL_CONTEXT_OPENGL_PROFILE_MASK,
                                        EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT,
                                        EGL_NONE};
    EGLContext c = eglCreateContext(p, configuracion, EGL_NO_CONTEXT, atributosContexto);
    if (c == EGL_NO_CONTEXT)
    {
        error = "no se pudo crear un contexto OpenGL 3.3 core (error EGL " +
                codigoEGL(eglGetError()) + ")";
        libera();
        return false;
    }
    contexto = c;
    if (eglMakeCurrent(p, EGL_NO_SURFACE, EGL_NO_SURFACE, c) != EGL_TRUE)
    {
        error =
            "no se pudo activar el contexto OpenGL (error EGL " + codigoEGL(eglGetError()) + ")";
        libera();
        return false;
    }
    GLint maximo = 0;
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &maximo);
    if (ancho > maximo || alto > maximo)
    {
        error = "el tamaño " + std::to_string(ancho) + "x" + std::to_string(alto) +
                " supera el máximo de este OpenGL, " + std::to_string(maximo) + " por lado";
        libera();
        return false;
    }
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glGenRenderbuffers(1, &color);
    glBindRenderbuffer(GL_RENDERBUFFER, color);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, ancho, alto);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, color);
    glGenRenderbuffers(1, &profundidad);
    glBindRenderbuffer(GL_RENDERBUFFER, profundidad);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH24_STENCIL8, ancho, alto);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER,
                              profundidad);
    glBindRenderbuffer(GL_RENDERBUFFER, 0);
    const GLenum estado = glCheckFramebufferStatus(GL_FRAMEBUFFER);
    if (estado != GL_FRAMEBUFFER_COMPLETE || glGetError() != GL_NO_ERROR)
    {
        error = "no se pudo preparar la imagen de " + std::to_string(ancho) + "x" +
                std::to_string(alto) + " píxeles en OpenGL (sin memoria o sin soporte)";
        libera();
        return false;
    }
    anchoFb = ancho;
    altoFb = alto;
    glViewport(0, 0, ancho, alto);
    return true;
}

void ContextoEGL::hazActual()
{
    if (contexto == nullptr)
    {
        return;
    }
    eglMakeCurrent(pantalla, EGL_NO_SURFACE, EGL_NO_SURFACE, contexto);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glViewport(0, 0, anchoFb, altoFb);
}

imagen_t ContextoEGL::lee()
{
    imagen_t imagen;
    if (contexto == nullptr || framebuffer == 0)
    {
        return imagen;
    }
    hazActual();
    glFinish();
    imagen.ancho = anchoFb;
    imagen.alto = altoFb;
    const size_t fila = static_cast<size_t>(anchoFb) * 4;
    imagen.rgba.resize(fila * static_cast<size_t>(altoFb));
    glBindFramebuffer(GL_READ_FRAMEBUFFER, framebuffer);
    glReadBuffer(GL_COLOR_ATTACHMENT0);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, anchoFb, altoFb, GL_RGBA, GL_UNSIGNED_BYTE, imagen.rgba.data());
    // OpenGL gives the bottom row first.
    std::vector<uint8_t> temporal(fila);
    for (size_t arriba = 0, abajo = static_cast<size_t>(altoFb) - 1; arriba < abajo;
         ++arriba, --abajo)
    {
        uint8_t* a = imagen.rgba.data() + arriba * fila;
        uint8_t* b = imagen.rgba.data() + abajo * fila;
        std::memcpy(temporal.data(), a, fila);
        std::memcpy(a, b, fila);
        std::memcpy(b, temporal.data(), fila);
    }
    return imagen;
}

std::string ContextoEGL::renderizador() const
{
    if (contexto == nullptr)
    {
        return "";
    }
    const GLubyte* nombre = glGetString(GL_RENDERER);
    return nombre != nullptr ? reinterpret_cast<const char*>(nombre) : "";
}

void ContextoEGL::libera()
{
    if (pantalla == nullptr)
    {
        return;
    }
    EGLDisplay p = pantalla;
    if (contexto != nullptr)
    {
        if (eglMakeCurrent(p, EGL_NO_SURFACE, EGL_NO_SURFACE, contexto) == EGL_TRUE)
        {
            glBindFramebuffer(GL_FRAMEBUFFER, 0);
            if (framebuffer != 0)
            {
                glDeleteFramebuffers(1, &framebuffer);
            }
            if (color != 0)
            {
                glDeleteRenderbuffers(1, &color);
            }
            if (profundidad != 0)
            {
                glDeleteRenderbuffers(1, &profundidad);
            }
        }
        eglMakeCurrent(p, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglDestroyContext(p, contexto);
    }
    bool ultimo = false;
    {
        const std::lock_guard<std::mutex> guardia(cerrojoPantallas);
        ultimo = --usosPantalla[p] <= 0;
        if (ultimo)
        {
            usosPantalla.erase(p);
        }
    }
    if (ultimo)
    {
        eglTerminate(p);
    }
    pantalla = nullptr;
    contexto = nullptr;
    framebuffer = 0;
    color = 0;
    profundidad = 0;
    anchoFb = 0;
    altoFb = 0;
}

}  // namespace cad
