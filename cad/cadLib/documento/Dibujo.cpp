#include "documento/Dibujo.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <map>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "base/Admisible.h"
#include "base/Configuracion.h"
#include "base/ReferenciaObjetoCAD.h"
#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "documento/ReferenciaEntidades.h"
#include "documento/Variables.h"
#include "documento/VariablesPintura.h"
#include "entidades/Entidad.h"
#include "entidades/Objeto3D.h"
#include "entidades/PuntoControl.h"
#include "entidades/SistemaLocal.h"
#include "entidades/Texto.h"
#include "intercambio/ExportaDXF.h"
#include "modelo/PuntosCalientes.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

Dibujo::Dibujo() : origenPlano(sinPlano()) {}

Dibujo::~Dibujo()
{
    destruyeDocumento();
}

Punto3<double> Dibujo::sinPlano()
{
    return invalido;
}

// ---------------------------------------------------------------------------------------
// Whole document

void Dibujo::nuevoDocumento()
{
    destruyeDocumento();
    capaActual_ = new Capa("0", ColorCapa(7), 1);
    capas.push_back(capaActual_);
    entidades.vacia();
    variables.creaDefectos();
    vistas.vacia();
    vistaActual = new Vista();
    nuevoMaterial(1, 0xFFFFFFFF, 64.0F, "");
    materialActual_ = 0;
    estiloTextoActual_ = new EstiloTexto();
    estiloTextoActual_->nombre = "standar";
    estiloTextoActual_->fuente = "";
    estiloTextoActual_->tamano = 0;
    estilosTexto.push_back(estiloTextoActual_);
    planoVista = false;
    hayCambios_ = false;
    redibujar = true;
    vistaAplicada = false;
    cargaEstado();
}

bool Dibujo::destruyeDocumento()
{
    capas.vacia();
    entidades.vacia();
    variables.vacia();
    vistas.vacia();
    materiales.vacia();
    estilosTexto.vacia();
    delete vistaActual;
    vistaActual = nullptr;
    return true;
}

void Dibujo::edicionHecha()
{
    hayCambios_ = true;
    redibujar = true;
    vistaAplicada = false;
}

void Dibujo::setModo2D(bool activo, PantallaCAD* p)
{
    if (p != nullptr)
    {
        p->setModo2D(activo);
    }
    modo2D_ = activo;
}

int32_t Dibujo::setTipoCursor(int32_t tipo)
{
    const int32_t anterior = tipoCursor;
    tipoCursor = tipo;
    return anterior;
}

void Dibujo::une(Dibujo& otro)
{
    for (Capa* c : otro.capas)
    {
        if (buscaCapa(c->nombre.c_str()) == nullptr)
        {
            auto* copia = new Capa(c->nombre, c->color, c->flags);
            copia->estiloLinea = c->estiloLinea;
            capas.push_back(copia);
        }
    }
    std::vector<std::pair<int16_t, int16_t>> equivalencias;
    for (Material* m : otro.materiales)
    {
        auto igual = std::find_if(materiales.begin(), materiales.end(),
                                  [m](const Material* propio) { return *propio == *m; });
        if (igual != materiales.end())
        {
            equivalencias.emplace_back(m->id, (*igual)->id);
        }
        else
        {
            const int16_t nuevo =
                nuevoMaterial(m->idExterno, m->color(), m->brillo(), m->textura());
            equivalencias.emplace_back(m->id, nuevo);
        }
    }
    std::map<uint16_t, uint16_t> mapa;
    for (const auto& [antiguo, nuevo] : equivalencias)
    {
        mapa[static_cast<uint16_t>(antiguo)] = static_cast<uint16_t>(nuevo);
    }
    // A model's faces name materials of the other drawing. The representation is not given
    // to the model: a model paints with this drawing's "REPRESENTACION_MODELOS" whenever it
    // is painted here.
    for (Entidad* e : otro.entidades)
    {
        Entidad* copia = e->clona();
        if (copia->tieneFirma(kFirmaEntidadObjeto3D))
        {
            Modelo3D* modelo = static_cast<Objeto3D*>(copia)->modelo;
            if (modelo != nullptr)
            {
                modelo->remapeaMateriales(mapa);
            }
        }
        Capa* c = e->capa.get() != nullptr ? buscaCapa(e->capa.get()->nombre.c_str()) : nullptr;
        copia->capa.set(c, 0);
        entidades.push_back(copia);
    }
    hayCambios_ = true;
    redibujar = true;
}

