// Policara and Superficie beyond the catalogue: the exact lists painted, the stretches of
// materials, the reader's guards one by one, a large body against the serialiser's own calls,
// and the surface's quirks of snap, representation and extent. (That each kind comes back as
// its own class through the list's factory is the catalogue's committed document's check.)
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/Dibujo.h"
#include "documento/ReferenciaEntidades.h"
#include "documento/VariablesPintura.h"
#include "entidades/Policara.h"
#include "entidades/Punto.h"
#include "entidades/Superficie.h"
#include "soporte/CatalogoEntidades.h"
#include "soporte/CatalogoPiezas.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::Policara;
using cad::primitiva_t;
using cad::Superficie;
using cad::prueba::Bytes;
using cad::prueba::carga;
using cad::prueba::guarda;
using cad::prueba::PantallaGrabadora;
using cad::prueba::pintaEscena;
using P = cad::Punto3<double>;
using Enteros = std::vector<int32_t>;

// Points 0..5 on a 2 x 2 grid step and beyond; `indices` lists the corners' points, each
// corner with u = its index, v = 0.5, normal (0, 0, 1) and the material given per corner.
Policara sopa(const Enteros& indices, const std::vector<uint16_t>& materiales = {})
{
    Policara s;
    s.puntos = {{0, 0, 0}, {2, 0, 0}, {0, 2, 0}, {2, 2, 0}, {4, 0, 0}, {4, 2, 0}};
    for (size_t i = 0; i < indices.size(); ++i)
    {
        s.esquinas.push_back({indices[i],
                              {static_cast<double>(i), 0.5},
                              {0, 0, 1},
                              i < materiales.size() ? materiales[i] : uint16_t{0}});
    }
    return s;
}

// One material (mode, pick and no normals: the catalogue's): edges per side, triangles then
// quads whatever the corner order, each face wrapping to its first corner; polygons as count
// and point indices. The lists are built once: a face added after the first paint is not
// seen. A soup of quads alone paints them with `triangulos` empty; a soup without faces
// paints nothing.
// Several materials: a stretch per pair, triangles and quads together, on private corners
// with their own normal and UV; the first corner's material picks the display's. Faces before
// the first pair paint as a stretch of their own (here with "no material", 0xFFFF, which the
// display takes as -1). Two equal pairs make an empty stretch, which paints nothing.
TEST(PolicaraDibujo, ListasTramosYCache)
{
    Policara s = sopa({1, 4, 5, 3, 0, 1, 2});
    s.triangulos = {4};
    s.cuadrilateros = {0};
    auto escena = pintaEscena(s);
    ASSERT_EQ(escena.size(), 1U);
    EXPECT_EQ(escena[0].puntos, s.puntos);
    EXPECT_EQ(escena[0].aristas, (std::vector<uint32_t>{0, 1, 1, 2, 2, 0, 1, 4, 4, 5, 5, 3, 3, 1}));
    EXPECT_EQ(escena[0].caras, (Enteros{3, 0, 1, 2, 4, 1, 4, 5, 3}));

    s.triangulos.push_back(0);
    EXPECT_EQ(pintaEscena(s)[0].caras, (Enteros{3, 0, 1, 2, 4, 1, 4, 5, 3}));

    Policara cuadros = sopa({1, 4, 5, 3, 0, 1, 3, 2});
    cuadros.cuadrilateros = {0, 4};
    escena = pintaEscena(cuadros);
    ASSERT_EQ(escena.size(), 1U);
    EXPECT_EQ(escena[0].caras, (Enteros{4, 1, 4, 5, 3, 4, 0, 1, 3, 2}));
    EXPECT_EQ(escena[0].aristas.size(), 16U);

    EXPECT_TRUE(pintaEscena(sopa({0, 1, 2})).empty());

    Policara tramos = sopa({0, 1, 2, 1, 3, 2, 1, 4, 5, 3, 0, 1, 3, 2},
                           {0xFFFF, 0xFFFF, 0xFFFF, 6, 6, 6, 9, 9, 9, 9, 8, 8, 8, 8});
    tramos.triangulos = {0, 3};
    tramos.cuadrilateros = {6, 10};
    tramos.cambiosMaterial = {1, 0, 1, 0, 2, 1};
    PantallaGrabadora p;
    tramos.dibuja(p);
    EXPECT_EQ(p.llamadasDe("setMaterial"),
              (std::vector<std::string>{"setMaterial -1", "setMaterial 6", "setMaterial 8"}));
    ASSERT_EQ(p.escena.size(), 3U);
    EXPECT_EQ(p.escena[0].caras, (Enteros{3, 0, 1, 2}));
    EXPECT_EQ(p.escena[0].puntos, (std::vector<P>{{0, 0, 0}, {2, 0, 0}, {0, 2, 0}}));
    // the second triangle and the first quad, seven private corners
    const primitiva_t& medio = p.escena[1];
    EXPECT_EQ(medio.material, 6);
    EXPECT_EQ(medio.caras, (Enteros{3, 0, 1, 2, 4, 3, 4, 5, 6}));
    EXPECT_EQ(medio.puntos,
              (std::vector<P>{
                  {2, 0, 0}, {2, 2, 0}, {0, 2, 0}, {2, 0, 0}, {4, 0, 0}, {4, 2, 0}, {2, 2, 0}}));
    EXPECT_EQ(medio.uv,
              (std::vector<float>{3, 0.5F, 4, 0.5F, 5, 0.5F, 6, 0.5F, 7, 0.5F, 8, 0.5F, 9, 0.5F}));
    EXPECT_EQ(medio.normales, std::vector<cad::Vector3D<float>>(7, cad::Vector3D<float>(0, 0, 1)));
    EXPECT_EQ(p.escena[2].caras, (Enteros{4, 0, 1, 2, 3}));
    EXPECT_EQ(p.escena[2].material, 8);
}

