// WrapDibujoCAD: measuring, views, reference plane, local systems and the remaining queries.
#include <cstdint>
#include <string>
#include <vector>

#include "Fendrix/GuardasFachada.h"
#include "Fendrix/WrapDibujoCAD.h"
#include "Fendrix/constCharPtr.h"
#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "documento/SeleccionEntidades.h"
#include "editor/EditorDibujo.h"
#include "entidades/Entidad.h"
#include "entidades/Firmas.h"
#include "entidades/Linea.h"
#include "entidades/Polilinea.h"
#include "entidades/PuntoControl.h"
#include "entidades/SistemaLocal.h"
#include "entidades/Superficie.h"
#include "entidades/Texto.h"
#include "entidades/TomaCamara.h"
#include "modelo/Modelo3D.h"
#include "modelo/PuntosCalientes.h"
#include "pantalla/PantallaCAD.h"

namespace Fendrix
{

using cad::EditorDibujo;
using cad::Punto3;

namespace
{

// A point's three coordinates after those already in `v`.
void anade(std::vector<double>& v, const Punto3<double>& p)
{
    v.insert(v.end(), {p.x, p.y, p.z});
}

void copia(const cad::Vector3D<double>& v, std::vector<double>& destino)
{
    destino.assign({v.x, v.y, v.z});
}

// The new entity a call left at the end of the list, when it is a text: the list only grows
// by appending, and a vetoed or refused insertion leaves it as long as it was.
int64_t textoNuevo(const cad::Dibujo& d, size_t antes)
{
    if (d.entidades.size() <= antes || !d.entidades.back()->tieneFirma(cad::kFirmaEntidadTexto))
    {
        return 0;
    }
    return cad::handleEntidad(d.entidades.back());
}

bool polilineaCerrada(const cad::Polilinea& p)
{
    const auto& v = p.vertices;
    return p.cerrada || (v.size() >= 3 && v.front() == v.back());
}

// The text side of an entity, found by its tag: the mix-in is private to each class, but its
// switch is public on all three.
bool cambiaVisibilidadTexto(cad::Entidad* e, bool visible)
{
    if (e->tieneFirma(cad::kFirmaEntidadTexto))
    {
        static_cast<cad::Texto*>(e)->setTextoVisible(visible);
    }
    else if (e->tieneFirma(cad::kFirmaEntidadPuntoControl))
    {
        static_cast<cad::PuntoControl*>(e)->setTextoVisible(visible);
    }
    else if (e->tieneFirma(cad::kFirmaEntidadTomaCamara))
    {
        static_cast<cad::TomaCamara*>(e)->setTextoVisible(visible);
    }
    else
    {
        return false;
    }
    return true;
}

// The figures of propiedadesSuperficie over a model placed by `t`.
struct figurasMalla_t
{
    double area = 0.0;
    int32_t vertices = 0;
    int32_t caras = 0;
    int32_t aristas = 0;
    int32_t materiales = 0;
};

figurasMalla_t figuras(const cad::Modelo3D& m, const cad::Matriz4<double>& t)
{
    figurasMalla_t f;
    for (const cad::vertice_t& v : m.vertices())
    {
        f.vertices += v.esValido() ? 1 : 0;
    }
    std::vector<int32_t> triangulos;
    for (size_t c = 0; c < m.caras().size(); ++c)
    {
        if (m.caras()[c].arista == -1)
        {
            continue;
        }
        ++f.caras;
        // The area as drawn: the triangles of each face carried by the placement.
        triangulos.clear();
        m.triangulaCara(static_cast<int32_t>(c), triangulos);
        for (size_t i = 0; i + 2 < triangulos.size(); i += 3)
        {
            const Punto3<double> a = t * m.getVertice(triangulos[i]).punto;
            const Punto3<double> b = t * m.getVertice(triangulos[i + 1]).punto;
            const Punto3<double> c3 = t * m.getVertice(triangulos[i + 2]).punto;
            f.area += 0.5 * (b - a).cross(c3 - a).modulo();
        }
    }
    f.aristas = m.aristas().aristasValidas();
    std::vector<uint16_t> materiales;
    m.getMaterialesCaras(materiales);
    f.materiales = static_cast<int32_t>(materiales.size());
    return f;
}

}  // namespace

// ---------------------------------------------------------------------------------------
// Zoom

bool WrapDibujoCAD::comandoZoomExtension()
{
    if (mEditor == nullptr || !mEditor->zoomExtension())
    {
        return false;
    }
    actualiza(tipoActualizacion::kControl);
    return true;
}

bool WrapDibujoCAD::comandoZoomExtension(int64_t handle)
{
    if (mEditor == nullptr || mDibujo == nullptr)
    {
        return false;
    }
    // An unknown handle finds no entity, and the editor's zoom leaves the view for it.
    if (!mEditor->zoomExtension(mDibujo->buscaEntidad(handle)))
    {
        return false;
    }
    actualiza(tipoActualizacion::kControl);
    return true;
}

void WrapDibujoCAD::zoomEscala(double escala)
{
    if (mEditor != nullptr)
    {
        mEditor->zoomEscala(escala);
    }
}

void WrapDibujoCAD::zoomVentana(int32_t x, int32_t y, int32_t ancho, int32_t alto)
{
    if (mEditor != nullptr)
    {
        mEditor->zoomVentana(x, y, ancho, alto);
    }
}

void WrapDibujoCAD::zoomVentana(double x0, double x1, double y0, double y1, double z0, double z1)
{
    if (mEditor != nullptr && admiteCoordenadas(mEditor, {x0, x1, y0, y1, z0, z1}))
    {
        mEditor->zoomVentana(x0, x1, y0, y1, z0, z1);
    }
}

// ---------------------------------------------------------------------------------------
// Layers

int32_t WrapDibujoCAD::copiarPolilineasCapa(const std::string& origen, const std::string& destino)
{
    if (mDibujo == nullptr || mDibujo->buscaCapa(destino.c_str()) == nullptr ||
        mDibujo->buscaCapa(origen.c_str()) == nullptr)
    {
        return 0;
    }
    // Gathered before the first copy, so that copying into the same layer copies each once.
    cad::SeleccionEntidades s(mDibujo);
    s.incluyeCapa(origen.c_str(), false);
    int32_t copiadas = 0;
    for (uint32_t i = 0; i < s.numeroEntidades(); ++i)
    {
        // The insertion reactor runs host code, which may have deleted a later entity or the
        // layer: both are looked for again before each copy.
        cad::Capa* capa = mDibujo->buscaCapa(destino.c_str());
        if (capa == nullptr)
        {
            break;
        }
        if (!mDibujo->contieneEntidad(s.entidades[i]))
        {
            continue;
        }
        cad::Polilinea* p = s.getEntidadPolilinea(i);
        if (p == nullptr)
        {
            continue;
        }
        cad::Entidad* c = p->clona();
        c->quitaSeleccion();
        c->asignaCapa(capa);
        copiadas += insertaEntidad(c) ? 1 : 0;
    }
    return copiadas;
}

bool WrapDibujoCAD::visibilidadTextosCapa(const std::string& nombre, bool visibles)
{
    if (mDibujo == nullptr || mDibujo->buscaCapa(nombre.c_str()) == nullptr)
    {
        return false;
    }
    cad::SeleccionEntidades s(mDibujo);
    s.incluyeCapa(nombre.c_str(), false);
    for (cad::Entidad* e : s.entidades)
    {
        (void)cambiaVisibilidadTexto(e, visibles);
    }
    mDibujo->edicionHecha();
    if (mEditor != nullptr)
    {
        mEditor->actualiza(EditorDibujo::kControl, false);
    }
    return true;
}

// ---------------------------------------------------------------------------------------
// Local systems

bool WrapDibujoCAD::activaSistemaLocal(const std::string& nombre)
{
    const cad::SistemaLocal* s =
        mEditor != nullptr && mDibujo != nullptr ? mDibujo->sistemaLocal(nombre) : nullptr;
    if (s == nullptr)
    {
        return false;
    }
    mEditor->activaSistemaLocal(*s);
    return true;
}

bool WrapDibujoCAD::sistemaLocalActual(std::string& nombre, std::vector<double>& origen,
                                       std::vector<double>& ejeX, std::vector<double>& ejeY,
                                       std::vector<double>& ejeZ)
{
    const cad::SistemaLocal s =
        mEditor != nullptr ? mEditor->sistemaLocalActual() : cad::SistemaLocal();
    nombre = s.nombre;
    origen.assign({s.origen.x, s.origen.y, s.origen.z});
    copia(s.getEjeX(), ejeX);
    copia(s.getEjeY(), ejeY);
    copia(s.getEjeZ(), ejeZ);
    return mEditor != nullptr && mEditor->haySistemaLocal;
}

void WrapDibujoCAD::quitaSistemaLocal()
{
    if (mEditor != nullptr)
    {
        mEditor->quitaSistemaLocal();
    }
}

// ---------------------------------------------------------------------------------------
// Selection

bool WrapDibujoCAD::seleccionaEntidad(const std::string& mensaje, int64_t& handle)
{
    handle = 0;
    if (mEditor == nullptr)
    {
        return false;
    }
    cad::SeleccionEntidades s(mDibujo);
    if (!mEditor->seleccionaEntidad(mensaje.c_str(), s) || s.entidades.empty())
    {
        return false;
    }
    // The first under the click, as the editor's own one-entity commands take it.
    handle = cad::handleEntidad(s.entidades.front());
    return true;
}

bool WrapDibujoCAD::seleccionaEntidad(const std::string& mensaje, const std::string& tipoEntidad,
                                      int64_t& handle)
{
    handle = 0;
    if (mEditor == nullptr)
    {
        return false;
    }
    cad::SeleccionEntidades s(mDibujo);
    if (!mEditor->seleccionaEntidadTipo(tipoEntidad.c_str(), mensaje.c_str(), s) ||
        s.entidades.empty())
    {
        return false;
    }
    // The one the editor checked the kind of.
    handle = cad::handleEntidad(s.entidades.back());
    return true;
}

int32_t WrapDibujoCAD::seleccionaPolilineasCerradas(std::vector<int64_t>& handles)
{
    handles.clear();
    if (mDibujo == nullptr)
    {
        return 0;
    }
    cad::SeleccionEntidades todas = mDibujo->nuevaSeleccion(cad::Dibujo::kSeleccionTodas);
    for (uint32_t i = 0; i < todas.numeroEntidades(); ++i)
    {
        cad::Polilinea* p = todas.getEntidadPolilinea(i);
        if (p != nullptr && polilineaCerrada(*p))
        {
            mDibujo->selecciona(p);
            handles.push_back(cad::handleEntidad(p));
        }
    }
    return static_cast<int32_t>(handles.size());
}

int64_t WrapDibujoCAD::textoEnEntidad(int64_t handle, double altura, const std::string& texto)
{
    cad::Entidad* e =
        mEditor != nullptr && mDibujo != nullptr ? mDibujo->buscaEntidad(handle) : nullptr;
    if (e == nullptr)
    {
        return 0;
    }
    const size_t antes = mDibujo->entidades.size();
    const std::string cadena = constCharPtr(texto).c_str();
    mEditor->textoEnEntidad(e, altura, &cadena);
    return textoNuevo(*mDibujo, antes);
}

int32_t WrapDibujoCAD::indiceMasCercanoCursor(int64_t handle)
{
    if (mEditor == nullptr || mDibujo == nullptr || mPantalla == nullptr)
    {
        return -1;
    }
    cad::Entidad* e = mDibujo->buscaEntidad(handle);
    cad::cursor_t cursor = mEditor->posicionCursor();
    if (e == nullptr || cursor.x < 0)
    {
        return -1;
    }
    mEditor->cursorADocumento(cursor);
    cad::PuntosCalientes puntos;
    puntos.entidad = e;
    e->puntosCalientes(puntos);
    puntos.numeraPuntos();
    const cad::elemento_seleccionado_t cercano =
        puntos.cercanoRayo(cad::vista_t::de(*mPantalla), cursor);
    return cercano.tipo == cad::kTipoVertice ? cercano.indice : -1;
}

// ---------------------------------------------------------------------------------------
// Queries

int32_t WrapDibujoCAD::getLineasCapa(const std::string& capa, std::vector<double>& coordenadas,
                                     std::vector<uint32_t>& coloresABGR)
{
    coordenadas.clear();
    coloresABGR.clear();
    if (mDibujo == nullptr)
    {
        return 0;
    }
    cad::SeleccionEntidades s(mDibujo);
    s.incluyeCapa(capa.c_str(), false);
    for (uint32_t i = 0; i < s.numeroEntidades(); ++i)
    {
        if (const cad::Linea* l = s.getEntidadLinea(i))
        {
            anade(coordenadas, l->origen);
            anade(coordenadas, l->extremo);
            coloresABGR.push_back(l->resuelveColorABGR());
        }
    }
    return static_cast<int32_t>(coloresABGR.size());
}

int32_t WrapDibujoCAD::getPuntosControl(std::vector<int64_t>& handles,
                                        std::vector<std::string>& nombres,
                                        std::vector<double>& coordenadas)
{
    handles.clear();
    nombres.clear();
    coordenadas.clear();
    if (mDibujo == nullptr)
    {
        return 0;
    }
    for (const cad::Entidad* e : mDibujo->entidades)
    {
        if (e->tieneFirma(cad::kFirmaEntidadPuntoControl))
        {
            const auto* p = static_cast<const cad::PuntoControl*>(e);
            handles.push_back(cad::handleEntidad(e));
            nombres.push_back(p->nombre());
            anade(coordenadas, *p);
        }
    }
    return static_cast<int32_t>(handles.size());
}

bool WrapDibujoCAD::getPuntoControl(int64_t handle, std::string& nombre, std::string& codigo,
                                    double& x, double& y, double& z)
{
    const cad::Entidad* e = mDibujo != nullptr ? mDibujo->buscaEntidad(handle) : nullptr;
    if (e == nullptr || !e->tieneFirma(cad::kFirmaEntidadPuntoControl))
    {
        return false;
    }
    const auto* p = static_cast<const cad::PuntoControl*>(e);
    nombre = p->nombre();
    codigo = p->codigo;
    x = p->x;
    y = p->y;
    z = p->z;
    return true;
}

int32_t WrapDibujoCAD::getSoloVertices(int64_t handle, std::vector<double>& coordenadas)
{
    coordenadas.clear();
    cad::Entidad* e = mDibujo != nullptr ? mDibujo->buscaEntidad(handle) : nullptr;
    if (e == nullptr)
    {
        return 0;
    }
    cad::PuntosCalientes puntos;
    puntos.entidad = e;
    e->puntosCalientes(puntos);
    for (const cad::elemento_seleccionado_t& p : puntos.puntos)
    {
        if (p.tipo == cad::kTipoVertice)
        {
            anade(coordenadas, p.punto);
        }
    }
    return static_cast<int32_t>(coordenadas.size());
}

bool WrapDibujoCAD::propiedadesSuperficie(int64_t handle, double& area, int32_t& vertices,
                                          int32_t& caras, int32_t& aristas, int32_t& materiales)
{
    const cad::Entidad* e = mDibujo != nullptr ? mDibujo->buscaEntidad(handle) : nullptr;
    figurasMalla_t f;
    // By the class, not the tag: every solid answers through the one virtual generaModelo,
    // whatever its tag, and a Superficie keeps its model in its own frame.
    if (const auto* s = dynamic_cast<const cad::Superficie*>(e))
    {
        f = figuras(s->modelo(), s->transformacion);
    }
    else if (const auto* v = dynamic_cast<const cad::EntidadConVolumen*>(e))
    {
        cad::Modelo3D modelo;
        v->generaModelo(modelo);
        f = figuras(modelo, cad::Matriz4<double>());
    }
    else
    {
        return false;
    }
    area = f.area;
    vertices = f.vertices;
    caras = f.caras;
    aristas = f.aristas;
    materiales = f.materiales;
    return true;
}

// ---------------------------------------------------------------------------------------
// Measure commands

double WrapDibujoCAD::comandoDistancia()
{
    return mEditor != nullptr ? mEditor->comandoDistancia() : 0.0;
}

double WrapDibujoCAD::comandoDistanciaPolilinea()
{
    return mEditor != nullptr ? mEditor->comandoDistanciaPolilinea() : 0.0;
}

bool WrapDibujoCAD::comandoDistanciaConSnap(double& x1, double& y1, double& z1, double& x2,
                                            double& y2, double& z2, double& distancia3D,
                                            double& distancia2D, bool transparente)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    Punto3<double> a;
    Punto3<double> b;
    double d3 = 0.0;
    double d2 = 0.0;
    if (!mEditor->comandoDistanciaConSnap(&a, &b, &d3, &d2, transparente))
    {
        return false;
    }
    x1 = a.x, y1 = a.y, z1 = a.z;
    x2 = b.x, y2 = b.y, z2 = b.z;
    distancia3D = d3;
    distancia2D = d2;
    return true;
}

