// Test support: an entity base with every required operation empty, so that a test entity
// overrides only what its test looks at.
#pragma once

#include "entidades/Entidad.h"

namespace cad::prueba
{

class EntidadPrueba : public Entidad
{
public:
    void exportaDXF(ExportaDXF&) const override {}
    void traslada(const Vector3D<double>&) override {}
    int numCoordenadas() const override { return 0; }
    const Punto3<double>* coordenada(int) const override { return nullptr; }
    void puntosCalientesEdicion(PuntosCalientes&, int, int) override {}
    void puntosCalientes(PuntosCalientes&) override {}
    void aplicaPuntoCaliente(const elemento_arrastrado_t&) override {}
};

}  // namespace cad::prueba
