// The document: its six lists, current layer/colour/style/view, reference plane, marks, lock.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "base/Color.h"
#include "base/FicheroAtomico.h"
#include "base/GeneradorId.h"
#include "base/ObjetoCAD.h"
#include "base/geometria/Plano3D.h"
#include "base/geometria/Punto3.h"
#include "base/geometria/Rect3.h"
#include "base/geometria/Vector3D.h"
#include "documento/Capa.h"
#include "documento/EstiloTexto.h"
#include "documento/ListaCapas.h"
#include "documento/ListaEntidades.h"
#include "documento/ListaEstilosTexto.h"
#include "documento/ListaMateriales.h"
#include "documento/ListaVariables.h"
#include "documento/ListaVistas.h"
#include "documento/Material.h"
#include "documento/SeleccionEntidades.h"
#include "documento/Vista.h"

namespace cad
{

class Entidad;
class ExportaDXF;
class PantallaCAD;
class SistemaLocal;
struct cursor_t;

// Works without an editor; the editor adds interaction and undo on top. Usable only after
// nuevoDocumento or a successful load. Layer, colour, variable and selection operations run
// without the lock: edits come from the host's thread, and the lock only keeps a painter on
// another thread from seeing a list in mid-change.
class Dibujo : public ObjetoCAD
{
public:
    // What a new selection starts with.
    enum seleccion
    {
        kSeleccionVacia = 0,
        kSeleccionTodas = 1,
        kSeleccionMarcadas = 2,  // selected or highlighted (state mask 9)
        kSeleccionNoMarcadas = 3,
        kSeleccionUltima = 4  // the last created entity, if any
    };

    Dibujo();
    ~Dibujo() override;
    Dibujo(const Dibujo&) = delete;
    Dibujo& operator=(const Dibujo&) = delete;

    // The file's magic.
    const char* etiqueta() const override { return "Tarvelo.CAD.v02"; }
    void escribe(SerializadorEscrituraBase& w) override;
    bool lee(SerializadorLecturaBase& r) override;

    // Checked file forms for hosts; both throw std::logic_error for a path that is not UTF-8.
    // guardaFichero writes the document through a temporary file that replaces `ruta` only
    // when whole and checked: on failure the previous file is untouched and `resultado` says
    // why. leeFichero reads the whole file and tries it on a scratch drawing first: a file
    // that can't be read leaves this drawing as it was, and `resultado` says why. A file that
    // reads is then read here as lee does, after the load's marks (changed, repaint, view not
    // applied); `resultado` counts the damaged entities kept as raw bytes.
    bool guardaFichero(const std::string& ruta, resultadoFichero_t& resultado);
    bool leeFichero(const std::string& ruta, resultadoFichero_t& resultado);

    // --- whole document -------------------------------------------------------------
    // Layer "0", the default material (id from the generator), style "standar", default
    // variables and view; hayCambios false. Keeps the former reference plane and id counter.
    void nuevoDocumento();
    // Deletes every item of the six lists and the working view. Current pointers dangle
    // until nuevoDocumento or a load.
    bool destruyeDocumento();
    // Merges another drawing's layers (by name), materials (by equality) and entities.
    void une(Dibujo& otro);
    bool hayCambios() const { return hayCambios_; }
    void borraMarcaCambios() { hayCambios_ = false; }
    // Sets both marks and asks for the stored view to be applied again.
    void edicionHecha();
    void setModo2D(bool activo, PantallaCAD* p);
    bool modo2D() const { return modo2D_; }
    // Returns the old value.
    int32_t setTipoCursor(int32_t tipo);

    // --- entities -------------------------------------------------------------------
    // Takes ownership. In the lock. False for null (the lock stays held then: no caller
    // passes null, and the lock is recursive).
    bool nuevaEntidad(Entidad* e);
    // Removes by address keeping the order; deletes when `borrar`. extension does not shrink.
    bool borraEntidad(Entidad* e, bool borrar);
    Entidad* buscaEntidad(int64_t handle) const;
    // Whether `e` is one of this drawing's entities: a pointer a command or the host kept may
    // name one deleted since.
    bool contieneEntidad(const Entidad* e) const;
    // The entities of this drawing that the display finds in the pixel square x - t, y - t,
    // x + t, y + t, in the display's order. What the display hands back is matched to the list,
    // since it may still hold a scene painted before an entity went away; one pass over the
    // list, however many picks came.
    std::vector<Entidad*> entidadesCercaPixel(PantallaCAD& p, int x, int y, int t,
                                              bool incluyeOcultas) const;
    int64_t handleUltimaEntidad() const;
    SeleccionEntidades nuevaSeleccion(seleccion tipo);
    void selecciona(Entidad* e);
    void selecciona(SeleccionEntidades& s);
    void deselecciona();
    void deselecciona(Entidad* e);
    void deselecciona(SeleccionEntidades& s);

