// The OpenGL renderer on a headless context at 1280x720: the kernel's description of a large
// drawing against the build of its GPU buffers, frames when only the camera moves, and picks
// through the id buffer, fresh after a move and again with the camera still.
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#define GL_GLEXT_PROTOTYPES
#include <GL/glcorearb.h>
#include <benchmark/benchmark.h>

#include "ContextoEGL.h"
#include "Fendrix/WrapDibujoCAD.h"
#include "Fendrix/WrapPantallaCAD.h"
#include "Imagen.h"
#include "PantallaGL.h"
#include "documento/Dibujo.h"
#include "entidades/Policara.h"

namespace
{

constexpr int kAncho = 1280;
constexpr int kAlto = 720;

enum class escena_t
{
    kEntidades,  // 100,000 lines, polylines, points and texts
    kNube,       // one group of 10,000,000 points
    kMalla       // a textured soup of 2,000,000 triangles
};

struct Banco
{
    cad::ContextoEGL contexto;
    cad::PantallaGL pantalla;
    Fendrix::WrapPantallaCAD envoltorio;
    Fendrix::WrapDibujoCAD dibujo{nullptr, nullptr};
    double desplazamiento = 0.0;

    // Moves the camera along x by a fraction of a pixel so every frame is a new view.
    void mueveCamara()
    {
        desplazamiento = desplazamiento > 0.0 ? -0.3 : 0.3;
        const cad::Vector3D<double> d(desplazamiento / pantalla.zoom, 0.0, 0.0);
        pantalla.posicion = pantalla.posicion + d;
        pantalla.objetivo = pantalla.objetivo + d;
    }
};

void entidades(Fendrix::WrapDibujoCAD& d)
{
    for (int i = 0; i < 25000; ++i)
    {
        const double x = 431000.0 + (i % 250) * 4.0;
        const double y = 4581000.0 + (i / 250) * 4.0;
        d.nuevaLinea(x, y, 600.0, x + 3.0, y + 1.0, 601.0);
        const double tramos[] = {x,       y + 2.0, 600.0, x + 1.0, y + 3.0, 600.0,
                                 x + 2.0, y + 2.0, 600.5, x + 3.0, y + 3.0, 600.0};
        d.nuevaPolilinea(4, tramos);
        d.nuevoPunto(x + 0.5, y + 0.5, 600.0);
        d.nuevoTexto("P" + std::to_string(i), x + 1.0, y + 1.5, 600.0,
                     Fendrix::WrapDibujoCAD::alineacionTexto::kAlineacionInfIzq, 0.5, 0.0);
    }
}

void nube(Fendrix::WrapDibujoCAD& d)
{
    constexpr int n = 10000000;
    std::vector<double> xyz;
    std::vector<int32_t> colores;
    xyz.reserve(3 * static_cast<size_t>(n));
    colores.reserve(n);
    for (int i = 0; i < n; ++i)
    {
        const double x = 431000.0 + (i % 4000) * 0.25;
        const double y = 4581000.0 + (i / 4000) * 0.4;
        xyz.insert(xyz.end(), {x, y, 600.0 + std::sin(x * 0.01) * std::cos(y * 0.013)});
        colores.push_back((i * 37) & 0xFFFFFF);
    }
    d.nuevoGrupoPuntos(xyz, colores);
}

// A grid of 1000 by 1000 quads, each two triangles, with one textured material.
void malla(Fendrix::WrapDibujoCAD& d, const std::string& carpeta)
{
    cad::imagen_t im;
    im.ancho = im.alto = 256;
    im.rgba.assign(256 * 256 * 4, 255);
    for (size_t i = 0; i < im.rgba.size(); i += 4)
    {
        im.rgba[i] = static_cast<uint8_t>((i / 4) % 256);
        im.rgba[i + 1] = static_cast<uint8_t>((i / 1024) % 256);
    }
    std::string error;
    const std::string textura = carpeta + "/malla.png";
    cad::guardaPNG(textura, im, error);
    const auto material = static_cast<uint16_t>(d.nuevoMaterial(501, textura));
    constexpr int lado = 1000;
    auto* p = new cad::Policara();
    p->puntos.reserve((lado + 1) * (lado + 1));
    for (int j = 0; j <= lado; ++j)
    {
        for (int i = 0; i <= lado; ++i)
        {
            p->puntos.push_back(
                {431000.0 + i * 0.5, 4581000.0 + j * 0.5, 600.0 + std::sin(i * 0.02) * 2.0});
        }
    }
    p->esquinas.reserve(6U * lado * lado);
    const auto esquina = [&](int i, int j)
    {
        cad::esquina_t e;
        e.indice = j * (lado + 1) + i;
        e.uv = {i / static_cast<double>(lado), j / static_cast<double>(lado)};
        e.normal = {0.0F, 0.0F, 1.0F};
        e.material = material;
        p->esquinas.push_back(e);
    };
    for (int j = 0; j < lado; ++j)
    {
        for (int i = 0; i < lado; ++i)
        {
            p->triangulos.push_back(static_cast<int32_t>(p->esquinas.size()));
            esquina(i, j);
            esquina(i + 1, j);
            esquina(i + 1, j + 1);
            p->triangulos.push_back(static_cast<int32_t>(p->esquinas.size()));
            esquina(i, j);
            esquina(i + 1, j + 1);
            esquina(i, j + 1);
        }
    }
    p->cambiosMaterial = {0, 0};  // one textured stretch
    d.insertaEntidad(p);
}

// One bench per scene, made once: building 10 million points takes longer than the runs.
Banco& banco(escena_t escena)
{
    static std::unique_ptr<Banco> bancos[3];
    std::unique_ptr<Banco>& b = bancos[static_cast<int>(escena)];
    if (b == nullptr)
    {
        bancos[0].reset();  // one large scene in memory at a time
        bancos[1].reset();
        bancos[2].reset();
        b = std::make_unique<Banco>();
        std::string error;
        if (!b->contexto.crea(kAncho, kAlto, error))
        {
            std::fprintf(stderr, "no context: %s\n", error.c_str());
            std::abort();
        }
        b->pantalla.grabando = false;
        b->pantalla.setTamano(kAncho, kAlto);
        if (!b->pantalla.iniciaGL(error))
        {
            std::fprintf(stderr, "no programs: %s\n", error.c_str());
            std::abort();
        }
        b->dibujo.nuevoDocumento();
        b->envoltorio.setPantalla(&b->pantalla);
        b->dibujo.setPantalla(&b->envoltorio);
        const std::string carpeta =
            (std::filesystem::temp_directory_path() / "tarvelo-bench-render").string();
        std::filesystem::create_directories(carpeta);
        if (escena == escena_t::kEntidades)
        {
            entidades(b->dibujo);
        }
        else if (escena == escena_t::kNube)
        {
            nube(b->dibujo);
        }
        else
        {
            malla(b->dibujo, carpeta);
        }
        const cad::Rect3<double>& caja = b->dibujo.mDibujo->extension;
        const cad::Punto3<double> c = caja.centro();
        b->pantalla.setCamara(c + cad::Vector3D<double>(1, -1, 1).unit() * 1000.0, c, {0, 0, 1},
                              1.0, 0.0);
        b->pantalla.zoomExtension(caja);
        b->pantalla.zoomEscala(0.95);
        b->dibujo.guardaVistaActual();
        b->dibujo.dibuja(&b->envoltorio);
        b->pantalla.pinta();
        b->contexto.lee();
    }
    return *b;
}

void informa(benchmark::State& s, Banco& b)
{
    const cad::PantallaGL::estadisticas_t& e = b.pantalla.estadisticas();
    s.counters["MB_GPU"] = static_cast<double>(e.bytesGPU) / 1.0e6;
    s.counters["primitivas"] = static_cast<double>(e.primitivas);
}

// The kernel describes the drawing to the display (the retained scene), then the GPU
// buffers are built from it: the two reported apart.
void BM_DescripcionYConstruccion(benchmark::State& s, escena_t escena)
{
    Banco& b = banco(escena);
    double msDescripcion = 0.0;
    double msConstruccion = 0.0;
    for (auto _ : s)
    {
        b.dibujo.mDibujo->edicionHecha();
        const auto t0 = std::chrono::steady_clock::now();
        b.dibujo.dibuja(&b.envoltorio);
        const auto t1 = std::chrono::steady_clock::now();
        b.pantalla.construyeBuffers();
        glFinish();
        msDescripcion += std::chrono::duration<double, std::milli>(t1 - t0).count();
        msConstruccion += b.pantalla.estadisticas().msConstruccion;
    }
    s.counters["ms_descripcion"] = msDescripcion / static_cast<double>(s.iterations());
    s.counters["ms_construccion"] = msConstruccion / static_cast<double>(s.iterations());
    informa(s, b);
}

// A frame when only the camera moved: nothing is rebuilt.
void BM_FotogramaCamara(benchmark::State& s, escena_t escena)
{
    Banco& b = banco(escena);
    const size_t construcciones = b.pantalla.estadisticas().construcciones;
    for (auto _ : s)
    {
        b.mueveCamara();
        b.pantalla.pinta();
        glFinish();
    }
    if (b.pantalla.estadisticas().construcciones != construcciones)
    {
        s.SkipWithError("a camera move rebuilt the buffers");
    }
    informa(s, b);
}

// A 5x5 pick after a camera move draws the id buffer; with the camera still it is reused.
void BM_Seleccion(benchmark::State& s, escena_t escena, bool mueve)
{
    Banco& b = banco(escena);
    const cad::Rect2<int> r({kAncho / 2 - 2, kAlto / 2 - 2}, {kAncho / 2 + 2, kAlto / 2 + 2});
    std::vector<void*> picks;
    b.pantalla.entidadesEnRectangulo(r, false, picks);
    for (auto _ : s)
    {
        if (mueve)
        {
            b.mueveCamara();
        }
        b.pantalla.entidadesEnRectangulo(r, false, picks);
        benchmark::DoNotOptimize(picks.data());
    }
    s.counters["picks"] = static_cast<double>(picks.size());
}

void registra()
{
    const struct
    {
        const char* nombre;
        escena_t escena;
    } escenas[] = {{"Entidades100k", escena_t::kEntidades},
                   {"Nube10M", escena_t::kNube},
                   {"Malla2MTriangulos", escena_t::kMalla}};
    for (const auto& e : escenas)
    {
        const std::string n = e.nombre;
        benchmark::RegisterBenchmark(("Construccion/" + n).c_str(), BM_DescripcionYConstruccion,
                                     e.escena)
            ->Iterations(3)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("FotogramaCamara/" + n).c_str(), BM_FotogramaCamara, e.escena)
            ->Iterations(5)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("SeleccionTrasMover/" + n).c_str(), BM_Seleccion, e.escena,
                                     true)
            ->Iterations(5)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("SeleccionQuieta/" + n).c_str(), BM_Seleccion, e.escena,
                                     false)
            ->Iterations(20)
            ->Unit(benchmark::kMillisecond);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    registra();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
