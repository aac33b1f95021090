// The facade over the document: configuration, camera, layers, colours, snap, text styles,
// materials, variables, views and visibility flags.
#include "Fendrix/GuardasFachada.h"
#include "Fendrix/WrapDibujoCAD.h"
#include "Fendrix/constCharPtr.h"
#include "base/Color.h"
#include "base/Configuracion.h"
#include "base/GestorMensajes.h"
#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "documento/EstiloTexto.h"
#include "documento/VariablesPintura.h"
#include "editor/EditorDibujo.h"
#include "entidades/Entidad.h"

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
// Configuration

bool WrapDibujoCAD::getColorConfiguracion(colorElemento elemento, int32_t& r, int32_t& g,
                                          int32_t& b)
{
    const cad::Color c =
        Configuracion::instancia().color(static_cast<Configuracion::color_elemento>(elemento));
    r = c.rojo();
    g = c.verde();
    b = c.azul();
    return true;
}

void WrapDibujoCAD::setColorConfiguracion(colorElemento elemento, int32_t r, int32_t g, int32_t b)
{
    cad::Color c;
    c.setRGB((static_cast<uint32_t>(r & 0xFF) << 16) | (static_cast<uint32_t>(g & 0xFF) << 8) |
             static_cast<uint32_t>(b & 0xFF));
    Configuracion::instancia().setColor(static_cast<Configuracion::color_elemento>(elemento), c);
    redibuja();
}

int32_t WrapDibujoCAD::getValorConfiguracion(valorElemento elemento)
{
    return Configuracion::instancia().valor(static_cast<Configuracion::valor_elemento>(elemento));
}

void WrapDibujoCAD::setValorConfiguracion(valorElemento elemento, int32_t valor)
{
    Configuracion::instancia().setValor(static_cast<Configuracion::valor_elemento>(elemento),
                                        valor);
    redibuja();
}

bool WrapDibujoCAD::cargarFicheroMensajes(const std::string& fichero)
{
    const constCharPtr ruta(fichero);
    return cad::GestorMensajes::Instancia().cargarFicheroMensajes(ruta.c_str());
}

// ---------------------------------------------------------------------------------------
// Camera and zoom

bool WrapDibujoCAD::camara(int cual, double& x, double& y, double& z)
{
    if (mPantalla == nullptr)
    {
        return false;
    }
    cad::Punto3<double> posicion;
    cad::Punto3<double> objetivo;
    cad::Vector3D<double> direccion;
    cad::Vector3D<double> arriba;
    double zoom = 0.0;
    double angulo = 0.0;
    mPantalla->getCamara(posicion, objetivo, direccion, arriba, zoom, angulo);
    if (cual == 0)
    {
        x = posicion.x, y = posicion.y, z = posicion.z;
    }
    else if (cual == 1)
    {
        x = objetivo.x, y = objetivo.y, z = objetivo.z;
    }
    else
    {
        x = direccion.x, y = direccion.y, z = direccion.z;
    }
    return true;
}

bool WrapDibujoCAD::getPosicionCamara(double& x, double& y, double& z)
{
    return camara(0, x, y, z);
}
bool WrapDibujoCAD::getObjetivoCamara(double& x, double& y, double& z)
{
    return camara(1, x, y, z);
}
bool WrapDibujoCAD::getDireccionCamara(double& x, double& y, double& z)
{
    return camara(2, x, y, z);
}

void WrapDibujoCAD::zoomExtension(double factor)
{
    zoomExtension(factor, factor);
}

void WrapDibujoCAD::zoomExtension(double factorAncho, double factorAlto)
{
    if (mDibujo != nullptr && mPantalla != nullptr)
    {
        mDibujo->zoomExtension(factorAncho, factorAlto, mPantalla);
    }
}

// ---------------------------------------------------------------------------------------
// Layers

int32_t WrapDibujoCAD::numeroCapas()
{
    return mDibujo != nullptr ? mDibujo->numeroCapas() : 0;
}

std::string WrapDibujoCAD::capa(int32_t indice)
{
    const char* nombre = mDibujo != nullptr ? mDibujo->capa(indice) : nullptr;
    return nombre != nullptr ? nombre : "";
}

