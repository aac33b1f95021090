// Spheres, 360 photographs and camera shots, what the catalogue does not cover: the sphere's
// tessellation, fresh DXF mesh and sheet writes, the photograph's likeness to the sphere,
// divisions and colours, the camera's glyph and turns, constant scale, label and the
// drawing's switch that hides cameras.
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "documento/Dibujo.h"
#include "documento/EstiloTexto.h"
#include "documento/VariablesPintura.h"
#include "entidades/Esfera.h"
#include "entidades/Foto360.h"
#include "entidades/TomaCamara.h"
#include "modelo/PuntosCalientes.h"
#include "soporte/BloquesPrueba.h"
#include "soporte/CatalogoEntidades.h"
#include "soporte/CatalogoPiezas.h"
#include "soporte/ComprobadorMalla.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::Esfera;
using cad::Foto360;
using cad::Modelo3D;
using cad::TomaCamara;
using cad::prueba::Bytes;
using cad::prueba::carga;
using cad::prueba::guarda;
using cad::prueba::PantallaGrabadora;
using cad::prueba::pintaEscena;
using P = cad::Punto3<double>;
using Puntos = std::vector<P>;

constexpr double kPi = 3.1415926535897;  // the tessellation's own
constexpr double kVuelta = 6.283185308;  // the camera's own full turn

Puntos puntos(const Modelo3D& m)
{
    Puntos v;
    m.getPuntos(v);
    return v;
}

void cerca(const P& p, const P& q)
{
    EXPECT_NEAR(p.x, q.x, 1e-9);
    EXPECT_NEAR(p.y, q.y, 1e-9);
    EXPECT_NEAR(p.z, q.z, 1e-9);
}

// Meridians 0..60 (the seam twice) of 19 rings and the two poles: 1161 vertices; 1200 faces
// of the sphere's material, joined into one sound mesh (V - E + F = 1 over the open seam).
// The first pole is at +z with uv (0.5, 0), the second at -z with (0.5, 1); ring 1 of
// meridian 0 lies next to the first pole at uv (0, 1/20). Meridian i has u = i / 60 and
// starts at the angle -pi/2: meridian 0 crosses the equator at -y, meridian 30 at +x and
// meridian 60 at +y. The DXF tessellates afresh, whatever the kept mesh holds (here stale
// after a move): 2280 triangles, the first from the pole at +z to meridians 0 and 1 of ring
// 1, on layer "0" outside a drawing.
TEST(Esfera, TeselaSesentaPorVeinteYDXFNuevo)
{
    Modelo3D m;
    Esfera({1, 2, 3}, 2.0, 9).generaModelo(m);
    ASSERT_EQ(m.vertices().size(), 1161U);
    ASSERT_EQ(m.caras().size(), 1200U);
    EXPECT_EQ(m.aristas().size(), 1161 + 1200 - 1);
    EXPECT_TRUE(cad::mallaSana(m));
    EXPECT_EQ(m.getMaterialCara(0), 9);
    EXPECT_EQ(m.getMaterialCara(1199), 9);

    const auto uv = [&m](int v) { return m.getVertice(v).uv; };
    EXPECT_EQ(m.getVertice(0).punto, P(1, 2, 5));
    EXPECT_EQ(m.getVertice(1).punto, P(1, 2, 1));
    EXPECT_EQ(uv(0), cad::Vector2D<float>(0.5F, 0.0F));
    EXPECT_EQ(uv(1), cad::Vector2D<float>(0.5F, 1.0F));
    cerca(m.getVertice(2).punto, {1, 2 - 2 * std::sin(kPi / 20), 3 + 2 * std::cos(kPi / 20)});
    EXPECT_EQ(uv(2), cad::Vector2D<float>(0.0F, 0.05F));
    const auto ecuador = [](int i) { return 2 + i * 19 + 9; };
    cerca(m.getVertice(ecuador(0)).punto, {1, 0, 3});
    cerca(m.getVertice(ecuador(30)).punto, {3, 2, 3});
    cerca(m.getVertice(ecuador(60)).punto, {1, 4, 3});
    EXPECT_EQ(uv(ecuador(30)), cad::Vector2D<float>(0.5F, 0.5F));
    EXPECT_EQ(uv(ecuador(60)), cad::Vector2D<float>(1.0F, 0.5F));

    Esfera e({-1, 0, 0}, 1.0);
    pintaEscena(e);
    e.traslada({1, 0, 0});
    const std::string dxf = cad::prueba::registrosDXF(e);
    EXPECT_EQ(cad::prueba::cuenta(dxf, "3DFACE"), 2280);
    EXPECT_EQ(dxf.rfind("  0\n3DFACE\n  8\n0\n"
                        " 10\n0.0000\n 20\n0.0000\n 30\n1.0000\n"
                        " 11\n0.0000\n 21\n-0.1564\n 31\n0.9877\n"
                        " 12\n0.0082\n 22\n-0.1562\n 32\n0.9877\n"
                        " 13\n0.0082\n 23\n-0.1562\n 33\n0.9877\n 70\n0\n",
                        0),
              0U);
}

