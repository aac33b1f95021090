#include "soporte/TablaReferencia.h"

#include <fstream>
#include <sstream>

namespace cad::prueba
{

std::vector<filaTabla_t> leeTablaTSV(const std::string& ruta)
{
    std::ifstream f(ruta);
    std::vector<filaTabla_t> filas;
    std::vector<std::string> cabecera;
    std::string linea;
    while (std::getline(f, linea))
    {
        std::vector<std::string> campos;
        std::stringstream s(linea);
        std::string campo;
        while (std::getline(s, campo, '\t'))
        {
            campos.push_back(campo);
        }
        if (cabecera.empty())
        {
            cabecera = campos;
            continue;
        }
        filaTabla_t fila;
        for (size_t i = 0; i < cabecera.size(); ++i)
        {
            fila[cabecera[i]] = i < campos.size() ? campos[i] : "";
        }
        filas.push_back(std::move(fila));
    }
    return filas;
}

uint64_t numeroColumna(const filaTabla_t& fila, const std::string& columna)
{
    const auto it = fila.find(columna);
    return it == fila.end() || it->second.empty() ? 0 : std::stoull(it->second);
}

}  // namespace cad::prueba
