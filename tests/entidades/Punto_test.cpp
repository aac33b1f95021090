// Points and texts: exact bodies, damaged bodies, painting, hot element, snap, sheets, DXF.
#include "entidades/Punto.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/LongitudCadena.h"
#include "documento/Capa.h"
#include "documento/EstiloTexto.h"
#include "documento/ReferenciaEntidades.h"
#include "entidades/Texto.h"
#include "intercambio/ExportaDXF.h"
#include "modelo/PuntosCalientes.h"
#include "soporte/BloquesPrueba.h"
#include "soporte/FicheroTemporal.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::prueba::Bytes;
using cad::prueba::carga;
using cad::prueba::guarda;
using cad::prueba::operator+;
using cad::Punto;
using cad::Punto3;
using cad::Texto;

cad::Capa& capaRoja()
{
    static cad::Capa capa("Ejes", cad::ColorCapa(1), 1);
    capa.id = 7;
    return capa;
}

// id 0x0102030405060708, layer id 7, colour by layer (index 256, bytes FF), default style;
// then 1.5, -2.0, 0.25.
// clang-format off
const Bytes kPrefijoXYZ = {
    0x08, 0x07, 0x06, 0x05, 0x04, 0x03, 0x02, 0x01, 7, 0, 0, 0, 0, 0, 0, 0,  // ids
    0x00, 0x01, 0xFF, 0xFF, 0xFF, 0xFF,                                      // colour
    0,    0,    0,    0,    0,    0,    0xF0, 0x3F, 0xFF, 0xFF,              // style
    0,    0,    0,    0,    0,    0,    0xF8, 0x3F, 0, 0, 0, 0, 0, 0, 0x00, 0xC0,  // 1.5, -2
    0,    0,    0,    0,    0,    0,    0xD0, 0x3F,                          // 0.25
};
// clang-format on

// A point writes prefix and x, y, z in a u16 block of 58 bytes counted from the length
// field, with the bound layer's id. Read back the layer waits as an id, and saving again
// gives the same bytes with no unknown tail.
TEST(Punto, CuerpoExactoYVuelta)
{
    Punto p(1.5, -2.0, 0.25);
    p.id = 0x0102030405060708ULL;
    p.asignaCapa(&capaRoja());
    const Bytes bytes = guarda(p);
    ASSERT_EQ(bytes, (Bytes{'P', 't', '1', 0, 58, 0} + kPrefijoXYZ));
    Punto leido;
    ASSERT_TRUE(carga(bytes, leido));
    EXPECT_EQ(static_cast<Punto3<double>>(leido), Punto3<double>(1.5, -2.0, 0.25));
    EXPECT_EQ(leido.capa.id, 7U);
    EXPECT_TRUE(leido.sinCapa());
    EXPECT_EQ(guarda(leido), bytes);
}

// A point or text body cut anywhere, down to an empty file, reads as false without running
// past the file (the sanitizers watch the text's string length read from the file).
TEST(Punto, CuerpoCortadoDaFalso)
{
    Punto p(1.5, -2.0, 0.25);
    Texto t("Un texto largo", {1, 2, 3}, 0, 1.0F, 0.0F);
    for (cad::Entidad* e : {static_cast<cad::Entidad*>(&p), static_cast<cad::Entidad*>(&t)})
    {
        const Bytes bytes = guarda(*e);
        for (long n = 0; n < static_cast<long>(bytes.size()); ++n)
        {
            std::unique_ptr<cad::Entidad> otro(e->clona());
            EXPECT_FALSE(carga(Bytes(bytes.begin(), bytes.begin() + n), *otro)) << n;
        }
    }
}

// The colour constructor keeps the three low bytes as red, green, blue (0x12345678 gives
// 0x34, 0x56, 0x78) with alpha 255 and index 512. Painting is one dibujaPunto in that
// colour, picked as the entity itself.
TEST(Punto, DibujaConColorVerdadero)
{
    const Punto p(1, 2, 3, 0x12345678);
    EXPECT_EQ(p.color.colorCAD, 512);
    cad::prueba::PantallaGrabadora pantalla;
    p.dibuja(pantalla);
    EXPECT_EQ(pantalla.llamadas, std::vector<std::string>{"dibujaPunto (1,2,3) FF785634 pick"});
    EXPECT_EQ(pantalla.escena.at(0).pick, static_cast<const cad::Entidad*>(&p));
}

