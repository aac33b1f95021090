// OBJ and MTL input: the material records of one import and what an import reports.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/geometria/Vector3D.h"

namespace cad
{

class Dibujo;
class Policara;

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
    // Reads a library (UTF-8 path); false, and nothing added, for a file that cannot be read.
    bool leeMTL(const std::string& ruta);
    // The same on the bytes of a library already in memory; `ruta` names where they came from,
    // whose folder each map_Kd text is joined to.
    void leeTextoMTL(std::string_view texto, const std::string& ruta);
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
    // Set by the caller: told the fraction of the file read (0 to 1) after each piece of a
    // few megabytes. Empty: nothing is told.
    std::function<void(double)> progreso;
    bool abierto = false;   // the OBJ file could be opened
    std::string motivo;     // why not, or why the content was refused (e.g. UTF-16)
    uint64_t vertices = 0;  // "v" lines kept
    uint64_t coordenadasUV = 0;
    uint64_t normales = 0;
    uint64_t triangulos = 0;
    uint64_t cuadrilateros = 0;
    uint64_t carasCortadas = 0;            // more than four corners: the first four kept
    uint64_t carasMenosDeTres = 0;         // fewer than three counted corners: dropped
    uint64_t carasFueraDeRango = 0;        // a corner number beyond the points read: dropped
    uint64_t esquinasNegativas = 0;        // corners with a relative (negative) number resolved
    uint64_t normalesCalculadas = 0;       // corners whose normal was computed
    uint64_t materialesCreados = 0;        // materials made in the drawing
    uint64_t usemtlDesconocidos = 0;       // "usemtl" of a name no library defines
    uint64_t materialesLeidos = 0;         // records stored from the libraries
    uint64_t lineasContinuadas = 0;        // lines ending in a backslash: what follows them is
                                           // read as a line of its own
    std::vector<std::string> bibliotecas;  // MTL libraries read
    std::vector<std::string> bibliotecasQueFaltan;  // MTL libraries that could not be opened
    std::vector<std::string> texturas;              // map_Kd images found on disk
    std::vector<std::string> texturasQueFaltan;     // map_Kd images not found
    uint64_t desplazamientos = 0;                   // "#DX:" lines applied
    Vector3D<double> desplazamiento;                // the last offset applied
};

// Supplies the bytes of the MTL library at `ruta`; false when there is none.
using LeeBibliotecaOBJ = std::function<bool(const std::string& ruta, std::string& bytes)>;

// The whole bytes of a file; false when it cannot be opened or read.
bool leeBibliotecaDeDisco(const std::string& ruta, std::string& bytes);

// Policara::importaObj on bytes already in memory: `ruta` names the OBJ file they came from,
// whose folder each mtllib text is joined to, and `leeBiblioteca` supplies the libraries.
void importaObjTexto(Policara& policara, std::string_view texto, const std::string& ruta,
                     Dibujo& dibujo, const LeeBibliotecaOBJ& leeBiblioteca,
                     informeOBJ_t* informe = nullptr);

}  // namespace cad
