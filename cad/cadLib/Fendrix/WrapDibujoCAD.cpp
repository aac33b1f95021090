#include "Fendrix/WrapDibujoCAD.h"

#include <cstring>
#include <initializer_list>
#include <new>
#include <stdexcept>

#include "Fendrix/GuardasFachada.h"
#include "Fendrix/constCharPtr.h"
#include "base/Admisible.h"
#include "base/Color.h"
#include "base/Configuracion.h"
#include "base/Excepcion.h"
#include "base/FicheroAtomico.h"
#include "base/GestorMensajes.h"
#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "documento/VariablesPintura.h"
#include "editor/EditorDibujo.h"
#include "entidades/Entidad.h"
#include "entidades/Firmas.h"
#include "entidades/Linea.h"
#include "entidades/Poligono.h"
#include "entidades/Polilinea.h"
#include "entidades/Punto.h"
#include "entidades/PuntoControl.h"
#include "entidades/SistemaLocal.h"
#include "entidades/Texto.h"
#include "intercambio/ExportaDXF.h"
#include "pantalla/PantallaCAD.h"

namespace Fendrix
{

using cad::Capa;
using cad::ColorCapa;
using cad::Configuracion;
using cad::EditorDibujo;

using cad::kVarOcultaCamaras;
using cad::kVarOcultaModelos;
using cad::kVarOcultaPlanoReferencia;
using cad::kVarOcultaPuntosControl;
using cad::kVarRepresentacionModelos;
using cad::kVarRepresentacionNubes;

// ---------------------------------------------------------------------------------------
// Frame

WrapDibujoCAD::WrapDibujoCAD(ProcesoEventosDelegate procesoEventos, ActualizaDelegate actualiza_)
{
    mEditor = nullptr;
    mPantalla = nullptr;
    mDibujo = new cad::Dibujo();
    mProcesoEventos = std::move(procesoEventos);
    mActualiza = std::move(actualiza_);
    mEditor = new EditorDibujo(mDibujo, nullptr);
}

WrapDibujoCAD::~WrapDibujoCAD()
{
    Dispose(true);
}

void WrapDibujoCAD::Dispose()
{
    Dispose(true);
}

void WrapDibujoCAD::Dispose(bool liberar)
{
    if (!liberar)
    {
        return;
    }
    // The editor refers to the drawing, so it goes first.
    delete mEditor;
    delete mDibujo;
    mDibujo = nullptr;
    mEditor = nullptr;
    mPantalla = nullptr;
}

void WrapDibujoCAD::setPantalla(WrapPantallaCAD* p)
{
    delete mEditor;
    mEditor = nullptr;
    mPantalla = p != nullptr ? p->mPantalla : nullptr;
    mEditor = new EditorDibujo(mDibujo, mPantalla);
    if (mActualiza)
    {
        creaWrapperActualizacion();
    }
    if (mSalidaTexto)
    {
        creaWrapperSalidaTexto();
    }
}

intptr_t WrapDibujoCAD::getEditorDibujoCPP() const
{
    return reinterpret_cast<intptr_t>(mEditor);
}

bool WrapDibujoCAD::salidaTexto(const std::string& texto)
{
    if (!mSalidaTexto)
    {
        return false;
    }
    mSalidaTexto(texto);
    return true;
}

void WrapDibujoCAD::dibuja(WrapPantallaCAD* p)
{
    if (p != nullptr && p->mPantalla != nullptr)
    {
        dibuja(p->mPantalla);
    }
}

void WrapDibujoCAD::dibuja(cad::PantallaCAD* p)
{
    if (mDibujo == nullptr || p == nullptr)
    {
        return;
    }
    mDibujo->inicioDibujo(*p);
    const bool entidades = mDibujo->dibuja(*p);
    mDibujo->finEntidades(*p);
    if (mEditor != nullptr)
    {
        mEditor->dibuja(*p, entidades);
    }
    mDibujo->finDibujo(*p);
}

void WrapDibujoCAD::comandoRegen()
{
    dibuja(mPantalla);
}

// ---------------------------------------------------------------------------------------
// Callbacks. Each wrapper binds the facade's adapter, not the host's delegate, so that a
// later setter with a new delegate takes effect without a new entry point.

void WrapDibujoCAD::creaWrapperActualizacion()
{
    // No test of the editor here, unlike the others; the editor exists until Dispose.
    if (mEditor == nullptr)
    {
        return;
    }
    auto w = std::make_unique<ActualizaDelegate_Wrapper>();
    w->_Delegate = [this](tipoActualizacion t) { actualiza(t); };
    ActualizaDelegate_Wrapper* punto = w.get();
    mEditor->setActualiza([punto](EditorDibujo::actualiza_e t)
                          { punto->_Delegate(static_cast<tipoActualizacion>(t)); });
    mActualizaDelegateWrapper = std::move(w);
}

void WrapDibujoCAD::creaWrapperSalidaTexto()
{
    if (mEditor == nullptr)
    {
        return;
    }
    auto w = std::make_unique<SalidaTextoDelegate_Wrapper>();
    w->_Delegate = [this](const char* texto) { ejecutaSalidaTextos(texto); };
    SalidaTextoDelegate_Wrapper* punto = w.get();
    mEditor->setSalidaTexto([punto](const char* texto) { punto->_Delegate(texto); });
    mSalidaTextoDelegateWrapper = std::move(w);
}

void WrapDibujoCAD::creaWrapperVisorPropiedades()
{
    // Made once: a viewer attached before setPantalla never reaches the new editor. That is
    // the settled behaviour of the frame.
    if (mEditor == nullptr || mVisorPropiedadesWrapper)
    {
        return;
    }
    auto w = std::make_unique<VisorPropiedadesDelegate_Wrapper>();
    w->_Delegate = [this]() { ejecutaVisorPropiedades(); };
    VisorPropiedadesDelegate_Wrapper* punto = w.get();
    mEditor->setVisorPropiedades([punto]() { punto->_Delegate(); });
    mVisorPropiedadesWrapper = std::move(w);
}

void WrapDibujoCAD::creaWrapperReactorEdicion()
{
    if (mEditor == nullptr)
    {
        return;
    }
    auto w = std::make_unique<EdicionEntidadesDelegate_Wrapper>();
    w->_Delegate = [this](int64_t h, tipoEdicionEntidades t, int32_t i, double x, double y,
                          double z) { return ejecutaReactorEdicion(h, t, i, x, y, z); };
    EdicionEntidadesDelegate_Wrapper* punto = w.get();
    mEditor->setReactorEdicionEntidades(
        [punto](int64_t h, EditorDibujo::enumEdicionEntidades t, int i, double x, double y,
                double z)
        { return punto->_Delegate(h, static_cast<tipoEdicionEntidades>(t), i, x, y, z); });
    mReactorEdicionDelegateWrapper = std::move(w);
}

void WrapDibujoCAD::creaWrapperReactorInsercion()
{
    if (mEditor == nullptr)
    {
        return;
    }
    auto w = std::make_unique<InsercionEntidadesDelegate_Wrapper>();
    w->_Delegate = [this](int64_t h, tipoInsercionEntidades t)
    { return ejecutaReactorInsercion(h, t); };
    InsercionEntidadesDelegate_Wrapper* punto = w.get();
    mEditor->setReactorInsercionEntidades(
        [punto](int64_t h, EditorDibujo::enumInsercionEntidades t)
        { return punto->_Delegate(h, static_cast<tipoInsercionEntidades>(t)); });
    mReactorInsercionDelegateWrapper = std::move(w);
}

void WrapDibujoCAD::creaWrapperReactorComandoInteractivo()
{
    if (mEditor == nullptr)
    {
        return;
    }
    auto w = std::make_unique<ComandoInteractivoDelegate_Wrapper>();
    w->_Delegate = [this](estadoComandoInteractivo e) { ejecutaReactorComandoInteractivo(e); };
    ComandoInteractivoDelegate_Wrapper* punto = w.get();
    mEditor->setReactorComandoInteractivo(
        [punto](EditorDibujo::enumEstadoComandoInteractivo e)
        { punto->_Delegate(static_cast<estadoComandoInteractivo>(e)); });
    mReactorComandoInteractivoDelagateWrapper = std::move(w);
}

void WrapDibujoCAD::creaWrapperReactorInicioProcesoReferenciaEntidades()
{
    if (mDibujo == nullptr)
    {
        return;
    }
    auto w = std::make_unique<InicioProcesoReferenciaEntidadesDelegate_Wrapper>();
    w->_Delegate = [this]() { ejecutaReactorInicioProcesoReferenciaEntidades(); };
    auto* punto = w.get();
    mDibujo->setReactorInicioReferenciaEntidades([punto]() { punto->_Delegate(); });
    mInicioProcesoReferenciaEntidadesDelegateWrapper = std::move(w);
}

void WrapDibujoCAD::creaWrapperReactorFinalizaProcesoReferenciaEntidades()
{
    if (mDibujo == nullptr)
    {
        return;
    }
    auto w = std::make_unique<FinalizaProcesoReferenciaEntidadesDelegate_Wrapper>();
    w->_Delegate = [this]() { ejecutaReactorFinalizaProcesoReferenciaEntidades(); };
    auto* punto = w.get();
    mDibujo->setReactorFinReferenciaEntidades([punto]() { punto->_Delegate(); });
    mFinalizaProcesoReferenciaEntidadesDelegateWrapper = std::move(w);
}

// A null delegate leaves the kernel's entry point and adapter in place; the adapter then
// finds no delegate and does nothing.
void WrapDibujoCAD::setActualiza(ActualizaDelegate d)
{
    mActualiza = std::move(d);
    if (mActualiza)
    {
        creaWrapperActualizacion();
    }
}

void WrapDibujoCAD::setSalidaTexto(SalidaTextoDelegate d)
{
    mSalidaTexto = std::move(d);
    if (mSalidaTexto)
    {
        creaWrapperSalidaTexto();
    }
}

void WrapDibujoCAD::setVisorPropiedades(VisorPropiedadesDelegate d)
{
    mVisorPropiedades = std::move(d);
    creaWrapperVisorPropiedades();
}

void WrapDibujoCAD::setReactorEdicion(EdicionEntidadesDelegate d)
{
    mReactorEdicion = std::move(d);
    if (mReactorEdicion)
    {
        creaWrapperReactorEdicion();
    }
}

void WrapDibujoCAD::setReactorInsercion(InsercionEntidadesDelegate d)
{
    mReactorInsercion = std::move(d);
    if (mReactorInsercion)
    {
        creaWrapperReactorInsercion();
    }
}

void WrapDibujoCAD::setReactorComandoInteractivo(ComandoInteractivoDelegate d)
{
    mReactorComandoInteractivo = std::move(d);
    if (mReactorComandoInteractivo)
    {
        creaWrapperReactorComandoInteractivo();
    }
}

void WrapDibujoCAD::setReactorInicioReferenciaEntidades(InicioProcesoReferenciaEntidadesDelegate d)
{
    mReactorInicioProcesoReferenciaEntidades = std::move(d);
    if (mReactorInicioProcesoReferenciaEntidades)
    {
        creaWrapperReactorInicioProcesoReferenciaEntidades();
    }
}

void WrapDibujoCAD::setReactorFinReferenciaEntidades(FinalizaProcesoReferenciaEntidadesDelegate d)
{
    mReactorFinalizaProcesoReferenciaEntidades = std::move(d);
    if (mReactorFinalizaProcesoReferenciaEntidades)
    {
        creaWrapperReactorFinalizaProcesoReferenciaEntidades();
    }
}

// The event hook is stored and never wired: the kernel's waits run their own pump.
void WrapDibujoCAD::ejecutaProcesoEventos()
{
    if (mProcesoEventos)
    {
        mProcesoEventos();
    }
}

void WrapDibujoCAD::actualiza(tipoActualizacion tipo)
{
    if (mActualiza)
    {
        mActualiza(tipo);
    }
}

void WrapDibujoCAD::ejecutaSalidaTextos(const char* texto)
{
    if (mSalidaTexto)
    {
        mSalidaTexto(std::string(texto != nullptr ? texto : ""));
    }
}

void WrapDibujoCAD::ejecutaVisorPropiedades()
{
    if (mVisorPropiedades)
    {
        mVisorPropiedades();
    }
}

bool WrapDibujoCAD::ejecutaReactorEdicion(int64_t handle, tipoEdicionEntidades tipo, int32_t indice,
                                          double x, double y, double z)
{
    return mReactorEdicion ? mReactorEdicion(handle, tipo, indice, x, y, z) : true;
}

bool WrapDibujoCAD::ejecutaReactorInsercion(int64_t handle, tipoInsercionEntidades tipo)
{
    return mReactorInsercion ? mReactorInsercion(handle, tipo) : true;
}

void WrapDibujoCAD::ejecutaReactorComandoInteractivo(estadoComandoInteractivo estado)
{
    if (mReactorComandoInteractivo)
    {
        mReactorComandoInteractivo(estado);
    }
}

void WrapDibujoCAD::ejecutaReactorInicioProcesoReferenciaEntidades()
{
    if (mReactorInicioProcesoReferenciaEntidades)
    {
        mReactorInicioProcesoReferenciaEntidades();
    }
}

void WrapDibujoCAD::ejecutaReactorFinalizaProcesoReferenciaEntidades()
{
    if (mReactorFinalizaProcesoReferenciaEntidades)
    {
        mReactorFinalizaProcesoReferenciaEntidades();
    }
}

// ---------------------------------------------------------------------------------------
// Document and files

void WrapDibujoCAD::nuevoDocumento()
{
    if (mDibujo != nullptr)
    {
        mDibujo->nuevoDocumento();
    }
}

bool WrapDibujoCAD::destruyeDocumento()
{
    return mDibujo != nullptr && mDibujo->destruyeDocumento();
}

void WrapDibujoCAD::une(WrapDibujoCAD& otro)
{
    if (mDibujo != nullptr && otro.mDibujo != nullptr && mDibujo != otro.mDibujo)
    {
        mDibujo->une(*otro.mDibujo);
    }
}

bool WrapDibujoCAD::hayCambios()
{
    return mDibujo != nullptr && mDibujo->hayCambios();
}

void WrapDibujoCAD::borraMarcaCambios()
{
    if (mDibujo != nullptr)
    {
        mDibujo->borraMarcaCambios();
    }
}

void WrapDibujoCAD::setModo2D(bool activo)
{
    if (mDibujo != nullptr)
    {
        mDibujo->setModo2D(activo, mPantalla);
    }
}

void WrapDibujoCAD::setCursor(tipoCursor tipo)
{
    if (mDibujo != nullptr)
    {
        mDibujo->setTipoCursor(static_cast<int32_t>(tipo));
    }
}

void WrapDibujoCAD::redibuja()
{
    if (mDibujo != nullptr)
    {
        mDibujo->edicionHecha();
    }
}

bool WrapDibujoCAD::lee(const std::string& fichero)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    const constCharPtr ruta(fichero);
    return mEditor->cargaDocumento(ruta.c_str());
}

