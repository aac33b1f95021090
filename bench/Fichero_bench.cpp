// Saving and loading survey-sized drawings (and the bulk bodies: a ten-million-point group and
// a million-triangle polyface), beside dd writing the same bytes to the same
// folder in the same run. The save is measured as a host makes it (checked, through a
// temporary file flushed to disk and renamed), so dd runs with conv=fsync; a second dd row
// without it shows what the page cache alone takes. Loads read a file the save wrote.
//
// Files go to $TARVELO_BENCH_CARPETA, or to ./bench-ficheros; they are removed at the end.
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "base/FicheroAtomico.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/Dibujo.h"
#include "entidades/GrupoPuntos.h"
#include "entidades/Linea.h"
#include "entidades/Policara.h"
#include "entidades/Polilinea.h"
#include "entidades/Punto.h"

namespace
{

namespace fs = std::filesystem;

enum caso_e
{
    kPuntos,      // 1,000,000 points
    kLineas,      // 1,000,000 lines
    kPolilineas,  // 10,000 polylines of 1,000 vertices
    kGrupo,       // one point group of 10,000,000 coloured points
    kPolicara     // one polyface of 1,000,000 triangles on 500,000 points
};

const char* nombreCaso(int caso)
{
    static const char* const kNombres[] = {"puntos", "lineas", "polilineas", "grupo", "policara"};
    return kNombres[caso];
}

std::string carpeta()
{
    const char* c = std::getenv("TARVELO_BENCH_CARPETA");
    const fs::path p = c != nullptr && *c != '\0' ? fs::path(c) : fs::path("bench-ficheros");
    fs::create_directories(p);
    return p.string();
}

std::map<int, std::unique_ptr<cad::Dibujo>> dibujos;

// One drawing per case, built once: survey coordinates, so no value is a round number.
cad::Dibujo& dibujo(int caso)
{
    auto& d = dibujos[caso];
    if (d)
    {
        return *d;
    }
    d = std::make_unique<cad::Dibujo>();
    d->nuevoDocumento();
    if (caso == kPuntos || caso == kLineas)
    {
        for (int i = 0; i < 1000000; ++i)
        {
            const cad::Punto3<double> p(431000.0 + i * 0.013, 4581000.0 + i * 0.007,
                                        600.0 + i * 1e-5);
            d->nuevaEntidad(caso == kPuntos
                                ? static_cast<cad::Entidad*>(new cad::Punto(p.x, p.y, p.z))
                                : new cad::Linea(p, p + cad::Vector3D<double>(1, 2, 0.5)));
        }
    }
    else if (caso == kGrupo)
    {
        auto* g = new cad::GrupoPuntos();
        g->puntos.reserve(10000000);
        g->colores.reserve(10000000);
        for (int i = 0; i < 10000000; ++i)
        {
            g->nuevoPunto({431000.0 + (i % 4000) * 0.013, 4581000.0 + (i / 4000) * 0.011,
                           600.0 + (i % 977) * 1e-3},
                          0xFF000000U | static_cast<uint32_t>(i * 2654435761U >> 8));
        }
        d->nuevaEntidad(g);
    }
    else if (caso == kPolicara)
    {
        // A strip of 1,000 by 500 points, two triangles per cell, one corner record each.
        auto* p = new cad::Policara();
        p->puntos.reserve(500000);
        for (int i = 0; i < 500000; ++i)
        {
            p->puntos.emplace_back(431000.0 + (i % 1000) * 0.05, 4581000.0 + (i / 1000) * 0.05,
                                   600.0 + (i % 37) * 0.01);
        }
        p->esquinas.reserve(3000000);
        p->triangulos.reserve(1000000);
        for (int c = 0; c < 1000000; ++c)
        {
            const int fila = (c / 2) / 999 % 499;
            const int columna = (c / 2) % 999;
            const int a = fila * 1000 + columna;
            const int esquinas[2][3] = {{a, a + 1, a + 1001}, {a, a + 1001, a + 1000}};
            p->triangulos.push_back(static_cast<int32_t>(p->esquinas.size()));
            for (int k : esquinas[c % 2])
            {
                cad::esquina_t e;
                e.indice = k;
                e.uv = {(k % 1000) / 999.0, (k / 1000) / 499.0};
                e.normal = {0.0F, 0.0F, 1.0F};
                e.material = 1;
                p->esquinas.push_back(e);
            }
        }
        d->nuevaEntidad(p);
    }
    else
    {
        std::vector<cad::Punto3<double>> v(1000);
        for (int i = 0; i < 10000; ++i)
        {
            for (int k = 0; k < 1000; ++k)
            {
                v[k] = cad::Punto3<double>(431000.0 + i * 3.1 + k * 0.5, 4581000.0 + k * 0.25,
                                           600.0 + k * 0.01);
            }
            d->nuevaEntidad(new cad::Polilinea(1000, v.data()));
        }
    }
    return *d;
}

std::string rutaCaso(int caso, const char* sufijo)
{
    return carpeta() + "/" + nombreCaso(caso) + sufijo;
}

void Guarda(benchmark::State& estado)
{
    const int caso = static_cast<int>(estado.range(0));
    cad::Dibujo& d = dibujo(caso);
    const std::string ruta = rutaCaso(caso, ".cad");
    for (auto _ : estado)
    {
        cad::resultadoFichero_t r;
        if (!d.guardaFichero(ruta, r))
        {
            estado.SkipWithError(r.mensaje.c_str());
            break;
        }
    }
    const auto bytes = static_cast<int64_t>(fs::file_size(ruta));
    estado.SetBytesProcessed(estado.iterations() * bytes);
    estado.SetLabel(std::string(nombreCaso(caso)) + ", " + std::to_string(bytes >> 20) + " MiB");
}

// dd copies the saved file to a sibling: the same bytes, the same folder, large writes.
void Dd(benchmark::State& estado)
{
    const int caso = static_cast<int>(estado.range(0));
    const bool sincroniza = estado.range(1) != 0;
    const std::string origen = rutaCaso(caso, ".cad");
    if (!fs::exists(origen))
    {
        cad::resultadoFichero_t r;
        dibujo(caso).guardaFichero(origen, r);
    }
    const std::string destino = rutaCaso(caso, ".dd");
    const std::string orden = "dd if='" + origen + "' of='" + destino + "' bs=1M status=none" +
                              (sincroniza ? " conv=fsync" : "");
    for (auto _ : estado)
    {
        if (std::system(orden.c_str()) != 0)
        {
            estado.SkipWithError("dd failed");
            break;
        }
    }
    const auto bytes = static_cast<int64_t>(fs::file_size(destino));
    estado.SetBytesProcessed(estado.iterations() * bytes);
    estado.SetLabel(std::string(nombreCaso(caso)) + (sincroniza ? ", conv=fsync" : ", no fsync"));
    fs::remove(destino);
}

// The load a host's open makes, file read included: one parse into a drawing.
void Lee(benchmark::State& estado)
{
    const int caso = static_cast<int>(estado.range(0));
    const std::string ruta = rutaCaso(caso, ".cad");
    if (!fs::exists(ruta))
    {
        cad::resultadoFichero_t r;
        dibujo(caso).guardaFichero(ruta, r);
    }
    cad::Dibujo d;
    d.nuevoDocumento();
    for (auto _ : estado)
    {
        cad::SerializadorBinarioLectura lector(ruta);
        if (!d.lee(lector))
        {
            estado.SkipWithError("load failed");
            break;
        }
    }
    const auto bytes = static_cast<int64_t>(fs::file_size(ruta));
    estado.SetBytesProcessed(estado.iterations() * bytes);
    estado.SetLabel(std::string(nombreCaso(caso)) + ", " + std::to_string(d.entidades.size()) +
                    " entities");
    // The case is done: its drawing goes, so that the next case starts from a heap like a
    // host's that opens one drawing.
    dibujos.erase(caso);
}

void Argumentos(benchmark::internal::Benchmark* b)
{
    b->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);
}

