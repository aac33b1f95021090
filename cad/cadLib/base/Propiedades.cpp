// Prop's text formatting and the do-nothing base sheet.
#include "base/Propiedades.h"

#include <iomanip>
#include <locale>
#include <sstream>

namespace cad
{

Prop::Prop()
    : tipo(TipoProp::Booleano),
      x(0.0),
      y(0.0),
      z(0.0),
      indiceColor(0),
      colorCapa(0),
      material(0),
      idExterno(0),
      soloLectura(false)
{
}

void Prop::asignaDoble(double v)
{
    std::ostringstream texto;
    // The host and the by-name reads (atof) both expect a '.' decimal point.
    texto.imbue(std::locale::classic());
    texto << std::setprecision(3) << std::setw(12) << v;
    valor = texto.str();
}

void Prop::asignaInt(int v)
{
    valor = std::to_string(v);
}

int Propiedades::numeroCategorias() const
{
    return 1;
}

std::string Propiedades::nombreCategoria(int categoria) const
{
    return categoria == 0 ? "General" : "";
}

int Propiedades::numeroPropiedadesCategoria(int categoria) const
{
    return categoria == 0 ? 1 : 0;
}

bool Propiedades::getPropiedad(int, int, Prop&) const
{
    return false;
}

bool Propiedades::setPropiedad(int, int, const Prop&)
{
    return false;
}

int Propiedades::numeroValoresEnumerados(int, int) const
{
    return 0;
}

bool Propiedades::valorEnumerado(int, int, int, std::string&) const
{
    return false;
}

bool Propiedades::getEnumerado(int, int, int&) const
{
    return false;
}

bool Propiedades::setEnumerado(int, int, int)
{
    return false;
}

int Propiedades::numeroElementosLista(int, int) const
{
    return 0;
}

bool Propiedades::getElementoLista(int, int, int, double&, double&, double&) const
{
    return false;
}

bool Propiedades::setElementoLista(int, int, int, const double*)
{
    return false;
}

}  // namespace cad
