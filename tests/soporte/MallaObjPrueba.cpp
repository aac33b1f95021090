#include "soporte/MallaObjPrueba.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <utility>

namespace cad::prueba
{

bool leeMallaObj(const std::string& ruta, MallaObj& malla)
{
    std::ifstream f(ruta);
    if (!f)
    {
        return false;
    }
    Modelo3D& m = malla.modelo;
    std::string linea;
    std::string esquina;
    while (std::getline(f, linea))
    {
        std::istringstream campos(linea);
        std::string clave;
        campos >> clave;
        if (clave == "v")
        {
            Punto3<double> p;
            campos >> p.x >> p.y >> p.z;
            m.nuevoVertice(p);
        }
        else if (clave == "f")
        {
            const auto nv = static_cast<long>(m.vertices().size());
            std::vector<int32_t> cara;
            // Only the vertex index counts, whatever texture and normal follow its slash.
            while (campos >> esquina)
            {
                const long i = std::strtol(esquina.c_str(), nullptr, 10);
                const long v = i > 0 ? i - 1 : nv + i;
                if (i == 0 || v < 0 || v >= nv)
                {
                    return false;
                }
                cara.push_back(static_cast<int32_t>(v));
            }
            m.nuevaCara(static_cast<int>(cara.size()), cara.data(), false, 0);
            malla.caras.push_back(std::move(cara));
        }
    }
    return true;
}

}  // namespace cad::prueba
