// Vista: the "Vt1" block.
#include "documento/Vista.h"

#include <memory>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"

namespace cad
{

void Vista::escribe(SerializadorEscrituraBase& w)
{
    std::unique_ptr<BloqueSerializacion> bloque(w.nuevoBloque16(etiqueta()));
    w.escribeLongitud64(id);
    w.escribeCadena(nombre);
    w.escribePunto3(posicion);
    w.escribePunto3(objetivo);
    w.escribeVector3(arriba);
    w.escribeDoble(zoom);
    w.escribeDoble(angulo);
    escribeDatosDesconocidos(w);
    bloque.reset();  // patches the length
}

bool Vista::lee(SerializadorLecturaBase& r)
{
    std::unique_ptr<BloqueSerializacion> bloque(r.leeBloque16());
    if (!bloque->esTipo(etiqueta()))
    {
        return false;
    }
    bool ok = r.leeLongitud64(id);
    ok = r.leeCadena(nombre) && ok;
    ok = r.leePunto3(posicion) && ok;
    ok = r.leePunto3(objetivo) && ok;
    ok = r.leeVector3(arriba) && ok;
    ok = r.leeDoble(zoom) && ok;
    ok = r.leeDoble(angulo) && ok;
    return finLectura(r, bloque.release()) && ok;
}

}  // namespace cad
