// Survey-sized drawings through the document: a load that ties N points to N layers (one
// point per layer), and the selection of every entity.
#include <cstdio>
#include <string>

#include <benchmark/benchmark.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/Dibujo.h"
#include "documento/SeleccionEntidades.h"
#include "entidades/Punto.h"

namespace
{

const std::string kRuta = "/tmp/tarvelo-bench-documento.tcad";

// N layers after layer "0", and point i on layer i.
void llena(cad::Dibujo& d, int n)
{
    d.nuevoDocumento();
    for (int i = 0; i < n; ++i)
    {
        d.capas.push_back(new cad::Capa("C" + std::to_string(i), cad::ColorCapa(7), 1));
    }
    for (int i = 0; i < n; ++i)
    {
        auto* p = new cad::Punto(431000.0 + i, 4581000.0 + i, 600.0);
        p->asignaCapa(d.capas[static_cast<size_t>(i) + 1]);
        d.nuevaEntidad(p);
    }
}

void BM_CargaCapasYPuntos(benchmark::State& estado)
{
    {
        cad::Dibujo d;
        llena(d, static_cast<int>(estado.range(0)));
        cad::SerializadorBinarioEscritura w(kRuta);
        d.escribe(w);
        w.cierra();
    }
    for (auto _ : estado)
    {
        cad::Dibujo d;
        cad::SerializadorBinarioLectura r(kRuta);
        if (!d.lee(r))
        {
            estado.SkipWithError("the drawing did not load");
            break;
        }
        benchmark::DoNotOptimize(d.entidades.back()->capaEntidad());
    }
    std::remove(kRuta.c_str());
}
BENCHMARK(BM_CargaCapasYPuntos)->Arg(2000)->Arg(20000)->Unit(benchmark::kMillisecond);

void BM_SeleccionTodas(benchmark::State& estado)
{
    cad::Dibujo d;
    d.nuevoDocumento();
    for (int64_t i = 0; i < estado.range(0); ++i)
    {
        d.nuevaEntidad(new cad::Punto(static_cast<double>(i), 0.0, 0.0));
    }
    for (auto _ : estado)
    {
        benchmark::DoNotOptimize(d.nuevaSeleccion(cad::Dibujo::kSeleccionTodas).entidades.data());
    }
}
BENCHMARK(BM_SeleccionTodas)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
