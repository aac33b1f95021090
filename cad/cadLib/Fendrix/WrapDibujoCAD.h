// The host's door to one drawing and its editor: lifecycle, callbacks and forwarding.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Fendrix/WrapPantallaCAD.h"

namespace cad
{
struct Prop;
struct resultadoFichero_t;
class Dibujo;
class Entidad;
class EditorDibujo;
class ExportaDXF;
class PantallaCAD;
}  // namespace cad

namespace Fendrix
{

// A delegate kept alive for as long as the kernel holds the entry point made from it.
template <class Delegado>
struct DelegateWrapper
{
    Delegado _Delegate;
};

// One drawing and its editor, driven by one thread: the one that calls in, which also pumps
// its own ColaMensajes while a command waits. Separate facades may run on separate threads at
// once; the state they share (settings, message table, the selection record) is locked. Load
// a message file before other threads run drawings.
class WrapDibujoCAD
{
public:
    // --- host enumerations ----------------------------------------------------------
    enum class tipoActualizacion : int32_t
    {
        kControl = 0,
        kPropiedades = 1,
        kCapas = 2,
        kCapaActual = 3
    };
    enum class tipoEdicionEntidades : int32_t
    {
        kBorrar = 0,
        kModificarTemporal = 1,
        kModificarDefinitivo = 2,
        kInsertar = 3,
        kCancelar = 4,
        kIniciaEdicion = 5,
        kTerminaEdicion = 6,
        kIniciaBloque = 7,
        kTerminaBloque = 8
    };
    enum class tipoInsercionEntidades : int32_t
    {
        kEntidadBorrada = 0,
        kEntidadInsertada = 1
    };
    enum class estadoComandoInteractivo : int32_t
    {
        kInicio = 0,
        kFin = 1,
        kCancelado = 2
    };
    enum class tipoCursor : int32_t
    {
        kCursorIndeterminado = 0,
        kCursorPorDefecto = 1,
        kCursorSeleccionCoordenadas = 2,
        kCursorSeleccionEntidades = 3
    };
    enum class tipoPropiedad : int32_t
    {
        Booleano = 0,
        Entero = 1,
        Doble = 2,
        DoblePositivo = 3,
        Cadena = 4,
        Color = 5,
        ColorCad = 6,
        Material = 7,
        Enumerado = 8,
        Coordenada = 9,
        Vector = 10,
        Orientacion = 11,
        ListaCoordenadas = 12,
        Leyenda = 13
    };
    enum class colorElemento : int32_t
    {
        kPuntosCalientes = 0,
        kAristasCalientes = 1,
        kCarasCalientes = 2,
        kVectoresCalientes = 3,
        kAzimutsCalientes = 4,
        kSeleccionado = 5,
        kCursor = 6,
        kLineaElastica = 7,
        kFondo = 8,
        kSeleccionNube = 9
    };
    enum class valorElemento : int32_t
    {
        kVentanaReferencia = 0,
        kNumeroPuntosVisibles = 1
    };
    enum class modo_linea : int32_t
    {
        kLineaContinua = 65535,
        kLineaPuntos = 43690,
        kLineaDiscontinua = 61680
    };
    enum class alineacionTexto : int32_t
    {
        kAlineacionVerticalSup = 8,
        kAlineacionVerticalMed = 4,
        kAlineacionVerticalInf = 0,
        kAlineacionHorizontalIzq = 0,
        kAlineacionHorizontalCen = 1,
        kAlineacionHorizontalDer = 2,
        kAlineacionSupIzq = 8,
        kAlineacionSupCen = 9,
        kAlineacionSupDer = 10,
        kAlineacionMedIzq = 4,
        kAlineacionMedCen = 5,
        kAlineacionMedDer = 6,
        kAlineacionInfIzq = 0,
        kAlineacionInfCen = 1,
        kAlineacionInfDer = 2
    };
    enum class representacion_nubes : int32_t
    {
        kMonoColor = 0,
        kIntensidad = 1,
        kColor = 2,
        kCategorias = 3,
        kNormales = 4,
        kCota = 5
    };
    enum class representacion_modelos : int32_t
    {
        kAlambrica = 0,
        kConceptual = 1,
        kOculto = 2,
        kRealista = 3,
        kRayosX = 4,
        kTexturas = 5
    };
    enum class tipoSimbologiaMallas : int32_t
    {
        tsmEntidad = 0,
        tsmCota = 1,
        tsmPendiente = 2,
        tsmOrientacionPendiente = 3,
        tsmSombreado = 4,
        tsmMovimientoTierras = 5,
        tsmOrtofoto = 6
    };
    enum class tipoSeleccion : int32_t
    {
        kVentana = 0,
        kPolilinea = 1,
        kEsfera = 2
    };

    // --- delegates ------------------------------------------------------------------
    using ProcesoEventosDelegate = std::function<void()>;
    using ActualizaDelegate = std::function<void(tipoActualizacion)>;
    using SalidaTextoDelegate = std::function<void(const std::string&)>;
    using VisorPropiedadesDelegate = std::function<void()>;
    using EdicionEntidadesDelegate =
        std::function<bool(int64_t, tipoEdicionEntidades, int32_t, double, double, double)>;
    using InsercionEntidadesDelegate = std::function<bool(int64_t, tipoInsercionEntidades)>;
    using ComandoInteractivoDelegate = std::function<void(estadoComandoInteractivo)>;
    using InicioProcesoReferenciaEntidadesDelegate = std::function<void()>;
    using FinalizaProcesoReferenciaEntidadesDelegate = std::function<void()>;
    using MenuContextoDelegate =
        std::function<void(int32_t x, int32_t y, const std::vector<std::string>& elementos)>;

