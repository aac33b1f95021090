// Test support: the pieces the entity catalogue's families build their samples from.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "base/geometria/Punto3.h"
#include "base/geometria/Vector2D.h"
#include "documento/EstiloTexto.h"
#include "documento/ReferenciaEntidades.h"
#include "intercambio/ExportaDXF.h"
#include "soporte/BloquesPrueba.h"
#include "soporte/CatalogoEntidades.h"
#include "soporte/PantallaGrabadora.h"

namespace cad::prueba
{

using P = Punto3<double>;

inline constexpr int kTodo = kExtremos | kPuntosMedios | kCercano;

inline const std::vector<P>& cuadrado()
{
    static const std::vector<P> v = {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}};
    return v;
}

inline Bytes entero(uint64_t v, int n)
{
    Bytes b;
    anade(b, v, n);
    return b;
}

inline Bytes f64(double v)
{
    Bytes b(8);
    std::memcpy(b.data(), &v, 8);
    return b;
}

inline Bytes f32(float v)
{
    Bytes b(4);
    std::memcpy(b.data(), &v, 4);
    return b;
}

// A real as the DXF writes it, four decimals.
inline std::string real(double v)
{
    char b[32];
    std::snprintf(b, sizeof b, "%0.4lf", v);
    return b;
}

inline Bytes xyz(const std::vector<P>& v)
{
    Bytes b;
    for (const P& p : v)
    {
        b = b + f64(p.x) + f64(p.y) + f64(p.z);
    }
    return b;
}

// The tag with its NUL, a length of `ancho` bytes that counts itself, then the body.
inline Bytes bloque(const std::string& tag, const Bytes& cuerpo, int ancho)
{
    Bytes b(tag.begin(), tag.end());
    b.push_back(0);
    return b + entero(cuerpo.size() + static_cast<size_t>(ancho), ancho) + cuerpo;
}

inline Bytes bloque16(const std::string& tag, const Bytes& cuerpo)
{
    return bloque(tag, cuerpo, 2);
}

// A 3DFACE on "Ejes" of three corners, the last written twice; 256 writes no colour group.
inline std::string caraDXF(const P& a, const P& b, const P& c, int color = 256)
{
    std::string s = "  0\n3DFACE\n  8\nEjes\n";
    if (color != 256)
    {
        s += " 62\n" + std::to_string(color) + "\n";
    }
    const P esquinas[4] = {a, b, c, c};
    for (int i = 0; i < 4; ++i)
    {
        const std::string n = std::to_string(i);
        s += " 1" + n + "\n" + real(esquinas[i].x) + "\n 2" + n + "\n" + real(esquinas[i].y) +
             "\n 3" + n + "\n" + real(esquinas[i].z) + "\n";
    }
    return s + " 70\n0\n";
}

struct CaraMalla
{
    std::vector<P> puntos;
    std::vector<Vector2D<float>> uv;
    uint16_t material;
};

// The mesh body of faces on private vertices: per vertex x, y, z, u, v and its edge (the
// last of the face for the first corner); per edge its ends, next, previous, no second side,
// its face, not sharp; per face its first edge and material.
inline Bytes cuerpoMalla(const std::vector<CaraMalla>& caras)
{
    Bytes vertices;
    Bytes aristas;
    Bytes registros;
    uint32_t base = 0;
    uint32_t f = 0;
    const Bytes ninguna = entero(0xFFFFFFFFU, 4);
    for (const CaraMalla& c : caras)
    {
        const auto n = static_cast<uint32_t>(c.puntos.size());
        for (uint32_t k = 0; k < n; ++k)
        {
            vertices = vertices + xyz({c.puntos[k]}) + f32(c.uv[k].x) + f32(c.uv[k].y) +
                       entero(k == 0 ? base + n - 1 : base + k, 4);
            aristas = aristas + entero(base + k, 4) + entero(base + (k + 1) % n, 4) +
                      entero(base + (k + 1) % n, 4) + entero(base + (k + n - 1) % n, 4) + ninguna +
                      ninguna + entero(f, 4) + ninguna + entero(0, 4);
        }
        registros = registros + entero(base, 4) + entero(c.material, 2);
        base += n;
        ++f;
    }
    return entero(base, 4) + vertices + entero(base, 4) + aristas + entero(caras.size(), 4) +
           registros;
}

// The sample's id, the layer's id 7, the colour (index, then alpha, blue, green, red),
// width 1 and the solid pattern.
inline Bytes prefijo(uint16_t indice = 256, const Bytes& abgr = {0xFF, 0xFF, 0xFF, 0xFF})
{
    return entero(0x0102030405060708ULL, 8) + entero(7, 8) + entero(indice, 2) + abgr + f64(1.0) +
           entero(0xFFFF, 2);
}

template <typename T>
std::unique_ptr<Entidad> muestra(T e)
{
    e.id = 0x0102030405060708ULL;
    e.asignaCapa(&capaCatalogo());
    return std::make_unique<T>(std::move(e));
}

template <typename T>
std::unique_ptr<Entidad> vacia()
{
    return std::make_unique<T>();
}

inline EstiloTexto* estiloCatalogo()
{
    static EstiloTexto estilo("Rotulos", "Arial", 10, true, true);
    estilo.id = 42;
    return &estilo;
}

template <typename T>
T conEstilo(T e)
{
    e.setEstiloTexto(estiloCatalogo());
    return e;
}

// The sample of the catalogue's kind `nombre`, as its own class.
template <typename T>
std::unique_ptr<T> muestraDe(const std::string& nombre)
{
    return std::unique_ptr<T>(static_cast<T*>(tipoEntidad(nombre).crea().release()));
}

// The records an entity writes between ENTITIES and ENDSEC, layer "Ejes" (blue) declared.
inline std::string registrosDXF(const Entidad& e)
{
    const std::string ruta = rutaTemporal("registros.dxf");
    {
        ExportaDXF dxf(ruta);
        dxf.nuevaCapa("Ejes", 5);
        dxf.inicioEntidades();
        e.exportaDXF(dxf);
        dxf.finEntidades();
    }
    const Bytes b = leeFichero(ruta);
    const std::string s(b.begin(), b.end());
    const size_t inicio = s.find("  2\nENTITIES\n");
    if (inicio == std::string::npos)
    {
        return "(no ENTITIES section) " + s;
    }
    return s.substr(inicio + 13, s.find("  0\nENDSEC\n", inicio) - inicio - 13);
}

// How often `que` occurs in `s`.
inline int cuenta(const std::string& s, const std::string& que)
{
    int n = 0;
    for (size_t p = s.find(que); p != std::string::npos; p = s.find(que, p + 1))
    {
        ++n;
    }
    return n;
}

// The lines of the display calls painting `e` makes, and what it hands the display.
inline std::vector<std::string> pintaLlamadas(const Entidad& e)
{
    PantallaGrabadora p;
    e.dibuja(p);
    return p.llamadas;
}

inline std::vector<primitiva_t> pintaEscena(const Entidad& e)
{
    PantallaGrabadora p;
    e.dibuja(p);
    return p.escena;
}

}  // namespace cad::prueba
