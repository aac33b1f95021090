// Abstract base of everything that is drawn: layer, colour, line style, state bits, and the
// table of operations through which drawing, editor, DXF writer and display reach an entity.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include "base/Color.h"
#include "base/ObjetoCAD.h"
#include "base/Propiedades.h"
#include "base/ReferenciaObjetoCAD.h"
#include "base/geometria/Matriz4.h"
#include "base/geometria/Punto3.h"
#include "base/geometria/Rect3.h"
#include "base/geometria/Vector3D.h"
#include "documento/EstiloLinea.h"
#include "entidades/Firmas.h"

namespace cad
{

class Capa;
class EstiloTexto;
class ExportaDXF;
class PantallaCAD;
class PuntosCalientes;
class ReferenciaEntidades;
struct elemento_arrastrado_t;

// State bits of `estado`; not persisted.
enum estado_entidad_e : uint32_t
{
    kEstadoSeleccionada = 1,    // paints in the dotted pass
    kEstadoEtiquetaOculta = 4,  // control points and camera shots skip their text
    kEstadoResaltada = 8        // dotted pass, and the hot elements are shown
};

// The block width of an entity that writes its own block, tag and length included.
inline constexpr int kBloqueCrudo = -1;

// The display name of a file tag: "Pt1" -> "Punto", any unknown tag -> "Desconocida".
const char* nombreTipo(const char* tag);

class Entidad : public ObjetoCAD, public Propiedades
{
public:
    Entidad() = default;
    Entidad(const Entidad&) = default;
    Entidad& operator=(const Entidad&) = default;

    // --- the virtual table, in its order after the ObjetoCAD operations ---------------
    // Writes the common prefix: id, layer id, colour, line style.
    void escribe(SerializadorEscrituraBase& w) override;
    // Reads the prefix; true only if all four came. The layer id waits in capa.id until the
    // drawing ties references up.
    bool lee(SerializadorLecturaBase& r) override;
    // A new heap copy with every field, the same id included.
    virtual Entidad* clona() const = 0;
    virtual void marcaSeleccion();
    virtual void quitaSeleccion();
    virtual void setSeleccionada(bool si);
    virtual void setResaltada(bool si);
    virtual void setOculta(bool si);
    // Case-insensitive comparison of nombreTipo(etiqueta()) with `nombre`.
    virtual bool esTipo(const char* nombre) const;
    // Width of the block the list opens: 0 u16, 1 u32, 2 u64; kBloqueCrudo when the entity
    // writes its whole block itself (raw bytes kept from a damaged file).
    virtual int tamanoBloque() const { return 0; }
    // Sets the layer, then writes the entity's records.
    virtual void exportaDXF(ExportaDXF& dxf) const = 0;
    virtual void traslada(const Vector3D<double>& v) = 0;
    virtual int numCoordenadas() const = 0;
    // The i-th defining point in drawing coordinates.
    virtual const Punto3<double>* coordenada(int i) const = 0;
    // The box of the defining points; the inverted (empty) box with none.
    virtual Rect3<double> extension() const;
    virtual bool volumen(Rect3<double>& caja) const;
    virtual bool interior(const Punto3<double>& p) const;
    virtual void puntosCalientesEdicion(PuntosCalientes& p, int a, int b) = 0;
    virtual void puntosCalientes(PuntosCalientes& p) = 0;
    virtual void aplicaPuntoCaliente(const elemento_arrastrado_t& e) = 0;
    // Offers snap candidates; false when the entity offers nothing.
    virtual bool getReferenciaEntidades(ReferenciaEntidades& r) const;
    virtual void setMaterial(uint16_t material);
    virtual uint16_t material() const { return 0; }
    virtual void dibuja(PantallaCAD& p) const = 0;
    // Rebinds the text style: only text entities keep it.
    virtual void setEstiloTexto(EstiloTexto* estilo);

