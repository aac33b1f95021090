// The measure commands played as a user's sessions with typed coordinates: what they ask, what
// they print, and the polyline and texts they leave on the drawing, one undo step each.
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/GestorMensajes.h"
#include "documento/EstiloTexto.h"
#include "editor/LineaElastica.h"
#include "entidades/Polilinea.h"
#include "entidades/Texto.h"
#include "soporte/GuionSesion.h"

namespace
{

using cad::Entidad;
using cad::Polilinea;
using cad::Punto3;
using cad::Texto;
using cad::prueba::GuionSesion;
using cad::prueba::SesionEditor;
using P = Punto3<double>;
using Puntos = std::vector<P>;
using Textos = std::vector<std::string>;

const char* const kInicial = "Seleccione coordenada inicial de la distancia:";
const char* const kFinal = "Seleccione coordenada final de la distancia:";
const char* const kPuntoInicial = "Punto inicial:";
const char* const kOtro = "Otro vértice/Borrar:";
const char* const kOtroCerrar = "Otro vértice/Borrar/Cerrar:";
const char* const kTresLados = "La polilínea ha de tener tres lados";

::testing::AssertionResult cerca(const P& a, const P& b)
{
    if (a.distancia(b) < 1e-9)
    {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "(" << a.x << "," << a.y << "," << a.z << ") vs ("
                                         << b.x << "," << b.y << "," << b.z << ")";
}

// A measure text as the Part fixes it: the string, the place, centred both ways (5), height
// 1, turned 0.7853987 rad, and bound to the style "Estandar" in "Arial".
::testing::AssertionResult esMedida(const Entidad* e, const std::string& cadena, const P& donde)
{
    const auto* t = dynamic_cast<const Texto*>(e);
    if (t == nullptr)
    {
        return ::testing::AssertionFailure() << "not a Texto";
    }
    const auto* estilo = t->referenciaEstilo().get();
    if (t->texto != cadena || !cerca(*t, donde) || t->alineacion != 5 || t->altura != 1.0F ||
        t->rotacion != 0.7853987F || estilo == nullptr || estilo->nombre != "Estandar" ||
        estilo->fuente != "Arial")
    {
        return ::testing::AssertionFailure()
               << "\"" << t->texto << "\" at (" << t->x << "," << t->y << "," << t->z
               << ") alignment " << t->alineacion << " height " << t->altura << " rotation "
               << t->rotacion << " style " << (estilo != nullptr ? estilo->nombre : "none");
    }
    return ::testing::AssertionSuccess();
}

const Polilinea* polilinea(const SesionEditor& s, size_t i)
{
    return dynamic_cast<const Polilinea*>(s.dibujo.entidades.at(i));
}

// Types the points of a polyline and ends it with Enter.
void polilineaTecleada(GuionSesion& g, const std::vector<std::string>& puntos)
{
    for (const std::string& p : puntos)
    {
        g.escribe(p);
    }
    g.intro();
}

// The prompts of comandoPolilinea for n typed points and Enter: "Cerrar" is offered once the
// polyline holds three vertices.
Textos preguntasPolilinea(size_t n)
{
    Textos t = {kPuntoInicial};
    for (size_t i = 1; i <= n; ++i)
    {
        t.push_back(i >= 3 ? kOtroCerrar : kOtro);
    }
    return t;
}

size_t estilosLlamados(const SesionEditor& s, const std::string& nombre)
{
    size_t n = 0;
    for (const cad::EstiloTexto* e : s.dibujo.estilosTexto)
    {
        n += e->nombre == nombre ? 1 : 0;
    }
    return n;
}

// A catalogue text changed for one test and put back after it: the catalogue is the process's.
struct TextoCatalogo
{
    int grupo;
    int numero;
    std::string antes;
    TextoCatalogo(int g, int n, const char* porDefecto, const std::string& nuevo)
        : grupo(g), numero(n), antes(cad::GestorMensajes::Instancia().mensaje(g, n, porDefecto))
    {
        cad::GestorMensajes::Instancia().setMensaje(g, n, nuevo);
    }
    ~TextoCatalogo() { cad::GestorMensajes::Instancia().setMensaje(grupo, numero, antes); }
};

// --- comandoDistancia -------------------------------------------------------------------------

// Invariants: two prompts, then one result line; the triangle A, B, elbow (closed), then the
// texts d3, d2, cota in that order, each beside the side it measures. With B the lower point
// the elbow is under A at B's height, so the level side is elbow-B and the plumb one A-elbow.
TEST(ComandosMedida, distanciaDejaElTrianguloYTresTextos)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    bool banda = false;
    g.escribe("10,20,5")
        .ejecuta(
            [&]()
            {
                // While the second point is asked, a line band runs from the first.
                ASSERT_NE(s.editor->lineaElastica, nullptr);
                EXPECT_EQ(s.editor->lineaElastica->tipo, 1);
                EXPECT_EQ(s.editor->lineaElastica->anclas, Puntos({{10, 20, 5}}));
                banda = true;
            })
        .escribe("13,24,2");
    EXPECT_NEAR(s.editor->comandoDistancia(), std::sqrt(34.0), 1e-12);
    EXPECT_TRUE(banda);

    EXPECT_EQ(s.prompts(),
              Textos({kInicial, kFinal,
                      "Distancia 3D: 5.831   Distancia 2D(PlanoXY): 5.000   Cota: 3.000"}));
    EXPECT_EQ(s.estados, "IIFIFF");
    EXPECT_EQ(s.editor->lineaElastica, nullptr);
    ASSERT_EQ(s.dibujo.entidades.size(), 4U);
    const Polilinea* triangulo = polilinea(s, 0);
    ASSERT_NE(triangulo, nullptr);
    EXPECT_TRUE(triangulo->cerrada);
    EXPECT_EQ(triangulo->vertices, Puntos({{10, 20, 5}, {13, 24, 2}, {10, 20, 2}}));
    EXPECT_TRUE(esMedida(s.dibujo.entidades[1], "5.831", {11.5, 22, 3.5}));
    EXPECT_TRUE(esMedida(s.dibujo.entidades[2], "5.000", {11.5, 22, 2}));
    EXPECT_TRUE(esMedida(s.dibujo.entidades[3], "3.000", {10, 20, 3.5}));
    ASSERT_NE(s.dibujo.estiloTextoActual(), nullptr);
    EXPECT_EQ(s.dibujo.estiloTextoActual()->nombre, "Estandar");
    EXPECT_EQ(s.dibujo.estiloTextoActual()->tamano, 10U);
    EXPECT_EQ(s.editor->comandosDeshacer.size(), 4U);
}

// With A the lower point the elbow is under B at A's height: A-elbow is level. A second run
// reuses the style rather than adding another "Estandar".
TEST(ComandosMedida, distanciaDesdeElPuntoBajoYElEstiloUnaVez)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    g.escribe("0,0,0").escribe("3,4,12");
    EXPECT_NEAR(s.editor->comandoDistancia(), 13.0, 1e-12);
    ASSERT_EQ(s.dibujo.entidades.size(), 4U);
    EXPECT_EQ(polilinea(s, 0)->vertices, Puntos({{0, 0, 0}, {3, 4, 12}, {3, 4, 0}}));
    EXPECT_TRUE(esMedida(s.dibujo.entidades[1], "13.000", {1.5, 2, 6}));
    EXPECT_TRUE(esMedida(s.dibujo.entidades[2], "5.000", {1.5, 2, 0}));
    EXPECT_TRUE(esMedida(s.dibujo.entidades[3], "12.000", {3, 4, 6}));

