// PantallaReferencia: a complete display that retains, projects and picks but paints nothing.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "pantalla/PantallaCAD.h"

namespace cad
{

// One primitive as the kernel described it: drawing coordinates, the drawing state in force
// when it came, and the value to report when it is picked.
struct primitiva_t
{
    enum tipo_primitiva
    {
        kPunto = 0,
        kGrupoPuntos = 1,
        kVector = 2,
        kLinea = 3,
        kPolilinea = 4,
        kPoligono = 5,
        kTexto = 6,
        kMarca = 7,
        kObjeto = 8
    };

    tipo_primitiva tipo = kPunto;
    // The vertices; for a text or a mark, its position alone.
    std::vector<Punto3<double>> puntos;
    std::vector<uint32_t> colores;          // one per point, when the kernel gave them
    std::vector<uint32_t> aristas;          // objects: two indices into `puntos` per segment
    std::vector<int32_t> caras;             // objects: per polygon its count, then its indices
    std::vector<Vector3D<float>> normales;  // objects: one per vertex
    std::vector<float> uv;                  // objects: a pair per vertex
    bool cerrada = false;                   // polylines: the closing edge is drawn
    uint32_t color = 0;
    int modo = 0;  // objects: the representation; marks: the tipo_marca

    // Texts, the string as UTF-8.
    std::string texto;
    int alineacion = 0;
    float altura = 0.0F;
    float rotacion = 0.0F;
    std::string fuente;
    int estilo = 0;

    // Objects: material and colour of the material, -1 and 0 when none was set.
    int16_t material = -1;
    uint32_t colorMaterial = 0;
    float brillo = 0.0F;
    float opacidad = 1.0F;

    // Objects under escalaConstante: `escala` drawing units measure `pixeles` on screen.
    bool escalaFija = false;
    Punto3<double> centroEscala;
    double escala = 1.0;
    double pixeles = 0.0;

    // Drawing state when the primitive came.
    uint16_t patron = PantallaCAD::kLineaContinua;
    float grosor = 1.0F;
    bool primerPlano = false;

    void* pick = nullptr;
};

// A display for tests and for hosts that paint by themselves. It keeps the scene the kernel
// describes, owns an orthographic camera, turns pixels into rays and back, queues clicks as
// pick events, answers the pixel-rectangle query from the geometry it kept and, when asked,
// records every call as one line of text.
//
// Pixels: pixel (x, y) is the screen point (x, y) of the kernel's own projection,
// sx = ((X / w) * 0.5 + 0.5) * ancho and sy = ((Y / w) * 0.5 + 0.5) * alto for the clip
// coordinates X, Y, w, so x grows to the right and y grows UPWARDS from the bottom edge. A
// host whose pointer counts rows from the top passes alto - fila. A ray through a pixel
// projects back onto that pixel, which is what the kernel's snap and hot-element search
// compare against.
//
// Camera: look-at from `posicion` to `objetivo` with `arriba` as the up hint (a hint parallel
// to the view falls back to +Y, then +Z). The projection is orthographic: `zoom` is pixels
// per drawing unit, so the view shows ancho / zoom by alto / zoom drawing units around the
// target and tamanoPixel is 1 / zoom. Depth runs `profundidad` units to either side of the
// camera's plane, so nothing near the camera is clipped for standing behind it. `angulo` and
// the photo camera's angles are kept and given back; an orthographic view has no use for
// them.
//
// Precision: every matrix acts on the point minus `origenVista`, as the kernel subtracts it
// before projecting. The origin stays (0,0,0): doubles carry survey coordinates such as
// 4581320 to far below a pixel, and a host that paints in floats sets its own origin.
//
// Hidden entities: nothing is hidden, since there is no depth test, so incluyeOcultas does
// not change the answer. A local system set by the kernel is kept, not applied: positions
// and rays stay in drawing coordinates.
//
// Not thread-safe: the kernel and the host call it from one thread.
class PantallaReferencia : public PantallaCAD
{
public:
    // A material or texture the kernel declared.
    struct material_t
    {
        uint32_t color = 0;
        float brillo = 0.0F;
        std::string imagen;  // empty for a plain material
    };

