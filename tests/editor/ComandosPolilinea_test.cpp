// The polyline command played as a user's session, and the two merges of one polyline into
// another: their plan geometry alone, then as commands with their reactor calls and undo.
#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "editor/Comando.h"
#include "editor/FusionPolilineas.h"
#include "editor/LineaElastica.h"
#include "entidades/Polilinea.h"
#include "soporte/GuionSesion.h"

namespace
{

using cad::CadenaPuntos;
using cad::EditorDibujo;
using cad::Polilinea;
using cad::Punto3;
using cad::prueba::GuionSesion;
using cad::prueba::SesionEditor;
using P = Punto3<double>;
using Textos = std::vector<std::string>;

Polilinea* anadePolilinea(SesionEditor& s, const CadenaPuntos& v, bool cerrada = false)
{
    auto* p = new Polilinea(static_cast<int>(v.size()), v.data());
    p->cerrada = cerrada;
    s.dibujo.nuevaEntidad(p);
    return p;
}

// The edit reactor's calls, one short word each: E/e start and end of the edit, [ and ] the
// block, B and I a deleted or inserted vertex with its index. `veta` refuses a call.
struct Registro
{
    std::string llamadas;
    CadenaPuntos borrados;
    std::function<bool(EditorDibujo::enumEdicionEntidades, const P&)> veta;

    void instala(SesionEditor& s, const Polilinea* destino)
    {
        s.editor->setReactorEdicionEntidades(
            [this, destino](int64_t h, EditorDibujo::enumEdicionEntidades tipo, int i, double x,
                            double y, double z)
            {
                EXPECT_EQ(h, cad::handleEntidad(destino));
                const char* letras = "BxxIxEe[]";
                llamadas += letras[tipo];
                if (tipo == EditorDibujo::kBorrar || tipo == EditorDibujo::kInsertar)
                {
                    llamadas += std::to_string(i);
                }
                else
                {
                    EXPECT_EQ(i, -1);
                }
                llamadas += ' ';
                const bool si = !veta || !veta(tipo, P(x, y, z));
                if (si && tipo == EditorDibujo::kBorrar)
                {
                    borrados.emplace_back(x, y, z);
                }
                return si;
            });
    }
};

// --- the polyline command ---------------------------------------------------------------------

// Invariants: the prompts and the option words come in the order the user sees them; "Cerrar"
// is neither offered nor accepted before the third vertex; a closed polyline is one entity.
TEST(ComandoPolilinea, preguntasYOpcionesEnOrden)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    std::vector<Textos> opciones;
    const auto anota = [&]() { opciones.push_back(s.editor->listaOpciones()); };
    g.escribe("0,0").ejecuta(anota).escribe("C").escribe("10,0").escribe("10,10");
    g.ejecuta(anota).escribe("c").ejecuta(anota).intro();
    Polilinea* hecha = nullptr;
    EXPECT_EQ(s.editor->comandoPolilinea(false, false, &hecha), 1);

    EXPECT_EQ(s.textos, Textos({"Punto inicial:", "",
                                "Otro vértice/Borrar:", "Se requiere una coordenada u opción",
                                "Otro vértice/Borrar:", "", "Otro vértice/Borrar:", "",
                                "Otro vértice/Borrar/Cerrar:", "", "Punto inicial:", ""}));
    EXPECT_EQ(opciones, std::vector<Textos>({{"Borrar"}, {"Borrar", "Cerrar"}, {}}));
    EXPECT_TRUE(s.editor->listaOpciones().empty());
    ASSERT_EQ(s.dibujo.entidades.size(), 1U);
    EXPECT_EQ(hecha, s.dibujo.entidades[0]);
    EXPECT_EQ(hecha->vertices, CadenaPuntos({P(0, 0, 0), P(10, 0, 0), P(10, 10, 0)}));
    EXPECT_TRUE(hecha->cerrada);
    EXPECT_EQ(s.editor->comandosDeshacer.size(), 1U);
    EXPECT_EQ(s.editor->lineaElastica, nullptr);
}