    using ProcesoEventosDelegate_Wrapper = DelegateWrapper<std::function<void()>>;
    using ActualizaDelegate_Wrapper = DelegateWrapper<std::function<void(tipoActualizacion)>>;
    using SalidaTextoDelegate_Wrapper = DelegateWrapper<std::function<void(const char*)>>;
    using VisorPropiedadesDelegate_Wrapper = DelegateWrapper<std::function<void()>>;
    using EdicionEntidadesDelegate_Wrapper = DelegateWrapper<EdicionEntidadesDelegate>;
    using InsercionEntidadesDelegate_Wrapper = DelegateWrapper<InsercionEntidadesDelegate>;
    using ComandoInteractivoDelegate_Wrapper = DelegateWrapper<ComandoInteractivoDelegate>;
    using InicioProcesoReferenciaEntidadesDelegate_Wrapper = DelegateWrapper<std::function<void()>>;
    using FinalizaProcesoReferenciaEntidadesDelegate_Wrapper =
        DelegateWrapper<std::function<void()>>;

    // --- frame ----------------------------------------------------------------------
    // Makes the drawing (empty until nuevoDocumento or lee) and an editor with no display.
    // Attaches no callback: `actualiza` reaches the kernel through setActualiza/setPantalla.
    WrapDibujoCAD(ProcesoEventosDelegate procesoEventos, ActualizaDelegate actualiza);
    ~WrapDibujoCAD();
    WrapDibujoCAD(const WrapDibujoCAD&) = delete;
    WrapDibujoCAD& operator=(const WrapDibujoCAD&) = delete;

    // Destroys the editor (and its undo history) and makes a new one over `p`'s display,
    // or over none. Re-attaches only the update and text callbacks.
    void setPantalla(WrapPantallaCAD* p);
    void Dispose();
    void Dispose(bool liberar);
    // The editor as an opaque pointer-sized integer; 0 after Dispose.
    intptr_t getEditorDibujoCPP() const;
    // Calls the host's own text delegate; false when none is set.
    bool salidaTexto(const std::string& texto);
    void dibuja(WrapPantallaCAD* p);
    void dibuja(cad::PantallaCAD* p);
    void comandoRegen();

    void setActualiza(ActualizaDelegate d);
    void setSalidaTexto(SalidaTextoDelegate d);
    void setVisorPropiedades(VisorPropiedadesDelegate d);
    void setReactorEdicion(EdicionEntidadesDelegate d);
    void setReactorInsercion(InsercionEntidadesDelegate d);
    void setReactorComandoInteractivo(ComandoInteractivoDelegate d);
    void setReactorInicioReferenciaEntidades(InicioProcesoReferenciaEntidadesDelegate d);
    void setReactorFinReferenciaEntidades(FinalizaProcesoReferenciaEntidadesDelegate d);
    void setMenuContexto(MenuContextoDelegate d) { mMenuContexto = std::move(d); }

    // Adapters: each reads its delegate at every call. The two reactors answer true (go on)
    // when no delegate is set.
    void ejecutaProcesoEventos();
    void actualiza(tipoActualizacion tipo);
    void ejecutaSalidaTextos(const char* texto);
    void ejecutaVisorPropiedades();
    bool ejecutaReactorEdicion(int64_t handle, tipoEdicionEntidades tipo, int32_t indice, double x,
                               double y, double z);
    bool ejecutaReactorInsercion(int64_t handle, tipoInsercionEntidades tipo);
    void ejecutaReactorComandoInteractivo(estadoComandoInteractivo estado);
    void ejecutaReactorInicioProcesoReferenciaEntidades();
    void ejecutaReactorFinalizaProcesoReferenciaEntidades();

    // --- document and files ---------------------------------------------------------
    void nuevoDocumento();
    bool destruyeDocumento();
    void une(WrapDibujoCAD& otro);
    bool hayCambios();
    void borraMarcaCambios();
    void setModo2D(bool activo);
    void setCursor(tipoCursor tipo);
    void redibuja();
    // The kernel's result; false with no editor.
    bool lee(const std::string& fichero);
    // True whatever happens, as the kernel's save reports nothing. The file is written whole
    // or not at all.
    bool guarda(const std::string& fichero);
    // Writes the drawing as an "AC1009" DXF file; false with no drawing. Raises
    // cad::Excepcion on the writer's misuse (a layer without a name under an entity).
    bool exportaDXF(const std::string& fichero);
    // Adds the points, lines and polylines of a DXF file to the drawing; true also when the
    // file could not be read (the kernel reports nothing). Three update notices follow.
    bool importaDXF(const std::string& fichero);
    // Parses an OBJ file of textured triangles and adds nothing; the kernel's result. Three
    // update notices follow.
    bool importaOBJ(const std::string& fichero);

    // The checked forms a host should use: they never raise, and on failure `mensaje` says
    // why in words for the user (no space, no permission, missing folder, not a drawing...).
    // A save or export that fails leaves the previous file exactly as it was; a load that
    // fails leaves the drawing as it was. A load that succeeds on a damaged file says so in
    // `mensaje` and counts the entities it kept unread in `entidadesDanadas`.
    bool guardaComprobado(const std::string& fichero, std::string& mensaje);
    bool leeComprobado(const std::string& fichero, std::string& mensaje, int64_t& entidadesDanadas);
    bool exportaDXFComprobado(const std::string& fichero, std::string& mensaje);