// A write of "Centro", "Radio" or the material takes effect at the next paint, which makes
// the mesh again; until then the coordinates are the old mesh's. "Área" and "Volumen" refuse
// writes. volumen and interior answer true for any point and leave the box alone. A body cut
// inside the radius reads false, but what came stays and the mesh is made again at the next
// paint even so: the painted sphere moves to the centre that was read.
TEST(Esfera, EscriturasTrasladoYLecturaCortadaRehacenLaMalla)
{
    Esfera e({0, 0, 0}, 1.0);
    EXPECT_EQ(e.numCoordenadas(), 0);
    PantallaGrabadora p;
    e.dibuja(p);
    EXPECT_EQ(*e.coordenada(0), P(0, 0, 1));

    cad::Prop prop;
    prop.valor = "1.5";
    EXPECT_TRUE(e.setPropiedad(1, 1, prop));
    EXPECT_EQ(*e.coordenada(0), P(0, 0, 1));
    e.dibuja(p);
    EXPECT_EQ(*e.coordenada(0), P(0, 0, 1.5));
    prop.x = 1;
    prop.y = 2;
    prop.z = 3;
    EXPECT_TRUE(e.setPropiedad(1, 0, prop));
    e.dibuja(p);
    EXPECT_EQ(*e.coordenada(0), P(1, 2, 4.5));
    e.traslada({0, 0, -3});
    e.dibuja(p);
    EXPECT_EQ(*e.coordenada(0), P(1, 2, 1.5));
    prop.material = 4;
    EXPECT_TRUE(e.setPropiedad(2, 0, prop));
    EXPECT_EQ(e.material(), 4);
    e.dibuja(p);
    EXPECT_EQ(e.modelo.getMaterialCara(0), 4);
    EXPECT_FALSE(e.setPropiedad(1, 2, prop));
    EXPECT_FALSE(e.setPropiedad(1, 3, prop));

    cad::Rect3<double> caja;
    EXPECT_TRUE(e.volumen(caja));
    EXPECT_TRUE(e.interior({100, 100, 100}));
    EXPECT_EQ(caja.maximo, P(-1, -1, -1));

    Esfera cortada({0, 0, 0}, 1.0);
    cortada.dibuja(p);
    const Bytes& b = cad::prueba::tipoEntidad("Esfera").fichero;
    EXPECT_FALSE(carga(Bytes(b.begin(), b.begin() + 6 + 32 + 24 + 4), cortada));
    EXPECT_EQ(cortada.centro, P(1, 2, 3));
    cortada.dibuja(p);
    EXPECT_EQ(cortada.coordenada(0)->x, 1);
    EXPECT_EQ(cortada.coordenada(0)->y, 2);
}

