// Points and texts, what the catalogue does not cover: the colour constructor's byte order,
// the style after a read, text painting and hiding, and the sheets' writes.
#include "entidades/Punto.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/Admisible.h"
#include "documento/EstiloTexto.h"
#include "entidades/Texto.h"
#include "soporte/BloquesPrueba.h"
#include "soporte/CatalogoEntidades.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::Punto;
using cad::Texto;

// The colour constructor keeps the three low bytes as red, green, blue (0x12345678 gives
// 0x34, 0x56, 0x78) with alpha 255 and index 512. "Posición" is an editable coordinate.
TEST(Punto, ColorVerdaderoYPosicionEditable)
{
    Punto p(1, 2, 3, 0x12345678);
    EXPECT_EQ(p.color.colorCAD, 512);
    EXPECT_EQ(p.color.ABGR(), 0xFF785634U);
    cad::Prop prop;
    prop.x = -4;
    EXPECT_TRUE(p.setPropiedad(1, 0, prop));
    EXPECT_EQ(static_cast<cad::Punto3<double>>(p), cad::Punto3<double>(-4, 0, 0));
}

// Painting hands the display the text's alignment, height and rotation and the bound style's
// font and marks (bold 1 + italic 2). Hidden (bit 4) nothing is painted at all; shown again
// with the style unbound, font "" and marks 0. Read over a text bound to a style, the old
// style object is let go (the id waits in the reference): only the drawing ties the
// reference up again.
TEST(Texto, DibujaConEstiloOcultacionYLectura)
{
    cad::EstiloTexto estilo("Rotulos", "Arial", 10, true, true);
    Texto t("Cota", {1, 2, 3}, 9, 2.5F, 0.5F);
    t.setEstiloTexto(&estilo);
    cad::prueba::PantallaGrabadora pantalla;
    t.dibuja(pantalla);
    const cad::primitiva_t& pr = pantalla.escena.at(0);
    EXPECT_EQ(pr.texto + "/" + pr.fuente + "/" + std::to_string(pr.estilo), "Cota/Arial/3");
    EXPECT_EQ(pr.alineacion, 9);
    EXPECT_EQ(pr.altura, 2.5F);
    EXPECT_EQ(pr.rotacion, 0.5F);

    t.setEstiloTexto(nullptr);
    t.setTextoVisible(false);
    EXPECT_EQ(t.estado, cad::kEstadoEtiquetaOculta);
    t.dibuja(pantalla);
    EXPECT_EQ(pantalla.llamadas.size(), 1U);
    t.setTextoVisible(true);
    t.dibuja(pantalla);
    EXPECT_EQ(pantalla.escena.at(1).fuente + "/" + std::to_string(pantalla.escena[1].estilo), "/0");

    t.setEstiloTexto(&estilo);
    ASSERT_TRUE(cad::prueba::carga(cad::prueba::tipoEntidad("Texto").fichero, t));
    EXPECT_EQ(t.referenciaEstilo().objeto, nullptr);
}

// "Texto" takes a new text; the blank row cannot be written. A text one byte longer than the
// file can hold is refused and the old one stays; the longest it holds is taken.
TEST(Texto, HojaEscribeTextoAdmisible)
{
    Texto t("abc", {}, 0, 1.0F, 0.0F);
    cad::Prop prop;
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
}

}  // namespace
