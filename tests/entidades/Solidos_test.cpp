// The solids beyond the catalogue: the tessellations' counts, places and texture, when the
// mesh goes out of date, the box and inside quirks, the free mesh's dead records and missing
// model, and a mesh too big for its block.
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioLectura.h"
#include "documento/Dibujo.h"
#include "documento/VariablesPintura.h"
#include "entidades/Cilindro.h"
#include "entidades/Cubo.h"
#include "entidades/Objeto3D.h"
#include "entidades/Prisma.h"
#include "modelo/Modelo3D.h"
#include "modelo/PuntosCalientes.h"
#include "soporte/CatalogoEntidades.h"
#include "soporte/CatalogoPiezas.h"
#include "soporte/MallasPrueba.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::Cilindro;
using cad::Cubo;
using cad::Matriz4;
using cad::Modelo3D;
using cad::Objeto3D;
using cad::Prisma;
using cad::Prop;
using cad::prueba::Bytes;
using cad::prueba::carga;
using cad::prueba::cuenta;
using cad::prueba::guarda;
using cad::prueba::muestraDe;
using cad::prueba::PantallaGrabadora;
using cad::prueba::registrosDXF;
using cad::prueba::texto;
using P = cad::Punto3<double>;

constexpr double kPi = 3.141592653589793;

std::vector<int> lados(const Modelo3D& m)
{
    std::vector<int> n;
    std::vector<int32_t> ciclo;
    for (size_t c = 0; c < m.caras().size(); ++c)
    {
        m.getVerticesCara(static_cast<int32_t>(c), ciclo);
        n.push_back(static_cast<int>(ciclo.size()));
    }
    return n;
}

void expectCerca(const P& a, const P& b)
{
    EXPECT_NEAR(a.distancia(b), 0.0, 1e-12) << texto(a) << " vs " << texto(b);
}

// The cylinder: 13 stations of a bottom and a top vertex, radio * (cos, sin) of station / 12
// turns, carried by the whole transform (here a quarter turn about X); u = angle / 2pi, v 0
// below and 1 on top; the seam's station repeats the first position exactly, with u = 1.
// Twelve quads and two 12-sided caps of the material: 39 edges, the seam not joined. The
// prism is drawn centred on the midpoint of its corners whatever translation it stores,
// turned by the rest of the transform about that midpoint: 8 corners, 6 quads of its
// material. The box's temporary mesh has material 0 and goes through the whole transform.
TEST(SolidosTeselado, CilindroPrismaYCubo)
{
    Cilindro c(P(1, 2, 3), 2, 5, 7);
    const Matriz4<double> giro = Matriz4<double>::rotacionX(kPi / 2);
    c.transformacion = giro;
    c.transformacion.setOrigen(P(1, 2, 3));
    Modelo3D m;
    m.nuevoVertice(P(9, 9, 9));  // emptied first
    c.generaModelo(m);
    ASSERT_EQ(m.vertices().size(), 26U);
    EXPECT_EQ(m.aristas().size(), 39);
    std::vector<int> esperados(12, 4);
    esperados.insert(esperados.end(), {12, 12});
    EXPECT_EQ(lados(m), esperados);
    for (const cad::cara_t& cara : m.caras())
    {
        EXPECT_EQ(cara.material, 7);
    }
    for (int i = 0; i < 13; ++i)
    {
        const double a = 2 * kPi * i / 12;
        for (int arriba = 0; arriba < 2; ++arriba)
        {
            const cad::vertice_t& v = m.getVertice(2 * i + arriba);
            expectCerca(v.punto,
                        c.transformacion * P(2 * std::cos(a), 2 * std::sin(a), 5.0 * arriba));
            EXPECT_FLOAT_EQ(v.uv.x, static_cast<float>(i / 12.0));
            EXPECT_EQ(v.uv.y, static_cast<float>(arriba));
        }
    }
    EXPECT_EQ(m.getVertice(24).punto, m.getVertice(0).punto);
    EXPECT_EQ(m.getVertice(25).punto, m.getVertice(1).punto);
    EXPECT_EQ(m.getVertice(24).uv.x, 1.0F);

    Prisma p(P(0, 0, 0), P(2, 4, 6), 9);
    p.transformacion = Matriz4<double>::rotacionZ(kPi / 2);
    p.transformacion.setOrigen(P(100, 100, 100));
    p.generaModelo(m);
    ASSERT_EQ(m.vertices().size(), 8U);
    EXPECT_EQ(lados(m), std::vector<int>(6, 4));
    EXPECT_EQ(m.caras()[5].material, 9);
    // rotacionZ turns (x, y) into (y, -x): sizes 2 and 4 swap about (1, 2, 3)
    const cad::Rect3<double> caja = m.caja();
    expectCerca(caja.minimo, P(-1, 1, 0));
    expectCerca(caja.maximo, P(3, 3, 6));

    Cubo cubo(P(0, 0, 0), P(2, 4, 6));
    cubo.transformacion = p.transformacion;
    cubo.generaModelo(m);
    ASSERT_EQ(m.vertices().size(), 8U);
    EXPECT_EQ(m.caras()[0].material, 0);
    expectCerca(m.caja().minimo, P(100, 98, 100));
    expectCerca(m.caja().maximo, P(104, 100, 106));
}