    const size_t estilos = s.dibujo.estilosTexto.size();
    g.escribe("0,0,0").escribe("1,0,0");
    EXPECT_NEAR(s.editor->comandoDistancia(), 1.0, 1e-12);
    EXPECT_EQ(s.dibujo.estilosTexto.size(), estilos);
    EXPECT_EQ(estilosLlamados(s, "Estandar"), 1U);
}

// A level distance: cota 0, d3 equal to d2, and the triangle, though flat (the elbow is B),
// still goes in.
TEST(ComandosMedida, distanciaHorizontalConCotaCero)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    g.escribe("0,0,7").escribe("3,4,7");
    EXPECT_NEAR(s.editor->comandoDistancia(), 5.0, 1e-12);
    EXPECT_EQ(s.prompts().back(),
              "Distancia 3D: 5.000   Distancia 2D(PlanoXY): 5.000   Cota: 0.000");
    ASSERT_EQ(s.dibujo.entidades.size(), 4U);
    EXPECT_EQ(polilinea(s, 0)->vertices, Puntos({{0, 0, 7}, {3, 4, 7}, {3, 4, 7}}));
    EXPECT_TRUE(esMedida(s.dibujo.entidades[1], "5.000", {1.5, 2, 7}));
    EXPECT_TRUE(esMedida(s.dibujo.entidades[2], "5.000", {1.5, 2, 7}));
    EXPECT_TRUE(esMedida(s.dibujo.entidades[3], "0.000", {3, 4, 7}));
}

