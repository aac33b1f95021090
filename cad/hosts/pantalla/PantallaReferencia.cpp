// PantallaReferencia: retention, camera, rays, picking and the recorded lines.
#include "PantallaReferencia.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <unordered_set>

#include "base/FicheroAtomico.h"
#include "base/Utf8.h"

namespace cad
{

namespace
{

std::string hex(uint32_t v)
{
    char s[16];
    std::snprintf(s, sizeof s, "%08X", v);
    return s;
}

std::string pick(void* p)
{
    return p == nullptr ? "null" : "pick";
}

std::string numero(double v)
{
    char s[48];
    std::snprintf(s, sizeof s, "%g", v);
    return s;
}

const double kNaN = std::numeric_limits<double>::quiet_NaN();

// The kernel's screen formula for one point, with the matrix already multiplied out.
Punto2<double> aPantalla(const Matriz4<double>& m, const Punto3<double>& p,
                         const Punto3<double>& origen, int ancho, int alto)
{
    const double qx = p.x - origen.x;
    const double qy = p.y - origen.y;
    const double qz = p.z - origen.z;
    const double x = m[0] * qx + m[4] * qy + m[8] * qz + m[12];
    const double y = m[1] * qx + m[5] * qy + m[9] * qz + m[13];
    const double z = m[2] * qx + m[6] * qy + m[10] * qz + m[14];
    const double w = m[3] * qx + m[7] * qy + m[11] * qz + m[15];
    if (w == 1.0 || (z / w >= 0.0 && w > 0.0))
    {
        return {((x / w) * 0.5 + 0.5) * ancho, ((y / w) * 0.5 + 0.5) * alto};
    }
    return {kNaN, kNaN};
}

bool esValido(const Punto2<double>& p)
{
    return !std::isnan(p.x) && !std::isnan(p.y);
}

// Solves m * y = b by elimination with partial pivoting; false for a singular matrix.
bool resuelve(const Matriz4<double>& m, const double (&b)[4], double (&y)[4])
{
    double a[4][5];
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 4; ++c)
        {
            a[r][c] = m(r, c);
        }
        a[r][4] = b[r];
    }
    for (int c = 0; c < 4; ++c)
    {
        int mejor = c;
        for (int r = c + 1; r < 4; ++r)
        {
            if (std::fabs(a[r][c]) > std::fabs(a[mejor][c]))
            {
                mejor = r;
            }
        }
        if (a[mejor][c] == 0.0)
        {
            return false;
        }
        std::swap(a[c], a[mejor]);
        for (int r = c + 1; r < 4; ++r)
        {
            const double f = a[r][c] / a[c][c];
            for (int k = c; k < 5; ++k)
            {
                a[r][k] -= f * a[c][k];
            }
        }
    }
    for (int r = 3; r >= 0; --r)
    {
        double s = a[r][4];
        for (int k = r + 1; k < 4; ++k)
        {
            s -= a[r][k] * y[k];
        }
        y[r] = s / a[r][r];
    }
    return true;
}

