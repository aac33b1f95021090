// The display contract: the abstract device that the host supplies and the kernel only calls.
#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "base/geometria/Linea3D.h"
#include "base/geometria/Matriz4.h"
#include "base/geometria/Punto2.h"
#include "base/geometria/Punto3.h"
#include "base/geometria/Rect2.h"
#include "base/geometria/Rect3.h"
#include "base/geometria/Vector3D.h"
#include "base/geometria/Vector4D.h"

namespace cad
{

class Entidad;

// A pick: pixel, pick ray, the points on the reference plane and the snapped point.
struct cursor_t
{
    int32_t x = -1;  // pixel; -1 when empty
    int32_t y = -1;
    Punto3<double> posicion = invalido;  // world point under the pixel, near side
    Vector3D<double> direccion;           // pick ray
    Punto3<double> local = invalido;     // on the reference plane, active local system
    Punto3<double> plano = invalido;     // on the reference plane, drawing coordinates
    Punto3<double> referencia = invalido;  // snapped point
    int32_t tipo = 0;                       // mask bit of the snap that gave `referencia`
    Entidad* entidad = nullptr;             // snapped entity

    // The snapped point when there is one, otherwise the point on the plane.
    const Punto3<double>& get() const { return referencia != invalido ? referencia : plano; }
};

// An event of the display itself (eventoPendiente); its meaning is the display's own.
struct evento_t
{
    int32_t tipo = 0;
    int32_t x = 0;
    int32_t y = 0;
    int32_t boton = 0;
};

// The virtual operations stand in a fixed order. The `reservado` ones keep the places of
// operations that no kernel code calls; a display may leave them as they are.
// `pick` is the value to report when the primitive is picked (an Entidad*), or null.
// Colours are 32-bit values packed alpha, blue, green, red from high to low.
class PantallaCAD
{
public:
    enum nivel_concurrencia
    {
        kUnHilo = 0,
        kMultiHilo = 1
    };
    enum modo_linea
    {
        kLineaContinua = 0xFFFF,
        kLineaPuntos = 0xAAAA,
        kLineaDiscontinua = 0xF0F0
    };
    enum alineacion
    {
        kAlineacionHorizontalIzq = 0,
        kAlineacionHorizontalCen = 1,
        kAlineacionHorizontalDer = 2,
        kAlineacionVerticalInf = 0,
        kAlineacionVerticalMed = 4,
        kAlineacionVerticalSup = 8
    };
    enum representacion
    {
        kAlambrica = 0,
        kConceptual = 1,
        kOculto = 2,
        kRealista = 3,
        kRayosX = 4,
        kTexturas = 5
    };
    enum tipo_marca
    {
        kMarcaPunto = 0,
        kMarcaExtremo = 8,
        kMarcaMedio = 9,
        kMarcaCentro = 10,
        kMarcaInterseccion = 11
    };
    enum boton_raton
    {
        kBotonIzquierdo = 1,
        kBotonDerecho = 2
    };
    enum estado_visor
    {
        kVisorLibre = 0,
        kVisorPlano = 1,
        kVisorSeleccion = 2
    };

    virtual ~PantallaCAD() = default;

