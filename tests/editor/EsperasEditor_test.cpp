// The editor's waits played as a user's sessions: what each accepts, what it prints, and the
// state it leaves behind.
#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "editor/LineaElastica.h"
#include "entidades/Linea.h"
#include "entidades/Polilinea.h"
#include "entidades/Punto.h"
#include "soporte/GuionSesion.h"

namespace
{

using cad::cursor_t;
using cad::EditorDibujo;
using cad::Linea;
using cad::PantallaCAD;
using cad::Punto3;
using cad::SeleccionEntidades;
using cad::Vector3D;
using cad::prueba::GuionSesion;
using cad::prueba::SesionEditor;
using Textos = std::vector<std::string>;

// A click gives the pixel's ray on the plane: equal to the pixel's point up to rounding.
bool cerca(const Punto3<double>& a, const Punto3<double>& b)
{
    return a.distancia(b) < 1e-9;
}

// Entities inserted straight into the drawing; `horizontal` runs from x = 100 to 300.
Linea* linea(SesionEditor& s, const Punto3<double>& a, const Punto3<double>& b)
{
    auto* l = new Linea(a, b);
    s.dibujo.nuevaEntidad(l);
    return l;
}
Linea* horizontal(SesionEditor& s, double y)
{
    return linea(s, Punto3<double>(100, y, 0), Punto3<double>(300, y, 0));
}
cad::Punto* punto(SesionEditor& s, double x, double y)
{
    auto* p = new cad::Punto(x, y, 0);
    s.dibujo.nuevaEntidad(p);
    return p;
}
// The band's kind while a wait runs, -1 without one.
int tipoBanda(const SesionEditor& s)
{
    return s.editor->lineaElastica != nullptr ? s.editor->lineaElastica->tipo : -1;
}

const char* const kCancelado = "* Cancelado *";

// --- typed waits ----------------------------------------------------------------------------

TEST(EsperasTecleadas, numerosSiNoTextoLibreYCancelar)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    // The prompt goes to the host and to the display.
    g.escribe("abc def");
    std::string r;
    EXPECT_TRUE(s.editor->esperaEntrada("Diga:", r));
    EXPECT_EQ(r, "abc def");
    EXPECT_EQ(s.pantalla.textos, Textos({"Diga:"}));

    // Numbers: the refusal's text and the prompt again; an empty line when accepted.
    s.textos.clear();
    int i = 5;
    g.escribe("x").escribe("0");
    EXPECT_TRUE(s.editor->entradaInt("N:", false, &i));
    EXPECT_EQ(i, 0);
    EXPECT_EQ(s.textos, Textos({"N:", "Introduzca un número entero", "N:"}));
    g.escribe("12abc").intro();
    EXPECT_TRUE(s.editor->entradaInt("N:", false, &i));
    EXPECT_TRUE(s.editor->entradaInt("N:", true, &i));
    EXPECT_EQ(i, 12);
    // Without aceptaVacio an empty line asks again, with no error text.
    s.textos.clear();
    g.intro().escribe("-3");
    EXPECT_TRUE(s.editor->entradaInt("N:", false, &i));
    EXPECT_EQ(i, -3);
    EXPECT_EQ(s.textos, Textos({"N:", "N:"}));

    s.textos.clear();
    const char* const decimal = "Introduzca un número decimal";
    double d = 5.0;
    g.escribe("abc").escribe("0");
    EXPECT_TRUE(s.editor->entradaDoble("V:", false, &d));
    EXPECT_EQ(d, 0.0);
    EXPECT_EQ(s.textos, Textos({"V:", decimal, "V:"}));
    g.escribe("2.5x");
    EXPECT_TRUE(s.editor->entradaDoble("V:", false, &d));
    EXPECT_EQ(d, 2.5);
    // What atof reads as no finite number is refused like a word.
    s.textos.clear();
    g.escribe("nan").escribe("-inf").escribe("1e999").escribe("7");
    EXPECT_TRUE(s.editor->entradaDoble("V:", false, &d));
    EXPECT_EQ(d, 7.0);
    EXPECT_EQ(s.textos, Textos({"V:", decimal, "V:", decimal, "V:", decimal, "V:"}));

