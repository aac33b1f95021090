// Polilinea and Poligono: block bytes, hostile counts, paint, drags, snap, DXF and sheet.
#include "entidades/Polilinea.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/Capa.h"
#include "documento/ReferenciaEntidades.h"
#include "entidades/Poligono.h"
#include "intercambio/ExportaDXF.h"
#include "modelo/PuntosCalientes.h"
#include "soporte/BloquesPrueba.h"
#include "soporte/FicheroTemporal.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::prueba::Bytes;
using cad::prueba::carga;
using cad::prueba::guarda;
using Puntos = std::vector<cad::Punto3<double>>;
using cad::Punto3;

// The square of side 4 on z = 0, counter-clockwise from the origin.
const Puntos kCuadrado = {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}};

cad::Polilinea polilinea(const Puntos& v, bool cerrada)
{
    cad::Polilinea p(static_cast<int>(v.size()), v.data());
    p.cerrada = cerrada;
    return p;
}

// n vertices on a line, each with bytes of its own.
Puntos recta(int n)
{
    Puntos v;
    for (int i = 0; i < n; ++i)
    {
        v.emplace_back(i, 2.0 * i, -0.5 * i);
    }
    return v;
}

// Claims one byte less than the file holds: a count checked against it fails one vertex
// before the reads themselves would.
class LectorEscaso : public cad::SerializadorBinarioLectura
{
public:
    using SerializadorBinarioLectura::SerializadorBinarioLectura;
    uint64_t bytesDisponibles() override
    {
        const uint64_t n = SerializadorBinarioLectura::bytesDisponibles();
        return n > 0 ? n - 1 : 0;
    }
};

Bytes trozo(const Bytes& b, size_t desde, size_t n)
{
    return Bytes(b.begin() + static_cast<std::ptrdiff_t>(desde),
                 b.begin() + static_cast<std::ptrdiff_t>(desde + n));
}

Bytes bytesDe(const Puntos& v)
{
    Bytes b(v.size() * 24);
    std::memcpy(b.data(), v.data(), b.size());
    return b;
}

// A vertical ray down through (x, y), seen through a clip cube of -10..10 drawing units.
struct Rayo
{
    Rayo(double x, double y, int mascara)
        : r(amplia(pantalla), Punto3<double>(x, y, 5), cad::Vector3D<double>(0, 0, -1), mascara,
            1.0)
    {
    }
    static cad::prueba::PantallaGrabadora* amplia(cad::prueba::PantallaGrabadora& p)
    {
        p.proyeccion(0, 0) = p.proyeccion(1, 1) = p.proyeccion(2, 2) = 0.1;
        return &p;
    }
    cad::prueba::PantallaGrabadora pantalla;  // before r: r reads its matrices
    cad::ReferenciaEntidades r;
};

// 999 open vertices: "Pg1", u16 length 2 + 32 + 2 + 4 + 999 * 24 = 24016, the flag as two
// zero bytes, count 999. 1,000 closed: "PolyLn1", u32 length 24042, flag 1 1, count 1000.
// Both read back to the same chain and bytes. A polygon of 1,000 stays "Pg1" with kind 0.
TEST(PolilineaFichero, EtiquetaYLongitudSegunTamano)
{
    const Puntos v999 = recta(999);
    cad::Polilinea corta(999, v999.data());
    const Bytes b999 = guarda(corta);
    ASSERT_EQ(b999.size(), 4U + 24016U);
    EXPECT_EQ(trozo(b999, 0, 6), (Bytes{'P', 'g', '1', 0, 0xD0, 0x5D}));
    EXPECT_EQ(trozo(b999, 38, 6), (Bytes{0, 0, 0xE7, 0x03, 0, 0}));
    EXPECT_EQ(trozo(b999, 44, 999 * 24), bytesDe(v999));

    const Puntos v1000 = recta(1000);
    cad::Polilinea larga = polilinea(v1000, true);
    const Bytes b1000 = guarda(larga);
    ASSERT_EQ(b1000.size(), 8U + 24042U);
    EXPECT_EQ(trozo(b1000, 0, 12), (Bytes{'P', 'o', 'l', 'y', 'L', 'n', '1', 0, 0xEA, 0x5D, 0, 0}));
    EXPECT_EQ(trozo(b1000, 44, 6), (Bytes{1, 1, 0xE8, 0x03, 0, 0}));

    for (const Bytes* b : {&b999, &b1000})
    {
        cad::Polilinea leida;
        ASSERT_TRUE(carga(*b, leida));
        EXPECT_EQ(leida.datosDesconocidos, nullptr);
        EXPECT_EQ(guarda(leida), *b);
    }
    cad::Poligono poligono(1000, v1000.data());
    EXPECT_STREQ(poligono.etiqueta(), "Pg1");
    EXPECT_EQ(poligono.tamanoBloque(), 0);
}

