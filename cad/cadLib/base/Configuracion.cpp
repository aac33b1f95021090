// Defaults and accessors of the process-wide display settings.
#include "base/Configuracion.h"

namespace cad
{

namespace
{

// Host enumerations arrive as plain integers, so the element is checked before indexing
// rather than trusting the enum type.
bool dentro(int elemento, int numero)
{
    return elemento >= 0 && elemento < numero;
}

}  // namespace

Configuracion& Configuracion::instancia()
{
    static Configuracion configuracion;
    return configuracion;
}

Configuracion::Configuracion()
{
    restableceDefectos();
}

void Configuracion::restableceDefectos()
{
    static const int kIndices[kNumeroColores] = {4, 5, 5, 5, 6, 2, 3, 3, 0, 6, 3};
    for (int i = 0; i < kNumeroColores; ++i)
    {
        Color porDefecto(kIndices[i]);
        setColor(static_cast<color_elemento>(i), porDefecto);
    }
    // The background is the one true colour: dark blue, opaque.
    Color fondo;
    fondo.setABGR(0xFF4B0000u);
    setColor(kFondo, fondo);

    mValores[kVentanaReferencia] = 10;
    mValores[kNumeroPuntosVisibles] = 4000000;
    mFlotantes[kFactorFlotante] = 4.0;
}

Color Configuracion::color(color_elemento elemento) const
{
    if (!dentro(elemento, kNumeroColores))
    {
        return Color();
    }
    return mColores[elemento];
}

void Configuracion::setColor(color_elemento elemento, const Color& c)
{
    if (!dentro(elemento, kNumeroColores))
    {
        return;
    }
    mColores[elemento].colorCAD = c.colorCAD;
    mColores[elemento].mColor = c.mColor;
}

int Configuracion::valor(valor_elemento elemento) const
{
    return dentro(elemento, kNumeroValores) ? mValores[elemento] : 0;
}

void Configuracion::setValor(valor_elemento elemento, int v)
{
    if (dentro(elemento, kNumeroValores))
    {
        mValores[elemento] = v;
    }
}

double Configuracion::valorFlotante(valor_flotante elemento) const
{
    return dentro(elemento, kNumeroFlotantes) ? mFlotantes[elemento] : 0.0;
}

void Configuracion::setValorFlotante(valor_flotante elemento, double v)
{
    if (dentro(elemento, kNumeroFlotantes))
    {
        mFlotantes[elemento] = v;
    }
}

}  // namespace cad