// ---------------------------------------------------------------------------------------
// Entities

bool Dibujo::nuevaEntidad(Entidad* e)
{
    lock.lock();
    hayCambios_ = true;
    redibujar = true;
    if (e == nullptr)
    {
        return false;
    }
    if (e->capa.objeto == nullptr)
    {
        e->capa.set(capaActual_, 0);
    }
    if (e->color.colorCAD == 256)
    {
        e->color.colorCAD = colorActual.colorCAD;
        e->color.mColor = colorActual.mColor;
    }
    extension.une(e->extension());
    if (!hayPlanoReferencia() && extension.esValido())
    {
        const Punto3<double> centro = extension.centro();
        setPlanoReferencia(Punto3<double>(centro.x, centro.y, extension.minimo.z), normalPlano);
    }
    e->setEstiloTexto(estiloTextoActual_);
    entidades.push_back(e);
    ultimaEntidad = e;
    lock.unlock();
    return true;
}

bool Dibujo::borraEntidad(Entidad* e, bool borrar)
{
    std::lock_guard<std::recursive_mutex> guardia(lock);
    auto it = std::find(entidades.begin(), entidades.end(), e);
    if (it == entidades.end())
    {
        return false;
    }
    entidades.erase(it);
    e->quitaSeleccion();
    hayCambios_ = true;
    redibujar = true;
    if (borrar)
    {
        delete e;
    }
    return true;
}

std::vector<Entidad*> Dibujo::entidadesCercaPixel(PantallaCAD& p, int x, int y, int t,
                                                  bool incluyeOcultas) const
{
    std::vector<void*> picks;
    p.entidadesEnRectangulo(Rect2<int>(Punto2<int>(x - t, y - t), Punto2<int>(x + t, y + t)),
                            incluyeOcultas, picks);
    std::vector<const void*> ordenados(picks.begin(), picks.end());
    std::sort(ordenados.begin(), ordenados.end());
    std::vector<const void*> presentes;
    for (const Entidad* e : entidades)
    {
        if (std::binary_search(ordenados.begin(), ordenados.end(), static_cast<const void*>(e)))
        {
            presentes.push_back(e);
        }
    }
    std::sort(presentes.begin(), presentes.end());
    std::vector<Entidad*> r;
    r.reserve(presentes.size());
    for (void* v : picks)
    {
        if (std::binary_search(presentes.begin(), presentes.end(), static_cast<const void*>(v)))
        {
            r.push_back(static_cast<Entidad*>(v));
        }
    }
    return r;
}

bool Dibujo::contieneEntidad(const Entidad* e) const
{
    return e != nullptr && std::find(entidades.begin(), entidades.end(), e) != entidades.end();
}

Entidad* Dibujo::buscaEntidad(int64_t handle) const
{
    for (Entidad* e : entidades)
    {
        if (handleEntidad(e) == handle)
        {
            return e;
        }
    }
    return nullptr;
}

int64_t Dibujo::handleUltimaEntidad() const
{
    return handleEntidad(ultimaEntidad);
}

void Dibujo::selecciona(Entidad* e)
{
    e->marcaSeleccion();
    redibujar = true;
}

void Dibujo::deselecciona()
{
    for (Entidad* e : entidades)
    {
        e->quitaSeleccion();
    }
}

void Dibujo::deselecciona(Entidad* e)
{
    e->quitaSeleccion();
}

void Dibujo::selecciona(SeleccionEntidades& s)
{
    for (Entidad* e : s.entidades)
    {
        e->marcaSeleccion();
    }
    redibujar = true;
}

void Dibujo::deselecciona(SeleccionEntidades& s)
{
    for (Entidad* e : s.entidades)
    {
        e->quitaSeleccion();
    }
}