bool WrapDibujoCAD::guarda(const std::string& fichero)
{
    if (mEditor != nullptr)
    {
        const constCharPtr ruta(fichero);
        mEditor->guardaDocumento(ruta.c_str());
    }
    return true;
}

bool WrapDibujoCAD::exportaDXF(const std::string& fichero)
{
    if (mDibujo == nullptr)
    {
        return false;
    }
    const constCharPtr ruta(fichero);
    cad::ExportaDXF dxf(ruta.c_str());
    escribeDXF(dxf);
    return true;
}

bool WrapDibujoCAD::importaDXF(const std::string& fichero)
{
    // A disposed facade has nothing to add to: refused rather than reaching a null drawing.
    if (mDibujo == nullptr)
    {
        return false;
    }
    const constCharPtr ruta(fichero);
    const bool ok = mDibujo->importaDocumentoDFX(ruta.c_str());
    avisaImportacion();
    return ok;
}

void WrapDibujoCAD::avisaImportacion()
{
    if (mEditor != nullptr)
    {
        mEditor->actualiza(cad::EditorDibujo::kCapas, false);
        mEditor->actualiza(cad::EditorDibujo::kControl, false);
        mEditor->actualiza(cad::EditorDibujo::kDocumento, false);
    }
}

void WrapDibujoCAD::escribeDXF(cad::ExportaDXF& dxf)
{
    mDibujo->inicializaDocumentoDXF(dxf);
    mDibujo->exportaDocumentoDFX(dxf);
    if (mPantalla != nullptr)
    {
        mPantalla->es2D();  // the display's state is asked for; nothing of it is written
    }
    mDibujo->finalizaDocumentoDXF(dxf);
}

