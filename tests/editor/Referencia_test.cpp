// A click becomes a point: the snap through the reference display's projection, the raw
// pick, the plane hit, the marker the overlay paints, and the facade's view of the cursor.
#include <gtest/gtest.h>

#include "documento/Capa.h"
#include "editor/EditorDibujo.h"
#include "entidades/Linea.h"
#include "entidades/Plano.h"
#include "soporte/GuionSesion.h"

namespace
{

using cad::cursor_t;
using cad::Punto3;
using cad::prueba::GuionSesion;
using cad::prueba::SesionEditor;

// A drawing with a line from (100,100) to (300,100), painted so that it can be picked.
struct ConLinea : SesionEditor
{
    cad::Linea* linea = new cad::Linea(Punto3<double>(100, 100, 0), Punto3<double>(300, 100, 0));
    ConLinea()
    {
        editor->nuevaEntidad(linea);
        pinta();
    }
    // One getPunto answered by a click at the pixel.
    cursor_t clic(int x, int y)
    {
        GuionSesion g(*editor, pantalla);
        g.clic(x, y);
        cursor_t c;
        EXPECT_TRUE(editor->getPunto("P:", c, true));
        return c;
    }
    std::vector<std::string> marcas()
    {
        pantalla.llamadas.clear();
        pantalla.grabando = true;
        pintaSuperposicion();
        pantalla.grabando = false;
        return pantalla.llamadasDe("dibujaMarca");
    }
};

TEST(Referencia, conExtremosUnClicCercaDelFinDevuelveElFinExacto)
{
    ConLinea s;
    s.dibujo.setReferenciaEntidades(true, 1);
    const cursor_t c = s.clic(104, 103);
    EXPECT_EQ(c.get(), Punto3<double>(100, 100, 0));
    EXPECT_EQ(c.tipo, 1);
    EXPECT_EQ(c.entidad, s.linea);
    // The marker is kept while the wait's scope is open; closing it clears it.
    EXPECT_EQ(s.editor->tipoMarcaReferencia, 0);
}

// While a point is awaited the marker follows the pointer: each pump step snaps the cursor
// as it stands, and the overlay paints the marker with the symbol of its kind.
TEST(Referencia, laMarcaSigueAlPunteroYSePintaConElSimboloDeSuTipo)
{
    ConLinea s;
    s.dibujo.setReferenciaEntidades(true, 2);
    GuionSesion g(*s.editor, s.pantalla);
    std::vector<std::string> vistas;
    std::vector<std::string> sinMascara;
    g.mueve(198, 104)
        .ejecuta(
            [&]()
            {
                vistas = s.marcas();
                s.dibujo.setReferenciaEntidades(true, 0);
                sinMascara = s.marcas();
            })
        .intro();
    cursor_t c;
    EXPECT_FALSE(s.editor->getPunto("P:", c, true));
    ASSERT_EQ(vistas.size(), 1U);
    EXPECT_EQ(vistas[0].rfind("dibujaMarca (200,100,0) 8 ", 0), 0U) << vistas[0];
    // An empty mask paints none, whatever the kind.
    EXPECT_TRUE(sinMascara.empty());
    // Closing the wait's scope clears the marker.
    EXPECT_EQ(s.editor->tipoMarcaReferencia, 0);
    s.dibujo.setReferenciaEntidades(true, 2);
    EXPECT_TRUE(s.marcas().empty());
}

// Mask 32, or the end-point mask on a hidden layer: a click near the line's end is raw.
TEST(Referencia, conMascara32OCapaOcultaLosClicsSonCrudos)
{
    for (const bool oculta : {false, true})
    {
        SCOPED_TRACE(oculta ? "capa oculta" : "mascara 32");
        ConLinea s;
        s.dibujo.setReferenciaEntidades(true, oculta ? 1 : 32);
        s.dibujo.visibilidadCapa("0", !oculta);
        const cursor_t c = s.clic(104, 103);
        EXPECT_NEAR(c.get().x, 104, 1e-9);
        EXPECT_NEAR(c.get().y, 103, 1e-9);
        EXPECT_EQ(c.referencia, cad::invalido);
        EXPECT_EQ(c.tipo, 0);
        EXPECT_EQ(c.entidad, nullptr);
    }
}

TEST(Referencia, sinNadaCercaElClicCaeEnElPlanoDeReferencia)
{
    ConLinea s;
    s.dibujo.setReferenciaEntidades(true, 1);
    s.dibujo.setPlanoReferencia(Punto3<double>(0, 0, 7), cad::Vector3D<double>(0, 0, 1));
    const cursor_t c = s.clic(500, 400);
    EXPECT_EQ(c.referencia, cad::invalido);
    EXPECT_NEAR(c.get().x, 500, 1e-9);
    EXPECT_NEAR(c.get().y, 400, 1e-9);
    EXPECT_NEAR(c.get().z, 7, 1e-9);
}

TEST(Referencia, elPlanoGanaConTipoCeroYSinMarca)
{
    SesionEditor s;
    const Punto3<double> contorno[4] = {{0, 0, 5}, {600, 0, 5}, {600, 500, 5}, {0, 500, 5}};
    auto* plano = new cad::Plano(4, contorno);
    s.editor->nuevaEntidad(plano);
    s.pinta();
    s.dibujo.setReferenciaEntidades(true, 16);
    GuionSesion g(*s.editor, s.pantalla);
    g.clic(250, 260);
    cursor_t c;
    ASSERT_TRUE(s.editor->getPunto("P:", c, true));
    EXPECT_EQ(c.tipo, 0);
    EXPECT_EQ(c.entidad, plano);
    EXPECT_NEAR(c.get().x, 250, 1e-9);
    EXPECT_NEAR(c.get().y, 260, 1e-9);
    EXPECT_NEAR(c.get().z, 5, 1e-9);
    // compruebaPunto keeps kind 0 as the marker kind, and kind 0 paints nothing.
    cursor_t otro = s.pantalla.cursor;
    ASSERT_TRUE(s.editor->compruebaPunto(otro));
    EXPECT_EQ(s.editor->tipoMarcaReferencia, 0);
}

// Looking along +y at the reference plane z = 0, with nothing drawn: the ray never meets the
// plane and there are no extents to fall back on. The plane point stays what the display
// gave: none from a display that gives none, and then the click is refused.
TEST(Referencia, unRayoParaleloAlPlanoSinExtensionNoDaCoordenada)
{
    SesionEditor s;
    s.pantalla.setCamara(Punto3<double>(0, -100, 0), Punto3<double>(0, 0, 0),
                         cad::Vector3D<double>(0, 0, 1), 1.0, 0.0);
    s.pantalla.clic(400, 300);
    cursor_t c;
    int estado = 0;
    ASSERT_TRUE(s.editor->leeEvento(c, estado));
    const Punto3<double> crudo = c.plano;
    c.plano = cad::invalido;
    EXPECT_FALSE(s.editor->compruebaPunto(c));
    EXPECT_EQ(c.plano, cad::invalido);

    // The reference display gives its own point under the pixel, which then stands.
    GuionSesion g(*s.editor, s.pantalla);
    g.ejecuta([&]() { s.pantalla.clic(400, 300); });
    cursor_t d;
    ASSERT_TRUE(s.editor->getPunto("P:", d, true));
    EXPECT_EQ(d.get(), crudo);
}

TEST(Referencia, entidadesBajoPixelNoRepiteNiTomaLasMarcadas)
{
    ConLinea s;
    cad::SeleccionEntidades sel(&s.dibujo);
    cursor_t c;
    c.x = 150;
    c.y = 102;
    EXPECT_TRUE(s.editor->entidadesBajoPixel(c, sel));
    EXPECT_TRUE(s.editor->entidadesBajoPixel(c, sel));  // a duplicate still counts
    ASSERT_EQ(sel.entidades.size(), 1U);
    s.linea->marcaSeleccion();
    cad::SeleccionEntidades otra(&s.dibujo);
    EXPECT_FALSE(s.editor->entidadesBajoPixel(c, otra));
    c.y = 200;
    EXPECT_FALSE(s.editor->entidadesBajoPixel(c, otra));
}

// After an undo the display still shows the line until it is painted again: a click there
// must not reach the entity, which the undo step now holds outside the drawing.
TEST(Referencia, unaEscenaViejaNoDevuelveEntidadesQueYaNoEstan)
{
    ConLinea s;
    s.dibujo.setReferenciaEntidades(true, 1);
    s.editor->deshacer();
    cad::SeleccionEntidades sel(&s.dibujo);
    cursor_t c;
    c.x = 150;
    c.y = 100;
    EXPECT_FALSE(s.editor->entidadesBajoPixel(c, sel));
    const cursor_t r = s.clic(104, 103);
    EXPECT_EQ(r.referencia, cad::invalido);
}

}  // namespace