    s.textos.clear();
    bool b = true;
    g.escribe("quizá").escribe("No");
    EXPECT_TRUE(s.editor->entradaBool("¿Seguro?", false, &b));
    EXPECT_FALSE(b);
    EXPECT_EQ(s.textos, Textos({"¿Seguro?", "Conteste Si o No", "¿Seguro?"}));
    g.escribe("sí").intro();
    EXPECT_TRUE(s.editor->entradaBool("¿Seguro?", false, &b));
    EXPECT_TRUE(s.editor->entradaBool("¿Seguro?", true, &b));
    EXPECT_TRUE(b);

    s.textos.clear();
    std::string t = "antes";
    g.intro().escribe("hola mundo").intro();
    EXPECT_TRUE(s.editor->entradaString("Nombre:", false, &t));
    EXPECT_TRUE(s.editor->entradaString("Nombre:", true, &t));
    EXPECT_EQ(t, "hola mundo");
    EXPECT_EQ(s.textos, Textos({"Nombre:", "Nombre:", "Nombre:"}));

    // Cancelling ends each wait with false and leaves its variable alone.
    s.textos.clear();
    s.estados.clear();
    i = 1;
    d = 2.0;
    b = true;
    t = "t";
    g.cancela().cancela().cancela().cancela();
    EXPECT_FALSE(s.editor->entradaInt("A:", false, &i));
    EXPECT_FALSE(s.editor->entradaDoble("B:", false, &d));
    EXPECT_FALSE(s.editor->entradaBool("C:", false, &b));
    EXPECT_FALSE(s.editor->entradaString("D:", false, &t));
    EXPECT_EQ(s.textos,
              Textos({"A:", kCancelado, "B:", kCancelado, "C:", kCancelado, "D:", kCancelado}));
    EXPECT_EQ(s.estados, "IFIFIFIF");
    EXPECT_TRUE(i == 1 && d == 2.0 && b && t == "t");
}

// --- getPunto -------------------------------------------------------------------------------

TEST(GetPunto, lasCoordenadasTecleadasNoSeEnganchanAunqueUnClicSi)
{
    SesionEditor s;
    linea(s, Punto3<double>(12, 20, 0), Punto3<double>(80, 20, 0));
    s.pinta();
    s.dibujo.setReferenciaEntidades(true, 1);
    GuionSesion g(*s.editor, s.pantalla);
    g.clic(14, 22).mueve(12, 20).escribe("10,20");
    cursor_t c;
    ASSERT_TRUE(s.editor->getPunto("P:", c));
    EXPECT_EQ(c.referencia, Punto3<double>(12, 20, 0));  // the control: a click snaps
    // The same cursor, still over the line's end, takes the typed point as it is.
    ASSERT_TRUE(s.editor->getPunto("P:", c));
    EXPECT_EQ(c.referencia, Punto3<double>(10, 20, 0));
}

