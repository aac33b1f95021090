// The first two creation commands played as a user's session, and what undo makes of them.
#include <gtest/gtest.h>

#include "editor/Comando.h"
#include "editor/LineaElastica.h"
#include "entidades/Linea.h"
#include "soporte/GuionSesion.h"

namespace
{

using cad::EditorDibujo;
using cad::Linea;
using cad::Punto3;
using cad::prueba::GuionSesion;
using cad::prueba::SesionEditor;

// A click gives the pixel's ray on the plane: equal to the pixel's point up to rounding.
::testing::AssertionResult cerca(const Punto3<double>& a, const Punto3<double>& b)
{
    if (a.distancia(b) < 1e-9)
    {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "(" << a.x << "," << a.y << "," << a.z << ") vs ("
                                         << b.x << "," << b.y << "," << b.z << ")";
}

const Linea* linea(const cad::Dibujo& d, size_t i)
{
    return dynamic_cast<const Linea*>(d.entidades.at(i));
}

TEST(ComandoLinea, tresClicsEIntroDanDosLineasYUnParDeEstadosPorEspera)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    g.clic(100, 100).clic(200, 100).clic(200, 250).intro();
    EXPECT_EQ(s.editor->comandoLinea(), 2);

    ASSERT_EQ(s.dibujo.entidades.size(), 2U);
    EXPECT_TRUE(cerca(linea(s.dibujo, 0)->origen, Punto3<double>(100, 100, 0)));
    EXPECT_TRUE(cerca(linea(s.dibujo, 0)->extremo, Punto3<double>(200, 100, 0)));
    EXPECT_TRUE(cerca(linea(s.dibujo, 1)->origen, Punto3<double>(200, 100, 0)));
    EXPECT_TRUE(cerca(linea(s.dibujo, 1)->extremo, Punto3<double>(200, 250, 0)));
    // The command's own scope around four waits, one pair each.
    EXPECT_EQ(s.estados, "IIFIFIFIFF");
    EXPECT_EQ(s.editor->nivelComando, 0);
    EXPECT_EQ(s.pantalla.modoInteraccion, 0);
    EXPECT_EQ(s.editor->lineaElastica, nullptr);

    // One undo step per line: two undos leave nothing, and both go to the redo side (which
    // the editor's end frees, lines included).
    s.editor->deshacer();
    s.editor->deshacer();
    EXPECT_TRUE(s.dibujo.entidades.empty());
    EXPECT_FALSE(s.editor->puedeDeshacer());
    EXPECT_EQ(s.editor->comandosRehacer.size(), 2U);
}

TEST(ComandoLinea, lasPreguntasSonLasDelCatalogo)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    g.escribe("0,0").escribe("5,0,2").intro();
    EXPECT_EQ(s.editor->comandoLinea(), 1);
    const std::vector<std::string> esperado = {"Seleccione coordenada inicial de la linea:", "",
                                               "Seleccione coordenada final de la linea:",   "",
                                               "Seleccione coordenada final de la linea:",   ""};
    EXPECT_EQ(s.textos, esperado);
    EXPECT_TRUE(cerca(linea(s.dibujo, 0)->extremo, Punto3<double>(5, 0, 2)));

    // A first point and Enter make nothing and leave no step.
    g.escribe("10,20").intro();
    EXPECT_EQ(s.editor->comandoLinea(), 0);
    EXPECT_EQ(s.dibujo.entidades.size(), 1U);
    EXPECT_EQ(s.editor->comandosDeshacer.size(), 1U);
}

TEST(ComandoLinea, laBandaSigueAlCursorDesdeElUltimoPunto)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    bool vista = false;
    g.escribe("100,100").mueve(300, 100).ejecuta(
        [&]()
        {
            ASSERT_NE(s.editor->lineaElastica, nullptr);
            EXPECT_EQ(s.editor->lineaElastica->tipo, 1);
            ASSERT_EQ(s.editor->lineaElastica->anclas.size(), 1U);
            s.pantalla.grabando = true;
            s.pintaSuperposicion();
            s.pantalla.grabando = false;
            // The band runs from the anchor to the point under the pointer.
            bool linea = false;
            for (const auto& p : s.pantalla.superposicion)
            {
                if (p.puntos.size() == 2 && cerca(p.puntos[0], Punto3<double>(100, 100, 0)) &&
                    cerca(p.puntos[1], Punto3<double>(300, 100, 0)))
                {
                    linea = true;
                }
            }
            EXPECT_TRUE(linea);
            vista = true;
        });
    g.intro();
    EXPECT_EQ(s.editor->comandoLinea(), 0);
    EXPECT_TRUE(vista);
}

