// WrapDibujoCAD: point groups, faces, solids, camera shots, 360 photos and the faces of models.
#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "Fendrix/GuardasFachada.h"
#include "Fendrix/WrapDibujoCAD.h"
#include "Fendrix/constCharPtr.h"
#include "documento/Dibujo.h"
#include "documento/Material.h"
#include "documento/SeleccionEntidades.h"
#include "editor/EditorDibujo.h"
#include "entidades/Cara3D.h"
#include "entidades/Cubo.h"
#include "entidades/Foto360.h"
#include "entidades/GrupoPuntos.h"
#include "entidades/Objeto3D.h"
#include "entidades/Policara.h"
#include "entidades/Superficie.h"
#include "entidades/TomaCamara.h"
#include "modelo/Modelo3D.h"
#include "modelo/PuntosCalientes.h"
#include "pantalla/PantallaCAD.h"

namespace Fendrix
{

using cad::EditorDibujo;

namespace
{

// The first material id a 360 photo's photograph may take: below it the generator's run.
constexpr int kPrimerMaterialFoto = 30000;
// The photograph is shown as it is: white, so the image is not tinted.
constexpr uint32_t kColorFoto = 0xFFFFFFFFU;
constexpr float kBrilloFoto = 0.8F;

// The model behind a handle: an Objeto3D's, or a Superficie's; null for anything else.
cad::Modelo3D* modeloDe(cad::Entidad* e)
{
    if (auto* o = dynamic_cast<cad::Objeto3D*>(e))
    {
        return o->modelo;
    }
    if (auto* s = dynamic_cast<cad::Superficie*>(e))
    {
        return &s->modelo();
    }
    return nullptr;
}

// The model face behind the i-th face a hot-element set lists: the live faces, in order.
int32_t caraViva(const cad::Modelo3D& m, int32_t i)
{
    int32_t n = -1;
    for (size_t c = 0; c < m.caras().size(); ++c)
    {
        if (m.caras()[c].arista >= 0 && ++n == i)
        {
            return static_cast<int32_t>(c);
        }
    }
    return -1;
}

}  // namespace

int64_t WrapDibujoCAD::nuevoPunto(int64_t grupo, double x, double y, double z, int32_t color)
{
    auto* g = dynamic_cast<cad::GrupoPuntos*>(mDibujo->buscaEntidad(grupo));
    if (g == nullptr || !admiteCoordenadas(mEditor, {x, y, z}))
    {
        return 0;
    }
    g->nuevoPunto({x, y, z}, static_cast<uint32_t>(color));
    mDibujo->edicionHecha();
    return grupo;
}

int64_t WrapDibujoCAD::nuevoGrupoPuntos(const std::vector<double>& coordenadas,
                                        const std::vector<int32_t>& colores)
{
    // The count is that of the colours; coordinates short of it limit it, so nothing is read
    // past the caller's array.
    const size_t n = std::min(colores.size(), coordenadas.size() / 3);
    if (mDibujo == nullptr || !admiteCoordenadas(mEditor, coordenadas.data(), 3 * n))
    {
        return 0;
    }
    std::vector<cad::Punto3<double>> puntos;
    puntos.reserve(n);
    for (size_t i = 0; i < n; ++i)
    {
        puntos.emplace_back(coordenadas[3 * i], coordenadas[3 * i + 1], coordenadas[3 * i + 2]);
    }
    std::vector<uint32_t> rgb(colores.begin(), colores.begin() + static_cast<long>(n));
    return insertaEntidadGetHandle(
        new cad::GrupoPuntos(static_cast<int>(n), puntos.data(), rgb.data()));
}

int64_t WrapDibujoCAD::nuevaCara3D(int32_t n, const double* coordenadas)
{
    // A face has three or four corners: anything else would overrun its corner array.
    if (mDibujo == nullptr || (n != 3 && n != 4) ||
        !admiteCoordenadas(mEditor, coordenadas, 3 * static_cast<size_t>(n)))
    {
        return 0;
    }
    cad::Punto3<double> esquinas[4];
    for (int i = 0; i < n; ++i)
    {
        esquinas[i] = {coordenadas[3 * i], coordenadas[3 * i + 1], coordenadas[3 * i + 2]};
    }
    return insertaEntidadGetHandle(new cad::Cara3D(n, esquinas));
}

int64_t WrapDibujoCAD::nuevoCubo(const double* coordenadas)
{
    if (mDibujo == nullptr || !admiteCoordenadas(mEditor, coordenadas, 6))
    {
        return 0;
    }
    return insertaEntidadGetHandle(
        new cad::Cubo(cad::Punto3<double>(coordenadas[0], coordenadas[1], coordenadas[2]),
                      cad::Punto3<double>(coordenadas[3], coordenadas[4], coordenadas[5])));
}

int64_t WrapDibujoCAD::nuevoObjeto3D(const std::string& ficheroObj)
{
    if (mDibujo == nullptr)
    {
        return 0;
    }
    const constCharPtr ruta(ficheroObj);
    auto soup = std::make_unique<cad::Policara>();
    soup->importaObj(ruta.c_str(), *mDibujo);
    // Inserted whatever was read, an unreadable file giving an empty soup.
    return insertaEntidadGetHandle(soup.release());
}

bool WrapDibujoCAD::importaOBJ(const std::string& fichero)
{
    // A disposed facade has nothing to read into: refused rather than reaching a null drawing.
    if (mDibujo == nullptr)
    {
        return false;
    }
    const constCharPtr ruta(fichero);
    const bool ok = mDibujo->importaDocumentoOBJ(ruta.c_str());
    avisaImportacion();
    return ok;
}

int64_t WrapDibujoCAD::nuevaTomaCamara(double x, double y, double z, double o, double p, double k,
                                       double d, double w, double h, const std::string& nombre,
                                       const std::string& ruta, int32_t tag)
{
    (void)ruta;  // the photograph is the material `tag`, which the host made
    if (mDibujo == nullptr || !admiteCoordenadas(mEditor, {x, y, z, o, p, k, d, w, h}) ||
        !admiteCadena(mEditor, nombre))
    {
        return 0;
    }
    auto* toma = new cad::TomaCamara({x, y, z}, {o, p, k}, d, w, h);
    toma->setImagen(nombre, static_cast<uint16_t>(tag));
    return insertaEntidadGetHandle(toma);
}

int64_t WrapDibujoCAD::nuevaTomaCamara(double x, double y, double z, double o, double p, double k,
                                       double d, double w, double h, const std::string& nombre,
                                       const std::string& ruta, int32_t tag, double tamayoPixeles)
{
    const int64_t handle = nuevaTomaCamara(x, y, z, o, p, k, d, w, h, nombre, ruta, tag);
    auto* toma =
        handle != 0 ? dynamic_cast<cad::TomaCamara*>(mDibujo->buscaEntidad(handle)) : nullptr;
    if (toma != nullptr)
    {
        toma->asignaEscalaConstante({x, y, z}, 1.0, tamayoPixeles);
    }
    return handle;
}

int64_t WrapDibujoCAD::nuevaFoto360(double x, double y, double z, double radio, int32_t anchura,
                                    int32_t altura, double roll, double pitch, double yaw,
                                    const std::string& foto)
{
    if (mDibujo == nullptr || !admiteCoordenadas(mEditor, {x, y, z, radio, roll, pitch, yaw}) ||
        !admiteCadena(mEditor, foto) || !cad::divisionesAdmisibles(anchura, altura))
    {
        return 0;
    }
    int id = kPrimerMaterialFoto;
    while (id <= INT16_MAX && mDibujo->existeMaterial(id))
    {
        ++id;
    }
    if (id > INT16_MAX ||
        !mDibujo->nuevoMaterialId(static_cast<int16_t>(id), 0, kColorFoto, kBrilloFoto, foto))
    {
        return 0;
    }
    if (mPantalla != nullptr)
    {
        mPantalla->nuevaTextura(static_cast<int16_t>(id), foto.c_str(), kColorFoto, kBrilloFoto);
    }
    auto* esfera = new cad::Foto360({x, y, z}, radio, anchura, altura, roll, pitch, yaw);
    esfera->setMaterial(static_cast<uint16_t>(id));
    const int64_t handle = insertaEntidadGetHandle(esfera);
    if (handle == 0)
    {
        mDibujo->borraMaterial(static_cast<int16_t>(id));  // refused: the photograph goes too
    }
    return handle;
}

int32_t WrapDibujoCAD::borraTomasCamaras()
{
    if (mDibujo == nullptr)
    {
        return 0;
    }
    // Camera shots and 360 photos, each with the material of its photograph.
    std::vector<std::pair<cad::Entidad*, uint16_t>> borrar;
    for (cad::Entidad* e : mDibujo->entidades)
    {
        if (e->tieneFirma(cad::kFirmaEntidadTomaCamara))
        {
            borrar.emplace_back(e, static_cast<cad::TomaCamara*>(e)->idImagen());
        }
        else if (e->tieneFirma(cad::kFirmaEntidadFoto360))
        {
            borrar.emplace_back(e, e->material());
        }
    }
    for (const auto& [e, material] : borrar)
    {
        if (material != 0)
        {
            mDibujo->borraMaterial(static_cast<int16_t>(material));
        }
        mDibujo->borraEntidad(e, true);
    }
    if (mEditor != nullptr && !borrar.empty())
    {
        mEditor->actualiza(EditorDibujo::kControl, false);
    }
    return static_cast<int32_t>(borrar.size());
}

int32_t WrapDibujoCAD::getTomasCamaras(std::vector<int64_t>& handles, std::vector<double>& datos)
{
    handles.clear();
    datos.clear();
    if (mDibujo == nullptr)
    {
        return 0;
    }
    for (cad::Entidad* e : mDibujo->entidades)
    {
        if (e->tieneFirma(cad::kFirmaEntidadTomaCamara))
        {
            const auto* t = static_cast<const cad::TomaCamara*>(e);
            handles.push_back(cad::handleEntidad(e));
            datos.insert(datos.end(),
                         {t->posicion.x, t->posicion.y, t->posicion.z, t->orientacion.x,
                          t->orientacion.y, t->orientacion.z, t->distancia, t->anchura, t->altura});
        }
    }
    return static_cast<int32_t>(handles.size());
}

// ---------------------------------------------------------------------------------------
// Faces of models

int32_t WrapDibujoCAD::numeroCaras(int64_t handle)
{
    cad::Entidad* e = mDibujo != nullptr ? mDibujo->buscaEntidad(handle) : nullptr;
    if (e == nullptr)
    {
        return 0;
    }
    cad::PuntosCalientes calientes;
    calientes.entidad = e;
    e->puntosCalientes(calientes);
    return calientes.numeroCaras();
}

int32_t WrapDibujoCAD::getVerticesCara(int64_t handle, int32_t i, std::vector<double>& coordenadas)
{
    coordenadas.clear();
    cad::Entidad* e = mDibujo != nullptr ? mDibujo->buscaEntidad(handle) : nullptr;
    if (e == nullptr || i < 0)
    {
        return 0;
    }
    cad::PuntosCalientes calientes;
    calientes.entidad = e;
    e->puntosCalientes(calientes);
    if (i >= calientes.numeroCaras())
    {
        return 0;
    }
    for (const cad::Punto3<double>& p : calientes.caras[static_cast<size_t>(i)])
    {
        coordenadas.insert(coordenadas.end(), {p.x, p.y, p.z});
    }
    return static_cast<int32_t>(coordenadas.size());
}

bool WrapDibujoCAD::setMapeoFotografia(int64_t handle, int32_t i, int32_t idMaterial,
                                       const std::vector<double>& coordenadas)
{
    cad::Entidad* e = mDibujo != nullptr ? mDibujo->buscaEntidad(handle) : nullptr;
    cad::Modelo3D* m = modeloDe(e);
    const int32_t cara = m != nullptr ? caraViva(*m, i) : -1;
    if (cara < 0)
    {
        return false;
    }
    // u, v of each corner, in the face's corner order; corners the array lacks keep theirs.
    std::vector<int32_t> esquinas;
    m->verticesDeCara(cara, esquinas);
    for (size_t k = 0; k < esquinas.size() && 2 * k + 1 < coordenadas.size(); ++k)
    {
        m->setCoordenadasUV(esquinas[k], {static_cast<float>(coordenadas[2 * k]),
                                          static_cast<float>(coordenadas[2 * k + 1])});
    }
    m->caras()[static_cast<size_t>(cara)].material = static_cast<uint16_t>(idMaterial);
    mDibujo->edicionHecha();
    return true;
}

bool WrapDibujoCAD::setMapeoTextura(int64_t handle, int32_t i, int32_t idMaterial)
{
    cad::Entidad* e = mDibujo != nullptr ? mDibujo->buscaEntidad(handle) : nullptr;
    cad::Modelo3D* m = modeloDe(e);
    const int32_t cara = m != nullptr ? caraViva(*m, i) : -1;
    if (cara < 0)
    {
        return false;
    }
    m->caras()[static_cast<size_t>(cara)].material = static_cast<uint16_t>(idMaterial);
    mDibujo->edicionHecha();
    return true;
}

bool WrapDibujoCAD::setMapeoTextura(int64_t handle, int32_t idMaterial)
{
    cad::Entidad* e = mDibujo != nullptr ? mDibujo->buscaEntidad(handle) : nullptr;
    cad::Modelo3D* m = modeloDe(e);
    if (m == nullptr || !m->proyectaUV())
    {
        return false;
    }
    for (cad::cara_t& c : m->caras())
    {
        if (c.arista >= 0)
        {
            c.material = static_cast<uint16_t>(idMaterial);
        }
    }
    mDibujo->edicionHecha();
    return true;
}

// ---------------------------------------------------------------------------------------
// Hollow exporters: kept as traversals; they write nothing

bool WrapDibujoCAD::exportaPLY(int64_t handle, const std::string& fichero)
{
    (void)fichero;
    if (mEditor == nullptr)
    {
        return false;
    }
    cad::SeleccionEntidades s = mDibujo->nuevaSeleccion(cad::Dibujo::kSeleccionVacia);
    s.incluyeManejadorEntidad(handle);
    return s.numeroEntidades() > 0 && s.getEntidadObjeto3D(0) != nullptr;
}

bool WrapDibujoCAD::exportaSKP(const std::string& fichero)
{
    (void)fichero;
    return recorreModelos();
}

bool WrapDibujoCAD::exportaCollada(const std::string& fichero, const std::string& ficheroTmp,
                                   const std::string& ficheroExec)
{
    (void)fichero;
    (void)ficheroTmp;
    (void)ficheroExec;
    return recorreModelos();
}

bool WrapDibujoCAD::recorreModelos()
{
    if (mEditor == nullptr)
    {
        return false;
    }
    cad::SeleccionEntidades s = mDibujo->nuevaSeleccion(cad::Dibujo::kSeleccionTodas);
    for (uint32_t i = 0; i < s.numeroEntidades(); ++i)
    {
        (void)s.getEntidadLinea(i);
        (void)s.getEntidadPolilinea(i);
        const cad::Objeto3D* o = s.getEntidadObjeto3D(i);
        if (o == nullptr || o->modelo == nullptr || o->modelo->caras().empty())
        {
            continue;
        }
        // What an exporter read of the first face's material, and nothing more.
        const cad::Material* m =
            mDibujo->materialId(static_cast<int16_t>(o->modelo->caras().front().material));
        if (m != nullptr)
        {
            (void)m->brillo();
            (void)m->color();
            (void)m->textura();
        }
    }
    return true;
}

}  // namespace Fendrix