// One undo step per entity: four undos empty the drawing, in reverse order of insertion, and
// four redos bring the same entities back. Catches a measure inserted behind the undo stack.
TEST(ComandosMedida, distanciaSeDeshaceEnCuatroPasos)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    g.escribe("10,20,5").escribe("13,24,2");
    s.editor->comandoDistancia();
    const std::vector<Entidad*> hechas = s.dibujo.entidades;
    ASSERT_EQ(hechas.size(), 4U);
    for (size_t quedan = 3; quedan + 1 > 0; --quedan)
    {
        s.editor->deshacer();
        ASSERT_EQ(s.dibujo.entidades.size(), quedan);
        EXPECT_FALSE(s.dibujo.contieneEntidad(hechas[quedan]));
    }
    EXPECT_FALSE(s.editor->puedeDeshacer());
    for (int i = 0; i < 4; ++i)
    {
        s.editor->rehacer();
    }
    EXPECT_EQ(s.dibujo.entidades, hechas);
}

// A refused wait, first or second, ends with 0 and leaves nothing: no entity, no step, no
// style, no result line. A cancel says so; Enter says nothing.
TEST(ComandosMedida, distanciaRehusadaNoInsertaNada)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    const size_t estilos = s.dibujo.estilosTexto.size();
    g.intro();
    EXPECT_EQ(s.editor->comandoDistancia(), 0.0);
    EXPECT_EQ(s.prompts(), Textos({kInicial}));

    s.textos.clear();
    g.escribe("1,1,1").cancela();
    EXPECT_EQ(s.editor->comandoDistancia(), 0.0);
    EXPECT_EQ(s.prompts(), Textos({kInicial, kFinal, "* Cancelado *"}));
    EXPECT_TRUE(s.dibujo.entidades.empty());
    EXPECT_FALSE(s.editor->puedeDeshacer());
    EXPECT_EQ(s.dibujo.estilosTexto.size(), estilos);
    EXPECT_EQ(s.editor->lineaElastica, nullptr);
    EXPECT_EQ(s.editor->nivelComando, 0);
}

// An "Estandar" the drawing already has is made current and used as it stands, font and all.
TEST(ComandosMedida, unEstandarExistenteSeUsaSinDuplicarlo)
{
    SesionEditor s;
    auto* propio = new cad::EstiloTexto("Estandar", "Courier", 3);
    ASSERT_TRUE(s.dibujo.nuevoEstiloTexto(propio));
    GuionSesion g(*s.editor, s.pantalla);
    g.escribe("0,0,0").escribe("1,0,0");
    s.editor->comandoDistancia();
    EXPECT_EQ(estilosLlamados(s, "Estandar"), 1U);
    EXPECT_EQ(s.dibujo.estiloTextoActual(), propio);
    const auto* t = dynamic_cast<const Texto*>(s.dibujo.entidades.at(1));
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->referenciaEstilo().get(), propio);
}