// Filled in code with bad indices, painting and snap skip the faces they cannot read: a
// corner naming no point, a face running past the corners, a negative start. Pairs past the
// lists are clamped and a half pair is dropped.
TEST(PolicaraDibujo, IndicesMalosSeSaltan)
{
    Policara s = sopa({0, 1, 2, 0, 1, 9, 3, 4});
    s.triangulos = {0, 3, 6, -1};
    s.cuadrilateros = {5};
    auto escena = pintaEscena(s);
    ASSERT_EQ(escena.size(), 1U);
    EXPECT_EQ(escena[0].caras, (Enteros{3, 0, 1, 2}));

    s.cambiosMaterial = {0, 0, 7, 9, 1};
    escena = pintaEscena(s);
    ASSERT_EQ(escena.size(), 1U);
    EXPECT_EQ(escena[0].caras, (Enteros{3, 0, 1, 2}));

    // point 3 stands only in skipped faces: the nearest offer is a corner of the good one
    cad::prueba::Rayo rayo(2, 2, cad::kExtremos | cad::kPuntosMedios);
    ASSERT_TRUE(s.getReferenciaEntidades(rayo.r));
    EXPECT_EQ(rayo.r.puntoMejor, P(1, 1, 0));
    Policara mala = sopa({0, 9, 1});
    mala.triangulos = {0};
    EXPECT_FALSE(mala.getReferenciaEntidades(rayo.r));
    EXPECT_TRUE(pintaEscena(mala).empty());
}

