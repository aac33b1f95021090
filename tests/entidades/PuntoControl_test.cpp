// Control points: the negative size marker, older bodies, the cross and label, sheet, DXF.
#include "entidades/PuntoControl.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/LongitudCadena.h"
#include "documento/Capa.h"
#include "documento/EstiloTexto.h"
#include "intercambio/ExportaDXF.h"
#include "soporte/BloquesPrueba.h"
#include "soporte/FicheroTemporal.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::prueba::Bytes;
using cad::prueba::carga;
using cad::prueba::guarda;
using cad::prueba::operator+;
using cad::Punto3;
using cad::PuntoControl;
using Lineas = std::vector<std::string>;

cad::Capa& capaRoja()
{
    static cad::Capa capa("Ejes", cad::ColorCapa(1), 1);
    return capa;
}

// "B1" at (1, 2, 3), code "X", default size, style id 5, constant scale at (1, 2, 3), 1.0,
// 24.9 pixels; id 0x10, layer id 7.
PuntoControl controlB1(cad::EstiloTexto& estilo)
{
    PuntoControl pc("B1", {1, 2, 3});
    pc.id = 0x10;
    pc.capa.id = 7;
    pc.codigo = "X";
    estilo.id = 5;
    pc.setEstiloTexto(&estilo);
    pc.asignaEscalaConstante({1, 2, 3}, 1.0, 24.9);
    return pc;
}

const long kTamano = 6 + 32 + 24 + 4 + 4;  // where the size starts: header, prefix, xyz, names
// clang-format off
const Bytes kUnoDosTres = {0, 0, 0, 0, 0, 0, 0xF0, 0x3F, 0, 0, 0, 0, 0, 0, 0x00, 0x40,
                           0, 0, 0, 0, 0, 0, 0x08, 0x40};
// clang-format on

// The body: point, both strings padded, the size as -|tamano| (sign byte 0xBF for 0.2), the
// style id, then the mix-in's position, scale and pixels (24.9 truncated to 24). Read back
// the size stays negative, a second save gives the same bytes, and painting uses the size
// as read: the first vertex of the cross is x - 0.2.
TEST(PuntoControl, CuerpoConMarcaNegativa)
{
    cad::EstiloTexto estilo;
    PuntoControl pc = controlB1(estilo);
    // clang-format off
    const Bytes esperado =
        Bytes{'P', 'C', '1', 0, 118, 0, 0x10, 0, 0, 0, 0, 0, 0, 0, 7, 0, 0, 0, 0, 0, 0, 0,
              0x00, 0x01, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F, 0xFF, 0xFF} +
        kUnoDosTres + Bytes{2, 0, 'B', '1', 2, 0, 'X', 0} +
        Bytes{0x9A, 0x99, 0x99, 0x99, 0x99, 0x99, 0xC9, 0xBF, 5, 0, 0, 0, 0, 0, 0, 0} +
        kUnoDosTres + Bytes{0, 0, 0, 0, 0, 0, 0xF0, 0x3F, 24, 0, 0, 0};
    // clang-format on
    const Bytes bytes = guarda(pc);
    ASSERT_EQ(bytes, esperado);

    PuntoControl leido;
    ASSERT_TRUE(carga(bytes, leido));
    EXPECT_EQ(leido.nombre() + leido.codigo, "B1X");
    EXPECT_EQ(leido.tamano, -0.2);
    EXPECT_EQ(leido.referenciaEstilo().id, 5U);
    EXPECT_EQ(leido.posicion, Punto3<double>(1, 2, 3));
    EXPECT_EQ(leido.pixeles, 24);
    EXPECT_EQ(guarda(leido), bytes);
    leido.pixeles = 0;
    cad::prueba::PantallaGrabadora pantalla;
    leido.dibuja(pantalla);
    EXPECT_EQ(pantalla.escena.at(1).puntos.at(0), Punto3<double>(1 - 0.2, 2, 3));
}