SeleccionEntidades Dibujo::nuevaSeleccion(seleccion tipo)
{
    SeleccionEntidades s(this);
    const uint32_t marcas = kEstadoSeleccionada | kEstadoResaltada;
    switch (tipo)
    {
        case kSeleccionTodas:
        {
            // Each entity stands in the set once, in list order, even if the list repeats it.
            std::unordered_set<const Entidad*> yaPuestas;
            yaPuestas.reserve(entidades.size());
            s.entidades.reserve(entidades.size());
            for (Entidad* e : entidades)
            {
                if (yaPuestas.insert(e).second)
                {
                    s.entidades.push_back(e);
                }
            }
            break;
        }
        case kSeleccionMarcadas:
        case kSeleccionNoMarcadas:
            for (Entidad* e : entidades)
            {
                if (((e->estado & marcas) != 0) == (tipo == kSeleccionMarcadas))
                {
                    s.entidades.push_back(e);
                }
            }
            break;
        case kSeleccionUltima:
            s.incluyeUltimaEntidad();
            break;
        default:
            break;
    }
    return s;
}

// ---------------------------------------------------------------------------------------
// Local systems

int Dibujo::numeroSistemasLocales() const
{
    int n = 0;
    for (const Entidad* e : entidades)
    {
        n += e->tieneFirma(kFirmaEntidadSistemaLocal) ? 1 : 0;
    }
    return n;
}

SistemaLocal* Dibujo::sistemaLocal(const std::string& nombre) const
{
    for (Entidad* e : entidades)
    {
        if (e->tieneFirma(kFirmaEntidadSistemaLocal) &&
            static_cast<SistemaLocal*>(e)->nombre == nombre)
        {
            return static_cast<SistemaLocal*>(e);
        }
    }
    return nullptr;
}

std::string Dibujo::nombreSistemaLocal(int i) const
{
    int n = 0;
    for (Entidad* e : entidades)
    {
        if (e->tieneFirma(kFirmaEntidadSistemaLocal) && n++ == i)
        {
            return static_cast<SistemaLocal*>(e)->nombre;
        }
    }
    return "";
}

bool Dibujo::existeSistemaLocal(const std::string& nombre) const
{
    return sistemaLocal(nombre) != nullptr;
}

bool Dibujo::borraSistemaLocal(const std::string& nombre)
{
    std::lock_guard<std::recursive_mutex> guardia(lock);
    SistemaLocal* s = sistemaLocal(nombre);
    return s != nullptr && borraEntidad(s, true);
}

// ---------------------------------------------------------------------------------------
// Snap and the cursor's plane

bool Dibujo::referenciaEntidades(PantallaCAD& p, cursor_t& cursor)
{
    if (!referenciaGlobal || mascaraReferencias == 0)
    {
        return false;
    }
    if (reactorInicioReferencia)
    {
        reactorInicioReferencia();
    }
    if (modo2D_)
    {
        cursor.direccion = Vector3D<double>(0, 0, -1);
    }
    double pixel = 0.0;
    p.tamanoPixel(pixel);
    const double tolerancia = pixel * toleranciaReferencia;
    ReferenciaEntidades r(&p, cursor.posicion, cursor.direccion, mascaraReferencias, tolerancia);
    r.cursor = cursor;
    bool alguna = false;
    for (const Entidad* e : entidadesCercaPixel(p, cursor.x, cursor.y, toleranciaReferencia, false))
    {
        if (e->capaVisible())
        {
            alguna = e->getReferenciaEntidades(r) || alguna;
        }
    }
    const bool encontrado = alguna && tolerancia >= r.distanciaMejor;
    if (encontrado)
    {
        cursor.referencia = r.puntoMejor;
        cursor.tipo = r.tipoMejor;
        cursor.entidad = r.entidadMejor;
    }
    if (reactorFinReferencia)
    {
        reactorFinReferencia();
    }
    return encontrado;
}

void Dibujo::proyectaCursor(cursor_t& cursor)
{
    const Plano3D<double>& activo = planoTemporalActivo ? planoTemporal : plano;
    const Linea3D<double> rayo(cursor.posicion, cursor.direccion);
    Punto3<double> impacto;
    if (activo.interseccionLineaPlano(rayo, impacto))
    {
        cursor.plano = impacto;
    }
    else if (extension.esValido())
    {
        // The ray runs along the plane: take the plane through the extents' centre that faces
        // the view instead.
        const Plano3D<double> vertical(extension.centro(), cursor.direccion);
        if (vertical.interseccionLineaPlano(rayo, impacto))
        {
            cursor.plano = impacto;
        }
    }
    if (cursor.plano != invalido)
    {
        cursor.local = activo.proyecta(cursor.plano);
    }
}

