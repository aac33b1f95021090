#include "soporte/CatalogoEntidades.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <stdexcept>

#include "documento/EstiloTexto.h"
#include "entidades/Linea.h"
#include "entidades/Plano.h"
#include "entidades/Poligono.h"
#include "entidades/Polilinea.h"
#include "entidades/PuntoControl.h"
#include "entidades/SistemaLocal.h"
#include "entidades/Texto.h"
#include "modelo/PuntosCalientes.h"
#include "soporte/CatalogoPiezas.h"

namespace cad::prueba
{

namespace
{

using P = Punto3<double>;

// What Punto, Texto and PuntoControl share: one position, a hot vertex, the position offered
// as an insertion point under mask bit 8 only, and the "Posición" row.
TipoEntidad puntual(const char* nombre, const char* nombreTipo, Fabrica crea, Fabrica vacia,
                    const P& p)
{
    TipoEntidad t{nombre, nombreTipo, std::move(crea), std::move(vacia)};
    t.coordenadas = {p};
    t.cualquierIndice = true;
    t.tipoCaliente = kTipoVertice;
    t.referencias = {{p.x, p.y, kTodo, -1, {}, 0},
                     {p.x, p.y + 0.5, kPuntosInsercion, kPuntosInsercion, p, 0.5}};
    t.hoja = {"Geometría/Posición:Coordenada=" + texto(p)};
    return t;
}

// A POLYLINE on "Ejes", by layer, of the square's vertices scaled by `lado` / 4.
std::string polilineaDXF(int flags, int lado)
{
    std::string s =
        "  0\nPOLYLINE\n  8\nEjes\n 66\n     1\n 70\n     " + std::to_string(flags) + "\n";
    for (const P& v : cuadrado())
    {
        const int x = static_cast<int>(v.x) * lado / 4;
        const int y = static_cast<int>(v.y) * lado / 4;
        s += "  0\nVERTEX\n 70\n    32\n  8\nEjes\n 10\n" + std::to_string(x) + ".0000\n 20\n" +
             std::to_string(y) + ".0000\n 30\n0.0000\n";
    }
    return s + "  0\nSEQEND\n";
}

TipoEntidad tipoPunto()
{
    TipoEntidad t =
        puntual("Punto", "Punto", [] { return muestra(Punto(1.5, -2, 0.25, 0xFF0000)); },
                vacia<Punto>, {1.5, -2, 0.25});
    t.fichero = bloque16("Pt1", prefijo(512, {0xFF, 0, 0, 0xFF}) + xyz({{1.5, -2, 0.25}}));
    t.llamadas = "dibujaPunto (1.5,-2,0.25) FF0000FF pick\n";
    t.dxf = "  0\nPOINT\n  8\nEjes\n 62\n1\n 10\n1.5000\n 20\n-2.0000\n 30\n0.2500\n";
    return t;
}

TipoEntidad tipoTexto()
{
    const auto crea = [] {
        return muestra(conEstilo(Texto("Hola!", {1.5, -2, 0.25}, 8, 2.5F, 0.5F)));
    };
    TipoEntidad t = puntual("Texto", "Desconocida", crea, vacia<Texto>, {1.5, -2, 0.25});
    // the string padded to even length, alignment, height and rotation as floats, style id
    t.fichero = bloque16("Tx1", prefijo() + xyz({{1.5, -2, 0.25}}) +
                                    Bytes{6, 0, 'H', 'o', 'l', 'a', '!', 0, 8, 0} +
                                    Bytes{0, 0, 0x20, 0x40, 0, 0, 0, 0x3F} + entero(42, 8));
    t.posCuenta = 6 + 32 + 24;
    t.anchoCuenta = 2;
    t.llamadas = "dibujaTexto (1.5,-2,0.25) \"Hola!\" FFFF0000 pick\n";
    // only the horizontal bits of alignment 8 (so no group 11); 0.5 rad by 180 / 3.141592654
    t.dxf =
        "  0\nTEXT\n  8\nEjes\n 10\n1.5000\n 20\n-2.0000\n 30\n0.2500\n 40\n2.5000\n"
        " 72\n0\n 50\n28.6479\n  1\nHola!\n";
    t.hoja.insert(t.hoja.end(), {"Varios/Texto:Cadena=Hola!", "Varios/:Cadena="});
    return t;
}

TipoEntidad tipoPuntoControl()
{
    const auto crea = []
    {
        PuntoControl pc = conEstilo(PuntoControl("B1", {1, 2, 3}));
        pc.codigo = "X";
        pc.asignaEscalaConstante({1, 2, 3}, 1.0, 24.9);  // 24 pixels
        return muestra(std::move(pc));
    };
    TipoEntidad t = puntual("PuntoControl", "PuntoControl", crea, vacia<PuntoControl>, {1, 2, 3});
    // name, code, the size as -|0.2| marking the three fields of the mix-in after the style id
    t.fichero = bloque16("PC1", prefijo() + xyz({{1, 2, 3}}) + Bytes{2, 0, 'B', '1', 2, 0, 'X', 0} +
                                    f64(-0.2) + entero(42, 8) + xyz({{1, 2, 3}}) + f64(1.0) +
                                    entero(24, 4));
    t.posCuenta = 6 + 32 + 24;
    t.anchoCuenta = 2;
    t.llamadas =
        "dibujaPunto (1,2,3) FFFF0000 pick\niniciaObjeto FFFF0000 0\nvertices 6\n"
        "aristas 6\nescalaConstante (1,2,3)\nfinObjeto pick\n"
        "dibujaTextoAncho (1,2,3) FFFF0000 pick\n";
    t.dxf =
        "  0\nPOINT\n  8\nEjes\n 10\n1.0000\n 20\n2.0000\n 30\n3.0000\n  0\nTEXT\n  8\nEjes\n"
        " 10\n1.0000\n 20\n2.0000\n 30\n3.0000\n 40\n1.0000\n 72\n0\n  1\nB1\n";
    t.hoja.insert(t.hoja.end(), {"Varios/Nombre:Cadena=B1", "Varios/Código:Cadena=X"});
    return t;
}

TipoEntidad tipoLinea()
{
    const auto crea = []
    {
        Linea l({1.5, -2, 3}, {4.5, -2, 3});
        l.color.setIndiceColor(3);
        return muestra(std::move(l));
    };
    TipoEntidad t{"Linea", "Linea", crea, vacia<Linea>};
    t.coordenadas = {{1.5, -2, 3}, {4.5, -2, 3}};
    t.fichero = bloque16("Ln1", prefijo(3, {0xFF, 0, 0xFF, 0}) + xyz(t.coordenadas));
    t.tipoCaliente = kTipoVertice;
    t.aristasCalientes = 1;
    t.llamadas = "dibujaLinea (1.5,-2,3) (4.5,-2,3) FF00FF00 pick\n";
    t.dxf =
        "  0\nLINE\n  8\nEjes\n 62\n3\n 10\n1.5000\n 20\n-2.0000\n 30\n3.0000\n"
        " 11\n4.5000\n 21\n-2.0000\n 31\n3.0000\n";
    // ends, midpoint and segment in that order, a tie keeping the earlier offer
    t.referencias = {{1.5, -2, kTodo, kExtremos, {1.5, -2, 3}, 0},
                     {3, -2, kTodo, kPuntosMedios, {3, -2, 3}, 0},
                     {2.25, -1.5, kCercano, kCercano, {2.25, -2, 3}, 0.5},
                     {1.5, -2, kPuntosInsercion, -1, {}, 0}};
    t.hoja = {"Geometría/Inicio:Coordenada=(1.5,-2,3)", "Geometría/Fin:Coordenada=(4.5,-2,3)",
              "Geometría/Incremento:Vector=(3,0,0)",
              "Geometría/Longitud:DoblePositivo!=           3"};
    return t;
}

// The square of side 4 as a polygon (open) or as a polyline, closed or open.
TipoEntidad tipoCadena(const char* nombre, bool poligono, bool cerrada)
{
    const auto crea = [poligono, cerrada]() -> std::unique_ptr<Entidad>
    {
        if (poligono)
        {
            return muestra(Poligono(4, cuadrado().data()));
        }
        Polilinea p(4, cuadrado().data());
        p.cerrada = cerrada;
        return muestra(std::move(p));
    };
    TipoEntidad t{nombre, "Polilinea", crea, poligono ? vacia<Poligono> : vacia<Polilinea>};
    // a polygon has no closed flag in its body
    const Bytes bandera = poligono ? Bytes{} : Bytes{cerrada, cerrada};
    t.fichero = bloque16("Pg1", prefijo() + bandera + entero(4, 4) + xyz(cuadrado()));
    t.posCuenta = 38 + bandera.size();
    t.anchoCuenta = 4;
    t.cuentaVertices = true;
    t.coordenadas = cuadrado();
    t.tipoCaliente = kTipoVertice;
    t.aristasCalientes = cerrada ? 4 : 3;
    t.llamadas = poligono ? "dibujaPoligono 4 FFFF0000 pick\n"
                          : std::string("dibujaPolilinea 4 ") + (cerrada ? "cerrada" : "abierta") +
                                " (0,0,0) (4,0,0) (4,4,0) (0,4,0) FFFF0000 pick\n";
    t.dxf = polilineaDXF(poligono || cerrada ? 9 : 8, 4);  // 9 for the polygon, open as it is
    // the closing side is offered neither as midpoint nor as side
    t.referencias = {{0, 2, kPuntosMedios, kPuntosMedios, {2, 0, 0}, std::sqrt(8.0)},
                     {0, 1, kCercano, kCercano, {0, 0, 0}, 1},
                     {4, 0, kTodo, kExtremos, {4, 0, 0}, 0}};
    t.hoja = {"Geometría/Vértice:ListaCoordenadas=",
              cerrada ? "Geometría/Longitud:Doble!=          16"
                      : "Geometría/Longitud:Doble!=          12",
              cerrada ? "Varios/Cerrada:Booleano=1" : "Varios/Cerrada:Booleano=0"};
    return t;
}

TipoEntidad tipoPlano()
{
    static const std::vector<P> unidad = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    TipoEntidad t{"Plano", "Plano3D",
                  [] { return muestra(Plano(Plano3D<double>(0, 0, 1, 0), 4, unidad.data())); },
                  vacia<Plano>};
    // a, b, c, d, the reference point, the count and the contour
    t.fichero = bloque16("Pn1", prefijo() + f64(0) + f64(0) + f64(1) + f64(0) + xyz({{0, 0, 0}}) +
                                    entero(4, 4) + xyz(unidad));
    t.posCuenta = 94;
    t.anchoCuenta = 4;
    t.cuentaVertices = true;
    t.coordenadas = unidad;
    t.tipoCaliente = kTipoAuxiliar;
    t.aristasCalientes = 4;
    // the dashed outline with no pick, then the half see-through object
    t.llamadas =
        "setModoLinea F0F0\n"
        "dibujaPolilinea 4 cerrada (0,0,0) (1,0,0) (1,1,0) (0,1,0) FFFFFFFF null\n"
        "setModoLinea FFFF\nsetColorMaterial FFFF0000 1 0.5\niniciaObjeto FF0000FF 0\n"
        "vertices 4\nnormales 4\naristas 8\ncaras 8\nfinObjeto pick\n";
    t.dxf = polilineaDXF(8, 1);
    // over the closing side's midpoint, which is not offered; the plane hit beats all
    t.referencias = {{0, 0.5, kPuntosMedios, kPuntosMedios, {0.5, 0, 0}, std::sqrt(0.5)},
                     {0, 0.5, kExtremos, kExtremos, {0, 0, 0}, 0.5},
                     {0, 0.5, kTodo, 0, {0, 0.5, 0}, 0},
                     {0, 0.5, kPuntosInsercion, -1, {}, 0}};
    t.hoja = {"Geometría/Vértice:ListaCoordenadas="};
    return t;
}

TipoEntidad tipoSistemaLocal()
{
    const auto crea = []
    {
        SistemaLocal s;
        s.nombre = "Obra";
        s.setVectoresXYZ({0, 1, 0}, {-1, 0, 0}, {0, 0, 1});
        s.setOrigen({1, 2, 3});
        return muestra(std::move(s));
    };
    TipoEntidad t{"SistemaLocal", "Sistema Local", crea, vacia<SistemaLocal>};
    // a block of its own inside the list's: the name, the origin and the three axes
    t.fichero =
        bloque16("Sl1", bloque16("Sl1", prefijo() + Bytes{4, 0, 'O', 'b', 'r', 'a'} +
                                            xyz({{1, 2, 3}, {0, 1, 0}, {-1, 0, 0}, {0, 0, 1}})));
    t.posCuenta = 10;
    t.anchoCuenta = 2;
    t.coordenadas = {{1, 2, 3}};
    t.cualquierIndice = true;
    // the axes in red, green and blue, then the name in white, not picked
    t.llamadas =
        "dibujaLinea (1,2,3) (1,3,3) FF0000FF pick\n"
        "dibujaLinea (1,2,3) (0,2,3) FF00FF00 pick\n"
        "dibujaLinea (1,2,3) (1,2,4) FFFF0000 pick\n"
        "dibujaTexto (1,2,3) \"Obra\" FFFFFFFF null\n";
    t.referencias = {{1, 2, 0xFF, -1, {}, 0}};
    return t;
}

const char* const kTipos[] = {"Booleano",         "Entero",     "Doble",      "DoblePositivo",
                              "Cadena",           "Color",      "ColorCad",   "Material",
                              "Enumerado",        "Coordenada", "Vector",     "Orientacion",
                              "ListaCoordenadas", "Leyenda",    "CapaEntidad"};

}  // namespace

Capa& capaCatalogo()
{
    static Capa capa("Ejes", ColorCapa(5), 1);
    capa.id = 7;
    return capa;
}

const std::vector<TipoEntidad>& catalogoEntidades()
{
    static const std::vector<TipoEntidad> catalogo = {tipoPunto(),
                                                      tipoTexto(),
                                                      tipoPuntoControl(),
                                                      tipoLinea(),
                                                      tipoCadena("Polilinea", false, true),
                                                      tipoCadena("PolilineaAbierta", false, false),
                                                      tipoCadena("Poligono", true, false),
                                                      tipoPlano(),
                                                      tipoSistemaLocal()};
    static const std::vector<TipoEntidad> todos = []
    {
        std::vector<TipoEntidad> v = catalogo;
        for (auto&& familia :
             {tiposPuntosCaras(), tiposSuperficies(), tiposSolidos(), tiposCamaras()})
        {
            v.insert(v.end(), familia.begin(), familia.end());
        }
        return v;
    }();
    return todos;
}

const TipoEntidad& tipoEntidad(const std::string& nombre)
{
    for (const TipoEntidad& t : catalogoEntidades())
    {
        if (t.nombre == nombre)
        {
            return t;
        }
    }
    throw std::out_of_range("no entity kind " + nombre);
}

std::vector<std::string> filasHoja(const Entidad& e, int desde)
{
    std::vector<std::string> filas;
    for (int c = desde; c < e.numeroCategorias(); ++c)
    {
        for (int i = 0; i < e.numeroPropiedadesCategoria(c); ++i)
        {
            Prop p;
            const bool hay = e.getPropiedad(c, i, p);
            const bool xyz = p.tipo == TipoProp::Coordenada || p.tipo == TipoProp::Vector;
            filas.push_back(e.nombreCategoria(c) + "/" + p.nombre + ":" + kTipos[p.tipo] +
                            (p.soloLectura ? "!" : "") + "=" +
                            (xyz ? texto({p.x, p.y, p.z}) : p.valor) + (hay ? "" : " (false)"));
        }
    }
    return filas;
}

}  // namespace cad::prueba
