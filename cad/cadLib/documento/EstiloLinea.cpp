// Line style body: width and pattern inside the owner's block.
#include "documento/EstiloLinea.h"

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"

namespace cad
{

void EstiloLinea::escribe(SerializadorEscrituraBase& w)
{
    w.escribeDoble(grosor);
    w.escribeCorto(static_cast<int16_t>(patron));
}

bool EstiloLinea::lee(SerializadorLecturaBase& r)
{
    int16_t p = static_cast<int16_t>(patron);
    const bool okGrosor = r.leeDoble(grosor);
    const bool okPatron = r.leeCorto(p);
    patron = static_cast<uint16_t>(p);
    return okGrosor && okPatron;
}

}  // namespace cad