double WrapDibujoCAD::comandoArea()
{
    return mEditor != nullptr ? mEditor->comandoArea() : 0.0;
}

bool WrapDibujoCAD::comandoAngulo()
{
    if (mEditor == nullptr || mDibujo == nullptr)
    {
        return false;
    }
    // The editor's command answers nothing; the angles written are its only trace. A
    // refused polyline of other than three sides is left last, not a text.
    const size_t antes = mDibujo->entidades.size();
    mEditor->comandoAngulo();
    return textoNuevo(*mDibujo, antes) != 0;
}

bool WrapDibujoCAD::comandoPidePuntosPerfilRapido(double& x1, double& y1, double& z1, double& x2,
                                                  double& y2, double& z2)
{
    return comandoPidePuntosPerfilRapido("Seleccione el punto inicial del perfil rapido:",
                                         "Seleccione el punto final del perfil rapido:", x1, y1, z1,
                                         x2, y2, z2);
}

bool WrapDibujoCAD::comandoPidePuntosPerfilRapido(const std::string& mensaje1,
                                                  const std::string& mensaje2, double& x1,
                                                  double& y1, double& z1, double& x2, double& y2,
                                                  double& z2)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    Punto3<double> a;
    Punto3<double> b;
    // A command of its own, so that the host's command reactor sees it begin and end.
    mEditor->iniciaComandoInteractivo(false);
    const bool dados = mEditor->comandoDosPuntosLinea(mensaje1.c_str(), mensaje2.c_str(), &a, &b);
    mEditor->finComandoInteractivo();
    if (dados)
    {
        x1 = a.x, y1 = a.y, z1 = a.z;
        x2 = b.x, y2 = b.y, z2 = b.z;
    }
    return dados;
}