    // --- local systems, found by name among the entities ----------------------------------
    int numeroSistemasLocales() const;
    SistemaLocal* sistemaLocal(const std::string& nombre) const;
    // "" for a bad index.
    std::string nombreSistemaLocal(int i) const;
    bool existeSistemaLocal(const std::string& nombre) const;
    // Deletes the first local system of that name, in the lock.
    bool borraSistemaLocal(const std::string& nombre);

    // --- layers ---------------------------------------------------------------------
    int numeroCapas() const { return static_cast<int>(capas.size()); }
    const char* capa(int i) const;
    Capa* buscaCapa(const char* nombre) const;
    // nuevaCapa, posicionaCapa and renombraCapa refuse (false, nothing changed) a name longer
    // than the file can hold (kLongitudMaximaCadena); the layer stays with the caller.
    bool nuevaCapa(Capa* c);
    bool posicionaCapa(Capa* c);
    bool borraCapa(const char* nombre);
    Capa* capaActual() const { return capaActual_; }
    bool capaActual(const char* nombre);
    bool capaVisible(const char* nombre) const;
    bool capaBloqueada(const char* nombre) const;
    uint32_t colorCapa(const char* nombre) const;
    bool colorCapa(const char* nombre, uint32_t rgb);
    bool visibilidadCapa(const char* nombre, bool visible);
    bool bloqueaCapa(const char* nombre, bool bloquear);
    bool renombraCapa(const char* viejo, const char* nuevo);
    uint32_t colorActualABGR() const { return colorActual.ABGR(); }
    bool setColorActualIndice(int indice) { return colorActual.setIndiceColor(indice); }
    void setColorActualRGB(uint32_t rgb);

    // --- materials and text styles ----------------------------------------------------
    int numeroMateriales() const { return static_cast<int>(materiales.size()); }
    Material* material(int i) const;
    Material* materialId(int16_t id) const;
    bool existeMaterial(int id) const;
    // The new material's id; 0 (and nothing added) for a texture path longer than the file
    // can hold.
    int16_t nuevoMaterial(int idExterno, uint32_t color, float brillo, const std::string& textura);
    int16_t nuevoMaterial(int idExterno, const std::string& textura);
    // A material of the given id, outside the generator's run (the photographs of 360 photos
    // take ids from 30000 on); false, and nothing added, when the id is taken or the texture
    // path is longer than the file holds.
    bool nuevoMaterialId(int16_t idMaterial, int idExterno, uint32_t color, float brillo,
                         const std::string& textura);
    // Also drops the current material when it is the one deleted.
    void borraMaterial(int16_t id);
    // The material that new faces and models take: 0 (none) on a new drawing and after a
    // load; never written to the file.
    int16_t materialActual() const { return materialActual_; }
    void setMaterialActual(int16_t idMaterial) { materialActual_ = idMaterial; }
    // False for a name already in use, or a name or font longer than the file can hold.
    bool nuevoEstiloTexto(EstiloTexto* estilo);
    EstiloTexto* buscaEstiloTexto(const char* nombre) const;
    EstiloTexto* estiloTextoActual() const { return estiloTextoActual_; }
    bool estiloTextoActual(const char* nombre);

    // --- variables and views --------------------------------------------------------
    // A name or string value longer than the file can hold changes nothing (setVariable and
    // the named guardaVistaActual have no result to report it with).
    void setVariable(const std::string& nombre, const std::string& valor);
    void setVariable(const std::string& nombre, int valor);
    void setVariable(const std::string& nombre, double valor);
    void setVariable(const std::string& nombre, double x, double y, double z);
    bool getVariable(const std::string& nombre, int& valor) const;
    bool getVariable(const std::string& nombre, std::string& valor) const;
    bool existeVariable(const std::string& nombre) const;
    void borraVariable(const std::string& nombre);
    int numeroVistas() const { return static_cast<int>(vistas.size()); }
    std::string nombreVista(int i) const;
    void guardaVistaActual(PantallaCAD* p, const std::string& nombre);
    Vista guardaVistaActual(PantallaCAD* p);
    void activaVista(PantallaCAD* p, const Vista& vista);
    void activaVista(PantallaCAD* p, const std::string& nombre);
    void borraVista(const std::string& nombre);

    // --- document state in variables ------------------------------------------------
    // Writes the current layer, colour, plane, style and view into the variables.
    void guardaEstado();
    // Applies them back: the first variable of a name wins, so the defaults shadow a
    // file's copies of "clayer", "cecolor", "orgplref", "normplref" and "textstyle".
    void cargaEstado();

