// The drawing facade: callback wiring, lifecycle, guards, keys, layers, colours,
// configuration and the visibility flags kept as variables.
#include "Fendrix/WrapDibujoCAD.h"

#include <cstdint>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "Fendrix/WrapPantallaCAD.h"
#include "base/Admisible.h"
#include "base/Configuracion.h"
#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "entidades/Entidad.h"
#include "entidades/PuntoControl.h"
#include "entidades/SistemaLocal.h"
#include "entidades/Texto.h"
#include "soporte/FicheroTemporal.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using Fendrix::WrapDibujoCAD;
using Fendrix::WrapPantallaCAD;
using Tipo = WrapDibujoCAD::tipoActualizacion;
using cad::EditorDibujo;

// A facade with a new document whose host callbacks record what reaches them.
struct Anfitrion
{
    std::vector<Tipo> avisos;
    std::vector<std::string> textos;
    WrapDibujoCAD w{nullptr, [this](Tipo t) { avisos.push_back(t); }};
    Anfitrion() { w.nuevoDocumento(); }
    WrapDibujoCAD::SalidaTextoDelegate salida()
    {
        return [this](const std::string& s) { textos.push_back(s); };
    }
};

// getMaterial's fields for the material at `indice`, the text starting as "?".
auto material(WrapDibujoCAD& w, int32_t indice)
{
    int32_t id = 0;
    int32_t externo = 0;
    uint32_t color = 0;
    double brillo = 0.0;
    std::string textura = "?";
    EXPECT_TRUE(w.getMaterial(indice, id, externo, color, brillo, textura));
    return std::tuple(id, externo, color, brillo, textura);
}

// Construction attaches no callback: an editor notice reaches nobody until setActualiza
// (or setPantalla) wires the host's update delegate. setActualiza(null) after a real delegate
// keeps the kernel's entry point but silences it; the edit and insertion adapters answer true
// when no delegate is set.
TEST(WrapDibujoCADMarco, construccionDelegadosNulosYReactoresQuePermiten)
{
    Anfitrion h;
    ASSERT_NE(h.w.mEditor, nullptr);
    EXPECT_EQ(h.w.mEditor->pantalla(), nullptr);
    h.w.mEditor->actualiza(EditorDibujo::kCapas);
    EXPECT_TRUE(h.avisos.empty());
    h.w.setActualiza(h.w.mActualiza);
    h.w.mEditor->actualiza(EditorDibujo::kCapas);
    EXPECT_EQ(h.avisos, std::vector<Tipo>{Tipo::kCapas});

    h.w.setActualiza(nullptr);
    ASSERT_TRUE(h.w.mEditor->funcionActualiza);
    h.w.mEditor->actualiza(EditorDibujo::kCapas);
    EXPECT_EQ(h.avisos.size(), 1U);
    h.w.setReactorEdicion([](int64_t, auto, int32_t, double, double, double) { return false; });
    h.w.setReactorInsercion([](int64_t, auto) { return false; });
    EXPECT_FALSE(h.w.mEditor->reactorEdicionEntidades(0, EditorDibujo::kBorrar, 0, 0, 0, 0));
    h.w.setReactorEdicion(nullptr);
    h.w.setReactorInsercion(nullptr);
    ASSERT_TRUE(h.w.mEditor->reactorEdicionEntidades);
    EXPECT_TRUE(h.w.mEditor->reactorEdicionEntidades(0, EditorDibujo::kInsertar, 1, 2, 3, 4));
    EXPECT_TRUE(h.w.mEditor->reactorInsercionEntidades(0, EditorDibujo::kEntidadInsertada));
    EXPECT_TRUE(
        h.w.ejecutaReactorEdicion(0, WrapDibujoCAD::tipoEdicionEntidades::kBorrar, 0, 0, 0, 0));
}

