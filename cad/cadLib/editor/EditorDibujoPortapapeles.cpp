// EditorDibujo: the clipboard behind cortar, copiar and pegar.
#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "documento/ListaMateriales.h"
#include "documento/Material.h"
#include "editor/EditorDibujo.h"
#include "entidades/Entidad.h"
#include "entidades/Objeto3D.h"
#include "modelo/Modelo3D.h"

namespace cad
{

namespace
{

// One for the process, so that a copy made in one drawing pastes into another. Everything in
// it is held by value: the drawing it came from may be changed or destroyed before the paste.
// Facades may run on threads of their own, hence the lock; nothing that may call the host
// runs while it is held, so a reactor can copy or paste from inside a paste.
struct Portapapeles
{
    std::mutex cerrojo;
    ListaMateriales materiales;  // copies of the materials the entities use
    std::vector<std::unique_ptr<Entidad>> copias;
    std::vector<uint16_t> idsMateriales;  // their ids in the drawing copied from
    // The layer name of each copy: the copy's own layer pointer would name a layer of the
    // drawing copied from, which may be gone by the time of the paste.
    std::vector<std::string> capas;
};

Portapapeles& portapapeles()
{
    static Portapapeles p;
    return p;
}

Objeto3D* comoObjeto3D(Entidad& e)
{
    return e.tieneFirma(kFirmaEntidadObjeto3D) ? static_cast<Objeto3D*>(&e) : nullptr;
}

// The materials an entity uses: its own, and for a model every face's, since a model's faces
// may differ.
std::vector<uint16_t> materialesDe(Entidad& e)
{
    std::vector<uint16_t> ids;
    const auto anota = [&ids](uint16_t id)
    {
        if (id != 0 && std::find(ids.begin(), ids.end(), id) == ids.end())
        {
            ids.push_back(id);
        }
    };
    anota(e.material());
    if (Objeto3D* o = comoObjeto3D(e); o != nullptr && o->modelo != nullptr)
    {
        for (const cara_t& c : o->modelo->caras())
        {
            anota(c.material);
        }
    }
    return ids;
}

// Gives the entity the materials of this drawing that stand for its old ones. A model keeps
// its faces' materials apart instead of taking one for all of them.
void remapea(Entidad& e, const std::map<uint16_t, uint16_t>& mapa)
{
    if (Objeto3D* o = comoObjeto3D(e); o != nullptr)
    {
        if (o->modelo != nullptr)
        {
            o->modelo->remapeaMateriales(mapa);
        }
        return;
    }
    const auto it = mapa.find(e.material());
    if (it != mapa.end() && it->second != it->first)
    {
        e.setMaterial(it->second);
    }
}

// The id in `d` of a material equal to `m`, added when the drawing has none; 0 when it could
// not be added.
uint16_t materialEquivalente(Dibujo& d, const Material& m)
{
    for (const Material* propio : d.materiales)
    {
        if (*propio == m)
        {
            return static_cast<uint16_t>(propio->id);
        }
    }
    return static_cast<uint16_t>(d.nuevoMaterial(m.idExterno, m.color(), m.brillo(), m.textura()));
}

// The selected or highlighted entities, in list order.
std::vector<Entidad*> marcadas(const Dibujo& d)
{
    std::vector<Entidad*> v;
    for (Entidad* e : d.entidades)
    {
        if ((e->estado & (kEstadoSeleccionada | kEstadoResaltada)) != 0)
        {
            v.push_back(e);
        }
    }
    return v;
}

// Fills the clipboard from `originales`. An empty selection leaves the clipboard as it was:
// a copy with nothing selected must not throw away what the user copied before.
void llena(Dibujo& d, const std::vector<Entidad*>& originales)
{
    if (originales.empty())
    {
        return;
    }
    Portapapeles& p = portapapeles();
    std::lock_guard<std::mutex> guardia(p.cerrojo);
    p.copias.clear();
    p.capas.clear();
    p.idsMateriales.clear();
    for (Entidad* e : originales)
    {
        std::unique_ptr<Entidad> copia(e->clona());
        copia->quitaSeleccion();
        const Capa* capa = e->capaEntidad();
        p.capas.push_back(capa != nullptr ? capa->nombre : std::string());
        copia->capa.set(nullptr, 0);
        copia->setEstiloTexto(nullptr);
        for (uint16_t id : materialesDe(*copia))
        {
            if (std::find(p.idsMateriales.begin(), p.idsMateriales.end(), id) ==
                p.idsMateriales.end())
            {
                p.idsMateriales.push_back(id);
            }
        }
        p.copias.push_back(std::move(copia));
    }
    p.materiales.vacia();
    for (uint16_t id : p.idsMateriales)
    {
        if (const Material* m = d.materialId(static_cast<int16_t>(id)))
        {
            p.materiales.push_back(m->clona());
        }
    }
}

}  // namespace

void EditorDibujo::copiar()
{
    llena(*dibujo_, marcadas(*dibujo_));
}

void EditorDibujo::cortar()
{
    const std::vector<Entidad*> originales = marcadas(*dibujo_);
    llena(*dibujo_, originales);
    for (Entidad* e : originales)
    {
        // The deletion reactor may have taken an entity out already.
        if (dibujo_->contieneEntidad(e))
        {
            borraEntidad(e);
        }
    }
    if (!originales.empty())
    {
        actualiza(kControl, false);
        actualiza(kPropiedades, false);
    }
}

void EditorDibujo::pegar()
{
    // Taken out first: the insertions below call the host, which may copy anew meanwhile.
    std::vector<std::unique_ptr<Entidad>> lote;
    std::vector<std::string> capas;
    std::map<uint16_t, std::unique_ptr<Material>> materiales;
    {
        Portapapeles& p = portapapeles();
        std::lock_guard<std::mutex> guardia(p.cerrojo);
        for (const auto& copia : p.copias)
        {
            lote.emplace_back(copia->clona());
        }
        capas = p.capas;
        for (const Material* m : p.materiales)
        {
            materiales[static_cast<uint16_t>(m->id)].reset(m->clona());
        }
    }
    // Materials are matched once per paste, so that entities sharing one share it here too.
    std::map<uint16_t, uint16_t> mapa;
    for (const auto& [antiguo, m] : materiales)
    {
        const uint16_t id = materialEquivalente(*dibujo_, *m);
        if (id != 0)
        {
            mapa[antiguo] = id;
        }
    }
    for (size_t k = 0; k < lote.size(); ++k)
    {
        std::unique_ptr<Entidad>& nueva = lote[k];
        remapea(*nueva, mapa);
        Capa* capa = dibujo_->buscaCapa(capas[k].c_str());
        nueva->asignaCapa(capa != nullptr ? capa : dibujo_->capaActual());
        if (nuevaEntidad(nueva.get()))
        {
            nueva.release();
        }
    }
}

}  // namespace cad