    // --- editor state ---------------------------------------------------------------
    bool dentroComandoInteractivo();
    void teclaPulsada(int32_t codigo, bool shift, bool control, bool alt);
    void dibujoActivo(bool activo);
    double getFactorVertical();
    void setFactorVertical(double factor);

    // --- configuration --------------------------------------------------------------
    bool getColorConfiguracion(colorElemento elemento, int32_t& r, int32_t& g, int32_t& b);
    void setColorConfiguracion(colorElemento elemento, int32_t r, int32_t g, int32_t b);
    int32_t getValorConfiguracion(valorElemento elemento);
    void setValorConfiguracion(valorElemento elemento, int32_t valor);
    bool cargarFicheroMensajes(const std::string& fichero);

    // --- camera and zoom ------------------------------------------------------------
    bool getPosicionCamara(double& x, double& y, double& z);
    bool getObjetivoCamara(double& x, double& y, double& z);
    bool getDireccionCamara(double& x, double& y, double& z);
    void zoomExtension(double factor);
    void zoomExtension(double factorAncho, double factorAlto);
    // The editor's zooms. The whole drawing, or the box of the entity `handle`, fills the
    // view, then the host's update delegate hears kControl (also when the handle names no
    // entity: the view then stays). False, with nothing moved or told, with no editor.
    bool comandoZoomExtension();
    bool comandoZoomExtension(int64_t handle);
    void zoomEscala(double escala);
    // A pixel rectangle: its corner, width and height.
    void zoomVentana(int32_t x, int32_t y, int32_t ancho, int32_t alto);
    // A drawing box: minimum and maximum of x, then of y, then of z.
    void zoomVentana(double x0, double x1, double y0, double y1, double z0, double z1);

    // Every operation below that stores a string of the host refuses one longer than the
    // document file can hold (cad::kLongitudMaximaCadena): its failure result, nothing
    // changed, and the editor tells the user "Texto demasiado largo: ...".

    // --- layers ---------------------------------------------------------------------
    int32_t numeroCapas();
    std::string capa(int32_t indice);
    std::string capaActual();
    bool capaActual(const std::string& nombre);
    bool existeCapa(const std::string& nombre, bool hacerActual);
    bool capaVisible(const std::string& nombre);
    bool capaBloqueada(const std::string& nombre);
    // Alpha, blue, green, red from high to low; 0xFFFFFFFF for an unknown layer.
    uint32_t getColorCapa(const std::string& nombre);
    bool getColorCapa(const std::string& nombre, int32_t& r, int32_t& g, int32_t& b);
    double grosorLineaCapa(const std::string& nombre);
    bool setGrosorLineaCapa(const std::string& nombre, double grosor);
    bool setGrosorLineaCapaActual(double grosor);
    int32_t patronLineaCapa(const std::string& nombre);
    bool setPatronLineaCapaActual(int32_t patron);
    bool nuevaCapa(const std::string& nombre, bool estableceComoActual);
    bool posicionaCapa(const std::string& nombre);
    bool borraCapa(const std::string& nombre);
    bool visibilidadCapa(const std::string& nombre, bool visible);
    bool bloqueaCapa(const std::string& nombre, bool bloquear);
    // `rgba` packed red highest, alpha lowest.
    bool colorCapa(const std::string& nombre, int32_t rgba);
    bool colorCapa(const std::string& nombre, int32_t r, int32_t g, int32_t b);
    bool grosorCapa(const std::string& nombre, double grosor);
    bool renombraCapa(const std::string& viejo, const std::string& nuevo);
    // Copies every polyline (polygons aside) of layer `origen` into layer `destino`, each copy
    // an insertion of its own (undoable, offered to the insertion reactor); the copies come
    // unselected. The number copied; 0 when either layer is missing.
    int32_t copiarPolilineasCapa(const std::string& origen, const std::string& destino);
    // Shows or hides the text of every text, control point and camera shot on the layer (a
    // Texto, being only its text, hides whole). False for an unknown layer.
    bool visibilidadTextosCapa(const std::string& nombre, bool visibles);
    // The layer of an entity.
    bool getNombreCapa(int64_t handle, std::string& nombre);

    // --- colours --------------------------------------------------------------------
    bool setColorActualIndice(int32_t indice);
    void setColorActualRGB(int32_t r, int32_t g, int32_t b);
    bool getColorActualRGB(int32_t& r, int32_t& g, int32_t& b);
    bool getColorIndice(int32_t indice, int32_t& r, int32_t& g, int32_t& b);

    // --- snap settings --------------------------------------------------------------
    void setReferenciaEntidades(bool global, int32_t mascara);
    void getReferenciaEntidades(bool& global, int32_t& mascara);

    // --- text styles ----------------------------------------------------------------
    bool nuevoEstiloTexto(const std::string& nombre, const std::string& fuente, int32_t tamanyo,
                          bool estableceComoActual);
    bool editaEstiloTexto(const std::string& nombre, const std::string& fuente, int32_t tamanyo,
                          bool estableceComoActual);
    bool estiloTextoActual(const std::string& nombre);
    bool existeEstiloTexto(const std::string& nombre, bool estableceComoActual);

    // --- materials ------------------------------------------------------------------
    int32_t numeroMateriales();
    int32_t idMaterial(int32_t indice);
    bool getIdExternoMaterial(int32_t id, int32_t& idExterno);
    int32_t nuevoMaterial(int32_t idExterno, uint32_t color, double brillo);
    int32_t nuevoMaterial(int32_t idExterno, const std::string& textura);
    bool setMaterial(int32_t id, int32_t idExterno, uint32_t color, double brillo,
                     const std::string& textura);
    bool getMaterial(int32_t indice, int32_t& id, int32_t& idExterno, uint32_t& color,
                     double& brillo, std::string& textura);
    void borraMaterial(int32_t id);

