// Texto: a single text at a point, in the bound text style.
#pragma once

#include <cstdint>
#include <string>

#include "base/ReferenciaObjetoCAD.h"
#include "entidades/Punto.h"

namespace cad
{

// The style marks of a bound style as the display's `estilo` argument: bit 1 bold, bit 2
// italic. An unbound style (null) gives 0.
int marcasEstiloTexto(const EstiloTexto* estilo);
// The font of a bound style; "" when none is bound.
const char* fuenteEstiloTexto(const EstiloTexto* estilo);

// The style mix-in is private: only the drawing ties the reference up after a load, through
// referenciaEstilo().
class Texto : public Punto, private EntidadConTexto
{
public:
    // Empty, left-bottom aligned, height 1, not rotated, at the origin.
    Texto() = default;
    Texto(const std::string& cadena, const Punto3<double>& posicion, uint16_t alineacionTexto,
          float alturaTexto, float rotacionTexto);

    const char* etiqueta() const override { return kFirmaEntidadTexto; }
    // Prefix, x, y, z, texto, alineacion (u16), altura and rotacion (floats), style id (u64).
    void escribe(SerializadorEscrituraBase& w) override;
    // The style id waits in the reference, with no object, until the drawing ties it up.
    bool lee(SerializadorLecturaBase& r) override;
    Entidad* clona() const override { return new Texto(*this); }

    // TEXT with the two horizontal bits of the alignment; the rotation goes out in degrees.
    void exportaDXF(ExportaDXF& dxf) const override;
    // Nothing at all while the text is hidden (see setTextoVisible).
    void dibuja(PantallaCAD& p) const override;
    // `objeto` takes the style, `id` becomes 0 so the next save writes the style's own.
    void setEstiloTexto(EstiloTexto* e) override;

    // A Texto is nothing but its text, so the per-layer text switch hides the whole entity:
    // it sets or clears the label-hidden bit 4 of `estado`, and painting honours that bit.
    void setTextoVisible(bool visible) override;

    // Category 2, "Varios": "Texto", editable, and a second row with no name and no value.
    // A text longer than kLongitudMaximaCadena is refused: false, the entity unchanged.
    int numeroCategorias() const override { return 3; }
    int numeroPropiedadesCategoria(int categoria) const override;
    bool getPropiedad(int categoria, int indice, Prop& p) const override;
    bool setPropiedad(int categoria, int indice, const Prop& p) override;

    ReferenciaEstiloTexto& referenciaEstilo() { return estilo; }
    const ReferenciaEstiloTexto& referenciaEstilo() const { return estilo; }

    std::string texto;        // bytes as given
    uint16_t alineacion = 0;  // horizontal 0/1/2 plus vertical 0/4/8
    float altura = 1.0F;      // drawing units
    float rotacion = 0.0F;    // radians, in the XY plane
};

}  // namespace cad
