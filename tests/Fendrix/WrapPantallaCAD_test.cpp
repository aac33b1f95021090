// The display handle and the facade operations that reach the display: setPantalla,
// painting order, zoom, 2D mode and named views.
#include "Fendrix/WrapPantallaCAD.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Fendrix/WrapDibujoCAD.h"
#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "entidades/Entidad.h"
#include "soporte/EntidadPrueba.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::prueba::PantallaGrabadora;
using Fendrix::WrapDibujoCAD;
using Fendrix::WrapPantallaCAD;
using Lineas = std::vector<std::string>;

class Punto : public cad::prueba::EntidadPrueba
{
public:
    explicit Punto(const cad::Punto3<double>& p) : q(p) {}
    const char* etiqueta() const override { return "tQ1"; }
    void escribe(cad::SerializadorEscrituraBase&) override {}
    bool lee(cad::SerializadorLecturaBase&) override { return false; }
    Entidad* clona() const override { return new Punto(*this); }
    cad::Rect3<double> extension() const override { return {q, q}; }
    void dibuja(cad::PantallaCAD& p) const override { p.dibujaPunto(q, 0, nullptr); }
    cad::Punto3<double> q;
};

// A facade over a new document, given a recording display through its handle.
struct ConPantalla
{
    PantallaGrabadora p;
    WrapPantallaCAD wp;
    WrapDibujoCAD w{nullptr, nullptr};
    ConPantalla()
    {
        wp.setPantalla(&p);
        w.nuevoDocumento();
        w.setPantalla(&wp);
        p.llamadas.clear();
    }
};

// The handle starts empty and stores the device; Dispose and destruction only forget it, so
// the device lives on. The facade's setPantalla makes a new editor over that device, or over
// none for a null handle.
TEST(WrapPantallaCAD, guardaYOlvidaSinPoseer)
{
    ConPantalla c;
    EXPECT_EQ(c.w.mPantalla, &c.p);
    EXPECT_EQ(c.w.mEditor->pantalla(), &c.p);
    c.w.setPantalla(nullptr);
    EXPECT_EQ(c.w.mPantalla, nullptr);
    ASSERT_NE(c.w.mEditor, nullptr);
    EXPECT_EQ(c.w.mEditor->pantalla(), nullptr);
    {
        WrapPantallaCAD wp;
        EXPECT_EQ(wp.mPantalla, nullptr);
        wp.setPantalla(&c.p);
        wp.Dispose();
        EXPECT_EQ(wp.mPantalla, nullptr);
        wp.setPantalla(&c.p);
    }
    c.p.limpia();
    EXPECT_EQ(c.p.llamadas, Lineas{"limpia"});
}

// The facade paint: inicioDibujo, the drawing, finEntidades, the editor's overlay, finDibujo
// last. A handle with no device paints nothing and keeps the pending paint; a facade never
// given a display still paints on a device passed to it.
TEST(WrapPantallaCAD, ordenDelPintado)
{
    ConPantalla c;
    WrapPantallaCAD vacio;
    c.w.dibuja(&vacio);
    EXPECT_TRUE(c.p.llamadas.empty());
    EXPECT_TRUE(c.w.mDibujo->redibujar);
    c.w.dibuja(&c.wp);
    const Lineas& l = c.p.llamadas;
    const auto en = [&l](const std::string& s)
    { return std::find(l.begin(), l.end(), s) - l.begin(); };
    ASSERT_FALSE(l.empty());
    EXPECT_EQ(l.front(), "inicioDibujo");
    EXPECT_EQ(l.back(), "finDibujo");
    EXPECT_LT(en("setModoLinea AAAA"), en("finEntidades"));
    EXPECT_LT(en("finEntidades"), en("inicioSuperposicion"));
    EXPECT_LT(en("inicioSuperposicion"), en("finSuperposicion"));
    EXPECT_LT(en("finSuperposicion"), en("finDibujo"));
    WrapDibujoCAD sinPantalla(nullptr, nullptr);
    sinPantalla.nuevoDocumento();
    PantallaGrabadora p;
    sinPantalla.dibuja(&p);
    EXPECT_EQ(p.llamadasDe("inicioDibujo").size() + p.llamadasDe("finDibujo").size(), 2U);
}

// zoomExtension and setModo2D go to the facade's display: an empty drawing sends no zoom,
// otherwise the box is flat at the centre's z; the drawing keeps the 2D mode too.
TEST(WrapPantallaCAD, zoomYModo2D)
{
    ConPantalla c;
    c.w.setModo2D(true);
    EXPECT_EQ(c.p.llamadas, Lineas{"setModo2D 1"});
    EXPECT_TRUE(c.w.mDibujo->modo2D());
    c.w.zoomExtension(1.0);
    EXPECT_TRUE(c.p.llamadasDe("zoomExtension").empty());
    c.w.mDibujo->nuevaEntidad(new Punto({2, 4, 1}));
    c.w.mDibujo->nuevaEntidad(new Punto({6, 8, 3}));
    c.w.zoomExtension(2.0, 1.0);
    EXPECT_EQ(c.p.llamadasDe("zoomExtension"), Lineas{"zoomExtension (0,4,2) (8,8,2)"});
}

// Named views through the facade: the display's camera is stored and activated back, an
// unknown name sends nothing, and copiaVista takes the other facade's display view.
TEST(WrapPantallaCAD, vistas)
{
    ConPantalla c;
    c.p.posicion = {7, 8, 9};
    c.w.guardaVistaActual("Norte");
    EXPECT_EQ(c.w.nombreVista(0), "Norte");
    c.w.activaVista("Sur");
    EXPECT_TRUE(c.p.llamadasDe("setCamara").empty());
    c.w.activaVista("Norte");
    EXPECT_EQ(c.p.llamadasDe("setCamara"), Lineas{"setCamara (7,8,9) (0,0,0)"});
    ConPantalla otra;
    otra.p.posicion = {1, 1, 1};
    otra.p.objetivo = {2, 2, 2};
    c.p.llamadas.clear();
    c.w.copiaVista(otra.w);
    EXPECT_EQ(c.p.llamadasDe("setCamara"), Lineas{"setCamara (1,1,1) (2,2,2)"});
}

}  // namespace
