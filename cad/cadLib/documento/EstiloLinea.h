// Line styles: width and dash pattern, owned by a layer or by an entity.
#pragma once

#include <cstdint>

#include "base/ObjetoCAD.h"

namespace cad
{

// Written inside its owner's block, 10 bytes: grosor as f64, then patron as i16. porCapa is
// not stored, so a read keeps whatever the owning flavour set.
class EstiloLinea : public ObjetoCAD
{
public:
    explicit EstiloLinea(bool porCapaInicial = false) : porCapa(porCapaInicial) {}

    const char* etiqueta() const override { return ""; }
    void escribe(SerializadorEscrituraBase& w) override;
    // True when both fields came whole.
    bool lee(SerializadorLecturaBase& r) override;

    bool porCapa;              // take pattern and width from the layer
    double grosor = 1.0;       // line width
    uint16_t patron = 0xFFFF;  // continuous
};

// A layer's own style.
class EstiloLineaCapa : public EstiloLinea
{
public:
    EstiloLineaCapa() : EstiloLinea(false) {}
};

// An entity's style; by layer, also after every read, since the flag is not in the file.
class EstiloLineaEntidad : public EstiloLinea
{
public:
    EstiloLineaEntidad() : EstiloLinea(true) {}
};

}  // namespace cad