// The property-viewer wrapper is made once: a viewer set before setPantalla never reaches
// the new editor, not even when it is set again. setPantalla twice: the newest editor has
// the update and text callbacks again, while the edit, insertion and command reactors set
// after the first call are not attached again.
TEST(WrapDibujoCADMarco, setPantallaVisorSoloUnaVezYReconexion)
{
    Anfitrion h;
    int llamadas = 0;
    h.w.setVisorPropiedades([&llamadas] { ++llamadas; });
    ASSERT_TRUE(h.w.mEditor->visorPropiedades);
    h.w.mEditor->visorPropiedades();
    EXPECT_EQ(llamadas, 1);
    cad::prueba::PantallaGrabadora p1;
    cad::prueba::PantallaGrabadora p2;
    WrapPantallaCAD w1;
    WrapPantallaCAD w2;
    w1.setPantalla(&p1);
    w2.setPantalla(&p2);
    h.w.setPantalla(&w1);
    EXPECT_FALSE(h.w.mEditor->visorPropiedades);
    h.w.setVisorPropiedades([&llamadas] { ++llamadas; });
    EXPECT_FALSE(h.w.mEditor->visorPropiedades);
    h.w.setSalidaTexto(h.salida());
    h.w.setReactorEdicion([](int64_t, auto, int32_t, double, double, double) { return false; });
    h.w.setReactorInsercion([](int64_t, auto) { return false; });
    h.w.setReactorComandoInteractivo([](auto) {});
    EXPECT_TRUE(h.w.mEditor->reactorEdicionEntidades);
    h.w.setPantalla(&w2);
    EditorDibujo* e = h.w.mEditor;
    EXPECT_EQ(e->pantalla(), &p2);
    EXPECT_EQ(h.w.mPantalla, &p2);
    e->actualiza(EditorDibujo::kControl);
    e->mensaje("punto %d", 2);
    EXPECT_EQ(h.avisos, std::vector<Tipo>{Tipo::kControl});
    EXPECT_EQ(h.textos, std::vector<std::string>{"punto 2"});
    EXPECT_FALSE(e->reactorEdicionEntidades);
    EXPECT_FALSE(e->reactorInsercionEntidades);
    EXPECT_FALSE(e->reactorComandoInteractivo);
}

// guarda reports true whatever happens, also into a folder that does not exist; lee gives
// the kernel's result; salidaTexto reaches the host's own delegate, false without one.
// Dispose twice is harmless; afterwards the editor pointer is 0, lee is false, guarda is
// true, and the other operations do nothing instead of failing.
TEST(WrapDibujoCADMarco, ficherosSalidaTextoYDispose)
{
    Anfitrion h;
    const std::string sinCarpeta = cad::prueba::rutaTemporal("no-existe") + "/x.tcad";
    EXPECT_TRUE(h.w.guarda(sinCarpeta));
    EXPECT_FALSE(h.w.lee(sinCarpeta));
    const std::string ruta = cad::prueba::rutaTemporal("facade.tcad");
    EXPECT_TRUE(h.w.guarda(ruta));
    EXPECT_TRUE(h.w.lee(ruta));
    EXPECT_FALSE(h.w.salidaTexto("hola"));
    h.w.setSalidaTexto(h.salida());
    EXPECT_TRUE(h.w.salidaTexto("a\xC3\xB1o 1"));
    EXPECT_EQ(h.textos, std::vector<std::string>{"a\xC3\xB1o 1"});

    EXPECT_NE(h.w.getEditorDibujoCPP(), 0);
    h.w.Dispose();
    h.w.Dispose();
    EXPECT_EQ(h.w.getEditorDibujoCPP(), 0);
    EXPECT_EQ(h.w.mDibujo, nullptr);
    const std::string dispuesto = cad::prueba::rutaTemporal("dispuesto.tcad");
    EXPECT_TRUE(h.w.guarda(dispuesto));
    EXPECT_FALSE(cad::prueba::existeFichero(dispuesto));
    EXPECT_FALSE(h.w.lee(ruta));  // a file that exists
    h.w.nuevoDocumento();
    h.w.muestraModelos(false);
    h.w.zoomExtension(1.0);
    h.w.teclaPulsada(27, false, false, false);
    EXPECT_EQ(h.w.numeroCapas(), 0);
    EXPECT_EQ(h.w.capaActual(), "");
    EXPECT_FALSE(h.w.nuevaCapa("A", true));
    EXPECT_FALSE(h.w.hayCambios());
    EXPECT_EQ(h.w.getFactorVertical(), 0.0);
    cad::prueba::PantallaGrabadora p;
    h.w.dibuja(&p);
    EXPECT_TRUE(p.llamadas.empty());
}

