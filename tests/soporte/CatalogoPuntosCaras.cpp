// Catalogue samples of the point group and the three- and four-corner face.
#include <cstdint>
#include <string>
#include <vector>

#include "entidades/Cara3D.h"
#include "entidades/GrupoPuntos.h"
#include "modelo/PuntosCalientes.h"
#include "soporte/CatalogoEntidades.h"
#include "soporte/CatalogoPiezas.h"

namespace cad::prueba
{

namespace
{

// Red, green and blue in the display's form: red in the lowest byte.
const std::vector<P> kPuntosGrupo = {{1, 2, 3}, {-1.5, 0.5, 2}, {4, -2, 0.25}};
const std::vector<uint32_t> kColoresGrupo = {0xFF0000FFU, 0xFF00FF00U, 0xFFFF0000U};

// The count and one record of x, y, z and colour per point.
Bytes cuerpoGrupo(const std::vector<P>& v, const std::vector<uint32_t>& colores)
{
    Bytes b = entero(v.size(), 4);
    for (size_t i = 0; i < v.size(); ++i)
    {
        b = b + xyz({v[i]}) + entero(colores[i], 4);
    }
    return b;
}

std::string puntoDXF(const P& p, int color)
{
    std::string s = "  0\nPOINT\n  8\nEjes\n";
    if (color != 256)
    {
        s += " 62\n" + std::to_string(color) + "\n";
    }
    return s + " 10\n" + real(p.x) + "\n 20\n" + real(p.y) + "\n 30\n" + real(p.z) + "\n";
}

// What both groups share: the points as coordinates that raise past the end and stay put
// when moved, no hot elements, and a "Vértice" list that shows nothing. The count is a
// vertex count (44 = tag 8, u32 length, prefix 32).
TipoEntidad grupo(const char* nombre, Fabrica crea, const std::vector<P>& v)
{
    TipoEntidad t{nombre, "GrupoPuntos", std::move(crea), vacia<GrupoPuntos>};
    t.coordenadas = v;
    t.fueraDeRangoLanza = true;
    t.movidas = v;
    t.posCuenta = 44;
    t.anchoCuenta = 4;
    t.cuentaVertices = true;
    t.hoja = {"Geometría/Vértice:ListaCoordenadas="};
    t.elementosLista = 0;
    return t;
}

// By layer: painted in one call with each point's colour, each point's own palette index in
// the DXF. Snapped only under bit 8, the kind being the whole mask.
TipoEntidad tipoGrupoPuntos()
{
    TipoEntidad t = grupo(
        "GrupoPuntos",
        [] { return muestra(GrupoPuntos(3, kPuntosGrupo.data(), kColoresGrupo.data())); },
        kPuntosGrupo);
    t.fichero = bloque("GrpPnt1", prefijo() + cuerpoGrupo(kPuntosGrupo, kColoresGrupo), 4);
    t.llamadas = "dibujaGrupoPuntos 3 pick\n";
    t.dxf =
        puntoDXF(kPuntosGrupo[0], 1) + puntoDXF(kPuntosGrupo[1], 3) + puntoDXF(kPuntosGrupo[2], 5);
    t.referencias = {{1, 2, kTodo, -1, {}, 0},
                     {1, 2.5, kPuntosInsercion, kPuntosInsercion, {1, 2, 3}, 0.5},
                     {4, -2, kPuntosInsercion | kExtremos, 9, {4, -2, 0.25}, 0}};
    return t;
}

// An explicit colour index: nothing is painted, yet the group snaps, and every point takes
// the group's index in the DXF whatever its own colour.
TipoEntidad tipoGrupoPuntosColor()
{
    const std::vector<P> v = {{0.5, 0.5, 0}, {2, 1, -1}};
    TipoEntidad t = grupo(
        "GrupoPuntosColor",
        [v]
        {
            GrupoPuntos g;
            g.nuevoPunto(v[0], 0xFF0000FFU);
            g.nuevoPunto(v[1], 0xFFFFFFFFU);
            g.color.setIndiceColor(3);
            return muestra(std::move(g));
        },
        v);
    t.fichero = bloque(
        "GrpPnt1", prefijo(3, {0xFF, 0, 0xFF, 0}) + cuerpoGrupo(v, {0xFF0000FFU, 0xFFFFFFFFU}), 4);
    t.dxf = puntoDXF(v[0], 3) + puntoDXF(v[1], 3);
    t.referencias = {{2, 1.5, kPuntosInsercion, kPuntosInsercion, {2, 1, -1}, 0.5}};
    return t;
}

// A face with a moved transformation and one photo mapping, so that the whole
// EntidadConSuperficie part is in the block.
template <typename Pinta>
Fabrica fabricaCara(const std::vector<P>& v, Pinta pinta)
{
    return [v, pinta]
    {
        Cara3D c(static_cast<int>(v.size()), v.data());
        c.transformacion(0, 3) = 10;
        c.transformacion(1, 3) = 20;
        c.transformacion(2, 3) = 30;
        c.materialMapeo = 9;
        c.mapeos.push_back({2, 0.5F, 0.25F});
        pinta(c);
        return muestra(std::move(c));
    };
}

// The three rows of the identity, the translation, the material, one mapping, then the
// count and the corners. The count stands at 6 + 32 + 96 + 2 + 4 + 12.
TipoEntidad cara(const char* nombre, Fabrica crea, const std::vector<P>& v, const Bytes& color)
{
    TipoEntidad t{nombre, "Cara3D", std::move(crea), vacia<Cara3D>};
    t.coordenadas = v;
    t.fichero =
        bloque16("C3D", color + xyz({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {10, 20, 30}}) +
                            entero(9, 2) + entero(1, 4) + entero(2, 4) +
                            Bytes{0, 0, 0, 0x3F, 0, 0, 0x80, 0x3E} + entero(v.size(), 2) + xyz(v));
    t.posCuenta = 152;
    t.anchoCuenta = 2;
    t.tipoCaliente = kTipoVertice;
    t.aristasCalientes = static_cast<int>(v.size());
    t.hoja = {"Geometría/Vértice:ListaCoordenadas="};
    return t;
}

// By layer: the display gets the corners and the repeat as a closed loop in the layer's
// blue. The DXF record writes the last corner twice. The closing side offers its midpoint.
TipoEntidad tipoTriangulo()
{
    const std::vector<P> v = {{0, 0, 0}, {4, 0, 0}, {0, 4, 2}};
    TipoEntidad t = cara("Cara3DTriangulo", fabricaCara(v, [](Cara3D&) {}), v, prefijo());
    t.llamadas = "dibujaPolilinea 4 cerrada (0,0,0) (4,0,0) (0,4,2) (0,0,0) FFFF0000 pick\n";
    t.dxf =
        "  0\n3DFACE\n  8\nEjes\n 10\n0.0000\n 20\n0.0000\n 30\n0.0000\n"
        " 11\n4.0000\n 21\n0.0000\n 31\n0.0000\n 12\n0.0000\n 22\n4.0000\n 32\n2.0000\n"
        " 13\n0.0000\n 23\n4.0000\n 33\n2.0000\n 70\n0\n";
    t.referencias = {{0, 0.5, kExtremos, kExtremos, {0, 0, 0}, 0.5},
                     {0, 2, kPuntosMedios, kPuntosMedios, {0, 2, 1}, 0},
                     {2, 2, kTodo, kPuntosMedios, {2, 2, 1}, 0},
                     {0, 0, kPuntosInsercion | kCercano, -1, {}, 0}};
    return t;
}

// Red: its own colour on the display and index 1 in the DXF.
TipoEntidad tipoCuadrilatero()
{
    const std::vector<P> v = {{1, 1, 1}, {5, 1, 1}, {5, 3, 1}, {1, 3, 1}};
    TipoEntidad t =
        cara("Cara3DCuadrilatero", fabricaCara(v, [](Cara3D& c) { c.color.setIndiceColor(1); }), v,
             prefijo(1, {0xFF, 0, 0, 0xFF}));
    t.llamadas =
        "dibujaPolilinea 5 cerrada (1,1,1) (5,1,1) (5,3,1) (1,3,1) (1,1,1) FF0000FF pick\n";
    t.dxf =
        "  0\n3DFACE\n  8\nEjes\n 62\n1\n 10\n1.0000\n 20\n1.0000\n 30\n1.0000\n"
        " 11\n5.0000\n 21\n1.0000\n 31\n1.0000\n 12\n5.0000\n 22\n3.0000\n 32\n1.0000\n"
        " 13\n1.0000\n 23\n3.0000\n 33\n1.0000\n 70\n0\n";
    t.referencias = {{5, 3, kTodo, kExtremos, {5, 3, 1}, 0},
                     {3, 1.5, kPuntosMedios, kPuntosMedios, {3, 1, 1}, 0.5},
                     {1, 2, kPuntosMedios, kPuntosMedios, {1, 2, 1}, 0}};
    return t;
}

}  // namespace

std::vector<TipoEntidad> tiposPuntosCaras()
{
    return {tipoGrupoPuntos(), tipoGrupoPuntosColor(), tipoTriangulo(), tipoCuadrilatero()};
}

}  // namespace cad::prueba