    // --- variables and views --------------------------------------------------------
    void setVariable(const std::string& nombre, const std::string& valor);
    void setVariable(const std::string& nombre, int32_t valor);
    void setVariable(const std::string& nombre, double valor);
    void setVariable(const std::string& nombre, double x, double y, double z);
    bool getVariable(const std::string& nombre, int32_t& valor);
    bool getVariable(const std::string& nombre, std::string& valor);
    void borraVariable(const std::string& nombre);
    int32_t numeroVistas();
    std::string nombreVista(int32_t indice);
    void guardaVistaActual(const std::string& nombre);
    void guardaVistaActual();
    void activaVista(const std::string& nombre);
    void borraVista(const std::string& nombre);
    void copiaVista(WrapDibujoCAD& otro);

    // --- visibility flags: a variable whose existence hides ---------------------------
    void muestraModelos(bool mostrar);
    bool modelosVisibles();
    void muestraCamaras(bool mostrar);
    bool camarasVisibles();
    void muestraPuntosControl(bool mostrar);
    bool puntosControlVisibles();
    void muestraPlanoReferencia(bool mostrar);
    bool planoReferenciaVisible();
    void setRepresentacionModelos(representacion_modelos r);
    void setRepresentacionNubes(representacion_nubes r);

    // --- entity creation: each returns the new entity's handle, 0 when refused ---------
    // A coordinate that is not finite is refused with "Coordenada no válida".
    int64_t nuevoPunto(double x, double y, double z);
    // `color` holds red, green, blue in its three low bytes: a true colour.
    int64_t nuevoPunto(double x, double y, double z, int32_t color);
    int64_t nuevoTexto(const std::string& texto, double x, double y, double z,
                       alineacionTexto alineacion, double altura, double rotacion);
    int64_t nuevoPuntoControl(const std::string& nombre, const std::string& codigo, double x,
                              double y, double z);
    // The cross keeps `tamanyoPixeles` on screen at every zoom.
    int64_t nuevoPuntoControl(const std::string& nombre, const std::string& codigo, double x,
                              double y, double z, double tamanyoPixeles);
    int64_t nuevaLinea(double x1, double y1, double z1, double x2, double y2, double z2);
    // `n` points, three doubles each, taken from the caller's memory as they are.
    int64_t nuevaPolilinea(int32_t n, const double* coordenadas);
    int64_t nuevaPolilinea3D(const std::vector<double>& coordenadas, bool cerrada);
    int64_t nuevoPoligono(int32_t n, const double* coordenadas);
    int64_t nuevoPoligono(const std::vector<double>& coordenadas);
    // Appends a point to the point group `grupo`; the group's handle, or 0 when the handle
    // is no group.
    int64_t nuevoPunto(int64_t grupo, double x, double y, double z, int32_t color);
    // One entity for many points: three doubles a point, one colour (red in the low byte) a
    // point; the count is that of the colours.
    int64_t nuevoGrupoPuntos(const std::vector<double>& coordenadas,
                             const std::vector<int32_t>& colores);
    // `n` corners, 3 or 4, three doubles each from the caller's memory.
    int64_t nuevaCara3D(int32_t n, const double* coordenadas);
    // Two opposite corners, six doubles from the caller's memory.
    int64_t nuevoCubo(const double* coordenadas);
    // A Policara read from an OBJ file (and its MTL libraries), inserted whatever was read.
    int64_t nuevoObjeto3D(const std::string& ficheroObj);
    // A camera shot at x, y, z with the angles omega, phi, kappa (radians), focal distance
    // and image size; `nombre` labels it and `tag` is the material holding its photograph
    // (the host makes it; `ruta` is not read).
    int64_t nuevaTomaCamara(double x, double y, double z, double o, double p, double k, double d,
                            double w, double h, const std::string& nombre, const std::string& ruta,
                            int32_t tag);
    // The same, its glyph kept at `tamayoPixeles` on screen.
    int64_t nuevaTomaCamara(double x, double y, double z, double o, double p, double k, double d,
                            double w, double h, const std::string& nombre, const std::string& ruta,
                            int32_t tag, double tamayoPixeles);
    // A 360 photograph: a sphere of `anchura` meridians and `altura` parallels seen from
    // inside, turned by roll, pitch and yaw. The image `foto` becomes a material of the first
    // free id from 30000, sent to the display at once.
    int64_t nuevaFoto360(double x, double y, double z, double radio, int32_t anchura,
                         int32_t altura, double roll, double pitch, double yaw,
                         const std::string& foto);
    int64_t ultimaEntidadCreada();
    // Inserts through the editor (undoable, offered to the insertion reactor) when there is
    // one; takes ownership and deletes a refused entity.
    int64_t insertaEntidadGetHandle(cad::Entidad* e);
    bool insertaEntidad(cad::Entidad* e);

