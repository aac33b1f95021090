// The drawing: new document, entities, layers, materials, styles, variables, views, state
// variables, the document file and the paint loop.
#include "documento/Dibujo.h"

#include <cstdint>
#include <future>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "base/Admisible.h"
#include "base/Configuracion.h"
#include "editor/EditorDibujo.h"
#include "entidades/Entidad.h"
#include "soporte/EntidadPrueba.h"
#include "soporte/FicheroTemporal.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::Capa;
using cad::ColorCapa;
using cad::Dibujo;
using cad::EditorDibujo;
using cad::EstiloTexto;
using cad::Punto3;
using cad::Vector3D;
using cad::prueba::PantallaGrabadora;
using Lineas = std::vector<std::string>;

// A point whose box is itself; it paints one dibujaPunto and keeps the style handed to it.
class PuntoPrueba : public cad::prueba::EntidadPrueba
{
public:
    explicit PuntoPrueba(const Punto3<double>& p) : posicion(p) {}
    const char* etiqueta() const override { return "tP1"; }
    void escribe(cad::SerializadorEscrituraBase&) override {}
    bool lee(cad::SerializadorLecturaBase&) override { return false; }
    Entidad* clona() const override { return new PuntoPrueba(*this); }
    cad::Rect3<double> extension() const override { return {posicion, posicion}; }
    void dibuja(cad::PantallaCAD& p) const override
    {
        p.dibujaPunto(posicion, 0x11223344, nullptr);
    }
    void setEstiloTexto(EstiloTexto* e) override { estilo = e; }
    Punto3<double> posicion;
    EstiloTexto* estilo = nullptr;
};

PuntoPrueba* punto(double x, double y, double z)
{
    return new PuntoPrueba({x, y, z});
}

// What getPlanoReferencia gives into arguments that start as (7,7,7), (7,7,7), (1,2,3,4).
auto planoDe(Dibujo& d)
{
    Punto3<double> o{7, 7, 7};
    Vector3D<double> n{7, 7, 7};
    cad::Plano3D<double> pl(1, 2, 3, 4);
    d.getPlanoReferencia(o, n, pl);
    return std::tuple(o, n, pl);
}

// A new document and a recording display; the suites below share it under their own names.
class DibujoNuevo : public ::testing::Test
{
protected:
    DibujoNuevo() { d.nuevoDocumento(); }
    Dibujo d;
    PantallaGrabadora p;
};
using DibujoEntidades = DibujoNuevo;
using DibujoCapas = DibujoNuevo;
using DibujoTablas = DibujoNuevo;
using DibujoEstado = DibujoNuevo;
using DibujoPintado = DibujoNuevo;

// New document, beyond what the facade's test of it sees (layer "0", material 1, style and
// variables): the view counted as applied, layer flags 1, one style, colour by layer and,
// the state being applied last, the plane at the origin facing +z. A second nuevoDocumento
// keeps counting material ids.
TEST_F(DibujoNuevo, estadoInicial)
{
    EXPECT_TRUE(!d.hayCambios() && d.vistaAplicada);
    EXPECT_EQ(std::tuple(d.capaActual()->flags, d.estilosTexto.size(), d.colorActual.colorCAD),
              std::tuple(1, 1U, 256));
    EXPECT_EQ(planoDe(d), std::tuple(Punto3<double>(0, 0, 0), Vector3D<double>(0, 0, 1),
                                     cad::Plano3D<double>(0, 0, 1, 0)));
    EXPECT_EQ(d.nuevoMaterial(3, ""), 2);
    d.nuevoDocumento();  // the id generator goes on counting
    EXPECT_EQ(d.material(0)->id, 3);
}

