// PantallaGL: GPU buffers built from the retained scene, the programs that draw them, and the
// id buffer that picks.
#include "PantallaGL.h"

#define GL_GLEXT_PROTOTYPES
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <limits>
#include <map>
#include <tuple>
#include <unordered_map>

#include <GL/glcorearb.h>

#include "Imagen.h"
#include "Tipografia.h"
#include "base/FicheroAtomico.h"

namespace cad
{

namespace
{

// Vertices are kept relative to the centre of a cell of this many drawing units, so that a
// float keeps a fraction of a millimetre within the cell whatever the coordinates are.
constexpr double kCelda = 4096.0;

// Pixels per bit of a 16-bit stipple pattern: a pattern's 16 bits cover 48 pixels.
constexpr float kPixelesPorBit = 3.0F;

constexpr float kTamanoPunto = 4.0F;
constexpr float kTamanoPuntoGrupo = 2.0F;
constexpr double kTamanoMarca = 7.0;  // half the side of a marker, pixels

// --- programs ---------------------------------------------------------------------------

const char* const kCabecera = "#version 330 core\n";

// Points: position, colour, id.
const char* const kVsPuntos = R"(
layout(location = 0) in vec3 pos;
layout(location = 1) in vec4 color;
layout(location = 2) in uint id;
uniform mat4 mvp;
uniform float tamano;
out vec4 vColor;
flat out uint vId;
void main()
{
    gl_Position = mvp * vec4(pos, 1.0);
    gl_PointSize = tamano;
    vColor = color;
    vId = id;
}
)";

const char* const kFsPuntos = R"(
in vec4 vColor;
flat in uint vId;
#ifdef PICK
out uint salida;
void main() { salida = vId; }
#else
out vec4 salida;
void main() { salida = vec4(vColor.rgb, 1.0); }
#endif
)";

// Lines: each segment becomes a quad of its width, and the stipple runs along it in pixels.
const char* const kVsLineas = R"(
layout(location = 0) in vec3 pos;
layout(location = 1) in vec4 color;
layout(location = 2) in uint id;
layout(location = 3) in uint estilo;
uniform mat4 mvp;
uniform vec3 centro;
uniform float factor;
out vec4 gColor;
flat out uint gId;
flat out uint gEstilo;
void main()
{
    gl_Position = mvp * vec4(centro + (pos - centro) * factor, 1.0);
    gColor = color;
    gId = id;
    gEstilo = estilo;
}
)";

const char* const kGsLineas = R"(
layout(lines) in;
layout(triangle_strip, max_vertices = 4) out;
in vec4 gColor[];
flat in uint gId[];
flat in uint gEstilo[];
uniform vec2 vista;
out vec4 vColor;
out float vDistancia;
flat out uint vId;
flat out uint vPatron;
void main()
{
    vec4 a = gl_in[0].gl_Position;
    vec4 b = gl_in[1].gl_Position;
    vec2 pa = a.xy / a.w * vista * 0.5;
    vec2 pb = b.xy / b.w * vista * 0.5;
    vec2 d = pb - pa;
    float largo = length(d);
    vec2 dir = largo > 1e-6 ? d / largo : vec2(1.0, 0.0);
    float ancho = max(float(gEstilo[0] >> 16u) / 16.0, 1.0);
    vec2 n = vec2(-dir.y, dir.x) * (ancho * 0.5) / (vista * 0.5);
    // A segment shorter than a pixel still covers one.
    vec2 e = dir * 0.5 / (vista * 0.5);
    vPatron = gEstilo[0] & 0xFFFFu;
    vId = gId[0];
    vColor = gColor[0];
    vDistancia = -0.5;
    gl_Position = vec4((a.xy / a.w - e + n) * a.w, a.z, a.w); EmitVertex();
    gl_Position = vec4((a.xy / a.w - e - n) * a.w, a.z, a.w); EmitVertex();
    vColor = gColor[1];
    vDistancia = largo + 0.5;
    gl_Position = vec4((b.xy / b.w + e + n) * b.w, b.z, b.w); EmitVertex();
    gl_Position = vec4((b.xy / b.w + e - n) * b.w, b.z, b.w); EmitVertex();
    EndPrimitive();
}
)";

const char* const kFsLineas = R"(
in vec4 vColor;
in float vDistancia;
flat in uint vId;
flat in uint vPatron;
uniform float pixelesPorBit;
#ifdef PICK
out uint salida;
#else
out vec4 salida;
#endif
void main()
{
    if (vPatron != 0xFFFFu)
    {
        int bit = int(floor(max(vDistancia, 0.0) / pixelesPorBit)) & 15;
        if (((vPatron >> uint(bit)) & 1u) == 0u) discard;
    }
#ifdef PICK
    salida = vId;
#else
    salida = vec4(vColor.rgb, 1.0);
#endif
}
)";

