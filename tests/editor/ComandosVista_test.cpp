// The view, reference-plane and local-system commands, played as a user's sessions on the
// reference display seen from above (pixel (x, y) shows drawing point (x, y, 0)).
#include <cmath>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "documento/Vista.h"
#include "entidades/Foto360.h"
#include "entidades/Linea.h"
#include "entidades/Objeto3D.h"
#include "entidades/Plano.h"
#include "entidades/Polilinea.h"
#include "entidades/Punto.h"
#include "entidades/TomaCamara.h"
#include "modelo/Modelo3D.h"
#include "soporte/GuionSesion.h"

namespace
{

using cad::Punto3;
using cad::Vector3D;
using cad::prueba::GuionSesion;
using cad::prueba::SesionEditor;
using P = Punto3<double>;
using V = Vector3D<double>;
using Textos = std::vector<std::string>;

const char* const kPlanoRef = "Establecer plano de referencia:Planta/Vista/<Entidad>";
const char* const kEstablecido = "Plano de referencia establecido.";
const char* const kOrigenSL = "Seleccione un plano o un punto para el origen del sistema local:";
const char* const kEjeX = "Seleccione el eje X del sistema local";

void cerca(const V& a, const V& b)
{
    EXPECT_NEAR(a.x, b.x, 1e-9);
    EXPECT_NEAR(a.y, b.y, 1e-9);
    EXPECT_NEAR(a.z, b.z, 1e-9);
}
// Points picked by a click carry the display's ray arithmetic.
void cerca(const P& a, const P& b)
{
    cerca(a - P(0, 0, 0), b - P(0, 0, 0));
}

// A session whose printed texts are taken, and forgotten, command by command.
struct Escena
{
    SesionEditor s;
    GuionSesion g{*s.editor, s.pantalla};
    template <typename T>
    T* pon(T* e)
    {
        s.editor->nuevaEntidad(e);
        return e;
    }
    Textos prompts()
    {
        Textos t = s.prompts();
        s.textos.clear();
        return t;
    }
};

// Every way to set the reference plane, in one drawing. "Planta" gives a plan plane at the
// height typed; "Vista" a plane facing the viewer through a point picked with every snap forced
// on (and given back). An entity: a plane gives its reference point and unit normal; a line
// with the option "Vertical" or a typed third point; a polyline its fitted plane from its first
// point; a model the face under the click, its centre and normal. A point entity defines no
// plane, a click off the model's faces finds none, and either leaves the plane as it was; the
// model's highlight is taken off either way.
TEST(ComandosVista, planoReferencia)
{
    Escena e;
    e.pon(new cad::Punto(200, 100, 0));
    const std::vector<P> plano = {{100, 100, 10}, {150, 100, 10}, {150, 150, 10}, {100, 150, 10}};
    e.pon(new cad::Plano({0, 0, 2, -20}, 4, plano.data()));
    e.pon(new cad::Linea(P(300, 100, 0), P(400, 100, 0)));
    const std::vector<P> inclinada = {
        {500, 100, 500}, {600, 100, 600}, {600, 200, 600}, {500, 200, 500}};
    e.pon(new cad::Polilinea(4, inclinada.data()));
    const std::vector<P> cara = {{100, 300, 0}, {200, 300, 0}, {200, 400, 0}, {100, 400, 0}};
    auto modelo = std::make_unique<cad::Modelo3D>();
    modelo->nuevaCara(4, cara.data(), nullptr, true, 0);
    auto* objeto = e.pon(new cad::Objeto3D(modelo.release()));
    e.s.pinta();

    e.g.escribe("P").escribe("12.5");
    EXPECT_TRUE(e.s.editor->comandoPlanoReferencia());
    EXPECT_EQ(e.prompts(), Textos({kPlanoRef, "Elevación", kEstablecido}));
    EXPECT_EQ(e.s.dibujo.origenPlano, P(0, 0, 12.5));
    EXPECT_EQ(e.s.dibujo.normalPlano, V(0, 0, 1));

    e.s.dibujo.setReferenciaEntidades(false, 2);
    e.g.escribe("Vista").clic(100, 50);
    EXPECT_TRUE(e.s.editor->comandoPlanoReferencia());
    EXPECT_EQ(e.prompts(), Textos({kPlanoRef, "Seleccione un punto del plano", kEstablecido}));
    cerca(e.s.dibujo.origenPlano, P(100, 50, 12.5));
    EXPECT_EQ(e.s.dibujo.normalPlano, V(0, 0, -1));
    EXPECT_FALSE(e.s.dibujo.referenciaGlobal);
    EXPECT_EQ(e.s.dibujo.mascaraReferencias, 2);

    e.g.clicEn({200, 100, 0});
    EXPECT_FALSE(e.s.editor->comandoPlanoReferencia());
    e.g.cancela();
    EXPECT_FALSE(e.s.editor->comandoPlanoReferencia());
    EXPECT_EQ(e.prompts(),
              Textos({kPlanoRef, "La entidad no define un plano.", kPlanoRef, "* Cancelado *"}));
    cerca(e.s.dibujo.origenPlano, P(100, 50, 12.5));

    e.g.clicEn({125, 125, 0});
    EXPECT_TRUE(e.s.editor->comandoPlanoReferencia());
    EXPECT_EQ(e.s.dibujo.origenPlano, P(100, 100, 10));
    EXPECT_EQ(e.s.dibujo.normalPlano, V(0, 0, 1));
    EXPECT_EQ(e.prompts(), Textos({kPlanoRef, kEstablecido}));

    e.g.clicEn({350, 100, 0}).escribe("V");
    EXPECT_TRUE(e.s.editor->comandoPlanoReferencia());
    EXPECT_EQ(e.prompts(),
              Textos({kPlanoRef, "Seleccione un tercer punto:Vertical/<Entidad>", kEstablecido}));
    EXPECT_EQ(e.s.dibujo.origenPlano, P(300, 100, 0));
    cerca(e.s.dibujo.normalPlano, V(0, -1, 0));
    e.g.clicEn({350, 100, 0}).escribe("350,150,4");
    EXPECT_TRUE(e.s.editor->comandoPlanoReferencia());
    cerca(e.s.dibujo.normalPlano, V(0, -4, 50).unit());

    e.g.clicEn({550, 100, 0});
    EXPECT_TRUE(e.s.editor->comandoPlanoReferencia());
    EXPECT_EQ(e.s.dibujo.origenPlano, P(500, 100, 500));
    EXPECT_NEAR(std::abs(e.s.dibujo.normalPlano.dot(V(1, 0, -1).unit())), 1.0, 1e-9);
    e.prompts();

    e.g.clicEn({150, 350, 0}).clicEn({150, 350, 0});
    EXPECT_TRUE(e.s.editor->comandoPlanoReferencia());
    EXPECT_EQ(e.prompts(), Textos({kPlanoRef, "Seleccione una cara del objeto", kEstablecido}));
    EXPECT_EQ(e.s.dibujo.origenPlano, P(150, 350, 0));
    const Vector3D<float> n = objeto->modelo->normalCara(0);
    EXPECT_FLOAT_EQ(std::abs(n.z), 1.0F);
    cerca(e.s.dibujo.normalPlano, V(n.x, n.y, n.z));
    e.g.clicEn({150, 350, 0}).clicEn({700, 500, 0});
    EXPECT_FALSE(e.s.editor->comandoPlanoReferencia());
    EXPECT_EQ(e.prompts(),
              Textos({kPlanoRef, "Seleccione una cara del objeto", "Cara no encontrada."}));
    EXPECT_EQ(objeto->estado & cad::kEstadoResaltada, 0U);
    EXPECT_EQ(e.s.dibujo.origenPlano, P(150, 350, 0));
}

// Pan and rotation end true, cancelled or displaced, and give the interaction mode back. A
// command run from inside the rotation ends it too: here the rotation centre, whose click snaps
// to the point with every mode forced on while the drawing's own settings come back. Every zoom
// reaches the display, the window lesser corner first whatever the order of the clicks, and the
// view it leaves is copied into the drawing's current view. Without a display nothing breaks.
TEST(ComandosVista, encuadreRotacionYZooms)
{
    Escena e;
    e.pon(new cad::Punto(200, 100, 0));
    auto* linea = e.pon(new cad::Linea(P(100, 400, 0), P(300, 400, 0)));
    e.s.pinta();
    e.s.pantalla.grabando = true;
    e.g.cancela();
    EXPECT_TRUE(e.s.editor->comandoEncuadre());
    EXPECT_EQ(e.prompts(), Textos({"* Cancelado *"}));
    EXPECT_EQ(e.s.pantalla.llamadasDe("setModoInteraccion"),
              Textos({"setModoInteraccion 2", "setModoInteraccion 1", "setModoInteraccion 0"}));

    // The Enter that ended an earlier command does not end the pan at its first step: it
    // waits for its own.
    e.g.escribe("700,500").intro();
    EXPECT_EQ(e.s.editor->comandoPunto(), 1);
    int pasos = 0;
    e.g.ejecuta([&]() { ++pasos; }).ejecuta([&]() { ++pasos; }).intro();
    EXPECT_TRUE(e.s.editor->comandoEncuadre());
    EXPECT_EQ(pasos, 2);
    EXPECT_EQ(e.prompts(), Textos(2, "Seleccione coordenadas del punto:"));
    e.s.editor->deshacer();

    e.s.pantalla.llamadas.clear();
    e.s.estados.clear();
    e.g.ejecuta([&]() { EXPECT_TRUE(e.s.editor->comandoCentroRotacion()); }).clic(203, 102);
    EXPECT_TRUE(e.s.editor->comandoRotacion());
    EXPECT_EQ(e.prompts(), Textos({"Seleccione el centro de rotación:", "* Cancelado *"}));
    EXPECT_EQ(e.s.pantalla.centroRotacion, P(200, 100, 0));
    EXPECT_EQ(e.s.pantalla.llamadasDe("setModoInteraccion 0").size(), 2U);
    EXPECT_EQ(e.s.pantalla.modoInteraccion, 0);
    EXPECT_EQ(e.s.estados, "IIIFFF");
    EXPECT_FALSE(e.s.dibujo.referenciaGlobal);
    EXPECT_EQ(e.s.dibujo.mascaraReferencias, 0);

    e.g.clic(300, 200).clic(100, 50);
    EXPECT_TRUE(e.s.editor->comandoZoomVentana());
    EXPECT_EQ(e.prompts(), Textos({"Seleccione coordenada inicial de la ventana:",
                                   "Seleccione coordenada final de la ventana:"}));
    EXPECT_EQ(e.s.pantalla.llamadasDe("zoomVentana"), Textos({"zoomVentana 100,50 300,200"}));
    const cad::Vista& vista = *e.s.dibujo.vistaActual;
    EXPECT_NE(e.s.pantalla.objetivo, P(400, 300, 0));
    EXPECT_EQ(vista.objetivo, e.s.pantalla.objetivo);
    EXPECT_EQ(vista.zoom, e.s.pantalla.zoom);
    const double zoom = vista.zoom;
    e.s.editor->zoomEscala(2.0);
    EXPECT_EQ(vista.zoom, 2.0 * zoom);
    e.s.editor->zoomVentana(10.0, 0.0, 20.0, 40.0, 5.0, 0.0);
    EXPECT_TRUE(e.s.editor->zoomExtension(linea));
    EXPECT_TRUE(e.s.editor->zoomExtension(nullptr));
    EXPECT_EQ(
        e.s.pantalla.llamadasDe("zoomExtension"),
        Textos({"zoomExtension (0,20,0) (10,40,5)", "zoomExtension (100,400,0) (300,400,0)"}));
    EXPECT_EQ(vista.objetivo, e.s.pantalla.objetivo);

    cad::EditorDibujo ciego(&e.s.dibujo, nullptr);
    ciego.zoomEscala(2.0);
    ciego.zoomVentana(0, 0, 10, 10);
    ciego.zoomVentana(0.0, 1.0, 0.0, 1.0, 0.0, 1.0);
    EXPECT_TRUE(ciego.zoomExtension());
    EXPECT_TRUE(ciego.zoomExtension(linea));
    ciego.setPlanoReferenciaVista();
}

// By three points the axes are unit and square (Y is straightened against X), and a name puts
// the system in the drawing, undoably, and activates it; once undone the next paint drops it.
// A refused wait changes nothing. By a plane, Y is the normal crossed with X, and no name
// inserts nothing.
TEST(ComandosVista, sistemaLocalPorPuntosYPorPlano)
{
    Escena e;
    e.pon(new cad::Punto(100, 100, 0));
    const std::vector<P> contorno = {{300, 300, 0}, {400, 300, 0}, {400, 400, 0}, {300, 400, 0}};
    e.pon(new cad::Plano({0, 0, 1, 0}, 4, contorno.data()));
    e.s.pinta();
    const size_t antes = e.s.dibujo.entidades.size();
    const std::string nombre = "obra";
    // The origin typed: the first wait takes a point, not only a pick.
    e.g.escribe("100,100,0").escribe("103,104,0").escribe("90,120,0");
    EXPECT_TRUE(e.s.editor->comandoSistemaLocal(&nombre));
    EXPECT_EQ(e.prompts(), Textos({kOrigenSL, kEjeX, "Seleccione el eje Y del sistema local"}));
    const cad::SistemaLocal* sl = e.s.dibujo.sistemaLocal("obra");
    ASSERT_NE(sl, nullptr);
    cerca(sl->origen, P(100, 100, 0));
    cerca(sl->ejeX, V(0.6, 0.8, 0));
    cerca(sl->ejeY, V(-0.8, 0.6, 0));
    cerca(sl->ejeZ, V(0, 0, 1));
    EXPECT_EQ(e.s.editor->sistemaLocalActual().nombre, "obra");
    cerca(e.s.pantalla.ejeLocalY, V(-0.8, 0.6, 0));
    e.s.editor->deshacer();
    EXPECT_EQ(e.s.dibujo.entidades.size(), antes);
    e.s.pintaSuperposicion();
    EXPECT_FALSE(e.s.editor->haySistemaLocal);
    EXPECT_FALSE(e.s.pantalla.haySistemaLocal);

    // A click on empty ground is an origin too; the cancel at the X axis changes nothing.
    e.g.clicEn({500, 500, 0}).cancela();
    EXPECT_FALSE(e.s.editor->comandoSistemaLocal(&nombre));
    EXPECT_EQ(e.prompts(), Textos({kOrigenSL, kEjeX, "* Cancelado *"}));
    EXPECT_EQ(e.s.dibujo.entidades.size(), antes);
    EXPECT_FALSE(e.s.editor->haySistemaLocal);

    e.g.clicEn({350, 350, 0}).escribe("350,350,0").escribe("350,360,3");
    EXPECT_TRUE(e.s.editor->comandoSistemaLocal(nullptr));
    EXPECT_EQ(e.prompts(), Textos({kOrigenSL, "Seleccione el origen del sistema local:", kEjeX}));
    EXPECT_EQ(e.s.dibujo.entidades.size(), antes);
    const cad::SistemaLocal activo = e.s.editor->sistemaLocalActual();
    EXPECT_TRUE(e.s.editor->haySistemaLocal);
    EXPECT_EQ(activo.origen, P(350, 350, 0));
    cerca(activo.ejeX, V(0, 1, 0));
    cerca(activo.ejeY, V(-1, 0, 0));
    cerca(activo.ejeZ, V(0, 0, 1));
}

// Three planes give a Punto at their common point, one undo step; a parallel third plane
// gives nothing. Coefficients and contours are independent here, so the contours lie apart.
TEST(ComandosVista, interseccionDeTresPlanos)
{
    Escena e;
    auto plano = [&](const cad::Plano3D<double>& p, double x)
    {
        const std::vector<P> c = {{x, 100, 0}, {x + 50, 100, 0}, {x + 50, 150, 0}, {x, 150, 0}};
        e.pon(new cad::Plano(p, 4, c.data()));
    };
    plano({1, 1, 0, -30}, 100);
    plano({0, 1, 1, -50}, 200);
    plano({1, 0, 1, -40}, 300);
    plano({2, 2, 0, -10}, 400);
    e.s.pinta();
    const size_t antes = e.s.dibujo.entidades.size();
    e.g.clicEn({125, 125, 0}).clicEn({225, 125, 0}).clicEn({325, 125, 0});
    EXPECT_TRUE(e.s.editor->comandoInterseccionPlanos());
    EXPECT_EQ(e.prompts(), Textos({"Selecciona el primer plano", "Selecciona el segundo plano",
                                   "Selecciona el tercer plano"}));
    ASSERT_EQ(e.s.dibujo.entidades.size(), antes + 1);
    EXPECT_TRUE(e.s.dibujo.entidades.back()->tieneFirma(cad::kFirmaEntidadPunto));
    const P p = *e.s.dibujo.entidades.back()->coordenada(0);
    cerca(p, P(10, 20, 30));
    e.s.editor->deshacer();
    EXPECT_EQ(e.s.dibujo.entidades.size(), antes);

    e.g.clicEn({125, 125, 0}).clicEn({225, 125, 0}).clicEn({425, 125, 0});
    EXPECT_FALSE(e.s.editor->comandoInterseccionPlanos());
    EXPECT_EQ(e.s.dibujo.entidades.size(), antes);
}

// A camera shot places the camera at its station, looking along the glyph's +Y with its +Z
// up and the lens angle of its image height over its focal distance; a 360 photo puts the
// camera at its centre keeping the direction. Anything else leaves the view alone.
TEST(ComandosVista, posicionCamaraEnTomaYFoto)
{
    Escena e;
    e.pon(new cad::TomaCamara(P(100, 100, 50), V(0, 0, 0), 1.0, 1.5, 1.0));
    e.pon(new cad::Foto360(P(500, 300, 0), 10.0, 12, 6, 0.0, 0.0, 0.0));
    e.pon(new cad::Punto(700, 100, 0));
    e.s.pinta();
    e.g.clicEn({700, 100, 0});
    EXPECT_FALSE(e.s.editor->comandoPosicionCamara());
    EXPECT_EQ(e.s.pantalla.posicion, P(400, 300, 100));

    e.g.clicEn({500, 300, 0});
    EXPECT_TRUE(e.s.editor->comandoPosicionCamara());
    EXPECT_EQ(e.s.pantalla.posicion, P(500, 300, 0));
    EXPECT_EQ(e.s.pantalla.objetivo, P(500, 300, -100));

    e.g.clicEn({100, 100, 50});
    EXPECT_TRUE(e.s.editor->comandoPosicionCamara());
    EXPECT_EQ(e.prompts(), Textos(3, "Selecciona una camara"));
    EXPECT_EQ(e.s.pantalla.posicion, P(100, 100, 50));
    cerca(e.s.pantalla.objetivo - P(100, 100, 50), V(0, 1, 0));
    cerca(e.s.pantalla.arriba, V(0, 0, 1));
    EXPECT_NEAR(e.s.pantalla.anguloVision, 2.0 * std::atan(0.5) * 180.0 / std::numbers::pi, 1e-9);
    EXPECT_EQ(e.s.dibujo.vistaActual->posicion, P(100, 100, 50));
}

}  // namespace
