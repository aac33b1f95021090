// Test support: the pieces the entity catalogue's families build their samples from.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "base/geometria/Punto3.h"
#include "documento/EstiloTexto.h"
#include "documento/ReferenciaEntidades.h"
#include "soporte/BloquesPrueba.h"
#include "soporte/CatalogoEntidades.h"

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

}  // namespace cad::prueba
