// Undo and redo: the steps, who owns an entity while a step holds it, layer steps, vetoes.
// Under the sanitizer build every test here also checks that nothing leaks or is freed twice.
#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "editor/Comando.h"
#include "editor/EditorDibujo.h"
#include "entidades/Linea.h"
#include "entidades/Punto.h"
#include "soporte/FicheroTemporal.h"

namespace
{

using cad::Dibujo;
using cad::EditorDibujo;
using cad::Entidad;
using cad::Punto;
using cad::Punto3;

int64_t handle(const Entidad* e)
{
    return static_cast<int64_t>(reinterpret_cast<intptr_t>(e));
}

// A document file holding only `e` (or nothing), for an editor to load.
std::string documento(const std::string& nombre, Entidad* e = nullptr)
{
    const std::string ruta = cad::prueba::rutaTemporal(nombre);
    Dibujo otro;
    otro.nuevoDocumento();
    if (e != nullptr)
    {
        otro.nuevaEntidad(e);
    }
    cad::SerializadorBinarioEscritura w(ruta.c_str());
    otro.escribe(w);
    w.cierra();
    return ruta;
}

struct Editor
{
    Dibujo d;
    EditorDibujo* ed = nullptr;
    Editor()
    {
        d.nuevoDocumento();
        ed = new EditorDibujo(&d, nullptr);
    }
    ~Editor() { delete ed; }
};

TEST(Deshacer, tresInsercionesYTresDeshacerDejanElDibujoComoEstaba)
{
    Editor e;
    e.ed->deshacer();  // empty stacks: nothing happens
    e.ed->rehacer();
    EXPECT_FALSE(e.ed->puedeDeshacer() || e.ed->puedeRehacer());
    Entidad* a = new Punto(1, 0, 0);
    Entidad* b = new Punto(2, 0, 0);
    Entidad* c = new Punto(3, 0, 0);
    ASSERT_TRUE(e.ed->nuevaEntidad(a));
    ASSERT_TRUE(e.ed->nuevaEntidad(b));
    ASSERT_TRUE(e.ed->nuevaEntidad(c));
    EXPECT_EQ(e.d.entidades.size(), 3U);
    e.ed->deshacer();
    e.ed->deshacer();
    e.ed->deshacer();
    EXPECT_TRUE(e.d.entidades.empty());
    EXPECT_FALSE(e.ed->puedeDeshacer());
    EXPECT_TRUE(e.ed->puedeRehacer());

    // Redo gives back the very same objects, in their order.
    e.ed->rehacer();
    e.ed->rehacer();
    ASSERT_EQ(e.d.entidades.size(), 2U);
    EXPECT_EQ(e.d.entidades[0], a);
    EXPECT_EQ(e.d.entidades[1], b);

    // A new step drops the redo side: c, held only by its step, goes with it.
    e.ed->nuevaEntidad(new Punto(4, 0, 0));
    EXPECT_FALSE(e.ed->puedeRehacer());
    EXPECT_EQ(e.ed->comandosDeshacer.size(), 3U);
}

// The host's reactor sees each entity's handle and kind (1 inserted, 0 deleted); its veto
// leaves both stacks and the drawing as they were. The editor ends with an undone insertion
// held only by its redo step, which must free it (checked by the sanitizer build).
TEST(Deshacer, elReactorVeManejadorYTipoYSuVetoDejaAmbasPilas)
{
    Editor e;
    std::vector<std::pair<int64_t, int>> visto;
    bool permite = true;
    e.ed->setReactorInsercionEntidades(
        [&](int64_t h, EditorDibujo::enumInsercionEntidades t)
        {
            visto.emplace_back(h, t);
            return permite;
        });
    auto* p = new Punto(1, 0, 0);
    auto* q = new Punto(2, 0, 0);
    e.ed->nuevaEntidad(p);
    e.ed->nuevaEntidad(q);
    e.ed->deshacer();
    permite = false;
    Punto rechazado(9, 9, 9);
    EXPECT_FALSE(e.ed->nuevaEntidad(&rechazado));
    EXPECT_EQ(e.ed->comandosDeshacer.size(), 1U);
    EXPECT_EQ(e.ed->comandosRehacer.size(), 1U);
    EXPECT_EQ(e.d.entidades.size(), 1U);
    EXPECT_FALSE(e.ed->borraEntidad(p));
    EXPECT_EQ(e.d.entidades.size(), 1U);
    EXPECT_EQ(e.ed->comandosRehacer.size(), 1U);
    EXPECT_EQ(visto, (std::vector<std::pair<int64_t, int>>{
                         {handle(p), 1}, {handle(q), 1}, {handle(&rechazado), 1}, {handle(p), 0}}));
}

TEST(Deshacer, deshacerUnBorradoDevuelveLaMismaEntidadConSuManejador)
{
    Editor e;
    auto* l = new cad::Linea(Punto3<double>(0, 0, 0), Punto3<double>(10, 0, 0));
    e.ed->nuevaEntidad(l);
    e.ed->nuevaEntidad(new Punto(5, 5, 0));
    const int64_t h = handle(l);

    ASSERT_TRUE(e.ed->borraEntidad(l));
    EXPECT_EQ(e.d.buscaEntidad(h), nullptr);
    EXPECT_EQ(e.d.entidades.size(), 1U);

    e.ed->deshacer();
    EXPECT_EQ(e.d.buscaEntidad(h), l);
    EXPECT_EQ(l->extremo, Punto3<double>(10, 0, 0));  // alive and intact
    e.ed->rehacer();
    EXPECT_EQ(e.d.buscaEntidad(h), nullptr);
    e.ed->deshacer();
    e.ed->rehacer();
    // The editor goes with the deletion done: its step frees the line (checked by the
    // sanitizer build, which also catches a second free by the drawing).
}

TEST(Deshacer, moverNumericoUnPasoPorEntidad)
{
    Editor e;
    auto* a = new Punto(0, 0, 0);
    auto* b = new Punto(1, 1, 1);
    e.ed->nuevaEntidad(a);
    e.ed->nuevaEntidad(b);
    const cad::Vector3D<double> v(10, 0, -1);
    e.ed->registraComando(new cad::ComandoMoverEntidad(&e.d, a, v));
    e.ed->registraComando(new cad::ComandoMoverEntidad(&e.d, b, v));
    EXPECT_EQ(*a->coordenada(0), Punto3<double>(10, 0, -1));
    EXPECT_EQ(*b->coordenada(0), Punto3<double>(11, 1, 0));
    e.ed->deshacer();
    EXPECT_EQ(*b->coordenada(0), Punto3<double>(1, 1, 1));
    EXPECT_EQ(*a->coordenada(0), Punto3<double>(10, 0, -1));
}

TEST(DeshacerCapas, borrarUnaCapaYDeshacerDevuelveNombreColorYEntidades)
{
    Editor e;
    auto* capa = new cad::Capa("muros", cad::ColorCapa(3), 1);
    ASSERT_TRUE(e.ed->nuevaCapa(capa, false));
    const std::string actual = e.d.capaActual()->nombre;
    auto* l1 = new cad::Linea(Punto3<double>(0, 0, 0), Punto3<double>(1, 0, 0));
    auto* l2 = new cad::Linea(Punto3<double>(0, 1, 0), Punto3<double>(1, 1, 0));
    auto* otro = new Punto(7, 7, 7);
    l1->asignaCapa(capa);
    l2->asignaCapa(capa);
    e.ed->nuevaEntidad(l1);
    e.ed->nuevaEntidad(otro);
    e.ed->nuevaEntidad(l2);

    ASSERT_TRUE(e.ed->borraCapa("muros"));
    EXPECT_EQ(e.d.buscaCapa("muros"), nullptr);
    ASSERT_EQ(e.d.entidades.size(), 1U);
    EXPECT_EQ(e.d.entidades[0], otro);

    e.ed->deshacer();
    cad::Capa* vuelta = e.d.buscaCapa("muros");
    ASSERT_NE(vuelta, nullptr);
    EXPECT_EQ(vuelta->color.colorCAD, 3);
    ASSERT_EQ(e.d.entidades.size(), 3U);
    EXPECT_EQ(e.d.buscaEntidad(handle(l1)), l1);
    EXPECT_EQ(e.d.buscaEntidad(handle(l2)), l2);
    // The lines stand on the layer of the list, so its switches reach them.
    EXPECT_EQ(l1->capaEntidad(), vuelta);
    EXPECT_EQ(l2->capaEntidad(), vuelta);
    e.d.visibilidadCapa("muros", false);
    EXPECT_FALSE(l1->capaVisible());
    EXPECT_EQ(e.d.capaActual()->nombre, actual);

    // Redo deletes again; the editor's end then frees both lines with the step.
    e.ed->rehacer();
    EXPECT_EQ(e.d.buscaCapa("muros"), nullptr);
    EXPECT_EQ(e.d.entidades.size(), 1U);
}

TEST(DeshacerCapas, renombrarColorYVisibilidadVuelvenExactos)
{
    Editor e;
    ASSERT_TRUE(e.ed->nuevaCapa(new cad::Capa("Cota ñ.1", cad::ColorCapa(5), 1), false));
    cad::Capa* capa = e.d.buscaCapa("Cota ñ.1");

    ASSERT_TRUE(e.ed->renombraCapa("Cota ñ.1", "cotas"));
    EXPECT_EQ(capa->nombre, "cotas");
    EXPECT_FALSE(e.ed->renombraCapa("cotas", "0"));  // a name already taken
    e.ed->deshacer();
    EXPECT_EQ(capa->nombre, "Cota ñ.1");

    ASSERT_TRUE(e.ed->colorCapa("Cota ñ.1", static_cast<int32_t>(0x11223344)));
    EXPECT_EQ(capa->color.colorCAD, 512);
    EXPECT_EQ(capa->color.mColor.rojo, 0x11);
    EXPECT_EQ(capa->color.mColor.verde, 0x22);
    EXPECT_EQ(capa->color.mColor.azul, 0x33);
    EXPECT_EQ(capa->color.mColor.alfa, 0x44);
    e.ed->deshacer();
    EXPECT_EQ(capa->color.colorCAD, 5);

    e.d.visibilidadCapa("Cota ñ.1", false);
    ASSERT_TRUE(e.ed->muestraCapa("Cota ñ.1"));
    EXPECT_TRUE(e.d.capaVisible("Cota ñ.1"));
    e.ed->deshacer();
    EXPECT_FALSE(e.d.capaVisible("Cota ñ.1"));

    EXPECT_FALSE(e.ed->borraCapa("no existe"));
    EXPECT_FALSE(e.ed->colorCapa("no existe", 0));
    EXPECT_FALSE(e.ed->muestraCapa("no existe"));
}

TEST(DeshacerCapas, avisosAlAnfitrion)
{
    Editor e;
    std::vector<int> avisos;
    e.ed->setActualiza([&](EditorDibujo::actualiza_e t) { avisos.push_back(t); });
    ASSERT_TRUE(e.ed->nuevaCapa(new cad::Capa("a", cad::ColorCapa(1), 1), true));
    EXPECT_EQ(avisos, (std::vector<int>{EditorDibujo::kCapaActual, EditorDibujo::kCapas}));
    avisos.clear();
    e.ed->borraCapa("a");
    EXPECT_EQ(avisos, (std::vector<int>{EditorDibujo::kCapas}));
    avisos.clear();
    e.ed->deshacer();
    EXPECT_EQ(avisos, (std::vector<int>{EditorDibujo::kControl}));
}

// The undo stacks survive a load into the same drawing, but their steps name entities of
// the former contents: they no longer act, so undoing after a load changes nothing.
TEST(Deshacer, trasCargarOtroDocumentoLosPasosViejosNoActuan)
{
    Editor e;
    const std::string ruta = documento("cargado.tcad", new Punto(1, 1, 1));
    e.ed->nuevaEntidad(new Punto(5, 5, 5));
    auto* borrada = new Punto(6, 6, 6);
    e.ed->nuevaEntidad(borrada);
    e.ed->borraEntidad(borrada);
    ASSERT_TRUE(e.ed->cargaDocumento(ruta.c_str()));
    ASSERT_EQ(e.d.entidades.size(), 1U);
    EXPECT_TRUE(e.ed->puedeDeshacer());
    const Entidad* cargada = e.d.entidades[0];
    e.ed->deshacer();
    e.ed->deshacer();
    EXPECT_EQ(e.d.entidades.size(), 1U);
    EXPECT_EQ(e.d.entidades[0], cargada);
    e.ed->rehacer();
    EXPECT_EQ(e.d.entidades.size(), 1U);
}

// A move step whose entity was deleted without a step (the facade's plain deletion) does not
// touch freed memory; a layer step does not outlive the layers of a load. The sanitizer build
// is what sees the difference.
TEST(Deshacer, pasosQueSobrevivenASusObjetosNoLosTocan)
{
    Editor e;
    auto* p = new Punto(0, 0, 0);
    e.ed->nuevaEntidad(p);
    e.ed->registraComando(new cad::ComandoMoverEntidad(&e.d, p, cad::Vector3D<double>(1, 0, 0)));
    ASSERT_TRUE(e.d.borraEntidad(p, true));
    e.ed->deshacer();
    e.ed->rehacer();

    ASSERT_TRUE(e.ed->nuevaCapa(new cad::Capa("vieja", cad::ColorCapa(2), 1), false));
    ASSERT_TRUE(e.ed->renombraCapa("vieja", "nueva"));
    ASSERT_TRUE(e.ed->colorCapa("nueva", 0x10203040));
    ASSERT_TRUE(e.ed->cargaDocumento(documento("sinCapas.tcad").c_str()));
    e.ed->deshacer();
    e.ed->deshacer();
    EXPECT_EQ(e.d.buscaCapa("vieja"), nullptr);
    EXPECT_EQ(e.d.numeroCapas(), 1);
}

}  // namespace
