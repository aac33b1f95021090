// EditorDibujo: the polyline vertex editors: ranges and windows of deletions, insertions
// with a drag, the vertex-by-vertex option menu and the profile editors.
#include <algorithm>
#include <cstddef>
#include <functional>
#include <limits>
#include <mutex>
#include <string>
#include <vector>

#include "base/geometria/Matriz4.h"
#include "base/geometria/Vector4D.h"
#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "editor/ModificadorVertice.h"
#include "entidades/Entidad.h"
#include "entidades/Polilinea.h"
#include "modelo/PuntosCalientes.h"

namespace cad
{

namespace
{

using Ed = EditorDibujo;

// A reactor call; with no reactor everything goes ahead.
bool anuncia(Ed& ed, Polilinea* p, Ed::enumEdicionEntidades tipo, int indice = -1,
             const Punto3<double>& v = Punto3<double>(0, 0, 0))
{
    return !ed.reactorEdicionEntidades ||
           ed.reactorEdicionEntidades(handleEntidad(p), tipo, indice, v.x, v.y, v.z);
}

void refresca(Ed& ed)
{
    ed.dibujo_->edicionHecha();
    ed.actualiza(Ed::kControl, false);
    ed.actualiza(Ed::kPropiedades, true);
}

bool borraVertice(Ed& ed, Polilinea* p, int i)
{
    if (i < 0 || i >= p->numeroVertices() ||
        !anuncia(ed, p, Ed::kBorrar, i, p->vertices[static_cast<size_t>(i)]))
    {
        return false;
    }
    p->vertices.erase(p->vertices.begin() + i);
    return true;
}

bool insertaVertice(Ed& ed, Polilinea* p, int i, const Punto3<double>& v)
{
    if (i < 0 || i > p->numeroVertices() || !anuncia(ed, p, Ed::kInsertar, i, v))
    {
        return false;
    }
    p->vertices.insert(p->vertices.begin() + i, v);
    return true;
}

// The null-polyline form shared by the vertex commands: pick one, run the command on it,
// all inside one scope.
bool conPolilinea(Ed& ed, const std::function<bool(Polilinea*)>& comando)
{
    ed.iniciaComandoInteractivo(false);
    SeleccionEntidades seleccion(ed.dibujo_);
    Polilinea* elegida = nullptr;
    if (ed.seleccionaEntidadTipo("Polilinea", ed.texto(5, 1, "Seleccione una polilinea:"),
                                 seleccion) &&
        !seleccion.entidades.empty())
    {
        // A Poligono shares the tag but not the class.
        elegida = seleccion.getEntidadPolilinea(seleccion.numeroEntidades() - 1);
    }
    const bool hecho = elegida != nullptr && comando(elegida);
    ed.finComandoInteractivo();
    return hecho;
}

elemento_seleccionado_t vertice(Polilinea* p, int i)
{
    elemento_seleccionado_t e;
    e.entidad = p;
    e.punto = p->vertices[static_cast<size_t>(i)];
    e.tipo = kTipoVertice;
    e.indice = i;
    return e;
}

// The vertex a click names, or -1.
int verticeBajo(Ed& ed, Polilinea* p, const cursor_t& cursor)
{
    if (ed.pantalla_ == nullptr)
    {
        return -1;
    }
    PuntosCalientes puntos;
    p->puntosCalientes(puntos);
    puntos.numeraPuntos();
    const elemento_seleccionado_t e = puntos.cercano(vista_t::de(*ed.pantalla_), cursor);
    const bool valido = e.tipo == kTipoVertice && e.indice >= 0 && e.indice < p->numeroVertices();
    return valido ? e.indice : -1;
}

// A mark (never a drag) on vertex i while a wait runs; any other i clears it.
void marca(Ed& ed, Polilinea* p, int i)
{
    std::lock_guard<std::recursive_mutex> guardia(ed.seccionCritica);
    ed.modificadores.vacia();
    if (i >= 0 && i < p->numeroVertices())
    {
        ed.modificadores.nuevo(creaModificadorNulo(&ed, vertice(p, i)));
    }
}

// Where a vertex inserted at position i starts: halfway along the side it splits; before the
// first or past the last vertex of an open chain, half the end side's length out along it.
// A closed chain wraps, since its closing side is a side like the others.
Punto3<double> puntoIntermedio(const Polilinea& p, int i)
{
    const auto& v = p.vertices;
    const int n = p.numeroVertices();
    const auto en = [&](int k) { return v[static_cast<size_t>(k)]; };
    if (n == 1)
    {
        return en(0);
    }
    if (p.cerrada)
    {
        const Punto3<double> a = en((i - 1 + n) % n);
        const Punto3<double> b = en(i % n);
        return a + (b - a) * 0.5;
    }
    if (i <= 0)
    {
        return en(0) - (en(1) - en(0)) * 0.5;
    }
    if (i >= n)
    {
        return en(n - 1) + (en(n - 1) - en(n - 2)) * 0.5;
    }
    return en(i - 1) + (en(i) - en(i - 1)) * 0.5;
}

// Parameter of the point of segment a-b nearest q, in the given two coordinates, unclamped.
double parametro(const Punto3<double>& a, const Punto3<double>& b, const Punto3<double>& q,
                 double Punto3<double>::*u, double Punto3<double>::*w)
{
    const double du = b.*u - a.*u;
    const double dw = b.*w - a.*w;
    const double l2 = du * du + dw * dw;
    return l2 > 0.0 ? ((q.*u - a.*u) * du + (q.*w - a.*w) * dw) / l2 : 0.0;
}

double distancia2(const Punto3<double>& a, const Punto3<double>& b, const Punto3<double>& q,
                  double Punto3<double>::*u, double Punto3<double>::*w, double t)
{
    const double du = a.*u + (b.*u - a.*u) * t - q.*u;
    const double dw = a.*w + (b.*w - a.*w) * t - q.*w;
    return du * du + dw * dw;
}

// The side nearest q seen along (u, w): its index and the unclamped parameter on it.
int ladoCercano(const Polilinea& p, const Punto3<double>& q, double Punto3<double>::*u,
                double Punto3<double>::*w, double& t)
{
    int mejor = -1;
    double dmin = std::numeric_limits<double>::max();
    for (int i = 0; i < p.numeroAristas(); ++i)
    {
        const auto [a, b] = p.arista(i);
        const double s = parametro(a, b, q, u, w);
        const double d = distancia2(a, b, q, u, w, std::clamp(s, 0.0, 1.0));
        if (d < dmin)
        {
            dmin = d;
            mejor = i;
            t = s;
        }
    }
    return mejor;
}

// The deletion inside one block: the highest index first, so every announced index still
// names the vertex the host holds at that moment.
bool borraEnBloque(Ed& ed, Polilinea* p, const std::vector<int>& indices)
{
    bool borrado = false;
    (void)anuncia(ed, p, Ed::kIniciaBloque);
    for (auto it = indices.rbegin(); it != indices.rend(); ++it)
    {
        borrado = borraVertice(ed, p, *it) || borrado;
    }
    (void)anuncia(ed, p, Ed::kTerminaBloque);
    if (borrado)
    {
        refresca(ed);
    }
    return borrado;
}

}  // namespace

// -------------------------------------------------------------------------------------------
// Deletions of many vertices

bool EditorDibujo::comandoBorrarVertsPol(Polilinea* polilinea)
{
    if (polilinea == nullptr)
    {
        return conPolilinea(*this, [this](Polilinea* p) { return comandoBorrarVertsPol(p); });
    }
    iniciaComandoInteractivo(false);
    (void)anuncia(*this, polilinea, kIniciaEdicion);
    resalta(polilinea, true);
    bool borrado = false;
    cursor_t cursor;
    while (getPunto(texto(13, 1, "Seleccione el vértice a eliminar:"), cursor, true))
    {
        if (!dibujo_->contieneEntidad(polilinea))
        {
            // Deleted from inside the wait: there is nothing left to announce or unmark.
            finComandoInteractivo();
            return borrado;
        }
        if (borraVertice(*this, polilinea, verticeBajo(*this, polilinea, cursor)))
        {
            borrado = true;
            refresca(*this);
        }
    }
    // The refused wait may follow an undo that took the polyline away.
    if (dibujo_->contieneEntidad(polilinea))
    {
        resalta(polilinea, false);
        (void)anuncia(*this, polilinea, kTerminaEdicion);
    }
    finComandoInteractivo();
    return borrado;
}

bool EditorDibujo::comandoBorrarRangoVertsPol(Polilinea* polilinea)
{
    if (polilinea == nullptr)
    {
        return conPolilinea(*this, [this](Polilinea* p) { return comandoBorrarRangoVertsPol(p); });
    }
    iniciaComandoInteractivo(false);
    (void)anuncia(*this, polilinea, kIniciaEdicion);
    resalta(polilinea, true);
    int extremos[2] = {-1, -1};
    const char* prompts[2] = {texto(13, 2, "Seleccione el vértice inicial:"),
                              texto(13, 3, "Seleccione el vértice final:")};
    cursor_t cursor;
    bool presente = true;
    for (int k = 0; k < 2 && presente; ++k)
    {
        // A click that names no vertex asks again; only a refusal gives up.
        while (extremos[k] < 0 && getPunto(prompts[k], cursor, true))
        {
            presente = dibujo_->contieneEntidad(polilinea);
            if (!presente)
            {
                break;
            }
            extremos[k] = verticeBajo(*this, polilinea, cursor);
        }
        if (extremos[k] < 0)
        {
            break;
        }
        marca(*this, polilinea, extremos[0]);
    }
    // A refused wait may follow an undo that took the polyline away.
    presente = presente && dibujo_->contieneEntidad(polilinea);
    marca(*this, polilinea, -1);
    if (!presente)
    {
        // Deleted from inside a wait: nothing left to announce or unmark.
        finComandoInteractivo();
        return false;
    }
    bool borrado = false;
    if (extremos[1] >= 0)
    {
        std::vector<int> indices;
        for (int i = std::min(extremos[0], extremos[1]); i <= std::max(extremos[0], extremos[1]);
             ++i)
        {
            indices.push_back(i);
        }
        borrado = borraEnBloque(*this, polilinea, indices);
    }
    resalta(polilinea, false);
    (void)anuncia(*this, polilinea, kTerminaEdicion);
    finComandoInteractivo();
    return borrado;
}

bool EditorDibujo::comandoBorrarVentanaVertsPol(Polilinea* polilinea)
{
    if (polilinea == nullptr)
    {
        return conPolilinea(*this,
                            [this](Polilinea* p) { return comandoBorrarVentanaVertsPol(p); });
    }
    iniciaComandoInteractivo(false);
    (void)anuncia(*this, polilinea, kIniciaEdicion);
    resalta(polilinea, true);
    int a[2] = {0, 0};
    int b[2] = {0, 0};
    const bool dada = getVentana(texto(14, 1, "Seleccione coordenada inicial de la ventana:"),
                                 texto(14, 2, "Seleccione coordenada final de la ventana:"), a, b);
    if (!dibujo_->contieneEntidad(polilinea))
    {
        finComandoInteractivo();
        return false;
    }
    bool borrado = false;
    if (dada && pantalla_ != nullptr)
    {
        const vista_t vista = vista_t::de(*pantalla_);
        std::vector<int> indices;
        for (int i = 0; i < polilinea->numeroVertices(); ++i)
        {
            const Punto3<double>& q = polilinea->vertices[static_cast<size_t>(i)];
            const Vector4D<double> c =
                vista.matriz * Vector4D<double>(q.x - vista.origen.x, q.y - vista.origen.y,
                                                q.z - vista.origen.z, 1.0);
            if (c.w == 0.0)
            {
                continue;  // a point at infinity has no pixel
            }
            const double sx = ((c.x / c.w) * 0.5 + 0.5) * vista.ancho;
            const double sy = ((c.y / c.w) * 0.5 + 0.5) * vista.alto;
            if (sx >= std::min(a[0], b[0]) && sx <= std::max(a[0], b[0]) &&
                sy >= std::min(a[1], b[1]) && sy <= std::max(a[1], b[1]))
            {
                indices.push_back(i);
            }
        }
        borrado = !indices.empty() && borraEnBloque(*this, polilinea, indices);
    }
    resalta(polilinea, false);
    (void)anuncia(*this, polilinea, kTerminaEdicion);
    finComandoInteractivo();
    return borrado;
}

// -------------------------------------------------------------------------------------------
// Insertions

namespace
{

// Inserts v at i and drags it once. The drag runs through comandoEditar with `repite` false:
// with `repite` true its true stands both for an accepted drag followed by a refused vertex
// pick and for a cancelled drag, and taking the vertex out on that guess could delete one
// the user had placed. With false, false means exactly that this drag was not accepted.
bool insertaYArrastra(Ed& ed, Polilinea* p, int i, const Punto3<double>& v)
{
    if (!insertaVertice(ed, p, i, v))
    {
        return false;
    }
    refresca(ed);
    if (ed.comandoEditar(p, i, false, false))
    {
        return true;
    }
    if (ed.dibujo_->contieneEntidad(p) && borraVertice(ed, p, i))
    {
        refresca(ed);
    }
    return false;
}

}  // namespace

bool EditorDibujo::comandoInsertaVertsPol(Polilinea* polilinea, int indice)
{
    if (polilinea == nullptr)
    {
        return conPolilinea(
            *this, [this, indice](Polilinea* p) { return comandoInsertaVertsPol(p, indice); });
    }
    iniciaComandoInteractivo(false);
    (void)anuncia(*this, polilinea, kIniciaEdicion);
    bool hecho = false;
    const int n = polilinea->numeroVertices();
    if (indice != -1)
    {
        if (indice >= 0 && indice <= n && n > 0)
        {
            hecho = insertaYArrastra(*this, polilinea, indice, puntoIntermedio(*polilinea, indice));
        }
    }
    else
    {
        cursor_t cursor;
        if (getPunto(texto(11, 5, "Seleccione nueva coordenada"), cursor, true) &&
            dibujo_->contieneEntidad(polilinea))
        {
            const Punto3<double> q = cursor.get();
            double t = 0.0;
            const int lado = ladoCercano(*polilinea, q, &Punto3<double>::x, &Punto3<double>::y, t);
            int i = polilinea->numeroVertices();  // no side: the vertex goes at the end
            if (lado >= 0)
            {
                i = lado + 1;
                if (polilinea->cerrada && i == n)
                {
                    i = 0;  // the closing side ends at vertex 0
                }
                else if (!polilinea->cerrada && lado == 0 && t < 0.0)
                {
                    i = 0;  // before the first vertex
                }
                else if (!polilinea->cerrada && lado == n - 2 && t > 1.0)
                {
                    i = n;  // past the last vertex
                }
            }
            hecho = insertaYArrastra(*this, polilinea, i, q);
        }
    }
    if (dibujo_->contieneEntidad(polilinea))
    {
        (void)anuncia(*this, polilinea, kTerminaEdicion);
    }
    finComandoInteractivo();
    return hecho;
}

bool EditorDibujo::comandoInsertaVertsPolPerfil(Polilinea* polilinea)
{
    if (polilinea == nullptr)
    {
        return conPolilinea(*this,
                            [this](Polilinea* p) { return comandoInsertaVertsPolPerfil(p); });
    }
    if (polilinea->numeroVertices() < 2)
    {
        return false;
    }
    iniciaComandoInteractivo(false);
    (void)anuncia(*this, polilinea, kIniciaEdicion);
    bool hecho = false;
    cursor_t cursor;
    if (getPunto(texto(11, 5, "Seleccione nueva coordenada"), cursor, true) &&
        dibujo_->contieneEntidad(polilinea) && polilinea->numeroVertices() >= 2)
    {
        Punto3<double> q = cursor.get();
        double t = 0.0;
        const int lado = ladoCercano(*polilinea, q, &Punto3<double>::x, &Punto3<double>::z, t);
        const auto [a, b] = polilinea->arista(lado);
        // The profile shows x and z only: y follows the side, so the vertex stays on it.
        q.y = a.y + (b.y - a.y) * std::clamp(t, 0.0, 1.0);
        hecho = insertaYArrastra(*this, polilinea, lado + 1, q);
    }
    if (dibujo_->contieneEntidad(polilinea))
    {
        (void)anuncia(*this, polilinea, kTerminaEdicion);
    }
    finComandoInteractivo();
    return hecho;
}

// -------------------------------------------------------------------------------------------
// Profile drags

bool EditorDibujo::comandoEditarVertsPolPerfil(Polilinea* polilinea, int indice)
{
    if (polilinea == nullptr)
    {
        return conPolilinea(
            *this, [this, indice](Polilinea* p) { return comandoEditarVertsPolPerfil(p, indice); });
    }
    (void)anuncia(*this, polilinea, kIniciaEdicion);
    resalta(polilinea, true);
    quitaMarcasVerticesEntidad(polilinea);
    actualiza(kPropiedades, false);
    if (indice >= 0 && indice < polilinea->numeroVertices())
    {
        (void)editaPunto(vertice(polilinea, indice));
    }
    bool resultado = true;
    bool sigue = dibujo_->contieneEntidad(polilinea);
    while (sigue)
    {
        // One scope per wait, closed before the drag opens its own: a closing inner scope
        // reads as an interruption to a wait still open around it.
        iniciaComandoInteractivo(false);
        descartaEvento();
        limpiaEntrada();
        mensaje("%s", texto(11, 4, "Seleccione entidad/punto caliente, arista o cara:"));
        int candidato = -1;
        bool arrastra = false;
        sigue = false;
        resultado = false;
        while (procesoEventos)
        {
            procesoEventos();
            if (finEspera(false) || !dibujo_->contieneEntidad(polilinea))
            {
                break;
            }
            cursor_t actual = posicionCursor();
            if (actual.x >= 0 && pantalla_ != nullptr)
            {
                cursorADocumento(actual);
                PuntosCalientes puntos;
                polilinea->puntosCalientes(puntos);
                puntos.numeraPuntos();
                const elemento_seleccionado_t e =
                    puntos.cercanoRayo(vista_t::de(*pantalla_), actual);
                const int nuevo = e.tipo == kTipoVertice ? e.indice : -1;
                if (nuevo != candidato)
                {
                    candidato = nuevo;
                    marca(*this, polilinea, candidato);
                }
            }
            cursor_t evento;
            int estado = 0;
            if (leeEvento(evento, estado) && estado == PantallaCAD::kBotonIzquierdo &&
                candidato >= 0)
            {
                arrastra = true;
                break;
            }
            if (entradaRecibida)
            {
                if (entradaVacia)
                {
                    resultado = true;
                    break;
                }
                borraEntradaLineaComandos();
            }
        }
        marca(*this, polilinea, -1);
        mensaje("%s", "");
        finComandoInteractivo();
        if (arrastra && dibujo_->contieneEntidad(polilinea))
        {
            (void)editaPunto(vertice(polilinea, candidato));
            sigue = true;
        }
    }
    if (!dibujo_->contieneEntidad(polilinea))
    {
        return false;
    }
    resalta(polilinea, false);
    actualiza(kPropiedades, false);
    (void)anuncia(*this, polilinea, kTerminaEdicion);
    return resultado;
}

// -------------------------------------------------------------------------------------------
// The option menu

bool EditorDibujo::comandoEditPol()
{
    iniciaComandoInteractivo(false);
    Polilinea* elegida = nullptr;
    for (;;)
    {
        SeleccionEntidades seleccion(dibujo_);
        if (!seleccionaEntidad(texto(3, 3, "Seleccione una linea:"), seleccion))
        {
            break;
        }
        for (Entidad* e : seleccion.entidades)
        {
            // Any line answers the pick; only a polyline has vertices to edit.
            elegida = dynamic_cast<Polilinea*>(e);
            if (elegida != nullptr)
            {
                break;
            }
        }
        if (elegida != nullptr)
        {
            break;
        }
    }
    const bool hecho = elegida != nullptr && comandoEditPol(elegida);
    finComandoInteractivo();
    return hecho;
}

namespace
{

// The indices of this pass's options; -1 for one not offered.
struct opcionesEditPol_t
{
    int abrir = -1, cerrar = -1, previo = -1, siguiente = -1, mover = -1, borrar = -1, antes = -1,
        despues = -1;
};

opcionesEditPol_t ofrece(Ed& ed, const Polilinea& p, int i)
{
    opcionesEditPol_t o;
    const int n = p.numeroVertices();
    ed.opciones.clear();
    if (p.cerrada)
    {
        o.abrir = ed.nuevaOpcion(ed.texto(4, 6, "Abrir"));
        o.previo = ed.nuevaOpcion(ed.texto(4, 7, "Previo"));
        o.siguiente = ed.nuevaOpcion(ed.texto(4, 8, "Siguiente"));
    }
    else
    {
        if (n > 2)
        {
            o.cerrar = ed.nuevaOpcion(ed.texto(4, 4, "Cerrar"));
        }
        if (i > 0)
        {
            o.previo = ed.nuevaOpcion(ed.texto(4, 7, "Previo"));
        }
        if (i < n - 1)
        {
            o.siguiente = ed.nuevaOpcion(ed.texto(4, 8, "Siguiente"));
        }
    }
    o.mover = ed.nuevaOpcion(ed.texto(4, 9, "Mover"));
    if (n > 2)
    {
        o.borrar = ed.nuevaOpcion(ed.texto(4, 2, "Borrar"));
    }
    o.antes = ed.nuevaOpcion(ed.texto(4, 10, "Insertar(antes)"));
    o.despues = ed.nuevaOpcion(ed.texto(4, 11, "insertar(Despues)"));
    return o;
}

// The prompt with the options in place of its "%s". Replaced by hand, not by printf: the
// wording comes from a message file, and a stray directive in it must not read past the
// arguments.
std::string promptOpciones(Ed& ed)
{
    std::string prompt = ed.texto(11, 6, "Seleccione vertice/%s:");
    std::string lista;
    (void)ed.textoOpciones(lista);
    const size_t k = prompt.find("%s");
    if (k != std::string::npos)
    {
        prompt.replace(k, 2, lista);
    }
    return prompt;
}

}  // namespace

bool EditorDibujo::comandoEditPol(Polilinea* polilinea)
{
    if (polilinea == nullptr)
    {
        return comandoEditPol();
    }
    Polilinea* p = polilinea;
    cursor_t inicial = posicionCursor();
    resalta(p, true);
    quitaMarcasVerticesEntidad(p);
    actualiza(kPropiedades, false);
    iniciaComandoInteractivo(false);
    int i = 0;
    if (pantalla_ != nullptr && inicial.x >= 0)
    {
        cursorADocumento(inicial);
        PuntosCalientes puntos;
        p->puntosCalientes(puntos);
        puntos.numeraPuntos();
        i = std::max(0, puntos.cercanoRayo(vista_t::de(*pantalla_), inicial).indice);
    }
    bool cambiado = false;
    for (;;)
    {
        const int n = p->numeroVertices();
        i = std::clamp(i, 0, std::max(0, n - 1));
        const opcionesEditPol_t o = ofrece(*this, *p, i);
        marca(*this, p, i);
        const std::string prompt = promptOpciones(*this);
        cursor_t cursor;
        int opcionElegida = -1;
        const bool respondida = getPunto(prompt.c_str(), cursor, &opcionElegida, nullptr, true);
        {
            std::lock_guard<std::recursive_mutex> guardia(seccionCritica);
            modificadores.cancela();
        }
        if (!dibujo_->contieneEntidad(p))
        {
            opciones.clear();
            finComandoInteractivo();
            return false;
        }
        if (!respondida || n == 0)
        {
            break;
        }
        const int op = opcionElegida;
        if (op < 0)
        {
            const int k = verticeBajo(*this, p, cursor);
            i = k >= 0 ? k : i;
        }
        else if (op == o.abrir || op == o.cerrar)
        {
            p->cerrada = op == o.cerrar;
            refresca(*this);
            cambiado = true;
        }
        else if (op == o.previo)
        {
            i = p->cerrada ? (i + n - 1) % n : i - 1;
        }
        else if (op == o.siguiente)
        {
            i = p->cerrada ? (i + 1) % n : i + 1;
        }
        else if (op == o.mover)
        {
            if (editaPunto(vertice(p, i)))
            {
                refresca(*this);
                cambiado = true;
            }
        }
        else if (op == o.borrar)
        {
            if (borraVertice(*this, p, i))
            {
                refresca(*this);
                cambiado = true;
            }
        }
        else if (op == o.antes || op == o.despues)
        {
            const int j = op == o.antes ? i : i + 1;
            if (insertaVertice(*this, p, j, puntoIntermedio(*p, j)))
            {
                refresca(*this);
                if (editaPunto(vertice(p, j)))
                {
                    refresca(*this);
                    i = j;
                    cambiado = true;
                }
                else if (dibujo_->contieneEntidad(p))
                {
                    // A host that vetoes taking it out keeps the vertex: that is a change.
                    const bool quitado = borraVertice(*this, p, j);
                    cambiado = cambiado || !quitado;
                    if (quitado)
                    {
                        refresca(*this);
                    }
                }
            }
        }
        if (!dibujo_->contieneEntidad(p))
        {
            opciones.clear();
            finComandoInteractivo();
            return false;
        }
        if (cancelaEntrada())
        {
            cambiado = false;
            break;
        }
    }
    // The vertex menu's options must not stay offered to the next prompt.
    opciones.clear();
    resalta(p, false);
    actualiza(kPropiedades, false);
    finComandoInteractivo();
    return cambiado;
}

}  // namespace cad