// A polygon body has no flag: "Pg1", u16 length 2 + 32 + 4 + 72 = 110, count 3 right after
// the prefix, then the vertices; Poligono::lee takes exactly that back.
TEST(PoligonoFichero, BytesSinIndicadorYVuelta)
{
    const Puntos v = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
    cad::Poligono g(3, v.data());
    const Bytes b = guarda(g);
    ASSERT_EQ(b.size(), 4U + 110U);
    EXPECT_EQ(trozo(b, 0, 6), (Bytes{'P', 'g', '1', 0, 110, 0}));
    EXPECT_EQ(trozo(b, 38, 4), (Bytes{3, 0, 0, 0}));
    EXPECT_EQ(trozo(b, 42, 72), bytesDe(v));
    cad::Poligono leido;
    ASSERT_TRUE(carga(b, leido));
    EXPECT_EQ(leido.vertices, v);
}

// Counts from the file are checked against the bytes left, 24 per vertex, before anything
// is reserved: one byte short of three vertices fails though the reads would succeed; a
// count of 0xFFFFFFFF fails; and a polyline reading a polygon body whose first x puts
// 0xFFFF in its count (what the factory does with a saved polygon) fails without harm.
TEST(PolilineaFichero, CuentaDelFicheroComprobada)
{
    cad::Polilinea p = polilinea({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}, false);
    Bytes b = guarda(p);
    cad::Polilinea exacta;
    EXPECT_TRUE(carga(b, exacta));
    cad::Polilinea escasa = polilinea(kCuadrado, false);
    EXPECT_FALSE(carga<LectorEscaso>(b, escasa));
    EXPECT_TRUE(escasa.vertices.empty());
    cad::Poligono g(3, p.vertices.data());
    cad::Poligono escaso;
    EXPECT_FALSE(carga<LectorEscaso>(guarda(g), escaso));

    std::memset(&b[40], 0xFF, 4);
    cad::Polilinea enorme;
    EXPECT_FALSE(carga(b, enorme));
    EXPECT_TRUE(enorme.vertices.empty());

    const uint64_t bits = 0x3FF000000000FFFFULL;
    std::memcpy(&g.vertices[0].x, &bits, sizeof bits);
    const Bytes bg = guarda(g);
    ASSERT_EQ(trozo(bg, 38, 6), (Bytes{3, 0, 0, 0, 0xFF, 0xFF}));
    cad::Polilinea hostil;
    EXPECT_FALSE(carga(bg, hostil));
    EXPECT_TRUE(hostil.vertices.empty());
}

// Exact display calls: a polyline gives one dibujaPolilinea with count, flag, vertices,
// colour and the entity as pick value; a polygon one dibujaPoligono with its layer's colour;
// empty chains make no call at all.
TEST(PolilineaDibujo, LlamadasExactas)
{
    cad::Polilinea p = polilinea({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}, true);
    p.color.setABGR(0x11223344);
    cad::Capa roja("Ejes", cad::ColorCapa(1), 1);
    cad::Poligono g(4, kCuadrado.data());
    g.asignaCapa(&roja);
    cad::prueba::PantallaGrabadora pantalla;
    p.dibuja(pantalla);
    p.cerrada = false;
    p.dibuja(pantalla);
    g.dibuja(pantalla);
    cad::Polilinea().dibuja(pantalla);
    cad::Poligono().dibuja(pantalla);
    EXPECT_EQ(
        pantalla.llamadas,
        (std::vector<std::string>{"dibujaPolilinea 3 cerrada (0,0,0) (1,0,0) (1,1,0) 11223344 pick",
                                  "dibujaPolilinea 3 abierta (0,0,0) (1,0,0) (1,1,0) 11223344 pick",
                                  "dibujaPoligono 4 FF0000FF pick"}));
    ASSERT_EQ(pantalla.escena.size(), 3U);
    EXPECT_EQ(pantalla.escena[0].pick, static_cast<cad::Entidad*>(&p));
    EXPECT_EQ(pantalla.escena[2].puntos, kCuadrado);
    EXPECT_EQ(pantalla.escena[2].pick, static_cast<cad::Entidad*>(&g));
}

