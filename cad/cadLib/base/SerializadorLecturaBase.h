// Abstract reader of the document format; every read says whether all its bytes came.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "base/BloqueSerializacion.h"
#include "base/geometria/Punto3.h"
#include "base/geometria/Vector2D.h"
#include "base/geometria/Vector3D.h"

namespace cad
{

class SerializadorLecturaBase
{
public:
    virtual ~SerializadorLecturaBase() = default;

    virtual bool leeVectorEnteros(std::vector<int>& v) = 0;
    virtual bool leeVectorPuntos(std::vector<Punto3<double>>& v) = 0;
    virtual bool leePlano(void* plano) = 0;
    virtual bool leeVector3(Vector3D<double>& v) = 0;
    virtual bool leePunto3(Punto3<double>& p) = 0;
    virtual bool leeVector2(Vector2D<double>& v) = 0;
    virtual bool leeVector3Simple(Vector3D<float>& v) = 0;
    virtual bool leeVector2Simple(Vector2D<float>& v) = 0;
    virtual bool leeBytes(void* datos, uint32_t n) = 0;
    // Cuts the string at its first zero byte, which drops the pad.
    virtual bool leeCadena(std::string& s) = 0;
    virtual bool leeDoble(double& v) = 0;
    virtual bool leeFlotante(float& v) = 0;
    virtual bool leeEntero(int32_t& v) = 0;
    virtual bool leeEnteroSinSigno(uint32_t& v) = 0;
    virtual bool leeCorto(int16_t& v) = 0;
    virtual bool leeCortoSinSigno(uint16_t& v) = 0;
    // Both bytes land in the target (the second wins); the first read's result is returned.
    virtual bool leeCaracter(char& v) = 0;
    virtual bool leeByte(uint8_t& v) = 0;
    virtual bool leeBooleano(bool& v) = 0;
    virtual bool leeLongitud16(uint32_t& v) = 0;
    virtual bool leeLongitud32(uint32_t& v) = 0;
    virtual bool leeLongitud64(uint64_t& v) = 0;
    // Reads strlen(literal) bytes and says whether they equal the literal.
    virtual bool compruebaCadena(const char* literal) = 0;
    // Reads n bytes and goes back to where it stood.
    virtual bool espia(void* datos, uint32_t n) = 0;
    // Never null: a block that could not start answers false to esTipo.
    virtual BloqueSerializacion* leeBloque() = 0;  // width from the tag's size
    virtual BloqueSerializacion* leeBloque16() = 0;
    virtual BloqueSerializacion* leeBloque32() = 0;
    virtual BloqueSerializacion* leeBloque64() = 0;

    // How many bytes the source still holds; readers of untrusted files check counts and
    // tails against it before they allocate.
    virtual uint64_t bytesDisponibles() { return std::numeric_limits<uint64_t>::max(); }
    // `n` points as leePunto3 reads each, into `puntos`; false, with what came, when the
    // source ends first. A reader may take them in one piece.
    virtual bool leePuntos(Punto3<double>* puntos, size_t n)
    {
        for (size_t i = 0; i < n; ++i)
        {
            if (!leePunto3(puntos[i]))
            {
                return false;
            }
        }
        return true;
    }
};

}  // namespace cad
