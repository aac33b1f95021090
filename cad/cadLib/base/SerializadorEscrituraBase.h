// Abstract writer of the document format; the operation order is that of the format's writers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/BloqueSerializacion.h"
#include "base/geometria/Punto3.h"
#include "base/geometria/Vector2D.h"
#include "base/geometria/Vector3D.h"

namespace cad
{

// Writers report nothing: no caller checks a write.
class SerializadorEscrituraBase
{
public:
    virtual ~SerializadorEscrituraBase() = default;

    virtual void escribeVectorEnteros(const std::vector<int>& v) = 0;
    virtual void escribeVectorPuntos(const std::vector<Punto3<double>>& v) = 0;
    virtual void escribePlano(const void* plano) = 0;  // 32 raw bytes
    virtual void escribeVector3(const Vector3D<double>& v) = 0;
    virtual void escribePunto3(const Punto3<double>& p) = 0;
    virtual void escribeVector2(const Vector2D<double>& v) = 0;
    virtual void escribeVector3Simple(const Vector3D<float>& v) = 0;
    virtual void escribeVector2Simple(const Vector2D<float>& v) = 0;
    virtual void escribeBytes(const void* datos, uint32_t n) = 0;
    // u16 even length, the bytes, one pad zero for an odd length.
    virtual void escribeCadena(const std::string& s) = 0;
    virtual void escribeDoble(double v) = 0;
    virtual void escribeFlotante(float v) = 0;
    virtual void escribeEntero(int32_t v) = 0;
    virtual void escribeEnteroSinSigno(uint32_t v) = 0;
    virtual void escribeCorto(int16_t v) = 0;
    virtual void escribeCortoSinSigno(uint16_t v) = 0;
    // The one-byte values write their byte twice to keep the stream even.
    virtual void escribeCaracter(char v) = 0;
    virtual void escribeByte(uint8_t v) = 0;
    virtual void escribeBooleano(bool v) = 0;
    virtual void escribeLongitud16(uint32_t v) = 0;  // low 16 bits kept
    virtual void escribeLongitud32(uint32_t v) = 0;
    virtual void escribeLongitud64(uint64_t v) = 0;
    // Opens a block; tipoBloque 0 -> u16 length, 1 -> u32, any other -> u64. The caller owns
    // the result and closes the block by deleting it.
    virtual BloqueSerializacion* nuevoBloque(const char* tag, int tipoBloque) = 0;
    virtual BloqueSerializacion* nuevoBloque16(const char* tag) = 0;
    virtual BloqueSerializacion* nuevoBloque32(const char* tag) = 0;
    virtual BloqueSerializacion* nuevoBloque64(const char* tag) = 0;

    // `n` points as escribePunto3 writes each, one after another: a writer may take them in
    // one piece, which a vertex list of thousands wants.
    virtual void escribePuntos(const Punto3<double>* puntos, size_t n)
    {
        for (size_t i = 0; i < n; ++i)
        {
            escribePunto3(puntos[i]);
        }
    }
};

}  // namespace cad
