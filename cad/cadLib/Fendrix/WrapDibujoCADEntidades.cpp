// WrapDibujoCAD: entity creation, local systems, selection and queries.
#include <cstring>
#include <initializer_list>
#include <new>
#include <stdexcept>

#include "Fendrix/GuardasFachada.h"
#include "Fendrix/WrapDibujoCAD.h"
#include "Fendrix/constCharPtr.h"
#include "base/Admisible.h"
#include "base/Color.h"
#include "base/Configuracion.h"
#include "base/Excepcion.h"
#include "base/FicheroAtomico.h"
#include "base/GestorMensajes.h"
#include "documento/Capa.h"
#include "documento/Dibujo.h"
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

using cad::EditorDibujo;

// ---------------------------------------------------------------------------------------
// Entity creation

namespace
{

std::vector<cad::Punto3<double>> puntosDe(const double* coordenadas, size_t n)
{
    std::vector<cad::Punto3<double>> puntos;
    puntos.reserve(n);
    for (size_t i = 0; i < n; ++i)
    {
        puntos.emplace_back(coordenadas[3 * i], coordenadas[3 * i + 1], coordenadas[3 * i + 2]);
    }
    return puntos;
}

}  // namespace

int64_t WrapDibujoCAD::insertaEntidadGetHandle(cad::Entidad* e)
{
    std::unique_ptr<cad::Entidad> propia(e);
    if (mDibujo == nullptr || e == nullptr)
    {
        return 0;
    }
    const bool ok = mEditor != nullptr ? mEditor->nuevaEntidad(e) : mDibujo->nuevaEntidad(e);
    if (!ok)
    {
        return 0;  // refused: the entity is the caller's, and the caller here is this facade
    }
    propia.release();
    return mDibujo->handleUltimaEntidad();
}

bool WrapDibujoCAD::insertaEntidad(cad::Entidad* e)
{
    return insertaEntidadGetHandle(e) != 0;
}

int64_t WrapDibujoCAD::nuevoPunto(double x, double y, double z)
{
    if (!admiteCoordenadas(mEditor, {x, y, z}))
    {
        return 0;
    }
    return insertaEntidadGetHandle(new cad::Punto(x, y, z));
}

int64_t WrapDibujoCAD::nuevoPunto(double x, double y, double z, int32_t color)
{
    if (!admiteCoordenadas(mEditor, {x, y, z}))
    {
        return 0;
    }
    return insertaEntidadGetHandle(new cad::Punto(x, y, z, color));
}

int64_t WrapDibujoCAD::nuevoTexto(const std::string& texto, double x, double y, double z,
                                  alineacionTexto alineacion, double altura, double rotacion)
{
    if (!admiteCadena(mEditor, texto) || !admiteCoordenadas(mEditor, {x, y, z}))
    {
        return 0;
    }
    return insertaEntidadGetHandle(
        new cad::Texto(constCharPtr(texto).c_str(), cad::Punto3<double>(x, y, z),
                       static_cast<uint16_t>(alineacion), static_cast<float>(altura),
                       static_cast<float>(rotacion)));
}

int64_t WrapDibujoCAD::nuevoPuntoControl(const std::string& nombre, const std::string& codigo,
                                         double x, double y, double z)
{
    if (!admiteCadena(mEditor, nombre) || !admiteCadena(mEditor, codigo) ||
        !admiteCoordenadas(mEditor, {x, y, z}))
    {
        return 0;
    }
    auto* p = new cad::PuntoControl(constCharPtr(nombre).c_str(), cad::Punto3<double>(x, y, z));
    // The code goes in through the sheet, as a host would type it.
    cad::Prop prop;
    prop.valor = constCharPtr(codigo).c_str();
    p->setPropiedad(2, 1, prop);
    return insertaEntidadGetHandle(p);
}

int64_t WrapDibujoCAD::nuevoPuntoControl(const std::string& nombre, const std::string& codigo,
                                         double x, double y, double z, double tamanyoPixeles)
{
    if (!admiteCadena(mEditor, nombre) || !admiteCadena(mEditor, codigo) ||
        !admiteCoordenadas(mEditor, {x, y, z}))
    {
        return 0;
    }
    auto* p = new cad::PuntoControl(constCharPtr(nombre).c_str(), cad::Punto3<double>(x, y, z));
    cad::Prop prop;
    prop.valor = constCharPtr(codigo).c_str();
    p->setPropiedad(2, 1, prop);
    p->asignaEscalaConstante(cad::Punto3<double>(x, y, z), 1.0, tamanyoPixeles);
    return insertaEntidadGetHandle(p);
}

