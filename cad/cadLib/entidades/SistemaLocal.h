// SistemaLocal: a named coordinate frame kept in the drawing and painted as three axes.
#pragma once

#include <string>
#include <vector>

#include "base/geometria/SistemaLocal3D.h"
#include "entidades/Entidad.h"

namespace cad
{

// The body sits in a block of its own ("Sl1", u16 length) inside the block the entity list
// opens. Unknown bytes may follow the known fields at two levels, and each level keeps its
// own: what trails the fields inside the inner block stays in `datosDesconocidosSistema` and
// is written back there, while ObjetoCAD's `datosDesconocidos` holds only what trails the
// inner block in the list's block, which the list reads and writes around escribe and lee
// (normally nothing). Sharing one buffer would have the list copy the inner tail a second
// time behind the inner block on every save.
class SistemaLocal : public EntidadPuntual, public SistemaLocal3D<double>
{
public:
    // The global frame, no name.
    SistemaLocal() = default;

    const char* etiqueta() const override { return kFirmaEntidadSistemaLocal; }
    // Inner block: prefix, nombre, origen, ejeX, ejeY, ejeZ, the inner unknown tail.
    void escribe(SerializadorEscrituraBase& w) override;
    // False at once on a block of another tag or at the first failed read, leaving the
    // entity as it was but for the prefix. The matrices are not stored: the frame is set
    // anew from the axes and the origin.
    bool lee(SerializadorLecturaBase& r) override;
    Entidad* clona() const override { return new SistemaLocal(*this); }

    void exportaDXF(ExportaDXF&) const override {}
    // Moves the origin only: the matrices keep the old frame until it is set again.
    void traslada(const Vector3D<double>& v) override;
    // The origin, whatever the index.
    const Punto3<double>* coordenada(int i) const override;
    // A local system has no hot elements.
    void puntosCalientesEdicion(PuntosCalientes&, int, int) override {}
    void puntosCalientes(PuntosCalientes&) override {}
    void aplicaPuntoCaliente(const elemento_arrastrado_t&) override {}
    // The axes in red, green and blue, each one unit long, picked as the entity. Then the
    // name in white with no pick. The display contract has no pixel offset for a text, so
    // the name is anchored at the origin left-bottom aligned: it starts there and grows
    // right and up, away from the axes' common point.
    void dibuja(PantallaCAD& p) const override;

    std::string nombre;
    // The bytes a newer version left inside the inner block behind the known fields.
    std::vector<unsigned char> datosDesconocidosSistema;
};

}  // namespace cad
