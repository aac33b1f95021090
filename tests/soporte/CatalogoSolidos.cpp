// Catalogue samples of the solids: the box, the prism, the cylinder and the free mesh.
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "base/geometria/Vector2D.h"
#include "entidades/Cilindro.h"
#include "entidades/Cubo.h"
#include "entidades/Objeto3D.h"
#include "entidades/Prisma.h"
#include "modelo/Modelo3D.h"
#include "modelo/PuntosCalientes.h"
#include "soporte/CatalogoEntidades.h"
#include "soporte/CatalogoPiezas.h"

namespace cad::prueba
{

namespace
{

// The transform's three rows and translation as stored, with no rotation.
Bytes trasladada(const P& t)
{
    return xyz({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, t});
}

// A four-sided face a, b, c, d in the file: its two diagonals are equally long, so the first
// corner is the ear.
std::string cuadrilateroDXF(const P& a, const P& b, const P& c, const P& d, int color = 256)
{
    return caraDXF(d, a, b, color) + caraDXF(b, c, d, color);
}

// The solid painted as one object in the shaded default representation: ABGR colour, the
// vertices, its colour as ARGB with the two factors, the polygon list.
std::string objeto(const char* abgr, int vertices, const char* argb, int caras)
{
    return std::string("iniciaObjeto ") + abgr + " 1\nvertices " + std::to_string(vertices) +
           "\nsetColorMaterial " + argb + " 0.8 1\ncaras " + std::to_string(caras) +
           "\nfinObjeto pick\n";
}

// The box faces as the box tessellator lists them, corner k taking the far side on the axes
// of bits 1, 2 and 4 of k: bottom, top, front, back, left, right.
const int kCarasCaja[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                              {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};

// Red, index 1: a box of 2 by 3 by 1 painted on each call from a temporary mesh of eight
// corners and six quadrilaterals (5 numbers each). Its one point is `minimo` for any index,
// hot as a vertex that moves the box, and offered as insertion point. No DXF at all.
TipoEntidad tipoCubo()
{
    const auto crea = []
    {
        Cubo c(P(1, 2, 3), P(3, 5, 4));
        c.color.setIndiceColor(1);
        return muestra(std::move(c));
    };
    TipoEntidad t{"Cubo", "Cubo", crea, vacia<Cubo>};
    t.fichero = bloque16("Cb1", prefijo(1, {0xFF, 0, 0, 0xFF}) + xyz({{1, 2, 3}, {3, 5, 4}}));
    t.coordenadas = {{1, 2, 3}};
    t.cualquierIndice = true;
    t.tipoCaliente = kTipoVertice;
    t.llamadas = objeto("FF0000FF", 8, "FFFF0000", 30);
    t.referencias = {{1, 2.5, kPuntosInsercion, kPuntosInsercion, {1, 2, 3}, 0.5},
                     {1, 2, kTodo, -1, {}, 0}};
    t.hoja = {"Geometría/Posición:Coordenada=(1,2,3)", "Geometría/Incremento:Coordenada=(2,3,1)",
              "Geometría/Área:DoblePositivo!=          22",
              "Geometría/Volumen:DoblePositivo!=           6"};
    return t;
}

// From (1, 2, 3) to (3, -1, 4), material 3: maximo lies below minimo in y. The transform's
// translation sits on the midpoint (2, 0.5, 3.5). No mesh until painted, so no points; its
// twelve hot edges are checked in the solids' own tests. Area and volume come from the signed
// differences 2, -3, 1: |-12 + 4 - 6| and |-6|.
TipoEntidad tipoPrisma()
{
    TipoEntidad t{"Prisma", "Prisma", [] { return muestra(Prisma(P(1, 2, 3), P(3, -1, 4), 3)); },
                  vacia<Prisma>};
    t.fichero = bloque16(
        "Pr1", prefijo() + trasladada({2, 0.5, 3.5}) + xyz({{1, 2, 3}, {3, -1, 4}}) + entero(3, 2));
    t.llamadas = objeto("FFFF0000", 8, "FF0000FF", 30);
    // corner k: x 1 or 3, y 2 or -1, z 3 or 4 by its bits
    const auto esquina = [](int k)
    { return P((k & 1) != 0 ? 3 : 1, (k & 2) != 0 ? -1 : 2, (k & 4) != 0 ? 4 : 3); };
    for (const auto& c : kCarasCaja)
    {
        t.dxf += cuadrilateroDXF(esquina(c[0]), esquina(c[1]), esquina(c[2]), esquina(c[3]));
    }
    t.referencias = {{1, 2.5, kPuntosInsercion, kPuntosInsercion, {1, 2, 3}, 0.5},
                     {1, 2, kTodo, -1, {}, 0}};
    t.hoja = {"Geometría/Posición:Coordenada=(1,2,3)", "Geometría/Incremento:Coordenada=(2,-3,1)",
              "Geometría/Área:DoblePositivo!=          14",
              "Geometría/Volumen:DoblePositivo!=           6", "Varios/Material:Material=3"};
    // the twelve edges of the drawn box, and no point
    const P a(1, 2, 3), b(3, 2, 3), c(1, -1, 3), d(3, -1, 3);
    const P e(1, 2, 4), f(3, 2, 4), g(1, -1, 4), k(3, -1, 4);
    t.aristasSueltas = {{a, b}, {c, d}, {e, f}, {g, k}, {a, c}, {b, d},
                        {e, g}, {f, k}, {a, e}, {b, f}, {c, g}, {d, k}};
    return t;
}

// Base centre (1, 2, 3), radius 1.5, height 2, material 4, green (index 3). No mesh until
// painted; painted as 26 vertices, 12 quadrilaterals and two 12-sided caps (12 * 5 + 2 * 13
// numbers). In the DXF each side gives two triangles (its first corner the ear) and each cap
// the triangles of the mesh's ear clipping, side faces first, then the bottom cap (clockwise
// from above, from the last station) and the top. Area of the side alone: 1.5 * 2pi * 2.
TipoEntidad tipoCilindro()
{
    const auto crea = []
    {
        Cilindro c(P(1, 2, 3), 1.5, 2, 4);
        c.color.setIndiceColor(3);
        return muestra(std::move(c));
    };
    TipoEntidad t{"Cilindro", "Cilindro", crea, vacia<Cilindro>};
    t.fichero = bloque16("Cl1", prefijo(3, {0xFF, 0, 0xFF, 0}) + trasladada({1, 2, 3}) + f64(1.5) +
                                    f64(2) + entero(4, 2));
    t.llamadas = objeto("FF00FF00", 26, "FF00FF00", 86);
    const auto estacion = [](int i, double z)
    {
        const double a = 6.283185307179586 * (i % 12) / 12;
        return P(1.5 * std::cos(a) + 1, 1.5 * std::sin(a) + 2, z);
    };
    for (int i = 0; i < 12; ++i)
    {
        t.dxf += cuadrilateroDXF(estacion(i, 3), estacion(i + 1, 3), estacion(i + 1, 5),
                                 estacion(i, 5), 3);
    }
    for (const bool arriba : {false, true})
    {
        Modelo3D tapa;
        for (int i = 0; i < 12; ++i)
        {
            tapa.nuevoVertice(arriba ? estacion(i, 5) : estacion(11 - i, 3));
        }
        const int32_t esquinas[12] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
        tapa.nuevaCara(12, esquinas, false, 0);
        std::vector<int32_t> triangulos;
        tapa.triangulaCara(0, triangulos);
        for (size_t k = 0; k + 2 < triangulos.size(); k += 3)
        {
            const auto v = [&](size_t j) { return tapa.getVertice(triangulos[k + j]).punto; };
            t.dxf += caraDXF(v(0), v(1), v(2), 3);
        }
    }
    t.referencias = {{1, 2.5, kPuntosInsercion, kPuntosInsercion, {1, 2, 3}, 0.5},
                     {1, 2, kTodo, -1, {}, 0}};
    t.hoja = {"Geometría/Centro:Coordenada=(1,2,3)",
              "Geometría/Radio:DoblePositivo=         1.5",
              "Geometría/Altura:DoblePositivo=           2",
              "Geometría/Área:DoblePositivo!=        18.8",
              "Geometría/Volumen:DoblePositivo!=        14.1",
              "Varios/Material:Material=4"};
    return t;
}

// One quadrilateral of material 5 over the square of side 4, textured by x / 4, y / 4: its
// body is the mesh's (4 vertices, 4 edges, 1 face), whose compact copy is the model itself.
// Its points are the vertex records, hot with the face's four sides; bit 1 offers the
// vertices, bit 2 the midpoints of the sides, the first offer winning a tie.
TipoEntidad tipoObjeto3D()
{
    static const CaraMalla cara = {
        cuadrado(), {{0, 0}, {1, 0}, {1, 1}, {0, 1}}, 5};  // the texture at x / 4, y / 4
    const auto crea = []
    {
        auto* m = new Modelo3D();
        m->nuevaCara(4, cara.puntos.data(), cara.uv.data(), false, cara.material);
        return muestra(Objeto3D(m));
    };
    TipoEntidad t{"Objeto3D", "Objeto3D", crea, vacia<Objeto3D>};
    t.fichero = bloque16("Ob1", prefijo() + cuerpoMalla({cara}));
    t.posCuenta = 38;  // tag 4, u16 length, prefix 32: the vertex count
    t.anchoCuenta = 4;
    t.cuentaVertices = true;
    t.coordenadas = cuadrado();
    t.tipoCaliente = kTipoVertice;
    t.aristasCalientes = 4;
    t.carasCalientes = 1;
    t.llamadas = objeto("FFFF0000", 4, "FF0000FF", 5);
    t.dxf = cuadrilateroDXF(cuadrado()[0], cuadrado()[1], cuadrado()[2], cuadrado()[3]);
    t.referencias = {{4, 0, kTodo, kExtremos, {4, 0, 0}, 0},
                     {2, 0.5, kPuntosMedios, kPuntosMedios, {2, 0, 0}, 0.5},
                     {2, 0.5, kExtremos, kExtremos, {0, 0, 0}, std::sqrt(4.25)},
                     {0, 0, kPuntosInsercion | kCercano, -1, {}, 0}};
    t.hoja = {"Geometría/Vértices:Entero!=4", "Geometría/Caras:Entero!=1",
              "Varios/Material:Material=5"};
    return t;
}

}  // namespace

std::vector<TipoEntidad> tiposSolidos()
{
    return {tipoCubo(), tipoPrisma(), tipoCilindro(), tipoObjeto3D()};
}

}  // namespace cad::prueba
