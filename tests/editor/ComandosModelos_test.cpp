// Commands on whole models, played as a user's sessions seen from above: contour lines of a
// mesh object and of a polyface, a hole cut by a polyline, and the union of two models, each
// with its prompts and its undo.
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "entidades/Objeto3D.h"
#include "entidades/Policara.h"
#include "entidades/Polilinea.h"
#include "soporte/ComprobadorMalla.h"
#include "soporte/GuionSesion.h"
#include "soporte/MallasPrueba.h"

namespace
{

using cad::Entidad;
using cad::Modelo3D;
using cad::Objeto3D;
using cad::Polilinea;
using cad::prueba::GuionSesion;
using cad::prueba::imagenDe;
using cad::prueba::SesionEditor;
using P = cad::Punto3<double>;
using Textos = std::vector<std::string>;

const char* const kEntidad = "Seleccione una entidad:";
const char* const kIncremento = "Incremento de cota de las isolineas";

// A 4 x 4 grid of 100-unit quads from (100, 100), its middle vertex 90 high.
Modelo3D* pico()
{
    auto* m = new Modelo3D();
    cad::prueba::cuadricula(*m, 4, 4);
    for (cad::vertice_t& v : m->vertices())
    {
        const bool centro = v.punto.x == 2 && v.punto.y == 2;
        v.punto = P(100 + 100 * v.punto.x, 100 + 100 * v.punto.y, centro ? 90 : 0);
    }
    return m;
}

std::vector<Polilinea*> polilineas(SesionEditor& s)
{
    std::vector<Polilinea*> out;
    for (Entidad* e : s.dibujo.entidades)
    {
        if (auto* p = dynamic_cast<Polilinea*>(e))
        {
            out.push_back(p);
        }
    }
    return out;
}

// The increment is asked again until above 0 and large enough for at most 100,000 levels over
// the entity's diagonal; each level is one closed ring around the peak, flat at its height,
// the master levels first, and each an undo step of its own. A polyface of the same faces
// gives the same rings.
TEST(ComandoIsolineas, anillosDelPicoConIncrementoValidadoYDeshacer)
{
    std::vector<std::vector<P>> anillos;
    for (const bool soup : {false, true})
    {
        SesionEditor s;
        std::unique_ptr<Modelo3D> m(pico());
        if (soup)
        {
            auto* pc = new cad::Policara();
            for (const cad::vertice_t& v : m->vertices())
            {
                pc->puntos.push_back(v.punto);
            }
            std::vector<int32_t> ciclo;
            for (int32_t f = 0; f < static_cast<int32_t>(m->caras().size()); ++f)
            {
                m->getVerticesCara(f, ciclo);
                pc->cuadrilateros.push_back(static_cast<int32_t>(pc->esquinas.size()));
                for (const int32_t v : ciclo)
                {
                    cad::esquina_t e;
                    e.indice = v;
                    pc->esquinas.push_back(e);
                }
            }
            s.editor->nuevaEntidad(pc);
        }
        else
        {
            s.editor->nuevaEntidad(new Objeto3D(m.release()));
        }
        s.pinta();
        const size_t pasos = s.editor->comandosDeshacer.size();
        int n = 0;
        {
            GuionSesion g(*s.editor, s.pantalla);
            g.clicEn({100, 150, 0}).escribe("0").escribe("0.001").escribe("20");
            n = s.editor->comandoIsolineas();
        }
        EXPECT_EQ(
            s.prompts(),
            Textos({kEntidad, kIncremento, "El incremento debe ser mayor que 0", kIncremento,
                    "Demasiados niveles: el incremento debe ser al menos 0.005728", kIncremento}));
        const std::vector<Polilinea*> curvas = polilineas(s);
        // Levels every 20 from the sweep's start, 45 - 286.4 = -241.4: levels 13 to 16
        // cross (0, 90], level 15 a master one.
        ASSERT_EQ(n, 4);
        ASSERT_EQ(curvas.size(), 4U);
        std::vector<double> alturas;
        for (const Polilinea* p : curvas)
        {
            EXPECT_TRUE(p->esCerrada());
            // On the four sides from the peak to its neighbours.
            ASSERT_EQ(p->vertices.size(), 4U);
            for (const P& q : p->vertices)
            {
                EXPECT_EQ(q.z, p->vertices[0].z);
            }
            alturas.push_back(p->vertices[0].z);
            if (soup)
            {
                EXPECT_EQ(p->vertices, anillos[alturas.size() - 1]);
            }
            else
            {
                anillos.push_back(p->vertices);
            }
        }
        // The master level first, then the others in rising order.
        EXPECT_NEAR(alturas[0], 58.6, 0.01);
        EXPECT_LT(alturas[1], alturas[2]);
        EXPECT_LT(alturas[2], alturas[3]);
        EXPECT_EQ(s.editor->comandosDeshacer.size(), pasos + 4);
        s.editor->deshacer();
        EXPECT_EQ(polilineas(s).size(), 3U);
    }
    // Refusing the increment makes nothing.
    SesionEditor s;
    s.editor->nuevaEntidad(new Objeto3D(pico()));
    s.pinta();
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({100, 150, 0}).cancela();
        EXPECT_EQ(s.editor->comandoIsolineas(), -1);
    }
    EXPECT_TRUE(polilineas(s).empty());
}

