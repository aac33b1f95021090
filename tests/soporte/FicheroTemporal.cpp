#include "soporte/FicheroTemporal.h"

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <unistd.h>

namespace cad::prueba
{

namespace
{

std::filesystem::path carpeta()
{
    static const std::filesystem::path raiz = []
    {
        auto p = std::filesystem::temp_directory_path() /
                 ("tarvelo-pruebas-" + std::to_string(::getpid()));
        std::filesystem::create_directories(p);
        return p;
    }();
    return raiz;
}

}  // namespace

std::string rutaDXF(const std::string& nombre)
{
    const char* salida = std::getenv("CAD_TEST_SALIDA");
    const std::filesystem::path base = salida != nullptr && *salida != '\0'
                                           ? std::filesystem::path(salida)
                                           : std::filesystem::temp_directory_path() / "tarvelo";
    std::filesystem::create_directories(base / "dxf");
    return (base / "dxf" / nombre).string();
}

std::string rutaTemporal(const std::string& nombre)
{
    static std::atomic<int> contador{0};
    return (carpeta() / (std::to_string(contador++) + "-" + nombre)).string();
}

std::vector<uint8_t> leeFichero(const std::string& ruta)
{
    std::ifstream f(ruta, std::ios::binary);
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(f), {});
}

void escribeFichero(const std::string& ruta, const std::vector<uint8_t>& bytes)
{
    std::ofstream f(ruta, std::ios::binary | std::ios::trunc);
    f.write(reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::streamsize>(bytes.size()));
}

void escribeFichero(const std::string& ruta, const std::string& texto)
{
    std::ofstream f(ruta, std::ios::binary | std::ios::trunc);
    f << texto;
}

bool existeFichero(const std::string& ruta)
{
    return std::filesystem::exists(ruta);
}

std::vector<std::string> restosTemporales()
{
    std::vector<std::string> restos;
    for (const auto& e : std::filesystem::recursive_directory_iterator(carpeta()))
    {
        if (e.path().filename().string().rfind('.', 0) == 0)
        {
            restos.push_back(e.path().string());
        }
    }
    return restos;
}

}  // namespace cad::prueba
