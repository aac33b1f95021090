// Text encoding of DXF files: Windows-1252 and "\U+XXXX" escapes to and from UTF-8.
#include "intercambio/CodificacionDXF.h"

#include <cstdint>

#include "base/Utf8.h"
#include "intercambio/PaginasCodigos.h"

namespace cad
{

namespace
{

// Windows-1252 bytes 0x80 to 0xFF; the five it leaves undefined map to the same code point,
// as Latin-1 does, so that no byte is lost.
const char16_t* altos1252()
{
    static const char16_t* const tabla = altosPagina("ANSI_1252");
    return tabla;
}

// Decodes one UTF-8 sequence at `i`; its length in `largo`, 0 when the bytes are not a valid,
// shortest-form sequence of a scalar value.
uint32_t leeUTF8(std::string_view t, size_t i, size_t& largo)
{
    const auto b = [&](size_t k) { return static_cast<unsigned char>(t[k]); };
    const unsigned char c = b(i);
    largo = 0;
    size_t n = 0;
    uint32_t v = 0;
    uint32_t minimo = 0;
    if (c < 0x80)
    {
        largo = 1;
        return c;
    }
    if ((c & 0xE0) == 0xC0)
    {
        n = 2;
        v = c & 0x1F;
        minimo = 0x80;
    }
    else if ((c & 0xF0) == 0xE0)
    {
        n = 3;
        v = c & 0x0F;
        minimo = 0x800;
    }
    else if ((c & 0xF8) == 0xF0)
    {
        n = 4;
        v = c & 0x07;
        minimo = 0x10000;
    }
    else
    {
        return 0;
    }
    if (i + n > t.size())
    {
        return 0;
    }
    for (size_t k = 1; k < n; ++k)
    {
        if ((b(i + k) & 0xC0) != 0x80)
        {
            return 0;
        }
        v = (v << 6) | (b(i + k) & 0x3F);
    }
    if (v < minimo || v > 0x10FFFF || (v >= 0xD800 && v <= 0xDFFF))
    {
        return 0;
    }
    largo = n;
    return v;
}

int byte1252(uint32_t c)
{
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF))
    {
        return static_cast<int>(c);
    }
    for (int k = 0; k < 32; ++k)
    {
        if (altos1252()[k] == c)
        {
            return 0x80 + k;
        }
    }
    return -1;
}

void anadeEscape(std::string& s, uint32_t c)
{
    static const char kHex[] = "0123456789ABCDEF";
    s += "\\U+";
    for (int desplazamiento = 12; desplazamiento >= 0; desplazamiento -= 4)
    {
        s += kHex[(c >> desplazamiento) & 0xF];
    }
}

int valorHex(char c)
{
    if (c >= '0' && c <= '9')
    {
        return c - '0';
    }
    if (c >= 'A' && c <= 'F')
    {
        return c - 'A' + 10;
    }
    if (c >= 'a' && c <= 'f')
    {
        return c - 'a' + 10;
    }
    return -1;
}

// The code unit of an escape "\U+XXXX" at `i`, or -1.
int32_t escapeEn(std::string_view t, size_t i)
{
    if (i + 7 > t.size() || t[i] != '\\' || (t[i + 1] != 'U' && t[i + 1] != 'u') || t[i + 2] != '+')
    {
        return -1;
    }
    int32_t v = 0;
    for (size_t k = i + 3; k < i + 7; ++k)
    {
        const int h = valorHex(t[k]);
        if (h < 0)
        {
            return -1;
        }
        v = v * 16 + h;
    }
    return v;
}

}  // namespace

std::string utf8ADXF(std::string_view texto)
{
    std::string s;
    s.reserve(texto.size());
    for (size_t i = 0; i < texto.size();)
    {
        // A backslash that would start an escape in the text itself is escaped in turn, or a
        // reader would take the characters for one.
        if (texto[i] == '\\' && escapeEn(texto, i) >= 0)
        {
            anadeEscape(s, '\\');
            ++i;
            continue;
        }
        size_t largo = 0;
        const uint32_t c = leeUTF8(texto, i, largo);
        if (largo == 0)
        {
            s += texto[i];
            ++i;
            continue;
        }
        i += largo;
        const int b = byte1252(c);
        if (b >= 0)
        {
            s += static_cast<char>(b);
        }
        else if (c < 0x10000)
        {
            anadeEscape(s, c);
        }
        else
        {
            anadeEscape(s, 0xD800 + ((c - 0x10000) >> 10));
            anadeEscape(s, 0xDC00 + ((c - 0x10000) & 0x3FF));
        }
    }
    return s;
}

bool dxfSinCambios(std::string_view valor)
{
    for (const char c : valor)
    {
        if (static_cast<unsigned char>(c) >= 0x80 || c == '\\')
        {
            return false;
        }
    }
    return true;
}

std::string dxfAUTF8(std::string_view valor, codificacionDXF codificacion, const char16_t* altos)
{
    if (dxfSinCambios(valor))
    {
        return std::string(valor);
    }
    std::string s;
    s.reserve(valor.size() + valor.size() / 2);
    for (size_t i = 0; i < valor.size();)
    {
        const int32_t e = escapeEn(valor, i);
        if (e >= 0)
        {
            if (e >= 0xD800 && e <= 0xDBFF)
            {
                const int32_t baja = escapeEn(valor, i + 7);
                if (baja >= 0xDC00 && baja <= 0xDFFF)
                {
                    anadeUTF8(s, 0x10000 + ((static_cast<uint32_t>(e) - 0xD800) << 10) +
                                     (static_cast<uint32_t>(baja) - 0xDC00));
                    i += 14;
                    continue;
                }
            }
            if (e < 0xD800 || e > 0xDFFF)
            {
                anadeUTF8(s, static_cast<uint32_t>(e));
                i += 7;
                continue;
            }
        }
        const unsigned char b = static_cast<unsigned char>(valor[i]);
        if (b < 0x80)
        {
            s += valor[i];
            ++i;
            continue;
        }
        if (codificacion == codificacionDXF::kUTF8)
        {
            size_t largo = 0;
            leeUTF8(valor, i, largo);
            if (largo != 0)
            {
                s.append(valor.substr(i, largo));
                i += largo;
                continue;
            }
        }
        if (altos != nullptr && codificacion != codificacionDXF::kUTF8)
        {
            anadeUTF8(s, altos[b - 0x80]);
        }
        else
        {
            anadeUTF8(s, altos1252()[b - 0x80]);
        }
        ++i;
    }
    return s;
}

codificacionDXF codificacionDeCabecera(std::string_view version, std::string_view paginaCodigos)
{
    (void)paginaCodigos;
    // Versions are "AC" and four digits; from AC1021 on texts are UTF-8.
    if (version.size() == 6 && version.substr(0, 2) == "AC" && version.substr(2) >= "1021")
    {
        return codificacionDXF::kUTF8;
    }
    return codificacionDXF::kWindows1252;
}

}  // namespace cad