    // --- local systems --------------------------------------------------------------------
    // Origin and three axes, three doubles each (the axes are made unit).
    int64_t nuevoSistemaLocal(const std::string& nombre, const std::vector<double>& origen,
                              const std::vector<double>& ejeX, const std::vector<double>& ejeY,
                              const std::vector<double>& ejeZ);
    bool setOrigenSistemaLocal(const std::string& nombre, double x, double y, double z);
    int32_t numeroSistemasLocales();
    std::string nombreSistemaLocal(int32_t indice);
    bool existeSistemaLocal(const std::string& nombre);
    bool borraSistemaLocal(const std::string& nombre);
    // The editor's working frame: the drawing's system of that name (a copy: later edits of
    // the entity don't reach it). False, nothing changed, when the drawing has none so named.
    bool activaSistemaLocal(const std::string& nombre);
    // The working frame's name, origin and axes, three doubles each. False when none is
    // active: the identity frame is given then.
    bool sistemaLocalActual(std::string& nombre, std::vector<double>& origen,
                            std::vector<double>& ejeX, std::vector<double>& ejeY,
                            std::vector<double>& ejeZ);
    // Back to drawing coordinates.
    void quitaSistemaLocal();

    // --- selection and queries ------------------------------------------------------------
    // Handles of all entities, in list order; the count is the result.
    int32_t getEntidades(std::vector<int64_t>& handles);
    int32_t getEntidadesSeleccionadas(std::vector<int64_t>& handles);
    bool seleccionaEntidad(int64_t handle);
    void deselecciona();
    bool deselecciona(int64_t handle);
    bool borraEntidad(int64_t handle);
    // Asks the user to pick an entity; `handle` takes the first one under the click, 0 when
    // the wait was refused (false then).
    bool seleccionaEntidad(const std::string& mensaje, int64_t& handle);
    // The same, refusing without asking again an entity whose file tag or type name is not
    // `tipoEntidad` ("Pn1", "Polilinea"): false and handle 0 then.
    bool seleccionaEntidad(const std::string& mensaje, const std::string& tipoEntidad,
                           int64_t& handle);
    // Adds to the selection every closed polyline: flagged closed, or with at least three
    // vertices and its last on its first. Their handles in list order; the count is the result.
    int32_t seleccionaPolilineasCerradas(std::vector<int64_t>& handles);
    // A text at the centre of the entity's box, 10 below its top, in the measure style (an
    // undoable insertion); the new text's handle, 0 when none was made (unknown handle, a
    // height that is not positive, a vetoed insertion).
    int64_t textoEnEntidad(int64_t handle, double altura, const std::string& texto);
    // The vertex of the entity whose point lies nearest the ray under the display's cursor, as
    // the vertex editors choose it; -1 with no display, no cursor, no vertex or an unknown
    // handle.
    int32_t indiceMasCercanoCursor(int64_t handle);
    // Each line of the layer: its two ends (six doubles) and its colour as drawn (alpha, blue,
    // green, red from high to low, the layer's when by layer); the number of lines.
    int32_t getLineasCapa(const std::string& capa, std::vector<double>& coordenadas,
                          std::vector<uint32_t>& coloresABGR);
    // The control points in list order: handles, names and x, y, z each; their number.
    int32_t getPuntosControl(std::vector<int64_t>& handles, std::vector<std::string>& nombres,
                             std::vector<double>& coordenadas);
    // False, the arguments untouched, when the handle names no control point.
    bool getPuntoControl(int64_t handle, std::string& nombre, std::string& codigo, double& x,
                         double& y, double& z);
    // The hot points of kind vertex, three doubles each (a plane's contour points are not
    // vertices, a box has one at its first corner); the result is the number of doubles.
    int32_t getSoloVertices(int64_t handle, std::vector<double>& coordenadas);
    // The mesh figures of a Superficie or a solid (Objeto3D, box, prism, cylinder, sphere) in
    // drawing coordinates: area of the live faces, valid vertices, live faces, valid edges and
    // distinct materials. False, the arguments untouched, for any other entity.
    bool propiedadesSuperficie(int64_t handle, double& area, int32_t& vertices, int32_t& caras,
                               int32_t& aristas, int32_t& materiales);
    // The length of a polyline; 0.0 for anything else.
    double longitud(int64_t handle);
    // The defining points, three doubles each; the result is the number of doubles.
    int32_t getVertices(int64_t handle, std::vector<double>& coordenadas);
    // Deletes every camera shot and 360 photo with the material of its photograph; the
    // number deleted.
    int32_t borraTomasCamaras();
    // The camera shots: their handles, and nine doubles each (x, y, z, omega, phi, kappa,
    // focal distance, image width and height); the result is their number.
    int32_t getTomasCamaras(std::vector<int64_t>& handles, std::vector<double>& datos);

    // --- faces of models --------------------------------------------------------------
    // The faces a pick can find on the entity.
    int32_t numeroCaras(int64_t handle);
    // Face i's corners, three doubles each; the result is the number of doubles.
    int32_t getVerticesCara(int64_t handle, int32_t i, std::vector<double>& coordenadas);
    // Face i of a model (an Objeto3D's or a Superficie's) takes the material and, corner by
    // corner, the u, v pairs of `coordenadas`.
    bool setMapeoFotografia(int64_t handle, int32_t i, int32_t idMaterial,
                            const std::vector<double>& coordenadas);
    bool setMapeoTextura(int64_t handle, int32_t i, int32_t idMaterial);
    // Every face takes the material, and the vertices texture coordinates projected on the
    // plane of the mean face normal.
    bool setMapeoTextura(int64_t handle, int32_t idMaterial);

    // --- exporters kept as traversals: they write no file ---------------------------------
    // True for the handle of an Objeto3D.
    bool exportaPLY(int64_t handle, const std::string& fichero);
    bool exportaSKP(const std::string& fichero);
    bool exportaCollada(const std::string& fichero, const std::string& ficheroTmp,
                        const std::string& ficheroExec);

