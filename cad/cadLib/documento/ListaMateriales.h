// ListaMateriales: the drawing's owning list of materials, block "Mater.1".
#pragma once

#include <vector>

#include "base/ObjetoCAD.h"
#include "documento/Material.h"

namespace cad
{

// Owns its materials: vacia(), lee() and the destructor delete them. Block "Mater.1", u64
// length: u64 count, the "Mt1" blocks, the list's unknown tail.
class ListaMateriales : public std::vector<Material*>, public ObjetoCAD
{
public:
    ListaMateriales() = default;
    ListaMateriales(const ListaMateriales&) = delete;
    ListaMateriales& operator=(const ListaMateriales&) = delete;
    ~ListaMateriales() override;

    const char* etiqueta() const override { return "Mater.1"; }
    void escribe(SerializadorEscrituraBase& w) override;
    // Deletes all materials first; nothing is rolled back on failure. A block of another
    // tag is kept whole as the list's unknown bytes and gives false. Each item starts as
    // Material(0). Reading stops at the first material that fails (it is dropped) or when
    // the file is exhausted; what was read stays and the result is that of finLectura.
    bool lee(SerializadorLecturaBase& r) override;

    // Deletes every material and empties the list.
    void vacia();
};

}  // namespace cad
