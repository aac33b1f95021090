#include "Demo.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <map>
#include <ostream>
#include <string>
#include <unordered_map>
#include <vector>

#include "Fendrix/Fendrix.h"
#include "Imagen.h"
#include "PantallaReferencia.h"
#include "base/Color.h"
#include "documento/Dibujo.h"
#include "entidades/Cilindro.h"
#include "entidades/Esfera.h"
#include "entidades/GrupoPuntos.h"
#include "entidades/Objeto3D.h"
#include "entidades/Plano.h"
#include "entidades/Policara.h"
#include "entidades/Polilinea.h"
#include "entidades/Prisma.h"
#include "entidades/Superficie.h"
#include "modelo/Modelo3D.h"

namespace tarvelo
{

using Fendrix::WrapDibujoCAD;

namespace
{

// A scan of the plot: 100,000 points on a gently rolling ground, coloured by height.
void construyeNube(WrapDibujoCAD& dibujo)
{
    std::vector<double> coordenadas;
    std::vector<int32_t> colores;
    coordenadas.reserve(300000);
    colores.reserve(100000);
    for (int i = 0; i < 100000; ++i)
    {
        const double x = 431190.0 + (i % 400) * 0.175;
        const double y = 4581290.0 + (i / 400) * 0.24;
        const double z = 611.8 + 0.6 * std::sin(x * 0.05) * std::cos(y * 0.07) + (i % 7) * 0.01;
        coordenadas.insert(coordenadas.end(), {x, y, z});
        const int t = std::clamp(static_cast<int>((z - 611.0) * 160.0), 0, 255);
        colores.push_back(t | ((255 - t) << 8) | (96 << 16));  // red rises with the height
    }
    dibujo.nuevoGrupoPuntos(coordenadas, colores);
}

// A facade photographed and meshed: a textured soup of two quads and two triangles with the
// facade's material, built as an importer fills it.
cad::Policara* construyeFachada(int16_t material)
{
    auto* p = new cad::Policara();
    const double x0 = 431205.0;
    const double y0 = 4581335.0;
    p->puntos = {{x0, y0, 612.0},    {x0 + 10, y0, 612.0},      {x0 + 10, y0, 618.0},
                 {x0, y0, 618.0},    {x0 + 10, y0 + 10, 612.0}, {x0 + 10, y0 + 10, 618.0},
                 {x0 + 5, y0, 621.0}};
    const auto esquina = [&](int32_t indice, double u, double v, float nx, float ny)
    {
        cad::esquina_t e;
        e.indice = indice;
        e.uv = {u, v};
        e.normal = {nx, ny, 0.0F};
        e.material = static_cast<uint16_t>(material);
        p->esquinas.push_back(e);
    };
    p->triangulos.push_back(static_cast<int32_t>(p->esquinas.size()));
    esquina(3, 0.0, 0.95, 0, -1);
    esquina(2, 1.0, 0.95, 0, -1);
    esquina(6, 0.5, 1.0, 0, -1);
    p->cuadrilateros.push_back(static_cast<int32_t>(p->esquinas.size()));
    esquina(0, 0.0, 0.0, 0, -1);
    esquina(1, 1.0, 0.0, 0, -1);
    esquina(2, 1.0, 1.0, 0, -1);
    esquina(3, 0.0, 1.0, 0, -1);
    p->cuadrilateros.push_back(static_cast<int32_t>(p->esquinas.size()));
    esquina(1, 0.0, 0.0, 1, 0);
    esquina(4, 1.0, 0.0, 1, 0);
    esquina(5, 1.0, 1.0, 1, 0);
    esquina(2, 0.0, 1.0, 1, 0);
    // One material stretch from the start, as the OBJ importer marks it: the facade then
    // paints with its texture.
    p->cambiosMaterial = {0, 0};
    return p;
}

// The survey's 3D side: a point cloud, a textured facade, solids, a meshed terrain patch,
// two camera shots and a 360 photo.
void construyeModelos(WrapDibujoCAD& dibujo)
{
    cad::Dibujo& d = *dibujo.mDibujo;
    dibujo.capaActual("Topografia");
    construyeNube(dibujo);
    dibujo.capaActual("Edificios");
    int16_t fachada = 0;
    for (const cad::Material* m : d.materiales)
    {
        fachada = m->tieneTextura() ? m->id : fachada;
    }
    dibujo.insertaEntidad(construyeFachada(fachada));
    dibujo.insertaEntidad(new cad::Esfera({431245.0, 4581340.0, 614.0}, 2.0, 1));
    dibujo.insertaEntidad(new cad::Cilindro({431250.0, 4581300.0, 612.0}, 1.5, 6.0, 1));
    dibujo.insertaEntidad(
        new cad::Prisma({431235.0, 4581295.0, 612.0}, {431241.0, 4581299.0, 615.0}, 1));
    const double cubo[] = {431222.0, 4581292.0, 612.0, 431225.0, 4581295.0, 615.0};
    dibujo.nuevoCubo(cubo);
    // A terrain patch of 20 by 12 quads.
    auto* terreno = new cad::Modelo3D();
    for (int j = 0; j <= 12; ++j)
    {
        for (int i = 0; i <= 20; ++i)
        {
            terreno->nuevoVertice({431190.0 + i * 2.0, 4581352.0 + j * 2.0,
                                   612.0 + 0.3 * std::sin(i * 0.4) + 0.2 * std::cos(j * 0.5)});
        }
    }
    for (int j = 0; j < 12; ++j)
    {
        for (int i = 0; i < 20; ++i)
        {
            const int32_t a = j * 21 + i;
            const int32_t q[4] = {a, a + 1, a + 22, a + 21};
            terreno->nuevaCara(4, q, false, 1);
        }
    }
    dibujo.capaActual("Topografia");
    dibujo.insertaEntidad(new cad::Objeto3D(terreno));
    dibujo.nuevaCapa("Fotogrametria", true);
    dibujo.nuevaTomaCamara(431215.0, 4581320.0, 640.0, 0.0, 0.0, 0.0, 0.035, 6000, 4000,
                           "DSC_0412.JPG", "fotos/DSC_0412.JPG", 0);
    dibujo.nuevaTomaCamara(431235.0, 4581320.0, 640.0, 0.02, -0.01, 0.5, 0.035, 6000, 4000,
                           "DSC_0413.JPG", "fotos/DSC_0413.JPG", 0, 24.0);
    dibujo.nuevaFoto360(431230.0, 4581318.0, 613.6, 3.0, 24, 12, 0.0, 0.0, 0.3,
                        "fotos/esferica_001.png");
}

}  // namespace

namespace
{

// An opaque image whose pixel (x, y), counted from the top, has the colour 0xRRGGBB given.
template <typename F>
cad::imagen_t imagenDe(int ancho, int alto, F color)
{
    cad::imagen_t im;
    im.ancho = ancho;
    im.alto = alto;
    im.rgba.resize(static_cast<size_t>(ancho) * alto * 4);
    for (int y = 0; y < alto; ++y)
    {
        for (int x = 0; x < ancho; ++x)
        {
            const uint32_t c = color(x, y);
            uint8_t* p = &im.rgba[(static_cast<size_t>(y) * ancho + x) * 4];
            p[0] = static_cast<uint8_t>(c >> 16);
            p[1] = static_cast<uint8_t>(c >> 8);
            p[2] = static_cast<uint8_t>(c);
            p[3] = 255;
        }
    }
    return im;
}

uint32_t rgb(double r, double g, double b)
{
    const auto canal = [](double v) { return static_cast<uint32_t>(std::clamp(v, 0.0, 255.0)); };
    return canal(r) << 16 | canal(g) << 8 | canal(b);
}

}  // namespace

bool escribeImagenesDemo(const std::string& carpeta, std::string& error)
{
    // A plastered facade of 256 by 256 pixels: three rows of four windows, a door, and a
    // darker plinth, so that a render shows at once whether the texture sits the right way up.
    const cad::imagen_t fachada =
        imagenDe(256, 256,
                 [](int x, int y) -> uint32_t
                 {
                     const int cx = x % 64;
                     const int fila = y / 64;
                     if (y >= 224)
                     {
                         return 0x8A7A6A;  // plinth
                     }
                     if (fila < 3 && cx >= 18 && cx < 46 && y % 64 >= 14 && y % 64 < 50)
                     {
                         const bool marco = cx == 31 || cx == 32 || y % 64 == 31;
                         return marco ? 0xF0F0F0 : 0x30506E;  // window
                     }
                     if (fila == 3 && x >= 112 && x < 144 && y >= 176)
                     {
                         return 0x6A3A20;  // door
                     }
                     return 0xD8C8A8;  // plaster
                 });
    // The 360 photo, equirectangular: sky fading to white at the horizon, ground below it,
    // and a red post every 90 degrees so that its turn can be read.
    const cad::imagen_t foto =
        imagenDe(512, 256,
                 [](int x, int y) -> uint32_t
                 {
                     if (x % 128 < 6 && y > 96 && y < 150)
                     {
                         return 0xC81E1E;
                     }
                     const double t = y / 255.0;
                     if (t < 0.5)
                     {
                         return rgb(70 + 370 * t, 130 + 230 * t, 220 + 60 * t);
                     }
                     return rgb(150 - 80 * (t - 0.5), 125 - 60 * (t - 0.5), 90 - 40 * (t - 0.5));
                 });
    std::error_code ec;
    const std::filesystem::path base(carpeta);
    std::filesystem::create_directories(base / "texturas", ec);
    std::filesystem::create_directories(base / "fotos", ec);
    if (!cad::guardaPNG((base / "texturas" / "fachada.png").string(), fachada, error))
    {
        return false;
    }
    return cad::guardaPNG((base / "fotos" / "esferica_001.png").string(), foto, error);
}

void construyeDemo(WrapDibujoCAD& dibujo)
{
    dibujo.nuevoDocumento();

    // Survey layers: palette colours, a true colour, a hidden and a locked layer.
    dibujo.nuevaCapa("Topografia", false);
    dibujo.nuevaCapa("Bordillos", false);
    dibujo.nuevaCapa("Edificios", false);
    dibujo.nuevaCapa("Arbolado", false);
    dibujo.nuevaCapa("Referencias", false);
    dibujo.nuevaCapa("Ortofoto", false);

    cad::Dibujo& d = *dibujo.mDibujo;
    d.buscaCapa("Topografia")->color.setIndiceColor(3);
    d.buscaCapa("Bordillos")->color.setIndiceColor(1);
    d.buscaCapa("Edificios")->color.setIndiceColor(30);
    dibujo.colorCapa("Arbolado", 34, 139, 34);
    dibujo.colorCapa("Referencias", 255, 128, 0);
    dibujo.visibilidadCapa("Ortofoto", false);
    dibujo.bloqueaCapa("Referencias", true);
    dibujo.setGrosorLineaCapa("Bordillos", 2.0);
    dibujo.capaActual("Topografia");

    // Materials: a plain one, a shiny one and a textured one.
    dibujo.nuevoMaterial(101, 0xFF808080U, 0.25);
    dibujo.nuevoMaterial(102, 0xFF2040C0U, 0.9);
    dibujo.nuevoMaterial(103, "texturas/fachada.png");

    dibujo.nuevoEstiloTexto("Rotulos", "Sans", 12, false);
    dibujo.nuevoEstiloTexto("Cotas", "Mono", 8, true);

    dibujo.setVariable("PROYECTO", std::string("Levantamiento parcela 27"));
    dibujo.setVariable("ESCALA", 500);
    dibujo.setVariable("FACTOR_ANAMORFOSIS", 0.9996);
    dibujo.setVariable("ORIGEN_LOCAL", 431250.0, 4581320.0, 612.5);
    dibujo.setRepresentacionModelos(WrapDibujoCAD::representacion_modelos::kTexturas);

    // A saved view, as the display reports it after a zoom to the site.
    cad::PantallaReferencia pantalla;
    Fendrix::WrapPantallaCAD envoltorio;
    envoltorio.setPantalla(&pantalla);
    dibujo.setPantalla(&envoltorio);

    // One entity of every kind, on several layers.
    dibujo.capaActual("Topografia");
    dibujo.nuevoPunto(431200.0, 4581300.0, 612.40);
    dibujo.nuevoPunto(431210.5, 4581302.25, 612.75, 0x00C08040);
    dibujo.nuevoPuntoControl("BR-01", "BASE", 431190.0, 4581290.0, 611.95);
    dibujo.nuevoPuntoControl("BR-02", "BASE", 431260.0, 4581350.0, 613.10, 12.0);
    dibujo.capaActual("Bordillos");
    dibujo.nuevaLinea(431200.0, 4581300.0, 612.40, 431230.0, 4581310.0, 612.60);
    const double eje[] = {431200.0, 4581320.0, 612.0, 431220.0, 4581325.0, 612.2,
                          431240.0, 4581322.0, 612.5, 431255.0, 4581330.0, 612.9};
    dibujo.nuevaPolilinea(4, eje);
    dibujo.capaActual("Edificios");
    dibujo.nuevaPolilinea3D({431205.0, 4581335.0, 612.0, 431215.0, 4581335.0, 612.0, 431215.0,
                             4581345.0, 612.0, 431205.0, 4581345.0, 612.0},
                            true);
    dibujo.nuevoPoligono(
        {431225.0, 4581335.0, 612.0, 431235.0, 4581335.0, 612.0, 431230.0, 4581342.0, 612.0});
    dibujo.nuevoTexto("Parcela 27\nPolígono 4", 431230.0, 4581315.0, 612.5,
                      WrapDibujoCAD::alineacionTexto::kAlineacionInfIzq, 2.5, 0.0);
    auto* plano = new cad::Plano(0, nullptr);
    for (const cad::Punto3<double>& p : {cad::Punto3<double>(431190.0, 4581290.0, 611.9),
                                         cad::Punto3<double>(431260.0, 4581290.0, 612.6),
                                         cad::Punto3<double>(431260.0, 4581350.0, 613.2),
                                         cad::Punto3<double>(431190.0, 4581350.0, 612.4)})
    {
        plano->nuevoVertice(p);
    }
    dibujo.insertaEntidad(plano);
    dibujo.nuevoSistemaLocal("Obra", {431200.0, 4581300.0, 612.0}, {0.8, 0.6, 0.0},
                             {-0.6, 0.8, 0.0}, {0.0, 0.0, 1.0});
    construyeModelos(dibujo);
    dibujo.capaActual("Topografia");

    // The view fits the drawing's extent. The kernel's own zoom to extents also takes in the
    // empty boxes that solids report, which stand at the origin, far from the site.
    pantalla.zoomExtension(d.extension);
    pantalla.zoomEscala(1.0 / 1.1);
    dibujo.guardaVistaActual("Planta");
    dibujo.setPantalla(nullptr);
}

}  // namespace tarvelo
