// TomaCamara: a camera shot of a photogrammetric project, a small pyramid with its photograph.
#pragma once

#include <cstdint>
#include <string>

#include "base/ReferenciaObjetoCAD.h"
#include "base/geometria/Punto3.h"
#include "base/geometria/Vector3D.h"
#include "entidades/Entidad.h"

namespace cad
{

// The glyph stands at `posicion`, turned by omega, phi, kappa; its size is fixed (depth 1,
// base 0.8 by 0.6, whatever the focal distance and image size say). The constant-scale
// mix-in's own `posicion` is only carried through the file: painting and moving use the
// station. The style mix-in is private: only the drawing ties the reference up after a load,
// through referenciaEstilo().
class TomaCamara : public Entidad, private EntidadConTexto, public EntidadConEscalaConstante
{
public:
    TomaCamara() = default;
    // omegaPhiKappa holds the three angles, radians, in that order.
    TomaCamara(const Punto3<double>& estacion, const Vector3D<double>& omegaPhiKappa, double focal,
               double anchuraImagen, double alturaImagen);

    const char* etiqueta() const override { return kFirmaEntidadTomaCamara; }
    // Prefix, posicion, angles, distancia, anchura, altura, image name and id, style id, then
    // the mix-in's posicion, escala and pixeles.
    void escribe(SerializadorEscrituraBase& w) override;
    // False on a short body. The style id waits in the reference, with no object, until the
    // drawing ties it up.
    bool lee(SerializadorLecturaBase& r) override;
    Entidad* clona() const override { return new TomaCamara(*this); }

    // Nothing: a camera shot has no DXF form, not even its layer.
    void exportaDXF(ExportaDXF& dxf) const override;
    // Moves the station; the mix-in's posicion stays.
    void traslada(const Vector3D<double>& v) override;
    int numCoordenadas() const override { return 1; }
    // The station, whatever the index.
    const Punto3<double>* coordenada(int i) const override;
    void puntosCalientesEdicion(PuntosCalientes& p, int a, int b) override;
    // No hot element: the set only learns its entity.
    void puntosCalientes(PuntosCalientes& p) override;
    // Nothing can be dragged.
    void aplicaPuntoCaliente(const elemento_arrastrado_t& e) override;
    // Nothing at all while the drawing being painted has "OCULTA_CAMARAS". Otherwise the
    // pyramid's wire in the entity's colour, the image plane with material idImagen, and,
    // unless bit 4 of `estado` is set, the image name in white.
    void dibuja(PantallaCAD& p) const override;
    void setEstiloTexto(EstiloTexto* e) override;

    // Shows or hides the label through bit 4 of `estado`; the glyph stays.
    void setTextoVisible(bool visible) override;

    // Category 1, "Geometría": "Posición" and "Orientación" (omega, phi, kappa in x, y, z),
    // both read-only; writes to it do nothing.
    int numeroCategorias() const override { return 2; }
    int numeroPropiedadesCategoria(int categoria) const override;
    bool getPropiedad(int categoria, int indice, Prop& p) const override;
    bool setPropiedad(int categoria, int indice, const Prop& p) override;

    void setImagen(const std::string& nombre, uint16_t idMaterial)
    {
        nombreImagen_ = nombre;
        idImagen_ = idMaterial;
    }
    const std::string& nombreImagen() const { return nombreImagen_; }
    uint16_t idImagen() const { return idImagen_; }
    ReferenciaEstiloTexto& referenciaEstilo() { return estilo; }
    const ReferenciaEstiloTexto& referenciaEstilo() const { return estilo; }

    Punto3<double> posicion;       // camera station; hides the mix-in's
    Vector3D<double> orientacion;  // omega, phi, kappa
    double distancia = 0.0;        // focal distance
    double anchura = 0.0;          // image size
    double altura = 0.0;
    std::string nombreImagen_;  // the label
    uint16_t idImagen_ = 0;     // material holding the photograph

private:
    void* pick() const;
};

}  // namespace cad