// A drawing that never had nuevoDocumento has no plane: getPlanoReferencia leaves its
// arguments alone, the first entity founds the plane at its centre with the minimum z, and
// the second does not move it.
TEST(DibujoSinDocumento, primeraEntidadFundaElPlano)
{
    Dibujo d;
    EXPECT_EQ(planoDe(d), std::tuple(Punto3<double>(7, 7, 7), Vector3D<double>(7, 7, 7),
                                     cad::Plano3D<double>(1, 2, 3, 4)));
    d.nuevaEntidad(punto(1, 2, 3));
    d.nuevaEntidad(punto(5, 6, -4));
    EXPECT_EQ(planoDe(d), std::tuple(Punto3<double>(1, 2, 3), Vector3D<double>(0, 0, 1),
                                     cad::Plano3D<double>(0, 0, 1, -3)));
}

// nuevaEntidad binds a null layer to the current one with id 0, gives colour 256 the current
// colour (index and bytes), hands over the current style, grows the extension, marks the
// document, and leaves an existing plane where it is.
TEST_F(DibujoEntidades, nuevaEntidadAplicaCapaColorEstiloYExtension)
{
    d.nuevaCapa(new Capa("Ejes", ColorCapa(1), 1));
    d.setColorActualRGB(0x102030);
    auto* a = punto(1, 2, 3);
    EXPECT_TRUE(d.nuevaEntidad(a));
    EXPECT_TRUE(d.hayCambios());
    EXPECT_EQ(std::tuple(a->capa.get(), a->capa.id, a->estilo),
              std::tuple(d.capaActual(), 0U, d.estiloTextoActual()));
    EXPECT_EQ(std::tuple(a->color.colorCAD, a->color.ABGR()), std::tuple(512, 0xFF302010U));
    auto* b = punto(-1, 5, 0);
    b->capa.set(d.buscaCapa("Ejes"), 0);
    b->color.setIndiceColor(3);
    d.nuevaEntidad(b);
    EXPECT_EQ(std::tuple(b->capa.get(), b->color.colorCAD), std::tuple(d.buscaCapa("Ejes"), 3));
    EXPECT_EQ(d.extension, cad::Rect3<double>({-1, 2, 0}, {1, 5, 3}));
    EXPECT_EQ(d.handleUltimaEntidad(), reinterpret_cast<intptr_t>(b));
    EXPECT_EQ(d.origenPlano, Punto3<double>(0, 0, 0));
}

// borraEntidad removes by address and drops the selection; the last handle goes stale and
// buscaEntidad no longer finds it; the extension does not shrink. Selecting and deselecting
// ask for a paint but never mark the document changed.
TEST_F(DibujoEntidades, borrarYSeleccionar)
{
    auto* a = punto(0, 0, 0);
    auto* b = punto(4, 4, 4);
    d.nuevaEntidad(a);
    d.nuevaEntidad(b);
    d.borraMarcaCambios();
    d.redibujar = false;
    d.selecciona(b);
    EXPECT_NE(b->estado & cad::kEstadoSeleccionada, 0U);
    EXPECT_TRUE(d.redibujar && !d.hayCambios());
    const int64_t h = d.handleUltimaEntidad();
    EXPECT_EQ(d.buscaEntidad(h), b);
    EXPECT_EQ(d.buscaEntidad(0), nullptr);
    EXPECT_TRUE(d.borraEntidad(b, false));
    EXPECT_TRUE(b->estado == 0U && d.hayCambios());
    EXPECT_FALSE(d.borraEntidad(b, false));
    delete b;
    EXPECT_EQ(d.handleUltimaEntidad(), h);
    EXPECT_EQ(d.buscaEntidad(h), nullptr);
    EXPECT_EQ(d.extension.maximo, Punto3<double>(4, 4, 4));
    d.borraMarcaCambios();
    d.selecciona(a);
    d.deselecciona();
    EXPECT_EQ(a->estado, 0U);
    EXPECT_FALSE(d.hayCambios());
}

