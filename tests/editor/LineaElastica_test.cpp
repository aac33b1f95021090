// The rubber band: its registration with the editor, and the exact display calls and
// labels that each kind of preview sends.
#include "editor/LineaElastica.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::Dibujo;
using cad::EditorDibujo;
using cad::LineaElastica;
using cad::primitiva_t;
using cad::Punto3;
using Lineas = std::vector<std::string>;

constexpr double kPi = 3.14159265358979323846;

class LineaElasticaTest : public ::testing::Test
{
protected:
    LineaElasticaTest()
    {
        dibujo.nuevoDocumento();
        editor = std::make_unique<EditorDibujo>(&dibujo, &pantalla);
    }

    // A band with its anchors and the cursor on `movil`, painted onto a clean recording.
    void pinta(LineaElastica& banda, const std::vector<Punto3<double>>& anclas,
               const Punto3<double>& movil)
    {
        for (const auto& a : anclas)
        {
            banda.nuevaAncla(a);
        }
        banda.cursor.plano = movil;
        banda.color = 0xFF00FF00;
        pantalla.llamadas.clear();
        pantalla.escena.clear();
        banda.dibuja(pantalla);
    }

    std::vector<primitiva_t> primitivas(primitiva_t::tipo_primitiva tipo) const
    {
        std::vector<primitiva_t> r;
        for (const auto& p : pantalla.escena)
        {
            if (p.tipo == tipo)
            {
                r.push_back(p);
            }
        }
        return r;
    }

    Dibujo dibujo;
    cad::prueba::PantallaGrabadora pantalla;
    std::unique_ptr<EditorDibujo> editor;
};

