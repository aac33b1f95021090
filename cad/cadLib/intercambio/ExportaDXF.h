// The ASCII DXF writer ("AC1009"): entities go to a temporary file, the layer table first.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "base/FicheroAtomico.h"
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

// Calls in a wrong order raise cad::Excepcion. Finishing assembles the final file: head and
// layer table, then the entities, which wait in a scratch file beside it. The final file is
// written through a FicheroAtomico: it replaces its target only when whole and checked, and
// a failed or abandoned export leaves the target as it was. Texts and layer names are UTF-8
// here and go out in Windows-1252, the code page an R12 file is read in when its header names
// none; characters it lacks go as "\U+XXXX" escapes (see utf8ADXF).
class ExportaDXF
{
public:
    // Prepares `nombre` (UTF-8; std::logic_error otherwise) and a scratch file without a
    // name in its folder, which nothing else can meet and which goes away with the process;
    // adds layer "0" with colour 7. A failure is not raised: abierto() says it, mensaje()
    // tells why, and the writes are dropped.
    explicit ExportaDXF(const std::string& nombre);
    // termina() unless it ran; raises Excepcion when a polyline or the ENTITIES section is
    // still open.
    ~ExportaDXF() noexcept(false);
    ExportaDXF(const ExportaDXF&) = delete;
    ExportaDXF& operator=(const ExportaDXF&) = delete;

    // Assembles the final file and puts it in place. Raises Excepcion when a polyline or the
    // ENTITIES section is still open (the target is untouched then); false, with the reason
    // in mensaje(), when the file could not be written or a coordinate was not a finite
    // number. Runs once; later calls give the first answer.
    bool termina();
    // Abandons the export: the target stays as it was.
    void descarta();
    bool abierto() const;
    const std::string& mensaje() const { return motivo; }

    // Blanks, then points, become '_'; so do control characters, which would break the line
    // structure of the file. The name stays UTF-8: it is encoded for the file when written
    // (no byte of a multi-byte UTF-8 character is a blank, a point or a control character).
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
    std::unique_ptr<FicheroAtomico> final;  // the assembled file
    std::FILE* temporal = nullptr;          // the entities, until the end
    std::string capaActual;
    std::vector<capa_t> capas;
    // What the last misuse was, for a caller that catches its Excepcion: the exception
    // itself carries nothing.
    const char* diagnostico = nullptr;
    // Numbers that were not finite (nan, inf): a reader would take them for text.
    uint64_t noFinitos = 0;

private:
    friend struct SalidaDXF;

    bool terminado = false;
    bool correcto = false;
    std::string motivo;
    // The entity file's pieces gather here and reach `temporal` in large writes, not in one
    // stdio call each.
    std::unique_ptr<char[]> pendiente;
    size_t ocupado = 0;
    int errorTemporal = 0;  // errno of the first failed write of the entity file
    // The last name setCapa found, as given, so that an entity on the same layer as the one
    // before costs one comparison.
    std::string capaPedida;
    // Group 8 of `capaDeLinea` as it goes to the file ("  8\n", the encoded name, "\n").
    std::string capaDeLinea;
    std::string lineaCapa;
};

}  // namespace cad