// Each visibility flag is the existence of a variable: hiding creates it with 1, showing
// deletes it; both count as an edit and send update notice 0.
TEST(WrapDibujoCADVisibilidad, banderasComoVariablesYMenuContexto)
{
    Anfitrion h;
    h.w.setActualiza(h.w.mActualiza);
    h.w.muestraModelos(false);
    int32_t v = 0;
    EXPECT_TRUE(h.w.getVariable("OCULTA_MODELOS", v));
    EXPECT_EQ(v, 1);
    EXPECT_FALSE(h.w.modelosVisibles());
    EXPECT_TRUE(h.w.hayCambios());
    EXPECT_EQ(h.avisos, std::vector<Tipo>{Tipo::kControl});
    h.w.muestraModelos(true);
    EXPECT_FALSE(h.w.mDibujo->existeVariable("OCULTA_MODELOS"));
    EXPECT_TRUE(h.w.modelosVisibles());
    h.w.muestraCamaras(false);
    h.w.muestraPuntosControl(false);
    h.w.muestraPlanoReferencia(false);
    EXPECT_TRUE(h.w.mDibujo->existeVariable("OCULTA_CAMARAS"));
    EXPECT_TRUE(h.w.mDibujo->existeVariable("OCULTA_PUNTOS_CONTROL"));
    EXPECT_TRUE(h.w.mDibujo->existeVariable("OCULTA_PLANO_REFERENCIA"));
    EXPECT_FALSE(h.w.camarasVisibles() || h.w.puntosControlVisibles() ||
                 h.w.planoReferenciaVisible());

    // The context menu placeholder calls the host's callback with the point and the items
    // "1", "2", "3"; with no callback set it does nothing.
    h.w.muestraMenuContexto(1, 2);
    std::string visto;
    h.w.setMenuContexto(
        [&visto](int32_t x, int32_t y, const std::vector<std::string>& e)
        {
            visto = std::to_string(x) + "," + std::to_string(y);
            for (const auto& s : e)
            {
                visto += " " + s;
            }
        });
    h.w.muestraMenuContexto(40, 50);
    EXPECT_EQ(visto, "40,50 1 2 3");
}

// Layers through the facade: a new current layer, a UTF-8 name read back byte for byte and
// made current by existeCapa, and the layer colour set and read by components.
TEST(WrapDibujoCADCapas, capasPorLaFachada)
{
    Anfitrion h;
    EXPECT_TRUE(h.w.nuevaCapa("Ejes", true));
    EXPECT_EQ(h.w.capaActual(), "Ejes");
    EXPECT_FALSE(h.w.nuevaCapa("Ejes", false));
    const std::string acentos =
        "V\xC3\xAD"
        "a \xC3\xB1"
        "and\xC3\xBA";
    EXPECT_TRUE(h.w.nuevaCapa(acentos, false));
    EXPECT_EQ(h.w.capa(2), acentos);
    EXPECT_TRUE(h.w.existeCapa(acentos, true));
    EXPECT_EQ(h.w.capaActual(), acentos);
    EXPECT_TRUE(h.w.colorCapa("Ejes", 10, 20, 30));
    int32_t c[3] = {0, 0, 0};
    EXPECT_TRUE(h.w.getColorCapa("Ejes", c[0], c[1], c[2]));
    EXPECT_EQ((std::vector<int32_t>(c, c + 3)), (std::vector<int32_t>{10, 20, 30}));
    EXPECT_EQ(h.w.getColorCapa("Nada"), 0xFFFFFFFFU);
}

