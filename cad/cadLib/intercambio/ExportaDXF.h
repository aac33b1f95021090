// The ASCII DXF writer ("AC1009"): entities go to a temporary file, the layer table first.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "base/geometria/Punto3.h"

namespace cad
{

class Color;

// A layer of the DXF table: normalised name and colour index (256 means by layer).
struct capa_t
{
    std::string nombre;
    int32_t color = 7;
};

// Horizontal justification of a text, group 72.
enum justificar_e
{
    kJustificarIzquierda = 0,
    kJustificarCentro = 1,
    kJustificarDerecha = 2
};

// Calls in a wrong order raise cad::Excepcion. The destructor assembles the final file:
// head and layer table, then the temporary file's entities.
class ExportaDXF
{
public:
    // Opens `nombre` ("wt") and `nombre` + ".1" ("w+t"); adds layer "0" with colour 7.
    explicit ExportaDXF(const std::string& nombre);
    // Finishes the file when both files are open; raises Excepcion when a polyline or the
    // ENTITIES section is still open.
    ~ExportaDXF() noexcept(false);
    ExportaDXF(const ExportaDXF&) = delete;
    ExportaDXF& operator=(const ExportaDXF&) = delete;

    // Blanks, then points, become '_'.
    static std::string normalizaCapa(const std::string& nombre);
    // Index of the nearest palette colour (squared channel distance, lowest index on a tie).
    static int indiceColor(uint8_t rojo, uint8_t verde, uint8_t azul);

    void nuevaCapa(const std::string& nombre, int color);
    void nuevaCapaRGBA(const std::string& nombre, const Color& color);
    void setCapa(const std::string& nombre);
    void inicioEntidades();
    void finEntidades();
    void punto(int color, double x, double y, double z);
    void linea(int color, double x1, double y1, double z1, double x2, double y2, double z2);
    void cara(int n, const Punto3<double>* puntos, int color);
    void inicioPolilinea(int flags, int color);
    void verticePolilinea(double x, double y, double z);
    void finPolilinea();
    // A text with newlines is written as one TEXT per line, stacked one unit apart.
    void texto(const std::string& cadena, int justificacion, double x, double y, double z,
               double altura, double rotacionGrados);

    uint32_t estado = 0;  // 0x100 polyline open, 0x400 ENTITIES open, low bits: group 70
    double escala = 1.0;
    Punto3<double> minimo;
    Punto3<double> maximo;
    Punto3<double> origen;
    std::string nombre;
    std::FILE* final = nullptr;  // the assembled file
    std::FILE* temporal = nullptr;
    std::string capaActual;
    std::vector<capa_t> capas;
};

}  // namespace cad
