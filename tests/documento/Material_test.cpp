// Materials and their list: shine clamp, equality, copy rule, exact bytes, damaged files.
#include "documento/Material.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/ListaMateriales.h"
#include "soporte/FicheroTemporal.h"

namespace
{

using Bytes = std::vector<uint8_t>;
using cad::Material;
using cad::Vector3D;

Bytes escribe(cad::ObjetoCAD& objeto)
{
    const std::string ruta = cad::prueba::rutaTemporal("material.bin");
    {
        cad::SerializadorBinarioEscritura w(ruta);
        objeto.escribe(w);
    }
    return cad::prueba::leeFichero(ruta);
}

bool lee(const Bytes& bytes, cad::ObjetoCAD& objeto)
{
    const std::string ruta = cad::prueba::rutaTemporal("material.bin");
    cad::prueba::escribeFichero(ruta, bytes);
    cad::SerializadorBinarioLectura r(ruta);
    return objeto.lee(r);
}

// Persistent id 0x1122334455667788, kernel id 5, idExterno -2, "a.png", colour
// 0xFF00FF00, shine 0.5.
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

const Bytes kMaterial = {
    'M',  't',  '1',  0x00, 0x20, 0x00,              // tag, length 32
    0x88, 0x77, 0x66, 0x55, 0x44, 0x33, 0x22, 0x11,  // persistent id
    0x05, 0x00,                                      // kernel id
    0xFE, 0xFF, 0xFF, 0xFF,                          // idExterno, written unsigned
    0x06, 0x00, 'a',  '.',  'p',  'n',  'g',  0x00,  // texture, padded
    0x00, 0xFF, 0x00, 0xFF,                          // colour
    0x00, 0x00, 0x00, 0x3F,                          // shine 0.5f
};

// setBrillo clamps at both ends and keeps what lies between. Equality looks at texture,
// colour and shine only: the two ids and the components may differ, each compared field
// alone breaks it.
TEST(Material, BrilloEIgualdad)
{
    Material m(1);
    m.setBrillo(64.0F);
    EXPECT_EQ(m.brillo(), 1.0F);
    m.setBrillo(-1.0F);
    EXPECT_EQ(m.brillo(), 0.0F);
    m.setBrillo(0.99999994F);
    EXPECT_EQ(m.brillo(), 0.99999994F);

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
// shine. Through the list both ids come back apart, and a second save repeats the bytes.
TEST(ListaMateriales, BytesExactosYVuelta)
{
    cad::ListaMateriales lista;
    lista.push_back(materialDePrueba());
    EXPECT_EQ(escribe(*lista[0]), kMaterial);
    lista.push_back(new Material(1));
    cad::ListaMateriales leida;
    ASSERT_TRUE(lee(escribe(lista), leida));
    ASSERT_EQ(leida.size(), 2U);
    EXPECT_EQ(leida[0]->ObjetoCAD::id, 0x1122334455667788ULL);
    EXPECT_EQ(leida[0]->id, 5);
    EXPECT_EQ(escribe(leida), escribe(lista));
}

// Every cut of a valid file gives false without a crash, keeping only whole materials. An
// item of another tag is dropped and what stands behind its header is the list's tail.
TEST(ListaMateriales, FicheroCortadoYEtiquetaAjena)
{
    cad::ListaMateriales lista;
    lista.push_back(materialDePrueba());
    lista.push_back(materialDePrueba());
    const Bytes entero = escribe(lista);
    for (size_t corte = 0; corte < entero.size(); ++corte)
    {
        cad::ListaMateriales leida;
        EXPECT_FALSE(lee(Bytes(entero.begin(), entero.begin() + corte), leida)) << corte;
        EXPECT_EQ(leida.size(), corte >= 24 + kMaterial.size() ? 1U : 0U) << corte;
    }
    Bytes ajena = entero;
    ajena[24] = 'X';
    cad::ListaMateriales leida;
    EXPECT_TRUE(lee(ajena, leida));
    EXPECT_TRUE(leida.empty());
    EXPECT_EQ(leida.tamanoDatosDesconocidos, 2 * kMaterial.size() - 6);
}

}  // namespace
