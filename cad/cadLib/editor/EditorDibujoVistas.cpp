// EditorDibujo: the view commands (pan, rotation, zooms, camera), the reference plane and the
// local coordinate system.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "base/Configuracion.h"
#include "base/geometria/Matriz4.h"
#include "base/geometria/Plano3D.h"
#include "base/geometria/Polilinea3D.h"
#include "base/geometria/Punto2.h"
#include "base/geometria/Rect3.h"
#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "editor/LineaElastica.h"
#include "editor/TextosEditor.h"
#include "entidades/AjustePlano.h"
#include "entidades/Esfera.h"
#include "entidades/Linea.h"
#include "entidades/Objeto3D.h"
#include "entidades/Plano.h"
#include "entidades/Punto.h"
#include "entidades/SistemaLocal.h"
#include "entidades/TomaCamara.h"
#include "modelo/PuntosCalientes.h"

namespace cad
{

namespace
{

// The full snap mask: ends, midpoints, the fourth kind, insertion points and nearest.
constexpr int32_t kMascaraCompleta = 31;

// The camera glyph turns omega about a full turn written as this literal; the view put at a
// shot must look exactly where the glyph points.
constexpr double kVueltaOmega = 6.283185308;

struct camara_t
{
    Punto3<double> posicion;
    Punto3<double> objetivo;
    Vector3D<double> direccion{0, 0, 1};
    Vector3D<double> arriba{0, 0, 1};
    double zoom = 1.0;
    double angulo = 0.0;
};

// The display's camera; with no display, a view looking down.
camara_t camara(PantallaCAD* pantalla)
{
    camara_t c;
    c.direccion = Vector3D<double>(0, 0, -1);
    if (pantalla != nullptr)
    {
        pantalla->getCamara(c.posicion, c.objetivo, c.direccion, c.arriba, c.zoom, c.angulo);
    }
    return c;
}

// The plane's normal when three points span one; false for coincident or collinear points.
// Tested against the sides' lengths, so that survey-sized coordinates are judged by shape.
bool normalTresPuntos(const Punto3<double>& a, const Punto3<double>& b, const Punto3<double>& c,
                      Vector3D<double>& normal)
{
    const Vector3D<double> ab = b - a;
    const Vector3D<double> ac = c - a;
    const Vector3D<double> n = ab.cross(ac);
    const double escala = ab.modulo() * ac.modulo();
    if (!(escala > 0.0) || !(n.modulo() > 1e-12 * escala))
    {
        return false;
    }
    normal = n.unit();
    return true;
}

// True when the points span a plane: some point lies off the line through the first one and
// the point farthest from it.
bool definenPlano(const std::vector<Punto3<double>>& p)
{
    if (p.size() < 3)
    {
        return false;
    }
    size_t lejano = 0;
    double mayor = 0.0;
    for (size_t i = 1; i < p.size(); ++i)
    {
        const double d = p[i].distancia(p[0]);
        if (d > mayor)
        {
            mayor = d;
            lejano = i;
        }
    }
    Vector3D<double> n;
    for (size_t i = 1; i < p.size(); ++i)
    {
        if (i != lejano && normalTresPuntos(p[0], p[lejano], p[i], n))
        {
            return true;
        }
    }
    return false;
}

// The common point of three planes by Cramer's rule. False when two of them are parallel or
// the three share a line: the determinant is then negligible beside the normals' lengths.
bool puntoComun(const Plano3D<double>& p1, const Plano3D<double>& p2, const Plano3D<double>& p3,
                Punto3<double>& punto)
{
    const Vector3D<double> n1(p1.a, p1.b, p1.c);
    const Vector3D<double> n2(p2.a, p2.b, p2.c);
    const Vector3D<double> n3(p3.a, p3.b, p3.c);
    const double det = n1.dot(n2.cross(n3));
    const double escala = n1.modulo() * n2.modulo() * n3.modulo();
    if (!(escala > 0.0) || !(std::abs(det) > 1e-9 * escala))
    {
        return false;
    }
    // x = (-d1 (n2 x n3) - d2 (n3 x n1) - d3 (n1 x n2)) / det
    const Vector3D<double> v = n2.cross(n3) * -p1.d + n3.cross(n1) * -p2.d + n1.cross(n2) * -p3.d;
    punto = Punto3<double>(v.x / det, v.y / det, v.z / det);
    return true;
}

// One more "Pn1" plane into the selection, the earlier ones highlighted so that the pick
// passes them over. Null when the pick was refused or brought another kind of entity.
Plano* otroPlano(EditorDibujo& editor, const char* prompt, SeleccionEntidades& seleccion)
{
    const size_t antes = seleccion.entidades.size();
    if (!editor.seleccionaEntidadTipo(kFirmaEntidadPlano, prompt, seleccion) ||
        seleccion.entidades.size() == antes)
    {
        return nullptr;
    }
    Plano* p = seleccion.getEntidadPlano(seleccion.numeroEntidades() - 1);
    editor.resalta(p, true);
    return p;
}

}  // namespace

// -------------------------------------------------------------------------------------------
// Pan and rotation

// The pump spins while the display moves the view with the mouse, until the endings every
// wait has. Any typed line ends it too (taken as the end, not kept): otherwise the user would
// be left in pan mode.
void EditorDibujo::esperaTransparente(int modo)
{
    iniciaComandoInteractivo(true);
    // The input an earlier wait left (its Enter) must not end this one at the first step.
    limpiaEntrada();
    if (pantalla_ != nullptr)
    {
        pantalla_->setModoInteraccion(modo);
    }
    while (procesoEventos)
    {
        procesoEventos();
        if (finEspera(false))
        {
            break;
        }
        if (entradaRecibida)
        {
            limpiaEntradaCompleta();
            break;
        }
    }
    finComandoInteractivo();
}

bool EditorDibujo::comandoEncuadre()
{
    esperaTransparente(PantallaCAD::kVisorPlano);
    return true;
}

bool EditorDibujo::comandoRotacion()
{
    esperaTransparente(PantallaCAD::kVisorLibre);
    return true;
}

// -------------------------------------------------------------------------------------------
// Zooms

namespace
{

// The display's view into the document's current view, then the host's controls.
void vistaCambiada(EditorDibujo& editor)
{
    if (editor.pantalla_ != nullptr)
    {
        editor.dibujo_->guardaVistaActual(editor.pantalla_);
    }
    editor.actualiza(EditorDibujo::kControl, false);
}

// A pixel window given by either corner and a signed size: the lesser corner goes first.
void zoomPixeles(EditorDibujo& editor, int x, int y, int ancho, int alto)
{
    if (editor.pantalla_ != nullptr)
    {
        // Sizes come from the host: summed in 64 bits, a corner past the int range is refused.
        const int64_t x1 = int64_t{x} + ancho;
        const int64_t y1 = int64_t{y} + alto;
        const auto cabe = [](int64_t v)
        { return v >= std::numeric_limits<int>::min() && v <= std::numeric_limits<int>::max(); };
        if (!cabe(x1) || !cabe(y1))
        {
            return;
        }
        editor.pantalla_->zoomVentana(Punto2<int>(static_cast<int>(std::min<int64_t>(x, x1)),
                                                  static_cast<int>(std::min<int64_t>(y, y1))),
                                      Punto2<int>(static_cast<int>(std::max<int64_t>(x, x1)),
                                                  static_cast<int>(std::max<int64_t>(y, y1))));
    }
    vistaCambiada(editor);
}

}  // namespace

bool EditorDibujo::comandoZoomVentana()
{
    return comandoZoomVentana(texto(14, 1, "Seleccione coordenada inicial de la ventana:"),
                              texto(14, 2, "Seleccione coordenada final de la ventana:"));
}

bool EditorDibujo::comandoZoomVentana(const std::string& mensaje1, const std::string& mensaje2)
{
    iniciaComandoInteractivo(true);
    int a[2] = {0, 0};
    int b[2] = {0, 0};
    const bool dada = getVentana(mensaje1.c_str(), mensaje2.c_str(), a, b);
    if (dada)
    {
        // Not zoomVentana(x, y, ...): a second transparent scope inside this one would end it.
        zoomPixeles(*this, std::min(a[0], b[0]), std::min(a[1], b[1]), std::abs(b[0] - a[0]),
                    std::abs(b[1] - a[1]));
    }
    finComandoInteractivo();
    return dada;
}

void EditorDibujo::zoomEscala(double escala)
{
    // A factor that is not a finite positive number would reach the stored view.
    if (!(std::isfinite(escala) && escala > 0.0))
    {
        return;
    }
    if (pantalla_ != nullptr)
    {
        pantalla_->zoomEscala(escala);
    }
    vistaCambiada(*this);
}

void EditorDibujo::zoomVentana(int x, int y, int ancho, int alto)
{
    iniciaComandoInteractivo(true);
    zoomPixeles(*this, x, y, ancho, alto);
    finComandoInteractivo();
}

void EditorDibujo::zoomVentana(double x0, double x1, double y0, double y1, double z0, double z1)
{
    const double valores[] = {x0, x1, y0, y1, z0, z1};
    if (!std::all_of(std::begin(valores), std::end(valores),
                     [](double v) { return std::isfinite(v); }))
    {
        return;
    }
    // Either order of each pair gives the same box.
    const Rect3<double> caja(Punto3<double>(std::min(x0, x1), std::min(y0, y1), std::min(z0, z1)),
                             Punto3<double>(std::max(x0, x1), std::max(y0, y1), std::max(z0, z1)));
    if (pantalla_ != nullptr)
    {
        pantalla_->zoomExtension(caja);
    }
    vistaCambiada(*this);
}

bool EditorDibujo::zoomExtension()
{
    // The drawing copies the view itself.
    if (pantalla_ != nullptr)
    {
        dibujo_->zoomExtension(1.0, pantalla_);
    }
    return true;
}

bool EditorDibujo::zoomExtension(Entidad* entidad)
{
    // A pointer that is not in the drawing (null, deleted, undone) has no box to show.
    if (entidad == nullptr || !dibujo_->contieneEntidad(entidad))
    {
        return true;
    }
    const Rect3<double> caja = entidad->extension();
    if (!caja.esValido())
    {
        return true;
    }
    if (pantalla_ != nullptr)
    {
        pantalla_->zoomExtension(caja);
    }
    vistaCambiada(*this);
    return true;
}

bool EditorDibujo::comandoPosicionCamara()
{
    iniciaComandoInteractivo(true);
    SeleccionEntidades seleccion(dibujo_);
    bool movida = false;
    if (seleccionaEntidad(texto(11, 18, "Selecciona una camara"), seleccion) &&
        pantalla_ != nullptr && dibujo_->contieneEntidad(seleccion.entidades.back()))
    {
        Entidad* e = seleccion.entidades.back();
        const camara_t actual = camara(pantalla_);
        if (e->tieneFirma(kFirmaEntidadTomaCamara))
        {
            const auto* toma = static_cast<const TomaCamara*>(e);
            const Vector3D<double>& opk = toma->orientacion;
            // The glyph's own turn: the camera looks along its local +Y, up is its local +Z.
            const Matriz4<double> giro = Matriz4<double>::rotacionZ(-opk.z) *
                                         Matriz4<double>::rotacionY(opk.y) *
                                         Matriz4<double>::rotacionX(kVueltaOmega - opk.x);
            const Punto3<double> cero = giro * Punto3<double>(0, 0, 0);
            const Vector3D<double> delante = giro * Punto3<double>(0, 1, 0) - cero;
            const Vector3D<double> arriba = giro * Punto3<double>(0, 0, 1) - cero;
            // Vertical angle of view in degrees from the image height and the focal
            // distance; a shot without them keeps the present angle.
            double angulo = actual.angulo;
            if (toma->distancia > 0.0 && toma->altura > 0.0)
            {
                angulo = 2.0 * std::atan(toma->altura / (2.0 * toma->distancia)) * 180.0 /
                         3.14159265358979323846;
            }
            pantalla_->setCamaraFoto(toma->posicion, toma->posicion + delante, arriba, angulo, 0.0);
            movida = true;
        }
        else if (e->tieneFirma(kFirmaEntidadFoto360))
        {
            // From the photograph's centre, looking the way the view looked.
            const Punto3<double> centro = static_cast<const Esfera*>(e)->centro;
            pantalla_->setCamaraFoto(centro, centro + (actual.objetivo - actual.posicion),
                                     actual.arriba, actual.angulo, 0.0);
            movida = true;
        }
        if (movida)
        {
            vistaCambiada(*this);
        }
    }
    finComandoInteractivo();
    return movida;
}

// -------------------------------------------------------------------------------------------
// Reference plane

void EditorDibujo::setPlanoReferenciaVista()
{
    // Without a display there is no view to face.
    if (pantalla_ == nullptr)
    {
        return;
    }
    const camara_t c = camara(pantalla_);
    Punto3<double> origen = dibujo_->origenPlano;
    if (!dibujo_->hayPlanoReferencia())
    {
        // The point of the view axis level with the drawing's centre, else the target.
        origen = c.objetivo;
        if (dibujo_->extension.esValido())
        {
            const Vector3D<double> d = c.direccion.unit();
            origen = c.posicion + d * (dibujo_->extension.centro() - c.posicion).dot(d);
        }
    }
    dibujo_->setPlanoReferencia(origen, c.direccion);
    dibujo_->planoTemporalActivo = false;
}

namespace
{

// What a picked entity says about the plane. The caller reports failures.
enum class resultadoPlano
{
    kHecho,
    kNoDefine,     // "La entidad no define un plano."
    kSinCara,      // "Cara no encontrada."
    kInterrumpido  // a wait was refused or the entity left the drawing: nothing to say
};

// A line and a third point, or the point one unit above its first end.
resultadoPlano planoLinea(EditorDibujo& ed, Linea* linea, Punto3<double>& origen,
                          Vector3D<double>& normal)
{
    ed.limpiaEntradaCompleta();
    const int vertical = ed.nuevaOpcion(ed.texto(4, 14, "Vertical"));
    cursor_t cursor;
    int opcion = -1;
    const bool dado = ed.getPunto(ed.texto(20, 3, "Seleccione un tercer punto:Vertical/<Entidad>"),
                                  cursor, &opcion, nullptr, true);
    ed.limpiaEntradaCompleta();
    if (!dado || !ed.dibujo_->contieneEntidad(linea))
    {
        return resultadoPlano::kInterrumpido;
    }
    const Punto3<double> tercero =
        opcion == vertical ? linea->origen + Vector3D<double>(0, 0, 1) : cursor.get();
    if (!normalTresPuntos(linea->origen, linea->extremo, tercero, normal))
    {
        return resultadoPlano::kNoDefine;
    }
    origen = linea->origen;
    return resultadoPlano::kHecho;
}

// A face of a mesh object, found under a click among its hot elements.
resultadoPlano planoCara(EditorDibujo& ed, Objeto3D* objeto, Punto3<double>& origen,
                         Vector3D<double>& normal)
{
    ed.resalta(objeto, true);
    ed.limpiaEntradaCompleta();
    ed.nuevaOpcion(ed.texto(4, 14, "Vertical"));
    cursor_t cursor;
    int opcion = -1;
    const bool dado = ed.getPunto(ed.texto(11, 14, "Seleccione una cara del objeto"), cursor,
                                  &opcion, nullptr, true);
    ed.limpiaEntradaCompleta();
    if (!ed.dibujo_->contieneEntidad(objeto))
    {
        return resultadoPlano::kInterrumpido;
    }
    ed.resalta(objeto, false);
    // The option names no face: only a click can find one.
    if (!dado || opcion >= 0 || ed.pantalla_ == nullptr)
    {
        return resultadoPlano::kSinCara;
    }
    PuntosCalientes puntos;
    objeto->puntosCalientes(puntos);
    const elemento_seleccionado_t e = puntos.cercano(vista_t::de(*ed.pantalla_), cursor);
    if (e.tipo != kTipoCara || e.indice == -1)
    {
        return resultadoPlano::kSinCara;
    }
    const auto i = static_cast<size_t>(e.indice);
    const std::vector<Punto3<double>>& cara = puntos.caras[i];
    Vector3D<double> suma;
    for (const Punto3<double>& p : cara)
    {
        suma = suma + (p - Punto3<double>(0, 0, 0));
    }
    const double n = static_cast<double>(cara.size());
    origen = Punto3<double>(suma.x / n, suma.y / n, suma.z / n);
    normal = Vector3D<double>(puntos.normalesCaras[i][0], puntos.normalesCaras[i][1],
                              puntos.normalesCaras[i][2])
                 .unit();
    return normal.modulo() > 0.0 ? resultadoPlano::kHecho : resultadoPlano::kSinCara;
}

resultadoPlano planoEntidad(EditorDibujo& ed, Entidad* e, Punto3<double>& origen,
                            Vector3D<double>& normal)
{
    if (e->tieneFirma(kFirmaEntidadPlano))
    {
        const auto* plano = static_cast<const Plano*>(e);
        normal = plano->normal();
        if (!(normal.modulo() > 0.0))
        {
            return resultadoPlano::kNoDefine;
        }
        // A plane made without points has no reference: its foot from the origin stands in.
        origen = plano->referencia != invalido ? plano->referencia
                                               : plano->proyecta(Punto3<double>(0, 0, 0));
        return resultadoPlano::kHecho;
    }
    if (e->tieneFirma(kFirmaEntidadLinea))
    {
        return planoLinea(ed, static_cast<Linea*>(e), origen, normal);
    }
    if (const auto* p = dynamic_cast<const Polilinea3D<double>*>(e))
    {
        // A fit through collinear points would be a plane picked at random.
        if (!definenPlano(p->vertices))
        {
            return resultadoPlano::kNoDefine;
        }
        normal = ajustaPlano(p->vertices).normal();
        origen = p->vertices.front();
        return resultadoPlano::kHecho;
    }
    if (e->tieneFirma(kFirmaEntidadObjeto3D))
    {
        if (auto* o = dynamic_cast<Objeto3D*>(e))
        {
            return planoCara(ed, o, origen, normal);
        }
    }
    return resultadoPlano::kNoDefine;
}

}  // namespace

bool EditorDibujo::comandoPlanoReferencia()
{
    iniciaComandoInteractivo(false);
    limpiaEntradaCompleta();
    const int planta = nuevaOpcion(texto(4, 12, "Planta"));
    const int vista = nuevaOpcion(texto(4, 13, "Vista"));
    for (Entidad* e : dibujo_->entidades)
    {
        e->setResaltada(false);
    }
    dibujo_->vistaAplicada = false;
    dibujo_->redibujar = true;
    actualiza(kPropiedades, false);

    SeleccionEntidades seleccion(dibujo_);
    int opcionElegida = -1;
    const bool hayEntidad =
        seleccionaEntidad(texto(20, 1, "Establecer plano de referencia:Planta/Vista/<Entidad>"),
                          seleccion, nullptr, &opcionElegida);
    bool establecido = false;
    Punto3<double> origen;
    Vector3D<double> normal(0, 0, 1);
    if (!hayEntidad && opcionElegida == planta)
    {
        limpiaEntradaCompleta();
        double altura = 0.0;
        if (entradaDoble(texto(4, 15, "Elevación"), false, &altura))
        {
            origen = Punto3<double>(0, 0, altura);
            establecido = true;
        }
    }
    else if (!hayEntidad && opcionElegida == vista)
    {
        limpiaEntradaCompleta();
        normal = camara(pantalla_).direccion;
        const ajustesReferencia_t antes = fuerzaReferencia(kMascaraCompleta);
        cursor_t cursor;
        establecido = getPunto(texto(7, 5, "Seleccione un punto del plano"), cursor, true);
        restauraReferencia(antes);
        origen = cursor.get();
    }
    else if (hayEntidad && dibujo_->contieneEntidad(seleccion.entidades.back()))
    {
        switch (planoEntidad(*this, seleccion.entidades.back(), origen, normal))
        {
            case resultadoPlano::kHecho:
                establecido = true;
                break;
            case resultadoPlano::kNoDefine:
                mensaje("%s", texto(19, 3, "La entidad no define un plano."));
                break;
            case resultadoPlano::kSinCara:
                mensaje("%s", texto(19, 2, "Cara no encontrada."));
                break;
            case resultadoPlano::kInterrumpido:
                break;
        }
    }
    if (establecido)
    {
        dibujo_->setPlanoReferencia(origen, normal);
        // A temporary plane left by an earlier wait would keep clicks off the new plane.
        dibujo_->planoTemporalActivo = false;
        mensaje("%s", texto(20, 2, "Plano de referencia establecido."));
    }
    limpiaEntradaCompleta();
    finComandoInteractivo();
    return establecido;
}

bool EditorDibujo::comandoCentroRotacion()
{
    iniciaComandoInteractivo(false);
    const ajustesReferencia_t antes = fuerzaReferencia(kMascaraCompleta);
    cursor_t cursor;
    const bool dado = getPunto(texto(21, 1, "Seleccione el centro de rotación:"), cursor, true);
    restauraReferencia(antes);
    if (dado && pantalla_ != nullptr)
    {
        pantalla_->setCentroRotacion(cursor.get());
    }
    finComandoInteractivo();
    return dado;
}

// -------------------------------------------------------------------------------------------
// Local system and plane intersection

namespace
{

// The plane under a click's pixel, if any; null for typed coordinates.
Plano* planoBajoClic(EditorDibujo& ed, const cursor_t& cursor)
{
    if (cursor.x < 0 || ed.pantalla_ == nullptr)
    {
        return nullptr;
    }
    // Selected and highlighted planes count too: the pick for a selection would pass them.
    const int t = Configuracion::instancia().valor(Configuracion::kVentanaReferencia);
    for (Entidad* e :
         ed.dibujo_->entidadesCercaPixel(*ed.pantalla_, cursor.x, cursor.y, t, ed.incluyeOcultas))
    {
        if (e->tieneFirma(kFirmaEntidadPlano))
        {
            return static_cast<Plano*>(e);
        }
    }
    return nullptr;
}

// The origin and the X and Y points of a local system. With a plane, Y comes from its normal.
// The first wait takes a point, so that the origin may be typed or clicked anywhere (an entity
// wait would not end on empty ground); a click on a plane picks the plane instead.
bool puntosSistema(EditorDibujo& ed, Punto3<double>& origen, Vector3D<double>& x,
                   Vector3D<double>& y)
{
    cursor_t pick;
    if (!ed.getPunto(
            ed.texto(1, 1, "Seleccione un plano o un punto para el origen del sistema local:"),
            pick, true))
    {
        return false;
    }
    Plano* plano = planoBajoClic(ed, pick);
    const bool hayPlano = plano != nullptr;
    // Read when its wait starts: the host may reload the catalogue during an earlier wait.
    const auto promptX = [&ed]()
    { return ed.texto(1, 3, "Seleccione el eje X del sistema local"); };
    cursor_t cursor;
    if (hayPlano)
    {
        // The plane stays highlighted while its origin and X axis are asked for.
        ed.resalta(plano, true);
        bool dado =
            ed.getPunto(ed.texto(1, 2, "Seleccione el origen del sistema local:"), cursor, true);
        if (dado)
        {
            origen = cursor.get();
            LineaElastica banda(&ed, 13);
            banda.nuevaAncla(origen);
            dado = ed.getPunto(promptX(), cursor, true);
        }
        // An undo run from inside a wait may have taken the plane away.
        if (!ed.dibujo_->contieneEntidad(plano))
        {
            return false;
        }
        ed.resalta(plano, false);
        if (!dado)
        {
            return false;
        }
        // X is kept in the plane, so that the system's XY plane is the one picked.
        const Vector3D<double> n = plano->normal();
        x = cursor.get() - origen;
        x = x - n * x.dot(n);
        y = n.cross(x);
        return true;
    }
    origen = pick.get();
    LineaElastica banda(&ed, 13);
    banda.nuevaAncla(origen);
    if (!ed.getPunto(promptX(), cursor, true))
    {
        return false;
    }
    banda.nuevaAncla(cursor.get());
    x = cursor.get() - origen;
    if (!ed.getPunto(ed.texto(1, 4, "Seleccione el eje Y del sistema local"), cursor, true))
    {
        return false;
    }
    y = cursor.get() - origen;
    return true;
}

}  // namespace

bool EditorDibujo::comandoSistemaLocal(const std::string* nombre)
{
    if (nombre != nullptr && !admiteCadena(*nombre))
    {
        return false;
    }
    iniciaComandoInteractivo(false);
    Punto3<double> origen;
    Vector3D<double> x;
    Vector3D<double> y;
    bool hecho = puntosSistema(*this, origen, x, y);
    if (hecho)
    {
        // Coincident points, or a Y point on the X axis (up to rounding), give no frame:
        // nothing changes.
        const double largoX = x.modulo();
        const Vector3D<double> yPerpendicular =
            largoX > 0.0 ? y - x * (y.dot(x) / (largoX * largoX)) : y;
        hecho = largoX > 0.0 && std::isfinite(largoX) &&
                yPerpendicular.modulo() > 1e-12 * y.modulo() && std::isfinite(y.modulo());
        if (hecho)
        {
            x = x.unit();
            y = yPerpendicular.unit();
        }
    }
    if (hecho)
    {
        auto sistema = std::make_unique<SistemaLocal>();
        sistema->setOrigen(origen);
        sistema->setVectoresXYZ(x, y, x.cross(y));
        if (nombre != nullptr)
        {
            sistema->nombre = *nombre;
            // A copy is activated: the host's callbacks run during the insertion and may
            // undo it. A system the host refused to insert would be dropped by the next paint.
            const SistemaLocal copia = *sistema;
            hecho = nuevaEntidad(std::move(sistema));
            if (hecho)
            {
                activaSistemaLocal(copia);
            }
        }
        else
        {
            activaSistemaLocal(*sistema);
        }
    }
    finComandoInteractivo();
    return hecho;
}

bool EditorDibujo::comandoInterseccionPlanos()
{
    iniciaComandoInteractivo(false);
    SeleccionEntidades seleccion(dibujo_);
    Plano* planos[3] = {nullptr, nullptr, nullptr};
    // Each prompt is read when its wait starts: the host may reload the catalogue meanwhile.
    const char* const porDefecto[3] = {"Selecciona el primer plano", "Selecciona el segundo plano",
                                       "Selecciona el tercer plano"};
    bool dados = true;
    for (int i = 0; i < 3 && dados; ++i)
    {
        planos[i] = otroPlano(*this, texto(11, 15 + i, porDefecto[i]), seleccion);
        // An undo run from inside the wait may have taken an earlier plane away.
        dados = planos[i] != nullptr &&
                std::all_of(planos, planos + i + 1,
                            [this](const Plano* p) { return dibujo_->contieneEntidad(p); });
    }
    for (Plano* p : planos)
    {
        if (p != nullptr && dibujo_->contieneEntidad(p))
        {
            resalta(p, false);
        }
    }
    bool insertado = false;
    Punto3<double> punto;
    if (dados && puntoComun(*planos[0], *planos[1], *planos[2], punto) &&
        admiteCoordenadas(std::array<double, 3>{punto.x, punto.y, punto.z}.data(), 3))
    {
        insertado = nuevaEntidad(std::make_unique<Punto>(punto.x, punto.y, punto.z));
    }
    finComandoInteractivo();
    return insertado;
}

}  // namespace cad
