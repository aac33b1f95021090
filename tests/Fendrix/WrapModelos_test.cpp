// The facade's point groups, faces, solids, camera shots, 360 photos and model faces: what a
// host calls, what lands in the drawing and what the display is told.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Fendrix/WrapDibujoCAD.h"
#include "Fendrix/WrapPantallaCAD.h"
#include "documento/Dibujo.h"
#include "documento/EstiloTexto.h"
#include "documento/Material.h"
#include "entidades/Cara3D.h"
#include "entidades/Foto360.h"
#include "entidades/GrupoPuntos.h"
#include "entidades/Linea.h"
#include "entidades/Objeto3D.h"
#include "entidades/TomaCamara.h"
#include "modelo/Modelo3D.h"
#include "soporte/FicheroTemporal.h"
#include "soporte/MallasPrueba.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using Fendrix::WrapDibujoCAD;

// A facade with a new document and a recording display.
struct Anfitrion
{
    cad::prueba::PantallaGrabadora pantalla;
    Fendrix::WrapPantallaCAD visor;
    WrapDibujoCAD w{nullptr, nullptr};
    Anfitrion()
    {
        visor.setPantalla(&pantalla);
        w.setPantalla(&visor);
        w.nuevoDocumento();
    }
    cad::Entidad* entidad(int64_t handle) { return w.mDibujo->buscaEntidad(handle); }
    // The display's lines of one full paint of the drawing.
    std::vector<std::string> pinta()
    {
        w.mDibujo->edicionHecha();
        pantalla.llamadas.clear();
        w.dibuja(&visor);
        return pantalla.llamadas;
    }
    static size_t cuenta(const std::vector<std::string>& llamadas, const std::string& inicio)
    {
        return static_cast<size_t>(std::count_if(llamadas.begin(), llamadas.end(),
                                                 [&](const std::string& l)
                                                 { return l.rfind(inicio, 0) == 0; }));
    }
};

// The count of a group is that of its colours; a handle that is not a group takes no point.
// A face has three or four corners, nothing else.
TEST(WrapModelos, gruposDePuntosYCaras)
{
    Anfitrion h;
    const int64_t g = h.w.nuevoGrupoPuntos({1, 2, 3, 4, 5, 6, 7, 8, 9}, {0xFF, 0xFF00});
    auto* grupo = dynamic_cast<cad::GrupoPuntos*>(h.entidad(g));
    ASSERT_NE(grupo, nullptr);
    EXPECT_EQ(grupo->puntos, (std::vector<cad::Punto3<double>>{{1, 2, 3}, {4, 5, 6}}));
    EXPECT_EQ(grupo->colores, (std::vector<uint32_t>{0xFF, 0xFF00}));
    EXPECT_EQ(h.w.nuevoPunto(g, 7, 8, 9, 0xFF0000), g);
    EXPECT_EQ(grupo->puntos.back(), cad::Punto3<double>(7, 8, 9));
    EXPECT_EQ(grupo->colores.back(), 0xFF0000U);
    const int64_t linea = h.w.nuevaLinea(0, 0, 0, 1, 1, 1);
    EXPECT_EQ(h.w.nuevoPunto(linea, 7, 8, 9, 0), 0);
    // More colours than coordinates: the coordinates bound the count.
    const int64_t corto = h.w.nuevoGrupoPuntos({1, 2, 3}, {1, 2, 3});
    EXPECT_EQ(dynamic_cast<cad::GrupoPuntos*>(h.entidad(corto))->puntos.size(), 1U);

    const double esquinas[15] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 5, 5, 5};
    EXPECT_EQ(h.w.nuevaCara3D(5, esquinas), 0);
    EXPECT_EQ(h.w.nuevaCara3D(2, esquinas), 0);
    const auto* cara = dynamic_cast<cad::Cara3D*>(h.entidad(h.w.nuevaCara3D(4, esquinas)));
    ASSERT_NE(cara, nullptr);
    EXPECT_EQ(cara->numeroVertices, 4);
    const double cubo[6] = {0, 0, 0, 2, 3, 4};
    EXPECT_NE(h.w.nuevoCubo(cubo), 0);
}

