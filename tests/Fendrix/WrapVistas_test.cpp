// The facade's layer queries, selections, local systems, measure and view forwarders over one
// known drawing, seen from above on a reference display: pixel (x, y) shows (x, y, 0).
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Fendrix/WrapDibujoCAD.h"
#include "Fendrix/WrapPantallaCAD.h"
#include "PantallaReferencia.h"
#include "documento/Dibujo.h"
#include "documento/Vista.h"
#include "entidades/Plano.h"
#include "entidades/Texto.h"
#include "soporte/GuionSesion.h"

namespace
{

using cad::Punto3;
using Fendrix::WrapDibujoCAD;
using Tipo = WrapDibujoCAD::tipoActualizacion;
using V = std::vector<double>;

// Layer "A" (colour 10, 20, 30) holds a line by layer, a red line, an open polyline, one
// flagged closed, one closed by its ends, a polygon, a text and a control point; layer "B" a
// line and a second control point.
struct DibujoConocido
{
    cad::PantallaReferencia pantalla;
    Fendrix::WrapPantallaCAD wp;
    WrapDibujoCAD w{nullptr, [this](Tipo t) { avisos.push_back(t); }};
    std::vector<Tipo> avisos;
    std::vector<std::string> textos;
    int64_t lineaA, lineaRoja, abierta, cerrada, extremos, poligono, texto, control, control2;

