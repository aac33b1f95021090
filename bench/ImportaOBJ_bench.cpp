// OBJ input beside tinyobjloader (LoadObj, no triangulation), one thread, same files: a
// synthetic textured grid of 2,000,000 triangles with normals and uvs, written once into a
// temporary folder, and the largest real models of the shared data.
//
// Besides MB/s, the first run of each file of ours measures the peak resident memory the import
// adds (VmHWM after resetting it through /proc/self/clear_refs, less VmRSS before), reported
// against the file size.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <tiny_obj_loader.h>

#include "documento/Dibujo.h"
#include "entidades/Policara.h"

namespace
{

namespace fs = std::filesystem;

const std::string kDatos =
    (fs::path(__FILE__).parent_path().parent_path().parent_path() / "shared/datos/obj").string();

// A grid of n x n quads, each two triangles, every corner v/t/n.
std::string sintetico()
{
    const fs::path carpeta = fs::temp_directory_path() / "tarvelo_bench_obj";
    const fs::path obj = carpeta / "malla.obj";
    if (fs::exists(obj))
    {
        return obj.string();
    }
    fs::create_directories(carpeta);
    {
        std::ofstream mtl(carpeta / "malla.mtl");
        mtl << "newmtl suelo\nKa 1 1 1\nKd 0.8 0.7 0.6\nKs 0 0 0\nmap_Kd suelo.jpg\n";
    }
    const int n = 1000;  // 2 * n * n triangles
    std::FILE* f = std::fopen((obj.string() + ".tmp").c_str(), "wb");
    std::vector<char> buf(1 << 20);
    std::setvbuf(f, buf.data(), _IOFBF, buf.size());
    std::fprintf(f, "# synthetic textured grid\nmtllib malla.mtl\n");
    for (int j = 0; j <= n; ++j)
    {
        for (int i = 0; i <= n; ++i)
        {
            std::fprintf(f, "v %.6f %.6f %.6f\n", 431250.0 + i * 0.25, 4581200.0 + j * 0.25,
                         120.0 + 0.001 * ((i * 7 + j * 13) % 1000));
        }
    }
    for (int j = 0; j <= n; ++j)
    {
        for (int i = 0; i <= n; ++i)
        {
            std::fprintf(f, "vt %.6f %.6f\n", i / double(n), j / double(n));
        }
    }
    for (int j = 0; j <= n; ++j)
    {
        for (int i = 0; i <= n; ++i)
        {
            std::fprintf(f, "vn %.6f %.6f %.6f\n", 0.01 * (i % 10), 0.01 * (j % 10), 0.999900);
        }
    }
    std::fprintf(f, "usemtl suelo\n");
    for (int j = 0; j < n; ++j)
    {
        for (int i = 0; i < n; ++i)
        {
            const int a = j * (n + 1) + i + 1;
            const int b = a + 1;
            const int c = a + n + 1;
            const int d = c + 1;
            std::fprintf(f, "f %d/%d/%d %d/%d/%d %d/%d/%d\n", a, a, a, b, b, b, d, d, d);
            std::fprintf(f, "f %d/%d/%d %d/%d/%d %d/%d/%d\n", a, a, a, d, d, d, c, c, c);
        }
    }
    std::fclose(f);
    fs::rename(obj.string() + ".tmp", obj);
    return obj.string();
}

long estadoKB(const char* campo)
{
    std::ifstream f("/proc/self/status");
    std::string linea;
    while (std::getline(f, linea))
    {
        if (linea.rfind(campo, 0) == 0)
        {
            return std::stol(linea.substr(std::string(campo).size()));
        }
    }
    return -1;
}

// Peak resident memory the import adds, in bytes; -1 where /proc cannot tell.
double picoMemoria(const std::string& ruta)
{
    {
        std::ofstream limpia("/proc/self/clear_refs");
        limpia << "5";
    }
    const long antes = estadoKB("VmRSS:");
    {
        cad::Dibujo d;
        cad::Policara p;
        p.importaObj(ruta, d);
        benchmark::DoNotOptimize(p.esquinas.data());
    }
    const long pico = estadoKB("VmHWM:");
    return antes < 0 || pico < 0 ? -1.0 : 1024.0 * static_cast<double>(pico - antes);
}

void nuestro(benchmark::State& state, const std::string& ruta)
{
    const auto tam = static_cast<double>(fs::file_size(ruta));
    const double pico = picoMemoria(ruta);
    size_t esquinas = 0;
    for (auto _ : state)
    {
        cad::Dibujo d;
        cad::Policara p;
        p.importaObj(ruta, d);
        esquinas = p.esquinas.size();
        benchmark::DoNotOptimize(p.esquinas.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(tam));
    state.counters["esquinas"] = static_cast<double>(esquinas);
    state.counters["pico_MB"] = pico / 1e6;
    state.counters["pico_por_fichero"] = pico / tam;
}

void tinyobj(benchmark::State& state, const std::string& ruta)
{
    const auto tam = static_cast<double>(fs::file_size(ruta));
    const std::string carpeta = fs::path(ruta).parent_path().string() + "/";
    size_t esquinas = 0;
    for (auto _ : state)
    {
        tinyobj::attrib_t attrib;
        std::vector<tinyobj::shape_t> shapes;
        std::vector<tinyobj::material_t> materials;
        std::string warn;
        std::string err;
        tinyobj::LoadObj(&attrib, &shapes, &materials, &warn, &err, ruta.c_str(), carpeta.c_str(),
                         false);
        esquinas = 0;
        for (const auto& s : shapes)
        {
            esquinas += s.mesh.indices.size();
        }
        benchmark::DoNotOptimize(attrib.vertices.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(tam));
    state.counters["esquinas"] = static_cast<double>(esquinas);
}

int registra = []
{
    const std::vector<std::pair<std::string, std::string>> ficheros = {
        {"sintetico_2M", sintetico()},
        {"spot_triangulated", kDatos + "/spot_cow/spot_triangulated.obj"},
        {"capsule", kDatos + "/trimesh_capsule/capsule.obj"},
    };
    for (const auto& [nombre, ruta] : ficheros)
    {
        if (!fs::exists(ruta))
        {
            continue;
        }
        const bool grande = nombre == "sintetico_2M";
        auto* a = benchmark::RegisterBenchmark(("importaObj/" + nombre).c_str(), nuestro, ruta);
        auto* b = benchmark::RegisterBenchmark(("tinyobj/" + nombre).c_str(), tinyobj, ruta);
        for (auto* x : {a, b})
        {
            x->Unit(benchmark::kMillisecond);
            if (grande)
            {
                x->Iterations(3);
            }
        }
    }
    return 0;
}();

}  // namespace

BENCHMARK_MAIN();
