// Abstract base of everything that is drawn: layer, colour, line style and state bits.
#pragma once

#include <cstdint>

#include "base/Color.h"
#include "base/ObjetoCAD.h"
#include "base/Propiedades.h"
#include "base/ReferenciaObjetoCAD.h"
#include "base/geometria/Rect3.h"
#include "documento/EstiloLinea.h"

namespace cad
{

class EstiloTexto;
class PantallaCAD;

// State bits of `estado`; not persisted.
enum estado_entidad_e : uint32_t
{
    kEstadoSeleccionada = 1,
    kEstadoEtiquetaOculta = 4,
    kEstadoResaltada = 8
};

class Entidad : public ObjetoCAD, public Propiedades
{
public:
    Entidad() = default;
    Entidad(const Entidad&) = default;
    Entidad& operator=(const Entidad&) = default;

    // A new heap copy with every field, the same id included.
    virtual Entidad* clona() const = 0;
    virtual void marcaSeleccion() { estado |= kEstadoSeleccionada | kEstadoResaltada; }
    virtual void quitaSeleccion()
    {
        estado &= ~static_cast<uint32_t>(kEstadoSeleccionada | kEstadoResaltada);
    }
    // Bounding box in drawing coordinates; the empty box for an entity with no points.
    virtual Rect3<double> extension() const { return {}; }
    virtual void dibuja(PantallaCAD& p) const = 0;
    // Rebinds the text style: only text entities keep it.
    virtual void setEstiloTexto(EstiloTexto* estilo) { (void)estilo; }

    ColorEntidad color;
    EstiloLineaEntidad estiloLinea;
    uint32_t estado = 0;
    ReferenciaCapa capa;
};

}  // namespace cad
