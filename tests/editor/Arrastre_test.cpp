// Vertex drags and vertex marks, played as user sessions on real entities of the drawing.
// Invariants under test: the paint pass (not the wait) moves the entity and tells the host
// each move; acceptance commits where the click was; a cancel or refusal puts the vertex back
// bit for bit with one kCancelar; a veto skips exactly one move; what cannot be dragged
// never moves; marks follow their vertex and stay off the screen under snap mask 32.
#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Fendrix/WrapDibujoCAD.h"
#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "editor/ModificadorVertice.h"
#include "entidades/Linea.h"
#include "entidades/Plano.h"
#include "entidades/Polilinea.h"
#include "modelo/PuntosCalientes.h"
#include "soporte/GuionSesion.h"

namespace
{

using cad::cursor_t;
using cad::EditorDibujo;
using cad::elemento_seleccionado_t;
using cad::Entidad;
using cad::Linea;
using cad::Polilinea;
using cad::primitiva_t;
using cad::Punto3;
using cad::Vector3D;
using cad::prueba::GuionSesion;
using cad::prueba::SesionEditor;
using P = Punto3<double>;

// A click or a pointer position gives the pixel's ray on the plane: the pixel's point up to
// rounding.
bool cerca(const P& a, const P& b)
{
    return a.distancia(b) < 1e-9;
}

// Every call of the edit reactor as "T" temporary, "D" final, "X" cancel, with its index
// and point; `veto` decides each answer.
struct Reactor
{
    explicit Reactor(EditorDibujo& e)
    {
        e.setReactorEdicionEntidades(
            [this](int64_t h, EditorDibujo::enumEdicionEntidades t, int i, double x, double y,
                   double z)
            {
                tipos += "?TD?X"[t];
                handles.push_back(h);
                indices.push_back(i);
                puntos.emplace_back(x, y, z);
                return !veto(t, puntos.back());
            });
    }
    void limpia() { tipos.clear(), handles.clear(), indices.clear(), puntos.clear(); }

    std::string tipos;
    std::vector<int64_t> handles;
    std::vector<int> indices;
    std::vector<P> puntos;
    std::function<bool(int, const P&)> veto = [](int, const P&) { return false; };
};

template <typename T>
T* inserta(SesionEditor& s, T* e)
{
    s.dibujo.nuevaEntidad(e);
    return e;
}

elemento_seleccionado_t caliente(Entidad& e, int i)
{
    cad::PuntosCalientes pc;
    e.puntosCalientes(pc);
    return pc.punto(i);
}

// The handle markers (style 1) of the last overlay pass, in paint order.
std::vector<P> marcas(const SesionEditor& s)
{
    std::vector<P> v;
    for (const primitiva_t& pr : s.pantalla.superposicion)
    {
        if (pr.tipo == primitiva_t::kMarca && pr.modo == 1)
        {
            v.push_back(pr.puntos[0]);
        }
    }
    return v;
}

// Whether the last overlay pass repainted the entity on top.
bool repintada(const SesionEditor& s, const Entidad* e)
{
    for (const primitiva_t& pr : s.pantalla.superposicion)
    {
        if (pr.pick == e && pr.primerPlano)
        {
            return true;
        }
    }
    return false;
}

bool escrito(const SesionEditor& s, const std::string& texto)
{
    return std::find(s.textos.begin(), s.textos.end(), texto) != s.textos.end();
}

const char* const kNuevaCoordenada = "Seleccione nueva coordenada";

// While the wait runs, each paint moves the vertex to the pointer and announces it
// (kModificarTemporal with index and point), painting the handle and the entity on top; the
// click commits with kModificarDefinitivo. Once done, paints move nothing and tell nobody.
TEST(Arrastre, elPintadoMueveYAnunciaYElClicFija)
{
    SesionEditor s;
    s.dibujo.mascaraReferencias = 0;
    Linea* l = inserta(s, new Linea(P(100, 100, 0), P(300, 100, 0)));
    Reactor r(*s.editor);
    P durante;
    std::vector<P> marcasDurante;
    bool encima = false;
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.mueve(200, 150)
            .ejecuta(
                [&]()
                {
                    s.pintaSuperposicion();
                    durante = l->extremo, marcasDurante = marcas(s), encima = repintada(s, l);
                })
            .mueve(250, 180)
            .ejecuta([&]() { s.pintaSuperposicion(); })
            .clic(260, 190);
        ASSERT_TRUE(s.editor->editaPunto(caliente(*l, 1)));
    }
    EXPECT_TRUE(escrito(s, kNuevaCoordenada));
    ASSERT_EQ(r.tipos, "TTD");
    EXPECT_EQ(r.handles, std::vector<int64_t>(3, cad::handleEntidad(l)));
    EXPECT_EQ(r.indices, std::vector<int>(3, 1));
    EXPECT_TRUE(cerca(r.puntos[0], P(200, 150, 0)));
    EXPECT_TRUE(cerca(r.puntos[1], P(250, 180, 0)));
    EXPECT_TRUE(cerca(r.puntos[2], P(260, 190, 0)));
    EXPECT_EQ(durante, r.puntos[0]);
    EXPECT_EQ(marcasDurante, std::vector<P>{durante});
    EXPECT_TRUE(encima);
    EXPECT_EQ(l->extremo, r.puntos[2]);
    EXPECT_EQ(l->origen, P(100, 100, 0));