// A lone number is no coordinate, and Enter alone ends the wait with no text. Coordinates or
// a number that atof reads as no finite value are an invalid coordinate: the error, the
// prompt again, and the point command makes nothing of them. Coordinates are tried before
// options, options before a number; during the wait the document's cursor and the display's
// mode are the selection ones, restored afterwards.
TEST(GetPunto, coordenadasNoValidasOpcionesNumeroYCursorDeLaEspera)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    const std::string error = "Coordenada no válida";
    g.escribe("10").escribe("3,4,5").intro();
    cursor_t c;
    EXPECT_TRUE(s.editor->getPunto("P:", c));
    EXPECT_EQ(c.referencia, Punto3<double>(3, 4, 5));
    EXPECT_FALSE(s.editor->getPunto("Q:", c));
    EXPECT_EQ(s.textos, Textos({"P:", error, "P:", "", "Q:", ""}));
    EXPECT_EQ(s.estados, "IFIF");

    s.textos.clear();
    g.escribe("nan,0").escribe("1e999,0").intro();
    EXPECT_EQ(s.editor->comandoPunto(), 0);
    EXPECT_TRUE(s.dibujo.entidades.empty());
    const std::string p = "Seleccione coordenadas del punto:";
    EXPECT_EQ(s.textos, Textos({p, error, p, error, p, ""}));

    s.textos.clear();
    double v = -1.0;
    g.escribe("inf").escribe("2");
    EXPECT_TRUE(s.editor->getPunto("P:", c, nullptr, &v, true));
    EXPECT_EQ(v, 2.0);
    EXPECT_EQ(s.textos, Textos({"P:", error, "P:", ""}));

    s.dibujo.setTipoCursor(1);
    int tipo = -1;
    int modo = -1;
    g.ejecuta([&]() { tipo = s.dibujo.tipoCursor, modo = s.pantalla.modoInteraccion; })
        .escribe("1,1");
    EXPECT_TRUE(s.editor->getPunto("P:", c));
    EXPECT_EQ(tipo, EditorDibujo::kCursorSeleccionCoordenadas);
    EXPECT_EQ(modo, PantallaCAD::kVisorSeleccion);
    EXPECT_EQ(s.dibujo.tipoCursor, 1);
    EXPECT_EQ(s.pantalla.modoInteraccion, PantallaCAD::kVisorLibre);

    s.textos.clear();
    int op = -5;
    v = -1.0;
    s.editor->nuevaOpcion("Cerrar");
    s.editor->nuevaOpcion("Deshacer");
    g.escribe("xyz").escribe("d").escribe("3");
    EXPECT_TRUE(s.editor->getPunto("P:", c, &op, nullptr, true));
    EXPECT_EQ(op, 1);
    EXPECT_EQ(s.textos, Textos({"P:", "Se requiere una coordenada u opción", "P:", ""}));
    // No option matched: the number answers, and the option pointer gets -1.
    EXPECT_TRUE(s.editor->getPunto("P:", c, &op, &v, true));
    EXPECT_EQ(v, 3.0);
    EXPECT_EQ(op, -1);

    s.editor->limpiaEntradaCompleta();
    s.editor->nuevaOpcion("12");
    s.editor->nuevaOpcion("1,2");
    v = -1.0;
    g.escribe("12").escribe("1,2");
    EXPECT_TRUE(s.editor->getPunto("P:", c, &op, &v, true));
    EXPECT_EQ(op, 0);
    EXPECT_EQ(v, -1.0);
    op = 7;
    EXPECT_TRUE(s.editor->getPunto("P:", c, &op, &v, true));
    EXPECT_EQ(op, 7);
    EXPECT_EQ(c.referencia, Punto3<double>(1, 2, 0));
}

// --- window, circle, plane ------------------------------------------------------------------

TEST(GetVentana, dosClicsDanLosPixelesConLaReferenciaForzada)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    s.dibujo.setReferenciaEntidades(false, 6);
    bool global = false;
    int mascara = 0;
    int banda = 0;
    bool pixeles = false;
    std::vector<Punto3<double>> anclas;
    g.clic(100, 100)
        .ejecuta(
            [&]()
            {
                s.dibujo.getReferenciaEntidades(global, mascara);
                if ((banda = tipoBanda(s)) > 0)
                {
                    pixeles = s.editor->lineaElastica->pixeles;
                    anclas = s.editor->lineaElastica->anclas;
                }
            })
        .clic(300, 250);
    int a[2] = {0, 0};
    int b[2] = {0, 0};
    EXPECT_TRUE(s.editor->getVentana("E1:", "E2:", a, b));
    EXPECT_EQ(std::vector<int>({a[0], a[1], b[0], b[1]}), std::vector<int>({100, 100, 300, 250}));
    EXPECT_TRUE(global);
    EXPECT_EQ(mascara, 32);
    EXPECT_EQ(banda, 10);
    EXPECT_TRUE(pixeles);
    EXPECT_EQ(anclas.at(0), Punto3<double>(100, 100, 0));
    EXPECT_EQ(s.editor->lineaElastica, nullptr);
    EXPECT_FALSE(s.dibujo.referenciaGlobal);
    EXPECT_EQ(s.dibujo.mascaraReferencias, 6);

    // A cancelled second corner still takes the pixel under the pointer.
    g.clic(10, 20).mueve(150, 160).cancela();
    EXPECT_FALSE(s.editor->getVentana("E1:", "E2:", a, b));
    EXPECT_EQ(std::vector<int>({b[0], b[1]}), std::vector<int>({150, 160}));
    EXPECT_EQ(s.dibujo.mascaraReferencias, 6);
}

