// Local systems, what the catalogue does not cover: the frame rebuilt on reading, the two
// levels of unknown bytes, a damaged inner block, and a move that leaves the matrices.
#include "entidades/SistemaLocal.h"

#include <cstdint>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "soporte/BloquesPrueba.h"
#include "soporte/CatalogoEntidades.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::prueba::Bytes;
using cad::prueba::carga;
using cad::prueba::guarda;
using cad::prueba::operator+;
using cad::SistemaLocal;

const cad::prueba::TipoEntidad& obra()
{
    return cad::prueba::tipoEntidad("SistemaLocal");
}

// The matrices are not in the file: reading rebuilds the frame from the axes and the origin,
// so all three equal the original's.
TEST(SistemaLocal, LecturaReconstruyeLasMatrices)
{
    const std::unique_ptr<cad::Entidad> original = obra().crea();
    const auto& s = dynamic_cast<const SistemaLocal&>(*original);
    SistemaLocal leido;
    ASSERT_TRUE(carga(obra().fichero, leido));
    EXPECT_EQ(leido.matrizALocal, s.matrizALocal);
    EXPECT_EQ(leido.matrizAGlobal, s.matrizAGlobal);
    EXPECT_EQ(leido.matrizRotacion, s.matrizRotacion);
}

// Unknown bytes at both levels: four inside the inner block behind the axes, two behind the
// inner block in the list's block. Each is kept at its own level and written back in its
// place, by a clone too; neither is copied into the other's place.
TEST(SistemaLocal, ColasInteriorYExteriorSeparadas)
{
    const Bytes interior = {0xDE, 0xAD, 0xBE, 0xEF};
    const Bytes exterior = {0x01, 0x02};
    Bytes fichero = obra().fichero + interior + exterior;
    fichero[4] += 6;
    fichero[10] += 4;
    SistemaLocal leido;
    ASSERT_TRUE(carga(fichero, leido));
    EXPECT_EQ(leido.datosDesconocidosSistema, interior);
    ASSERT_EQ(leido.tamanoDatosDesconocidos, 2U);
    EXPECT_EQ(Bytes(leido.datosDesconocidos, leido.datosDesconocidos + 2), exterior);
    EXPECT_EQ(guarda(leido), fichero);
    std::unique_ptr<cad::Entidad> copia(leido.clona());
    EXPECT_EQ(guarda(*copia), fichero);
}

// An inner block of another tag answers false at once, leaving the name; so does an inner
// length shorter than its fields.
TEST(SistemaLocal, BloqueInteriorDanadoDaFalso)
{
    Bytes otraEtiqueta = obra().fichero;
    otraEtiqueta[8] = '2';
    SistemaLocal leido;
    leido.nombre = "previo";
    EXPECT_FALSE(carga(otraEtiqueta, leido));
    EXPECT_EQ(leido.nombre, "previo");
    Bytes corto = obra().fichero;
    corto[10] = 10;
    corto[11] = 0;
    SistemaLocal danado;
    EXPECT_FALSE(carga(corto, danado));
}

// traslada moves the origin only: the matrices keep the old frame. An empty name still
// paints its (empty) text, left-bottom aligned.
TEST(SistemaLocal, TrasladaDejaMatricesYNombreVacioSePinta)
{
    const std::unique_ptr<cad::Entidad> muestra = obra().crea();
    auto& s = dynamic_cast<SistemaLocal&>(*muestra);
    const cad::Matriz4<double> antes = s.matrizALocal;
    s.traslada({10, 0, 0});
    EXPECT_EQ(s.matrizALocal, antes);
    s.nombre.clear();
    cad::prueba::PantallaGrabadora pantalla;
    s.dibuja(pantalla);
    EXPECT_EQ(pantalla.llamadas.at(3), "dibujaTexto (11,2,3) \"\" FFFFFFFF null");
    EXPECT_EQ(pantalla.escena.at(3).alineacion, 0);
}

}  // namespace