    s.pantalla.setPosicionCursor(10, 10);
    s.pintaSuperposicion();
    EXPECT_EQ(r.tipos, "TTD");
    EXPECT_EQ(l->extremo, r.puntos[2]);
}

// A cancel puts the vertex back bit for bit (z included) with one kCancelar carrying the old
// point. A vetoed move is skipped alone and the drag goes on. A host that cancels from inside
// the move it is told of gets the vertex back, and that move does not land afterwards.
TEST(Arrastre, cancelarRestauraYElVetoSoloAnulaEseMovimiento)
{
    SesionEditor s;
    s.dibujo.mascaraReferencias = 0;
    const P v[3] = {P(10.125, 20.5, 3.75), P(110.3, 40.7, -2.2), P(210, 60, 1)};
    Polilinea* p = inserta(s, new Polilinea(3, v));
    Reactor r(*s.editor);
    const auto pinta = [&]() { s.pintaSuperposicion(); };
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.mueve(400, 300).ejecuta(pinta).cancela();
        EXPECT_FALSE(s.editor->editaPunto(caliente(*p, 1)));
    }
    EXPECT_TRUE(escrito(s, "* Cancelado *"));
    ASSERT_EQ(r.tipos, "TX");
    EXPECT_EQ(r.indices[1], 1);
    EXPECT_EQ(r.puntos[1], v[1]);
    EXPECT_EQ(p->vertices[1], v[1]);
    s.pintaSuperposicion();
    EXPECT_EQ(p->vertices[1], v[1]);
    EXPECT_EQ(r.tipos, "TX");

    r.limpia();
    r.veto = [](int t, const P& q) { return t == EditorDibujo::kModificarTemporal && q.x > 240; };
    P trasVeto;
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.mueve(200, 150).ejecuta(pinta).mueve(250, 180).ejecuta(pinta);
        g.ejecuta([&]() { trasVeto = p->vertices[2]; }).clic(260, 190);
        EXPECT_TRUE(s.editor->editaPunto(caliente(*p, 2)));
    }
    EXPECT_EQ(r.tipos, "TTD");
    EXPECT_TRUE(cerca(trasVeto, P(200, 150, 0)));
    EXPECT_TRUE(cerca(p->vertices[2], P(260, 190, 0)));

    r.limpia();
    r.veto = [&](int t, const P&)
    {
        if (t == EditorDibujo::kModificarTemporal)
        {
            s.editor->cancelaComando();
        }
        return false;
    };
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.mueve(400, 300).ejecuta(pinta);
        EXPECT_FALSE(s.editor->editaPunto(caliente(*p, 1)));
    }
    EXPECT_EQ(r.tipos, "TX");
    EXPECT_EQ(p->vertices[1], v[1]);
}

