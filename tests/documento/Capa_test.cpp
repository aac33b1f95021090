// Layers, their list and the line style body: exact bytes, unknown tails, damaged files.
#include "documento/Capa.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/EstiloLinea.h"
#include "documento/ListaCapas.h"
#include "pantalla/PantallaCAD.h"
#include "soporte/FicheroTemporal.h"

namespace
{

using Bytes = std::vector<uint8_t>;

Bytes escribe(cad::ObjetoCAD& objeto)
{
    const std::string ruta = cad::prueba::rutaTemporal("capa.bin");
    {
        cad::SerializadorBinarioEscritura w(ruta);
        objeto.escribe(w);
    }
    return cad::prueba::leeFichero(ruta);
}

bool lee(const Bytes& bytes, cad::ObjetoCAD& objeto)
{
    const std::string ruta = cad::prueba::rutaTemporal("capa.bin");
    cad::prueba::escribeFichero(ruta, bytes);
    cad::SerializadorBinarioLectura r(ruta);
    return objeto.lee(r);
}

Bytes operator+(Bytes a, const Bytes& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// Layer "Eje": id 0x0807060504030201, flags 2 (hidden, locked), red, width 0.5, dotted. 40 bytes.
const Bytes kEje = {
    'C',  'p',  '1',  0x00, 0x24, 0x00,                          // tag, length 36
    0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08,              // id
    0x04, 0x00, 'E',  'j',  'e',  0x00,                          // name, padded
    0x02, 0x00, 0x00, 0x00,                                      // flags
    0x01, 0x00, 0xFF, 0x00, 0x00, 0xFF,                          // colour 1: A B G R
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xE0, 0x3F, 0xAA, 0xAA,  // width, pattern
};
// Layer "0" as the list makes it: id 0, flags 1, colour 7, default style. 38 bytes.
const Bytes kCero = {
    'C',  'p',  '1',  0x00, 0x22, 0x00, 0,    0,    0,    0,    0,    0,    0,
    0,    0x02, 0x00, '0',  0x00, 0x01, 0x00, 0x00, 0x00, 0x07, 0x00, 0xFF, 0xFF,
    0xFF, 0xFF, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF0, 0x3F, 0xFF, 0xFF,
};
// "Capas.1", length 8 + 8 + 40 + 38 = 94, count 2.
const Bytes kCabecera = {'C', 'a', 'p', 'a', 's', '.', '1', 0, 94, 0, 0, 0,
                         0,   0,   0,   0,   2,   0,   0,   0, 0,  0, 0, 0};

// A list of two layers writes exactly: "Capas.1", u64 length counted from the length
// field, u64 count, and per layer its id, padded name, flags, the colour's 6 bytes and the
// style's 10. Read back and saved again, the same bytes come out and no unknown tail
// appears.
TEST(ListaCapas, BytesExactosYVuelta)
{
    cad::ListaCapas lista;
    lista.push_back(new cad::Capa("Eje", cad::ColorCapa(1), 2));
    lista[0]->id = 0x0807060504030201ULL;
    lista[0]->estiloLinea.grosor = 0.5;
    lista[0]->estiloLinea.patron = cad::PantallaCAD::kLineaPuntos;
    lista.push_back(new cad::Capa("0", cad::ColorCapa(7), 1));
    const Bytes bytes = escribe(lista);
    ASSERT_EQ(bytes, kCabecera + kEje + kCero);

    cad::ListaCapas leida;
    leida.push_back(new cad::Capa("vieja", cad::ColorCapa(2), 0));  // dropped by the read
    ASSERT_TRUE(lee(bytes, leida));
    ASSERT_EQ(leida.size(), 2U);
    EXPECT_EQ(escribe(leida), bytes);
    EXPECT_EQ(leida[0]->datosDesconocidos, nullptr);
    EXPECT_EQ(leida.busca("0"), leida[1]);
    EXPECT_EQ(leida.busca("eje"), nullptr);  // exact, case-sensitive
    EXPECT_EQ(leida.datosDesconocidos, nullptr);
}

// A layer block with 6 bytes behind its known fields, as a newer version writes it: they
// are kept, the next layer still reads from the right place, and save and a second read
// give the same bytes back at the block's end.
TEST(ListaCapas, SeisBytesDesconocidosSobreviven)
{
    const Bytes cola = {0xDE, 0xAD, 0xBE, 0xEF, 0x01, 0x02};
    Bytes eje = kEje + cola;
    eje[4] += 6;
    Bytes cabecera = kCabecera;
    cabecera[8] += 6;
    const Bytes fichero = cabecera + eje + kCero;

    cad::ListaCapas lista;
    ASSERT_TRUE(lee(fichero, lista));
    ASSERT_EQ(lista.size(), 2U);
    ASSERT_EQ(lista[0]->tamanoDatosDesconocidos, 6U);
    EXPECT_EQ(Bytes(lista[0]->datosDesconocidos, lista[0]->datosDesconocidos + 6), cola);
    EXPECT_EQ(lista[1]->nombre, "0");
    const Bytes guardado = escribe(lista);
    EXPECT_EQ(guardado, fichero);
    cad::ListaCapas otra;
    ASSERT_TRUE(lee(guardado, otra));
    ASSERT_EQ(otra[0]->tamanoDatosDesconocidos, 6U);
    EXPECT_EQ(std::memcmp(otra[0]->datosDesconocidos, cola.data(), 6), 0);
}

// Foreign tags. Capa::lee answers false and leaves the block open, the file standing behind
// tag and length; inside a list the closing read then keeps that body as the list's tail,
// and the read succeeds with no layer. A section of another tag empties the list and fails.
TEST(ListaCapas, EtiquetasAjenas)
{
    const Bytes item = {'X', 'y', '1', 0, 0x06, 0x00, 1, 2, 3, 4};
    {
        const std::string ruta = cad::prueba::rutaTemporal("ajena.bin");
        cad::prueba::escribeFichero(ruta, item);
        cad::SerializadorBinarioLectura r(ruta);
        cad::Capa c("sin tocar", cad::ColorCapa(7), 1);
        EXPECT_FALSE(c.lee(r));
        EXPECT_EQ(r.posicion(), 6);
        EXPECT_EQ(c.nombre, "sin tocar");
    }
    Bytes cabecera = kCabecera;
    cabecera[8] = 26;
    cabecera[16] = 1;
    cad::ListaCapas lista;
    ASSERT_TRUE(lee(cabecera + item, lista));
    EXPECT_TRUE(lista.empty());
    EXPECT_EQ(
        Bytes(lista.datosDesconocidos, lista.datosDesconocidos + lista.tamanoDatosDesconocidos),
        (Bytes{1, 2, 3, 4}));

    Bytes otraSeccion = kCabecera + kEje + kCero;
    otraSeccion[6] = '2';
    lista.push_back(new cad::Capa("a", cad::ColorCapa(7), 1));
    EXPECT_FALSE(lee(otraSeccion, lista));
    EXPECT_TRUE(lista.empty());
    EXPECT_EQ(lista.tamanoDatosDesconocidos, 86U);
}

// Untrusted input. Every cut of a valid file reads to false without a crash, keeping the
// layers that came whole (the first ends at byte 64). A huge count ends with the file; a
// count negative as signed 64-bit reads no layer and the blocks become the list's tail.
TEST(ListaCapas, FicheroCortadoYCuentaMentirosa)
{
    const Bytes entero = kCabecera + kEje + kCero;
    for (size_t corte = 0; corte < entero.size(); ++corte)
    {
        cad::ListaCapas lista;
        EXPECT_FALSE(lee(Bytes(entero.begin(), entero.begin() + corte), lista)) << corte;
        EXPECT_EQ(lista.size(), corte >= 64 ? 1U : 0U) << corte;
    }
    Bytes cuenta = entero;
    std::memset(&cuenta[16], 0xFF, 7);
    cuenta[23] = 0x7F;
    cad::ListaCapas lista;
    EXPECT_TRUE(lee(cuenta, lista));
    EXPECT_EQ(lista.size(), 2U);
    cuenta[23] = 0x80;
    EXPECT_TRUE(lee(cuenta, lista));
    EXPECT_TRUE(lista.empty());
    EXPECT_EQ(lista.tamanoDatosDesconocidos, 78U);
}

// The style body is width and pattern, 10 bytes; porCapa is not in it, so an entity's
// style reads back by layer and a layer's not, whatever was written.
TEST(EstiloLinea, CuerpoSinPorCapa)
{
    cad::EstiloLineaEntidad escrito;
    escrito.porCapa = false;
    escrito.grosor = 2.0;
    escrito.patron = cad::PantallaCAD::kLineaDiscontinua;
    const Bytes bytes = escribe(escrito);
    EXPECT_EQ(bytes, (Bytes{0, 0, 0, 0, 0, 0, 0, 0x40, 0xF0, 0xF0}));
    cad::EstiloLineaEntidad entidad;
    ASSERT_TRUE(lee(bytes, entidad));
    EXPECT_TRUE(entidad.porCapa);
    EXPECT_EQ(entidad.patron, cad::PantallaCAD::kLineaDiscontinua);
    cad::EstiloLineaCapa capa;
    ASSERT_TRUE(lee(bytes, capa));
    EXPECT_FALSE(capa.porCapa);
    EXPECT_EQ(capa.grosor, 2.0);
}

}  // namespace
