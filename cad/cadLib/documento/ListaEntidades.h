// The drawing's entities in insertion order; the list owns them.
#pragma once

#include <vector>

#include "base/ObjetoCAD.h"
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
    // Block "Entid.1" (u64 length): u64 count, then one block per entity.
    void escribe(SerializadorEscrituraBase& w) override;
    bool lee(SerializadorLecturaBase& r) override;

    // Deletes every entity and empties the list.
    void vacia();
};

}  // namespace cad
