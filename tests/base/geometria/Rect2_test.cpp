#include <gtest/gtest.h>

#include "base/geometria/Rect2.h"

using R = cad::Rect2<int>;
using P = cad::Punto2<int>;

// The default rectangle (0,0)-(-1,-1) is empty; a single pixel is valid; inverting either
// axis alone makes it invalid.
TEST(Rect2, ValidezPorEje)
{
    EXPECT_FALSE(R().esValido());
    EXPECT_TRUE(R(P(3, 3), P(3, 3)).esValido());
    EXPECT_FALSE(R(P(0, 0), P(-1, 5)).esValido());
    EXPECT_FALSE(R(P(0, 0), P(5, -1)).esValido());
}