std::string WrapDibujoCAD::capaActual()
{
    const Capa* c = mDibujo != nullptr ? mDibujo->capaActual() : nullptr;
    return c != nullptr ? c->nombre : "";
}

bool WrapDibujoCAD::capaActual(const std::string& nombre)
{
    const constCharPtr n(nombre);
    if (mEditor != nullptr)
    {
        return mEditor->capaActual(n.c_str());
    }
    return mDibujo != nullptr && mDibujo->capaActual(n.c_str());
}

bool WrapDibujoCAD::existeCapa(const std::string& nombre, bool hacerActual)
{
    if (mDibujo == nullptr || mDibujo->buscaCapa(nombre.c_str()) == nullptr)
    {
        return false;
    }
    if (hacerActual)
    {
        capaActual(nombre);
    }
    return true;
}

bool WrapDibujoCAD::capaVisible(const std::string& nombre)
{
    return mDibujo != nullptr && mDibujo->capaVisible(nombre.c_str());
}

bool WrapDibujoCAD::capaBloqueada(const std::string& nombre)
{
    return mDibujo != nullptr && mDibujo->capaBloqueada(nombre.c_str());
}

uint32_t WrapDibujoCAD::getColorCapa(const std::string& nombre)
{
    return mDibujo != nullptr ? mDibujo->colorCapa(nombre.c_str()) : 0xFFFFFFFFU;
}

bool WrapDibujoCAD::getColorCapa(const std::string& nombre, int32_t& r, int32_t& g, int32_t& b)
{
    const Capa* c = mDibujo != nullptr ? mDibujo->buscaCapa(nombre.c_str()) : nullptr;
    if (c == nullptr)
    {
        return false;
    }
    r = c->color.rojo();
    g = c->color.verde();
    b = c->color.azul();
    return true;
}

double WrapDibujoCAD::grosorLineaCapa(const std::string& nombre)
{
    const Capa* c = mDibujo != nullptr ? mDibujo->buscaCapa(nombre.c_str()) : nullptr;
    return c != nullptr ? c->estiloLinea.grosor : 0.0;
}

bool WrapDibujoCAD::setGrosorLineaCapa(const std::string& nombre, double grosor)
{
    Capa* c = mDibujo != nullptr ? mDibujo->buscaCapa(nombre.c_str()) : nullptr;
    if (c == nullptr)
    {
        return false;
    }
    c->estiloLinea.grosor = grosor;
    mDibujo->edicionHecha();
    return true;
}

bool WrapDibujoCAD::setGrosorLineaCapaActual(double grosor)
{
    Capa* c = mDibujo != nullptr ? mDibujo->capaActual() : nullptr;
    if (c == nullptr)
    {
        return false;
    }
    c->estiloLinea.grosor = grosor;
    mDibujo->edicionHecha();
    return true;
}

int32_t WrapDibujoCAD::patronLineaCapa(const std::string& nombre)
{
    const Capa* c = mDibujo != nullptr ? mDibujo->buscaCapa(nombre.c_str()) : nullptr;
    return c != nullptr ? c->estiloLinea.patron : 0;
}

bool WrapDibujoCAD::setPatronLineaCapaActual(int32_t patron)
{
    Capa* c = mDibujo != nullptr ? mDibujo->capaActual() : nullptr;
    if (c == nullptr)
    {
        return false;
    }
    c->estiloLinea.patron = static_cast<uint16_t>(patron);
    mDibujo->edicionHecha();
    return true;
}

bool WrapDibujoCAD::nuevaCapa(const std::string& nombre, bool estableceComoActual)
{
    if (mDibujo == nullptr)
    {
        return false;
    }
    const constCharPtr n(nombre);
    auto capaNueva = std::make_unique<Capa>(n.c_str(), ColorCapa(), 1);
    bool ok = false;
    if (mEditor != nullptr)
    {
        ok = mEditor->nuevaCapa(capaNueva.get(), estableceComoActual);
    }
    else
    {
        ok = mDibujo->nuevaCapa(capaNueva.get());
        if (ok && estableceComoActual)
        {
            mDibujo->capaActual(n.c_str());
        }
    }
    if (ok)
    {
        capaNueva.release();  // the drawing owns it now
    }
    return ok;
}

