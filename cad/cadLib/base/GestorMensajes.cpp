// Message table: lookup with built-in defaults and the message file reader.
#include "base/GestorMensajes.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "base/Utf8.h"

namespace cad
{

namespace
{

struct CierraFichero
{
    void operator()(std::FILE* f) const { std::fclose(f); }
};

// strtok's rule without its hidden static state: leading delimiters are skipped, the token
// ends at the next delimiter, which is overwritten with a zero, and `resto` moves past it.
// Null when nothing but delimiters remains.
char* siguienteToken(char*& resto, const char* delimitadores)
{
    char* inicio = resto + std::strspn(resto, delimitadores);
    if (*inicio == '\0')
    {
        resto = inicio;
        return nullptr;
    }
    char* fin = inicio + std::strcspn(inicio, delimitadores);
    if (*fin != '\0')
    {
        *fin = '\0';
        resto = fin + 1;
    }
    else
    {
        resto = fin;
    }
    return inicio;
}

// atoi for the digits it accepts; atoi itself is undefined on overflow, and these bytes come
// from outside, so out-of-range numbers are clamped instead.
int aEntero(const char* texto)
{
    const long v = std::strtol(texto, nullptr, 10);
    if (v > INT_MAX)
    {
        return INT_MAX;
    }
    if (v < INT_MIN)
    {
        return INT_MIN;
    }
    return static_cast<int>(v);
}

// Consumes a UTF-8 byte-order mark. At the first byte that differs (or end of file) the
// file is rewound, so a partial mark stays part of the first line.
bool saltaMarcaUtf8(std::FILE* f)
{
    static const unsigned char kMarca[3] = {0xEF, 0xBB, 0xBF};
    for (const unsigned char b : kMarca)
    {
        if (std::fgetc(f) != b)
        {
            std::rewind(f);
            return false;
        }
    }
    return true;
}

}  // namespace

GestorMensajes& GestorMensajes::Instancia()
{
    static GestorMensajes gestor;
    return gestor;
}

bool GestorMensajes::cargarFicheroMensajes(const char* fichero)
{
    std::lock_guard<std::mutex> guardia(mCerrojo);
    mMensajes.clear();
    if (fichero == nullptr)
    {
        return false;
    }
    // A malformed path is the caller's error, not the file's: the logic_error from the path
    // check is let through rather than turned into an ordinary failed load.
    std::unique_ptr<std::FILE, CierraFichero> f(abreFicheroUtf8(fichero, "r"));
    if (!f)
    {
        return false;
    }

    // With a mark, lines would be re-encoded into the narrow encoding. That encoding is
    // UTF-8 here, so the bytes are taken as they are either way.
    saltaMarcaUtf8(f.get());

    char linea[kTamanoLinea];
    while (std::fgets(linea, sizeof linea, f.get()) != nullptr)
    {
        if (linea[0] == '\0' || linea[0] == ' ' || linea[0] == '\n')
        {
            continue;
        }
        char* resto = linea;
        const char* grupo = siguienteToken(resto, ",");
        const char* numero = grupo != nullptr ? siguienteToken(resto, ",") : nullptr;
        // The quote delimiter skips the opening quote and stops at the closing one, so
        // commas inside the text stay and the line feed after it is dropped.
        const char* texto = numero != nullptr ? siguienteToken(resto, "\"") : nullptr;
        if (texto == nullptr)
        {
            break;
        }
        mMensajes[aEntero(grupo)][aEntero(numero)] = texto;
    }
    return true;
}

const char* GestorMensajes::mensaje(int grupo, int numero, const char* porDefecto)
{
    std::lock_guard<std::mutex> guardia(mCerrojo);
    auto& delGrupo = mMensajes[grupo];
    auto it = delGrupo.find(numero);
    if (it == delGrupo.end())
    {
        it = delGrupo.emplace(numero, porDefecto != nullptr ? porDefecto : "").first;
    }
    return it->second.c_str();
}

void GestorMensajes::setMensaje(int grupo, int numero, const std::string& texto)
{
    std::lock_guard<std::mutex> guardia(mCerrojo);
    mMensajes[grupo][numero] = texto;
}

}  // namespace cad