// Surfaces: lit by a light at the eye, flat from the screen derivatives where no normal came.
const char* const kVsCaras = R"(
layout(location = 0) in vec3 pos;
layout(location = 1) in vec4 color;
layout(location = 2) in uint id;
layout(location = 3) in vec3 normal;
layout(location = 4) in vec2 uv;
uniform mat4 mvp;
uniform mat4 mv;
uniform vec3 centro;
uniform float factor;
out vec4 vColor;
out vec3 vOjo;
out vec3 vNormal;
out vec2 vUV;
flat out uint vId;
void main()
{
    vec4 p = vec4(centro + (pos - centro) * factor, 1.0);
    gl_Position = mvp * p;
    vOjo = (mv * p).xyz;
    vNormal = mat3(mv) * normal;
    vColor = color;
    vUV = uv;
    vId = id;
}
)";

const char* const kFsCaras = R"(
in vec4 vColor;
in vec3 vOjo;
in vec3 vNormal;
in vec2 vUV;
flat in uint vId;
// 0 plain colour, 1 lit, 2 lit texture, 3 letters of the atlas
uniform int forma;
uniform sampler2D textura;
uniform float opacidad;
uniform int punteado;
#ifdef PICK
out uint salida;
#else
out vec4 salida;
#endif
void main()
{
    if (punteado != 0 && ((int(gl_FragCoord.x) + int(gl_FragCoord.y)) & 1) == 0) discard;
    float cobertura = 1.0;
    if (forma == 3)
    {
        cobertura = texture(textura, vUV).r;
        if (cobertura < 0.5) discard;
    }
#ifdef PICK
    salida = vId;
#else
    vec3 c = vColor.rgb;
    if (forma == 1 || forma == 2)
    {
        vec3 n = length(vNormal) > 1e-6 ? normalize(vNormal)
                                         : normalize(cross(dFdx(vOjo), dFdy(vOjo)));
        float luz = 0.3 + 0.7 * abs(n.z);
        if (forma == 2) c *= texture(textura, vUV).rgb;
        c *= luz;
    }
    salida = vec4(c, opacidad);
#endif
}
)";

GLuint compila(GLenum tipo, const std::string& fuente, std::string& error)
{
    const GLuint s = glCreateShader(tipo);
    const char* t = fuente.c_str();
    glShaderSource(s, 1, &t, nullptr);
    glCompileShader(s);
    GLint ok = 0;
    glGetShaderiv(s, GL_COMPILE_STATUS, &ok);
    if (ok == 0)
    {
        char registro[2048] = {};
        glGetShaderInfoLog(s, sizeof registro, nullptr, registro);
        error = std::string("no compila un sombreador: ") + registro;
        glDeleteShader(s);
        return 0;
    }
    return s;
}

GLuint enlaza(const char* vs, const char* gs, const char* fs, bool pick, std::string& error)
{
    const std::string cabecera = std::string(kCabecera) + (pick ? "#define PICK\n" : "");
    const GLuint v = compila(GL_VERTEX_SHADER, cabecera + vs, error);
    const GLuint g = gs != nullptr ? compila(GL_GEOMETRY_SHADER, cabecera + gs, error) : 0;
    const GLuint f = compila(GL_FRAGMENT_SHADER, cabecera + fs, error);
    GLuint p = 0;
    if (v != 0 && f != 0 && (gs == nullptr || g != 0))
    {
        p = glCreateProgram();
        glAttachShader(p, v);
        if (g != 0)
        {
            glAttachShader(p, g);
        }
        glAttachShader(p, f);
        glLinkProgram(p);
        GLint ok = 0;
        glGetProgramiv(p, GL_LINK_STATUS, &ok);
        if (ok == 0)
        {
            char registro[2048] = {};
            glGetProgramInfoLog(p, sizeof registro, nullptr, registro);
            error = std::string("no enlaza un programa: ") + registro;
            glDeleteProgram(p);
            p = 0;
        }
    }
    for (const GLuint s : {v, g, f})
    {
        if (s != 0)
        {
            glDeleteShader(s);
        }
    }
    return p;
}

// --- CPU side of the buffers ----------------------------------------------------------

struct verticePunto_t
{
    float x, y, z;
    uint32_t color;
    uint32_t id;
};

struct verticeLinea_t
{
    float x, y, z;
    uint32_t color;
    uint32_t id;
    uint32_t estilo;  // stipple in the low half, width * 16 in the high half
};

struct verticeCara_t
{
    float x, y, z;
    uint32_t color;
    uint32_t id;
    float nx, ny, nz;
    float u, v;
};

enum tipoLote_e
{
    kLotePuntos = 0,
    kLoteLineas = 1,
    kLoteCaras = 2
};

// What keeps two primitives out of one draw call.
struct claveLote_t
{
    int capa = 0;   // 0 scene, 1 on top (setPrimerPlano)
    int orden = 0;  // 0 opaque, 1 hidden-line fill, 2 transparent
    int tipo = kLotePuntos;
    int forma = 0;     // surfaces: as the fragment program's `forma`
    int textura = -1;  // material id whose image is used
    int punteado = 0;
    float tamano = 0.0F;  // points
    int escalaFija = -1;  // index of the constant-scale object, -1 for none
    int64_t cx = 0, cy = 0, cz = 0;