// ---------------------------------------------------------------------------------------
// View, reference plane and local-system commands

bool WrapDibujoCAD::comandoEncuadre()
{
    return mEditor != nullptr && mEditor->comandoEncuadre();
}

bool WrapDibujoCAD::comandoRotacion()
{
    return mEditor != nullptr && mEditor->comandoRotacion();
}

bool WrapDibujoCAD::comandoZoomVentana()
{
    return mEditor != nullptr && mEditor->comandoZoomVentana();
}

bool WrapDibujoCAD::comandoZoomVentana(const std::string& mensaje1, const std::string& mensaje2)
{
    return mEditor != nullptr && mEditor->comandoZoomVentana(mensaje1, mensaje2);
}

bool WrapDibujoCAD::comandoPlanoReferencia()
{
    return mEditor != nullptr && mEditor->comandoPlanoReferencia();
}

bool WrapDibujoCAD::comandoCentroRotacion()
{
    return mEditor != nullptr && mEditor->comandoCentroRotacion();
}

bool WrapDibujoCAD::comandoSistemaLocal(const std::string& nombre)
{
    if (mEditor == nullptr || !admiteCadena(mEditor, nombre))
    {
        return false;
    }
    const std::string cadena = constCharPtr(nombre).c_str();
    return mEditor->comandoSistemaLocal(nombre.empty() ? nullptr : &cadena);
}

bool WrapDibujoCAD::comandoPosicionCamara()
{
    return mEditor != nullptr && mEditor->comandoPosicionCamara();
}

bool WrapDibujoCAD::comandoInterseccionPlanos()
{
    return mEditor != nullptr && mEditor->comandoInterseccionPlanos();
}

}  // namespace Fendrix
