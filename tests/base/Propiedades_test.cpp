// Tests of the property value record and the base property sheet.
#include "base/Propiedades.h"

#include <climits>
#include <locale>
#include <string>

#include <gtest/gtest.h>

namespace cad
{
namespace
{

std::string doble(double v)
{
    Prop p;
    p.asignaDoble(v);
    return p.valor;
}

// Scenario: the kind numbers shared with the host, and a freshly built Prop.
// Invariant: each kind keeps its number (14 for the layer row); no field of a new Prop is
// left uninitialised.
TEST(PropTest, NumerosDeTipoYConstructor)
{
    const int numeros[] = {TipoProp::Booleano,         TipoProp::Entero,   TipoProp::Doble,
                           TipoProp::DoblePositivo,    TipoProp::Cadena,   TipoProp::Color,
                           TipoProp::ColorCad,         TipoProp::Material, TipoProp::Enumerado,
                           TipoProp::Coordenada,       TipoProp::Vector,   TipoProp::Orientacion,
                           TipoProp::ListaCoordenadas, TipoProp::Leyenda,  TipoProp::kCapaEntidad};
    for (int i = 0; i < 15; ++i)
    {
        EXPECT_EQ(numeros[i], i);
    }
    const Prop p;
    EXPECT_EQ(p.tipo, TipoProp::Booleano);
    EXPECT_TRUE(p.nombre.empty() && p.valor.empty());
    EXPECT_TRUE(p.x == 0.0 && p.y == 0.0 && p.z == 0.0);
    EXPECT_TRUE(p.indiceColor == 0 && p.colorCapa == 0 && p.material == 0 && p.idExterno == 0);
    EXPECT_FALSE(p.soloLectura);
}

// Scenario: asignaDoble over large, small, rounding-up and tiny negative values, once with a
// global locale whose decimal point is a comma; then asignaInt.
// Invariant: three significant digits in general format right-aligned in 12 characters,
// never cut, always with '.'; asignaInt is plain decimal replacing the previous text.
TEST(PropTest, TextosDeAsignaDobleYAsignaInt)
{
    EXPECT_EQ(doble(1234.5678), "    1.23e+03");
    EXPECT_EQ(doble(1.5), "         1.5");
    EXPECT_EQ(doble(999.5), "       1e+03");
    EXPECT_EQ(doble(0.000123456), "    0.000123");
    EXPECT_EQ(doble(-1.23456e-300), "  -1.23e-300");

    struct Coma : std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
    };
    const std::locale anterior = std::locale::global(std::locale(std::locale::classic(), new Coma));
    const std::string conComa = doble(1.5);
    std::locale::global(anterior);
    EXPECT_EQ(conComa, "         1.5");

    Prop p;
    p.asignaDoble(3.0);
    p.asignaInt(-42);
    EXPECT_EQ(p.valor, "-42");
    p.asignaInt(INT_MIN);
    EXPECT_EQ(p.valor, "-2147483648");
}

// Scenario: the base sheet asked every operation through the interface.
// Invariant: one category "General" with one property; everything else returns false or 0
// and leaves its out arguments as they were.
TEST(PropiedadesTest, HojaBaseUnaCategoriaGeneral)
{
    Propiedades base;
    const Propiedades& hoja = base;
    EXPECT_EQ(hoja.numeroCategorias(), 1);
    EXPECT_EQ(hoja.nombreCategoria(0), "General");
    EXPECT_EQ(hoja.numeroPropiedadesCategoria(0), 1);
    EXPECT_EQ(hoja.nombreCategoria(1), "");
    EXPECT_EQ(hoja.numeroPropiedadesCategoria(1), 0);

    Prop p;
    p.nombre = "intacto";
    std::string texto = "intacto";
    int i = 5;
    double x = 1.0, y = 2.0, z = 3.0;
    const double xyz[3] = {7.0, 8.0, 9.0};
    EXPECT_FALSE(hoja.getPropiedad(0, 0, p));
    EXPECT_FALSE(base.setPropiedad(0, 0, p));
    EXPECT_EQ(hoja.numeroValoresEnumerados(0, 0), 0);
    EXPECT_FALSE(hoja.valorEnumerado(0, 0, 0, texto));
    EXPECT_FALSE(hoja.getEnumerado(0, 0, i));
    EXPECT_FALSE(base.setEnumerado(0, 0, 1));
    EXPECT_EQ(hoja.numeroElementosLista(0, 0), 0);
    EXPECT_FALSE(hoja.getElementoLista(0, 0, 0, x, y, z));
    EXPECT_FALSE(base.setElementoLista(0, 0, 0, xyz));
    EXPECT_EQ(p.nombre + texto, "intactointacto");
    EXPECT_EQ(i, 5);
    EXPECT_TRUE(x == 1.0 && y == 2.0 && z == 3.0);
}

}  // namespace
}  // namespace cad
