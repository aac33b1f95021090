// The measure commands played as a user's sessions with typed coordinates: what they ask, what
// they print, and the polyline and texts they leave on the drawing, one undo step each.
#include <cmath>
#include <string>
#include <utility>
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
using Medidas = std::vector<std::pair<std::string, P>>;

const char* const kInicial = "Seleccione coordenada inicial de la distancia:";
const char* const kFinal = "Seleccione coordenada final de la distancia:";
const char* const kTresLados = "La polilínea ha de tener tres lados";

// A measure text: the string, the place, centred both ways (5), the height, turned 0.7853987
// rad, and bound to the style "Estandar" in "Arial".
::testing::AssertionResult esMedida(const Entidad* e, const std::string& cadena, const P& donde,
                                    float altura = 1.0F)
{
    const auto* t = dynamic_cast<const Texto*>(e);
    if (t == nullptr)
    {
        return ::testing::AssertionFailure() << "not a Texto";
    }
    const auto* estilo = t->referenciaEstilo().get();
    if (t->texto != cadena || t->distancia(donde) >= 1e-9 || t->alineacion != 5 ||
        t->altura != altura || t->rotacion != 0.7853987F || estilo == nullptr ||
        estilo->nombre != "Estandar" || estilo->fuente != "Arial")
    {
        return ::testing::AssertionFailure()
               << "\"" << t->texto << "\" at (" << t->x << "," << t->y << "," << t->z
               << ") alignment " << t->alineacion << " height " << t->altura << " rotation "
               << t->rotacion << " style " << (estilo != nullptr ? estilo->nombre : "none");
    }
    return ::testing::AssertionSuccess();
}

// The entities from `desde` on are exactly these measure texts, in this order.
void sonMedidas(const SesionEditor& s, size_t desde, const Medidas& m)
{
    ASSERT_EQ(s.dibujo.entidades.size(), desde + m.size());
    for (size_t i = 0; i < m.size(); ++i)
    {
        EXPECT_TRUE(esMedida(s.dibujo.entidades[desde + i], m[i].first, m[i].second)) << i;
    }
}

