// GrupoPuntos and Cara3D, what the catalogue does not cover: the face's repeat corner, counts
// that lie, the per-point colours in the DXF and on the display, groups without colours,
// the empty group, and a group large enough to cross the bulk buffers.
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "documento/ReferenciaEntidades.h"
#include "entidades/Cara3D.h"
#include "entidades/GrupoPuntos.h"
#include "modelo/PuntosCalientes.h"
#include "soporte/BloquesPrueba.h"
#include "soporte/CatalogoEntidades.h"
#include "soporte/CatalogoPiezas.h"
#include "soporte/ObjetoEnMemoria.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::Punto3;
using cad::prueba::Bytes;
using cad::prueba::bytesDe;
using cad::prueba::leeDe;
using cad::prueba::operator+;
using Puntos = std::vector<Punto3<double>>;

// The group codes 62 of the POINT records a group writes, in order ("" for none).
std::vector<std::string> coloresDXF(const cad::GrupoPuntos& g)
{
    const std::string t = cad::prueba::registrosDXF(g);
    std::vector<std::string> r;
    for (size_t pos = t.find("POINT\n"); pos != std::string::npos; pos = t.find("POINT\n", pos + 1))
    {
        const size_t fin = t.find(" 10\n", pos);
        const size_t c = t.find(" 62\n", pos);
        r.push_back(c < fin ? t.substr(c + 4, t.find('\n', c + 4) - c - 4) : "");
    }
    return r;
}

// A triangle reloads with the repeat at position 3 (which the file does not hold), a quad at
// 4; every write of corner 0 (a drag, the sheet's list, a move) carries the repeat along,
// and the display's closed loop shows it.
TEST(Cara3DRepeticion, LecturaArrastreListaYTraslado)
{
    const Puntos v = {{0, 0, 0}, {4, 0, 0}, {0, 4, 2}};
    cad::Cara3D triangulo(3, v.data());
    const Bytes b = bytesDe(triangulo);
    cad::Cara3D leida(4, Puntos(4, {9, 9, 9}).data());
    ASSERT_TRUE(leeDe(b, leida));
    EXPECT_EQ(leida.numeroVertices, 3);
    EXPECT_EQ(leida.vertices[3], v[0]);
    const Puntos q = {{1, 1, 1}, {5, 1, 1}, {5, 3, 1}, {1, 3, 1}};
    cad::Cara3D cuadrilatero(4, q.data());
    ASSERT_TRUE(leeDe(bytesDe(cuadrilatero), leida));
    EXPECT_EQ(leida.numeroVertices, 4);
    EXPECT_EQ(leida.vertices[4], q[0]);

    cad::elemento_arrastrado_t a;
    a.tipo = cad::kTipoVertice;
    a.indice = 0;
    a.posicion = {-1, -1, 0};
    triangulo.aplicaPuntoCaliente(a);
    EXPECT_EQ(triangulo.vertices[3], a.posicion);
    const double xyz[3] = {7, 8, 9};
    ASSERT_TRUE(triangulo.setElementoLista(1, 0, 0, xyz));
    EXPECT_EQ(triangulo.vertices[3], Punto3<double>(7, 8, 9));
    triangulo.traslada({1, -2, 0.5});
    EXPECT_EQ(
        cad::prueba::pintaLlamadas(triangulo),
        std::vector<std::string>{
            "dibujaPolilinea 4 cerrada (8,6,9.5) (5,-2,0.5) (1,2,2.5) (8,6,9.5) FFFFFFFF pick"});
    // An edge drag over the closing side moves corner 2 and corner 0, with its repeat.
    a.tipo = cad::kTipoArista;
    a.indice = 2;
    a.extra = {triangulo.vertices[2], triangulo.vertices[0]};
    a.punto = triangulo.vertices[2];
    a.posicion = triangulo.vertices[2] + cad::Vector3D<double>(1, 0, 0);
    triangulo.aplicaPuntoCaliente(a);
    EXPECT_EQ(triangulo.vertices[0], Punto3<double>(9, 6, 9.5));
    EXPECT_EQ(triangulo.vertices[3], triangulo.vertices[0]);
}