    // --- view and reference plane ----------------------------------------------------
    void zoomExtension(double factor, PantallaCAD* p);
    void zoomExtension(double factorAncho, double factorAlto, PantallaCAD* p);
    void zoomEntidad(PantallaCAD* p, Entidad* e);
    void setPlanoReferencia(const Punto3<double>& origen, const Vector3D<double>& normal);
    // Leaves its arguments untouched while there is no plane.
    void getPlanoReferencia(Punto3<double>& origen, Vector3D<double>& normal,
                            Plano3D<double>& plano_) const;
    bool hayPlanoReferencia() const { return origenPlano != sinPlano(); }
    static Punto3<double> sinPlano();

    // --- painting --------------------------------------------------------------------
    void inicioDibujo(PantallaCAD& p);
    // Describes the document to the display; true when the entities were sent again.
    // Never blocks: when another thread holds the document the frame is skipped.
    bool dibuja(PantallaCAD& p);
    void finEntidades(PantallaCAD& p);
    void finDibujo(PantallaCAD& p);

    // --- DXF output -----------------------------------------------------------------
    // Adds every layer with its colour index, then opens the ENTITIES section.
    void inicializaDocumentoDXF(ExportaDXF& dxf);
    // Each entity writes its records, in list order.
    bool exportaDocumentoDFX(ExportaDXF& dxf);
    // Adds the layers, points, lines and polylines of a DXF file (UTF-8 path) and recomputes
    // the extent. True also when the file could not be opened or read: nothing is added then.
    bool importaDocumentoDFX(const std::string& ruta);
    // Parses an OBJ file of fully specified triangles; adds nothing to the drawing. False
    // when the file cannot be opened or a face line is not nine numbers.
    bool importaDocumentoOBJ(const std::string& ruta);
    // The box of every entity, anew; the caller holds the lock where it needs it.
    void recalculaExtension();
    void finalizaDocumentoDXF(ExportaDXF& dxf);

    // --- snap settings ---------------------------------------------------------------
    void setReferenciaEntidades(bool global, int32_t mascara);
    void getReferenciaEntidades(bool& global, int32_t& mascara) const;
    void setReactorInicioReferenciaEntidades(std::function<void()> f)
    {
        reactorInicioReferencia = std::move(f);
    }
    void setReactorFinReferenciaEntidades(std::function<void()> f)
    {
        reactorFinReferencia = std::move(f);
    }

    // The snap: true when cursor.referencia was filled by an entity's offer.
    bool referenciaEntidades(PantallaCAD& p, cursor_t& cursor);
    // Fills cursor.plano (the ray's hit on the active plane) and cursor.local.
    void proyectaCursor(cursor_t& cursor);
    // A temporary plane through `punto` with the reference plane's unit normal.
    void fijaPlanoTemporal(const Punto3<double>& punto);

    std::recursive_mutex& cerrojo() { return lock; }

    GeneradorId generadorId;
    ListaCapas capas;
    ListaEntidades entidades;
    ListaVariables variables;
    ListaVistas vistas;
    ListaMateriales materiales;
    ListaEstilosTexto estilosTexto;
    Capa* capaActual_ = nullptr;
    ColorEntidad colorActual;
    Entidad* ultimaEntidad = nullptr;
    Vista* vistaActual = nullptr;
    EstiloTexto* estiloTextoActual_ = nullptr;
    int16_t materialActual_ = 0;
    bool referenciaGlobal = false;
    int32_t mascaraReferencias = 0;
    int32_t toleranciaReferencia = 20;  // pixels
    std::function<void()> reactorInicioReferencia;
    std::function<void()> reactorFinReferencia;
    Punto3<double> origenPlano;
    Vector3D<double> normalPlano{0, 0, 1};
    Plano3D<double> plano;
    Rect3<double> extension;
    bool planoTemporalActivo = false;
    Plano3D<double> planoTemporal;
    bool planoVista = false;
    double datosPlanoVista[4] = {0, 0, 0, 0};
    bool hayCambios_ = false;
    bool redibujar = false;
    bool documentoListo = true;
    std::recursive_mutex lock;
    bool vistaAplicada = false;
    int32_t tipoCursor = 0;
    bool modo2D_ = false;

    // Layers taken out by borraCapa: alive until the drawing goes, since capaActual and undo
    // steps may still name them.
    std::vector<std::unique_ptr<Capa>> capasRetiradas;

private:
    // The id family of materials in `generadorId`.
    static constexpr const char* kFamiliaMateriales = "materiales";

    void asignaIds();
    // Points the current layer and style at items of the lists as they stand after a read.
    void reparaActuales();
    // After a load: each entity's layer reference finds its layer by id.
    void ataReferencias();
};

}  // namespace cad
