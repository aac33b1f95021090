// Joining and extending planes, played as a user's sessions seen from above: a horizontal
// plane that runs past a vertical one, which in turn hangs below the first.
#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "entidades/Linea.h"
#include "entidades/Plano.h"
#include "soporte/GuionSesion.h"

namespace
{

using cad::PantallaCAD;
using cad::Plano;
using cad::Punto3;
using cad::prueba::GuionSesion;
using cad::prueba::SesionEditor;
using P = Punto3<double>;
using Puntos = std::vector<P>;
using Textos = std::vector<std::string>;

const char* const kPrimero = "Selecciona el primer plano";
const char* const kSegundo = "Selecciona el segundo plano";

// z = 0 from x 100 to 250; x = 200 from z -50 to 150. They meet along x = 200, z = 0. A third
// plane, parallel to the first, and a line lie apart.
const Puntos kHorizontal = {{100, 100, 0}, {250, 100, 0}, {250, 200, 0}, {100, 200, 0}};
const Puntos kVertical = {{200, 100, -50}, {200, 200, -50}, {200, 200, 150}, {200, 100, 150}};
const Puntos kHorizontalHastaRecta = {{100, 100, 0}, {200, 100, 0}, {200, 200, 0}, {100, 200, 0}};

Plano* plano(SesionEditor& s, const cad::Plano3D<double>& p, const Puntos& v)
{
    auto* e = new Plano(p, static_cast<int>(v.size()), v.data());
    s.editor->nuevaEntidad(e);
    return e;
}

// One script for the whole session: each command reads exactly the steps queued before it.
// The horizontal plane is inserted last, so that an undo takes it.
struct Escena
{
    SesionEditor s;
    GuionSesion g{*s.editor, s.pantalla};
    bool linea = s.editor->nuevaEntidad(new cad::Linea(P(100, 400, 0), P(300, 400, 0)));
    Plano* paralelo =
        plano(s, {0, 0, 1, -10}, {{400, 100, 10}, {500, 100, 10}, {500, 200, 10}, {400, 200, 10}});
    Plano* vertical = plano(s, {1, 0, 0, -200}, kVertical);
    Plano* horizontal = plano(s, {0, 0, 1, 0}, kHorizontal);
    Escena()
    {
        s.pinta();
        s.dibujo.borraMarcaCambios();
    }
    // The prompts since the last call, without the cleared prompt lines. The change mark is
    // dropped too, so that each command's own mark can be told.
    Textos prompts()
    {
        Textos t = s.prompts();
        s.textos.clear();
        s.dibujo.borraMarcaCambios();
        return t;
    }
};

// une clamps each contour onto the common line, on the side away from its own bulk. The first
// plane stays highlighted during the second pick, so a second click on it is passed over; a
// pick of another kind ends the command at once.
TEST(ComandosPlanos, uneYExtiendeHastaLaRectaComunYLosRechazos)
{
    Escena e;
    e.g.clicEn({100, 150, 0}).clicEn({200, 150, 0});
    EXPECT_TRUE(e.s.editor->comandoUnePlanos());
    EXPECT_TRUE(e.s.dibujo.hayCambios());
    EXPECT_EQ(e.prompts(), Textos({kPrimero, kSegundo}));
    EXPECT_EQ(e.horizontal->contorno.vertices, kHorizontalHastaRecta);
    EXPECT_EQ(e.vertical->contorno.vertices,
              Puntos({{200, 100, 0}, {200, 200, 0}, {200, 200, 150}, {200, 100, 150}}));
    EXPECT_EQ(e.horizontal->estado & (cad::kEstadoResaltada | cad::kEstadoSeleccionada), 0U);

    Escena f;
    f.g.clicEn({100, 150, 0}).clicEn({100, 150, 0}).clic(10, 10, PantallaCAD::kBotonDerecho);
    EXPECT_FALSE(f.s.editor->comandoUnePlanos());
    EXPECT_EQ(f.prompts(), Textos({kPrimero, kSegundo}));
    EXPECT_EQ(f.horizontal->contorno.vertices, kHorizontal);
    EXPECT_EQ(f.horizontal->estado & cad::kEstadoResaltada, 0U);

    f.g.clicEn({200, 400, 0});
    EXPECT_FALSE(f.s.editor->comandoUnePlanos());
    EXPECT_FALSE(f.s.dibujo.hayCambios());
    EXPECT_EQ(f.prompts(), Textos({kPrimero}));

    // extiende changes the first plane only. Towards a parallel plane there is no line to
    // reach: the contour stays and the drawing is not marked, though both picks were given.
    f.g.clicEn({100, 150, 0}).clicEn({200, 150, 0});
    EXPECT_TRUE(f.s.editor->comandoExtiendePlanos());
    EXPECT_TRUE(f.s.dibujo.hayCambios());
    EXPECT_EQ(f.prompts(),
              Textos({"Selecciona el plano a extender", "Selecciona el plano destino"}));
    EXPECT_EQ(f.horizontal->contorno.vertices, kHorizontalHastaRecta);
    EXPECT_EQ(f.vertical->contorno.vertices, kVertical);

    f.g.clicEn({100, 150, 0}).clicEn({400, 150, 0});
    EXPECT_TRUE(f.s.editor->comandoExtiendePlanos());
    EXPECT_FALSE(f.s.dibujo.hayCambios());
    EXPECT_EQ(f.horizontal->contorno.vertices, kHorizontalHastaRecta);

    // The first plane undone from inside the second wait: the other is left alone.
    f.g.clicEn({100, 150, 0}).ejecuta([&]() { f.s.editor->deshacer(); }).clicEn({200, 150, 0});
    EXPECT_FALSE(f.s.editor->comandoUnePlanos());
    EXPECT_FALSE(f.s.dibujo.contieneEntidad(f.horizontal));
    EXPECT_EQ(f.vertical->contorno.vertices, kVertical);
}

}  // namespace
