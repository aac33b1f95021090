// Picking through the id buffer: each kind of entity found at its own pixels, what stands
// behind a solid found only when hidden ones are asked for, and rectangles at the edges.
#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "SoporteRender.h"
#include "documento/Dibujo.h"
#include "entidades/Esfera.h"

namespace
{

using cad::Punto3;
using cad::prueba::EscenaGL;

// Seen from above, 4 pixels a unit: the view shows x 0..100 and y 0..75.
struct Escena : EscenaGL
{
    int64_t punto = 0, linea = 0, cara = 0, texto = 0, esfera = 0, detras = 0;

    Escena() : EscenaGL(400, 300)
    {
        punto = dibujo.nuevoPunto(10.0, 10.0, 0.0);
        linea = dibujo.nuevaLinea(20.0, 10.0, 0.0, 40.0, 10.0, 0.0);
        const double esquinas[] = {60.0, 5.0,  0.0, 80.0, 5.0,  0.0,
                                   80.0, 25.0, 0.0, 60.0, 25.0, 0.0};
        cara = dibujo.nuevaCara3D(4, esquinas);
        texto =
            dibujo.nuevoTexto("HOLA", 10.0, 50.0, 0.0,
                              Fendrix::WrapDibujoCAD::alineacionTexto::kAlineacionInfIzq, 8.0, 0.0);
        // The line runs 20 units below the sphere, seen through it only outside its outline.
        detras = dibujo.nuevaLinea(55.0, 50.0, -20.0, 85.0, 50.0, -20.0);
        esfera = dibujo.insertaEntidadGetHandle(new cad::Esfera({70.0, 50.0, 0.0}, 5.0));
        camara({50.0, 37.5, 100.0}, {50.0, 37.5, 0.0}, {0.0, 1.0, 0.0}, 4.0);
        dibuja();
    }

    // What the id buffer holds within `radio` pixels of the drawing point p.
    std::vector<void*> en(const Punto3<double>& p, int radio = 1, bool ocultas = false)
    {
        const auto s = pantalla.proyecta(p);
        const int x = static_cast<int>(std::floor(s.x));
        const int y = static_cast<int>(std::floor(s.y));
        std::vector<void*> picks;
        pantalla.entidadesEnRectangulo({{x - radio, y - radio}, {x + radio, y + radio}}, ocultas,
                                       picks);
        return picks;
    }
    std::vector<void*> solo(int64_t handle) const { return {entidad(handle)}; }
};

TEST(RenderSeleccion, CadaEntidadEnSusPixeles)
{
    Escena e;
    ASSERT_TRUE(e.error.empty()) << e.error;
    ASSERT_NE(e.esfera, 0);
    EXPECT_EQ(e.en({10.0, 10.0, 0.0}), e.solo(e.punto));
    EXPECT_EQ(e.en({30.0, 10.0, 0.0}), e.solo(e.linea));
    EXPECT_EQ(e.en({70.0, 5.0, 0.0}), e.solo(e.cara));  // a 3D face paints its outline
    EXPECT_TRUE(e.en({70.0, 15.0, 0.0}, 2).empty());
    EXPECT_EQ(e.en({12.0, 53.0, 0.0}, 3), e.solo(e.texto));  // on the letters, not their point
    EXPECT_EQ(e.en({58.0, 50.0, -20.0}), e.solo(e.detras));
    EXPECT_TRUE(e.en({50.0, 70.0, 0.0}, 3).empty());
    EXPECT_TRUE(e.en({50.0, 30.0, 0.0}, 3).empty());
    // The facade's pick, through the same buffer.
    EXPECT_EQ(e.dibujo.getEntidadBajoPixel(120, 40), e.linea);
}

TEST(RenderSeleccion, LoQueTapaUnSolidoSoloConLasOcultas)
{
    Escena e;
    ASSERT_TRUE(e.error.empty()) << e.error;
    EXPECT_EQ(e.en({72.0, 50.0, 0.0}), e.solo(e.esfera));
    const std::vector<void*> todas = e.en({72.0, 50.0, 0.0}, 1, true);
    EXPECT_EQ(todas.size(), 2U);
    EXPECT_NE(std::find(todas.begin(), todas.end(), e.entidad(e.detras)), todas.end());
    EXPECT_NE(std::find(todas.begin(), todas.end(), e.entidad(e.esfera)), todas.end());
    // The buffer kept from the last pick must follow the camera: a move makes the same
    // pixel show the background.
    e.camara({150.0, 37.5, 100.0}, {150.0, 37.5, 0.0}, {0.0, 1.0, 0.0}, 4.0);
    std::vector<void*> picks;
    e.pantalla.entidadesEnRectangulo({{278, 148}, {282, 152}}, false, picks);
    EXPECT_TRUE(picks.empty());
}

TEST(RenderSeleccion, RectangulosEnLosBordes)
{
    Escena e;
    ASSERT_TRUE(e.error.empty()) << e.error;
    std::vector<void*> picks;
    // Over the bottom-left corner: the part inside still holds the point at pixel (40, 40).
    e.pantalla.entidadesEnRectangulo({{-50, -50}, {41, 41}}, false, picks);
    EXPECT_EQ(picks, e.solo(e.punto));
    e.pantalla.entidadesEnRectangulo({{-50, -50}, {-10, -10}}, false, picks);
    EXPECT_TRUE(picks.empty());
    e.pantalla.entidadesEnRectangulo({{390, 290}, {5000, 5000}}, false, picks);
    EXPECT_TRUE(picks.empty());
    e.pantalla.entidadesEnRectangulo({{-5000, -5000}, {5000, 5000}}, false, picks);
    EXPECT_EQ(picks.size(), 6U);
    e.pantalla.entidadesEnRectangulo({{50, 50}, {40, 40}}, false, picks);  // inverted
    EXPECT_TRUE(picks.empty());
}

}  // namespace

