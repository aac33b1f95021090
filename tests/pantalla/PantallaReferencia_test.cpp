// The reference display: projection, rays, the cursor and click queue, picking, zooms,
// retention and the recorded lines, alone and under a painting drawing.
#include "PantallaReferencia.h"

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "documento/Dibujo.h"
#include "entidades/Linea.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::cursor_t;
using cad::Linea3D;
using cad::PantallaReferencia;
using cad::Punto3;
using cad::Rect2;
using cad::Rect3;
using cad::Vector3D;
using Lineas = std::vector<std::string>;
using Picks = std::vector<void*>;
using P = Punto3<double>;

// The pixel rectangle of half-size h around (x, y), as the kernel builds its pick windows.
Rect2<int> ventana(int x, int y, int h)
{
    return {{x - h, y - h}, {x + h, y + h}};
}

Picks picksEn(PantallaReferencia& p, const Rect2<int>& r)
{
    static int resto;
    Picks picks{&resto};  // stale content must go
    p.entidadesEnRectangulo(r, false, picks);
    return picks;
}

void esperaPixel(PantallaReferencia& p, const P& q, double x, double y, double tolerancia = 1e-9)
{
    const cad::Punto2<double> s = p.proyecta(q);
    EXPECT_NEAR(s.x, x, tolerancia) << PantallaReferencia::texto(q);
    EXPECT_NEAR(s.y, y, tolerancia) << PantallaReferencia::texto(q);
}

// Position, direction and zoom as getCamara gives them.
std::tuple<P, Vector3D<double>, double> camara(PantallaReferencia& p)
{
    P pos;
    P obj;
    Vector3D<double> dir;
    Vector3D<double> up;
    double z = 0;
    double ang = 0;
    p.getCamara(pos, obj, dir, up, z, ang);
    return {pos, dir, z};
}

// Stand-ins for entities: only their addresses matter as pick values.
int uno;
int dos;
int tres;

// Plan view from above, zoom 2 on 800 x 600: a point 10 right and 5 up of the target lands
// on pixel (420, 310), so x grows right, y grows upwards and zoom is pixels per unit; depth
// does not move an orthographic point, and the kernel's formula over getProyeccion *
// getVista gives the same pixel. An "up" along the view falls back to +Y, so plan views keep
// +X right and +Y up; a viewport resize moves the centre pixel; a zoom not positive is 1.
TEST(PantallaReferenciaProyeccion, puntoConocidoAPixel)
{
    PantallaReferencia p;
    p.setCamara({0, 0, 10}, {0, 0, 0}, {0, 1, 0}, 2.0, 0.0);
    esperaPixel(p, {0, 0, 0}, 400, 300);
    esperaPixel(p, {10, 5, 0}, 420, 310);
    esperaPixel(p, {10, 5, -7}, 420, 310);
    esperaPixel(p, {-200, -150, 0}, 0, 0);
    cad::Matriz4<double> v;
    cad::Matriz4<double> pr;
    p.getVista(v);
    p.getProyeccion(pr);
    const P q = (pr * v) * P(10, 5, 0);
    EXPECT_NEAR((q.x * 0.5 + 0.5) * 800, 420, 1e-9);
    EXPECT_NEAR((q.y * 0.5 + 0.5) * 600, 310, 1e-9);
    EXPECT_TRUE(q.z >= -1.0 && q.z <= 1.0) << q.z;  // inside the clip cube the snap checks
    double pixel = 0;
    p.tamanoPixel(pixel);
    EXPECT_DOUBLE_EQ(pixel, 0.5);

    p.setCamara({0, 0, 1}, {0, 0, 0}, {0, 0, 1}, 1.0, 0.0);
    esperaPixel(p, {3, 4, 0}, 403, 304);
    p.setTamano(200, 100);
    p.setTamano(0, 50);  // ignored
    esperaPixel(p, {3, 4, 0}, 103, 54);
    p.setCamara({0, 0, 1}, {0, 0, 0}, {0, 1, 0}, -5.0, 0.0);
    esperaPixel(p, {3, 4, 0}, 103, 54);
}

