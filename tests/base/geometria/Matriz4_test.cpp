#include <cmath>

#include <gtest/gtest.h>

#include "base/geometria/Matriz4.h"

using M = cad::Matriz4<double>;
using P = cad::Punto3<double>;
using V4 = cad::Vector4D<double>;

namespace
{

// A matrix whose element number n holds n, so that every layout check reads the number back.
M numerada()
{
    M m;
    for (int n = 0; n < 16; ++n)
    {
        m[n] = n;
    }
    return m;
}

}  // namespace

// Element (row r, column c) is number 4c + r, the columns are the stored vectors, and the
// default matrix is the identity.
TEST(Matriz4, DisposicionPorColumnas)
{
    const M m = numerada();
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 4; ++c)
        {
            EXPECT_EQ(m(r, c), 4 * c + r);
        }
    }
    EXPECT_EQ(m.col[2], V4(8, 9, 10, 11));
    EXPECT_EQ(M(), M({1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}));
    EXPECT_EQ(m.transpuesta()(1, 3), 7.0);
}

// A * B applies B first: translate-after-scale and scale-after-translate give different
// points.
TEST(Matriz4, ProductoAplicaPrimeroElDerecho)
{
    const M escala({2, 0, 0, 0}, {0, 2, 0, 0}, {0, 0, 2, 0}, {0, 0, 0, 1});
    const M tras = M::traslacion({1, 0, 0});
    EXPECT_EQ((tras * escala) * P(1, 1, 1), P(3, 2, 2));
    EXPECT_EQ((escala * tras) * P(1, 1, 1), P(4, 2, 2));
}

// The product with a Vector4D uses w (a direction with w = 0 ignores the translation); the
// product with a Punto3 adds column 3 and never divides by the fourth row.
TEST(Matriz4, ProductoConVectorYPunto)
{
    M m = M::traslacion({10, 20, 30});
    EXPECT_EQ(m * V4(1, 2, 3, 0), V4(1, 2, 3, 0));
    EXPECT_EQ(m * V4(1, 2, 3, 2), V4(21, 42, 63, 2));
    m(3, 3) = 4;
    m(3, 0) = 7;
    EXPECT_EQ(m * P(1, 2, 3), P(11, 22, 33));
}

// The three elementary rotations write sine and cosine at exactly these positions: X and Z
// turn the opposite way to Y (a quarter turn about Z sends x to -y, about Y x to -z).
TEST(Matriz4, RotacionesElementales)
{
    const double c = std::cos(0.3);
    const double s = std::sin(0.3);
    EXPECT_EQ(M::rotacionX(0.3),
              M::desdeFilas({1, 0, 0, 0}, {0, c, s, 0}, {0, -s, c, 0}, {0, 0, 0, 1}));
    EXPECT_EQ(M::rotacionY(0.3),
              M::desdeFilas({c, 0, s, 0}, {0, 1, 0, 0}, {-s, 0, c, 0}, {0, 0, 0, 1}));
    EXPECT_EQ(M::rotacionZ(0.3),
              M::desdeFilas({c, s, 0, 0}, {-s, c, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}));
}

// Row accessors read numbers 0/4/8, 1/5/9, 2/6/10; each row setter writes its three numbers
// plus 12, 13 or 14 and nothing else; the origin is numbers 12-14 and leaves 15 alone.
TEST(Matriz4, FilasYOrigen)
{
    M m = numerada();
    EXPECT_EQ(m.filaX(), cad::Vector3D<double>(0, 4, 8));
    EXPECT_EQ(m.filaY(), cad::Vector3D<double>(1, 5, 9));
    EXPECT_EQ(m.filaZ(), cad::Vector3D<double>(2, 6, 10));
    m.setFilaX({-1, -2, -3}, -4);
    m.setFilaY({-5, -6, -7}, -8);
    m.setFilaZ({-9, -10, -11}, -12);
    const double esperado[16] = {-1, -5, -9, 3, -2, -6, -10, 7, -3, -7, -11, 11, -4, -8, -12, 15};
    for (int n = 0; n < 16; ++n)
    {
        EXPECT_EQ(m[n], esperado[n]) << "number " << n;
    }
    EXPECT_EQ(m.getOrigen(), P(-4, -8, -12));
    m.setOrigen({1, 2, 3});
    EXPECT_EQ(m.col[3], V4(1, 2, 3, 15));
    EXPECT_EQ(M::traslacion({4, 5, 6}).getOrigen(), P(4, 5, 6));
}