// The editor always names the band made last; destroying an older band must not clear a
// newer one's place. An anchor added from the host's thread waits for a paint pass in
// progress, which holds the editor's lock.
TEST_F(LineaElasticaTest, registroYAnclasBajoElCerrojo)
{
    auto vieja = std::make_unique<LineaElastica>(editor.get(), 1);
    EXPECT_EQ(editor->lineaElastica, vieja.get());
    auto nueva = std::make_unique<LineaElastica>(editor.get(), 3);
    EXPECT_EQ(editor->lineaElastica, nueva.get());
    vieja.reset();
    EXPECT_EQ(editor->lineaElastica, nueva.get());

    std::unique_lock<std::recursive_mutex> pintando(editor->seccionCritica);
    auto ancla = std::async(std::launch::async, [&] { nueva->nuevaAncla({1, 2, 3}); });
    EXPECT_EQ(ancla.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    pintando.unlock();
    ancla.get();
    ASSERT_EQ(nueva->anclas.size(), 1U);

    nueva->quitaUltimaAncla();
    nueva->quitaUltimaAncla();  // on an empty list: nothing
    EXPECT_TRUE(nueva->anclas.empty());
    nueva.reset();
    EXPECT_EQ(editor->lineaElastica, nullptr);
}

// Without anchors the band sends nothing at all, not even the width changes. Kind 1 over a
// 3-4-5 segment: solid pattern and the band's width first, the line from the last anchor,
// the length at the middle with bottom-centre alignment, and width 1 restored.
TEST_F(LineaElasticaTest, sinAnclasNadaYLineaConEtiqueta)
{
    LineaElastica banda(editor.get(), 1);
    banda.nuevaAncla({0, 0, 0});
    banda.vaciaAnclas();
    pinta(banda, {}, {4, 3, 0});
    EXPECT_TRUE(pantalla.llamadas.empty());
    pinta(banda, {{9, 9, 9}, {1, 1, 0}}, {4, 5, 0});
    EXPECT_EQ(pantalla.llamadas,
              (Lineas{"setModoLinea FFFF", "setGrosor 2",
                      "dibujaPolilinea 2 abierta (1,1,0) (4,5,0) FF00FF00 null",
                      "dibujaTexto (2.5,3,0) \"5.000\" FF00FF00 null", "setGrosor 1"}));
    const auto textos = primitivas(primitiva_t::kTexto);
    ASSERT_EQ(textos.size(), 1U);
    EXPECT_EQ(textos[0].alineacion, 1);
    EXPECT_EQ(textos[0].fuente, "Arial");
    EXPECT_FLOAT_EQ(textos[0].altura, 14.0F);
    EXPECT_FLOAT_EQ(textos[0].rotacion, static_cast<float>(std::atan2(4.0, 3.0)));
    EXPECT_FLOAT_EQ(textos[0].grosor, 2.0F);
}

// The moving end is the snapped point over the plane point, and `origen` over both; the
// label takes the band's own format and height.
TEST_F(LineaElasticaTest, extremoMovilYFormato)
{
    LineaElastica banda(editor.get(), 1);
    banda.cursor.referencia = {0, 2, 0};
    std::snprintf(banda.formato, sizeof banda.formato, "%%0.1lf m");
    pinta(banda, {{0, 0, 0}}, {7, 7, 7});
    EXPECT_EQ(pantalla.llamadasDe("dibuja"),
              (Lineas{"dibujaPolilinea 2 abierta (0,0,0) (0,2,0) FF00FF00 null",
                      "dibujaTexto (0,1,0) \"2.0 m\" FF00FF00 null"}));

    banda.usaOrigen = true;
    banda.origen = {0, 0, 6};
    banda.grosor = 3.5F;
    pantalla.llamadas.clear();
    banda.dibuja(pantalla);
    EXPECT_EQ(pantalla.llamadas,
              (Lineas{"setModoLinea FFFF", "setGrosor 3.5",
                      "dibujaPolilinea 2 abierta (0,0,0) (0,0,6) FF00FF00 null",
                      "dibujaTexto (0,0,3) \"6.0 m\" FF00FF00 null", "setGrosor 1"}));
}

// Labels turn with the segment as the screen shows it, folded so they read left to right.
// The projection here squeezes x and y differently (an 800 x 600 window), so a diagonal
// must still come out at 45 degrees, drawn either way.
TEST_F(LineaElasticaTest, etiquetaSeLeeDeIzquierdaADerecha)
{
    LineaElastica banda(editor.get(), 1);
    banda.proyeccion(0, 0) = 2.0 / 800.0;
    banda.proyeccion(1, 1) = 2.0 / 600.0;
    const std::vector<Punto3<double>> extremos[] = {
        {{0, 0, 0}, {10, 10, 0}}, {{10, 10, 0}, {0, 0, 0}}, {{0, 10, 0}, {0, 0, 0}}};
    const float esperado[] = {static_cast<float>(kPi / 4), static_cast<float>(kPi / 4),
                              static_cast<float>(kPi / 2)};
    for (int i = 0; i < 3; ++i)
    {
        pantalla.escena.clear();
        banda.etiquetaLongitud(pantalla, extremos[i][0], extremos[i][1], 6);
        const auto textos = primitivas(primitiva_t::kTexto);
        ASSERT_EQ(textos.size(), 1U);
        EXPECT_FLOAT_EQ(textos[0].rotacion, esperado[i]) << i;
        EXPECT_EQ(textos[0].alineacion, 6);
    }
}

// Two-sided kinds: kind 2 labels its sides with marks 6 then 4, and the triangle adds its
// fixed side with mark 1.
TEST_F(LineaElasticaTest, marcasDeLasEtiquetas)
{
    LineaElastica dos(editor.get(), 2);
    pinta(dos, {{0, 0, 0}, {8, 0, 0}}, {4, 3, 0});
    EXPECT_EQ(pantalla.llamadasDe("dibujaPolilinea"),
              (Lineas{"dibujaPolilinea 2 abierta (0,0,0) (4,3,0) FF00FF00 null",
                      "dibujaPolilinea 2 abierta (8,0,0) (4,3,0) FF00FF00 null"}));
    std::vector<int> marcas;
    for (const auto& t : primitivas(primitiva_t::kTexto))
    {
        marcas.push_back(t.alineacion);
    }
    EXPECT_EQ(marcas, (std::vector<int>{6, 4}));

    LineaElastica triangulo(editor.get(), 5);
    pinta(triangulo, {{0, 0, 0}, {8, 0, 0}}, {4, 3, 0});
    EXPECT_EQ(pantalla.llamadasDe("dibuja"),
              (Lineas{"dibujaPolilinea 3 cerrada (0,0,0) (8,0,0) (4,3,0) FF00FF00 null",
                      "dibujaTexto (2,1.5,0) \"5.000\" FF00FF00 null",
                      "dibujaTexto (6,1.5,0) \"5.000\" FF00FF00 null",
                      "dibujaTexto (4,0,0) \"8.000\" FF00FF00 null"}));
}

// Shapes without labels: the parallelogram closes on the moving end carried back along the
// first side; an extrusion moves the anchors by the vector from the last anchor to the
// moving end; local axes go through anchor 1.
TEST_F(LineaElasticaTest, formasDeVariasAnclas)
{
    LineaElastica cara(editor.get(), 6);
    pinta(cara, {{0, 0, 0}, {4, 0, 0}}, {5, 3, 0});
    EXPECT_EQ(pantalla.llamadasDe("dibuja"),
              Lineas{"dibujaPolilinea 4 cerrada (0,0,0) (4,0,0) (5,3,0) (1,3,0) FF00FF00 null"});

    LineaElastica extrusion(editor.get(), 12);
    pinta(extrusion, {{0, 0, 0}, {10, 0, 0}, {10, 5, 0}}, {10, 5, 2});
    EXPECT_EQ(pantalla.llamadasDe("dibuja"),
              Lineas{"dibujaPolilinea 3 cerrada (0,0,2) (10,0,2) (10,5,2) FF00FF00 null"});

    LineaElastica ejes(editor.get(), 13);
    pinta(ejes, {{0, 0, 0}, {1, 0, 0}}, {0, 1, 0});
    EXPECT_EQ(pantalla.llamadasDe("dibuja"),
              Lineas{"dibujaPolilinea 3 abierta (0,0,0) (1,0,0) (0,1,0) FF00FF00 null"});
}

// Kind 9: a closed 32-point polyline whose points all lie at the radius, starting on +x at
// the anchor's height, plus the radius label.
TEST_F(LineaElasticaTest, circuloDe32Puntos)
{
    LineaElastica banda(editor.get(), 9);
    pinta(banda, {{1, 2, 3}}, {4, 6, 3});
    const auto polilineas = primitivas(primitiva_t::kPolilinea);
    ASSERT_EQ(polilineas.size(), 1U);
    EXPECT_TRUE(polilineas[0].cerrada);
    ASSERT_EQ(polilineas[0].puntos.size(), 32U);
    for (const auto& p : polilineas[0].puntos)
    {
        EXPECT_NEAR(std::hypot(p.x - 1, p.y - 2), 5.0, 1e-9);
        EXPECT_EQ(p.z, 3.0);
    }
    EXPECT_NEAR(polilineas[0].puntos[8].x, 1.0, 1e-9);  // a quarter turn
    EXPECT_NEAR(polilineas[0].puntos[8].y, 7.0, 1e-9);
    EXPECT_EQ(pantalla.llamadasDe("dibujaTexto"),
              Lineas{"dibujaTexto (2.5,4,3) \"5.000\" FF00FF00 null"});
}

// A pixel band ignores the cursor's drawing points and spans the anchor and the cursor
// pixel with four separate sides.
TEST_F(LineaElasticaTest, ventanaEnPixeles)
{
    LineaElastica banda(editor.get(), 10, true);
    banda.cursor.x = 110;
    banda.cursor.y = 70;
    pinta(banda, {{10, 20, 0}}, {999, 999, 999});
    EXPECT_EQ(pantalla.llamadasDe("dibuja"),
              (Lineas{"dibujaPolilinea 2 abierta (10,20,0) (110,20,0) FF00FF00 null",
                      "dibujaPolilinea 2 abierta (110,20,0) (110,70,0) FF00FF00 null",
                      "dibujaPolilinea 2 abierta (110,70,0) (10,70,0) FF00FF00 null",
                      "dibujaPolilinea 2 abierta (10,70,0) (10,20,0) FF00FF00 null"}));
}

// Kind 7: one anchor gives the plan rectangle; two give the box, 12 edges between the
// anchors' height and the moving end's.
TEST_F(LineaElasticaTest, caja)
{
    LineaElastica banda(editor.get(), 7);
    pinta(banda, {{0, 0, 1}}, {2, 3, 9});
    EXPECT_EQ(pantalla.llamadasDe("dibuja"),
              Lineas{"dibujaPolilinea 4 cerrada (0,0,1) (2,0,1) (2,3,1) (0,3,1) FF00FF00 null"});

    banda.vaciaAnclas();
    pinta(banda, {{0, 0, 1}, {2, 3, 1}}, {5, 5, 4});
    size_t aristas = 0;
    for (const auto& p : primitivas(primitiva_t::kPolilinea))
    {
        aristas += p.cerrada ? p.puntos.size() : p.puntos.size() - 1;
        for (const auto& q : p.puntos)
        {
            EXPECT_TRUE(q.z == 1.0 || q.z == 4.0) << q.z;
            EXPECT_TRUE((q.x == 0.0 || q.x == 2.0) && (q.y == 0.0 || q.y == 3.0));
        }
    }
    EXPECT_EQ(aristas, 12U);
}

// Kind 14 on a profile drawn twice as high: 10 along, 10 drawn up is a real rise of 5,
// so legs labelled 10 and 5 and "50.00%" at the moving end, hanging away from the anchor.
// Too short a run gives the sloped line alone; a zero factor is taken as the float epsilon.
TEST_F(LineaElasticaTest, pendiente)
{
    editor->setFactorVertical(2.0F);
    LineaElastica banda(editor.get(), 14);
    pinta(banda, {{0, 0, 0}}, {10, 10, 0});
    EXPECT_EQ(pantalla.llamadasDe("dibuja"),
              (Lineas{"dibujaPolilinea 2 abierta (0,0,0) (10,10,0) FF00FF00 null",
                      "dibujaPolilinea 2 abierta (0,0,0) (10,0,0) FF00FF00 null",
                      "dibujaPolilinea 2 abierta (10,0,0) (10,10,0) FF00FF00 null",
                      "dibujaTexto (5,0,0) \"10.000\" FF00FF00 null",
                      "dibujaTexto (10,5,0) \"5.000\" FF00FF00 null",
                      "dibujaTexto (10,10,0) \"50.00%\" FF00FF00 null"}));
    auto textos = primitivas(primitiva_t::kTexto);
    ASSERT_EQ(textos.size(), 3U);
    EXPECT_EQ(textos[2].alineacion, 8);
    EXPECT_EQ(textos[2].fuente, "Arial");

    banda.vaciaAnclas();
    pinta(banda, {{10, 0, 0}}, {0, 10, 0});
    EXPECT_EQ(pantalla.llamadasDe("dibujaTexto").back(),
              "dibujaTexto (0,10,0) \"-50.00%\" FF00FF00 null");
    textos = primitivas(primitiva_t::kTexto);
    EXPECT_EQ(textos.back().alineacion, 10);

    banda.vaciaAnclas();
    pinta(banda, {{0, 0, 0}}, {0.0005, 10, 0});
    EXPECT_EQ(pantalla.llamadasDe("dibuja"),
              Lineas{"dibujaPolilinea 2 abierta (0,0,0) (0.0005,10,0) FF00FF00 null"});

    editor->setFactorVertical(0.0F);
    banda.vaciaAnclas();
    pinta(banda, {{0, 0, 0}}, {1, 1, 0});
    EXPECT_EQ(pantalla.llamadasDe("dibujaTexto").back(),
              "dibujaTexto (1,1,0) \"838860800.00%\" FF00FF00 null");
}

}  // namespace