bool WrapDibujoCAD::posicionaCapa(const std::string& nombre)
{
    if (mDibujo == nullptr)
    {
        return false;
    }
    const constCharPtr n(nombre);
    auto capaNueva = std::make_unique<Capa>(n.c_str(), ColorCapa(), 1);
    const bool ok = mEditor != nullptr ? mEditor->posicionaCapa(capaNueva.get())
                                       : mDibujo->posicionaCapa(capaNueva.get());
    // Where a layer of that name stood, the argument stays with the caller.
    if (ok && mDibujo->buscaCapa(n.c_str()) == capaNueva.get())
    {
        capaNueva.release();
    }
    return ok;
}

bool WrapDibujoCAD::borraCapa(const std::string& nombre)
{
    const constCharPtr n(nombre);
    if (mEditor != nullptr)
    {
        return mEditor->borraCapa(n.c_str());
    }
    return mDibujo != nullptr && mDibujo->borraCapa(n.c_str());
}

bool WrapDibujoCAD::visibilidadCapa(const std::string& nombre, bool visible)
{
    if (mDibujo == nullptr)
    {
        return false;
    }
    const bool ok = mDibujo->visibilidadCapa(nombre.c_str(), visible);
    if (ok && mEditor != nullptr)
    {
        mEditor->actualiza(EditorDibujo::kCapas, false);
    }
    return ok;
}

bool WrapDibujoCAD::bloqueaCapa(const std::string& nombre, bool bloquear)
{
    if (mDibujo == nullptr)
    {
        return false;
    }
    const bool ok = mDibujo->bloqueaCapa(nombre.c_str(), bloquear);
    if (ok && mEditor != nullptr)
    {
        mEditor->actualiza(EditorDibujo::kCapas, false);
    }
    return ok;
}

bool WrapDibujoCAD::colorCapa(const std::string& nombre, int32_t rgba)
{
    const constCharPtr n(nombre);
    if (mEditor != nullptr)
    {
        return mEditor->colorCapa(n.c_str(), rgba);
    }
    return mDibujo != nullptr && mDibujo->colorCapa(n.c_str(), static_cast<uint32_t>(rgba) >> 8);
}

bool WrapDibujoCAD::colorCapa(const std::string& nombre, int32_t r, int32_t g, int32_t b)
{
    const uint32_t rgba = (static_cast<uint32_t>(r & 0xFF) << 24) |
                          (static_cast<uint32_t>(g & 0xFF) << 16) |
                          (static_cast<uint32_t>(b & 0xFF) << 8) | 0xFFU;
    return colorCapa(nombre, static_cast<int32_t>(rgba));
}

bool WrapDibujoCAD::grosorCapa(const std::string& nombre, double grosor)
{
    Capa* c = mDibujo != nullptr ? mDibujo->buscaCapa(nombre.c_str()) : nullptr;
    if (c == nullptr)
    {
        return false;
    }
    c->estiloLinea.grosor = grosor;
    mDibujo->edicionHecha();
    if (mEditor != nullptr)
    {
        mEditor->actualiza(EditorDibujo::kControl, false);
    }
    return true;
}

bool WrapDibujoCAD::renombraCapa(const std::string& viejo, const std::string& nuevo)
{
    const constCharPtr v(viejo);
    const constCharPtr n(nuevo);
    if (mEditor != nullptr)
    {
        return mEditor->renombraCapa(v.c_str(), n.c_str());
    }
    return mDibujo != nullptr && mDibujo->renombraCapa(v.c_str(), n.c_str());
}

bool WrapDibujoCAD::getNombreCapa(int64_t handle, std::string& nombre)
{
    const cad::Entidad* e = mDibujo != nullptr ? mDibujo->buscaEntidad(handle) : nullptr;
    const Capa* c = e != nullptr ? e->capa.get() : nullptr;
    if (c == nullptr)
    {
        return false;
    }
    nombre = c->nombre;
    return true;
}

// ---------------------------------------------------------------------------------------
// Colours

bool WrapDibujoCAD::setColorActualIndice(int32_t indice)
{
    if (mEditor != nullptr)
    {
        return mEditor->setColorActualIndice(indice);
    }
    return mDibujo != nullptr && mDibujo->setColorActualIndice(indice);
}

