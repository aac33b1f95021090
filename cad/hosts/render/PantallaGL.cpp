// PantallaGL: the kernel's calls, the build of the scene's batches, the frame and the id
// buffer that picks.
#include "PantallaGL.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <limits>
#include <map>
#include <tuple>

#include "Imagen.h"
#include "LotesGL.h"
#include "Tipografia.h"
#include "base/FicheroAtomico.h"

namespace cad
{

using namespace gpu;

// --- GL state ---------------------------------------------------------------------------

struct PantallaGL::gl_t
{
    bool iniciado = false;
    GLuint programas[2][3] = {};  // [pick][tipo]
    std::vector<loteGPU_t> lotes;
    std::vector<loteGPU_t> lotesSuperposicion;
    std::vector<loteGPU_t> lotesCursor;
    // Pick ids: id - 1 is the primitive's index in the scene; its pick value.
    std::vector<void*> picks;
    // Scene box in drawing units, for the depth range.
    Rect3<double> caja;
    // Textures by material id; 0 when the image could not be read.
    std::map<int16_t, GLuint> texturas;
    std::map<int16_t, std::string> errores;
    Tipografia letras;
    bool letrasCargadas = false;
    GLuint atlas = 0;
    uint64_t versionAtlas = 0;
    // Marks of the scene, drawn at screen size on every frame.
    std::vector<size_t> marcas;

    // The id buffer and the view it was drawn with.
    GLuint fboPick = 0, colorPick = 0, profundidadPick = 0;
    int anchoPick = 0, altoPick = 0;
    std::vector<uint32_t> idsPick;
    std::array<double, 16> vistaPick{};
    size_t construccionPick = static_cast<size_t>(-1);

