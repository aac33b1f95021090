#include "soporte/ComprobadorMalla.h"

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace cad
{
namespace
{

using Mensajes = std::vector<std::string>;

// Two quads written as records by hand, 0-1-4-3 and 1-2-5-4 on a 3 by 2 grid; face 1 takes
// edge 1 on its second side. Behind them what a sound mesh may also hold: a vertex with no
// edge (6), a dead edge (7) and a deleted face (2).
Modelo3D dosCuadros()
{
    Modelo3D m;
    const int32_t aristaDe[7] = {0, 4, 5, 3, 6, 6, -1};
    for (int32_t v = 0; v < 7; ++v)
    {
        m.vertices().push_back({Punto3<double>(v % 3, v / 3, 0), {}, aristaDe[v]});
    }
    // vertice[0], vertice[1], siguienteCara0, anteriorCara0, siguienteCara1, anteriorCara1,
    // cara[0], cara[1]
    const int32_t aristas[7][8] = {{0, 1, 1, 3, -1, -1, 0, -1}, {1, 4, 2, 0, 4, 6, 0, 1},
                                   {4, 3, 3, 1, -1, -1, 0, -1}, {3, 0, 0, 2, -1, -1, 0, -1},
                                   {1, 2, 5, 1, -1, -1, 1, -1}, {2, 5, 6, 4, -1, -1, 1, -1},
                                   {5, 4, 1, 5, -1, -1, 1, -1}};
    for (const auto& c : aristas)
    {
        Arista a;
        a.vertice[0] = c[0];
        a.vertice[1] = c[1];
        a.siguienteCara0 = c[2];
        a.anteriorCara0 = c[3];
        a.siguienteCara1 = c[4];
        a.anteriorCara1 = c[5];
        a.cara[0] = c[6];
        a.cara[1] = c[7];
        m.aristas().nueva(a);
    }
    m.aristas().nueva(Arista());
    for (const int32_t e : {0, 4, -1})
    {
        m.caras().push_back({e, {}, 0});
    }
    return m;
}

struct Caso
{
    const char* regla;
    std::function<void(Modelo3D&)> rompe;
    Mensajes esperados;
};

// The two faces with their dead records are sound. Each case breaks one rule once; the list
// is everything that break shows, in the order the checker goes: vertices, edges, faces,
// walks.
TEST(ComprobadorMalla, CadaReglaRotaDiceRegistroCampoYValores)
{
    EXPECT_TRUE(mallaSana(dosCuadros()));
    const std::vector<Caso> casos = {
        {"vertice fuera de rango",
         [](Modelo3D& m) { m.vertices()[2].arista = 9; },
         {"vertice 2: arista = 9, fuera de rango (8 aristas)"}},
        {"vertice en arista muerta",
         [](Modelo3D& m) { m.vertices()[0].arista = 7; },
         {"vertice 0: arista = 7, pero la arista 7 está muerta"}},
        {"vertice en arista ajena",
         [](Modelo3D& m) { m.vertices()[0].arista = 5; },
         {"vertice 0: arista = 5, pero la arista 5 (2-5) no toca el vertice 0"}},
        {"arista muerta con cara",
         [](Modelo3D& m) { m.aristas()[7].cara[1] = 0; },
         {"arista 7: cara[1] = 0, pero la arista está muerta (vertice -1, -1)"}},
        {"un solo extremo",
         [](Modelo3D& m) { m.aristas()[7].vertice[1] = 2; },
         {"arista 7: vertice[0] = -1, pero vertice[1] = 2"}},
        {"extremo fuera de rango",
         [](Modelo3D& m) { m.aristas()[0].vertice[1] = 7; },
         {"arista 0: vertice[1] = 7, fuera de rango (7 vertices)",
          "arista 0: siguienteCara0 = 1, pero la arista 1 (1-4) no comparte extremo con esta "
          "(0-7)"}},
        {"ala sin cara",
         [](Modelo3D& m) { m.aristas()[0].siguienteCara1 = 3; },
         {"arista 0: siguienteCara1 = 3, pero cara[1] = -1"}},
        {"cara fuera de rango",
         [](Modelo3D& m) { m.aristas()[4].cara[1] = 5; },
         {"arista 4: cara[1] = 5, fuera de rango (3 caras)"}},
        {"cara borrada",
         [](Modelo3D& m) { m.aristas()[4].cara[1] = 2; },
         {"arista 4: cara[1] = 2, pero la cara 2 está borrada"}},
        {"ala fuera de rango",
         [](Modelo3D& m) { m.aristas()[2].siguienteCara0 = 40; },
         {"arista 2: siguienteCara0 = 40, fuera de rango (8 aristas)",
          "arista 3: anteriorCara0 = 2, pero siguienteCara0 de la arista 2 es 40, no 3",
          "arista 0: recorrido de la cara 0, siguienteCara0 de la arista 2 = 40, fuera de rango "
          "(8 aristas)"}},
        {"ala muerta",
         [](Modelo3D& m) { m.aristas()[2].anteriorCara0 = 7; },
         {"arista 1: siguienteCara0 = 2, pero anteriorCara0 de la arista 2 es 7, no 1",
          "arista 2: anteriorCara0 = 7, pero la arista 7 está muerta"}},
        {"anterior por el segundo lado",
         [](Modelo3D& m) { m.aristas()[1].anteriorCara1 = 5; },
         {"arista 1: anteriorCara1 = 5, pero siguienteCara0 de la arista 5 es 6, no 1",
          "arista 6: siguienteCara0 = 1, pero anteriorCara1 de la arista 1 es 5, no 6"}},
        {"siguiente de otra cara",
         [](Modelo3D& m) { m.aristas()[0].siguienteCara0 = 4; },
         {"arista 0: siguienteCara0 = 4, pero la arista 4 no tiene la cara 0",
          "arista 1: anteriorCara0 = 0, pero siguienteCara0 de la arista 0 es 4, no 1",
          "arista 0: recorrido de la cara 0, siguienteCara0 de la arista 0 = 4, pero la arista "
          "4 no tiene la cara 0"}},
        {"siguiente sin extremo comun",
         [](Modelo3D& m) { m.aristas()[2].vertice[0] = 5; },
         {"arista 1: siguienteCara0 = 2, pero la arista 2 (5-3) no comparte extremo con esta "
          "(1-4)"}},
        {"recorrido sin vuelta",
         [](Modelo3D& m) { m.aristas()[3].siguienteCara0 = 1; },
         {"arista 0: anteriorCara0 = 3, pero siguienteCara0 de la arista 3 es 1, no 0",
          "arista 3: siguienteCara0 = 1, pero anteriorCara0 de la arista 1 es 0, no 3",
          "arista 3: siguienteCara0 = 1, pero la arista 1 (1-4) no comparte extremo con esta "
          "(3-0)",
          "arista 0: recorrido de la cara 0 sin volver a la arista 0 en 8 pasos"}},
        {"arista de cara fuera de rango",
         [](Modelo3D& m) { m.caras()[1].arista = 8; },
         {"cara 1: arista = 8, fuera de rango (8 aristas)"}},
        {"cara en arista muerta",
         [](Modelo3D& m) { m.caras()[1].arista = 7; },
         {"cara 1: arista = 7, pero la arista 7 está muerta"}},
        {"cara en arista ajena",
         [](Modelo3D& m) { m.caras()[1].arista = 0; },
         {"cara 1: arista = 0, pero la arista 0 no tiene la cara 1"}},
    };
    for (const Caso& caso : casos)
    {
        SCOPED_TRACE(caso.regla);
        Modelo3D m = dosCuadros();
        caso.rompe(m);
        EXPECT_EQ(defectosMalla(m), caso.esperados);
        EXPECT_FALSE(mallaSana(m));
    }
}

// The cap keeps the first messages; the failure lists them all.
TEST(ComprobadorMalla, TopeDeMensajesYTextoDelFallo)
{
    Modelo3D m = dosCuadros();
    m.aristas()[3].siguienteCara0 = 1;
    m.caras()[1].arista = 7;
    const Mensajes todos = defectosMalla(m);
    ASSERT_GT(todos.size(), 2U);
    EXPECT_EQ(defectosMalla(m, 2), Mensajes(todos.begin(), todos.begin() + 2));
    const ::testing::AssertionResult r = mallaSana(m);
    ASSERT_FALSE(r);
    for (const std::string& d : todos)
    {
        EXPECT_NE(std::string(r.message()).find(d), std::string::npos) << d;
    }
}

}  // namespace
}  // namespace cad