// The current colour by components reads back the same as a true colour; getColorIndice
// gives palette bytes and refuses indices outside 0..511.
TEST(WrapDibujoCADColores, colorActualIndiceYConfiguracion)
{
    Anfitrion h;
    int32_t c[3] = {0, 0, 0};
    const auto leido = [&c] { return std::vector<int32_t>(c, c + 3); };
    h.w.setColorActualRGB(1, 2, 3);
    EXPECT_TRUE(h.w.getColorActualRGB(c[0], c[1], c[2]));
    EXPECT_EQ(leido(), (std::vector<int32_t>{1, 2, 3}));
    EXPECT_EQ(h.w.mDibujo->colorActual.colorCAD, 512);
    EXPECT_TRUE(h.w.getColorIndice(1, c[0], c[1], c[2]));
    EXPECT_EQ(leido(), (std::vector<int32_t>{255, 0, 0}));
    EXPECT_TRUE(h.w.getColorIndice(250, c[0], c[1], c[2]));
    EXPECT_EQ(leido(), (std::vector<int32_t>{0x33, 0x33, 0x33}));
    EXPECT_FALSE(h.w.getColorIndice(512, c[0], c[1], c[2]));
    EXPECT_FALSE(h.w.getColorIndice(-1, c[0], c[1], c[2]));

    // Configuration: a colour set by components is stored opaque as a true colour and read
    // back, a value likewise; both setters count as an edit of the drawing.
    auto& conf = cad::Configuracion::instancia();
    const cad::Color cursorAntes = conf.color(cad::Configuracion::kCursor);
    const int ventanaAntes = conf.valor(cad::Configuracion::kVentanaReferencia);
    h.w.borraMarcaCambios();
    h.w.setColorConfiguracion(WrapDibujoCAD::colorElemento::kCursor, 10, 20, 30);
    const cad::Color guardado = conf.color(cad::Configuracion::kCursor);
    c[0] = c[1] = c[2] = 0;
    h.w.getColorConfiguracion(WrapDibujoCAD::colorElemento::kCursor, c[0], c[1], c[2]);
    const bool cambios = h.w.hayCambios();
    h.w.borraMarcaCambios();
    h.w.setValorConfiguracion(WrapDibujoCAD::valorElemento::kVentanaReferencia, 9);
    const int ventana = h.w.getValorConfiguracion(WrapDibujoCAD::valorElemento::kVentanaReferencia);
    EXPECT_TRUE(cambios && h.w.hayCambios());
    conf.setColor(cad::Configuracion::kCursor, cursorAntes);
    conf.setValor(cad::Configuracion::kVentanaReferencia, ventanaAntes);
    EXPECT_EQ(leido(), (std::vector<int32_t>{10, 20, 30}));
    EXPECT_EQ(std::tuple(guardado.colorCAD, guardado.alfa(), ventana), std::tuple(512, 255, 9));
}

}  // namespace

// A new document as the host sees it through the facade: no changes to save, the layer "0"
// in white (index 7), the default material (id 1, shine clamped to 1.0), the style
// "standar" current, and the six default variables in their order.
TEST(WrapDibujoCADDocumento, nuevoDocumentoVistoDesdeLaFachada)
{
    Fendrix::WrapDibujoCAD w(nullptr, nullptr);
    w.nuevoDocumento();
    EXPECT_FALSE(w.hayCambios());
    ASSERT_EQ(w.numeroCapas(), 1);
    EXPECT_EQ(w.capa(0), "0");
    EXPECT_EQ(w.capaActual(), "0");
    EXPECT_EQ(w.mDibujo->buscaCapa("0")->color.colorCAD, 7);
    EXPECT_EQ(w.getColorCapa("0"), 0xFFFFFFFFU);
    ASSERT_EQ(w.numeroMateriales(), 1);
    EXPECT_EQ(material(w, 0), std::tuple(1, 1, 0xFFFFFFFFU, 1.0, std::string()));
    EXPECT_TRUE(w.existeEstiloTexto("standar", false));
    EXPECT_EQ(w.mDibujo->estiloTextoActual()->nombre, "standar");
    std::vector<std::string> nombres;
    for (const cad::VariableBase* v : w.mDibujo->variables)
    {
        nombres.push_back(v->nombre);
    }
    EXPECT_EQ(nombres, (std::vector<std::string>{"clayer", "cecolor", "orgplref", "normplref",
                                                 "cview", "textstyle"}));
    std::string valor;
    ASSERT_TRUE(w.getVariable("cecolor", valor));
    EXPECT_EQ(valor, "256");
}