void WrapDibujoCAD::setColorActualRGB(int32_t r, int32_t g, int32_t b)
{
    const int32_t rgb = ((r & 0xFF) << 16) | ((g & 0xFF) << 8) | (b & 0xFF);
    if (mEditor != nullptr)
    {
        mEditor->setColorActualRGB(rgb);
    }
    else if (mDibujo != nullptr)
    {
        mDibujo->setColorActualRGB(static_cast<uint32_t>(rgb));
    }
}

bool WrapDibujoCAD::getColorActualRGB(int32_t& r, int32_t& g, int32_t& b)
{
    if (mDibujo == nullptr)
    {
        return false;
    }
    const uint32_t abgr = mDibujo->colorActualABGR();
    r = static_cast<int32_t>(abgr & 0xFF);
    g = static_cast<int32_t>((abgr >> 8) & 0xFF);
    b = static_cast<int32_t>((abgr >> 16) & 0xFF);
    return true;
}

bool WrapDibujoCAD::getColorIndice(int32_t indice, int32_t& r, int32_t& g, int32_t& b)
{
    cad::Color c;
    if (!c.setIndiceColor(indice))
    {
        return false;
    }
    r = c.rojo();
    g = c.verde();
    b = c.azul();
    return true;
}

// ---------------------------------------------------------------------------------------
// Snap settings

void WrapDibujoCAD::setReferenciaEntidades(bool global, int32_t mascara)
{
    if (mDibujo != nullptr)
    {
        mDibujo->setReferenciaEntidades(global, mascara);
    }
}

void WrapDibujoCAD::getReferenciaEntidades(bool& global, int32_t& mascara)
{
    if (mDibujo != nullptr)
    {
        mDibujo->getReferenciaEntidades(global, mascara);
    }
}

// ---------------------------------------------------------------------------------------
// Text styles

bool WrapDibujoCAD::nuevoEstiloTexto(const std::string& nombre, const std::string& fuente,
                                     int32_t tamanyo, bool estableceComoActual)
{
    if (mDibujo == nullptr || !admiteCadena(mEditor, nombre) || !admiteCadena(mEditor, fuente))
    {
        return false;
    }
    auto estilo = std::make_unique<cad::EstiloTexto>();
    estilo->nombre = constCharPtr(nombre).c_str();
    estilo->fuente = constCharPtr(fuente).c_str();
    estilo->tamano = static_cast<uint32_t>(tamanyo);
    if (!mDibujo->nuevoEstiloTexto(estilo.get()))
    {
        return false;
    }
    cad::EstiloTexto* propio = estilo.release();
    if (estableceComoActual)
    {
        mDibujo->estiloTextoActual(propio->nombre.c_str());
    }
    return true;
}

bool WrapDibujoCAD::editaEstiloTexto(const std::string& nombre, const std::string& fuente,
                                     int32_t tamanyo, bool estableceComoActual)
{
    cad::EstiloTexto* estilo =
        mDibujo != nullptr ? mDibujo->buscaEstiloTexto(nombre.c_str()) : nullptr;
    if (estilo == nullptr || !admiteCadena(mEditor, fuente))
    {
        return false;
    }
    estilo->fuente = constCharPtr(fuente).c_str();
    estilo->tamano = static_cast<uint32_t>(tamanyo);
    if (estableceComoActual)
    {
        mDibujo->estiloTextoActual(nombre.c_str());
    }
    mDibujo->edicionHecha();
    return true;
}

bool WrapDibujoCAD::estiloTextoActual(const std::string& nombre)
{
    return mDibujo != nullptr && mDibujo->estiloTextoActual(constCharPtr(nombre).c_str());
}

bool WrapDibujoCAD::existeEstiloTexto(const std::string& nombre, bool estableceComoActual)
{
    if (mDibujo == nullptr || mDibujo->buscaEstiloTexto(nombre.c_str()) == nullptr)
    {
        return false;
    }
    if (estableceComoActual)
    {
        mDibujo->estiloTextoActual(nombre.c_str());
    }
    return true;
}

// ---------------------------------------------------------------------------------------
// Materials

int32_t WrapDibujoCAD::numeroMateriales()
{
    return mDibujo != nullptr ? mDibujo->numeroMateriales() : 0;
}