    // --- the common property sheet (category 0, "General") ----------------------------
    int numeroCategorias() const override { return 1; }
    // "General", "Geometría", "Varios" for categories 0, 1, 2 of the kind; "" past its last.
    std::string nombreCategoria(int categoria) const override;
    int numeroPropiedadesCategoria(int categoria) const override;
    bool getPropiedad(int categoria, int indice, Prop& p) const override;
    bool setPropiedad(int categoria, int indice, const Prop& p) override;
    int numeroValoresEnumerados(int, int) const override { return 0; }

    // --- plain operations ---------------------------------------------------------------
    // Whether the entity writes the tag `firma` (one of Firmas.h).
    bool tieneFirma(const char* firma) const { return std::strcmp(etiqueta(), firma) == 0; }
    // The layer's bytes when the colour is by layer, else the entity's: alpha, blue, green,
    // red from high to low. The layer must be bound.
    uint32_t resuelveColorABGR() const;
    // The same colour as alpha, red, green, blue from high to low: the form of the
    // property sheet. The argument only selects this form.
    uint32_t resuelveColorABGR(int forma) const;
    // 256 when by layer; otherwise the nearest palette index, lowest on a tie.
    int indiceColorCercano() const;
    ReferenciaCapa referenciaCapa() const { return capa; }
    bool sinCapa() const { return capa.objeto == nullptr; }
    bool capaVisible() const;
    bool enCapa(const char* nombre) const;
    void asignaCapa(Capa* c);
    void coordenadas(std::vector<Punto3<double>>& v) const;
    Capa* capaEntidad() const;

    ColorEntidad color;
    EstiloLineaEntidad estiloLinea;
    uint32_t estado = 0;
    ReferenciaCapa capa;
};

// A point-like entity: one defining point.
class EntidadPuntual : public Entidad
{
public:
    int numCoordenadas() const override { return 1; }
};

// A line-like entity.
class EntidadLineal : public Entidad
{
};

// An entity whose local geometry goes to drawing coordinates through `transformacion`.
// Its body adds the first three numbers of rows 0, 1, 2 and the translation column.
class EntidadTransformada : public Entidad
{
public:
    void escribe(SerializadorEscrituraBase& w) override;
    bool lee(SerializadorLecturaBase& r) override;
    // Kind 6 (azimuth) only: rotates about the axis `indice` % 3 by the drag's length taken
    // as radians, negative when the drag goes down.
    void aplicaPuntoCaliente(const elemento_arrastrado_t& e) override;

    Matriz4<double> transformacion;
};

// A photograph mapped on a surface face.
struct mapeo_t
{
    int32_t cara = 0;
    float u = 0.0F;
    float v = 0.0F;
};

class EntidadConSuperficie : public EntidadTransformada
{
public:
    void escribe(SerializadorEscrituraBase& w) override;
    bool lee(SerializadorLecturaBase& r) override;

    std::vector<mapeo_t> mapeos;
    uint32_t materialMapeo = 0;
};

class Modelo3D;

class EntidadConVolumen : public EntidadTransformada
{
public:
    // Fills a mesh with the solid's tessellation.
    virtual void generaModelo(Modelo3D& m) const = 0;
};

// Mix-in of text entities: the bound text style (null until one is bound).
class EntidadConTexto
{
public:
    virtual ~EntidadConTexto() = default;
    // Shows or hides the entity's text; the facade's per-layer text switch calls it.
    virtual void setTextoVisible(bool visible) = 0;
    // The style's id for the file: the stored one, else the bound style's, else 0.
    uint64_t idEstilo();

    ReferenciaEstiloTexto estilo;
};

// Mix-in of glyphs kept at a constant size on screen.
class EntidadConEscalaConstante
{
public:
    void asignaEscalaConstante(const Punto3<double>& p, double e, double px)
    {
        posicion = p;
        escala = e;
        pixeles = static_cast<int32_t>(px);
    }
    // Active exactly when escala > 0 and pixeles >= 1.
    bool escalaConstanteActiva() const { return escala > 0.0 && pixeles >= 1; }

    Punto3<double> posicion;
    double escala = 0.0;
    int32_t pixeles = 0;
};

// The handle hosts know an entity by: its address.
inline int64_t handleEntidad(const Entidad* e)
{
    return static_cast<int64_t>(reinterpret_cast<intptr_t>(e));
}

}  // namespace cad
