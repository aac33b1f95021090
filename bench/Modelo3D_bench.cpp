// The mesh at survey size: building a flat grid of a million faces on existing vertices, its
// normals, its compact body written to and read from memory, the memory it holds, and the
// hot-element pick over a grid of about 100,000 faces.
//
// The memory rows come first on purpose: a process has one peak RSS, so they reset it
// (/proc/self/clear_refs) and measure before anything else has grown the heap.
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include "base/Configuracion.h"
#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "modelo/Modelo3D.h"
#include "modelo/PuntosCalientes.h"
#include "pantalla/PantallaCAD.h"

namespace
{

using Reloj = std::chrono::steady_clock;

constexpr double kX0 = 431000.0;
constexpr double kY0 = 4581000.0;
constexpr double kZ0 = 600.0;

// Cells per side of the big grid: 1000 x 1000 quads on 1001 x 1001 vertices.
constexpr int kLadoGrande = 1000;
// Cells per side of the hot set: 317 x 317 = 100,489 faces.
constexpr int kLadoCalientes = 317;

struct tamanos_t
{
    size_t vertices;
    size_t aristas;
    size_t caras;
};

tamanos_t tamanosMalla(int lado, bool triangulos)
{
    const auto l = static_cast<size_t>(lado);
    const size_t n = l + 1;
    // Rows and columns of edges, plus one diagonal per cell when cut into triangles.
    return {n * n, 2 * l * n + (triangulos ? l * l : 0), l * l * (triangulos ? 2 : 1)};
}

// A flat grid of lado x lado unit cells at survey coordinates, vertices first, then the faces
// on them. Corners go clockwise seen from above so the face normals point up (+z), towards
// a top view.
void construyeMalla(cad::Modelo3D& m, int lado, bool triangulos, bool reservar)
{
    const int n = lado + 1;
    if (reservar)
    {
        const tamanos_t t = tamanosMalla(lado, triangulos);
        m.reserva(t.vertices, t.aristas, t.caras);
    }
    for (int j = 0; j < n; ++j)
    {
        for (int i = 0; i < n; ++i)
        {
            m.nuevoVertice(cad::Punto3<double>(kX0 + i, kY0 + j, kZ0));
        }
    }
    for (int j = 0; j < lado; ++j)
    {
        for (int i = 0; i < lado; ++i)
        {
            const int32_t a = j * n + i;
            const int32_t b = a + 1;
            const int32_t c = a + n + 1;
            const int32_t d = a + n;
            if (triangulos)
            {
                const int32_t t1[3] = {a, d, c};
                const int32_t t2[3] = {a, c, b};
                m.nuevaCara(3, t1, false, 0);
                m.nuevaCara(3, t2, false, 0);
            }
            else
            {
                const int32_t q[4] = {a, d, c, b};
                m.nuevaCara(4, q, false, 0);
            }
        }
    }
}

// Bytes the model's three record lists hold, reserved room included.
size_t bytesModelo(const cad::Modelo3D& m)
{
    return m.vertices().capacity() * sizeof(cad::vertice_t) +
           m.aristas().lista.capacity() * sizeof(cad::Arista) +
           m.caras().capacity() * sizeof(cad::cara_t);
}

// A field of /proc/self/status in KiB ("VmRSS", "VmHWM"), or -1.
long kibEstado(const char* campo)
{
    std::FILE* f = std::fopen("/proc/self/status", "r");
    if (f == nullptr)
    {
        return -1;
    }
    char linea[256];
    long kib = -1;
    const size_t largo = std::strlen(campo);
    while (std::fgets(linea, sizeof linea, f) != nullptr)
    {
        if (std::strncmp(linea, campo, largo) == 0 && linea[largo] == ':')
        {
            kib = std::strtol(linea + largo + 1, nullptr, 10);
            break;
        }
    }
    std::fclose(f);
    return kib;
}

// Minor page faults of the process so far: the first touch of fresh memory.
long fallosPagina()
{
    rusage r{};
    getrusage(RUSAGE_SELF, &r);
    return r.ru_minflt;
}

// Resets the peak RSS to the current RSS, so each memory row sees its own peak.
bool reiniciaPico()
{
    std::FILE* f = std::fopen("/proc/self/clear_refs", "w");
    if (f == nullptr)
    {
        return false;
    }
    const bool ok = std::fputs("5", f) >= 0;
    return std::fclose(f) == 0 && ok;
}

// ---------------------------------------------------------------------------------------
// Memory of the built quad grid. One build per row; registered before every other row.

void BM_MemoriaMalla(benchmark::State& estado)
{
    const bool reservar = estado.range(0) != 0;
    const double caras = static_cast<double>(tamanosMalla(kLadoGrande, false).caras);
    bool reiniciado = false;
    long rssAntes = 0;
    long pico = 0;
    long rssDespues = 0;
    size_t bytes = 0;
    for (auto _ : estado)
    {
        reiniciado = reiniciaPico();
        rssAntes = kibEstado("VmRSS");
        {
            cad::Modelo3D m;
            construyeMalla(m, kLadoGrande, false, reservar);
            bytes = bytesModelo(m);
            rssDespues = kibEstado("VmRSS");
            pico = kibEstado("VmHWM");
        }
    }
    estado.counters["modelo_B_por_cara"] = static_cast<double>(bytes) / caras;
    estado.counters["rss_final_B_por_cara"] =
        static_cast<double>(rssDespues - rssAntes) * 1024.0 / caras;
    estado.counters["pico_rss_B_por_cara"] = static_cast<double>(pico - rssAntes) * 1024.0 / caras;
    estado.counters["rss_antes_MiB"] = static_cast<double>(rssAntes) / 1024.0;
    // Without the reset the peak is the process's own: only the first row's is its build's.
    estado.SetLabel(std::string(reservar ? "con reserva" : "sin reserva") +
                    (reiniciado ? "" : ", pico sin reiniciar"));
}
// One pass each, whatever --benchmark_repetitions says: a later pass would find the heap
// holding freed memory from the one before, and its RSS would no longer be a fresh build's.
BENCHMARK(BM_MemoriaMalla)
    ->Arg(0)
    ->Arg(1)
    ->Iterations(1)
    ->Repetitions(1)
    ->Unit(benchmark::kMillisecond);

// ---------------------------------------------------------------------------------------
// Building: vertices and faces, timed by hand so that freeing the model stays outside.

void BM_ConstruyeMalla(benchmark::State& estado)
{
    const bool triangulos = estado.range(0) != 0;
    const bool reservar = estado.range(1) != 0;
    const tamanos_t t = tamanosMalla(kLadoGrande, triangulos);
    double segundos = 0.0;
    size_t carasHechas = 0;
    for (auto _ : estado)
    {
        auto m = std::make_unique<cad::Modelo3D>();
        const auto inicio = Reloj::now();
        construyeMalla(*m, kLadoGrande, triangulos, reservar);
        const std::chrono::duration<double> d = Reloj::now() - inicio;
        estado.SetIterationTime(d.count());
        segundos += d.count();
        carasHechas = m->caras().size();
        benchmark::DoNotOptimize(m->caras().data());
    }
    if (carasHechas != t.caras)
    {
        estado.SkipWithError("the grid did not get every face");
        return;
    }
    const double carasTotales =
        static_cast<double>(t.caras) * static_cast<double>(estado.iterations());
    estado.counters["caras"] = static_cast<double>(t.caras);
    estado.counters["ns_por_cara"] = segundos * 1e9 / carasTotales;
    estado.SetLabel(std::string(triangulos ? "2,000,000 triangulos" : "1,000,000 cuadrilateros") +
                    (reservar ? ", con reserva" : ", sin reserva"));
}
BENCHMARK(BM_ConstruyeMalla)
    ->ArgsProduct({{0, 1}, {0, 1}})
    ->ArgNames({"triangulos", "reserva"})
    ->UseManualTime()
    ->MinTime(4.0)
    ->Unit(benchmark::kMillisecond);

// The quad grid the remaining rows share, built on first use (after the memory rows).
cad::Modelo3D& mallaCuadrados()
{
    static std::unique_ptr<cad::Modelo3D> m;
    if (!m)
    {
        m = std::make_unique<cad::Modelo3D>();
        construyeMalla(*m, kLadoGrande, false, true);
    }
    return *m;
}

// ---------------------------------------------------------------------------------------
// Normals

void BM_RecalculaNormales(benchmark::State& estado)
{
    cad::Modelo3D& m = mallaCuadrados();
    for (auto _ : estado)
    {
        m.recalculaNormales();
        benchmark::DoNotOptimize(m.caras().data());
    }
    estado.SetItemsProcessed(estado.iterations() * static_cast<int64_t>(m.caras().size()));
}
BENCHMARK(BM_RecalculaNormales)->Unit(benchmark::kMillisecond);

// Face normals included: normalesVertices recomputes them first.
void BM_NormalesVertices(benchmark::State& estado)
{
    cad::Modelo3D& m = mallaCuadrados();
    std::vector<cad::Vector3D<float>> normales;
    for (auto _ : estado)
    {
        m.normalesVertices(normales);
        benchmark::DoNotOptimize(normales.data());
    }
    estado.SetItemsProcessed(estado.iterations() * static_cast<int64_t>(m.vertices().size()));
}
BENCHMARK(BM_NormalesVertices)->Unit(benchmark::kMillisecond);

// ---------------------------------------------------------------------------------------
// The persisted body, to and from memory

// A fresh in-memory writer per pass, so its buffer grows as a save's does; the bytes stay in
// the writer (no copy out), and freeing it is not timed.
void BM_EscribeMalla(benchmark::State& estado)
{
    const cad::Modelo3D& m = mallaCuadrados();
    int64_t bytes = 0;
    long fallos = 0;
    for (auto _ : estado)
    {
        auto w = std::make_unique<cad::SerializadorBinarioEscritura>();
        const long fallosAntes = fallosPagina();
        const auto inicio = Reloj::now();
        m.escribe(*w);
        const std::chrono::duration<double> d = Reloj::now() - inicio;
        estado.SetIterationTime(d.count());
        fallos += fallosPagina() - fallosAntes;
        bytes = w->posicion();
    }
    estado.SetBytesProcessed(estado.iterations() * bytes);
    estado.counters["fallos_pagina"] =
        static_cast<double>(fallos) / static_cast<double>(estado.iterations());
    estado.counters["MiB"] = static_cast<double>(bytes) / (1024.0 * 1024.0);
}
BENCHMARK(BM_EscribeMalla)->UseManualTime()->MinTime(3.0)->Unit(benchmark::kMillisecond);

const std::vector<uint8_t>& cuerpoMalla()
{
    static std::vector<uint8_t> bytes;
    if (bytes.empty())
    {
        cad::SerializadorBinarioEscritura w;
        mallaCuadrados().escribe(w);
        bytes = w.bytes();
    }
    return bytes;
}

// Range 0: into a new model each pass, as a load does (its lists allocated and first touched);
// range 1: into one model whose lists keep their room from the pass before.
void BM_LeeMalla(benchmark::State& estado)
{
    const bool reutiliza = estado.range(0) != 0;
    const std::vector<uint8_t>& bytes = cuerpoMalla();
    cad::Modelo3D reutilizado;
    bool ok = true;
    size_t caras = 0;
    long fallos = 0;
    for (auto _ : estado)
    {
        std::unique_ptr<cad::Modelo3D> nuevo;
        if (!reutiliza)
        {
            nuevo = std::make_unique<cad::Modelo3D>();
        }
        cad::Modelo3D& m = reutiliza ? reutilizado : *nuevo;
        const long fallosAntes = fallosPagina();
        const auto inicio = Reloj::now();
        cad::SerializadorBinarioLectura r(bytes.data(), bytes.size());
        ok = m.lee(r);
        const std::chrono::duration<double> d = Reloj::now() - inicio;
        estado.SetIterationTime(d.count());
        fallos += fallosPagina() - fallosAntes;
        caras = m.caras().size();
        if (!ok)
        {
            break;
        }
    }
    if (!ok || caras != tamanosMalla(kLadoGrande, false).caras)
    {
        estado.SkipWithError("the body did not read back");
        return;
    }
    estado.SetBytesProcessed(estado.iterations() * static_cast<int64_t>(bytes.size()));
    estado.counters["MiB"] = static_cast<double>(bytes.size()) / (1024.0 * 1024.0);
    estado.counters["fallos_pagina"] =
        static_cast<double>(fallos) / static_cast<double>(estado.iterations());
    estado.SetLabel(reutiliza ? "modelo reutilizado" : "modelo nuevo");
}
BENCHMARK(BM_LeeMalla)
    ->Arg(0)
    ->Arg(1)
    ->ArgName("reutiliza")
    ->UseManualTime()
    ->MinTime(3.0)
    ->Unit(benchmark::kMillisecond);

// The floor under a load into a new model: the same three lists reserved and filled with
// empty records, no parsing. What the new-model row takes beyond the reused one is this.
void BM_TocaListasLectura(benchmark::State& estado)
{
    const size_t esquinas = 4 * tamanosMalla(kLadoGrande, false).caras;
    const size_t caras = tamanosMalla(kLadoGrande, false).caras;
    long fallos = 0;
    for (auto _ : estado)
    {
        auto vertices = std::make_unique<std::vector<cad::vertice_t>>();
        auto aristas = std::make_unique<std::vector<cad::Arista>>();
        auto carasLista = std::make_unique<std::vector<cad::cara_t>>();
        const long fallosAntes = fallosPagina();
        const auto inicio = Reloj::now();
        vertices->reserve(esquinas);
        aristas->reserve(esquinas);
        carasLista->reserve(caras);
        for (size_t i = 0; i < esquinas; ++i)
        {
            vertices->push_back({});
            aristas->push_back({});
        }
        for (size_t i = 0; i < caras; ++i)
        {
            carasLista->push_back({});
        }
        const std::chrono::duration<double> d = Reloj::now() - inicio;
        estado.SetIterationTime(d.count());
        fallos += fallosPagina() - fallosAntes;
        benchmark::DoNotOptimize(vertices->data());
        benchmark::DoNotOptimize(aristas->data());
        benchmark::DoNotOptimize(carasLista->data());
    }
    const size_t bytes =
        esquinas * (sizeof(cad::vertice_t) + sizeof(cad::Arista)) + caras * sizeof(cad::cara_t);
    estado.counters["MiB_tocados"] = static_cast<double>(bytes) / (1024.0 * 1024.0);
    estado.counters["fallos_pagina"] =
        static_cast<double>(fallos) / static_cast<double>(estado.iterations());
}
BENCHMARK(BM_TocaListasLectura)->UseManualTime()->MinTime(3.0)->Unit(benchmark::kMillisecond);

// ---------------------------------------------------------------------------------------
// The pick over a hot set of 100,489 faces

// Pixels per world unit of the view: a cell is 50 pixels wide, so the centre of a cell lies
// 25 pixels from every corner and every side, outside the pick window of 10.
constexpr double kEscala = 50.0;
constexpr double kAncho = 1000.0;
constexpr double kAlto = 800.0;

struct Calientes
{
    cad::PuntosCalientes puntos;
    cad::Punto3<double> centro;  // centre of the middle cell
    bool normalesArriba = true;