// The point whose clip coordinates divide out to (nx, ny, nz), relative to the view origin.
bool desproyecta(const Matriz4<double>& m, double nx, double ny, double nz, Punto3<double>& p)
{
    double y[4] = {};
    if (!resuelve(m, {nx, ny, nz, 1.0}, y) || y[3] == 0.0)
    {
        return false;
    }
    p = {y[0] / y[3], y[1] / y[3], y[2] / y[3]};
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

// Liang-Barsky: does segment a-b meet the closed rectangle?
bool segmentoToca(const Punto2<double>& a, const Punto2<double>& b, const Rect2<double>& r)
{
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double p[4] = {-dx, dx, -dy, dy};
    const double q[4] = {a.x - r.minimo.x, r.maximo.x - a.x, a.y - r.minimo.y, r.maximo.y - a.y};
    double t0 = 0.0;
    double t1 = 1.0;
    for (int i = 0; i < 4; ++i)
    {
        if (p[i] == 0.0)
        {
            if (q[i] < 0.0)
            {
                return false;
            }
            continue;
        }
        const double t = q[i] / p[i];
        if (p[i] < 0.0)
        {
            if (t > t1)
            {
                return false;
            }
            t0 = std::max(t0, t);
        }
        else
        {
            if (t < t0)
            {
                return false;
            }
            t1 = std::min(t1, t);
        }
    }
    return true;
}

bool puntoToca(const Punto2<double>& p, const Rect2<double>& r)
{
    return p.x >= r.minimo.x && p.x <= r.maximo.x && p.y >= r.minimo.y && p.y <= r.maximo.y;
}

// Even-odd rule.
bool dentroPoligono(const std::vector<Punto2<double>>& v, const Punto2<double>& p)
{
    bool dentro = false;
    for (size_t i = 0, j = v.size() - 1; i < v.size(); j = i++)
    {
        if ((v[i].y > p.y) != (v[j].y > p.y) &&
            p.x < (v[j].x - v[i].x) * (p.y - v[i].y) / (v[j].y - v[i].y) + v[i].x)
        {
            dentro = !dentro;
        }
    }
    return dentro;
}

// A closed polygon touches when an edge crosses the rectangle or it covers the centre.
bool poligonoToca(const std::vector<Punto2<double>>& v, const Rect2<double>& r)
{
    if (v.empty() || !std::all_of(v.begin(), v.end(), esValido))
    {
        return false;
    }
    for (size_t i = 0; i < v.size(); ++i)
    {
        if (segmentoToca(v[i], v[(i + 1) % v.size()], r))
        {
            return true;
        }
    }
    const Punto2<double> centro{(r.minimo.x + r.maximo.x) * 0.5, (r.minimo.y + r.maximo.y) * 0.5};
    return dentroPoligono(v, centro);
}

bool algunPuntoToca(const std::vector<Punto2<double>>& v, const Rect2<double>& r)
{
    return std::any_of(v.begin(), v.end(),
                       [&r](const Punto2<double>& p) { return esValido(p) && puntoToca(p, r); });
}

bool trazoToca(const std::vector<Punto2<double>>& v, size_t i, size_t j, const Rect2<double>& r)
{
    return i < v.size() && j < v.size() && esValido(v[i]) && esValido(v[j]) &&
           segmentoToca(v[i], v[j], r);
}

bool objetoToca(const primitiva_t& pr, const std::vector<Punto2<double>>& v, const Rect2<double>& r)
{
    if (pr.aristas.empty() && pr.caras.empty())
    {
        return algunPuntoToca(v, r);
    }
    for (size_t i = 0; i + 1 < pr.aristas.size(); i += 2)
    {
        if (trazoToca(v, pr.aristas[i], pr.aristas[i + 1], r))
        {
            return true;
        }
    }
    // A count that runs past the data or names a missing vertex ends the walk or drops the
    // face: the indices come as the kernel sent them.
    for (size_t i = 0; i < pr.caras.size();)
    {
        const int32_t n = pr.caras[i++];
        if (n <= 0 || static_cast<size_t>(n) > pr.caras.size() - i)
        {
            break;
        }
        std::vector<Punto2<double>> cara;
        for (int32_t k = 0; k < n; ++k)
        {
            const int32_t indice = pr.caras[i + static_cast<size_t>(k)];
            if (indice >= 0 && static_cast<size_t>(indice) < v.size())
            {
                cara.push_back(v[static_cast<size_t>(indice)]);
            }
        }
        i += static_cast<size_t>(n);
        if (cara.size() == static_cast<size_t>(n) && poligonoToca(cara, r))
        {
            return true;
        }
    }
    return false;
}

bool primitivaToca(const primitiva_t& pr, const std::vector<Punto2<double>>& v,
                   const Rect2<double>& r)
{
    switch (pr.tipo)
    {
        case primitiva_t::kVector:
        case primitiva_t::kLinea:
            return trazoToca(v, 0, 1, r);
        case primitiva_t::kPolilinea:
            if (v.size() == 1)
            {
                return algunPuntoToca(v, r);
            }
            for (size_t i = 0; i + 1 < v.size(); ++i)
            {
                if (trazoToca(v, i, i + 1, r))
                {
                    return true;
                }
            }
            return pr.cerrada && v.size() > 2 && trazoToca(v, v.size() - 1, 0, r);
        case primitiva_t::kPoligono:
            return v.size() == 1 ? algunPuntoToca(v, r) : poligonoToca(v, r);
        case primitiva_t::kObjeto:
            return objetoToca(pr, v, r);
        default:
            return algunPuntoToca(v, r);
    }
}

// Wide text is UTF-32 here; the kernel's encoder takes UTF-16.
std::string anchoAUtf8(const wchar_t* t)
{
    std::u16string u;
    for (; t != nullptr && *t != L'\0'; ++t)
    {
        const auto c = static_cast<uint32_t>(*t);
        if (c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF))
        {
            u.push_back(u'\uFFFD');
        }
        else if (c > 0xFFFF)
        {
            u.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
            u.push_back(static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
        }
        else
        {
            u.push_back(static_cast<char16_t>(c));
        }
    }
    return utf16AUtf8(u);
}

template <typename T>
std::vector<T> copia(int n, const T* datos)
{
    std::vector<T> v;
    if (n > 0 && datos != nullptr)
    {
        // A group of millions of points: huge pages spare a fault for every 4 kB touched.
        v.reserve(static_cast<size_t>(n));
        paginasGrandes(v.data(), v.capacity() * sizeof(T));
        v.assign(datos, datos + n);
    }
    return v;
}

}  // namespace

