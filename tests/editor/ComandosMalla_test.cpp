// The mesh commands played as a user's sessions on an Objeto3D seen from above: the prompts in
// order, what the edit did to the mesh, and the quirks kept on purpose (pick positions passed
// as they stand, a hole walk that changes nothing, a prism that always grows outwards).
// Soundness after each kind of edit is left to the random edits.
#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "entidades/Linea.h"
#include "entidades/Objeto3D.h"
#include "entidades/Polilinea.h"
#include "soporte/ComprobadorMalla.h"
#include "soporte/GuionSesion.h"
#include "soporte/MallasPrueba.h"

namespace cad
{
namespace
{

using prueba::GuionSesion;
using prueba::imagenDe;
using prueba::SesionEditor;
using P = Punto3<double>;
using Textos = std::vector<std::string>;

const char* const kEntidad = "Seleccione una entidad:";
const char* const kCara = "Seleccione cara caliente:";
const char* const kArista = "Seleccione una arista:";
const char* const kPunto = "Seleccione punto caliente:";

// nx by 1 quads of 100 units from (100, 100), anticlockwise from above: vertex i at
// (100 + 100 i, 100), vertex nx + 1 + i above it. Only the edges along y can be picked on a
// flat mesh (the segment test never matches one flat in y or z).
Objeto3D* tira(SesionEditor& s, int nx)
{
    auto* m = new Modelo3D();
    for (int k = 0; k < 2 * (nx + 1); ++k)
    {
        m->nuevoVertice(P(100 + 100 * (k % (nx + 1)), 100 + 100 * (k / (nx + 1)), 0));
    }
    for (int i = 0; i < nx; ++i)
    {
        const int32_t q[4] = {i, i + 1, i + nx + 2, i + nx + 1};
        m->nuevaCara(4, q, false, 0);
    }
    auto* o = new Objeto3D(m);
    s.editor->nuevaEntidad(o);
    s.pinta();
    return o;
}

long vivas(const Modelo3D& m)
{
    return std::count_if(m.caras().begin(), m.caras().end(),
                         [](const auto& c) { return c.arista != -1; });
}

std::vector<int32_t> ciclo(const Modelo3D& m, int32_t cara)
{
    std::vector<int32_t> v;
    m.getVerticesCara(cara, v);
    return v;
}

// Another entity is passed over and the pick asked again, a click on nothing asks for the face
// again; the face dies, the drawing is marked changed and the entity ends unmarked, so that it
// can be picked again. The edit is one undo step: undo gives the records back, redo the edit.
TEST(ComandoBorraCaraModelo, otraEntidadYFalloRepitenYLaCaraMuere)
{
    SesionEditor s;
    s.editor->nuevaEntidad(new Linea(P(100, 400, 0), P(300, 400, 0)));
    Objeto3D* o = tira(s, 2);
    const size_t pasos = s.editor->comandosDeshacer.size();
    const auto antes = imagenDe(*o->modelo);
    s.dibujo.borraMarcaCambios();
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({200, 400, 0}).clicEn({100, 150, 0}).clic(600, 500).clicEn({150, 150, 0});
        EXPECT_TRUE(s.editor->comandoBorraCaraModelo());
    }
    EXPECT_EQ(s.prompts(), Textos({kEntidad, kEntidad, kCara, kCara}));
    EXPECT_TRUE(mallaSana(*o->modelo));
    EXPECT_EQ(o->modelo->caras()[0].arista, -1);
    EXPECT_NE(o->modelo->caras()[1].arista, -1);
    EXPECT_TRUE(s.dibujo.hayCambios());
    EXPECT_EQ(o->estado & (kEstadoSeleccionada | kEstadoResaltada), 0U);
    ASSERT_EQ(s.editor->comandosDeshacer.size(), pasos + 1);
    const auto despues = imagenDe(*o->modelo);
    s.editor->deshacer();
    EXPECT_EQ(imagenDe(*o->modelo), antes);
    s.editor->rehacer();
    EXPECT_EQ(imagenDe(*o->modelo), despues);
}

// A face pick's position counts live faces only and reaches the mesh as it stands: with face 0
// dead, clicking face 1 names record 0, which the mesh ignores. A live face becomes a ring of
// four quads with or without the inner face; the hole leaves its inner edges on one face each.
TEST(ComandoParteCara, posicionTalCualAnilloYHueco)
{
    SesionEditor s;
    Objeto3D* o = tira(s, 2);
    o->modelo->borraCara(0);
    const auto antes = imagenDe(*o->modelo);
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({300, 150, 0}).clicEn({250, 150, 0});
        EXPECT_TRUE(s.editor->comandoParteCara());
    }
    EXPECT_EQ(imagenDe(*o->modelo), antes);

