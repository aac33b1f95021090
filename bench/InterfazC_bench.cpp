// A million coloured survey points through the C interface, beside the same work through the
// C++ facade: made into a drawing as one point group, saved, read into a second drawing and
// read back into vectors, then checked equal to what went in. The difference between the
// two rows is what the C layer costs a host (its checks, copies and handle lookups).
//
// The input arrays are made once, before any timed region. Files go to the system's temporary
// folder and are removed at the end of each run.
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include <unistd.h>

#include <benchmark/benchmark.h>

#include "Fendrix/WrapDibujoCAD.h"
#include "documento/Dibujo.h"
#include "entidades/GrupoPuntos.h"
#include "tarvelo.h"

namespace
{

namespace fs = std::filesystem;

constexpr size_t kPuntos = 1000000;

struct entrada_t
{
    std::vector<double> xyz;
    std::vector<uint32_t> colores;
    std::vector<int32_t> coloresFachada;  // the same colours as the facade takes them
};

// Survey magnitudes, so that no coordinate is a round number; fixed seed, so every run and
// both rows read the same points.
const entrada_t& entrada()
{
    static const entrada_t e = []
    {
        entrada_t r;
        std::mt19937_64 gen(20240611);
        std::uniform_real_distribution<double> u(0.0, 1.0);
        r.xyz.reserve(3 * kPuntos);
        r.colores.reserve(kPuntos);
        for (size_t i = 0; i < kPuntos; ++i)
        {
            r.xyz.push_back(431200.0 + u(gen) * 500.0);
            r.xyz.push_back(4581000.0 + u(gen) * 500.0);
            r.xyz.push_back(600.0 + u(gen) * 50.0);
            r.colores.push_back(0xFF000000U | static_cast<uint32_t>(gen() & 0xFFFFFFU));
        }
        r.coloresFachada.assign(r.colores.begin(), r.colores.end());
        return r;
    }();
    return e;
}

std::string rutaTemporal(const char* nombre)
{
    return (fs::temp_directory_path() /
            ("interfaz_c_bench_" + std::to_string(getpid()) + "_" + nombre))
        .string();
}

void etiqueta(benchmark::State& estado, const std::string& ruta)
{
    std::error_code ec;
    const auto bytes = fs::file_size(ruta, ec);
    estado.SetLabel(std::to_string(kPuntos) + " puntos, " +
                    (ec ? std::string("?") : std::to_string(bytes >> 20)) + " MiB");
    fs::remove(ruta, ec);
}

void InterfazC(benchmark::State& estado)
{
    const entrada_t& e = entrada();
    const std::string ruta = rutaTemporal("c.cad");
    std::vector<double> xyz;
    std::vector<uint32_t> colores;
    for (auto _ : estado)
    {
        tv_dibujo* a = nullptr;
        tv_dibujo* b = nullptr;
        int64_t h = 0;
        size_t n = 0;
        bool bien = tv_dibujo_nuevo(nullptr, &a) == TV_OK &&
                    tv_dibujo_grupo_puntos(a, e.xyz.data(), e.xyz.size(), e.colores.data(),
                                           e.colores.size(), nullptr) == TV_OK &&
                    tv_dibujo_guarda(a, ruta.c_str()) == TV_OK &&
                    tv_dibujo_nuevo(nullptr, &b) == TV_OK &&
                    tv_dibujo_abre(b, ruta.c_str(), nullptr) == TV_OK &&
                    tv_dibujo_entidades(b, &h, 1, &n) == TV_OK && n == 1;
        if (bien)
        {
            // The sizes come from the interface itself, as a host would ask them.
            double nada = 0;
            uint32_t ninguno = 0;
            tv_dibujo_coordenadas(b, h, &nada, 0, &n);
            xyz.resize(n);
            bien = tv_dibujo_coordenadas(b, h, xyz.data(), xyz.size(), &n) == TV_OK;
            tv_dibujo_colores(b, h, &ninguno, 0, &n);
            colores.resize(n);
            bien = bien && tv_dibujo_colores(b, h, colores.data(), colores.size(), &n) == TV_OK;
        }
        const std::string mensaje = bien ? "" : tv_ultimo_mensaje();
        tv_dibujo_libera(b);
        tv_dibujo_libera(a);
        if (!bien)
        {
            estado.SkipWithError(("interfaz C: " + mensaje).c_str());
            break;
        }
    }
    if (!estado.error_occurred() && (xyz != e.xyz || colores != e.colores))
    {
        estado.SkipWithError("interfaz C: los puntos leidos no son los guardados");
    }
    etiqueta(estado, ruta);
}

void FachadaCpp(benchmark::State& estado)
{
    const entrada_t& e = entrada();
    const std::string ruta = rutaTemporal("cpp.cad");
    std::vector<double> xyz;
    std::vector<uint32_t> colores;
    for (auto _ : estado)
    {
        std::string mensaje;
        Fendrix::WrapDibujoCAD a(nullptr, nullptr);
        a.nuevoDocumento();
        bool bien = a.nuevoGrupoPuntos(e.xyz, e.coloresFachada) != 0 &&
                    a.guardaComprobado(ruta, mensaje);
        Fendrix::WrapDibujoCAD b(nullptr, nullptr);
        int64_t danadas = 0;
        std::vector<int64_t> handles;
        bien = bien && b.leeComprobado(ruta, mensaje, danadas) && b.getEntidades(handles) == 1;
        if (bien)
        {
            b.getVertices(handles[0], xyz);
            const auto* grupo = dynamic_cast<const cad::GrupoPuntos*>(
                b.mDibujo->buscaEntidad(handles[0]));
            bien = grupo != nullptr;
            if (bien)
            {
                colores = grupo->colores;
            }
        }
        if (!bien)
        {
            estado.SkipWithError(("fachada C++: " + mensaje).c_str());
            break;
        }
    }
    if (!estado.error_occurred() && (xyz != e.xyz || colores != e.colores))
    {
        estado.SkipWithError("fachada C++: los puntos leidos no son los guardados");
    }
    etiqueta(estado, ruta);
}

// The input is made before the first timed run.
const bool kPreparada = (entrada(), true);

BENCHMARK(InterfazC)->Iterations(1)->Repetitions(3)->Unit(benchmark::kMillisecond);
BENCHMARK(FachadaCpp)->Iterations(1)->Repetitions(3)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