    // --- editor: undo, command line, input and commands ---------------------------------
    // A command operation returns when the user has finished it; while it waits, the
    // thread's message queue runs, and the host calls back in from those messages
    // (introPulsado, cancelaComando, painting, another command).
    bool puedeDeshacer();
    bool puedeRehacer();
    // Nothing happens on an empty stack.
    void deshacer();
    void rehacer();
    void cancelaComando();
    // The line the user typed, as the answer to the prompt that shows.
    void introPulsado(const std::string& texto);
    // The option words of the prompt that shows, in order.
    std::vector<std::string> listaOpciones();
    bool lineaComandosEsperaCoordenada();
    bool lineaComandosEsperaValor();
    void lineaComandosLimpiaEntrada();
    // The cursor point in the two coordinates of the view's plane; `faltaComponte` tells which
    // drawing axis (0 x, 1 y, 2 z) is missing. False in 2D, where x and y are given.
    bool getCursor(double& x, double& y, int32_t& faltaComponte);
    bool getCursor3d(double& x, double& y, double& z);
    // Asks for a value; an empty answer keeps `valDefecto`. False on cancel.
    bool getValor(const std::string& mensaje, std::string& valor, const std::string& valDefecto);
    bool getValor(const std::string& mensaje, double& valor, double valDefecto);
    bool getValor(const std::string& mensaje, int32_t& valor, int32_t valDefecto);
    bool getValor(const std::string& mensaje, bool& valor, bool valDefecto);
    bool getPunto(const std::string& mensaje, double& x, double& y, double& z);
    // With option words: `opcion` is the chosen option's index, -1 when a point was given.
    bool getPunto(const std::string& mensaje, const std::vector<std::string>& opciones,
                  int32_t& opcion, double& x, double& y, double& z);
    // Two raw clicks, as pixel corners.
    bool getVentana(const std::string& mensaje1, const std::string& mensaje2, int32_t& x1,
                    int32_t& y1, int32_t& x2, int32_t& y2);
    // Two points, snapped as the settings say.
    bool getVentana(const std::string& mensaje1, const std::string& mensaje2, double& x1,
                    double& y1, double& z1, double& x2, double& y2, double& z2);
    bool getCirculo(const std::string& mensaje1, const std::string& mensaje2, double& x, double& y,
                    double& z, double& radio);
    bool getCirculo(const std::string& mensaje1, const std::string& mensaje2, double& x, double& y,
                    double& z, double& xBorde, double& yBorde, double& zBorde);
    // The commands give the count of entities they made, or whether they ended well; 0 or
    // false with no editor (WrapDibujoCADComandos.cpp).
    int32_t comandoPunto();
    int32_t comandoLinea();
    int32_t comandoPolilinea(bool unaSola = false, bool cerrada = false);
    // One polyline; its handle, 0 when none was made.
    int64_t comandoPolilineaGetHandle(bool cerrada = false);
    // 0 for a handle asks the user for that polyline.
    bool comandoFusionPolilineas(int64_t destino, int64_t origen, bool borraOrigen);
    bool comandoFusionPolilineasNueva(int64_t destino, bool borraOrigen);
    int32_t comandoCara3D3();
    int32_t comandoCara3D4();
    int32_t comandoCara();
    int32_t comandoPlano();
    bool comandoContornoPlano();
    int32_t comandoParalelaPlano();
    int32_t comandoPerpendicularPlano();
    int32_t comandoCubo();
    int32_t comandoModeloCubo();
    int32_t comandoModeloCilindro();
    int32_t comandoModeloEsfera();
    int32_t comandoConvierteObjeto3D();
    // The material new faces and models take; 0 is none. False for an id the drawing lacks.
    bool setMaterialActual(int32_t id);
    int32_t materialActual();

    // Editing commands. A polyline handle of 0 asks the user for the polyline; a handle that
    // names no polyline makes the command answer false without asking. A `material` of ""
    // assigns the current material.
    int32_t comandoBorrar();
    int32_t comandoMover();
    int32_t comandoMoverXYZ(double dx, double dy, double dz);
    int32_t comandoCopiar();
    // 0 for a handle asks for the entity; an index of -1 asks for the hot element.
    bool comandoEditar(int64_t handle = 0, int32_t indice = -1, bool repite = true,
                       bool anunciaReactores = true);
    bool comandoEditPol(int64_t polilinea = 0);
    bool comandoEditarVertsPolPerfil(int64_t polilinea, int32_t indice = -1);
    bool comandoInsertaVertsPolPerfil(int64_t polilinea = 0);
    bool comandoInsertaVertsPol(int64_t polilinea = 0, int32_t indice = -1);
    bool comandoBorrarVertsPol(int64_t polilinea = 0);
    bool comandoBorrarRangoVertsPol(int64_t polilinea = 0);
    bool comandoBorrarVentanaVertsPol(int64_t polilinea = 0);
    int32_t comandoAsignaMaterial(const std::string& material = "");
    bool comandoExtrusionEntidad();
    bool comandoExtrusion(bool cierra = false);
    // Mesh commands: each asks for a mesh object and the element it works on.
    bool comandoParteArista(int32_t partes);
    bool comandoParteCara();
    bool comandoUneVertices();
    bool comandoRecortaCara();
    bool comandoRellenaHueco();
    bool comandoInvierteNormales();
    bool comandoBorraVerticeModelo();
    bool comandoBorraAristaModelo();
    bool comandoBorraCaraModelo();
    bool comandoHueco();
    bool comandoHuecoPolilinea();
    // The number of contour polylines made; -1 when refused.
    int32_t comandoIsolineas();
    bool uneModelos();
    bool unePlanos();
    bool extiendePlanos();