    virtual void reservado0() {}
    virtual void reservado1() {}
    virtual void setModoLinea(uint16_t patron) = 0;
    virtual void setGrosor(float grosor) = 0;
    virtual void setPrimerPlano(bool activo) = 0;
    virtual void setColorFondo(uint32_t color) = 0;
    virtual void limpia() = 0;
    virtual void dibujaPunto(const Punto3<double>& p, uint32_t color, void* pick) = 0;
    virtual void dibujaGrupoPuntos(int n, const Punto3<double>* puntos, const uint32_t* colores,
                                   void* pick) = 0;
    virtual void dibujaVector(const Punto3<double>& origen, const Punto3<double>& extremo,
                              uint32_t color, float grosor, void* pick) = 0;
    virtual void dibujaLinea(const Linea3D<double>& linea, uint32_t color, void* pick) = 0;
    virtual void dibujaPolilinea(int n, const Punto3<double>* puntos, bool cerrada,
                                 uint32_t color, void* pick) = 0;
    virtual void dibujaPoligono(int n, const Punto3<double>* puntos, uint32_t color,
                                void* pick) = 0;
    virtual void dibujaTextoAncho(const Punto3<double>& posicion, const wchar_t* texto,
                                  uint32_t color, int alineacion, float altura, float rotacion,
                                  const char* fuente, int estilo, void* pick) = 0;
    virtual void dibujaTexto(const Punto3<double>& posicion, const char* texto, uint32_t color,
                             int alineacion, float altura, float rotacion, const char* fuente,
                             int estilo, void* pick) = 0;
    virtual void reservado2() {}
    virtual void reservado3() {}
    virtual void reservado4() {}
    virtual void reservado5() {}
    virtual void reservado6() {}
    virtual void reservado7() {}
    virtual void reservado8() {}
    virtual void reservado9() {}
    virtual void nuevaTextura(int16_t idMaterial, const char* imagen, uint32_t color,
                              float brillo) = 0;
    virtual void nuevoMaterial(int16_t idMaterial, uint32_t color, float brillo) = 0;
    // Colour, shine and opacity of the object that is being opened.
    virtual void setColorMaterial(uint32_t color, float brillo, float opacidad) = 0;
    virtual void reservado10() {}
    virtual void setMaterial(int16_t idMaterial) = 0;
    virtual void iniciaObjeto(uint32_t color, int modo) = 0;
    virtual void vertices(int n, const Punto3<double>* v) = 0;
    virtual void escalaConstante(const Punto3<double>& centro, double escala, double pixeles) = 0;
    virtual void normales(int n, const Vector3D<float>* v) = 0;
    // n pairs of floats.
    virtual void coordenadasUV(int n, const float* uv) = 0;
    // n indices, two per segment.
    virtual void aristas(int n, const uint32_t* indices) = 0;
    virtual void coloresVertices(int n, const uint32_t* colores) = 0;
    virtual void reservado11() {}
    // n numbers: for each polygon its vertex count, then its vertex indices.
    virtual void caras(int n, const int32_t* datos) = 0;
    virtual void finObjeto(void* pick) = 0;
    virtual void inicioSuperposicion() = 0;
    virtual void finSuperposicion() = 0;
    virtual void dibujaMarca(const Punto3<double>& posicion, int tipo, uint32_t color) = 0;
    virtual void inicioDibujo() = 0;
    virtual void finDibujo() = 0;
    virtual void finEntidades() = 0;
    // The next pending click; `estado` 1 left button, 2 right. False when there is none.
    virtual bool getEvento(cursor_t& cursor, int& estado) = 0;
    virtual void getCursor(cursor_t& cursor) = 0;
    virtual void getVista(Matriz4<double>& vista) = 0;
    virtual void getProyeccion(Matriz4<double>& proyeccion) = 0;
    virtual void setCursor(const cursor_t& cursor) = 0;
    virtual bool eventoPendiente(evento_t& evento) = 0;
    // The pick values of what lies in the pixel rectangle.
    virtual void entidadesEnRectangulo(const Rect2<int>& rectangulo, bool incluyeOcultas,
                                       std::vector<void*>& picks) = 0;
    // Size in drawing units of one pixel at the cursor.
    virtual void tamanoPixel(double& tamano) = 0;
    virtual void setCentroRotacion(const Punto3<double>& centro) = 0;
    virtual void getNormalVista(Vector3D<double>& normal) = 0;
    virtual void reservado12() {}
    // The origin that snap subtracts before projecting; returns its argument.
    virtual Punto3<double>& getOrigenVista(Punto3<double>& origen) = 0;
    // Places the camera; true when the scene must be rebuilt.
    virtual bool setCamara(const Punto3<double>& posicion, const Punto3<double>& objetivo,
                           const Vector3D<double>& arriba, double zoom, double angulo) = 0;
    virtual bool setCamaraFoto(const Punto3<double>& posicion, const Punto3<double>& objetivo,
                               const Vector3D<double>& arriba, double anguloVision,
                               double giro) = 0;
    virtual void getCamara(Punto3<double>& posicion, Punto3<double>& objetivo,
                           Vector3D<double>& direccion, Vector3D<double>& arriba, double& zoom,
                           double& angulo) = 0;
    virtual bool es2D() = 0;
    virtual void setSistemaLocal(const Vector3D<double>& ejeX, const Vector3D<double>& ejeY,
                                 const Vector3D<double>& ejeZ) = 0;
    virtual void quitaSistemaLocal() = 0;
    // 0 free 3D, 1 2D or pan, 2 picking.
    virtual void setModoInteraccion(int modo) = 0;
    virtual void muestraTexto(const char* texto) = 0;
    virtual void reservado13() {}
    virtual void reservado14() {}
    virtual void zoomEscala(double factor) = 0;
    virtual void zoomExtension(const Rect3<double>& caja) = 0;
    virtual void zoomVentana(const Punto2<int>& esquina1, const Punto2<int>& esquina2) = 0;
    // 2D mode of the view; Dibujo::setModo2D tells the display through it.
    virtual void setModo2D(bool activo) = 0;
    // Viewport size in pixels, for the pixel contours of selection. A display that cannot
    // tell gives 0 by 0, and a pixel contour then contains nothing.
    virtual void getTamanoVista(double& ancho, double& alto)
    {
        ancho = 0.0;
        alto = 0.0;
    }
};

}  // namespace cad
