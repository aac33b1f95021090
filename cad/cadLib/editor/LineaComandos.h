// The typed answer of the moment: the last line the user entered, parsed every way it could
// be meant (coordinates, a number, an option of the prompt).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/geometria/Punto3.h"

namespace cad
{

// There is no command language here: a line only answers the prompt that is showing. The
// waits of the editor read the fields after each step of the event pump and decide by what
// they accept which reading holds.
class LineaComandos
{
public:
    LineaComandos() = default;
    virtual ~LineaComandos() = default;
    LineaComandos(const LineaComandos&) = delete;
    LineaComandos& operator=(const LineaComandos&) = delete;

    // The user cancelled. The base only raises the flag; the editor also drops its drags.
    virtual void cancelaComando();

    // Stores and parses a typed line (UTF-8, without the line end). Never fails. A field that
    // reads as no finite number ("nan", "inf", "1e999") makes the line neither coordinates
    // nor a value, and leaves `coordenadas` and `valor` as they were.
    void introPulsado(const char* texto);
    const std::vector<std::string>& listaOpciones() const { return opciones; }
    bool esperaRecibirCoordenadas() const { return esperaCoordenadas; }
    bool esperaRecibirValor() const { return esperaValor; }
    // The reset, without setting esperaCoordenadas.
    void borraEntradaLineaComandos();
    // Appends an option word and returns its index. Capital letters A to Z in the word are
    // its short form: "insertar(Despues)" answers to "d".
    int nuevaOpcion(const char* opcion);
    // The options joined with "/"; false when there are none.
    bool textoOpciones(std::string& texto) const;

    // The reset every wait uses; the full reset also forgets the options.
    void limpiaEntrada();
    void limpiaEntradaCompleta();

    bool cancelado = false;
    bool terminado = false;  // end the wait without an answer and without a message
    bool entradaRecibida = false;
    bool entradaVacia = false;
    bool esperaCoordenadas = true;
    bool coordenadasValidas = false;
    bool esperaValor = true;
    bool valorValido = false;
    Punto3<double> coordenadas;
    double valor = 0.0;
    int32_t opcion = -1;
    std::vector<std::string> opciones;
    std::string entrada;

private:
    // Whether `linea` (as typed, and in capitals) answers to the option word.
    static bool coincideOpcion(const std::string& opcion, const std::string& linea,
                               const std::string& mayusculas);
};

}  // namespace cad
