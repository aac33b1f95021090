// Test support: a display that records every call, with a settable camera and cursor.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "pantalla/PantallaCAD.h"

namespace cad::prueba
{

// Each call is recorded as one line: the operation's name and its main arguments, so that
// tests compare the sequence a paint produced with what the drawing must send.
class PantallaGrabadora : public PantallaCAD
{
public:
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
    void setColorMaterial(uint32_t color, float brillo) override;
    void setMaterial(int16_t idMaterial) override;
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
    bool getEvento(cursor_t& cursor, int& estado) override;
    void getCursor(cursor_t& c) override;
    void getVista(Matriz4<double>& v) override;
    void getProyeccion(Matriz4<double>& p) override;
    void setCursor(const cursor_t& c) override;
    bool eventoPendiente(evento_t& evento) override;
    void entidadesEnRectangulo(const Rect2<int>& rectangulo, bool incluyeOcultas,
                               std::vector<void*>& picks) override;
    void tamanoPixel(double& tamano) override;
    void setCentroRotacion(const Punto3<double>& centro) override;
    void getNormalVista(Vector3D<double>& normal) override;
    Punto3<double>& getOrigenVista(Punto3<double>& origen) override;
    bool setCamara(const Punto3<double>& posicion, const Punto3<double>& objetivo,
                   const Vector3D<double>& arriba, double zoom, double angulo) override;
    bool setCamaraFoto(const Punto3<double>& posicion, const Punto3<double>& objetivo,
                       const Vector3D<double>& arriba, double anguloVision,
                       double giro) override;
    void getCamara(Punto3<double>& posicion, Punto3<double>& objetivo,
                   Vector3D<double>& direccion, Vector3D<double>& arriba, double& zoom,
                   double& angulo) override;
    bool es2D() override;
    void setSistemaLocal(const Vector3D<double>& ejeX, const Vector3D<double>& ejeY,
                         const Vector3D<double>& ejeZ) override;
    void quitaSistemaLocal() override;
    void setModoInteraccion(int modo) override;
    void muestraTexto(const char* texto) override;
    void zoomEscala(double factor) override;
    void zoomExtension(const Rect3<double>& caja) override;
    void zoomVentana(const Punto2<int>& esquina1, const Punto2<int>& esquina2) override;
    void setModo2D(bool activo) override;

    // The recorded calls, in order.
    std::vector<std::string> llamadas;
    // Only the calls whose line starts with `nombre`.
    std::vector<std::string> llamadasDe(const std::string& nombre) const;

    // What the display reports.
    Punto3<double> posicion{0, 0, 10};
    Punto3<double> objetivo{0, 0, 0};
    Vector3D<double> direccion{0, 0, -1};
    Vector3D<double> arriba{0, 1, 0};
    double zoom = 1.0;
    double angulo = 0.0;
    bool camaraReconstruye = false;  // what setCamara answers
    bool modo2D = false;
    int modoInteraccion = 0;
    cursor_t cursor;
    Punto3<double> origenVista{0, 0, 0};
    Matriz4<double> vista;
    Matriz4<double> proyeccion;
    double pixel = 1.0;
    std::deque<std::pair<cursor_t, int>> eventos;
    std::vector<std::string> textos;

private:
    void graba(const std::string& linea) { llamadas.push_back(linea); }
};

std::string texto(const Punto3<double>& p);

}  // namespace cad::prueba