void Dibujo::fijaPlanoTemporal(const Punto3<double>& punto)
{
    const Vector3D<double> n = normalPlano.unit();
    planoTemporalActivo = true;
    planoTemporal = Plano3D<double>(punto, n);
}

// ---------------------------------------------------------------------------------------
// Layers

const char* Dibujo::capa(int i) const
{
    if (i < 0 || i >= numeroCapas())
    {
        return nullptr;
    }
    return capas[static_cast<size_t>(i)]->nombre.c_str();
}

Capa* Dibujo::buscaCapa(const char* nombre) const
{
    return nombre != nullptr ? capas.busca(nombre) : nullptr;
}

bool Dibujo::nuevaCapa(Capa* c)
{
    if (!cadenaAdmisible(c->nombre) || buscaCapa(c->nombre.c_str()) != nullptr)
    {
        return false;
    }
    capas.push_back(c);
    return true;
}

bool Dibujo::posicionaCapa(Capa* c)
{
    if (!cadenaAdmisible(c->nombre))
    {
        return false;
    }
    Capa* existente = buscaCapa(c->nombre.c_str());
    if (existente != nullptr)
    {
        existente->flags |= 1;
        capaActual_ = existente;
        hayCambios_ = true;
        return true;
    }
    capas.push_back(c);
    return true;
}

bool Dibujo::borraCapa(const char* nombre)
{
    Capa* c = buscaCapa(nombre);
    if (c == nullptr)
    {
        return false;
    }
    std::vector<Entidad*> suyas;
    for (Entidad* e : entidades)
    {
        if (e->capa.objeto == c)
        {
            suyas.push_back(e);
        }
    }
    for (Entidad* e : suyas)
    {
        borraEntidad(e, true);
    }
    capas.erase(std::find(capas.begin(), capas.end(), c));
    // The layer leaves the list but not memory: capaActual may still name it, and an undo
    // step may take it back. The drawing keeps it until it is itself destroyed.
    capasRetiradas.emplace_back(c);
    hayCambios_ = true;
    redibujar = true;
    return true;
}

bool Dibujo::capaActual(const char* nombre)
{
    if (capaActual_ != nullptr && nombre != nullptr && capaActual_->nombre == nombre)
    {
        return true;
    }
    Capa* c = buscaCapa(nombre);
    if (c == nullptr || (c->flags & 1) == 0 || (c->flags & 2) != 0)
    {
        return false;
    }
    capaActual_ = c;
    hayCambios_ = true;
    return true;
}

bool Dibujo::capaVisible(const char* nombre) const
{
    const Capa* c = buscaCapa(nombre);
    return c != nullptr && (c->flags & 1) != 0;
}

bool Dibujo::capaBloqueada(const char* nombre) const
{
    const Capa* c = buscaCapa(nombre);
    return c != nullptr && (c->flags & 2) != 0;
}

uint32_t Dibujo::colorCapa(const char* nombre) const
{
    const Capa* c = buscaCapa(nombre);
    return c != nullptr ? c->color.ABGR() : 0xFFFFFFFFU;
}

bool Dibujo::colorCapa(const char* nombre, uint32_t rgb)
{
    Capa* c = buscaCapa(nombre);
    if (c == nullptr)
    {
        return false;
    }
    const uint32_t antes = c->color.RGBA();
    c->color.setRGB(rgb);
    // The marks go up only when the packed forms happen to match: that is how it stands, and
    // callers that want a repaint set it themselves.
    if (rgb == antes)
    {
        hayCambios_ = true;
        redibujar = true;
    }
    return true;
}

bool Dibujo::visibilidadCapa(const char* nombre, bool visible)
{
    Capa* c = buscaCapa(nombre);
    if (c == nullptr)
    {
        return false;
    }
    const int32_t antes = c->flags;
    c->flags = visible ? (c->flags | 1) : (c->flags & ~1);
    if (c->flags != antes)
    {
        hayCambios_ = true;
        redibujar = true;
    }
    return true;
}

bool Dibujo::bloqueaCapa(const char* nombre, bool bloquear)
{
    Capa* c = buscaCapa(nombre);
    if (c == nullptr || c->nombre == "0")
    {
        return false;
    }
    c->flags = bloquear ? (c->flags | 2) : (c->flags & ~2);
    if (bloquear && c == capaActual_)
    {
        if (Capa* cero = buscaCapa("0"))
        {
            capaActual_ = cero;
        }
    }
    return true;
}