// comandoDistancia, one after another in one drawing. Two prompts, then the result line; the
// triangle A, B, elbow (closed), then d3, d2, cota, each beside the side it measures. The elbow
// lies under the higher point at the lower one's height; a level distance leaves a flat
// triangle and cota 0. The style is made once; each entity is an undo step of its own.
TEST(ComandosMedida, distanciaDejaElTrianguloYTresTextos)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    const size_t estilos = s.dibujo.estilosTexto.size();
    auto mide = [&](const char* a, const char* b, double d3, const char* linea,
                    const Puntos& triangulo, const Medidas& textos)
    {
        SCOPED_TRACE(linea);
        s.textos.clear();
        s.estados.clear();
        const size_t antes = s.dibujo.entidades.size();
        const size_t pasos = s.editor->comandosDeshacer.size();
        bool banda = false;
        // While the second point is asked, a line band runs from the first.
        g.escribe(a)
            .ejecuta(
                [&]()
                {
                    ASSERT_NE(s.editor->lineaElastica, nullptr);
                    EXPECT_EQ(s.editor->lineaElastica->tipo, 1);
                    EXPECT_EQ(s.editor->lineaElastica->anclas, Puntos({triangulo[0]}));
                    banda = true;
                })
            .escribe(b);
        EXPECT_NEAR(s.editor->comandoDistancia(), d3, 1e-12);
        EXPECT_TRUE(banda);
        EXPECT_EQ(s.prompts(), Textos({kInicial, kFinal, linea}));
        EXPECT_EQ(s.estados, "IIFIFF");
        EXPECT_EQ(s.editor->lineaElastica, nullptr);
        const auto* p = dynamic_cast<const Polilinea*>(s.dibujo.entidades.at(antes));
        ASSERT_NE(p, nullptr);
        EXPECT_TRUE(p->cerrada);
        EXPECT_EQ(p->vertices, triangulo);
        sonMedidas(s, antes + 1, textos);
        EXPECT_EQ(s.editor->comandosDeshacer.size(), pasos + 4);
    };
    mide("10,20,5", "13,24,2", std::sqrt(34.0),
         "Distancia 3D: 5.831   Distancia 2D(PlanoXY): 5.000   Cota: 3.000",
         {{10, 20, 5}, {13, 24, 2}, {10, 20, 2}},
         {{"5.831", {11.5, 22, 3.5}}, {"5.000", {11.5, 22, 2}}, {"3.000", {10, 20, 3.5}}});
    mide("0,0,0", "3,4,12", 13.0,
         "Distancia 3D: 13.000   Distancia 2D(PlanoXY): 5.000   Cota: 12.000",
         {{0, 0, 0}, {3, 4, 12}, {3, 4, 0}},
         {{"13.000", {1.5, 2, 6}}, {"5.000", {1.5, 2, 0}}, {"12.000", {3, 4, 6}}});
    mide("0,0,7", "3,4,7", 5.0, "Distancia 3D: 5.000   Distancia 2D(PlanoXY): 5.000   Cota: 0.000",
         {{0, 0, 7}, {3, 4, 7}, {3, 4, 7}},
         {{"5.000", {1.5, 2, 7}}, {"5.000", {1.5, 2, 7}}, {"0.000", {3, 4, 7}}});
    EXPECT_EQ(s.dibujo.estilosTexto.size(), estilos + 1);
    ASSERT_NE(s.dibujo.estiloTextoActual(), nullptr);
    EXPECT_EQ(s.dibujo.estiloTextoActual()->nombre, "Estandar");
    EXPECT_EQ(s.dibujo.estiloTextoActual()->tamano, 10U);

    // One undo per entity empties the drawing in reverse order of insertion, and as many redos
    // bring the same entities back: a measure inserted behind the undo stack shows here.
    const std::vector<Entidad*> hechas = s.dibujo.entidades;
    for (size_t quedan = hechas.size(); quedan-- > 0;)
    {
        s.editor->deshacer();
        EXPECT_EQ(s.dibujo.entidades,
                  std::vector<Entidad*>(hechas.begin(), hechas.begin() + quedan));
    }
    EXPECT_FALSE(s.editor->puedeDeshacer());
    for (size_t i = 0; i < hechas.size(); ++i)
    {
        s.editor->rehacer();
    }
    EXPECT_EQ(s.dibujo.entidades, hechas);

    // A catalogue that rewords the result keeps its wording; one whose conversions do not match
    // the figures (a %s would read a double as a pointer) gives way to the built-in one. The
    // catalogue is the process's: its text is put back before any assertion can stop us.
    auto& catalogo = cad::GestorMensajes::Instancia();
    const std::string antes = catalogo.mensaje(
        18, 3, "Distancia 3D: %0.3lf   Distancia 2D(PlanoXY): %0.3lf   Cota: %0.3lf");
    for (const auto& [formato, linea] :
         {std::pair{"3D %.1f, plano %.2lf, cota %g (100%%)", "3D 13.0, plano 5.00, cota 12 (100%)"},
          std::pair{"Distancia %s",
                    "Distancia 3D: 13.000   Distancia 2D(PlanoXY): 5.000   Cota: 12.000"}})
    {
        catalogo.setMensaje(18, 3, formato);
        g.escribe("0,0,0").escribe("3,4,12");
        s.editor->comandoDistancia();
        EXPECT_EQ(s.prompts().back(), linea);
    }
    catalogo.setMensaje(18, 3, antes);
}

