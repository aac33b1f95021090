// The renderer's GLSL programs: points, lines widened and stippled by a geometry stage, and
// surfaces; each also in a form that writes pick ids.
#include <string>

#include "LotesGL.h"

namespace cad::gpu
{

namespace
{

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

}  // namespace

GLuint enlazaPrograma(int tipo, bool pick, std::string& error)
{
    const char* vs[3] = {kVsPuntos, kVsLineas, kVsCaras};
    const char* gs[3] = {nullptr, kGsLineas, nullptr};
    const char* fs[3] = {kFsPuntos, kFsLineas, kFsCaras};
    if (tipo < 0 || tipo > 2)
    {
        return 0;
    }
    return enlaza(vs[tipo], gs[tipo], fs[tipo], pick, error);
}

}  // namespace cad::gpu
