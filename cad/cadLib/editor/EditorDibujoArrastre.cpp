// EditorDibujo: vertex drags and vertex marks.
#include <algorithm>
#include <cstdint>
#include <memory>
#include <mutex>

#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "editor/ModificadorVertice.h"
#include "entidades/Entidad.h"
#include "modelo/PuntosCalientes.h"

namespace cad
{

namespace
{

constexpr const char* kCapaBloqueada = "La entidad está en una capa bloqueada";

}  // namespace

bool EditorDibujo::editaPunto(const elemento_seleccionado_t& elemento)
{
    Entidad* e = elemento.entidad;
    if (e == nullptr || elemento.indice == -1 || !dibujo_->contieneEntidad(e))
    {
        return false;
    }
    // A locked layer keeps its entities as they are. Asking for a coordinate that would then
    // be thrown away misleads the user, so the drag ends before its wait.
    const Capa* capa = e->capaEntidad();
    if (capa != nullptr && (capa->flags & 2) != 0)
    {
        mensaje("%s", kCapaBloqueada);
        return false;
    }
    {
        std::lock_guard<std::recursive_mutex> guardia(seccionCritica);
        modificadores.vacia();
        modificadores.nuevo(creaModificador(this, elemento));
    }
    cursor_t cursor;
    if (!getPunto(texto(11, 5, "Seleccione nueva coordenada"), cursor))
    {
        std::lock_guard<std::recursive_mutex> guardia(seccionCritica);
        modificadores.cancela();
        return false;
    }
    std::lock_guard<std::recursive_mutex> guardia(seccionCritica);
    // A copy, so that a reactor that empties the list cannot pull a modifier from under us.
    const auto activos = modificadores.modificadores;
    for (const auto& m : activos)
    {
        if (m->vigente())
        {
            m->modificaDefinitivo(cursor);
        }
    }
    modificadores.vacia();
    return true;
}

void EditorDibujo::marcaVerticesEntidad(Entidad* e, uint32_t inicio, uint32_t fin)
{
    if (e == nullptr || !dibujo_->contieneEntidad(e))
    {
        return;
    }
    {
        std::lock_guard<std::recursive_mutex> guardia(seccionCritica);
        (void)marcasVertices[e];
    }
    PuntosCalientes puntos;
    e->puntosCalientes(puntos);
    // The range comes from the host: positions past the last point are skipped. The index is
    // 64-bit so that a `fin` of the largest u32 still ends the loop.
    const uint64_t n = puntos.puntos.size();
    for (uint64_t i = inicio; i <= fin && i < n; ++i)
    {
        std::unique_ptr<ModificadorVertice> marca = creaModificadorNulo(this, puntos.puntos[i]);
        if (marca != nullptr)
        {
            std::lock_guard<std::recursive_mutex> guardia(seccionCritica);
            marcasVertices[e].nuevo(std::move(marca));
        }
    }
}

void EditorDibujo::quitaMarcasVerticesEntidad(Entidad* e)
{
    std::lock_guard<std::recursive_mutex> guardia(seccionCritica);
    marcasVertices.erase(e);
}

}  // namespace cad