// The mesh is made at the paint that finds `sucio`. A read, a move, an azimuth drag, the
// material and each written row raise it; the coordinates stay those of the last paint
// until the next one. Exporting makes a mesh of its own and leaves `sucio` raised.
TEST(SolidosSucio, SeRehaceAlPintar)
{
    std::unique_ptr<Cilindro> c = muestraDe<Cilindro>("Cilindro");
    PantallaGrabadora p;
    EXPECT_TRUE(c->sucio);
    EXPECT_EQ(c->numCoordenadas(), 0);
    c->dibuja(p);
    EXPECT_FALSE(c->sucio);
    ASSERT_EQ(c->numCoordenadas(), 26);
    EXPECT_EQ(*c->coordenada(0), P(2.5, 2, 3));

    c->traslada({1, 0, 0});
    EXPECT_TRUE(c->sucio);
    EXPECT_EQ(*c->coordenada(0), P(2.5, 2, 3));
    registrosDXF(*c);
    EXPECT_TRUE(c->sucio);
    c->dibuja(p);
    EXPECT_EQ(*c->coordenada(0), P(3.5, 2, 3));

    const auto ensucia = [&c, &p](const char* que, auto cambio)
    {
        c->dibuja(p);
        ASSERT_FALSE(c->sucio);
        cambio();
        EXPECT_TRUE(c->sucio) << que;
    };
    Prop fila;
    fila.valor = "2.5";
    fila.material = 8;
    ensucia("radio", [&] { EXPECT_TRUE(c->setPropiedad(1, 1, fila)); });
    ensucia("altura", [&] { EXPECT_TRUE(c->setPropiedad(1, 2, fila)); });
    ensucia("centro", [&] { EXPECT_TRUE(c->setPropiedad(1, 0, fila)); });
    ensucia("material row", [&] { EXPECT_TRUE(c->setPropiedad(2, 0, fila)); });
    ensucia("setMaterial", [&] { c->setMaterial(2); });
    ensucia("azimuth",
            [&]
            {
                cad::elemento_arrastrado_t giro;
                giro.tipo = cad::kTipoAzimut;
                giro.punto = P(0, 0, 1);
                c->aplicaPuntoCaliente(giro);
            });
    ensucia("read", [&] { carga(guarda(*c), *c); });
    EXPECT_EQ(c->radio, 2.5);
    EXPECT_EQ(c->altura, 2.5);

    // the prism: a move and a written size keep the stored translation on the midpoint
    std::unique_ptr<Prisma> pr = muestraDe<Prisma>("Prisma");
    pr->dibuja(p);
    pr->traslada({0, 0, 1});
    EXPECT_TRUE(pr->sucio);
    fila.x = 4;
    fila.y = 4;
    fila.z = 4;
    pr->dibuja(p);
    EXPECT_TRUE(pr->setPropiedad(1, 1, fila));
    EXPECT_TRUE(pr->sucio);
    EXPECT_EQ(pr->maximo, P(5, 6, 8));
    EXPECT_EQ(pr->transformacion.getOrigen(), P(3, 4, 6));
    pr->dibuja(p);
    EXPECT_EQ(pr->extension(), cad::Rect3<double>(P(1, 2, 4), P(5, 6, 8)));

    // a short body reads false even past a whole prefix; what came is kept and still raises it
    const Bytes& entero = cad::prueba::tipoEntidad("Prisma").fichero;
    Prisma corto;
    corto.sucio = false;
    ASSERT_FALSE(carga(Bytes(entero.begin(), entero.end() - 2), corto));
    EXPECT_TRUE(corto.sucio);
    EXPECT_EQ(corto.maximo, P(3, -1, 4));
}