std::string PantallaReferencia::texto(const Punto3<double>& p)
{
    char s[96];
    std::snprintf(s, sizeof s, "(%g,%g,%g)", p.x, p.y, p.z);
    return s;
}

std::vector<std::string> PantallaReferencia::llamadasDe(const std::string& nombre) const
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

void PantallaReferencia::graba(const std::string& linea)
{
    if (grabando)
    {
        llamadas.push_back(linea);
    }
}

primitiva_t PantallaReferencia::nueva(primitiva_t::tipo_primitiva tipo, uint32_t color,
                                      void* k) const
{
    primitiva_t p;
    p.tipo = tipo;
    p.color = color;
    p.pick = k;
    p.patron = patron;
    p.grosor = grosor;
    p.primerPlano = primerPlano;
    return p;
}

// Drawing state.

void PantallaReferencia::setModoLinea(uint16_t nuevo)
{
    graba("setModoLinea " + hex(nuevo).substr(4));
    patron = nuevo;
}

void PantallaReferencia::setGrosor(float nuevo)
{
    graba("setGrosor " + numero(static_cast<double>(nuevo)));
    grosor = nuevo;
}

void PantallaReferencia::setPrimerPlano(bool activo)
{
    graba(std::string("setPrimerPlano ") + (activo ? "1" : "0"));
    primerPlano = activo;
}

void PantallaReferencia::setColorFondo(uint32_t color)
{
    graba("setColorFondo " + hex(color));
    colorFondo = color;
}

void PantallaReferencia::limpia()
{
    graba("limpia");
    escena.clear();
    objetoAbierto = false;
}

// Primitives.

void PantallaReferencia::dibujaPunto(const Punto3<double>& p, uint32_t color, void* k)
{
    graba("dibujaPunto " + texto(p) + " " + hex(color) + " " + pick(k));
    primitiva_t pr = nueva(primitiva_t::kPunto, color, k);
    pr.puntos.push_back(p);
    destino().push_back(std::move(pr));
}

void PantallaReferencia::dibujaGrupoPuntos(int n, const Punto3<double>* puntos,
                                           const uint32_t* colores, void* k)
{
    graba("dibujaGrupoPuntos " + std::to_string(n) + " " + pick(k));
    primitiva_t pr = nueva(primitiva_t::kGrupoPuntos, 0, k);
    pr.puntos = copia(n, puntos);
    pr.colores = copia(static_cast<int>(pr.puntos.size()), colores);
    destino().push_back(std::move(pr));
}

void PantallaReferencia::dibujaVector(const Punto3<double>& o, const Punto3<double>& e,
                                      uint32_t color, float grosorVector, void* k)
{
    graba("dibujaVector " + texto(o) + " " + texto(e) + " " + hex(color) + " " + pick(k));
    primitiva_t pr = nueva(primitiva_t::kVector, color, k);
    pr.puntos = {o, e};
    pr.grosor = grosorVector;
    destino().push_back(std::move(pr));
}

