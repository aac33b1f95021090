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
    return static_cast<uint32_t>(c.rojo()) << 16 | static_cast<uint32_t>(c.verde()) << 8 | c.azul();
}

// Spot checks of the palette through setIndiceColor, which looks up all 256 entries: the
// first row, row 8 (the first after the named colours), row 248 and the grey ramp at its end.
TEST(Color, PaletaEnFilasDeMuestra)
{
    const std::vector<std::pair<int, uint32_t>> casos = {
        {0, 0x000000},   {1, 0xFF0000},   {2, 0xFFFF00},   {5, 0x0000FF},   {7, 0xFFFFFF},
        {8, 0x414141},   {9, 0x808080},   {11, 0xFFAAAA},  {15, 0x815656},  {248, 0x4F0013},
        {249, 0x4F353B}, {250, 0x333333}, {251, 0x505050}, {252, 0x696969}, {253, 0x828282},
        {254, 0xBEBEBE}, {255, 0xFFFFFF}, {130, 0x00FFFF}, {171, 0xAAAAFF}};
    for (const auto& [indice, rgb] : casos)
    {
        Color c;
        ASSERT_TRUE(c.setIndiceColor(indice));
        EXPECT_EQ(rgbDe(c), rgb) << "index " << indice;
        EXPECT_EQ(c.alfa(), 255) << "index " << indice;
        EXPECT_EQ(c.colorCAD, indice);
        EXPECT_EQ(Color::paletaRGB(indice), rgb) << "index " << indice;
    }
}

// Only 0..7 have names, "Negro" first; 8 and beyond have none and show as numbers.
TEST(Color, NombresDeLosOchoPrimeros)
{
    const char* const nombres[8] = {"Negro", "Rojo", "Amarillo", "Verde",
                                    "Cian",  "Azul", "Magenta",  "Blanco"};
    for (int i = 0; i < 8; ++i)
    {
        ASSERT_NE(Color::nombreIndice(i), nullptr);
        EXPECT_STREQ(Color::nombreIndice(i), nombres[i]);
    }
    EXPECT_EQ(Color::nombreIndice(8), nullptr);
    EXPECT_EQ(Color::nombreIndice(-1), nullptr);
}

// The index constructor stops looking up at 254: Color(254) and Color(255) are all 255
// although the palette says BEBEBE for 254; 253 is still looked up. The flavours default
// to 7 (layer) and 256 (entity, all bytes 255).
TEST(Color, ConstructorNoBuscaDesde254)
{
    for (int indice : {254, 255})
    {
        const Color c(indice);
        EXPECT_EQ(c.colorCAD, indice);
        EXPECT_EQ(c.alfa(), 255);
        EXPECT_EQ(c.azul(), 255);
        EXPECT_EQ(c.verde(), 255);
        EXPECT_EQ(c.rojo(), 255);
    }
    EXPECT_EQ(rgbDe(Color(253)), 0x828282U);
    const cad::ColorCapa capa;
    EXPECT_EQ(capa.colorCAD, 7);
    const cad::ColorEntidad entidad;
    EXPECT_EQ(entidad.colorCAD, 256);
    EXPECT_EQ(entidad.RGBA(), 0xFFFFFFFFU);
}

// setIndiceColor refuses values outside 0..511 and changes nothing then; 512 is reachable
// only through setABGR. From 256 up the index is stored and the bytes stay as they were.
TEST(Color, SetIndiceColorLimites)
{
    Color c(1);
    EXPECT_FALSE(c.setIndiceColor(512));
    EXPECT_FALSE(c.setIndiceColor(-1));
    EXPECT_EQ(c.colorCAD, 1);
    EXPECT_EQ(c.RGBA(), 0xFF0000FFU);

    EXPECT_TRUE(c.setIndiceColor(300));
    EXPECT_EQ(c.colorCAD, 300);
    EXPECT_EQ(c.RGBA(), 0xFF0000FFU);
    EXPECT_TRUE(c.setIndiceColor(511));
    EXPECT_EQ(c.colorCAD, 511);
}

// setABGR takes red from the low byte and alpha from the high one and marks true colour;
// RGBA() reads the bytes alpha lowest, ABGR() gives them back as set.
TEST(Color, EmpaquetadoRGBAyABGR)
{
    Color c;
    c.setABGR(0x11223344);
    EXPECT_EQ(c.colorCAD, 512);
    EXPECT_EQ(c.rojo(), 0x44);
    EXPECT_EQ(c.verde(), 0x33);
    EXPECT_EQ(c.azul(), 0x22);
    EXPECT_EQ(c.alfa(), 0x11);
    EXPECT_EQ(c.RGBA(), 0x44332211U);
    EXPECT_EQ(c.ABGR(), 0x11223344U);
}

// The body inside an owner's block: u16 index, then the bytes in memory order alpha, blue,
// green, red (the RGBA value little-endian); 6 bytes, and it reads back into index and bytes.
TEST(Color, CuerpoDeSeisBytes)
{
    Color c;
    c.setABGR(0x80102030);  // red 0x30, green 0x20, blue 0x10, alpha 0x80
    const std::string ruta = cad::prueba::rutaTemporal("color.bin");
    {
        cad::SerializadorBinarioEscritura w(ruta);
        c.escribe(w);
    }
    const std::vector<uint8_t> esperado = {0x00, 0x02, 0x80, 0x10, 0x20, 0x30};
    EXPECT_EQ(cad::prueba::leeFichero(ruta), esperado);

    Color leido(3);
    cad::SerializadorBinarioLectura r(ruta);
    ASSERT_TRUE(leido.lee(r));
    EXPECT_EQ(leido.colorCAD, 512);
    EXPECT_EQ(leido.ABGR(), 0x80102030U);
    EXPECT_FALSE(leido.lee(r));  // nothing left
}

}  // namespace