int64_t WrapDibujoCAD::nuevaLinea(double x1, double y1, double z1, double x2, double y2, double z2)
{
    if (!admiteCoordenadas(mEditor, {x1, y1, z1, x2, y2, z2}))
    {
        return 0;
    }
    return insertaEntidadGetHandle(
        new cad::Linea(cad::Punto3<double>(x1, y1, z1), cad::Punto3<double>(x2, y2, z2)));
}

int64_t WrapDibujoCAD::nuevaPolilinea(int32_t n, const double* coordenadas)
{
    const size_t numero = n > 0 ? static_cast<size_t>(n) : 0;
    if (!admiteCoordenadas(mEditor, coordenadas, 3 * numero))
    {
        return 0;
    }
    const auto puntos = puntosDe(coordenadas, numero);
    return insertaEntidadGetHandle(
        new cad::Polilinea(static_cast<int>(puntos.size()), puntos.data()));
}

int64_t WrapDibujoCAD::nuevaPolilinea3D(const std::vector<double>& coordenadas, bool cerrada)
{
    if (!admiteCoordenadas(mEditor, coordenadas.data(), coordenadas.size() / 3 * 3))
    {
        return 0;
    }
    const auto puntos = puntosDe(coordenadas.data(), coordenadas.size() / 3);
    auto* p = new cad::Polilinea(static_cast<int>(puntos.size()), puntos.data());
    p->cerrada = cerrada;
    return insertaEntidadGetHandle(p);
}

int64_t WrapDibujoCAD::nuevoPoligono(int32_t n, const double* coordenadas)
{
    const size_t numero = n > 0 ? static_cast<size_t>(n) : 0;
    if (!admiteCoordenadas(mEditor, coordenadas, 3 * numero))
    {
        return 0;
    }
    const auto puntos = puntosDe(coordenadas, numero);
    return insertaEntidadGetHandle(
        new cad::Poligono(static_cast<int>(puntos.size()), puntos.data()));
}

int64_t WrapDibujoCAD::nuevoPoligono(const std::vector<double>& coordenadas)
{
    if (!admiteCoordenadas(mEditor, coordenadas.data(), coordenadas.size() / 3 * 3))
    {
        return 0;
    }
    const auto puntos = puntosDe(coordenadas.data(), coordenadas.size() / 3);
    return insertaEntidadGetHandle(
        new cad::Poligono(static_cast<int>(puntos.size()), puntos.data()));
}

int64_t WrapDibujoCAD::ultimaEntidadCreada()
{
    return mDibujo != nullptr ? mDibujo->handleUltimaEntidad() : 0;
}

// ---------------------------------------------------------------------------------------
// Local systems

int64_t WrapDibujoCAD::nuevoSistemaLocal(const std::string& nombre,
                                         const std::vector<double>& origen,
                                         const std::vector<double>& ejeX,
                                         const std::vector<double>& ejeY,
                                         const std::vector<double>& ejeZ)
{
    if (origen.size() < 3 || ejeX.size() < 3 || ejeY.size() < 3 || ejeZ.size() < 3 ||
        !admiteCadena(mEditor, nombre) ||
        !admiteCoordenadas(mEditor, {origen[0], origen[1], origen[2], ejeX[0], ejeX[1], ejeX[2],
                                     ejeY[0], ejeY[1], ejeY[2], ejeZ[0], ejeZ[1], ejeZ[2]}))
    {
        return 0;
    }
    auto* s = new cad::SistemaLocal();
    s->nombre = constCharPtr(nombre).c_str();
    s->setOrigen(cad::Punto3<double>(origen[0], origen[1], origen[2]));
    s->setVectoresXYZ(cad::Vector3D<double>(ejeX[0], ejeX[1], ejeX[2]),
                      cad::Vector3D<double>(ejeY[0], ejeY[1], ejeY[2]),
                      cad::Vector3D<double>(ejeZ[0], ejeZ[1], ejeZ[2]));
    return insertaEntidadGetHandle(s);
}

bool WrapDibujoCAD::setOrigenSistemaLocal(const std::string& nombre, double x, double y, double z)
{
    cad::SistemaLocal* s = mDibujo != nullptr ? mDibujo->sistemaLocal(nombre) : nullptr;
    if (s == nullptr || !admiteCoordenadas(mEditor, {x, y, z}))
    {
        return false;
    }
    s->setOrigen(cad::Punto3<double>(x, y, z));
    mDibujo->edicionHecha();
    return true;
}