void PantallaReferencia::dibujaLinea(const Linea3D<double>& l, uint32_t color, void* k)
{
    graba("dibujaLinea " + texto(l.origen) + " " + texto(l.extremo) + " " + hex(color) + " " +
          pick(k));
    primitiva_t pr = nueva(primitiva_t::kLinea, color, k);
    pr.puntos = {l.origen, l.extremo};
    destino().push_back(std::move(pr));
}

void PantallaReferencia::dibujaPolilinea(int n, const Punto3<double>* puntos, bool cerrada,
                                         uint32_t color, void* k)
{
    primitiva_t pr = nueva(primitiva_t::kPolilinea, color, k);
    pr.puntos = copia(n, puntos);
    pr.cerrada = cerrada;
    std::string s = "dibujaPolilinea " + std::to_string(n) + (cerrada ? " cerrada" : " abierta");
    for (const auto& p : pr.puntos)
    {
        s += " " + texto(p);
    }
    graba(s + " " + hex(color) + " " + pick(k));
    destino().push_back(std::move(pr));
}

void PantallaReferencia::dibujaPoligono(int n, const Punto3<double>* puntos, uint32_t color,
                                        void* k)
{
    graba("dibujaPoligono " + std::to_string(n) + " " + hex(color) + " " + pick(k));
    primitiva_t pr = nueva(primitiva_t::kPoligono, color, k);
    pr.puntos = copia(n, puntos);
    destino().push_back(std::move(pr));
}

void PantallaReferencia::textoComun(const Punto3<double>& p, std::string t, uint32_t color,
                                    int alineacion_, float altura, float rotacion,
                                    const char* fuente, int estilo, void* k)
{
    primitiva_t pr = nueva(primitiva_t::kTexto, color, k);
    pr.puntos.push_back(p);
    pr.texto = std::move(t);
    pr.alineacion = alineacion_;
    pr.altura = altura;
    pr.rotacion = rotacion;
    pr.fuente = fuente != nullptr ? fuente : "";
    pr.estilo = estilo;
    destino().push_back(std::move(pr));
}

void PantallaReferencia::dibujaTextoAncho(const Punto3<double>& p, const wchar_t* t, uint32_t color,
                                          int alineacion_, float altura, float rotacion,
                                          const char* fuente, int estilo, void* k)
{
    graba("dibujaTextoAncho " + texto(p) + " " + hex(color) + " " + pick(k));
    textoComun(p, anchoAUtf8(t), color, alineacion_, altura, rotacion, fuente, estilo, k);
}

void PantallaReferencia::dibujaTexto(const Punto3<double>& p, const char* t, uint32_t color,
                                     int alineacion_, float altura, float rotacion,
                                     const char* fuente, int estilo, void* k)
{
    const std::string cadena = t != nullptr ? t : "";
    graba("dibujaTexto " + texto(p) + " \"" + cadena + "\" " + hex(color) + " " + pick(k));
    textoComun(p, cadena, color, alineacion_, altura, rotacion, fuente, estilo, k);
}

// Materials.

void PantallaReferencia::nuevaTextura(int16_t id, const char* imagen, uint32_t color, float brillo)
{
    const std::string ruta = imagen != nullptr ? imagen : "";
    graba("nuevaTextura " + std::to_string(id) + " " + ruta + " " + hex(color));
    materiales[id] = {color, brillo, ruta};
}

void PantallaReferencia::nuevoMaterial(int16_t id, uint32_t color, float brillo)
{
    graba("nuevoMaterial " + std::to_string(id) + " " + hex(color));
    materiales[id] = {color, brillo, ""};
}

void PantallaReferencia::setColorMaterial(uint32_t color, float brillo, float opacidad)
{
    // Painting is not this display's business: the opacity is recorded, not applied.
    char linea[64];
    std::snprintf(linea, sizeof linea, "setColorMaterial %08X %g %g", color,
                  static_cast<double>(brillo), static_cast<double>(opacidad));
    graba(linea);
    if (objetoAbierto)
    {
        objeto.colorMaterial = color;
        objeto.brillo = brillo;
        objeto.opacidad = opacidad;
    }
    else
    {
        colorMaterialSiguiente = color;
        brilloSiguiente = brillo;
        opacidadSiguiente = opacidad;
    }
}

