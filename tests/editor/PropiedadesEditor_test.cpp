// The editor's property front by entity pointer: entities that left the drawing, the read-only
// flag as advice, the first of two rows of one name, the vertex mark after a list write, and
// comandoPropiedades with its viewer.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "entidades/Linea.h"
#include "entidades/Polilinea.h"
#include "soporte/EntidadPrueba.h"
#include "soporte/GuionSesion.h"

namespace
{

using cad::Entidad;
using cad::Prop;
using cad::Punto3;
using cad::TipoProp;

int64_t handle(const Entidad* e)
{
    return static_cast<int64_t>(reinterpret_cast<intptr_t>(e));
}

// A sheet with two rows named alike: "Nota", read-only and yet accepted, then "nota".
class HojaPrueba : public cad::prueba::EntidadPrueba
{
public:
    const char* etiqueta() const override { return "Zz1"; }
    Entidad* clona() const override { return new HojaPrueba(*this); }
    void dibuja(cad::PantallaCAD&) const override {}
    int numeroCategorias() const override { return 3; }
    int numeroPropiedadesCategoria(int c) const override
    {
        return c == 0 ? Entidad::numeroPropiedadesCategoria(c) : 1;
    }
    bool getPropiedad(int c, int i, Prop& p) const override
    {
        if (c == 0 || i != 0)
        {
            return Entidad::getPropiedad(c, i, p);
        }
        p.nombre = c == 1 ? "Nota" : "nota";
        p.tipo = TipoProp::Cadena;
        p.soloLectura = c == 1;
        p.valor = notas[c - 1];
        return true;
    }
    bool setPropiedad(int c, int i, const Prop& p) override
    {
        if (c == 0 || i != 0)
        {
            return Entidad::setPropiedad(c, i, p);
        }
        notas[c - 1] = p.valor;
        return true;
    }

