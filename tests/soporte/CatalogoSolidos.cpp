#include "soporte/CatalogoEntidades.h"
#include "soporte/CatalogoPiezas.h"

namespace cad::prueba
{

std::vector<TipoEntidad> tiposSolidos()
{
    return {};
}

}  // namespace cad::prueba
