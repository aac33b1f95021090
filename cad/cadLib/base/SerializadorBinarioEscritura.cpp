#include "base/SerializadorBinarioEscritura.h"

#include <cstring>

#include "base/Utf8.h"

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
    if (!escritor.abierto())
    {
        return;
    }
    const int64_t fin = escritor.posicion();
    const uint64_t longitud = static_cast<uint64_t>(fin - posicionLongitud);
    escritor.situa(posicionLongitud);
    if (tipoBloque == kBloque16)
    {
        escritor.escribeLongitud16(static_cast<uint32_t>(longitud));
    }
    else if (tipoBloque == kBloque32)
    {
        escritor.escribeLongitud32(static_cast<uint32_t>(longitud));
    }
    else
    {
        escritor.escribeLongitud64(longitud);
    }
    escritor.situa(fin);
}

SerializadorBinarioEscritura::SerializadorBinarioEscritura(const std::string& ruta)
{
    fichero = abreFicheroUtf8(ruta, "wb");
}

SerializadorBinarioEscritura::~SerializadorBinarioEscritura() { cierra(); }

void SerializadorBinarioEscritura::cierra()
{
    if (fichero != nullptr)
    {
        std::fclose(fichero);
        fichero = nullptr;
    }
}

int64_t SerializadorBinarioEscritura::posicion()
{
    return fichero != nullptr ? static_cast<int64_t>(ftello(fichero)) : 0;
}

void SerializadorBinarioEscritura::situa(int64_t pos)
{
    if (fichero != nullptr)
    {
        fseeko(fichero, static_cast<off_t>(pos), SEEK_SET);
    }
}

void SerializadorBinarioEscritura::escribeBytes(const void* datos, uint32_t n)
{
    if (fichero != nullptr && n > 0)
    {
        std::fwrite(datos, n, 1, fichero);
    }
}

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
    escribeBytes(d, sizeof d);
}

void SerializadorBinarioEscritura::escribePunto3(const Punto3<double>& p)
{
    const double d[3] = {p.x, p.y, p.z};
    escribeBytes(d, sizeof d);
}

void SerializadorBinarioEscritura::escribeVector2(const Vector2D<double>& v)
{
    const double d[2] = {v.x, v.y};
    escribeBytes(d, sizeof d);
}

void SerializadorBinarioEscritura::escribeVector3Simple(const Vector3D<float>& v)
{
    const float d[3] = {v.x, v.y, v.z};
    escribeBytes(d, sizeof d);
}

void SerializadorBinarioEscritura::escribeVector2Simple(const Vector2D<float>& v)
{
    const float d[2] = {v.x, v.y};
    escribeBytes(d, sizeof d);
}

void SerializadorBinarioEscritura::escribeCadena(const std::string& s)
{
    const uint32_t longitud = static_cast<uint32_t>(s.size());
    escribeLongitud16(longitud + (longitud & 1));
    if (longitud != 0)
    {
        escribeBytes(s.data(), longitud);
    }
    if ((longitud & 1) != 0)
    {
        const char cero = 0;
        escribeBytes(&cero, 1);
    }
}

void SerializadorBinarioEscritura::escribeDoble(double v) { escribeBytes(&v, sizeof v); }
void SerializadorBinarioEscritura::escribeFlotante(float v) { escribeBytes(&v, sizeof v); }
void SerializadorBinarioEscritura::escribeEntero(int32_t v) { escribeBytes(&v, sizeof v); }
void SerializadorBinarioEscritura::escribeEnteroSinSigno(uint32_t v) { escribeBytes(&v, sizeof v); }
void SerializadorBinarioEscritura::escribeCorto(int16_t v) { escribeBytes(&v, sizeof v); }
void SerializadorBinarioEscritura::escribeCortoSinSigno(uint16_t v) { escribeBytes(&v, sizeof v); }

void SerializadorBinarioEscritura::escribeCaracter(char v)
{
    escribeBytes(&v, 1);
    escribeBytes(&v, 1);
}

void SerializadorBinarioEscritura::escribeByte(uint8_t v)
{
    escribeBytes(&v, 1);
    escribeBytes(&v, 1);
}

void SerializadorBinarioEscritura::escribeBooleano(bool v)
{
    const uint8_t b = v ? 1 : 0;
    escribeBytes(&b, 1);
    escribeBytes(&b, 1);
}

void SerializadorBinarioEscritura::escribeLongitud16(uint32_t v)
{
    const uint16_t corto = static_cast<uint16_t>(v);
    escribeBytes(&corto, sizeof corto);
}

void SerializadorBinarioEscritura::escribeLongitud32(uint32_t v) { escribeBytes(&v, sizeof v); }
void SerializadorBinarioEscritura::escribeLongitud64(uint64_t v) { escribeBytes(&v, sizeof v); }

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