    // Measuring: the figures stay on the drawing as texts, one undo step each, and are printed.
    // The 3D distance between two points; 0 when refused.
    double comandoDistancia();
    // The total length of one open polyline drawn for it.
    double comandoDistanciaPolilinea();
    // The same two points and their 3D and plan distances; nothing is inserted.
    // `transparente` lets it run inside another command.
    bool comandoDistanciaConSnap(double& x1, double& y1, double& z1, double& x2, double& y2,
                                 double& z2, double& distancia3D, double& distancia2D,
                                 bool transparente);
    // Twice the plan area of one closed polyline drawn for it, negative when drawn clockwise.
    double comandoArea();
    // The angles of a closed polyline of three sides, in gons; false when none were written
    // (refused, or a polyline of other than three sides).
    bool comandoAngulo();
    // Two points with a line rubber band between them, for a profile the host draws: the
    // prompts "Seleccione el punto inicial del perfil rapido:" and "Seleccione el punto final
    // del perfil rapido:", or those given. False when either was refused.
    bool comandoPidePuntosPerfilRapido(double& x1, double& y1, double& z1, double& x2, double& y2,
                                       double& z2);
    bool comandoPidePuntosPerfilRapido(const std::string& mensaje1, const std::string& mensaje2,
                                       double& x1, double& y1, double& z1, double& x2, double& y2,
                                       double& z2);

    // View, reference plane and local-system commands.
    // Pan and rotation with the mouse until the command ends; always true with an editor.
    bool comandoEncuadre();
    bool comandoRotacion();
    // Two clicks; the display zooms to their pixel rectangle.
    bool comandoZoomVentana();
    bool comandoZoomVentana(const std::string& mensaje1, const std::string& mensaje2);
    // "Planta", "Vista" or an entity; true when the reference plane changed.
    bool comandoPlanoReferencia();
    bool comandoCentroRotacion();
    // Origin and axes by clicks, made the working frame; a non-empty name also stores the
    // frame in the drawing as a SistemaLocal. False when refused.
    bool comandoSistemaLocal(const std::string& nombre);
    // The display's camera at a picked camera shot or 360 photo.
    bool comandoPosicionCamara();
    // A point where three picked planes meet.
    bool comandoInterseccionPlanos();

    // --- vertex marks (WrapDibujoCADArrastre.cpp) ----------------------------------------
    bool marcaVerticesEntidad(int64_t handle, uint32_t inicio, uint32_t fin);
    bool quitaMarcasVerticesEntidad(int64_t handle);

    // --- property sheets and the clipboard (WrapDibujoCADPropiedades.cpp) -----------------
    // The clipboard is the process's: a copy made here pastes into another facade's drawing,
    // with the materials it uses.
    void cortar();
    void copiar();
    void pegar();
    bool comandoPropiedades();

    // The sheet of the entity `handle`; an unknown or zero handle gives the editor's own
    // sheet ("Entidad" reading "Sin selección", "Capa" the current layer). With no editor:
    // 0, "" or false, and nothing changed.
    int32_t numeroCategorias(int64_t handle);
    std::string nombreCategoria(int64_t handle, int32_t categoria);
    int32_t numeroPropiedadesCategoria(int64_t handle, int32_t categoria);
    // A row's name, kind, text and read-only flag (advice: the sheet decides on a write).
    bool getPropiedad(int64_t handle, int32_t categoria, int32_t indice, std::string& nombre,
                      tipoPropiedad& tipo, std::string& valor, bool& soloLectura);
    // The same and, for a colour, the layer's colour (alpha, red, green, blue from high to
    // low); `colorPorCapa` becomes 0 when the colour is by layer and is left as it was
    // otherwise.
    bool getPropiedad(int64_t handle, int32_t categoria, int32_t indice, std::string& nombre,
                      tipoPropiedad& tipo, std::string& valor, bool& soloLectura,
                      int32_t& colorPorCapa, uint32_t& colorCapa);
    // The same and, for a material, its id and the host's id of it.
    bool getPropiedad(int64_t handle, int32_t categoria, int32_t indice, std::string& nombre,
                      tipoPropiedad& tipo, std::string& valor, bool& soloLectura, int16_t& material,
                      int32_t& idbd);
    // The same and x, y, z of a coordinate, vector or orientation, in a new array of three.
    bool getPropiedad(int64_t handle, int32_t categoria, int32_t indice, std::string& nombre,
                      tipoPropiedad& tipo, std::string& valor, bool& soloLectura,
                      std::vector<double>& coordenadas);
    // By the row's name, ASCII case aside; false for an unknown handle or name.
    bool getPropiedad(int64_t handle, const std::string& nombre, double& valor);
    bool getPropiedad(int64_t handle, const std::string& nombre, int32_t& valor);
    bool getPropiedad(int64_t handle, const std::string& nombre, std::string& valor);
    // Writes a row from its text; the row's other fields are taken as they stand. A colour's
    // text is the packed colour (alpha, red, green, blue from high to low). On the layer row
    // it moves the entity to that layer (undoable) and makes the layer current.
    bool setPropiedad(int64_t handle, int32_t categoria, int32_t indice, const std::string& valor);
    // A colour by palette index (0 to 255, 256 by layer), or by `valor` when `indiceColor` is
    // -1.
    bool setPropiedad(int64_t handle, int32_t categoria, int32_t indice, const std::string& valor,
                      int32_t indiceColor);
    // A material row: the material's id, and the host's id to store into that material.
    bool setPropiedad(int64_t handle, int32_t categoria, int32_t indice, int16_t material,
                      int32_t idbd);
    // A coordinate, vector or orientation: the first three numbers; fewer change nothing.
    bool setPropiedad(int64_t handle, int32_t categoria, int32_t indice,
                      const std::vector<double>& coordenadas);
    // By name: a double keeps three significant digits on its way in.
    bool setPropiedad(int64_t handle, const std::string& nombre, double valor);
    bool setPropiedad(int64_t handle, const std::string& nombre, int32_t valor);
    bool setPropiedad(int64_t handle, const std::string& nombre, const std::string& valor);
    int32_t numeroValoresEnumerados(int64_t handle, int32_t categoria, int32_t indice);
    bool valorEnumerado(int64_t handle, int32_t categoria, int32_t indice, int32_t i,
                        std::string& valor);
    bool getEnumerado(int64_t handle, int32_t categoria, int32_t indice, int32_t& i);
    bool setEnumerado(int64_t handle, int32_t categoria, int32_t indice, int32_t i);
    int32_t numeroElementosLista(int64_t handle, int32_t categoria, int32_t indice);
    bool getElementoLista(int64_t handle, int32_t categoria, int32_t indice, int32_t i, double& x,
                          double& y, double& z);
    // `xyz`: three doubles of the caller's memory, taken as they are; null changes nothing.
    bool setElementoLista(int64_t handle, int32_t categoria, int32_t indice, int32_t i,
                          const double* xyz);
    bool comandoSeleccionaEntidades(const std::string& mensaje1, const std::string& mensaje2,
                                    tipoSeleccion tipo);
    // The entities the display finds in a box of kVentanaReferencia / 2 pixels to each side.
    int64_t getEntidadBajoPixel(int32_t x, int32_t y);
    int32_t getEntidadesBajoPixel(int32_t x, int32_t y, std::vector<int64_t>& handles);