// Invariants: "Borrar" takes back the last vertex and its anchor; at one vertex it removes the
// entity, leaving no undo step that could bring a freed polyline back; before any second point
// it ends the polyline. With `unaSola` the last vertex stays.
TEST(ComandoPolilinea, borrarQuitaVerticesYLuegoLaEntidad)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    size_t anclas = 0;
    size_t vertices = 0;
    g.escribe("0,0").escribe("10,0").escribe("B").ejecuta(
        [&]()
        {
            anclas = s.editor->lineaElastica->anclas.size();
            vertices = s.dibujo.entidades.at(0)->numCoordenadas();
        });
    g.escribe("b").escribe("5,5").escribe("borrar").intro();
    EXPECT_EQ(s.editor->comandoPolilinea(), 0);
    EXPECT_EQ(anclas, 1U);
    EXPECT_EQ(vertices, 1U);
    EXPECT_TRUE(s.dibujo.entidades.empty());
    EXPECT_FALSE(s.editor->puedeDeshacer());
    EXPECT_EQ(std::count(s.textos.begin(), s.textos.end(), "Punto inicial:"), 3);

    g.escribe("0,0").escribe("10,0").escribe("B").escribe("B").intro();
    Polilinea* hecha = nullptr;
    EXPECT_EQ(s.editor->comandoPolilinea(true, false, &hecha), 1);
    ASSERT_NE(hecha, nullptr);
    EXPECT_EQ(hecha->vertices, CadenaPuntos({P(0, 0, 0)}));
}

// Invariants: a cancel keeps what Enter keeps (a closed polyline is closed, what was drawn
// stays) and ends the command, with no new "Punto inicial:"; the band is the closed kind; the
// whole polyline is one undo step, and redo brings back the same entity with every vertex.
TEST(ComandoPolilinea, cancelarConservaYDeshacerQuitaYRehacerDevuelve)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    int tipoBanda = 0;
    g.escribe("0,0").escribe("10,0").escribe("10,10").ejecuta(
        [&]() { tipoBanda = s.editor->lineaElastica->tipo; });
    g.cancela();
    Polilinea* hecha = nullptr;
    EXPECT_EQ(s.editor->comandoPolilinea(false, true, &hecha), 1);
    EXPECT_EQ(tipoBanda, 4);
    ASSERT_EQ(s.dibujo.entidades.size(), 1U);
    EXPECT_EQ(hecha, s.dibujo.entidades[0]);
    EXPECT_TRUE(hecha->cerrada);
    EXPECT_EQ(hecha->numeroVertices(), 3);
    EXPECT_EQ(s.editor->nivelComando, 0);
    EXPECT_EQ(s.textos.at(s.textos.size() - 2), "* Cancelado *");
    EXPECT_EQ(std::count(s.textos.begin(), s.textos.end(), "Punto inicial:"), 1);

    ASSERT_EQ(s.editor->comandosDeshacer.size(), 1U);
    s.editor->deshacer();
    EXPECT_TRUE(s.dibujo.entidades.empty());
    s.editor->rehacer();
    ASSERT_EQ(s.dibujo.entidades.size(), 1U);
    EXPECT_EQ(s.dibujo.entidades[0], hecha);
    EXPECT_EQ(hecha->vertices, CadenaPuntos({P(0, 0, 0), P(10, 0, 0), P(10, 10, 0)}));

    // A cancel at the second prompt leaves nothing; the out pointer is cleared first.
    g.escribe("1,1").cancela();
    EXPECT_EQ(s.editor->comandoPolilinea(true, false, &hecha), 0);
    EXPECT_EQ(hecha, nullptr);
    EXPECT_EQ(s.dibujo.entidades.size(), 1U);
}

// --- merge geometry -------------------------------------------------------------------------

