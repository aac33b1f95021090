// ListaVistas: the "Vstas.1" block and ownership of its views.
#include "documento/ListaVistas.h"

#include <memory>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"

namespace cad
{

ListaVistas::~ListaVistas()
{
    vacia();
}

void ListaVistas::vacia()
{
    for (Vista* vista : *this)
    {
        delete vista;
    }
    clear();
}

Vista* ListaVistas::busca(const std::string& nombre) const
{
    for (Vista* vista : *this)
    {
        if (vista->nombre == nombre)
        {
            return vista;
        }
    }
    return nullptr;
}

void ListaVistas::escribe(SerializadorEscrituraBase& w)
{
    std::unique_ptr<BloqueSerializacion> bloque(w.nuevoBloque64(etiqueta()));
    w.escribeLongitud64(size());
    for (Vista* vista : *this)
    {
        vista->escribe(w);
    }
    escribeDatosDesconocidos(w);
    bloque.reset();  // patches the length
}

bool ListaVistas::lee(SerializadorLecturaBase& r)
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
        auto vista = std::make_unique<Vista>();
        if (!vista->lee(r))
        {
            break;
        }
        push_back(vista.get());
        vista.release();
    }
    return finLectura(r, bloque.release());
}

}  // namespace cad