    std::string notas[2] = {"a", "b"};
};

struct Editor
{
    cad::Dibujo d;
    std::unique_ptr<cad::EditorDibujo> ed;
    Editor()
    {
        d.nuevoDocumento();
        ed = std::make_unique<cad::EditorDibujo>(&d, nullptr);
    }
};

// Invariants under test: a pointer that is not in the drawing (never inserted, or deleted and
// kept alive by its undo step) reads as the editor's own sheet and takes no write; once undo
// brings it back, it reads as the entity, its layer row in the entity's own kind (only the
// handle form shows it as an Enumerado).
TEST(PropiedadesEditor, entidadFueraDelDibujoDaLaHojaSinSeleccion)
{
    Editor e;
    cad::Linea suelta({0, 0, 0}, {1, 0, 0});
    auto* linea = new cad::Linea({0, 0, 0}, {2, 0, 0});
    ASSERT_TRUE(e.ed->nuevaEntidad(linea));
    ASSERT_TRUE(e.ed->borraEntidad(linea));
    Entidad* const fueras[] = {&suelta, linea, nullptr};
    for (Entidad* fuera : fueras)
    {
        EXPECT_EQ(e.ed->numeroPropiedadesCategoria(fuera, 0), 2);
        Prop p;
        ASSERT_TRUE(e.ed->getPropiedad(fuera, 0, 0, p));
        EXPECT_EQ(p.nombre + ":" + p.valor, "Entidad:Sin selección");
        p.valor = "3";
        EXPECT_FALSE(e.ed->setPropiedad(fuera, 0, 3, p));
    }
    EXPECT_TRUE(suelta.estiloLinea.porCapa);
    e.ed->deshacer();
    Prop p;
    ASSERT_TRUE(e.ed->getPropiedad(linea, 0, 1, p));
    EXPECT_EQ(p.tipo, TipoProp::kCapaEntidad);
    ASSERT_TRUE(e.ed->getPropiedad(handle(linea), 0, 1, p));
    EXPECT_EQ(p.tipo, TipoProp::Enumerado);
}

// Invariants under test: the read-only flag is advice: the front passes the write on and the
// entity decides (this one takes it, a line's derived length refuses it and the drawing stays
// unmarked). By name, the first of two rows whose names differ only in case is written.
TEST(PropiedadesEditor, soloLecturaEsConsejoYPorNombreGanaLaPrimera)
{
    Editor e;
    auto* hoja = new HojaPrueba();
    ASSERT_TRUE(e.ed->nuevaEntidad(hoja));
    const int64_t h = handle(hoja);
    Prop p;
    ASSERT_TRUE(e.ed->getPropiedad(h, 1, 0, p));
    EXPECT_TRUE(p.soloLectura);
    p.valor = "escrita";
    e.d.borraMarcaCambios();
    EXPECT_TRUE(e.ed->setPropiedad(h, 1, 0, p));
    EXPECT_EQ(hoja->notas[0], "escrita");
    EXPECT_TRUE(e.d.hayCambios());

    EXPECT_TRUE(e.ed->setPropiedad(h, std::string("NOTA"), std::string("primera")));
    EXPECT_EQ(hoja->notas[0], "primera");
    EXPECT_EQ(hoja->notas[1], "b");

    auto* linea = new cad::Linea({0, 0, 0}, {3, 4, 0});
    ASSERT_TRUE(e.ed->nuevaEntidad(linea));
    e.d.borraMarcaCambios();
    ASSERT_TRUE(e.ed->getPropiedad(handle(linea), 1, 3, p));
    EXPECT_EQ(p.nombre, "Longitud");
    EXPECT_TRUE(p.soloLectura);
    p.valor = "10";
    EXPECT_FALSE(e.ed->setPropiedad(handle(linea), 1, 3, p));
    EXPECT_FALSE(e.d.hayCambios());
    EXPECT_EQ(linea->extremo, Punto3<double>(3, 4, 0));
}

// Invariants under test: a vertex written through the sheet is marked on the display, and the
// overlay paint that follows leaves it where it was typed, wherever the pointer is. The mark
// replaces whatever the drag list held.
TEST(PropiedadesEditor, elementoDeListaMarcaElVerticeSinArrastrarlo)
{
    cad::prueba::SesionEditor s;
    const Punto3<double> puntos[3] = {{100, 100, 0}, {200, 100, 0}, {200, 200, 0}};
    auto* poli = new cad::Polilinea(3, puntos);
    ASSERT_TRUE(s.editor->nuevaEntidad(poli));
    s.pantalla.setPosicionCursor(600, 500);
    const double nuevo[3] = {250, 150, 5};
    ASSERT_TRUE(s.editor->setElementoLista(handle(poli), 1, 0, 1, nuevo));
    ASSERT_TRUE(s.editor->setElementoLista(handle(poli), 1, 0, 1, nuevo));
    EXPECT_EQ(s.editor->modificadores.size(), 1U);

    s.pantalla.grabando = true;
    s.pintaSuperposicion();
    EXPECT_EQ(*poli->coordenada(1), Punto3<double>(250, 150, 5));
    const std::vector<std::string> marcas = s.pantalla.llamadasDe("dibujaMarca");
    ASSERT_EQ(marcas.size(), 1U);
    EXPECT_EQ(marcas[0].rfind("dibujaMarca (250,150,5) 1 ", 0), 0U) << marcas[0];

    s.editor->cancelaComando();
    EXPECT_EQ(*poli->coordenada(1), Punto3<double>(250, 150, 5));
}

// Invariants under test: comandoPropiedades asks "Seleccione una entidad:", and the viewer
// runs with the picked entity highlighted (so the host finds it among the marked ones) and
// only for the call. A cancelled pick calls no viewer and returns false.
TEST(PropiedadesEditor, comandoPropiedadesResaltaDuranteElVisor)
{
    cad::prueba::SesionEditor s;
    auto* linea = new cad::Linea({100, 100, 0}, {300, 100, 0});
    ASSERT_TRUE(s.editor->nuevaEntidad(linea));
    s.pinta();
    int llamadas = 0;
    uint32_t marcadas = 0;
    s.editor->setVisorPropiedades(
        [&]
        {
            ++llamadas;
            marcadas = s.dibujo.nuevaSeleccion(cad::Dibujo::kSeleccionMarcadas).numeroEntidades();
            EXPECT_NE(linea->estado & cad::kEstadoResaltada, 0U);
        });
    {
        cad::prueba::GuionSesion g(*s.editor, s.pantalla);
        g.clicEn({200, 100, 0});
        EXPECT_TRUE(s.editor->comandoPropiedades());
    }
    EXPECT_EQ(llamadas, 1);
    EXPECT_EQ(marcadas, 1U);
    EXPECT_EQ(linea->estado, 0U);
    EXPECT_NE(std::find(s.textos.begin(), s.textos.end(), "Seleccione una entidad:"),
              s.textos.end());
    {
        cad::prueba::GuionSesion g(*s.editor, s.pantalla);
        g.cancela();
        EXPECT_FALSE(s.editor->comandoPropiedades());
    }
    EXPECT_EQ(llamadas, 1);
}

}  // namespace