// The marker is the size's sign bit. A body of the older form ends at the style id with a
// positive size: it reads whole, nothing is left as unknown bytes, and saving it again
// writes the newer form. A zero size goes out as -0.0, which does not compare below zero
// but still marks the last three fields: they are read, not kept as a tail to write twice.
TEST(PuntoControl, MarcaDeSignoEnCuerpoAntiguoYTamanoCero)
{
    cad::EstiloTexto estilo;
    PuntoControl pc = controlB1(estilo);
    Bytes antiguo = guarda(pc);
    antiguo.resize(antiguo.size() - 36);
    antiguo[4] = 118 - 36;
    antiguo[kTamano + 7] = 0x3F;  // +0.2
    PuntoControl leido;
    ASSERT_TRUE(carga(antiguo, leido));
    EXPECT_EQ(leido.tamano, 0.2);
    EXPECT_EQ(leido.escala, 0.0);
    EXPECT_EQ(leido.datosDesconocidos, nullptr);
    const Bytes nuevo = guarda(leido);
    ASSERT_EQ(nuevo.size(), 4U + 118);
    EXPECT_EQ(nuevo[kTamano + 7], 0xBF);

    pc.tamano = 0.0;
    const Bytes cero = guarda(pc);
    EXPECT_EQ(Bytes(cero.begin() + kTamano, cero.begin() + kTamano + 8),
              (Bytes{0, 0, 0, 0, 0, 0, 0, 0x80}));
    PuntoControl leidoCero;
    ASSERT_TRUE(carga(cero, leidoCero));
    EXPECT_EQ(leidoCero.pixeles, 24);
    EXPECT_EQ(guarda(leidoCero), cero);
}

// Damaged bodies: cut at every length, or with a name length far beyond the file, a read
// answers false without reading past the file or sizing a buffer for the claim.
TEST(PuntoControl, CuerpoDanadoDaFalso)
{
    cad::EstiloTexto estilo;
    PuntoControl pc = controlB1(estilo);
    Bytes bytes = guarda(pc);
    for (long n = 0; n < static_cast<long>(bytes.size()); ++n)
    {
        PuntoControl leido;
        EXPECT_FALSE(carga(Bytes(bytes.begin(), bytes.begin() + n), leido)) << n;
    }
    bytes[62] = 0xFE;
    bytes[63] = 0xFF;
    PuntoControl leido;
    EXPECT_FALSE(carga(bytes, leido));
}