// Nothing moves and nobody is told for: a vertex on a locked layer (no wait at all, a word on
// the text channel), an entity outside the drawing, index -1, and an edge or a face, whose
// wait still runs but shows no handle and commits nothing.
TEST(Arrastre, loQueNoSeArrastraNoSeMueve)
{
    SesionEditor s;
    s.dibujo.mascaraReferencias = 0;
    Linea* l = inserta(s, new Linea(P(100, 100, 0), P(300, 100, 0)));
    Reactor r(*s.editor);
    auto* capa = new cad::Capa("cerrada", cad::ColorCapa(1), 1);
    ASSERT_TRUE(s.dibujo.nuevaCapa(capa));
    Linea* bloqueada = inserta(s, new Linea(P(0, 0, 0), P(50, 0, 0)));
    bloqueada->asignaCapa(capa);
    ASSERT_TRUE(s.dibujo.bloqueaCapa("cerrada", true));
    Linea suelta(P(0, 0, 0), P(1, 1, 0));
    elemento_seleccionado_t sinIndice = caliente(*l, 1);
    sinIndice.indice = -1;
    {
        GuionSesion g(*s.editor, s.pantalla);  // empty: a wait would record a failure
        EXPECT_FALSE(s.editor->editaPunto(caliente(*bloqueada, 1)));
        EXPECT_FALSE(s.editor->editaPunto(caliente(suelta, 1)));
        EXPECT_FALSE(s.editor->editaPunto(sinIndice));
    }
    EXPECT_FALSE(escrito(s, kNuevaCoordenada));
    EXPECT_TRUE(escrito(s, "La entidad está en una capa bloqueada"));
    EXPECT_EQ(bloqueada->extremo, P(50, 0, 0));

    for (int32_t tipo : {cad::kTipoArista, cad::kTipoCara})
    {
        std::vector<P> marcasDurante{P(1, 1, 1)};
        {
            GuionSesion g(*s.editor, s.pantalla);
            g.mueve(200, 150).ejecuta(
                [&]()
                {
                    s.pintaSuperposicion();
                    marcasDurante = marcas(s);
                });
            g.clic(200, 150);
            EXPECT_TRUE(s.editor->editaPunto({l, P(0, 0, 0), P(200, 100, 0), tipo, 0}));
        }
        EXPECT_TRUE(marcasDurante.empty());
        EXPECT_EQ(*l, Linea(P(100, 100, 0), P(300, 100, 0)));
    }
    EXPECT_TRUE(escrito(s, kNuevaCoordenada));
    EXPECT_EQ(r.tipos, "");
}

// A plane's contour point slides on its own plane where the ray meets it ahead; a ray
// parallel to the plane, one that meets it only behind its start, or no ray at all put the
// point back where the drag began, exactly. The host hears nothing of plane handles.
TEST(Arrastre, elAsaDePlanoVuelveAlInicioSinCorteDelantero)
{
    SesionEditor s;
    Reactor r(*s.editor);
    const P contorno[4] = {P(0, 0, 0), P(100, 0, 0), P(100, 100, 0), P(0, 100, 0)};
    auto* plano = inserta(s, new cad::Plano(cad::Plano3D<double>(0, 0, 1, 0), 4, contorno));
    std::unique_ptr<cad::ModificadorVertice> m =
        cad::creaModificador(s.editor, caliente(*plano, 1));
    ASSERT_NE(m, nullptr);
    const P& vertice = plano->contorno.vertices[1];
    cursor_t c;
    c.posicion = P(150, 60, 10);
    for (const Vector3D<double>& d : {Vector3D<double>(1, 0, 0), Vector3D<double>(0, 0, 1)})
    {
        c.direccion = Vector3D<double>(0, 0, -1);
        m->modificaTemporal(c);
        EXPECT_EQ(vertice, P(150, 60, 0));
        c.direccion = d;
        m->modificaTemporal(c);
        EXPECT_EQ(vertice, P(100, 0, 0));
    }
    m->modificaTemporal(cursor_t{});
    EXPECT_EQ(vertice, P(100, 0, 0));
    EXPECT_EQ(r.tipos, "");
}