// Rows written from text; the derived ones (area and volume, whose values the catalogue's
// sheets give) refuse a write. The box measures its eight transformed corners and tests the
// six faces, flipped or not; a flat box has no inside. Prism and cylinder answer true without
// measuring: the box passed in comes back as it was, and any point is inside.
TEST(SolidosHoja, EscriturasVolumenEInterior)
{
    Cilindro c(P(0, 0, 0), 1, 1);
    Prop p;
    p.valor = "oops";
    EXPECT_FALSE(c.setPropiedad(1, 3, p));
    EXPECT_FALSE(c.setPropiedad(1, 4, p));
    EXPECT_TRUE(c.setPropiedad(1, 1, p));  // unreadable text reads as 0
    EXPECT_EQ(c.radio, 0.0);
    Prop material;
    material.material = 12;
    EXPECT_TRUE(c.setPropiedad(2, 0, material));
    EXPECT_EQ(c.material(), 12);
    EXPECT_FALSE(c.setPropiedad(2, 1, material));

    Prisma pr(P(0, 0, 0), P(1, 1, 1));
    p.x = 5;
    p.y = 6;
    p.z = 7;
    EXPECT_TRUE(pr.setPropiedad(1, 0, p));  // the box moves whole
    EXPECT_EQ(pr.minimo, P(5, 6, 7));
    EXPECT_EQ(pr.maximo, P(6, 7, 8));
    EXPECT_FALSE(pr.setPropiedad(1, 2, p));

    for (const bool invertido : {false, true})
    {
        Cubo b = invertido ? Cubo(P(2, 1, 1), P(0, 0, 0)) : Cubo(P(0, 0, 0), P(2, 1, 1));
        b.transformacion = Matriz4<double>::rotacionZ(kPi / 2);  // (x, y) -> (y, -x)
        cad::Rect3<double> caja;
        ASSERT_TRUE(b.volumen(caja));
        expectCerca(caja.minimo, P(0, -2, 0));
        expectCerca(caja.maximo, P(1, 0, 1));
        EXPECT_TRUE(b.interior(P(0.5, -1.5, 0.5)));
        EXPECT_TRUE(b.interior(P(0.5, -1, 1)));  // on the top face
        EXPECT_FALSE(b.interior(P(1.5, -1, 0.5)));
        EXPECT_FALSE(b.interior(P(0.5, -1, -0.1)));
    }
    EXPECT_FALSE(Cubo(P(0, 0, 0), P(2, 1, 0)).interior(P(1, 0.5, 0)));

    const cad::Rect3<double> marca(P(7, 7, 7), P(8, 8, 8));
    for (const char* nombre : {"Prisma", "Cilindro"})
    {
        const std::unique_ptr<cad::Entidad> e = cad::prueba::tipoEntidad(nombre).crea();
        cad::Rect3<double> caja = marca;
        EXPECT_TRUE(e->volumen(caja)) << nombre;
        EXPECT_EQ(caja, marca) << nombre;
        EXPECT_TRUE(e->interior(P(1e9, -1e9, 0))) << nombre;
    }
}

// A free mesh keeps the records of a deleted triangle beside a live square: every vertex
// record is a hot point and a coordinate, only edges with valid ends and faces with corners
// are hot, numbered among the kept ones, and an edge drag follows that numbering. Snap,
// sheet and DXF see the square alone.
TEST(Objeto3DRegistros, MuertosEnCalientesReferenciaYHoja)
{
    auto* m = new Modelo3D();
    const P triangulo[3] = {{10, 0, 0}, {11, 0, 0}, {10, 1, 0}};
    m->nuevaCara(3, triangulo, nullptr, false, 1);
    m->nuevaCara(4, cad::prueba::cuadrado().data(), nullptr, false, 2);
    m->caras()[0].arista = -1;
    for (int32_t a = 0; a < 3; ++a)
    {
        m->aristas()[a] = cad::Arista();
        m->vertices()[static_cast<size_t>(a)].arista = -1;
    }
    Objeto3D o(m);
    o.asignaCapa(&cad::prueba::capaCatalogo());
    EXPECT_EQ(o.numCoordenadas(), 7);
    EXPECT_EQ(o.material(), 1);  // the first record's, deleted or not

    cad::PuntosCalientes h;
    o.puntosCalientes(h);
    ASSERT_EQ(h.puntos.size(), 7U);
    EXPECT_EQ(h.puntos[0].punto, P(10, 0, 0));
    EXPECT_EQ(h.puntos[6].indice, 6);
    ASSERT_EQ(h.aristas.size(), 4U);
    EXPECT_EQ(h.arista(0), std::make_pair(P(0, 0, 0), P(4, 0, 0)));
    ASSERT_EQ(h.numeroCaras(), 1);
    EXPECT_EQ(h.normalesCaras[0], (std::array<float, 3>{0, 0, -1}));

    cad::elemento_arrastrado_t arrastre;
    arrastre.tipo = cad::kTipoArista;
    arrastre.indice = 0;
    arrastre.extra = {P(0, 0, 0), P(4, 0, 0)};
    arrastre.punto = P(2, 0, 0);
    arrastre.posicion = P(2, -1, 0);
    o.aplicaPuntoCaliente(arrastre);
    EXPECT_EQ(*o.coordenada(3), P(0, -1, 0));
    EXPECT_EQ(*o.coordenada(4), P(4, -1, 0));
    EXPECT_EQ(*o.coordenada(0), P(10, 0, 0));

    cad::prueba::Rayo rayo(10, 0, cad::kExtremos);
    ASSERT_TRUE(o.getReferenciaEntidades(rayo.r));
    EXPECT_EQ(rayo.r.puntoMejor, P(4, -1, 0));
    EXPECT_EQ(cad::prueba::filasHoja(o),
              (std::vector<std::string>{"Geometría/Vértices:Entero!=4", "Geometría/Caras:Entero!=1",
                                        "Varios/Material:Material=1"}));
    EXPECT_EQ(cuenta(registrosDXF(o), "3DFACE"), 2);

    Prop p;
    p.material = 6;
    EXPECT_TRUE(o.setPropiedad(2, 0, p));
    for (const cad::cara_t& c : o.modelo->caras())
    {
        EXPECT_EQ(c.material, 6);
    }
}

