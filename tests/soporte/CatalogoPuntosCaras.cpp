#include "soporte/CatalogoEntidades.h"
#include "soporte/CatalogoPiezas.h"

namespace cad::prueba
{

std::vector<TipoEntidad> tiposPuntosCaras()
{
    return {};
}

}  // namespace cad::prueba
