// ListaCapas: the drawing's owning list of layers, block "Capas.1".
#pragma once

#include <string>
#include <vector>

#include "base/ObjetoCAD.h"
#include "documento/Capa.h"

namespace cad
{

// Owns its layers: vacia(), lee() and the destructor delete them. Block "Capas.1", u64
// length: u64 count, the "Cp1" blocks, the list's unknown tail.
class ListaCapas : public std::vector<Capa*>, public ObjetoCAD
{
public:
    ListaCapas() = default;
    ListaCapas(const ListaCapas&) = delete;
    ListaCapas& operator=(const ListaCapas&) = delete;
    ~ListaCapas() override;

    const char* etiqueta() const override { return "Capas.1"; }
    void escribe(SerializadorEscrituraBase& w) override;
    // Deletes all layers first; nothing is rolled back on failure. A block of another tag
    // is kept whole as the list's unknown bytes and gives false. Reading stops at the first
    // layer that fails (it is deleted) or when the file is exhausted; the layers read so far
    // stay and the result is that of finLectura.
    bool lee(SerializadorLecturaBase& r) override;

    // The first layer of exactly that name, or null.
    Capa* busca(const std::string& nombre) const;
    // Deletes every layer and empties the list.
    void vacia();
};

}  // namespace cad
