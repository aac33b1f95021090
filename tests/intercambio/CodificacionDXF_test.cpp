// Text encoding of DXF files both ways, against the C library's own Windows-1252 converter
// where one exists.
#include "intercambio/CodificacionDXF.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <iconv.h>

#include "base/Utf8.h"

namespace
{

using cad::codificacionDXF;
using cad::dxfAUTF8;
using cad::utf8ADXF;

std::string utf8(uint32_t c)
{
    std::string s;
    cad::anadeUTF8(s, c);
    return s;
}

// One Windows-1252 byte through iconv; empty where the code page leaves the byte undefined.
std::string iconv1252(unsigned char b)
{
    iconv_t cd = iconv_open("UTF-8", "WINDOWS-1252");
    EXPECT_NE(cd, reinterpret_cast<iconv_t>(-1));
    char entrada[1] = {static_cast<char>(b)};
    char salida[8] = {};
    char* pe = entrada;
    char* ps = salida;
    size_t ne = 1;
    size_t ns = sizeof salida;
    const size_t r = iconv(cd, &pe, &ne, &ps, &ns);
    iconv_close(cd);
    return r == static_cast<size_t>(-1) ? std::string() : std::string(salida, ps);
}

// Every high byte of the code page both ways. The five bytes it leaves undefined stand for
// the code point of the same number, so that no byte of a file is lost.
TEST(CodificacionDXF, CadaByteAltoDe1252)
{
    int indefinidos = 0;
    for (int b = 0x80; b <= 0xFF; ++b)
    {
        const std::string byte(1, static_cast<char>(b));
        std::string caracter = iconv1252(static_cast<unsigned char>(b));
        if (caracter.empty())
        {
            ++indefinidos;
            caracter = utf8(static_cast<uint32_t>(b));
        }
        EXPECT_EQ(dxfAUTF8(byte, codificacionDXF::kWindows1252), caracter) << "byte " << b;
        EXPECT_EQ(utf8ADXF(caracter), byte) << "byte " << b;
    }
    EXPECT_EQ(indefinidos, 5);
    EXPECT_EQ(utf8ADXF("Año 2024: 3 €, «Cañada»"),
              std::string("A\xF1o 2024: 3 \x80, \xAB") + "Ca\xF1" + "ada\xBB");
    // A C1 control the code page cannot hold goes as an escape.
    EXPECT_EQ(utf8ADXF(utf8(0x80)), "\\U+0080");
}

// Outside the code page: escapes of four upper-case hex digits, a surrogate pair beyond
// U+FFFF; back, either case of the U, and a pair joins into one character.
TEST(CodificacionDXF, Escapes)
{
    EXPECT_EQ(utf8ADXF("Δέλτα"), "\\U+0394\\U+03AD\\U+03BB\\U+03C4\\U+03B1");
    EXPECT_EQ(utf8ADXF("测量"), "\\U+6D4B\\U+91CF");
    EXPECT_EQ(utf8ADXF("a😀b"), "a\\U+D83D\\U+DE00b");
    EXPECT_EQ(dxfAUTF8("a\\U+D83D\\U+DE00b", codificacionDXF::kWindows1252), "a😀b");
    EXPECT_EQ(dxfAUTF8("\\u+03b1\\U+03B2\\u+6d4b", codificacionDXF::kWindows1252), "αβ测");
    EXPECT_EQ(dxfAUTF8("\\U+0394x\xE9", codificacionDXF::kUTF8), "Δxé");
    // Not an escape, or an escape of nothing: left as it is.
    for (const char* intacto : {"\\U+", "\\U+12", "\\U+12G4", "\\U 0041", "\\X+0041", "\\U+D83D",
                                "\\U+DE00\\U+D83D", "\\U+D83Dz", "fin\\", "C:\\dir\\U+"})
    {
        EXPECT_EQ(dxfAUTF8(intacto, codificacionDXF::kWindows1252), intacto);
    }
    EXPECT_EQ(dxfAUTF8("\\U+D83D\\U+0041", codificacionDXF::kWindows1252), "\\U+D83DA");
    // A text that holds what reads as an escape keeps it: its backslash is escaped.
    EXPECT_EQ(utf8ADXF("\\U+0041 y C:\\dir"), "\\U+005CU+0041 y C:\\dir");
    EXPECT_EQ(utf8ADXF("sólo ASCII: \\U+12G4"), "s\xF3lo ASCII: \\U+12G4");
}

// Bytes that are not UTF-8 (a Latin-1 'é', a cut sequence, overlong forms, an encoded
// surrogate, a code beyond U+10FFFF) are written as they are; read back as Windows-1252
// bytes in either mode, while valid UTF-8 stays in UTF-8 mode.
TEST(CodificacionDXF, BytesQueNoSonUTF8)
{
    for (const std::string malo :
         {"caf\xE9", "\xE2\x82", "x\xC0\xAFy", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xFF\xFE"})
    {
        EXPECT_EQ(utf8ADXF(malo), malo);
    }
    EXPECT_EQ(utf8ADXF("\xE2\x82\xAC\xE2\x82"), "\x80\xE2\x82");
    EXPECT_EQ(dxfAUTF8("caf\xE9", codificacionDXF::kUTF8), "café");
    EXPECT_EQ(dxfAUTF8("Pol\xC3\xADgono \x80", codificacionDXF::kUTF8), "Polígono €");
    EXPECT_EQ(dxfAUTF8("Pol\xC3\xADgono", codificacionDXF::kWindows1252), "PolÃ\u00ADgono");
}

// Valid UTF-8 comes back the same through the file: every scalar value, one after another,
// and texts that mix ASCII, the code page, escapes and what looks like escapes.
TEST(CodificacionDXF, IdaYVuelta)
{
    std::string todos;
    for (uint32_t c = 1; c <= 0x10FFFF; ++c)
    {
        if (c < 0xD800 || c > 0xDFFF)
        {
            todos += utf8(c);
        }
    }
    const std::string dxf = utf8ADXF(todos);
    EXPECT_EQ(dxfAUTF8(dxf, codificacionDXF::kWindows1252), todos);
    for (const std::string texto : {"", "Polígono 1", "Año €", "Δέλτα 😀😀 测量", "\\U+0041",
                                    "\\\\U+00E9\\", "\\u+d83d\\U+DE00", "\\U+D83D😀", "ÿ\x7F€ "})
    {
        EXPECT_EQ(dxfAUTF8(utf8ADXF(texto), codificacionDXF::kWindows1252), texto) << texto;
    }
}

}  // namespace