    DibujoConocido()
    {
        w.nuevoDocumento();
        cad::Vista* v = w.mDibujo->vistaActual;
        pantalla.grabando = false;
        pantalla.setCamara(Punto3<double>(400, 300, 100), Punto3<double>(400, 300, 0),
                           cad::Vector3D<double>(0, 1, 0), 1.0, 0.0);
        v->posicion = Punto3<double>(400, 300, 100);
        v->objetivo = Punto3<double>(400, 300, 0);
        wp.setPantalla(&pantalla);
        w.setPantalla(&wp);
        w.setSalidaTexto([this](const std::string& t) { textos.push_back(t); });
        w.nuevaCapa("B", false);
        w.nuevaCapa("A", true);
        w.colorCapa("A", 10, 20, 30);
        lineaA = w.nuevaLinea(100, 300, 0, 300, 300, 0);
        w.setColorActualRGB(255, 0, 0);
        lineaRoja = w.nuevaLinea(100, 400, 0, 300, 400, 5);
        w.setColorActualIndice(256);
        const double xyz[] = {100, 100, 0, 200, 100, 0, 200, 200, 0};
        abierta = w.nuevaPolilinea(3, xyz);
        cerrada = w.nuevaPolilinea3D({400, 100, 0, 450, 100, 0, 450, 150, 0}, true);
        extremos = w.nuevaPolilinea3D({600, 100, 0, 650, 100, 0, 650, 150, 0, 600, 100, 0}, false);
        poligono = w.nuevoPoligono({400, 500, 0, 450, 500, 0, 450, 550, 0});
        texto =
            w.nuevoTexto("t", 10, 10, 0, WrapDibujoCAD::alineacionTexto::kAlineacionInfIzq, 1, 0);
        control = w.nuevoPuntoControl("PC1", "base", 1, 2, 3);
        w.capaActual("B");
        w.nuevaLinea(500, 300, 0, 700, 300, 0);
        control2 = w.nuevoPuntoControl("PC2", "", 4, 5, 6);
    }
    uint32_t estado(int64_t h) { return w.mDibujo->buscaEntidad(h)->estado; }
};

// Lines of one layer with the colour they are drawn in; control points; closed polylines
// selected (the polygon and the open one are not); polylines copied layer to layer.
TEST(WrapVistas, consultasDeCapaYSeleccionDeCerradas)
{
    DibujoConocido d;
    V c;
    std::vector<uint32_t> colores;
    ASSERT_EQ(d.w.getLineasCapa("A", c, colores), 2);
    EXPECT_EQ(c, V({100, 300, 0, 300, 300, 0, 100, 400, 0, 300, 400, 5}));
    EXPECT_EQ(colores, std::vector<uint32_t>({0xFF1E140AU, 0xFF0000FFU}));
    EXPECT_EQ(d.w.getLineasCapa("nada", c, colores), 0);
    EXPECT_TRUE(c.empty() && colores.empty());

    std::vector<int64_t> hs;
    std::vector<std::string> nombres;
    ASSERT_EQ(d.w.getPuntosControl(hs, nombres, c), 2);
    EXPECT_EQ(hs, std::vector<int64_t>({d.control, d.control2}));
    EXPECT_EQ(nombres, std::vector<std::string>({"PC1", "PC2"}));
    EXPECT_EQ(c, V({1, 2, 3, 4, 5, 6}));
    std::string nombre = "?";
    std::string codigo = "?";
    double x = 0, y = 0, z = 0;
    ASSERT_TRUE(d.w.getPuntoControl(d.control, nombre, codigo, x, y, z));
    EXPECT_EQ(nombre + codigo, "PC1base");
    EXPECT_EQ(V({x, y, z}), V({1, 2, 3}));
    EXPECT_FALSE(d.w.getPuntoControl(d.lineaA, nombre, codigo, x, y, z));
    EXPECT_FALSE(d.w.getPuntoControl(d.control + 8, nombre, codigo, x, y, z));
    EXPECT_EQ(nombre, "PC1");

    ASSERT_EQ(d.w.seleccionaPolilineasCerradas(hs), 2);
    EXPECT_EQ(hs, std::vector<int64_t>({d.cerrada, d.extremos}));
    std::vector<int64_t> sel;
    d.w.getEntidadesSeleccionadas(sel);
    EXPECT_EQ(sel, hs);

    // Three polylines of A go to B, unselected, with their vertices; the polygon stays.
    std::vector<int64_t> antes;
    d.w.getEntidades(antes);
    EXPECT_EQ(d.w.copiarPolilineasCapa("A", "nada"), 0);
    ASSERT_EQ(d.w.copiarPolilineasCapa("A", "B"), 3);
    std::vector<int64_t> despues;
    ASSERT_EQ(d.w.getEntidades(despues), static_cast<int32_t>(antes.size()) + 3);
    V original, copia;
    d.w.getVertices(d.extremos, original);
    d.w.getVertices(despues.back(), copia);
    EXPECT_EQ(copia, original);
    EXPECT_TRUE(d.w.getNombreCapa(despues.back(), nombre));
    EXPECT_EQ(nombre, "B");
    d.w.getEntidadesSeleccionadas(sel);
    EXPECT_EQ(sel, hs);
    d.w.deshacer();
    EXPECT_EQ(d.w.getEntidades(despues), static_cast<int32_t>(antes.size()) + 2);
}

// Vertices of kind 1 only, mesh figures of a solid, the vertex under the cursor, texts
// hidden by layer and a text put on an entity. Bad handles answer their failure.
TEST(WrapVistas, verticesMallasCursorYTextos)
{
    DibujoConocido d;
    V c;
    EXPECT_EQ(d.w.getSoloVertices(d.abierta, c), 9);
    EXPECT_EQ(c, V({100, 100, 0, 200, 100, 0, 200, 200, 0}));
    const Punto3<double> esquinas[] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    const int64_t plano = d.w.insertaEntidadGetHandle(new cad::Plano(3, esquinas));
    EXPECT_EQ(d.w.getVertices(plano, c), 9);
    EXPECT_EQ(d.w.getSoloVertices(plano, c), 0);
    EXPECT_EQ(d.w.getSoloVertices(plano + 8, c), 0);

    const double caja[] = {0, 0, 0, 2, 2, 2};
    const int64_t cubo = d.w.nuevoCubo(caja);
    double area = -1;
    int32_t v = -1, f = -1, a = -1, m = -1;
    ASSERT_TRUE(d.w.propiedadesSuperficie(cubo, area, v, f, a, m));
    EXPECT_DOUBLE_EQ(area, 24.0);
    EXPECT_EQ(std::vector<int32_t>({v, f, a, m}), std::vector<int32_t>({8, 6, 12, 1}));
    EXPECT_FALSE(d.w.propiedadesSuperficie(d.lineaA, area, v, f, a, m));
    EXPECT_FALSE(d.w.propiedadesSuperficie(0, area, v, f, a, m));
    EXPECT_EQ(v, 8);

    d.pantalla.setPosicionCursor(195, 190);
    EXPECT_EQ(d.w.indiceMasCercanoCursor(d.abierta), 2);
    d.pantalla.setPosicionCursor(105, 98);
    EXPECT_EQ(d.w.indiceMasCercanoCursor(d.abierta), 0);
    EXPECT_EQ(d.w.indiceMasCercanoCursor(d.abierta + 8), -1);

    EXPECT_TRUE(d.w.visibilidadTextosCapa("A", false));
    EXPECT_EQ(d.estado(d.texto) & 4U, 4U);
    EXPECT_EQ(d.estado(d.control) & 4U, 4U);
    EXPECT_EQ(d.estado(d.control2) & 4U, 0U);  // on B
    EXPECT_TRUE(d.w.visibilidadTextosCapa("A", true));
    EXPECT_EQ(d.estado(d.texto) & 4U, 0U);
    EXPECT_FALSE(d.w.visibilidadTextosCapa("nada", false));

    const int64_t t = d.w.textoEnEntidad(d.lineaRoja, 2.5, "L");
    ASSERT_NE(t, 0);
    const auto* texto = dynamic_cast<const cad::Texto*>(d.w.mDibujo->buscaEntidad(t));
    ASSERT_NE(texto, nullptr);
    EXPECT_EQ(texto->texto, "L");
    EXPECT_EQ(V({texto->x, texto->y, texto->z}), V({200, 400, -5}));
    EXPECT_EQ(d.w.textoEnEntidad(d.lineaRoja + 8, 2.5, "L"), 0);
    EXPECT_EQ(d.w.textoEnEntidad(d.lineaRoja, 0.0, "L"), 0);
}

// Scripted picks and points through the editor, the local-system round, the zoom notice, and
// a disposed facade answering every new operation with its failure.
TEST(WrapVistas, esperasSistemasLocalesYFachadaLiberada)
{
    DibujoConocido d;
    d.w.dibuja(&d.wp);
    int64_t h = -1;
    {
        cad::prueba::GuionSesion g(*d.w.mEditor, d.pantalla);
        g.clic(200, 300).clic(200, 300).clic(200, 300);
        ASSERT_TRUE(d.w.seleccionaEntidad("Elija:", h));
        EXPECT_EQ(h, d.lineaA);
        EXPECT_FALSE(d.w.seleccionaEntidad("Elija:", "Pn1", h));
        EXPECT_EQ(h, 0);
        EXPECT_TRUE(d.w.seleccionaEntidad("Elija:", "Linea", h));
        EXPECT_EQ(h, d.lineaA);
    }
    double p[8] = {};
    {
        cad::prueba::GuionSesion g(*d.w.mEditor, d.pantalla);
        g.escribe("1,2,3").escribe("4,6,3");
        ASSERT_TRUE(d.w.comandoPidePuntosPerfilRapido(p[0], p[1], p[2], p[3], p[4], p[5]));
        EXPECT_EQ(V(p, p + 6), V({1, 2, 3, 4, 6, 3}));
        g.escribe("0,0,0").escribe("3,4,12");
        ASSERT_TRUE(
            d.w.comandoDistanciaConSnap(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7], false));
        EXPECT_EQ(V(p, p + 8), V({0, 0, 0, 3, 4, 12, 13, 5}));
    }
    EXPECT_NE(
        std::find(d.textos.begin(), d.textos.end(), "Seleccione el punto final del perfil rapido:"),
        d.textos.end());

