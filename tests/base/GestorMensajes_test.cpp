// Tests of the message table and its file reader, including hostile file contents.
#include "base/GestorMensajes.h"

#include <climits>
#include <cstdio>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "soporte/FicheroTemporal.h"

namespace cad
{
namespace
{

GestorMensajes& g()
{
    return GestorMensajes::Instancia();
}

bool carga(const std::string& contenido)
{
    const std::string ruta = prueba::rutaTemporal("mensajes.txt");
    prueba::escribeFichero(ruta, contenido);
    return g().cargarFicheroMensajes(ruta.c_str());
}

// The stored text, or "<ausente>" when the key was absent (which then stores it).
std::string texto(int grupo, int numero)
{
    return g().mensaje(grupo, numero, "<ausente>");
}

// Scenario: keys asked with no file, with two defaults; then a file holding 1,1,"z".
// Invariant: the first default is stored and wins over the second (same pointer); a load
// empties the table before filling it.
TEST(GestorMensajesTest, DefectoGuardadoYCargaQueReemplaza)
{
    EXPECT_FALSE(g().cargarFicheroMensajes(prueba::rutaTemporal("falta.txt").c_str()));
    const char* p = g().mensaje(1, 1, "x");
    EXPECT_STREQ(p, "x");
    EXPECT_EQ(g().mensaje(1, 1, "y"), p);
    g().setMensaje(2, 2, "viejo");
    ASSERT_TRUE(carga("1,1,\"z\"\n"));
    EXPECT_STREQ(g().mensaje(1, 1, "x"), "z");
    EXPECT_EQ(texto(2, 2), "<ausente>");
}

struct Esperado
{
    int grupo;
    int numero;
    std::string texto;  // "<ausente>": the file must not give this key
};

// Scenario: one file per reader rule: mark or none, commas and blanks, malformed lines,
// overlong lines, numbers out of range.
// Invariant: every such file opens, and the texts stored and the keys left absent are
// exactly those that the line rules give.
TEST(GestorMensajesTest, ReglasDeLectura)
{
    char patron[64];
    std::snprintf(patron, sizeof patron, GestorMensajes::kFormatoLineaMensaje, 12, -3, "P");
    const std::string a1018(1018, 'a');
    const std::string ausente = "<ausente>";
    const std::vector<std::pair<std::string, std::vector<Esperado>>> casos = {
        // own pattern, '+' sign, a later duplicate wins, no final line feed
        {std::string(patron) + "4,+4,\"uno\"\n4,4,\"dos\"\n8,9,\"fin\"",
         {{12, -3, "P"}, {4, 4, "dos"}, {8, 9, "fin"}}},
        // the UTF-8 mark is consumed; with or without it the text bytes are kept
        {"\xEF\xBB\xBF"
         "1,1,\"Ángulo ñ\"\n",
         {{1, 1, "Ángulo ñ"}}},
        {"1,1,\"Ángulo ñ\"\n", {{1, 1, "Ángulo ñ"}}},
        // a partial mark rewinds: its bytes lead the line, whose group reads as 0
        {"\xEF\xBB"
         "5,6,\"t\"\n",
         {{0, 6, "t"}, {5, 6, ausente}}},
        // only the first two commas split; an unquoted text keeps its line feed
        {"7,1,\"a, b\"\n7,2,sin comillas\n", {{7, 1, "a, b"}, {7, 2, "sin comillas\n"}}},
        // lines led by a blank, a line feed or a zero byte are skipped
        {std::string("1,1,\"a\"\n 2,2,\"b\"\n\n") + '\0' + "3,3,\"c\"\n4,4,\"d\"\n",
         {{1, 1, "a"}, {2, 2, ausente}, {3, 3, ausente}, {4, 4, "d"}}},
        // a malformed line ends the reading, keeping what came before
        {"1,1,\"antes\"\nbasura\n2,2,\"tras\"\n", {{1, 1, "antes"}, {2, 2, ausente}}},
        // an overlong line is read in 1023-byte pieces, each taken as a line
        {"1,1,\"" + a1018 + "7,8,\"cola\"\n", {{1, 1, a1018}, {7, 8, "cola"}}},
        {"1,1,\"" + std::string(2000, 'a') + "\"\n2,2,\"tras\"\n",
         {{1, 1, a1018}, {2, 2, ausente}}},
        // numbers beyond int clamp instead of overflowing
        {"99999999999999999999,-99999999999999999999,\"g\"\n", {{INT_MAX, INT_MIN, "g"}}},
    };
    for (const auto& [bytes, esperados] : casos)
    {
        SCOPED_TRACE(bytes.substr(0, 40));
        ASSERT_TRUE(carga(bytes));
        for (const Esperado& e : esperados)
        {
            EXPECT_EQ(texto(e.grupo, e.numero), e.texto);
        }
    }
}

// Scenario: loads that can't open: a missing file, a null path, a path that is not UTF-8.
// Invariant: each empties the table first; the first two return false, the last lets the
// path check's logic_error through.
TEST(GestorMensajesTest, CargasQueNoAbren)
{
    const std::string falta = prueba::rutaTemporal("falta.txt");
    for (const char* ruta : {falta.c_str(), static_cast<const char*>(nullptr)})
    {
        g().setMensaje(5, 5, "a");
        EXPECT_FALSE(g().cargarFicheroMensajes(ruta));
        EXPECT_EQ(texto(5, 5), "<ausente>");
    }
    g().setMensaje(5, 5, "a");
    EXPECT_THROW(g().cargarFicheroMensajes("/tmp/\xFF\xFE.txt"), std::logic_error);
    EXPECT_EQ(texto(5, 5), "<ausente>");
}

// Scenario: files of random bytes, biased towards the reader's delimiters, up to 4000 long.
// Invariant: each load returns true and leaves a usable table; under the sanitizers this
// also checks that no byte is read or written out of bounds.
TEST(GestorMensajesTest, BytesAleatoriosNoRompen)
{
    std::mt19937 azar(20240611u);
    const char kFrecuentes[] = {',', '"', '\n', ' ', '\0', '1', '-', '\xEF', '\xBB', '\xBF'};
    for (int caso = 0; caso < 200; ++caso)
    {
        std::string bytes(azar() % 4000, '\0');
        for (char& b : bytes)
        {
            b = azar() % 2 ? kFrecuentes[azar() % sizeof kFrecuentes] : static_cast<char>(azar());
        }
        ASSERT_TRUE(carga(bytes)) << "case " << caso;
        EXPECT_STREQ(g().mensaje(INT_MIN + 1, 0, "d"), "d");
    }
}

}  // namespace
}  // namespace cad
