#include "base/GeneradorId.h"

#include <vector>

#include <gtest/gtest.h>

using cad::GeneradorId;

// Ids given back are reused last-in first-out before any fresh id: after giving back 7 and
// 9 the next ids are 9, 7 and then the next fresh one.
TEST(GeneradorId, LiberadosSeReusanDelUltimoAlPrimero)
{
    GeneradorId g;
    for (int i = 1; i <= 10; ++i)
    {
        ASSERT_EQ(g.nuevoId("materiales"), i);
    }
    g.liberaId("materiales", 7);
    g.liberaId("materiales", 9);
    EXPECT_EQ(g.nuevoId("materiales"), 9);
    EXPECT_EQ(g.nuevoId("materiales"), 7);
    EXPECT_EQ(g.nuevoId("materiales"), 11);
}

// An unknown family is created by its first nuevoId, which gives 1; giving an id back to an
// unknown family neither creates it nor affects the others.
TEST(GeneradorId, FamiliaDesconocida)
{
    GeneradorId g;
    g.liberaId("otra", 3);
    EXPECT_EQ(g.contadores.count("otra"), 0u);
    EXPECT_EQ(g.nuevoId("otra"), 1);
    EXPECT_EQ(g.nuevoId("otra"), 2);
    EXPECT_EQ(g.nuevoId("materiales"), 1);
    EXPECT_EQ(g.nuevoId("otra"), 3);
}

// reinicia rebuilds a family from the ids in use: next is the highest plus one and every
// missing id below it is free, ascending, so the highest free one comes out first.
TEST(GeneradorId, ReiniciaDesdeIdsEnUso)
{
    GeneradorId g;
    g.nuevoId("materiales");
    g.liberaId("materiales", 40);
    g.reinicia("materiales", {5, 1, 2});
    const cad::contador_t& c = g.contadores.at("materiales");
    EXPECT_EQ(c.siguiente, 6);
    EXPECT_EQ(c.libres, (std::vector<int>{3, 4}));
    EXPECT_EQ(g.nuevoId("materiales"), 4);
    EXPECT_EQ(g.nuevoId("materiales"), 3);
    EXPECT_EQ(g.nuevoId("materiales"), 6);

    g.reinicia("materiales", {1});  // only the default material
    EXPECT_EQ(g.contadores.at("materiales").siguiente, 2);
    EXPECT_TRUE(g.contadores.at("materiales").libres.empty());

    g.reinicia("materiales", {3, 3});
    EXPECT_EQ(g.contadores.at("materiales").siguiente, 4);
    EXPECT_EQ(g.contadores.at("materiales").libres, (std::vector<int>{1, 2}));
}
