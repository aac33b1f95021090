// Tests of the process-wide display settings: defaults, copies and the singleton.
#include "base/Configuracion.h"

#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace cad
{
namespace
{

using C = Configuracion;

// Scenario: several threads ask for the singleton at once; first in this file so that, in a
// run of this binary alone, it is the object's first use.
// Invariant: all of them get the same object.
TEST(ConfiguracionTest, InstanciaUnicaDesdeVariosHilos)
{
    std::vector<const C*> vistos(8, nullptr);
    std::vector<std::thread> hilos;
    for (const C*& visto : vistos)
    {
        hilos.emplace_back([&visto] { visto = &C::instancia(); });
    }
    for (std::thread& h : hilos)
    {
        h.join();
    }
    for (const C* visto : vistos)
    {
        EXPECT_EQ(visto, &C::instancia());
    }
}

// Scenario: every row of a configuration put back to its defaults.
// Invariant: palette rows carry their index, alpha 255 and the palette bytes; the background
// is the true colour red 0, green 0, blue 75, alpha 255 (index 512); limits 10 and 4000000.
TEST(ConfiguracionTest, DefectosDeCadaFila)
{
    C& cfg = C::instancia();
    cfg.restableceDefectos();
    // {element, index, 0xRRGGBB}
    const int filas[][3] = {
        {C::kPuntosCalientes, 4, 0x00FFFF},  {C::kAristasCalientes, 5, 0x0000FF},
        {C::kCarasCalientes, 5, 0x0000FF},   {C::kVectoresCalientes, 5, 0x0000FF},
        {C::kAzimutsCalientes, 6, 0xFF00FF}, {C::kSeleccionado, 2, 0xFFFF00},
        {C::kCursor, 3, 0x00FF00},           {C::kLineaElastica, 3, 0x00FF00},
        {C::kFondo, 512, 0x00004B},          {C::kSeleccionNube, 6, 0xFF00FF},
        {C::kMarcaReferencia, 3, 0x00FF00}};
    for (const auto& f : filas)
    {
        const Color c = cfg.color(static_cast<C::color_elemento>(f[0]));
        EXPECT_EQ(c.colorCAD, f[1]) << "row " << f[0];
        EXPECT_EQ(c.ABGR(), 0xFF000000u | (f[2] & 0xFF) << 16 | (f[2] & 0xFF00) | f[2] >> 16)
            << "row " << f[0];
    }
    EXPECT_EQ(cfg.valor(C::kVentanaReferencia), 10);
    EXPECT_EQ(cfg.valor(C::kNumeroPuntosVisibles), 4000000);
    EXPECT_EQ(cfg.valorFlotante(C::kFactorFlotante), 4.0);
}

// Scenario: a true colour is stored, the copy read back is altered, then defaults restored;
// host element numbers outside the tables are used as well.
// Invariant: index and bytes are copied in and handed out by value; restableceDefectos
// undoes every change; out-of-table elements read as Color() or 0 and write nothing.
TEST(ConfiguracionTest, CopiasRestablecerYFueraDeTabla)
{
    C& cfg = C::instancia();
    Color verdadero;
    verdadero.setABGR(0x80302010u);
    cfg.setColor(C::kCursor, verdadero);
    cfg.setValorFlotante(C::kFactorFlotante, 0.5);
    Color leido = cfg.color(C::kCursor);
    EXPECT_EQ(leido.colorCAD, 512);
    EXPECT_EQ(leido.ABGR(), 0x80302010u);
    leido.setIndiceColor(1);
    EXPECT_EQ(cfg.color(C::kCursor).ABGR(), 0x80302010u);

    const auto fuera = static_cast<C::color_elemento>(C::kNumeroColores);
    cfg.setColor(fuera, Color(1));
    EXPECT_EQ(cfg.color(fuera).colorCAD, 7);
    EXPECT_EQ(cfg.valor(static_cast<C::valor_elemento>(-1)), 0);

    cfg.restableceDefectos();
    EXPECT_EQ(cfg.color(C::kCursor).colorCAD, 3);
    EXPECT_EQ(cfg.valorFlotante(C::kFactorFlotante), 4.0);
}

}  // namespace
}  // namespace cad
