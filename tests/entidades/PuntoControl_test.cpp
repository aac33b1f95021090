// Control points, what the catalogue does not cover: the negative size marker and the older
// body, the cross and label, the constant scale, the hidden label and the sheet's writes.
#include "entidades/PuntoControl.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/Admisible.h"
#include "documento/EstiloTexto.h"
#include "soporte/BloquesPrueba.h"
#include "soporte/CatalogoEntidades.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::Punto3;
using cad::PuntoControl;
using cad::prueba::Bytes;
using cad::prueba::carga;
using cad::prueba::guarda;
using Lineas = std::vector<std::string>;

const Bytes& muestra()
{
    return cad::prueba::tipoEntidad("PuntoControl").fichero;
}

const size_t kTamano = 6 + 32 + 24 + 8;  // where the size starts: header, prefix, xyz, names

// The size goes out as -|tamano|, its sign bit marking the mix-in's three fields behind the
// style id. Read back it stays negative, and painting with the mix-in off uses it so: the
// cross's first vertex is x - 0.2. A style bound before the read is let go (the id waits in
// the reference). A body of the older form ends at the style id with a positive size: it
// reads whole, nothing is left as unknown bytes, and saving it again writes the newer form.
// A zero size goes out as -0.0, which does not compare below zero but still marks the last
// three fields: they are read, not kept as a tail to write twice.
TEST(PuntoControl, MarcaDeSignoDelTamano)
{
    cad::EstiloTexto otro;
    PuntoControl leido;
    leido.setEstiloTexto(&otro);
    ASSERT_TRUE(carga(muestra(), leido));
    EXPECT_EQ(leido.tamano, -0.2);
    EXPECT_EQ(leido.referenciaEstilo().objeto, nullptr);
    leido.pixeles = 0;
    cad::prueba::PantallaGrabadora pantalla;
    leido.dibuja(pantalla);
    EXPECT_EQ(pantalla.escena.at(1).puntos.at(0), Punto3<double>(1 - 0.2, 2, 3));

    Bytes antiguo = muestra();
    antiguo.resize(antiguo.size() - 36);
    antiguo[4] = 118 - 36;
    antiguo[kTamano + 7] = 0x3F;  // +0.2
    PuntoControl viejo;
    ASSERT_TRUE(carga(antiguo, viejo));
    EXPECT_EQ(viejo.tamano, 0.2);
    EXPECT_EQ(viejo.escala, 0.0);
    EXPECT_EQ(viejo.datosDesconocidos, nullptr);
    EXPECT_EQ(guarda(viejo).size(), 4U + 118);
    EXPECT_EQ(guarda(viejo)[kTamano + 7], 0xBF);

    leido.tamano = 0.0;
    leido.pixeles = 24;
    const Bytes cero = guarda(leido);
    EXPECT_EQ(Bytes(cero.begin() + kTamano, cero.begin() + kTamano + 8),
              (Bytes{0, 0, 0, 0, 0, 0, 0, 0x80}));
    PuntoControl leidoCero;
    ASSERT_TRUE(carga(cero, leidoCero));
    EXPECT_EQ(leidoCero.pixeles, 24);
    EXPECT_EQ(guarda(leidoCero), cero);
}

