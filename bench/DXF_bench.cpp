// The DXF writer and reader beside Debian's dxflib, same content, same run.
//
// Writer: 200,000 entities (lines, points, 3D polylines of four vertices, texts) at survey
// coordinates, written by ExportaDXF and by dxflib's R12 writer. Reader: dxflib reading a
// 200,000-entity file written here by ExportaDXF and the largest real files of the shared
// data, beside our own import of the same file. Bytes/s count the bytes of the file written
// or read; entidades/s lets the writers be compared on content, as their texts differ in
// length (dxflib writes more digits and more groups). The real files are looked for in
// the shared data beside the clone, or under $CAD_DATOS_DXF.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <dl_creationadapter.h>
#include <dl_dxf.h>
#include <unistd.h>

#include "documento/Dibujo.h"
#include "intercambio/ExportaDXF.h"

namespace
{

namespace fs = std::filesystem;

const int kEntidades = 200000;
const char* const kCapas[] = {"Ejes", "Bordillos", "Cotas", "Arbolado"};

enum class tipo_e
{
    kLinea,
    kPunto,
    kPolilinea,
    kTexto
};

struct EntidadBench
{
    tipo_e tipo;
    int capa;
    int color;
    double c[12];  // a line's two points, a point, or a polyline's four vertices
    std::string texto;
};

// Fixed seed: every run writes the same content.
const std::vector<EntidadBench>& contenido()
{
    static const std::vector<EntidadBench> entidades = []
    {
        std::mt19937_64 azar(20240611);
        std::uniform_real_distribution<double> este(400000.0, 401000.0);
        std::uniform_real_distribution<double> norte(4000000.0, 4001000.0);
        std::uniform_real_distribution<double> cota(0.0, 120.0);
        std::uniform_real_distribution<double> paso(-5.0, 5.0);
        std::vector<EntidadBench> v(kEntidades);
        for (int i = 0; i < kEntidades; ++i)
        {
            EntidadBench& e = v[i];
            e.tipo = static_cast<tipo_e>(i % 4);
            e.capa = (i / 4) % 4;
            e.color = i % 3 == 0 ? 256 : 1 + i % 7;
            double x = este(azar), y = norte(azar), z = cota(azar);
            for (int k = 0; k < 12; k += 3)
            {
                e.c[k] = x;
                e.c[k + 1] = y;
                e.c[k + 2] = z;
                x += paso(azar);
                y += paso(azar);
                z += paso(azar) * 0.1;
            }
            if (e.tipo == tipo_e::kTexto)
            {
                e.texto = "P" + std::to_string(i) + " cota";
            }
        }
        return v;
    }();
    return entidades;
}

fs::path carpetaBench()
{
    static const fs::path carpeta = []
    {
        fs::path p =
            fs::temp_directory_path() / ("tarvelo_bench_dxf_" + std::to_string(::getpid()));
        fs::create_directories(p);
        return p;
    }();
    return carpeta;
}

void escribeNuestro(const std::string& ruta)
{
    cad::ExportaDXF dxf(ruta);
    for (const char* capa : kCapas)
    {
        dxf.nuevaCapa(capa, 3);
    }
    dxf.inicioEntidades();
    for (const EntidadBench& e : contenido())
    {
        dxf.setCapa(kCapas[e.capa]);
        switch (e.tipo)
        {
            case tipo_e::kLinea:
                dxf.linea(e.color, e.c[0], e.c[1], e.c[2], e.c[3], e.c[4], e.c[5]);
                break;
            case tipo_e::kPunto:
                dxf.punto(e.color, e.c[0], e.c[1], e.c[2]);
                break;
            case tipo_e::kPolilinea:
                dxf.inicioPolilinea(8, e.color);
                for (int k = 0; k < 12; k += 3)
                {
                    dxf.verticePolilinea(e.c[k], e.c[k + 1], e.c[k + 2]);
                }
                dxf.finPolilinea();
                break;
            case tipo_e::kTexto:
                dxf.texto(e.texto, 0, e.c[0], e.c[1], e.c[2], 0.5, 30.0);
                break;
        }
    }
    dxf.finEntidades();
    if (!dxf.termina())
    {
        std::fprintf(stderr, "ExportaDXF: %s\n", dxf.mensaje().c_str());
        std::abort();
    }
}

void escribeDxflib(const std::string& ruta)
{
    DL_Dxf dxf;
    DL_WriterA* dw = dxf.out(ruta.c_str(), DL_Codes::AC1009);
    dxf.writeHeader(*dw);
    dw->sectionEnd();
    dw->sectionTables();
    dw->tableLayers(5);
    dxf.writeLayer(*dw, DL_LayerData("0", 0),
                   DL_Attributes("", DL_Codes::white, 100, "CONTINUOUS", 1.0));
    for (const char* capa : kCapas)
    {
        dxf.writeLayer(*dw, DL_LayerData(capa, 0),
                       DL_Attributes("", DL_Codes::green, 100, "CONTINUOUS", 1.0));
    }
    dw->tableEnd();
    dw->sectionEnd();
    dw->sectionEntities();
    for (const EntidadBench& e : contenido())
    {
        const DL_Attributes a(kCapas[e.capa], e.color, -1, "BYLAYER", 1.0);
        switch (e.tipo)
        {
            case tipo_e::kLinea:
                dxf.writeLine(*dw, DL_LineData(e.c[0], e.c[1], e.c[2], e.c[3], e.c[4], e.c[5]), a);
                break;
            case tipo_e::kPunto:
                dxf.writePoint(*dw, DL_PointData(e.c[0], e.c[1], e.c[2]), a);
                break;
            case tipo_e::kPolilinea:
                dxf.writePolyline(*dw, DL_PolylineData(4, 0, 0, 8), a);
                for (int k = 0; k < 12; k += 3)
                {
                    dxf.writeVertex(*dw, DL_VertexData(e.c[k], e.c[k + 1], e.c[k + 2]));
                }
                dxf.writePolylineEnd(*dw);
                break;
            case tipo_e::kTexto:
                dxf.writeText(*dw,
                              DL_TextData(e.c[0], e.c[1], e.c[2], e.c[0], e.c[1], e.c[2], 0.5, 1.0,
                                          0, 0, 0, e.texto, "STANDARD", 30.0),
                              a);
                break;
        }
    }
    dw->sectionEnd();
    dw->dxfEOF();
    dw->close();
    delete dw;
}

template <typename Escritor>
void midaEscritura(benchmark::State& state, Escritor escribe, const char* nombre)
{
    contenido();
    const std::string ruta = (carpetaBench() / nombre).string();
    for (auto _ : state)
    {
        escribe(ruta);
    }
    const auto bytes = static_cast<int64_t>(fs::file_size(ruta));
    state.SetBytesProcessed(state.iterations() * bytes);
    state.counters["entidades/s"] = benchmark::Counter(
        static_cast<double>(kEntidades) * static_cast<double>(state.iterations()),
        benchmark::Counter::kIsRate);
    state.counters["MB_fichero"] = static_cast<double>(bytes) / 1e6;
}

void BM_EscrituraExportaDXF(benchmark::State& state)
{
    midaEscritura(state, escribeNuestro, "nuestro.dxf");
}
BENCHMARK(BM_EscrituraExportaDXF)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_EscrituraDxflib(benchmark::State& state)
{
    midaEscritura(state, escribeDxflib, "dxflib.dxf");
}
BENCHMARK(BM_EscrituraDxflib)->Unit(benchmark::kMillisecond)->UseRealTime();

// dxflib's reader with a receiver that only counts, so that the parse alone is measured.
class Contador : public DL_CreationAdapter
{
public:
    void addLayer(const DL_LayerData&) override { ++n; }
    void addPoint(const DL_PointData&) override { ++n; }
    void addLine(const DL_LineData&) override { ++n; }
    void addPolyline(const DL_PolylineData&) override { ++n; }
    void addVertex(const DL_VertexData&) override { ++n; }
    void add3dFace(const DL_3dFaceData&) override { ++n; }
    void addText(const DL_TextData&) override { ++n; }
    void addArc(const DL_ArcData&) override { ++n; }
    void addCircle(const DL_CircleData&) override { ++n; }
    void addInsert(const DL_InsertData&) override { ++n; }
    int64_t n = 0;
};

int64_t leeDxflib(const std::string& ruta)
{
    Contador contador;
    DL_Dxf dxf;
    if (!dxf.in(ruta, &contador))
    {
        std::fprintf(stderr, "dxflib cannot read %s\n", ruta.c_str());
        std::abort();
    }
    return contador.n;
}

// ---- Our reader -----------------------------------------------------------------------
// The import of a whole file into a new drawing, as `tarvelo importa` does it; returns the
// entities that came in.
int64_t leeNuestro(const std::string& ruta)
{
    cad::Dibujo d;
    d.nuevoDocumento();
    d.importaDocumentoDFX(ruta);
    return static_cast<int64_t>(d.entidades.size());
}
// ----------------------------------------------------------------------------------------

const std::string& sintetico()
{
    static const std::string ruta = []
    {
        const std::string r = (carpetaBench() / "sintetico.dxf").string();
        escribeNuestro(r);
        return r;
    }();
    return ruta;
}

fs::path datosDXF()
{
    const char* entorno = std::getenv("CAD_DATOS_DXF");
    if (entorno != nullptr && *entorno != '\0')
    {
        return entorno;
    }
    return fs::path(__FILE__).parent_path() / ".." / ".." / "shared" / "datos" / "dxf";
}

std::string rutaDeCaso(int caso)
{
    switch (caso)
    {
        case 0:
            return sintetico();
        case 1:
            return (datosDXF() / "ezdxf" / "4_world.dxf").string();
        case 2:
            return (datosDXF() / "ezdxf" / "usa.dxf").string();
        default:
            return (datosDXF() / "dxfparser" / "blocks.dxf").string();
    }
}

const char* const kNombresCaso[] = {"sintetico_200k", "4_world", "usa", "blocks"};

// `cuenta` names what the reader's count is: dxflib's records handed over (layers, entities,
// vertices), or the entities that entered our drawing (texts, arcs and circles are dropped).
template <typename Lector>
void midaLectura(benchmark::State& state, Lector lee, const char* cuenta)
{
    const std::string ruta = rutaDeCaso(static_cast<int>(state.range(0)));
    if (!fs::exists(ruta))
    {
        state.SkipWithError(("missing " + ruta).c_str());
        return;
    }
    state.SetLabel(kNombresCaso[state.range(0)]);
    int64_t n = 0;
    for (auto _ : state)
    {
        n = lee(ruta);
        benchmark::DoNotOptimize(n);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(fs::file_size(ruta)));
    state.counters[cuenta] = static_cast<double>(n);
}

void BM_LecturaDxflib(benchmark::State& state)
{
    midaLectura(state, leeDxflib, "registros");
}
BENCHMARK(BM_LecturaDxflib)->DenseRange(0, 3)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_LecturaNuestra(benchmark::State& state)
{
    midaLectura(state, leeNuestro, "entidades");
}
BENCHMARK(BM_LecturaNuestra)->DenseRange(0, 3)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::error_code error;
    fs::remove_all(carpetaBench(), error);
    return 0;
}
