// The clipboard between two drawings of one process: materials carried by value (added where
// missing, reused where equal), layers, repeated pastes, cut and undo. The clipboard is the
// process's, so the empty case runs first, before anything here has copied.
#include <algorithm>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "documento/Material.h"
#include "editor/EditorDibujo.h"
#include "entidades/Esfera.h"
#include "entidades/Linea.h"
#include "entidades/Prisma.h"

namespace
{

using cad::Entidad;
using cad::Punto3;

struct Editor
{
    cad::Dibujo d;
    std::unique_ptr<cad::EditorDibujo> ed;
    Editor()
    {
        d.nuevoDocumento();
        ed = std::make_unique<cad::EditorDibujo>(&d, nullptr);
    }
    Entidad* ultima() const { return d.entidades.empty() ? nullptr : d.entidades.back(); }
    const cad::Material* material(const Entidad* e) const
    {
        return d.materialId(static_cast<int16_t>(e->material()));
    }
};

// Invariants under test: pasting an empty clipboard adds nothing and pushes no undo step.
// Copying a prism and a sphere and pasting into a second drawing adds the prism's material,
// which the second drawing lacks, and gives the sphere the equal material it already has;
// a layer the second drawing lacks becomes its current one, a layer it has is kept. The
// source drawing may be gone before the next paste, which makes two more independent copies
// and adds no material again.
TEST(Portapapeles, entreDosDibujosConSusMateriales)
{
    auto origen = std::make_unique<Editor>();
    Editor destino;
    destino.ed->pegar();
    EXPECT_TRUE(destino.d.entidades.empty());
    EXPECT_FALSE(destino.ed->puedeDeshacer());

    const int16_t piedra = origen->d.nuevoMaterial(11, 0xFF808080U, 0.5F, "texturas/piedra.png");
    const int16_t verde = origen->d.nuevoMaterial(12, 0xFF00FF00U, 1.0F, "");
    const int16_t verdeDestino = destino.d.nuevoMaterial(99, 0xFF00FF00U, 1.0F, "");
    origen->d.nuevaCapa(new cad::Capa("Ejes", cad::ColorCapa(1), 1));
    destino.d.nuevaCapa(new cad::Capa("Obra", cad::ColorCapa(3), 1));
    ASSERT_TRUE(destino.d.capaActual("Obra"));

    auto* prisma = new cad::Prisma({0, 0, 0}, {1, 1, 1}, static_cast<uint16_t>(piedra));
    prisma->asignaCapa(origen->d.buscaCapa("Ejes"));
    auto* esfera = new cad::Esfera({5, 5, 5}, 2.0, static_cast<uint16_t>(verde));
    auto* otra = new cad::Linea({0, 0, 0}, {1, 0, 0});
    for (Entidad* e : {static_cast<Entidad*>(prisma), static_cast<Entidad*>(esfera),
                       static_cast<Entidad*>(otra)})
    {
        ASSERT_TRUE(origen->ed->nuevaEntidad(e));
    }
    prisma->setSeleccionada(true);
    esfera->setResaltada(true);
    origen->ed->copiar();

    const int materiales = destino.d.numeroMateriales();
    destino.ed->pegar();
    ASSERT_EQ(destino.d.entidades.size(), 2U);
    Entidad* prismaPegado = destino.d.entidades[0];
    Entidad* esferaPegada = destino.d.entidades[1];
    EXPECT_EQ(destino.d.numeroMateriales(), materiales + 1);
    const cad::Material* traido = destino.material(prismaPegado);
    ASSERT_NE(traido, nullptr);
    EXPECT_EQ(traido->textura(), "texturas/piedra.png");
    EXPECT_EQ(traido->idExterno, 11);
    EXPECT_EQ(esferaPegada->material(), static_cast<uint16_t>(verdeDestino));
    EXPECT_EQ(destino.material(esferaPegada)->idExterno, 99);
    EXPECT_EQ(prismaPegado->capaEntidad()->nombre, "Obra");
    EXPECT_EQ(esferaPegada->capaEntidad()->nombre, "0");
    EXPECT_EQ(prismaPegado->estado, 0U);
    EXPECT_NE(prismaPegado, prisma);

    origen.reset();
    destino.ed->pegar();
    ASSERT_EQ(destino.d.entidades.size(), 4U);
    EXPECT_EQ(destino.d.numeroMateriales(), materiales + 1);
    EXPECT_EQ(destino.d.entidades[2]->material(), prismaPegado->material());
    EXPECT_NE(destino.d.entidades[2], prismaPegado);
    const auto handle = [](const Entidad* e)
    { return static_cast<int64_t>(reinterpret_cast<intptr_t>(e)); };
    EXPECT_TRUE(destino.ed->setPropiedad(handle(destino.d.entidades[2]), "Grosor", 3.0));
    EXPECT_FALSE(destino.d.entidades[2]->estiloLinea.porCapa);
    EXPECT_TRUE(prismaPegado->estiloLinea.porCapa);

    destino.ed->deshacer();
    destino.ed->deshacer();
    EXPECT_EQ(destino.d.entidades.size(), 2U);
}

// Invariants under test: cutting takes the selected entity out as an undo step and undo puts
// the very same entity back; the clipboard still pastes it afterwards, into the same drawing,
// as a new entity. Copying with nothing selected keeps what the clipboard held.
TEST(Portapapeles, cortarYDeshacerDevuelveLaEntidad)
{
    Editor e;
    auto* linea = new cad::Linea({0, 0, 0}, {4, 0, 0});
    auto* queda = new cad::Linea({0, 1, 0}, {4, 1, 0});
    ASSERT_TRUE(e.ed->nuevaEntidad(linea));
    ASSERT_TRUE(e.ed->nuevaEntidad(queda));
    e.d.selecciona(linea);
    e.ed->cortar();
    ASSERT_EQ(e.d.entidades.size(), 1U);
    EXPECT_EQ(e.d.entidades[0], queda);

    e.ed->deshacer();
    ASSERT_EQ(e.d.entidades.size(), 2U);
    EXPECT_NE(std::find(e.d.entidades.begin(), e.d.entidades.end(), linea), e.d.entidades.end());

    e.d.deselecciona();
    e.ed->copiar();
    e.ed->pegar();
    ASSERT_EQ(e.d.entidades.size(), 3U);
    Entidad* pegada = e.ultima();
    EXPECT_NE(pegada, linea);
    EXPECT_EQ(*pegada->coordenada(1), Punto3<double>(4, 0, 0));
}

}  // namespace
