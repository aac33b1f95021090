// The binary file writer of the document format, and its block that patches its length.
#pragma once

#include <cstdio>
#include <string>

#include "base/SerializadorEscrituraBase.h"

namespace cad
{

class SerializadorBinarioEscritura;

// Writes the tag and a zero length on construction; on deletion writes the real length,
// counted from the length field's first byte to the current position, and comes back.
class BloqueSerializacionBE : public BloqueSerializacion
{
public:
    BloqueSerializacionBE(SerializadorBinarioEscritura& w, const char* tag, int tipoBloque);
    ~BloqueSerializacionBE() override;

    SerializadorBinarioEscritura& escritor;
    int tipoBloque;
    int64_t posicionLongitud;
};

class SerializadorBinarioEscritura : public SerializadorEscrituraBase
{
public:
    // Opens `ruta` (UTF-8) with "wb". Throws std::logic_error for a path that is not UTF-8;
    // a file that can't be created leaves the stream null and every write does nothing.
    explicit SerializadorBinarioEscritura(const std::string& ruta);
    ~SerializadorBinarioEscritura() override;
    SerializadorBinarioEscritura(const SerializadorBinarioEscritura&) = delete;
    SerializadorBinarioEscritura& operator=(const SerializadorBinarioEscritura&) = delete;

    void escribeVectorEnteros(const std::vector<int>& v) override;
    void escribeVectorPuntos(const std::vector<Punto3<double>>& v) override;
    void escribePlano(const void* plano) override;
    void escribeVector3(const Vector3D<double>& v) override;
    void escribePunto3(const Punto3<double>& p) override;
    void escribeVector2(const Vector2D<double>& v) override;
    void escribeVector3Simple(const Vector3D<float>& v) override;
    void escribeVector2Simple(const Vector2D<float>& v) override;
    void escribeBytes(const void* datos, uint32_t n) override;
    void escribeCadena(const std::string& s) override;
    void escribeDoble(double v) override;
    void escribeFlotante(float v) override;
    void escribeEntero(int32_t v) override;
    void escribeEnteroSinSigno(uint32_t v) override;
    void escribeCorto(int16_t v) override;
    void escribeCortoSinSigno(uint16_t v) override;
    void escribeCaracter(char v) override;
    void escribeByte(uint8_t v) override;
    void escribeBooleano(bool v) override;
    void escribeLongitud16(uint32_t v) override;
    void escribeLongitud32(uint32_t v) override;
    void escribeLongitud64(uint64_t v) override;
    BloqueSerializacion* nuevoBloque(const char* tag, int tipoBloque) override;
    BloqueSerializacion* nuevoBloque16(const char* tag) override;
    BloqueSerializacion* nuevoBloque32(const char* tag) override;
    BloqueSerializacion* nuevoBloque64(const char* tag) override;

    bool abierto() const { return fichero != nullptr; }
    int64_t posicion();
    void situa(int64_t pos);
    // Closes the file now; later writes do nothing.
    void cierra();

    std::FILE* fichero = nullptr;
};

}  // namespace cad
