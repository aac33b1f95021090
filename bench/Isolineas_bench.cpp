// Contour lines of a survey terrain: a mesh of 1,000,000 triangles, levels every metre, cut
// and chained into polylines' point lists. Two terrains: smooth heights, and heights moved
// onto the levels themselves so that levels run through vertices and along edges.
#include <algorithm>
#include <cmath>
#include <vector>

#include <benchmark/benchmark.h>

#include "modelo/Modelo3D.h"
#include "modelo/OperacionesModelo.h"

namespace
{

constexpr int kLado = 707;  // 707 x 707 squares, two triangles each: 999,698 triangles

cad::Modelo3D terreno(bool enCotas)
{
    cad::Modelo3D m;
    const int n = kLado + 1;
    m.reserva(static_cast<size_t>(n) * n, 3 * static_cast<size_t>(kLado) * kLado,
              2 * static_cast<size_t>(kLado) * kLado);
    for (int j = 0; j < n; ++j)
    {
        for (int i = 0; i < n; ++i)
        {
            // Rolling hills some 60 m high over 700 m, at survey coordinates.
            const double z = 120 + 30 * std::sin(i * 0.013) * std::cos(j * 0.017) +
                             8 * std::sin(i * 0.071 + j * 0.043);
            m.nuevoVertice(cad::Punto3<double>(450000.0 + i, 4200000.0 + j, z));
        }
    }
    for (int j = 0; j < kLado; ++j)
    {
        for (int i = 0; i < kLado; ++i)
        {
            const int32_t a = j * n + i;
            const int32_t t1[3] = {a, a + 1, a + n + 1};
            const int32_t t2[3] = {a, a + n + 1, a + n};
            m.nuevaCara(3, t1, false, 0);
            m.nuevaCara(3, t2, false, 0);
        }
    }
    if (enCotas)
    {
        // Every vertex but the highest and lowest goes down to the level below it, never
        // below the lowest, which leaves the box and so the levels as they were.
        const cad::Rect3<double> caja = m.caja();
        const std::vector<double> cotas =
            cad::cotasIsolineas(m, cad::Vector3D<double>(0, 0, 1), 1.0);
        for (int32_t v = 0; v < static_cast<int32_t>(m.vertices().size()); ++v)
        {
            cad::Punto3<double> p = m.getVertice(v).punto;
            if (p.z > caja.minimo.z && p.z < caja.maximo.z)
            {
                p.z = std::max(caja.minimo.z,
                               *(std::upper_bound(cotas.begin(), cotas.end(), p.z) - 1));
                m.setPunto(v, p);
            }
        }
    }
    return m;
}

void isolineasTerreno(benchmark::State& estado)
{
    const cad::Modelo3D m = terreno(estado.range(0) != 0);
    size_t cadenas = 0;
    size_t puntos = 0;
    for (auto _ : estado)
    {
        std::vector<std::vector<cad::Punto3<double>>> normales;
        std::vector<std::vector<cad::Punto3<double>>> maestras;
        cad::isolineas(m, cad::Vector3D<double>(0, 0, 1), normales, maestras, 1.0);
        std::vector<cad::cadena_t> salida;
        for (const auto* niveles : {&maestras, &normales})
        {
            for (const auto& nivel : *niveles)
            {
                cad::encadena(nivel, salida, 0);
            }
        }
        cadenas = salida.size();
        puntos = 0;
        for (const cad::cadena_t& c : salida)
        {
            puntos += c.puntos.size();
        }
        benchmark::DoNotOptimize(salida.data());
    }
    estado.counters["triangulos"] = static_cast<double>(m.caras().size());
    estado.counters["cadenas"] = static_cast<double>(cadenas);
    estado.counters["puntos"] = static_cast<double>(puntos);
}
BENCHMARK(isolineasTerreno)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
