// What an entity reads of the drawing that paints it. The drawing's paint loop opens a scope on
// its thread; a camera, a control point or a model asks it, from its own dibuja, whether a
// variable is set. Outside a paint (one entity painted alone, the DXF writer) no drawing
// answers: no variable exists and the defaults hold.
#pragma once

namespace cad
{

class Dibujo;

// Variables whose existence is a switch of the host (the facade sets and clears them).
inline constexpr const char* kVarOcultaModelos = "OCULTA_MODELOS";
inline constexpr const char* kVarOcultaCamaras = "OCULTA_CAMARAS";
inline constexpr const char* kVarOcultaPuntosControl = "OCULTA_PUNTOS_CONTROL";
inline constexpr const char* kVarOcultaPlanoReferencia = "OCULTA_PLANO_REFERENCIA";
// Integer variables: how models and clouds are shown (representacion_modelos, _nubes).
inline constexpr const char* kVarRepresentacionModelos = "REPRESENTACION_MODELOS";
inline constexpr const char* kVarRepresentacionNubes = "REPRESENTACION_NUBES";

// The representation of a model whose entity keeps none, with no drawing variable: shaded.
inline constexpr int kRepresentacionModelosDefecto = 1;

// Whether the drawing painting on this thread has the variable `nombre`.
bool existeVariablePintura(const char* nombre);
// The integer variable `nombre` of the drawing painting on this thread, or `porDefecto`.
int variableEnteraPintura(const char* nombre, int porDefecto);

// Makes `dibujo` the drawing painting on this thread for the scope's life; scopes nest.
class AmbitoPintura
{
public:
    explicit AmbitoPintura(const Dibujo* dibujo);
    ~AmbitoPintura();
    AmbitoPintura(const AmbitoPintura&) = delete;
    AmbitoPintura& operator=(const AmbitoPintura&) = delete;

private:
    const Dibujo* anterior;
};

}  // namespace cad