// zoomExtension: an empty drawing sends nothing and keeps its marks; otherwise a box flat at
// the centre's z, scaled per axis, goes to the display, the camera is read back into the
// working view, and the zoom counts as an edit.
TEST_F(DibujoEntidades, zoomExtension)
{
    d.zoomExtension(1.0, &p);
    EXPECT_TRUE(p.llamadas.empty());
    EXPECT_TRUE(!d.hayCambios() && d.vistaAplicada);
    d.nuevaEntidad(punto(0, 0, 1));
    d.nuevaEntidad(punto(10, 4, 5));
    d.borraMarcaCambios();
    p.posicion = {3, 4, 50};
    p.zoom = 2.5;
    d.zoomExtension(2.0, 0.5, &p);
    EXPECT_EQ(p.llamadasDe("zoomExtension"), Lineas{"zoomExtension (-5,1,3) (15,3,3)"});
    EXPECT_EQ(std::tuple(d.vistaActual->posicion, d.vistaActual->zoom),
              std::tuple(Punto3<double>(3, 4, 50), 2.5));
    EXPECT_TRUE(d.hayCambios() && !d.vistaAplicada);
    d.zoomExtension(1.0, &p);
    EXPECT_EQ(p.llamadasDe("zoomExtension").back(), "zoomExtension (0,0,3) (10,4,3)");
}

// The current layer can't move to a hidden or locked layer; naming the current one is true
// without a mark; "0" can't be locked; locking the current layer makes "0" current. Marks of
// the layer edits: renaming to the same name clears hayCambios; visibility marks only on a
// change; colorCapa(nombre, rgb) marks only when rgb equals the old RGBA() packing.
TEST_F(DibujoCapas, capaActualBloqueoYMarcas)
{
    d.nuevaCapa(new Capa("Oculta", ColorCapa(2), 0));
    d.nuevaCapa(new Capa("Fija", ColorCapa(3), 3));
    d.nuevaCapa(new Capa("Ejes", ColorCapa(4), 1));
    Capa repetida("Ejes", ColorCapa(5), 1);
    EXPECT_FALSE(d.nuevaCapa(&repetida));
    EXPECT_FALSE(d.capaActual("Oculta"));
    EXPECT_FALSE(d.capaActual("Fija"));
    EXPECT_TRUE(d.capaActual("0"));
    EXPECT_FALSE(d.hayCambios());
    EXPECT_TRUE(d.capaActual("Ejes"));
    EXPECT_TRUE(d.hayCambios());
    EXPECT_FALSE(d.bloqueaCapa("0", true));
    EXPECT_FALSE(d.bloqueaCapa("Nada", true));
    EXPECT_TRUE(d.bloqueaCapa("Ejes", true) && d.capaBloqueada("Ejes"));
    EXPECT_EQ(d.capaActual(), d.buscaCapa("0"));
    EXPECT_TRUE(d.bloqueaCapa("Ejes", false));
    EXPECT_EQ(d.buscaCapa("Ejes")->flags, 1);

    d.edicionHecha();
    EXPECT_TRUE(d.renombraCapa("0", "0"));
    EXPECT_FALSE(d.hayCambios());
    d.redibujar = false;
    EXPECT_TRUE(d.visibilidadCapa("0", true));
    EXPECT_FALSE(d.hayCambios() || d.redibujar);
    EXPECT_TRUE(d.visibilidadCapa("0", false));
    EXPECT_TRUE(d.hayCambios() && d.redibujar);
    d.borraMarcaCambios();
    d.redibujar = false;
    EXPECT_TRUE(d.colorCapa("0", 0xFF0000));
    EXPECT_EQ(d.colorCapa("0"), 0xFF0000FFU);
    EXPECT_EQ(d.capaActual()->color.colorCAD, 512);
    EXPECT_FALSE(d.hayCambios() || d.redibujar);
    EXPECT_TRUE(d.colorCapa("0", 0xFF0000FF));  // equals the old RGBA(): the marks go up
    EXPECT_EQ(d.colorCapa("0"), 0xFFFF0000U);
    EXPECT_TRUE(d.hayCambios() && d.redibujar);
    EXPECT_FALSE(d.colorCapa("Nada", 0));
    EXPECT_EQ(d.colorCapa("Nada"), 0xFFFFFFFFU);
}

