// Test support for the OpenGL renderer: a headless scene bound to a facade, camera shots of
// the drawing and the comparison of renders with committed images.
#pragma once

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "ContextoEGL.h"
#include "Fendrix/WrapDibujoCAD.h"
#include "Fendrix/WrapPantallaCAD.h"
#include "Imagen.h"
#include "PantallaGL.h"

namespace cad::prueba
{

// The views the images are taken from: plan (down -Z, +Y up), isometric (from (1,-1,1), +Z
// up) and front elevation (from -Y, +Z up).
enum class vista_t
{
    kPlanta,
    kIso,
    kAlzado
};

// A facade drawing painted by a PantallaGL into a headless context of a fixed size. Members
// go in reverse order: the drawing forgets the display before the display goes, and the GL
// objects go while the context is still there.
struct EscenaGL
{
    EscenaGL(int ancho, int alto);
    ~EscenaGL();
    EscenaGL(const EscenaGL&) = delete;
    EscenaGL& operator=(const EscenaGL&) = delete;

    // Why the context or the programs could not be had; empty when ready.
    std::string error;

    // Frames the drawing's extents from the view's direction, a little margin around.
    void encuadra(vista_t vista);
    // An explicit orthographic camera.
    void camara(const Punto3<double>& posicion, const Punto3<double>& objetivo,
                const Vector3D<double>& arriba, double zoom);
    // Stores the camera as the drawing's view, has the drawing described and paints it.
    void dibuja();
    // dibuja, then the framebuffer's pixels.
    imagen_t imagen();

    // The entity behind a facade handle, as the display receives it for a pick value.
    Entidad* entidad(int64_t handle) const;

    ContextoEGL contexto;
    PantallaGL pantalla;
    Fendrix::WrapPantallaCAD envoltorio;
    Fendrix::WrapDibujoCAD dibujo{nullptr, nullptr};
};

// A file under the render folder of the tests' output (CAD_TEST_SALIDA), made if missing.
std::string rutaSalidaRender(const std::string& nombre);

// Differences between two images of one size: a pixel differs when a channel moved by more
// than `umbral`; `peorTesela` is the most differing pixels in one 8x8 tile.
struct diferencias_t
{
    int pixeles = 0;
    int peorTesela = 0;
};
diferencias_t comparaImagenes(const imagen_t& a, const imagen_t& b, int umbral = 48);

// Compares with tests/datos/render/NOMBRE.png, writing it instead when CAD_REGENERA_DORADOS
// is set. Fails when the sizes differ or an 8x8 tile holds more than 3 differing pixels: a
// point of 4x4 pixels lost or moved shows in some tile whatever the grid, while the odd
// pixel of another rasteriser passes. On failure the render and a map of the differences are
// written to the output folder and named in the message.
::testing::AssertionResult comparaConDorado(const std::string& nombre, const imagen_t& imagen);

// RGBA of a pixel given as the renderer counts it: x right, y up from the bottom.
uint32_t pixel(const imagen_t& imagen, int x, int y);

}  // namespace cad::prueba