TEST(GetCirculo, centroPorClicYRadioPorUnSegundoClicEnElPlano)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    int banda = 0;
    g.clic(100, 100).ejecuta([&]() { banda = tipoBanda(s); }).clic(130, 140);
    Punto3<double> centro;
    double radio = 0.0;
    EXPECT_TRUE(s.editor->getCirculo("Centro:", "Radio:", &centro, &radio));
    EXPECT_EQ(banda, 9);
    EXPECT_TRUE(cerca(centro, Punto3<double>(100, 100, 0)));
    EXPECT_NEAR(radio, 50.0, 1e-9);
    EXPECT_EQ(s.textos, Textos({"Centro:", "", "Radio:", ""}));
    EXPECT_EQ(s.estados, "IIFIFF");
    EXPECT_EQ(s.editor->lineaElastica, nullptr);
    EXPECT_FALSE(s.dibujo.planoTemporalActivo);
}

TEST(GetPuntoEnPlano, planoHaciaLaVistaPorLaBaseSinOpciones)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    const Punto3<double> base(5, 6, 7);
    cursor_t c;
    bool temporal = false;
    double d = 0.0;
    g.ejecuta([&]() { temporal = s.dibujo.planoTemporalActivo, d = s.dibujo.planoTemporal.d; })
        .cancela();
    EXPECT_FALSE(s.editor->getPuntoEnPlano("Plano:", base, c));
    EXPECT_TRUE(temporal);
    EXPECT_NEAR(d, 7.0, 1e-12);  // normal (0,0,-1) through z = 7
    // The reference plane stays as the wait set it; the temporary one goes.
    EXPECT_EQ(s.dibujo.origenPlano, base);
    EXPECT_EQ(s.dibujo.normalPlano, Vector3D<double>(0, 0, -1));
    EXPECT_FALSE(s.dibujo.planoTemporalActivo);
    EXPECT_EQ(s.textos, Textos({"Plano:", kCancelado, ""}));

    g.clic(30, 40);
    EXPECT_TRUE(s.editor->getPuntoEnPlano("Plano:", base, c));
    EXPECT_TRUE(cerca(c.get(), Punto3<double>(30, 40, 7)));

    // The options are cleared: a letter that would have answered is not a coordinate.
    s.textos.clear();
    s.editor->nuevaOpcion("Cerrar");
    g.escribe("c").escribe("1,2,3");
    EXPECT_TRUE(s.editor->getPuntoEnPlano("Plano:", base, c));
    EXPECT_EQ(c.referencia, Punto3<double>(1, 2, 3));
    EXPECT_EQ(s.textos, Textos({"Plano:", "Coordenada no válida", "Plano:", ""}));
}

// --- picking entities -----------------------------------------------------------------------

