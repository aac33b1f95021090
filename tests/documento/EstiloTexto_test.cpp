// Text styles and their list: exact bytes, the list's own tail, lookup, damaged files.
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/EstiloTexto.h"
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
TEST(EstiloTexto, BytesExactosDelBloque)
{
    EstiloTexto e("Rotulo", "Arial", 9, true, false);
    e.id = 0x10;
    const Bytes esperado = {
        'E', 'T', '1', 0x00, 0x22, 0x00,                  // tag, length 34
        0x10, 0, 0, 0, 0, 0, 0, 0,                        // id
        0x06, 0x00, 'R', 'o', 't', 'u', 'l', 'o',         // name, even
        0x06, 0x00, 'A', 'r', 'i', 'a', 'l', 0x00,        // font, padded
        0x09, 0x00, 0x00, 0x00,                           // size
        0x01, 0x01, 0x00, 0x00,                           // negrita, cursiva
    };
    EXPECT_EQ(escribe(e), esperado);
}

// A list read back gives every field of each style, the marks included; bytes behind the
// last style in the list's block are the list's own tail and are written back in place.
TEST(ListaEstilosTexto, VueltaConColaDeLaLista)
{
    cad::ListaEstilosTexto lista;
    lista.push_back(new EstiloTexto("standar", "", 0));
    lista.push_back(new EstiloTexto("Cota", "Courier", 12, false, true));
    lista[1]->id = 77;
    Bytes bytes = escribe(lista);
    const Bytes cola = {0xC0, 0xDE};
    bytes.insert(bytes.end(), cola.begin(), cola.end());
    bytes[8] = static_cast<uint8_t>(bytes[8] + cola.size());

    cad::ListaEstilosTexto leida;
    ASSERT_TRUE(lee(bytes, leida));
    ASSERT_EQ(leida.size(), 2U);
    EXPECT_EQ(leida[0]->nombre, "standar");
    EXPECT_EQ(leida[0]->fuente, "");
    const EstiloTexto& cota = *leida[1];
    EXPECT_EQ(cota.nombre, "Cota");
    EXPECT_EQ(cota.fuente, "Courier");
    EXPECT_EQ(cota.tamano, 12U);
    EXPECT_FALSE(cota.negrita);
    EXPECT_TRUE(cota.cursiva);
    EXPECT_EQ(cota.id, 77U);
    ASSERT_EQ(leida.tamanoDatosDesconocidos, 2U);
    EXPECT_EQ(escribe(leida), bytes);
}

// busca is exact and case-sensitive ("Standar", the read placeholder, is not "standar"),
// and gives the first of equal names.
TEST(ListaEstilosTexto, BuscaExacta)
{
    cad::ListaEstilosTexto lista;
    lista.push_back(new EstiloTexto("standar", "a", 1));
    lista.push_back(new EstiloTexto("Standar", "b", 2));
    lista.push_back(new EstiloTexto("standar", "c", 3));
    EXPECT_EQ(lista.busca("standar"), lista[0]);
    EXPECT_EQ(lista.busca("Standar"), lista[1]);
    EXPECT_EQ(lista.busca("STANDAR"), nullptr);
}

// Every cut of a valid file reads to false without a crash and keeps only whole styles;
// a section of another tag fails and empties the list.
TEST(ListaEstilosTexto, FicheroCortadoYSeccionAjena)
{
    cad::ListaEstilosTexto lista;
    lista.push_back(new EstiloTexto("uno", "Arial", 5));
    lista.push_back(new EstiloTexto("dos", "Arial", 6));
    const Bytes entero = escribe(lista);
    const size_t finPrimero = 24 + 36;  // header, then a 36-byte "ET1" block
    for (size_t corte = 0; corte < entero.size(); ++corte)
    {
        cad::ListaEstilosTexto leida;
        EXPECT_FALSE(lee(Bytes(entero.begin(), entero.begin() + corte), leida)) << corte;
        EXPECT_EQ(leida.size(), corte >= finPrimero ? 1U : 0U) << corte;
    }

    Bytes ajena = entero;
    ajena[0] = 'F';
    EXPECT_FALSE(lee(ajena, lista));
    EXPECT_TRUE(lista.empty());
}

}  // namespace
