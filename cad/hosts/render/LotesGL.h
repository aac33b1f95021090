// The renderer's batches: vertex layouts, what keeps two primitives out of one draw call, the
// builder that turns retained primitives into batches, their upload, and the programs.
#pragma once

#ifndef GL_GLEXT_PROTOTYPES
#define GL_GLEXT_PROTOTYPES
#endif
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include <GL/glcorearb.h>

#include "PantallaReferencia.h"
#include "Tipografia.h"
#include "base/FicheroAtomico.h"

namespace cad::gpu
{

// Vertices are kept relative to the centre of a cell of this many drawing units, so that a
// float keeps a fraction of a millimetre within the cell whatever the coordinates are.
constexpr double kCelda = 4096.0;

// Pixels per bit of a 16-bit stipple pattern: a pattern's 16 bits cover 48 pixels.
constexpr float kPixelesPorBit = 3.0F;

constexpr float kTamanoPunto = 4.0F;
constexpr float kTamanoPuntoGrupo = 2.0F;
constexpr double kTamanoMarca = 7.0;  // half the side of a marker, pixels

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
inline float aFloat(double v)
{
    constexpr double kLimite = 3.0e38;
    return static_cast<float>(v > kLimite ? kLimite : (v < -kLimite ? -kLimite : v));
}

// The cell of a coordinate. A value from a damaged file (not a number, or beyond any
// cell an integer counts) falls in cell 0, where it draws nowhere useful but harms nothing.
inline int64_t celda(double v)
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

inline uint32_t opaco(uint32_t abgr)
{
    return abgr | 0xFF000000U;
}

// The kernel hands a model's material colour with red and blue in the places of ARGB.
inline uint32_t argbAAbgr(uint32_t argb)
{
    return (argb & 0xFF00FF00U) | ((argb & 0xFFU) << 16) | ((argb >> 16) & 0xFFU);
}

inline uint32_t estiloLinea(uint16_t patron, float grosor)
{
    const float g = std::isfinite(grosor) ? std::clamp(grosor, 1.0F, 64.0F) : 1.0F;
    return static_cast<uint32_t>(patron) | (static_cast<uint32_t>(std::lround(g * 16.0F)) << 16);
}

inline bool finito(const Punto3<double>& p)
{
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

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

// Moves the CPU batches to the GPU; their CPU memory goes as each is sent.
void subeLotes(std::map<claveLote_t, loteCPU_t>& cpu, std::vector<loteGPU_t>& gpu, size_t& bytes);
void liberaLotes(std::vector<loteGPU_t>& lotes);

// The program that draws batches of `tipo` (tipoLote_e); with `pick`, the one that writes their
// ids. 0, with the reason, when it does not compile or link.
GLuint enlazaPrograma(int tipo, bool pick, std::string& error);

}  // namespace cad::gpu
