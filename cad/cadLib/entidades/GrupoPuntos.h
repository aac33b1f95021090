// GrupoPuntos: many points, each with a colour of its own, as one entity.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/BloqueSerializacion.h"
#include "base/geometria/Punto3.h"
#include "entidades/Entidad.h"

namespace cad
{

// A point cloud that costs one entity, one list entry and one display call. It cannot be
// edited point by point: it has no hot elements and does not move.
//
// Body after the common prefix (a u32 block): escribeLongitud32 the count, then per point
// escribeDoble x, y, z and escribeEntero its colour, 28 bytes a point. A group built without
// colours writes 0 for every colour it lacks, so its file still reads. The records go out and
// come in through large buffers: a group of ten million points must save and load at the
// speed of the disk, which one serialiser call per field cannot reach.
//
// Colours are the display's 32-bit form: red in bits 0-7, green 8-15, blue 16-23, alpha
// 24-31.
//
// Memory: 28 bytes a point plus the two vectors; a read reserves exactly the count.
class GrupoPuntos : public EntidadPuntual
{
public:
    GrupoPuntos() = default;
    // Copies n points and, when `colores` is not null, n colours; with null colours
    // `colores` stays empty. A null point array or a count below 1 gives an empty group.
    GrupoPuntos(int n, const Punto3<double>* puntos, const uint32_t* colores);

    // Appends to both vectors.
    void nuevoPunto(const Punto3<double>& p, uint32_t color);

    const char* etiqueta() const override { return kFirmaEntidadGrupoPuntos; }
    void escribe(SerializadorEscrituraBase& w) override;
    // False, with no point kept and nothing reserved, when the count cannot fit in what the
    // source still holds or the records come short.
    bool lee(SerializadorLecturaBase& r) override;
    Entidad* clona() const override { return new GrupoPuntos(*this); }
    int tamanoBloque() const override { return kBloque32; }

    // setCapa, then one POINT per point: by layer, each point takes the palette index nearest
    // to its own colour (0 for a missing one); otherwise all take the group's index.
    void exportaDXF(ExportaDXF& dxf) const override;
    // A group does not move.
    void traslada(const Vector3D<double>& v) override;
    int numCoordenadas() const override { return static_cast<int>(puntos.size()); }
    // Point i; an index outside the group, negative included, raises std::out_of_range.
    const Punto3<double>* coordenada(int i) const override;
    // The box of the points, as the default gives it, without a call per point.
    Rect3<double> extension() const override;
    // No hot elements: these three do nothing.
    void puntosCalientesEdicion(PuntosCalientes& p, int a, int b) override;
    void puntosCalientes(PuntosCalientes& p) override;
    void aplicaPuntoCaliente(const elemento_arrastrado_t& e) override;
    // With mask bit 8, every point in order, its kind the whole mask; true if one was taken.
    bool getReferenciaEntidades(ReferenciaEntidades& r) const override;
    // One dibujaGrupoPuntos with each point's own colour, and only while the group's colour
    // is by layer: a group with any other colour index paints nothing. An empty group paints
    // nothing either. Missing colours go to the display as 0.
    void dibuja(PantallaCAD& p) const override;

    // Category 1, "Geometría": the list "Vértice", which shows no elements and takes no
    // writes.
    int numeroCategorias() const override { return 2; }
    int numeroPropiedadesCategoria(int categoria) const override;
    bool getPropiedad(int categoria, int indice, Prop& p) const override;
    bool setPropiedad(int categoria, int indice, const Prop& p) override;

    std::vector<Punto3<double>> puntos;
    std::vector<uint32_t> colores;
};

}  // namespace cad
