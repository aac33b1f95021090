// The binary file reader of the document format, and its block that reads tag and length.
#pragma once

#include <cstdio>
#include <string>

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

class SerializadorBinarioLectura : public SerializadorLecturaBase
{
public:
    // Opens `ruta` (UTF-8) with "rb". Throws std::logic_error for a path that is not UTF-8;
    // a file that can't be opened leaves the stream null and every read returns false.
    explicit SerializadorBinarioLectura(const std::string& ruta);
    // Takes an already-open seekable stream, such as one fmemopen gives over bytes in memory,
    // and closes it when done. Reading starts where the stream stands; a null stream reads
    // nothing.
    explicit SerializadorBinarioLectura(std::FILE* flujo);
    ~SerializadorBinarioLectura() override;
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

    bool abierto() const { return fichero != nullptr; }
    int64_t posicion();
    void situa(int64_t pos);
    void cierra();

    std::FILE* fichero = nullptr;
    int64_t tamanoFichero = 0;

private:
    // tamanoFichero from the stream's end, leaving the position where it was.
    void mideTamano();
};

}  // namespace cad