TEST(SeleccionaEntidad, etiquetaClicSobreLaLineaOpcionYClicDerecho)
{
    SesionEditor s;
    Linea* l = horizontal(s, 100);
    s.pinta();
    GuionSesion g(*s.editor, s.pantalla);
    // The wrong tag drops the entity without asking again: one click per wait, as asking
    // again would run out of script.
    g.clic(200, 100).clic(200, 100).clic(200, 100);
    SeleccionEntidades deTipo(&s.dibujo);
    EXPECT_FALSE(s.editor->seleccionaEntidadTipo("Pn1", "Plano:", deTipo));
    EXPECT_TRUE(deTipo.entidades.empty());
    EXPECT_EQ(l->estado & 9U, 0U);
    // The file tag, or the name of the type it stands for (callers ask for "Polilinea"),
    // is accepted.
    EXPECT_TRUE(s.editor->seleccionaEntidadTipo("Linea", "Linea:", deTipo));
    EXPECT_EQ(deTipo.entidades, std::vector<cad::Entidad*>({l}));
    EXPECT_TRUE(s.editor->seleccionaEntidadTipo("Ln1", "Linea:", deTipo));
    EXPECT_EQ(deTipo.entidades, std::vector<cad::Entidad*>({l}));

    s.textos.clear();
    s.estados.clear();
    int tipo = -1;
    // Empty space and a line with no options prompt are ignored.
    g.clic(600, 500).escribe("hola").ejecuta([&]() { tipo = s.dibujo.tipoCursor; }).clic(200, 100);
    SeleccionEntidades sel(&s.dibujo);
    cursor_t c;
    EXPECT_TRUE(s.editor->seleccionaEntidad("E:", sel, &c, nullptr));
    EXPECT_EQ(sel.entidades, std::vector<cad::Entidad*>({l}));
    EXPECT_EQ(std::vector<int>({c.x, c.y}), std::vector<int>({200, 100}));
    EXPECT_EQ(tipo, EditorDibujo::kCursorSeleccionEntidades);
    EXPECT_EQ(s.textos, Textos({"E:", ""}));
    EXPECT_EQ(s.estados, "IF");

    s.textos.clear();
    SeleccionEntidades otra(&s.dibujo);
    s.editor->nuevaOpcion("Borrar");
    int op = -5;
    g.escribe("xyz").escribe("b");
    EXPECT_FALSE(s.editor->seleccionaEntidad("E:", otra, nullptr, &op));
    EXPECT_EQ(op, 0);
    EXPECT_TRUE(otra.entidades.empty());
    EXPECT_EQ(s.textos, Textos({"E:", "Se requiere una entidad u opción", "E:", ""}));

    s.editor->limpiaEntradaCompleta();
    g.clic(200, 100, PantallaCAD::kBotonDerecho).mueve(201, 101);
    EXPECT_FALSE(s.editor->seleccionaEntidad("E:", otra));
    EXPECT_TRUE(otra.entidades.empty());
}

TEST(SeleccionaEntidades, losClicsResaltanHastaIntroYCancelarVacia)
{
    SesionEditor s;
    Linea* a = horizontal(s, 100);
    Linea* b = horizontal(s, 300);
    s.pinta();
    GuionSesion g(*s.editor, s.pantalla);
    s.editor->nuevaOpcion("Todo");
    std::vector<uint32_t> resaltes;
    const auto mira = [&]() { resaltes.push_back((a->estado & 8U) | ((b->estado & 8U) << 1)); };
    g.clic(200, 100).ejecuta(mira).escribe("t").clic(200, 300).ejecuta(mira).intro();
    SeleccionEntidades sel(&s.dibujo);
    EXPECT_TRUE(s.editor->seleccionaEntidades("D:", sel));
    EXPECT_EQ(resaltes, std::vector<uint32_t>({8U, 24U}));
    EXPECT_EQ(sel.entidades, std::vector<cad::Entidad*>({a, b}));
    EXPECT_EQ((a->estado | b->estado) & 8U, 0U);
    EXPECT_EQ(s.textos, Textos({"D:", "Se requiere una entidad u opción", "D:", ""}));

    // The Enter that ended a wait is no answer to the next one, which resets first.
    SeleccionEntidades otra(&s.dibujo);
    g.intro();
    EXPECT_FALSE(s.editor->seleccionaEntidades("D:", otra));
    s.textos.clear();
    g.clic(200, 100).cancela();
    EXPECT_FALSE(s.editor->seleccionaEntidades("D:", otra));
    EXPECT_TRUE(otra.entidades.empty());
    EXPECT_EQ(a->estado & 9U, 0U);
    EXPECT_EQ(s.textos, Textos({"D:", kCancelado, ""}));
}