// posicionaCapa on an existing hidden layer shows it and makes it current, the argument
// staying with the caller; a new name is only appended. Deleting the current layer removes
// its entities and takes it out of the list while capaActual still names the removed,
// living object.
TEST_F(DibujoCapas, posicionaYBorraCapaActual)
{
    d.nuevaEntidad(punto(0, 0, 0));
    d.nuevaCapa(new Capa("A", ColorCapa(2), 0));
    Capa otra("A", ColorCapa(5), 1);
    EXPECT_TRUE(d.posicionaCapa(&otra));
    EXPECT_TRUE(d.capaVisible("A") && d.hayCambios());
    EXPECT_EQ(d.capaActual(), d.buscaCapa("A"));
    EXPECT_TRUE(d.posicionaCapa(new Capa("B", ColorCapa(3), 1)));
    EXPECT_EQ(d.capaActual(), d.buscaCapa("A"));  // a new name is appended, not made current
    d.nuevaEntidad(punto(1, 1, 1));
    d.nuevaEntidad(punto(2, 2, 2));
    d.borraMarcaCambios();
    EXPECT_FALSE(d.borraCapa("Nada"));
    EXPECT_TRUE(d.borraCapa("A"));
    EXPECT_TRUE(d.numeroCapas() == 2 && d.hayCambios());
    ASSERT_NE(d.capaActual(), nullptr);
    EXPECT_EQ(d.capaActual()->nombre, "A");
    ASSERT_EQ(d.entidades.size(), 1U);
    EXPECT_EQ(d.entidades[0]->capa.get(), d.buscaCapa("0"));
}

// Materials: the shine is clamped, a freed id is handed out again, lookups run from the end
// so the last of equal ids wins, existeMaterial reads the low 16 bits, and borraMaterial
// marks the document even for an unknown id.
TEST_F(DibujoTablas, materiales)
{
    EXPECT_EQ(d.nuevoMaterial(5, 0xFF00FF00, 64.0F, ""), 2);
    EXPECT_EQ(std::tuple(d.materialId(2)->idExterno, d.materialId(2)->brillo()),
              std::tuple(5, 1.0F));
    EXPECT_TRUE(d.hayCambios() && !d.vistaAplicada);
    EXPECT_EQ(d.nuevoMaterial(6, 0xFF0000FF, -1.0F, ""), 3);
    EXPECT_EQ(d.materialId(3)->brillo(), 0.0F);
    d.borraMaterial(2);
    EXPECT_EQ(d.materialId(2), nullptr);
    EXPECT_EQ(d.nuevoMaterial(8, "muro.png"), 2);
    auto* gemelo = new cad::Material(2);
    d.materiales.push_back(gemelo);
    EXPECT_EQ(d.materialId(2), gemelo);
    EXPECT_TRUE(d.existeMaterial(0x10000 + 3) && !d.existeMaterial(9));
    d.borraMaterial(2);
    EXPECT_EQ(d.materialId(2)->textura(), "muro.png");
    d.borraMarcaCambios();
    d.vistaAplicada = true;
    d.borraMaterial(77);
    EXPECT_TRUE(d.hayCambios() && !d.vistaAplicada);
}