bool Dibujo::renombraCapa(const char* viejo, const char* nuevo)
{
    Capa* c = buscaCapa(viejo);
    if (c == nullptr || nuevo == nullptr || !cadenaAdmisible(nuevo))
    {
        return false;
    }
    hayCambios_ = c->nombre != nuevo;
    c->nombre = nuevo;
    return true;
}

void Dibujo::setColorActualRGB(uint32_t rgb)
{
    colorActual.setRGB(rgb);
}

// ---------------------------------------------------------------------------------------
// Materials and text styles

Material* Dibujo::material(int i) const
{
    if (i < 0 || i >= numeroMateriales())
    {
        return nullptr;
    }
    return materiales[static_cast<size_t>(i)];
}

Material* Dibujo::materialId(int16_t idMaterial) const
{
    for (auto it = materiales.rbegin(); it != materiales.rend(); ++it)
    {
        if ((*it)->id == idMaterial)
        {
            return *it;
        }
    }
    return nullptr;
}

bool Dibujo::existeMaterial(int idMaterial) const
{
    return materialId(static_cast<int16_t>(idMaterial)) != nullptr;
}

int16_t Dibujo::nuevoMaterial(int idExterno, uint32_t color, float brillo,
                              const std::string& textura)
{
    if (!cadenaAdmisible(textura))
    {
        return 0;  // ids start at 1
    }
    // An id taken outside the generator (a photograph's) is skipped.
    int16_t nuevo = 0;
    do
    {
        nuevo = static_cast<int16_t>(generadorId.nuevoId(kFamiliaMateriales));
    } while (!nuevoMaterialId(nuevo, idExterno, color, brillo, textura));
    return nuevo;
}

bool Dibujo::nuevoMaterialId(int16_t idMaterial, int idExterno, uint32_t color, float brillo,
                             const std::string& textura)
{
    if (existeMaterial(idMaterial) || !cadenaAdmisible(textura))
    {
        return false;
    }
    auto* m = new Material(idMaterial);
    m->idExterno = idExterno;
    m->setColor(color);
    m->setBrillo(brillo);
    m->setTextura(textura);
    materiales.push_back(m);
    hayCambios_ = true;
    redibujar = true;
    vistaAplicada = false;
    return true;
}

int16_t Dibujo::nuevoMaterial(int idExterno, const std::string& textura)
{
    return nuevoMaterial(idExterno, 0xFFFFFFFFU, 1.0F, textura);
}

void Dibujo::borraMaterial(int16_t idMaterial)
{
    for (auto it = materiales.rbegin(); it != materiales.rend(); ++it)
    {
        if ((*it)->id == idMaterial)
        {
            delete *it;
            materiales.erase(std::next(it).base());
            generadorId.liberaId(kFamiliaMateriales, idMaterial);
            // The id goes back to the generator: the next material would inherit the choice.
            if (materialActual_ == idMaterial)
            {
                materialActual_ = 0;
            }
            break;
        }
    }
    hayCambios_ = true;
    redibujar = true;
    vistaAplicada = false;
}

bool Dibujo::nuevoEstiloTexto(EstiloTexto* estilo)
{
    if (!cadenaAdmisible(estilo->nombre) || !cadenaAdmisible(estilo->fuente) ||
        buscaEstiloTexto(estilo->nombre.c_str()) != nullptr)
    {
        return false;
    }
    estilosTexto.push_back(estilo);
    return true;
}

EstiloTexto* Dibujo::buscaEstiloTexto(const char* nombre) const
{
    return nombre != nullptr ? estilosTexto.busca(nombre) : nullptr;
}

bool Dibujo::estiloTextoActual(const char* nombre)
{
    EstiloTexto* e = buscaEstiloTexto(nombre);
    if (e == nullptr)
    {
        return false;
    }
    estiloTextoActual_ = e;
    hayCambios_ = true;
    return true;
}

// ---------------------------------------------------------------------------------------
// Variables and views

// The variable forms have no result to refuse with: an over-long string is dropped here, and
// the callers that face a user (the facade) tell the refusal before they call.
void Dibujo::setVariable(const std::string& nombre, const std::string& valor)
{
    if (!cadenaAdmisible(nombre) || !cadenaAdmisible(valor))
    {
        return;
    }
    variables.setValor(nombre, valor);
    redibujar = true;
}

