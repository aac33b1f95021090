#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "base/geometria/Punto3.h"

using cad::Punto3;

// Equality is exact: one ulp apart in any coordinate is a different point, and invalido is
// the largest finite double on all three axes, unequal to a point that shares only two.
TEST(Punto3, IgualdadExactaEInvalido)
{
    const Punto3<double> p(1.0, 2.0, 3.0);
    EXPECT_NE(p, Punto3<double>(1.0, 2.0, std::nextafter(3.0, 4.0)));
    EXPECT_EQ(p, Punto3<double>(1.0, 2.0, 3.0));
    const double m = std::numeric_limits<double>::max();
    EXPECT_EQ(cad::invalido, Punto3<double>(m, m, m));
    EXPECT_NE(cad::invalido, Punto3<double>(m, m, 0.0));
}

// distanciaCuadrado sums x, y, z in that order; the values are chosen so that another order
// rounds differently. distancia is its square root.
TEST(Punto3, DistanciaSumaEnOrdenXYZ)
{
    const double dx = 3 * std::ldexp(1.0, -28);  // dx * dx is just over half an ulp of 1
    const Punto3<double> a(dx, dx, 1.0);
    const Punto3<double> o;
    ASSERT_NE((dx * dx + dx * dx) + 1.0, (1.0 + dx * dx) + dx * dx);
    EXPECT_EQ(a.distanciaCuadrado(o), (dx * dx + dx * dx) + 1.0);
    EXPECT_EQ(Punto3<double>(3, 4, 12).distancia(o), 13.0);
}

// puntoMedio is (a + b) * 0.5 per coordinate, which differs in the last bit from
// a + (b - a) * 0.5 for these inputs.
TEST(Punto3, PuntoMedioSumaYMitad)
{
    const double a = 0.1;
    const double b = 0.7;
    ASSERT_NE((a + b) * 0.5, a + (b - a) * 0.5);
    const auto m = Punto3<double>::puntoMedio({a, 1, -2}, {b, 3, 2});
    EXPECT_EQ(m, Punto3<double>((a + b) * 0.5, 2.0, 0.0));
}