    PantallaGL::estadisticas_t estadisticas;
};

PantallaGL::PantallaGL() : gl(std::make_unique<gl_t>())
{
    grabando = false;
}

PantallaGL::~PantallaGL() = default;

bool PantallaGL::glIniciado() const
{
    return gl->iniciado;
}

const PantallaGL::estadisticas_t& PantallaGL::estadisticas() const
{
    return gl->estadisticas;
}

const std::map<int16_t, std::string>& PantallaGL::erroresTexturas() const
{
    return gl->errores;
}

bool PantallaGL::iniciaGL(std::string& error)
{
    if (gl->iniciado)
    {
        return true;
    }
    for (int pick = 0; pick < 2; ++pick)
    {
        for (int t = 0; t < 3; ++t)
        {
            gl->programas[pick][t] = enlazaPrograma(t, pick != 0, error);
            if (gl->programas[pick][t] == 0)
            {
                liberaGL();
                return false;
            }
        }
    }
    std::string errorLetras;
    gl->letrasCargadas = gl->letras.carga(errorLetras);
    gl->iniciado = true;
    sucia = true;
    return true;
}

void PantallaGL::liberaGL()
{
    if (gl->programas[0][0] != 0 || gl->iniciado)
    {
        for (auto& fila : gl->programas)
        {
            for (GLuint& p : fila)
            {
                if (p != 0)
                {
                    glDeleteProgram(p);
                }
                p = 0;
            }
        }
        liberaLotes(gl->lotes);
        liberaLotes(gl->lotesSuperposicion);
        liberaLotes(gl->lotesCursor);
        for (auto& [id, t] : gl->texturas)
        {
            if (t != 0)
            {
                glDeleteTextures(1, &t);
            }
        }
        gl->texturas.clear();
        if (gl->atlas != 0)
        {
            glDeleteTextures(1, &gl->atlas);
        }
        gl->atlas = 0;
        gl->versionAtlas = 0;
        if (gl->fboPick != 0)
        {
            glDeleteFramebuffers(1, &gl->fboPick);
            glDeleteRenderbuffers(1, &gl->colorPick);
            glDeleteRenderbuffers(1, &gl->profundidadPick);
        }
        gl->fboPick = gl->colorPick = gl->profundidadPick = 0;
        gl->anchoPick = gl->altoPick = 0;
    }
    gl->iniciado = false;
    sucia = true;
}

// --- the kernel's calls ---------------------------------------------------------------

void PantallaGL::cambia()
{
    if (!enSuperposicion)
    {
        sucia = true;
    }
    if (alCambiar)
    {
        alCambiar();
    }
}

void PantallaGL::limpia()
{
    PantallaReferencia::limpia();
    trasSuperposicion = false;
    glifoCursor.clear();
    sucia = true;
    if (alCambiar)
    {
        alCambiar();
    }
}

void PantallaGL::dibujaPunto(const Punto3<double>& p, uint32_t color, void* pick)
{
    PantallaReferencia::dibujaPunto(p, color, pick);
    cambia();
}

void PantallaGL::dibujaGrupoPuntos(int n, const Punto3<double>* puntos, const uint32_t* colores,
                                   void* pick)
{
    PantallaReferencia::dibujaGrupoPuntos(n, puntos, colores, pick);
    cambia();
}

void PantallaGL::dibujaVector(const Punto3<double>& origen, const Punto3<double>& extremo,
                              uint32_t color, float grosorVector, void* pick)
{
    PantallaReferencia::dibujaVector(origen, extremo, color, grosorVector, pick);
    cambia();
}

void PantallaGL::dibujaLinea(const Linea3D<double>& linea, uint32_t color, void* pick)
{
    PantallaReferencia::dibujaLinea(linea, color, pick);
    cambia();
}

void PantallaGL::inicioDibujo()
{
    PantallaReferencia::inicioDibujo();
    trasSuperposicion = false;
}

void PantallaGL::dibujaPolilinea(int n, const Punto3<double>* puntos, bool cerrada, uint32_t color,
                                 void* pick)
{
    if (enGlifoCursor())
    {
        primitiva_t g;
        g.tipo = primitiva_t::kPolilinea;
        g.puntos.assign(puntos, puntos + std::max(n, 0));
        g.cerrada = cerrada;
        g.color = color;
        g.grosor = 1.0F;
        glifoCursor.push_back(std::move(g));
        if (alCambiar)
        {
            alCambiar();
        }
        return;
    }
    PantallaReferencia::dibujaPolilinea(n, puntos, cerrada, color, pick);
    cambia();
}

void PantallaGL::dibujaPoligono(int n, const Punto3<double>* puntos, uint32_t color, void* pick)
{
    PantallaReferencia::dibujaPoligono(n, puntos, color, pick);
    cambia();
}

void PantallaGL::dibujaTextoAncho(const Punto3<double>& p, const wchar_t* t, uint32_t color,
                                  int alin, float altura, float rotacion, const char* fuente,
                                  int estilo, void* pick)
{
    PantallaReferencia::dibujaTextoAncho(p, t, color, alin, altura, rotacion, fuente, estilo, pick);
    cambia();
}

void PantallaGL::dibujaTexto(const Punto3<double>& p, const char* t, uint32_t color, int alin,
                             float altura, float rotacion, const char* fuente, int estilo,
                             void* pick)
{
    PantallaReferencia::dibujaTexto(p, t, color, alin, altura, rotacion, fuente, estilo, pick);
    cambia();
}

void PantallaGL::nuevaTextura(int16_t idMaterial, const char* imagen, uint32_t color, float brillo)
{
    PantallaReferencia::nuevaTextura(idMaterial, imagen, color, brillo);
    // The image is read again at the next build: the file may have changed.
    if (gl->iniciado)
    {
        auto t = gl->texturas.find(idMaterial);
        if (t != gl->texturas.end() && t->second != 0)
        {
            glDeleteTextures(1, &t->second);
        }
    }
    gl->texturas.erase(idMaterial);
    gl->errores.erase(idMaterial);
    sucia = true;
}

void PantallaGL::nuevoMaterial(int16_t idMaterial, uint32_t color, float brillo)
{
    PantallaReferencia::nuevoMaterial(idMaterial, color, brillo);
    sucia = true;
}

void PantallaGL::finObjeto(void* pick)
{
    PantallaReferencia::finObjeto(pick);
    cambia();
}

void PantallaGL::inicioSuperposicion()
{
    PantallaReferencia::inicioSuperposicion();
    trasSuperposicion = false;
    if (alCambiar)
    {
        alCambiar();
    }
}

void PantallaGL::finSuperposicion()
{
    PantallaReferencia::finSuperposicion();
    trasSuperposicion = true;
    glifoCursor.clear();
    if (alCambiar)
    {
        alCambiar();
    }
}

void PantallaGL::dibujaMarca(const Punto3<double>& lugar, int tipo, uint32_t color)
{
    PantallaReferencia::dibujaMarca(lugar, tipo, color);
    cambia();
}

void PantallaGL::setCursor(const cursor_t& c)
{
    PantallaReferencia::setCursor(c);
    if (alCambiar)
    {
        alCambiar();
    }
}

void PantallaGL::finDibujo()
{
    PantallaReferencia::finDibujo();
    if (alCambiar)
    {
        alCambiar();
    }
}
namespace
{

Vector3D<double> ejeDerecha(const Matriz4<double>& v)
{
    return {v(0, 0), v(0, 1), v(0, 2)};
}
Vector3D<double> ejeArriba(const Matriz4<double>& v)
{
    return {v(1, 0), v(1, 1), v(1, 2)};
}

// Reads a material's image into a mipmapped texture; 0 when it can't be read.
GLuint creaTextura(const std::string& ruta, std::string& error)
{
    imagen_t im;
    if (!cargaImagen(ruta, im, error))
    {
        return 0;
    }
    GLint maximo = 4096;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &maximo);
    // Halve by skipping pixels until the GPU takes it: a survey orthophoto may be larger.
    while (im.ancho > maximo || im.alto > maximo)
    {
        imagen_t m;
        m.ancho = std::max(1, im.ancho / 2);
        m.alto = std::max(1, im.alto / 2);
        m.rgba.resize(static_cast<size_t>(m.ancho) * m.alto * 4);
        for (int y = 0; y < m.alto; ++y)
        {
            for (int x = 0; x < m.ancho; ++x)
            {
                std::memcpy(&m.rgba[(static_cast<size_t>(y) * m.ancho + x) * 4],
                            &im.rgba[(static_cast<size_t>(2 * y) * im.ancho + 2 * x) * 4], 4);
            }
        }
        im = std::move(m);
    }
    GLuint t = 0;
    glGenTextures(1, &t);
    glBindTexture(GL_TEXTURE_2D, t);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, im.ancho, im.alto, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 im.rgba.data());
    glGenerateMipmap(GL_TEXTURE_2D);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
    return t;
}

}  // namespace