void Dibujo::setVariable(const std::string& nombre, int valor)
{
    if (!cadenaAdmisible(nombre))
    {
        return;
    }
    variables.setValor(nombre, valor);
    redibujar = true;
}

void Dibujo::setVariable(const std::string& nombre, double valor)
{
    if (!cadenaAdmisible(nombre))
    {
        return;
    }
    variables.setValor(nombre, valor);
    redibujar = true;
}

void Dibujo::setVariable(const std::string& nombre, double x, double y, double z)
{
    if (!cadenaAdmisible(nombre))
    {
        return;
    }
    variables.setValor(nombre, Vector3D<double>(x, y, z));
    redibujar = true;
}

bool Dibujo::getVariable(const std::string& nombre, int& valor) const
{
    VariableBase* v = variables.busca(nombre);
    if (v == nullptr)
    {
        return false;
    }
    // The integer form reads the variable's first value field, whatever its kind.
    if (auto* i = comoVariable<VariableInt>(v, "VIn"))
    {
        valor = i->valor;
    }
    else if (auto* d = comoVariable<VariableDob>(v, "VDb"))
    {
        valor = static_cast<int>(d->valor);
    }
    else if (auto* s = comoVariable<VariableStr>(v, "VSt"))
    {
        valor = std::atoi(s->valor.c_str());
    }
    else if (auto* p = comoVariable<Variable3D>(v, "V3D"))
    {
        valor = static_cast<int>(p->valor.x);
    }
    return true;
}

bool Dibujo::getVariable(const std::string& nombre, std::string& valor) const
{
    VariableBase* v = variables.busca(nombre);
    if (v == nullptr)
    {
        return false;
    }
    char texto[96];
    if (auto* s = comoVariable<VariableStr>(v, "VSt"))
    {
        valor = s->valor;
        return true;
    }
    if (auto* i = comoVariable<VariableInt>(v, "VIn"))
    {
        std::snprintf(texto, sizeof texto, "%d", i->valor);
    }
    else if (auto* d = comoVariable<VariableDob>(v, "VDb"))
    {
        std::snprintf(texto, sizeof texto, "%.15g", d->valor);
    }
    else if (auto* p = comoVariable<Variable3D>(v, "V3D"))
    {
        std::snprintf(texto, sizeof texto, "%.15g,%.15g,%.15g", p->valor.x, p->valor.y, p->valor.z);
    }
    else
    {
        texto[0] = '\0';
    }
    valor = texto;
    return true;
}

bool Dibujo::existeVariable(const std::string& nombre) const
{
    return variables.busca(nombre) != nullptr;
}

void Dibujo::borraVariable(const std::string& nombre)
{
    auto it = std::find_if(variables.begin(), variables.end(),
                           [&nombre](const VariableBase* v) { return v->nombre == nombre; });
    if (it != variables.end())
    {
        delete *it;
        variables.erase(it);
    }
    redibujar = true;
}

std::string Dibujo::nombreVista(int i) const
{
    if (i < 0 || i >= numeroVistas())
    {
        return "";
    }
    return vistas[static_cast<size_t>(i)]->nombre;
}

namespace
{

void leeCamara(PantallaCAD* p, Vista& v)
{
    p->getCamara(v.posicion, v.objetivo, v.direccion, v.arriba, v.zoom, v.angulo);
}

}  // namespace

void Dibujo::guardaVistaActual(PantallaCAD* p, const std::string& nombre)
{
    if (!cadenaAdmisible(nombre))
    {
        return;
    }
    auto it = std::find_if(vistas.begin(), vistas.end(),
                           [&nombre](const Vista* v) { return v->nombre == nombre; });
    Vista* v = nullptr;
    if (it != vistas.end())
    {
        v = *it;
    }
    else
    {
        v = new Vista();
        v->nombre = nombre;
        vistas.push_back(v);
    }
    leeCamara(p, *v);
}

Vista Dibujo::guardaVistaActual(PantallaCAD* p)
{
    if (vistaActual == nullptr)
    {
        vistaActual = new Vista();
    }
    leeCamara(p, *vistaActual);
    return *vistaActual;
}

void Dibujo::activaVista(PantallaCAD* p, const Vista& vista)
{
    p->setCamara(vista.posicion, vista.objetivo, vista.arriba, vista.zoom, vista.angulo);
}