// Vertices first, numbered 0..n-1 and owned by the entity, then the edges: closed, the last
// runs from the last vertex to the first; open, there is one edge fewer.
TEST(PolilineaPuntosCalientes, VerticesLuegoAristas)
{
    cad::Polilinea p = polilinea(kCuadrado, true);
    cad::PuntosCalientes h;
    p.puntosCalientes(h);
    ASSERT_EQ(h.puntos.size(), 4U);
    EXPECT_EQ(h.puntos[3].punto, kCuadrado[3]);
    EXPECT_EQ(h.puntos[3].tipo, cad::kTipoVertice);
    EXPECT_EQ(h.puntos[3].indice, 3);
    EXPECT_EQ(h.puntos[3].entidad, &p);
    ASSERT_EQ(h.aristas.size(), 4U);
    EXPECT_EQ(h.aristas[3], std::make_pair(kCuadrado[3], kCuadrado[0]));

    cad::Poligono g(4, kCuadrado.data());
    cad::PuntosCalientes abierta;
    g.puntosCalientesEdicion(abierta, 0, 0);
    EXPECT_EQ(abierta.puntos[0].entidad, &g);
    ASSERT_EQ(abierta.aristas.size(), 3U);
    EXPECT_EQ(abierta.aristas[2], std::make_pair(kCuadrado[2], kCuadrado[3]));
}

// Dragging the closing edge (3) of a closed square moves the last and the first vertex
// rigidly from their grab positions, not again on a repeated call. Open, there is no edge 3
// and the drag is ignored; a vertex drag outside the chain is ignored too.
TEST(PolilineaPuntosCalientes, AristaDeCierreMueveUltimoYPrimero)
{
    cad::elemento_arrastrado_t e;
    e.tipo = cad::kTipoArista;
    e.indice = 3;
    e.extra = {kCuadrado[3], kCuadrado[0]};
    e.punto = Punto3<double>(0, 2, 0);
    e.posicion = Punto3<double>(-1, 3, 0.5);
    cad::Polilinea p = polilinea(kCuadrado, true);
    p.aplicaPuntoCaliente(e);
    p.aplicaPuntoCaliente(e);
    EXPECT_EQ(p.vertices, (Puntos{{-1, 1, 0.5}, {4, 0, 0}, {4, 4, 0}, {-1, 5, 0.5}}));

    cad::Polilinea abierta = polilinea(kCuadrado, false);
    abierta.aplicaPuntoCaliente(e);
    e.tipo = cad::kTipoVertice;
    e.indice = 4;
    abierta.aplicaPuntoCaliente(e);
    EXPECT_EQ(abierta.vertices, kCuadrado);
    e.indice = 2;
    abierta.aplicaPuntoCaliente(e);
    EXPECT_EQ(abierta.vertices[2], e.posicion);
}

// The closing side of a closed square is offered neither as midpoint nor as side: a ray
// through its midpoint (0, 2) gets the first side's midpoint (2, 0, 0), which ties with
// (2, 4, 0) and comes first; a ray crossing it at (0, 1) gets the first side one unit away.
// An empty chain offers nothing.
TEST(PolilineaReferencia, SinLadoDeCierre)
{
    cad::Polilinea p = polilinea(kCuadrado, true);
    Rayo medio(0, 2, cad::kPuntosMedios);
    ASSERT_TRUE(p.getReferenciaEntidades(medio.r));
    EXPECT_EQ(medio.r.tipoMejor, cad::kPuntosMedios);
    EXPECT_EQ(medio.r.puntoMejor, Punto3<double>(2, 0, 0));
    EXPECT_EQ(medio.r.entidadMejor, &p);

    Rayo lado(0, 1, cad::kCercano);
    ASSERT_TRUE(p.getReferenciaEntidades(lado.r));
    EXPECT_EQ(lado.r.tipoMejor, cad::kCercano);
    EXPECT_EQ(lado.r.puntoMejor, Punto3<double>(0, 0, 0));
    EXPECT_DOUBLE_EQ(lado.r.distanciaMejor, 1.0);

    Rayo vertice(4, 0, cad::kExtremos | cad::kPuntosMedios | cad::kCercano);
    cad::Poligono g(4, kCuadrado.data());
    ASSERT_TRUE(g.getReferenciaEntidades(vertice.r));
    EXPECT_EQ(vertice.r.tipoMejor, cad::kExtremos);
    EXPECT_FALSE(cad::Polilinea().getReferenciaEntidades(vertice.r));
}