// The insertion reactor's veto refuses the entity: no handle, nothing added, and the
// refused object does not leak (checked by the sanitizer build). Without the veto each
// creation gives the new entity's handle, which names it until it is deleted; getVertices
// gives three doubles per defining point, longitud answers for a polyline alone, and a
// deleted handle is refused afterwards. Local systems are entities found by name: created
// through the facade, listed, moved by their origin and deleted.
TEST(WrapDibujoCADEntidades, vetoCreacionConsultasYSistemasLocales)
{
    Fendrix::WrapDibujoCAD w(nullptr, nullptr);
    w.nuevoDocumento();
    int ofrecidas = 0;
    w.setReactorInsercion(
        [&ofrecidas](int64_t, Fendrix::WrapDibujoCAD::tipoInsercionEntidades t)
        {
            ++ofrecidas;
            return t != Fendrix::WrapDibujoCAD::tipoInsercionEntidades::kEntidadInsertada;
        });
    EXPECT_EQ(w.nuevoPunto(1.0, 1.0, 1.0), 0);
    EXPECT_EQ(ofrecidas, 1);
    w.setReactorInsercion(nullptr);

    const int64_t punto = w.nuevoPunto(1.0, 2.0, 3.0);
    const int64_t linea = w.nuevaLinea(0.0, 0.0, 0.0, 3.0, 4.0, 0.0);
    const double coordenadas[] = {0.0, 0.0, 0.0, 3.0, 0.0, 0.0, 3.0, 4.0, 0.0};
    const int64_t polilinea = w.nuevaPolilinea(3, coordenadas);
    const int64_t poligono = w.nuevoPoligono(3, coordenadas);
    ASSERT_NE(punto, 0);
    EXPECT_EQ(w.ultimaEntidadCreada(), poligono);
    std::vector<int64_t> handles;  // the vetoed point is not among them
    EXPECT_EQ(w.getEntidades(handles), 4);
    EXPECT_EQ(handles, (std::vector<int64_t>{punto, linea, polilinea, poligono}));

    std::vector<double> vertices;
    EXPECT_EQ(w.getVertices(linea, vertices), 6);
    EXPECT_EQ(vertices, (std::vector<double>{0.0, 0.0, 0.0, 3.0, 4.0, 0.0}));
    EXPECT_EQ(w.longitud(polilinea), 7.0);  // open: 3 + 4
    EXPECT_EQ(w.longitud(poligono), 0.0);   // same tag, but no polyline
    EXPECT_EQ(w.longitud(linea), 0.0);

    // Escape outside a command deselects every entity; other keys, or Escape inside a
    // command, leave the selection to the command.
    EXPECT_TRUE(w.seleccionaEntidad(linea));
    w.teclaPulsada(13, false, false, false);
    w.mEditor->nivelComando = 1;
    w.teclaPulsada(27, false, false, false);
    EXPECT_EQ(w.getEntidadesSeleccionadas(handles), 1);
    EXPECT_EQ(handles.front(), linea);
    w.mEditor->nivelComando = 0;
    w.teclaPulsada(27, false, false, false);
    EXPECT_EQ(w.getEntidadesSeleccionadas(handles), 0);
    EXPECT_EQ(w.mDibujo->buscaEntidad(linea)->estado, 0U);

    EXPECT_TRUE(w.borraEntidad(punto));
    EXPECT_FALSE(w.borraEntidad(punto));
    EXPECT_EQ(w.getVertices(punto, vertices), 0);
    EXPECT_TRUE(vertices.empty());
    EXPECT_EQ(w.getEntidades(handles), 3);

    EXPECT_EQ(w.nuevoSistemaLocal("Obra", {1.0, 2.0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}), 0);
    ASSERT_NE(w.nuevoSistemaLocal("Obra", {10.0, 20.0, 0.0}, {0, 2, 0}, {-2, 0, 0}, {0, 0, 2}), 0);
    w.nuevoPunto(0.0, 0.0, 0.0);
    ASSERT_NE(w.nuevoSistemaLocal("Eje", {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}), 0);
    EXPECT_EQ(w.numeroSistemasLocales(), 2);
    EXPECT_EQ((std::vector<std::string>{w.nombreSistemaLocal(0), w.nombreSistemaLocal(1),
                                        w.nombreSistemaLocal(2)}),
              (std::vector<std::string>{"Obra", "Eje", ""}));
    const cad::SistemaLocal* obra = w.mDibujo->sistemaLocal("Obra");
    ASSERT_NE(obra, nullptr);
    EXPECT_EQ(obra->ejeX.y, 1.0);  // axes are made unit
    EXPECT_TRUE(w.setOrigenSistemaLocal("Obra", 5.0, 6.0, 7.0));
    EXPECT_EQ(obra->origen, cad::Punto3<double>(5.0, 6.0, 7.0));
    EXPECT_FALSE(w.setOrigenSistemaLocal("Nada", 0, 0, 0));
    EXPECT_TRUE(w.borraSistemaLocal("Obra"));
    EXPECT_FALSE(w.existeSistemaLocal("Obra"));
    EXPECT_TRUE(w.existeSistemaLocal("Eje"));
}