// A valid body with a triangle, a quad and one pair; each guard is one damage to it. Every
// refused body reads false and leaves the geometry empty, even in a filled entity. Equal
// pairs, a pair at the very end of the lists and a quad ending at the last corner are fine.
TEST(PolicaraLectura, CadaGuardaDaFalso)
{
    const auto base = []
    {
        Policara s = sopa({0, 1, 2, 1, 4, 5, 3});
        s.triangulos = {0};
        s.cuadrilateros = {3};
        s.cambiosMaterial = {0, 0, 0, 0, 1, 1};
        return s;
    };
    {
        Policara s = base();
        const Bytes b = guarda(s);
        Policara leida;
        ASSERT_TRUE(carga(b, leida));
        EXPECT_EQ(guarda(leida), b);
    }
    const auto refusa = [&base](auto dano, int caso)
    {
        Policara s = base();
        dano(s);
        Policara leida = base();
        EXPECT_FALSE(carga(guarda(s), leida)) << caso;
        EXPECT_EQ(leida.numCoordenadas(), 0) << caso;
        EXPECT_TRUE(leida.esquinas.empty() && leida.triangulos.empty()) << caso;
    };
    refusa([](Policara& s) { s.esquinas[1].indice = 6; }, 0);
    refusa([](Policara& s) { s.esquinas[6].indice = -1; }, 1);
    refusa([](Policara& s) { s.triangulos = {5}; }, 2);
    refusa([](Policara& s) { s.triangulos = {-1}; }, 3);
    refusa([](Policara& s) { s.cuadrilateros = {4}; }, 4);
    // a half pair, a pair past the faces, pairs going back, a negative face
    const std::vector<std::vector<int32_t>> pares = {{0, 0, 1},    {2, 0},       {0, 2},
                                                     {1, 0, 0, 1}, {1, 1, 1, 0}, {-1, 0}};
    for (size_t i = 0; i < pares.size(); ++i)
    {
        refusa([&](Policara& s) { s.cambiosMaterial = pares[i]; }, static_cast<int>(5 + i));
    }

    // Each count, one item beyond the bytes left: points at 44, corners after 6 points,
    // then the three integer lists.
    Policara s = base();
    const Bytes b = guarda(s);
    const size_t esquinas = 44 + 4 + 6 * 24;
    const size_t triangulos = esquinas + 4 + 7 * 34;
    const size_t cuadrilateros = triangulos + 4 + 4;
    const size_t cambios = cuadrilateros + 4 + 4;
    const struct
    {
        size_t pos, tamano;
    } cuentas[] = {{44, 24}, {esquinas, 34}, {triangulos, 4}, {cuadrilateros, 4}, {cambios, 4}};
    for (const auto& c : cuentas)
    {
        Bytes mentira = b;
        cad::prueba::ponNum(mentira, c.pos, (b.size() - c.pos - 4) / c.tamano + 1, 4);
        Policara leida = base();
        EXPECT_FALSE(carga(mentira, leida)) << c.pos;
        EXPECT_EQ(leida.numCoordenadas(), 0) << c.pos;
    }
}

