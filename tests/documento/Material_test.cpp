// Materials and their list: shine clamp, equality, copy rule, exact bytes, and the checks
// every owned list passes.
#include "documento/Material.h"

#include <cstdint>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "documento/ListaMateriales.h"
#include "soporte/ListaPropiaPrueba.h"

namespace
{

using cad::Material;
using cad::Vector3D;
using cad::prueba::Bytes;
using cad::prueba::bytesDe;

// Persistent id 0x1122334455667788, kernel id 5, idExterno -2, "a.png", colour
// 0xFF00FF00, shine 0.5: every field apart from a new material's.
Material* materialDePrueba()
{
    auto* m = new Material(5);
    m->ObjetoCAD::id = 0x1122334455667788ULL;
    m->idExterno = -2;
    m->setTextura("a.png");
    m->setColor(0xFF00FF00);
    m->setBrillo(0.5F);
    return m;
}

struct CasoMateriales
{
    using Lista = cad::ListaMateriales;
    static constexpr const char* kSeccion = "Mater.1";
    static void llena(Lista& lista)
    {
        lista.push_back(materialDePrueba());
        lista.push_back(new Material(1));
    }
};

// setBrillo clamps at both ends and keeps what lies between. Equality looks at texture,
// colour and shine only: the two ids and the components may differ, each compared field
// alone breaks it.
TEST(Material, BrilloEIgualdad)
{
    Material m(1);
    for (const auto& [dado, guardado] :
         {std::pair{64.0F, 1.0F}, std::pair{-1.0F, 0.0F}, std::pair{0.99999994F, 0.99999994F}})
    {
        m.setBrillo(dado);
        EXPECT_EQ(m.brillo(), guardado) << dado;
    }
    std::unique_ptr<Material> a(materialDePrueba());
    Material b(9);
    b.idExterno = 1234;
    b.setTextura("a.png");
    b.setColor(0xFF00FF00);
    b.setBrillo(0.5F);
    b.setComponentes({1, 2, 3}, {4, 5, 6}, {7, 8, 9});
    EXPECT_TRUE(*a == b);
    b.setTextura("b.png");
    EXPECT_FALSE(*a == b);
    b.setTextura("a.png");
    b.setColor(0xFF00FF01);
    EXPECT_FALSE(*a == b);
    b.setColor(0xFF00FF00);
    b.setBrillo(0.75F);
    EXPECT_FALSE(*a == b);
}

// A copy (constructor, assignment or clona) takes every persisted field and both ids but
// not the components: the first two become zero and the third (0.8, 0.8, 0.8).
TEST(Material, CopiaReiniciaComponentes)
{
    std::unique_ptr<Material> origen(materialDePrueba());
    origen->setComponentes({1, 1, 1}, {2, 2, 2}, {3, 3, 3});
    Material asignado(0);
    asignado.setComponentes({5, 5, 5}, {5, 5, 5}, {5, 5, 5});
    asignado = *origen;
    std::unique_ptr<Material> clon(origen->clona());
    const Material construido(*origen);
    for (const Material* copia : std::vector<const Material*>{clon.get(), &asignado, &construido})
    {
        EXPECT_TRUE(*copia == *origen);
        EXPECT_EQ(copia->id, 5);
        EXPECT_EQ(copia->ObjetoCAD::id, 0x1122334455667788ULL);
        EXPECT_EQ(copia->idExterno, -2);
        EXPECT_EQ(copia->componentes[0], Vector3D<float>());
        EXPECT_EQ(copia->componentes[1], Vector3D<float>());
        EXPECT_EQ(copia->componentes[2], Vector3D<float>(0.8F, 0.8F, 0.8F));
    }
}

// The "Mt1" block: persistent id, kernel id as u16, idExterno as u32, texture, colour and
// shine. (The list's round trip, saving the same bytes again, shows both ids come back.)
TEST(Material, BytesExactos)
{
    const Bytes esperado = {
        'M',  't',  '1',  0x00, 0x20, 0x00,              // tag, length 32
        0x88, 0x77, 0x66, 0x55, 0x44, 0x33, 0x22, 0x11,  // persistent id
        0x05, 0x00,                                      // kernel id
        0xFE, 0xFF, 0xFF, 0xFF,                          // idExterno
        0x06, 0x00, 'a',  '.',  'p',  'n',  'g',  0x00,  // texture, padded
        0x00, 0xFF, 0x00, 0xFF,                          // colour
        0x00, 0x00, 0x00, 0x3F,                          // shine 0.5f
    };
    std::unique_ptr<Material> m(materialDePrueba());
    EXPECT_EQ(bytesDe(*m), esperado);
}

}  // namespace

namespace cad::prueba
{
INSTANTIATE_TYPED_TEST_SUITE_P(Materiales, ListaPropia, ::testing::Types<CasoMateriales>);
}  // namespace cad::prueba
