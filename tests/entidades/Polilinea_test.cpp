// Polilinea and Poligono, what the catalogue does not cover: tag and length by size, a
// polygon body read as a polyline, empty chains, and the sheet's writes.
#include "entidades/Polilinea.h"

#include <cstdint>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "documento/ReferenciaEntidades.h"
#include "entidades/Poligono.h"
#include "soporte/BloquesPrueba.h"
#include "soporte/CatalogoEntidades.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::prueba::Bytes;
using cad::prueba::carga;
using cad::prueba::guarda;
using Puntos = std::vector<cad::Punto3<double>>;
using cad::Punto3;

const Puntos kCuadrado = {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}};

Bytes trozo(const Bytes& b, size_t desde, size_t n)
{
    return Bytes(b.begin() + static_cast<std::ptrdiff_t>(desde),
                 b.begin() + static_cast<std::ptrdiff_t>(desde + n));
}

// 999 vertices: "Pg1", u16 length 2 + 32 + 2 + 4 + 999 * 24 = 24016, count 999. 1,000:
// "PolyLn1", still a "Polilinea", u32 length 24042, count 1000, read back to the same bytes.
// A polygon of 1,000 stays "Pg1" with a u16 block.
TEST(PolilineaFichero, EtiquetaYLongitudSegunTamano)
{
    const Puntos v(1000, {1, 2, 3});
    cad::Polilinea corta(999, v.data());
    const Bytes b999 = guarda(corta);
    ASSERT_EQ(b999.size(), 4U + 24016U);
    EXPECT_EQ(trozo(b999, 0, 6), (Bytes{'P', 'g', '1', 0, 0xD0, 0x5D}));
    EXPECT_EQ(trozo(b999, 40, 4), (Bytes{0xE7, 0x03, 0, 0}));

    cad::Polilinea larga(1000, v.data());
    larga.cerrada = true;
    EXPECT_TRUE(larga.esTipo("polilinea"));
    const Bytes b1000 = guarda(larga);
    ASSERT_EQ(b1000.size(), 8U + 24042U);
    EXPECT_EQ(trozo(b1000, 0, 12), (Bytes{'P', 'o', 'l', 'y', 'L', 'n', '1', 0, 0xEA, 0x5D, 0, 0}));
    EXPECT_EQ(trozo(b1000, 44, 6), (Bytes{1, 1, 0xE8, 0x03, 0, 0}));
    cad::Polilinea leida;
    ASSERT_TRUE(carga(b1000, leida));
    EXPECT_EQ(leida.datosDesconocidos, nullptr);
    EXPECT_EQ(guarda(leida), b1000);

    cad::Poligono poligono(1000, v.data());
    EXPECT_STREQ(poligono.etiqueta(), "Pg1");
    EXPECT_EQ(poligono.tamanoBloque(), 0);
}

// The list's factory reads a saved polygon as a polyline: the polygon's count becomes the
// flag and its first x the count. A first x that puts 0xFFFF there fails without harm.
TEST(PolilineaFichero, CuerpoDePoligonoHostil)
{
    cad::Poligono g(3, kCuadrado.data());
    const uint64_t bits = 0x3FF000000000FFFFULL;
    std::memcpy(&g.vertices[0].x, &bits, sizeof bits);
    const Bytes bg = guarda(g);
    ASSERT_EQ(trozo(bg, 38, 6), (Bytes{3, 0, 0, 0, 0xFF, 0xFF}));
    cad::Polilinea hostil;
    EXPECT_FALSE(carga(bg, hostil));
    EXPECT_TRUE(hostil.vertices.empty());
}

// A polygon hands the display its vertices. Empty chains paint nothing at all and offer no
// snap.
TEST(Polilinea, PoligonoPintaSusVerticesYVaciasNada)
{
    cad::prueba::PantallaGrabadora pantalla;
    cad::Poligono(4, kCuadrado.data()).dibuja(pantalla);
    cad::Polilinea().dibuja(pantalla);
    cad::Poligono().dibuja(pantalla);
    ASSERT_EQ(pantalla.escena.size(), 1U);
    EXPECT_EQ(pantalla.escena[0].puntos, kCuadrado);
    cad::prueba::Rayo rayo(0, 0, 0xFF);
    EXPECT_FALSE(cad::Polilinea().getReferenciaEntidades(rayo.r));
    EXPECT_FALSE(cad::Poligono().getReferenciaEntidades(rayo.r));
}

// "Cerrada" is written as an integer where any non-zero value closes. A list element replaces
// that vertex, bounds checked.
TEST(PolilineaPropiedades, CerradaYVertices)
{
    cad::Polilinea pl(4, kCuadrado.data());
    cad::Prop p;
    for (const char* texto : {"0", "2", "abc", "-1"})
    {
        p.valor = texto;
        ASSERT_TRUE(pl.setPropiedad(2, 0, p));
        EXPECT_EQ(pl.cerrada, texto[0] == '2' || texto[0] == '-') << texto;
    }

    const double nuevo[3] = {-1, -2, -3};
    ASSERT_TRUE(pl.setElementoLista(1, 0, 1, nuevo));
    EXPECT_EQ(pl.vertices[1], Punto3<double>(-1, -2, -3));
    EXPECT_FALSE(pl.setElementoLista(1, 0, -1, nuevo));
}

}  // namespace