    d.w.nuevoSistemaLocal("S1", {1, 2, 3}, {0, 1, 0}, {-1, 0, 0}, {0, 0, 1});
    EXPECT_FALSE(d.w.activaSistemaLocal("S2"));
    ASSERT_TRUE(d.w.activaSistemaLocal("S1"));
    std::string nombre;
    V o, x, y, z;
    ASSERT_TRUE(d.w.sistemaLocalActual(nombre, o, x, y, z));
    EXPECT_EQ(nombre, "S1");
    EXPECT_EQ(o, V({1, 2, 3}));
    EXPECT_EQ(y, V({-1, 0, 0}));
    d.w.quitaSistemaLocal();
    EXPECT_FALSE(d.w.sistemaLocalActual(nombre, o, x, y, z));
    EXPECT_EQ(o, V({0, 0, 0}));
    EXPECT_EQ(x, V({1, 0, 0}));

    // The editor's own notices silenced: what the host hears is the facade's.
    d.w.mEditor->funcionActualiza = nullptr;
    d.avisos.clear();
    // A handle that names nothing moves nothing, and the host is told all the same.
    EXPECT_TRUE(d.w.comandoZoomExtension(d.lineaA + 8));
    EXPECT_EQ(d.avisos, std::vector<Tipo>({Tipo::kControl}));
    EXPECT_TRUE(d.w.comandoZoomExtension(d.lineaA));
    EXPECT_EQ(d.avisos, std::vector<Tipo>({Tipo::kControl, Tipo::kControl}));