// With the mix-in off the cross is one object of six vertices (+x, -x, +y, -y, +z, -z at the
// size) and six edge indices with no escalaConstante; the label is centred, height 1, not
// rotated, font "" and marks 0 with no style. Active (escala 2, 30 pixels) the arms are
// escala long and escalaConstante comes before finObjeto, centred on the painted position,
// which traslada moves while the mix-in's `posicion` stays.
TEST(PuntoControl, CruzEtiquetaYEscalaConstante)
{
    PuntoControl pc("B1", {1, 2, 3});
    pc.tamano = 0.5;
    cad::prueba::PantallaGrabadora inactiva;
    pc.dibuja(inactiva);
    ASSERT_EQ(inactiva.escena.size(), 3U);
    EXPECT_TRUE(inactiva.llamadasDe("escalaConstante").empty());
    const cad::primitiva_t& cruz = inactiva.escena[1];
    EXPECT_EQ(cruz.puntos,
              (std::vector<Punto3<double>>{
                  {1.5, 2, 3}, {0.5, 2, 3}, {1, 2.5, 3}, {1, 1.5, 3}, {1, 2, 3.5}, {1, 2, 2.5}}));
    EXPECT_EQ(cruz.aristas, (std::vector<uint32_t>{0, 1, 2, 3, 4, 5}));
    const cad::primitiva_t& e = inactiva.escena[2];
    EXPECT_EQ(e.texto + "/" + e.fuente + "/" + std::to_string(e.estilo), "B1//0");
    EXPECT_EQ(e.alineacion, 1);
    EXPECT_EQ(e.altura, 1.0F);
    EXPECT_EQ(e.rotacion, 0.0F);

    pc.asignaEscalaConstante({9, 9, 9}, 2.0, 30.0);
    pc.traslada({1, 0, 0});
    EXPECT_EQ(pc.posicion, Punto3<double>(9, 9, 9));
    cad::prueba::PantallaGrabadora activa;
    pc.dibuja(activa);
    ASSERT_EQ(activa.llamadas.size(), 7U);
    EXPECT_EQ(activa.llamadas[4], "escalaConstante (2,2,3)");
    EXPECT_EQ(activa.escena.at(1).puntos.at(0), Punto3<double>(4, 2, 3));
    EXPECT_EQ(activa.escena[1].pixeles, 30.0);
}

// Bit 4 hides the label only: the point and the cross are painted as before. The label
// widens each byte of the name on its own, so a two-byte UTF-8 "Ñ" reaches the display as
// the two code points U+00C3 U+0091.
TEST(PuntoControl, BitCuatroOcultaSoloEtiqueta)
{
    PuntoControl pc("\xC3\x91", {0, 0, 0});
    cad::prueba::PantallaGrabadora visible;
    pc.dibuja(visible);
    EXPECT_EQ(visible.escena.at(2).texto, "\xC3\x83\xC2\x91");
    pc.setTextoVisible(false);
    EXPECT_EQ(pc.estado, cad::kEstadoEtiquetaOculta);
    cad::prueba::PantallaGrabadora oculta;
    pc.dibuja(oculta);
    EXPECT_EQ(oculta.llamadas, Lineas(visible.llamadas.begin(), visible.llamadas.end() - 1));
}

// "Nombre" and "Código" are editable. Index 2 and up, which the sheet does not list, store
// the absolute value of the text read as a number in `tamano`. A name or code one byte
// longer than the file can hold is refused and the old one stays.
TEST(PuntoControl, HojaEscribeNombreCodigoYTamanoOculto)
{
    PuntoControl pc("B1", {1, 2, 3});
    pc.codigo = "base";
    cad::Prop prop;
    prop.valor = "B2";
    EXPECT_TRUE(pc.setPropiedad(2, 0, prop));
    prop.valor = "-3.5";
    EXPECT_TRUE(pc.setPropiedad(2, 2, prop));
    EXPECT_EQ(pc.nombre(), "B2");
    EXPECT_EQ(pc.tamano, 3.5);
    prop.valor.assign(cad::kLongitudMaximaCadena + 1, 'x');
    EXPECT_FALSE(pc.setPropiedad(2, 0, prop));
    EXPECT_FALSE(pc.setPropiedad(2, 1, prop));
    EXPECT_EQ(pc.nombre() + "/" + pc.codigo, "B2/base");
    prop.valor.pop_back();
    EXPECT_TRUE(pc.setPropiedad(2, 1, prop));
    EXPECT_EQ(pc.codigo, prop.valor);
}

}  // namespace
