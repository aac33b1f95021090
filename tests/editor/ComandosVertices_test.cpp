// The vertex editors played as a user's sessions: the prompts in order, the vertices left, and
// the edit reactor's calls, whose vetoes keep single vertices. None leaves an undo step.
#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "entidades/Linea.h"
#include "entidades/Polilinea.h"
#include "soporte/GuionSesion.h"

namespace cad
{
namespace
{

using prueba::GuionSesion;
using prueba::SesionEditor;
using P = Punto3<double>;
using Textos = std::vector<std::string>;

const char* const kPolilinea = "Seleccione una polilinea:";
const char* const kNueva = "Seleccione nueva coordenada";
const char* const kElemento = "Seleccione entidad/punto caliente, arista o cara:";

Polilinea* polilinea(SesionEditor& s, const std::vector<P>& v)
{
    auto* p = new Polilinea(static_cast<int>(v.size()), v.data());
    s.editor->nuevaEntidad(p);
    s.pinta();
    return p;
}

// The edit reactor's calls as letters (B delete, D final move, N insert, X cancel, I/F edit,
// [/] block), with the index and point of each; a kBorrar of `vetado` is refused.
struct Reactor
{
    explicit Reactor(EditorDibujo& e)
    {
        e.setReactorEdicionEntidades(
            [this](int64_t, EditorDibujo::enumEdicionEntidades t, int i, double x, double y,
                   double z)
            {
                tipos += "BTDNXIF[]"[t];
                indices.push_back(i);
                puntos.emplace_back(x, y, z);
                return !(t == EditorDibujo::kBorrar && i == vetado);
            });
    }
    void limpia()
    {
        tipos.clear();
        indices.clear();
        puntos.clear();
    }
    std::string tipos;
    std::vector<int> indices;
    std::vector<P> puntos;
    int vetado = -2;
};

// comandoEditar with an index drags that vertex at once; a cancelled drag with `repite` false
// ends false with the vertex back bit for bit. With no entity: pick, vertex pick, drag, and
// the next vertex pick; its refusal ends true. The host is told the bracket.
TEST(ComandoEditar, arrastreDirectoPorIndiceYBucleDePuntosCalientes)
{
    SesionEditor s;
    auto* l = new Linea(P(100, 100, 0), P(200, 100, 0));
    s.editor->nuevaEntidad(l);
    const size_t pasos = s.editor->comandosDeshacer.size();
    Reactor r(*s.editor);
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.escribe("250,150");
        EXPECT_TRUE(s.editor->comandoEditar(l, 1, false, true));
    }
    EXPECT_EQ(s.prompts(), Textos({kNueva}));
    EXPECT_EQ(l->extremo, P(250, 150, 0));
    EXPECT_EQ(r.tipos, "IDF");
    EXPECT_EQ(r.indices, std::vector<int>({-1, 1, -1}));
    EXPECT_EQ(l->estado & kEstadoResaltada, 0U);

    r.limpia();
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.cancela();
        EXPECT_FALSE(s.editor->comandoEditar(l, 0, false, false));
    }
    EXPECT_EQ(l->origen, P(100, 100, 0));
    EXPECT_EQ(r.tipos, "X");

    s.textos.clear();
    r.limpia();
    s.pinta();
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({175, 125, 0}).clicEn({100, 100, 0}).escribe("120,80").intro();
        EXPECT_TRUE(s.editor->comandoEditar(nullptr, -1, false, false));
    }
    EXPECT_EQ(s.prompts(), Textos({"Seleccione una entidad:", kElemento, kNueva, kElemento}));
    EXPECT_EQ(l->origen, P(120, 80, 0));
    EXPECT_EQ(l->extremo, P(250, 150, 0));
    EXPECT_EQ(r.tipos, "IDF");
    EXPECT_EQ(s.editor->comandosDeshacer.size(), pasos);
}

