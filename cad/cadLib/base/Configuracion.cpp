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
    Color defectos[kNumeroColores];
    for (int i = 0; i < kNumeroColores; ++i)
    {
        defectos[i] = Color(kIndices[i]);
    }
    // The background is the one true colour: dark blue, opaque.
    defectos[kFondo].setABGR(0xFF4B0000u);

    std::lock_guard<std::mutex> guardia(mCerrojo);
    for (int i = 0; i < kNumeroColores; ++i)
    {
        mColores[i].colorCAD = defectos[i].colorCAD;
        mColores[i].mColor = defectos[i].mColor;
    }
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
    std::lock_guard<std::mutex> guardia(mCerrojo);
    return mColores[elemento];
}

void Configuracion::setColor(color_elemento elemento, const Color& c)
{
    if (!dentro(elemento, kNumeroColores))
    {
        return;
    }
    std::lock_guard<std::mutex> guardia(mCerrojo);
    mColores[elemento].colorCAD = c.colorCAD;
    mColores[elemento].mColor = c.mColor;
}

int Configuracion::valor(valor_elemento elemento) const
{
    if (!dentro(elemento, kNumeroValores))
    {
        return 0;
    }
    std::lock_guard<std::mutex> guardia(mCerrojo);
    return mValores[elemento];
}

void Configuracion::setValor(valor_elemento elemento, int v)
{
    if (dentro(elemento, kNumeroValores))
    {
        std::lock_guard<std::mutex> guardia(mCerrojo);
        mValores[elemento] = v;
    }
}

double Configuracion::valorFlotante(valor_flotante elemento) const
{
    if (!dentro(elemento, kNumeroFlotantes))
    {
        return 0.0;
    }
    std::lock_guard<std::mutex> guardia(mCerrojo);
    return mFlotantes[elemento];
}

void Configuracion::setValorFlotante(valor_flotante elemento, double v)
{
    if (dentro(elemento, kNumeroFlotantes))
    {
        std::lock_guard<std::mutex> guardia(mCerrojo);
        mFlotantes[elemento] = v;
    }
}

}  // namespace cad
