// ListaEstilosTexto: the drawing's owning list of text styles, block "EstTx.1".
#pragma once

#include <string>
#include <vector>

#include "base/ObjetoCAD.h"
#include "documento/EstiloTexto.h"

namespace cad
{

// Owns its styles: vacia(), lee() and the destructor delete them. Block "EstTx.1", u64
// length: u64 count, the "ET1" blocks, the list's unknown tail.
class ListaEstilosTexto : public std::vector<EstiloTexto*>, public ObjetoCAD
{
public:
    ListaEstilosTexto() = default;
    ListaEstilosTexto(const ListaEstilosTexto&) = delete;
    ListaEstilosTexto& operator=(const ListaEstilosTexto&) = delete;
    ~ListaEstilosTexto() override;

    const char* etiqueta() const override { return "EstTx.1"; }
    void escribe(SerializadorEscrituraBase& w) override;
    // Deletes all styles first; nothing is rolled back on failure. A block of another tag
    // is kept whole as the list's unknown bytes and gives false. Each item starts as the
    // style "Standar" with no font and size 0, which its read overwrites. Reading stops at
    // the first style that fails (it is dropped) or when the file is exhausted; what was
    // read stays and the result is that of finLectura.
    bool lee(SerializadorLecturaBase& r) override;

    // The first style of exactly that name, or null.
    EstiloTexto* busca(const std::string& nombre) const;
    // Deletes every style and empties the list.
    void vacia();
};

}  // namespace cad