void PantallaReferencia::setMaterial(int16_t id)
{
    graba("setMaterial " + std::to_string(id));
    materialSiguiente = id;
}

// Retained objects.

void PantallaReferencia::iniciaObjeto(uint32_t color, int modo)
{
    graba("iniciaObjeto " + hex(color) + " " + std::to_string(modo));
    objeto = nueva(primitiva_t::kObjeto, color, nullptr);
    objeto.modo = modo;
    objeto.material = materialSiguiente;
    objeto.colorMaterial = colorMaterialSiguiente;
    objeto.brillo = brilloSiguiente;
    objeto.opacidad = opacidadSiguiente;
    materialSiguiente = -1;
    colorMaterialSiguiente = 0;
    brilloSiguiente = 0.0F;
    opacidadSiguiente = 1.0F;
    objetoAbierto = true;
}

void PantallaReferencia::vertices(int n, const Punto3<double>* v)
{
    graba("vertices " + std::to_string(n));
    if (objetoAbierto)
    {
        objeto.puntos = copia(n, v);
    }
}

void PantallaReferencia::escalaConstante(const Punto3<double>& c, double escala, double pixeles)
{
    graba("escalaConstante " + texto(c));
    if (objetoAbierto)
    {
        objeto.escalaFija = true;
        objeto.centroEscala = c;
        objeto.escala = escala;
        objeto.pixeles = pixeles;
    }
}

void PantallaReferencia::normales(int n, const Vector3D<float>* v)
{
    graba("normales " + std::to_string(n));
    if (objetoAbierto)
    {
        objeto.normales = copia(n, v);
    }
}

void PantallaReferencia::coordenadasUV(int n, const float* uv)
{
    graba("coordenadasUV " + std::to_string(n));
    if (objetoAbierto)
    {
        objeto.uv = copia(n > 0 ? 2 * n : 0, uv);
    }
}

void PantallaReferencia::aristas(int n, const uint32_t* indices)
{
    graba("aristas " + std::to_string(n));
    if (objetoAbierto)
    {
        objeto.aristas = copia(n, indices);
    }
}

void PantallaReferencia::coloresVertices(int n, const uint32_t* colores)
{
    graba("coloresVertices " + std::to_string(n));
    if (objetoAbierto)
    {
        objeto.colores = copia(n, colores);
    }
}

void PantallaReferencia::caras(int n, const int32_t* datos)
{
    graba("caras " + std::to_string(n));
    if (objetoAbierto)
    {
        objeto.caras = copia(n, datos);
    }
}

void PantallaReferencia::finObjeto(void* k)
{
    graba("finObjeto " + pick(k));
    if (objetoAbierto)
    {
        objeto.pick = k;
        destino().push_back(std::move(objeto));
        objeto = primitiva_t{};
        objetoAbierto = false;
    }
}

// Overlay and markers.

void PantallaReferencia::inicioSuperposicion()
{
    graba("inicioSuperposicion");
    superposicion.clear();
    enSuperposicion = true;
}

void PantallaReferencia::finSuperposicion()
{
    graba("finSuperposicion");
    enSuperposicion = false;
}

void PantallaReferencia::dibujaMarca(const Punto3<double>& p, int tipo, uint32_t color)
{
    graba("dibujaMarca " + texto(p) + " " + std::to_string(tipo) + " " + hex(color));
    primitiva_t pr = nueva(primitiva_t::kMarca, color, nullptr);
    pr.puntos.push_back(p);
    pr.modo = tipo;
    destino().push_back(std::move(pr));
}

void PantallaReferencia::inicioDibujo()
{
    graba("inicioDibujo");
}
void PantallaReferencia::finDibujo()
{
    graba("finDibujo");
}
void PantallaReferencia::finEntidades()
{
    graba("finEntidades");
}

// Input.

bool PantallaReferencia::getEvento(cursor_t& c, int& estado)
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

void PantallaReferencia::getCursor(cursor_t& c)
{
    graba("getCursor");
    c = cursor;
}

void PantallaReferencia::setCursor(const cursor_t& c)
{
    graba("setCursor");
    cursor = c;
}

bool PantallaReferencia::eventoPendiente(evento_t&)
{
    return false;
}

void PantallaReferencia::getTamanoVista(double& anchoVista, double& altoVista)
{
    anchoVista = ancho;
    altoVista = alto;
}

