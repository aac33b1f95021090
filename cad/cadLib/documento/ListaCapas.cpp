// ListaCapas: the "Capas.1" block and ownership of its layers.
#include "documento/ListaCapas.h"

#include <memory>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"

namespace cad
{

ListaCapas::~ListaCapas()
{
    vacia();
}

void ListaCapas::vacia()
{
    for (Capa* capa : *this)
    {
        delete capa;
    }
    clear();
}

Capa* ListaCapas::busca(const std::string& nombre) const
{
    for (Capa* capa : *this)
    {
        if (capa->nombre == nombre)
        {
            return capa;
        }
    }
    return nullptr;
}

void ListaCapas::escribe(SerializadorEscrituraBase& w)
{
    std::unique_ptr<BloqueSerializacion> bloque(w.nuevoBloque64(etiqueta()));
    w.escribeLongitud64(size());
    for (Capa* capa : *this)
    {
        capa->escribe(w);
    }
    escribeDatosDesconocidos(w);
    bloque.reset();  // patches the length
}

bool ListaCapas::lee(SerializadorLecturaBase& r)
{
    vacia();
    std::unique_ptr<BloqueSerializacion> bloque(r.leeBloque64());
    if (!bloque->esTipo(etiqueta()))
    {
        finLectura(r, bloque.release());
        return false;
    }
    uint64_t cuenta = 0;
    if (!r.leeLongitud64(cuenta))
    {
        return false;
    }
    // The count comes from the file, so nothing is reserved from it. The loop also ends at
    // the first layer that fails and when no byte is left. In a valid file every layer
    // reads, so this takes exactly the count's layers; in a damaged one, a layer behind a
    // failed one would only be read out of the middle of a block, and without bytes every
    // further read fails anyway.
    for (auto n = static_cast<int64_t>(cuenta); n > 0 && r.bytesDisponibles() > 0; --n)
    {
        auto capa = std::make_unique<Capa>("0", ColorCapa(7), 1);
        if (!capa->lee(r))
        {
            break;
        }
        push_back(capa.get());
        capa.release();
    }
    return finLectura(r, bloque.release());
}

}  // namespace cad