// The form with pointers inserts nothing; it prints only with `inserta`; null pointers are
// allowed; a refusal gives false and leaves the caller's values alone.
TEST(ComandosMedida, distanciaConPunterosNoInserta)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    P a;
    P b;
    double d3 = -1;
    double d2 = -1;
    g.escribe("10,20,5").escribe("13,24,2");
    EXPECT_TRUE(s.editor->comandoDistancia(&a, &b, &d3, &d2, false));
    EXPECT_EQ(a, P(10, 20, 5));
    EXPECT_EQ(b, P(13, 24, 2));
    EXPECT_NEAR(d3, std::sqrt(34.0), 1e-12);
    EXPECT_NEAR(d2, 5.0, 1e-12);
    EXPECT_EQ(s.prompts(), Textos({kInicial, kFinal}));
    EXPECT_EQ(s.estados, "IIFIFF");

    s.textos.clear();
    g.escribe("0,0,0").escribe("0,0,2");
    EXPECT_TRUE(s.editor->comandoDistancia(nullptr, nullptr, &d3, nullptr, true));
    EXPECT_NEAR(d3, 2.0, 1e-12);
    EXPECT_EQ(s.prompts().back(),
              "Distancia 3D: 2.000   Distancia 2D(PlanoXY): 0.000   Cota: 2.000");

    g.escribe("5,5,5").intro();
    EXPECT_FALSE(s.editor->comandoDistancia(&a, &b, &d3, &d2, true));
    EXPECT_EQ(a, P(10, 20, 5));
    EXPECT_EQ(d3, 2.0);
    EXPECT_TRUE(s.dibujo.entidades.empty());
    EXPECT_FALSE(s.editor->puedeDeshacer());
}

// The snap form: its own scope (transparent when asked), no text printed, nothing inserted,
// and the highlight of what was marked at its start taken off at its end.
TEST(ComandosMedida, distanciaConSnapQuitaLosResaltes)
{
    SesionEditor s;
    auto* marcada = new Polilinea(2, Puntos({{0, 0, 0}, {50, 0, 0}}).data());
    s.editor->nuevaEntidad(marcada);
    s.editor->resalta(marcada, true);
    GuionSesion g(*s.editor, s.pantalla);
    P a;
    P b;
    double d3 = 0;
    double d2 = 0;
    g.escribe("0,0,0").escribe("6,8,1");
    EXPECT_TRUE(s.editor->comandoDistanciaConSnap(&a, &b, &d3, &d2, true));
    EXPECT_EQ(b, P(6, 8, 1));
    EXPECT_NEAR(d3, std::sqrt(101.0), 1e-12);
    EXPECT_NEAR(d2, 10.0, 1e-12);
    EXPECT_EQ(s.prompts(), Textos({kInicial, kFinal}));
    EXPECT_EQ(marcada->estado & cad::kEstadoResaltada, 0U);
    EXPECT_EQ(s.dibujo.entidades.size(), 1U);
    EXPECT_TRUE(s.editor->pilaTransparentes.empty());
    EXPECT_EQ(s.editor->nivelComando, 0);

    s.editor->resalta(marcada, true);
    g.intro();
    EXPECT_FALSE(s.editor->comandoDistanciaConSnap(&a, &b, &d3, &d2, false));
    EXPECT_EQ(marcada->estado & cad::kEstadoResaltada, 0U);
}

// A catalogue that rewords the result keeps its wording; one whose conversions do not match
// the figures (here a %s, which would read a double as a pointer) gives way to the built-in.
TEST(ComandosMedida, elFormatoDelCatalogoSoloSiConvierteLasCifras)
{
    const char* const porDefecto =
        "Distancia 3D: %0.3lf   Distancia 2D(PlanoXY): %0.3lf   Cota: %0.3lf";
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    {
        TextoCatalogo cambio(18, 3, porDefecto, "3D %.1f, plano %.2lf, cota %g (100%%)");
        g.escribe("0,0,0").escribe("3,4,12");
        s.editor->comandoDistancia();
        EXPECT_EQ(s.prompts().back(), "3D 13.0, plano 5.00, cota 12 (100%)");
    }
    {
        TextoCatalogo cambio(18, 3, porDefecto, "Distancia %s");
        g.escribe("0,0,0").escribe("3,4,12");
        s.editor->comandoDistancia();
        EXPECT_EQ(s.prompts().back(),
                  "Distancia 3D: 13.000   Distancia 2D(PlanoXY): 5.000   Cota: 12.000");
    }
}

