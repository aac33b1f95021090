// ListaEstilosTexto: the "EstTx.1" block and ownership of its styles.
#include "documento/ListaEstilosTexto.h"

#include <memory>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"

namespace cad
{

ListaEstilosTexto::~ListaEstilosTexto()
{
    vacia();
}

void ListaEstilosTexto::vacia()
{
    for (EstiloTexto* estilo : *this)
    {
        delete estilo;
    }
    clear();
}

EstiloTexto* ListaEstilosTexto::busca(const std::string& nombre) const
{
    for (EstiloTexto* estilo : *this)
    {
        if (estilo->nombre == nombre)
        {
            return estilo;
        }
    }
    return nullptr;
}

void ListaEstilosTexto::escribe(SerializadorEscrituraBase& w)
{
    std::unique_ptr<BloqueSerializacion> bloque(w.nuevoBloque64(etiqueta()));
    w.escribeLongitud64(size());
    for (EstiloTexto* estilo : *this)
    {
        estilo->escribe(w);
    }
    escribeDatosDesconocidos(w);
    bloque.reset();  // patches the length
}

bool ListaEstilosTexto::lee(SerializadorLecturaBase& r)
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
        auto estilo = std::make_unique<EstiloTexto>("Standar", "", 0);
        if (!estilo->lee(r))
        {
            break;
        }
        push_back(estilo.get());
        estilo.release();
    }
    return finLectura(r, bloque.release());
}

}  // namespace cad