// A face's count must be 3 or 4: any other, even with the corners' bytes present, reads
// false and leaves the face as it was. A group's count the bytes left cannot hold reads
// false, leaves the group empty and reserves nothing, as a count one point too large shows
// just as a huge one.
TEST(PuntosCarasFichero, CuentasQueMientenDanFalso)
{
    const Puntos v = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
    cad::Cara3D triangulo(3, v.data());
    const Bytes cara = bytesDe(triangulo);
    const size_t posCuenta = 32 + 96 + 2 + 4;
    for (const uint16_t cuenta : {0, 2, 5, 0xFFFF})
    {
        Bytes b = cara + Bytes(48, 0);
        cad::prueba::ponNum(b, posCuenta, cuenta, 2);
        const Puntos q = {{0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
        cad::Cara3D leida(4, q.data());
        EXPECT_FALSE(leeDe(b, leida)) << cuenta;
        EXPECT_EQ(leida.numeroVertices, 4);
        EXPECT_EQ(leida.vertices[0], q[0]);
        EXPECT_EQ(leida.vertices[4], q[0]);
    }

    const uint32_t colores[3] = {1, 2, 3};
    cad::GrupoPuntos g(3, v.data(), colores);
    const Bytes grupo = bytesDe(g);
    for (const uint32_t cuenta : {4U, 0x7FFFFFFFU, 0xFFFFFFFFU})
    {
        Bytes b = grupo;
        cad::prueba::ponNum(b, 32, cuenta, 4);
        cad::GrupoPuntos nuevo;
        EXPECT_FALSE(leeDe(b, nuevo)) << cuenta;
        EXPECT_EQ(nuevo.puntos.capacity(), 0U);
        EXPECT_EQ(nuevo.colores.capacity(), 0U);
        cad::GrupoPuntos lleno = g;
        EXPECT_FALSE(leeDe(b, lleno));
        EXPECT_TRUE(lleno.puntos.empty());
        EXPECT_TRUE(lleno.colores.empty());
    }
}

// By layer, each POINT takes the palette index of its own colour read with red in the low
// byte and alpha ignored; a colour the group lacks is black, index 0. A true colour on the
// group gives every point the group's index.
TEST(GrupoPuntosDXF, IndicePorColorDeCadaPunto)
{
    const Puntos v(6, {1, 1, 1});
    const uint32_t colores[5] = {0x000000FFU, 0x000000FFU, 0x8000FF00U, 0x000000FFU, 0xFF818181U};
    cad::GrupoPuntos g(5, v.data(), colores);
    g.puntos.push_back(v[0]);  // one point more than colours
    EXPECT_EQ(coloresDXF(g), (std::vector<std::string>{"1", "1", "3", "1", "9", "0"}));
    g.color.setRGB(0x0000FF);  // blue, whatever the points' own colours
    EXPECT_EQ(coloresDXF(g), (std::vector<std::string>(6, "5")));
}

// Built with null colours a group keeps no colour, writes 0 for each, and reloads with
// zeros that save to the same bytes. The display always gets a colour for every point.
TEST(GrupoPuntosColores, SinColoresGuardaCerosYPintaCompleto)
{
    const Puntos v = {{1, 2, 3}, {-4, 5.5, 0}};
    cad::GrupoPuntos g(2, v.data(), nullptr);
    EXPECT_TRUE(g.colores.empty());
    const Bytes b = bytesDe(g);
    ASSERT_EQ(b.size(), 32U + 4U + 2U * 28U);
    EXPECT_EQ(Bytes(b.begin() + 60, b.begin() + 64), Bytes(4, 0));
    EXPECT_EQ(Bytes(b.end() - 4, b.end()), Bytes(4, 0));
    cad::GrupoPuntos leido;
    ASSERT_TRUE(leeDe(b, leido));
    EXPECT_EQ(leido.puntos, v);
    EXPECT_EQ(leido.colores, (std::vector<uint32_t>{0, 0}));
    EXPECT_EQ(bytesDe(leido), b);

    g.colores = {0xFF0000FFU};  // shorter than the points
    const std::vector<cad::primitiva_t> escena = cad::prueba::pintaEscena(g);
    ASSERT_EQ(escena.size(), 1U);
    EXPECT_EQ(escena[0].colores, (std::vector<uint32_t>{0xFF0000FFU, 0}));
}

// An empty group paints nothing, offers nothing under any mask, has the inverted box, and
// has no coordinate at all: index 0 and -1 raise.
TEST(GrupoPuntosVacio, NadaQuePintarNiOfrecer)
{
    cad::GrupoPuntos g;
    EXPECT_TRUE(cad::prueba::pintaLlamadas(g).empty());
    cad::prueba::Rayo rayo(0, 0, 0xFF);
    EXPECT_FALSE(g.getReferenciaEntidades(rayo.r));
    EXPECT_EQ(rayo.r.entidadMejor, nullptr);
    EXPECT_EQ(g.extension(), cad::Rect3<double>());
    EXPECT_EQ(g.numCoordenadas(), 0);
    EXPECT_THROW(g.coordenada(0), std::out_of_range);
    EXPECT_THROW(g.coordenada(-1), std::out_of_range);
    cad::GrupoPuntos leido(1, Puntos{{1, 1, 1}}.data(), nullptr);
    ASSERT_TRUE(leeDe(bytesDe(g), leido));
    EXPECT_TRUE(leido.puntos.empty());
}

// 70,000 points cross the writer's buffer and the reader's pieces several times: the bytes
// are those of one escribeDoble x, y, z and escribeEntero per point, and the reload is
// equal, with exactly the capacity it needs.
TEST(GrupoPuntosFichero, GrupoGrandeIgualAlCampoACampo)
{
    const size_t n = 70000;
    cad::GrupoPuntos g;
    cad::SerializadorBinarioEscritura campos;
    g.Entidad::escribe(campos);
    campos.escribeLongitud32(static_cast<uint32_t>(n));
    for (size_t i = 0; i < n; ++i)
    {
        const Punto3<double> p(0.5 * static_cast<double>(i), -1.0 / static_cast<double>(i + 1),
                               static_cast<double>(i % 7));
        const auto c = static_cast<uint32_t>(i * 2654435761U);
        g.nuevoPunto(p, c);
        campos.escribeDoble(p.x);
        campos.escribeDoble(p.y);
        campos.escribeDoble(p.z);
        campos.escribeEntero(static_cast<int32_t>(c));
    }
    const Bytes b = bytesDe(g);
    ASSERT_EQ(b, campos.bytes());
    cad::GrupoPuntos leido;
    ASSERT_TRUE(leeDe(b, leido));
    EXPECT_EQ(leido.puntos, g.puntos);
    EXPECT_EQ(leido.colores, g.colores);
    EXPECT_EQ(leido.puntos.capacity(), n);
    EXPECT_EQ(leido.colores.capacity(), n);
}

}  // namespace
