// ListaVistas: the drawing's owning list of named views, block "Vstas.1".
#pragma once

#include <string>
#include <vector>

#include "base/ObjetoCAD.h"
#include "documento/Vista.h"

namespace cad
{

// Owns its views: vacia(), lee() and the destructor delete them. Block "Vstas.1", u64
// length: u64 count, the "Vt1" blocks, the list's unknown tail.
class ListaVistas : public std::vector<Vista*>, public ObjetoCAD
{
public:
    ListaVistas() = default;
    ListaVistas(const ListaVistas&) = delete;
    ListaVistas& operator=(const ListaVistas&) = delete;
    ~ListaVistas() override;

    const char* etiqueta() const override { return "Vstas.1"; }
    void escribe(SerializadorEscrituraBase& w) override;
    // Deletes all views first; nothing is rolled back on failure. A block of another tag
    // is kept whole as the list's unknown bytes and gives false. Reading stops at the first
    // view that fails (it is dropped) or when the file is exhausted; what was read stays and
    // the result is that of finLectura.
    bool lee(SerializadorLecturaBase& r) override;

    // The first view of exactly that name, or null.
    Vista* busca(const std::string& nombre) const;
    // Deletes every view and empties the list.
    void vacia();
};

}  // namespace cad
