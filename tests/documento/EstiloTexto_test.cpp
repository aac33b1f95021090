// Text styles and their list: exact bytes, and the checks every owned list passes.
#include "documento/EstiloTexto.h"

#include <gtest/gtest.h>

#include "documento/ListaEstilosTexto.h"
#include "soporte/ListaPropiaPrueba.h"

namespace
{

using cad::EstiloTexto;
using cad::prueba::Bytes;

// A bold style and an italic one, so that each mark is set in one and clear in the other.
// The second is named "standar": the name a read gives a new style before its own,
// "Standar", must not be taken for it.
struct CasoEstilos
{
    using Lista = cad::ListaEstilosTexto;
    static constexpr const char* kSeccion = "EstTx.1";
    static constexpr const char* kOtraCaja = "Standar";
    static void llena(Lista& lista)
    {
        lista.push_back(new EstiloTexto("Rotulo", "Arial", 9, true, false));
        lista.push_back(new EstiloTexto("standar", "Courier", 12, false, true));
        lista[0]->id = 0x10;
        lista[1]->id = 77;
    }
};

// The "ET1" block: id, name, font, size as u32, and each mark as a doubled byte.
TEST(EstiloTexto, BytesExactos)
{
    cad::ListaEstilosTexto lista;
    CasoEstilos::llena(lista);
    const Bytes esperado = {
        'E',  'T',  '1', 0x00, 0x22, 0x00,            // tag, length 34
        0x10, 0,    0,   0,    0,    0,    0,   0,    // id
        0x06, 0x00, 'R', 'o',  't',  'u',  'l', 'o',  // name, even
        0x06, 0x00, 'A', 'r',  'i',  'a',  'l', 0,    // font, padded
        0x09, 0x00, 0,   0,                           // size
        0x01, 0x01, 0,   0,                           // negrita, cursiva
    };
    EXPECT_EQ(cad::prueba::bytesDe(*lista[0]), esperado);
}

}  // namespace

namespace cad::prueba
{
INSTANTIATE_TYPED_TEST_SUITE_P(EstilosTexto, ListaPropia, ::testing::Types<CasoEstilos>);
}  // namespace cad::prueba
