// The renderer's support pieces: images read and written, letters laid out, the headless
// OpenGL context read back.
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#define GL_GLEXT_PROTOTYPES
#include <GL/glcorearb.h>
#include <gtest/gtest.h>

#include "ContextoEGL.h"
#include "Imagen.h"
#include "Tipografia.h"
#include "soporte/FicheroTemporal.h"

namespace
{

using cad::imagen_t;
using cad::prueba::leeFichero;
using cad::prueba::rutaTemporal;

const std::string kDatos = std::string(CAD_TEST_DATOS) + "/imagenes/";

imagen_t imagenDe(int ancho, int alto, std::vector<uint8_t> rgba)
{
    imagen_t i;
    i.ancho = ancho;
    i.alto = alto;
    i.rgba = std::move(rgba);
    return i;
}

TEST(Imagen, UnPNGGuardadoSeRecuperaPixelAPixelSinDejarRestos)
{
    const imagen_t original =
        imagenDe(3, 2, {255, 0,  0,  255, 0, 255, 0, 128, 0,   0,   255, 0,
                        10,  20, 30, 40,  1, 2,   3, 4,   250, 251, 252, 253});
    const std::string ruta = rutaTemporal("vuelta.png");
    std::string error;
    ASSERT_TRUE(cad::guardaPNG(ruta, original, error)) << error;
    imagen_t leida;
    ASSERT_TRUE(cad::cargaImagen(ruta, leida, error)) << error;
    EXPECT_EQ(leida.ancho, 3);
    EXPECT_EQ(leida.alto, 2);
    EXPECT_EQ(leida.rgba, original.rgba);
    EXPECT_TRUE(cad::prueba::restosTemporales().empty());
}

TEST(Imagen, PaletaGrisDe16BitsYJPEGLleganComoRGBA)
{
    imagen_t i;
    std::string error;
    // Two bits of palette with a transparent entry.
    ASSERT_TRUE(cad::cargaImagen(kDatos + "paleta.png", i, error)) << error;
    EXPECT_EQ(i.rgba, (std::vector<uint8_t>{255, 0, 0, 255, 0, 255, 0, 128, 0, 0, 255, 255, 255, 0,
                                            0, 255}));
    ASSERT_TRUE(cad::cargaImagen(kDatos + "gris16.png", i, error)) << error;
    EXPECT_EQ(i.rgba, (std::vector<uint8_t>{0x12, 0x12, 0x12, 0xFF, 0xAB, 0xAB, 0xAB, 0x80}));
    // A flat colour (200, 40, 90) at quality 95.
    ASSERT_TRUE(cad::cargaImagen(kDatos + "muestra.jpg", i, error)) << error;
    EXPECT_EQ(i.ancho, 24);
    EXPECT_EQ(i.alto, 16);
    ASSERT_EQ(i.rgba.size(), 24u * 16u * 4u);
    for (size_t p = 0; p < i.rgba.size(); p += 4)
    {
        EXPECT_NEAR(i.rgba[p], 200, 3);
        EXPECT_NEAR(i.rgba[p + 1], 40, 3);
        EXPECT_NEAR(i.rgba[p + 2], 90, 3);
        ASSERT_EQ(i.rgba[p + 3], 255);
    }
}

TEST(Imagen, LosFicherosMalosSeRechazanConSuMotivo)
{
    const std::vector<uint8_t> png = leeFichero(kDatos + "paleta.png");
    const std::vector<uint8_t> jpeg = leeFichero(kDatos + "muestra.jpg");
    ASSERT_FALSE(png.empty());
    ASSERT_FALSE(jpeg.empty());
    auto carga = [](const std::string& nombre, const std::vector<uint8_t>& bytes, int maximo)
    {
        const std::string ruta = rutaTemporal(nombre);
        cad::prueba::escribeFichero(ruta, bytes);
        imagen_t i = imagenDe(1, 1, {9, 9, 9, 9});
        std::string error;
        EXPECT_FALSE(cad::cargaImagen(ruta, i, error, maximo)) << nombre;
        // What failed leaves the image as it was.
        EXPECT_EQ(i.rgba, (std::vector<uint8_t>{9, 9, 9, 9})) << nombre;
        const std::string prefijo = "no se pudo leer la imagen " + ruta + ": ";
        EXPECT_EQ(error.rfind(prefijo, 0), 0u) << error;
        return error.substr(std::min(error.size(), prefijo.size()));
    };
    EXPECT_EQ(carga("texto.png", {'h', 'o', 'l', 'a'}, 16384), "no es un PNG ni un JPEG");
    EXPECT_EQ(carga("vacio.jpg", {}, 16384), "no es un PNG ni un JPEG");
    EXPECT_EQ(carga("cortado.png", std::vector<uint8_t>(png.begin(), png.begin() + 60), 16384),
              "el fichero está cortado");
    EXPECT_EQ(carga("cortado.jpg", std::vector<uint8_t>(jpeg.begin(), jpeg.begin() + 400), 16384),
              "el fichero está cortado");
    std::vector<uint8_t> danado = png;
    danado[png.size() - 20] ^= 0x55;  // inside the image data: its checksum fails
    EXPECT_EQ(carga("danado.png", danado, 16384), "está dañada");
    std::vector<uint8_t> basura = jpeg;
    for (size_t k = 200; k < basura.size(); ++k)
    {
        basura[k] = static_cast<uint8_t>(k * 131);
    }
    carga("basura.jpg", basura, 16384);
    EXPECT_EQ(carga("grande.png", png, 1),
              "mide 2x2 píxeles, más de los 1 por lado que se admiten");
    EXPECT_EQ(carga("grande.jpg", jpeg, 20),
              "mide 24x16 píxeles, más de los 20 por lado que se admiten");

    imagen_t i;
    std::string error;
    EXPECT_FALSE(cad::cargaImagen("/no/existe.png", i, error));
    EXPECT_EQ(error, "no se pudo leer la imagen: no existe el fichero /no/existe.png");
}

TEST(Imagen, UnPNGEnUnaCarpetaQueNoExisteNoSeEscribe)
{
    const std::string ruta = rutaTemporal("falta") + "/render.png";
    std::string error;
    EXPECT_FALSE(cad::guardaPNG(ruta, imagenDe(1, 1, {1, 2, 3, 4}), error));
    EXPECT_EQ(error, "no se pudo escribir la imagen: no existe la carpeta " +
                         ruta.substr(0, ruta.rfind('/')));
    EXPECT_FALSE(cad::prueba::existeFichero(ruta));
    EXPECT_FALSE(cad::guardaPNG(rutaTemporal("mal.png"), imagenDe(2, 2, {1, 2, 3, 4}), error));
}

TEST(Tipografia, LasMayusculasMidenUnEmYLosTextosSeComponen)
{
    cad::Tipografia t;
    std::string error;
    ASSERT_TRUE(t.carga(error)) << error;
    std::vector<cad::cuadroGlifo_t> c;
    const float hg = t.compone("Hg", c);
    ASSERT_EQ(c.size(), 2u);
    EXPECT_NEAR(c[0].y1 - c[0].y0, 1.0F, 0.02F);
    EXPECT_NEAR(c[0].y0, 0.0F, 0.02F);
    EXPECT_LT(c[1].y0, -0.1F);  // the descender
    EXPECT_GT(c[1].x0, c[0].x1 - 0.05F);
    for (const auto& q : c)
    {
        EXPECT_GT(q.u1, q.u0);
        EXPECT_GT(q.v1, q.v0);
        EXPECT_LE(q.u1, 1.0F);
        EXPECT_LE(q.v1, 1.0F);
    }
    // The H's quad covers exactly its coverage in the atlas: a full column at its left edge.
    const int x = static_cast<int>(std::lround(c[0].u0 * static_cast<float>(t.ancho())));
    const int y =
        static_cast<int>(std::lround((c[0].v0 + c[0].v1) * 0.5F * static_cast<float>(t.alto())));
    EXPECT_GT(t.atlas()[static_cast<size_t>(y) * t.ancho() + x + 1], 128);
    EXPECT_EQ(t.atlas()[static_cast<size_t>(y) * t.ancho() + x - 1], 0);

    c.clear();
    const float hgh = t.compone("Hg H", c);
    EXPECT_EQ(c.size(), 3u);  // the space advances without a quad
    EXPECT_GT(hgh, hg + 0.9F);

    c.clear();
    const uint64_t version = t.version();
    t.compone("é€Δ", c);
    EXPECT_EQ(c.size(), 3u);
    EXPECT_GT(t.version(), version);
    const uint64_t despues = t.version();
    t.compone("é€Δ", c);
    EXPECT_EQ(t.version(), despues);  // glyphs drawn once

    // Cut sequences, stray continuation bytes, an overlong form: one box each, no crash.
    c.clear();
    const float malo = t.compone(std::string("a\xE2\x82"
                                             "b\x80\xC0\xAF\xFF",
                                             9),
                                 c);
    EXPECT_EQ(c.size(), 7u);
    EXPECT_GT(malo, 0.0F);
}

TEST(ContextoEGL, LoQueSeBorraSeLeeDeArribaAAbajo)
{
    cad::ContextoEGL contexto;
    std::string error;
    ASSERT_TRUE(contexto.crea(64, 32, error)) << error;
    EXPECT_FALSE(contexto.renderizador().empty());
    glClearColor(0.0F, 1.0F, 0.0F, 1.0F);
    glClear(GL_COLOR_BUFFER_BIT);
    imagen_t i = contexto.lee();
    ASSERT_EQ(i.ancho, 64);
    ASSERT_EQ(i.alto, 32);
    ASSERT_EQ(i.rgba.size(), 64u * 32u * 4u);
    for (size_t p = 0; p < i.rgba.size(); p += 4)
    {
        ASSERT_EQ(i.rgba[p], 0) << p;
        ASSERT_EQ(i.rgba[p + 1], 255) << p;
        ASSERT_EQ(i.rgba[p + 2], 0) << p;
        ASSERT_EQ(i.rgba[p + 3], 255) << p;
    }
    // OpenGL's bottom row, painted red, must come last.
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 64, 1);
    glClearColor(1.0F, 0.0F, 0.0F, 1.0F);
    glClear(GL_COLOR_BUFFER_BIT);
    glDisable(GL_SCISSOR_TEST);
    i = contexto.lee();
    EXPECT_EQ(i.rgba[0], 0);
    EXPECT_EQ(i.rgba[31 * 64 * 4], 255);
    EXPECT_EQ(i.rgba[30 * 64 * 4], 0);

    EXPECT_FALSE(contexto.crea(0, 10, error));
}

}  // namespace
