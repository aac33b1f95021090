#include <gtest/gtest.h>

#include "base/geometria/Polilinea3D.h"

using cad::Polilinea3D;
using P = cad::Punto3<double>;

// Edge counts: empty gives 0 open or closed; one vertex gives 0 open but 1 closed; n vertices
// give n - 1 open and n closed.
TEST(Polilinea3D, NumeroAristas)
{
    EXPECT_EQ(Polilinea3D<double>({}, false).numeroAristas(), 0);
    EXPECT_EQ(Polilinea3D<double>({}, true).numeroAristas(), 0);
    EXPECT_EQ(Polilinea3D<double>({P(1, 1, 1)}, false).numeroAristas(), 0);
    EXPECT_EQ(Polilinea3D<double>({P(1, 1, 1)}, true).numeroAristas(), 1);
    const std::vector<P> tres{P(0, 0, 0), P(1, 0, 0), P(1, 1, 0)};
    EXPECT_EQ(Polilinea3D<double>(tres, false).numeroAristas(), 2);
    EXPECT_EQ(Polilinea3D<double>(tres, true).numeroAristas(), 3);
}

// The last edge of a closed polyline wraps round to vertex 0 with no stored duplicate; a
// closed single vertex has one edge onto itself, of length 0.
TEST(Polilinea3D, AristaCierraSinDuplicado)
{
    const Polilinea3D<double> tri({P(0, 0, 0), P(1, 0, 0), P(1, 1, 0)}, true);
    EXPECT_EQ(tri.arista(2), std::make_pair(P(1, 1, 0), P(0, 0, 0)));
    const Polilinea3D<double> uno({P(4, 5, 6)}, true);
    EXPECT_EQ(uno.arista(0), std::make_pair(P(4, 5, 6), P(4, 5, 6)));
    EXPECT_EQ(uno.longitud(), 0.0);
}

// longitud sums exactly numeroAristas edges: the closing edge counts only when closed, and an
// empty polyline has length 0.
TEST(Polilinea3D, LongitudSegunCierre)
{
    Polilinea3D<double> cuadrado({P(0, 0, 0), P(2, 0, 0), P(2, 2, 0), P(0, 2, 0)});
    EXPECT_EQ(cuadrado.longitud(), 6.0);
    cuadrado.cerrada = true;
    EXPECT_EQ(cuadrado.longitud(), 8.0);
    EXPECT_EQ(Polilinea3D<double>().longitud(), 0.0);
}
