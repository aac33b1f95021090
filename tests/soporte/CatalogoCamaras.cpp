#include "soporte/CatalogoEntidades.h"
#include "soporte/CatalogoPiezas.h"

namespace cad::prueba
{

std::vector<TipoEntidad> tiposCamaras()
{
    return {};
}

}  // namespace cad::prueba