// Refused waits, the pointer form and the snap form leave nothing: no entity, no step, no
// style. A cancel says so, Enter says nothing. The pointer form prints only with `inserta`,
// allows null pointers, and on a refusal leaves the caller's values alone. The snap form has its
// own scope (transparent when asked), prints nothing, and takes off at its end, refused or not,
// the highlight of what was marked at its start.
TEST(ComandosMedida, rehusadasYFormasSinInsercion)
{
    SesionEditor s;
    auto* marcada = new Polilinea(2, Puntos({{0, 0, 0}, {50, 0, 0}}).data());
    s.editor->nuevaEntidad(marcada);
    GuionSesion g(*s.editor, s.pantalla);
    const size_t estilos = s.dibujo.estilosTexto.size();
    const size_t pasos = s.editor->comandosDeshacer.size();
    g.intro();
    EXPECT_EQ(s.editor->comandoDistancia(), 0.0);
    EXPECT_EQ(s.prompts(), Textos({kInicial}));
    s.textos.clear();
    g.escribe("1,1,1").cancela();
    EXPECT_EQ(s.editor->comandoDistancia(), 0.0);
    EXPECT_EQ(s.prompts(), Textos({kInicial, kFinal, "* Cancelado *"}));
    EXPECT_EQ(s.editor->lineaElastica, nullptr);
    EXPECT_EQ(s.editor->nivelComando, 0);

    P a;
    P b;
    double d3 = -1;
    double d2 = -1;
    s.textos.clear();
    s.estados.clear();
    g.escribe("10,20,5").escribe("13,24,2");
    EXPECT_TRUE(s.editor->comandoDistancia(&a, &b, &d3, &d2, false));
    EXPECT_EQ(a, P(10, 20, 5));
    EXPECT_EQ(b, P(13, 24, 2));
    EXPECT_NEAR(d3, std::sqrt(34.0), 1e-12);
    EXPECT_NEAR(d2, 5.0, 1e-12);
    EXPECT_EQ(s.prompts(), Textos({kInicial, kFinal}));
    EXPECT_EQ(s.estados, "IIFIFF");
    g.escribe("0,0,0").escribe("0,0,2");
    EXPECT_TRUE(s.editor->comandoDistancia(nullptr, nullptr, &d3, nullptr, true));
    EXPECT_NEAR(d3, 2.0, 1e-12);
    EXPECT_EQ(s.prompts().back(),
              "Distancia 3D: 2.000   Distancia 2D(PlanoXY): 0.000   Cota: 2.000");
    g.escribe("5,5,5").intro();
    EXPECT_FALSE(s.editor->comandoDistancia(&a, &b, &d3, &d2, true));
    EXPECT_EQ(a, P(10, 20, 5));
    EXPECT_EQ(d3, 2.0);

    s.textos.clear();
    s.editor->resalta(marcada, true);
    g.escribe("0,0,0").escribe("6,8,1");
    EXPECT_TRUE(s.editor->comandoDistanciaConSnap(&a, &b, &d3, &d2, true));
    EXPECT_EQ(b, P(6, 8, 1));
    EXPECT_NEAR(d3, std::sqrt(101.0), 1e-12);
    EXPECT_NEAR(d2, 10.0, 1e-12);
    EXPECT_EQ(s.prompts(), Textos({kInicial, kFinal}));
    EXPECT_EQ(marcada->estado & cad::kEstadoResaltada, 0U);
    EXPECT_TRUE(s.editor->pilaTransparentes.empty());
    EXPECT_EQ(s.editor->nivelComando, 0);
    s.editor->resalta(marcada, true);
    g.intro();
    EXPECT_FALSE(s.editor->comandoDistanciaConSnap(&a, &b, &d3, &d2, false));
    EXPECT_EQ(marcada->estado & cad::kEstadoResaltada, 0U);

    EXPECT_EQ(s.dibujo.entidades, std::vector<Entidad*>({marcada}));
    EXPECT_EQ(s.editor->comandosDeshacer.size(), pasos);
    EXPECT_EQ(s.dibujo.estilosTexto.size(), estilos);
}

