#include "base/Utf8.h"

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "soporte/FicheroTemporal.h"

using cad::utf8AUtf16;

namespace
{

// Runs `f` and checks that it raised the converter's error, message included.
template <class F>
void esperaNoUtf8(F&& f, const std::string& caso)
{
    try
    {
        f();
        ADD_FAILURE() << "no exception for " << caso;
    }
    catch (const std::logic_error& e)
    {
        EXPECT_STREQ(e.what(), "not a UTF-8 string") << caso;
    }
}

}  // namespace

// One- to four-byte sequences decode to UTF-16; code points above 0xFFFF become surrogate
// pairs, up to U+10FFFF. Encoding back gives the same bytes.
TEST(Utf8, DecodificaYCodificaHasta4Bytes)
{
    EXPECT_EQ(utf8AUtf16(""), u"");
    EXPECT_EQ(utf8AUtf16("A\xC3\xB1\xE2\x82\xAC"), (std::u16string{u'A', 0x00F1, 0x20AC}));
    EXPECT_EQ(utf8AUtf16("\xF0\x9F\x98\x80"), (std::u16string{0xD83D, 0xDE00}));
    EXPECT_EQ(utf8AUtf16("\xF4\x8F\xBF\xBF"), (std::u16string{0xDBFF, 0xDFFF}));
    for (const char* s : {"A\xC3\xB1\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xF4\x8F\xBF\xBF"})
    {
        EXPECT_EQ(cad::utf16AUtf8(utf8AUtf16(s)), s);
    }
}

// Invalid input raises std::logic_error("not a UTF-8 string"): a stray continuation byte, a
// lead byte above 0xF7, a truncated sequence, a surrogate, a code point above U+10FFFF.
TEST(Utf8, SecuenciaInvalidaLanza)
{
    for (const char* s :
         {"\x80", "a\x80z", "\xF8\x88\x80\x80", "\xFF", "\xE2\x82", "\xE2\x82z", "\xF0\x9F\x98",
          "\xED\xA0\x80", "\xED\xBF\xBF", "\xF4\x90\x80\x80", "\xF7\xBF\xBF\xBF"})
    {
        esperaNoUtf8([&] { utf8AUtf16(s); }, s);
    }
}

// A path that is not UTF-8 is refused before the file is touched: the writer creates no
// file, and the reader refuses even when a file of that name exists.
TEST(Utf8, RutaNoUtf8NoTocaElFichero)
{
    const std::string ruta = cad::prueba::rutaTemporal("mal\x80.bin");
    esperaNoUtf8([&] { cad::SerializadorBinarioEscritura w(ruta); }, "escritura");
    EXPECT_FALSE(cad::prueba::existeFichero(ruta));
    cad::prueba::escribeFichero(ruta, std::string("abcd"));
    esperaNoUtf8([&] { cad::SerializadorBinarioLectura r(ruta); }, "lectura");
    EXPECT_EQ(cad::prueba::leeFichero(ruta).size(), 4u);
}