int32_t WrapDibujoCAD::idMaterial(int32_t indice)
{
    const cad::Material* m = mDibujo != nullptr ? mDibujo->material(indice) : nullptr;
    return m != nullptr ? m->id : -1;
}

bool WrapDibujoCAD::getIdExternoMaterial(int32_t id, int32_t& idExterno)
{
    const cad::Material* m =
        mDibujo != nullptr ? mDibujo->materialId(static_cast<int16_t>(id)) : nullptr;
    if (m == nullptr)
    {
        return false;
    }
    idExterno = m->idExterno;
    return true;
}

int32_t WrapDibujoCAD::nuevoMaterial(int32_t idExterno, uint32_t color, double brillo)
{
    return mDibujo != nullptr
               ? mDibujo->nuevoMaterial(idExterno, color, static_cast<float>(brillo), "")
               : 0;
}

int32_t WrapDibujoCAD::nuevoMaterial(int32_t idExterno, const std::string& textura)
{
    if (!admiteCadena(mEditor, textura))
    {
        return 0;
    }
    return mDibujo != nullptr ? mDibujo->nuevoMaterial(idExterno, constCharPtr(textura).c_str())
                              : 0;
}

bool WrapDibujoCAD::setMaterial(int32_t id, int32_t idExterno, uint32_t color, double brillo,
                                const std::string& textura)
{
    cad::Material* m = mDibujo != nullptr ? mDibujo->materialId(static_cast<int16_t>(id)) : nullptr;
    if (m == nullptr || !admiteCadena(mEditor, textura))
    {
        return false;
    }
    m->idExterno = idExterno;
    m->setColor(color);
    m->setBrillo(static_cast<float>(brillo));
    m->setTextura(constCharPtr(textura).c_str());
    mDibujo->edicionHecha();
    return true;
}

bool WrapDibujoCAD::getMaterial(int32_t indice, int32_t& id, int32_t& idExterno, uint32_t& color,
                                double& brillo, std::string& textura)
{
    const cad::Material* m = mDibujo != nullptr ? mDibujo->material(indice) : nullptr;
    if (m == nullptr)
    {
        return false;
    }
    id = m->id;
    idExterno = m->idExterno;
    color = m->color();
    brillo = m->brillo();
    textura = m->textura();
    return true;
}

void WrapDibujoCAD::borraMaterial(int32_t id)
{
    if (mDibujo != nullptr)
    {
        mDibujo->borraMaterial(static_cast<int16_t>(id));
    }
}

// ---------------------------------------------------------------------------------------
// Variables and views

void WrapDibujoCAD::setVariable(const std::string& nombre, const std::string& valor)
{
    if (mDibujo != nullptr && admiteCadena(mEditor, nombre) && admiteCadena(mEditor, valor))
    {
        mDibujo->setVariable(constCharPtr(nombre).c_str(), constCharPtr(valor).c_str());
    }
}

void WrapDibujoCAD::setVariable(const std::string& nombre, int32_t valor)
{
    if (mDibujo != nullptr && admiteCadena(mEditor, nombre))
    {
        mDibujo->setVariable(constCharPtr(nombre).c_str(), static_cast<int>(valor));
    }
}

void WrapDibujoCAD::setVariable(const std::string& nombre, double valor)
{
    if (mDibujo != nullptr && admiteCadena(mEditor, nombre))
    {
        mDibujo->setVariable(constCharPtr(nombre).c_str(), valor);
    }
}

void WrapDibujoCAD::setVariable(const std::string& nombre, double x, double y, double z)
{
    if (mDibujo != nullptr && admiteCadena(mEditor, nombre))
    {
        mDibujo->setVariable(constCharPtr(nombre).c_str(), x, y, z);
    }
}

bool WrapDibujoCAD::getVariable(const std::string& nombre, int32_t& valor)
{
    int v = 0;
    if (mDibujo == nullptr || !mDibujo->getVariable(nombre, v))
    {
        return false;
    }
    valor = v;
    return true;
}

bool WrapDibujoCAD::getVariable(const std::string& nombre, std::string& valor)
{
    return mDibujo != nullptr && mDibujo->getVariable(nombre, valor);
}

void WrapDibujoCAD::borraVariable(const std::string& nombre)
{
    if (mDibujo != nullptr)
    {
        mDibujo->borraVariable(constCharPtr(nombre).c_str());
    }
}