    // --- hollow operations ------------------------------------------------------------
    bool liberaRecursosEntidad(int64_t handle);
    // Shows the host's context menu with the items "1", "2", "3".
    void muestraMenuContexto(int32_t x, int32_t y);

    // --- fields, in the frame's order ---------------------------------------------------
    cad::Dibujo* mDibujo = nullptr;
    cad::EditorDibujo* mEditor = nullptr;
    cad::PantallaCAD* mPantalla = nullptr;
    ActualizaDelegate mActualiza;
    std::unique_ptr<ActualizaDelegate_Wrapper> mActualizaDelegateWrapper;
    ProcesoEventosDelegate mProcesoEventos;
    std::unique_ptr<ProcesoEventosDelegate_Wrapper> mProcesosEventosDelegateWrapper;
    SalidaTextoDelegate mSalidaTexto;
    std::unique_ptr<SalidaTextoDelegate_Wrapper> mSalidaTextoDelegateWrapper;
    EdicionEntidadesDelegate mReactorEdicion;
    std::unique_ptr<EdicionEntidadesDelegate_Wrapper> mReactorEdicionDelegateWrapper;
    InsercionEntidadesDelegate mReactorInsercion;
    std::unique_ptr<InsercionEntidadesDelegate_Wrapper> mReactorInsercionDelegateWrapper;
    ComandoInteractivoDelegate mReactorComandoInteractivo;
    std::unique_ptr<ComandoInteractivoDelegate_Wrapper> mReactorComandoInteractivoDelagateWrapper;
    InicioProcesoReferenciaEntidadesDelegate mReactorInicioProcesoReferenciaEntidades;
    std::unique_ptr<InicioProcesoReferenciaEntidadesDelegate_Wrapper>
        mInicioProcesoReferenciaEntidadesDelegateWrapper;
    FinalizaProcesoReferenciaEntidadesDelegate mReactorFinalizaProcesoReferenciaEntidades;
    std::unique_ptr<FinalizaProcesoReferenciaEntidadesDelegate_Wrapper>
        mFinalizaProcesoReferenciaEntidadesDelegateWrapper;
    VisorPropiedadesDelegate mVisorPropiedades;
    std::unique_ptr<VisorPropiedadesDelegate_Wrapper> mVisorPropiedadesWrapper;
    MenuContextoDelegate mMenuContexto;

private:
    void creaWrapperActualizacion();
    void creaWrapperSalidaTexto();
    void creaWrapperVisorPropiedades();
    void creaWrapperReactorEdicion();
    void creaWrapperReactorInsercion();
    void creaWrapperReactorComandoInteractivo();
    void creaWrapperReactorInicioProcesoReferenciaEntidades();
    void creaWrapperReactorFinalizaProcesoReferenciaEntidades();
    void muestraVariable(const char* variable, bool mostrar);
    // The walk of the gutted exporters: the lines, polylines and models, and of each model
    // the first face's material; false with no editor.
    bool recorreModelos();
    bool camara(int cual, double& x, double& y, double& z);
    // The three steps of an export, in their order, through `dxf`.
    void escribeDXF(cad::ExportaDXF& dxf);
    // After an import: layers, control and document notices to the host.
    void avisaImportacion();
    // Runs a checked file operation of the editor; `mensaje` takes the path's or memory's
    // failure, or `resultado`'s.
    template <typename Operacion>
    bool conEditor(const std::string& fichero, std::string& mensaje,
                   cad::resultadoFichero_t& resultado, Operacion operacion);
    // exportaDXFComprobado but for the failures of the path and of memory.
    bool intentaExportarDXF(const std::string& fichero, std::string& mensaje);
    bool leePropiedad(int64_t handle, int32_t categoria, int32_t indice, cad::Prop& p,
                      std::string& nombre, tipoPropiedad& tipo, std::string& valor,
                      bool& soloLectura);
};

}  // namespace Fendrix