    void setModoLinea(uint16_t patron) override;
    void setGrosor(float grosor) override;
    void setPrimerPlano(bool activo) override;
    void setColorFondo(uint32_t color) override;
    void limpia() override;
    void dibujaPunto(const Punto3<double>& p, uint32_t color, void* pick) override;
    void dibujaGrupoPuntos(int n, const Punto3<double>* puntos, const uint32_t* colores,
                           void* pick) override;
    void dibujaVector(const Punto3<double>& origen, const Punto3<double>& extremo, uint32_t color,
                      float grosor, void* pick) override;
    void dibujaLinea(const Linea3D<double>& linea, uint32_t color, void* pick) override;
    void dibujaPolilinea(int n, const Punto3<double>* puntos, bool cerrada, uint32_t color,
                         void* pick) override;
    void dibujaPoligono(int n, const Punto3<double>* puntos, uint32_t color, void* pick) override;
    void dibujaTextoAncho(const Punto3<double>& posicion, const wchar_t* texto, uint32_t color,
                          int alineacion, float altura, float rotacion, const char* fuente,
                          int estilo, void* pick) override;
    void dibujaTexto(const Punto3<double>& posicion, const char* texto, uint32_t color,
                     int alineacion, float altura, float rotacion, const char* fuente, int estilo,
                     void* pick) override;
    void nuevaTextura(int16_t idMaterial, const char* imagen, uint32_t color,
                      float brillo) override;
    void nuevoMaterial(int16_t idMaterial, uint32_t color, float brillo) override;
    // Colour and shine of the open object, or of the next one when none is open.
    void setColorMaterial(uint32_t color, float brillo, float opacidad) override;
    // Material of the next object to open.
    void setMaterial(int16_t idMaterial) override;
    // Opens an object; the vertex and index calls up to finObjeto fill it, and calls of
    // that kind outside an object are only recorded.
    void iniciaObjeto(uint32_t color, int modo) override;
    void vertices(int n, const Punto3<double>* v) override;
    void escalaConstante(const Punto3<double>& centro, double escala, double pixeles) override;
    void normales(int n, const Vector3D<float>* v) override;
    void coordenadasUV(int n, const float* uv) override;
    void aristas(int n, const uint32_t* indices) override;
    void coloresVertices(int n, const uint32_t* colores) override;
    void caras(int n, const int32_t* datos) override;
    void finObjeto(void* pick) override;
    void inicioSuperposicion() override;
    void finSuperposicion() override;
    void dibujaMarca(const Punto3<double>& posicion, int tipo, uint32_t color) override;
    void inicioDibujo() override;
    void finDibujo() override;
    void finEntidades() override;
    // Pops the oldest queued click.
    bool getEvento(cursor_t& cursor, int& estado) override;
    void getCursor(cursor_t& c) override;
    void getVista(Matriz4<double>& v) override;
    void getProyeccion(Matriz4<double>& p) override;
    // Keeps the snap result as the current cursor.
    void setCursor(const cursor_t& c) override;
    // This display raises no events of its own: always false.
    bool eventoPendiente(evento_t& evento) override;
    // Clears `picks`, then gives each distinct non-null pick value whose geometry touches the
    // rectangle (limits included), in the order the scene was described. Touching means a
    // point inside, a segment or edge crossing it, or a polygon or face covering its centre;
    // a text is its position. Objects under escalaConstante are measured at the present
    // zoom. An inverted rectangle touches nothing.
    void entidadesEnRectangulo(const Rect2<int>& rectangulo, bool incluyeOcultas,
                               std::vector<void*>& picks) override;
    void tamanoPixel(double& tamano) override;
    void setCentroRotacion(const Punto3<double>& centro) override;
    void getNormalVista(Vector3D<double>& normal) override;
    Punto3<double>& getOrigenVista(Punto3<double>& origen) override;
    // Stores the camera. True while the retained scene is empty: the drawing clears the scene
    // before it places a stored view, and only a rebuild fills it again.
    bool setCamara(const Punto3<double>& posicion, const Punto3<double>& objetivo,
                   const Vector3D<double>& arriba, double zoom, double angulo) override;
    // As setCamara, keeping the zoom; the two angles are stored in anguloVision and giro.
    bool setCamaraFoto(const Punto3<double>& posicion, const Punto3<double>& objetivo,
                       const Vector3D<double>& arriba, double anguloVision, double giro) override;
    void getCamara(Punto3<double>& posicion, Punto3<double>& objetivo, Vector3D<double>& direccion,
                   Vector3D<double>& arriba, double& zoom, double& angulo) override;
    bool es2D() override;
    void setSistemaLocal(const Vector3D<double>& ejeX, const Vector3D<double>& ejeY,
                         const Vector3D<double>& ejeZ) override;
    void quitaSistemaLocal() override;
    void setModoInteraccion(int modo) override;
    // Keeps the text and hands it to salidaTexto when that is set.
    void muestraTexto(const char* texto) override;
    // Multiplies the zoom; a factor that is not a positive number is ignored.
    void zoomEscala(double factor) override;
    // Aims at the box's centre along the present view direction and distance, with the zoom
    // that just fits the box's eight corners. An invalid box changes nothing; a box that
    // projects to a single point keeps the zoom.
    void zoomExtension(const Rect3<double>& caja) override;
    // Centres the pixel window and zooms so that it fills the viewport on its tighter axis.
    // A window with no width and no height changes nothing.
    void zoomVentana(const Punto2<int>& esquina1, const Punto2<int>& esquina2) override;
    void setModo2D(bool activo) override;
    void getTamanoVista(double& anchoVista, double& altoVista) override;