// A 360 photo takes the first free material id from 30000, which the display is sent at once
// with the photograph, white and shine 0.8. A camera shot keeps its label and material, and
// with a pixel size its glyph keeps its screen size. borraTomasCamaras deletes both kinds and
// the photographs' materials, and nothing else.
TEST(WrapModelos, fotosYTomasConSusMateriales)
{
    Anfitrion h;
    h.w.mDibujo->nuevoMaterialId(30000, 0, 0xFFFFFFFFU, 1.0F, "ocupado.jpg");
    h.pantalla.llamadas.clear();
    const int64_t f = h.w.nuevaFoto360(1, 2, 3, 5.0, 16, 8, 0, 0, 0, "esfera.jpg");
    ASSERT_NE(f, 0);
    EXPECT_EQ(h.entidad(f)->material(), 30001);
    const cad::Material* m = h.w.mDibujo->materialId(30001);
    ASSERT_NE(m, nullptr);
    EXPECT_EQ(m->textura(), "esfera.jpg");
    EXPECT_FLOAT_EQ(m->brillo(), 0.8F);
    ASSERT_EQ(Anfitrion::cuenta(h.pantalla.llamadas, "nuevaTextura 30001 esfera.jpg FFFFFFFF"), 1U);
    const int64_t segunda = h.w.nuevaFoto360(0, 0, 0, 1.0, 16, 8, 0, 0, 0, "otra.jpg");
    EXPECT_EQ(h.entidad(segunda)->material(), 30002);

    const int64_t t = h.w.nuevaTomaCamara(10, 20, 30, 0.1, 0.2, 0.3, 0.035, 6000, 4000, "IMG_7",
                                          "fotos/IMG_7.jpg", 30000, 24.0);
    const auto* toma = dynamic_cast<cad::TomaCamara*>(h.entidad(t));
    ASSERT_NE(toma, nullptr);
    EXPECT_EQ(toma->nombreImagen(), "IMG_7");
    EXPECT_EQ(toma->idImagen(), 30000);
    EXPECT_TRUE(toma->escalaConstanteActiva());
    EXPECT_EQ(toma->pixeles, 24);
    std::vector<int64_t> handles;
    std::vector<double> datos;
    ASSERT_EQ(h.w.getTomasCamaras(handles, datos), 1);
    EXPECT_EQ(handles[0], t);
    EXPECT_EQ(datos, (std::vector<double>{10, 20, 30, 0.1, 0.2, 0.3, 0.035, 6000, 4000}));

    const int64_t linea = h.w.nuevaLinea(0, 0, 0, 1, 1, 1);
    const int materiales = h.w.numeroMateriales();
    EXPECT_EQ(h.w.borraTomasCamaras(), 3);
    EXPECT_EQ(h.w.numeroMateriales(), materiales - 3);
    EXPECT_FALSE(h.w.mDibujo->existeMaterial(30000));
    EXPECT_FALSE(h.w.mDibujo->existeMaterial(30001));
    EXPECT_EQ(h.w.mDibujo->entidades.size(), 1U);
    EXPECT_EQ(h.entidad(linea), h.w.mDibujo->entidades[0]);
}

// A loaded camera shot gets its text style back, as texts and control points do: its label
// keeps the style's font.
TEST(WrapModelos, tomaCargadaConSuEstilo)
{
    Anfitrion h;
    h.w.nuevoEstiloTexto("Rotulos", "Mono", 9, true);
    h.w.nuevaTomaCamara(1, 2, 3, 0, 0, 0, 0.035, 6000, 4000, "IMG_1", "", 0);
    const std::string ruta = cad::prueba::rutaTemporal("toma.cad");
    h.w.guarda(ruta);
    Anfitrion otra;
    ASSERT_TRUE(otra.w.lee(ruta));
    auto* toma = dynamic_cast<cad::TomaCamara*>(otra.w.mDibujo->entidades.back());
    ASSERT_NE(toma, nullptr);
    ASSERT_NE(toma->referenciaEstilo().objeto, nullptr);
    EXPECT_EQ(toma->referenciaEstilo().get()->nombre, "Rotulos");
}

// The host's switches act on painting only: a hidden camera, control point or model paints
// nothing and stays in the list and the extents; models paint in the drawing's representation.
TEST(WrapModelos, visibilidadYRepresentacion)
{
    Anfitrion h;
    h.w.nuevaTomaCamara(10, 20, 30, 0, 0, 0, 0.035, 6000, 4000, "IMG_7", "", 0);
    h.w.nuevoPuntoControl("B1", "X", -5, -5, 0);
    auto* modelo = new cad::Modelo3D();
    cad::prueba::cubo(*modelo);
    h.w.insertaEntidad(new cad::Objeto3D(modelo));
    const auto visto = h.pinta();
    EXPECT_EQ(Anfitrion::cuenta(visto, "dibujaTexto (10,20,30) \"IMG_7\" FFFFFFFF"), 1U);
    EXPECT_EQ(Anfitrion::cuenta(visto, "dibujaPunto (-5,-5,0)"), 1U);

    h.w.muestraCamaras(false);
    h.w.muestraPuntosControl(false);
    EXPECT_FALSE(h.w.camarasVisibles());
    const auto oculto = h.pinta();
    EXPECT_EQ(Anfitrion::cuenta(oculto, "dibujaTexto (10,20,30)"), 0U);
    EXPECT_EQ(Anfitrion::cuenta(oculto, "dibujaPunto (-5,-5,0)"), 0U);
    EXPECT_EQ(h.w.mDibujo->entidades.size(), 3U);
    cad::Rect3<double> caja;
    h.w.mDibujo->entidades.extension(caja);
    EXPECT_EQ(caja.minimo, cad::Punto3<double>(-5, -5, 0));
    EXPECT_EQ(caja.maximo, cad::Punto3<double>(10, 20, 30));
    h.w.muestraCamaras(true);
    EXPECT_EQ(Anfitrion::cuenta(h.pinta(), "dibujaTexto (10,20,30)"), 1U);

    Anfitrion solo;
    auto* otro = new cad::Modelo3D();
    cad::prueba::cubo(*otro);
    solo.w.insertaEntidad(new cad::Objeto3D(otro));
    for (auto r : {WrapDibujoCAD::representacion_modelos::kAlambrica,
                   WrapDibujoCAD::representacion_modelos::kRealista})
    {
        solo.w.setRepresentacionModelos(r);
        std::vector<std::string> objetos;
        for (const std::string& l : solo.pinta())
        {
            if (l.rfind("iniciaObjeto", 0) == 0)
            {
                objetos.push_back(l.substr(l.rfind(' ') + 1));
            }
        }
        EXPECT_EQ(objetos, std::vector<std::string>{std::to_string(static_cast<int>(r))});
    }
    solo.w.muestraModelos(false);
    EXPECT_EQ(Anfitrion::cuenta(solo.pinta(), "iniciaObjeto"), 0U);
    EXPECT_EQ(solo.w.mDibujo->entidades.size(), 1U);
}