// The paint with the mix-in off: the point, the cross as one object of six vertices (+x, -x,
// +y, -y, +z, -z at the size) and six edge indices, then the label centred, height 1, not
// rotated, font "" and marks 0 with no style; all in the layer's colour, picked as the entity.
TEST(PuntoControl, DibujaCruzYEtiqueta)
{
    PuntoControl pc("B1", {1, 2, 3});
    pc.tamano = 0.5;
    pc.asignaCapa(&capaRoja());
    cad::prueba::PantallaGrabadora pantalla;
    pc.dibuja(pantalla);
    EXPECT_EQ(pantalla.llamadas,
              (Lineas{"dibujaPunto (1,2,3) FF0000FF pick", "iniciaObjeto FF0000FF 0", "vertices 6",
                      "aristas 6", "finObjeto pick", "dibujaTextoAncho (1,2,3) FF0000FF pick"}));
    ASSERT_EQ(pantalla.escena.size(), 3U);
    const cad::primitiva_t& cruz = pantalla.escena[1];
    EXPECT_EQ(cruz.puntos,
              (std::vector<Punto3<double>>{
                  {1.5, 2, 3}, {0.5, 2, 3}, {1, 2.5, 3}, {1, 1.5, 3}, {1, 2, 3.5}, {1, 2, 2.5}}));
    EXPECT_EQ(cruz.aristas, (std::vector<uint32_t>{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(cruz.pick, static_cast<cad::Entidad*>(&pc));
    const cad::primitiva_t& e = pantalla.escena[2];
    EXPECT_EQ(e.texto + "/" + e.fuente + "/" + std::to_string(e.estilo), "B1//0");
    EXPECT_EQ(e.alineacion, 1);
    EXPECT_EQ(e.altura, 1.0F);
    EXPECT_EQ(e.rotacion, 0.0F);
}

// Constant scale: active (escala 2, 30 pixels) the arms are escala long and escalaConstante
// comes before finObjeto, centred on the painted position, which traslada moves while the
// mix-in's `posicion` stays. With pixeles 0 the mix-in is off: arms of `tamano`, no call.
TEST(PuntoControl, EscalaConstanteSoloConPixeles)
{
    PuntoControl pc("B1", {1, 2, 3});
    pc.tamano = 0.5;
    pc.asignaEscalaConstante({9, 9, 9}, 2.0, 30.0);
    pc.traslada({1, 0, 0});
    EXPECT_EQ(pc.posicion, Punto3<double>(9, 9, 9));
    cad::prueba::PantallaGrabadora activa;
    pc.dibuja(activa);
    ASSERT_EQ(activa.llamadas.size(), 7U);
    EXPECT_EQ(activa.llamadas[4], "escalaConstante (2,2,3)");
    EXPECT_EQ(activa.llamadas[5], "finObjeto pick");
    EXPECT_EQ(activa.escena.at(1).puntos.at(0), Punto3<double>(4, 2, 3));
    EXPECT_EQ(activa.escena[1].pixeles, 30.0);

    pc.pixeles = 0;
    cad::prueba::PantallaGrabadora inactiva;
    pc.dibuja(inactiva);
    EXPECT_TRUE(inactiva.llamadasDe("escalaConstante").empty());
    EXPECT_EQ(inactiva.escena.at(1).puntos.at(0), Punto3<double>(2.5, 2, 3));
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

// The sheet: "Varios" with "Nombre" and "Código", both editable. Index 2 and up, which the
// sheet does not list, store the absolute value of the text read as a number in `tamano`.
// A name or code one byte longer than the file can hold is refused and the old one stays.
TEST(PuntoControl, HojaYTamanoOculto)
{
    PuntoControl pc("B1", {1, 2, 3});
    pc.codigo = "base";
    EXPECT_EQ(pc.nombreCategoria(2) + std::to_string(pc.numeroPropiedadesCategoria(2)), "Varios2");
    cad::Prop prop;
    ASSERT_TRUE(pc.getPropiedad(2, 1, prop));
    EXPECT_EQ(prop.nombre + "=" + prop.valor, "Código=base");
    ASSERT_TRUE(pc.getPropiedad(2, 0, prop));
    EXPECT_EQ(prop.nombre + "=" + prop.valor, "Nombre=B1");
    EXPECT_FALSE(pc.getPropiedad(2, 2, prop));
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

// DXF: the layer, a POINT (by layer: no group 62), then a TEXT of the name at the same
// point, left aligned (no group 11), height 1 and no rotation (no group 50).
TEST(PuntoControl, ExportaPuntoYTexto)
{
    PuntoControl pc("B1", {1, 2, 3});
    pc.asignaCapa(&capaRoja());
    const std::string ruta = cad::prueba::rutaTemporal("control.dxf");
    {
        cad::ExportaDXF dxf(ruta);
        dxf.nuevaCapa("Ejes", 1);
        dxf.inicioEntidades();
        pc.exportaDXF(dxf);
        dxf.finEntidades();
    }
    const Bytes bytes = cad::prueba::leeFichero(ruta);
    const std::string fichero(bytes.begin(), bytes.end());
    EXPECT_NE(fichero.find("  2\nENTITIES\n"
                           "  0\nPOINT\n  8\nEjes\n 10\n1.0000\n 20\n2.0000\n 30\n3.0000\n"
                           "  0\nTEXT\n  8\nEjes\n 10\n1.0000\n 20\n2.0000\n 30\n3.0000\n"
                           " 40\n1.0000\n 72\n0\n  1\nB1\n  0\nENDSEC\n"),
              std::string::npos)
        << fichero;
}

}  // namespace
