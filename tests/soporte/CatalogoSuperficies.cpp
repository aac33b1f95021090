#include "soporte/CatalogoEntidades.h"
#include "soporte/CatalogoPiezas.h"

namespace cad::prueba
{

std::vector<TipoEntidad> tiposSuperficies()
{
    return {};
}

}  // namespace cad::prueba