// Vertex deletion picks the polyline first, then one vertex per click until refused; a veto
// keeps that vertex and the next click still works. By window, only the vertices whose pixels
// fall inside it go, within one block.
TEST(ComandoBorrarVertsPol, unVerticePorClicConVetoYPorVentana)
{
    SesionEditor s;
    const std::vector<P> v = {{100, 100, 0}, {200, 100, 0}, {200, 200, 0}, {100, 200, 0}};
    Polilinea* pl = polilinea(s, v);
    const size_t pasos = s.editor->comandosDeshacer.size();
    Reactor r(*s.editor);
    r.vetado = 2;
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({150, 100, 0}).clicEn(v[2]).clicEn(v[1]).intro();
        EXPECT_TRUE(s.editor->comandoBorrarVertsPol(nullptr));
    }
    const std::string kVertice = "Seleccione el vértice a eliminar:";
    EXPECT_EQ(s.prompts(), Textos({kPolilinea, kVertice, kVertice, kVertice}));
    EXPECT_EQ(pl->vertices, std::vector<P>({v[0], v[2], v[3]}));
    EXPECT_EQ(r.tipos, "IBBF");
    EXPECT_EQ(r.indices, std::vector<int>({-1, 2, 1, -1}));
    EXPECT_EQ(pl->estado & kEstadoResaltada, 0U);
    EXPECT_EQ(s.editor->comandosDeshacer.size(), pasos);

    pl->vertices = v;
    r.limpia();
    r.vetado = -2;
    s.textos.clear();
    s.pinta();
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clic(250, 50).clic(150, 250);
        EXPECT_TRUE(s.editor->comandoBorrarVentanaVertsPol(pl));
    }
    EXPECT_EQ(s.prompts(), Textos({"Seleccione coordenada inicial de la ventana:",
                                   "Seleccione coordenada final de la ventana:"}));
    EXPECT_EQ(pl->vertices, std::vector<P>({v[0], v[3]}));
    EXPECT_EQ(r.tipos, "I[BB]F");
    EXPECT_EQ(r.indices, std::vector<int>({-1, -1, 2, 1, -1, -1}));
}

// A range picked high end first is deleted inside one block from the highest index down, so
// each announced index is still right when the host applies it; a veto keeps its vertex.
TEST(ComandoBorrarRangoVertsPol, bloqueDeMayorAMenorConVeto)
{
    SesionEditor s;
    const std::vector<P> v = {
        {100, 100, 0}, {200, 100, 0}, {300, 100, 0}, {300, 200, 0}, {400, 200, 0}};
    Polilinea* pl = polilinea(s, v);
    Reactor r(*s.editor);
    r.vetado = 2;
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({150, 100, 0}).clicEn({600, 500, 0}).clicEn(v[3]).clicEn(v[1]);
        EXPECT_TRUE(s.editor->comandoBorrarRangoVertsPol(nullptr));
    }
    const std::string kInicial = "Seleccione el vértice inicial:";
    EXPECT_EQ(s.prompts(),
              Textos({kPolilinea, kInicial, kInicial, "Seleccione el vértice final:"}));
    EXPECT_EQ(pl->vertices, std::vector<P>({v[0], v[2], v[4]}));
    EXPECT_EQ(r.tipos, "I[BBB]F");
    EXPECT_EQ(r.indices, std::vector<int>({-1, -1, 3, 2, 1, -1, -1}));
    EXPECT_EQ(r.puntos[2], v[3]);
    EXPECT_TRUE(s.editor->modificadores.empty());
}

// A click inserts into the side under it and the new vertex is dragged once, with no vertex
// pick after it. A cancelled drag takes the vertex out again: the drag runs with `repite`
// false, whose false can only mean this drag was not accepted. A given index starts the
// vertex half a side before vertex 0 of an open polyline.
TEST(ComandoInsertaVertsPol, clicEnElLadoArrastreYCancelacionQueLoQuita)
{
    SesionEditor s;
    const std::vector<P> v = {{100, 100, 0}, {200, 100, 0}, {300, 100, 0}};
    Polilinea* pl = polilinea(s, v);
    Reactor r(*s.editor);
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({250, 110, 0}).escribe("250,90");
        EXPECT_TRUE(s.editor->comandoInsertaVertsPol(pl, -1));
    }
    EXPECT_EQ(s.prompts(), Textos({kNueva, kNueva}));
    EXPECT_EQ(pl->vertices, std::vector<P>({v[0], v[1], {250, 90, 0}, v[2]}));
    EXPECT_EQ(r.tipos, "INDF");
    EXPECT_EQ(r.indices, std::vector<int>({-1, 2, 2, -1}));
    EXPECT_EQ(r.puntos[1], P(250, 110, 0));

    pl->vertices = v;
    r.limpia();
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.cancela();
        EXPECT_FALSE(s.editor->comandoInsertaVertsPol(pl, 0));
    }
    EXPECT_EQ(pl->vertices, v);
    EXPECT_EQ(r.tipos, "INXBF");
    EXPECT_EQ(r.puntos[1], P(50, 100, 0));
    EXPECT_EQ(r.indices[3], 0);

    // Past the last vertex of an open polyline the click extends it.
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({350, 100, 0}).escribe("360,100");
        EXPECT_TRUE(s.editor->comandoInsertaVertsPol(pl, -1));
    }
    EXPECT_EQ(pl->vertices.back(), P(360, 100, 0));
    EXPECT_EQ(pl->numeroVertices(), 4);
}