using Alineacion = WrapDibujoCAD::alineacionTexto;

// Every operation that stores a host string refuses one byte more than the file can hold:
// its failure result, nothing changed in the drawing, and one exact message each. One byte
// less is taken.
TEST(WrapDibujoCADEntradas, cadenaMasLargaQueElFicheroSeRechazaSinCambiarNada)
{
    Anfitrion h;
    h.w.setSalidaTexto(h.salida());
    h.w.borraMarcaCambios();
    const std::string largo(cad::kLongitudMaximaCadena + 1, 'x');
    const int32_t idMaterial = h.w.idMaterial(0);
    const auto materialAntes = material(h.w, 0);
    const cad::EstiloTexto antes = *h.w.mDibujo->estiloTextoActual();

    EXPECT_FALSE(h.w.nuevaCapa(largo, true));
    EXPECT_FALSE(h.w.posicionaCapa(largo));
    EXPECT_FALSE(h.w.renombraCapa("0", largo));
    EXPECT_FALSE(h.w.nuevoEstiloTexto(largo, "Arial", 3, true));
    EXPECT_FALSE(h.w.nuevoEstiloTexto("Rotulos", largo, 3, true));
    EXPECT_FALSE(h.w.editaEstiloTexto("standar", largo, 99, false));
    EXPECT_EQ(h.w.nuevoMaterial(7, largo), 0);
    EXPECT_FALSE(h.w.setMaterial(idMaterial, 99, 0xFF123456U, 0.5, largo));
    h.w.setVariable(largo, std::string("v"));
    h.w.setVariable("v", largo);
    h.w.setVariable(largo, 1);
    h.w.setVariable(largo, 1.0);
    h.w.setVariable(largo, 1.0, 2.0, 3.0);
    EXPECT_EQ(h.w.nuevoTexto(largo, 0, 0, 0, Alineacion::kAlineacionInfIzq, 1, 0), 0);
    EXPECT_EQ(h.w.nuevoPuntoControl(largo, "c", 0, 0, 0), 0);
    EXPECT_EQ(h.w.nuevoPuntoControl("n", largo, 0, 0, 0, 8), 0);
    EXPECT_EQ(h.w.nuevoSistemaLocal(largo, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}), 0);
    EXPECT_EQ(h.textos, std::vector<std::string>(
                            17, "Texto demasiado largo: 65535 bytes (el máximo es 65534)"));

    EXPECT_EQ(h.w.numeroCapas(), 1);
    EXPECT_EQ(h.w.capaActual(), "0");
    EXPECT_EQ(h.w.mDibujo->estilosTexto.size(), 1U);
    const cad::EstiloTexto& estilo = *h.w.mDibujo->estiloTextoActual();
    EXPECT_EQ(estilo.nombre + estilo.fuente + std::to_string(estilo.tamano),
              antes.nombre + antes.fuente + std::to_string(antes.tamano));
    EXPECT_EQ(h.w.numeroMateriales(), 1);
    EXPECT_EQ(material(h.w, 0), materialAntes);
    EXPECT_EQ(h.w.mDibujo->variables.size(), 6U);
    std::vector<int64_t> handles;
    EXPECT_EQ(h.w.getEntidades(handles), 0);
    EXPECT_FALSE(h.w.hayCambios());

    h.textos.clear();
    const std::string justo(cad::kLongitudMaximaCadena, 'x');
    EXPECT_TRUE(h.w.nuevaCapa(justo, true));
    EXPECT_EQ(h.w.capaActual(), justo);
    EXPECT_TRUE(h.textos.empty());
}

