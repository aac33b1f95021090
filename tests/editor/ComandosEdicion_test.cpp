// The commands that change entities already in the drawing, played as a user's sessions: the
// prompts in order, where the entities end up, which commands leave undo steps (delete, the
// numeric move, the copy) and which do not (the interactive move, vertex drags, materials).
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "entidades/Cilindro.h"
#include "entidades/Linea.h"
#include "entidades/Polilinea.h"
#include "entidades/SistemaLocal.h"
#include "soporte/GuionSesion.h"

namespace
{

using cad::Cilindro;
using cad::EditorDibujo;
using cad::Entidad;
using cad::kEstadoResaltada;
using cad::Linea;
using cad::PantallaCAD;
using cad::Polilinea;
using cad::Punto3;
using cad::SistemaLocal;
using cad::prueba::GuionSesion;
using cad::prueba::SesionEditor;
using P = Punto3<double>;
using Textos = std::vector<std::string>;

const char* const kEntidad = "Seleccione una entidad:";
const char* const kBase = "Seleccione punto base del desplazamiento:";
const char* const kDestino = "Seleccione punto destino del desplazamiento:";
const char* const kElemento = "Seleccione entidad/punto caliente, arista o cara:";
const char* const kNueva = "Seleccione nueva coordenada";

// The prompts alone, without the cleared prompt line each wait leaves behind.
Textos prompts(const SesionEditor& s)
{
    Textos t;
    for (const auto& x : s.textos)
    {
        if (!x.empty())
        {
            t.push_back(x);
        }
    }
    return t;
}

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
    EXPECT_TRUE(prompts(s).empty());
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
    EXPECT_EQ(prompts(s), Textos({"Seleccione entidades:"}));
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
    EXPECT_EQ(prompts(s), Textos({kEntidad, kBase, kDestino, kEntidad}));
    EXPECT_EQ(l->origen, P(110, 105, 2));
    EXPECT_EQ(l->extremo, P(210, 105, 2));
    EXPECT_FALSE(resaltada(l));
    EXPECT_TRUE(s.dibujo.hayCambios());
    EXPECT_EQ(s.editor->comandosDeshacer.size(), pasos);
    EXPECT_EQ(s.editor->lineaElastica, nullptr);

    s.textos.clear();
    EXPECT_EQ(s.editor->comandoMoverXYZ(1, 2, 3), 0);
    EXPECT_EQ(prompts(s), Textos({"No hay entidades seleccionadas"}));

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
    EXPECT_EQ(prompts(s), Textos({kEntidad, kBase, kDestino}));
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

    const std::string porTextura = "roca.jpg";
    EXPECT_EQ(s.editor->comandoAsignaMaterial(&porTextura), 1);
    EXPECT_EQ(c->material(), static_cast<uint16_t>(roca));
    const std::string porId = std::to_string(liso);
    EXPECT_EQ(s.editor->comandoAsignaMaterial(&porId), 1);
    EXPECT_EQ(c->material(), static_cast<uint16_t>(liso));
    const std::string ninguno = "c:\\texturas/roca.jpg";
    EXPECT_EQ(s.editor->comandoAsignaMaterial(&ninguno), 0);
    EXPECT_EQ(c->material(), static_cast<uint16_t>(liso));
    s.editor->setMaterialActual(roca);
    EXPECT_EQ(s.editor->comandoAsignaMaterial(nullptr), 1);
    EXPECT_EQ(c->material(), static_cast<uint16_t>(roca));
    EXPECT_EQ(s.editor->comandosDeshacer.size(), pasos);
    EXPECT_TRUE(prompts(s).empty());
}

// The edit reactor's calls as letters: I start, D final move, X cancel, F end.
struct Reactor
{
    explicit Reactor(EditorDibujo& e)
    {
        e.setReactorEdicionEntidades(
            [this](int64_t, EditorDibujo::enumEdicionEntidades t, int i, double, double, double)
            {
                tipos += "BTDNXIF"[t];
                indices.push_back(i);
                return !(t == EditorDibujo::kBorrar && i == vetado);
            });
    }
    std::string tipos;
    std::vector<int> indices;
    int vetado = -2;
};

// comandoEditar with an index drags that vertex at once; a cancelled drag with `repite` false
// ends false with the vertex back bit for bit. With no entity: pick, vertex pick, drag, and
// the next vertex pick; its refusal ends true. No undo step, the host is told the bracket.
TEST(ComandoEditar, arrastreDirectoPorIndiceYBucleDePuntosCalientes)
{
    SesionEditor s;
    Linea* l = linea(s, {100, 100, 0}, {200, 100, 0});
    const size_t pasos = s.editor->comandosDeshacer.size();
    Reactor r(*s.editor);
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.escribe("250,150");
        EXPECT_TRUE(s.editor->comandoEditar(l, 1, false, true));
    }
    EXPECT_EQ(prompts(s), Textos({kNueva}));
    EXPECT_EQ(l->extremo, P(250, 150, 0));
    EXPECT_EQ(r.tipos, "IDF");
    EXPECT_EQ(r.indices, std::vector<int>({-1, 1, -1}));
    EXPECT_FALSE(resaltada(l));

    r.tipos.clear();
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.cancela();
        EXPECT_FALSE(s.editor->comandoEditar(l, 0, false, false));
    }
    EXPECT_EQ(l->origen, P(100, 100, 0));
    EXPECT_EQ(r.tipos, "X");

    s.textos.clear();
    r.tipos.clear();
    s.pinta();
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({175, 125, 0}).clicEn({100, 100, 0}).escribe("120,80").intro();
        EXPECT_TRUE(s.editor->comandoEditar(nullptr, -1, false, false));
    }
    EXPECT_EQ(prompts(s), Textos({kEntidad, kElemento, kNueva, kElemento}));
    EXPECT_EQ(l->origen, P(120, 80, 0));
    EXPECT_EQ(l->extremo, P(250, 150, 0));
    EXPECT_EQ(r.tipos, "IDF");
    EXPECT_EQ(s.editor->comandosDeshacer.size(), pasos);
}

// Vertex deletion picks the polyline first, then one vertex per click until refused; a veto
// keeps that vertex, the next click still works, and nothing goes to the undo stack.
TEST(ComandoBorrarVertsPol, unVerticePorClicConVetoYSinDeshacer)
{
    SesionEditor s;
    const P v[4] = {{100, 100, 0}, {200, 100, 0}, {200, 200, 0}, {100, 200, 0}};
    auto* pl = new Polilinea(4, v);
    s.editor->nuevaEntidad(pl);
    const size_t pasos = s.editor->comandosDeshacer.size();
    Reactor r(*s.editor);
    r.vetado = 2;
    s.pinta();
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({150, 100, 0}).clicEn(v[2]).clicEn(v[1]).intro();
        EXPECT_TRUE(s.editor->comandoBorrarVertsPol(nullptr));
    }
    const std::string kVertice = "Seleccione el vértice a eliminar:";
    EXPECT_EQ(prompts(s), Textos({"Seleccione una polilinea:", kVertice, kVertice, kVertice}));
    EXPECT_EQ(pl->vertices, std::vector<P>({v[0], v[2], v[3]}));
    EXPECT_EQ(r.tipos, "IBBF");
    EXPECT_EQ(r.indices, std::vector<int>({-1, 2, 1, -1}));
    EXPECT_FALSE(resaltada(pl));
    EXPECT_EQ(s.editor->comandosDeshacer.size(), pasos);
}

}  // namespace