// Marks: one marker per vertex of the range, on the vertex as it stands now, with the entity
// painted over them; snap mask exactly 32 hides them (33 does not). An empty range leaves an
// empty entry, a range past the end marks what there is, an entity outside the drawing gets
// none. Marks of an entity deleted since are never painted.
TEST(Arrastre, marcasDeVertices)
{
    SesionEditor s;
    s.dibujo.mascaraReferencias = 0;
    const P v[3] = {P(10, 20, 0), P(110, 40, 0), P(210, 60, 0)};
    Polilinea* p = inserta(s, new Polilinea(3, v));
    EditorDibujo& e = *s.editor;

    e.marcaVerticesEntidad(p, 2, 1);
    ASSERT_EQ(e.marcasVertices.count(p), 1u);
    EXPECT_TRUE(e.marcasVertices.at(p).empty());
    s.pintaSuperposicion();
    EXPECT_TRUE(marcas(s).empty());

    e.marcaVerticesEntidad(p, 0, 1);
    s.pintaSuperposicion();
    EXPECT_EQ(marcas(s), std::vector<P>({v[0], v[1]}));
    EXPECT_TRUE(repintada(s, p));
    s.dibujo.mascaraReferencias = 32;
    s.pintaSuperposicion();
    EXPECT_TRUE(marcas(s).empty());
    s.dibujo.mascaraReferencias = 33;
    p->vertices[1] = P(500, 400, 0);
    s.pintaSuperposicion();
    EXPECT_EQ(marcas(s), std::vector<P>({v[0], P(500, 400, 0)}));

    Linea* l = inserta(s, new Linea(P(0, 0, 0), P(5, 5, 0)));
    e.marcaVerticesEntidad(l, 0, UINT32_MAX);
    EXPECT_EQ(e.marcasVertices.at(l).size(), 2u);
    Linea suelta(P(0, 0, 0), P(1, 1, 0));
    e.marcaVerticesEntidad(&suelta, 0, 1);
    EXPECT_EQ(e.marcasVertices.count(&suelta), 0u);

    e.quitaMarcasVerticesEntidad(p);
    EXPECT_EQ(e.marcasVertices.count(p), 0u);
    ASSERT_TRUE(s.dibujo.borraEntidad(l, true));
    s.pintaSuperposicion();
    EXPECT_TRUE(marcas(s).empty());
}

// Through the facade: an unknown handle is refused, as is any call after Dispose; taking the
// marks of a handle deleted since answers false yet frees them.
TEST(Arrastre, marcasPorLaFachada)
{
    Fendrix::WrapDibujoCAD w{nullptr, nullptr};
    w.nuevoDocumento();
    auto* l = new Linea(P(0, 0, 0), P(5, 5, 0));
    w.mDibujo->nuevaEntidad(l);
    const int64_t h = cad::handleEntidad(l);
    EXPECT_FALSE(w.marcaVerticesEntidad(h + 8, 0, 1));
    EXPECT_TRUE(w.marcaVerticesEntidad(h, 0, 1));
    EXPECT_EQ(w.mEditor->marcasVertices.size(), 1u);
    ASSERT_TRUE(w.mDibujo->borraEntidad(l, true));
    EXPECT_FALSE(w.quitaMarcasVerticesEntidad(h));
    EXPECT_TRUE(w.mEditor->marcasVertices.empty());
    w.Dispose();
    EXPECT_FALSE(w.marcaVerticesEntidad(h, 0, 1));
}

}  // namespace
