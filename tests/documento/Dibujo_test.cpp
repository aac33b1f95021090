// The drawing: new document, entities, layers, materials, styles, variables, views, state
// variables, the document file and the paint loop.
#include "documento/Dibujo.h"

#include <algorithm>
#include <cstdint>
#include <future>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "base/Configuracion.h"
#include "base/LongitudCadena.h"
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
    void dibuja(cad::PantallaCAD& p) const override { p.dibujaPunto(posicion, 0x11223344, nullptr); }
    void setEstiloTexto(EstiloTexto* e) override { estilo = e; }
    Punto3<double> posicion;
    EstiloTexto* estilo = nullptr;
};

PuntoPrueba* punto(double x, double y, double z) { return new PuntoPrueba({x, y, z}); }

// Drops a hold of the drawing's lock that this thread kept, as another thread sees it.
void sueltaSiRetenido(Dibujo& d)
{
    auto libre = [&d] {
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

// The count field of the "Vbles.1" section of a saved file.
uint64_t cuentaVariables(const std::vector<uint8_t>& b)
{
    const char tag[] = "Vbles.1";
    const auto it = std::search(b.begin(), b.end(), tag, tag + sizeof tag);
    const size_t pos = static_cast<size_t>(it - b.begin()) + sizeof tag + 8;
    uint64_t n = 0;
    for (size_t i = 0; pos + 8 <= b.size() && i < 8; ++i)
    {
        n |= static_cast<uint64_t>(b[pos + i]) << (8 * i);
    }
    return n;
}

// New document: no changes, layer "0" (index 7, flags 1) current, material 1 with shine 1.0,
// style "standar", the six default variables in order, the view counted as applied and,
// the state being applied last, the plane at the origin facing +z. A second nuevoDocumento
// keeps counting material ids.
TEST(DibujoNuevoDocumento, estadoInicial)
{
    Dibujo d;
    d.nuevoDocumento();
    EXPECT_FALSE(d.hayCambios());
    EXPECT_TRUE(d.vistaAplicada);
    ASSERT_EQ(d.numeroCapas(), 1);
    ASSERT_EQ(d.capaActual(), d.buscaCapa("0"));
    EXPECT_EQ(d.capaActual()->color.colorCAD, 7);
    EXPECT_EQ(d.capaActual()->flags, 1);
    ASSERT_EQ(d.numeroMateriales(), 1);
    EXPECT_EQ(d.material(0)->id, 1);
    EXPECT_EQ(d.material(0)->brillo(), 1.0F);
    EXPECT_EQ(d.material(0)->color(), 0xFFFFFFFFU);
    ASSERT_EQ(d.estilosTexto.size(), 1U);
    EXPECT_EQ(d.estiloTextoActual()->nombre, "standar");
    EXPECT_EQ(d.colorActual.colorCAD, 256);
    Lineas variables;
    for (const auto* v : d.variables)
    {
        variables.push_back(v->nombre + " " + v->etiqueta());
    }
    EXPECT_EQ(variables, (Lineas{"clayer VSt", "cecolor VSt", "orgplref V3D", "normplref V3D",
                                 "cview VSt", "textstyle VSt"}));
    Punto3<double> o{9, 9, 9};
    Vector3D<double> n{9, 9, 9};
    cad::Plano3D<double> pl;
    d.getPlanoReferencia(o, n, pl);
    EXPECT_EQ(o, Punto3<double>(0, 0, 0));
    EXPECT_EQ(n, Vector3D<double>(0, 0, 1));
    EXPECT_EQ(pl, cad::Plano3D<double>(0, 0, 1, 0));
    EXPECT_EQ(d.nuevoMaterial(3, ""), 2);
    d.nuevoDocumento();  // the id generator goes on counting
    EXPECT_EQ(d.material(0)->id, 3);
}

// nuevaEntidad binds a null layer to the current one with id 0, gives colour 256 the current
// colour (index and bytes), hands over the current style, grows the extension, marks the
// document, and leaves an existing plane where it is.
TEST(DibujoEntidades, nuevaEntidadAplicaCapaColorEstiloYExtension)
{
    Dibujo d;
    d.nuevoDocumento();
    d.nuevaCapa(new Capa("Ejes", ColorCapa(1), 1));
    d.setColorActualRGB(0x102030);
    auto* a = punto(1, 2, 3);
    EXPECT_TRUE(d.nuevaEntidad(a));
    EXPECT_TRUE(d.hayCambios());
    EXPECT_EQ(a->capa.get(), d.capaActual());
    EXPECT_EQ(a->capa.id, 0U);
    EXPECT_EQ(a->color.colorCAD, 512);
    EXPECT_EQ(a->color.ABGR(), 0xFF302010U);
    EXPECT_EQ(a->estilo, d.estiloTextoActual());
    auto* b = punto(-1, 5, 0);
    b->capa.set(d.buscaCapa("Ejes"), 0);
    b->color.setIndiceColor(3);
    d.nuevaEntidad(b);
    EXPECT_EQ(b->capa.get(), d.buscaCapa("Ejes"));
    EXPECT_EQ(b->color.colorCAD, 3);
    EXPECT_EQ(d.extension.minimo, Punto3<double>(-1, 2, 0));
    EXPECT_EQ(d.extension.maximo, Punto3<double>(1, 5, 3));
    EXPECT_EQ(d.handleUltimaEntidad(), reinterpret_cast<intptr_t>(b));
    EXPECT_EQ(d.origenPlano, Punto3<double>(0, 0, 0));
}

// A drawing that never had nuevoDocumento has no plane: getPlanoReferencia leaves its
// arguments alone, the first entity founds the plane at its centre with the minimum z, and
// the second does not move it.
TEST(DibujoEntidades, primeraEntidadFundaElPlano)
{
    Dibujo d;
    Punto3<double> o{7, 7, 7};
    Vector3D<double> n{7, 7, 7};
    cad::Plano3D<double> pl(1, 2, 3, 4);
    d.getPlanoReferencia(o, n, pl);
    EXPECT_EQ(o, Punto3<double>(7, 7, 7));
    EXPECT_EQ(pl, cad::Plano3D<double>(1, 2, 3, 4));
    d.nuevaEntidad(punto(1, 2, 3));
    d.nuevaEntidad(punto(5, 6, -4));
    d.getPlanoReferencia(o, n, pl);
    EXPECT_EQ(o, Punto3<double>(1, 2, 3));
    EXPECT_EQ(n, Vector3D<double>(0, 0, 1));
    EXPECT_EQ(pl, cad::Plano3D<double>(0, 0, 1, -3));
}

// borraEntidad removes by address and drops the selection; the last handle goes stale and
// buscaEntidad no longer finds it; the extension does not shrink. Selecting and deselecting
// ask for a paint but never mark the document changed.
TEST(DibujoEntidades, borrarYSeleccionar)
{
    Dibujo d;
    d.nuevoDocumento();
    auto* a = punto(0, 0, 0);
    auto* b = punto(4, 4, 4);
    d.nuevaEntidad(a);
    d.nuevaEntidad(b);
    d.borraMarcaCambios();
    d.redibujar = false;
    d.selecciona(b);
    EXPECT_NE(b->estado & cad::kEstadoSeleccionada, 0U);
    EXPECT_TRUE(d.redibujar);
    EXPECT_FALSE(d.hayCambios());
    const int64_t h = d.handleUltimaEntidad();
    EXPECT_EQ(d.buscaEntidad(h), b);
    EXPECT_EQ(d.buscaEntidad(0), nullptr);
    EXPECT_TRUE(d.borraEntidad(b, false));
    EXPECT_EQ(b->estado, 0U);
    EXPECT_TRUE(d.hayCambios());
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
TEST(DibujoZoom, extension)
{
    Dibujo d;
    d.nuevoDocumento();
    PantallaGrabadora p;
    d.zoomExtension(1.0, &p);
    EXPECT_TRUE(p.llamadas.empty());
    EXPECT_FALSE(d.hayCambios());
    EXPECT_TRUE(d.vistaAplicada);
    d.nuevaEntidad(punto(0, 0, 1));
    d.nuevaEntidad(punto(10, 4, 5));
    d.borraMarcaCambios();
    p.posicion = {3, 4, 50};
    p.zoom = 2.5;
    d.zoomExtension(2.0, 0.5, &p);
    EXPECT_EQ(p.llamadasDe("zoomExtension"), Lineas{"zoomExtension (-5,1,3) (15,3,3)"});
    EXPECT_EQ(d.vistaActual->posicion, Punto3<double>(3, 4, 50));
    EXPECT_EQ(d.vistaActual->zoom, 2.5);
    EXPECT_TRUE(d.hayCambios());
    EXPECT_FALSE(d.vistaAplicada);
    d.zoomExtension(1.0, &p);
    EXPECT_EQ(p.llamadasDe("zoomExtension").back(), "zoomExtension (0,0,3) (10,4,3)");
}

// The current layer can't move to a hidden or locked layer; naming the current one is true
// without a mark; "0" can't be locked; locking the current layer makes "0" current.
TEST(DibujoCapas, capaActualYBloqueo)
{
    Dibujo d;
    d.nuevoDocumento();
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
    EXPECT_TRUE(d.bloqueaCapa("Ejes", true));
    EXPECT_TRUE(d.capaBloqueada("Ejes"));
    EXPECT_EQ(d.capaActual(), d.buscaCapa("0"));
    EXPECT_TRUE(d.bloqueaCapa("Ejes", false));
    EXPECT_EQ(d.buscaCapa("Ejes")->flags, 1);
}

// Marks of the layer edits: renaming to the same name clears hayCambios; visibility marks
// only on a change; colorCapa(nombre, rgb) marks only when rgb equals the old RGBA() packing.
TEST(DibujoCapas, marcasDeRenombrarVisibilidadYColor)
{
    Dibujo d;
    d.nuevoDocumento();
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
// staying with the caller; a new name is only appended. Deleting the current layer removes its entities and takes it out
// of the list while capaActual still names the removed, living object.
TEST(DibujoCapas, posicionaYBorraCapaActual)
{
    Dibujo d;
    d.nuevoDocumento();
    d.nuevaEntidad(punto(0, 0, 0));
    d.nuevaCapa(new Capa("A", ColorCapa(2), 0));
    Capa otra("A", ColorCapa(5), 1);
    EXPECT_TRUE(d.posicionaCapa(&otra));
    EXPECT_TRUE(d.capaVisible("A"));
    EXPECT_EQ(d.capaActual(), d.buscaCapa("A"));
    EXPECT_TRUE(d.hayCambios());
    EXPECT_TRUE(d.posicionaCapa(new Capa("B", ColorCapa(3), 1)));
    EXPECT_EQ(d.capaActual(), d.buscaCapa("A"));  // a new name is appended, not made current
    d.nuevaEntidad(punto(1, 1, 1));
    d.nuevaEntidad(punto(2, 2, 2));
    d.borraMarcaCambios();
    EXPECT_FALSE(d.borraCapa("Nada"));
    EXPECT_TRUE(d.borraCapa("A"));
    EXPECT_EQ(d.numeroCapas(), 2);
    ASSERT_NE(d.capaActual(), nullptr);
    EXPECT_EQ(d.capaActual()->nombre, "A");
    ASSERT_EQ(d.entidades.size(), 1U);
    EXPECT_EQ(d.entidades[0]->capa.get(), d.buscaCapa("0"));
    EXPECT_TRUE(d.hayCambios());
}

// Materials: the shine is clamped, a freed id is handed out again, lookups run from the end
// so the last of equal ids wins, existeMaterial reads the low 16 bits, and borraMaterial
// marks the document even for an unknown id.
TEST(DibujoMateriales, idsBrilloYBusqueda)
{
    Dibujo d;
    d.nuevoDocumento();
    EXPECT_EQ(d.nuevoMaterial(5, 0xFF00FF00, 64.0F, ""), 2);
    EXPECT_EQ(d.materialId(2)->brillo(), 1.0F);
    EXPECT_TRUE(d.hayCambios());
    EXPECT_FALSE(d.vistaAplicada);
    EXPECT_EQ(d.nuevoMaterial(6, 0xFF0000FF, -1.0F, ""), 3);
    EXPECT_EQ(d.materialId(3)->brillo(), 0.0F);
    d.borraMaterial(2);
    EXPECT_EQ(d.materialId(2), nullptr);
    EXPECT_EQ(d.nuevoMaterial(8, "muro.png"), 2);
    auto* gemelo = new cad::Material(2);
    d.materiales.push_back(gemelo);
    EXPECT_EQ(d.materialId(2), gemelo);
    EXPECT_TRUE(d.existeMaterial(0x10000 + 3));
    EXPECT_FALSE(d.existeMaterial(9));
    d.borraMaterial(2);
    EXPECT_EQ(d.materialId(2)->textura(), "muro.png");
    d.borraMarcaCambios();
    d.vistaAplicada = true;
    d.borraMaterial(77);
    EXPECT_TRUE(d.hayCambios());
    EXPECT_FALSE(d.vistaAplicada);
}

// Text styles: a taken name is refused, lookup is exact, an unknown name changes nothing and
// making a style current marks the document.
TEST(DibujoEstilosTexto, altaBusquedaYActual)
{
    Dibujo d;
    d.nuevoDocumento();
    EstiloTexto repetido("standar", "Arial", 3);
    EXPECT_FALSE(d.nuevoEstiloTexto(&repetido));
    auto* rotulos = new EstiloTexto("Rotulos", "Arial", 12);
    EXPECT_TRUE(d.nuevoEstiloTexto(rotulos));
    EXPECT_EQ(d.buscaEstiloTexto("rotulos"), nullptr);
    EXPECT_FALSE(d.estiloTextoActual("Nada"));
    EXPECT_EQ(d.estiloTextoActual()->nombre, "standar");
    EXPECT_FALSE(d.hayCambios());
    EXPECT_TRUE(d.estiloTextoActual("Rotulos"));
    EXPECT_EQ(d.estiloTextoActual(), rotulos);
    EXPECT_TRUE(d.hayCambios());
}

// Variables: a string replaces an int of the same name in its place; deleting an absent name
// asks for a paint and changes nothing else.
TEST(DibujoVariables, reemplazoYBorrado)
{
    Dibujo d;
    d.nuevoDocumento();
    d.setVariable("a", 1);
    d.setVariable("b", 2.5);
    d.setVariable("a", std::string("x"));
    ASSERT_EQ(d.variables.size(), 8U);
    EXPECT_EQ(d.variables[6]->nombre + d.variables[6]->etiqueta(), "aVSt");
    std::string s;
    EXPECT_TRUE(d.getVariable("a", s));
    EXPECT_EQ(s, "x");
    d.redibujar = false;
    d.borraVariable("nada");
    EXPECT_TRUE(d.redibujar);
    EXPECT_EQ(d.variables.size(), 8U);
    EXPECT_FALSE(d.hayCambios());
}

// Views: saving under a taken name overwrites it in place; a bad index names ""; an unknown
// view leaves the display alone; borraVista deletes the last view of a name.
TEST(DibujoVistas, guardarActivarYBorrar)
{
    Dibujo d;
    d.nuevoDocumento();
    PantallaGrabadora p;
    p.posicion = {1, 2, 3};
    d.guardaVistaActual(&p, "Planta");
    p.posicion = {4, 5, 6};
    p.zoom = 3.0;
    d.guardaVistaActual(&p, "Planta");
    ASSERT_EQ(d.numeroVistas(), 1);
    EXPECT_EQ(d.nombreVista(0), "Planta");
    EXPECT_EQ(d.nombreVista(-1), "");
    p.llamadas.clear();
    d.activaVista(&p, "Alzado");
    EXPECT_TRUE(p.llamadas.empty());
    d.activaVista(&p, "Planta");
    EXPECT_EQ(p.llamadas, Lineas{"setCamara (4,5,6) (0,0,0)"});
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
TEST(DibujoCadenas, unByteMasDeLoQueGuardaElFicheroNoCambiaNada)
{
    Dibujo d;
    d.nuevoDocumento();
    PantallaGrabadora p;
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
    EXPECT_EQ(d.numeroCapas(), 1);
    EXPECT_EQ(d.capaActual()->nombre, "0");
    EXPECT_EQ(d.estilosTexto.size(), 1U);
    EXPECT_EQ(d.numeroMateriales(), 1);
    EXPECT_EQ(d.variables.size(), 6U);
    EXPECT_EQ(d.numeroVistas(), 0);
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
TEST(DibujoEstado, guardaYCargaEstado)
{
    Dibujo d;
    d.nuevoDocumento();
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
    EXPECT_EQ(d.colorActual.colorCAD, 512);
    EXPECT_EQ(d.colorActualABGR(), 0xFFFF3020U);
    EXPECT_EQ(d.capaActual()->nombre, "0");
    EXPECT_EQ(d.estiloTextoActual()->nombre, "standar");
}

Dibujo* llena(Dibujo& d)
{
    d.nuevoDocumento();
    auto* ejes = new Capa("Ejes", ColorCapa(1), 3);
    ejes->estiloLinea.patron = 0xF0F0;
    d.nuevaCapa(ejes);
    d.nuevaCapa(new Capa("Cotas", ColorCapa(5), 1));
    d.capaActual("Cotas");
    d.nuevoMaterial(40, 0xFF00FF00, 0.25F, "");
    d.nuevoMaterial(41, "ladrillo.png");
    d.nuevoEstiloTexto(new EstiloTexto("Rotulos", "Arial", 12, true, false));
    d.estiloTextoActual("Rotulos");
    d.setColorActualIndice(3);
    d.setPlanoReferencia({1, 2, 3}, {0, 1, 0});
    PantallaGrabadora p;
    p.posicion = {5, 6, 7};
    p.objetivo = {1, 1, 1};
    d.guardaVistaActual(&p);
    return &d;
}

// Save and load: layers, materials and styles come back, the next material id follows the
// file's, hayCambios stays true, the defaults shadow the file's current layer, colour, plane
// and style, and the stored view is sent on the next paint.
TEST(DibujoFichero, guardarYCargar)
{
    Dibujo a;
    const std::string ruta = cad::prueba::rutaTemporal("dibujo.tcad");
    EditorDibujo(llena(a), nullptr).guardaDocumento(ruta.c_str());
    Dibujo b;
    ASSERT_TRUE(EditorDibujo(&b, nullptr).cargaDocumento(ruta.c_str()));
    EXPECT_TRUE(b.hayCambios());
    ASSERT_EQ(b.numeroCapas(), 3);
    const Capa* ejes = b.buscaCapa("Ejes");
    ASSERT_NE(ejes, nullptr);
    EXPECT_EQ(ejes->flags, 3);
    EXPECT_EQ(ejes->color.colorCAD, 1);
    EXPECT_EQ(ejes->estiloLinea.patron, 0xF0F0);
    ASSERT_EQ(b.numeroMateriales(), 3);
    EXPECT_EQ(b.materialId(2)->idExterno, 40);
    EXPECT_EQ(b.materialId(2)->brillo(), 0.25F);
    EXPECT_EQ(b.materialId(3)->textura(), "ladrillo.png");
    EXPECT_EQ(b.nuevoMaterial(1, ""), 4);
    const EstiloTexto* rotulos = b.buscaEstiloTexto("Rotulos");
    ASSERT_NE(rotulos, nullptr);
    EXPECT_EQ(rotulos->fuente + std::to_string(rotulos->tamano), "Arial12");
    EXPECT_TRUE(rotulos->negrita);
    EXPECT_EQ(b.capaActual()->nombre, "0");
    EXPECT_EQ(b.colorActual.colorCAD, 256);
    EXPECT_EQ(b.estiloTextoActual()->nombre, "standar");
    EXPECT_EQ(b.origenPlano, Punto3<double>(0, 0, 0));
    EXPECT_EQ(b.normalPlano, Vector3D<double>(0, 0, 1));
    PantallaGrabadora p;
    b.dibuja(p);
    EXPECT_EQ(p.llamadasDe("setCamara"), Lineas{"setCamara (5,6,7) (1,1,1)"});
}

// Saved ids come from a deterministic source: saving twice, or saving a fresh drawing built
// the same way, writes the same bytes; a second save keeps the ids, and a layer added later
// takes one above the family's highest.
TEST(DibujoFichero, guardadoDeterminista)
{
    Dibujo a;
    Dibujo b;
    EditorDibujo ea(llena(a), nullptr);
    const std::string r1 = cad::prueba::rutaTemporal("uno.tcad");
    const std::string r2 = cad::prueba::rutaTemporal("dos.tcad");
    const std::string r3 = cad::prueba::rutaTemporal("tres.tcad");
    ea.guardaDocumento(r1.c_str());
    ea.guardaDocumento(r2.c_str());
    EditorDibujo(llena(b), nullptr).guardaDocumento(r3.c_str());
    const auto bytes = cad::prueba::leeFichero(r1);
    ASSERT_FALSE(bytes.empty());
    EXPECT_EQ(cad::prueba::leeFichero(r2), bytes);
    EXPECT_EQ(cad::prueba::leeFichero(r3), bytes);
    a.nuevaCapa(new Capa("Nueva", ColorCapa(2), 1));
    ea.guardaDocumento(r2.c_str());
    std::vector<uint64_t> ids;
    for (const Capa* c : a.capas)
    {
        ids.push_back(c->id);
    }
    EXPECT_EQ(ids, (std::vector<uint64_t>{1, 2, 3, 4}));
}

// Each load and save cycle adds the six defaults once more to "Vbles.1": a new drawing saves
// eleven variables, and the same file loaded and saved again holds seventeen.
TEST(DibujoFichero, cicloAnadeSeisVariables)
{
    Dibujo a;
    a.nuevoDocumento();
    const std::string r1 = cad::prueba::rutaTemporal("v1.tcad");
    const std::string r2 = cad::prueba::rutaTemporal("v2.tcad");
    EditorDibujo(&a, nullptr).guardaDocumento(r1.c_str());
    Dibujo b;
    EditorDibujo eb(&b, nullptr);
    ASSERT_TRUE(eb.cargaDocumento(r1.c_str()));
    eb.guardaDocumento(r2.c_str());
    EXPECT_EQ(cuentaVariables(cad::prueba::leeFichero(r1)), 11U);
    EXPECT_EQ(cuentaVariables(cad::prueba::leeFichero(r2)), 17U);
}

// An empty or missing file loads false; a save into a folder that does not exist reports
// true and creates nothing.
TEST(DibujoFichero, ficherosImposibles)
{
    Dibujo d;
    d.nuevoDocumento();
    EditorDibujo e(&d, nullptr);
    const std::string vacio = cad::prueba::rutaTemporal("vacio.tcad");
    cad::prueba::escribeFichero(vacio, std::string());
    EXPECT_FALSE(e.cargaDocumento(vacio.c_str()));
    EXPECT_FALSE(e.cargaDocumento(cad::prueba::rutaTemporal("falta.tcad").c_str()));
    const std::string sinCarpeta = cad::prueba::rutaTemporal("no-hay") + "/d.tcad";
    EXPECT_TRUE(e.guardaDocumento(sinCarpeta.c_str()));
    EXPECT_FALSE(cad::prueba::existeFichero(sinCarpeta));
}

// A paint never waits: with the lock held by another thread it returns false and sends
// nothing; a drawing not ready returns false too, and the pending paint is kept for later.
TEST(DibujoPintado, cerrojoOcupadoYDocumentoNoListo)
{
    Dibujo d;
    d.nuevoDocumento();
    PantallaGrabadora p;
    std::promise<void> tomado;
    std::promise<void> soltar;
    std::thread t([&d, &tomado, fin = soltar.get_future()] {
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
// texture or not, both passes, camera read back. A view whose position equals its target is
// not sent; without redibujar only the camera is read.
TEST(DibujoPintado, secuenciaCompleta)
{
    auto& conf = cad::Configuracion::instancia();
    const cad::Color fondoAntes = conf.color(cad::Configuracion::kFondo);
    cad::Color fondo;
    fondo.setABGR(0xFF302010);
    conf.setColor(cad::Configuracion::kFondo, fondo);
    Dibujo d;
    d.nuevoDocumento();
    d.nuevoMaterial(9, 0xFF0000FF, 0.5F, "img.png");
    d.nuevaEntidad(punto(1, 0, 0));
    d.vistaActual->posicion = {0, 0, 9};
    d.vistaActual->objetivo = {1, 1, 1};
    d.vistaAplicada = false;
    PantallaGrabadora p;
    p.origenVista = {7, 8, 9};
    EXPECT_TRUE(d.dibuja(p));
    conf.setColor(cad::Configuracion::kFondo, fondoAntes);
    EXPECT_EQ(p.llamadas,
              (Lineas{"limpia", "setCamara (0,0,9) (1,1,1)", "getOrigenVista",
                      "setColorFondo FF302010", "nuevoMaterial 1 FFFFFFFF",
                      "nuevaTextura 2 img.png FF0000FF", "limpia", "getCursor",
                      "setModoLinea FFFF", "setModoLinea FFFF", "setGrosor 1",
                      "dibujaPunto (1,0,0) 11223344 null", "setModoLinea AAAA", "setGrosor 1",
                      "setModoLinea FFFF", "getCamara"}));
    EXPECT_TRUE(d.vistaAplicada);
    EXPECT_EQ(d.vistaActual->referencia, Punto3<double>(7, 8, 9));
    p.llamadas.clear();
    p.posicion = {2, 2, 2};
    d.vistaActual->posicion = d.vistaActual->objetivo;
    d.vistaAplicada = false;
    EXPECT_FALSE(d.dibuja(p));
    EXPECT_EQ(p.llamadas, Lineas{"getCamara"});
    EXPECT_EQ(d.vistaActual->posicion, Punto3<double>(2, 2, 2));
    p.camaraReconstruye = true;
    d.vistaAplicada = false;
    EXPECT_TRUE(d.dibuja(p));  // the display asked for a rebuild
}

// The two passes: solid pattern first for unselected entities with the layer's or their own
// style, dotted second for the selected ones with the width alone; hidden layers and a
// by-layer entity whose layer pointer is null are skipped.
TEST(DibujoPintado, dosPasadas)
{
    Dibujo d;
    d.nuevoDocumento();
    auto* ejes = new Capa("Ejes", ColorCapa(1), 1);
    ejes->estiloLinea.patron = 0xF0F0;
    ejes->estiloLinea.grosor = 2.0;
    d.nuevaCapa(ejes);
    d.nuevaCapa(new Capa("Oculta", ColorCapa(2), 0));
    d.capaActual("Ejes");
    d.nuevaEntidad(punto(1, 0, 0));
    auto* propio = punto(2, 0, 0);
    propio->estiloLinea.porCapa = false;
    propio->estiloLinea.patron = 0x00FF;
    propio->estiloLinea.grosor = 3.0;
    d.nuevaEntidad(propio);
    propio->estado = cad::kEstadoSeleccionada;
    auto* oculto = punto(3, 0, 0);
    oculto->capa.set(d.buscaCapa("Oculta"), 0);
    d.nuevaEntidad(oculto);
    auto* huerfano = punto(4, 0, 0);
    d.nuevaEntidad(huerfano);
    huerfano->capa.objeto = nullptr;
    PantallaGrabadora p;
    EXPECT_TRUE(d.dibuja(p));
    Lineas pasadas;
    std::copy_if(p.llamadas.begin(), p.llamadas.end(), std::back_inserter(pasadas),
                 [](const std::string& l) {
                     return l.rfind("setModoLinea", 0) == 0 || l.rfind("setGrosor", 0) == 0 ||
                            l.rfind("dibujaPunto", 0) == 0;
                 });
    EXPECT_EQ(pasadas, (Lineas{"setModoLinea FFFF",
                               "setModoLinea F0F0", "setGrosor 2",
                               "dibujaPunto (1,0,0) 11223344 null", "setModoLinea 00FF",
                               "setGrosor 3", "setModoLinea AAAA", "setGrosor 2", "setGrosor 3",
                               "dibujaPunto (2,0,0) 11223344 null", "setModoLinea FFFF"}));
}

}  // namespace