// --- selection by contour -------------------------------------------------------------------

// Records the host's update notices, starting from a known announced selection: the record
// of the last one outlives editors.
struct Avisos
{
    explicit Avisos(SesionEditor& s)
    {
        s.editor->setActualiza([this](EditorDibujo::actualiza_e t) { lista.push_back(t); });
        s.editor->actualiza(EditorDibujo::kPropiedades, true);
        lista.clear();
    }
    std::vector<EditorDibujo::actualiza_e> lista;
};

TEST(ComandoSeleccionaEntidades, ventanaSeleccionaLoQueTieneUnVerticeDentro)
{
    SesionEditor s;
    Linea* dentro = linea(s, Punto3<double>(100, 100, 0), Punto3<double>(150, 120, 0));
    Linea* fuera = linea(s, Punto3<double>(500, 500, 0), Punto3<double>(600, 500, 0));
    Linea* cruza = linea(s, Punto3<double>(180, 180, 0), Punto3<double>(400, 400, 0));
    s.dibujo.setReferenciaEntidades(false, 4);
    Avisos avisos(s);
    GuionSesion g(*s.editor, s.pantalla);
    g.clic(50, 50).clic(200, 200);
    EXPECT_TRUE(s.editor->comandoSeleccionaEntidades("Uno:", "Dos:", EditorDibujo::kVentana));
    EXPECT_EQ(std::vector<uint32_t>({dentro->estado & 1U, cruza->estado & 1U, fuera->estado & 1U}),
              std::vector<uint32_t>({1U, 1U, 0U}));
    EXPECT_EQ(std::count(avisos.lista.begin(), avisos.lista.end(), EditorDibujo::kPropiedades), 1);
    EXPECT_FALSE(s.dibujo.referenciaGlobal);
    EXPECT_EQ(s.dibujo.mascaraReferencias, 4);
    // The window's prompts are the catalogue's, whatever the caller passed.
    EXPECT_EQ(s.textos,
              Textos({"Seleccione primera esquina:", "", "Seleccione segunda esquina:", ""}));
}

TEST(ComandoSeleccionaEntidades, esferaSeleccionaPorCoordenadasDentroDelRadio)
{
    SesionEditor s;
    cad::Punto* cercano = punto(s, 110, 110);
    Linea* extremo = linea(s, Punto3<double>(0, 0, 0), Punto3<double>(120, 90, 0));
    // Its segment runs through the centre but neither end is inside.
    Linea* atraviesa = linea(s, Punto3<double>(60, 100, 0), Punto3<double>(140, 100, 0));
    cad::Punto* lejos = punto(s, 200, 200);
    GuionSesion g(*s.editor, s.pantalla);
    int banda = 0;
    g.clic(100, 100).ejecuta([&]() { banda = tipoBanda(s); }).clic(130, 100);
    EXPECT_TRUE(s.editor->comandoSeleccionaEntidades("", "", EditorDibujo::kEsfera));
    EXPECT_EQ(banda, 9);
    EXPECT_EQ(std::vector<uint32_t>({cercano->estado & 1U, extremo->estado & 1U,
                                     atraviesa->estado & 1U, lejos->estado & 1U}),
              std::vector<uint32_t>({1U, 1U, 0U, 0U}));
    EXPECT_EQ(s.textos, Textos({"Seleccione el centro de la esfera:", "",
                                "Seleccione el radio de la esfera:", ""}));
}

