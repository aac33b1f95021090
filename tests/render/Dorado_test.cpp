// The renderer's images against committed ones (CAD_REGENERA_DORADOS=1 writes them anew), and
// survey coordinates drawn as steadily as coordinates near the origin.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Demo.h"
#include "SoporteRender.h"
#include "documento/Dibujo.h"
#include "entidades/Objeto3D.h"
#include "modelo/Modelo3D.h"
#include "soporte/FicheroTemporal.h"

namespace
{

using cad::imagen_t;
using cad::Punto3;
using cad::Vector3D;
using cad::prueba::comparaConDorado;
using cad::prueba::EscenaGL;
using cad::prueba::vista_t;
using Modelos = Fendrix::WrapDibujoCAD::representacion_modelos;
using Alineacion = Fendrix::WrapDibujoCAD::alineacionTexto;

constexpr int kAncho = 400;
constexpr int kAlto = 300;

// A folder of its own for the files a test writes.
std::string carpetaNueva(const std::string& nombre)
{
    const std::string carpeta = cad::prueba::rutaTemporal(nombre);
    std::filesystem::create_directories(carpeta);
    return carpeta;
}

// A 64x64 checker of yellow and blue with a red quarter at the top left of the image, so a
// mapping turned or mirrored shows, and no colour close to a background.
std::string escribeTextura(const std::string& carpeta)
{
    imagen_t im;
    im.ancho = 64;
    im.alto = 64;
    im.rgba.resize(64 * 64 * 4);
    for (int y = 0; y < 64; ++y)
    {
        for (int x = 0; x < 64; ++x)
        {
            uint8_t* p = &im.rgba[static_cast<size_t>(y * 64 + x) * 4];
            const bool amarillo = ((x / 8) + (y / 8)) % 2 == 0;
            const bool rojo = x < 32 && y < 32 && amarillo;
            p[0] = rojo ? 220 : amarillo ? 230 : 40;
            p[1] = rojo ? 40 : amarillo ? 200 : 120;
            p[2] = rojo ? 40 : amarillo ? 60 : 220;
            p[3] = 255;
        }
    }
    const std::string ruta = carpeta + "/textura.png";
    std::string error;
    EXPECT_TRUE(cad::guardaPNG(ruta, im, error)) << error;
    return ruta;
}

TEST(RenderDorado, DemoEnPlantaYEnIsometrica)
{
    EscenaGL e(kAncho, kAlto);
    ASSERT_TRUE(e.error.empty()) << e.error;
    tarvelo::construyeDemo(e.dibujo);
    e.dibujo.setPantalla(&e.envoltorio);  // the demo leaves the drawing with no display
    std::string error;
    e.pantalla.carpetaTexturas = carpetaNueva("demo");
    ASSERT_TRUE(tarvelo::escribeImagenesDemo(e.pantalla.carpetaTexturas, error)) << error;
    e.encuadra(vista_t::kPlanta);
    EXPECT_TRUE(comparaConDorado("demo_planta", e.imagen()));
    e.encuadra(vista_t::kIso);
    EXPECT_TRUE(comparaConDorado("demo_iso", e.imagen()));
    // Every image the demo's materials name is there: the facade's and the 360 photo's.
    EXPECT_TRUE(e.pantalla.erroresTexturas().empty());
}

// A hill of 6 by 6 quads, its texture projected from above: relief for the shading, faces
// behind faces for the hidden lines and the see-through mode.
TEST(RenderDorado, CadaRepresentacionDeUnModeloTexturado)
{
    EscenaGL e(kAncho, kAlto);
    ASSERT_TRUE(e.error.empty()) << e.error;
    const int32_t material = e.dibujo.nuevoMaterial(201, escribeTextura(carpetaNueva("colina")));
    ASSERT_GT(material, 0);
    auto* colina = new cad::Modelo3D();
    for (int j = 0; j <= 6; ++j)
    {
        for (int i = 0; i <= 6; ++i)
        {
            const double r2 = (i - 3) * (i - 3) + (j - 3) * (j - 3);
            colina->nuevoVertice({i * 2.0, j * 2.0, 5.0 * std::exp(-r2 / 5.0)});
        }
    }
    for (int j = 0; j < 6; ++j)
    {
        for (int i = 0; i < 6; ++i)
        {
            const int32_t a = j * 7 + i;
            const int32_t q[4] = {a, a + 1, a + 8, a + 7};
            colina->nuevaCara(4, q, false, static_cast<uint16_t>(material));
        }
    }
    const int64_t h = e.dibujo.insertaEntidadGetHandle(new cad::Objeto3D(colina));
    ASSERT_TRUE(e.dibujo.setMapeoTextura(h, material));

    std::vector<imagen_t> imagenes;
    for (int modo = 0; modo <= 5; ++modo)
    {
        e.dibujo.setRepresentacionModelos(static_cast<Modelos>(modo));
        e.encuadra(vista_t::kIso);
        imagenes.push_back(e.imagen());
        EXPECT_TRUE(
            comparaConDorado("modelo_representacion_" + std::to_string(modo), imagenes.back()));
    }
    EXPECT_TRUE(e.pantalla.erroresTexturas().empty());
    // A mode that falls back to another's drawing would pass its own image once regenerated.
    for (size_t a = 0; a < imagenes.size(); ++a)
    {
        for (size_t b = a + 1; b < imagenes.size(); ++b)
        {
            EXPECT_GT(cad::prueba::comparaImagenes(imagenes[a], imagenes[b]).pixeles, 50)
                << "representations " << a << " and " << b << " look alike";
        }
    }
}

TEST(RenderDorado, TomaDeCamaraDeLado)
{
    EscenaGL e(kAncho, kAlto);
    ASSERT_TRUE(e.error.empty()) << e.error;
    // The photograph is the material the host made.
    const int32_t foto = e.dibujo.nuevoMaterial(301, escribeTextura(carpetaNueva("toma")));
    ASSERT_NE(e.dibujo.nuevaTomaCamara(10.0, 20.0, 30.0, 0.3, 0.0, 0.0, 0.035, 6000, 4000,
                                       "DSC_0001.JPG", "", foto),
              0);
    e.encuadra(vista_t::kAlzado);
    e.pantalla.zoomEscala(100.0);  // the extents are the station alone
    EXPECT_TRUE(comparaConDorado("toma_camara_alzado", e.imagen()));
}

// Which columns between x0 and x1 show nothing of a horizontal line near row y.
int columnasVacias(const imagen_t& im, uint32_t fondo, int x0, int x1, int y)
{
    int vacias = 0;
    for (int x = x0; x <= x1; ++x)
    {
        bool algo = false;
        for (int dy = -1; dy <= 1; ++dy)
        {
            algo = algo || cad::prueba::pixel(im, x, y + dy) != fondo;
        }
        vacias += algo ? 0 : 1;
    }
    return vacias;
}

TEST(RenderDorado, SeleccionadasPunteadas)
{
    EscenaGL e(kAncho, kAlto);
    ASSERT_TRUE(e.error.empty()) << e.error;
    const int64_t linea = e.dibujo.nuevaLinea(0.0, 0.0, 0.0, 100.0, 0.0, 0.0);
    const double tramos[] = {0.0, 20.0, 0.0, 50.0, 40.0, 0.0, 100.0, 20.0, 0.0};
    const int64_t polilinea = e.dibujo.nuevaPolilinea(3, tramos);
    const int64_t suelta = e.dibujo.nuevaLinea(0.0, 60.0, 0.0, 100.0, 60.0, 0.0);
    ASSERT_TRUE(e.dibujo.seleccionaEntidad(linea));
    ASSERT_TRUE(e.dibujo.seleccionaEntidad(polilinea));
    e.encuadra(vista_t::kPlanta);
    const imagen_t im = e.imagen();
    EXPECT_TRUE(comparaConDorado("seleccion_punteada", im));

    // Along each horizontal line: gaps on the selected one, none on the other.
    const uint32_t fondo = e.pantalla.colorFondo & 0xFFFFFFU;
    const auto a = e.pantalla.proyecta({10.0, 0.0, 0.0});
    const auto b = e.pantalla.proyecta({90.0, 0.0, 0.0});
    const auto c = e.pantalla.proyecta({10.0, 60.0, 0.0});
    EXPECT_GT(columnasVacias(im, fondo, static_cast<int>(a.x), static_cast<int>(b.x),
                             static_cast<int>(a.y)),
              20);
    EXPECT_EQ(columnasVacias(im, fondo, static_cast<int>(a.x), static_cast<int>(b.x),
                             static_cast<int>(c.y)),
              0);
    (void)suelta;
}

// Each text with a small cross at its insertion point: an alignment taken for another
// moves the text off its cross.
TEST(RenderDorado, TextoEnLasNueveAlineaciones)
{
    EscenaGL e(kAncho, kAlto);
    ASSERT_TRUE(e.error.empty()) << e.error;
    const int horizontales[] = {0, 1, 2};
    const int verticales[] = {0, 4, 8};
    for (int j = 0; j < 3; ++j)
    {
        for (int i = 0; i < 3; ++i)
        {
            const double x = 40.0 * i;
            const double y = 20.0 * j;
            e.dibujo.nuevaLinea(x - 1.0, y, 0.0, x + 1.0, y, 0.0);
            e.dibujo.nuevaLinea(x, y - 1.0, 0.0, x, y + 1.0, 0.0);
            const auto alineacion = static_cast<Alineacion>(horizontales[i] + verticales[j]);
            ASSERT_NE(e.dibujo.nuevoTexto("Tq" + std::to_string(i + 3 * j), x, y, 0.0, alineacion,
                                          4.0, 0.0),
                      0);
        }
    }
    e.encuadra(vista_t::kPlanta);
    e.pantalla.zoomEscala(0.8);  // the extents hold the insertion points, not the letters
    EXPECT_TRUE(comparaConDorado("texto_alineaciones", e.imagen()));
}

// --- survey coordinates ------------------------------------------------------------------

// A textured OBJ of 1.2 by 1.2 m in 3 by 3 quads on z = 0, the whole file moved by `dx` in
// x and y through the offset line when dx is not 0.
std::string escribeOBJ(const std::string& carpeta, double dx)
{
    escribeTextura(carpeta);
    cad::prueba::escribeFichero(carpeta + "/losa.mtl",
                                "newmtl losa\nKd 1 1 1\nmap_Kd textura.png\n");
    std::ostringstream obj;
    obj.precision(17);
    obj << "mtllib losa.mtl\n";
    if (dx != 0.0)
    {
        obj << "#DX:" << dx << " DY:" << dx << " DZ:0\n";
    }
    for (int j = 0; j <= 3; ++j)
    {
        for (int i = 0; i <= 3; ++i)
        {
            obj << "v " << i * 0.4 << " " << j * 0.4 << " 0\nvt " << i / 3.0 << " " << j / 3.0
                << "\n";
        }
    }
    obj << "usemtl losa\n";
    for (int j = 0; j < 3; ++j)
    {
        for (int i = 0; i < 3; ++i)
        {
            const int a = j * 4 + i + 1;
            obj << "f " << a << "/" << a << " " << a + 1 << "/" << a + 1 << " " << a + 5 << "/"
                << a + 5 << " " << a + 4 << "/" << a + 4 << "\n";
        }
    }
    const std::string ruta = carpeta + "/losa.obj";
    cad::prueba::escribeFichero(ruta, obj.str());
    return ruta;
}

// The slab seen from above over 2 m in 400 pixels, the camera `x` to the right of the
// slab's centre. A quarter of a pixel more keeps the edges off the pixel boundaries, where
// a rounding of the last bit would take a whole row in or out.
imagen_t fotoLosa(EscenaGL& e, double origen, double x)
{
    const Punto3<double> objetivo(origen + 0.60127 + x, origen + 0.60127, 0.0);
    e.camara(objetivo + Vector3D<double>(0, 0, 100), objetivo, {0, 1, 0}, kAncho / 2.0);
    return e.imagen();
}

TEST(RenderPrecision, CuatroMillonesComoElOrigenYSinSaltos)
{
    constexpr double kLejos = 4000000.0;
    EscenaGL cerca(kAncho, kAlto);
    EscenaGL lejos(kAncho, kAlto);
    ASSERT_TRUE(cerca.error.empty()) << cerca.error;
    ASSERT_TRUE(lejos.error.empty()) << lejos.error;
    ASSERT_NE(cerca.dibujo.nuevoObjeto3D(escribeOBJ(carpetaNueva("cerca"), 0.0)), 0);
    ASSERT_NE(lejos.dibujo.nuevoObjeto3D(escribeOBJ(carpetaNueva("lejos"), kLejos)), 0);
    ASSERT_NEAR(lejos.dibujo.mDibujo->extension.minimo.x, kLejos, 1e-6);

    std::vector<double> centros;
    for (int paso = 0; paso < 10; ++paso)
    {
        const double x = paso * 0.001;
        const imagen_t referencia = fotoLosa(cerca, 0.0, x);
        const imagen_t im = fotoLosa(lejos, kLejos, x);
        const uint32_t fondo = lejos.pantalla.colorFondo & 0xFFFFFFU;
        EXPECT_LE(cad::prueba::comparaImagenes(im, referencia).pixeles, 2) << "step " << paso;

        // No crack: nothing of the background inside the slab, two pixels in from its edge.
        const auto p0 = lejos.pantalla.proyecta({kLejos, kLejos, 0.0});
        const auto p1 = lejos.pantalla.proyecta({kLejos + 1.2, kLejos + 1.2, 0.0});
        int huecos = 0;
        double suma = 0.0;
        int cubiertos = 0;
        for (int py = static_cast<int>(p0.y) + 2; py <= static_cast<int>(p1.y) - 2; ++py)
        {
            for (int px = static_cast<int>(p0.x) + 2; px <= static_cast<int>(p1.x) - 2; ++px)
            {
                huecos += cad::prueba::pixel(im, px, py) == fondo ? 1 : 0;
            }
        }
        for (int py = 0; py < kAlto; ++py)
        {
            for (int px = 0; px < kAncho; ++px)
            {
                if (cad::prueba::pixel(im, px, py) != fondo)
                {
                    suma += px;
                    ++cubiertos;
                }
            }
        }
        EXPECT_EQ(huecos, 0) << "step " << paso;
        ASSERT_GT(cubiertos, 0);
        centros.push_back(suma / cubiertos);
    }
    // The camera went right by 9 mm, 1.8 pixels: the slab goes left, never back.
    for (size_t k = 1; k < centros.size(); ++k)
    {
        EXPECT_LE(centros[k], centros[k - 1] + 0.05) << "step " << k;
    }
    EXPECT_NEAR(centros.front() - centros.back(), 1.8, 0.6);
}

}  // namespace
