// The facade's editor family, driven as a host drives it: commands that block while the
// scripted input runs from the message queue, undo, the command line, keys and picking.
#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Fendrix/WrapDibujoCAD.h"
#include "Fendrix/WrapPantallaCAD.h"
#include "PantallaReferencia.h"
#include "base/Configuracion.h"
#include "documento/Dibujo.h"
#include "documento/Vista.h"
#include "editor/EditorDibujo.h"
#include "soporte/GuionSesion.h"

namespace
{

using Fendrix::WrapDibujoCAD;
using Fendrix::WrapPantallaCAD;
using Estado = WrapDibujoCAD::estadoComandoInteractivo;
using cad::Punto3;
using cad::prueba::GuionSesion;

// A host: facade, reference display seen from above (pixel (x, y) shows (x, y, 0)), the
// delegates recording what reaches them.
struct Anfitrion
{
    cad::PantallaReferencia pantalla;
    WrapPantallaCAD wp;
    WrapDibujoCAD w{nullptr, nullptr};
    std::vector<std::string> textos;
    std::string estados;

    Anfitrion()
    {
        w.nuevoDocumento();
        cad::Vista* v = w.mDibujo->vistaActual;
        v->posicion = Punto3<double>(400, 300, 100);
        v->objetivo = Punto3<double>(400, 300, 0);
        v->arriba = cad::Vector3D<double>(0, 1, 0);
        pantalla.grabando = false;
        pantalla.setCamara(v->posicion, v->objetivo, v->arriba, 1.0, 0.0);
        wp.setPantalla(&pantalla);
        w.setSalidaTexto([this](const std::string& t) { textos.push_back(t); });
        w.setPantalla(&wp);
        w.setReactorComandoInteractivo(
            [this](Estado e) {
                estados.push_back(e == Estado::kInicio ? 'I' : e == Estado::kFin ? 'F' : 'C');
            });
    }
};

TEST(WrapEditor, comandoLineaConTresClicsDeshacerYRehacer)
{
    Anfitrion h;
    {
        GuionSesion g(*h.w.mEditor, h.pantalla);
        g.clic(100, 100).clic(200, 100).clic(200, 250).intro();
        EXPECT_EQ(h.w.comandoLinea(), 2);
    }
    // One pair for the command and one per wait, reported through the host's delegate.
    EXPECT_EQ(h.estados, "IIFIFIFIFF");
    std::vector<int64_t> handles;
    EXPECT_EQ(h.w.getEntidades(handles), 2);

    EXPECT_TRUE(h.w.puedeDeshacer());
    h.w.deshacer();
    h.w.deshacer();
    EXPECT_EQ(h.w.getEntidades(handles), 0);
    EXPECT_TRUE(h.w.puedeRehacer());
    h.w.deshacer();  // an empty stack: nothing, no crash
    h.w.rehacer();
    EXPECT_EQ(h.w.getEntidades(handles), 1);
    EXPECT_NE(h.w.nuevoPunto(1, 2, 3), 0);
    EXPECT_FALSE(h.w.puedeRehacer());
}

TEST(WrapEditor, getPuntoConOpcionesYLineaDeComandos)
{
    Anfitrion h;
    std::vector<std::string> opcionesVistas;
    GuionSesion g(*h.w.mEditor, h.pantalla);
    g.ejecuta([&]() { opcionesVistas = h.w.listaOpciones(); }).escribe("c");
    int32_t opcion = -5;
    double x = 0;
    double y = 0;
    double z = 0;
    ASSERT_TRUE(h.w.getPunto("Otro vértice/Borrar/Cerrar:", {"Borrar", "Cerrar"}, opcion, x, y, z));
    EXPECT_EQ(opcion, 1);
    EXPECT_EQ(opcionesVistas, (std::vector<std::string>{"Borrar", "Cerrar"}));
    EXPECT_TRUE(h.w.listaOpciones().empty());

    g.escribe("4,5,6");
    ASSERT_TRUE(h.w.getPunto("P:", x, y, z));
    EXPECT_EQ(Punto3<double>(x, y, z), Punto3<double>(4, 5, 6));
    EXPECT_TRUE(h.w.lineaComandosEsperaCoordenada());
    EXPECT_TRUE(h.w.lineaComandosEsperaValor());
}

TEST(WrapEditor, getValorConservaElValorPorDefectoConIntro)
{
    Anfitrion h;
    GuionSesion g(*h.w.mEditor, h.pantalla);
    g.intro().escribe("7").intro().escribe("n").intro().escribe("texto");
    int32_t entero = 0;
    ASSERT_TRUE(h.w.getValor("Entero:", entero, 42));
    EXPECT_EQ(entero, 42);
    ASSERT_TRUE(h.w.getValor("Entero:", entero, 42));
    EXPECT_EQ(entero, 7);
    double real = 0;
    ASSERT_TRUE(h.w.getValor("Real:", real, 2.5));
    EXPECT_EQ(real, 2.5);
    bool si = true;
    ASSERT_TRUE(h.w.getValor("¿Seguro?", si, true));
    EXPECT_FALSE(si);
    std::string s;
    ASSERT_TRUE(h.w.getValor("Nombre:", s, "base"));
    EXPECT_EQ(s, "base");
    ASSERT_TRUE(h.w.getValor("Nombre:", s, "base"));
    EXPECT_EQ(s, "texto");
    EXPECT_EQ(h.textos.front(), "Entero:");
}

TEST(WrapEditor, cancelarDesdeElAnfitrionYEscapeFueraDeUnComando)
{
    Anfitrion h;
    const int64_t p = h.w.nuevoPunto(150, 150, 0);
    h.w.seleccionaEntidad(p);
    std::vector<int64_t> sel;
    {
        GuionSesion g(*h.w.mEditor, h.pantalla);
        g.ejecuta(
             [&]()
             {
                 // Escape inside a command is the command's business: no deselection.
                 EXPECT_TRUE(h.w.dentroComandoInteractivo());
                 h.w.teclaPulsada(27, false, false, false);
                 EXPECT_EQ(h.w.getEntidadesSeleccionadas(sel), 1);
             })
            .ejecuta([&]() { h.w.cancelaComando(); });
        EXPECT_EQ(h.w.comandoPunto(), 0);
    }
    EXPECT_NE(std::find(h.textos.begin(), h.textos.end(), "* Cancelado *"), h.textos.end());
    EXPECT_FALSE(h.w.dentroComandoInteractivo());
    h.w.teclaPulsada(27, false, false, false);
    EXPECT_EQ(h.w.getEntidadesSeleccionadas(sel), 0);
}

// The facade's pick box is half the editor's: kVentanaReferencia / 2 pixels to each side.
TEST(WrapEditor, entidadBajoPixelConMediaVentana)
{
    Anfitrion h;
    ASSERT_EQ(cad::Configuracion::instancia().valor(cad::Configuracion::kVentanaReferencia), 10);
    const int64_t l = h.w.nuevaLinea(100, 100, 0, 300, 100, 0);
    const int64_t q = h.w.nuevoPunto(150, 104, 0);
    h.w.dibuja(&h.wp);
    EXPECT_EQ(h.w.getEntidadBajoPixel(200, 104), l);
    EXPECT_EQ(h.w.getEntidadBajoPixel(200, 105), l);
    EXPECT_EQ(h.w.getEntidadBajoPixel(200, 106), 0);
    std::vector<int64_t> hs;
    EXPECT_EQ(h.w.getEntidadesBajoPixel(150, 101, hs), 2);
    EXPECT_EQ(hs, (std::vector<int64_t>{l, q}));
    EXPECT_EQ(h.w.getEntidadesBajoPixel(700, 500, hs), 0);
    EXPECT_TRUE(hs.empty());
}

TEST(WrapEditor, cursorEnLosEjesDeLaVista)
{
    Anfitrion h;
    h.pantalla.setPosicionCursor(120, 80);
    double x = 0;
    double y = 0;
    int32_t falta = -1;
    // Seen from above, z is the missing coordinate.
    EXPECT_TRUE(h.w.getCursor(x, y, falta));
    EXPECT_EQ(falta, 2);
    EXPECT_NEAR(x, 120, 1e-9);
    EXPECT_NEAR(y, 80, 1e-9);
    double z = 1;
    EXPECT_TRUE(h.w.getCursor3d(x, y, z));
    EXPECT_NEAR(z, 0, 1e-9);
    // From the front (looking along +y), y is missing and the screen shows x and z.
    h.pantalla.setCamara(Punto3<double>(0, -100, 0), Punto3<double>(0, 0, 0),
                         cad::Vector3D<double>(0, 0, 1), 1.0, 0.0);
    h.pantalla.setPosicionCursor(410, 320);
    EXPECT_TRUE(h.w.getCursor(x, y, falta));
    EXPECT_EQ(falta, 1);
    EXPECT_NEAR(x, 10, 1e-9);
    EXPECT_NEAR(y, 20, 1e-9);
    // In 2D the answer is x, y and false.
    h.pantalla.setModo2D(true);
    EXPECT_FALSE(h.w.getCursor(x, y, falta));
    EXPECT_EQ(falta, 2);
}

TEST(WrapEditor, seleccionPorVentanaDesdeLaFachada)
{
    Anfitrion h;
    const int64_t dentro = h.w.nuevoPunto(150, 150, 0);
    h.w.nuevoPunto(500, 150, 0);
    h.w.dibuja(&h.wp);
    GuionSesion g(*h.w.mEditor, h.pantalla);
    g.clic(100, 100).clic(200, 200);
    ASSERT_TRUE(h.w.comandoSeleccionaEntidades("", "", WrapDibujoCAD::tipoSeleccion::kVentana));
    std::vector<int64_t> sel;
    ASSERT_EQ(h.w.getEntidadesSeleccionadas(sel), 1);
    EXPECT_EQ(sel[0], dentro);
    EXPECT_EQ(h.textos.front(), "Seleccione primera esquina:");
}

TEST(WrapEditor, fachadaLiberadaNoHaceNada)
{
    Anfitrion h;
    h.w.Dispose();
    EXPECT_EQ(h.w.comandoLinea(), 0);
    EXPECT_EQ(h.w.comandoPunto(), 0);
    EXPECT_FALSE(h.w.puedeDeshacer());
    h.w.deshacer();
    h.w.introPulsado("1,2");
    h.w.cancelaComando();
    EXPECT_TRUE(h.w.listaOpciones().empty());
    double x = 0;
    double y = 0;
    double z = 0;
    EXPECT_FALSE(h.w.getPunto("P:", x, y, z));
    EXPECT_EQ(h.w.getEntidadBajoPixel(1, 1), 0);
}

}  // namespace