namespace
{

// Runs a checked file operation: what would raise becomes a message.
template <typename Operacion>
bool comprobado(const std::string& fichero, std::string& mensaje, Operacion operacion)
{
    mensaje.clear();
    try
    {
        return operacion();
    }
    catch (const std::logic_error&)
    {
        mensaje = "la ruta no es UTF-8 válido: " + fichero;
    }
    catch (const std::bad_alloc&)
    {
        mensaje = "no hay memoria suficiente para " + fichero;
    }
    return false;
}

}  // namespace

template <typename Operacion>
bool WrapDibujoCAD::conEditor(const std::string& fichero, std::string& mensaje,
                              cad::resultadoFichero_t& resultado, Operacion operacion)
{
    const bool ok =
        comprobado(fichero, mensaje, [&] { return mEditor != nullptr && operacion(*mEditor); });
    if (mensaje.empty())
    {
        mensaje = mEditor == nullptr ? "no hay dibujo" : resultado.mensaje;
    }
    return ok;
}

bool WrapDibujoCAD::guardaComprobado(const std::string& fichero, std::string& mensaje)
{
    cad::resultadoFichero_t r;
    return conEditor(fichero, mensaje, r,
                     [&](cad::EditorDibujo& e) { return e.guardaDocumento(fichero.c_str(), r); });
}