void PantallaGL::construyeBuffers()
{
    // Letters new to the atlas may grow it, which moves the glyphs laid out before them: the
    // second pass finds them all in place.
    for (int vuelta = 0; vuelta < 2 && gl->iniciado && sucia; ++vuelta)
    {
        const int altoAtlas = gl->letras.alto();
        construyeEscena();
        if (gl->letras.alto() != altoAtlas)
        {
            sucia = true;
        }
    }
}

void PantallaGL::construyeEscena()
{
    const auto inicio = std::chrono::steady_clock::now();
    liberaLotes(gl->lotes);
    gl->picks.clear();
    gl->marcas.clear();
    gl->picks.reserve(escena.size());
    double pixel = 1.0;
    tamanoPixel(pixel);
    const Matriz4<double> v = matrizVista();
    Constructor c(materiales, gl->letrasCargadas ? &gl->letras : nullptr, colorFondo, pixel,
                  ejeDerecha(v), ejeArriba(v));
    // The constant-scale objects, by the index their batches carry.
    std::vector<const primitiva_t*> escalas;
    size_t bytes = 0;
    for (size_t i = 0; i < escena.size(); ++i)
    {
        const primitiva_t& pr = escena[i];
        gl->picks.push_back(pr.pick);
        const auto id = static_cast<uint32_t>(i + 1);
        if (pr.tipo == primitiva_t::kMarca)
        {
            gl->marcas.push_back(i);
            continue;
        }
        int escalaFija = -1;
        if (pr.tipo == primitiva_t::kObjeto && pr.escalaFija)
        {
            escalaFija = static_cast<int>(escalas.size());
            escalas.push_back(&pr);
        }
        c.anade(pr, id, escalaFija);
        // Large bodies go to the GPU as soon as they are complete, so that a group of
        // millions of points is not held twice over on the CPU side.
        if (pr.puntos.size() > 1000000)
        {
            subeLotes(c.lotes, gl->lotes, bytes);
        }
    }
    subeLotes(c.lotes, gl->lotes, bytes);
    for (loteGPU_t& g : gl->lotes)
    {
        if (g.clave.escalaFija >= 0)
        {
            const primitiva_t& e = *escalas[static_cast<size_t>(g.clave.escalaFija)];
            g.centroEscala = e.centroEscala;
            g.escala = e.escala;
            g.pixeles = e.pixeles;
        }
    }
    std::stable_sort(
        gl->lotes.begin(), gl->lotes.end(),
        [](const loteGPU_t& a, const loteGPU_t& b)
        { return std::tie(a.clave.capa, a.clave.orden) < std::tie(b.clave.capa, b.clave.orden); });
    gl->caja = c.cajaVacia ? Rect3<double>() : c.caja;

    // Textures of the materials the batches use.
    for (const loteGPU_t& g : gl->lotes)
    {
        const auto id = static_cast<int16_t>(g.clave.textura);
        if (g.clave.textura < 0 || gl->texturas.count(id) != 0)
        {
            continue;
        }
        std::string ruta = materiales[id].imagen;
        std::error_code ec;
        if (!carpetaTexturas.empty() && std::filesystem::path(ruta).is_relative() &&
            !std::filesystem::exists(ruta, ec))
        {
            ruta = (std::filesystem::path(carpetaTexturas) / ruta).string();
        }
        std::string error;
        gl->texturas[id] = creaTextura(ruta, error);
        if (!error.empty())
        {
            gl->errores[id] = error;
        }
    }
    sucia = false;
    gl->construccionPick = static_cast<size_t>(-1);
    auto& e = gl->estadisticas;
    e.msConstruccion =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - inicio)
            .count();
    e.bytesGPU = bytes;
    e.construcciones += 1;
    e.primitivas = escena.size();
}