// POLYLINE with flags 9 closed and 8 open, one VERTEX per vertex and SEQEND; a polygon
// writes flags 9 whatever its flag and does not repeat its first vertex.
TEST(PolilineaDXF, BanderasYVertices)
{
    const std::string ruta = cad::prueba::rutaTemporal("polilinea.dxf");
    const Puntos v = {{0, 0, 0}, {1, 2, 3}};
    {
        cad::Capa ejes("Ejes", cad::ColorCapa(1), 1);
        cad::Polilinea p = polilinea(v, true);
        cad::Poligono g(2, v.data());
        p.asignaCapa(&ejes);
        g.asignaCapa(&ejes);
        cad::ExportaDXF dxf(ruta);
        dxf.nuevaCapa("Ejes", 1);
        dxf.inicioEntidades();
        p.exportaDXF(dxf);
        p.cerrada = false;
        p.exportaDXF(dxf);
        g.exportaDXF(dxf);
        dxf.finEntidades();
    }
    const std::string cuerpo =
        "  0\nVERTEX\n 70\n    32\n  8\nEjes\n 10\n0.0000\n 20\n0.0000\n 30\n0.0000\n"
        "  0\nVERTEX\n 70\n    32\n  8\nEjes\n 10\n1.0000\n 20\n2.0000\n 30\n3.0000\n"
        "  0\nSEQEND\n";
    const std::string cabeza = "  0\nPOLYLINE\n  8\nEjes\n 66\n     1\n 70\n     ";
    const Bytes b = cad::prueba::leeFichero(ruta);
    EXPECT_NE(std::string(b.begin(), b.end())
                  .find("ENTITIES\n" + cabeza + "9\n" + cuerpo + cabeza + "8\n" + cuerpo + cabeza +
                        "9\n" + cuerpo + "  0\nENDSEC\n"),
              std::string::npos);
}

// The shared sheet: "Geometría" with the list "Vértice" and the read-only "Longitud", which
// counts the closing side only when closed; "Varios" with "Cerrada", written as an integer
// where any non-zero value closes. List elements are the vertices, bounds checked.
TEST(PolilineaPropiedades, HojaCompartida)
{
    cad::Poligono g(4, kCuadrado.data());
    EXPECT_EQ(g.numeroCategorias(), 3);
    EXPECT_EQ(g.nombreCategoria(1), "Geometría");
    EXPECT_EQ(g.nombreCategoria(2), "Varios");
    cad::Prop p;
    ASSERT_TRUE(g.getPropiedad(1, 0, p));
    EXPECT_EQ(p.nombre, "Vértice");
    EXPECT_EQ(p.tipo, cad::TipoProp::ListaCoordenadas);
    ASSERT_TRUE(g.getPropiedad(1, 1, p));
    EXPECT_EQ(p.nombre, "Longitud");
    EXPECT_TRUE(p.soloLectura);
    EXPECT_EQ(p.valor, "          12");

    cad::Polilinea pl = polilinea(kCuadrado, false);
    for (const char* texto : {"0", "2", "abc", "-1"})
    {
        p.valor = texto;
        ASSERT_TRUE(pl.setPropiedad(2, 0, p));
        ASSERT_TRUE(pl.getPropiedad(2, 0, p));
        EXPECT_EQ(p.nombre, "Cerrada");
        EXPECT_EQ(p.valor, pl.cerrada ? "1" : "0");
        EXPECT_EQ(pl.cerrada, texto[0] == '2' || texto[0] == '-') << texto;
    }
    ASSERT_TRUE(pl.getPropiedad(1, 1, p));
    EXPECT_EQ(p.valor, "          16");

    EXPECT_EQ(pl.numeroElementosLista(1, 0), 4);
    const double nuevo[3] = {-1, -2, -3};
    ASSERT_TRUE(pl.setElementoLista(1, 0, 1, nuevo));
    EXPECT_FALSE(pl.setElementoLista(1, 0, 4, nuevo));
    double x = 0;
    double y = 0;
    double z = 0;
    ASSERT_TRUE(pl.getElementoLista(1, 0, 1, x, y, z));
    EXPECT_EQ(Punto3<double>(x, y, z), Punto3<double>(-1, -2, -3));
    EXPECT_FALSE(pl.getElementoLista(1, 0, -1, x, y, z));
}

}  // namespace