// An open polyline is passed over; the closed one cuts a keyhole into the picked face; undo
// gives the records back and redo the hole.
TEST(ComandoHuecoPolilinea, polilineaCerradaCortaLaCaraYSeDeshace)
{
    SesionEditor s;
    auto* m = new Modelo3D();
    cad::prueba::cuadricula(*m, 1, 1);
    for (cad::vertice_t& v : m->vertices())
    {
        v.punto = P(100 + 300 * v.punto.x, 100 + 300 * v.punto.y, 0);
    }
    auto* o = new Objeto3D(m);
    s.editor->nuevaEntidad(o);
    const P abierta[] = {P(500, 150, 0), P(600, 150, 0)};
    s.editor->nuevaEntidad(new Polilinea(2, abierta));
    const P cuadro[] = {P(200, 200, 0), P(300, 200, 0), P(300, 300, 0), P(200, 300, 0)};
    auto* hueco = new Polilinea(4, cuadro);
    hueco->cerrada = true;
    s.editor->nuevaEntidad(hueco);
    s.pinta();
    const auto antes = imagenDe(*o->modelo);
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({100, 250, 0}).clicEn({550, 150, 0}).clicEn({250, 200, 0}).clicEn({250, 250, 0});
        EXPECT_TRUE(s.editor->comandoHuecoPolilinea());
    }
    EXPECT_EQ(s.prompts(),
              Textos({kEntidad, "Seleccione una polilinea cerrada:",
                      "Seleccione una polilinea cerrada:", "Seleccione cara caliente:"}));
    EXPECT_TRUE(cad::mallaSana(*o->modelo));
    std::vector<int32_t> ciclo;
    o->modelo->getVerticesCara(1, ciclo);
    EXPECT_EQ(ciclo.size(), 10U);
    EXPECT_EQ(hueco->estado & (cad::kEstadoSeleccionada | cad::kEstadoResaltada), 0U);
    const auto despues = imagenDe(*o->modelo);
    s.editor->deshacer();
    EXPECT_EQ(imagenDe(*o->modelo), antes);
    s.editor->rehacer();
    EXPECT_EQ(imagenDe(*o->modelo), despues);
}

// Two cubes become one object holding both; the sources go, each deletion and the insertion
// an undo step, so three undos give back the two cubes.
TEST(UneModelos, dosObjetosEnUnoYDeshacerLosDevuelve)
{
    SesionEditor s;
    Objeto3D* cubos[2];
    for (int k = 0; k < 2; ++k)
    {
        auto* m = new Modelo3D();
        cad::prueba::cubo(*m);
        for (cad::vertice_t& v : m->vertices())
        {
            v.punto = P(100 + 300 * k + 100 * v.punto.x, 100 + 100 * v.punto.y, 100 * v.punto.z);
        }
        cubos[k] = new Objeto3D(m);
        s.editor->nuevaEntidad(cubos[k]);
    }
    s.pinta();
    {
        GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({100, 150, 0}).clicEn({100, 150, 0}).clicEn({400, 150, 0});
        EXPECT_TRUE(s.editor->uneModelos());
    }
    // The second click on the first cube hits nothing that can be taken: the wait goes on.
    EXPECT_EQ(s.prompts(), Textos({"Selecciona el modelo 1", "Selecciona el modelo 2"}));
    ASSERT_EQ(s.dibujo.entidades.size(), 1U);
    auto* union_ = dynamic_cast<Objeto3D*>(s.dibujo.entidades[0]);
    ASSERT_NE(union_, nullptr);
    // Closed skins: nothing moved, the second cube's vertices follow the first's.
    EXPECT_EQ(union_->modelo->vertices().size(), 16U);
    EXPECT_EQ(union_->modelo->getVertice(9).punto, P(500, 100, 0));
    for (int k = 0; k < 3; ++k)
    {
        s.editor->deshacer();
    }
    ASSERT_EQ(s.dibujo.entidades.size(), 2U);
    EXPECT_TRUE(s.dibujo.contieneEntidad(cubos[0]));
    EXPECT_TRUE(s.dibujo.contieneEntidad(cubos[1]));
}

}  // namespace
