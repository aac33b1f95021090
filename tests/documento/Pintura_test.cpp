// The paint loop as the display sees it: the two passes, their line patterns and widths,
// hot points of highlighted entities, and the entities it skips.
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "documento/Dibujo.h"
#include "entidades/Linea.h"
#include "entidades/Punto.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::Capa;
using cad::ColorCapa;
using cad::Dibujo;
using cad::Punto3;
using cad::prueba::PantallaGrabadora;
using Lineas = std::vector<std::string>;

std::vector<std::string> palabras(const std::string& l)
{
    std::istringstream in(l);
    std::vector<std::string> r;
    for (std::string w; in >> w;)
    {
        r.push_back(w);
    }
    return r;
}

// The calls that tell the passes apart, without colours: patterns, widths, points with their
// pick, lines with their pick, and markers.
Lineas traza(const PantallaGrabadora& p)
{
    Lineas r;
    for (const std::string& l : p.llamadas)
    {
        const auto w = palabras(l);
        if (w[0] == "setModoLinea" || w[0] == "setGrosor")
        {
            r.push_back(l);
        }
        else if (w[0] == "dibujaPunto")
        {
            r.push_back(w[0] + " " + w[1] + " " + w.back());
        }
        else if (w[0] == "dibujaLinea")
        {
            r.push_back(w[0] + " " + w[1] + " " + w[2] + " " + w.back());
        }
        else if (w[0] == "dibujaMarca")
        {
            r.push_back(w[0] + " " + w[1]);
        }
    }
    return r;
}

// From FFFF, the first pass sets each visible entity's pattern and width (its layer's when by
// layer), paints the unmarked ones and a highlighted one's hot points; after AAAA the second
// sets widths only and paints selected and highlighted ones (hot points and edge again); FFFF
// ends it. An entity on a hidden layer, or by layer with no layer bound, sends nothing.
TEST(PinturaPasadas, ordenDeLasDosPasadas)
{
    Dibujo d;  // layer "0" dashes F0F0 at width 2, and a hidden layer
    d.nuevoDocumento();
    d.capaActual()->estiloLinea.patron = 0xF0F0;
    d.capaActual()->estiloLinea.grosor = 2.0;
    d.nuevaCapa(new Capa("Oculta", ColorCapa(3), 0));
    d.nuevaEntidad(new cad::Punto(1, 0, 0));
    auto* elegido = new cad::Punto(2, 0, 0);
    d.nuevaEntidad(elegido);
    elegido->setSeleccionada(true);
    auto* linea = new cad::Linea(Punto3<double>(0, 0, 0), Punto3<double>(3, 0, 0));
    linea->estiloLinea.porCapa = false;
    linea->estiloLinea.patron = 0x1C1C;
    linea->estiloLinea.grosor = 4.0;
    d.nuevaEntidad(linea);
    linea->setResaltada(true);
    auto* oculto = new cad::Punto(9, 9, 9);
    oculto->asignaCapa(d.buscaCapa("Oculta"));
    d.nuevaEntidad(oculto);
    auto* propio = new cad::Punto(4, 0, 0);
    propio->estiloLinea.porCapa = false;
    propio->estiloLinea.patron = 0x00FF;
    propio->estiloLinea.grosor = 0.5;
    d.nuevaEntidad(propio);
    auto* huerfano = new cad::Punto(5, 0, 0);
    d.nuevaEntidad(huerfano);
    huerfano->capa.objeto = nullptr;

    PantallaGrabadora p;
    ASSERT_TRUE(d.dibuja(p));
    // clang-format off
    const Lineas esperado = {
        "setModoLinea FFFF",
        "setModoLinea F0F0", "setGrosor 2", "dibujaPunto (1,0,0) pick",
        "setModoLinea F0F0", "setGrosor 2",
        "setModoLinea 1C1C", "setGrosor 4", "dibujaMarca (0,0,0)", "dibujaMarca (3,0,0)",
        "setModoLinea 00FF", "setGrosor 0.5", "dibujaPunto (4,0,0) pick",
        "setModoLinea AAAA",
        "setGrosor 2",
        "setGrosor 2", "dibujaPunto (2,0,0) pick",
        "setGrosor 4", "dibujaLinea (0,0,0) (3,0,0) pick", "dibujaMarca (0,0,0)",
            "dibujaMarca (3,0,0)", "dibujaLinea (0,0,0) (3,0,0) null",
        "setGrosor 0.5",
        "setModoLinea FFFF"};
    // clang-format on
    EXPECT_EQ(traza(p), esperado);
}

}  // namespace
