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
    // An entity is read by its own counts and accepted when its end agrees with its block's
    // length (modulo the field's width for a kind that knows its counts, since a body larger
    // than its field wraps it); an unknown kind is skipped by its length. A block that does
    // not read so is damaged: its bytes up to the next sound block are kept whole as a raw
    // EntidadDesconocida and counted in `danadas`, and the list never reads on from the
    // middle of a block.
    bool lee(SerializadorLecturaBase& r) override;

    // Makes the class of a file tag; an unknown tag gives an EntidadDesconocida. Never null.
    static Entidad* creaEntidad(const char* tag);
    // Merges the boxes of all entities into `caja`, from an empty box (1,1,1)-(0,0,0).
    void extension(Rect3<double>& caja) const;
    // Deletes every entity and empties the list; counts one more generation.
    void vacia();
    // Entities lie scattered over the heap, and a pass over a million of them spends most of
    // its time waiting for each one's memory: a pass at entity i asks for the memory of the
    // one a few places ahead.
    void anticipa(size_t i) const
    {
        constexpr size_t kAdelanto = 4;
        if (i + kAdelanto < size())
        {
            const auto* p = reinterpret_cast<const char*>((*this)[i + kAdelanto]);
            __builtin_prefetch(p);
            __builtin_prefetch(p + 64);
            __builtin_prefetch(p + 128);
        }
    }

    // Grows each time the list's contents are thrown away, so that holders of entity
    // pointers (undo steps) can tell that their pointers belong to former contents.
    uint64_t generacion = 0;
    // Damaged blocks the last read kept as raw entities.
    uint64_t danadas = 0;
};

}  // namespace cad