// A photograph of 60 by 20 that is not turned (pitch 3.1415926535897 makes no turn about Y)
// has exactly the sphere's vertices and texture coordinates. The mesh's per-vertex colours,
// which a wire or hidden-line paint hands to the display, are dropped by a photograph before
// it paints (its image alone colours it); a sphere sends them.
TEST(Foto360, ComoLaEsferaSinColoresPorVertice)
{
    Modelo3D esfera;
    Esfera({1, 2, 3}, 2.0).generaModelo(esfera);
    const Foto360 sinGiro({1, 2, 3}, 2.0, 60, 20, 0, kPi, 0);
    EXPECT_EQ(puntos(sinGiro.modelo), puntos(esfera));
    std::vector<cad::Vector2D<float>> uv;
    std::vector<cad::Vector2D<float>> uvEsfera;
    sinGiro.modelo.getCoordenadasUV(uv);
    esfera.getCoordenadasUV(uvEsfera);
    EXPECT_EQ(uv, uvEsfera);

    Foto360 f({0, 0, 0}, 1, 3, 2, 0, 0, 0);
    f.modo = cad::PantallaCAD::kOculto;
    f.modelo.coloresVertices.assign(6, 0xFF0000FFU);
    PantallaGrabadora foto;
    f.dibuja(foto);
    EXPECT_TRUE(foto.llamadasDe("coloresVertices").empty());
    EXPECT_TRUE(f.modelo.coloresVertices.empty());
    EXPECT_EQ(foto.llamadasDe("caras").size(), 1U);

    Esfera e;
    e.modo = cad::PantallaCAD::kOculto;
    pintaEscena(e);
    e.modelo.coloresVertices.assign(1161, 0xFF0000FFU);
    PantallaGrabadora conColores;
    e.dibuja(conColores);
    EXPECT_EQ(conColores.llamadasDe("coloresVertices"),
              std::vector<std::string>{"coloresVertices 1161"});
}

// Divisions a file may hold but the tessellation refuses: fewer than 3 meridians or 2
// parallels, negative as int32, or more than kMaximoCarasEsfera faces. The body still reads
// whole and saves back unchanged, the mesh is empty and nothing is painted. The constructor
// refuses them alike. The limit is on the face count: 2048 by 128 is still made. The reader
// itself makes no mesh at all: it waits for the coordinates or the paint.
TEST(Foto360, DivisionesFueraDeRango)
{
    const Bytes& muestra = cad::prueba::tipoEntidad("Foto360").fichero;
    const size_t pos = 6 + 32 + 96 + 24 + 8 + 2;  // anchura, then altura
    Foto360 leida;
    ASSERT_TRUE(carga(muestra, leida));
    EXPECT_TRUE(leida.modelo.vertices().empty());
    EXPECT_EQ(leida.numCoordenadas(), 6);
    const uint32_t casos[][2] = {{2, 2},     {3, 1},    {0xFFFFFFFF, 2}, {3, 0x80000000},
                                 {257, 128}, {1025, 2}, {65536, 65536}};
    for (const auto& caso : casos)
    {
        Bytes b = muestra;
        cad::prueba::ponNum(b, pos, caso[0], 4);
        cad::prueba::ponNum(b, pos + 4, caso[1], 4);
        Foto360 f;
        ASSERT_TRUE(carga(b, f)) << caso[0] << "x" << caso[1];
        EXPECT_TRUE(f.modelo.vertices().empty());
        EXPECT_TRUE(f.sucio);
        EXPECT_EQ(f.numCoordenadas(), 0);
        EXPECT_EQ(guarda(f), b);
        EXPECT_TRUE(cad::prueba::pintaLlamadas(f).empty());
    }
    EXPECT_EQ(Foto360({0, 0, 0}, 1, 2, 20, 0, 0, 0).numCoordenadas(), 0);
    EXPECT_TRUE(cad::divisionesAdmisibles(256, 128));
    EXPECT_FALSE(cad::divisionesAdmisibles(256, 129));
    EXPECT_TRUE(cad::divisionesAdmisibles(1024, 32));
    EXPECT_FALSE(cad::divisionesAdmisibles(1025, 2));
}

