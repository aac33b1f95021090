#include "entidades/Teselado.h"

#include <vector>

#include "intercambio/ExportaDXF.h"
#include "modelo/Modelo3D.h"

namespace cad
{

void exportaModeloDXF(const Modelo3D& modelo, ExportaDXF& dxf, int color)
{
    std::vector<int32_t> triangulos;
    const std::vector<vertice_t>& vertices = modelo.vertices();
    for (size_t c = 0; c < modelo.caras().size(); ++c)
    {
        if (modelo.caras()[c].arista < 0)
        {
            continue;
        }
        triangulos.clear();
        modelo.triangulaCara(static_cast<int32_t>(c), triangulos);
        for (size_t i = 0; i + 2 < triangulos.size(); i += 3)
        {
            const Punto3<double> esquinas[3] = {
                vertices[static_cast<size_t>(triangulos[i])].punto,
                vertices[static_cast<size_t>(triangulos[i + 1])].punto,
                vertices[static_cast<size_t>(triangulos[i + 2])].punto};
            dxf.cara(3, esquinas, color);
        }
    }
}

}  // namespace cad
