#include "editor/LineaComandos.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include <strings.h>

#include "base/Admisible.h"

namespace cad
{

void LineaComandos::cancelaComando()
{
    cancelado = true;
}

void LineaComandos::introPulsado(const char* texto)
{
    if (texto == nullptr)
    {
        texto = "";
    }
    entradaRecibida = true;
    entrada = texto;
    opcion = -1;
    if (entrada.empty())
    {
        entradaVacia = true;
        return;
    }
    if (esperaCoordenadas)
    {
        coordenadasValidas = false;
        // strtok on "," alone: blanks are not delimiters, and empty fields vanish, so ","
        // gives no field at all and "5" changes x without making valid coordinates.
        std::vector<char> copia(entrada.begin(), entrada.end());
        copia.push_back('\0');
        char* resto = nullptr;
        double campos[3] = {0.0, 0.0, 0.0};
        size_t n = 0;
        for (const char* campo = strtok_r(copia.data(), ",", &resto); campo != nullptr && n < 3;
             campo = strtok_r(nullptr, ",", &resto))
        {
            campos[n++] = std::atof(campo);
        }
        // atof also reads "nan", "inf" and overflows ("1e999"): such a line is no coordinate
        // at all, and the former coordinates stand.
        if (numerosFinitos(campos, n))
        {
            if (n >= 1)
            {
                coordenadas.x = campos[0];
            }
            if (n >= 2)
            {
                coordenadas.y = campos[1];
                coordenadas.z = n == 3 ? campos[2] : 0.0;
                coordenadasValidas = true;
            }
        }
    }
    if (esperaValor && !coordenadasValidas)
    {
        char* fin = nullptr;
        const double v = std::strtod(entrada.c_str(), &fin);
        // A non-finite number is no value either; it is not kept.
        valorValido = fin != nullptr && *fin == '\0' && std::isfinite(v);
        if (std::isfinite(v))
        {
            valor = v;
        }
    }
    std::string mayusculas = entrada;
    for (char& c : mayusculas)
    {
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    for (size_t i = 0; i < opciones.size(); ++i)
    {
        if (coincideOpcion(opciones[i], entrada, mayusculas))
        {
            opcion = static_cast<int32_t>(i);
            break;
        }
    }
}

bool LineaComandos::coincideOpcion(const std::string& opcion, const std::string& linea,
                                   const std::string& mayusculas)
{
    if (strcasecmp(linea.c_str(), opcion.c_str()) == 0)
    {
        return true;
    }
    std::string capitales;
    for (char c : opcion)
    {
        if (c >= 'A' && c <= 'Z')
        {
            capitales.push_back(c);
        }
    }
    return !capitales.empty() && mayusculas == capitales;
}

void LineaComandos::borraEntradaLineaComandos()
{
    valorValido = false;
    coordenadasValidas = false;
    entradaRecibida = false;
    entradaVacia = false;
    opcion = -1;
    entrada.clear();
}

void LineaComandos::limpiaEntrada()
{
    borraEntradaLineaComandos();
    esperaCoordenadas = true;
}

void LineaComandos::limpiaEntradaCompleta()
{
    limpiaEntrada();
    opciones.clear();
}

int LineaComandos::nuevaOpcion(const char* texto)
{
    const int indice = static_cast<int>(opciones.size());
    opciones.emplace_back(texto != nullptr ? texto : "");
    return indice;
}

bool LineaComandos::textoOpciones(std::string& texto) const
{
    if (opciones.empty())
    {
        return false;
    }
    texto.clear();
    for (size_t i = 0; i < opciones.size(); ++i)
    {
        if (i > 0)
        {
            texto += "/";
        }
        texto += opciones[i];
    }
    return true;
}

}  // namespace cad
