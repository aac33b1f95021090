// The binary file reader of the document format, and its block that reads tag and length.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "base/FicheroAtomico.h"
#include "base/SerializadorLecturaBase.h"

namespace cad
{

class SerializadorBinarioLectura;

// Reads the tag (4 bytes, then 2 more while the last one read is not zero) and the length.
// The destructor reads nothing: the owner consumes the block, or skips it with restante().
class BloqueSerializacionBL : public BloqueSerializacion
{
public:
    // tipoBloque < 0 derives the width from the tag's size.
    BloqueSerializacionBL(SerializadorBinarioLectura& r, int tipoBloque);

    bool esTipo(const char* tag) const override;
    void tipo(char* destino) const override;
    uint64_t restante() const override;

    SerializadorBinarioLectura& lector;
    char etiqueta[20] = {};
    int tipoBloque;
    uint64_t longitud = 0;
    int64_t posicionLongitud = 0;
};

// Reads the document format from memory: a file is read whole, in large reads, and parsed
// from there.
class SerializadorBinarioLectura : public SerializadorLecturaBase
{
public:
    // Reads `ruta` (UTF-8). Throws std::logic_error for a path that is not UTF-8; a file that
    // can't be read (missing, not a regular file, no permission) leaves abierto() false,
    // every read returns false, and mensaje() says why.
    explicit SerializadorBinarioLectura(const std::string& ruta);
    // Reads what is left of an open stream (fmemopen over bytes, say) and closes it. A null
    // stream reads nothing.
    explicit SerializadorBinarioLectura(std::FILE* flujo);
    // Reads `n` bytes that the caller keeps alive for the reader's life; nothing is copied.
    SerializadorBinarioLectura(const unsigned char* datos, size_t n);
    ~SerializadorBinarioLectura() override = default;
    SerializadorBinarioLectura(const SerializadorBinarioLectura&) = delete;
    SerializadorBinarioLectura& operator=(const SerializadorBinarioLectura&) = delete;

    bool leeVectorEnteros(std::vector<int>& v) override;
    bool leeVectorPuntos(std::vector<Punto3<double>>& v) override;
    bool leePlano(void* plano) override;
    bool leeVector3(Vector3D<double>& v) override;
    bool leePunto3(Punto3<double>& p) override;
    bool leeVector2(Vector2D<double>& v) override;
    bool leeVector3Simple(Vector3D<float>& v) override;
    bool leeVector2Simple(Vector2D<float>& v) override;
    bool leeBytes(void* datos, uint32_t n) override;
    bool leeCadena(std::string& s) override;
    bool leeDoble(double& v) override;
    bool leeFlotante(float& v) override;
    bool leeEntero(int32_t& v) override;
    bool leeEnteroSinSigno(uint32_t& v) override;
    bool leeCorto(int16_t& v) override;
    bool leeCortoSinSigno(uint16_t& v) override;
    bool leeCaracter(char& v) override;
    bool leeByte(uint8_t& v) override;
    bool leeBooleano(bool& v) override;
    bool leeLongitud16(uint32_t& v) override;
    bool leeLongitud32(uint32_t& v) override;
    bool leeLongitud64(uint64_t& v) override;
    bool compruebaCadena(const char* literal) override;
    bool espia(void* datos, uint32_t n) override;
    BloqueSerializacion* leeBloque() override;
    BloqueSerializacion* leeBloque16() override;
    BloqueSerializacion* leeBloque32() override;
    BloqueSerializacion* leeBloque64() override;
    uint64_t bytesDisponibles() override;
    bool leePuntos(Punto3<double>* puntos, size_t n) override;
    // Where the reader stands, in bytes from the source's start, and a move to another place
    // (beyond the end stands at the end): the entity list resumes after a damaged block so.
    int64_t posicion() const { return static_cast<int64_t>(actual); }
    bool situa(int64_t pos);

    bool abierto() const { return datos_ != nullptr; }
    // Drops the bytes; later reads return false.
    void cierra();
    // Why the file could not be read; empty when it was.
    const std::string& mensaje() const { return texto; }
    int codigoError() const { return error; }
    uint64_t tamano() const { return tamano_; }
    const unsigned char* datos() const { return datos_; }

private:
    // Reads a value of fixed size: the only place that copies bytes out.
    template <typename T>
    bool leeValor(T& v);

    memoria_t propios;
    const unsigned char* datos_ = nullptr;
    size_t tamano_ = 0;
    size_t actual = 0;
    int error = 0;
    std::string texto;
};

}  // namespace cad