// An oblique camera with Z up: getCamara and getNormalVista give the unit view direction,
// the target stays on the centre pixel while a point along the view direction shares its
// pixel, and a point above the target along Z appears above the centre.
TEST(PantallaReferenciaProyeccion, camaraOblicua)
{
    PantallaReferencia p;
    p.setCamara({10, -20, 30}, {1, 2, 3}, {0, 0, 1}, 4.0, 0.25);
    const Vector3D<double> dir = std::get<1>(camara(p));
    EXPECT_NEAR((dir - (P(1, 2, 3) - P(10, -20, 30)).unit()).modulo(), 0.0, 1e-15);
    Vector3D<double> normal;
    p.getNormalVista(normal);
    EXPECT_EQ(normal, dir);
    esperaPixel(p, {1, 2, 3}, 400, 300);
    esperaPixel(p, P(1, 2, 3) + dir * 17.0, 400, 300);
    EXPECT_GT(p.proyecta({1, 2, 4}).y, 300.0);
    EXPECT_NEAR(p.proyecta({1, 2, 4}).x, 400.0, 1e-9);
}

// The ray of a pixel starts `profundidad` behind the camera's plane, runs along the view,
// and every point on it projects back onto that pixel; this holds at survey coordinates
// too, where a loss of precision would show as a drift off the pixel.
TEST(PantallaReferenciaRayo, vuelveAlMismoPixel)
{
    PantallaReferencia p;
    p.profundidad = 100.0;
    p.setCamara({0, 0, 10}, {0, 0, 0}, {0, 1, 0}, 2.0, 0.0);
    P o;
    Vector3D<double> d;
    p.rayo(420, 310, o, d);
    EXPECT_NEAR(o.distancia({10, 5, 110}), 0.0, 1e-9);
    EXPECT_NEAR((d - Vector3D<double>(0, 0, -1)).modulo(), 0.0, 1e-12);

    PantallaReferencia s;
    const P centro{431250.0, 4581320.0, 250.0};
    s.setCamara(centro + Vector3D<double>(-300, -400, 500), centro, {0, 0, 1}, 3.0, 0.0);
    for (const auto& [x, y] : {std::pair{0, 0}, std::pair{400, 300}, std::pair{799, 17}})
    {
        s.rayo(x, y, o, d);
        EXPECT_NEAR(d.modulo(), 1.0, 1e-12);
        for (double t : {0.0, 1.0e6 - 40.0, 1.0e6 + 250.0})
        {
            esperaPixel(s, o + d * t, x, y, 1e-5);
        }
    }
}

// Moving the pointer gives the cursor its pixel and ray, the raw point on the target's plane
// straight under the pixel, and no snap. Clicks queue in order with their button, each with
// the cursor of its own pixel, and getEvento pops them until it answers false; the last click
// moved the pointer.
TEST(PantallaReferenciaEventos, clicEncoladoYLeido)
{
    PantallaReferencia p;
    p.setPosicionCursor(420, 310);
    cursor_t c;
    p.getCursor(c);
    EXPECT_EQ(std::pair(c.x, c.y), std::pair(420, 310));
    EXPECT_NEAR(c.posicion.x, 20.0, 1e-9);
    EXPECT_NEAR(c.posicion.y, 10.0, 1e-9);
    EXPECT_NEAR(c.plano.distancia({20, 10, 0}), 0.0, 1e-9);
    EXPECT_EQ(c.local, c.plano);
    EXPECT_EQ(c.referencia, cad::invalido);

    p.clic(401, 302);
    p.clic(390, 280, PantallaReferencia::kBotonDerecho);
    int estado = 0;
    ASSERT_TRUE(p.getEvento(c, estado));
    EXPECT_EQ(std::pair(estado, c.x), std::pair(1, 401));
    EXPECT_NEAR(c.posicion.y, 2.0, 1e-9);
    ASSERT_TRUE(p.getEvento(c, estado));
    EXPECT_EQ(std::pair(estado, c.y), std::pair(2, 280));
    EXPECT_NEAR(c.posicion.x, -10.0, 1e-9);
    EXPECT_FALSE(p.getEvento(c, estado));
    p.getCursor(c);
    EXPECT_EQ(c.x, 390);
    EXPECT_EQ(p.llamadasDe("getEvento").size(), 3U);
}

// Two lines ten pixels apart: a window around a pixel of one finds exactly that one, a
// window crossing both finds both in drawn order, and one between them finds nothing. The
// window crosses the lines far from their end points, so segment crossing is what counts.
TEST(PantallaReferenciaSeleccion, lineaBajoElPixelYNoSuVecina)
{
    PantallaReferencia p;
    p.dibujaLinea(Linea3D<double>(P(-100, 0, 0), P(100, 0, 0)), 0, &uno);
    p.dibujaLinea(Linea3D<double>(P(-100, 10, 0), P(100, 10, 0)), 0, &dos);
    EXPECT_EQ(picksEn(p, ventana(430, 300, 2)), Picks{&uno});
    EXPECT_EQ(picksEn(p, ventana(430, 310, 2)), Picks{&dos});
    EXPECT_EQ(picksEn(p, ventana(430, 305, 4)), Picks{});
    EXPECT_EQ(picksEn(p, ventana(430, 305, 5)), (Picks{&uno, &dos}));
    EXPECT_EQ(picksEn(p, ventana(600, 300, 50)), Picks{});               // past the end at 500
    EXPECT_EQ(picksEn(p, Rect2<int>({410, 310}, {400, 300})), Picks{});  // inverted
}

