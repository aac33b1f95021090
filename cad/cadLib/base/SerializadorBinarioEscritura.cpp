#include "base/SerializadorBinarioEscritura.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "base/Admisible.h"

namespace cad
{

BloqueSerializacionBE::BloqueSerializacionBE(SerializadorBinarioEscritura& w, const char* tag,
                                             int tipo)
    : escritor(w), tipoBloque(tipo), posicionLongitud(0)
{
    escritor.escribeBytes(tag, static_cast<uint32_t>(std::strlen(tag) + 1));
    posicionLongitud = escritor.posicion();
    if (tipoBloque == kBloque16)
    {
        escritor.escribeLongitud16(0);
    }
    else if (tipoBloque == kBloque32)
    {
        escritor.escribeLongitud32(0);
    }
    else
    {
        escritor.escribeLongitud64(0);
    }
}

BloqueSerializacionBE::~BloqueSerializacionBE()
{
    // The u16 and u32 forms keep the low bits: a body that outgrows its field is written as
    // the format stands, and its reader goes by its own counts.
    const auto longitud = static_cast<uint64_t>(escritor.posicion() - posicionLongitud);
    if (tipoBloque == kBloque16)
    {
        const auto v = static_cast<uint16_t>(longitud);
        escritor.reescribe(posicionLongitud, &v, sizeof v);
    }
    else if (tipoBloque == kBloque32)
    {
        const auto v = static_cast<uint32_t>(longitud);
        escritor.reescribe(posicionLongitud, &v, sizeof v);
    }
    else
    {
        escritor.reescribe(posicionLongitud, &longitud, sizeof longitud);
    }
}

SerializadorBinarioEscritura::SerializadorBinarioEscritura(const std::string& ruta)
    : fichero(std::make_unique<FicheroAtomico>(ruta))
{
    activo = fichero->abierto();
}

SerializadorBinarioEscritura::SerializadorBinarioEscritura() : enMemoria(true), activo(true) {}

SerializadorBinarioEscritura::~SerializadorBinarioEscritura() { cierra(); }

bool SerializadorBinarioEscritura::abierto() const
{
    return !cerrado && (enMemoria || fichero->abierto());
}

void SerializadorBinarioEscritura::anadeLento(const void* datos, size_t n)
{
    if (n == 0 || !abierto())
    {
        return;
    }
    if (capacidad - usado < n)
    {
        if (!enMemoria && (usado >= kVolcado || n >= kVolcado))
        {
            vuelca();
            if (n >= kVolcado)
            {
                // A large body goes straight to the file, without a copy.
                fichero->escribe(datos, n);
                base += n;
                return;
            }
        }
        if (capacidad - usado < n)
        {
            const size_t nueva = std::max({capacidad * 2, usado + n, size_t{1} << 16});
            memoria_t mayor = reservaMemoria(nueva);
            if (usado > 0)
            {
                std::memcpy(mayor.get(), memoria.get(), usado);
            }
            memoria = std::move(mayor);
            capacidad = nueva;
        }
    }
    std::memcpy(memoria.get() + usado, datos, n);
    usado += n;
}

void SerializadorBinarioEscritura::vuelca()
{
    if (!enMemoria && usado > 0)
    {
        fichero->escribe(memoria.get(), usado);
        base += usado;
        usado = 0;
    }
}

void SerializadorBinarioEscritura::reescribe(int64_t pos, const void* datos, uint32_t n)
{
    if (!abierto() || pos < 0)
    {
        return;
    }
    auto posicion = static_cast<uint64_t>(pos);
    const auto* p = static_cast<const unsigned char*>(datos);
    if (posicion < base)
    {
        // Already on the file: few blocks span a flush (the outer ones, big bodies).
        const auto antes = static_cast<size_t>(std::min<uint64_t>(n, base - posicion));
        fichero->escribeEn(posicion, p, antes);
        p += antes;
        n -= static_cast<uint32_t>(antes);
        posicion += antes;
    }
    if (n > 0 && posicion - base + n <= usado)
    {
        std::memcpy(memoria.get() + (posicion - base), p, n);
    }
}

bool SerializadorBinarioEscritura::cierra()
{
    if (cerrado)
    {
        return mensaje().empty();
    }
    bool ok = true;
    if (!enMemoria)
    {
        vuelca();
        ok = fichero->confirma();
    }
    cerrado = true;
    activo = false;
    return ok;
}

void SerializadorBinarioEscritura::descarta()
{
    if (!enMemoria)
    {
        fichero->descarta();
    }
    usado = 0;
    cerrado = true;
    activo = false;
}

const std::string& SerializadorBinarioEscritura::mensaje() const
{
    static const std::string kNinguno;
    return enMemoria ? kNinguno : fichero->mensaje();
}

int SerializadorBinarioEscritura::codigoError() const
{
    return enMemoria ? 0 : fichero->codigoError();
}

std::vector<uint8_t> SerializadorBinarioEscritura::bytes() const
{
    return std::vector<uint8_t>(memoria.get(), memoria.get() + usado);
}

void SerializadorBinarioEscritura::escribeBytes(const void* datos, uint32_t n) { anade(datos, n); }

void SerializadorBinarioEscritura::escribeVectorEnteros(const std::vector<int>& v)
{
    escribeLongitud32(static_cast<uint32_t>(v.size()));
    for (int x : v)
    {
        escribeEnteroSinSigno(static_cast<uint32_t>(x));
    }
}

void SerializadorBinarioEscritura::escribeVectorPuntos(const std::vector<Punto3<double>>& v)
{
    escribeLongitud32(static_cast<uint32_t>(v.size()));
    for (const auto& p : v)
    {
        escribePunto3(p);
    }
}

void SerializadorBinarioEscritura::escribePlano(const void* plano) { escribeBytes(plano, 32); }

void SerializadorBinarioEscritura::escribeVector3(const Vector3D<double>& v)
{
    const double d[3] = {v.x, v.y, v.z};
    anade(d, sizeof d);
}

void SerializadorBinarioEscritura::escribePunto3(const Punto3<double>& p)
{
    const double d[3] = {p.x, p.y, p.z};
    anade(d, sizeof d);
}

void SerializadorBinarioEscritura::escribePuntos(const Punto3<double>* puntos, size_t n)
{
    // A point is its three doubles in a row, exactly as escribePunto3 puts them.
    static_assert(sizeof(Punto3<double>) == 3 * sizeof(double));
    anade(puntos, n * sizeof(Punto3<double>));
}

void SerializadorBinarioEscritura::escribeVector2(const Vector2D<double>& v)
{
    const double d[2] = {v.x, v.y};
    anade(d, sizeof d);
}

void SerializadorBinarioEscritura::escribeVector3Simple(const Vector3D<float>& v)
{
    const float d[3] = {v.x, v.y, v.z};
    anade(d, sizeof d);
}

void SerializadorBinarioEscritura::escribeVector2Simple(const Vector2D<float>& v)
{
    const float d[2] = {v.x, v.y};
    anade(d, sizeof d);
}

void SerializadorBinarioEscritura::escribeCadena(const std::string& cadena)
{
    std::string_view s(cadena);
    if (s.size() > kLongitudMaximaCadena)
    {
        size_t n = kLongitudMaximaCadena;
        while (n > 0 && (static_cast<unsigned char>(s[n]) & 0xC0) == 0x80)
        {
            --n;
        }
        s = s.substr(0, n);
    }
    const auto longitud = static_cast<uint32_t>(s.size());
    escribeLongitud16(longitud + (longitud & 1));
    anade(s.data(), longitud);
    if ((longitud & 1) != 0)
    {
        const char cero = 0;
        anade(&cero, 1);
    }
}

void SerializadorBinarioEscritura::escribeDoble(double v) { anade(&v, sizeof v); }
void SerializadorBinarioEscritura::escribeFlotante(float v) { anade(&v, sizeof v); }
void SerializadorBinarioEscritura::escribeEntero(int32_t v) { anade(&v, sizeof v); }
void SerializadorBinarioEscritura::escribeEnteroSinSigno(uint32_t v) { anade(&v, sizeof v); }
void SerializadorBinarioEscritura::escribeCorto(int16_t v) { anade(&v, sizeof v); }
void SerializadorBinarioEscritura::escribeCortoSinSigno(uint16_t v) { anade(&v, sizeof v); }

void SerializadorBinarioEscritura::escribeCaracter(char v)
{
    const char d[2] = {v, v};
    anade(d, 2);
}

void SerializadorBinarioEscritura::escribeByte(uint8_t v)
{
    const uint8_t d[2] = {v, v};
    anade(d, 2);
}

void SerializadorBinarioEscritura::escribeBooleano(bool v)
{
    const uint8_t b = v ? 1 : 0;
    const uint8_t d[2] = {b, b};
    anade(d, 2);
}

void SerializadorBinarioEscritura::escribeLongitud16(uint32_t v)
{
    const auto corto = static_cast<uint16_t>(v);
    anade(&corto, sizeof corto);
}

void SerializadorBinarioEscritura::escribeLongitud32(uint32_t v) { anade(&v, sizeof v); }
void SerializadorBinarioEscritura::escribeLongitud64(uint64_t v) { anade(&v, sizeof v); }

BloqueSerializacion* SerializadorBinarioEscritura::nuevoBloque(const char* tag, int tipoBloque)
{
    if (tipoBloque == kBloque16)
    {
        return nuevoBloque16(tag);
    }
    if (tipoBloque == kBloque32)
    {
        return nuevoBloque32(tag);
    }
    return nuevoBloque64(tag);
}

BloqueSerializacion* SerializadorBinarioEscritura::nuevoBloque16(const char* tag)
{
    return new BloqueSerializacionBE(*this, tag, kBloque16);
}

BloqueSerializacion* SerializadorBinarioEscritura::nuevoBloque32(const char* tag)
{
    return new BloqueSerializacionBE(*this, tag, kBloque32);
}

BloqueSerializacion* SerializadorBinarioEscritura::nuevoBloque64(const char* tag)
{
    return new BloqueSerializacionBE(*this, tag, kBloque64);
}

}  // namespace cad
