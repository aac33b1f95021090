// Catalogue samples of the polygon soup (one material and several) and the placed mesh.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "base/geometria/Vector2D.h"
#include "entidades/Policara.h"
#include "entidades/Superficie.h"
#include "soporte/CatalogoEntidades.h"
#include "soporte/CatalogoPiezas.h"

namespace cad::prueba
{

namespace
{

// ---------------------------------------------------------------------------------------
// Policara

// A triangle on points 0, 1, 2 and a quadrilateral on 1, 4, 5, 3, all at z = 0 but the
// quad's far side.
const std::vector<P> kPuntosSopa = {{0, 0, 0}, {2, 0, 0}, {0, 2, 0},
                                    {2, 2, 0}, {4, 0, 0}, {4, 2, 1}};

struct Esquina
{
    int32_t indice;
    double u, v;
    uint16_t material;
};

Bytes cuerpoEsquinas(const std::vector<Esquina>& esquinas)
{
    Bytes b = entero(esquinas.size(), 4);
    for (const Esquina& e : esquinas)
    {
        b = b + entero(static_cast<uint32_t>(e.indice), 4) + f64(e.u) + f64(e.v) + f32(0) + f32(0) +
            f32(1) + entero(e.material, 2);
    }
    return b;
}

Bytes enteros(const std::vector<int32_t>& v)
{
    Bytes b = entero(v.size(), 4);
    for (const int32_t x : v)
    {
        b = b + entero(static_cast<uint32_t>(x), 4);
    }
    return b;
}

Fabrica fabricaSopa(const std::vector<Esquina>& esquinas, const std::vector<int32_t>& triangulos,
                    const std::vector<int32_t>& cuadrilateros, const std::vector<int32_t>& cambios)
{
    return [=]
    {
        Policara s;
        s.puntos = kPuntosSopa;
        for (const Esquina& e : esquinas)
        {
            s.esquinas.push_back({e.indice, {e.u, e.v}, {0, 0, 1}, e.material});
        }
        s.triangulos = triangulos;
        s.cuadrilateros = cuadrilateros;
        s.cambiosMaterial = cambios;
        return muestra(std::move(s));
    };
}

// What both soups share: the points as coordinates, no hot elements, the layer alone in the
// DXF, and a clone with no geometry (five empty counts). The point count stands at 44 (tag 8,
// u32 length, prefix 32); it is no vertex count in the catalogue's sense, since the corners
// and face lists follow it and a reader claiming one byte less still holds them.
TipoEntidad sopa(const char* nombre, const std::vector<Esquina>& esquinas,
                 const std::vector<int32_t>& triangulos, const std::vector<int32_t>& cuadrilateros,
                 const std::vector<int32_t>& cambios)
{
    TipoEntidad t{nombre, "PoliCara3D", fabricaSopa(esquinas, triangulos, cuadrilateros, cambios),
                  vacia<Policara>};
    t.fichero = bloque("Poly3D1",
                       prefijo() + entero(kPuntosSopa.size(), 4) + xyz(kPuntosSopa) +
                           cuerpoEsquinas(esquinas) + enteros(triangulos) + enteros(cuadrilateros) +
                           enteros(cambios),
                       4);
    t.ficheroClon = bloque("Poly3D1", prefijo() + Bytes(20, 0), 4);
    t.posCuenta = 44;
    t.anchoCuenta = 4;
    t.coordenadas = kPuntosSopa;
    return t;
}

// One material: the quad's corners come first in `esquinas`, yet the triangle paints first.
// 14 edge indices (3 + 4 sides), 9 polygon numbers (1 + 3, 1 + 4), in the hidden-line mode.
// Snap is on the corners: the triangle faces up, against the downward ray, and would offer
// nothing as a triangle. The quad's closing side (point 3 to point 1) offers its midpoint.
TipoEntidad tipoPolicara()
{
    const std::vector<Esquina> esquinas = {{1, 0, 0, 3},  {4, 1, 0, 3},      {5, 1, 1, 3},
                                           {3, 0, 1, 3},  {0, 0.5, 0.25, 3}, {1, 1, 0.25, 3},
                                           {2, 0.5, 1, 3}};
    TipoEntidad t = sopa("Policara", esquinas, {4}, {0}, {});
    t.llamadas = "iniciaObjeto FFFF0000 2\nvertices 6\naristas 14\ncaras 9\nfinObjeto pick\n";
    t.referencias = {{0, 0, kExtremos, kExtremos, {0, 0, 0}, 0},
                     {0.25, 2, kExtremos, kExtremos, {0, 2, 0}, 0.25},
                     {2, 1, kPuntosMedios, kPuntosMedios, {2, 1, 0}, 0},
                     {4, 1, kTodo, kPuntosMedios, {4, 1, 0.5}, 0},
                     {0, 0, kCercano | kPuntosInsercion, -1, {}, 0}};
    t.hoja = {"Geometría/Vértice:ListaCoordenadas=", "Varios/Triángulos:Entero!=1",
              "Varios/Cuadriláteros:Entero!=1", "Varios/Materiales:Entero!=1"};
    return t;
}

// Two materials: pairs (0, 0) and (1, 0) make a stretch of the first triangle and one of the
// second triangle with the quad. Each paints as a textured object on private corners, its
// material that of its first corner (the quad's 7 is not asked for).
TipoEntidad tipoPolicaraMateriales()
{
    const std::vector<Esquina> esquinas = {{0, 0, 0, 2}, {1, 1, 0, 2}, {2, 0, 1, 2}, {1, 0, 0, 5},
                                           {3, 1, 1, 5}, {2, 0, 1, 5}, {1, 0, 0, 7}, {4, 1, 0, 7},
                                           {5, 1, 1, 7}, {3, 0, 1, 7}};
    TipoEntidad t = sopa("PolicaraMateriales", esquinas, {0, 3}, {6}, {0, 0, 1, 0});
    t.llamadas =
        "setMaterial 2\niniciaObjeto FFFF0000 5\nvertices 3\nnormales 3\ncoordenadasUV 3\n"
        "caras 4\nfinObjeto pick\n"
        "setMaterial 5\niniciaObjeto FFFF0000 5\nvertices 7\nnormales 7\ncoordenadasUV 7\n"
        "caras 9\nfinObjeto pick\n";
    t.referencias = {{2, 2, kExtremos, kExtremos, {2, 2, 0}, 0},
                     {1, 1, kPuntosMedios, kPuntosMedios, {1, 1, 0}, 0}};
    t.hoja = {"Geometría/Vértice:ListaCoordenadas=", "Varios/Triángulos:Entero!=2",
              "Varios/Cuadriláteros:Entero!=1", "Varios/Materiales:Entero!=3"};
    return t;
}

// ---------------------------------------------------------------------------------------
// Superficie

// A unit square of material 0 and a triangle of material 4 beside it, each on vertices of
// its own: the model the writer's compact copy gives back unchanged.
const std::vector<CaraMalla> kCarasMalla = {
    {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {{0, 0}, {1, 0}, {1, 1}, {0, 1}}, 0},
    {{{1, 0, 0}, {2, 0, 0}, {1, 1, 0}}, {{0, 0}, {0.5F, 0}, {0, 0.5F}}, 4}};

// In a u64 block, as its 15-character tag demands of every reader. Moved to (10, 20, 0) with
// one photo mapping. Its coordinates are the model's vertex
// records, which traslada leaves where they are; the extent is the constant empty box. The
// clone keeps the common fields only: identity, no mapping, an empty model. Painted in the
// shaded default: one object per material, the last met first, on all seven vertices. Snap
// answers false without bit 1 (with it, true with nothing taken: see the surface tests).
TipoEntidad tipoSuperficie()
{
    const auto crea = []
    {
        Superficie s;
        s.transformacion(0, 3) = 10;
        s.transformacion(1, 3) = 20;
        s.materialMapeo = 9;
        s.mapeos.push_back({1, 0.5F, 0.25F});
        for (const CaraMalla& c : kCarasMalla)
        {
            s.modelo().nuevaCara(static_cast<int>(c.puntos.size()), c.puntos.data(), c.uv.data(),
                                 false, c.material);
        }
        return muestra(std::move(s));
    };
    TipoEntidad t{"Superficie", "Superficie", crea, vacia<Superficie>};
    const Bytes identidad = xyz({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}});
    t.fichero = bloque("Superficie3D001",
                       prefijo() + identidad + xyz({{10, 20, 0}}) + entero(9, 2) + entero(1, 4) +
                           entero(1, 4) + f32(0.5F) + f32(0.25F) + cuerpoMalla(kCarasMalla),
                       8);
    t.ficheroClon =
        bloque("Superficie3D001",
               prefijo() + identidad + xyz({{0, 0, 0}}) + Bytes(6, 0) + Bytes(12, 0), 8);
    // tag 16, u64 length, prefix 32, transformation 96, material 2, mapping count 4, one
    // mapping 12: the model's vertex count
    t.posCuenta = 170;
    t.anchoCuenta = 4;
    for (const CaraMalla& c : kCarasMalla)
    {
        t.coordenadas.insert(t.coordenadas.end(), c.puntos.begin(), c.puntos.end());
    }
    t.movidas = t.coordenadas;
    t.extension = Rect3<double>(P(0, 0, 0), P(-1, -1, -1));
    const std::string objeto =
        "iniciaObjeto FFFF0000 1\nvertices 7\n"
        "setColorMaterial FF0000FF 0.8 1\n";
    t.llamadas = objeto + "caras 4\nfinObjeto pick\n" + objeto + "caras 5\nfinObjeto pick\n";
    t.referencias = {{0, 0, kPuntosMedios | kPuntosInsercion | kCercano, -1, {}, 0}};
    t.hoja = {"Varios/Vértices:Entero!=7",
              "Varios/Caras:Entero!=2",
              "Leyenda/X mínima:Doble!=          10",
              "Leyenda/X máxima:Doble!=          12",
              "Leyenda/Y mínima:Doble!=          20",
              "Leyenda/Y máxima:Doble!=          21",
              "Leyenda/Z mínima:Doble!=           0",
              "Leyenda/Z máxima:Doble!=           0",
              "Leyenda/Área:DoblePositivo!=         1.5",
              "Leyenda/Aristas:Entero!=7",
              "Leyenda/Materiales:Entero!=2"};
    return t;
}

}  // namespace

std::vector<TipoEntidad> tiposSuperficies()
{
    return {tipoPolicara(), tipoPolicaraMateriales(), tipoSuperficie()};
}

}  // namespace cad::prueba