// An "Estandar" the drawing already has is made current and used as it stands, font and all.
TEST(ComandosMedida, unEstandarExistenteSeUsaSinDuplicarlo)
{
    SesionEditor s;
    auto* propio = new cad::EstiloTexto("Estandar", "Courier", 3);
    ASSERT_TRUE(s.dibujo.nuevoEstiloTexto(propio));
    const size_t estilos = s.dibujo.estilosTexto.size();
    GuionSesion g(*s.editor, s.pantalla);
    g.escribe("0,0,0").escribe("1,0,0");
    s.editor->comandoDistancia();
    EXPECT_EQ(s.dibujo.estilosTexto.size(), estilos);
    EXPECT_EQ(s.dibujo.estiloTextoActual(), propio);
    const auto* t = dynamic_cast<const Texto*>(s.dibujo.entidades.at(1));
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->referenciaEstilo().get(), propio);
}

// The measures on a polyline the user draws: its prompts ("Cerrar" offered from the third
// vertex), then the result line; the polyline (closed for area and angles), then one text per
// figure, each its own undo step. Sides get their 3D length at their middle, the closing one
// too; the area is twice the plan area signed by the turning, at the vertices' centroid; angles
// are gons by the cosine rule, each at its vertex, and anything but three distinct vertices is
// refused with no text. No polyline drawn: nothing measured, nothing printed.
TEST(ComandosMedida, medidasSobreUnaPolilinea)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    using Comando = double (cad::EditorDibujo::*)();
    const Comando distancia = &cad::EditorDibujo::comandoDistanciaPolilinea;
    const Comando area = &cad::EditorDibujo::comandoArea;
    const Comando angulo = nullptr;  // comandoAngulo returns nothing
    auto mide = [&](Comando comando, const Textos& puntos, double valor, const std::string& linea,
                    const Medidas& textos)
    {
        SCOPED_TRACE(linea);
        s.textos.clear();
        const size_t antes = s.dibujo.entidades.size();
        const size_t pasos = s.editor->comandosDeshacer.size();
        Textos esperado = {"Punto inicial:"};
        for (const std::string& p : puntos)
        {
            g.escribe(p);
            esperado.push_back(esperado.size() >= 3 ? "Otro vértice/Borrar/Cerrar:"
                                                    : "Otro vértice/Borrar:");
        }
        g.intro();
        esperado.push_back(linea);
        const double dado =
            comando == angulo ? (s.editor->comandoAngulo(), 0.0) : (s.editor->*comando)();
        EXPECT_NEAR(dado, valor, 1e-12);
        EXPECT_EQ(s.prompts(), esperado);
        const auto* p = dynamic_cast<const Polilinea*>(s.dibujo.entidades.at(antes));
        ASSERT_NE(p, nullptr);
        EXPECT_EQ(p->cerrada, comando != distancia);
        EXPECT_EQ(p->numeroVertices(), static_cast<int>(puntos.size()));
        sonMedidas(s, antes + 1, textos);
        EXPECT_EQ(s.editor->comandosDeshacer.size(), pasos + 1 + textos.size());
        EXPECT_EQ(s.editor->nivelComando, 0);
    };
    mide(distancia, {"0,0,0", "3,4,0", "3,4,12"}, 17.0, "Distancia 3D total: 17.000",
         {{"5.000", {1.5, 2, 0}}, {"12.000", {3, 4, 6}}});
    mide(area, {"0,0,3", "0,1,3", "1,1,3", "1,0,3"}, -2.0, "Area 2D: -2.000",
         {{"1.000", {0, 0.5, 3}},
          {"1.000", {0.5, 1, 3}},
          {"1.000", {1, 0.5, 3}},
          {"1.000", {0.5, 0, 3}},
          {"-2.000", {0.5, 0.5, 3}}});
    mide(area, {"0,0", "1,0", "1,1", "0,1"}, 2.0, "Area 2D: 2.000",
         {{"1.000", {0.5, 0, 0}},
          {"1.000", {1, 0.5, 0}},
          {"1.000", {0.5, 1, 0}},
          {"1.000", {0, 0.5, 0}},
          {"2.000", {0.5, 0.5, 0}}});
    const double h = 8.660254037844386;
    mide(angulo, {"0,0", "10,0", "5,8.660254037844386"}, 0.0,
         "Angulos: A = 66.667, B = 66.667, C = 66.667",
         {{"66.667", {0, 0, 0}}, {"66.667", {10, 0, 0}}, {"66.667", {5, h, 0}}});
    mide(angulo, {"0,0,1", "4,0,1", "0,4,1"}, 0.0, "Angulos: A = 100.000, B = 50.000, C = 50.000",
         {{"100.000", {0, 0, 1}}, {"50.000", {4, 0, 1}}, {"50.000", {0, 4, 1}}});
    mide(angulo, {"0,0", "1,0", "1,1", "0,1"}, 0.0, kTresLados, {});
    // Two vertices on one place leave a side of length 0, and an angle with no value.
    mide(angulo, {"0,0", "5,0", "5,0"}, 0.0, kTresLados, {});

    s.textos.clear();
    const size_t antes = s.dibujo.entidades.size();
    g.intro();
    EXPECT_EQ(s.editor->comandoDistanciaPolilinea(), 0.0);
    EXPECT_EQ(s.prompts(), Textos({"Punto inicial:"}));
    EXPECT_EQ(s.dibujo.entidades.size(), antes);
    // A cancel while drawing ends the measure silently: the polyline drawn so far stays, with
    // no text and no figure.
    g.escribe("0,0").escribe("1,0").escribe("1,1").cancela();
    EXPECT_EQ(s.editor->comandoArea(), 0.0);
    EXPECT_EQ(s.prompts().back(), "* Cancelado *");
    EXPECT_EQ(s.dibujo.entidades.size(), antes + 1);
    EXPECT_NE(dynamic_cast<const Polilinea*>(s.dibujo.entidades.back()), nullptr);
    s.editor->deshacer();
    ASSERT_EQ(s.dibujo.entidades.size(), antes);

    // textoEnEntidad labels the first polyline at the centre of its box, 10 below its top, at
    // the height given, as a measure text. A null text, an entity not in the drawing, or a
    // height no text can have inserts nothing; only the height is told.
    const size_t estilos = s.dibujo.estilosTexto.size();
    const size_t pasos = s.editor->comandosDeshacer.size();
    const std::string rotulo = "Muro 1";
    s.editor->textoEnEntidad(s.dibujo.entidades[0], 2.5, &rotulo);
    ASSERT_EQ(s.dibujo.entidades.size(), antes + 1);
    EXPECT_TRUE(esMedida(s.dibujo.entidades.back(), rotulo, {1.5, 2, 2}, 2.5F));
    EXPECT_EQ(s.editor->comandosDeshacer.size(), pasos + 1);
    cad::Polilinea fuera(2, Puntos({{0, 0, 0}, {1, 1, 1}}).data());
    s.textos.clear();
    s.editor->textoEnEntidad(s.dibujo.entidades[0], 2.5, nullptr);
    s.editor->textoEnEntidad(&fuera, 2.5, &rotulo);
    s.editor->textoEnEntidad(nullptr, 2.5, &rotulo);
    s.editor->textoEnEntidad(s.dibujo.entidades[0], std::nan(""), &rotulo);
    s.editor->textoEnEntidad(s.dibujo.entidades[0], 0.0, &rotulo);
    EXPECT_EQ(s.prompts().size(), 2U);
    EXPECT_EQ(s.dibujo.entidades.size(), antes + 1);
    EXPECT_EQ(s.dibujo.estilosTexto.size(), estilos);
}

}  // namespace
