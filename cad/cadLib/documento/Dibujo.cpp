#include "documento/Dibujo.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "base/Configuracion.h"
#include "base/Admisible.h"
#include "base/ReferenciaObjetoCAD.h"
#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "documento/ReferenciaEntidades.h"
#include "documento/Variables.h"
#include "entidades/Entidad.h"
#include "entidades/PuntoControl.h"
#include "entidades/SistemaLocal.h"
#include "entidades/Texto.h"
#include "intercambio/ExportaDXF.h"
#include "modelo/PuntosCalientes.h"
#include "pantalla/PantallaCAD.h"

namespace cad
{

namespace
{

const char* const kFamiliaMateriales = "materiales";

// Grows `caja` by `otra`; an empty box adds nothing, so an entity without points can't drag
// the extent to its inverted corners.
void uneCaja(Rect3<double>& caja, const Rect3<double>& otra)
{
    if (!otra.esValido())
    {
        return;
    }
    if (!caja.esValido())
    {
        caja = otra;
        return;
    }
    caja.amplia(otra.minimo);
    caja.amplia(otra.maximo);
}

// Persistent ids for one family, in list order. A new id is one above every id the family
// holds, so it never meets a stored one: ids stay unique, and two saves of the same drawing
// write the same bytes, which an address would not give.
template <class Lista>
void asignaIdsFamilia(Lista& lista)
{
    std::vector<ReferenciaObjetoCAD> instantanea;
    instantanea.reserve(lista.size());
    uint64_t maximo = 0;
    for (ObjetoCAD* o : lista)
    {
        instantanea.emplace_back(o, o->id);
        maximo = std::max(maximo, o->id);
    }
    for (ObjetoCAD* o : lista)
    {
        if (o->id != 0)
        {
            continue;
        }
        o->setId(maximo + 1, 0);
        maximo = o->id;
        instantanea.emplace_back(o, o->id);
    }
}

template <class Variable>
Variable* comoVariable(VariableBase* v, const char* etiqueta)
{
    return v != nullptr && std::strcmp(v->etiqueta(), etiqueta) == 0 ? static_cast<Variable*>(v)
                                                                     : nullptr;
}

}  // namespace

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
    for (Entidad* e : otro.entidades)
    {
        Entidad* copia = e->clona();
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
    uneCaja(extension, e->extension());
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

Entidad* Dibujo::buscaEntidad(int64_t handle) const
{
    for (Entidad* e : entidades)
    {
        if (static_cast<int64_t>(reinterpret_cast<intptr_t>(e)) == handle)
        {
            return e;
        }
    }
    return nullptr;
}

int64_t Dibujo::handleUltimaEntidad() const
{
    return static_cast<int64_t>(reinterpret_cast<intptr_t>(ultimaEntidad));
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
        n += std::strcmp(e->etiqueta(), "Sl1") == 0 ? 1 : 0;
    }
    return n;
}

SistemaLocal* Dibujo::sistemaLocal(const std::string& nombre) const
{
    for (Entidad* e : entidades)
    {
        if (std::strcmp(e->etiqueta(), "Sl1") == 0 &&
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
        if (std::strcmp(e->etiqueta(), "Sl1") == 0 && n++ == i)
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
    for (const Entidad* e :
         entidadesCercaPixel(p, cursor.x, cursor.y, toleranciaReferencia, false))
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
    const auto nuevo = static_cast<int16_t>(generadorId.nuevoId(kFamiliaMateriales));
    auto* m = new Material(nuevo);
    m->idExterno = idExterno;
    m->setColor(color);
    m->setBrillo(brillo);
    m->setTextura(textura);
    materiales.push_back(m);
    hayCambios_ = true;
    redibujar = true;
    vistaAplicada = false;
    return nuevo;
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
// Document state in variables

void Dibujo::guardaEstado()
{
    if (capaActual_ != nullptr)
    {
        variables.setValor("clayer", capaActual_->nombre);
    }
    char texto[32];
    if (colorActual.colorCAD == 512)
    {
        std::snprintf(texto, sizeof texto, "RGB:%d", static_cast<int>(colorActual.RGBA()));
    }
    else
    {
        std::snprintf(texto, sizeof texto, "%d", static_cast<int>(colorActual.colorCAD));
    }
    variables.setValor("cecolor", std::string(texto));
    variables.setValor("orgplref", Vector3D<double>(origenPlano.x, origenPlano.y, origenPlano.z));
    variables.setValor("normplref", normalPlano);
    if (estiloTextoActual_ != nullptr)
    {
        variables.setValor("textstyle", estiloTextoActual_->nombre);
    }
    if (vistaActual != nullptr)
    {
        const Vista& v = *vistaActual;
        variables.setValor("posVista", Vector3D<double>(v.posicion.x, v.posicion.y, v.posicion.z));
        variables.setValor("objVista", Vector3D<double>(v.objetivo.x, v.objetivo.y, v.objetivo.z));
        variables.setValor("upVista", v.arriba);
        variables.setValor("zoomVista", v.zoom);
        variables.setValor("angVista", v.angulo);
    }
}

void Dibujo::cargaEstado()
{
    if (auto* v = comoVariable<VariableStr>(variables.busca("clayer"), "VSt"))
    {
        Capa* c = buscaCapa(v->valor.c_str());
        if (c == nullptr)
        {
            c = buscaCapa("0");
        }
        if (c != nullptr)
        {
            capaActual_ = c;
        }
    }
    if (auto* v = comoVariable<VariableStr>(variables.busca("cecolor"), "VSt"))
    {
        if (v->valor.compare(0, 4, "RGB:") == 0)
        {
            // Split as blue, green, red from low to high with alpha 255: the save wrote the
            // value alpha lowest, so the two forms differ by a byte, and that is kept.
            colorActual.setRGB(static_cast<uint32_t>(std::atoi(v->valor.c_str() + 4)));
        }
        else
        {
            colorActual.setIndiceColor(std::atoi(v->valor.c_str()));
        }
    }
    Punto3<double> origen;
    Punto3<double> normal;
    if (variables.getValor3D("orgplref", origen) && variables.getValor3D("normplref", normal))
    {
        setPlanoReferencia(origen, Vector3D<double>(normal.x, normal.y, normal.z));
    }
    ultimaEntidad = nullptr;
    if (auto* v = comoVariable<VariableStr>(variables.busca("textstyle"), "VSt"))
    {
        EstiloTexto* e = buscaEstiloTexto(v->valor.c_str());
        if (e == nullptr)
        {
            e = buscaEstiloTexto("standar");
        }
        if (e != nullptr)
        {
            estiloTextoActual_ = e;
        }
    }
    delete vistaActual;
    vistaActual = new Vista();
    // A variable that is missing leaves the new view's default in place.
    Punto3<double> arriba(vistaActual->arriba.x, vistaActual->arriba.y, vistaActual->arriba.z);
    auto* zoom = comoVariable<VariableDob>(variables.busca("zoomVista"), "VDb");
    auto* angulo = comoVariable<VariableDob>(variables.busca("angVista"), "VDb");
    // Every variable is looked up, so that the view takes whatever is there.
    const bool hayPosicion = variables.getValor3D("posVista", vistaActual->posicion);
    const bool hayObjetivo = variables.getValor3D("objVista", vistaActual->objetivo);
    const bool hayArriba = variables.getValor3D("upVista", arriba);
    const bool completa =
        hayPosicion && hayObjetivo && hayArriba && zoom != nullptr && angulo != nullptr;
    vistaActual->arriba = Vector3D<double>(arriba.x, arriba.y, arriba.z);
    if (zoom != nullptr)
    {
        vistaActual->zoom = zoom->valor;
    }
    if (angulo != nullptr)
    {
        vistaActual->angulo = angulo->valor;
    }
    // Without a whole stored view the display keeps its present camera.
    vistaAplicada = !completa;
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

// ---------------------------------------------------------------------------------------
// DXF output

void Dibujo::inicializaDocumentoDXF(ExportaDXF& dxf)
{
    for (const Capa* c : capas)
    {
        dxf.nuevaCapaRGBA(c->nombre, c->color);
    }
    dxf.inicioEntidades();
}

bool Dibujo::exportaDocumentoDFX(ExportaDXF& dxf)
{
    for (const Entidad* e : entidades)
    {
        e->exportaDXF(dxf);
    }
    return true;
}

void Dibujo::finalizaDocumentoDXF(ExportaDXF& dxf)
{
    dxf.finEntidades();
}

// ---------------------------------------------------------------------------------------
// The document file

void Dibujo::asignaIds()
{
    asignaIdsFamilia(capas);
    asignaIdsFamilia(materiales);
    asignaIdsFamilia(estilosTexto);
}

void Dibujo::escribe(SerializadorEscrituraBase& w)
{
    std::lock_guard<std::recursive_mutex> guardia(lock);
    documentoListo = false;
    asignaIds();
    {
        std::unique_ptr<BloqueSerializacion> bloque(w.nuevoBloque64(etiqueta()));
        capas.escribe(w);
        materiales.escribe(w);
        estilosTexto.escribe(w);
        entidades.escribe(w);
        variables.escribe(w);
        vistas.escribe(w);
        escribeDatosDesconocidos(w);
    }
    documentoListo = true;
}

bool Dibujo::lee(SerializadorLecturaBase& r)
{
    std::lock_guard<std::recursive_mutex> guardia(lock);
    documentoListo = false;
    BloqueSerializacion* bloque = r.leeBloque64();
    if (!bloque->esTipo(etiqueta()))
    {
        finLectura(r, bloque);
        return false;
    }
    std::unique_ptr<BloqueSerializacion> exterior(bloque);
    // From here the lists are replaced, layers first: whatever pointed into the former
    // contents (undo steps) must know, even if the read stops before the entities.
    ++entidades.generacion;
    // However the read ends, the current layer and style point into the lists that stand
    // then, never at items the read deleted.
    struct Reparacion
    {
        Dibujo& d;
        ~Reparacion() { d.reparaActuales(); }
    } reparacion{*this};
    if (!capas.lee(r) || !materiales.lee(r) || !estilosTexto.lee(r))
    {
        return false;
    }
    std::vector<int16_t> ids;
    ids.reserve(materiales.size());
    for (const Material* m : materiales)
    {
        ids.push_back(m->id);
    }
    generadorId.reinicia(kFamiliaMateriales, ids);
    if (!entidades.lee(r))
    {
        return false;
    }
    ataReferencias();
    extension = Rect3<double>();
    for (size_t i = 0; i < entidades.size(); ++i)
    {
        entidades.anticipa(i);
        uneCaja(extension, entidades[i]->extension());
    }
    variables.creaDefectos();
    if (!variables.lee(r) || !vistas.lee(r))
    {
        return false;
    }
    cargaEstado();
    const bool ok = finLectura(r, exterior.release());
    if (ok)
    {
        documentoListo = true;
    }
    return ok;
}

bool Dibujo::guardaFichero(const std::string& ruta, resultadoFichero_t& resultado)
{
    resultado = resultadoFichero_t();
    SerializadorBinarioEscritura escritor(ruta);
    if (escritor.abierto())
    {
        escribe(escritor);
    }
    resultado.ok = escritor.cierra();
    resultado.codigoError = escritor.codigoError();
    resultado.mensaje = escritor.mensaje();
    return resultado.ok;
}

bool Dibujo::leeFichero(const std::string& ruta, resultadoFichero_t& resultado)
{
    resultado = resultadoFichero_t();
    const FicheroLeido fichero(ruta);
    if (!fichero.ok())
    {
        resultado.codigoError = fichero.codigoError();
        resultado.mensaje = fichero.mensaje();
        return false;
    }
    if (fichero.tamano() == 0)
    {
        resultado.mensaje = ruta + " está vacío";
        return false;
    }
    const std::string magia(etiqueta());
    const std::string cabeza(reinterpret_cast<const char*>(fichero.datos()),
                             std::min(fichero.tamano(), magia.size() + 1));
    if (cabeza != std::string(magia.c_str(), magia.size() + 1))
    {
        // The magic's last characters are the version: one version is read.
        const bool otraVersion =
            cabeza.compare(0, magia.size() - 2, magia, 0, magia.size() - 2) == 0;
        resultado.mensaje = otraVersion ? ruta + " es de otra versión del formato de dibujo"
                                        : ruta + " no es un dibujo de Tarvelo";
        return false;
    }
    {
        Dibujo prueba;
        prueba.nuevoDocumento();
        SerializadorBinarioLectura lector(fichero.datos(), fichero.tamano());
        if (!prueba.lee(lector))
        {
            resultado.mensaje = ruta + " está dañado y no se puede leer";
            return false;
        }
    }
    // A load marks the drawing as an edit does: changed, to repaint, its view not applied.
    edicionHecha();
    SerializadorBinarioLectura lector(fichero.datos(), fichero.tamano());
    resultado.ok = lee(lector);
    if (!resultado.ok)
    {
        // The same bytes read on the scratch drawing: only exhausted memory gets here.
        resultado.mensaje = ruta + " no se pudo leer";
        return false;
    }
    resultado.entidadesDanadas = entidades.danadas;
    if (entidades.danadas > 0)
    {
        resultado.mensaje = ruta + " está dañado: " + std::to_string(entidades.danadas) +
                            (entidades.danadas == 1
                                 ? " entidad no se pudo leer y se conserva tal como venía"
                                 : " entidades no se pudieron leer y se conservan tal como venían");
    }
    return true;
}

void Dibujo::reparaActuales()
{
    // A file without the layer "0" or the style "standar" (the state's fallbacks) would
    // leave the former pointers; the first item stands in for them.
    if (std::find(capas.begin(), capas.end(), capaActual_) == capas.end())
    {
        Capa* cero = buscaCapa("0");
        capaActual_ = cero != nullptr ? cero : (capas.empty() ? nullptr : capas.front());
    }
    if (std::find(estilosTexto.begin(), estilosTexto.end(), estiloTextoActual_) ==
        estilosTexto.end())
    {
        EstiloTexto* e = buscaEstiloTexto("standar");
        estiloTextoActual_ =
            e != nullptr ? e : (estilosTexto.empty() ? nullptr : estilosTexto.front());
    }
}

namespace
{

// Id to object over a list. A damaged file may repeat an id: the first object keeps it, as
// emplace leaves a present key alone.
template <class Lista>
std::unordered_map<uint64_t, ObjetoCAD*> indicePorId(Lista& lista)
{
    std::unordered_map<uint64_t, ObjetoCAD*> indice;
    indice.reserve(lista.size());
    for (ObjetoCAD* o : lista)
    {
        indice.emplace(o->id, o);
    }
    return indice;
}

ObjetoCAD* buscaPorId(const std::unordered_map<uint64_t, ObjetoCAD*>& indice, uint64_t id)
{
    const auto it = indice.find(id);
    return it != indice.end() ? it->second : nullptr;
}

}  // namespace

void Dibujo::ataReferencias()
{
    const auto deCapas = indicePorId(capas);
    const auto deEstilos = indicePorId(estilosTexto);
    // Neighbours mostly share their layer: the last answer is kept.
    uint64_t ultimoId = 0;
    ObjetoCAD* ultimaCapa = buscaPorId(deCapas, 0);
    for (size_t i = 0; i < entidades.size(); ++i)
    {
        entidades.anticipa(i);
        Entidad* e = entidades[i];
        if (e->capa.id != ultimoId)
        {
            ultimoId = e->capa.id;
            ultimaCapa = buscaPorId(deCapas, ultimoId);
        }
        e->capa.objeto = ultimaCapa;
        ReferenciaEstiloTexto* estilo = nullptr;
        if (std::strcmp(e->etiqueta(), "Tx1") == 0)
        {
            estilo = &static_cast<Texto*>(e)->referenciaEstilo();
        }
        else if (std::strcmp(e->etiqueta(), "PC1") == 0)
        {
            estilo = &static_cast<PuntoControl*>(e)->referenciaEstilo();
        }
        if (estilo != nullptr)
        {
            estilo->objeto = buscaPorId(deEstilos, estilo->id);
        }
    }
}

}  // namespace cad
