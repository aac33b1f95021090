// A click on a dense survey drawing: 100,000 points in a square of 316 by 316 pixels, so that
// the snap's pick box returns well over a thousand candidates. Measures the editor's snap
// (compruebaPunto) and its entity pick (entidadesBajoPixel), display query included.
#include <benchmark/benchmark.h>

#include "PantallaReferencia.h"
#include "documento/Dibujo.h"
#include "documento/SeleccionEntidades.h"
#include "editor/EditorDibujo.h"
#include "entidades/Punto.h"

namespace
{

struct Escena
{
    cad::Dibujo dibujo;
    cad::PantallaReferencia pantalla;
    cad::EditorDibujo* editor = nullptr;

    explicit Escena(int lado)
    {
        dibujo.nuevoDocumento();
        for (int i = 0; i < lado; ++i)
        {
            for (int j = 0; j < lado; ++j)
            {
                dibujo.nuevaEntidad(new cad::Punto(100.0 + i, 100.0 + j, 0.0));
            }
        }
        pantalla.grabando = false;
        pantalla.setCamara(cad::Punto3<double>(400, 300, 100), cad::Punto3<double>(400, 300, 0),
                           cad::Vector3D<double>(0, 1, 0), 1.0, 0.0);
        dibujo.vistaAplicada = true;
        dibujo.redibujar = true;
        dibujo.dibuja(pantalla);
        dibujo.setReferenciaEntidades(true, 8);
        editor = new cad::EditorDibujo(&dibujo, &pantalla);
    }
    ~Escena() { delete editor; }
};

void BM_ReferenciaDensa(benchmark::State& state)
{
    Escena e(static_cast<int>(state.range(0)));
    e.pantalla.setPosicionCursor(250, 250);
    for (auto _ : state)
    {
        cad::cursor_t c = e.pantalla.cursor;
        benchmark::DoNotOptimize(e.editor->compruebaPunto(c));
    }
    state.counters["entidades"] = static_cast<double>(e.dibujo.entidades.size());
}
BENCHMARK(BM_ReferenciaDensa)->Arg(100)->Arg(316)->Unit(benchmark::kMillisecond);

void BM_EntidadesBajoPixelDensa(benchmark::State& state)
{
    Escena e(static_cast<int>(state.range(0)));
    e.pantalla.setPosicionCursor(250, 250);
    for (auto _ : state)
    {
        cad::SeleccionEntidades sel(&e.dibujo);
        benchmark::DoNotOptimize(e.editor->entidadesBajoPixel(e.pantalla.cursor, sel));
    }
}
BENCHMARK(BM_EntidadesBajoPixelDensa)->Arg(100)->Arg(316)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
