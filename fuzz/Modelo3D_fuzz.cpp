// Fuzz target: the mesh body reader over arbitrary bytes. What lee accepts must keep every
// rule of a sound mesh, as the tests' checker reads the records, every walk over it must
// end, and escribe must write it so that it reads again. Any breach stops the process.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "modelo/Modelo3D.h"
#include "soporte/ComprobadorMalla.h"

namespace
{

[[noreturn]] void falla(const std::string& que)
{
    std::fprintf(stderr, "malla: %s\n", que.c_str());
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* datos, size_t n)
{
    cad::Modelo3D m;
    cad::SerializadorBinarioLectura lector(datos, n);
    if (!m.lee(lector))
    {
        return 0;
    }
    const std::vector<std::string> defectos = cad::defectosMalla(m, 1);
    if (!defectos.empty())
    {
        falla("lee acepta una malla rota: " + defectos[0]);
    }
    std::vector<int32_t> ciclo;
    std::vector<int32_t> triangulos;
    for (int32_t f = 0; f < static_cast<int32_t>(m.caras().size()); ++f)
    {
        m.getVerticesCara(f, ciclo);
        m.triangulaCara(f, triangulos);
    }
    std::vector<cad::Vector3D<float>> normales;
    m.normalesVertices(normales);
    cad::SerializadorBinarioEscritura escritor;
    m.escribe(escritor);
    const std::vector<uint8_t> cuerpo = escritor.bytes();
    cad::Modelo3D copia;
    cad::SerializadorBinarioLectura otra(cuerpo.data(), cuerpo.size());
    if (!copia.lee(otra))
    {
        falla("lo que escribe no se lee");
    }
    return 0;
}