// With omega 6.283185308, phi 0 and kappa 0 the glyph is only carried to the station: the
// projection centre, the four image corners one unit ahead along +Y (0.8 by 0.6) and the up
// mark, the nine edges, and the image plane on corners 1..4 with its texture upright and
// material 0 for no image. Focal distance and image size change nothing of it. The turns
// about the station are 6.283185308 - omega about X first, then phi about Y, then -kappa
// about Z: kappa pi/2 alone swings the up mark's tip (0, 1, 0.6) to (-1, 0, 0.6); the three
// together (omega a quarter turn short of 6.283185308) take it to (-0.6, -1, 0).
TEST(TomaCamara, GlifoDeTamanoFijoYGiros)
{
    TomaCamara c({1, 2, 3}, {kVuelta, 0, 0}, 35, 36, 24);
    const std::vector<cad::primitiva_t> escena = pintaEscena(c);
    ASSERT_EQ(escena.size(), 3U);
    const Puntos glifo = {{0 + 1.0, 0 + 2.0, 0 + 3.0},  {-0.4 + 1, 1.0 + 2, -0.3 + 3},
                          {0.4 + 1, 1.0 + 2, -0.3 + 3}, {0.4 + 1, 1.0 + 2, 0.3 + 3},
                          {-0.4 + 1, 1.0 + 2, 0.3 + 3}, {0 + 1.0, 1.0 + 2, 0.3 + 3},
                          {0 + 1.0, 1.0 + 2, 0.6 + 3}};
    EXPECT_EQ(escena[0].puntos, glifo);
    EXPECT_EQ(escena[0].aristas,
              (std::vector<uint32_t>{0, 1, 0, 2, 0, 3, 0, 4, 1, 2, 2, 3, 3, 4, 4, 1, 5, 6}));
    EXPECT_EQ(escena[0].modo, 0);
    const cad::primitiva_t& imagen = escena[1];
    EXPECT_EQ(imagen.puntos, Puntos(glifo.begin() + 1, glifo.begin() + 5));
    EXPECT_EQ(imagen.uv, (std::vector<float>{0, 1, 1, 1, 1, 0, 0, 0}));
    EXPECT_EQ(imagen.caras, (std::vector<int32_t>{4, 0, 1, 2, 3}));
    EXPECT_EQ(imagen.material, 0);
    EXPECT_EQ(pintaEscena(TomaCamara({1, 2, 3}, {kVuelta, 0, 0}, 1, 0.5, 0.25)).at(0).puntos,
              glifo);

    const double recto = 1.5707963267948966;
    const auto punta = [](const TomaCamara& t) { return pintaEscena(t).at(0).puntos.at(6); };
    cerca(punta(TomaCamara({1, 2, 3}, {kVuelta, 0, recto}, 1, 1, 1)), {0, 2, 3.6});
    cerca(punta(TomaCamara({1, 2, 3}, {kVuelta - recto, recto, recto}, 1, 1, 1)), {0.4, 1, 3});
}

