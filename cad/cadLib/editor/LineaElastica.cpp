#include "editor/LineaElastica.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <mutex>

#include "base/geometria/Vector4D.h"
#include "editor/EditorDibujo.h"

namespace cad
{

namespace
{

constexpr double kPi = 3.14159265358979323846;
constexpr int kSegmentosCirculo = 32;
const char* const kFuente = "Arial";

// The corners of the plan rectangle spanned by a and b, at a's height.
std::vector<Punto3<double>> rectanguloPlanta(const Punto3<double>& a, const Punto3<double>& b,
                                             double z)
{
    return {{a.x, a.y, z}, {b.x, a.y, z}, {b.x, b.y, z}, {a.x, b.y, z}};
}

// A horizontal circle of kSegmentosCirculo points, the first one on +x.
std::vector<Punto3<double>> circulo(const Punto3<double>& centro, double radio, double z)
{
    std::vector<Punto3<double>> v;
    v.reserve(kSegmentosCirculo);
    for (int i = 0; i < kSegmentosCirculo; ++i)
    {
        const double angulo = 2.0 * kPi * i / kSegmentosCirculo;
        v.push_back({centro.x + radio * std::cos(angulo), centro.y + radio * std::sin(angulo), z});
    }
    return v;
}

double distanciaPlanta(const Punto3<double>& a, const Punto3<double>& b)
{
    return std::hypot(b.x - a.x, b.y - a.y);
}

}  // namespace

LineaElastica::LineaElastica(EditorDibujo* e, int32_t t, bool enPixeles)
    : editor(e), pixeles(enPixeles), tipo(t)
{
    std::lock_guard<std::recursive_mutex> cerrojo(editor->seccionCritica);
    editor->lineaElastica = this;
}

LineaElastica::~LineaElastica()
{
    std::lock_guard<std::recursive_mutex> cerrojo(editor->seccionCritica);
    // A band made later may have taken the place; that one stays.
    if (editor->lineaElastica == this)
    {
        editor->lineaElastica = nullptr;
    }
}

void LineaElastica::nuevaAncla(const Punto3<double>& p)
{
    std::lock_guard<std::recursive_mutex> cerrojo(editor->seccionCritica);
    anclas.push_back(p);
}

void LineaElastica::quitaUltimaAncla()
{
    std::lock_guard<std::recursive_mutex> cerrojo(editor->seccionCritica);
    if (!anclas.empty())
    {
        anclas.pop_back();
    }
}

void LineaElastica::vaciaAnclas()
{
    std::lock_guard<std::recursive_mutex> cerrojo(editor->seccionCritica);
    anclas.clear();
}

Punto3<double> LineaElastica::extremoMovil() const
{
    // The contract has no screen-coordinates switch, so a pixel band sends its pixels as
    // (x, y, 0) points and relies on the display's overlay state, where the paint pass
    // calls it, to take them as such.
    if (pixeles)
    {
        return {static_cast<double>(cursor.x), static_cast<double>(cursor.y), 0.0};
    }
    return usaOrigen ? origen : cursor.get();
}

void LineaElastica::linea(PantallaCAD& p, const Punto3<double>& a, const Punto3<double>& b)
{
    const Punto3<double> v[2] = {a, b};
    p.dibujaPolilinea(2, v, false, color, nullptr);
}

void LineaElastica::polilinea(PantallaCAD& p, const std::vector<Punto3<double>>& puntos,
                              bool cerrada)
{
    p.dibujaPolilinea(static_cast<int>(puntos.size()), puntos.data(), cerrada, color, nullptr);
}

void LineaElastica::dibuja(PantallaCAD& p)
{
    if (anclas.empty())
    {
        return;
    }
    p.setModoLinea(PantallaCAD::kLineaContinua);
    p.setGrosor(grosor);

    const Punto3<double> movil = extremoMovil();
    const Punto3<double>& primera = anclas.front();
    const Punto3<double>& ultima = anclas.back();
    const size_t n = anclas.size();

    // Kinds 5 and 6 with one anchor are still picking their first side: a plain line.
    const int32_t forma = (tipo == 5 || tipo == 6) && n == 1 ? 1 : tipo;
    switch (forma)
    {
        case 1:
            linea(p, ultima, movil);
            etiquetaLongitud(p, ultima, movil, 1);
            break;
        case 2:
            linea(p, primera, movil);
            etiquetaLongitud(p, primera, movil, 6);
            if (n > 1)
            {
                linea(p, anclas[1], movil);
                etiquetaLongitud(p, anclas[1], movil, 4);
            }
            break;
        case 3:
        case 4:
        {
            std::vector<Punto3<double>> v = anclas;
            v.push_back(movil);
            polilinea(p, v, forma == 4);
            etiquetaLongitud(p, ultima, movil, 1);
            break;
        }
        case 5:
            polilinea(p, {primera, anclas[1], movil}, true);
            etiquetaLongitud(p, primera, movil, 6);
            etiquetaLongitud(p, anclas[1], movil, 4);
            etiquetaLongitud(p, primera, anclas[1], 1);
            break;
        case 6:
        {
            // A parallelogram: the fourth corner is the moving end carried back along the
            // first side.
            const Vector3D<double> lado = anclas[1] - primera;
            polilinea(p, {primera, anclas[1], movil, movil - lado}, true);
            break;
        }
        case 7:
            dibujaCaja(p, movil);
            break;
        case 8:
            dibujaCilindro(p, movil);
            break;
        case 9:
            polilinea(p, circulo(primera, primera.distancia(movil), primera.z), true);
            etiquetaLongitud(p, primera, movil, 1);
            break;
        case 10:
        {
            const std::vector<Punto3<double>> r = rectanguloPlanta(primera, movil, primera.z);
            for (size_t i = 0; i < r.size(); ++i)
            {
                linea(p, r[i], r[(i + 1) % r.size()]);
            }
            break;
        }
        case 11:
        case 12:
        {
            // The anchors are the edge or face being extruded and the last one is where
            // the user took hold of it, so the copy follows the vector from there.
            const Vector3D<double> desplazamiento = movil - ultima;
            std::vector<Punto3<double>> v = anclas;
            for (auto& q : v)
            {
                q += desplazamiento;
            }
            polilinea(p, v, forma == 12);
            break;
        }
        case 13:
            if (n == 1)
            {
                linea(p, primera, movil);
            }
            else
            {
                polilinea(p, {primera, anclas[1], movil}, false);
            }
            break;
        case 14:
            dibujaPendiente(p, movil);
            break;
        default:
            break;
    }
    p.setGrosor(1.0F);
}

void LineaElastica::dibujaCaja(PantallaCAD& p, const Punto3<double>& movil)
{
    const Punto3<double>& a = anclas.front();
    if (anclas.size() == 1)
    {
        polilinea(p, rectanguloPlanta(a, movil, a.z), true);
        return;
    }
    // The base is fixed by the two anchors; the moving end only gives the top's height.
    const std::vector<Punto3<double>> base = rectanguloPlanta(a, anclas[1], a.z);
    const std::vector<Punto3<double>> techo = rectanguloPlanta(a, anclas[1], movil.z);
    polilinea(p, base, true);
    polilinea(p, techo, true);
    for (size_t i = 0; i < base.size(); ++i)
    {
        linea(p, base[i], techo[i]);
    }
}

void LineaElastica::dibujaCilindro(PantallaCAD& p, const Punto3<double>& movil)
{
    const Punto3<double>& centro = anclas.front();
    if (anclas.size() == 1)
    {
        // The radius is still being picked: no height yet.
        polilinea(p, circulo(centro, distanciaPlanta(centro, movil), centro.z), true);
        return;
    }
    const double radio = distanciaPlanta(centro, anclas[1]);
    polilinea(p, circulo(centro, radio, centro.z), true);
    polilinea(p, circulo(centro, radio, movil.z), true);
}

void LineaElastica::dibujaPendiente(PantallaCAD& p, const Punto3<double>& movil)
{
    // A slope is read on a profile: x runs along the alignment and y is the elevation, drawn
    // factorVertical times higher, so the rise shown is the drawn one scaled back.
    const Punto3<double>& a = anclas.back();
    linea(p, a, movil);
    const double factor = std::max(static_cast<double>(editor->factorVertical),
                                   static_cast<double>(std::numeric_limits<float>::epsilon()));
    const double avance = movil.x - a.x;
    const double subida = (movil.y - a.y) / factor;
    if (std::fabs(avance) < 0.001 || std::fabs(subida) < 0.001 ||
        std::fabs(subida / avance) < 0.0001)
    {
        return;
    }
    const Punto3<double> esquina{movil.x, a.y, a.z};
    linea(p, a, esquina);
    linea(p, esquina, movil);
    etiqueta(p, a, esquina, std::fabs(avance), 1);
    etiqueta(p, esquina, movil, std::fabs(subida), 1);

    char texto[64];
    std::snprintf(texto, sizeof texto, "%0.2lf%%", subida / avance * 100.0);
    // Top left when the anchor lies to the left, so the text hangs clear of the line.
    const int alineacion =
        avance > 0.0 ? PantallaCAD::kAlineacionVerticalSup
                     : PantallaCAD::kAlineacionVerticalSup + PantallaCAD::kAlineacionHorizontalDer;
    p.dibujaTexto(movil, texto, color, alineacion, alturaTexto, 0.0F, kFuente, 0, nullptr);
}

void LineaElastica::etiquetaLongitud(PantallaCAD& p, const Punto3<double>& a,
                                     const Punto3<double>& b, int marca)
{
    etiqueta(p, a, b, a.distancia(b), marca);
}

void LineaElastica::etiqueta(PantallaCAD& p, const Punto3<double>& a, const Punto3<double>& b,
                             double valor, int marca)
{
    char texto[64];
    std::snprintf(texto, sizeof texto, formato, valor);
    p.dibujaTexto(Punto3<double>::puntoMedio(a, b), texto, color, marca, alturaTexto,
                  static_cast<float>(anguloLectura(a, b)), kFuente, 0, nullptr);
}

double LineaElastica::anguloLectura(const Punto3<double>& a, const Punto3<double>& b) const
{
    double dx = b.x - a.x;
    double dy = b.y - a.y;
    if (!pixeles)
    {
        const Matriz4<double> m = proyeccion * vista;
        const Vector4D<double> pa = m * Vector4D<double>(a.x, a.y, a.z, 1.0);
        const Vector4D<double> pb = m * Vector4D<double>(b.x, b.y, b.z, 1.0);
        if (pa.w == 0.0 || pb.w == 0.0)
        {
            return 0.0;
        }
        dx = pb.x / pb.w - pa.x / pa.w;
        dy = pb.y / pb.w - pa.y / pa.w;
        // Normalised coordinates span the window's width and height alike whatever its
        // shape; the projection's own axis scales undo that, which gives the angle seen on
        // a display with square pixels.
        const double sx = std::fabs(proyeccion(0, 0));
        const double sy = std::fabs(proyeccion(1, 1));
        if (sx > 0.0 && sy > 0.0)
        {
            dx /= sx;
            dy /= sy;
        }
    }
    if ((dx == 0.0 && dy == 0.0) || !std::isfinite(dx) || !std::isfinite(dy))
    {
        return 0.0;
    }
    double angulo = std::atan2(dy, dx);
    if (angulo > kPi / 2.0)
    {
        angulo -= kPi;
    }
    else if (angulo <= -kPi / 2.0)
    {
        angulo += kPi;
    }
    return angulo;
}

}  // namespace cad