// With no model: no points, no offers, no painting; generaModelo leaves its target; the body
// is that of an empty mesh, read back into a new one. The representation of models comes
// from the drawing being painted, while the box keeps its 1.
TEST(Objeto3DModelo, NuloYRepresentacion)
{
    Objeto3D vacio;
    EXPECT_EQ(vacio.numCoordenadas(), 0);
    EXPECT_EQ(vacio.coordenada(0), nullptr);
    EXPECT_EQ(vacio.material(), 0);
    cad::prueba::Rayo rayo(0, 0, 0xFF);
    EXPECT_FALSE(vacio.getReferenciaEntidades(rayo.r));
    Modelo3D destino;
    cad::prueba::cubo(destino);
    vacio.generaModelo(destino);
    EXPECT_EQ(destino.caras().size(), 6U);
    PantallaGrabadora p;
    vacio.dibuja(p);
    EXPECT_TRUE(p.llamadas.empty());
    const Bytes b = guarda(vacio);
    EXPECT_EQ(Bytes(b.end() - 12, b.end()), Bytes(12, 0));
    Objeto3D leido;
    ASSERT_TRUE(carga(b, leido));
    ASSERT_NE(leido.modelo, nullptr);
    EXPECT_TRUE(leido.modelo->vertices().empty());

    cad::Dibujo d;
    d.nuevoDocumento();
    d.setVariable(cad::kVarRepresentacionModelos, static_cast<int>(cad::PantallaCAD::kAlambrica));
    {
        const cad::AmbitoPintura ambito(&d);
        muestraDe<Objeto3D>("Objeto3D")->dibuja(p);
        muestraDe<Prisma>("Prisma")->dibuja(p);
        muestraDe<Cilindro>("Cilindro")->dibuja(p);
        muestraDe<Cubo>("Cubo")->dibuja(p);
    }
    ASSERT_EQ(p.escena.size(), 4U);
    for (size_t i = 0; i < 3; ++i)
    {
        EXPECT_EQ(p.escena[i].modo, cad::PantallaCAD::kAlambrica) << i;
    }
    EXPECT_EQ(p.escena[3].modo, cad::PantallaCAD::kConceptual);
}

// 100,000 quads make a body of 29 MB that its u16 block length cannot hold: the length keeps
// the low 16 bits, and the body still reads back by its own counts, to the file's last byte,
// and saves again byte for byte.
TEST(Objeto3DLectura, CienMilCarasPorUnBloque)
{
    auto* m = new Modelo3D();
    cad::prueba::cuadricula(*m, 1000, 100);
    Objeto3D o(m);
    const Bytes b = guarda(o);
    const uint64_t cuerpo = 32 + 12 + 72 * 400000ULL + 6 * 100000ULL;
    ASSERT_EQ(b.size(), 4 + 2 + cuerpo);
    EXPECT_EQ(cad::prueba::num(b, 4, 2), (cuerpo + 2) % 65536);

    cad::SerializadorBinarioLectura r(b.data(), b.size());
    const std::unique_ptr<cad::BloqueSerializacion> bloque(r.leeBloque());
    Objeto3D leido;
    ASSERT_TRUE(leido.lee(r));
    EXPECT_EQ(r.bytesDisponibles(), 0U);
    ASSERT_EQ(leido.modelo->caras().size(), 100000U);
    EXPECT_EQ(leido.modelo->vertices().size(), 400000U);
    std::vector<P> antes;
    std::vector<P> despues;
    m->getCoordenadasCara(99999, antes);
    leido.modelo->getCoordenadasCara(99999, despues);
    EXPECT_EQ(despues, antes);
    EXPECT_EQ(guarda(leido), b);
}

}  // namespace