// One hot vertex, kind 1, numbered 0, owned by the point. A drag of another kind is ignored;
// a vertex drag moves the point to the drag's `posicion`, not to the grabbed `punto`.
// traslada adds the vector, and coordenada gives the position for any index.
TEST(Punto, PuntoCalienteArrastreYTraslado)
{
    Punto p(1, 2, 3);
    cad::PuntosCalientes pc;
    p.puntosCalientesEdicion(pc, 0, 0);
    ASSERT_EQ(pc.puntos.size(), 1U);
    EXPECT_EQ(pc.puntos[0].tipo, cad::kTipoVertice);
    EXPECT_EQ(pc.puntos[0].indice, 0);
    EXPECT_EQ(pc.puntos[0].entidad, &p);
    cad::elemento_arrastrado_t arrastre(pc.puntos[0]);
    arrastre.posicion = {7, 8, 9};
    arrastre.tipo = cad::kTipoArista;
    p.aplicaPuntoCaliente(arrastre);
    EXPECT_EQ(p.x, 1.0);
    arrastre.tipo = cad::kTipoVertice;
    p.aplicaPuntoCaliente(arrastre);
    p.traslada({1, -1, 0.5});
    EXPECT_EQ(*p.coordenada(42), Punto3<double>(8, 7, 9.5));
}

// Snap: without mask bit 8 a text (a point underneath) offers nothing; with it the position
// is taken as an insertion point, kind 8, for the entity.
TEST(Punto, ReferenciaSoloConBitOcho)
{
    const Texto t("t", {0.5, 0.25, 0}, 0, 1.0F, 0.0F);
    cad::prueba::PantallaGrabadora pantalla;
    cad::ReferenciaEntidades sin(&pantalla, {0.5, 0.25, 5}, {0, 0, -1}, cad::kExtremos, 1.0);
    EXPECT_FALSE(t.getReferenciaEntidades(sin));
    cad::ReferenciaEntidades con(&pantalla, {0.5, 0.25, 5}, {0, 0, -1}, 9, 1.0);
    EXPECT_TRUE(t.getReferenciaEntidades(con));
    EXPECT_EQ(con.tipoMejor, 8);
    EXPECT_EQ(con.entidadMejor, &t);
    EXPECT_EQ(con.puntoMejor, Punto3<double>(0.5, 0.25, 0));
}

// Sheets: a point has "General" and "Geometría" with "Posición", an editable coordinate. A
// text adds "Varios" with "Texto" and a blank row with no name, which cannot be written.
// The text's type name is "Desconocida": the naming table has no row for "Tx1". A text one
// byte longer than the file can hold is refused and the old one stays.
TEST(Texto, HojasConFilaSinNombre)
{
    Punto p(1, 2, 3);
    cad::Prop prop;
    EXPECT_EQ(p.numeroCategorias(), 2);
    EXPECT_EQ(p.numeroPropiedadesCategoria(2), 0);
    ASSERT_TRUE(p.getPropiedad(1, 0, prop));
    EXPECT_EQ(prop.nombre, "Posición");
    EXPECT_EQ(prop.tipo, cad::TipoProp::Coordenada);
    prop.x = -4;
    EXPECT_TRUE(p.setPropiedad(1, 0, prop));
    EXPECT_EQ(p.x, -4.0);

    Texto t("abc", {}, 0, 1.0F, 0.0F);
    EXPECT_EQ(t.numeroCategorias(), 3);
    EXPECT_EQ(t.nombreCategoria(1), "Geometría");
    EXPECT_EQ(t.nombreCategoria(2), "Varios");
    EXPECT_EQ(t.numeroPropiedadesCategoria(2), 2);
    ASSERT_TRUE(t.getPropiedad(2, 0, prop));
    EXPECT_EQ(prop.nombre + "=" + prop.valor, "Texto=abc");
    ASSERT_TRUE(t.getPropiedad(2, 1, prop));
    EXPECT_EQ(prop.nombre + prop.valor, "");
    EXPECT_EQ(prop.tipo, cad::TipoProp::Cadena);
    prop.valor = "nuevo";
    EXPECT_FALSE(t.setPropiedad(2, 1, prop));
    EXPECT_TRUE(t.setPropiedad(2, 0, prop));
    EXPECT_EQ(t.texto, "nuevo");
    prop.valor.assign(cad::kLongitudMaximaCadena + 1, 'x');
    EXPECT_FALSE(t.setPropiedad(2, 0, prop));
    EXPECT_EQ(t.texto, "nuevo");
    prop.valor.pop_back();
    EXPECT_TRUE(t.setPropiedad(2, 0, prop));
    EXPECT_EQ(t.texto, prop.valor);
    ASSERT_TRUE(t.getPropiedad(0, 0, prop));
    EXPECT_EQ(prop.valor, "Desconocida");
}

