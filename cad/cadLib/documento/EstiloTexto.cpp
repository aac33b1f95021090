// EstiloTexto: the "ET1" block.
#include "documento/EstiloTexto.h"

#include <memory>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"

namespace cad
{

EstiloTexto::EstiloTexto(const std::string& nombreEstilo, const std::string& fuenteEstilo,
                         uint32_t tamanoEstilo, bool negritaEstilo, bool cursivaEstilo)
    : nombre(nombreEstilo),
      fuente(fuenteEstilo),
      tamano(tamanoEstilo),
      negrita(negritaEstilo),
      cursiva(cursivaEstilo)
{
}

void EstiloTexto::escribe(SerializadorEscrituraBase& w)
{
    std::unique_ptr<BloqueSerializacion> bloque(w.nuevoBloque16(etiqueta()));
    w.escribeLongitud64(id);
    w.escribeCadena(nombre);
    w.escribeCadena(fuente);
    w.escribeEnteroSinSigno(tamano);
    w.escribeBooleano(negrita);
    w.escribeBooleano(cursiva);
    escribeDatosDesconocidos(w);
    bloque.reset();  // patches the length
}

bool EstiloTexto::lee(SerializadorLecturaBase& r)
{
    std::unique_ptr<BloqueSerializacion> bloque(r.leeBloque16());
    if (!bloque->esTipo(etiqueta()))
    {
        return false;
    }
    bool ok = r.leeLongitud64(id);
    ok = r.leeCadena(nombre) && ok;
    ok = r.leeCadena(fuente) && ok;
    ok = r.leeEnteroSinSigno(tamano) && ok;
    ok = r.leeBooleano(negrita) && ok;
    ok = r.leeBooleano(cursiva) && ok;
    return finLectura(r, bloque.release()) && ok;
}

}  // namespace cad
