// The entity base: the common body prefix, the common property sheet, colour resolution,
// type names and the empty extension.
#include "entidades/Entidad.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/Capa.h"
#include "entidades/EntidadDesconocida.h"
#include "entidades/Linea.h"
#include "entidades/Polilinea.h"
#include "entidades/Punto.h"
#include "entidades/SistemaLocal.h"
#include "soporte/EntidadPrueba.h"
#include "soporte/FicheroTemporal.h"

namespace
{

using Bytes = std::vector<uint8_t>;
using cad::Capa;
using cad::ColorCapa;
using cad::Prop;
using cad::Punto3;
using cad::TipoProp;

// Nothing but the common fields: its body is the prefix alone.
class EntidadComun : public cad::prueba::EntidadPrueba
{
public:
    const char* etiqueta() const override { return "Zb1"; }
    Entidad* clona() const override { return new EntidadComun(*this); }
    void dibuja(cad::PantallaCAD&) const override {}
};

void pon(Bytes& b, uint64_t v, int n)
{
    for (int i = 0; i < n; ++i)
    {
        b.push_back(static_cast<uint8_t>(v >> (8 * i)));
    }
}

void pon(Bytes& b, double d)
{
    uint64_t u = 0;
    std::memcpy(&u, &d, sizeof u);
    pon(b, u, 8);
}

Bytes cuerpo(cad::Entidad& e)
{
    const std::string ruta = cad::prueba::rutaTemporal("prefijo.bin");
    {
        cad::SerializadorBinarioEscritura w(ruta);
        e.escribe(w);
    }
    return cad::prueba::leeFichero(ruta);
}

bool leeCuerpo(const Bytes& b, cad::Entidad& e)
{
    const std::string ruta = cad::prueba::rutaTemporal("prefijo.bin");
    cad::prueba::escribeFichero(ruta, b);
    cad::SerializadorBinarioLectura r(ruta);
    return e.lee(r);
}

// A true colour 0xRRGGBB, alpha 255.
void conRGB(cad::Entidad& e, uint32_t rgb)
{
    e.color.mColor = {255, static_cast<uint8_t>(rgb), static_cast<uint8_t>(rgb >> 8),
                      static_cast<uint8_t>(rgb >> 16)};
    e.color.colorCAD = 512;
}

// The prefix is id, layer id, colour (u16 index, then the bytes as they lie in memory:
// alpha, blue, green, red) and line style (f64 width, u16 pattern): 32 bytes. A reference
// with id 0 takes the layer's id and keeps it; a stored id wins; no layer writes 0.
TEST(EntidadPrefijo, bytesDeIdCapaColorYEstilo)
{
    Capa capa("Ejes", ColorCapa(1), 1);
    capa.id = 0xA1B2C3D4E5F60718ULL;
    EntidadComun e;
    e.id = 0x1122334455667788ULL;
    e.asignaCapa(&capa);
    e.color.setABGR(0x80112233U);
    e.estiloLinea.grosor = 2.5;
    e.estiloLinea.patron = 0xF0F0;
    Bytes esperado;
    pon(esperado, e.id, 8);
    pon(esperado, capa.id, 8);
    pon(esperado, 512, 2);
    esperado.insert(esperado.end(), {0x80, 0x11, 0x22, 0x33});
    pon(esperado, 2.5);
    pon(esperado, 0xF0F0, 2);
    EXPECT_EQ(cuerpo(e), esperado);
    EXPECT_EQ(e.capa.id, capa.id);
    EXPECT_EQ(e.capa.get(), &capa);
    e.capa.id = 5;
    const Bytes conId = cuerpo(e);
    ASSERT_EQ(conId.size(), 32U);
    EXPECT_EQ(Bytes(conId.begin() + 8, conId.begin() + 16), (Bytes{5, 0, 0, 0, 0, 0, 0, 0}));

    EntidadComun sinCapa;  // colour by layer with white bytes, width 1, solid
    Bytes defecto(16, 0);
    defecto.insert(defecto.end(), {0x00, 0x01, 0xFF, 0xFF, 0xFF, 0xFF});
    pon(defecto, 1.0);
    pon(defecto, 0xFFFF, 2);
    EXPECT_EQ(cuerpo(sinCapa), defecto);
}

// Reading gives every field back, keeps the layer id unresolved (no pointer) and leaves the
// style by layer, a flag the file does not hold. Any cut of the 32 bytes reads false.
TEST(EntidadPrefijo, lecturaYCortes)
{
    Capa capa("Ejes", ColorCapa(1), 1);
    capa.id = 77;
    EntidadComun origen;
    origen.id = 0x0102030405060708ULL;
    origen.asignaCapa(&capa);
    origen.color.setIndiceColor(3);
    origen.estiloLinea.porCapa = false;
    origen.estiloLinea.grosor = 0.75;
    origen.estiloLinea.patron = 0x1234;
    const Bytes b = cuerpo(origen);
    EntidadComun leida;
    ASSERT_TRUE(leeCuerpo(b, leida));
    EXPECT_EQ(leida.id, origen.id);
    EXPECT_EQ(leida.capa.id, 77U);
    EXPECT_EQ(leida.capa.objeto, nullptr);
    EXPECT_EQ(leida.color.colorCAD, 3);
    EXPECT_EQ(leida.color.ABGR(), origen.color.ABGR());
    EXPECT_EQ(leida.estiloLinea.grosor, 0.75);
    EXPECT_EQ(leida.estiloLinea.patron, 0x1234);
    EXPECT_TRUE(leida.estiloLinea.porCapa);
    for (size_t corte = 0; corte < b.size(); ++corte)
    {
        EntidadComun e;
        EXPECT_FALSE(leeCuerpo(Bytes(b.begin(), b.begin() + static_cast<long>(corte)), e)) << corte;
    }
}

// The common sheet, one category "General" of four rows: "Entidad" read-only with the type
// name; "Capa" (kind 14) the layer's name; "Color" with index 256 while by layer and the
// layer's colour as 0xAARRGGBB; "Grosor" 0 while by layer.
TEST(EntidadHoja, filasComunes)
{
    Capa capa("Ejes", ColorCapa(1), 1);
    cad::Punto e(1, 2, 3);
    e.asignaCapa(&capa);
    EntidadComun base;
    EXPECT_EQ(base.numeroCategorias(), 1);
    EXPECT_EQ(base.nombreCategoria(0), "General");
    EXPECT_EQ(base.numeroPropiedadesCategoria(0), 4);
    Prop p[4];
    for (int i = 0; i < 4; ++i)
    {
        ASSERT_TRUE(e.getPropiedad(0, i, p[i]));
        EXPECT_EQ(p[i].soloLectura, i == 0) << i;
    }
    EXPECT_EQ(p[0].nombre + "|" + p[1].nombre + "|" + p[2].nombre + "|" + p[3].nombre,
              "Entidad|Capa|Color|Grosor");
    EXPECT_EQ(p[0].tipo, TipoProp::Cadena);
    EXPECT_EQ(p[0].valor, "Punto");
    EXPECT_EQ(static_cast<int>(p[1].tipo), 14);
    EXPECT_EQ(p[1].valor, "Ejes");
    EXPECT_EQ(p[2].tipo, TipoProp::Color);
    EXPECT_EQ(p[2].indiceColor, 256);
    EXPECT_EQ(p[2].colorCapa, 0xFFFF0000U);
    EXPECT_EQ(p[3].tipo, TipoProp::DoblePositivo);
    EXPECT_EQ(std::atof(p[3].valor.c_str()), 0.0);
    ASSERT_TRUE(base.getPropiedad(0, 0, p[0]));
    EXPECT_EQ(p[0].valor, "Desconocida");
}

// Writing the sheet: an index below 256 takes the palette with alpha 255, 256..511 keeps the
// bytes; outside 0..511 the text is a decimal 0xRRGGBB giving index 512, read back as -1.
// "Grosor" stores a width off by-layer; 0 turns by-layer on and keeps the old width. Rows 0
// and 1 are ignored.
TEST(EntidadHoja, escribirColorYGrosor)
{
    Capa capa("Ejes", ColorCapa(1), 1);
    cad::Punto e(0, 0, 0);
    e.asignaCapa(&capa);
    Prop p;
    p.indiceColor = 3;
    e.setPropiedad(0, 2, p);
    EXPECT_EQ(e.color.colorCAD, 3);
    EXPECT_EQ(e.color.ABGR(), 0xFF00FF00U);
    p.indiceColor = 300;
    e.setPropiedad(0, 2, p);
    EXPECT_EQ(e.color.colorCAD, 300);
    EXPECT_EQ(e.color.ABGR(), 0xFF00FF00U);
    p.indiceColor = -1;
    p.valor = "1193046";  // 0x123456
    e.setPropiedad(0, 2, p);
    EXPECT_EQ(e.color.colorCAD, 512);
    EXPECT_EQ(e.color.ABGR(), 0xFF563412U);
    Prop leido;
    ASSERT_TRUE(e.getPropiedad(0, 2, leido));
    EXPECT_EQ(leido.indiceColor, -1);
    EXPECT_EQ(leido.valor, "4279383126");  // 0xFF123456
    p.indiceColor = 512;
    p.valor = "255";
    e.setPropiedad(0, 2, p);
    EXPECT_EQ(e.color.ABGR(), 0xFFFF0000U);

    p.valor = "2.5";
    e.setPropiedad(0, 3, p);
    EXPECT_FALSE(e.estiloLinea.porCapa);
    EXPECT_EQ(e.estiloLinea.grosor, 2.5);
    p.valor = "0";
    e.setPropiedad(0, 3, p);
    EXPECT_TRUE(e.estiloLinea.porCapa);
    EXPECT_EQ(e.estiloLinea.grosor, 2.5);
    ASSERT_TRUE(e.getPropiedad(0, 3, leido));
    EXPECT_EQ(std::atof(leido.valor.c_str()), 0.0);
    p.valor = "Otra";
    e.setPropiedad(0, 0, p);
    e.setPropiedad(0, 1, p);
    EXPECT_EQ(e.capa.get(), &capa);
    EXPECT_EQ(capa.nombre, "Ejes");
}

// Nearest palette index: 256 by layer whatever the bytes; otherwise the first index of least
// squared distance, so duplicates (red 1/10, yellow 2/50, white 7/255) and equidistant pairs
// (3A3A3A between 8 and 250, 818181 between 9 and 253) keep the lower index.
TEST(EntidadColor, indiceColorCercano)
{
    cad::Punto e(0, 0, 0);
    conRGB(e, 0xFF0000);
    e.color.colorCAD = 256;
    EXPECT_EQ(e.indiceColorCercano(), 256);
    const uint32_t rgb[] = {0xFF0000, 0xFFFF00, 0x00FF00, 0xFFFFFF, 0x000000,
                            0xFE0101, 0x3A3A3A, 0x818181, 0x9F0000};
    const int indice[] = {1, 2, 3, 7, 0, 1, 8, 9, 12};
    for (size_t i = 0; i < std::size(rgb); ++i)
    {
        conRGB(e, rgb[i]);
        EXPECT_EQ(e.indiceColorCercano(), indice[i]) << std::hex << rgb[i];
    }
    e.color.setIndiceColor(10);  // palette 10 is red again: the bytes decide
    EXPECT_EQ(e.indiceColorCercano(), 1);
}

// resuelveColorABGR: the layer's bytes while by layer, the entity's own otherwise, as
// 0xAABBGGRR; the second form gives the same colour as 0xAARRGGBB.
TEST(EntidadColor, resuelveColorPorCapaYPropio)
{
    Capa capa("Azul", ColorCapa(5), 1);
    cad::Punto e(0, 0, 0);
    e.asignaCapa(&capa);
    EXPECT_EQ(e.resuelveColorABGR(), 0xFFFF0000U);
    EXPECT_EQ(e.resuelveColorABGR(0), 0xFF0000FFU);
    e.color.setABGR(0x80112233U);
    EXPECT_EQ(e.resuelveColorABGR(), 0x80112233U);
    EXPECT_EQ(e.resuelveColorABGR(0), 0x80332211U);
    e.color.setIndiceColor(256);  // back to the layer; the own bytes stay unused
    EXPECT_EQ(e.resuelveColorABGR(), 0xFFFF0000U);
}

// esTipo compares the tag's type name without regard to case, never the tag; both polyline
// tags answer "Polilinea". The name table gives "Desconocida" for any other tag, never
// "Poligono", and compares tags exactly.
TEST(EntidadTipo, esTipoYTablaDeNombres)
{
    cad::Punto p(0, 0, 0);
    EXPECT_TRUE(p.esTipo("punto"));
    EXPECT_TRUE(p.esTipo("PUNTO"));
    EXPECT_FALSE(p.esTipo("Pt1"));
    EXPECT_FALSE(p.esTipo("Punt"));
    std::vector<Punto3<double>> v(1000);
    EXPECT_TRUE(cad::Polilinea(999, v.data()).esTipo("POLILINEA"));
    EXPECT_TRUE(cad::Polilinea(1000, v.data()).esTipo("polilinea"));
    EXPECT_TRUE(cad::SistemaLocal().esTipo("sistema LOCAL"));
    EXPECT_TRUE(cad::EntidadDesconocida("Np1").esTipo("nubepuntos"));
    EXPECT_TRUE(cad::EntidadDesconocida("Xy1").esTipo("DESCONOCIDA"));
    // clang-format off
    const char* const tabla[] = {
        "Pt1", "Punto", "GrpPnt1", "GrupoPuntos", "Poly3D1", "PoliCara3D", "C3D", "Cara3D",
        "Ln1", "Linea", "Pg1", "Polilinea", "PolyLn1", "Polilinea", "Np1", "NubePuntos",
        "PC1", "PuntoControl", "Cb1", "Cubo", "Cl1", "Cilindro", "Es1", "Esfera", "Pr1", "Prisma",
        "Ob1", "Objeto3D", "MallaRegular002", "Malla", "Superficie3D001", "Superficie",
        "Pn1", "Plano3D", "TC1", "TomaCamara", "Sl1", "Sistema Local", "OF1", "Ortofoto",
        "Tx1", "Desconocida", "F3D", "Desconocida", "pt1", "Desconocida", "", "Desconocida"};
    // clang-format on
    for (size_t i = 0; i < std::size(tabla); i += 2)
    {
        EXPECT_STREQ(cad::nombreTipo(tabla[i]), tabla[i + 1]) << tabla[i];
    }
}

// No coordinates: the inverted default box (0,0,0)-(-1,-1,-1). With coordinates the box
// starts at the first point, not at the origin.
TEST(EntidadExtension, cajaInvertidaSinCoordenadas)
{
    const cad::Rect3<double> vacia = cad::EntidadDesconocida("Xq1").extension();
    EXPECT_EQ(vacia.minimo, Punto3<double>(0, 0, 0));
    EXPECT_EQ(vacia.maximo, Punto3<double>(-1, -1, -1));
    EXPECT_FALSE(vacia.esValido());
    EXPECT_EQ(cad::Punto(2, 3, 4).extension().minimo, Punto3<double>(2, 3, 4));
    const cad::Linea l(Punto3<double>(1, 5, -2), Punto3<double>(4, 2, 3));
    EXPECT_EQ(l.extension().minimo, Punto3<double>(1, 2, -2));
    EXPECT_EQ(l.extension().maximo, Punto3<double>(4, 5, 3));
}

}  // namespace
