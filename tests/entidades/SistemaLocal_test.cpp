// Local systems: the inner block and its two tails, damaged blocks, axes painting, moving.
#include "entidades/SistemaLocal.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "documento/ReferenciaEntidades.h"
#include "modelo/PuntosCalientes.h"
#include "soporte/BloquesPrueba.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::prueba::Bytes;
using cad::prueba::carga;
using cad::prueba::guarda;
using cad::prueba::operator+;
using cad::Punto3;
using cad::SistemaLocal;
using Lineas = std::vector<std::string>;

// "Obra", id 0x10, layer id 7, origin (1, 2, 3), X along +Y, Y along -X, Z up.
SistemaLocal sistemaObra()
{
    SistemaLocal s;
    s.nombre = "Obra";
    s.id = 0x10;
    s.capa.id = 7;
    s.setVectoresXYZ({0, 1, 0}, {-1, 0, 0}, {0, 0, 1});
    s.setOrigen({1, 2, 3});
    return s;
}

// clang-format off
const Bytes kUno = {0, 0, 0, 0, 0, 0, 0xF0, 0x3F};
const Bytes kMenosUno = {0, 0, 0, 0, 0, 0, 0xF0, 0xBF};
const Bytes kCero = {0, 0, 0, 0, 0, 0, 0, 0};
const Bytes kCuerpo =
    Bytes{0x10, 0, 0, 0, 0, 0, 0, 0, 7, 0, 0, 0, 0, 0, 0, 0,                 // ids
          0x00, 0x01, 0xFF, 0xFF, 0xFF, 0xFF,                                // colour
          0, 0, 0, 0, 0, 0, 0xF0, 0x3F, 0xFF, 0xFF} +                        // style
    Bytes{4, 0, 'O', 'b', 'r', 'a'} +                                        // nombre
    kUno + Bytes{0, 0, 0, 0, 0, 0, 0x00, 0x40, 0, 0, 0, 0, 0, 0, 0x08, 0x40} +  // origen
    kCero + kUno + kCero + kMenosUno + kCero + kCero + kCero + kCero + kUno;   // axes
// clang-format on

// The list's block holds a block of the system's own, both "Sl1" with u16 lengths (142 and
// 136); inside it the prefix, the name, the origin and the three axes. Read back, the frame
// is rebuilt from them: axes and all three matrices equal the original's, and a second save
// gives the same bytes.
TEST(SistemaLocal, BloqueInteriorExactoYVuelta)
{
    SistemaLocal s = sistemaObra();
    const Bytes bytes = guarda(s);
    ASSERT_EQ(bytes, (Bytes{'S', 'l', '1', 0, 142, 0, 'S', 'l', '1', 0, 136, 0} + kCuerpo));

    SistemaLocal leido;
    ASSERT_TRUE(carga(bytes, leido));
    EXPECT_EQ(leido.nombre, "Obra");
    EXPECT_EQ(leido.capa.id, 7U);
    EXPECT_EQ(leido.ejeY, cad::Vector3D<double>(-1, 0, 0));
    EXPECT_EQ(leido.matrizALocal, s.matrizALocal);
    EXPECT_EQ(leido.matrizAGlobal, s.matrizAGlobal);
    EXPECT_EQ(leido.matrizRotacion, s.matrizRotacion);
    EXPECT_EQ(guarda(leido), bytes);
}

// Unknown bytes at both levels: four inside the inner block behind the axes, two behind the
// inner block in the list's block. Each is kept at its own level and written back in its
// place, so the save equals the file; neither is copied into the other's place.
TEST(SistemaLocal, ColasInteriorYExteriorSeparadas)
{
    const Bytes interior = {0xDE, 0xAD, 0xBE, 0xEF};
    const Bytes exterior = {0x01, 0x02};
    const Bytes fichero =
        Bytes{'S', 'l', '1', 0, 148, 0, 'S', 'l', '1', 0, 140, 0} + kCuerpo + interior + exterior;
    SistemaLocal leido;
    ASSERT_TRUE(carga(fichero, leido));
    EXPECT_EQ(leido.datosDesconocidosSistema, interior);
    ASSERT_EQ(leido.tamanoDatosDesconocidos, 2U);
    EXPECT_EQ(Bytes(leido.datosDesconocidos, leido.datosDesconocidos + 2), exterior);
    EXPECT_EQ(guarda(leido), fichero);

    std::unique_ptr<cad::Entidad> copia(leido.clona());
    EXPECT_EQ(guarda(*copia), fichero);
}

