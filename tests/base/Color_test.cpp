// Colour palette, index rules, byte packing and the 6-byte body.
#include "base/Color.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "soporte/FicheroTemporal.h"

namespace
{

using cad::Color;

uint32_t rgbDe(const Color& c)
{
    return c.RGBA() >> 8;
}

// Spot checks through setIndiceColor, which looks up all 256 entries: row 0, row 8 (the
// first unnamed one), row 248 and the grey ramp at 250..255. Only 0..7 have names.
TEST(Color, PaletaYNombres)
{
    const std::vector<std::pair<int, uint32_t>> casos = {
        {0, 0x000000},   {1, 0xFF0000},   {5, 0x0000FF},   {7, 0xFFFFFF},   {8, 0x414141},
        {9, 0x808080},   {15, 0x815656},  {248, 0x4F0013}, {249, 0x4F353B}, {250, 0x333333},
        {251, 0x505050}, {252, 0x696969}, {253, 0x828282}, {254, 0xBEBEBE}, {255, 0xFFFFFF}};
    for (const auto& [indice, rgb] : casos)
    {
        Color c(1);
        ASSERT_TRUE(c.setIndiceColor(indice));
        EXPECT_EQ(rgbDe(c), rgb) << indice;
        EXPECT_EQ(c.alfa(), 255) << indice;
    }
    const char* const nombres[8] = {"Negro", "Rojo", "Amarillo", "Verde",
                                    "Cian",  "Azul", "Magenta",  "Blanco"};
    for (int i = 0; i < 8; ++i)
    {
        EXPECT_STREQ(Color::nombreIndice(i), nombres[i]);
    }
    EXPECT_EQ(Color::nombreIndice(8), nullptr);
}

// The index constructor stops looking up at 254: Color(254) and Color(255) have all four
// bytes 255 although the palette says BEBEBE for 254. An entity's colour is by layer (256).
TEST(Color, ConstructorNoBuscaDesde254)
{
    EXPECT_EQ(Color(254).RGBA(), 0xFFFFFFFFU);
    EXPECT_EQ(Color(255).RGBA(), 0xFFFFFFFFU);
    EXPECT_EQ(Color(254).colorCAD, 254);
    EXPECT_EQ(rgbDe(Color(253)), 0x828282U);
    EXPECT_EQ(cad::ColorEntidad().colorCAD, 256);
    EXPECT_EQ(cad::ColorCapa().colorCAD, 7);
}

// setIndiceColor refuses 512 and negatives and changes nothing then (512 comes only from
// setABGR); 300 is stored with the old bytes kept. setABGR takes red from the low byte;
// RGBA() reads the bytes alpha lowest and ABGR() gives them back as set.
TEST(Color, IndicesYEmpaquetado)
{
    Color c(1);
    EXPECT_FALSE(c.setIndiceColor(512));
    EXPECT_FALSE(c.setIndiceColor(-1));
    EXPECT_TRUE(c.setIndiceColor(300));
    EXPECT_EQ(c.colorCAD, 300);
    EXPECT_EQ(c.RGBA(), 0xFF0000FFU);

    c.setABGR(0x11223344);
    EXPECT_EQ(c.colorCAD, 512);
    EXPECT_EQ(c.rojo(), 0x44);
    EXPECT_EQ(c.azul(), 0x22);
    EXPECT_EQ(c.RGBA(), 0x44332211U);
    EXPECT_EQ(c.ABGR(), 0x11223344U);
}

// The body inside an owner's block: u16 index, then the bytes in memory order alpha, blue,
// green, red; 6 bytes that read back into index and bytes, and nothing more to read.
TEST(Color, CuerpoDeSeisBytes)
{
    Color c;
    c.setABGR(0x80102030);
    const std::string ruta = cad::prueba::rutaTemporal("color.bin");
    {
        cad::SerializadorBinarioEscritura w(ruta);
        c.escribe(w);
    }
    EXPECT_EQ(cad::prueba::leeFichero(ruta), (std::vector<uint8_t>{0, 2, 0x80, 0x10, 0x20, 0x30}));
    Color leido(3);
    cad::SerializadorBinarioLectura r(ruta);
    ASSERT_TRUE(leido.lee(r));
    EXPECT_EQ(leido.colorCAD, 512);
    EXPECT_EQ(leido.ABGR(), 0x80102030U);
    EXPECT_FALSE(leido.lee(r));
}

}  // namespace