// Faces of a model by the index a pick gives them: their corners, a photograph mapped on one,
// a projected texture on all. A handle of anything but a model maps nothing.
TEST(WrapModelos, carasDeModelos)
{
    Anfitrion h;
    auto* modelo = new cad::Modelo3D();
    cad::prueba::cuadricula(*modelo, 2, 1);
    const int64_t o = h.w.insertaEntidadGetHandle(new cad::Objeto3D(modelo));
    EXPECT_EQ(h.w.numeroCaras(o), 2);
    std::vector<double> v;
    EXPECT_EQ(h.w.getVerticesCara(o, 1, v), 12);
    EXPECT_EQ(v, (std::vector<double>{1, 0, 0, 2, 0, 0, 2, 1, 0, 1, 1, 0}));
    EXPECT_EQ(h.w.getVerticesCara(o, 2, v), 0);

    EXPECT_TRUE(h.w.setMapeoFotografia(o, 1, 7, {0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8}));
    EXPECT_EQ(modelo->caras()[1].material, 7);
    EXPECT_EQ(modelo->caras()[0].material, 0);
    EXPECT_FLOAT_EQ(modelo->vertices()[2].uv.x, 0.3F);
    EXPECT_FLOAT_EQ(modelo->vertices()[4].uv.y, 0.8F);
    EXPECT_FALSE(h.w.setMapeoFotografia(o, 2, 7, {}));

    EXPECT_TRUE(h.w.setMapeoTextura(o, 9));
    EXPECT_EQ(modelo->caras()[0].material, 9);
    EXPECT_EQ(modelo->caras()[1].material, 9);
    // Projected on the model's own plane: the corners span the whole 0..1 square.
    float minimo = 1;
    float maximo = 0;
    for (const cad::vertice_t& x : modelo->vertices())
    {
        minimo = std::min({minimo, x.uv.x, x.uv.y});
        maximo = std::max({maximo, x.uv.x, x.uv.y});
    }
    EXPECT_EQ(minimo, 0.0F);
    EXPECT_EQ(maximo, 1.0F);
    EXPECT_FALSE(h.w.setMapeoTextura(h.w.nuevaLinea(0, 0, 0, 1, 1, 1), 9));
}

// The gutted exporters walk and write nothing; without an editor they answer false.
TEST(WrapModelos, exportadoresHuecos)
{
    Anfitrion h;
    EXPECT_TRUE(h.w.exportaSKP("x.skp"));
    const int64_t linea = h.w.nuevaLinea(0, 0, 0, 1, 1, 1);
    auto* modelo = new cad::Modelo3D();
    cad::prueba::cubo(*modelo);
    const int64_t o = h.w.insertaEntidadGetHandle(new cad::Objeto3D(modelo));
    const std::string ruta = cad::prueba::rutaTemporal("modelo.ply");
    std::filesystem::remove(ruta);
    EXPECT_FALSE(h.w.exportaPLY(linea, ruta));
    EXPECT_TRUE(h.w.exportaPLY(o, ruta));
    EXPECT_FALSE(std::filesystem::exists(ruta));
    EXPECT_TRUE(h.w.exportaCollada(ruta, ruta, ruta));
    EXPECT_FALSE(std::filesystem::exists(ruta));
    h.w.Dispose();
    EXPECT_FALSE(h.w.exportaPLY(o, ruta));
    EXPECT_FALSE(h.w.exportaSKP(ruta));
    // Creation after Dispose refuses, the form that also sizes the glyph included.
    EXPECT_EQ(h.w.nuevaTomaCamara(0, 0, 0, 0, 0, 0, 1, 1, 1, "x", "", 0, 24.0), 0);
    EXPECT_EQ(h.w.nuevaFoto360(0, 0, 0, 1, 8, 4, 0, 0, 0, "x.jpg"), 0);
}

}  // namespace
