#include "documento/ListaEntidades.h"

#include <memory>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"

namespace cad
{

ListaEntidades::~ListaEntidades() { vacia(); }

void ListaEntidades::vacia()
{
    for (Entidad* e : *this)
    {
        delete e;
    }
    clear();
}

void ListaEntidades::escribe(SerializadorEscrituraBase& w)
{
    std::unique_ptr<BloqueSerializacion> bloque(w.nuevoBloque64(etiqueta()));
    w.escribeLongitud64(size());
    for (Entidad* e : *this)
    {
        e->escribe(w);
    }
    escribeDatosDesconocidos(w);
}

bool ListaEntidades::lee(SerializadorLecturaBase& r)
{
    vacia();
    BloqueSerializacion* bloque = r.leeBloque64();
    if (!bloque->esTipo(etiqueta()))
    {
        finLectura(r, bloque);
        return false;
    }
    uint64_t cuenta = 0;
    if (!r.leeLongitud64(cuenta))
    {
        delete bloque;
        return false;
    }
    // Entities of a kind this build does not make stay in the block's tail, which is kept.
    return finLectura(r, bloque);
}

}  // namespace cad
