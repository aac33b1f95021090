// EditorDibujo: the measure commands, which leave their figures on the drawing as texts.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iomanip>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "documento/Dibujo.h"
#include "documento/EstiloTexto.h"
#include "editor/EditorDibujo.h"
#include "editor/LineaElastica.h"
#include "entidades/Polilinea.h"
#include "entidades/Texto.h"

namespace cad
{

namespace
{

const char* const kNombreEstilo = "Estandar";
const char* const kFuenteEstilo = "Arial";
constexpr uint32_t kTamanoEstilo = 10;
constexpr uint16_t kAlineacionMedCen = 5;  // centred both ways (the facade's numbering)
// The width factor 1.0 of a measure text: this Texto keeps it in the slot of its height.
constexpr float kFactorAncho = 1.0F;
constexpr float kRotacionMedida = 0.7853987F;
// This literal for 200 / pi, kept as written rather than computed, so that figures match to
// the last digit with other tools that use it.
constexpr double kGonesPorRadian = 63.66197722844561;

// The result lines are formatted into a buffer of this size.
constexpr size_t kTamanoSalida = 200;

// The catalogue's wording of a result line, when it converts exactly `n` doubles and nothing
// else; else the built-in one. A host loads the catalogue from a file, and a stray %s or a
// missing %lf there must not make the formatting read what was never passed.
const char* formatoDobles(const char* catalogo, const char* porDefecto, int n)
{
    int conversiones = 0;
    for (const char* c = catalogo; *c != '\0'; ++c)
    {
        if (*c != '%')
        {
            continue;
        }
        ++c;
        if (*c == '%')
        {
            continue;
        }
        while (*c != '\0' && std::strchr("-+ #0", *c) != nullptr)
        {
            ++c;
        }
        while (std::isdigit(static_cast<unsigned char>(*c)) != 0)
        {
            ++c;
        }
        if (*c == '.')
        {
            ++c;
            while (std::isdigit(static_cast<unsigned char>(*c)) != 0)
            {
                ++c;
            }
        }
        if (*c == 'l')
        {
            ++c;
        }
        if (*c == '\0' || std::strchr("fFeEgGaA", *c) == nullptr)
        {
            return porDefecto;
        }
        ++conversiones;
    }
    return conversiones == n ? catalogo : porDefecto;
}

// One result line to the host's text callback, when there is one.
template <typename... Dobles>
void salida(EditorDibujo& ed, int numero, const char* porDefecto, Dobles... valores)
{
    if (!ed.funcionSalidaTexto)
    {
        return;
    }
    const char* formato =
        formatoDobles(ed.texto(18, numero, porDefecto), porDefecto, sizeof...(Dobles));
    char buffer[kTamanoSalida];
    std::snprintf(buffer, sizeof buffer, formato, valores...);
    ed.funcionSalidaTexto(buffer);
}

// A figure as the texts show it: three decimals, fixed.
std::string cifra(double valor)
{
    std::ostringstream s;
    s << std::fixed << std::setprecision(3) << valor;
    return s.str();
}

// Halved before the sum, so that two huge but finite coordinates give no infinity.
Punto3<double> puntoMedio(const Punto3<double>& a, const Punto3<double>& b)
{
    return {a.x * 0.5 + b.x * 0.5, a.y * 0.5 + b.y * 0.5, a.z * 0.5 + b.z * 0.5};
}

// The style every measure text takes. An "Estandar" that is already there is used as it
// stands (its font may have been changed on purpose); a second one would be refused anyway.
void aseguraEstilo(Dibujo& d)
{
    if (d.buscaEstiloTexto(kNombreEstilo) == nullptr)
    {
        auto estilo = std::make_unique<EstiloTexto>(kNombreEstilo, kFuenteEstilo, kTamanoEstilo);
        if (d.nuevoEstiloTexto(estilo.get()))
        {
            (void)estilo.release();
        }
    }
    (void)d.estiloTextoActual(kNombreEstilo);
}

// One measure text, an undo step of its own; the current style must already be "Estandar".
void textoMedida(EditorDibujo& ed, double valor, const Punto3<double>& posicion)
{
    // A figure or place that overflowed would be saved as such: refused, with the reason told.
    const double valores[] = {valor, posicion.x, posicion.y, posicion.z};
    if (!ed.admiteCoordenadas(valores, 4))
    {
        return;
    }
    (void)ed.nuevaEntidad(std::make_unique<Texto>(cifra(valor), posicion, kAlineacionMedCen,
                                                  kFactorAncho, kRotacionMedida));
}

// The measured figures of two points.
struct distancias_t
{
    double d3;
    double d2;
    double cota;
};

distancias_t distancias(const Punto3<double>& a, const Punto3<double>& b)
{
    const Punto3<double> planoA(a.x, a.y, 0.0);
    const Punto3<double> planoB(b.x, b.y, 0.0);
    return {a.distancia(b), planoA.distancia(planoB), std::fabs(b.z - a.z)};
}

void salidaDistancias(EditorDibujo& ed, const distancias_t& d)
{
    salida(ed, 3, "Distancia 3D: %0.3lf   Distancia 2D(PlanoXY): %0.3lf   Cota: %0.3lf", d.d3, d.d2,
           d.cota);
}

// The points and figures to whichever of the caller's pointers are given.
distancias_t entrega(const Punto3<double>& inicio, const Punto3<double>& fin, Punto3<double>* a,
                     Punto3<double>* b, double* d3, double* d2)
{
    const distancias_t d = distancias(inicio, fin);
    if (a != nullptr)
    {
        *a = inicio;
    }
    if (b != nullptr)
    {
        *b = fin;
    }
    if (d3 != nullptr)
    {
        *d3 = d.d3;
    }
    if (d2 != nullptr)
    {
        *d2 = d.d2;
    }
    return d;
}

// The two waits of every distance, in the scope the caller opened; the band runs from the
// first point to the cursor while the second is asked. False when either was refused.
bool dosPuntos(EditorDibujo& ed, Punto3<double>& a, Punto3<double>& b)
{
    cursor_t cursor;
    if (!ed.getPunto(ed.texto(18, 1, "Seleccione coordenada inicial de la distancia:"), cursor,
                     true))
    {
        return false;
    }
    a = cursor.get();
    LineaElastica banda(&ed, 1);
    banda.nuevaAncla(a);
    const bool dado =
        ed.getPunto(ed.texto(18, 2, "Seleccione coordenada final de la distancia:"), cursor, true);
    banda.vaciaAnclas();
    if (dado)
    {
        b = cursor.get();
    }
    return dado;
}

// The polyline a measure runs on, drawn by the user; null when none was drawn or it has left
// the drawing meanwhile (vetoed, or undone by the host from inside a wait).
Polilinea* polilineaDibujada(EditorDibujo& ed, bool cerrada)
{
    Polilinea* p = nullptr;
    // A cancel, or a command started from inside the drawing, ends the measure too: the
    // polyline stays, unmeasured.
    if (ed.comandoPolilinea(true, cerrada, &p) == 0 || ed.polilineaAbandonada || p == nullptr ||
        !ed.dibujo_->contieneEntidad(p))
    {
        return nullptr;
    }
    return p;
}

// One text per side with its 3D length at its middle; the sum of the lengths.
double textosLados(EditorDibujo& ed, const Polilinea3D<double>& cadena)
{
    double total = 0.0;
    for (int i = 0; i < cadena.numeroAristas(); ++i)
    {
        const auto [p, q] = cadena.arista(i);
        const double lado = p.distancia(q);
        total += lado;
        textoMedida(ed, lado, puntoMedio(p, q));
    }
    return total;
}

// The angle at a vertex, in gons, by the cosine rule from the two sides that meet there and
// the side facing it.
double anguloGones(double junto1, double junto2, double opuesto)
{
    const double coseno =
        (junto1 * junto1 + junto2 * junto2 - opuesto * opuesto) / (2.0 * junto1 * junto2);
    // Rounding may carry a flat triangle's cosine just past 1, where acos has no value.
    return std::acos(std::clamp(coseno, -1.0, 1.0)) * kGonesPorRadian;
}

}  // namespace

double EditorDibujo::comandoDistancia()
{
    iniciaComandoInteractivo(false);
    Punto3<double> a;
    Punto3<double> b;
    double d3 = 0.0;
    if (dosPuntos(*this, a, b))
    {
        // The elbow lies below the higher point, at the lower one's height: the side to the
        // elbow from the lower point is level, the other one plumb.
        const bool bMasBajo = b.z < a.z;
        const Punto3<double> c =
            bMasBajo ? Punto3<double>(a.x, a.y, b.z) : Punto3<double>(b.x, b.y, a.z);
        const Punto3<double> medioAB = puntoMedio(a, b);
        const Punto3<double> medioAC = puntoMedio(a, c);
        const Punto3<double> medioCB = puntoMedio(c, b);

        const Punto3<double> vertices[] = {a, b, c};
        auto triangulo = std::make_unique<Polilinea>(3, vertices);
        triangulo->cerrada = true;
        (void)nuevaEntidad(std::move(triangulo));

        const distancias_t d = distancias(a, b);
        aseguraEstilo(*dibujo_);
        textoMedida(*this, d.d3, medioAB);
        // Each figure beside the side it measures: the plan distance on the level side, the
        // height difference on the plumb one, whichever point was given first.
        textoMedida(*this, d.d2, bMasBajo ? medioCB : medioAC);
        textoMedida(*this, d.cota, bMasBajo ? medioAC : medioCB);
        salidaDistancias(*this, d);
        d3 = d.d3;
    }
    finComandoInteractivo();
    return d3;
}

bool EditorDibujo::comandoDistancia(Punto3<double>* a, Punto3<double>* b, double* d3, double* d2,
                                    bool inserta)
{
    iniciaComandoInteractivo(false);
    Punto3<double> inicio;
    Punto3<double> fin;
    const bool dados = dosPuntos(*this, inicio, fin);
    if (dados)
    {
        const distancias_t d = entrega(inicio, fin, a, b, d3, d2);
        if (inserta)
        {
            salidaDistancias(*this, d);
        }
    }
    finComandoInteractivo();
    return dados;
}

bool EditorDibujo::comandoDistanciaConSnap(Punto3<double>* a, Punto3<double>* b, double* d3,
                                           double* d2, bool transparente)
{
    iniciaComandoInteractivo(transparente);
    const SeleccionEntidades marcadas = dibujo_->nuevaSeleccion(Dibujo::kSeleccionMarcadas);
    Punto3<double> inicio;
    Punto3<double> fin;
    const bool dados = dosPuntos(*this, inicio, fin);
    if (dados)
    {
        (void)entrega(inicio, fin, a, b, d3, d2);
    }
    for (Entidad* e : marcadas.entidades)
    {
        // An entity deleted from inside a wait is gone; its address is no longer ours.
        if (dibujo_->contieneEntidad(e))
        {
            resalta(e, false);
        }
    }
    actualiza(kPropiedades, false);
    finComandoInteractivo();
    return dados;
}

double EditorDibujo::comandoDistanciaPolilinea()
{
    iniciaComandoInteractivo(false);
    double total = 0.0;
    // Whatever ended the drawing, the polyline kept is measured: its sides are on the
    // drawing, and a surveyor wants them labelled rather than bare.
    if (Polilinea* p = polilineaDibujada(*this, false))
    {
        // A copy: the host's reactor, called on each insertion, may change the polyline.
        const Polilinea3D<double> cadena(p->vertices, p->cerrada);
        aseguraEstilo(*dibujo_);
        total = textosLados(*this, cadena);
        salida(*this, 4, "Distancia 3D total: %0.3lf", total);
    }
    finComandoInteractivo();
    return total;
}

double EditorDibujo::comandoArea()
{
    iniciaComandoInteractivo(false);
    double area = 0.0;
    if (Polilinea* p = polilineaDibujada(*this, true))
    {
        const Polilinea3D<double> cadena(p->vertices, p->cerrada);
        aseguraEstilo(*dibujo_);
        (void)textosLados(*this, cadena);
        const std::vector<Punto3<double>>& v = cadena.vertices;
        const size_t n = v.size();
        // Twice the plan area, signed by the turning: the figure this command has always given.
        if (cadena.cerrada)
        {
            for (size_t i = 0; i < n; ++i)
            {
                const Punto3<double>& p0 = v[i];
                const Punto3<double>& p1 = v[(i + 1) % n];
                area += p0.x * p1.y - p0.y * p1.x;
            }
        }
        // The vertices' centroid, each weighted before the sum so that nothing overflows.
        Punto3<double> centro(0.0, 0.0, 0.0);
        const double k = n > 0 ? 1.0 / static_cast<double>(n) : 0.0;
        for (const Punto3<double>& q : v)
        {
            centro = {centro.x + q.x * k, centro.y + q.y * k, centro.z + q.z * k};
        }
        textoMedida(*this, area, centro);
        salida(*this, 5, "Area 2D: %0.3lf", area);
    }
    finComandoInteractivo();
    return area;
}

void EditorDibujo::comandoAngulo()
{
    iniciaComandoInteractivo(false);
    if (Polilinea* p = polilineaDibujada(*this, true))
    {
        const std::vector<Punto3<double>> v = p->vertices;
        // A side of length 0 leaves a vertex with no angle: that is not three sides either.
        const bool triangulo =
            v.size() == 3 && !(v[0] == v[1]) && !(v[1] == v[2]) && !(v[2] == v[0]);
        if (!triangulo)
        {
            mensaje("%s", texto(19, 1, "La polilínea ha de tener tres lados"));
        }
        else
        {
            const double a = v[1].distancia(v[2]);
            const double b = v[2].distancia(v[0]);
            const double c = v[0].distancia(v[1]);
            const double angA = anguloGones(b, c, a);
            const double angB = anguloGones(c, a, b);
            const double angC = anguloGones(a, b, c);
            aseguraEstilo(*dibujo_);
            textoMedida(*this, angA, v[0]);
            textoMedida(*this, angB, v[1]);
            textoMedida(*this, angC, v[2]);
            salida(*this, 6, "Angulos: A = %0.3lf, B = %0.3lf, C = %0.3lf", angA, angB, angC);
        }
    }
    finComandoInteractivo();
}

void EditorDibujo::textoEnEntidad(Entidad* entidad, double altura, const std::string* texto)
{
    if (texto == nullptr || entidad == nullptr || !dibujo_->contieneEntidad(entidad))
    {
        return;
    }
    const Rect3<double> caja = entidad->extension();
    // An entity with no defining point has no centre to put the text at.
    if (!caja.esValido())
    {
        return;
    }
    const Punto3<double> centro = caja.centro();
    const Punto3<double> posicion(centro.x, centro.y, caja.maximo.z - 10.0);
    const double valores[] = {posicion.x, posicion.y, posicion.z};
    if (!admiteCadena(*texto) || !admiteCoordenadas(valores, 3))
    {
        return;
    }
    // The text keeps its height as a float: a height it cannot hold, or no height at all,
    // would paint nothing the user could see.
    if (!(altura > 0.0 && altura <= std::numeric_limits<float>::max()))
    {
        mensaje("Altura de texto no válida: %g", altura);
        return;
    }
    aseguraEstilo(*dibujo_);
    // Alignment and rotation as the measure texts, so that every label this family leaves
    // on the drawing reads the same way.
    (void)nuevaEntidad(std::make_unique<Texto>(*texto, posicion, kAlineacionMedCen,
                                               static_cast<float>(altura), kRotacionMedida));
}

}  // namespace cad
