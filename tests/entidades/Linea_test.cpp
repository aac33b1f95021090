// Linea, what the catalogue does not cover: the writes of its "Geometría" sheet.
#include "entidades/Linea.h"

#include <gtest/gtest.h>

namespace
{

using cad::Punto3;

// Writing "Incremento" moves the end to origin + value, whatever the origin; coincident ends
// have length 0; "Longitud" is derived and refuses a write.
TEST(LineaPropiedades, IncrementoMueveElExtremo)
{
    cad::Linea l(Punto3<double>(1, 1, 1), Punto3<double>(4, 5, 1));
    cad::Prop p;
    p.x = 2;
    ASSERT_TRUE(l.setPropiedad(1, 2, p));
    EXPECT_EQ(l.extremo, Punto3<double>(3, 1, 1));
    ASSERT_TRUE(l.setPropiedad(1, 2, cad::Prop()));
    EXPECT_EQ(l.extremo, l.origen);
    ASSERT_TRUE(l.getPropiedad(1, 3, p));
    EXPECT_EQ(p.valor, "           0");
    EXPECT_FALSE(l.setPropiedad(1, 3, p));
    EXPECT_EQ(l.extremo, l.origen);
}

}  // namespace