void PantallaReferencia::setPosicionCursor(int x, int y)
{
    cursor = cursor_t{};
    cursor.x = x;
    cursor.y = y;
    rayo(x, y, cursor.posicion, cursor.direccion);
    // The point under the pointer on the plane through the target that faces the ray: what
    // a click gives when it is taken raw.
    const double dd = cursor.direccion.dot(cursor.direccion);
    if (cursor.posicion != invalido && dd > 0.0)
    {
        const double t = (objetivo - cursor.posicion).dot(cursor.direccion) / dd;
        cursor.plano = cursor.posicion + cursor.direccion * t;
        cursor.local = cursor.plano;
    }
}

void PantallaReferencia::clic(int x, int y, int boton)
{
    setPosicionCursor(x, y);
    eventos.emplace_back(cursor, boton);
}

// Camera.

double PantallaReferencia::zoomEfectivo() const
{
    return std::isfinite(zoom) && zoom > 0.0 ? zoom : 1.0;
}

Vector3D<double> PantallaReferencia::direccionVista() const
{
    const Vector3D<double> d = (objetivo - posicion).unit();
    return d == Vector3D<double>() ? Vector3D<double>(0, 0, -1) : d;
}

namespace
{

// Right, up and forward of a camera looking along `frente`, with `pista` as the up hint.
void ejesCamara(const Vector3D<double>& frente, const Vector3D<double>& pista,
                Vector3D<double>& derecha, Vector3D<double>& arribaVista)
{
    for (const Vector3D<double>& c : {pista, Vector3D<double>(0, 1, 0), Vector3D<double>(0, 0, 1)})
    {
        const Vector3D<double> s = frente.cross(c);
        if (s.modulo() > 1e-9 * c.modulo())
        {
            derecha = s.unit();
            arribaVista = derecha.cross(frente);
            return;
        }
    }
}

}  // namespace

Matriz4<double> PantallaReferencia::matrizVista() const
{
    const Vector3D<double> f = direccionVista();
    Vector3D<double> s;
    Vector3D<double> u;
    ejesCamara(f, arriba, s, u);
    const Vector3D<double> e = posicion - origenVista;
    // clang-format off
    return Matriz4<double>::desdeFilas({ s.x,  s.y,  s.z, -s.dot(e)},
                                       { u.x,  u.y,  u.z, -u.dot(e)},
                                       {-f.x, -f.y, -f.z,  f.dot(e)},
                                       {   0,    0,    0,         1});
    // clang-format on
}

Matriz4<double> PantallaReferencia::matrizProyeccion() const
{
    const double z = zoomEfectivo();
    const double d = std::isfinite(profundidad) && profundidad > 0.0 ? profundidad : 1.0e6;
    Matriz4<double> p;
    p(0, 0) = 2.0 * z / ancho;
    p(1, 1) = 2.0 * z / alto;
    p(2, 2) = -1.0 / d;
    return p;
}

void PantallaReferencia::getVista(Matriz4<double>& v)
{
    v = matrizVista();
}
void PantallaReferencia::getProyeccion(Matriz4<double>& p)
{
    p = matrizProyeccion();
}

void PantallaReferencia::tamanoPixel(double& tamano)
{
    tamano = 1.0 / zoomEfectivo();
}

void PantallaReferencia::setCentroRotacion(const Punto3<double>& c)
{
    graba("setCentroRotacion " + texto(c));
    centroRotacion = c;
}

void PantallaReferencia::getNormalVista(Vector3D<double>& normal)
{
    normal = direccionVista();
}

Punto3<double>& PantallaReferencia::getOrigenVista(Punto3<double>& origen)
{
    graba("getOrigenVista");
    origen = origenVista;
    return origen;
}

bool PantallaReferencia::setCamara(const Punto3<double>& p, const Punto3<double>& o,
                                   const Vector3D<double>& a, double z, double ang)
{
    graba("setCamara " + texto(p) + " " + texto(o));
    posicion = p;
    objetivo = o;
    arriba = a;
    zoom = z;
    angulo = ang;
    return escena.empty();
}