// What lies on the view's first row is drawn and picked there; the cursor's glyph, drawn by
// the editor in pixels after its overlay, shows where it says and never enters the scene.
TEST(RenderSeleccion, PrimeraFilaYGlifoDelCursor)
{
    Escena e;
    ASSERT_TRUE(e.error.empty()) << e.error;
    const int64_t borde = e.dibujo.nuevaLinea(0.0, 0.0, 0.0, 100.0, 0.0, 0.0);
    e.dibuja();
    std::vector<void*> picks;
    e.pantalla.entidadesEnRectangulo({{200, 0}, {200, 0}}, false, picks);
    EXPECT_EQ(picks, e.solo(borde));

    const size_t primitivas = e.pantalla.escena.size();
    const size_t construcciones = e.pantalla.estadisticas().construcciones;
    const Punto3<double> cruz[2] = {{100, 150, 0}, {300, 150, 0}};
    for (int pasada = 0; pasada < 3; ++pasada)
    {
        e.pantalla.inicioSuperposicion();
        e.pantalla.finSuperposicion();
        e.pantalla.dibujaPolilinea(2, cruz, false, 0xFF00FF00U, nullptr);
        e.pantalla.pinta();
    }
    EXPECT_EQ(e.pantalla.escena.size(), primitivas);
    EXPECT_EQ(e.pantalla.estadisticas().construcciones, construcciones);
    const cad::imagen_t im = e.contexto.lee();
    EXPECT_EQ(cad::prueba::pixel(im, 200, 150) & 0x00FFFFFFU, 0x0000FF00U);
    // The first row shows the line: not the empty background five units above it.
    EXPECT_NE(cad::prueba::pixel(im, 200, 0), cad::prueba::pixel(im, 200, 20));
}

// Coordinates a damaged file may bring (not a number, beyond any float) draw nothing of use
// but leave the rest of the scene drawn and picked.
TEST(RenderSeleccion, CoordenadasDanadasNoEstropeanLaEscena)
{
    Escena e;
    ASSERT_TRUE(e.error.empty()) << e.error;
    const double nan = std::nan("");
    int marca = 0;
    void* pick = &marca;
    e.pantalla.dibujaPunto({nan, 10.0, 0.0}, 0xFFFFFFFFU, pick);
    e.pantalla.dibujaLinea(
        cad::Linea3D<double>(Punto3<double>(1e300, 0, 0), Punto3<double>(-1e300, 5, 0)),
        0xFFFFFFFFU, pick);
    const Punto3<double> poligono[4] = {{0, 0, 0}, {1e308, 0, 0}, {0, nan, 0}, {5, 5, 0}};
    e.pantalla.dibujaPoligono(4, poligono, 0xFFFFFFFFU, pick);
    e.pantalla.pinta();
    EXPECT_EQ(e.en({10.0, 10.0, 0.0}), e.solo(e.punto));
    EXPECT_EQ(e.en({30.0, 10.0, 0.0}), e.solo(e.linea));
}