// A text's body: the point's, the string padded to even length, alignment as u16, height
// and rotation as floats, and the style id, taken from the bound style on the first save.
// Read back the id waits with no style object, and a second save is identical.
TEST(Texto, CuerpoExactoConEstilo)
{
    cad::EstiloTexto estilo("Rotulos", "Arial", 10);
    estilo.id = 42;
    Texto t("Hola!", {1.5, -2.0, 0.25}, 9, 2.5F, 0.5F);
    t.id = 0x0102030405060708ULL;
    t.asignaCapa(&capaRoja());
    t.setEstiloTexto(&estilo);
    // clang-format off
    const Bytes cola = {6, 0, 'H', 'o', 'l', 'a', '!', 0,  // string, padded
                        9, 0,                              // alineacion
                        0, 0, 0x20, 0x40, 0, 0, 0, 0x3F,   // 2.5, 0.5
                        42, 0, 0, 0, 0, 0, 0, 0};          // style id
    // clang-format on
    const Bytes bytes = guarda(t);
    ASSERT_EQ(bytes, (Bytes{'T', 'x', '1', 0, 84, 0} + kPrefijoXYZ + cola));
    Texto leido;
    ASSERT_TRUE(carga(bytes, leido));
    EXPECT_EQ(leido.texto, "Hola!");
    EXPECT_EQ(leido.alineacion, 9);
    EXPECT_EQ(leido.rotacion, 0.5F);
    EXPECT_EQ(leido.referenciaEstilo().id, 42U);
    EXPECT_EQ(leido.referenciaEstilo().objeto, nullptr);
    EXPECT_EQ(guarda(leido), bytes);
}

// Painting: one dibujaTexto with the text's alignment, height and rotation, the bound
// style's font and marks (bold 1 + italic 2), picked as the entity. Hiding the text (bit 4)
// paints nothing at all; shown again with the style unbound, font "" and marks 0.
TEST(Texto, DibujaConEstiloYOcultacion)
{
    cad::EstiloTexto estilo("Rotulos", "Arial", 10, true, true);
    Texto t("Cota", {1, 2, 3}, 9, 2.5F, 0.5F);
    t.asignaCapa(&capaRoja());
    t.setEstiloTexto(&estilo);
    cad::prueba::PantallaGrabadora pantalla;
    t.dibuja(pantalla);
    EXPECT_EQ(pantalla.llamadas,
              std::vector<std::string>{"dibujaTexto (1,2,3) \"Cota\" FF0000FF pick"});
    const cad::primitiva_t& pr = pantalla.escena.at(0);
    EXPECT_EQ(pr.alineacion, 9);
    EXPECT_EQ(pr.altura, 2.5F);
    EXPECT_EQ(pr.rotacion, 0.5F);
    EXPECT_EQ(pr.fuente + "/" + std::to_string(pr.estilo), "Arial/3");

    t.setEstiloTexto(nullptr);
    t.setTextoVisible(false);
    t.dibuja(pantalla);
    EXPECT_EQ(pantalla.llamadas.size(), 1U);
    t.setTextoVisible(true);
    t.dibuja(pantalla);
    EXPECT_EQ(pantalla.escena.at(1).fuente + "/" + std::to_string(pantalla.escena[1].estilo), "/0");
}

// DXF: a true-colour point writes its palette index (red, 1) in group 62 on its layer. A text
// sends only the two horizontal bits of its alignment (8, top left, goes out as 0, so no
// group 11) and its rotation in degrees by * 180 / 3.141592654 (0.5 rad is 28.6479).
TEST(Texto, ExportaPuntoYTexto)
{
    Punto p(1.5, -2.0, 0.25, 0xFF0000);
    p.asignaCapa(&capaRoja());
    Texto t("Cota", {1, 2, 3}, 8, 2.5F, 0.5F);
    t.asignaCapa(&capaRoja());
    const std::string ruta = cad::prueba::rutaTemporal("punto.dxf");
    {
        cad::ExportaDXF dxf(ruta);
        dxf.nuevaCapa("Ejes", 1);
        dxf.inicioEntidades();
        p.exportaDXF(dxf);
        t.exportaDXF(dxf);
        dxf.finEntidades();
    }
    const Bytes bytes = cad::prueba::leeFichero(ruta);
    const std::string fichero(bytes.begin(), bytes.end());
    EXPECT_NE(fichero.find("  2\nENTITIES\n"
                           "  0\nPOINT\n  8\nEjes\n 62\n1\n 10\n1.5000\n 20\n-2.0000\n 30\n0.2500\n"
                           "  0\nTEXT\n  8\nEjes\n 10\n1.0000\n 20\n2.0000\n 30\n3.0000\n"
                           " 40\n2.5000\n 72\n0\n 50\n28.6479\n  1\nCota\n  0\nENDSEC\n"),
              std::string::npos)
        << fichero;
}

}  // namespace