// A text and a control point whose strings are as long as the file allows go through a save
// and a load byte for byte; so do a layer, a text style, a material, a variable, a view and a
// local system named so, whose records then outgrow their u16 blocks and are read by their
// own counts.
TEST(WrapDibujoCADEntradas, cadenaDeLongitudMaximaVuelveDelFichero)
{
    const std::string largo(cad::kLongitudMaximaCadena, 'L');
    const std::string otro(cad::kLongitudMaximaCadena, 'O');
    {
        const std::string ruta = cad::prueba::rutaTemporal("nombres-maximos.tcad");
        cad::prueba::PantallaGrabadora pantalla;
        WrapPantallaCAD envoltorio;
        envoltorio.setPantalla(&pantalla);
        WrapDibujoCAD w(nullptr, nullptr);
        w.setPantalla(&envoltorio);
        w.nuevoDocumento();
        ASSERT_TRUE(w.nuevaCapa(largo, false));
        ASSERT_TRUE(w.nuevoEstiloTexto(largo, otro, 10, false));
        ASSERT_GT(w.nuevoMaterial(7, largo), 0);
        w.setVariable(largo, otro);
        w.guardaVistaActual(largo);
        ASSERT_NE(w.nuevoSistemaLocal(largo, {1, 2, 3}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}), 0);
        ASSERT_NE(w.nuevoPunto(7, 8, 9), 0);
        std::string mensaje;
        ASSERT_TRUE(w.guardaComprobado(ruta, mensaje)) << mensaje;
        WrapDibujoCAD r(nullptr, nullptr);
        int64_t danadas = -1;
        ASSERT_TRUE(r.leeComprobado(ruta, mensaje, danadas)) << mensaje;
        EXPECT_EQ(danadas, 0);
        EXPECT_EQ(r.numeroCapas(), 2);
        EXPECT_TRUE(r.capa(1) == largo);
        EXPECT_TRUE(r.existeEstiloTexto(largo, false));
        std::string valor;
        EXPECT_TRUE(r.getVariable(largo, valor) && valor == otro);
        EXPECT_TRUE(r.nombreVista(0) == largo);
        EXPECT_TRUE(r.nombreSistemaLocal(0) == largo);
        EXPECT_EQ(r.mDibujo->entidades.size(), 2U);
        EXPECT_TRUE(r.mDibujo->materialId(2) != nullptr &&
                    r.mDibujo->materialId(2)->textura() == largo);
    }

    const std::string texto(cad::kLongitudMaximaCadena, 't');
    const std::string nombre(cad::kLongitudMaximaCadena, 'n');
    const std::string codigo(cad::kLongitudMaximaCadena, 'c');
    const std::string ruta = cad::prueba::rutaTemporal("cadena-maxima.tcad");
    {
        WrapDibujoCAD w(nullptr, nullptr);
        w.nuevoDocumento();
        ASSERT_NE(w.nuevoTexto(texto, 1, 2, 3, Alineacion::kAlineacionInfIzq, 1, 0), 0);
        ASSERT_NE(w.nuevoPuntoControl(nombre, codigo, 4, 5, 6), 0);
        EXPECT_TRUE(w.guarda(ruta));
    }
    WrapDibujoCAD r(nullptr, nullptr);
    ASSERT_TRUE(r.lee(ruta));
    ASSERT_EQ(r.mDibujo->entidades.size(), 2U);
    const auto* t = dynamic_cast<const cad::Texto*>(r.mDibujo->entidades[0]);
    const auto* pc = dynamic_cast<const cad::PuntoControl*>(r.mDibujo->entidades[1]);
    ASSERT_TRUE(t != nullptr && pc != nullptr);
    EXPECT_TRUE(t->texto == texto);
    EXPECT_TRUE(pc->nombre() == nombre && pc->codigo == codigo);
    EXPECT_EQ(static_cast<const cad::Punto3<double>&>(*pc), cad::Punto3<double>(4, 5, 6));
}