    SesionEditor t;
    Objeto3D* q = tira(t, 2);
    {
        GuionSesion g(*t.editor, t.pantalla);
        g.clicEn({100, 150, 0}).clicEn({150, 150, 0});
        EXPECT_TRUE(t.editor->comandoParteCara());
    }
    EXPECT_EQ(vivas(*q->modelo), 6);
    EXPECT_TRUE(mallaSana(*q->modelo));

    SesionEditor u;
    Objeto3D* h = tira(u, 1);
    GuionSesion g(*u.editor, u.pantalla);
    g.clicEn({100, 150, 0}).clicEn({150, 150, 0});
    EXPECT_TRUE(u.editor->comandoHueco());
    EXPECT_EQ(vivas(*h->modelo), 4);
    EXPECT_TRUE(mallaSana(*h->modelo));
    const auto& aristas = h->modelo->aristas();
    EXPECT_EQ(std::count_if(aristas.begin(), aristas.end(),
                            [](const auto& a) { return a.esValida() && a.esFrontera(); }),
              8);
}

// The interior edge in three: both faces gain two corners. The same vertex twice is asked
// again and the diagonal splits the face. A cut from the left edge through a point inside to
// the middle edge: two new vertices on the edges, one inside, and face 0 in two.
TEST(ComandosMalla, parteAristaUneVerticesYRecortaCara)
{
    SesionEditor s;
    Objeto3D* o = tira(s, 2);
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({100, 150, 0}).clicEn({200, 150, 0});
        EXPECT_TRUE(s.editor->comandoParteArista(3));
    }
    EXPECT_EQ(s.prompts(), Textos({kEntidad, kArista}));
    EXPECT_EQ(ciclo(*o->modelo, 0).size(), 6U);
    EXPECT_EQ(ciclo(*o->modelo, 1).size(), 6U);
    EXPECT_EQ(o->modelo->vertices().size(), 8U);
    EXPECT_TRUE(mallaSana(*o->modelo));

    SesionEditor t;
    Objeto3D* q = tira(t, 1);
    {
        GuionSesion g(*t.editor, t.pantalla);
        g.clicEn({100, 150, 0}).clicEn({100, 100, 0}).clicEn({100, 100, 0}).clicEn({200, 200, 0});
        EXPECT_TRUE(t.editor->comandoUneVertices());
    }
    EXPECT_EQ(t.prompts(), Textos({kEntidad, kPunto, kPunto, kPunto}));
    EXPECT_EQ(vivas(*q->modelo), 2);
    EXPECT_TRUE(mallaSana(*q->modelo));

    SesionEditor u;
    Objeto3D* r = tira(u, 2);
    GuionSesion g(*u.editor, u.pantalla);
    g.clicEn({100, 150, 0}).clicEn({100, 130, 0}).clicEn({150, 160, 0}).clicEn({200, 140, 0});
    EXPECT_TRUE(u.editor->comandoRecortaCara());
    const char* puntos = "Seleccione puntos dentro de una cara o una arista:";
    EXPECT_EQ(u.prompts(), Textos({kEntidad, kArista, puntos, puntos}));
    EXPECT_EQ(vivas(*r->modelo), 3);
    EXPECT_EQ(r->modelo->vertices().size(), 9U);
    EXPECT_EQ(r->modelo->vertices()[7].punto, P(150, 160, 0));
    EXPECT_TRUE(mallaSana(*r->modelo));
}

// An edge with two faces is asked again; the walk from a boundary edge leaves every record.
TEST(ComandoRellenaHueco, aristaInteriorRepiteYNadaCambia)
{
    SesionEditor s;
    Objeto3D* o = tira(s, 2);
    const auto antes = imagenDe(*o->modelo);
    GuionSesion g(*s.editor, s.pantalla);
    g.clicEn({100, 150, 0}).clicEn({200, 150, 0}).clicEn({300, 150, 0});
    EXPECT_TRUE(s.editor->comandoRellenaHueco());
    const char* frontera = "Seleccione una arista frontera:";
    EXPECT_EQ(s.prompts(), Textos({kEntidad, frontera, frontera}));
    EXPECT_EQ(imagenDe(*o->modelo), antes);
}