    auto tupla() const
    {
        return std::tie(capa, orden, tipo, forma, textura, punteado, tamano, escalaFija, cx, cy,
                        cz);
    }
    bool operator<(const claveLote_t& o) const { return tupla() < o.tupla(); }
};

struct loteCPU_t
{
    Punto3<double> origen;
    std::vector<verticePunto_t> puntos;
    std::vector<verticeLinea_t> lineas;
    std::vector<verticeCara_t> caras;
    std::vector<uint32_t> indices;  // surfaces and lines of objects
};

struct loteGPU_t
{
    claveLote_t clave;
    Punto3<double> origen;
    GLuint vao = 0;
    GLuint vbo = 0;
    GLuint ebo = 0;
    GLsizei cuenta = 0;  // vertices, or indices when indexed
    bool indexado = false;
    Punto3<double> centroEscala;
    double escala = 1.0;
    double pixeles = 0.0;
};

// A double as a float; a value beyond any float (a damaged coordinate, a view zoomed without
// end) is held at the float's limit rather than converted out of range.
float aFloat(double v)
{
    constexpr double kLimite = 3.0e38;
    return static_cast<float>(v > kLimite ? kLimite : (v < -kLimite ? -kLimite : v));
}

// The cell of a coordinate. A value from a damaged file (not a number, or beyond any
// cell an integer counts) falls in cell 0, where it draws nowhere useful but harms nothing.
int64_t celda(double v)
{
    const double c = std::floor(v / kCelda);
    return std::isfinite(c) && std::fabs(c) < 1.0e15 ? static_cast<int64_t>(c) : 0;
}

// Room for `extra` more elements, growing at least twofold so that many small primitives
// appended one by one stay linear.
template <typename T>
void asegura(std::vector<T>& v, size_t extra)
{
    if (v.capacity() - v.size() < extra)
    {
        v.reserve(std::max(v.size() + extra, 2 * v.capacity()));
        // Large bodies in huge pages: a fault per 4 kB touched costs more than the copy.
        paginasGrandes(v.data(), v.capacity() * sizeof(T));
    }
}

uint32_t opaco(uint32_t abgr)
{
    return abgr | 0xFF000000U;
}

// The kernel hands a model's material colour with red and blue in the places of ARGB.
uint32_t argbAAbgr(uint32_t argb)
{
    return (argb & 0xFF00FF00U) | ((argb & 0xFFU) << 16) | ((argb >> 16) & 0xFFU);
}

uint32_t estiloLinea(uint16_t patron, float grosor)
{
    const float g = std::isfinite(grosor) ? std::clamp(grosor, 1.0F, 64.0F) : 1.0F;
    return static_cast<uint32_t>(patron) | (static_cast<uint32_t>(std::lround(g * 16.0F)) << 16);
}