// --- drawing -------------------------------------------------------------------------

namespace
{

std::array<float, 16> aFlotantes(const Matriz4<double>& m)
{
    std::array<float, 16> f{};
    for (int i = 0; i < 16; ++i)
    {
        f[static_cast<size_t>(i)] = aFloat(m[i]);
    }
    return f;
}

}  // namespace

namespace
{

// The matrices of one frame: the kernel's x and y, and a depth range that just holds the
// scene so that a 24-bit depth buffer separates surfaces a centimetre apart.
struct marco_t
{
    Matriz4<double> vista;
    Matriz4<double> proyeccion;
    Punto3<double> origenVista;
    int ancho = 1, alto = 1;
    bool pick = false;
};

void ajustaProfundidad(marco_t& m, const Rect3<double>& caja)
{
    if (!caja.esValido())
    {
        return;
    }
    double cerca = std::numeric_limits<double>::infinity();
    double lejos = -cerca;
    for (int i = 0; i < 8; ++i)
    {
        const Punto3<double> p((i & 1) != 0 ? caja.maximo.x : caja.minimo.x,
                               (i & 2) != 0 ? caja.maximo.y : caja.minimo.y,
                               (i & 4) != 0 ? caja.maximo.z : caja.minimo.z);
        const double qx = p.x - m.origenVista.x, qy = p.y - m.origenVista.y,
                     qz = p.z - m.origenVista.z;
        const double z =
            m.vista(2, 0) * qx + m.vista(2, 1) * qy + m.vista(2, 2) * qz + m.vista(2, 3);
        cerca = std::min(cerca, -z);
        lejos = std::max(lejos, -z);
    }
    const double margen = std::max(1.0, (lejos - cerca) * 0.05);
    cerca -= margen;
    lejos += margen;
    if (!std::isfinite(cerca) || !std::isfinite(lejos) || lejos <= cerca)
    {
        return;
    }
    m.proyeccion(2, 2) = -2.0 / (lejos - cerca);
    m.proyeccion(2, 3) = -(lejos + cerca) / (lejos - cerca);
}

// The kernel's pixel (x, y) is the screen point (x, y), a corner of GL's pixel: half a pixel
// more puts it on the centre of the pixel of that number, so that what lies on a pixel's
// point is drawn and picked on that pixel, the view's first row and column included.
void centraPixeles(marco_t& m)
{
    Matriz4<double> t;
    t(0, 3) = 1.0 / m.ancho;
    t(1, 3) = 1.0 / m.alto;
    m.proyeccion = t * m.proyeccion;
}

// A frame whose eye coordinates are the viewport's pixels: the cursor's glyph.
marco_t marcoPixeles(int ancho, int alto)
{
    marco_t m;
    m.ancho = ancho;
    m.alto = alto;
    m.proyeccion(0, 0) = 2.0 / ancho;
    m.proyeccion(0, 3) = -1.0;
    m.proyeccion(1, 1) = 2.0 / alto;
    m.proyeccion(1, 3) = -1.0;
    m.proyeccion(2, 2) = 0.0;
    centraPixeles(m);
    return m;
}

}  // namespace

