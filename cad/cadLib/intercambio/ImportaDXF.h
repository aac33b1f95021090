// Builds what the DXF token reader meets into a drawing: layers, points, lines, polylines.
#pragma once

#include <cstdint>
#include <string>

#include "intercambio/ImportacionDXF.h"

namespace cad
{

class Dibujo;
class Capa;
class Entidad;
class Polilinea;

// What one import brought, for the report of `tarvelo importa` and the tests.
struct informeDXF_t
{
    uint64_t capasNuevas = 0;
    uint64_t puntos = 0;
    uint64_t lineas = 0;
    uint64_t polilineas = 0;
    uint64_t vertices = 0;
    uint64_t arcos = 0;                 // read and dropped: the drawing takes no arcs from a DXF
    uint64_t circulos = 0;              // likewise
    uint64_t textos = 0;                // likewise
    uint64_t verticesSinPolilinea = 0;  // a VERTEX or SEQEND with no POLYLINE open: dropped
    uint64_t polilineasSinFin = 0;      // a POLYLINE with no SEQEND: kept as read
    uint64_t capasRechazadas = 0;       // a layer name the file format cannot hold
};

// Arcs, circles and texts are recognised and dropped; a bulge has no effect (straight
// segments); a closed polyline arrives open with its first vertex repeated at the end.
// A layer met only on an entity is created with colour 7, or the entity's index below 256.
// Colours 0-255 are an index with its palette RGB, 256 by layer, 257-511 a bare code, anything
// else the entity's default.
class ImportaDXF : public ImportacionDXF
{
public:
    explicit ImportaDXF(Dibujo* d) : dibujo(d) {}
    // Keeps a polyline still open at the end of the file.
    ~ImportaDXF() override;
    ImportaDXF(const ImportaDXF&) = delete;
    ImportaDXF& operator=(const ImportaDXF&) = delete;

    void capa(const std::string& nombre, int32_t color) override;
    void punto(double x, double y, double z, const std::string& capa, int32_t color) override;
    void linea(double x, double y, double z, double x2, double y2, double z2,
               const std::string& capa, int32_t color) override;
    void polilinea(const std::string& capa, int32_t color, bool cerrada) override;
    void vertice(double x, double y, double z, double bulge, const std::string& capa,
                 int32_t color) override;
    void finPolilinea() override;
    void arco(double x, double y, double z, double anguloInicial, double anguloFinal, double radio,
              const std::string& capa, int32_t color) override;
    void circulo(double x, double y, double z, double radio, const std::string& capa,
                 int32_t color) override;
    void texto(double x, double y, double z, const std::string& texto, double altura,
               double rotacion, int32_t justificacion, const std::string& capa,
               int32_t color) override;

    // Puts a polyline still open into the drawing, as its SEQEND would.
    void terminaAbierta();

    Dibujo* dibujo;
    Polilinea* polilinea_ = nullptr;  // the open polyline (polilinea is the callback)
    bool cerrada = false;
    informeDXF_t informe;

private:
    void asignaCapaColor(Entidad& e, const std::string& capa, int32_t color);
    void anade(Entidad* e);

    std::string ultimoNombreCapa;
    Capa* ultimaCapa = nullptr;
};

}  // namespace cad
