// Linea: block bytes, painting, hot elements and drags, snap order, DXF record and sheet.
#include "entidades/Linea.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/Capa.h"
#include "documento/ReferenciaEntidades.h"
#include "intercambio/ExportaDXF.h"
#include "modelo/PuntosCalientes.h"
#include "soporte/BloquesPrueba.h"
#include "soporte/FicheroTemporal.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::Punto3;
using cad::prueba::Bytes;

const std::string kRuta = cad::prueba::rutaTemporal("linea.bin");

// Writes the entity in its own block, as the entity list does.
Bytes guarda(cad::Entidad& e)
{
    return cad::prueba::guarda(e, kRuta);
}

// A vertical ray down through (x, y), seen through a clip cube of -10..10 drawing units.
struct Rayo
{
    Rayo(double x, double y, int mascara)
        : r(amplia(pantalla), Punto3<double>(x, y, 5), cad::Vector3D<double>(0, 0, -1), mascara,
            1.0)
    {
    }
    static cad::prueba::PantallaGrabadora* amplia(cad::prueba::PantallaGrabadora& p)
    {
        p.proyeccion(0, 0) = p.proyeccion(1, 1) = p.proyeccion(2, 2) = 0.1;
        return &p;
    }
    cad::prueba::PantallaGrabadora pantalla;  // before r: r reads its matrices
    cad::ReferenciaEntidades r;
};

// A line is written under "Ln1" with a u16 length of 2 + 32 + 48 = 82: the common prefix
// (its id right after the length), then `origen` and `extremo` as three doubles each. Read
// back through the block it gives the same points and nothing is left in the block.
TEST(LineaFichero, BytesExactosYVuelta)
{
    cad::Linea l(Punto3<double>(1.5, -2, 3), Punto3<double>(4, 5, 6.25));
    l.id = 0x1122334455667788ULL;
    const Bytes b = guarda(l);
    ASSERT_EQ(b.size(), 4U + 82U);
    EXPECT_EQ(Bytes(b.begin(), b.begin() + 14),
              (Bytes{'L', 'n', '1', 0, 82, 0, 0x88, 0x77, 0x66, 0x55, 0x44, 0x33, 0x22, 0x11}));
    const double puntos[6] = {1.5, -2, 3, 4, 5, 6.25};
    EXPECT_EQ(std::memcmp(&b[b.size() - 48], puntos, 48), 0);

    cad::SerializadorBinarioLectura r(kRuta);
    cad::BloqueSerializacion* bloque = r.leeBloque();
    cad::Linea leida;
    ASSERT_TRUE(leida.lee(r));
    ASSERT_TRUE(leida.finLectura(r, bloque));
    EXPECT_EQ(leida.id, l.id);
    EXPECT_EQ(static_cast<cad::Linea3D<double>&>(leida), static_cast<cad::Linea3D<double>&>(l));
    EXPECT_EQ(leida.datosDesconocidos, nullptr);
}

// Painting is exactly one dibujaLinea with both points, the entity's colour and the entity
// as pick value; a by-layer line takes its layer's colour (red: alpha, blue, green, red).
TEST(LineaDibujo, UnaLlamadaConColorYEntidad)
{
    cad::Linea l(Punto3<double>(1, 2, 3), Punto3<double>(4, 5, 6));
    l.color.setABGR(0x11223344);
    cad::prueba::PantallaGrabadora p;
    l.dibuja(p);
    cad::Capa roja("Ejes", cad::ColorCapa(1), 1);
    cad::Linea porCapa(Punto3<double>(0, 0, 0), Punto3<double>(1, 0, 0));
    porCapa.asignaCapa(&roja);
    porCapa.dibuja(p);
    EXPECT_EQ(p.llamadas, (std::vector<std::string>{"dibujaLinea (1,2,3) (4,5,6) 11223344 pick",
                                                    "dibujaLinea (0,0,0) (1,0,0) FF0000FF pick"}));
    ASSERT_EQ(p.escena.size(), 2U);
    EXPECT_EQ(p.escena[0].pick, static_cast<cad::Entidad*>(&l));
}

// The hot set is the two ends as vertices 0 and 1 and one edge. A vertex drag moves that
// end and ignores index 2; an edge drag moves both ends rigidly from their grab positions,
// so a repeated call does not move them further, and without both grab ends nothing moves.
TEST(LineaPuntosCalientes, ElementosYArrastres)
{
    cad::Linea l(Punto3<double>(0, 0, 0), Punto3<double>(4, 0, 0));
    cad::PuntosCalientes h;
    l.puntosCalientes(h);
    ASSERT_EQ(h.puntos.size(), 2U);
    EXPECT_EQ(h.puntos[1].punto, l.extremo);
    EXPECT_EQ(h.puntos[1].indice, 1);
    EXPECT_EQ(h.puntos[1].entidad, &l);
    EXPECT_EQ(h.aristas, (decltype(h.aristas){{l.origen, l.extremo}}));

    cad::elemento_arrastrado_t e;
    e.tipo = cad::kTipoArista;
    e.indice = 0;
    e.extra = {l.origen, l.extremo};
    e.punto = Punto3<double>(2, 0, 0);
    e.posicion = Punto3<double>(3, 1, 2);
    l.aplicaPuntoCaliente(e);
    l.aplicaPuntoCaliente(e);
    EXPECT_EQ(l.origen, Punto3<double>(1, 1, 2));
    EXPECT_EQ(l.extremo, Punto3<double>(5, 1, 2));
    e.extra.pop_back();
    l.aplicaPuntoCaliente(e);
    e.tipo = cad::kTipoVertice;
    e.indice = 2;
    l.aplicaPuntoCaliente(e);
    EXPECT_EQ(l.extremo, Punto3<double>(5, 1, 2));
    e.indice = 1;
    l.aplicaPuntoCaliente(e);
    EXPECT_EQ(l.extremo, e.posicion);
}