namespace
{

void dibujaLotes(const std::vector<loteGPU_t>& lotes, const marco_t& m, GLuint (&programas)[3],
                 const std::map<int16_t, GLuint>& texturas, GLuint atlas, double pixel, int capa)
{
    for (const loteGPU_t& g : lotes)
    {
        if (g.clave.capa != capa)
        {
            continue;
        }
        const GLuint p = programas[g.clave.tipo];
        glUseProgram(p);
        // The view relative to the batch's origin, made in doubles.
        Matriz4<double> traslado;
        traslado(0, 3) = g.origen.x - m.origenVista.x;
        traslado(1, 3) = g.origen.y - m.origenVista.y;
        traslado(2, 3) = g.origen.z - m.origenVista.z;
        const Matriz4<double> mv = m.vista * traslado;
        const std::array<float, 16> mvp = aFlotantes(m.proyeccion * mv);
        glUniformMatrix4fv(glGetUniformLocation(p, "mvp"), 1, GL_FALSE, mvp.data());
        float factor = 1.0F;
        Punto3<double> centro = g.origen;
        if (g.clave.escalaFija >= 0 && g.escala > 0 && std::isfinite(g.escala))
        {
            factor = aFloat(g.pixeles * pixel / g.escala);
            centro = g.centroEscala;
        }
        glUniform3f(glGetUniformLocation(p, "centro"), aFloat(centro.x - g.origen.x),
                    aFloat(centro.y - g.origen.y), aFloat(centro.z - g.origen.z));
        glUniform1f(glGetUniformLocation(p, "factor"), factor);
        glBindVertexArray(g.vao);
        if (g.clave.tipo == kLotePuntos)
        {
            glUniform1f(glGetUniformLocation(p, "tamano"), g.clave.tamano);
            glDrawArrays(GL_POINTS, 0, g.cuenta);
        }
        else if (g.clave.tipo == kLoteLineas)
        {
            glUniform2f(glGetUniformLocation(p, "vista"), static_cast<float>(m.ancho),
                        static_cast<float>(m.alto));
            glUniform1f(glGetUniformLocation(p, "pixelesPorBit"), kPixelesPorBit);
            glDrawArrays(GL_LINES, 0, g.cuenta);
        }
        else
        {
            const std::array<float, 16> mvf = aFlotantes(mv);
            glUniformMatrix4fv(glGetUniformLocation(p, "mv"), 1, GL_FALSE, mvf.data());
            GLuint t = 0;
            if (g.clave.forma == 3)
            {
                t = atlas;
            }
            else if (g.clave.textura >= 0)
            {
                auto it = texturas.find(static_cast<int16_t>(g.clave.textura));
                t = it != texturas.end() ? it->second : 0;
            }
            int forma = g.clave.forma;
            if (forma == 2 && t == 0)
            {
                forma = 1;  // an image that could not be read: the material's colour
            }
            glActiveTexture(GL_TEXTURE0);
            glBindTexture(GL_TEXTURE_2D, t);
            glUniform1i(glGetUniformLocation(p, "textura"), 0);
            glUniform1i(glGetUniformLocation(p, "forma"), forma);
            glUniform1i(glGetUniformLocation(p, "punteado"), g.clave.punteado);
            const bool transparente = g.clave.orden == 2 && !m.pick;
            glUniform1f(glGetUniformLocation(p, "opacidad"), transparente ? 0.3F : 1.0F);
            if (transparente)
            {
                glEnable(GL_BLEND);
                glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
                glDepthMask(GL_FALSE);
            }
            // Hidden-line fills sit a little behind the edges drawn on them.
            if (g.clave.orden == 1)
            {
                glEnable(GL_POLYGON_OFFSET_FILL);
                glPolygonOffset(1.0F, 1.0F);
            }
            glDrawElements(GL_TRIANGLES, g.cuenta, GL_UNSIGNED_INT, nullptr);
            glDisable(GL_POLYGON_OFFSET_FILL);
            glDisable(GL_BLEND);
            glDepthMask(GL_TRUE);
        }
    }
    glBindVertexArray(0);
}

}  // namespace

