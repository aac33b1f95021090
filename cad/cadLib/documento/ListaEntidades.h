// The drawing's entities in insertion order (the painting order); the list owns them.
#pragma once

#include <cstdint>
#include <vector>

#include "base/ObjetoCAD.h"
#include "base/geometria/Rect3.h"
#include "entidades/Entidad.h"

namespace cad
{

class ListaEntidades : public std::vector<Entidad*>, public ObjetoCAD
{
public:
    ListaEntidades() = default;
    ListaEntidades(const ListaEntidades&) = delete;
    ListaEntidades& operator=(const ListaEntidades&) = delete;
    ~ListaEntidades() override;

    const char* etiqueta() const override { return "Entid.1"; }
    // Block "Entid.1" (u64 length): u64 count, then one block per entity, tagged by the
    // entity and as wide as its tamanoBloque says.
    void escribe(SerializadorEscrituraBase& w) override;
    // A broken entity is dropped, and the next block is looked for where the reader stopped.
    bool lee(SerializadorLecturaBase& r) override;

    // Makes the class of a file tag; an unknown tag gives an EntidadDesconocida. Never null.
    static Entidad* creaEntidad(const char* tag);
    // Merges the boxes of all entities into `caja`, from an empty box (1,1,1)-(0,0,0).
    void extension(Rect3<double>& caja) const;
    // Deletes every entity and empties the list; counts one more generation.
    void vacia();

    // Grows each time the list's contents are thrown away, so that holders of entity
    // pointers (undo steps) can tell that their pointers belong to former contents.
    uint64_t generacion = 0;
};

}  // namespace cad
