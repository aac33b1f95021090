// The editor's frame: scopes and the transparent stack, the local system through load, save
// and paint, typed coordinates in the local system, and the reference plane a scope defines.
#include <gtest/gtest.h>

#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "entidades/SistemaLocal.h"
#include "soporte/FicheroTemporal.h"
#include "soporte/GuionSesion.h"

namespace
{

using cad::cursor_t;
using cad::Punto3;
using cad::SistemaLocal;
using cad::Vector3D;
using cad::prueba::GuionSesion;
using cad::prueba::SesionEditor;

// Inserts and activates a local system "obra" at (10, 20, 0), turned a quarter round z:
// local x runs along y.
void activaObra(SesionEditor& s)
{
    auto* sl = new SistemaLocal();
    sl->nombre = "obra";
    sl->setVectoresXYZ(Vector3D<double>(0, 1, 0), Vector3D<double>(-1, 0, 0),
                       Vector3D<double>(0, 0, 1));
    sl->setOrigen(Punto3<double>(10, 20, 0));
    s.editor->nuevaEntidad(sl);
    s.editor->activaSistemaLocal(*sl);
}

// Typed coordinates are local while the system is active. Once the system is deleted, the
// next paint drops it from the editor and the display, and points map to themselves again.
TEST(MarcoEditor, coordenadasTecleadasEnElSistemaLocalActivoHastaQueSeBorra)
{
    SesionEditor s;
    activaObra(s);
    EXPECT_TRUE(s.pantalla.haySistemaLocal);
    GuionSesion g(*s.editor, s.pantalla);
    g.escribe("1,2,3");
    cursor_t c;
    ASSERT_TRUE(s.editor->getPunto("P:", c, true));
    EXPECT_EQ(c.posicion, Punto3<double>(1, 2, 3));  // as typed
    EXPECT_EQ(c.get(), Punto3<double>(8, 21, 3));    // in the drawing

    ASSERT_TRUE(s.dibujo.borraSistemaLocal("obra"));
    EXPECT_TRUE(s.editor->haySistemaLocal);
    s.pintaSuperposicion();
    EXPECT_FALSE(s.editor->haySistemaLocal);
    EXPECT_FALSE(s.pantalla.haySistemaLocal);
    EXPECT_EQ(s.editor->aDocumento(Punto3<double>(1, 2, 3)), Punto3<double>(1, 2, 3));
}

TEST(MarcoEditor, elSistemaLocalViajaConElDocumento)
{
    const std::string ruta = cad::prueba::rutaTemporal("conSistema.tcad");
    {
        SesionEditor s;
        activaObra(s);
        EXPECT_TRUE(s.editor->guardaDocumento(ruta.c_str()));
        std::string nombre;
        EXPECT_TRUE(s.dibujo.getVariable("sistemaLocal", nombre));
        EXPECT_EQ(nombre, "obra");
    }
    SesionEditor t;
    EXPECT_FALSE(t.editor->haySistemaLocal);
    ASSERT_TRUE(t.editor->cargaDocumento(ruta.c_str()));
    EXPECT_TRUE(t.editor->haySistemaLocal);
    EXPECT_EQ(t.editor->sistemaLocalActual().nombre, "obra");
    EXPECT_EQ(t.editor->aDocumento(Punto3<double>(1, 0, 0)), Punto3<double>(10, 21, 0));
}

TEST(MarcoEditor, guardarEnUnaRutaImposibleDevuelveVerdadero)
{
    SesionEditor s;
    EXPECT_TRUE(s.editor->guardaDocumento("/no/existe/esta/carpeta/d.tcad"));
}

// A command that ends inside a transparent command ends that one too; closing the transparent
// one swallows the click that ended it and leaves the outer command interrupted.
TEST(MarcoEditor, pilaDeTransparentes)
{
    SesionEditor s;
    s.editor->iniciaComandoInteractivo(false);
    s.editor->iniciaComandoInteractivo(true);
    s.editor->iniciaComandoInteractivo(false);
    EXPECT_EQ(s.pantalla.modoInteraccion, 2);
    s.editor->finComandoInteractivo();
    EXPECT_TRUE(s.editor->cancelado);
    EXPECT_TRUE(s.editor->comandoInterrumpido);

    s.pantalla.clic(10, 10);
    s.pantalla.clic(20, 20);
    s.editor->finComandoInteractivo();
    EXPECT_FALSE(s.editor->cancelado);
    ASSERT_EQ(s.pantalla.eventos.size(), 1U);
    EXPECT_EQ(s.pantalla.eventos.front().first.x, 20);

    s.editor->finComandoInteractivo();
    EXPECT_EQ(s.editor->nivelComando, 0);
    EXPECT_TRUE(s.editor->pilaTransparentes.empty());
    EXPECT_EQ(s.pantalla.modoInteraccion, 0);
    EXPECT_EQ(s.estados, "IIIFFF");

    s.dibujo.setModo2D(true, &s.pantalla);
    s.editor->iniciaComandoInteractivo(false);
    s.editor->finComandoInteractivo();
    EXPECT_EQ(s.pantalla.modoInteraccion, 1);
}

TEST(MarcoEditor, unAmbitoDefineElPlanoQueFalta)
{
    SesionEditor s;
    s.dibujo.origenPlano = cad::invalido;
    s.pantalla.setCamara(Punto3<double>(0, -100, 0), Punto3<double>(0, 0, 0),
                         Vector3D<double>(0, 0, 1), 1.0, 0.0);
    s.editor->iniciaComandoInteractivo(false);
    EXPECT_EQ(s.dibujo.origenPlano, Punto3<double>(0, 0, 0));
    EXPECT_EQ(s.dibujo.normalPlano, Vector3D<double>(0, 1, 0));
    EXPECT_TRUE(s.dibujo.planoTemporalActivo);
    s.editor->finComandoInteractivo();
    // A plane that is there is left alone.
    s.dibujo.setPlanoReferencia(Punto3<double>(1, 2, 3), Vector3D<double>(0, 0, 1));
    s.editor->iniciaComandoInteractivo(false);
    EXPECT_EQ(s.dibujo.origenPlano, Punto3<double>(1, 2, 3));
    s.editor->finComandoInteractivo();
}

TEST(MarcoEditor, elCursorDeLaEsperaSeDibujaEnPixeles)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    std::vector<std::string> cruz;
    g.mueve(50, 60)
        .ejecuta(
            [&]()
            {
                s.pantalla.grabando = true;
                s.pintaSuperposicion();
                s.pantalla.grabando = false;
                cruz = s.pantalla.llamadasDe("dibujaPolilinea");
            })
        .intro();
    cursor_t c;
    EXPECT_FALSE(s.editor->getPunto("P:", c, true));
    // Two strokes of 2 x kVentanaReferencia pixels each way through the pointer.
    ASSERT_EQ(cruz.size(), 2U);
    EXPECT_NE(cruz[0].find("(30,60,0) (70,60,0)"), std::string::npos) << cruz[0];
    EXPECT_NE(cruz[1].find("(50,40,0) (50,80,0)"), std::string::npos) << cruz[1];
}

// A right click ends a plane or entity wait at once: the script gives nothing after it, and a
// wait that went on to the next pump step would find the script exhausted.
TEST(MarcoEditor, elClicDerechoTerminaLaEsperaEnElActo)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    g.clic(10, 10, cad::PantallaCAD::kBotonDerecho);
    cursor_t c;
    EXPECT_FALSE(s.editor->getPuntoEnPlano("P:", Punto3<double>(0, 0, 0), c));
    g.clic(10, 10, cad::PantallaCAD::kBotonDerecho);
    cad::SeleccionEntidades sel(&s.dibujo);
    EXPECT_FALSE(s.editor->seleccionaEntidad("E:", sel));
    EXPECT_EQ(g.agotado, 0);
    EXPECT_EQ(s.estados, "IFIF");
}

}  // namespace