// Text styles: a taken name is refused, lookup is exact, an unknown name changes nothing and
// making a style current marks the document. Deleting an absent variable asks for a paint
// and changes nothing else. Views: saving under a taken name overwrites it in place, so the
// second camera is the one activated; a bad index names ""; borraVista deletes the last view
// of a name.
TEST_F(DibujoTablas, estilosTextoVariablesYVistas)
{
    EstiloTexto repetido("standar", "Arial", 3);
    EXPECT_FALSE(d.nuevoEstiloTexto(&repetido));
    auto* rotulos = new EstiloTexto("Rotulos", "Arial", 12);
    EXPECT_TRUE(d.nuevoEstiloTexto(rotulos));
    EXPECT_EQ(d.buscaEstiloTexto("rotulos"), nullptr);
    EXPECT_FALSE(d.estiloTextoActual("Nada"));
    EXPECT_EQ(d.estiloTextoActual()->nombre, "standar");
    d.redibujar = false;
    d.borraVariable("nada");
    EXPECT_TRUE(d.redibujar && d.variables.size() == 6U);
    EXPECT_FALSE(d.hayCambios());
    EXPECT_TRUE(d.estiloTextoActual("Rotulos"));
    EXPECT_TRUE(d.estiloTextoActual() == rotulos && d.hayCambios());

    p.posicion = {1, 2, 3};
    d.guardaVistaActual(&p, "Planta");
    p.posicion = {4, 5, 6};
    p.zoom = 3.0;
    d.guardaVistaActual(&p, "Planta");
    ASSERT_EQ(d.numeroVistas(), 1);
    EXPECT_EQ(d.nombreVista(0), "Planta");
    EXPECT_EQ(d.nombreVista(-1), "");
    d.activaVista(&p, "Planta");
    EXPECT_EQ(p.llamadasDe("setCamara"), Lineas{"setCamara (4,5,6) (0,0,0)"});
    auto* copia = new cad::Vista(*d.vistas[0]);
    copia->zoom = 9.0;
    d.vistas.push_back(copia);
    d.borraVista("Planta");
    ASSERT_EQ(d.numeroVistas(), 1);
    EXPECT_EQ(d.vistas[0]->zoom, 3.0);
}

// A layer name, style name or font, texture, variable name or value, or view name one byte
// longer than the file can hold is refused by the drawing itself: the failure result where
// the operation has one, and no list, id or mark changes. The limit itself is taken.
TEST_F(DibujoTablas, unByteMasDeLoQueGuardaElFicheroNoCambiaNada)
{
    const std::string largo(cad::kLongitudMaximaCadena + 1, 'x');
    Capa capa(largo, ColorCapa(2), 1);
    EXPECT_FALSE(d.nuevaCapa(&capa));
    EXPECT_FALSE(d.posicionaCapa(&capa));
    EXPECT_FALSE(d.renombraCapa("0", largo.c_str()));
    EstiloTexto nombre(largo, "Arial", 3);
    EstiloTexto fuente("Rotulos", largo, 3);
    EXPECT_FALSE(d.nuevoEstiloTexto(&nombre));
    EXPECT_FALSE(d.nuevoEstiloTexto(&fuente));
    EXPECT_EQ(d.nuevoMaterial(5, largo), 0);
    d.redibujar = false;
    d.setVariable(largo, std::string("v"));
    d.setVariable("v", largo);
    d.setVariable(largo, 1);
    d.setVariable(largo, 1.0);
    d.setVariable(largo, 1.0, 2.0, 3.0);
    d.guardaVistaActual(&p, largo);
    EXPECT_EQ(std::tuple(d.numeroCapas(), d.capaActual()->nombre, d.estilosTexto.size(),
                         d.numeroMateriales(), d.variables.size(), d.numeroVistas()),
              std::tuple(1, "0", 1U, 1, 6U, 0));
    EXPECT_FALSE(d.hayCambios() || d.redibujar);

    const std::string justo(cad::kLongitudMaximaCadena, 'x');
    EXPECT_TRUE(d.renombraCapa("0", justo.c_str()));
    EXPECT_EQ(d.nuevoMaterial(5, justo), 2);  // the refusal took no id
    d.setVariable("v", justo);
    EXPECT_TRUE(d.existeVariable("v"));
}

