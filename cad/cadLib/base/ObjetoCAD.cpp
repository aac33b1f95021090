#include "base/ObjetoCAD.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"

namespace cad
{

namespace
{

unsigned char* copiaBuffer(const unsigned char* origen, uint32_t tamano)
{
    if (origen == nullptr || tamano == 0)
    {
        return nullptr;
    }
    auto* copia = static_cast<unsigned char*>(std::malloc(tamano));
    if (copia == nullptr)
    {
        throw std::bad_alloc();
    }
    std::memcpy(copia, origen, tamano);
    return copia;
}

}  // namespace

ObjetoCAD::ObjetoCAD(const ObjetoCAD& otro)
    : id(otro.id),
      datosDesconocidos(copiaBuffer(otro.datosDesconocidos, otro.tamanoDatosDesconocidos)),
      tamanoDatosDesconocidos(datosDesconocidos != nullptr ? otro.tamanoDatosDesconocidos : 0)
{
}

ObjetoCAD& ObjetoCAD::operator=(const ObjetoCAD& otro)
{
    if (this != &otro)
    {
        unsigned char* copia = copiaBuffer(otro.datosDesconocidos, otro.tamanoDatosDesconocidos);
        std::free(datosDesconocidos);
        id = otro.id;
        datosDesconocidos = copia;
        tamanoDatosDesconocidos = copia != nullptr ? otro.tamanoDatosDesconocidos : 0;
    }
    return *this;
}

ObjetoCAD::~ObjetoCAD() { std::free(datosDesconocidos); }

bool ObjetoCAD::finLectura(SerializadorLecturaBase& r, BloqueSerializacion* bloque)
{
    if (bloque == nullptr)
    {
        return true;
    }
    const uint64_t restante = bloque->restante();
    delete bloque;
    const auto tamano = static_cast<uint32_t>(restante);
    if (tamano == 0)
    {
        return true;
    }
    std::free(datosDesconocidos);
    datosDesconocidos = nullptr;
    tamanoDatosDesconocidos = 0;
    // A length field from a damaged file may claim more than the file holds: refuse it
    // before allocating, as the read of that tail would fail anyway.
    if (tamano > r.bytesDisponibles())
    {
        return false;
    }
    datosDesconocidos = static_cast<unsigned char*>(std::malloc(tamano));
    if (datosDesconocidos == nullptr)
    {
        throw std::bad_alloc();
    }
    tamanoDatosDesconocidos = tamano;
    return r.leeBytes(datosDesconocidos, tamano);
}

void ObjetoCAD::escribeDatosDesconocidos(SerializadorEscrituraBase& w)
{
    if (datosDesconocidos != nullptr)
    {
        w.escribeBytes(datosDesconocidos, tamanoDatosDesconocidos);
    }
}

void ObjetoCAD::setId(uint64_t base, int32_t n)
{
    id = base + static_cast<uint64_t>(static_cast<int64_t>(n));
}

}  // namespace cad
