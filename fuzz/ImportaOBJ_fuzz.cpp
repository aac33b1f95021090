// Fuzz target: OBJ and MTL bytes through the memory entry of the OBJ reader. The input splits
// at the first "\n@@MTL@@\n": the OBJ before, the library after (served for any mtllib). The
// soup that comes out must have only valid faces and material pairs that can be painted, and
// must come back the same through its file body.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "base/BloqueSerializacion.h"
#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/Dibujo.h"
#include "entidades/Policara.h"
#include "intercambio/ImportaOBJ.h"

namespace
{

[[noreturn]] void falla(const char* que)
{
    std::fprintf(stderr, "fuzz_obj: %s\n", que);
    std::abort();
}

std::vector<uint8_t> cuerpo(cad::Policara& p)
{
    cad::SerializadorBinarioEscritura w;
    {
        std::unique_ptr<cad::BloqueSerializacion> b(w.nuevoBloque(p.etiqueta(), p.tamanoBloque()));
        p.escribe(w);
    }
    return w.bytes();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* datos, size_t n)
{
    const std::string_view todo(reinterpret_cast<const char*>(datos), n);
    constexpr std::string_view kMarca = "\n@@MTL@@\n";
    const size_t corte = todo.find(kMarca);
    const std::string_view obj = todo.substr(0, corte);
    const std::string mtl(corte == std::string_view::npos ? std::string_view()
                                                          : todo.substr(corte + kMarca.size()));
    const cad::LeeBibliotecaOBJ lee = [&mtl](const std::string&, std::string& bytes)
    {
        bytes = mtl;
        return true;
    };

    cad::Dibujo dibujo;
    dibujo.nuevoDocumento();
    cad::Policara p;
    cad::informeOBJ_t informe;
    cad::importaObjTexto(p, obj, "/fuzz/modelo.obj", dibujo, lee, &informe);

    for (int32_t t : p.triangulos)
    {
        if (!p.caraValida(t, 3))
        {
            falla("invalid triangle");
        }
    }
    for (int32_t q : p.cuadrilateros)
    {
        if (!p.caraValida(q, 4))
        {
            falla("invalid quadrilateral");
        }
    }
    if (p.esquinas.size() != 3 * p.triangulos.size() + 4 * p.cuadrilateros.size())
    {
        falla("corners not all in faces");
    }
    const std::vector<uint8_t> a = cuerpo(p);
    cad::SerializadorBinarioLectura r(a.data(), a.size());
    std::unique_ptr<cad::BloqueSerializacion> b(r.leeBloque());
    cad::Policara leida;
    if (!b || !leida.lee(r))
    {
        falla("the soup does not read back");
    }
    if (cuerpo(leida) != a)
    {
        falla("the soup reads back different");
    }
    return 0;
}
