// Layers, their list and the line style body: exact bytes, a foreign block, and the checks
// every owned list passes.
#include "documento/Capa.h"

#include <cstdint>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioLectura.h"
#include "documento/EstiloLinea.h"
#include "documento/ListaCapas.h"
#include "pantalla/PantallaCAD.h"
#include "soporte/ListaPropiaPrueba.h"

namespace
{

using cad::prueba::Bytes;
using cad::prueba::bytesDe;
using cad::prueba::leeDe;

// Layer "Eje", id 0x0807060504030201, flags 2 (hidden, locked), red, width 0.5, dotted; and
// layer "0" as a new list makes it.
struct CasoCapas
{
    using Lista = cad::ListaCapas;
    static constexpr const char* kSeccion = "Capas.1";
    static constexpr const char* kOtraCaja = "eje";
    static void llena(Lista& lista)
    {
        auto* eje = new cad::Capa("Eje", cad::ColorCapa(1), 2);
        eje->id = 0x0807060504030201ULL;
        eje->estiloLinea.grosor = 0.5;
        eje->estiloLinea.patron = cad::PantallaCAD::kLineaPuntos;
        lista.push_back(eje);
        lista.push_back(new cad::Capa("0", cad::ColorCapa(7), 1));
    }
};

// The list of CasoCapas, byte for byte: "Capas.1" with its length and count, then per layer
// its id, padded name, flags, the colour's 6 bytes and the style's 10.
TEST(ListaCapas, BytesExactos)
{
    const Bytes esperado = {
        'C',  'a',  'p',  'a',  's',  '.',  '1',  0,                 // section tag
        94,   0,    0,    0,    0,    0,    0,    0,                 // length 94
        2,    0,    0,    0,    0,    0,    0,    0,                 // count
        'C',  'p',  '1',  0x00, 0x24, 0x00,                          // tag, length 36
        0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08,              // id
        0x04, 0x00, 'E',  'j',  'e',  0x00,                          // name, padded
        0x02, 0x00, 0x00, 0x00,                                      // flags
        0x01, 0x00, 0xFF, 0x00, 0x00, 0xFF,                          // colour 1: A B G R
        0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xE0, 0x3F, 0xAA, 0xAA,  // width, pattern
        'C',  'p',  '1',  0x00, 0x22, 0x00,                          // tag, length 34
        0,    0,    0,    0,    0,    0,    0,    0,                 // id 0
        0x02, 0x00, '0',  0x00, 0x01, 0x00, 0x00, 0x00,              // "0", flags 1
        0x07, 0x00, 0xFF, 0xFF, 0xFF, 0xFF,                          // colour 7
        0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF0, 0x3F, 0xFF, 0xFF,  // default style
    };
    cad::ListaCapas lista;
    CasoCapas::llena(lista);
    EXPECT_EQ(bytesDe(lista), esperado);
}

// Capa::lee on a block of another tag answers false, leaves the layer as it was and the
// reader behind the tag and length, so that the list can keep the body as its tail.
TEST(Capa, EtiquetaAjenaDejaElBloqueAbierto)
{
    const Bytes item = {'X', 'y', '1', 0, 0x06, 0x00, 1, 2, 3, 4};
    cad::SerializadorBinarioLectura r(item.data(), item.size());
    cad::Capa c("sin tocar", cad::ColorCapa(7), 1);
    EXPECT_FALSE(c.lee(r));
    EXPECT_EQ(r.posicion(), 6);
    EXPECT_EQ(c.nombre, "sin tocar");
}

// The style body is width and pattern, 10 bytes (pinned in the layer's bytes above);
// porCapa is not in it, so an entity's style reads back by layer and a layer's not.
TEST(EstiloLinea, CuerpoSinPorCapa)
{
    cad::EstiloLineaEntidad escrito;
    escrito.porCapa = false;
    const Bytes bytes = bytesDe(escrito);
    EXPECT_EQ(bytes.size(), 10U);
    cad::EstiloLineaEntidad entidad;
    cad::EstiloLineaCapa capa;
    ASSERT_TRUE(leeDe(bytes, entidad) && leeDe(bytes, capa));
    EXPECT_TRUE(entidad.porCapa && !capa.porCapa);
}

}  // namespace

namespace cad::prueba
{
INSTANTIATE_TYPED_TEST_SUITE_P(Capas, ListaPropia, ::testing::Types<CasoCapas>);
}  // namespace cad::prueba