// --- comandos sobre una polilínea ------------------------------------------------------------

// One open polyline: a text per side with its 3D length at its middle, then the total.
TEST(ComandosMedida, distanciaPolilineaDaLadosYTotal)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    polilineaTecleada(g, {"0,0,0", "3,4,0", "3,4,12"});
    EXPECT_NEAR(s.editor->comandoDistanciaPolilinea(), 17.0, 1e-12);
    Textos esperado = preguntasPolilinea(3);
    esperado.push_back("Distancia 3D total: 17.000");
    EXPECT_EQ(s.prompts(), esperado);
    ASSERT_EQ(s.dibujo.entidades.size(), 3U);
    EXPECT_FALSE(polilinea(s, 0)->cerrada);
    EXPECT_TRUE(esMedida(s.dibujo.entidades[1], "5.000", {1.5, 2, 0}));
    EXPECT_TRUE(esMedida(s.dibujo.entidades[2], "12.000", {3, 4, 6}));
    EXPECT_EQ(s.editor->comandosDeshacer.size(), 3U);

    // No polyline drawn: nothing measured, nothing printed.
    s.textos.clear();
    g.intro();
    EXPECT_EQ(s.editor->comandoDistanciaPolilinea(), 0.0);
    EXPECT_EQ(s.prompts(), Textos({kPuntoInicial}));
    EXPECT_EQ(s.dibujo.entidades.size(), 3U);
}

// Twice the plan area, signed by the turning, as the command reports it: a clockwise unit square
// gives -2.000 and a counter-clockwise one +2.000. Each of the four sides (the closing one
// too) gets its length, and the figure sits at the vertices' centroid, z included.
TEST(ComandosMedida, areaDeUnCuadradoUnidadConSigno)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    polilineaTecleada(g, {"0,0,3", "0,1,3", "1,1,3", "1,0,3"});
    EXPECT_NEAR(s.editor->comandoArea(), -2.0, 1e-12);
    Textos esperado = preguntasPolilinea(4);
    esperado.push_back("Area 2D: -2.000");
    EXPECT_EQ(s.prompts(), esperado);
    ASSERT_EQ(s.dibujo.entidades.size(), 6U);
    EXPECT_TRUE(polilinea(s, 0)->cerrada);
    EXPECT_TRUE(esMedida(s.dibujo.entidades[1], "1.000", {0, 0.5, 3}));
    EXPECT_TRUE(esMedida(s.dibujo.entidades[2], "1.000", {0.5, 1, 3}));
    EXPECT_TRUE(esMedida(s.dibujo.entidades[3], "1.000", {1, 0.5, 3}));
    EXPECT_TRUE(esMedida(s.dibujo.entidades[4], "1.000", {0.5, 0, 3}));
    EXPECT_TRUE(esMedida(s.dibujo.entidades[5], "-2.000", {0.5, 0.5, 3}));

    s.textos.clear();
    polilineaTecleada(g, {"0,0", "1,0", "1,1", "0,1"});
    EXPECT_NEAR(s.editor->comandoArea(), 2.0, 1e-12);
    EXPECT_EQ(s.prompts().back(), "Area 2D: 2.000");
    EXPECT_TRUE(esMedida(s.dibujo.entidades.back(), "2.000", {0.5, 0.5, 0}));
}