bool finito(const Punto3<double>& p)
{
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

// Triangulates a polygon given by its corners: ear clipping on the plane it mostly lies in.
// Appends the corners' indices, three per triangle, to `t`. Clipping costs the cube of the
// corners at worst, so an outline of more than 128 goes as a fan.
void triangula(const std::vector<Punto3<double>>& p, std::vector<std::array<size_t, 3>>& t)
{
    const size_t n = p.size();
    if (n < 3)
    {
        return;
    }
    if (n == 3 || n > 128)
    {
        for (size_t i = 1; i + 1 < n; ++i)
        {
            t.push_back({0, i, i + 1});
        }
        return;
    }
    // Newell's normal picks the plane to work in.
    double nx = 0, ny = 0, nz = 0;
    for (size_t i = 0; i < n; ++i)
    {
        const Punto3<double>& a = p[i];
        const Punto3<double>& b = p[(i + 1) % n];
        nx += (a.y - b.y) * (a.z + b.z);
        ny += (a.z - b.z) * (a.x + b.x);
        nz += (a.x - b.x) * (a.y + b.y);
    }
    const double ax = std::fabs(nx), ay = std::fabs(ny), az = std::fabs(nz);
    const int eje = az >= ax && az >= ay ? 2 : (ax >= ay ? 0 : 1);
    const double signo = (eje == 0 ? nx : eje == 1 ? ny : nz) >= 0 ? 1.0 : -1.0;
    auto u = [&](size_t i) { return eje == 0 ? p[i].y : p[i].x; };
    auto v = [&](size_t i) { return eje == 2 ? p[i].y : p[i].z; };
    auto cruz = [&](size_t a, size_t b, size_t c)
    { return ((u(b) - u(a)) * (v(c) - v(a)) - (v(b) - v(a)) * (u(c) - u(a))) * signo; };
    std::vector<size_t> quedan(n);
    for (size_t i = 0; i < n; ++i)
    {
        quedan[i] = i;
    }
    // Newell's axis 1 (y) runs z-x, so its winding is the other way round.
    const double orientacion = eje == 1 ? -1.0 : 1.0;
    size_t intentos = 0;
    while (quedan.size() > 3 && intentos < quedan.size())
    {
        const size_t m = quedan.size();
        bool cortada = false;
        for (size_t k = 0; k < m; ++k)
        {
            const size_t a = quedan[(k + m - 1) % m], b = quedan[k], c = quedan[(k + 1) % m];
            if (cruz(a, b, c) * orientacion <= 0)
            {
                continue;
            }
            bool vacia = true;
            for (const size_t q : quedan)
            {
                if (q == a || q == b || q == c)
                {
                    continue;
                }
                if (cruz(a, b, q) * orientacion >= 0 && cruz(b, c, q) * orientacion >= 0 &&
                    cruz(c, a, q) * orientacion >= 0)
                {
                    vacia = false;
                    break;
                }
            }
            if (vacia)
            {
                t.push_back({a, b, c});
                quedan.erase(quedan.begin() + static_cast<std::ptrdiff_t>(k));
                cortada = true;
                break;
            }
        }
        intentos = cortada ? 0 : intentos + 1;
        if (!cortada)
        {
            break;
        }
    }
    // Whatever a self-crossing outline leaves goes as a fan.
    for (size_t i = 1; i + 1 < quedan.size(); ++i)
    {
        t.push_back({quedan[0], quedan[i], quedan[i + 1]});
    }
}

}  // namespace

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
    const char* vs[3] = {kVsPuntos, kVsLineas, kVsCaras};
    const char* gs[3] = {nullptr, kGsLineas, nullptr};
    const char* fs[3] = {kFsPuntos, kFsLineas, kFsCaras};
    for (int pick = 0; pick < 2; ++pick)
    {
        for (int t = 0; t < 3; ++t)
        {
            gl->programas[pick][t] = enlaza(vs[t], gs[t], fs[t], pick != 0, error);
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

namespace
{

void liberaLotes(std::vector<loteGPU_t>& lotes)
{
    for (loteGPU_t& l : lotes)
    {
        glDeleteVertexArrays(1, &l.vao);
        glDeleteBuffers(1, &l.vbo);
        if (l.ebo != 0)
        {
            glDeleteBuffers(1, &l.ebo);
        }
    }
    lotes.clear();
}

}  // namespace

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

// --- building the buffers -----------------------------------------------------------

namespace
{

// Fills batches from primitives. One instance per build of the scene or of the overlay.
class Constructor
{
public:
    Constructor(const std::map<int16_t, PantallaReferencia::material_t>& materiales_,
                Tipografia* letras_, uint32_t fondo_, double pixel_,
                const Vector3D<double>& derecha_, const Vector3D<double>& arriba_)
        : materiales(materiales_),
          letras(letras_),
          fondo(opaco(fondo_)),
          pixel(pixel_),
          derecha(derecha_),
          arribaPantalla(arriba_)
    {
    }

    std::map<claveLote_t, loteCPU_t> lotes;
    std::vector<std::pair<claveLote_t, const primitiva_t*>> escalas;
    Rect3<double> caja;
    bool cajaVacia = true;

    void anade(const primitiva_t& pr, uint32_t id, int escalaFija);
    // A marker of the screen size.
    void anadeMarca(const primitiva_t& pr, uint32_t id);

private:
    claveLote_t claveDe(const primitiva_t& pr, int tipo, const Punto3<double>& ancla) const
    {
        claveLote_t c;
        c.capa = pr.primerPlano ? 1 : 0;
        c.tipo = tipo;
        c.punteado = tipo == kLoteCaras && pr.patron != PantallaCAD::kLineaContinua ? 1 : 0;
        c.cx = celda(ancla.x);
        c.cy = celda(ancla.y);
        c.cz = celda(ancla.z);
        return c;
    }
    loteCPU_t& lote(const claveLote_t& c)
    {
        auto [it, nuevo] = lotes.try_emplace(c);
        if (nuevo)
        {
            it->second.origen = Punto3<double>((static_cast<double>(c.cx) + 0.5) * kCelda,
                                               (static_cast<double>(c.cy) + 0.5) * kCelda,
                                               (static_cast<double>(c.cz) + 0.5) * kCelda);
        }
        return it->second;
    }
    void amplia(const Punto3<double>& p)
    {
        if (cajaVacia)
        {
            caja = Rect3<double>(p, p);
            cajaVacia = false;
            return;
        }
        caja.minimo.x = std::min(caja.minimo.x, p.x);
        caja.minimo.y = std::min(caja.minimo.y, p.y);
        caja.minimo.z = std::min(caja.minimo.z, p.z);
        caja.maximo.x = std::max(caja.maximo.x, p.x);
        caja.maximo.y = std::max(caja.maximo.y, p.y);
        caja.maximo.z = std::max(caja.maximo.z, p.z);
    }
    static void relativo(const loteCPU_t& l, const Punto3<double>& p, float& x, float& y, float& z)
    {
        x = aFloat(p.x - l.origen.x);
        y = aFloat(p.y - l.origen.y);
        z = aFloat(p.z - l.origen.z);
    }
    void linea(loteCPU_t& l, const Punto3<double>& a, const Punto3<double>& b, uint32_t ca,
               uint32_t cb, uint32_t id, uint32_t estilo)
    {
        verticeLinea_t va{};
        relativo(l, a, va.x, va.y, va.z);
        va.color = ca;
        va.id = id;
        va.estilo = estilo;
        verticeLinea_t vb = va;
        relativo(l, b, vb.x, vb.y, vb.z);
        vb.color = cb;
        l.lineas.push_back(va);
        l.lineas.push_back(vb);
        amplia(a);
        amplia(b);
    }
    void textos(const primitiva_t& pr, uint32_t id);
    void objeto(const primitiva_t& pr, uint32_t id, int escalaFija);
    void poligono(const primitiva_t& pr, uint32_t id);

    const std::map<int16_t, PantallaReferencia::material_t>& materiales;
    Tipografia* letras;
    uint32_t fondo;
    double pixel;
    Vector3D<double> derecha;
    Vector3D<double> arribaPantalla;
    std::vector<std::array<size_t, 3>> triangulos;
    std::vector<cuadroGlifo_t> cuadros;
};

void Constructor::anade(const primitiva_t& pr, uint32_t id, int escalaFija)
{
    if (pr.puntos.empty())
    {
        return;
    }
    const uint32_t color = opaco(pr.color);
    switch (pr.tipo)
    {
        case primitiva_t::kPunto:
        case primitiva_t::kGrupoPuntos:
        {
            const float tam = pr.tipo == primitiva_t::kPunto ? kTamanoPunto : kTamanoPuntoGrupo;
            // A group of millions of points mostly stays in one cell: the batch is looked
            // up again only when a point leaves the cell of the one before.
            loteCPU_t* l = nullptr;
            double x0 = 0, y0 = 0, z0 = 0;
            for (size_t i = 0; i < pr.puntos.size(); ++i)
            {
                const Punto3<double>& p = pr.puntos[i];
                if (!finito(p))
                {
                    continue;
                }
                if (l == nullptr || p.x < x0 || p.x >= x0 + kCelda || p.y < y0 ||
                    p.y >= y0 + kCelda || p.z < z0 || p.z >= z0 + kCelda)
                {
                    claveLote_t c = claveDe(pr, kLotePuntos, p);
                    c.tamano = tam;
                    l = &lote(c);
                    x0 = static_cast<double>(c.cx) * kCelda;
                    y0 = static_cast<double>(c.cy) * kCelda;
                    z0 = static_cast<double>(c.cz) * kCelda;
                    asegura(l->puntos, pr.puntos.size() - i);
                }
                verticePunto_t v;
                relativo(*l, p, v.x, v.y, v.z);
                v.color = i < pr.colores.size() ? opaco(pr.colores[i]) : color;
                v.id = id;
                l->puntos.push_back(v);
                amplia(p);
            }
            break;
        }
        case primitiva_t::kLinea:
        case primitiva_t::kPolilinea:
        case primitiva_t::kVector:
        {
            const uint32_t estilo = estiloLinea(pr.patron, pr.grosor);
            loteCPU_t& l = lote(claveDe(pr, kLoteLineas, pr.puntos[0]));
            const size_t n = pr.puntos.size();
            for (size_t i = 0; i + 1 < n; ++i)
            {
                if (finito(pr.puntos[i]) && finito(pr.puntos[i + 1]))
                {
                    linea(l, pr.puntos[i], pr.puntos[i + 1], color, color, id, estilo);
                }
            }
            if (pr.tipo == primitiva_t::kPolilinea && pr.cerrada && n > 2 &&
                finito(pr.puntos[n - 1]) && finito(pr.puntos[0]))
            {
                linea(l, pr.puntos[n - 1], pr.puntos[0], color, color, id, estilo);
            }
            if (pr.tipo == primitiva_t::kVector && n == 2 && finito(pr.puntos[0]) &&
                finito(pr.puntos[1]))
            {
                // The arrow's head: two strokes of a fifth of its length.
                const Vector3D<double> d = pr.puntos[1] - pr.puntos[0];
                const double largo = d.modulo();
                if (largo > 0)
                {
                    Vector3D<double> lado = d.cross(Vector3D<double>(0, 0, 1));
                    if (lado.modulo() < 1e-9 * largo)
                    {
                        lado = d.cross(Vector3D<double>(1, 0, 0));
                    }
                    lado = lado.unit() * (largo * 0.08);
                    const Punto3<double> base = pr.puntos[1] - d * 0.2;
                    linea(l, pr.puntos[1], base + lado, color, color, id, estilo);
                    linea(l, pr.puntos[1], base - lado, color, color, id, estilo);
                }
            }
            break;
        }
        case primitiva_t::kPoligono:
            poligono(pr, id);
            break;
        case primitiva_t::kTexto:
            textos(pr, id);
            break;
        case primitiva_t::kObjeto:
            objeto(pr, id, escalaFija);
            break;
        case primitiva_t::kMarca:
            anadeMarca(pr, id);
            break;
    }
}

void Constructor::poligono(const primitiva_t& pr, uint32_t id)
{
    for (const Punto3<double>& p : pr.puntos)
    {
        if (!finito(p))
        {
            return;
        }
    }
    triangulos.clear();
    triangula(pr.puntos, triangulos);
    loteCPU_t& l = lote(claveDe(pr, kLoteCaras, pr.puntos[0]));
    const uint32_t color = opaco(pr.color);
    for (const auto& t : triangulos)
    {
        for (const size_t i : t)
        {
            verticeCara_t v{};
            relativo(l, pr.puntos[i], v.x, v.y, v.z);
            v.color = color;
            v.id = id;
            l.indices.push_back(static_cast<uint32_t>(l.caras.size()));
            l.caras.push_back(v);
            amplia(pr.puntos[i]);
        }
    }
}

void Constructor::textos(const primitiva_t& pr, uint32_t id)
{
    const Punto3<double>& p = pr.puntos[0];
    if (letras == nullptr || !finito(p) || !std::isfinite(pr.altura) || pr.altura <= 0.0F)
    {
        return;
    }
    // Lines break at "\n" (a "\r" before it goes too), 1.6 heights apart. Bottom alignment
    // puts the last line's baseline on the point, top the first line's capitals under it,
    // middle the block's centre on it.
    std::vector<std::string> lineas(1);
    for (const char ch : pr.texto)
    {
        if (ch == '\n')
        {
            if (!lineas.back().empty() && lineas.back().back() == '\r')
            {
                lineas.back().pop_back();
            }
            lineas.emplace_back();
        }
        else
        {
            lineas.back().push_back(ch);
        }
    }
    const double interlineado = 1.6;
    const double bloque = static_cast<double>(lineas.size() - 1) * interlineado;
    const int h = pr.alineacion & 3;
    const int vert = pr.alineacion & 12;
    const double dy0 = vert == 4 ? 0.5 * bloque - 0.5 : (vert == 8 ? -1.0 : bloque);
    const double a = pr.altura;
    const double r = std::isfinite(pr.rotacion) ? pr.rotacion : 0.0;
    const double co = std::cos(r), si = std::sin(r);
    claveLote_t c = claveDe(pr, kLoteCaras, p);
    c.forma = 3;
    loteCPU_t& l = lote(c);
    const uint32_t color = opaco(pr.color);
    for (size_t k = 0; k < lineas.size(); ++k)
    {
        cuadros.clear();
        const double ancho = letras->compone(lineas[k], cuadros);
        const double dx = h == 1 ? -0.5 * ancho : (h == 2 ? -ancho : 0.0);
        const double dy = dy0 - static_cast<double>(k) * interlineado;
        auto esquina = [&](double ex, double ey, float u, float v)
        {
            const double x = (ex + dx) * a, y = (ey + dy) * a;
            const Punto3<double> q(p.x + x * co - y * si, p.y + x * si + y * co, p.z);
            verticeCara_t w{};
            relativo(l, q, w.x, w.y, w.z);
            w.color = color;
            w.id = id;
            w.nz = 1.0F;
            w.u = u;
            w.v = v;
            l.caras.push_back(w);
            amplia(q);
        };
        for (const cuadroGlifo_t& g : cuadros)
        {
            const auto base = static_cast<uint32_t>(l.caras.size());
            esquina(g.x0, g.y0, g.u0, g.v1);
            esquina(g.x1, g.y0, g.u1, g.v1);
            esquina(g.x1, g.y1, g.u1, g.v0);
            esquina(g.x0, g.y1, g.u0, g.v0);
            for (const uint32_t q : {0U, 1U, 2U, 0U, 2U, 3U})
            {
                l.indices.push_back(base + q);
            }
        }
    }
}

void Constructor::objeto(const primitiva_t& pr, uint32_t id, int escalaFija)
{
    const size_t n = pr.puntos.size();
    const int modo = pr.modo;
    // The colour of the faces: the model's own, else its material's, else the object's.
    uint32_t colorCaras = opaco(pr.color);
    auto material = materiales.find(pr.material);
    if (pr.colorMaterial != 0)
    {
        colorCaras = opaco(argbAAbgr(pr.colorMaterial));
    }
    else if (material != materiales.end() &&
             (modo == PantallaCAD::kRealista || modo == PantallaCAD::kTexturas))
    {
        colorCaras = opaco(material->second.color);
    }
    auto colorVertice = [&](size_t i, uint32_t defecto)
    { return i < pr.colores.size() ? opaco(pr.colores[i]) : defecto; };

    Punto3<double> ancla = pr.puntos[0];
    claveLote_t base = claveDe(pr, kLoteCaras, ancla);
    base.escalaFija = escalaFija;

    // Edges: the model's own, else the outlines of its faces in wireframe.
    const bool conAristas = modo == PantallaCAD::kAlambrica || modo == PantallaCAD::kOculto ||
                            modo == PantallaCAD::kRayosX;
    if (conAristas)
    {
        claveLote_t c = base;
        c.tipo = kLoteLineas;
        loteCPU_t& l = lote(c);
        const uint32_t estilo = estiloLinea(pr.patron, pr.grosor);
        const uint32_t color = opaco(pr.color);
        auto arista = [&](size_t a, size_t b)
        {
            if (a < n && b < n && finito(pr.puntos[a]) && finito(pr.puntos[b]))
            {
                linea(l, pr.puntos[a], pr.puntos[b], colorVertice(a, color), colorVertice(b, color),
                      id, estilo);
            }
        };
        if (!pr.aristas.empty())
        {
            for (size_t i = 0; i + 1 < pr.aristas.size(); i += 2)
            {
                arista(pr.aristas[i], pr.aristas[i + 1]);
            }
        }
        else
        {
            for (size_t i = 0; i < pr.caras.size();)
            {
                const auto k = static_cast<size_t>(std::max(pr.caras[i], 0));
                if (i + 1 + k > pr.caras.size())
                {
                    break;
                }
                for (size_t j = 0; j < k; ++j)
                {
                    arista(static_cast<size_t>(pr.caras[i + 1 + j]),
                           static_cast<size_t>(pr.caras[i + 1 + (j + 1) % k]));
                }
                i += 1 + k;
            }
        }
    }
    if (modo == PantallaCAD::kAlambrica || pr.caras.empty())
    {
        return;
    }

    claveLote_t c = base;
    switch (modo)
    {
        case PantallaCAD::kConceptual:
        case PantallaCAD::kRealista:
            c.forma = 1;
            break;
        case PantallaCAD::kOculto:
            c.forma = 0;
            c.orden = 1;
            break;
        case PantallaCAD::kRayosX:
            c.forma = 0;
            c.orden = 2;
            break;
        case PantallaCAD::kTexturas:
            c.forma = 1;
            if (material != materiales.end() && !material->second.imagen.empty() &&
                pr.uv.size() >= 2 * n)
            {
                c.forma = 2;
                c.textura = pr.material;
                colorCaras = 0xFFFFFFFFU;
            }
            break;
        default:
            c.forma = 1;
            break;
    }
    loteCPU_t& l = lote(c);
    const auto primero = static_cast<uint32_t>(l.caras.size());
    asegura(l.caras, n);
    asegura(l.indices, pr.caras.size() * 3 / 2);
    for (size_t i = 0; i < n; ++i)
    {
        verticeCara_t v{};
        relativo(l, finito(pr.puntos[i]) ? pr.puntos[i] : l.origen, v.x, v.y, v.z);
        v.color = modo == PantallaCAD::kOculto ? fondo : colorVertice(i, colorCaras);
        v.id = id;
        if (i < pr.normales.size())
        {
            v.nx = pr.normales[i].x;
            v.ny = pr.normales[i].y;
            v.nz = pr.normales[i].z;
        }
        if (2 * i + 1 < pr.uv.size())
        {
            v.u = pr.uv[2 * i];
            v.v = 1.0F - pr.uv[2 * i + 1];
        }
        l.caras.push_back(v);
        if (finito(pr.puntos[i]))
        {
            amplia(pr.puntos[i]);
        }
    }
    std::vector<Punto3<double>> esquinas;
    for (size_t i = 0; i < pr.caras.size();)
    {
        const auto k = static_cast<size_t>(std::max(pr.caras[i], 0));
        if (i + 1 + k > pr.caras.size())
        {
            break;
        }
        const int32_t* idx = &pr.caras[i + 1];
        bool dentro = true;
        for (size_t j = 0; j < k; ++j)
        {
            dentro = dentro && idx[j] >= 0 && static_cast<size_t>(idx[j]) < n;
        }
        if (dentro && k >= 3)
        {
            if (k == 3 || k == 4)
            {
                // Triangles and quads, the bulk of a mesh, go as fans without a search.
                for (size_t j = 1; j + 1 < k; ++j)
                {
                    l.indices.push_back(primero + static_cast<uint32_t>(idx[0]));
                    l.indices.push_back(primero + static_cast<uint32_t>(idx[j]));
                    l.indices.push_back(primero + static_cast<uint32_t>(idx[j + 1]));
                }
            }
            else
            {
                esquinas.clear();
                for (size_t j = 0; j < k; ++j)
                {
                    esquinas.push_back(pr.puntos[static_cast<size_t>(idx[j])]);
                }
                triangulos.clear();
                triangula(esquinas, triangulos);
                for (const auto& t : triangulos)
                {
                    for (const size_t q : t)
                    {
                        l.indices.push_back(primero + static_cast<uint32_t>(idx[q]));
                    }
                }
            }
        }
        i += 1 + k;
    }
}

void Constructor::anadeMarca(const primitiva_t& pr, uint32_t id)
{
    const Punto3<double>& p = pr.puntos[0];
    if (!finito(p))
    {
        return;
    }
    primitiva_t capa;
    capa.primerPlano = true;
    loteCPU_t& l = lote(claveDe(capa, kLoteLineas, p));
    const uint32_t color = opaco(pr.color);
    const uint32_t estilo = estiloLinea(PantallaCAD::kLineaContinua, 2.0F);
    const double s = kTamanoMarca * pixel;
    auto en = [&](double x, double y) { return p + derecha * (x * s) + arribaPantalla * (y * s); };
    auto trazo = [&](double x0, double y0, double x1, double y1)
    { linea(l, en(x0, y0), en(x1, y1), color, color, id, estilo); };
    switch (pr.modo)
    {
        case PantallaCAD::kMarcaExtremo:
            trazo(-1, -1, 1, -1);
            trazo(1, -1, 1, 1);
            trazo(1, 1, -1, 1);
            trazo(-1, 1, -1, -1);
            break;
        case PantallaCAD::kMarcaMedio:
            trazo(-1, -1, 1, -1);
            trazo(1, -1, 0, 1);
            trazo(0, 1, -1, -1);
            break;
        case PantallaCAD::kMarcaCentro:
            for (int i = 0; i < 16; ++i)
            {
                const double a0 = i * 3.14159265358979 / 8, a1 = (i + 1) * 3.14159265358979 / 8;
                trazo(std::cos(a0), std::sin(a0), std::cos(a1), std::sin(a1));
            }
            break;
        case PantallaCAD::kMarcaInterseccion:
            trazo(-1, -1, 1, 1);
            trazo(-1, 1, 1, -1);
            break;
        default:
            trazo(-1, 0, 1, 0);
            trazo(0, -1, 0, 1);
            break;
    }
}

void llenaBuffer(GLenum destino, const void* datos, size_t bytes)
{
    glBufferData(destino, static_cast<GLsizeiptr>(bytes), datos, GL_STATIC_DRAW);
}

template <typename V>
void subeAtributos(const std::vector<V>& datos, loteGPU_t& g)
{
    glBindBuffer(GL_ARRAY_BUFFER, g.vbo);
    llenaBuffer(GL_ARRAY_BUFFER, datos.data(), datos.size() * sizeof(V));
    const auto paso = static_cast<GLsizei>(sizeof(V));
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, paso, reinterpret_cast<void*>(0));
    glEnableVertexAttribArray(1);
    glVertexAttribPointer(1, 4, GL_UNSIGNED_BYTE, GL_TRUE, paso,
                          reinterpret_cast<void*>(offsetof(V, color)));
    glEnableVertexAttribArray(2);
    glVertexAttribIPointer(2, 1, GL_UNSIGNED_INT, paso, reinterpret_cast<void*>(offsetof(V, id)));
}

// Moves the CPU batches to the GPU; their CPU memory goes as each is sent.
void subeLotes(std::map<claveLote_t, loteCPU_t>& cpu, std::vector<loteGPU_t>& gpu, size_t& bytes)
{
    for (auto& [clave, l] : cpu)
    {
        loteGPU_t g;
        g.clave = clave;
        g.origen = l.origen;
        glGenVertexArrays(1, &g.vao);
        glBindVertexArray(g.vao);
        glGenBuffers(1, &g.vbo);
        if (clave.tipo == kLotePuntos)
        {
            subeAtributos(l.puntos, g);
            g.cuenta = static_cast<GLsizei>(l.puntos.size());
            bytes += l.puntos.size() * sizeof(verticePunto_t);
        }
        else if (clave.tipo == kLoteLineas)
        {
            subeAtributos(l.lineas, g);
            glEnableVertexAttribArray(3);
            glVertexAttribIPointer(3, 1, GL_UNSIGNED_INT, sizeof(verticeLinea_t),
                                   reinterpret_cast<void*>(offsetof(verticeLinea_t, estilo)));
            g.cuenta = static_cast<GLsizei>(l.lineas.size());
            bytes += l.lineas.size() * sizeof(verticeLinea_t);
        }
        else
        {
            subeAtributos(l.caras, g);
            glEnableVertexAttribArray(3);
            glVertexAttribPointer(3, 3, GL_FLOAT, GL_FALSE, sizeof(verticeCara_t),
                                  reinterpret_cast<void*>(offsetof(verticeCara_t, nx)));
            glEnableVertexAttribArray(4);
            glVertexAttribPointer(4, 2, GL_FLOAT, GL_FALSE, sizeof(verticeCara_t),
                                  reinterpret_cast<void*>(offsetof(verticeCara_t, u)));
            glGenBuffers(1, &g.ebo);
            glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, g.ebo);
            llenaBuffer(GL_ELEMENT_ARRAY_BUFFER, l.indices.data(),
                        l.indices.size() * sizeof(uint32_t));
            g.indexado = true;
            g.cuenta = static_cast<GLsizei>(l.indices.size());
            bytes += l.caras.size() * sizeof(verticeCara_t) + l.indices.size() * 4;
        }
        glBindVertexArray(0);
        l = loteCPU_t();
        if (g.cuenta > 0)
        {
            gpu.push_back(g);
        }
        else
        {
            glDeleteVertexArrays(1, &g.vao);
            glDeleteBuffers(1, &g.vbo);
            if (g.ebo != 0)
            {
                glDeleteBuffers(1, &g.ebo);
            }
        }
    }
    cpu.clear();
}

}  // namespace

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
    std::vector<std::tuple<int, Punto3<double>, double, double>> escalas;
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
            escalas.emplace_back(escalaFija, pr.centroEscala, pr.escala, pr.pixeles);
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
            const auto& e = escalas[static_cast<size_t>(g.clave.escalaFija)];
            g.centroEscala = std::get<1>(e);
            g.escala = std::get<2>(e);
            g.pixeles = std::get<3>(e);
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