    d.w.Dispose();
    std::vector<int64_t> hs;
    std::vector<std::string> ns;
    std::vector<uint32_t> cs;
    double area = 0;
    int32_t n = 0;
    EXPECT_FALSE(d.w.seleccionaEntidad("", h) | d.w.seleccionaEntidad("", "Pn1", h) |
                 d.w.activaSistemaLocal("S1") | d.w.sistemaLocalActual(nombre, o, x, y, z) |
                 d.w.visibilidadTextosCapa("A", true) | d.w.comandoZoomExtension() |
                 d.w.comandoZoomExtension(d.lineaA) | d.w.comandoAngulo() |
                 d.w.comandoPidePuntosPerfilRapido(p[0], p[1], p[2], p[3], p[4], p[5]) |
                 d.w.propiedadesSuperficie(d.lineaA, area, n, n, n, n) |
                 d.w.getPuntoControl(d.control, nombre, nombre, p[0], p[1], p[2]) |
                 d.w.comandoEncuadre() | d.w.comandoRotacion() | d.w.comandoZoomVentana() |
                 d.w.comandoPlanoReferencia() | d.w.comandoCentroRotacion() |
                 d.w.comandoSistemaLocal("S") | d.w.comandoPosicionCamara() |
                 d.w.comandoInterseccionPlanos());
    EXPECT_EQ(d.w.getLineasCapa("A", o, cs) + d.w.getPuntosControl(hs, ns, o) +
                  d.w.seleccionaPolilineasCerradas(hs) + d.w.copiarPolilineasCapa("A", "B") +
                  d.w.getSoloVertices(d.abierta, o) + d.w.textoEnEntidad(d.lineaA, 1, "x"),
              0);
    EXPECT_EQ(d.w.indiceMasCercanoCursor(d.abierta), -1);
    EXPECT_EQ(d.w.comandoDistancia() + d.w.comandoArea() + d.w.comandoDistanciaPolilinea(), 0.0);
    d.w.quitaSistemaLocal();
    d.w.zoomEscala(2);
    d.w.zoomVentana(1, 2, 3, 4);
    d.w.zoomVentana(0.0, 1.0, 0.0, 1.0, 0.0, 1.0);
}

}  // namespace
