// The typed line parsed every way it could be meant: coordinates, a number, an option.
#include <gtest/gtest.h>

#include <string>

#include "editor/LineaComandos.h"

namespace
{

using cad::LineaComandos;
using cad::Punto3;

TEST(LineaComandosCoordenadas, dosOTresCamposSonCoordenadasValidas)
{
    LineaComandos l;
    l.introPulsado("10,20");
    EXPECT_TRUE(l.entradaRecibida);
    EXPECT_FALSE(l.entradaVacia);
    EXPECT_EQ(l.entrada, "10,20");
    EXPECT_TRUE(l.coordenadasValidas);
    EXPECT_EQ(l.coordenadas, Punto3<double>(10, 20, 0));

    l.introPulsado("1,2,3");
    EXPECT_TRUE(l.coordenadasValidas);
    EXPECT_EQ(l.coordenadas, Punto3<double>(1, 2, 3));

    // Two fields put z back to 0; words read as 0 and still count as fields.
    l.introPulsado("a,b");
    EXPECT_TRUE(l.coordenadasValidas);
    EXPECT_EQ(l.coordenadas, Punto3<double>(0, 0, 0));

    // Beyond the third, fields are ignored.
    l.introPulsado("4,5,6,7");
    EXPECT_TRUE(l.coordenadasValidas);
    EXPECT_EQ(l.coordenadas, Punto3<double>(4, 5, 6));

    // Only the comma splits: a blank after it is part of the field, a blank alone is not a
    // delimiter.
    l.introPulsado("1, 2");
    EXPECT_TRUE(l.coordenadasValidas);
    EXPECT_EQ(l.coordenadas, Punto3<double>(1, 2, 0));
    l.introPulsado("7 8");
    EXPECT_FALSE(l.coordenadasValidas);
    EXPECT_EQ(l.coordenadas.x, 7.0);
    EXPECT_EQ(l.coordenadas.y, 2.0);
}

TEST(LineaComandosCoordenadas, unCampoCambiaXSinSerValidoYLaComaSolaNoDaNinguno)
{
    LineaComandos l;
    l.introPulsado("1,2,3");
    l.introPulsado("5");
    EXPECT_FALSE(l.coordenadasValidas);
    EXPECT_EQ(l.coordenadas, Punto3<double>(5, 2, 3));

    l.introPulsado(",");
    EXPECT_FALSE(l.coordenadasValidas);
    EXPECT_EQ(l.coordenadas, Punto3<double>(5, 2, 3));
    EXPECT_FALSE(l.valorValido);

    // Empty fields vanish: ",9" is a single field, x.
    l.introPulsado(",9");
    EXPECT_FALSE(l.coordenadasValidas);
    EXPECT_EQ(l.coordenadas.x, 9.0);
}

TEST(LineaComandosCoordenadas, sinEsperarCoordenadasLaLineaNoSeParte)
{
    LineaComandos l;
    l.esperaCoordenadas = false;
    l.introPulsado("1,2");
    EXPECT_FALSE(l.coordenadasValidas);
    EXPECT_EQ(l.coordenadas, Punto3<double>(0, 0, 0));
    // Read as a number instead, it stops at the comma.
    EXPECT_EQ(l.valor, 1.0);
    EXPECT_FALSE(l.valorValido);
}

TEST(LineaComandosValor, elNumeroDebeOcuparLaLineaEntera)
{
    LineaComandos l;
    EXPECT_TRUE(l.esperaRecibirValor());
    l.introPulsado("12");
    EXPECT_TRUE(l.valorValido);
    EXPECT_EQ(l.valor, 12.0);

    l.introPulsado("-2.5e1");
    EXPECT_TRUE(l.valorValido);
    EXPECT_EQ(l.valor, -25.0);

    l.introPulsado("12abc");
    EXPECT_FALSE(l.valorValido);
    EXPECT_EQ(l.valor, 12.0);

    // Valid coordinates are never tried as a number.
    LineaComandos c;
    c.valor = 7.0;
    c.introPulsado("1,2");
    EXPECT_TRUE(c.coordenadasValidas);
    EXPECT_FALSE(c.valorValido);
    EXPECT_EQ(c.valor, 7.0);
}

TEST(LineaComandosValor, laLineaVaciaSoloMarcaEntradaVacia)
{
    LineaComandos l;
    l.introPulsado("3,4");
    l.opcion = 2;
    l.introPulsado("");
    EXPECT_TRUE(l.entradaRecibida);
    EXPECT_TRUE(l.entradaVacia);
    EXPECT_EQ(l.entrada, "");
    EXPECT_EQ(l.opcion, -1);
    // Nothing is parsed: the former coordinates stand.
    EXPECT_TRUE(l.coordenadasValidas);
    EXPECT_EQ(l.coordenadas, Punto3<double>(3, 4, 0));
}

TEST(LineaComandosOpciones, lasMayusculasDeLaPalabraSonSuFormaCorta)
{
    LineaComandos l;
    EXPECT_EQ(l.nuevaOpcion("Borrar"), 0);
    EXPECT_EQ(l.nuevaOpcion("insertar(Despues)"), 1);
    EXPECT_EQ(l.nuevaOpcion("Insertar(antes)"), 2);
    ASSERT_EQ(l.listaOpciones().size(), 3U);

    const struct
    {
        const char* linea;
        int opcion;
    } casos[] = {
        {"d", 1},  {"D", 1},  {"insertar(despues)", 1}, {"INSERTAR(DESPUES)", 1},
        {"insertar", -1},     {"de", -1},               {"b", 0},
        {"BORRAR", 0},        {"I", 2},                 {"insertar(antes)", 2},
        {"x", -1},
    };
    for (const auto& c : casos)
    {
        l.introPulsado(c.linea);
        EXPECT_EQ(l.opcion, c.opcion) << c.linea;
    }
}

TEST(LineaComandosOpciones, laPrimeraCoincidenciaGanaYSoloCuentanLasLetrasAaZ)
{
    LineaComandos l;
    l.nuevaOpcion("Cerrar");
    l.nuevaOpcion("Continuar");
    l.introPulsado("C");
    EXPECT_EQ(l.opcion, 0);
    l.introPulsado("continuar");
    EXPECT_EQ(l.opcion, 1);

    // Digits and accented capitals are not part of the short form.
    LineaComandos m;
    m.nuevaOpcion("Punto3D");
    m.nuevaOpcion("ÉxitoX");
    m.introPulsado("pd");
    EXPECT_EQ(m.opcion, 0);
    m.introPulsado("P3D");
    EXPECT_EQ(m.opcion, -1);
    m.introPulsado("x");
    EXPECT_EQ(m.opcion, 1);

    // Without capitals only the whole word answers.
    LineaComandos n;
    n.nuevaOpcion("borrar");
    n.introPulsado("b");
    EXPECT_EQ(n.opcion, -1);
    n.introPulsado("");
    EXPECT_EQ(n.opcion, -1);
    n.introPulsado("Borrar");
    EXPECT_EQ(n.opcion, 0);
}

TEST(LineaComandosOpciones, textoOpcionesUneConBarra)
{
    LineaComandos l;
    std::string texto = "previo";
    EXPECT_FALSE(l.textoOpciones(texto));
    l.nuevaOpcion("Borrar");
    l.nuevaOpcion("insertar(Despues)");
    ASSERT_TRUE(l.textoOpciones(texto));
    EXPECT_EQ(texto, "Borrar/insertar(Despues)");
}

TEST(LineaComandosReinicio, cadaReinicioBorraLoSuyo)
{
    const auto cargada = [](LineaComandos& l)
    {
        l.nuevaOpcion("Borrar");
        l.introPulsado("b");
        l.valorValido = true;
        l.entradaVacia = true;
        l.coordenadasValidas = true;
        l.esperaCoordenadas = false;
        l.cancelado = true;
        l.terminado = true;
    };
    const auto vacia = [](const LineaComandos& l)
    {
        EXPECT_FALSE(l.valorValido);
        EXPECT_FALSE(l.coordenadasValidas);
        EXPECT_FALSE(l.entradaRecibida);
        EXPECT_FALSE(l.entradaVacia);
        EXPECT_EQ(l.opcion, -1);
        EXPECT_EQ(l.entrada, "");
        // The flags of the wait are not input.
        EXPECT_TRUE(l.cancelado);
        EXPECT_TRUE(l.terminado);
    };

    LineaComandos a;
    cargada(a);
    a.limpiaEntrada();
    vacia(a);
    EXPECT_TRUE(a.esperaRecibirCoordenadas());
    EXPECT_EQ(a.listaOpciones().size(), 1U);

    LineaComandos b;
    cargada(b);
    b.borraEntradaLineaComandos();
    vacia(b);
    EXPECT_FALSE(b.esperaRecibirCoordenadas());
    EXPECT_EQ(b.listaOpciones().size(), 1U);

    LineaComandos c;
    cargada(c);
    c.limpiaEntradaCompleta();
    vacia(c);
    EXPECT_TRUE(c.esperaRecibirCoordenadas());
    EXPECT_TRUE(c.listaOpciones().empty());
}

TEST(LineaComandosReinicio, cancelaComandoDeLaBaseSoloLevantaCancelado)
{
    LineaComandos l;
    l.nuevaOpcion("Borrar");
    l.introPulsado("b");
    l.cancelaComando();
    EXPECT_TRUE(l.cancelado);
    EXPECT_FALSE(l.terminado);
    EXPECT_TRUE(l.entradaRecibida);
    EXPECT_EQ(l.entrada, "b");
    EXPECT_EQ(l.opcion, 0);
    EXPECT_EQ(l.listaOpciones().size(), 1U);
}

}  // namespace