// Angles in gons by the cosine rule: about 66.667 each on an equilateral triangle, 100, 50
// and 50 on a right isosceles one, each text at its own vertex.
TEST(ComandosMedida, angulosEnGones)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    polilineaTecleada(g, {"0,0", "10,0", "5,8.660254037844386"});
    s.editor->comandoAngulo();
    Textos esperado = preguntasPolilinea(3);
    esperado.push_back("Angulos: A = 66.667, B = 66.667, C = 66.667");
    EXPECT_EQ(s.prompts(), esperado);
    ASSERT_EQ(s.dibujo.entidades.size(), 4U);
    EXPECT_TRUE(polilinea(s, 0)->cerrada);
    EXPECT_TRUE(esMedida(s.dibujo.entidades[1], "66.667", {0, 0, 0}));
    EXPECT_TRUE(esMedida(s.dibujo.entidades[2], "66.667", {10, 0, 0}));
    EXPECT_TRUE(esMedida(s.dibujo.entidades[3], "66.667", {5, 8.660254037844386, 0}));

    s.textos.clear();
    polilineaTecleada(g, {"0,0,1", "4,0,1", "0,4,1"});
    s.editor->comandoAngulo();
    EXPECT_EQ(s.prompts().back(), "Angulos: A = 100.000, B = 50.000, C = 50.000");
    EXPECT_TRUE(esMedida(s.dibujo.entidades.back(), "50.000", {0, 4, 1}));
}

// Anything but three distinct vertices is refused with (19, 1): the polyline drawn stays, no
// angle text goes in and no result line is printed.
TEST(ComandosMedida, angulosRehusaOtrasPolilineas)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    polilineaTecleada(g, {"0,0", "1,0", "1,1", "0,1"});
    s.editor->comandoAngulo();
    Textos esperado = preguntasPolilinea(4);
    esperado.push_back(kTresLados);
    EXPECT_EQ(s.prompts(), esperado);
    ASSERT_EQ(s.dibujo.entidades.size(), 1U);
    EXPECT_EQ(polilinea(s, 0)->numeroVertices(), 4);

    // Two vertices on one place leave a side of length 0, and an angle with no value.
    s.textos.clear();
    polilineaTecleada(g, {"0,0", "5,0", "5,0"});
    s.editor->comandoAngulo();
    EXPECT_EQ(s.prompts().back(), kTresLados);
    EXPECT_EQ(s.dibujo.entidades.size(), 2U);
    EXPECT_EQ(s.editor->nivelComando, 0);
}

// --- textoEnEntidad -----------------------------------------------------------------------------

// The text goes at the centre of the entity's box, 10 below its top, at the height given,
// in the measure style; a null text, or an entity that is not in the drawing, does nothing.
TEST(ComandosMedida, textoEnEntidadAlCentroDiezBajoLaCima)
{
    SesionEditor s;
    auto* muro = new Polilinea(2, Puntos({{0, 0, 0}, {10, 20, 30}}).data());
    s.editor->nuevaEntidad(muro);
    const std::string rotulo = "Muro 1";
    s.editor->textoEnEntidad(muro, 2.5, &rotulo);
    ASSERT_EQ(s.dibujo.entidades.size(), 2U);
    const auto* t = dynamic_cast<const Texto*>(s.dibujo.entidades[1]);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->texto, rotulo);
    EXPECT_TRUE(cerca(*t, {5, 10, 20}));
    EXPECT_EQ(t->altura, 2.5F);
    EXPECT_EQ(t->alineacion, 5);
    ASSERT_NE(t->referenciaEstilo().get(), nullptr);
    EXPECT_EQ(t->referenciaEstilo().get()->nombre, "Estandar");
    EXPECT_EQ(s.editor->comandosDeshacer.size(), 2U);

    const size_t estilos = s.dibujo.estilosTexto.size();
    s.editor->textoEnEntidad(muro, 2.5, nullptr);
    cad::Polilinea fuera(2, Puntos({{0, 0, 0}, {1, 1, 1}}).data());
    s.editor->textoEnEntidad(&fuera, 2.5, &rotulo);
    s.editor->textoEnEntidad(nullptr, 2.5, &rotulo);
    EXPECT_EQ(s.dibujo.entidades.size(), 2U);
    EXPECT_EQ(s.dibujo.estilosTexto.size(), estilos);

    // A height that no text can have is told, not stored.
    s.textos.clear();
    s.editor->textoEnEntidad(muro, std::nan(""), &rotulo);
    s.editor->textoEnEntidad(muro, 0.0, &rotulo);
    EXPECT_EQ(s.dibujo.entidades.size(), 2U);
    EXPECT_EQ(s.prompts().size(), 2U);
}

}  // namespace
