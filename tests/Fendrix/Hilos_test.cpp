// Separate drawings on separate threads: each thread drives its own facade, editor and display
// through the process-wide state (settings, message table, selection record), saves, reads
// back and exports. Meant to run under the sanitizers, ThreadSanitizer included.
#include <cstdint>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "Fendrix/WrapDibujoCAD.h"
#include "Fendrix/WrapPantallaCAD.h"
#include "PantallaReferencia.h"
#include "base/ColaMensajes.h"
#include "base/GestorMensajes.h"
#include "soporte/FicheroTemporal.h"

namespace
{

using Fendrix::WrapDibujoCAD;

constexpr int kHilos = 4;
constexpr int kRondas = 3;
constexpr int kPuntos = 60;

// One round of one thread; what went wrong is appended to `fallos`.
void ronda(int hilo, int numero, std::vector<std::string>& fallos)
{
    const auto falla = [&](const std::string& que)
    {
        fallos.push_back("hilo " + std::to_string(hilo) + " ronda " + std::to_string(numero) +
                         ": " + que);
    };
    const std::string prefijo = "h" + std::to_string(hilo) + "r" + std::to_string(numero);
    const double base = 1000.0 * hilo + 10.0 * numero;

    cad::PantallaReferencia pantalla;
    pantalla.grabando = false;
    Fendrix::WrapPantallaCAD envoltorio;
    envoltorio.setPantalla(&pantalla);
    int avisos = 0;
    WrapDibujoCAD w(nullptr, [&avisos](WrapDibujoCAD::tipoActualizacion) { ++avisos; });
    w.nuevoDocumento();
    w.setPantalla(&envoltorio);
    std::vector<std::string> textos;
    w.setSalidaTexto([&textos](const std::string& t) { textos.push_back(t); });

    // Layers, then points, lines and texts spread over them.
    for (int c = 0; c < 3; ++c)
    {
        if (!w.nuevaCapa(prefijo + "-" + std::to_string(c), false))
        {
            falla("layer refused");
        }
    }
    const auto alin = WrapDibujoCAD::alineacionTexto::kAlineacionInfIzq;
    for (int i = 0; i < kPuntos; ++i)
    {
        w.capaActual(prefijo + "-" + std::to_string(i % 3));
        const double x = base + i;
        w.nuevoPunto(x, 2.0 * i, 0.5 * numero);
        if (i % 4 == 0)
        {
            w.nuevaLinea(x, 0.0, 0.0, x + 1.0, 1.0, 2.0);
        }
        if (i % 10 == 0)
        {
            w.nuevoTexto(prefijo + " " + std::to_string(i), x, 3.0, 0.0, alin, 1.0, 0.0);
        }
    }
    // The point command, answered through this thread's queue: it prompts through the message
    // table. A wait that finds no input cancels rather than hangs.
    cad::ColaMensajes& cola = cad::ColaMensajes::delHilo();
    cola.setAlVaciarse([&]() { cola.publica([&]() { w.cancelaComando(); }); });
    for (int i = 0; i < 3; ++i)
    {
        const std::string linea = std::to_string(base + 0.25 * i) + ",7";
        cola.publica([&w, linea]() { w.introPulsado(linea); });
    }
    cola.publica([&w]() { w.introPulsado(""); });
    if (w.comandoPunto() != 3)
    {
        falla("the point command did not take its three points");
    }
    cola.setAlVaciarse(nullptr);
    cad::GestorMensajes::Instancia().mensaje(900 + hilo, numero, "texto de prueba");

    // The selection record and the settings, both process-wide.
    std::vector<int64_t> handles;
    w.getEntidades(handles);
    for (size_t i = 0; i < handles.size(); i += 7)
    {
        w.seleccionaEntidad(handles[i]);
    }
    w.dibujoActivo(true);
    w.dibuja(&envoltorio);
    w.deselecciona();
    const int32_t ventana =
        w.getValorConfiguracion(WrapDibujoCAD::valorElemento::kVentanaReferencia);
    w.setValorConfiguracion(WrapDibujoCAD::valorElemento::kVentanaReferencia, ventana);
    int32_t r = 0;
    int32_t g = 0;
    int32_t b = 0;
    w.getColorConfiguracion(WrapDibujoCAD::colorElemento::kFondo, r, g, b);

    // Save, read back into a second drawing, compare entity by entity.
    const std::string ruta = cad::prueba::rutaTemporal(prefijo + ".tcad");
    w.guarda(ruta);
    WrapDibujoCAD leido(nullptr, nullptr);
    leido.nuevoDocumento();
    if (!leido.lee(ruta))
    {
        falla("the saved drawing did not read");
        return;
    }
    std::vector<int64_t> otros;
    leido.getEntidades(otros);
    if (otros.size() != handles.size() || leido.numeroCapas() != w.numeroCapas())
    {
        falla("counts differ after the read");
        return;
    }
    for (size_t i = 0; i < handles.size(); ++i)
    {
        std::vector<double> a;
        std::vector<double> c;
        std::string capaA;
        std::string capaC;
        w.getVertices(handles[i], a);
        leido.getVertices(otros[i], c);
        w.getNombreCapa(handles[i], capaA);
        leido.getNombreCapa(otros[i], capaC);
        if (a != c || capaA != capaC)
        {
            falla("entity " + std::to_string(i) + " differs after the read");
        }
    }

    const std::string dxf = cad::prueba::rutaTemporal(prefijo + ".dxf");
    if (!w.exportaDXF(dxf))
    {
        falla("the DXF export failed");
    }
    std::ifstream f(dxf);
    std::stringstream contenido;
    contenido << f.rdbuf();
    if (contenido.str().find(prefijo + "-2") == std::string::npos)
    {
        falla("the DXF lacks the thread's layer");
    }
}

// Four threads, each with its own drawings, three rounds each, all at once. Each thread's
// drawings must come back from their files as they were saved; the sanitizers check that the
// shared state is touched only under its locks. Notice counts are not compared: the selection
// record is one for the process, so whether a notice fires depends on the other threads.
TEST(Hilos, dibujosSeparadosEnHilosSeparados)
{
    std::vector<std::vector<std::string>> fallos(kHilos);
    std::vector<std::thread> hilos;
    for (int h = 0; h < kHilos; ++h)
    {
        hilos.emplace_back(
            [h, &fallos]()
            {
                for (int n = 0; n < kRondas; ++n)
                {
                    ronda(h, n, fallos[static_cast<size_t>(h)]);
                }
            });
    }
    for (std::thread& t : hilos)
    {
        t.join();
    }
    for (const auto& deUnHilo : fallos)
    {
        for (const std::string& f : deUnHilo)
        {
            ADD_FAILURE() << f;
        }
    }
}

}  // namespace
