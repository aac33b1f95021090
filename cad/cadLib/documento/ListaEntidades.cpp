#include "documento/ListaEntidades.h"

#include <cstring>
#include <memory>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"
#include "entidades/EntidadDesconocida.h"
#include "entidades/Linea.h"
#include "entidades/Plano.h"
#include "entidades/Poligono.h"
#include "entidades/Polilinea.h"
#include "entidades/Punto.h"
#include "entidades/PuntoControl.h"
#include "entidades/SistemaLocal.h"
#include "entidades/Texto.h"

namespace cad
{

ListaEntidades::~ListaEntidades()
{
    vacia();
}

void ListaEntidades::vacia()
{
    for (Entidad* e : *this)
    {
        delete e;
    }
    clear();
    ++generacion;
}

Entidad* ListaEntidades::creaEntidad(const char* tag)
{
    using Fabrica = Entidad* (*)();
    struct fila_t
    {
        const char* tag;
        Fabrica crea;  // null: a kind with no class in this build, kept as unknown
    };
    // Tested in this order, exactly. "Pg1" is taken by the polyline first, so the polygon's
    // row never fires and a saved polygon comes back as a polyline: the file format stands
    // so. Kinds whose classes come later keep their bytes as unknown entities meanwhile.
    static const fila_t kFabrica[] = {
        {"Pt1", [] { return static_cast<Entidad*>(new Punto()); }},
        {"GrpPnt1", nullptr},
        {"Ln1", [] { return static_cast<Entidad*>(new Linea()); }},
        {"Pg1", [] { return static_cast<Entidad*>(new Polilinea()); }},
        {"PolyLn1", [] { return static_cast<Entidad*>(new Polilinea()); }},
        {"Pg1", [] { return static_cast<Entidad*>(new Poligono()); }},
        {"C3D", nullptr},
        {"Poly3D1", nullptr},
        {"Cb1", nullptr},
        {"Pr1", nullptr},
        {"Cl1", nullptr},
        {"Es1", nullptr},
        {"PC1", [] { return static_cast<Entidad*>(new PuntoControl()); }},
        {"Superficie3D001", nullptr},
        {"Ob1", nullptr},
        {"Pn1", [] { return static_cast<Entidad*>(new Plano()); }},
        {"Sl1", [] { return static_cast<Entidad*>(new SistemaLocal()); }},
        {"TC1", nullptr},
        {"F3D", nullptr},
        {"Tx1", [] { return static_cast<Entidad*>(new Texto()); }},
    };
    for (const fila_t& f : kFabrica)
    {
        if (std::strcmp(f.tag, tag) == 0)
        {
            return f.crea != nullptr ? f.crea() : new EntidadDesconocida(tag);
        }
    }
    return new EntidadDesconocida(tag);
}

void ListaEntidades::extension(Rect3<double>& caja) const
{
    caja = Rect3<double>(Punto3<double>(1, 1, 1), Punto3<double>(0, 0, 0));
    for (const Entidad* e : *this)
    {
        const Rect3<double> r = e->extension();
        if (!r.esValido())
        {
            continue;
        }
        caja.amplia(r.minimo);
        caja.amplia(r.maximo);
    }
}

void ListaEntidades::escribe(SerializadorEscrituraBase& w)
{
    std::unique_ptr<BloqueSerializacion> bloque(w.nuevoBloque64(etiqueta()));
    w.escribeLongitud64(size());
    for (Entidad* e : *this)
    {
        std::unique_ptr<BloqueSerializacion> propio(
            w.nuevoBloque(e->etiqueta(), e->tamanoBloque()));
        e->escribe(w);
        e->escribeDatosDesconocidos(w);
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
    // The count comes from the file: the loop also ends when no bytes are left, so a lying
    // count cannot spin; in a sound file every entity is read before that.
    for (uint64_t i = 0; i<cuenta&& static_cast<int64_t>(cuenta)> 0; ++i)
    {
        if (r.bytesDisponibles() == 0)
        {
            break;
        }
        BloqueSerializacion* propio = r.leeBloque();
        char tag[20];
        propio->tipo(tag);
        std::unique_ptr<Entidad> e(creaEntidad(tag));
        if (!e->lee(r))
        {
            // Dropped; the next block is looked for where the reader stopped.
            delete propio;
            continue;
        }
        e->finLectura(r, propio);
        push_back(e.release());
    }
    return finLectura(r, bloque);
}

}  // namespace cad