// Ends, midpoint and segment are offered in the order of their bits and a tie keeps the
// earlier offer: a ray through an end gives kind 1 and through the midpoint kind 2, though
// the segment is at distance 0 there too. The segment alone gives its nearest point.
TEST(LineaReferencia, OrdenDeLosBitsDecideEmpates)
{
    cad::Linea l(Punto3<double>(0, 0, 0), Punto3<double>(4, 0, 0));
    const int todo = cad::kExtremos | cad::kPuntosMedios | cad::kCercano;
    const struct
    {
        double x, y;
        int mascara, tipo;
        Punto3<double> punto;
    } casos[] = {{0, 0, todo, cad::kExtremos, {0, 0, 0}},
                 {2, 0, todo, cad::kPuntosMedios, {2, 0, 0}},
                 {3, 0.5, cad::kCercano, cad::kCercano, {3, 0, 0}}};
    for (const auto& c : casos)
    {
        Rayo rayo(c.x, c.y, c.mascara);
        ASSERT_TRUE(l.getReferenciaEntidades(rayo.r));
        EXPECT_EQ(rayo.r.tipoMejor, c.tipo);
        EXPECT_EQ(rayo.r.puntoMejor, c.punto);
        EXPECT_EQ(rayo.r.entidadMejor, &l);
    }
    Rayo nada(0, 0, cad::kPuntosInsercion);
    EXPECT_FALSE(l.getReferenciaEntidades(nada.r));
}

// One LINE on the entity's layer with the palette index in group 62 and both points in
// "%0.4lf", as the whole of the ENTITIES section.
TEST(LineaDXF, RegistroLine)
{
    const std::string ruta = cad::prueba::rutaTemporal("linea.dxf");
    {
        cad::Capa ejes("Ejes", cad::ColorCapa(1), 1);
        cad::Linea l(Punto3<double>(1, 2, 3), Punto3<double>(4, 5, 6.5));
        l.asignaCapa(&ejes);
        l.color.setIndiceColor(5);
        cad::ExportaDXF dxf(ruta);
        dxf.nuevaCapa("Ejes", 1);
        dxf.inicioEntidades();
        l.exportaDXF(dxf);
        dxf.finEntidades();
    }
    const Bytes b = cad::prueba::leeFichero(ruta);
    const std::string texto(b.begin(), b.end());
    EXPECT_NE(texto.find("  2\nENTITIES\n"
                         "  0\nLINE\n  8\nEjes\n 62\n5\n"
                         " 10\n1.0000\n 20\n2.0000\n 30\n3.0000\n"
                         " 11\n4.0000\n 21\n5.0000\n 31\n6.5000\n"
                         "  0\nENDSEC\n"),
              std::string::npos);
}

// "Geometría" holds Inicio, Fin, Incremento and the read-only Longitud; writing Incremento
// moves the end to origin + value; coincident ends have length 0; category 0 stays
// Entidad's.
TEST(LineaPropiedades, HojaDeGeometria)
{
    cad::Linea l(Punto3<double>(1, 1, 1), Punto3<double>(4, 5, 1));
    EXPECT_EQ(l.numeroCategorias(), 2);
    EXPECT_EQ(l.nombreCategoria(1), "Geometría");
    EXPECT_EQ(l.numeroPropiedadesCategoria(1), 4);
    const char* nombres[] = {"Inicio", "Fin", "Incremento", "Longitud"};
    cad::Prop p;
    for (int i = 0; i < 4; ++i)
    {
        ASSERT_TRUE(l.getPropiedad(1, i, p));
        EXPECT_EQ(p.nombre, nombres[i]);
    }
    EXPECT_EQ(p.tipo, cad::TipoProp::DoblePositivo);
    EXPECT_TRUE(p.soloLectura);
    EXPECT_EQ(p.valor, "           5");
    ASSERT_TRUE(l.getPropiedad(1, 2, p));
    EXPECT_EQ(p.tipo, cad::TipoProp::Vector);
    EXPECT_EQ(Punto3<double>(p.x, p.y, p.z), Punto3<double>(3, 4, 0));
    ASSERT_TRUE(l.getPropiedad(0, 0, p));
    EXPECT_EQ(p.valor, "Linea");

    ASSERT_TRUE(l.setPropiedad(1, 2, cad::Prop()));
    EXPECT_EQ(l.extremo, l.origen);
    ASSERT_TRUE(l.getPropiedad(1, 3, p));
    EXPECT_EQ(p.valor, "           0");
    EXPECT_FALSE(l.setPropiedad(1, 3, p));
}

}  // namespace
