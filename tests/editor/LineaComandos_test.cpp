// The typed line parsed every way it could be meant: coordinates, a number, an option.
#include "editor/LineaComandos.h"

#include <string>

#include <gtest/gtest.h>

namespace
{

using cad::LineaComandos;
using cad::Punto3;

TEST(LineaComandosLectura, coordenadasPorCamposSeparadosSoloPorComas)
{
    // Each line on a fresh parser whose coordinates were (9,9,9): what a field does not set
    // stays. Blanks are not delimiters, and empty fields vanish. A field that is no finite
    // number spoils the line and sets nothing, unless it is past the third.
    const struct
    {
        const char* linea;
        bool valida;
        Punto3<double> p;
    } casos[] = {
        {"10,20", true, {10, 20, 0}},  {"1,2,3", true, {1, 2, 3}},
        {"a,b", true, {0, 0, 0}},      {"4,5,6,7", true, {4, 5, 6}},
        {"1, 2", true, {1, 2, 0}},     {"5", false, {5, 9, 9}},
        {",", false, {9, 9, 9}},       {",7", false, {7, 9, 9}},
        {"7 8", false, {7, 9, 9}},     {"nan,0", false, {9, 9, 9}},
        {"1e999,0", false, {9, 9, 9}}, {"1,2,-inf", false, {9, 9, 9}},
        {"inf", false, {9, 9, 9}},     {"1,2,3,nan", true, {1, 2, 3}},
    };
    for (const auto& c : casos)
    {
        LineaComandos l;
        l.coordenadas = Punto3<double>(9, 9, 9);
        l.introPulsado(c.linea);
        EXPECT_TRUE(l.entradaRecibida) << c.linea;
        EXPECT_FALSE(l.entradaVacia) << c.linea;
        EXPECT_EQ(l.entrada, c.linea);
        EXPECT_EQ(l.coordenadasValidas, c.valida) << c.linea;
        EXPECT_EQ(l.coordenadas, c.p) << c.linea;
    }

    // An empty line only marks itself: the former coordinates stand.
    LineaComandos v;
    v.introPulsado("3,4");
    v.introPulsado("");
    EXPECT_TRUE(v.entradaRecibida && v.entradaVacia && v.coordenadasValidas);
    EXPECT_EQ(v.coordenadas, Punto3<double>(3, 4, 0));

    // Not expecting coordinates, the line is not split at all.
    LineaComandos l;
    l.esperaCoordenadas = false;
    l.introPulsado("1,2");
    EXPECT_FALSE(l.coordenadasValidas);
    EXPECT_EQ(l.coordenadas, Punto3<double>(0, 0, 0));
}

TEST(LineaComandosLectura, elValorDebeOcuparLaLineaEnteraYNoSePruebaConCoordenadas)
{
    // Each on a fresh parser whose value was -1: valid coordinates are not tried as a number,
    // and a number that is not finite is no value and is not kept.
    const struct
    {
        const char* linea;
        bool valido;
        double valor;
    } casos[] = {
        {"12", true, 12.0},   {"-2.5e1", true, -25.0}, {"12abc", false, 12.0},
        {",", false, 0.0},    {"7 8", false, 7.0},     {"1,2", false, -1.0},
        {"nan", false, -1.0}, {"-inf", false, -1.0},   {"1e999", false, -1.0},
    };
    for (const auto& c : casos)
    {
        LineaComandos l;
        l.valor = -1.0;
        l.introPulsado(c.linea);
        EXPECT_EQ(l.valorValido, c.valido) << c.linea;
        EXPECT_EQ(l.valor, c.valor) << c.linea;
    }
}

TEST(LineaComandosOpciones, lasMayusculasAaZDeLaPalabraSonSuFormaCortaYElTextoLasUneConBarra)
{
    LineaComandos l;
    std::string texto;
    EXPECT_FALSE(l.textoOpciones(texto));
    EXPECT_EQ(l.nuevaOpcion("Borrar"), 0);
    EXPECT_EQ(l.nuevaOpcion("insertar(Despues)"), 1);
    EXPECT_EQ(l.nuevaOpcion("Insertar(antes)"), 2);
    EXPECT_EQ(l.nuevaOpcion("Cerrar"), 3);
    EXPECT_EQ(l.nuevaOpcion("Continuar"), 4);
    EXPECT_EQ(l.nuevaOpcion("Punto3D"), 5);
    EXPECT_EQ(l.nuevaOpcion("ÉxitoX"), 6);
    EXPECT_EQ(l.nuevaOpcion("nada"), 7);
    ASSERT_TRUE(l.textoOpciones(texto));
    EXPECT_EQ(texto,
              "Borrar/insertar(Despues)/Insertar(antes)/Cerrar/Continuar/Punto3D/ÉxitoX/nada");

    // "C" answers the first of the two options whose capitals are both C.
    const struct
    {
        const char* linea;
        int opcion;
    } casos[] = {
        // clang-format off
        {"d", 1},         {"D", 1},   {"insertar(despues)", 1}, {"INSERTAR(DESPUES)", 1},
        {"insertar", -1}, {"de", -1}, {"b", 0},                 {"I", 2},
        {"C", 3},         {"continuar", 4},  {"pd", 5},         {"p", -1},
        {"P3D", -1},      {"x", 6},   {"n", -1},                {"NADA", 7},
        // clang-format on
    };
    for (const auto& c : casos)
    {
        l.introPulsado(c.linea);
        EXPECT_EQ(l.opcion, c.opcion) << c.linea;
    }
}

TEST(LineaComandosReinicio, cadaReinicioBorraLoSuyoYCancelarSoloLevantaSuBandera)
{
    const struct
    {
        void (LineaComandos::*reinicio)();
        bool esperaCoordenadas;
        size_t opciones;
    } casos[] = {{&LineaComandos::limpiaEntrada, true, 1},
                 {&LineaComandos::borraEntradaLineaComandos, false, 1},
                 {&LineaComandos::limpiaEntradaCompleta, true, 0}};
    for (const auto& c : casos)
    {
        LineaComandos l;
        l.nuevaOpcion("Borrar");
        l.introPulsado("b");
        l.valorValido = l.entradaVacia = l.coordenadasValidas = true;
        l.esperaCoordenadas = false;
        l.cancelado = l.terminado = true;
        (l.*c.reinicio)();
        EXPECT_FALSE(l.valorValido || l.coordenadasValidas || l.entradaRecibida || l.entradaVacia);
        EXPECT_EQ(l.opcion, -1);
        EXPECT_EQ(l.entrada, "");
        EXPECT_EQ(l.esperaRecibirCoordenadas(), c.esperaCoordenadas);
        EXPECT_EQ(l.listaOpciones().size(), c.opciones);
        // The flags of the wait are not input.
        EXPECT_TRUE(l.cancelado && l.terminado);
        EXPECT_TRUE(l.esperaRecibirValor());
    }

    LineaComandos d;
    d.nuevaOpcion("Borrar");
    d.introPulsado("b");
    d.cancelaComando();
    EXPECT_TRUE(d.cancelado);
    EXPECT_FALSE(d.terminado);
    EXPECT_TRUE(d.entradaRecibida);
    EXPECT_EQ(d.opcion, 0);
    EXPECT_EQ(d.listaOpciones().size(), 1U);
}

}  // namespace