// Invariants: a bump drawn across one side of a square replaces the piece between its
// crossings, the tails beyond them cut, whichever way the bump and the square were drawn; a
// cut across a corner removes the corner, also through the first vertex; the repeated last
// vertex of the destination is kept.
TEST(FusionPolilineasGeometria, poligono)
{
    const CadenaPuntos cuadrado = {P(0, 0, 0), P(10, 0, 0), P(10, 10, 0), P(0, 10, 0)};
    const CadenaPuntos bulto = {P(8, 2, 0), P(15, 2, 0), P(15, 8, 0), P(8, 8, 0)};
    const CadenaPuntos esperado = {P(0, 0, 0),  P(10, 0, 0), P(10, 2, 0),  P(15, 2, 0),
                                   P(15, 8, 0), P(10, 8, 0), P(10, 10, 0), P(0, 10, 0)};
    CadenaPuntos r;
    ASSERT_TRUE(cad::fusionaPoligono(cuadrado, bulto, r));
    EXPECT_EQ(r, esperado);
    ASSERT_TRUE(cad::fusionaPoligono(cuadrado, CadenaPuntos(bulto.rbegin(), bulto.rend()), r));
    EXPECT_EQ(r, esperado);
    const CadenaPuntos horario(cuadrado.rbegin(), cuadrado.rend());
    ASSERT_TRUE(cad::fusionaPoligono(horario, bulto, r));
    EXPECT_EQ(r, CadenaPuntos(esperado.rbegin(), esperado.rend()));

    ASSERT_TRUE(cad::fusionaPoligono(cuadrado, {P(-2, 3, 0), P(3, 3, 0), P(3, -2, 0)}, r));
    EXPECT_EQ(r, CadenaPuntos(
                     {P(0, 3, 0), P(3, 3, 0), P(3, 0, 0), P(10, 0, 0), P(10, 10, 0), P(0, 10, 0)}));
    CadenaPuntos anillo = cuadrado;
    anillo.push_back(cuadrado.front());
    ASSERT_TRUE(cad::fusionaPoligono(anillo, {P(-2, 7, 0), P(3, 7, 0), P(3, 12, 0)}, r));
    EXPECT_EQ(r, CadenaPuntos({P(10, 10, 0), P(3, 10, 0), P(3, 7, 0), P(0, 7, 0), P(0, 0, 0),
                               P(10, 0, 0), P(10, 10, 0)}));

    EXPECT_TRUE(cad::cadenaSeCruza({P(0, 0, 0), P(10, 0, 0), P(10, 5, 0), P(5, -5, 0)}));
    // A U whose closing side would cross it is no self-crossing of an open chain.
    EXPECT_FALSE(cad::cadenaSeCruza({P(0, 10, 0), P(0, 0, 0), P(10, 0, 0), P(10, 10, 0)}));
}

// Invariants: on a ring the shorter arc between the crossings goes; on equal arcs the one from
// the first crossing to the second goes (x = 5 keeps the left half, as x = 6 does, while
// x = 4 keeps the right one); the ring stays closed.
TEST(FusionPolilineasGeometria, anilloArcoMasCortoYEmpate)
{
    const CadenaPuntos anillo = {P(0, 0, 0), P(10, 0, 0), P(10, 10, 0), P(0, 10, 0), P(0, 0, 0)};
    const auto corta = [&](double x)
    {
        CadenaPuntos d = anillo;
        EXPECT_TRUE(cad::fusionaCadena(d, {P(x, -5, 0), P(x, 15, 0)},
                                       [](bool, int, const P&) { return true; }));
        return d;
    };
    EXPECT_EQ(corta(5),
              CadenaPuntos({P(0, 0, 0), P(5, 0, 0), P(5, 10, 0), P(0, 10, 0), P(0, 0, 0)}));
    EXPECT_EQ(corta(6),
              CadenaPuntos({P(0, 0, 0), P(6, 0, 0), P(6, 10, 0), P(0, 10, 0), P(0, 0, 0)}));
    EXPECT_EQ(corta(4),
              CadenaPuntos({P(10, 0, 0), P(10, 10, 0), P(4, 10, 0), P(4, 0, 0), P(10, 0, 0)}));
}

// Invariants: without two crossings the origin's own ends stand in: one that starts on the
// destination's last vertex extends it, one whose ends lie beside its middle replaces the
// stretch between them.
TEST(FusionPolilineasGeometria, cadenaSinCruces)
{
    const auto todo = [](bool, int, const P&) { return true; };
    CadenaPuntos d = {P(0, 0, 0), P(10, 0, 0)};
    ASSERT_TRUE(cad::fusionaCadena(d, {P(10, 0, 0), P(15, 5, 0), P(20, 5, 0)}, todo));
    EXPECT_EQ(d, CadenaPuntos({P(0, 0, 0), P(10, 0, 0), P(15, 5, 0), P(20, 5, 0)}));

    d = {P(0, 0, 0), P(10, 0, 0), P(20, 0, 0), P(30, 0, 0)};
    ASSERT_TRUE(cad::fusionaCadena(d, {P(25, 1, 0), P(15, 6, 0), P(5, 1, 0)}, todo));
    EXPECT_EQ(d, CadenaPuntos({P(0, 0, 0), P(5, 1, 0), P(15, 6, 0), P(25, 1, 0), P(30, 0, 0)}));
}