TEST(ComandoPunto, cadaRespuestaEsUnPuntoHastaIntro)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    g.escribe("1,2,3").clic(50, 60).intro();
    EXPECT_EQ(s.editor->comandoPunto(), 2);
    ASSERT_EQ(s.dibujo.entidades.size(), 2U);
    EXPECT_EQ(*s.dibujo.entidades[0]->coordenada(0), Punto3<double>(1, 2, 3));
    EXPECT_TRUE(cerca(*s.dibujo.entidades[1]->coordenada(0), Punto3<double>(50, 60, 0)));
    EXPECT_EQ(s.editor->comandosDeshacer.size(), 2U);
    EXPECT_EQ(s.textos.front(), "Seleccione coordenadas del punto:");
}

TEST(ComandoPunto, unVetoDelAnfitrionNoDejaPasoNiEntidad)
{
    SesionEditor s;
    int preguntas = 0;
    s.editor->setReactorInsercionEntidades(
        [&](int64_t, EditorDibujo::enumInsercionEntidades tipo)
        {
            EXPECT_EQ(tipo, EditorDibujo::kEntidadInsertada);
            return ++preguntas != 1;  // the first one is refused
        });
    GuionSesion g(*s.editor, s.pantalla);
    g.escribe("1,1").escribe("2,2").intro();
    EXPECT_EQ(s.editor->comandoPunto(), 1);
    EXPECT_EQ(preguntas, 2);
    ASSERT_EQ(s.dibujo.entidades.size(), 1U);
    EXPECT_EQ(*s.dibujo.entidades[0]->coordenada(0), Punto3<double>(2, 2, 0));
    EXPECT_EQ(s.editor->comandosDeshacer.size(), 1U);
}

TEST(ComandoInterrumpido, otroComandoDesdeUnaEsperaDesplazaAlPrimero)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    int puntos = -1;
    size_t textosAlTerminarPunto = 0;
    // While "linea" waits for its third point, the host starts "punto" from its event loop;
    // the answers after that go to "punto", which reads the same queue.
    g.escribe("0,0").escribe("10,0").ejecuta(
        [&]()
        {
            puntos = s.editor->comandoPunto();
            textosAlTerminarPunto = s.textos.size();
        });
    g.escribe("5,5").intro();
    EXPECT_EQ(s.editor->comandoLinea(), 1);
    EXPECT_EQ(puntos, 1);
    EXPECT_EQ(s.dibujo.entidades.size(), 2U);

    // "linea" saw kCancelado once, then closed its wait and itself.
    EXPECT_EQ(s.estados, std::string("IIFIFI") + "IIFIFF" + "CFF");
    // Nothing but the cleared prompt line after "punto" ended: no cancel text, no prompt.
    ASSERT_GE(s.textos.size(), textosAlTerminarPunto);
    for (size_t i = textosAlTerminarPunto; i < s.textos.size(); ++i)
    {
        EXPECT_EQ(s.textos[i], "");
    }
    EXPECT_EQ(s.editor->nivelComando, 0);
    // The flag stays up at rest; the next scope to open clears it.
    s.editor->iniciaComandoInteractivo(false);
    EXPECT_FALSE(s.editor->comandoInterrumpido);
    s.editor->finComandoInteractivo();
}

TEST(ComandoInterrumpido, cancelarTerminaElComandoConSuTexto)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    g.escribe("0,0").cancela();
    EXPECT_EQ(s.editor->comandoLinea(), 0);
    EXPECT_EQ(s.textos.at(s.textos.size() - 2), "* Cancelado *");
    EXPECT_EQ(s.estados, "IIFIFF");
    // The flag does not outlive the command.
    EXPECT_FALSE(s.editor->cancelado);
}

}  // namespace