TEST(ComandoSeleccionaEntidades, poligonoSimpleSeleccionaEInsertaSuContornoYElCruzadoNada)
{
    SesionEditor s;
    cad::Punto* dentro = punto(s, 100, 100);
    cad::Punto* fuera = punto(s, 400, 400);
    GuionSesion g(*s.editor, s.pantalla);
    // A bow tie first: nothing selected, nothing inserted.
    g.clic(50, 50).clic(250, 250).clic(250, 50).clic(50, 250).intro();
    EXPECT_FALSE(s.editor->comandoSeleccionaEntidades("", "", EditorDibujo::kPolilinea));
    EXPECT_EQ(dentro->estado & 1U, 0U);
    EXPECT_EQ(s.dibujo.entidades.size(), 2U);
    EXPECT_FALSE(s.editor->puedeDeshacer());

    g.clic(50, 50).clic(250, 50).clic(250, 250).clic(50, 250).intro();
    EXPECT_TRUE(s.editor->comandoSeleccionaEntidades("", "", EditorDibujo::kPolilinea));
    EXPECT_NE(dentro->estado & 1U, 0U);
    EXPECT_EQ(fuera->estado & 1U, 0U);
    ASSERT_EQ(s.dibujo.entidades.size(), 3U);
    const auto* contorno = dynamic_cast<const cad::Polilinea*>(s.dibujo.entidades[2]);
    ASSERT_NE(contorno, nullptr);
    EXPECT_TRUE(contorno->cerrada);
    ASSERT_EQ(contorno->vertices.size(), 4U);
    EXPECT_TRUE(cerca(contorno->vertices[2], Punto3<double>(250, 250, 0)));
    EXPECT_TRUE(s.editor->puedeDeshacer());
    EXPECT_EQ(s.textos.front(), "Seleccione vértice:");
    EXPECT_EQ(s.dibujo.mascaraReferencias, 0);
}

// --- frame ----------------------------------------------------------------------------------

// A cancel outside a command does not cancel the next one. actualiza tells the host only
// when the selection changed.
TEST(MarcoEsperas, cancelarFueraDeUnComandoYAvisosDeSeleccion)
{
    SesionEditor s;
    s.editor->cancelaComando();
    EXPECT_TRUE(s.editor->cancelado);
    GuionSesion g(*s.editor, s.pantalla);
    g.escribe("1,2");
    cursor_t c;
    EXPECT_TRUE(s.editor->getPunto("P:", c));
    EXPECT_EQ(c.referencia, Punto3<double>(1, 2, 0));
    EXPECT_EQ(s.textos, Textos({"P:", ""}));
    EXPECT_EQ(s.estados, "IF");

    cad::Punto* p = punto(s, 1, 1);
    Avisos avisos(s);
    s.editor->actualiza(EditorDibujo::kPropiedades, false);
    s.editor->actualiza(EditorDibujo::kPropiedades, false);
    p->marcaSeleccion();
    s.editor->actualiza(EditorDibujo::kPropiedades, false);
    s.editor->actualiza(EditorDibujo::kPropiedades, false);
    // kDocumento shares the record; other kinds always pass.
    s.editor->actualiza(EditorDibujo::kDocumento, false);
    s.editor->actualiza(EditorDibujo::kCapas, false);
    s.editor->actualiza(EditorDibujo::kCapas, false);
    EXPECT_EQ(avisos.lista,
              std::vector<EditorDibujo::actualiza_e>(
                  {EditorDibujo::kPropiedades, EditorDibujo::kCapas, EditorDibujo::kCapas}));

    // Another drawing with an equally empty selection: the record compares entities only.
    p->quitaSeleccion();
    s.editor->actualiza(EditorDibujo::kPropiedades, false);
    SesionEditor otra;
    std::vector<EditorDibujo::actualiza_e> enOtra;
    otra.editor->setActualiza([&](EditorDibujo::actualiza_e t) { enOtra.push_back(t); });
    otra.editor->actualiza(EditorDibujo::kPropiedades, false);
    EXPECT_TRUE(enOtra.empty());
}

}  // namespace
