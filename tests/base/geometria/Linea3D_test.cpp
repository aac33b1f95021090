#include <gtest/gtest.h>

#include "base/geometria/Linea3D.h"

using cad::Linea3D;
using P = cad::Punto3<double>;
using V = cad::Vector3D<double>;

// A point and a vector give extremo = p + v, a second point is stored as is, and
// ObtenerVector is extremo - origen without normalising.
TEST(Linea3D, PuntoYVectorFrenteADosPuntos)
{
    const Linea3D<double> porVector(P(1, 2, 3), V(0, 0, 4));
    const Linea3D<double> porPuntos(P(1, 2, 3), P(0, 0, 4));
    EXPECT_EQ(porVector.extremo, P(1, 2, 7));
    EXPECT_EQ(porPuntos.extremo, P(0, 0, 4));
    EXPECT_EQ(porVector.ObtenerVector(), V(0, 0, 4));
    EXPECT_EQ(porPuntos.ObtenerVector(), V(-1, -2, 1));
}
