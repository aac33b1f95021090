// Property sheets: the value kinds, the Prop record and the Propiedades interface.
#pragma once

#include <cstdint>
#include <string>

namespace cad
{

// The kinds of property value, shared with the host by number. The enumerators sit inside a
// struct because one of them is named Color, which at namespace scope would hide the class
// cad::Color; written TipoProp::Doble, they still convert to int like any unscoped enum.
struct TipoProp
{
    enum Valor : int32_t
    {
        Booleano = 0,
        Entero = 1,
        Doble = 2,
        DoblePositivo = 3,  // the host accepts positive values only
        Cadena = 4,
        Color = 5,         // valor: 0xAARRGGBB in decimal
        ColorCad = 6,      // a value with a palette entry
        Material = 7,      // material and idExterno carry it
        Enumerado = 8,     // valor: the chosen text
        Coordenada = 9,    // x, y, z
        Vector = 10,       // x, y, z
        Orientacion = 11,  // x, y, z
        ListaCoordenadas = 12,
        Leyenda = 13,  // valor is a caption
        // An entity's layer row; the editor turns it into Enumerado before the host sees it.
        kCapaEntidad = 14
    };
};

// One property as it passes between a sheet and the host.
struct Prop
{
    // Empty texts, zero numbers, Booleano, writable.
    Prop();

    // valor = v through a text stream with precision 3 and width 12: three significant
    // digits, left-padded with blanks ("    1.23e+03", "         1.5"). Always a '.'
    // decimal point, whatever the global locale.
    void asignaDoble(double v);
    // valor = v in plain decimal.
    void asignaInt(int v);

    TipoProp::Valor tipo;
    std::string nombre;  // label for the user, also the key of the by-name operations
    std::string valor;   // the value as text
    double x;
    double y;
    double z;
    int32_t indiceColor;  // palette index, 256 by layer, -1 true colour
    uint32_t colorCapa;   // the layer's colour, 0xAARRGGBB
    int16_t material;     // material id
    int32_t idExterno;    // the host's id of the material
    bool soloLectura;     // advice to the host: the sheet may still accept a write
};

// A sheet of categories of properties, each addressed by zero-based category and index.
// The base answers one category, "General", with one property, and does nothing else;
// each operation returns false or 0 when it does nothing, leaving its out arguments alone.
class Propiedades
{
public:
    virtual ~Propiedades() = default;

    virtual int numeroCategorias() const;
    // "General" for category 0; empty for a category the sheet does not have.
    virtual std::string nombreCategoria(int categoria) const;
    // 1 for category 0; 0 for a category the sheet does not have.
    virtual int numeroPropiedadesCategoria(int categoria) const;
    // Fills `p`; false for a property the sheet does not have.
    virtual bool getPropiedad(int categoria, int indice, Prop& p) const;
    // Writes the property from `p`. A read-only flag does not stop it: the sheet decides.
    virtual bool setPropiedad(int categoria, int indice, const Prop& p);
    // How many choices an Enumerado property offers.
    virtual int numeroValoresEnumerados(int categoria, int indice) const;
    // The text of choice i.
    virtual bool valorEnumerado(int categoria, int indice, int i, std::string& texto) const;
    // The chosen choice.
    virtual bool getEnumerado(int categoria, int indice, int& i) const;
    virtual bool setEnumerado(int categoria, int indice, int i);
    // How many elements a ListaCoordenadas property holds.
    virtual int numeroElementosLista(int categoria, int indice) const;
    virtual bool getElementoLista(int categoria, int indice, int i, double& x, double& y,
                                  double& z) const;
    // `xyz` points to three doubles, taken as they are.
    virtual bool setElementoLista(int categoria, int indice, int i, const double* xyz);
};

}  // namespace cad