namespace
{

void subeAtlas(Tipografia& letras, GLuint& atlas, uint64_t& version)
{
    if (letras.version() == version || letras.ancho() <= 0 || letras.alto() <= 0)
    {
        return;
    }
    if (atlas == 0)
    {
        glGenTextures(1, &atlas);
    }
    glBindTexture(GL_TEXTURE_2D, atlas);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_R8, letras.ancho(), letras.alto(), 0, GL_RED,
                 GL_UNSIGNED_BYTE, letras.atlas().data());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    version = letras.version();
}

}  // namespace

void PantallaGL::pinta()
{
    if (!gl->iniciado)
    {
        return;
    }
    double pixel = 1.0;
    tamanoPixel(pixel);
    marco_t m;
    m.vista = matrizVista();
    m.proyeccion = matrizProyeccion();
    getOrigenVista(m.origenVista);
    m.ancho = ancho;
    m.alto = alto;
    // A text of the overlay may bring letters that grow the atlas, which moves every glyph's
    // place in it: then everything is laid out again, once, with all of them already there.
    for (int vuelta = 0; vuelta < 2; ++vuelta)
    {
        const int altoAtlas = gl->letras.alto();
        construyeBuffers();
        // The overlay and the scene's marks follow the camera: built again on every frame.
        liberaLotes(gl->lotesSuperposicion);
        Constructor c(materiales, gl->letrasCargadas ? &gl->letras : nullptr, colorFondo, pixel,
                      ejeDerecha(m.vista), ejeArriba(m.vista));
        for (const size_t i : gl->marcas)
        {
            c.anadeMarca(escena[i], static_cast<uint32_t>(i + 1));
        }
        for (const primitiva_t& pr : superposicion)
        {
            primitiva_t encima = pr;
            encima.primerPlano = true;
            if (pr.tipo == primitiva_t::kMarca)
            {
                c.anadeMarca(encima, 0);
            }
            else
            {
                c.anade(encima, 0, -1);
            }
        }
        size_t bytes = 0;
        subeLotes(c.lotes, gl->lotesSuperposicion, bytes);
        if (gl->letras.alto() == altoAtlas)
        {
            break;
        }
        sucia = true;
    }
    if (gl->letrasCargadas)
    {
        subeAtlas(gl->letras, gl->atlas, gl->versionAtlas);
    }
    ajustaProfundidad(m, gl->caja);
    centraPixeles(m);
    {
        liberaLotes(gl->lotesCursor);
        Constructor c(materiales, nullptr, colorFondo, 1.0, Vector3D<double>(1, 0, 0),
                      Vector3D<double>(0, 1, 0));
        for (const primitiva_t& pr : glifoCursor)
        {
            primitiva_t encima = pr;
            encima.primerPlano = true;
            c.anade(encima, 0, -1);
        }
        size_t bytes = 0;
        subeLotes(c.lotes, gl->lotesCursor, bytes);
    }

    glViewport(0, 0, ancho, alto);
    const uint32_t f = colorFondo;
    glClearColor(static_cast<float>(f & 0xFF) / 255.0F,
                 static_cast<float>((f >> 8) & 0xFF) / 255.0F,
                 static_cast<float>((f >> 16) & 0xFF) / 255.0F, 1.0F);
    glClearDepth(1.0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glEnable(GL_PROGRAM_POINT_SIZE);
    glProvokingVertex(GL_FIRST_VERTEX_CONVENTION);
    dibujaLotes(gl->lotes, m, gl->programas[0], gl->texturas, gl->atlas, pixel, 0);
    // What paints on top, then the overlay, over a cleared depth.
    glClear(GL_DEPTH_BUFFER_BIT);
    dibujaLotes(gl->lotes, m, gl->programas[0], gl->texturas, gl->atlas, pixel, 1);
    glDisable(GL_DEPTH_TEST);
    dibujaLotes(gl->lotesSuperposicion, m, gl->programas[0], gl->texturas, gl->atlas, pixel, 1);
    dibujaLotes(gl->lotesCursor, marcoPixeles(ancho, alto), gl->programas[0], gl->texturas,
                gl->atlas, 1.0, 1);
    glEnable(GL_DEPTH_TEST);
    glUseProgram(0);
}

// --- picking --------------------------------------------------------------------------

void PantallaGL::entidadesEnRectangulo(const Rect2<int>& rectangulo, bool incluyeOcultas,
                                       std::vector<void*>& picks)
{
    if (incluyeOcultas || !gl->iniciado || ancho <= 0 || alto <= 0)
    {
        PantallaReferencia::entidadesEnRectangulo(rectangulo, incluyeOcultas, picks);
        return;
    }
    picks.clear();
    if (!rectangulo.esValido())
    {
        return;
    }
    if (hazActual)
    {
        hazActual();
    }
    construyeBuffers();
    marco_t m;
    m.vista = matrizVista();
    m.proyeccion = matrizProyeccion();
    getOrigenVista(m.origenVista);
    m.ancho = ancho;
    m.alto = alto;
    m.pick = true;
    ajustaProfundidad(m, gl->caja);
    centraPixeles(m);
    // The id buffer stays valid while neither the scene nor the view changed: snapping asks
    // on every move of the pointer.
    std::array<double, 16> firma{};
    const Matriz4<double> pv = m.proyeccion * m.vista;
    for (int i = 0; i < 16; ++i)
    {
        firma[static_cast<size_t>(i)] = pv[i];
    }
    const bool vale = gl->construccionPick == gl->estadisticas.construcciones &&
                      firma == gl->vistaPick && gl->anchoPick == ancho && gl->altoPick == alto &&
                      gl->idsPick.size() == static_cast<size_t>(ancho) * alto;
    if (!vale)
    {
        GLint anterior = 0;
        glGetIntegerv(GL_FRAMEBUFFER_BINDING, &anterior);
        GLint vp[4];
        glGetIntegerv(GL_VIEWPORT, vp);
        if (gl->fboPick == 0 || gl->anchoPick != ancho || gl->altoPick != alto)
        {
            if (gl->fboPick == 0)
            {
                glGenFramebuffers(1, &gl->fboPick);
                glGenRenderbuffers(1, &gl->colorPick);
                glGenRenderbuffers(1, &gl->profundidadPick);
            }
            glBindRenderbuffer(GL_RENDERBUFFER, gl->colorPick);
            glRenderbufferStorage(GL_RENDERBUFFER, GL_R32UI, ancho, alto);
            glBindRenderbuffer(GL_RENDERBUFFER, gl->profundidadPick);
            glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT24, ancho, alto);
            glBindFramebuffer(GL_FRAMEBUFFER, gl->fboPick);
            glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER,
                                      gl->colorPick);
            glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER,
                                      gl->profundidadPick);
            gl->anchoPick = ancho;
            gl->altoPick = alto;
        }
        glBindFramebuffer(GL_FRAMEBUFFER, gl->fboPick);
        glViewport(0, 0, ancho, alto);
        const GLuint cero[4] = {0, 0, 0, 0};
        glClearBufferuiv(GL_COLOR, 0, cero);
        glClearDepth(1.0);
        glClear(GL_DEPTH_BUFFER_BIT);
        glEnable(GL_DEPTH_TEST);
        glDepthFunc(GL_LEQUAL);
        glEnable(GL_PROGRAM_POINT_SIZE);
        glProvokingVertex(GL_FIRST_VERTEX_CONVENTION);
        double pixel = 1.0;
        tamanoPixel(pixel);
        dibujaLotes(gl->lotes, m, gl->programas[1], gl->texturas, gl->atlas, pixel, 0);
        glClear(GL_DEPTH_BUFFER_BIT);
        dibujaLotes(gl->lotes, m, gl->programas[1], gl->texturas, gl->atlas, pixel, 1);
        gl->idsPick.assign(static_cast<size_t>(ancho) * alto, 0);
        glPixelStorei(GL_PACK_ALIGNMENT, 4);
        glReadPixels(0, 0, ancho, alto, GL_RED_INTEGER, GL_UNSIGNED_INT, gl->idsPick.data());
        glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(anterior));
        glViewport(vp[0], vp[1], vp[2], vp[3]);
        glUseProgram(0);
        gl->vistaPick = firma;
        gl->construccionPick = gl->estadisticas.construcciones;
    }
    const int x0 = std::max(rectangulo.minimo.x, 0);
    const int y0 = std::max(rectangulo.minimo.y, 0);
    const int x1 = std::min(rectangulo.maximo.x, ancho - 1);
    const int y1 = std::min(rectangulo.maximo.y, alto - 1);
    std::vector<uint32_t> ids;
    for (int y = y0; y <= y1; ++y)
    {
        for (int x = x0; x <= x1; ++x)
        {
            const uint32_t id = gl->idsPick[static_cast<size_t>(y) * ancho + x];
            if (id != 0 && id <= gl->picks.size())
            {
                ids.push_back(id);
            }
        }
    }
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    for (const uint32_t id : ids)
    {
        void* p = gl->picks[id - 1];
        if (p != nullptr && std::find(picks.begin(), picks.end(), p) == picks.end())
        {
            picks.push_back(p);
        }
    }
}

}  // namespace cad
