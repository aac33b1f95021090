#include <gtest/gtest.h>

#include "base/geometria/SistemaLocal3D.h"

using S = cad::SistemaLocal3D<double>;
using M = cad::Matriz4<double>;
using P = cad::Punto3<double>;
using V = cad::Vector3D<double>;

// The default frame is the global one: unit axes and identity matrices.
TEST(SistemaLocal3D, PorDefectoGlobal)
{
    const S s;
    EXPECT_EQ(s.getEjeY(), V(0, 1, 0));
    EXPECT_EQ(s.getMatrizALocal(), M());
    EXPECT_EQ(s.getMatrizAGlobal(), M());
}

// setVectoresXYZ stores unit axes, puts them in the rows of matrizRotacion, and builds
// matrizALocal = R * T(-o) and matrizAGlobal = T(o) * R^T around the current origin: here a
// frame turned a quarter about z and moved to (10, 20, 30).
TEST(SistemaLocal3D, MatricesDesdeEjes)
{
    S s;
    s.setOrigen({10, 20, 30});
    s.setVectoresXYZ({0, 2, 0}, {-3, 0, 0}, {0, 0, 5});
    EXPECT_EQ(s.getEjeX(), V(0, 1, 0));
    EXPECT_EQ(s.getMatrizRotacion(),
              M::desdeFilas({0, 1, 0, 0}, {-1, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}));
    EXPECT_EQ(s.getMatrizALocal(),
              M::desdeFilas({0, 1, 0, -20}, {-1, 0, 0, 10}, {0, 0, 1, -30}, {0, 0, 0, 1}));
    EXPECT_EQ(s.getMatrizAGlobal(),
              M::desdeFilas({0, -1, 0, 10}, {1, 0, 0, 20}, {0, 0, 1, 30}, {0, 0, 0, 1}));
    EXPECT_EQ(s.getMatrizALocal() * P(10, 22, 30), P(2, 0, 0));
    EXPECT_EQ(s.getMatrizAGlobal() * P(2, 0, 0), P(10, 22, 30));
}

// setOrigen rebuilds both translation matrices with the rotation unchanged; the axes are
// not made orthogonal, only unit.
TEST(SistemaLocal3D, SetOrigenConservaRotacion)
{
    S s;
    s.setVectoresXYZ({0, 2, 0}, {-3, 0, 0}, {0, 3, 4});
    const M rot = s.getMatrizRotacion();
    EXPECT_EQ(s.getEjeZ(), V(0, 0.6, 0.8));
    s.setOrigen({1, 1, 1});
    EXPECT_EQ(s.getMatrizRotacion(), rot);
    EXPECT_EQ(s.getMatrizALocal(), rot * M::traslacion({-1, -1, -1}));
    EXPECT_EQ(s.getMatrizAGlobal(), M::traslacion({1, 1, 1}) * rot.transpuesta());
}
