// Capa: the "Cp1" block.
#include "documento/Capa.h"

#include <memory>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"

namespace cad
{

Capa::Capa(const std::string& nombreCapa, const ColorCapa& colorCapa, int32_t flagsCapa)
    : nombre(nombreCapa), color(colorCapa), flags(flagsCapa)
{
}

void Capa::escribe(SerializadorEscrituraBase& w)
{
    std::unique_ptr<BloqueSerializacion> bloque(w.nuevoBloque16(etiqueta()));
    w.escribeLongitud64(id);
    w.escribeCadena(nombre);
    w.escribeEntero(flags);
    color.escribe(w);
    estiloLinea.escribe(w);
    escribeDatosDesconocidos(w);
    bloque.reset();  // patches the length
}

bool Capa::lee(SerializadorLecturaBase& r)
{
    std::unique_ptr<BloqueSerializacion> bloque(r.leeBloque16());
    if (!bloque->esTipo(etiqueta()))
    {
        // Deleting a read block seeks nowhere: the object goes, the file stays behind the
        // tag and length.
        return false;
    }
    // Every field is read whatever the one before gave. A field fails only at the file's
    // end, which a valid file never reaches inside a layer, so folding the results in
    // changes nothing for it. It keeps a file cut inside a block header (where a partial tag
    // can still compare equal) from passing finLectura and giving a made-up layer.
    bool ok = r.leeLongitud64(id);
    ok = r.leeCadena(nombre) && ok;
    ok = r.leeEntero(flags) && ok;
    ok = color.lee(r) && ok;
    ok = estiloLinea.lee(r) && ok;
    return finLectura(r, bloque.release()) && ok;
}

}  // namespace cad
