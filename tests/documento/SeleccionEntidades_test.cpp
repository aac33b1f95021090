// Selections: the starting kinds, inclusion by handle, layer and tag (with the `unicos`
// quirk), the selection marks and the repaint flag, and the typed getters.
#include "documento/SeleccionEntidades.h"

#include <cstdint>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "documento/Dibujo.h"
#include "entidades/EntidadDesconocida.h"
#include "entidades/Linea.h"
#include "entidades/Plano.h"
#include "entidades/Poligono.h"
#include "entidades/Polilinea.h"
#include "entidades/Punto.h"
#include "entidades/PuntoControl.h"
#include "entidades/SistemaLocal.h"

namespace
{

using cad::Capa;
using cad::ColorCapa;
using cad::Dibujo;
using cad::Entidad;
using cad::Punto3;
using cad::SeleccionEntidades;
using Lista = std::vector<Entidad*>;

int64_t handle(const Entidad* e)
{
    return static_cast<int64_t>(reinterpret_cast<intptr_t>(e));
}

template <class E>
E* inserta(Dibujo& d, E* e, const char* capa = nullptr)
{
    if (capa != nullptr)
    {
        e->asignaCapa(d.buscaCapa(capa));
    }
    d.nuevaEntidad(e);
    return e;
}

// The five starting kinds: empty; all in list order, each once; marked (bit 1 or 8) and
// unmarked (bit 4 alone counts as unmarked); the last created entity, or nothing once that is
// cleared. Every selection refers to its drawing.
TEST(SeleccionNueva, cincoTipos)
{
    Dibujo d;
    d.nuevoDocumento();
    auto* a = inserta(d, new cad::Punto(1, 0, 0));
    auto* b = inserta(d, new cad::Punto(2, 0, 0));
    auto* c = inserta(d, new cad::Punto(3, 0, 0));
    auto* e = inserta(d, new cad::Punto(4, 0, 0));
    a->setSeleccionada(true);
    b->setResaltada(true);
    c->setOculta(true);
    EXPECT_EQ(d.nuevaSeleccion(Dibujo::kSeleccionVacia).numeroEntidades(), 0U);
    EXPECT_EQ(d.nuevaSeleccion(Dibujo::kSeleccionTodas).entidades, (Lista{a, b, c, e}));
    // A list that holds an entity twice still gives it once, at its first place.
    d.entidades.insert(d.entidades.begin() + 2, e);
    EXPECT_EQ(d.nuevaSeleccion(Dibujo::kSeleccionTodas).entidades, (Lista{a, b, e, c}));
    d.entidades.erase(d.entidades.begin() + 2);
    EXPECT_EQ(d.nuevaSeleccion(Dibujo::kSeleccionMarcadas).entidades, (Lista{a, b}));
    EXPECT_EQ(d.nuevaSeleccion(Dibujo::kSeleccionNoMarcadas).entidades, (Lista{c, e}));
    const SeleccionEntidades ultima = d.nuevaSeleccion(Dibujo::kSeleccionUltima);
    EXPECT_EQ(ultima.entidades, (Lista{e}));
    EXPECT_EQ(ultima.dibujo, &d);
    d.ultimaEntidad = nullptr;
    EXPECT_EQ(d.nuevaSeleccion(Dibujo::kSeleccionUltima).numeroEntidades(), 0U);
}

// By handle: a handle of the drawing is added once; an unknown handle, a duplicate, and a set
// without a drawing give false. The last entity likewise enters once.
TEST(SeleccionInclusion, manejadorYUltima)
{
    Dibujo d;
    d.nuevoDocumento();
    auto* a = inserta(d, new cad::Punto(1, 0, 0));
    auto* b = inserta(d, new cad::Punto(2, 0, 0));
    SeleccionEntidades s = d.nuevaSeleccion(Dibujo::kSeleccionVacia);
    EXPECT_FALSE(s.incluyeManejadorEntidad(12345));
    EXPECT_TRUE(s.incluyeManejadorEntidad(handle(a)));
    EXPECT_FALSE(s.incluyeManejadorEntidad(handle(a)));
    EXPECT_TRUE(s.incluyeUltimaEntidad());
    EXPECT_FALSE(s.incluyeUltimaEntidad());
    EXPECT_EQ(s.entidades, (Lista{a, b}));
    SeleccionEntidades suelta;
    EXPECT_FALSE(suelta.incluyeManejadorEntidad(handle(a)));
    EXPECT_FALSE(suelta.incluyeUltimaEntidad());
    EXPECT_EQ(suelta.numeroEntidades(), 0U);
}

// `unicos` looks for the drawing's last entity in the set, not for the candidate: while that
// entity stands in a non-empty set nothing is added and the count is 0; when it does not,
// candidates already in the set are added again. Without `unicos` every call adds. Layer
// names compare exactly.
TEST(SeleccionInclusion, capaYFiltroConUnicos)
{
    Dibujo d;
    d.nuevoDocumento();
    d.nuevaCapa(new Capa("x", ColorCapa(1), 1));
    auto* x1 = inserta(d, new cad::Punto(1, 0, 0), "x");
    auto* x2 = inserta(d, new cad::Linea(Punto3<double>(0, 0, 0), Punto3<double>(1, 1, 1)), "x");
    auto* ultima = inserta(d, new cad::Punto(3, 0, 0));
    SeleccionEntidades s = d.nuevaSeleccion(Dibujo::kSeleccionUltima);
    EXPECT_EQ(s.incluyeCapa("x", true), 0U);
    EXPECT_EQ(s.entidades, (Lista{ultima}));
    EXPECT_EQ(s.incluyeCapa("x", false), 2U);
    EXPECT_EQ(s.incluyeCapa("x", false), 2U);
    EXPECT_EQ(s.entidades, (Lista{ultima, x1, x2, x1, x2}));
    EXPECT_EQ(s.incluyeFiltroEntidad("Pt1", true), 0U);

    SeleccionEntidades t = d.nuevaSeleccion(Dibujo::kSeleccionVacia);
    EXPECT_EQ(t.incluyeCapa("X", true), 0U);
    EXPECT_EQ(t.incluyeCapa("x", true), 2U);
    EXPECT_EQ(t.incluyeCapa("x", true), 2U);
    EXPECT_EQ(t.entidades, (Lista{x1, x2, x1, x2}));
    EXPECT_EQ(t.incluyeFiltroEntidad("Pt1", true), 2U);
    EXPECT_EQ(t.numeroEntidades(), 6U);
    EXPECT_EQ(t.incluyeFiltroEntidad("Pt1", true), 0U);

    SeleccionEntidades u = d.nuevaSeleccion(Dibujo::kSeleccionVacia);
    EXPECT_EQ(u.incluyeFiltroEntidad("Ln1", false), 1U);
    EXPECT_EQ(u.incluyeFiltroEntidad("ln1", false), 0U);
    EXPECT_EQ(u.entidades, (Lista{x2}));
}

// marcaSeleccion and quitaSeleccion set bit 1 only, and ask for a repaint only when some
// entity changed; a highlighted entity that is not selected is no change to quitaSeleccion.
// Neither marks the document changed.
TEST(SeleccionMarcas, repintadoSoloConCambio)
{
    Dibujo d;
    d.nuevoDocumento();
    auto* a = inserta(d, new cad::Punto(1, 0, 0));
    auto* b = inserta(d, new cad::Punto(2, 0, 0));
    d.borraMarcaCambios();
    SeleccionEntidades s = d.nuevaSeleccion(Dibujo::kSeleccionTodas);
    d.redibujar = false;
    s.marcaSeleccion();
    EXPECT_TRUE(d.redibujar);
    EXPECT_EQ(a->estado, 1U);
    EXPECT_EQ(b->estado, 1U);
    d.redibujar = false;
    s.marcaSeleccion();
    EXPECT_FALSE(d.redibujar);
    s.quitaSeleccion();
    EXPECT_TRUE(d.redibujar);
    EXPECT_EQ(a->estado, 0U);
    d.redibujar = false;
    s.quitaSeleccion();
    EXPECT_FALSE(d.redibujar);
    b->setResaltada(true);
    s.quitaSeleccion();
    EXPECT_FALSE(d.redibujar);
    EXPECT_EQ(b->estado, 8U);
    EXPECT_FALSE(d.hayCambios());
}

// Typed getters test the tag: a Linea answers getEntidadLinea, a Punto gives null, a bad
// index or an empty set throws std::out_of_range. Both polyline tags answer
// getEntidadPolilinea; a Poligono, whose tag is also "Pg1", gives null. quitaNubes drops
// every "Np1" entity keeping the others' order; getEntidadesLinea makes a new selection of
// the same drawing with the lines alone; quitaEntidad erases a position.
TEST(SeleccionGetters, porEtiquetaYFiltros)
{
    Dibujo d;
    d.nuevoDocumento();
    std::vector<Punto3<double>> v;
    for (int i = 0; i < 1000; ++i)
    {
        v.emplace_back(i, (i * i) % 5, i % 3);
    }
    auto* p = inserta(d, new cad::Punto(1, 0, 0));
    auto* l = inserta(d, new cad::Linea(Punto3<double>(0, 0, 0), Punto3<double>(1, 0, 0)));
    auto* corta = inserta(d, new cad::Polilinea(3, v.data()));
    auto* larga = inserta(d, new cad::Polilinea(1000, v.data()));
    auto* poligono = inserta(d, new cad::Poligono(3, v.data()));
    auto* plano = inserta(d, new cad::Plano(3, v.data()));
    auto* sistema = inserta(d, new cad::SistemaLocal());
    auto* control = inserta(d, new cad::PuntoControl("P", Punto3<double>(0, 0, 0)));
    auto* nube = inserta(d, new cad::EntidadDesconocida("Np1"));
    auto* l2 = inserta(d, new cad::Linea(Punto3<double>(0, 0, 0), Punto3<double>(2, 0, 0)));
    inserta(d, new cad::EntidadDesconocida("Np1"));
    SeleccionEntidades s = d.nuevaSeleccion(Dibujo::kSeleccionTodas);
    EXPECT_EQ(s.getEntidadLinea(0), nullptr);
    EXPECT_EQ(s.getEntidadLinea(1), l);
    EXPECT_EQ(s.getEntidadPolilinea(2), corta);
    EXPECT_STREQ(larga->etiqueta(), "PolyLn1");
    EXPECT_EQ(s.getEntidadPolilinea(3), larga);
    EXPECT_STREQ(poligono->etiqueta(), "Pg1");
    EXPECT_EQ(s.getEntidadPolilinea(4), nullptr);
    EXPECT_EQ(s.getEntidadPolilinea(1), nullptr);
    EXPECT_EQ(s.getEntidadPlano(5), plano);
    EXPECT_EQ(s.getEntidadPlano(0), nullptr);
    EXPECT_EQ(s.getEntidadSistemaLocal(6), sistema);
    EXPECT_EQ(s.getEntidadPuntoControl(7), control);
    EXPECT_EQ(s.getEntidadPuntoControl(0), nullptr);
    EXPECT_EQ(s.getEntidadNube(8), nube);
    EXPECT_EQ(s.getEntidadNube(9), nullptr);
    EXPECT_EQ(s.getEntidad(0), p);
    EXPECT_THROW(s.getEntidad(11), std::out_of_range);
    EXPECT_THROW(s.getEntidadLinea(11), std::out_of_range);
    const SeleccionEntidades vacia = d.nuevaSeleccion(Dibujo::kSeleccionVacia);
    EXPECT_THROW(vacia.getEntidadLinea(0), std::out_of_range);
    EXPECT_THROW(vacia.getEntidadPolilinea(0), std::out_of_range);

    const SeleccionEntidades lineas = s.getEntidadesLinea();
    EXPECT_EQ(lineas.dibujo, &d);
    EXPECT_EQ(lineas.entidades, (Lista{l, l2}));
    s.quitaNubes();
    EXPECT_EQ(s.entidades, (Lista{p, l, corta, larga, poligono, plano, sistema, control, l2}));
    s.quitaEntidad(1);
    EXPECT_EQ(s.numeroEntidades(), 8U);
    EXPECT_EQ(s.getEntidad(1), corta);
}

}  // namespace
