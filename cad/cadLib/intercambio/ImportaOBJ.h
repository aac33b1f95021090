// OBJ and MTL input: the material records of one import and what an import reports.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/geometria/Vector3D.h"

namespace cad
{

// One material of an MTL library, local to one import.
struct material_obj_t
{
    std::string nombre;
    std::string textura;  // full path: folder of the library, then the map_Kd text
    float Ka[3] = {0, 0, 0};
    float Kd[3] = {0, 0, 0};
    float Ks[3] = {0, 0, 0};
    float Ke[3] = {0, 0, 0};
    int32_t illum = 0;
    double d = 0;
    double Ni = 0;
    double Ns = 0;
    uint16_t id = 0xFFFF;  // no material in the drawing yet
};

// The material libraries of one import, in the order their records were stored.
class MaterialesOBJ
{
public:
    // Reads a library (UTF-8 path); a file that cannot be opened adds nothing.
    void leeMTL(const std::string& ruta);
    // Stores a copy of `m` unless its name is empty (false, `m` untouched) or already stored;
    // then resets `m` to the values of a new record.
    bool guarda(material_obj_t& m);
    // The first record of that exact name, or null.
    material_obj_t* buscaMaterial(std::string_view nombre);

    std::vector<material_obj_t> materiales;
};

// What one OBJ import read, dropped and cut: the report of `tarvelo importa` and the tests.
struct informeOBJ_t
{
    bool abierto = false;    // the OBJ file could be opened
    std::string motivo;      // why not, or why the content was refused (e.g. UTF-16)
    uint64_t vertices = 0;   // "v" lines kept
    uint64_t coordenadasUV = 0;
    uint64_t normales = 0;
    uint64_t triangulos = 0;
    uint64_t cuadrilateros = 0;
    uint64_t carasCortadas = 0;          // more than four corners: the first four kept
    uint64_t carasMenosDeTres = 0;       // fewer than three counted corners: dropped
    uint64_t carasFueraDeRango = 0;      // a corner number beyond the points read: dropped
    uint64_t esquinasNegativas = 0;      // corners with a relative (negative) number resolved
    uint64_t normalesCalculadas = 0;     // corners whose normal was computed
    uint64_t materialesCreados = 0;      // materials made in the drawing
    uint64_t usemtlDesconocidos = 0;     // "usemtl" of a name no library defines
    std::vector<std::string> bibliotecas;          // MTL libraries read
    std::vector<std::string> bibliotecasQueFaltan; // MTL libraries that could not be opened
    std::vector<std::string> texturas;             // map_Kd images found on disk
    std::vector<std::string> texturasQueFaltan;    // map_Kd images not found
    uint64_t desplazamientos = 0;        // "#DX:" lines applied
    Vector3D<double> desplazamiento;     // the last offset applied
};

}  // namespace cad
