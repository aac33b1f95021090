// ListaMateriales: the "Mater.1" block and ownership of its materials.
#include "documento/ListaMateriales.h"

#include <memory>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"

namespace cad
{

ListaMateriales::~ListaMateriales()
{
    vacia();
}

void ListaMateriales::vacia()
{
    for (Material* material : *this)
    {
        delete material;
    }
    clear();
}

void ListaMateriales::escribe(SerializadorEscrituraBase& w)
{
    std::unique_ptr<BloqueSerializacion> bloque(w.nuevoBloque64(etiqueta()));
    w.escribeLongitud64(size());
    for (Material* material : *this)
    {
        material->escribe(w);
    }
    escribeDatosDesconocidos(w);
    bloque.reset();  // patches the length
}

bool ListaMateriales::lee(SerializadorLecturaBase& r)
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
    // An untrusted count: no reserve, and the loop ends at the first failed item or when no
    // byte is left. A valid file reads the same as with the count alone (see ListaCapas).
    for (auto n = static_cast<int64_t>(cuenta); n > 0 && r.bytesDisponibles() > 0; --n)
    {
        auto material = std::make_unique<Material>(static_cast<int16_t>(0));
        if (!material->lee(r))
        {
            break;
        }
        push_back(material.get());
        material.release();
    }
    return finLectura(r, bloque.release());
}

}  // namespace cad