bool WrapDibujoCAD::leeComprobado(const std::string& fichero, std::string& mensaje,
                                  int64_t& entidadesDanadas)
{
    cad::resultadoFichero_t r;
    const bool ok =
        conEditor(fichero, mensaje, r,
                  [&](cad::EditorDibujo& e) { return e.cargaDocumento(fichero.c_str(), r); });
    entidadesDanadas = static_cast<int64_t>(r.entidadesDanadas);
    return ok;
}

bool WrapDibujoCAD::exportaDXFComprobado(const std::string& fichero, std::string& mensaje)
{
    return comprobado(fichero, mensaje, [&] { return intentaExportarDXF(fichero, mensaje); });
}

bool WrapDibujoCAD::intentaExportarDXF(const std::string& fichero, std::string& mensaje)
{
    if (mDibujo == nullptr)
    {
        mensaje = "no hay dibujo";
        return false;
    }
    // A layer the DXF cannot name: its entities would have no layer line.
    for (const cad::Capa* c : mDibujo->capas)
    {
        if (c->nombre.empty())
        {
            mensaje =
                "una capa sin nombre no se puede escribir en un DXF; "
                "póngale nombre antes de exportar";
            return false;
        }
    }
    cad::ExportaDXF dxf(fichero);
    if (!dxf.abierto())
    {
        mensaje = dxf.mensaje();
        dxf.descarta();
        return false;
    }
    try
    {
        escribeDXF(dxf);
    }
    catch (const cad::Excepcion&)
    {
        mensaje = std::string("el DXF no se pudo escribir: ") +
                  (dxf.diagnostico != nullptr ? dxf.diagnostico : "uso indebido del escritor");
        dxf.descarta();
        return false;
    }
    const bool ok = dxf.termina();
    mensaje = dxf.mensaje();
    return ok;
}

// ---------------------------------------------------------------------------------------
// Editor state

bool WrapDibujoCAD::dentroComandoInteractivo()
{
    return mEditor != nullptr && mEditor->dentroComandoInteractivo();
}

void WrapDibujoCAD::teclaPulsada(int32_t codigo, bool shift, bool control, bool alt)
{
    if (mEditor == nullptr)
    {
        return;
    }
    mEditor->teclaPulsada(codigo, shift, control, alt);
    // Escape with no command running deselects everything; inside a command it is the
    // command's business.
    if (codigo == 27 && !mEditor->dentroComandoInteractivo())
    {
        mEditor->deselecciona();
    }
}

void WrapDibujoCAD::dibujoActivo(bool activo)
{
    if (mEditor != nullptr && activo)
    {
        mEditor->actualiza(EditorDibujo::kPropiedades, false);
    }
}

double WrapDibujoCAD::getFactorVertical()
{
    return mEditor != nullptr ? mEditor->getFactorVertical() : 0.0;
}

void WrapDibujoCAD::setFactorVertical(double factor)
{
    if (mEditor != nullptr)
    {
        mEditor->setFactorVertical(static_cast<float>(factor));
    }
}

}  // namespace Fendrix
