#include "base/Utf8.h"

#include <cstdint>
#include <stdexcept>

namespace cad
{

std::u16string utf8AUtf16(const std::string& texto)
{
    std::u16string salida;
    salida.reserve(texto.size());
    const auto* p = reinterpret_cast<const unsigned char*>(texto.data());
    const size_t n = texto.size();
    size_t i = 0;
    auto falla = []() { throw std::logic_error("not a UTF-8 string"); };
    while (i < n)
    {
        const unsigned char c = p[i];
        uint32_t cp = 0;
        int resto = 0;
        if (c < 0x80)
        {
            cp = c;
        }
        else if (c < 0xC0)
        {
            falla();  // continuation byte with no lead
        }
        else if (c < 0xE0)
        {
            cp = c & 0x1F;
            resto = 1;
        }
        else if (c < 0xF0)
        {
            cp = c & 0x0F;
            resto = 2;
        }
        else if (c <= 0xF7)
        {
            cp = c & 0x07;
            resto = 3;
        }
        else
        {
            falla();
        }
        ++i;
        for (int k = 0; k < resto; ++k, ++i)
        {
            if (i >= n || (p[i] & 0xC0) != 0x80)
            {
                falla();
            }
            cp = (cp << 6) | (p[i] & 0x3F);
        }
        if ((cp >= 0xD800 && cp <= 0xDFFF) || cp > 0x10FFFF)
        {
            falla();
        }
        if (cp > 0xFFFF)
        {
            cp -= 0x10000;
            salida.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
            salida.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
        }
        else
        {
            salida.push_back(static_cast<char16_t>(cp));
        }
    }
    return salida;
}

void anadeUTF8(std::string& salida, uint32_t cp)
{
    if (cp < 0x80)
    {
        salida.push_back(static_cast<char>(cp));
    }
    else if (cp < 0x800)
    {
        salida.push_back(static_cast<char>(0xC0 | (cp >> 6)));
        salida.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
    else if (cp < 0x10000)
    {
        salida.push_back(static_cast<char>(0xE0 | (cp >> 12)));
        salida.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        salida.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
    else
    {
        salida.push_back(static_cast<char>(0xF0 | (cp >> 18)));
        salida.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
        salida.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        salida.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

std::string utf16AUtf8(const std::u16string& texto)
{
    std::string salida;
    salida.reserve(texto.size());
    for (size_t i = 0; i < texto.size(); ++i)
    {
        uint32_t cp = texto[i];
        if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < texto.size() && texto[i + 1] >= 0xDC00 &&
            texto[i + 1] <= 0xDFFF)
        {
            cp = 0x10000 + ((cp - 0xD800) << 10) + (texto[i + 1] - 0xDC00);
            ++i;
        }
        else if (cp >= 0xD800 && cp <= 0xDFFF)
        {
            cp = 0xFFFD;
        }
        anadeUTF8(salida, cp);
    }
    return salida;
}

std::FILE* abreFicheroUtf8(const std::string& ruta, const char* modo)
{
    // The round trip through UTF-16 is the validation; on Linux the UTF-8 bytes name the file.
    utf8AUtf16(ruta);
    return std::fopen(ruta.c_str(), modo);
}

}  // namespace cad