// The profile search uses x and z only; the vertex goes between two existing ones and keeps
// the side's y.
TEST(ComandoInsertaVertsPolPerfil, ladoPorXYZyLaYDelLado)
{
    SesionEditor s;
    const std::vector<P> v = {{0, 5, 0}, {100, 5, 100}, {200, 15, 0}};
    Polilinea* pl = polilinea(s, v);
    Reactor r(*s.editor);
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.escribe("160,0,60").escribe("150,10,40");
        EXPECT_TRUE(s.editor->comandoInsertaVertsPolPerfil(pl));
    }
    EXPECT_EQ(s.prompts(), Textos({kNueva, kNueva}));
    EXPECT_EQ(pl->vertices, std::vector<P>({v[0], v[1], {150, 10, 40}, v[2]}));
    ASSERT_EQ(r.tipos, "INDF");
    EXPECT_EQ(r.puntos[1], P(160, 10, 60));
}

// The vertex under the pointer is marked while the wait runs; a click drags that one, and
// Enter ends with true.
TEST(ComandoEditarVertsPolPerfil, marcaBajoElPunteroYArrastreAlClic)
{
    SesionEditor s;
    const std::vector<P> v = {{100, 100, 0}, {200, 100, 0}, {300, 100, 0}};
    Polilinea* pl = polilinea(s, v);
    Reactor r(*s.editor);
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.mueve(205, 104).ejecuta(
            [&]
            {
                ASSERT_EQ(s.editor->modificadores.size(), 1U);
                EXPECT_EQ(s.editor->modificadores[0]->elemento.indice, 1);
            });
        g.clic(205, 104).escribe("200,150").intro();
        EXPECT_TRUE(s.editor->comandoEditarVertsPolPerfil(pl, -1));
    }
    EXPECT_EQ(s.prompts(), Textos({kElemento, kNueva, kElemento}));
    EXPECT_EQ(pl->vertices, std::vector<P>({v[0], {200, 150, 0}, v[2]}));
    EXPECT_EQ(r.tipos, "IDF");
    EXPECT_TRUE(s.editor->modificadores.empty());
}

// The menu follows the state: a 2-vertex polyline offers neither "Borrar" nor "Cerrar";
// "Siguiente" on a closed one wraps to 0; an insertion after is dragged and becomes current.
TEST(ComandoEditPol, opcionesSegunElEstadoYSusEfectos)
{
    SesionEditor s;
    const std::vector<P> v = {{10, 10, 0}, {200, 10, 0}};
    Polilinea* pl = polilinea(s, v);
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.escribe("s").intro();
        EXPECT_FALSE(s.editor->comandoEditPol(pl));
    }
    EXPECT_EQ(s.prompts(),
              Textos({"Seleccione vertice/Siguiente/Mover/Insertar(antes)/insertar(Despues):",
                      "Seleccione vertice/Previo/Mover/Insertar(antes)/insertar(Despues):"}));

    s.textos.clear();
    {
        GuionSesion g(*s.editor, s.pantalla);
        // At 1: insert after (dragged to 300,60, now current at 2), close, next wraps to 0,
        // which is deleted.
        g.escribe("s").escribe("d").escribe("300,60").escribe("c").escribe("s").escribe("b");
        g.intro();
        EXPECT_TRUE(s.editor->comandoEditPol(pl));
    }
    const Textos t = s.prompts();
    ASSERT_EQ(t.size(), 7U);
    EXPECT_EQ(t[2], kNueva);
    EXPECT_EQ(t[3],
              "Seleccione vertice/Cerrar/Previo/Mover/Borrar/Insertar(antes)/"
              "insertar(Despues):");
    EXPECT_EQ(t[4],
              "Seleccione vertice/Abrir/Previo/Siguiente/Mover/Borrar/Insertar(antes)/"
              "insertar(Despues):");
    EXPECT_EQ(t[6],
              "Seleccione vertice/Abrir/Previo/Siguiente/Mover/Insertar(antes)/"
              "insertar(Despues):");
    EXPECT_EQ(pl->vertices, std::vector<P>({v[1], {300, 60, 0}}));
    EXPECT_TRUE(pl->cerrada);
}

}  // namespace
}  // namespace cad
