// Throughput of the document serialiser on survey-sized point lists.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <vector>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"

namespace
{

std::vector<cad::Punto3<double>> nube(size_t n)
{
    std::vector<cad::Punto3<double>> puntos;
    puntos.reserve(n);
    for (size_t i = 0; i < n; ++i)
    {
        const double t = static_cast<double>(i);
        puntos.emplace_back(431000.0 + t * 0.01, 4581000.0 + t * 0.02, 600.0 + t * 1e-4);
    }
    return puntos;
}

const std::string kRuta = "/tmp/tarvelo-bench-serializador.bin";

// Item-by-item point writes: the form the document uses for vertex lists.
void EscribeVectorPuntos(benchmark::State& estado)
{
    const auto puntos = nube(static_cast<size_t>(estado.range(0)));
    for (auto _ : estado)
    {
        cad::SerializadorBinarioEscritura w(kRuta);
        w.escribeVectorPuntos(puntos);
    }
    estado.SetItemsProcessed(estado.iterations() * estado.range(0));
    estado.SetBytesProcessed(estado.iterations() * estado.range(0) * 24);
}
BENCHMARK(EscribeVectorPuntos)->Arg(1000000)->Unit(benchmark::kMillisecond);

void LeeVectorPuntos(benchmark::State& estado)
{
    {
        cad::SerializadorBinarioEscritura w(kRuta);
        w.escribeVectorPuntos(nube(static_cast<size_t>(estado.range(0))));
    }
    std::vector<cad::Punto3<double>> puntos;
    for (auto _ : estado)
    {
        cad::SerializadorBinarioLectura r(kRuta);
        r.leeVectorPuntos(puntos);
        benchmark::DoNotOptimize(puntos.data());
    }
    estado.SetItemsProcessed(estado.iterations() * estado.range(0));
    std::remove(kRuta.c_str());
}
BENCHMARK(LeeVectorPuntos)->Arg(1000000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
