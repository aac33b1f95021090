#include <cmath>

#include <gtest/gtest.h>

#include "base/geometria/Punto3.h"
#include "base/geometria/Vector3D.h"

using cad::Vector3D;

// unit() of the zero vector is the zero vector, not NaNs; otherwise each component is divided
// by the modulus (3-4-12 gives exact 13). cross is right-handed (z x x = y).
TEST(Vector3D, UnitarioDelCeroYExacto)
{
    const Vector3D<double> cero = Vector3D<double>().unit();
    EXPECT_EQ(cero, Vector3D<double>(0, 0, 0));
    EXPECT_FALSE(std::isnan(cero.x));
    const Vector3D<double> v(3, 4, 12);
    EXPECT_EQ(v.modulo(), 13.0);
    EXPECT_EQ(v.unit(), Vector3D<double>(3.0 / 13, 4.0 / 13, 12.0 / 13));
    EXPECT_EQ(Vector3D<double>(0, 0, 1).cross({1, 0, 0}), Vector3D<double>(0, 1, 0));
}

// Float vectors compute in double and narrow the result: (1+e)^2 - (1+2e) with e = 2^-12 is
// 2^-24 in double but 0 in float arithmetic, for both cross and dot.
TEST(Vector3D, FloatCalculaEnDouble)
{
    const float e = std::ldexp(1.0f, -12);
    const Vector3D<float> a(0, 1 + e, 1 + 2 * e);
    const Vector3D<float> b(0, 1, 1 + e);
    EXPECT_EQ(a.cross(b).x, std::ldexp(1.0f, -24));
    const Vector3D<float> c(1 + e, 1 + 2 * e, 0);
    EXPECT_EQ(c.dot({1 + e, -1, 0}), std::ldexp(1.0f, -24));
}

// normaliza() works in place, leaves a zero vector unchanged, and narrows construction from
// double data component by component.
TEST(Vector3D, FloatNormaliza)
{
    Vector3D<float> v(Vector3D<double>(0.0, 3.0, 4.0));
    v.normaliza();
    EXPECT_EQ(v, Vector3D<float>(0.0f, 0.6f, 0.8f));
    Vector3D<float> cero;
    EXPECT_EQ(cero.normaliza(), Vector3D<float>());
    EXPECT_EQ(Vector3D<float>(cad::Punto3<double>(0.1, 0.2, 0.3)).z, 0.3f);
}
