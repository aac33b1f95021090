// The ASCII DXF token reader: it knows the LAYER records of the tables and the ENTITIES
// section, and tells what it meets through nine callbacks. It builds nothing itself.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "intercambio/CodificacionDXF.h"

namespace cad
{

// The reader is narrow and tolerant, line by line as the format is written:
// - a pair is a code line and a value line of at most 255 characters each; a longer value is
//   read in pieces and the reader loses step with the file, which it survives;
// - the line end ("\n", or "\r\n" as one) is removed; without one, the last character is;
//   values are not trimmed, so a keyword must start at the first column;
// - after an entity it does not know, every following line is a candidate keyword until one
//   matches, which is how unknown entities and sections are skipped;
// - numbers read as atof and atoi would: a malformed value is 0.
// Texts and names (groups 1, 2, 8) reach the callbacks in UTF-8, decoded from the file's
// code page (UTF-8 from $ACADVER AC1021 on; before, the Windows code page $DWGCODEPAGE names,
// Windows-1252 when it names none or one not known) with "\U+XXXX" escapes resolved.
class ImportacionDXF
{
public:
    enum tipo_e
    {
        kNinguno = 0,
        kPunto = 1,
        kLinea = 2,
        kPolilinea = 3,
        kPolilineaLigera = 4,
        kVertice = 5,
        kFinSecuencia = 6,
        kArco = 7,
        kCirculo = 8,
        kTexto = 9
    };

    virtual ~ImportacionDXF() = default;

    virtual void capa(const std::string& nombre, int32_t color) = 0;
    virtual void punto(double x, double y, double z, const std::string& capa, int32_t color) = 0;
    virtual void linea(double x, double y, double z, double x2, double y2, double z2,
                       const std::string& capa, int32_t color) = 0;
    virtual void polilinea(const std::string& capa, int32_t color, bool cerrada) = 0;
    virtual void vertice(double x, double y, double z, double bulge, const std::string& capa,
                         int32_t color) = 0;
    virtual void finPolilinea() = 0;
    virtual void arco(double x, double y, double z, double anguloInicial, double anguloFinal,
                      double radio, const std::string& capa, int32_t color) = 0;
    virtual void circulo(double x, double y, double z, double radio, const std::string& capa,
                         int32_t color) = 0;
    virtual void texto(double x, double y, double z, const std::string& texto, double altura,
                       double rotacion, int32_t justificacion, const std::string& capa,
                       int32_t color) = 0;

    // Reads the rest of the stream. False when it is a binary DXF (nothing is read) or the
    // stream fails; `motivo` says why.
    bool lee(std::FILE* f);
    // Opens a UTF-8 path (std::logic_error "not a UTF-8 string" otherwise); false, with
    // `motivo`, when it cannot be read.
    bool lee(const std::string& ruta);
    // The bytes of a whole file.
    bool lee(const char* datos, size_t tamano);

    bool finFichero = false;
    double x = 0, y = 0, z = 0;
    double x2 = 0, y2 = 0, z2 = 0;
    double valor40 = 0;
    double bulge = 0;
    double angulo1 = 0, angulo2 = 0;
    double elevacion = 0;
    std::string valorTexto;  // group 1; kept from the preceding entity (texto is the callback)
    std::string nombre;      // groups 2 and 8; kept from the preceding entity
    int32_t flags = 0;
    int32_t justificacion = 0;
    int32_t color = 256;
    int32_t tipo = kNinguno;
    std::vector<std::string> nombresCapas;
    std::vector<std::array<double, 4>> verticesLigeros;  // x, y, z, bulge
    int32_t codigoPendiente = -1;

    // What the header said, and what the reader made of it.
    std::string version;        // $ACADVER
    std::string paginaCodigos;  // $DWGCODEPAGE
    codificacionDXF codificacion = codificacionDXF::kWindows1252;
    // The high half of the narrow code page $DWGCODEPAGE names; null: Windows-1252.
    const char16_t* altos = nullptr;
    bool binario = false;
    std::string motivo;
    // Told the fraction of the bytes read (0 to 1) each time the reading passes another
    // hundredth: progress for long files. Empty: nothing is told.
    std::function<void(double)> progreso;
    // Entity names the reader skipped, with how often (3DFACE, INSERT, MTEXT...).
    std::vector<std::pair<std::string, uint64_t>> omitidas;

private:
    bool leeTrozo(std::string_view& trozo);
    bool leeCodigo(int32_t& codigo);
    bool leeValor(std::string_view& valor);
    bool leePar(int32_t& codigo, std::string_view& valor);
    void leeTabla();
    void leeEntidades();
    int32_t siguientePalabra();
    void leeCampos();
    void llama(int32_t t);
    void cuentaOmitida(std::string_view nombreEntidad);
    std::string decodifica(std::string_view valor) const;

    void avisaProgreso();

    const char* inicio = nullptr;
    const char* cursor = nullptr;
    const char* final = nullptr;
    const char* siguienteAviso = nullptr;
    int32_t numeroVertices = 0;
    // The last pair ended an entity's fields: the next value is an entity name.
    bool trasCampos = false;
    bool finEntidades = false;
};

}  // namespace cad