// --- merge commands -------------------------------------------------------------------------

// Invariants: a merge with itself, with a self-crossing origin or with a closed one changes
// nothing, returns false and leaves neither polyline highlighted; no reactor is called.
TEST(FusionPolilineas, precondicionesRechazanYQuitanResaltes)
{
    SesionEditor s;
    Polilinea* d = anadePolilinea(s, {P(0, 0, 0), P(10, 0, 0), P(20, 0, 0)});
    Polilinea* cruzada = anadePolilinea(s, {P(0, 0, 0), P(10, 0, 0), P(10, 5, 0), P(5, -5, 0)});
    Polilinea* cerrada = anadePolilinea(s, {P(0, 5, 0), P(5, 5, 0), P(5, 9, 0)}, true);
    Registro r;
    r.instala(s, d);
    for (Polilinea* o : {d, cruzada, cerrada})
    {
        d->setResaltada(true);
        o->setResaltada(true);
        EXPECT_FALSE(s.editor->comandoFusionPolilineas(d, o, true));
        EXPECT_EQ(d->estado & cad::kEstadoResaltada, 0U);
        EXPECT_EQ(o->estado & cad::kEstadoResaltada, 0U);
    }
    EXPECT_EQ(d->numeroVertices(), 3);
    EXPECT_EQ(s.dibujo.entidades.size(), 3U);
    EXPECT_EQ(r.llamadas, "");
    EXPECT_EQ(s.editor->nivelComando, 0);
}

// Invariants: the polygon merge announces every old vertex (from the last down) and every new
// one inside one block of one edit, and gives the exact vertices; `borraOrigen` deletes the
// origin as an undo step that brings it back.
TEST(FusionPolilineas, poligonoConReactoresYBorradoDelOrigen)
{
    SesionEditor s;
    Polilinea* d = anadePolilinea(s, {P(0, 0, 0), P(10, 0, 0), P(10, 10, 0), P(0, 10, 0)}, true);
    Polilinea* o = anadePolilinea(s, {P(8, 2, 0), P(15, 2, 0), P(15, 8, 0), P(8, 8, 0)});
    Registro r;
    r.instala(s, d);
    EXPECT_TRUE(s.editor->comandoFusionPolilineas(d, o, true));
    EXPECT_EQ(r.llamadas, "E [ B3 B2 B1 B0 I0 I1 I2 I3 I4 I5 I6 I7 ] e ");
    EXPECT_EQ(d->vertices, CadenaPuntos({P(0, 0, 0), P(10, 0, 0), P(10, 2, 0), P(15, 2, 0),
                                         P(15, 8, 0), P(10, 8, 0), P(10, 10, 0), P(0, 10, 0)}));
    EXPECT_TRUE(d->cerrada);
    EXPECT_EQ(d->estado & cad::kEstadoResaltada, 0U);
    EXPECT_EQ(s.dibujo.entidades, std::vector<cad::Entidad*>({d}));
    EXPECT_TRUE(s.dibujo.hayCambios());
    s.editor->deshacer();
    EXPECT_EQ(s.dibujo.entidades, std::vector<cad::Entidad*>({d, o}));
    EXPECT_EQ(o->numeroVertices(), 4);
}