// State variables: clayer, and cecolor as "%d" or, for an RGB colour (index 512, alpha 255),
// "RGB:%d" of RGBA(). Reading "RGB:" splits the number as blue, green, red from the low byte,
// so the colour comes back shifted by one byte; unknown names fall back to "0" and "standar".
TEST_F(DibujoEstado, guardaYCargaEstado)
{
    d.nuevaCapa(new Capa("Ejes", ColorCapa(1), 1));
    d.capaActual("Ejes");
    d.setColorActualIndice(3);
    d.guardaEstado();
    std::string capa;
    std::string color;
    d.getVariable("clayer", capa);
    d.getVariable("cecolor", color);
    EXPECT_EQ(capa + " " + color, "Ejes 3");
    EXPECT_EQ(d.variables.size(), 11U);
    EXPECT_FALSE(d.setColorActualIndice(512));
    d.setColorActualRGB(0xAB102030);
    EXPECT_EQ(d.colorActualABGR(), 0xFF302010U);
    d.guardaEstado();
    d.getVariable("cecolor", color);
    EXPECT_EQ(color, "RGB:270545151");
    d.setVariable("clayer", std::string("Nada"));
    d.setVariable("textstyle", std::string("Nada"));
    d.cargaEstado();
    EXPECT_EQ(std::tuple(d.colorActual.colorCAD, d.colorActualABGR(), d.capaActual()->nombre,
                         d.estiloTextoActual()->nombre),
              std::tuple(512, 0xFFFF3020U, "0", "standar"));
}

// Layers, materials, a bold style and a stored view, saved through the editor.
std::string guardaLleno(Dibujo& d, const char* nombre)
{
    d.nuevoDocumento();
    auto* ejes = new Capa("Ejes", ColorCapa(1), 3);
    ejes->estiloLinea.patron = 0xF0F0;
    d.nuevaCapa(ejes);
    d.nuevaCapa(new Capa("Cotas", ColorCapa(5), 1));
    d.nuevoMaterial(40, 0xFF00FF00, 0.25F, "");
    d.nuevoMaterial(41, "ladrillo.png");
    d.nuevoEstiloTexto(new EstiloTexto("Rotulos", "Arial", 12, true, false));
    PantallaGrabadora p;
    p.posicion = {5, 6, 7};
    p.objetivo = {1, 1, 1};
    d.guardaVistaActual(&p);
    const std::string ruta = cad::prueba::rutaTemporal(nombre);
    EditorDibujo(&d, nullptr).guardaDocumento(ruta.c_str());
    return ruta;
}

// Saved ids come from a deterministic source: a fresh drawing built the same way writes the
// same bytes, and a layer added later takes an id above the family's highest. The load
// brings the lists back (their fields are the lists' own round trips), the next material id
// follows the file's, and the stored view is sent on the next paint.
TEST(DibujoFichero, guardarYCargar)
{
    Dibujo a;
    Dibujo otro;
    const std::string ruta = guardaLleno(a, "uno.tcad");
    const auto bytes = cad::prueba::leeFichero(ruta);
    ASSERT_FALSE(bytes.empty());
    EXPECT_EQ(cad::prueba::leeFichero(guardaLleno(otro, "dos.tcad")), bytes);
    a.nuevaCapa(new Capa("Nueva", ColorCapa(2), 1));
    EditorDibujo(&a, nullptr).guardaDocumento(cad::prueba::rutaTemporal("tres.tcad").c_str());
    std::vector<uint64_t> ids;
    for (const Capa* c : a.capas)
    {
        ids.push_back(c->id);
    }
    EXPECT_EQ(ids, (std::vector<uint64_t>{1, 2, 3, 4}));

    Dibujo b;
    ASSERT_TRUE(EditorDibujo(&b, nullptr).cargaDocumento(ruta.c_str()));
    EXPECT_EQ(std::tuple(b.numeroCapas(), b.numeroMateriales(), b.estilosTexto.size()),
              std::tuple(3, 3, 2U));
    EXPECT_EQ(b.nuevoMaterial(1, ""), 4);
    PantallaGrabadora p;
    b.dibuja(p);
    EXPECT_EQ(p.llamadasDe("setCamara"), Lineas{"setCamara (5,6,7) (1,1,1)"});
}