// No element is asked for; the single face walks the other way round.
TEST(ComandoInvierteNormales, soloLaEntidadYElCicloSeInvierte)
{
    SesionEditor s;
    Objeto3D* o = tira(s, 1);
    GuionSesion g(*s.editor, s.pantalla);
    g.clicEn({100, 150, 0});
    EXPECT_TRUE(s.editor->comandoInvierteNormales());
    EXPECT_EQ(s.prompts(), Textos({kEntidad}));
    EXPECT_TRUE(mallaSana(*o->modelo));
    const std::vector<int32_t> v = ciclo(*o->modelo, 0);
    ASSERT_EQ(v.size(), 4U);
    EXPECT_EQ(v[1], v[0] == 0 ? 2 : v[0] - 1);
}

// A face pulled against its normal still grows outwards: the height is the distance from the
// grab. An edge with one face grows a quad towards the point.
TEST(ComandoExtrusion, caraSiempreHaciaFueraYAristaHastaElPunto)
{
    SesionEditor s;
    Objeto3D* o = tira(s, 1);
    const float nz = o->modelo->normalCara(0).z;
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({100, 150, 0}).clicEn({150, 150, 0});
        g.escribe("150,150," + std::to_string(-30.0 * nz));
        EXPECT_TRUE(s.editor->comandoExtrusion(false));
    }
    EXPECT_EQ(s.prompts(), Textos({kEntidad, "Seleccione punto caliente, arista o cara:",
                                   "Seleccione nueva coordenada"}));
    EXPECT_EQ(vivas(*o->modelo), 5);
    EXPECT_TRUE(mallaSana(*o->modelo));
    ASSERT_EQ(o->modelo->vertices().size(), 8U);
    for (size_t i = 4; i < 8; ++i)
    {
        EXPECT_NEAR(o->modelo->vertices()[i].punto.z, 30.0 * nz, 1e-5);
    }

    SesionEditor t;
    Objeto3D* q = tira(t, 1);
    GuionSesion h(*t.editor, t.pantalla);
    h.clicEn({100, 150, 0}).clicEn({100, 150, 0}).escribe("50,150,0");
    EXPECT_TRUE(t.editor->comandoExtrusion(true));
    EXPECT_EQ(vivas(*q->modelo), 2);
    EXPECT_EQ(q->modelo->vertices().back().punto.x, 50.0);
    EXPECT_TRUE(mallaSana(*q->modelo));

    // A dragged vertex is a mesh edit like the others: one undo step.
    SesionEditor u;
    Objeto3D* r = tira(u, 1);
    const auto antes = imagenDe(*r->modelo);
    {
        GuionSesion g(*u.editor, u.pantalla);
        g.clicEn({100, 150, 0}).clicEn({100, 100, 0}).escribe("100,100,40");
        EXPECT_TRUE(u.editor->comandoExtrusion(false));
    }
    EXPECT_EQ(r->modelo->getVertice(0).punto, P(100, 100, 40));
    u.editor->deshacer();
    EXPECT_EQ(imagenDe(*r->modelo), antes);
}

// A polyline swept by base-to-destination becomes one undoable Objeto3D on the current
// material; the command repeats until the pick is refused.
TEST(ComandoExtrusionEntidad, tiraDeLaPolilineaYDeshacer)
{
    SesionEditor s;
    const std::vector<P> v = {{100, 100, 0}, {200, 100, 0}, {200, 200, 0}};
    s.editor->nuevaEntidad(new Polilinea(3, v.data()));
    s.pinta();
    const size_t pasos = s.editor->comandosDeshacer.size();
    GuionSesion g(*s.editor, s.pantalla);
    g.clicEn({150, 100, 0}).escribe("0,0,0").escribe("0,0,10");
    g.clic(700, 500, PantallaCAD::kBotonDerecho);
    EXPECT_TRUE(s.editor->comandoExtrusionEntidad());
    ASSERT_EQ(s.dibujo.entidades.size(), 2U);
    auto* o = dynamic_cast<Objeto3D*>(s.dibujo.entidades.back());
    ASSERT_NE(o, nullptr);
    EXPECT_TRUE(mallaSana(*o->modelo));
    EXPECT_EQ(vivas(*o->modelo), 2);
    EXPECT_EQ(o->modelo->vertices()[5].punto, P(200, 200, 10));
    EXPECT_EQ(s.editor->comandosDeshacer.size(), pasos + 1);
    s.editor->deshacer();
    EXPECT_EQ(s.dibujo.entidades.size(), 1U);
}

}  // namespace
}  // namespace cad