int32_t WrapDibujoCAD::numeroVistas()
{
    return mDibujo != nullptr ? mDibujo->numeroVistas() : 0;
}

std::string WrapDibujoCAD::nombreVista(int32_t indice)
{
    return mDibujo != nullptr ? mDibujo->nombreVista(indice) : "";
}

void WrapDibujoCAD::guardaVistaActual(const std::string& nombre)
{
    if (mDibujo != nullptr && mPantalla != nullptr && admiteCadena(mEditor, nombre))
    {
        mDibujo->guardaVistaActual(mPantalla, constCharPtr(nombre).c_str());
    }
}

void WrapDibujoCAD::guardaVistaActual()
{
    if (mDibujo != nullptr && mPantalla != nullptr)
    {
        mDibujo->guardaVistaActual(mPantalla);
    }
}

void WrapDibujoCAD::activaVista(const std::string& nombre)
{
    if (mDibujo != nullptr && mPantalla != nullptr)
    {
        mDibujo->activaVista(mPantalla, constCharPtr(nombre).c_str());
    }
}

void WrapDibujoCAD::borraVista(const std::string& nombre)
{
    if (mDibujo != nullptr)
    {
        mDibujo->borraVista(constCharPtr(nombre).c_str());
    }
}

void WrapDibujoCAD::copiaVista(WrapDibujoCAD& otro)
{
    if (mDibujo == nullptr || otro.mDibujo == nullptr || mPantalla == nullptr ||
        otro.mPantalla == nullptr)
    {
        return;
    }
    const cad::Vista vista = otro.mDibujo->guardaVistaActual(otro.mPantalla);
    mDibujo->activaVista(mPantalla, vista);
}

// ---------------------------------------------------------------------------------------
// Visibility flags

void WrapDibujoCAD::muestraVariable(const char* variable, bool mostrar)
{
    if (mDibujo == nullptr)
    {
        return;
    }
    mDibujo->borraVariable(variable);
    if (!mostrar)
    {
        mDibujo->setVariable(variable, 1);
    }
    mDibujo->edicionHecha();
    if (mEditor != nullptr)
    {
        mEditor->actualiza(EditorDibujo::kControl, false);
    }
}

void WrapDibujoCAD::muestraModelos(bool mostrar)
{
    muestraVariable(kVarOcultaModelos, mostrar);
}
bool WrapDibujoCAD::modelosVisibles()
{
    return mDibujo != nullptr && !mDibujo->existeVariable(kVarOcultaModelos);
}
void WrapDibujoCAD::muestraCamaras(bool mostrar)
{
    muestraVariable(kVarOcultaCamaras, mostrar);
}
bool WrapDibujoCAD::camarasVisibles()
{
    return mDibujo != nullptr && !mDibujo->existeVariable(kVarOcultaCamaras);
}
void WrapDibujoCAD::muestraPuntosControl(bool mostrar)
{
    muestraVariable(kVarOcultaPuntosControl, mostrar);
}
bool WrapDibujoCAD::puntosControlVisibles()
{
    return mDibujo != nullptr && !mDibujo->existeVariable(kVarOcultaPuntosControl);
}
void WrapDibujoCAD::muestraPlanoReferencia(bool mostrar)
{
    muestraVariable(kVarOcultaPlanoReferencia, mostrar);
}
bool WrapDibujoCAD::planoReferenciaVisible()
{
    return mDibujo != nullptr && !mDibujo->existeVariable(kVarOcultaPlanoReferencia);
}

void WrapDibujoCAD::setRepresentacionModelos(representacion_modelos r)
{
    if (mDibujo != nullptr)
    {
        mDibujo->borraVariable(kVarRepresentacionModelos);
        mDibujo->setVariable(kVarRepresentacionModelos, static_cast<int>(r));
        mDibujo->edicionHecha();
    }
}

void WrapDibujoCAD::setRepresentacionNubes(representacion_nubes r)
{
    if (mDibujo != nullptr)
    {
        mDibujo->borraVariable(kVarRepresentacionNubes);
        mDibujo->setVariable(kVarRepresentacionNubes, static_cast<int>(r));
        mDibujo->edicionHecha();
    }
}

}  // namespace Fendrix