void Dibujo::activaVista(PantallaCAD* p, const std::string& nombre)
{
    for (Vista* v : vistas)
    {
        if (v->nombre == nombre)
        {
            activaVista(p, *v);
            return;
        }
    }
}

void Dibujo::borraVista(const std::string& nombre)
{
    for (auto it = vistas.rbegin(); it != vistas.rend(); ++it)
    {
        if ((*it)->nombre == nombre)
        {
            delete *it;
            vistas.erase(std::next(it).base());
            return;
        }
    }
}

// ---------------------------------------------------------------------------------------
// View and reference plane

void Dibujo::zoomExtension(double factor, PantallaCAD* p)
{
    zoomExtension(factor, factor, p);
}

void Dibujo::zoomExtension(double factorAncho, double factorAlto, PantallaCAD* p)
{
    Rect3<double> caja;
    {
        std::lock_guard<std::recursive_mutex> guardia(lock);
        if (entidades.empty())
        {
            return;
        }
        const double m = std::numeric_limits<double>::max();
        caja.minimo = Punto3<double>(m, m, m);
        caja.maximo = Punto3<double>(-m, -m, -m);
        for (const Entidad* e : entidades)
        {
            const Rect3<double> r = e->extension();
            caja.minimo = Punto3<double>(std::min(caja.minimo.x, r.minimo.x),
                                         std::min(caja.minimo.y, r.minimo.y),
                                         std::min(caja.minimo.z, r.minimo.z));
            caja.maximo = Punto3<double>(std::max(caja.maximo.x, r.maximo.x),
                                         std::max(caja.maximo.y, r.maximo.y),
                                         std::max(caja.maximo.z, r.maximo.z));
        }
    }
    const Punto3<double> c = caja.centro();
    double hx = 0.0;
    double hy = 0.0;
    if (caja.esValido())
    {
        hx = (caja.maximo.x - caja.minimo.x) * 0.5 * factorAncho;
        hy = (caja.maximo.y - caja.minimo.y) * 0.5 * factorAlto;
    }
    p->zoomExtension(Rect3<double>(Punto3<double>(c.x - hx, c.y - hy, c.z),
                                   Punto3<double>(c.x + hx, c.y + hy, c.z)));
    guardaVistaActual(p);
    edicionHecha();
}

void Dibujo::zoomEntidad(PantallaCAD* p, Entidad* e)
{
    const Rect3<double> caja = e->extension();
    const Punto3<double> c = caja.centro();
    double hx = 0.0;
    double hy = 0.0;
    if (caja.esValido())
    {
        hx = (caja.maximo.x - caja.minimo.x) * 0.5;
        hy = (caja.maximo.y - caja.minimo.y) * 0.5;
    }
    p->zoomExtension(Rect3<double>(Punto3<double>(c.x - hx, c.y - hy, c.z),
                                   Punto3<double>(c.x + hx, c.y + hy, c.z)));
    guardaVistaActual(p);
    edicionHecha();
}

void Dibujo::setPlanoReferencia(const Punto3<double>& origen, const Vector3D<double>& normal)
{
    origenPlano = origen;
    normalPlano = normal;
    plano.a = normal.x;
    plano.b = normal.y;
    plano.c = normal.z;
    plano.d = -(normal.x * origen.x + normal.y * origen.y + normal.z * origen.z);
}

void Dibujo::getPlanoReferencia(Punto3<double>& origen, Vector3D<double>& normal,
                                Plano3D<double>& plano_) const
{
    if (!hayPlanoReferencia())
    {
        return;
    }
    origen = origenPlano;
    normal = normalPlano;
    plano_ = plano;
}

void Dibujo::setReferenciaEntidades(bool global, int32_t mascara)
{
    referenciaGlobal = global;
    mascaraReferencias = mascara;
}

void Dibujo::getReferenciaEntidades(bool& global, int32_t& mascara) const
{
    global = referenciaGlobal;
    mascara = mascaraReferencias;
}

// ---------------------------------------------------------------------------------------
// Painting

void Dibujo::inicioDibujo(PantallaCAD& p)
{
    p.inicioDibujo();
}
void Dibujo::finEntidades(PantallaCAD& p)
{
    p.finEntidades();
}
void Dibujo::finDibujo(PantallaCAD& p)
{
    p.finDibujo();
}