// A coordinate that is not finite refuses the creation (handle 0, nothing added) and the
// move of a local system's origin, with "Coordenada no válida" each time.
TEST(WrapDibujoCADEntradas, coordenadaNoFinitaNoCreaNiMueve)
{
    Anfitrion h;
    h.w.setSalidaTexto(h.salida());
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const int64_t sistema =
        h.w.nuevoSistemaLocal("Obra", {1, 2, 3}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1});
    ASSERT_NE(sistema, 0);
    const double tres[] = {0, 0, 0, 1, 1, 1, 2, nan, 2};

    EXPECT_EQ(h.w.nuevoPunto(nan, 0, 0), 0);
    EXPECT_EQ(h.w.nuevoPunto(0, inf, 0, 0xFF0000), 0);
    EXPECT_EQ(h.w.nuevoTexto("t", 0, 0, -inf, Alineacion::kAlineacionInfIzq, 1, 0), 0);
    EXPECT_EQ(h.w.nuevoPuntoControl("n", "c", nan, 0, 0), 0);
    EXPECT_EQ(h.w.nuevoPuntoControl("n", "c", 0, 0, inf, 8), 0);
    EXPECT_EQ(h.w.nuevaLinea(0, 0, 0, 1, 1, nan), 0);
    EXPECT_EQ(h.w.nuevaPolilinea(3, tres), 0);
    EXPECT_EQ(h.w.nuevaPolilinea3D({0, 0, 0, inf, 1, 1}, false), 0);
    EXPECT_EQ(h.w.nuevoPoligono(3, tres), 0);
    EXPECT_EQ(h.w.nuevoPoligono({0, 0, 0, 1, 1, 1, 2, 2, -inf}), 0);
    EXPECT_EQ(h.w.nuevoSistemaLocal("Eje", {0, 0, 0}, {nan, 0, 0}, {0, 1, 0}, {0, 0, 1}), 0);
    EXPECT_FALSE(h.w.setOrigenSistemaLocal("Obra", 0, nan, 0));
    EXPECT_EQ(h.textos, std::vector<std::string>(12, "Coordenada no válida"));

    std::vector<int64_t> handles;
    EXPECT_EQ(h.w.getEntidades(handles), 1);
    EXPECT_EQ(h.w.mDibujo->sistemaLocal("Obra")->origen, cad::Punto3<double>(1, 2, 3));
    // Only the first three values of each point are read; a partial point is not.
    EXPECT_NE(h.w.nuevaPolilinea(2, tres), 0);
    EXPECT_NE(h.w.nuevaPolilinea3D({0, 0, 0, 1, 1, 1, nan}, false), 0);
}