// Case by case: the save, dd with and without flushing, then the load.
BENCHMARK(Guarda)->Arg(kPuntos)->Apply(Argumentos);
BENCHMARK(Dd)->Args({kPuntos, 1})->Args({kPuntos, 0})->Apply(Argumentos);
BENCHMARK(Lee)->Arg(kPuntos)->Apply(Argumentos);
BENCHMARK(Guarda)->Arg(kLineas)->Apply(Argumentos);
BENCHMARK(Dd)->Args({kLineas, 1})->Args({kLineas, 0})->Apply(Argumentos);
BENCHMARK(Lee)->Arg(kLineas)->Apply(Argumentos);
BENCHMARK(Guarda)->Arg(kPolilineas)->Apply(Argumentos);
BENCHMARK(Dd)->Args({kPolilineas, 1})->Args({kPolilineas, 0})->Apply(Argumentos);
BENCHMARK(Lee)->Arg(kPolilineas)->Apply(Argumentos);
BENCHMARK(Guarda)->Arg(kGrupo)->Apply(Argumentos);
BENCHMARK(Dd)->Args({kGrupo, 1})->Args({kGrupo, 0})->Apply(Argumentos);
BENCHMARK(Lee)->Arg(kGrupo)->Apply(Argumentos);
BENCHMARK(Guarda)->Arg(kPolicara)->Apply(Argumentos);
BENCHMARK(Dd)->Args({kPolicara, 1})->Args({kPolicara, 0})->Apply(Argumentos);
BENCHMARK(Lee)->Arg(kPolicara)->Apply(Argumentos);

}  // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    fs::remove_all(carpeta());
    return 0;
}