// Points, point groups and texts are picked by their positions; a pick value drawn twice is
// given once, at its first place; a null pick is never given, whatever lies under it.
TEST(PantallaReferenciaSeleccion, puntosTextosYRepetidos)
{
    PantallaReferencia p;
    const P grupo[] = {{50, 50, 0}, {-30, 20, 0}};
    p.dibujaGrupoPuntos(2, grupo, nullptr, &dos);
    p.dibujaPunto({-30, 20, 0}, 0, nullptr);
    p.dibujaTexto({-30, 21, 0}, "rotulo", 0, 0, 1.0F, 0.0F, "Arial", 0, &uno);
    p.dibujaPunto({-29, 20, 0}, 0, &dos);
    p.dibujaPunto({-28, 20, 0}, 0, &tres);
    EXPECT_EQ(picksEn(p, ventana(370, 320, 2)), (Picks{&dos, &uno, &tres}));
    EXPECT_EQ(picksEn(p, ventana(370, 321, 0)), Picks{&uno});
    EXPECT_EQ(picksEn(p, ventana(371, 320, 0)), Picks{&dos});
    EXPECT_EQ(picksEn(p, ventana(450, 350, 0)), Picks{&dos});
}

// Filled shapes: a window wholly inside a polygon or an object's face is covered and finds
// it; an object of edges alone is hollow; an object of vertices alone is its points.
TEST(PantallaReferenciaSeleccion, poligonosCarasYAristas)
{
    PantallaReferencia p;
    const P cuadro[] = {{0, 0, 0}, {40, 0, 0}, {40, 40, 0}, {0, 40, 0}};
    p.dibujaPoligono(4, cuadro, 0, &uno);
    EXPECT_EQ(picksEn(p, ventana(420, 320, 3)), Picks{&uno});
    EXPECT_EQ(picksEn(p, ventana(460, 320, 3)), Picks{});

    p.limpia();
    const P v[] = {{-60, -60, 0}, {-20, -60, 0}, {-20, -20, 0}, {-60, -20, 0}};
    const int32_t cara[] = {4, 0, 1, 2, 3};
    const uint32_t lados[] = {0, 1, 1, 2, 2, 3, 3, 0};
    p.iniciaObjeto(0, 0);
    p.vertices(4, v);
    p.caras(5, cara);
    p.finObjeto(&dos);
    p.iniciaObjeto(0, 0);
    p.vertices(4, v);
    p.aristas(8, lados);
    p.finObjeto(&tres);
    p.iniciaObjeto(0, 0);
    p.vertices(1, v);
    p.finObjeto(&uno);
    EXPECT_EQ(picksEn(p, ventana(360, 260, 3)), Picks{&dos});                 // middle of the face
    EXPECT_EQ(picksEn(p, ventana(380, 260, 1)), (Picks{&dos, &tres}));        // on its right side
    EXPECT_EQ(picksEn(p, ventana(340, 240, 0)), (Picks{&dos, &tres, &uno}));  // the corner
}

// An object under escalaConstante keeps its size in pixels: a vertex one unit from the
// centre, with 1 unit shown as 20 pixels, lies 20 pixels away at zoom 1 and at zoom 4.
TEST(PantallaReferenciaSeleccion, escalaConstanteEnPixeles)
{
    PantallaReferencia p;
    const P v[] = {{10, 0, 0}, {11, 0, 0}};
    const uint32_t lado[] = {0, 1};
    p.iniciaObjeto(0, 0);
    p.vertices(2, v);
    p.aristas(2, lado);
    p.escalaConstante({10, 0, 0}, 1.0, 20.0);
    p.finObjeto(&uno);
    EXPECT_EQ(picksEn(p, ventana(428, 300, 1)), Picks{&uno});
    EXPECT_EQ(picksEn(p, ventana(432, 300, 1)), Picks{});
    p.zoomEscala(4.0);
    EXPECT_EQ(picksEn(p, ventana(458, 300, 1)), Picks{&uno});
    EXPECT_EQ(picksEn(p, ventana(462, 300, 1)), Picks{});
}