// The bulk body of a large soup (spanning many pieces of the packer and of the reader) is
// byte for byte what the serialiser's own calls write for the same fields; it reads back
// equal.
TEST(PolicaraLectura, CuerpoGrandeIgualAlDeLasLlamadas)
{
    Policara s;
    const int n = 120000;
    for (int i = 0; i < n; ++i)
    {
        s.puntos.emplace_back(i * 0.5, -i, i % 7);
    }
    for (int i = 0; i + 3 < n; i += 2)
    {
        const auto t = static_cast<int32_t>(s.esquinas.size());
        for (int k = 0; k < 3; ++k)
        {
            s.esquinas.push_back({i + k,
                                  {i * 0.25, k * 0.125},
                                  {0.5F, -0.25F, static_cast<float>(k)},
                                  static_cast<uint16_t>(i % 5)});
        }
        s.triangulos.push_back(t);
    }
    s.cuadrilateros = {0, 3};
    s.cambiosMaterial = {0, 0, 10, 1};

    cad::SerializadorBinarioEscritura w;
    s.escribe(w);
    cad::SerializadorBinarioEscritura llamadas;
    s.Entidad::escribe(llamadas);
    llamadas.escribeVectorPuntos(s.puntos);
    llamadas.escribeLongitud32(static_cast<uint32_t>(s.esquinas.size()));
    for (const cad::esquina_t& e : s.esquinas)
    {
        llamadas.escribeEnteroSinSigno(static_cast<uint32_t>(e.indice));
        llamadas.escribeVector2(e.uv);
        llamadas.escribeVector3Simple(e.normal);
        llamadas.escribeCortoSinSigno(e.material);
    }
    llamadas.escribeVectorEnteros(s.triangulos);
    llamadas.escribeVectorEnteros(s.cuadrilateros);
    llamadas.escribeVectorEnteros(s.cambiosMaterial);
    const std::vector<uint8_t> bytes = w.bytes();
    ASSERT_EQ(bytes, llamadas.bytes());

    cad::SerializadorBinarioLectura r(bytes.data(), bytes.size());
    Policara leida;
    ASSERT_TRUE(leida.lee(r));
    EXPECT_EQ(r.bytesDisponibles(), 0U);
    EXPECT_EQ(leida.puntos, s.puntos);
    ASSERT_EQ(leida.esquinas.size(), s.esquinas.size());
    const cad::esquina_t& ultima = leida.esquinas.back();
    EXPECT_EQ(ultima.indice, s.esquinas.back().indice);
    EXPECT_EQ(ultima.uv, s.esquinas.back().uv);
    EXPECT_EQ(ultima.normal, s.esquinas.back().normal);
    EXPECT_EQ(ultima.material, s.esquinas.back().material);
    EXPECT_EQ(leida.triangulos, s.triangulos);
    EXPECT_EQ(leida.cambiosMaterial, s.cambiosMaterial);
}

// Snap answers whether the mask has bit 1 and offers nothing: the request keeps no winner.
// The representation comes from the drawing being painted: textured, each material is
// selected and the UV pairs go with the polygons. Read back from its block and put in a
// drawing it leaves the drawing's extent as the other entities make it.
TEST(Superficie, ReferenciaRepresentacionYExtension)
{
    const std::unique_ptr<cad::Entidad> s = cad::prueba::tipoEntidad("Superficie").crea();
    cad::prueba::Rayo rayo(0, 0, cad::kExtremos | cad::kPuntosMedios);
    EXPECT_TRUE(s->getReferenciaEntidades(rayo.r));
    EXPECT_EQ(rayo.r.entidadMejor, nullptr);
    EXPECT_EQ(rayo.r.distanciaMejor, -1.0);

    cad::Dibujo d;
    d.nuevoDocumento();
    d.setVariable(cad::kVarRepresentacionModelos, static_cast<int>(cad::PantallaCAD::kTexturas));
    PantallaGrabadora p;
    {
        const cad::AmbitoPintura ambito(&d);
        s->dibuja(p);
    }
    EXPECT_EQ(p.llamadasDe("setMaterial"),
              (std::vector<std::string>{"setMaterial 4", "setMaterial 0"}));
    EXPECT_EQ(p.llamadasDe("coordenadasUV"),
              (std::vector<std::string>{"coordenadasUV 7", "coordenadasUV 7"}));
    ASSERT_EQ(p.escena.size(), 2U);
    EXPECT_EQ(p.escena[0].modo, cad::PantallaCAD::kTexturas);

    auto leida = std::make_unique<Superficie>();
    ASSERT_TRUE(carga(cad::prueba::tipoEntidad("Superficie").fichero, *leida));
    ASSERT_EQ(leida->numCoordenadas(), 7);
    d.nuevaEntidad(new cad::Punto(5, -3, 2));
    d.nuevaEntidad(leida.release());
    EXPECT_EQ(d.extension.minimo, P(5, -3, 2));
    EXPECT_EQ(d.extension.maximo, P(5, -3, 2));
}

}  // namespace
