// The commands that change entities already in the drawing, played as a user's sessions: the
// prompts in order, where the entities end up, which commands leave undo steps (delete, the
// numeric move, the copy) and which do not (the interactive move, materials). Vertex drags are
// with the vertex editors.
#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "entidades/Cilindro.h"
#include "entidades/Linea.h"
#include "entidades/SistemaLocal.h"
#include "soporte/GuionSesion.h"

namespace cad
{
namespace
{

using prueba::GuionSesion;
using prueba::SesionEditor;
using P = Punto3<double>;
using Textos = std::vector<std::string>;

const char* const kEntidad = "Seleccione una entidad:";
const char* const kBase = "Seleccione punto base del desplazamiento:";
const char* const kDestino = "Seleccione punto destino del desplazamiento:";

Linea* linea(SesionEditor& s, const P& a, const P& b)
{
    auto* l = new Linea(a, b);
    s.editor->nuevaEntidad(l);
    return l;
}

bool resaltada(const Entidad* e)
{
    return (e->estado & kEstadoResaltada) != 0;
}

// With a selection: no prompt, the active local system is dropped before its entity goes, one
// undo step per entity and the undo brings back the same objects. With none: the prompt, the
// clicked entity goes, and undo brings it back without the pick's highlight. Only the active
// system's own entity switches it off.
TEST(ComandoBorrar, seleccionOPrompt_sistemaLocalActivoYDeshacerExacto)
{
    SesionEditor s;
    Linea* l = linea(s, {100, 100, 0}, {200, 100, 0});
    auto* sl = new SistemaLocal();
    sl->nombre = "obra";
    s.editor->nuevaEntidad(sl);
    Linea* otra = linea(s, {100, 300, 0}, {200, 300, 0});
    s.editor->activaSistemaLocal(*sl);
    s.dibujo.selecciona(l);
    s.dibujo.selecciona(sl);
    const size_t pasos = s.editor->comandosDeshacer.size();

    EXPECT_EQ(s.editor->comandoBorrar(), 2);
    EXPECT_TRUE(s.prompts().empty());
    EXPECT_FALSE(s.editor->haySistemaLocal);
    ASSERT_EQ(s.dibujo.entidades.size(), 1U);
    EXPECT_EQ(s.editor->comandosDeshacer.size(), pasos + 2);
    s.editor->deshacer();
    s.editor->deshacer();
    EXPECT_TRUE(s.dibujo.contieneEntidad(l));
    EXPECT_TRUE(s.dibujo.contieneEntidad(sl));

    s.dibujo.deselecciona();
    s.editor->activaSistemaLocal(*sl);
    s.textos.clear();
    s.pinta();
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({150, 300, 0}).intro();
        EXPECT_EQ(s.editor->comandoBorrar(), 1);
    }
    EXPECT_EQ(s.prompts(), Textos({"Seleccione entidades:"}));
    EXPECT_FALSE(s.dibujo.contieneEntidad(otra));
    s.editor->deshacer();
    ASSERT_TRUE(s.dibujo.contieneEntidad(otra));
    EXPECT_FALSE(resaltada(otra));

    // An unnamed system must not match the active one's name.
    auto* sinNombre = new SistemaLocal();
    s.editor->nuevaEntidad(sinNombre);
    s.dibujo.selecciona(sinNombre);
    EXPECT_EQ(s.editor->comandoBorrar(), 1);
    EXPECT_TRUE(s.editor->haySistemaLocal);

    // A picked entity whose insertion the host undoes inside the wait is not deleted: no step
    // may name it, and redo brings it back unmarked.
    s.dibujo.deselecciona();
    Linea* tarde = linea(s, {100, 500, 0}, {200, 500, 0});
    s.pinta();
    const size_t antes = s.editor->comandosDeshacer.size();
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({150, 500, 0}).ejecuta([&] { s.editor->deshacer(); }).intro();
        EXPECT_EQ(s.editor->comandoBorrar(), 0);
    }
    EXPECT_EQ(s.editor->comandosDeshacer.size(), antes - 1);
    s.editor->rehacer();
    ASSERT_TRUE(s.dibujo.contieneEntidad(tarde));
    EXPECT_FALSE(resaltada(tarde));
}