    // Filled as a meshed entity fills it: every vertex a point, every edge, every face with
    // its normal.
    Calientes()
    {
        cad::Modelo3D m;
        construyeMalla(m, kLadoCalientes, false, true);
        std::vector<cad::Punto3<double>> v;
        m.getPuntos(v);
        puntos.nuevosPuntos(static_cast<int>(v.size()), v.data());
        for (const cad::Arista& a : m.aristas())
        {
            puntos.nuevaArista(m.getVertice(a.vertice[0]).punto, m.getVertice(a.vertice[1]).punto);
        }
        std::vector<cad::Punto3<double>> esquinas;
        for (int32_t f = 0; f < static_cast<int32_t>(m.caras().size()); ++f)
        {
            m.getCoordenadasCara(f, esquinas);
            const cad::Vector3D<float> n = m.normalCara(f);
            normalesArriba = normalesArriba && n.z > 0.99F;
            puntos.nuevaCara(static_cast<int>(esquinas.size()), esquinas.data(), {n.x, n.y, n.z});
        }
        const double medio = kLadoCalientes / 2 + 0.5;
        centro = cad::Punto3<double>(kX0 + medio, kY0 + medio, kZ0);
    }
};

Calientes& calientes()
{
    static Calientes c;
    return c;
}

// A top view centred on `centro`: orthographic, kEscala pixels per unit, the camera 100 units
// above looking down -z with y up; pixel rows count from the bottom.
cad::vista_t vistaPlanta(const cad::Punto3<double>& centro)
{
    cad::vista_t v;
    v.origen = centro;
    v.ancho = kAncho;
    v.alto = kAlto;
    const double semiAncho = kAncho / (2.0 * kEscala);
    const double semiAlto = kAlto / (2.0 * kEscala);
    const double cerca = 1.0;
    const double lejos = 1000.0;
    cad::Matriz4<double> proyeccion;
    proyeccion[0] = 1.0 / semiAncho;
    proyeccion[5] = 1.0 / semiAlto;
    proyeccion[10] = -2.0 / (lejos - cerca);
    proyeccion[14] = -(lejos + cerca) / (lejos - cerca);
    const cad::Matriz4<double> modelo =
        cad::Matriz4<double>::traslacion(cad::Punto3<double>(0.0, 0.0, -100.0));
    v.matriz = proyeccion * modelo;
    return v;
}

// The cursor at pixel (x, y) of that view, its ray straight down from the near side.
cad::cursor_t cursorEn(const cad::Punto3<double>& centro, int32_t x, int32_t y)
{
    cad::cursor_t c;
    c.x = x;
    c.y = y;
    c.posicion = cad::Punto3<double>(centro.x + (x - kAncho / 2.0) / kEscala,
                                     centro.y + (y - kAlto / 2.0) / kEscala, centro.z + 99.0);
    c.direccion = cad::Vector3D<double>(0.0, 0.0, -1.0);
    return c;
}

// Range 0: the cursor on the middle cell's centre, away from every point and edge, so the
// search runs through all points, all edges and all faces and ends on a face (kind 4).
// Range 1: the cursor on that cell's lower left corner, a point in the window: it returns
// after the points (kind 1).
void BM_CercanoCalientes(benchmark::State& estado)
{
    const bool enPunto = estado.range(0) != 0;
    Calientes& c = calientes();
    if (!c.normalesArriba)
    {
        estado.SkipWithError("the grid's normals do not face the view");
        return;
    }
    const cad::vista_t vista = vistaPlanta(c.centro);
    const int32_t x = static_cast<int32_t>(kAncho / 2.0 - (enPunto ? kEscala / 2.0 : 0.0));
    const int32_t y = static_cast<int32_t>(kAlto / 2.0 - (enPunto ? kEscala / 2.0 : 0.0));
    const cad::cursor_t cursor = cursorEn(c.centro, x, y);
    const int32_t esperado = enPunto ? cad::kTipoVertice : cad::kTipoCara;
    const cad::elemento_seleccionado_t r = c.puntos.cercano(vista, cursor);
    if (r.tipo != esperado)
    {
        estado.SkipWithError(("the pick gave kind " + std::to_string(r.tipo)).c_str());
        return;
    }
    for (auto _ : estado)
    {
        benchmark::DoNotOptimize(c.puntos.cercano(vista, cursor));
    }
    estado.counters["tipo"] = r.tipo;
    estado.counters["indice"] = r.indice;
    estado.counters["ventana_px"] =
        cad::Configuracion::instancia().valor(cad::Configuracion::kVentanaReferencia);
    estado.counters["puntos"] = static_cast<double>(c.puntos.puntos.size());
    estado.counters["aristas"] = static_cast<double>(c.puntos.aristas.size());
    estado.counters["caras"] = static_cast<double>(c.puntos.caras.size());
    estado.SetLabel(enPunto ? "cursor en un punto" : "cursor en una cara");
}
BENCHMARK(BM_CercanoCalientes)->Arg(0)->Arg(1)->ArgName("en_punto")->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
