// Every operation a host may call on WrapDibujoCAD, with its exact signature, by family. An
// operation that goes missing, is renamed or changes its arguments or result breaks the build.
#include <cstdint>
#include <cstring>
#include <set>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

#include <gtest/gtest.h>

#include "Fendrix/WrapDibujoCAD.h"
#include "Fendrix/WrapPantallaCAD.h"

namespace
{

using Fendrix::WrapDibujoCAD;
using Fendrix::WrapPantallaCAD;
using W = WrapDibujoCAD;
using S = const std::string&;
using Vd = std::vector<double>;
using Vh = std::vector<int64_t>;

// The member of that exact function type: overload resolution against the fixed parameter
// refuses any other signature.
template <typename Firma>
constexpr Firma W::*op(Firma W::*f)
{
    return f;
}

template <auto... Operaciones>
struct Familia
{
    static constexpr size_t n = sizeof...(Operaciones);
    // Each operation as its type's name and the pointer's bytes, so that an entry listed
    // twice (which would hide a missing one) shows up at run time.
    static void claves(std::vector<std::string>& out) { (out.push_back(clave(Operaciones)), ...); }
    template <typename P>
    static std::string clave(P p)
    {
        std::string c = typeid(P).name();
        char bytes[sizeof(P)];
        std::memcpy(bytes, &p, sizeof(P));
        return c.append(bytes, sizeof(P));
    }
};

// --- frame ------------------------------------------------------------------------------
static_assert(std::is_constructible_v<W, W::ProcesoEventosDelegate, W::ActualizaDelegate>);
static_assert(std::is_destructible_v<W> && !std::is_copy_constructible_v<W>);
static_assert(std::is_default_constructible_v<WrapPantallaCAD>);

using Marco = Familia<
    op<void(WrapPantallaCAD*)>(&W::setPantalla), op<void()>(&W::Dispose),
    op<void(bool)>(&W::Dispose), op<intptr_t() const>(&W::getEditorDibujoCPP),
    op<bool(S)>(&W::salidaTexto), op<void(WrapPantallaCAD*)>(&W::dibuja),
    op<void(cad::PantallaCAD*)>(&W::dibuja), op<void()>(&W::comandoRegen),
    op<void(W::ActualizaDelegate)>(&W::setActualiza),
    op<void(W::SalidaTextoDelegate)>(&W::setSalidaTexto),
    op<void(W::VisorPropiedadesDelegate)>(&W::setVisorPropiedades),
    op<void(W::EdicionEntidadesDelegate)>(&W::setReactorEdicion),
    op<void(W::InsercionEntidadesDelegate)>(&W::setReactorInsercion),
    op<void(W::ComandoInteractivoDelegate)>(&W::setReactorComandoInteractivo),
    op<void(W::InicioProcesoReferenciaEntidadesDelegate)>(&W::setReactorInicioReferenciaEntidades),
    op<void(W::FinalizaProcesoReferenciaEntidadesDelegate)>(&W::setReactorFinReferenciaEntidades),
    op<void()>(&W::ejecutaProcesoEventos), op<void(W::tipoActualizacion)>(&W::actualiza),
    op<void(const char*)>(&W::ejecutaSalidaTextos), op<void()>(&W::ejecutaVisorPropiedades),
    op<bool(int64_t, W::tipoEdicionEntidades, int32_t, double, double, double)>(
        &W::ejecutaReactorEdicion),
    op<bool(int64_t, W::tipoInsercionEntidades)>(&W::ejecutaReactorInsercion),
    op<void(W::estadoComandoInteractivo)>(&W::ejecutaReactorComandoInteractivo),
    op<void()>(&W::ejecutaReactorInicioProcesoReferenciaEntidades),
    op<void()>(&W::ejecutaReactorFinalizaProcesoReferenciaEntidades),
    op<int64_t(cad::Entidad*)>(&W::insertaEntidadGetHandle),
    op<bool(cad::Entidad*)>(&W::insertaEntidad)>;

using Huecas =
    Familia<op<bool(int64_t, S)>(&W::exportaPLY), op<bool(S)>(&W::exportaSKP),
            op<bool(S, S, S)>(&W::exportaCollada), op<bool(int64_t)>(&W::liberaRecursosEntidad),
            op<void(int32_t, int32_t)>(&W::muestraMenuContexto)>;

// --- document, files, editor state, command line ------------------------------------------
using Documento = Familia<op<void()>(&W::nuevoDocumento), op<bool()>(&W::destruyeDocumento),
                          op<void(W&)>(&W::une), op<bool()>(&W::hayCambios),
                          op<void()>(&W::borraMarcaCambios), op<void(bool)>(&W::setModo2D),
                          op<void(W::tipoCursor)>(&W::setCursor), op<void()>(&W::redibuja)>;

using Ficheros = Familia<op<bool(S)>(&W::lee), op<bool(S)>(&W::guarda), op<bool(S)>(&W::importaDXF),
                         op<bool(S)>(&W::importaOBJ), op<bool(S)>(&W::exportaDXF)>;

using EstadoEditor =
    Familia<op<bool()>(&W::puedeDeshacer), op<bool()>(&W::puedeRehacer), op<void()>(&W::deshacer),
            op<void()>(&W::rehacer), op<void()>(&W::cortar), op<void()>(&W::copiar),
            op<void()>(&W::pegar), op<bool()>(&W::dentroComandoInteractivo),
            op<void(int32_t, bool, bool, bool)>(&W::teclaPulsada), op<void()>(&W::cancelaComando),
            op<void(bool)>(&W::dibujoActivo), op<double()>(&W::getFactorVertical),
            op<void(double)>(&W::setFactorVertical)>;

using LineaComandos =
    Familia<op<void(S)>(&W::introPulsado), op<std::vector<std::string>()>(&W::listaOpciones),
            op<bool()>(&W::lineaComandosEsperaCoordenada), op<bool()>(&W::lineaComandosEsperaValor),
            op<void()>(&W::lineaComandosLimpiaEntrada)>;

// --- configuration, cursor and camera -------------------------------------------------------
using Configuracion =
    Familia<op<bool(W::colorElemento, int32_t&, int32_t&, int32_t&)>(&W::getColorConfiguracion),
            op<void(W::colorElemento, int32_t, int32_t, int32_t)>(&W::setColorConfiguracion),
            op<int32_t(W::valorElemento)>(&W::getValorConfiguracion),
            op<void(W::valorElemento, int32_t)>(&W::setValorConfiguracion),
            op<bool(S)>(&W::cargarFicheroMensajes)>;

using CursorYCamara = Familia<op<bool(double&, double&, int32_t&)>(&W::getCursor),
                              op<bool(double&, double&, double&)>(&W::getCursor3d),
                              op<bool(double&, double&, double&)>(&W::getPosicionCamara),
                              op<bool(double&, double&, double&)>(&W::getObjetivoCamara),
                              op<bool(double&, double&, double&)>(&W::getDireccionCamara),
                              op<bool()>(&W::comandoPosicionCamara)>;

// --- layers, colours, snap, text styles, materials -------------------------------------------
using Capas = Familia<
    op<int32_t()>(&W::numeroCapas), op<std::string(int32_t)>(&W::capa),
    op<std::string()>(&W::capaActual), op<bool(S)>(&W::capaActual),
    op<bool(S, bool)>(&W::existeCapa), op<bool(S)>(&W::capaVisible), op<bool(S)>(&W::capaBloqueada),
    op<uint32_t(S)>(&W::getColorCapa), op<bool(S, int32_t&, int32_t&, int32_t&)>(&W::getColorCapa),
    op<double(S)>(&W::grosorLineaCapa), op<bool(S, double)>(&W::setGrosorLineaCapa),
    op<bool(double)>(&W::setGrosorLineaCapaActual), op<int32_t(S)>(&W::patronLineaCapa),
    op<bool(int32_t)>(&W::setPatronLineaCapaActual), op<int32_t(S, S)>(&W::copiarPolilineasCapa),
    op<bool(S, bool)>(&W::nuevaCapa), op<bool(S)>(&W::posicionaCapa), op<bool(S)>(&W::borraCapa),
    op<bool(S, bool)>(&W::visibilidadCapa), op<bool(S, bool)>(&W::bloqueaCapa),
    op<bool(S, int32_t)>(&W::colorCapa), op<bool(S, int32_t, int32_t, int32_t)>(&W::colorCapa),
    op<bool(S, double)>(&W::grosorCapa), op<bool(S, S)>(&W::renombraCapa),
    op<bool(S, bool)>(&W::visibilidadTextosCapa),
    op<bool(int64_t, std::string&)>(&W::getNombreCapa)>;

using Colores = Familia<op<bool(int32_t)>(&W::setColorActualIndice),
                        op<void(int32_t, int32_t, int32_t)>(&W::setColorActualRGB),
                        op<bool(int32_t&, int32_t&, int32_t&)>(&W::getColorActualRGB),
                        op<bool(int32_t, int32_t&, int32_t&, int32_t&)>(&W::getColorIndice)>;

using Referencias = Familia<op<void(bool, int32_t)>(&W::setReferenciaEntidades),
                            op<void(bool&, int32_t&)>(&W::getReferenciaEntidades)>;

using EstilosTexto =
    Familia<op<bool(S, S, int32_t, bool)>(&W::nuevoEstiloTexto),
            op<bool(S, S, int32_t, bool)>(&W::editaEstiloTexto), op<bool(S)>(&W::estiloTextoActual),
            op<bool(S, bool)>(&W::existeEstiloTexto)>;

using Materiales =
    Familia<op<int32_t()>(&W::numeroMateriales), op<int32_t(int32_t)>(&W::idMaterial),
            op<bool(int32_t, int32_t&)>(&W::getIdExternoMaterial),
            op<int32_t(int32_t, uint32_t, double)>(&W::nuevoMaterial),
            op<int32_t(int32_t, S)>(&W::nuevoMaterial),
            op<bool(int32_t, int32_t, uint32_t, double, S)>(&W::setMaterial),
            op<bool(int32_t, int32_t&, int32_t&, uint32_t&, double&, std::string&)>(
                &W::getMaterial),
            op<void(int32_t)>(&W::borraMaterial)>;

// --- faces of models, entity creation, visibility flags ---------------------------------------
using CarasModelos = Familia<op<int32_t(int64_t)>(&W::numeroCaras),
                             op<int32_t(int64_t, int32_t, Vd&)>(&W::getVerticesCara),
                             op<bool(int64_t, int32_t, int32_t, const Vd&)>(&W::setMapeoFotografia),
                             op<bool(int64_t, int32_t, int32_t)>(&W::setMapeoTextura),
                             op<bool(int64_t, int32_t)>(&W::setMapeoTextura)>;

using Creacion = Familia<
    op<int64_t(double, double, double)>(&W::nuevoPunto),
    op<int64_t(double, double, double, int32_t)>(&W::nuevoPunto),
    op<int64_t(int64_t, double, double, double, int32_t)>(&W::nuevoPunto),
    op<int64_t(const Vd&, const std::vector<int32_t>&)>(&W::nuevoGrupoPuntos),
    op<int64_t(S, S, double, double, double)>(&W::nuevoPuntoControl),
    op<int64_t(S, S, double, double, double, double)>(&W::nuevoPuntoControl),
    op<int64_t(S, double, double, double, W::alineacionTexto, double, double)>(&W::nuevoTexto),
    op<int64_t(double, double, double, double, double, double)>(&W::nuevaLinea),
    op<int64_t(int32_t, const double*)>(&W::nuevaCara3D),
    op<int64_t(int32_t, const double*)>(&W::nuevaPolilinea),
    op<int64_t(const Vd&, bool)>(&W::nuevaPolilinea3D),
    op<int64_t(int32_t, const double*)>(&W::nuevoPoligono),
    op<int64_t(const Vd&)>(&W::nuevoPoligono), op<int64_t(const double*)>(&W::nuevoCubo),
    op<int64_t(S)>(&W::nuevoObjeto3D),
    op<int64_t(double, double, double, double, double, double, double, double, double, S, S,
               int32_t)>(&W::nuevaTomaCamara),
    op<int64_t(double, double, double, double, double, double, double, double, double, S, S,
               int32_t, double)>(&W::nuevaTomaCamara),
    op<int64_t(double, double, double, double, int32_t, int32_t, double, double, double, S)>(
        &W::nuevaFoto360),
    op<int64_t()>(&W::ultimaEntidadCreada), op<int32_t()>(&W::borraTomasCamaras)>;

using Visibilidad =
    Familia<op<void(bool)>(&W::muestraModelos), op<bool()>(&W::modelosVisibles),
            op<void(bool)>(&W::muestraCamaras), op<bool()>(&W::camarasVisibles),
            op<void(bool)>(&W::muestraPuntosControl), op<bool()>(&W::puntosControlVisibles),
            op<void(bool)>(&W::muestraPlanoReferencia), op<bool()>(&W::planoReferenciaVisible),
            op<void(W::representacion_modelos)>(&W::setRepresentacionModelos)>;

// --- input from the user, commands, zoom ---------------------------------------------------
using Entrada =
    Familia<op<bool(S, std::string&, S)>(&W::getValor), op<bool(S, double&, double)>(&W::getValor),
            op<bool(S, int32_t&, int32_t)>(&W::getValor), op<bool(S, bool&, bool)>(&W::getValor),
            op<bool(S, double&, double&, double&)>(&W::getPunto),
            op<bool(S, const std::vector<std::string>&, int32_t&, double&, double&, double&)>(
                &W::getPunto),
            op<bool(S, S, int32_t&, int32_t&, int32_t&, int32_t&)>(&W::getVentana),
            op<bool(S, S, double&, double&, double&, double&, double&, double&)>(&W::getVentana),
            op<bool(S, S, double&, double&, double&, double&)>(&W::getCirculo),
            op<bool(S, S, double&, double&, double&, double&, double&, double&)>(&W::getCirculo)>;

using Comandos = Familia<
    op<bool()>(&W::comandoEncuadre), op<bool()>(&W::comandoRotacion),
    op<int32_t()>(&W::comandoPunto), op<int32_t()>(&W::comandoLinea),
    op<int64_t(bool)>(&W::comandoPolilineaGetHandle), op<int32_t(bool, bool)>(&W::comandoPolilinea),
    op<bool(int64_t, bool)>(&W::comandoFusionPolilineasNueva),
    op<bool(int64_t, int64_t, bool)>(&W::comandoFusionPolilineas),
    op<int32_t()>(&W::comandoCara3D3), op<int32_t()>(&W::comandoCara3D4),
    op<int32_t()>(&W::comandoCara), op<int32_t()>(&W::comandoPlano), op<int32_t()>(&W::comandoCubo),
    op<int32_t()>(&W::comandoModeloCubo), op<int32_t()>(&W::comandoModeloCilindro),
    op<int32_t()>(&W::comandoModeloEsfera), op<int32_t()>(&W::comandoConvierteObjeto3D),
    op<int32_t()>(&W::comandoParalelaPlano), op<int32_t()>(&W::comandoPerpendicularPlano),
    op<bool()>(&W::comandoContornoPlano), op<int32_t(S)>(&W::comandoAsignaMaterial),
    op<double()>(&W::comandoDistancia), op<double()>(&W::comandoDistanciaPolilinea),
    op<bool(double&, double&, double&, double&, double&, double&, double&, double&, bool)>(
        &W::comandoDistanciaConSnap),
    op<double()>(&W::comandoArea), op<bool()>(&W::comandoAngulo),
    op<bool()>(&W::comandoPropiedades),
    op<bool(double&, double&, double&, double&, double&, double&)>(
        &W::comandoPidePuntosPerfilRapido),
    op<bool(S, S, double&, double&, double&, double&, double&, double&)>(
        &W::comandoPidePuntosPerfilRapido),
    op<int32_t()>(&W::comandoBorrar), op<int32_t()>(&W::comandoMover),
    op<int32_t(double, double, double)>(&W::comandoMoverXYZ), op<int32_t()>(&W::comandoCopiar),
    op<bool(int64_t, int32_t, bool, bool)>(&W::comandoEditar),
    op<bool(int64_t)>(&W::comandoEditPol),
    op<bool(int64_t, int32_t)>(&W::comandoEditarVertsPolPerfil),
    op<bool(int64_t)>(&W::comandoInsertaVertsPolPerfil),
    op<bool(int64_t, int32_t)>(&W::comandoInsertaVertsPol),
    op<bool(int64_t)>(&W::comandoBorrarVertsPol), op<bool(int64_t)>(&W::comandoBorrarRangoVertsPol),
    op<bool(int64_t)>(&W::comandoBorrarVentanaVertsPol), op<bool()>(&W::comandoExtrusionEntidad),
    op<bool(bool)>(&W::comandoExtrusion), op<bool(int32_t)>(&W::comandoParteArista),
    op<bool()>(&W::comandoParteCara), op<bool()>(&W::comandoUneVertices),
    op<bool()>(&W::comandoRecortaCara), op<bool()>(&W::comandoRellenaHueco),
    op<bool()>(&W::comandoInvierteNormales), op<bool()>(&W::comandoBorraVerticeModelo),
    op<bool()>(&W::comandoBorraAristaModelo), op<bool()>(&W::comandoBorraCaraModelo),
    op<bool()>(&W::comandoHueco), op<bool()>(&W::comandoHuecoPolilinea),
    op<int32_t()>(&W::comandoIsolineas),
    op<bool(S, S, W::tipoSeleccion)>(&W::comandoSeleccionaEntidades),
    op<bool()>(&W::extiendePlanos), op<bool()>(&W::unePlanos),
    op<bool()>(&W::comandoInterseccionPlanos), op<bool()>(&W::comandoZoomVentana),
    op<bool(S, S)>(&W::comandoZoomVentana), op<bool()>(&W::comandoPlanoReferencia),
    op<bool()>(&W::comandoCentroRotacion), op<bool(S)>(&W::comandoSistemaLocal),
    op<bool()>(&W::comandoZoomExtension), op<bool(int64_t)>(&W::comandoZoomExtension),
    op<bool()>(&W::uneModelos)>;

using Zoom = Familia<op<void(double)>(&W::zoomExtension),
                     op<void(double, double)>(&W::zoomExtension), op<void(double)>(&W::zoomEscala),
                     op<void(int32_t, int32_t, int32_t, int32_t)>(&W::zoomVentana),
                     op<void(double, double, double, double, double, double)>(&W::zoomVentana)>;

// --- selection and queries ------------------------------------------------------------------
using Seleccion =
    Familia<op<void()>(&W::deselecciona), op<bool(int64_t)>(&W::deselecciona),
            op<bool(int64_t)>(&W::seleccionaEntidad), op<bool(S, int64_t&)>(&W::seleccionaEntidad),
            op<bool(S, S, int64_t&)>(&W::seleccionaEntidad),
            op<bool(int64_t, uint32_t, uint32_t)>(&W::marcaVerticesEntidad),
            op<bool(int64_t)>(&W::quitaMarcasVerticesEntidad),
            op<int32_t(Vh&)>(&W::seleccionaPolilineasCerradas),
            op<int64_t(int64_t, double, S)>(&W::textoEnEntidad),
            op<int32_t(int64_t)>(&W::indiceMasCercanoCursor), op<bool(int64_t)>(&W::borraEntidad)>;

using Consultas = Familia<
    op<int32_t(Vh&)>(&W::getEntidades), op<int32_t(Vh&)>(&W::getEntidadesSeleccionadas),
    op<int64_t(int32_t, int32_t)>(&W::getEntidadBajoPixel),
    op<int32_t(int32_t, int32_t, Vh&)>(&W::getEntidadesBajoPixel),
    op<int32_t(S, Vd&, std::vector<uint32_t>&)>(&W::getLineasCapa),
    op<int32_t(Vh&, std::vector<std::string>&, Vd&)>(&W::getPuntosControl),
    op<bool(int64_t, std::string&, std::string&, double&, double&, double&)>(&W::getPuntoControl),
    op<int32_t(Vh&, Vd&)>(&W::getTomasCamaras), op<int32_t(int64_t, Vd&)>(&W::getSoloVertices),
    op<int32_t(int64_t, Vd&)>(&W::getVertices),
    op<bool(int64_t, double&, int32_t&, int32_t&, int32_t&, int32_t&)>(&W::propiedadesSuperficie),
    op<double(int64_t)>(&W::longitud)>;

// --- property sheets ----------------------------------------------------------------------
using P = W::tipoPropiedad;
using Propiedades = Familia<
    op<int32_t(int64_t)>(&W::numeroCategorias),
    op<std::string(int64_t, int32_t)>(&W::nombreCategoria),
    op<int32_t(int64_t, int32_t)>(&W::numeroPropiedadesCategoria),
    op<bool(int64_t, int32_t, int32_t, std::string&, P&, std::string&, bool&)>(&W::getPropiedad),
    op<bool(int64_t, int32_t, int32_t, std::string&, P&, std::string&, bool&, int32_t&, uint32_t&)>(
        &W::getPropiedad),
    op<bool(int64_t, int32_t, int32_t, std::string&, P&, std::string&, bool&, int16_t&, int32_t&)>(
        &W::getPropiedad),
    op<bool(int64_t, int32_t, int32_t, std::string&, P&, std::string&, bool&, Vd&)>(
        &W::getPropiedad),
    op<bool(int64_t, S, double&)>(&W::getPropiedad),
    op<bool(int64_t, S, int32_t&)>(&W::getPropiedad),
    op<bool(int64_t, S, std::string&)>(&W::getPropiedad),
    op<bool(int64_t, int32_t, int32_t, S)>(&W::setPropiedad),
    op<bool(int64_t, int32_t, int32_t, S, int32_t)>(&W::setPropiedad),
    op<bool(int64_t, int32_t, int32_t, int16_t, int32_t)>(&W::setPropiedad),
    op<bool(int64_t, int32_t, int32_t, const Vd&)>(&W::setPropiedad),
    op<bool(int64_t, S, double)>(&W::setPropiedad), op<bool(int64_t, S, int32_t)>(&W::setPropiedad),
    op<bool(int64_t, S, S)>(&W::setPropiedad),
    op<int32_t(int64_t, int32_t, int32_t)>(&W::numeroValoresEnumerados),
    op<bool(int64_t, int32_t, int32_t, int32_t, std::string&)>(&W::valorEnumerado),
    op<bool(int64_t, int32_t, int32_t, int32_t&)>(&W::getEnumerado),
    op<bool(int64_t, int32_t, int32_t, int32_t)>(&W::setEnumerado),
    op<int32_t(int64_t, int32_t, int32_t)>(&W::numeroElementosLista),
    op<bool(int64_t, int32_t, int32_t, int32_t, double&, double&, double&)>(&W::getElementoLista),
    op<bool(int64_t, int32_t, int32_t, int32_t, const double*)>(&W::setElementoLista)>;

// --- variables, views and local systems ---------------------------------------------------
using VariablesYVistas =
    Familia<op<void(S, S)>(&W::setVariable), op<void(S, int32_t)>(&W::setVariable),
            op<void(S, double)>(&W::setVariable),
            op<void(S, double, double, double)>(&W::setVariable), op<void(S)>(&W::borraVariable),
            op<int32_t()>(&W::numeroVistas), op<std::string(int32_t)>(&W::nombreVista),
            op<void(S)>(&W::guardaVistaActual), op<void()>(&W::guardaVistaActual),
            op<void(S)>(&W::activaVista), op<void(S)>(&W::borraVista),
            op<void(W&)>(&W::copiaVista)>;

using SistemasLocales =
    Familia<op<int32_t()>(&W::numeroSistemasLocales),
            op<std::string(int32_t)>(&W::nombreSistemaLocal), op<bool(S)>(&W::activaSistemaLocal),
            op<bool(std::string&, Vd&, Vd&, Vd&, Vd&)>(&W::sistemaLocalActual),
            op<void()>(&W::quitaSistemaLocal), op<bool(S)>(&W::borraSistemaLocal),
            op<bool(S)>(&W::existeSistemaLocal),
            op<int64_t(S, const Vd&, const Vd&, const Vd&, const Vd&)>(&W::nuevoSistemaLocal),
            op<bool(S, double, double, double)>(&W::setOrigenSistemaLocal)>;

template <typename... Familias>
struct Fachada
{
    static constexpr size_t n = (Familias::n + ...);
    static std::vector<std::string> claves()
    {
        std::vector<std::string> c;
        (Familias::claves(c), ...);
        return c;
    }
};

using Todas = Fachada<Marco, Huecas, Documento, Ficheros, EstadoEditor, LineaComandos,
                      Configuracion, CursorYCamara, Capas, Colores, Referencias, EstilosTexto,
                      Materiales, CarasModelos, Creacion, Visibilidad, Entrada, Comandos, Zoom,
                      Seleccion, Consultas, Propiedades, VariablesYVistas, SistemasLocales>;

// The list names each operation once, and holds as many as the host's interface has: a
// duplicated entry would stand in for one that was dropped from the list.
TEST(OperacionesFachada, cadaOperacionUnaVez)
{
    const std::vector<std::string> claves = Todas::claves();
    EXPECT_EQ(claves.size(), 302U);
    EXPECT_EQ(std::set<std::string>(claves.begin(), claves.end()).size(), claves.size());
}

}  // namespace
