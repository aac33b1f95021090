// Layers, their list and the line style body: exact bytes, unknown tails, damaged files.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/Capa.h"
#include "documento/EstiloLinea.h"
#include "documento/ListaCapas.h"
#include "soporte/FicheroTemporal.h"

namespace
{

using Bytes = std::vector<uint8_t>;
using cad::prueba::escribeFichero;
using cad::prueba::leeFichero;
using cad::prueba::rutaTemporal;

Bytes escribe(cad::ObjetoCAD& objeto)
{
    const std::string ruta = rutaTemporal("capa.bin");
    {
        cad::SerializadorBinarioEscritura w(ruta);
        objeto.escribe(w);
    }
    return leeFichero(ruta);
}

bool lee(const Bytes& bytes, cad::ObjetoCAD& objeto)
{
    const std::string ruta = rutaTemporal("capa.bin");
    escribeFichero(ruta, bytes);
    cad::SerializadorBinarioLectura r(ruta);
    return objeto.lee(r);
}

Bytes operator+(Bytes a, const Bytes& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// Layer "Eje": id 0x0807060504030201, flags 3, red, width 0.5, dotted. 40 bytes.
const Bytes kBloqueEje = {
    'C',  'p',  '1',  0x00, 0x24, 0x00,                          // tag, length 36
    0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08,              // id
    0x04, 0x00, 'E',  'j',  'e',  0x00,                          // name, padded
    0x03, 0x00, 0x00, 0x00,                                      // flags
    0x01, 0x00, 0xFF, 0x00, 0x00, 0xFF,                          // colour 1: A B G R
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xE0, 0x3F, 0xAA, 0xAA,  // width, pattern
};

// Layer "0" as the list makes it: id 0, flags 1, colour 7, default style. 38 bytes.
const Bytes kBloqueCero = {
    'C',  'p',  '1',  0x00, 0x22, 0x00,                          // tag, length 34
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,              // id
    0x02, 0x00, '0',  0x00,                                      // name, padded
    0x01, 0x00, 0x00, 0x00,                                      // flags
    0x07, 0x00, 0xFF, 0xFF, 0xFF, 0xFF,                          // colour 7
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF0, 0x3F, 0xFF, 0xFF,  // width 1, solid
};

// "Capas.1" around both layers: length 8 + 8 + 40 + 38 = 94, count 2.
const Bytes kCabeceraLista = {
    'C', 'a', 'p', 'a', 's', '.', '1', 0x00, 0x5E, 0, 0, 0, 0, 0, 0, 0, 0x02, 0, 0, 0, 0, 0, 0, 0,
};

cad::Capa* capaEje()
{
    auto* c = new cad::Capa("Eje", cad::ColorCapa(1), 3);
    c->id = 0x0807060504030201ULL;
    c->estiloLinea.grosor = 0.5;
    c->estiloLinea.patron = cad::kLineaPuntos;
    return c;
}

// One layer writes the block it is known by: tag, u16 length, id, padded name, flags, the
// colour's 6 bytes and the style's 10, and nothing else.
TEST(Capa, BytesExactosDelBloque)
{
    std::unique_ptr<cad::Capa> c(capaEje());
    EXPECT_EQ(escribe(*c), kBloqueEje);
}

// A list of two layers: "Capas.1", u64 length counted from the length field, u64 count and
// the two blocks; read back, every field returns and no unknown tail appears.
TEST(ListaCapas, BytesExactosYVueltaCompleta)
{
    cad::ListaCapas lista;
    lista.push_back(capaEje());
    lista.push_back(new cad::Capa("0", cad::ColorCapa(7), 1));
    const Bytes bytes = escribe(lista);
    ASSERT_EQ(bytes, kCabeceraLista + kBloqueEje + kBloqueCero);

    cad::ListaCapas leida;
    leida.push_back(new cad::Capa("vieja", cad::ColorCapa(2), 0));  // replaced by the read
    ASSERT_TRUE(lee(bytes, leida));
    ASSERT_EQ(leida.size(), 2U);
    const cad::Capa& eje = *leida[0];
    EXPECT_EQ(eje.nombre, "Eje");
    EXPECT_EQ(eje.id, 0x0807060504030201ULL);
    EXPECT_EQ(eje.flags, 3);
    EXPECT_EQ(eje.color.colorCAD, 1);
    EXPECT_EQ(eje.color.RGBA(), 0xFF0000FFU);
    EXPECT_EQ(eje.estiloLinea.grosor, 0.5);
    EXPECT_EQ(eje.estiloLinea.patron, cad::kLineaPuntos);
    EXPECT_EQ(eje.datosDesconocidos, nullptr);
    EXPECT_EQ(leida[1]->nombre, "0");
    EXPECT_EQ(leida.datosDesconocidos, nullptr);
    EXPECT_EQ(leida.busca("vieja"), nullptr);
}

// A layer block with 6 bytes behind its known fields, as a newer version writes it: they
// are kept, the next layer still reads from the right place, and save and a second read
// give the same bytes back at the block's end.
TEST(ListaCapas, SeisBytesDesconocidosSobrevivenIdaYVuelta)
{
    const Bytes cola = {0xDE, 0xAD, 0xBE, 0xEF, 0x01, 0x02};
    Bytes eje = kBloqueEje + cola;
    eje[4] = 0x2A;  // 36 + 6
    Bytes cabecera = kCabeceraLista;
    cabecera[8] = 0x64;  // 94 + 6
    const Bytes fichero = cabecera + eje + kBloqueCero;

    cad::ListaCapas lista;
    ASSERT_TRUE(lee(fichero, lista));
    ASSERT_EQ(lista.size(), 2U);
    ASSERT_EQ(lista[0]->tamanoDatosDesconocidos, 6U);
    EXPECT_EQ(Bytes(lista[0]->datosDesconocidos, lista[0]->datosDesconocidos + 6), cola);
    EXPECT_EQ(lista[1]->nombre, "0");
    EXPECT_EQ(lista[1]->datosDesconocidos, nullptr);

    const Bytes guardado = escribe(lista);
    EXPECT_EQ(guardado, fichero);
    cad::ListaCapas otra;
    ASSERT_TRUE(lee(guardado, otra));
    ASSERT_EQ(otra[0]->tamanoDatosDesconocidos, 6U);
    EXPECT_EQ(std::memcmp(otra[0]->datosDesconocidos, cola.data(), 6), 0);
}

// A block of another tag: Capa::lee answers false and leaves the block open, the file
// standing just behind its tag and length.
TEST(Capa, EtiquetaAjenaDejaElBloqueAbierto)
{
    const std::string ruta = rutaTemporal("ajena.bin");
    escribeFichero(ruta, Bytes{'X', 'y', '1', 0, 0x06, 0x00, 1, 2, 3, 4});
    cad::SerializadorBinarioLectura r(ruta);
    cad::Capa c("sin tocar", cad::ColorCapa(7), 1);
    EXPECT_FALSE(c.lee(r));
    EXPECT_EQ(r.posicion(), 6);
    EXPECT_EQ(c.nombre, "sin tocar");
}

// Foreign tags in the list: an item of another tag gives no layer, and since it stays open
// the list's closing read keeps its body as the list's tail (the read succeeds). A section
// of another tag empties the list, keeps the whole body and fails.
TEST(ListaCapas, EtiquetasAjenas)
{
    const Bytes item = {'X', 'y', '1', 0, 0x06, 0x00, 1, 2, 3, 4};
    Bytes cabecera = kCabeceraLista;
    cabecera[8] = 8 + 8 + static_cast<uint8_t>(item.size());
    cabecera[16] = 1;
    cad::ListaCapas lista;
    ASSERT_TRUE(lee(cabecera + item, lista));
    EXPECT_TRUE(lista.empty());
    ASSERT_EQ(lista.tamanoDatosDesconocidos, 4U);
    EXPECT_EQ(Bytes(lista.datosDesconocidos, lista.datosDesconocidos + 4), (Bytes{1, 2, 3, 4}));

    Bytes otraSeccion = kCabeceraLista + kBloqueEje + kBloqueCero;
    otraSeccion[6] = '2';
    lista.push_back(new cad::Capa("a", cad::ColorCapa(7), 1));
    EXPECT_FALSE(lee(otraSeccion, lista));
    EXPECT_TRUE(lista.empty());
    EXPECT_EQ(lista.tamanoDatosDesconocidos, 94U - 8U);
}

// Every cut of a valid file reads to false without crashing; the layers whose blocks came
// whole stay (the first ends at byte 64), the cut one is dropped.
TEST(ListaCapas, FicheroCortadoDaFalso)
{
    const Bytes entero = kCabeceraLista + kBloqueEje + kBloqueCero;
    for (size_t corte = 0; corte < entero.size(); ++corte)
    {
        cad::ListaCapas lista;
        EXPECT_FALSE(lee(Bytes(entero.begin(), entero.begin() + corte), lista)) << corte;
        EXPECT_EQ(lista.size(), corte >= 64 ? 1U : 0U) << corte;
    }
}

// Counts are untrusted: a huge positive count ends when the file does, with the layers
// that are there; a count negative as signed 64-bit reads no layer and the blocks become
// the list's tail.
TEST(ListaCapas, CuentaMentirosa)
{
    Bytes grande = kCabeceraLista + kBloqueEje + kBloqueCero;
    std::memset(&grande[16], 0xFF, 7);
    grande[23] = 0x7F;
    cad::ListaCapas lista;
    EXPECT_TRUE(lee(grande, lista));
    EXPECT_EQ(lista.size(), 2U);

    Bytes negativa = kCabeceraLista + kBloqueEje + kBloqueCero;
    negativa[23] = 0x80;
    EXPECT_TRUE(lee(negativa, lista));
    EXPECT_TRUE(lista.empty());
    EXPECT_EQ(lista.tamanoDatosDesconocidos, 78U);
}

// busca compares names exactly and gives the first of equal names.
TEST(ListaCapas, BuscaPrimeraCoincidenciaExacta)
{
    cad::ListaCapas lista;
    lista.push_back(new cad::Capa("Muro", cad::ColorCapa(1), 1));
    lista.push_back(new cad::Capa("muro", cad::ColorCapa(2), 1));
    lista.push_back(new cad::Capa("Muro", cad::ColorCapa(3), 1));
    EXPECT_EQ(lista.busca("Muro"), lista[0]);
    EXPECT_EQ(lista.busca("muro"), lista[1]);
    EXPECT_EQ(lista.busca("Mur"), nullptr);
}

// The style body is width and pattern, 10 bytes; porCapa is not in it, so an entity's
// style reads back by layer and a layer's not, whatever was written.
TEST(EstiloLinea, CuerpoSinPorCapa)
{
    cad::EstiloLineaEntidad escrito;
    escrito.porCapa = false;
    escrito.grosor = 2.0;
    escrito.patron = cad::kLineaDiscontinua;
    const Bytes bytes = escribe(escrito);
    EXPECT_EQ(bytes, (Bytes{0, 0, 0, 0, 0, 0, 0, 0x40, 0xF0, 0xF0}));

    cad::EstiloLineaEntidad entidad;
    ASSERT_TRUE(lee(bytes, entidad));
    EXPECT_TRUE(entidad.porCapa);
    EXPECT_EQ(entidad.grosor, 2.0);
    EXPECT_EQ(entidad.patron, cad::kLineaDiscontinua);
    cad::EstiloLineaCapa capa;
    ASSERT_TRUE(lee(bytes, capa));
    EXPECT_FALSE(capa.porCapa);
    EXPECT_FALSE(lee(Bytes(bytes.begin(), bytes.begin() + 9), capa));
}

}  // namespace