int32_t WrapDibujoCAD::numeroSistemasLocales()
{
    return mDibujo != nullptr ? mDibujo->numeroSistemasLocales() : 0;
}

std::string WrapDibujoCAD::nombreSistemaLocal(int32_t indice)
{
    return mDibujo != nullptr ? mDibujo->nombreSistemaLocal(indice) : "";
}

bool WrapDibujoCAD::existeSistemaLocal(const std::string& nombre)
{
    return mDibujo != nullptr && mDibujo->existeSistemaLocal(nombre);
}

bool WrapDibujoCAD::borraSistemaLocal(const std::string& nombre)
{
    return mDibujo != nullptr && mDibujo->borraSistemaLocal(nombre);
}

// ---------------------------------------------------------------------------------------
// Selection and queries

namespace
{

int32_t handlesDe(const cad::SeleccionEntidades& s, std::vector<int64_t>& handles)
{
    handles.clear();
    for (const cad::Entidad* e : s.entidades)
    {
        handles.push_back(cad::handleEntidad(e));
    }
    return static_cast<int32_t>(handles.size());
}

}  // namespace

int32_t WrapDibujoCAD::getEntidades(std::vector<int64_t>& handles)
{
    handles.clear();
    if (mDibujo == nullptr)
    {
        return 0;
    }
    return handlesDe(mDibujo->nuevaSeleccion(cad::Dibujo::kSeleccionTodas), handles);
}

int32_t WrapDibujoCAD::getEntidadesSeleccionadas(std::vector<int64_t>& handles)
{
    handles.clear();
    if (mDibujo == nullptr)
    {
        return 0;
    }
    return handlesDe(mDibujo->nuevaSeleccion(cad::Dibujo::kSeleccionMarcadas), handles);
}

bool WrapDibujoCAD::seleccionaEntidad(int64_t handle)
{
    cad::Entidad* e = mDibujo != nullptr ? mDibujo->buscaEntidad(handle) : nullptr;
    if (e == nullptr)
    {
        return false;
    }
    mDibujo->selecciona(e);
    return true;
}

void WrapDibujoCAD::deselecciona()
{
    if (mEditor != nullptr)
    {
        mEditor->deselecciona();
    }
    else if (mDibujo != nullptr)
    {
        mDibujo->deselecciona();
    }
}

bool WrapDibujoCAD::deselecciona(int64_t handle)
{
    cad::Entidad* e = mDibujo != nullptr ? mDibujo->buscaEntidad(handle) : nullptr;
    if (e == nullptr)
    {
        return false;
    }
    mDibujo->deselecciona(e);
    mDibujo->redibujar = true;
    return true;
}

bool WrapDibujoCAD::borraEntidad(int64_t handle)
{
    cad::Entidad* e = mDibujo != nullptr ? mDibujo->buscaEntidad(handle) : nullptr;
    if (e == nullptr)
    {
        return false;
    }
    const bool ok = mDibujo->borraEntidad(e, true);
    if (ok && mEditor != nullptr)
    {
        mEditor->actualiza(EditorDibujo::kControl, false);
    }
    return ok;
}

double WrapDibujoCAD::longitud(int64_t handle)
{
    cad::Entidad* e = mDibujo != nullptr ? mDibujo->buscaEntidad(handle) : nullptr;
    if (e == nullptr || !e->tieneFirma(cad::kFirmaEntidadPolilinea))
    {
        return 0.0;
    }
    // The tag alone would also name a polygon; only a polyline has a length here.
    const auto* p = dynamic_cast<const cad::Polilinea*>(e);
    return p != nullptr ? p->longitud() : 0.0;
}

int32_t WrapDibujoCAD::getVertices(int64_t handle, std::vector<double>& coordenadas)
{
    coordenadas.clear();
    const cad::Entidad* e = mDibujo != nullptr ? mDibujo->buscaEntidad(handle) : nullptr;
    if (e == nullptr)
    {
        return 0;
    }
    std::vector<cad::Punto3<double>> puntos;
    e->coordenadas(puntos);
    for (const auto& p : puntos)
    {
        coordenadas.insert(coordenadas.end(), {p.x, p.y, p.z});
    }
    return static_cast<int32_t>(coordenadas.size());
}

// ---------------------------------------------------------------------------------------
// Hollow operations

bool WrapDibujoCAD::liberaRecursosEntidad(int64_t handle)
{
    (void)handle;
    return true;
}

void WrapDibujoCAD::muestraMenuContexto(int32_t x, int32_t y)
{
    if (mMenuContexto)
    {
        mMenuContexto(x, y, {"1", "2", "3"});
    }
}

}  // namespace Fendrix