bool PantallaReferencia::setCamaraFoto(const Punto3<double>& p, const Punto3<double>& o,
                                       const Vector3D<double>& a, double vision, double g)
{
    graba("setCamaraFoto " + texto(p) + " " + texto(o));
    posicion = p;
    objetivo = o;
    arriba = a;
    anguloVision = vision;
    giro = g;
    return escena.empty();
}

void PantallaReferencia::getCamara(Punto3<double>& p, Punto3<double>& o, Vector3D<double>& d,
                                   Vector3D<double>& a, double& z, double& ang)
{
    graba("getCamara");
    p = posicion;
    o = objetivo;
    d = direccionVista();
    a = arriba;
    z = zoom;
    ang = angulo;
}

void PantallaReferencia::setTamano(int nuevoAncho, int nuevoAlto)
{
    if (nuevoAncho > 0 && nuevoAlto > 0)
    {
        ancho = nuevoAncho;
        alto = nuevoAlto;
    }
}

void PantallaReferencia::zoomEscala(double factor)
{
    graba("zoomEscala " + numero(factor));
    if (std::isfinite(factor) && factor > 0.0)
    {
        zoom = zoomEfectivo() * factor;
    }
}

void PantallaReferencia::zoomExtension(const Rect3<double>& caja)
{
    graba("zoomExtension " + texto(caja.minimo) + " " + texto(caja.maximo));
    const Punto3<double> c = caja.centro();
    if (!caja.esValido() || !std::isfinite(c.x) || !std::isfinite(c.y) || !std::isfinite(c.z))
    {
        return;
    }
    const Vector3D<double> f = direccionVista();
    Vector3D<double> s;
    Vector3D<double> u;
    ejesCamara(f, arriba, s, u);
    double distancia = (objetivo - posicion).modulo();
    if (!(distancia > 0.0))
    {
        distancia = 1.0;
    }
    objetivo = c;
    posicion = c - f * distancia;
    double ex = 0.0;
    double ey = 0.0;
    for (int i = 0; i < 8; ++i)
    {
        const Punto3<double> esquina{(i & 1) != 0 ? caja.maximo.x : caja.minimo.x,
                                     (i & 2) != 0 ? caja.maximo.y : caja.minimo.y,
                                     (i & 4) != 0 ? caja.maximo.z : caja.minimo.z};
        ex = std::max(ex, std::fabs((esquina - c).dot(s)));
        ey = std::max(ey, std::fabs((esquina - c).dot(u)));
    }
    double z = std::numeric_limits<double>::infinity();
    if (ex > 0.0)
    {
        z = std::min(z, 0.5 * ancho / ex);
    }
    if (ey > 0.0)
    {
        z = std::min(z, 0.5 * alto / ey);
    }
    if (std::isfinite(z))
    {
        zoom = z;
    }
}

void PantallaReferencia::zoomVentana(const Punto2<int>& a, const Punto2<int>& b)
{
    graba("zoomVentana " + std::to_string(a.x) + "," + std::to_string(a.y) + " " +
          std::to_string(b.x) + "," + std::to_string(b.y));
    const double dx = std::fabs(static_cast<double>(b.x) - a.x);
    const double dy = std::fabs(static_cast<double>(b.y) - a.y);
    if (dx == 0.0 && dy == 0.0)
    {
        return;
    }
    const double z = zoomEfectivo();
    Vector3D<double> s;
    Vector3D<double> u;
    ejesCamara(direccionVista(), arriba, s, u);
    const double cx = (static_cast<double>(a.x) + b.x) * 0.5;
    const double cy = (static_cast<double>(a.y) + b.y) * 0.5;
    const Vector3D<double> desplazamiento =
        s * ((cx - 0.5 * ancho) / z) + u * ((cy - 0.5 * alto) / z);
    posicion += desplazamiento;
    objetivo += desplazamiento;
    double factor = std::numeric_limits<double>::infinity();
    if (dx > 0.0)
    {
        factor = std::min(factor, ancho / dx);
    }
    if (dy > 0.0)
    {
        factor = std::min(factor, alto / dy);
    }
    zoom = z * factor;
}

// Pixels and rays.

Matriz4<double> PantallaReferencia::matrizPantalla()
{
    // Through the virtual getters, so that a display with matrices of its own projects,
    // casts rays and picks with them.
    Matriz4<double> v;
    Matriz4<double> p;
    getProyeccion(p);
    getVista(v);
    return p * v;
}

