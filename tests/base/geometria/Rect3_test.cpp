#include <limits>

#include <gtest/gtest.h>

#include "base/geometria/Rect3.h"

using R = cad::Rect3<double>;
using P = cad::Punto3<double>;

// The default box is empty; a zero-size box is valid; a NaN on any one axis, in minimo or
// maximo, makes the box invalid.
TEST(Rect3, ValidezYNaN)
{
    EXPECT_FALSE(R().esValido());
    EXPECT_TRUE(R(P(1, 1, 1), P(1, 1, 1)).esValido());
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(R(P(0, 0, 0), P(1, 1, nan)).esValido());
    EXPECT_FALSE(R(P(nan, 0, 0), P(1, 1, 1)).esValido());
    EXPECT_FALSE(R(P(0, 0, 0), P(1, nan, 1)).esValido());
}

// The first amplia on an empty box gives a zero-size box at the point, not one reaching back
// to the origin; later points grow each axis independently. A box invalid on one axis only
// is replaced too.
TEST(Rect3, AmpliaDesdeVacio)
{
    R caja;
    caja.amplia(P(5, 6, 7));
    EXPECT_EQ(caja, R(P(5, 6, 7), P(5, 6, 7)));
    caja.amplia(P(1, 9, 7));
    EXPECT_EQ(caja, R(P(1, 6, 7), P(5, 9, 7)));
    EXPECT_EQ(caja.centro(), P(3, 7.5, 7));
    R torcida(P(0, 0, 0), P(10, 10, -1));
    torcida.amplia(P(20, 20, 20));
    EXPECT_EQ(torcida, R(P(20, 20, 20), P(20, 20, 20)));
}