// escalaConstante comes only while the mix-in is active (escala > 0 and at least one pixel),
// once per object, centred on the station, which traslada moves while the mix-in's own
// posicion stays where it was. The label (white, at the station: the catalogue's) is centred,
// height 1, not rotated, in the bound style's font and marks ("" and 0 with none);
// setTextoVisible sets and clears bit 4, whose painting the catalogue's hidden label shows.
TEST(TomaCamara, EscalaConstanteYEtiqueta)
{
    TomaCamara c({1, 2, 3}, {0.1, 0.2, 0.3}, 1, 1, 1);
    c.asignaEscalaConstante({1, 2, 3}, 0.0, 24);
    PantallaGrabadora sinEscala;
    c.dibuja(sinEscala);
    c.asignaEscalaConstante({1, 2, 3}, 1.0, 0.9);
    PantallaGrabadora sinPixeles;
    c.dibuja(sinPixeles);
    EXPECT_TRUE(sinEscala.llamadasDe("escalaConstante").empty());
    EXPECT_TRUE(sinPixeles.llamadasDe("escalaConstante").empty());

    c.asignaEscalaConstante({1, 2, 3}, 2.0, 30);
    c.traslada({1, 0, 0});
    EXPECT_EQ(c.EntidadConEscalaConstante::posicion, P(1, 2, 3));
    PantallaGrabadora activa;
    c.dibuja(activa);
    EXPECT_EQ(activa.llamadasDe("escalaConstante"),
              (std::vector<std::string>{"escalaConstante (2,2,3)", "escalaConstante (2,2,3)"}));
    EXPECT_EQ(activa.escena.at(1).escala, 2.0);
    EXPECT_EQ(activa.escena.at(1).pixeles, 30.0);

    c.setImagen("Norte", 3);
    const cad::primitiva_t t = pintaEscena(c).at(2);
    EXPECT_EQ(t.texto + "/" + t.fuente + "/" + std::to_string(t.estilo), "Norte//0");
    EXPECT_EQ(t.alineacion, 1);
    EXPECT_EQ(t.altura, 1.0F);
    EXPECT_EQ(t.rotacion, 0.0F);
    cad::EstiloTexto estilo("Rotulos", "Arial", 10, true, true);
    c.setEstiloTexto(&estilo);
    const cad::primitiva_t conEstilo = pintaEscena(c).at(2);
    EXPECT_EQ(conEstilo.fuente + "/" + std::to_string(conEstilo.estilo), "Arial/3");
    c.setTextoVisible(false);
    EXPECT_EQ(c.estado, cad::kEstadoEtiquetaOculta);
    c.setTextoVisible(true);
    EXPECT_EQ(c.estado, 0U);
}

// While the drawing being painted has "OCULTA_CAMARAS" a camera paints nothing at all; the
// same camera paints inside that drawing's scope before the variable is set, and outside it.
// "Orientación" carries omega, phi, kappa in x, y, z; neither row of category 1 takes a
// write. The hot set (empty: the catalogue's) still learns its entity.
TEST(TomaCamara, OcultaCamarasHojaYPuntosCalientes)
{
    TomaCamara c({1, 2, 3}, {0.1, 0.2, 0.3}, 1, 1, 1);
    cad::Dibujo dibujo;
    {
        const cad::AmbitoPintura ambito(&dibujo);
        EXPECT_EQ(cad::prueba::pintaLlamadas(c).size(), 11U);
        dibujo.setVariable(cad::kVarOcultaCamaras, 1);
        EXPECT_EQ(cad::prueba::pintaLlamadas(c).size(), 0U);
    }
    EXPECT_EQ(cad::prueba::pintaLlamadas(c).size(), 11U);

    cad::Prop o;
    ASSERT_TRUE(c.getPropiedad(1, 1, o));
    EXPECT_EQ(P(o.x, o.y, o.z), P(0.1, 0.2, 0.3));
    o.x = 9;
    o.valor = "9";
    EXPECT_FALSE(c.setPropiedad(1, 0, o));
    EXPECT_FALSE(c.setPropiedad(1, 1, o));
    EXPECT_EQ(c.posicion, P(1, 2, 3));
    EXPECT_EQ(c.orientacion, cad::Vector3D<double>(0.1, 0.2, 0.3));

    cad::PuntosCalientes h;
    c.puntosCalientes(h);
    EXPECT_EQ(h.entidad, &c);
}

}  // namespace
