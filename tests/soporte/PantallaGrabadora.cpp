#include "soporte/PantallaGrabadora.h"

#include <cstdio>

namespace cad::prueba
{

std::string texto(const Punto3<double>& p)
{
    char s[96];
    std::snprintf(s, sizeof s, "(%g,%g,%g)", p.x, p.y, p.z);
    return s;
}

namespace
{

std::string hex(uint32_t v)
{
    char s[16];
    std::snprintf(s, sizeof s, "%08X", v);
    return s;
}

std::string pick(void* p) { return p == nullptr ? "null" : "pick"; }

}  // namespace

std::vector<std::string> PantallaGrabadora::llamadasDe(const std::string& nombre) const
{
    std::vector<std::string> r;
    for (const auto& l : llamadas)
    {
        if (l.compare(0, nombre.size(), nombre) == 0)
        {
            r.push_back(l);
        }
    }
    return r;
}

void PantallaGrabadora::setModoLinea(uint16_t patron) { graba("setModoLinea " + hex(patron).substr(4)); }
void PantallaGrabadora::setGrosor(float grosor)
{
    char s[48];
    std::snprintf(s, sizeof s, "setGrosor %g", static_cast<double>(grosor));
    graba(s);
}
void PantallaGrabadora::setPrimerPlano(bool activo)
{
    graba(std::string("setPrimerPlano ") + (activo ? "1" : "0"));
}
void PantallaGrabadora::setColorFondo(uint32_t color) { graba("setColorFondo " + hex(color)); }
void PantallaGrabadora::limpia() { graba("limpia"); }
void PantallaGrabadora::dibujaPunto(const Punto3<double>& p, uint32_t color, void* k)
{
    graba("dibujaPunto " + texto(p) + " " + hex(color) + " " + pick(k));
}
void PantallaGrabadora::dibujaGrupoPuntos(int n, const Punto3<double>*, const uint32_t*, void* k)
{
    graba("dibujaGrupoPuntos " + std::to_string(n) + " " + pick(k));
}
void PantallaGrabadora::dibujaVector(const Punto3<double>& o, const Punto3<double>& e,
                                     uint32_t color, float, void* k)
{
    graba("dibujaVector " + texto(o) + " " + texto(e) + " " + hex(color) + " " + pick(k));
}
void PantallaGrabadora::dibujaLinea(const Linea3D<double>& l, uint32_t color, void* k)
{
    graba("dibujaLinea " + texto(l.origen) + " " + texto(l.extremo) + " " + hex(color) + " " +
          pick(k));
}
void PantallaGrabadora::dibujaPolilinea(int n, const Punto3<double>* puntos, bool cerrada,
                                        uint32_t color, void* k)
{
    std::string s = "dibujaPolilinea " + std::to_string(n) + (cerrada ? " cerrada" : " abierta");
    for (int i = 0; i < n; ++i)
    {
        s += " " + texto(puntos[i]);
    }
    graba(s + " " + hex(color) + " " + pick(k));
}
void PantallaGrabadora::dibujaPoligono(int n, const Punto3<double>*, uint32_t color, void* k)
{
    graba("dibujaPoligono " + std::to_string(n) + " " + hex(color) + " " + pick(k));
}
void PantallaGrabadora::dibujaTextoAncho(const Punto3<double>& p, const wchar_t*, uint32_t color,
                                         int, float, float, const char*, int, void* k)
{
    graba("dibujaTextoAncho " + texto(p) + " " + hex(color) + " " + pick(k));
}
void PantallaGrabadora::dibujaTexto(const Punto3<double>& p, const char* t, uint32_t color, int,
                                    float, float, const char*, int, void* k)
{
    graba("dibujaTexto " + texto(p) + " \"" + t + "\" " + hex(color) + " " + pick(k));
}
void PantallaGrabadora::nuevaTextura(int16_t id, const char* imagen, uint32_t color, float)
{
    graba("nuevaTextura " + std::to_string(id) + " " + imagen + " " + hex(color));
}
void PantallaGrabadora::nuevoMaterial(int16_t id, uint32_t color, float)
{
    graba("nuevoMaterial " + std::to_string(id) + " " + hex(color));
}
void PantallaGrabadora::setColorMaterial(uint32_t color, float) { graba("setColorMaterial " + hex(color)); }
void PantallaGrabadora::setMaterial(int16_t id) { graba("setMaterial " + std::to_string(id)); }
void PantallaGrabadora::iniciaObjeto(uint32_t color, int modo)
{
    graba("iniciaObjeto " + hex(color) + " " + std::to_string(modo));
}
void PantallaGrabadora::vertices(int n, const Punto3<double>*) { graba("vertices " + std::to_string(n)); }
void PantallaGrabadora::escalaConstante(const Punto3<double>& c, double, double)
{
    graba("escalaConstante " + texto(c));
}
void PantallaGrabadora::normales(int n, const Vector3D<float>*) { graba("normales " + std::to_string(n)); }
void PantallaGrabadora::coordenadasUV(int n, const float*) { graba("coordenadasUV " + std::to_string(n)); }
void PantallaGrabadora::aristas(int n, const uint32_t*) { graba("aristas " + std::to_string(n)); }
void PantallaGrabadora::coloresVertices(int n, const uint32_t*)
{
    graba("coloresVertices " + std::to_string(n));
}
void PantallaGrabadora::caras(int n, const int32_t*) { graba("caras " + std::to_string(n)); }
void PantallaGrabadora::finObjeto(void* k) { graba("finObjeto " + pick(k)); }
void PantallaGrabadora::inicioSuperposicion() { graba("inicioSuperposicion"); }
void PantallaGrabadora::finSuperposicion() { graba("finSuperposicion"); }
void PantallaGrabadora::dibujaMarca(const Punto3<double>& p, int tipo, uint32_t color)
{
    graba("dibujaMarca " + texto(p) + " " + std::to_string(tipo) + " " + hex(color));
}
void PantallaGrabadora::inicioDibujo() { graba("inicioDibujo"); }
void PantallaGrabadora::finDibujo() { graba("finDibujo"); }
void PantallaGrabadora::finEntidades() { graba("finEntidades"); }
bool PantallaGrabadora::getEvento(cursor_t& c, int& estado)
{
    graba("getEvento");
    if (eventos.empty())
    {
        return false;
    }
    c = eventos.front().first;
    estado = eventos.front().second;
    eventos.pop_front();
    return true;
}
void PantallaGrabadora::getCursor(cursor_t& c)
{
    graba("getCursor");
    c = cursor;
}
void PantallaGrabadora::getVista(Matriz4<double>& v) { v = vista; }
void PantallaGrabadora::getProyeccion(Matriz4<double>& p) { p = proyeccion; }
void PantallaGrabadora::setCursor(const cursor_t& c)
{
    graba("setCursor");
    cursor = c;
}
bool PantallaGrabadora::eventoPendiente(evento_t&) { return false; }
void PantallaGrabadora::entidadesEnRectangulo(const Rect2<int>&, bool, std::vector<void*>& picks)
{
    graba("entidadesEnRectangulo");
    picks.clear();
}
void PantallaGrabadora::tamanoPixel(double& tamano) { tamano = pixel; }
void PantallaGrabadora::setCentroRotacion(const Punto3<double>& c)
{
    graba("setCentroRotacion " + texto(c));
}
void PantallaGrabadora::getNormalVista(Vector3D<double>& normal) { normal = direccion; }
Punto3<double>& PantallaGrabadora::getOrigenVista(Punto3<double>& origen)
{
    graba("getOrigenVista");
    origen = origenVista;
    return origen;
}
bool PantallaGrabadora::setCamara(const Punto3<double>& p, const Punto3<double>& o,
                                  const Vector3D<double>& a, double z, double ang)
{
    graba("setCamara " + texto(p) + " " + texto(o));
    posicion = p;
    objetivo = o;
    arriba = a;
    zoom = z;
    angulo = ang;
    return camaraReconstruye;
}
bool PantallaGrabadora::setCamaraFoto(const Punto3<double>& p, const Punto3<double>& o,
                                      const Vector3D<double>& a, double, double)
{
    graba("setCamaraFoto " + texto(p) + " " + texto(o));
    posicion = p;
    objetivo = o;
    arriba = a;
    return camaraReconstruye;
}
void PantallaGrabadora::getCamara(Punto3<double>& p, Punto3<double>& o, Vector3D<double>& d,
                                  Vector3D<double>& a, double& z, double& ang)
{
    graba("getCamara");
    p = posicion;
    o = objetivo;
    d = direccion;
    a = arriba;
    z = zoom;
    ang = angulo;
}
bool PantallaGrabadora::es2D() { return modo2D; }
void PantallaGrabadora::setSistemaLocal(const Vector3D<double>&, const Vector3D<double>&,
                                        const Vector3D<double>&)
{
    graba("setSistemaLocal");
}
void PantallaGrabadora::quitaSistemaLocal() { graba("quitaSistemaLocal"); }
void PantallaGrabadora::setModoInteraccion(int modo)
{
    graba("setModoInteraccion " + std::to_string(modo));
    modoInteraccion = modo;
}
void PantallaGrabadora::muestraTexto(const char* t)
{
    graba(std::string("muestraTexto ") + t);
    textos.emplace_back(t);
}
void PantallaGrabadora::zoomEscala(double factor)
{
    char s[48];
    std::snprintf(s, sizeof s, "zoomEscala %g", factor);
    graba(s);
}
void PantallaGrabadora::zoomExtension(const Rect3<double>& caja)
{
    graba("zoomExtension " + texto(caja.minimo) + " " + texto(caja.maximo));
}
void PantallaGrabadora::zoomVentana(const Punto2<int>& a, const Punto2<int>& b)
{
    graba("zoomVentana " + std::to_string(a.x) + "," + std::to_string(a.y) + " " +
          std::to_string(b.x) + "," + std::to_string(b.y));
}
void PantallaGrabadora::setModo2D(bool activo)
{
    graba(std::string("setModo2D ") + (activo ? "1" : "0"));
    modo2D = activo;
}

}  // namespace cad::prueba