// comandoMover: prompts in order, repeats until refused, moves by destination minus base with
// no undo step; comandoMoverXYZ: empty selection says so, otherwise one step per entity.
TEST(ComandoMover, interactivoSinDeshacerYNumericoConUnPasoPorEntidad)
{
    SesionEditor s;
    Linea* l = linea(s, {100, 100, 0}, {200, 100, 0});
    const size_t pasos = s.editor->comandosDeshacer.size();
    s.pinta();
    s.dibujo.borraMarcaCambios();
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({150, 100, 0}).escribe("1,1").escribe("11,6,2");
        g.clic(10, 10, PantallaCAD::kBotonDerecho);
        EXPECT_EQ(s.editor->comandoMover(), 1);
    }
    EXPECT_EQ(s.prompts(), Textos({kEntidad, kBase, kDestino, kEntidad}));
    EXPECT_EQ(l->origen, P(110, 105, 2));
    EXPECT_EQ(l->extremo, P(210, 105, 2));
    EXPECT_FALSE(resaltada(l));
    EXPECT_TRUE(s.dibujo.hayCambios());
    EXPECT_EQ(s.editor->comandosDeshacer.size(), pasos);
    EXPECT_EQ(s.editor->lineaElastica, nullptr);

    s.textos.clear();
    EXPECT_EQ(s.editor->comandoMoverXYZ(1, 2, 3), 0);
    EXPECT_EQ(s.prompts(), Textos({"No hay entidades seleccionadas"}));

    Linea* m = linea(s, {0, 0, 0}, {1, 0, 0});
    s.dibujo.selecciona(l);
    s.dibujo.selecciona(m);
    const size_t antes = s.editor->comandosDeshacer.size();
    EXPECT_EQ(s.editor->comandoMoverXYZ(1, 2, 3), 2);
    EXPECT_EQ(s.editor->comandosDeshacer.size(), antes + 2);
    EXPECT_EQ(l->origen, P(111, 107, 5));
    EXPECT_EQ(m->origen, P(1, 2, 3));
    s.editor->deshacer();
    EXPECT_EQ(m->origen, P(0, 0, 0));
    EXPECT_EQ(l->origen, P(111, 107, 5));
}

// comandoCopiar runs once: the source stays, the moved copy is a new unhighlighted entity with
// one undo step, and a refused destination copies nothing.
TEST(ComandoCopiar, unaCopiaDesplazadaDeshacibleYElOrigenIntacto)
{
    SesionEditor s;
    Linea* l = linea(s, {100, 100, 0}, {200, 100, 0});
    s.pinta();
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({150, 100, 0}).escribe("0,0").escribe("0,50");
        EXPECT_EQ(s.editor->comandoCopiar(), 1);
    }
    EXPECT_EQ(s.prompts(), Textos({kEntidad, kBase, kDestino}));
    ASSERT_EQ(s.dibujo.entidades.size(), 2U);
    auto* copia = dynamic_cast<Linea*>(s.dibujo.entidades.at(1));
    ASSERT_NE(copia, nullptr);
    EXPECT_EQ(copia->origen, P(100, 150, 0));
    EXPECT_EQ(copia->extremo, P(200, 150, 0));
    EXPECT_EQ(l->origen, P(100, 100, 0));
    EXPECT_FALSE(resaltada(copia));
    EXPECT_FALSE(resaltada(l));
    s.editor->deshacer();
    EXPECT_EQ(s.dibujo.entidades.size(), 1U);

    GuionSesion g(*s.editor, s.pantalla);
    g.clicEn({150, 100, 0}).escribe("0,0").cancela();
    EXPECT_EQ(s.editor->comandoCopiar(), 0);
    EXPECT_EQ(s.dibujo.entidades.size(), 1U);
}

// Materials are found by the texture's file name, else by the id in decimal; an unknown name
// changes nothing; null gives the current material. No undo step in any case.
TEST(ComandoAsignaMaterial, porNombreDeTexturaPorIdYElActual)
{
    SesionEditor s;
    const int16_t roca = s.dibujo.nuevoMaterial(1, 0xFF0000FF, 1.0F, "c:\\texturas/roca.jpg");
    const int16_t liso = s.dibujo.nuevoMaterial(2, 0xFF00FF00, 1.0F, "");
    auto* c = new Cilindro({0, 0, 0}, 1.0, 2.0);
    s.editor->nuevaEntidad(c);
    s.dibujo.selecciona(c);
    const size_t pasos = s.editor->comandosDeshacer.size();

    const std::string nombre[3] = {"roca.jpg", std::to_string(liso), "c:\\texturas/roca.jpg"};
    EXPECT_EQ(s.editor->comandoAsignaMaterial(&nombre[0]), 1);  // by the texture's file name
    EXPECT_EQ(c->material(), static_cast<uint16_t>(roca));
    EXPECT_EQ(s.editor->comandoAsignaMaterial(&nombre[1]), 1);
    EXPECT_EQ(c->material(), static_cast<uint16_t>(liso));
    EXPECT_EQ(s.editor->comandoAsignaMaterial(&nombre[2]), 0);  // a whole path names nothing
    EXPECT_EQ(c->material(), static_cast<uint16_t>(liso));
    s.editor->setMaterialActual(roca);
    EXPECT_EQ(s.editor->comandoAsignaMaterial(nullptr), 1);
    EXPECT_EQ(c->material(), static_cast<uint16_t>(roca));
    EXPECT_EQ(s.editor->comandosDeshacer.size(), pasos);
    EXPECT_TRUE(s.prompts().empty());
}

}  // namespace
}  // namespace cad