    // Host side. Viewport size in pixels; sizes below 1 are ignored.
    void setTamano(int nuevoAncho, int nuevoAlto);
    // The pointer moved: the cursor becomes pixel (x, y) with its ray; `plano` and `local`
    // are the ray's point on the plane through `objetivo` square to the ray (what a raw
    // click gives), `referencia` is `invalido`. The ray is taken now, as a pointer event
    // would take it.
    void setPosicionCursor(int x, int y);
    // A click: moves the cursor there and queues it as a pick event with `boton` as state.
    void clic(int x, int y, int boton = kBotonIzquierdo);

    // The screen point of `p` by the kernel's formula, through getProyeccion * getVista and
    // minus `origenVista`. Both coordinates are NaN where the formula gives no point.
    Punto2<double> proyecta(const Punto3<double>& p);
    // The pick ray of pixel (x, y): from the near limit of the depth range towards the far
    // one, so that every point on it projects onto (x, y). A matrix that cannot be inverted
    // gives `invalido` and a zero direction.
    void rayo(int x, int y, Punto3<double>& origen, Vector3D<double>& direccion);
    // unit(objetivo - posicion); straight down when the two coincide.
    Vector3D<double> direccionVista() const;
    // The camera's matrices, whatever getVista and getProyeccion give.
    Matriz4<double> matrizVista() const;
    Matriz4<double> matrizProyeccion() const;

    // The recorded lines whose text starts with `nombre`.
    std::vector<std::string> llamadasDe(const std::string& nombre) const;
    // "(x,y,z)" with %g, the form points take in the recorded lines.
    static std::string texto(const Punto3<double>& p);

    // Recording: one line per call of the contract, when `grabando`.
    bool grabando = true;
    std::vector<std::string> llamadas;

    // The retained scene, and the overlay that inicioSuperposicion starts afresh; only the
    // scene is picked.
    std::vector<primitiva_t> escena;
    std::vector<primitiva_t> superposicion;
    std::map<int16_t, material_t> materiales;

    // Camera.
    Punto3<double> posicion{0, 0, 10};
    Punto3<double> objetivo{0, 0, 0};
    Vector3D<double> arriba{0, 1, 0};
    double zoom = 1.0;  // pixels per drawing unit; not a positive number counts as 1
    double angulo = 0.0;
    double anguloVision = 0.0;
    double giro = 0.0;
    double profundidad = 1.0e6;
    Punto3<double> origenVista{0, 0, 0};
    Punto3<double> centroRotacion{0, 0, 0};
    int ancho = 800;
    int alto = 600;

    // Input.
    cursor_t cursor;
    std::deque<std::pair<cursor_t, int>> eventos;

    // State the kernel sets.
    bool modo2D = false;
    int modoInteraccion = 0;
    bool haySistemaLocal = false;
    Vector3D<double> ejeLocalX{1, 0, 0};
    Vector3D<double> ejeLocalY{0, 1, 0};
    Vector3D<double> ejeLocalZ{0, 0, 1};
    uint32_t colorFondo = 0;
    uint16_t patron = kLineaContinua;
    float grosor = 1.0F;
    bool primerPlano = false;
    bool enSuperposicion = false;

    // Prompt output.
    std::vector<std::string> textos;
    std::function<void(const std::string&)> salidaTexto;

protected:
    void graba(const std::string& linea);

private:
    // A new primitive with the drawing state in force.
    primitiva_t nueva(primitiva_t::tipo_primitiva tipo, uint32_t color, void* pick) const;
    std::vector<primitiva_t>& destino() { return enSuperposicion ? superposicion : escena; }
    double zoomEfectivo() const;
    // getProyeccion * getVista, the matrix of the kernel's screen formula.
    Matriz4<double> matrizPantalla();
    // The screen points of a primitive's vertices, constant-scale objects scaled first.
    std::vector<Punto2<double>> proyectaPrimitiva(const primitiva_t& pr, const Matriz4<double>& m,
                                                  double pixel) const;
    void textoComun(const Punto3<double>& p, std::string t, uint32_t color, int alineacion,
                    float altura, float rotacion, const char* fuente, int estilo, void* pick);

    bool objetoAbierto = false;
    primitiva_t objeto;
    // setMaterial and setColorMaterial may come before the object they are for opens.
    int16_t materialSiguiente = -1;
    uint32_t colorMaterialSiguiente = 0;
    float brilloSiguiente = 0.0F;
    float opacidadSiguiente = 1.0F;
};

}  // namespace cad
