#include "base/SerializadorBinarioLectura.h"

#include <algorithm>
#include <cstring>

#include "base/FicheroAtomico.h"

namespace cad
{

BloqueSerializacionBL::BloqueSerializacionBL(SerializadorBinarioLectura& r, int tipo)
    : lector(r), tipoBloque(tipo)
{
    int ultimo = 3;
    const bool leida = lector.leeBytes(etiqueta, 4);
    if (!leida)
    {
        // A short read may have filled part of the tag: a cut header must not pass for it.
        std::memset(etiqueta, 0, sizeof etiqueta);
    }
    else if (etiqueta[3] != '\0')
    {
        // The tag's length is unknown: 2 more bytes while the last is not zero. The buffer
        // bounds the loop, so a file without a terminator cannot run past it.
        while (etiqueta[ultimo] != '\0' && ultimo + 2 < static_cast<int>(sizeof etiqueta))
        {
            lector.leeBytes(etiqueta + ultimo + 1, 2);
            ultimo += 2;
        }
    }
    if (tipoBloque < 0)
    {
        tipoBloque = ultimo == 3 ? kBloque16 : (ultimo == 7 ? kBloque32 : kBloque64);
    }
    posicionLongitud = lector.posicion();
    if (tipoBloque == kBloque16)
    {
        uint32_t l = 0;
        lector.leeLongitud16(l);
        longitud = l;
    }
    else if (tipoBloque == kBloque32)
    {
        uint32_t l = 0;
        lector.leeLongitud32(l);
        longitud = l;
    }
    else
    {
        lector.leeLongitud64(longitud);
    }
}

bool BloqueSerializacionBL::esTipo(const char* tag) const
{
    // A tag that filled the buffer has no terminator and equals no tag of the format.
    const size_t n = std::strlen(tag);
    return n < sizeof etiqueta && std::memcmp(etiqueta, tag, n + 1) == 0;
}

void BloqueSerializacionBL::tipo(char* destino) const
{
    size_t n = 0;
    while (n < sizeof etiqueta - 1 && etiqueta[n] != '\0')
    {
        destino[n] = etiqueta[n];
        ++n;
    }
    destino[n] = '\0';
}

uint64_t BloqueSerializacionBL::restante() const
{
    const uint64_t fin = static_cast<uint64_t>(posicionLongitud) + longitud;
    const auto posicion = static_cast<uint64_t>(lector.posicion());
    if (posicion > fin)
    {
        // A body larger than its u16 or u32 field wraps the length when it is written; read
        // by its own counts to an end whole turns beyond the stored length, nothing of it is
        // left. Any other overrun answers as it always did: a count no file holds.
        const uint64_t exceso = posicion - fin;
        if ((tipoBloque == kBloque16 && (exceso & 0xFFFFu) == 0) ||
            (tipoBloque == kBloque32 && (exceso & 0xFFFFFFFFu) == 0))
        {
            return 0;
        }
    }
    return fin - posicion;
}

SerializadorBinarioLectura::SerializadorBinarioLectura(const std::string& ruta)
{
    FicheroLeido fichero(ruta);
    if (!fichero.ok())
    {
        error = fichero.codigoError();
        texto = fichero.mensaje();
        return;
    }
    tamano_ = fichero.tamano();
    propios = fichero.suelta();
    datos_ = propios.get();
}

SerializadorBinarioLectura::SerializadorBinarioLectura(std::FILE* flujo)
{
    if (flujo == nullptr)
    {
        return;
    }
    size_t capacidad = size_t{1} << 16;
    propios = reservaMemoria(capacidad);
    for (;;)
    {
        if (tamano_ == capacidad)
        {
            memoria_t mayor = reservaMemoria(capacidad * 2);
            std::memcpy(mayor.get(), propios.get(), tamano_);
            propios = std::move(mayor);
            capacidad *= 2;
        }
        const size_t n = std::fread(propios.get() + tamano_, 1, capacidad - tamano_, flujo);
        if (n == 0)
        {
            break;
        }
        tamano_ += n;
    }
    std::fclose(flujo);
    datos_ = propios.get();
}

SerializadorBinarioLectura::SerializadorBinarioLectura(const unsigned char* datos, size_t n)
    : datos_(datos), tamano_(datos != nullptr ? n : 0)
{
}

void SerializadorBinarioLectura::cierra()
{
    propios.reset();
    datos_ = nullptr;
    tamano_ = 0;
    actual = 0;
}

bool SerializadorBinarioLectura::situa(int64_t pos)
{
    if (datos_ == nullptr || pos < 0)
    {
        return false;
    }
    actual = std::min(static_cast<size_t>(pos), tamano_);
    return true;
}

uint64_t SerializadorBinarioLectura::bytesDisponibles()
{
    return tamano_ - actual;
}

bool SerializadorBinarioLectura::leeBytes(void* destino, uint32_t n)
{
    if (datos_ == nullptr)
    {
        return false;
    }
    if (n == 0)
    {
        return true;
    }
    // A short source gives what it has and the failure, as a short read of a stream would.
    const size_t hay = std::min<size_t>(n, tamano_ - actual);
    std::memcpy(destino, datos_ + actual, hay);
    actual += hay;
    return hay == n;
}

template <typename T>
bool SerializadorBinarioLectura::leeValor(T& v)
{
    if (tamano_ - actual < sizeof(T) || datos_ == nullptr)
    {
        return leeBytes(&v, sizeof(T));
    }
    std::memcpy(&v, datos_ + actual, sizeof(T));
    actual += sizeof(T);
    return true;
}

bool SerializadorBinarioLectura::leeVectorEnteros(std::vector<int>& v)
{
    v.clear();
    uint32_t cuenta = 0;
    if (!leeLongitud32(cuenta))
    {
        return false;
    }
    if (static_cast<int32_t>(cuenta) <= 0)
    {
        return true;
    }
    // No reserve: items come one by one, so a lying count ends at the file's end.
    for (uint32_t i = 0; i < cuenta; ++i)
    {
        uint32_t x = 0;
        if (!leeEnteroSinSigno(x))
        {
            return false;
        }
        v.push_back(static_cast<int>(x));
    }
    return true;
}

bool SerializadorBinarioLectura::leeVectorPuntos(std::vector<Punto3<double>>& v)
{
    v.clear();
    uint32_t cuenta = 0;
    if (!leeLongitud32(cuenta))
    {
        return false;
    }
    if (static_cast<int32_t>(cuenta) <= 0)
    {
        return true;
    }
    for (uint32_t i = 0; i < cuenta; ++i)
    {
        Punto3<double> p;
        if (!leePunto3(p))
        {
            return false;
        }
        v.push_back(p);
    }
    return true;
}

bool SerializadorBinarioLectura::leePuntos(Punto3<double>* puntos, size_t n)
{
    static_assert(sizeof(Punto3<double>) == 3 * sizeof(double));
    const size_t bytes = n * sizeof(Punto3<double>);
    if (n == 0)
    {
        return true;
    }
    if (datos_ == nullptr || tamano_ - actual < bytes)
    {
        return SerializadorLecturaBase::leePuntos(puntos, n);
    }
    std::memcpy(static_cast<void*>(puntos), datos_ + actual, bytes);
    actual += bytes;
    return true;
}

bool SerializadorBinarioLectura::leePlano(void* plano) { return leeBytes(plano, 32); }

bool SerializadorBinarioLectura::leeVector3(Vector3D<double>& v)
{
    double d[3] = {v.x, v.y, v.z};
    const bool ok = leeValor(d);
    v.x = d[0];
    v.y = d[1];
    v.z = d[2];
    return ok;
}

bool SerializadorBinarioLectura::leePunto3(Punto3<double>& p)
{
    double d[3] = {p.x, p.y, p.z};
    const bool ok = leeValor(d);
    p.x = d[0];
    p.y = d[1];
    p.z = d[2];
    return ok;
}

bool SerializadorBinarioLectura::leeVector2(Vector2D<double>& v)
{
    double d[2] = {v.x, v.y};
    const bool ok = leeValor(d);
    v.x = d[0];
    v.y = d[1];
    return ok;
}

bool SerializadorBinarioLectura::leeVector3Simple(Vector3D<float>& v)
{
    float d[3] = {v.x, v.y, v.z};
    const bool ok = leeValor(d);
    v.x = d[0];
    v.y = d[1];
    v.z = d[2];
    return ok;
}

bool SerializadorBinarioLectura::leeVector2Simple(Vector2D<float>& v)
{
    float d[2] = {v.x, v.y};
    const bool ok = leeValor(d);
    v.x = d[0];
    v.y = d[1];
    return ok;
}

bool SerializadorBinarioLectura::leeCadena(std::string& s)
{
    uint32_t longitud = 0;
    if (!leeLongitud16(longitud))
    {
        return false;
    }
    if (longitud == 0)
    {
        s.clear();
        return true;
    }
    // A damaged file may claim more than it holds: fail at its end without sizing for it.
    if (longitud > bytesDisponibles())
    {
        s.clear();
        situa(static_cast<int64_t>(tamano_));
        return false;
    }
    s.assign(longitud, '\0');
    const bool ok = leeBytes(s.data(), longitud);
    const size_t cero = s.find('\0');
    if (cero != std::string::npos)
    {
        s.resize(cero);
    }
    return ok;
}

bool SerializadorBinarioLectura::leeDoble(double& v) { return leeValor(v); }
bool SerializadorBinarioLectura::leeFlotante(float& v) { return leeValor(v); }
bool SerializadorBinarioLectura::leeEntero(int32_t& v) { return leeValor(v); }
bool SerializadorBinarioLectura::leeEnteroSinSigno(uint32_t& v) { return leeValor(v); }
bool SerializadorBinarioLectura::leeCorto(int16_t& v) { return leeValor(v); }
bool SerializadorBinarioLectura::leeCortoSinSigno(uint16_t& v) { return leeValor(v); }

bool SerializadorBinarioLectura::leeCaracter(char& v)
{
    const bool ok = leeBytes(&v, 1);
    leeBytes(&v, 1);
    return ok;
}

bool SerializadorBinarioLectura::leeByte(uint8_t& v)
{
    const bool ok = leeBytes(&v, 1);
    leeBytes(&v, 1);
    return ok;
}

bool SerializadorBinarioLectura::leeBooleano(bool& v)
{
    // Read as a byte: a file may hold any value, and a bool holding other than 0 or 1 is
    // undefined; any non-zero byte reads as true.
    uint8_t b = v ? 1 : 0;
    const bool ok = leeBytes(&b, 1);
    leeBytes(&b, 1);
    v = b != 0;
    return ok;
}

bool SerializadorBinarioLectura::leeLongitud16(uint32_t& v)
{
    v = 0;
    uint16_t corto = 0;
    const bool ok = leeBytes(&corto, sizeof corto);
    v = corto;
    return ok;
}

bool SerializadorBinarioLectura::leeLongitud32(uint32_t& v)
{
    v = 0;
    return leeBytes(&v, sizeof v);
}

bool SerializadorBinarioLectura::leeLongitud64(uint64_t& v)
{
    v = 0;
    return leeBytes(&v, sizeof v);
}

bool SerializadorBinarioLectura::compruebaCadena(const char* literal)
{
    const size_t n = std::strlen(literal);
    std::string leido(n, '\0');
    if (!leeBytes(leido.data(), static_cast<uint32_t>(n)))
    {
        return false;
    }
    return std::memcmp(leido.data(), literal, n) == 0;
}

bool SerializadorBinarioLectura::espia(void* datos, uint32_t n)
{
    const int64_t antes = posicion();
    const bool ok = leeBytes(datos, n);
    situa(antes);
    return ok;
}

BloqueSerializacion* SerializadorBinarioLectura::leeBloque()
{
    return new BloqueSerializacionBL(*this, -1);
}

BloqueSerializacion* SerializadorBinarioLectura::leeBloque16()
{
    return new BloqueSerializacionBL(*this, kBloque16);
}

BloqueSerializacion* SerializadorBinarioLectura::leeBloque32()
{
    return new BloqueSerializacionBL(*this, kBloque32);
}

BloqueSerializacion* SerializadorBinarioLectura::leeBloque64()
{
    return new BloqueSerializacionBL(*this, kBloque64);
}

}  // namespace cad