Punto2<double> PantallaReferencia::proyecta(const Punto3<double>& p)
{
    return aPantalla(matrizPantalla(), p, origenVista, ancho, alto);
}

void PantallaReferencia::rayo(int x, int y, Punto3<double>& origen, Vector3D<double>& direccion)
{
    const Matriz4<double> m = matrizPantalla();
    const double nx = 2.0 * x / ancho - 1.0;
    const double ny = 2.0 * y / alto - 1.0;
    Punto3<double> cerca;
    Punto3<double> lejos;
    if (!desproyecta(m, nx, ny, -1.0, cerca) || !desproyecta(m, nx, ny, 1.0, lejos))
    {
        origen = invalido;
        direccion = {};
        return;
    }
    origen = {cerca.x + origenVista.x, cerca.y + origenVista.y, cerca.z + origenVista.z};
    direccion = (lejos - cerca).unit();
}

std::vector<Punto2<double>> PantallaReferencia::proyectaPrimitiva(const primitiva_t& pr,
                                                                  const Matriz4<double>& m,
                                                                  double pixel) const
{
    const double factor = pr.escalaFija && pr.escala > 0.0 ? pr.pixeles * pixel / pr.escala : 1.0;
    std::vector<Punto2<double>> r;
    r.reserve(pr.puntos.size());
    for (const auto& q : pr.puntos)
    {
        const Punto3<double> punto =
            pr.escalaFija ? pr.centroEscala + (q - pr.centroEscala) * factor : q;
        r.push_back(aPantalla(m, punto, origenVista, ancho, alto));
    }
    return r;
}

void PantallaReferencia::entidadesEnRectangulo(const Rect2<int>& rectangulo, bool incluyeOcultas,
                                               std::vector<void*>& picks)
{
    graba("entidadesEnRectangulo");
    static_cast<void>(incluyeOcultas);  // nothing is hidden: see the class comment
    picks.clear();
    if (!rectangulo.esValido())
    {
        return;
    }
    // The limits belong to the rectangle; the margin keeps a point that projects onto a limit
    // from falling out of it by the rounding of the projection.
    const double margen = 1e-6;
    const Rect2<double> r{{rectangulo.minimo.x - margen, rectangulo.minimo.y - margen},
                          {rectangulo.maximo.x + margen, rectangulo.maximo.y + margen}};
    const Matriz4<double> m = matrizPantalla();
    double pixel = 1.0;
    tamanoPixel(pixel);
    std::unordered_set<void*> vistos;
    for (const primitiva_t& pr : escena)
    {
        if (pr.pick == nullptr || vistos.count(pr.pick) != 0)
        {
            continue;
        }
        if (primitivaToca(pr, proyectaPrimitiva(pr, m, pixel), r))
        {
            vistos.insert(pr.pick);
            picks.push_back(pr.pick);
        }
    }
}

// Modes.

bool PantallaReferencia::es2D()
{
    return modo2D;
}

void PantallaReferencia::setModo2D(bool activo)
{
    graba(std::string("setModo2D ") + (activo ? "1" : "0"));
    modo2D = activo;
}

void PantallaReferencia::setModoInteraccion(int modo)
{
    graba("setModoInteraccion " + std::to_string(modo));
    modoInteraccion = modo;
}

void PantallaReferencia::setSistemaLocal(const Vector3D<double>& x, const Vector3D<double>& y,
                                         const Vector3D<double>& z)
{
    graba("setSistemaLocal");
    haySistemaLocal = true;
    ejeLocalX = x;
    ejeLocalY = y;
    ejeLocalZ = z;
}

void PantallaReferencia::quitaSistemaLocal()
{
    graba("quitaSistemaLocal");
    haySistemaLocal = false;
    ejeLocalX = {1, 0, 0};
    ejeLocalY = {0, 1, 0};
    ejeLocalZ = {0, 0, 1};
}

void PantallaReferencia::muestraTexto(const char* t)
{
    const std::string cadena = t != nullptr ? t : "";
    graba("muestraTexto " + cadena);
    textos.push_back(cadena);
    if (salidaTexto)
    {
        salidaTexto(cadena);
    }
}

}  // namespace cad
