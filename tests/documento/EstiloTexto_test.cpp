// Text styles and their list: exact bytes, the list's own tail, lookup, damaged files.
#include "documento/EstiloTexto.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/ListaEstilosTexto.h"
#include "soporte/FicheroTemporal.h"

namespace
{

using Bytes = std::vector<uint8_t>;
using cad::EstiloTexto;

Bytes escribe(cad::ObjetoCAD& objeto)
{
    const std::string ruta = cad::prueba::rutaTemporal("estilo.bin");
    {
        cad::SerializadorBinarioEscritura w(ruta);
        objeto.escribe(w);
    }
    return cad::prueba::leeFichero(ruta);
}

bool lee(const Bytes& bytes, cad::ObjetoCAD& objeto)
{
    const std::string ruta = cad::prueba::rutaTemporal("estilo.bin");
    cad::prueba::escribeFichero(ruta, bytes);
    cad::SerializadorBinarioLectura r(ruta);
    return objeto.lee(r);
}

// The "ET1" block: id, name, font, size as u32, and each mark as a doubled byte.
TEST(EstiloTexto, BytesExactos)
{
    EstiloTexto e("Rotulo", "Arial", 9, true, false);
    e.id = 0x10;
    const Bytes esperado = {
        'E',  'T',  '1', 0x00, 0x22, 0x00,            // tag, length 34
        0x10, 0,    0,   0,    0,    0,    0,   0,    // id
        0x06, 0x00, 'R', 'o',  't',  'u',  'l', 'o',  // name, even
        0x06, 0x00, 'A', 'r',  'i',  'a',  'l', 0,    // font, padded
        0x09, 0x00, 0,   0,                           // size
        0x01, 0x01, 0,   0,                           // negrita, cursiva
    };
    EXPECT_EQ(escribe(e), esperado);
}

// A list reads back every field of each style, marks included; bytes behind the last style
// are the list's own tail and are written back in place. busca is exact and case-sensitive
// ("Standar", the read placeholder, is not "standar").
TEST(ListaEstilosTexto, VueltaConColaYBusca)
{
    cad::ListaEstilosTexto lista;
    lista.push_back(new EstiloTexto("standar", "", 0));
    lista.push_back(new EstiloTexto("Cota", "Courier", 12, false, true));
    lista[1]->id = 77;
    Bytes bytes = escribe(lista);
    bytes.insert(bytes.end(), {0xC0, 0xDE});
    bytes[8] += 2;

    cad::ListaEstilosTexto leida;
    ASSERT_TRUE(lee(bytes, leida));
    ASSERT_EQ(leida.size(), 2U);
    EXPECT_EQ(leida.busca("standar"), leida[0]);
    EXPECT_EQ(leida.busca("Standar"), nullptr);
    EXPECT_TRUE(leida[1]->cursiva);
    EXPECT_EQ(leida.tamanoDatosDesconocidos, 2U);
    EXPECT_EQ(escribe(leida), bytes);
}

// Every cut of a valid file reads to false without a crash and keeps only whole styles
// (the first, "uno" in Arial, is 36 bytes); a section of another tag fails and empties
// the list.
TEST(ListaEstilosTexto, FicheroCortadoYSeccionAjena)
{
    cad::ListaEstilosTexto lista;
    lista.push_back(new EstiloTexto("uno", "Arial", 5));
    lista.push_back(new EstiloTexto("dos", "Arial", 6));
    const Bytes entero = escribe(lista);
    for (size_t corte = 0; corte < entero.size(); ++corte)
    {
        cad::ListaEstilosTexto leida;
        EXPECT_FALSE(lee(Bytes(entero.begin(), entero.begin() + corte), leida)) << corte;
        EXPECT_EQ(leida.size(), corte >= 24 + 36 ? 1U : 0U) << corte;
    }
    Bytes ajena = entero;
    ajena[0] = 'F';
    EXPECT_FALSE(lee(ajena, lista));
    EXPECT_TRUE(lista.empty());
}

}  // namespace