namespace
{

// The drawing whose paint loop runs on this thread.
thread_local const Dibujo* tDibujoPintando = nullptr;

}  // namespace

AmbitoPintura::AmbitoPintura(const Dibujo* dibujo) : anterior(tDibujoPintando)
{
    tDibujoPintando = dibujo;
}

AmbitoPintura::~AmbitoPintura()
{
    tDibujoPintando = anterior;
}

bool existeVariablePintura(const char* nombre)
{
    return tDibujoPintando != nullptr && tDibujoPintando->existeVariable(nombre);
}

int variableEnteraPintura(const char* nombre, int porDefecto)
{
    int valor = porDefecto;
    return tDibujoPintando != nullptr && tDibujoPintando->getVariable(nombre, valor) ? valor
                                                                                     : porDefecto;
}

bool Dibujo::dibuja(PantallaCAD& p)
{
    if (!lock.try_lock())
    {
        return false;
    }
    // A document that is not ready keeps the lock taken here; it is recursive, so the
    // painting thread goes on as before. That is how the operation stands.
    if (!documentoListo)
    {
        return false;
    }
    if (!vistaAplicada && vistaActual != nullptr && vistaActual->posicion != vistaActual->objetivo)
    {
        p.limpia();
        redibujar = p.setCamara(vistaActual->posicion, vistaActual->objetivo, vistaActual->arriba,
                                vistaActual->zoom, vistaActual->angulo) ||
                    redibujar;
        p.getOrigenVista(vistaActual->referencia);
        vistaAplicada = true;
    }
    const bool r = redibujar;
    if (r)
    {
        redibujar = false;
        const Color fondo = Configuracion::instancia().color(Configuracion::kFondo);
        p.setColorFondo(fondo.ABGR());
        for (const Material* m : materiales)
        {
            if (!m->tieneTextura())
            {
                p.nuevoMaterial(m->id, m->color(), m->brillo());
            }
            else
            {
                p.nuevaTextura(m->id, m->textura().c_str(), m->color(), m->brillo());
            }
        }
        p.limpia();
        cursor_t referencia;
        p.getCursor(referencia);
        if (modo2D_)
        {
            referencia.plano.z = 0.0;
        }
        p.setModoLinea(0xFFFF);
        const auto estilo = [&p](const Entidad* e, bool conPatron)
        {
            const Capa* c = static_cast<const Capa*>(e->capa.objeto);
            const EstiloLinea& l = e->estiloLinea.porCapa && c != nullptr
                                       ? static_cast<const EstiloLinea&>(c->estiloLinea)
                                       : e->estiloLinea;
            if (conPatron)
            {
                p.setModoLinea(l.patron);
            }
            p.setGrosor(static_cast<float>(l.grosor));
        };
        const auto visible = [](const Entidad* e)
        {
            const Capa* c = static_cast<const Capa*>(e->capa.objeto);
            return c != nullptr && (c->flags & 1) != 0;
        };
        const uint32_t marcas = kEstadoSeleccionada | kEstadoResaltada;
        const AmbitoPintura ambito(this);
        for (Entidad* e : entidades)
        {
            if (!visible(e))
            {
                continue;
            }
            estilo(e, true);
            if ((e->estado & marcas) == 0)
            {
                e->dibuja(p);
            }
            if ((e->estado & kEstadoResaltada) != 0)
            {
                PuntosCalientes calientes;
                calientes.entidad = e;
                e->puntosCalientes(calientes);
                calientes.dibuja(p);
            }
        }
        p.setModoLinea(0xAAAA);
        for (Entidad* e : entidades)
        {
            if (!visible(e))
            {
                continue;
            }
            estilo(e, false);
            if ((e->estado & marcas) != 0)
            {
                e->dibuja(p);
            }
            if ((e->estado & kEstadoResaltada) != 0)
            {
                PuntosCalientes calientes;
                calientes.entidad = e;
                e->puntosCalientes(calientes);
                calientes.dibuja(p);
                calientes.dibujaAristasYCaras(p);
            }
        }
        p.setModoLinea(0xFFFF);
    }
    if (vistaActual != nullptr)
    {
        p.getCamara(vistaActual->posicion, vistaActual->objetivo, vistaActual->direccion,
                    vistaActual->arriba, vistaActual->zoom, vistaActual->angulo);
    }
    lock.unlock();
    return r;
}

}  // namespace cad