// Invariants: the chain merge deletes the vertices between the crossings one by one, inserts
// the crossings and the origin between them; a refused deletion keeps that vertex (and the
// next one is asked at the next index); the origin stays when not asked to go.
TEST(FusionPolilineas, cadenaConVetoDeUnBorrado)
{
    SesionEditor s;
    const CadenaPuntos recta = {P(0, 0, 0), P(10, 0, 0), P(20, 0, 0), P(30, 0, 0)};
    const CadenaPuntos puente = {P(5, -5, 0), P(5, 5, 0), P(25, 5, 0), P(25, -5, 0)};
    Polilinea* d = anadePolilinea(s, recta);
    Polilinea* o = anadePolilinea(s, puente);
    Registro r;
    r.instala(s, d);
    EXPECT_TRUE(s.editor->comandoFusionPolilineas(d, o, false));
    EXPECT_EQ(r.llamadas, "E [ B1 B1 I1 I2 I3 I4 ] e ");
    EXPECT_EQ(d->vertices, CadenaPuntos({P(0, 0, 0), P(5, 0, 0), P(5, 5, 0), P(25, 5, 0),
                                         P(25, 0, 0), P(30, 0, 0)}));
    EXPECT_EQ(s.dibujo.entidades.size(), 2U);
    EXPECT_FALSE(s.editor->puedeDeshacer());

    d->vertices = recta;
    r = Registro{};
    r.veta = [](EditorDibujo::enumEdicionEntidades t, const P& p)
    { return t == EditorDibujo::kBorrar && p == P(10, 0, 0); };
    r.instala(s, d);
    // Drawn the other way round: the same path between the crossings.
    o->vertices = CadenaPuntos(puente.rbegin(), puente.rend());
    EXPECT_TRUE(s.editor->comandoFusionPolilineas(d, o, false));
    EXPECT_EQ(r.llamadas, "E [ B1 B2 I1 I2 I3 I4 ] e ");
    EXPECT_EQ(r.borrados, CadenaPuntos({P(20, 0, 0)}));
    EXPECT_EQ(d->vertices, CadenaPuntos({P(0, 0, 0), P(5, 0, 0), P(5, 5, 0), P(25, 5, 0),
                                         P(25, 0, 0), P(10, 0, 0), P(30, 0, 0)}));
}

// Invariants: with no polylines given, both are picked in order with their prompts, and the
// merge runs on them; the drawn-polyline form asks for the destination, then for a polyline,
// and merges and deletes that one.
TEST(FusionPolilineas, seleccionYPolilineaNueva)
{
    SesionEditor s;
    Polilinea* d =
        anadePolilinea(s, {P(100, 100, 0), P(200, 100, 0), P(300, 100, 0), P(400, 100, 0)});
    Polilinea* o =
        anadePolilinea(s, {P(150, 50, 0), P(150, 150, 0), P(350, 150, 0), P(350, 50, 0)});
    s.pinta();
    GuionSesion g(*s.editor, s.pantalla);
    g.clic(120, 100).clic(250, 150);
    EXPECT_TRUE(s.editor->comandoFusionPolilineas(nullptr, nullptr, false));
    EXPECT_EQ(s.textos, Textos({"Seleccione la polilinea a modificar:", "",
                                "Seleccione la polilinea con la que fusionar:", ""}));
    EXPECT_EQ(d->vertices, CadenaPuntos({P(100, 100, 0), P(150, 100, 0), P(150, 150, 0),
                                         P(350, 150, 0), P(350, 100, 0), P(400, 100, 0)}));
    EXPECT_EQ(d->estado & 9U, 0U);
    EXPECT_EQ(o->estado & 9U, 0U);
    EXPECT_EQ(s.editor->nivelComando, 0);

    s.dibujo.borraEntidad(o, true);
    s.pinta();
    s.textos.clear();
    g.clic(380, 100).escribe("390,90").escribe("390,200").escribe("500,200").intro();
    EXPECT_TRUE(s.editor->comandoFusionPolilineasNueva(nullptr, true));
    EXPECT_EQ(s.textos, Textos({"Seleccione una polilinea:", "", "Punto inicial:", "",
                                "Otro vértice/Borrar:", "", "Otro vértice/Borrar:", "",
                                "Otro vértice/Borrar/Cerrar:", ""}));
    EXPECT_EQ(d->vertices,
              CadenaPuntos({P(100, 100, 0), P(150, 100, 0), P(150, 150, 0), P(350, 150, 0),
                            P(350, 100, 0), P(390, 100, 0), P(390, 200, 0), P(500, 200, 0)}));
    EXPECT_EQ(s.dibujo.entidades, std::vector<cad::Entidad*>({d}));
    EXPECT_TRUE(s.editor->listaOpciones().empty());
}

}  // namespace
