// PuntoControl: the surveying control point, a three-axis cross with its name as label.
#pragma once

#include <string>

#include "base/ReferenciaObjetoCAD.h"
#include "entidades/Punto.h"

namespace cad
{

// The cross stands at the entity's own x, y, z. The constant-scale mix-in's `posicion` is
// only carried through the file: painting and moving use x, y, z.
class PuntoControl : public Punto, private EntidadConTexto, public EntidadConEscalaConstante
{
public:
    PuntoControl() = default;
    PuntoControl(const std::string& nombreControl, const Punto3<double>& punto);

    const char* etiqueta() const override { return kFirmaEntidadPuntoControl; }
    // Prefix, x, y, z, nombre, codigo, -|tamano|, style id, then the mix-in's posicion,
    // escala and pixeles. The negative size marks the presence of those last three.
    void escribe(SerializadorEscrituraBase& w) override;
    // Reads the last three only behind a size with the sign bit set; a file of the older
    // form ends before them. The size stays negative in memory, as read.
    bool lee(SerializadorLecturaBase& r) override;
    Entidad* clona() const override { return new PuntoControl(*this); }

    // POINT, then TEXT of the name at the same place: left, height 1, not rotated.
    void exportaDXF(ExportaDXF& dxf) const override;
    // The point, the cross as one object (kept at constant size when the mix-in is active)
    // and, unless bit 4 of `estado` is set, the name.
    void dibuja(PantallaCAD& p) const override;
    void setEstiloTexto(EstiloTexto* e) override;

    // Shows or hides the label through bit 4 of `estado`; the cross stays.
    void setTextoVisible(bool visible) override;

    // Category 2, "Varios": "Nombre" and "Código". Index 2 and up, never offered by the sheet,
    // store the absolute value of the text as a number in `tamano`. A name or code longer
    // than kLongitudMaximaCadena is refused: false, the entity unchanged.
    int numeroCategorias() const override { return 3; }
    int numeroPropiedadesCategoria(int categoria) const override;
    bool getPropiedad(int categoria, int indice, Prop& p) const override;
    bool setPropiedad(int categoria, int indice, const Prop& p) override;

    const std::string& nombre() const { return nombre_; }
    ReferenciaEstiloTexto& referenciaEstilo() { return estilo; }
    const ReferenciaEstiloTexto& referenciaEstilo() const { return estilo; }

    std::string nombre_;  // identifier, shown as the label
    std::string codigo;
    double tamano = 0.2;  // half length of the cross's arms; may be negative after a read
};

}  // namespace cad