// Drops a hold of the drawing's lock that this thread kept, as another thread sees it.
void sueltaSiRetenido(Dibujo& d)
{
    auto libre = [&d]
    {
        const bool ok = d.cerrojo().try_lock();
        if (ok)
        {
            d.cerrojo().unlock();
        }
        return ok;
    };
    if (!std::async(std::launch::async, libre).get())
    {
        d.cerrojo().unlock();
    }
}

// A paint never waits: with the lock held by another thread it returns false and sends
// nothing; a drawing not ready returns false too, and the pending paint is kept for later.
TEST_F(DibujoPintado, cerrojoOcupadoYDocumentoNoListo)
{
    std::promise<void> tomado;
    std::promise<void> soltar;
    std::thread t(
        [this, &tomado, fin = soltar.get_future()]
        {
            std::lock_guard<std::recursive_mutex> g(d.cerrojo());
            tomado.set_value();
            fin.wait();
        });
    tomado.get_future().wait();
    EXPECT_FALSE(d.dibuja(p));
    soltar.set_value();
    t.join();
    d.documentoListo = false;
    EXPECT_FALSE(d.dibuja(p));
    sueltaSiRetenido(d);
    EXPECT_TRUE(p.llamadas.empty());
    EXPECT_TRUE(d.redibujar);
}

// The display sequence of a paint with a pending view: view, background, materials by
// texture or not, both passes, camera read back. Once applied the view is not sent again. A
// view whose position equals its target is not sent and stays unapplied; without redibujar
// only the camera is read.
TEST_F(DibujoPintado, secuenciaCompleta)
{
    auto& conf = cad::Configuracion::instancia();
    const cad::Color fondoAntes = conf.color(cad::Configuracion::kFondo);
    cad::Color fondo;
    fondo.setABGR(0xFF302010);
    conf.setColor(cad::Configuracion::kFondo, fondo);
    d.nuevoMaterial(9, 0xFF0000FF, 0.5F, "img.png");
    d.nuevaEntidad(punto(1, 0, 0));
    d.vistaActual->posicion = {0, 0, 9};
    d.vistaActual->objetivo = {1, 1, 1};
    d.vistaAplicada = false;
    p.origenVista = {7, 8, 9};
    EXPECT_TRUE(d.dibuja(p));
    conf.setColor(cad::Configuracion::kFondo, fondoAntes);
    EXPECT_EQ(p.llamadas,
              (Lineas{"limpia", "setCamara (0,0,9) (1,1,1)", "getOrigenVista",
                      "setColorFondo FF302010", "nuevoMaterial 1 FFFFFFFF",
                      "nuevaTextura 2 img.png FF0000FF", "limpia", "getCursor", "setModoLinea FFFF",
                      "setModoLinea FFFF", "setGrosor 1", "dibujaPunto (1,0,0) 11223344 null",
                      "setModoLinea AAAA", "setGrosor 1", "setModoLinea FFFF", "getCamara"}));
    EXPECT_TRUE(d.vistaAplicada);
    EXPECT_EQ(d.vistaActual->referencia, Punto3<double>(7, 8, 9));
    EXPECT_EQ(d.vistaActual->direccion, Vector3D<double>(0, 0, -1));
    d.redibujar = true;
    p.llamadas.clear();
    EXPECT_TRUE(d.dibuja(p));
    EXPECT_TRUE(p.llamadasDe("setCamara").empty());

    p.llamadas.clear();
    p.posicion = {2, 2, 2};
    d.vistaActual->posicion = d.vistaActual->objetivo;
    d.vistaAplicada = false;
    EXPECT_FALSE(d.dibuja(p));
    EXPECT_EQ(p.llamadas, Lineas{"getCamara"});
    EXPECT_FALSE(d.vistaAplicada);
    EXPECT_EQ(d.vistaActual->posicion, Punto3<double>(2, 2, 2));
    p.camaraReconstruye = true;
    EXPECT_TRUE(d.dibuja(p));  // the display asked for a rebuild
}

}  // namespace