// Damaged input answers false: a wrong inner tag at once, a file cut anywhere, an inner
// length shorter than its fields or claiming more than the file holds. None reads past the
// file or sizes a buffer for the claim.
TEST(SistemaLocal, BloquesDanadosDanFalso)
{
    SistemaLocal s = sistemaObra();
    const Bytes bytes = guarda(s);
    Bytes otraEtiqueta = bytes;
    otraEtiqueta[8] = '2';
    SistemaLocal leido;
    EXPECT_FALSE(carga(otraEtiqueta, leido));
    EXPECT_EQ(leido.nombre, "");
    for (long n = 0; n < static_cast<long>(bytes.size()); ++n)
    {
        SistemaLocal cortado;
        EXPECT_FALSE(carga(Bytes(bytes.begin(), bytes.begin() + n), cortado)) << n;
    }
    for (const uint8_t longitud : {uint8_t{10}, uint8_t{0xFF}})
    {
        Bytes mentira = bytes;
        mentira[10] = longitud;
        mentira[11] = longitud == 10 ? 0 : 0xFF;
        SistemaLocal danado;
        EXPECT_FALSE(carga(mentira, danado)) << int{longitud};
    }
}

// Painting: the three axes from the origin, X red, Y green, Z blue (ABGR), picked as the
// entity, then the name in white with no pick, left-bottom aligned at the origin. An empty
// name still paints its (empty) text.
TEST(SistemaLocal, DibujaEjesYNombre)
{
    SistemaLocal s = sistemaObra();
    s.setVectoresXYZ({1, 0, 0}, {0, 1, 0}, {0, 0, 1});
    cad::prueba::PantallaGrabadora pantalla;
    s.dibuja(pantalla);
    EXPECT_EQ(pantalla.llamadas, (Lineas{"dibujaLinea (1,2,3) (2,2,3) FF0000FF pick",
                                         "dibujaLinea (1,2,3) (1,3,3) FF00FF00 pick",
                                         "dibujaLinea (1,2,3) (1,2,4) FFFF0000 pick",
                                         "dibujaTexto (1,2,3) \"Obra\" FFFFFFFF null"}));
    EXPECT_EQ(pantalla.escena.at(0).pick, static_cast<cad::Entidad*>(&s));
    EXPECT_EQ(pantalla.escena.at(3).alineacion, 0);
    s.nombre.clear();
    s.dibuja(pantalla);
    EXPECT_EQ(pantalla.llamadas.at(7), "dibujaTexto (1,2,3) \"\" FFFFFFFF null");
}

// traslada moves the origin, and so what is painted and saved, while the matrices keep the
// old frame. The system offers no hot elements and no snap, whatever the mask.
TEST(SistemaLocal, TrasladaSoloOrigenYNadaMas)
{
    SistemaLocal s = sistemaObra();
    const cad::Matriz4<double> antes = s.matrizALocal;
    s.traslada({10, 0, 0});
    EXPECT_EQ(*s.coordenada(5), Punto3<double>(11, 2, 3));
    EXPECT_EQ(s.matrizALocal, antes);
    cad::PuntosCalientes pc;
    s.puntosCalientesEdicion(pc, 0, 0);
    EXPECT_FALSE(pc.hayPuntos());
    cad::prueba::PantallaGrabadora pantalla;
    cad::ReferenciaEntidades r(&pantalla, {11, 2, 5}, {0, 0, -1}, 0xFF, 1.0);
    EXPECT_FALSE(s.getReferenciaEntidades(r));
}

}  // namespace