// limpia forgets the scene and the open object; the overlay keeps its own list, restarted
// by each inicioSuperposicion, and is never picked. Each primitive carries the stipple,
// width and on-top state in force, and objects the material set before them.
TEST(PantallaReferenciaEscena, retencionYSuperposicion)
{
    PantallaReferencia p;
    p.setModoLinea(0xF0F0);
    p.setGrosor(3.0F);
    p.dibujaPunto({0, 0, 0}, 0x11223344, &uno);
    p.setMaterial(7);
    p.setColorMaterial(0xFF0000FF, 0.8F, 1.0F);
    p.iniciaObjeto(0xAABBCCDD, 5);
    p.finObjeto(nullptr);
    ASSERT_EQ(p.escena.size(), 2U);
    EXPECT_EQ(std::tuple(p.escena[0].patron, p.escena[0].grosor, p.escena[0].color),
              std::tuple(0xF0F0, 3.0F, 0x11223344U));
    EXPECT_EQ(std::tuple(p.escena[1].material, p.escena[1].colorMaterial, p.escena[1].modo),
              std::tuple(7, 0xFF0000FFU, 5));

    p.inicioSuperposicion();
    p.dibujaPunto({0, 0, 0}, 0, &dos);
    p.finSuperposicion();
    EXPECT_EQ(picksEn(p, ventana(400, 300, 0)), Picks{&uno});
    EXPECT_EQ(p.superposicion.size(), 1U);
    p.inicioSuperposicion();
    p.finSuperposicion();
    EXPECT_TRUE(p.superposicion.empty());

    p.iniciaObjeto(0, 0);
    p.limpia();
    p.finObjeto(&tres);  // its object was forgotten
    EXPECT_TRUE(p.escena.empty());
    EXPECT_EQ(picksEn(p, ventana(400, 300, 5)), Picks{});
}

// zoomExtension aims at the box's centre and fits it on its tighter axis: a 100 x 50 box on
// 800 x 600 gets zoom 8, its corners on the left and right edges; an invalid box changes
// nothing. zoomVentana puts the world point under the window's centre on the viewport's
// centre and zooms by the tighter ratio (800/200 against 600/150 gives 4); zoomEscala
// multiplies and ignores a factor that is not positive; an empty window does nothing.
TEST(PantallaReferenciaZoom, extensionVentanaYEscala)
{
    PantallaReferencia p;
    p.zoomExtension(Rect3<double>({0, 0, 0}, {100, 50, 0}));
    EXPECT_EQ(std::tuple(p.objetivo, p.posicion, p.zoom),
              std::tuple(P(50, 25, 0), P(50, 25, 10), 8.0));
    esperaPixel(p, {0, 0, 0}, 0, 100);
    esperaPixel(p, {100, 50, 0}, 800, 500);
    p.zoomExtension(Rect3<double>());
    EXPECT_EQ(std::tuple(p.objetivo, p.zoom), std::tuple(P(50, 25, 0), 8.0));

    PantallaReferencia q;
    q.zoomVentana({300, 250}, {100, 100});
    EXPECT_DOUBLE_EQ(q.zoom, 4.0);
    esperaPixel(q, {-200, -125, 0}, 400, 300);
    q.zoomEscala(0.5);
    q.zoomEscala(-3.0);
    EXPECT_DOUBLE_EQ(q.zoom, 2.0);
    q.zoomVentana({5, 5}, {5, 5});
    EXPECT_DOUBLE_EQ(q.zoom, 2.0);
    EXPECT_EQ(p.llamadasDe("zoomExtension").size(), 2U);
    EXPECT_EQ(q.llamadasDe("zoom"), (Lineas{"zoomVentana 300,250 100,100", "zoomEscala 0.5",
                                            "zoomEscala -3", "zoomVentana 5,5 5,5"}));
}

