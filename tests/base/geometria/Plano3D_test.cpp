#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "base/geometria/Plano3D.h"

using cad::Linea3D;
using cad::Plano3D;
using P = cad::Punto3<double>;
using V = cad::Vector3D<double>;

// Built from a point and a normal, the plane keeps the normal as given and d = -(n . p);
// normal() is the unit normal.
TEST(Plano3D, DesdePuntoYNormalSinNormalizar)
{
    const Plano3D<double> pl(P(1, 2, 3), V(0, 0, 2));
    EXPECT_EQ(pl, Plano3D<double>(0, 0, 2, -6));
    EXPECT_EQ(pl.normal(), V(0, 0, 1));
}

// The line is infinite: a hit beyond extremo and one behind origen are both found.
TEST(Plano3D, InterseccionNoAcotaT)
{
    const Plano3D<double> pl(0, 0, 2, -6);  // z = 3
    P punto;
    ASSERT_TRUE(pl.interseccionLineaPlano(Linea3D<double>(P(1, 2, 0), P(1, 2, 1)), punto));
    EXPECT_EQ(punto, P(1, 2, 3));
    ASSERT_TRUE(pl.interseccionLineaPlano(Linea3D<double>(P(5, 5, 10), V(1, 0, 2)), punto));
    EXPECT_EQ(punto, P(1.5, 5, 3));
}

// Parallel and NaN cases return false and leave punto exactly as it was. The threshold is
// on the raw product: den == 1e-07 is rejected, the next double up is accepted, and a line
// perpendicular to a plane with a short normal is "parallel" unless its vector is long.
TEST(Plano3D, UmbralSobreElProductoCrudo)
{
    P punto(7, 8, 9);
    const Plano3D<double> pl(0, 0, 1, -1);  // z = 1
    const P o(0, 0, 0);  // from the origin, extremo - origen is exactly the vector given
    EXPECT_FALSE(pl.interseccionLineaPlano(Linea3D<double>(o, V(1, 1, 0)), punto));
    EXPECT_FALSE(pl.interseccionLineaPlano(Linea3D<double>(o, V(0, 0, 1e-07)), punto));
    EXPECT_EQ(punto, P(7, 8, 9));
    const V arriba(0, 0, std::nextafter(1e-07, 1.0));
    EXPECT_TRUE(pl.interseccionLineaPlano(Linea3D<double>(o, arriba), punto));
    EXPECT_NEAR(punto.z, 1.0, 1e-12);

    punto = P(7, 8, 9);
    const Plano3D<double> corto(0, 0, 1e-4, 0);
    EXPECT_FALSE(corto.interseccionLineaPlano(Linea3D<double>(P(0, 0, 1), V(0, 0, 1e-4)), punto));
    EXPECT_EQ(punto, P(7, 8, 9));
    EXPECT_TRUE(corto.interseccionLineaPlano(Linea3D<double>(P(0, 0, 1), V(0, 0, 1)), punto));

    const double nan = std::numeric_limits<double>::quiet_NaN();
    punto = P(7, 8, 9);
    EXPECT_FALSE(Plano3D<double>(nan, 0, 1, 0)
                     .interseccionLineaPlano(Linea3D<double>(P(0, 0, 1), V(0, 0, 1)), punto));
    EXPECT_EQ(punto, P(7, 8, 9));
}

// The numerator is summed as a ox + d + b oy + c oz: with a ox = 1e16 and d = -1e16 they
// cancel first, so b oy = 1 survives; summing d last would lose it and give z = 0.
TEST(Plano3D, OrdenDelNumerador)
{
    const Plano3D<double> pl(1, 1, 1, -1e16);
    P punto;
    ASSERT_TRUE(pl.interseccionLineaPlano(Linea3D<double>(P(1e16, 1, 0), V(0, 0, 1)), punto));
    EXPECT_EQ(punto, P(1e16, 1, -1));
}

// proyecta drops the perpendicular along the unit normal, so a short (a, b, c) of 2^-14 still
// projects; a plane without a usable normal (all zero, or whose length is under the
// threshold) projects every point to the origin.
TEST(Plano3D, Proyecta)
{
    EXPECT_EQ(Plano3D<double>(0, 0, 2, -6).proyecta(P(1, 2, 5)), P(1, 2, 3));
    const double e = std::ldexp(1.0, -14);
    EXPECT_EQ(Plano3D<double>(0, 0, e, -3 * e).proyecta(P(1, 2, 5)), P(1, 2, 3));
    EXPECT_EQ(Plano3D<double>().proyecta(P(1, 2, 5)), P(0, 0, 0));
    EXPECT_EQ(Plano3D<double>(0, 0, 1e-8, -1e-8).proyecta(P(1, 2, 5)), P(0, 0, 0));
}