// The recorded lines: names and main arguments in call order, texts with their string,
// polylines with every vertex; nothing when recording is off. Prompt output is kept and
// echoed to the host's callback; setCamara asks for a rebuild only while nothing is kept.
TEST(PantallaReferenciaGrabacion, lineasYTextos)
{
    PantallaReferencia p;
    EXPECT_TRUE(p.setCamara({1, 2, 3}, {0, 0, 0}, {0, 0, 1}, 1.0, 0.0));
    const P pl[] = {{0, 0, 0}, {1, 0.5, 0}};
    p.dibujaPolilinea(2, pl, true, 0xFF, &uno);
    p.dibujaTextoAncho({1, 1, 1}, L"a\u00F1o", 0x10, 0, 1.0F, 0.0F, nullptr, 0, nullptr);
    p.dibujaTexto({1, 1, 1}, "hola", 0x20, 0, 1.0F, 0.0F, nullptr, 0, &dos);
    EXPECT_FALSE(p.setCamara({1, 2, 3}, {0, 0, 0}, {0, 0, 1}, 1.0, 0.0));
    std::vector<std::string> eco;
    p.salidaTexto = [&eco](const std::string& s) { eco.push_back(s); };
    p.muestraTexto("Designe punto:");
    EXPECT_EQ(p.llamadas, (Lineas{"setCamara (1,2,3) (0,0,0)",
                                  "dibujaPolilinea 2 cerrada (0,0,0) (1,0.5,0) 000000FF pick",
                                  "dibujaTextoAncho (1,1,1) 00000010 null",
                                  "dibujaTexto (1,1,1) \"hola\" 00000020 pick",
                                  "setCamara (1,2,3) (0,0,0)", "muestraTexto Designe punto:"}));
    EXPECT_EQ(p.escena[1].texto, "a\xC3\xB1o");
    EXPECT_EQ(p.textos, Lineas{"Designe punto:"});
    EXPECT_EQ(eco, Lineas{"Designe punto:"});
    p.llamadas.clear();
    p.grabando = false;
    p.limpia();
    p.dibujaPunto({0, 0, 0}, 0, nullptr);
    EXPECT_TRUE(p.llamadas.empty());
    EXPECT_EQ(p.escena.size(), 1U);
}

// The test display keeps its camera fixed: zooms are recorded and move nothing, getCamara
// gives the `direccion` set by the test, and picking goes through the fixed identity
// matrices, which put (0.5, 0.5, 0) on pixel (600, 450).
TEST(PantallaReferenciaGrabadora, camaraFijaYSeleccion)
{
    cad::prueba::PantallaGrabadora p;
    p.posicion = {3, 4, 50};
    p.direccion = {1, 0, 0};
    p.zoomExtension(Rect3<double>({0, 0, 0}, {10, 10, 0}));
    p.zoomEscala(3.0);
    p.zoomVentana({0, 0}, {10, 10});
    EXPECT_EQ(camara(p), std::tuple(P(3, 4, 50), Vector3D<double>(1, 0, 0), 1.0));
    EXPECT_EQ(p.llamadas.size(), 4U);
    p.dibujaPunto({0.5, 0.5, 0}, 0, &uno);
    p.dibujaPunto({0.5, 0.6, 0}, 0, &dos);
    esperaPixel(p, {0.5, 0.5, 0}, 600, 450);
    EXPECT_EQ(picksEn(p, ventana(600, 450, 2)), Picks{&uno});
    p.clic(600, 480);
    ASSERT_EQ(p.eventos.size(), 1U);
    EXPECT_NEAR(p.eventos.front().first.posicion.y, 0.6, 1e-12);
}

// End to end at survey coordinates: two real lines 3 m apart are painted under a stored plan
// view at 2 pixels per metre; a click one pixel off the first line's start picks that line
// and not its neighbour 6 pixels away, and the end-point snap lands exactly on that start.
TEST(PantallaReferenciaDibujo, clicSobreLineaYReferencia)
{
    cad::Dibujo d;
    d.nuevoDocumento();
    const P inicio{431250.0, 4581320.0, 612.5};
    auto* primera = new cad::Linea(inicio, inicio + Vector3D<double>(50, 0, 0));
    d.nuevaEntidad(primera);
    d.nuevaEntidad(
        new cad::Linea(inicio + Vector3D<double>(0, 3, 0), inicio + Vector3D<double>(50, 3, 0)));
    d.vistaActual->posicion = inicio + Vector3D<double>(25, 0, 1000);
    d.vistaActual->objetivo = inicio + Vector3D<double>(25, 0, 0);
    d.vistaActual->zoom = 2.0;
    d.vistaAplicada = false;
    PantallaReferencia p;
    d.dibuja(p);
    esperaPixel(p, inicio, 350, 300, 1e-6);
    p.clic(351, 301);
    cursor_t c;
    int estado = 0;
    ASSERT_TRUE(p.getEvento(c, estado));
    void* const pickPrimera = static_cast<cad::Entidad*>(primera);
    EXPECT_EQ(picksEn(p, ventana(c.x, c.y, 2)), Picks{pickPrimera});
    d.setReferenciaEntidades(true, 1);  // end points only
    ASSERT_TRUE(d.referenciaEntidades(p, c));
    EXPECT_EQ(c.referencia, inicio);
    EXPECT_EQ(c.entidad, static_cast<cad::Entidad*>(primera));
}

}  // namespace
