#include "editor/EditorDibujo.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <vector>

#include "base/Admisible.h"
#include "base/ColaMensajes.h"
#include "base/Configuracion.h"
#include "base/GestorMensajes.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/Dibujo.h"
#include "editor/LineaElastica.h"
#include "editor/TextosEditor.h"
#include "entidades/Entidad.h"

namespace cad
{

// -------------------------------------------------------------------------------------------
// Frame

EditorDibujo::EditorDibujo(Dibujo* dibujo, PantallaCAD* pantalla)
    : dibujo_(dibujo),
      pantalla_(pantalla),
      // One blocking step of the host's event loop, on the thread that waits.
      procesoEventos([]() { ColaMensajes::delHilo().ejecutaUno(); })
{
}

EditorDibujo::~EditorDibujo()
{
    // Marks and a drag left over are dropped without running: their entities may be gone.
    marcasVertices.clear();
    modificadores.vacia();
    funcionActualiza = nullptr;
    if (dibujo_ != nullptr)
    {
        for (Entidad* e : dibujo_->entidades)
        {
            e->quitaSeleccion();
        }
        dibujo_->vistaAplicada = false;
        actualiza(kPropiedades, false);
        vaciaComandos();
    }
}

void EditorDibujo::actualiza(actualiza_e tipo, bool forzar)
{
    // One record for the process, not per editor: the selection last announced. Editors on
    // other threads share it, hence its lock.
    struct registro_t
    {
        std::mutex cerrojo;
        Dibujo* dibujo = nullptr;
        std::vector<Entidad*> entidades;
    };
    static registro_t ultimo;

    if (!funcionActualiza)
    {
        return;
    }
    if (tipo != kPropiedades && tipo != kDocumento)
    {
        funcionActualiza(tipo);
        return;
    }
    std::vector<Entidad*> seleccion;
    for (Entidad* e : dibujo_->entidades)
    {
        if ((e->estado & (kEstadoSeleccionada | kEstadoResaltada)) != 0)
        {
            seleccion.push_back(e);
        }
    }
    // The record is the process's, so a second drawing with the same selection (say, none)
    // causes no notice either.
    bool avisa = forzar;
    {
        std::lock_guard<std::mutex> guardia(ultimo.cerrojo);
        avisa = avisa || seleccion != ultimo.entidades;
        if (avisa)
        {
            ultimo.dibujo = dibujo_;
            ultimo.entidades = std::move(seleccion);
        }
    }
    // The host is told outside the lock: its handler may call back into an editor.
    if (avisa)
    {
        funcionActualiza(tipo);
    }
}

bool EditorDibujo::cargaDocumento(const char* ruta)
{
    dibujo_->edicionHecha();
    bool ok = false;
    {
        SerializadorBinarioLectura lector(ruta);
        ok = dibujo_->lee(lector);
    }
    if (!ok)
    {
        return false;
    }
    trasCargar();
    return true;
}

bool EditorDibujo::cargaDocumento(const char* ruta, resultadoFichero_t& resultado)
{
    if (!dibujo_->leeFichero(ruta, resultado))
    {
        return false;
    }
    trasCargar();
    return true;
}

void EditorDibujo::trasCargar()
{
    std::string nombre;
    if (dibujo_->getVariable("sistemaLocal", nombre))
    {
        if (SistemaLocal* s = dibujo_->sistemaLocal(nombre))
        {
            activaSistemaLocal(*s);
        }
    }
    ultimoMensaje.clear();
    actualiza(kCapas, false);
    actualiza(kControl, false);
    actualiza(kDocumento, false);
}

bool EditorDibujo::guardaDocumento(const char* ruta)
{
    resultadoFichero_t resultado;
    guardaDocumento(ruta, resultado);
    return true;
}

bool EditorDibujo::guardaDocumento(const char* ruta, resultadoFichero_t& resultado)
{
    if (haySistemaLocal)
    {
        dibujo_->setVariable("sistemaLocal", sistemaLocalActivo.nombre);
        dibujo_->hayCambios_ = true;
    }
    dibujo_->guardaEstado();
    return dibujo_->guardaFichero(ruta, resultado);
}

void EditorDibujo::mensaje(const char* formato, ...)
{
    char buffer[2048];
    va_list args;
    va_start(args, formato);
    std::vsnprintf(buffer, sizeof buffer, formato, args);
    va_end(args);
    ultimoMensaje = buffer;
    if (funcionSalidaTexto)
    {
        funcionSalidaTexto(buffer);
    }
    if (pantalla_ != nullptr)
    {
        pantalla_->muestraTexto(buffer);
    }
}

const char* EditorDibujo::texto(int grupo, int numero, const char* porDefecto) const
{
    return GestorMensajes::Instancia().mensaje(grupo, numero, porDefecto);
}

bool EditorDibujo::admiteCadena(const std::string& s)
{
    if (cadenaAdmisible(s))
    {
        return true;
    }
    mensaje("Texto demasiado largo: %zu bytes (el máximo es %zu)", s.size(), kLongitudMaximaCadena);
    return false;
}

bool EditorDibujo::admiteCoordenadas(const double* valores, size_t n)
{
    if (numerosFinitos(valores, n))
    {
        return true;
    }
    mensaje("%s", kCoordenadaNoValida);
    return false;
}

bool EditorDibujo::cancelaEntrada()
{
    if (!cancelado)
    {
        return false;
    }
    limpiaEntradaCompleta();
    mensaje("%s", texto(4, 16, kTextoCancelado));
    return true;
}

void EditorDibujo::teclaPulsada(int codigo, bool shift, bool control, bool alt)
{
    (void)codigo;
    (void)shift;
    (void)control;
    (void)alt;
}

void EditorDibujo::cancelaComando()
{
    LineaComandos::cancelaComando();
    // The drag goes back now, not when its wait sees the flag: the next paint must not
    // move the entity again.
    std::lock_guard<std::recursive_mutex> guardia(seccionCritica);
    modificadores.cancela();
}

void EditorDibujo::deselecciona()
{
    dibujo_->deselecciona();
    dibujo_->redibujar = true;
    actualiza(kPropiedades, false);
}

// -------------------------------------------------------------------------------------------
// Overlay

namespace
{

// The drag is carried out here, by the paint pass, not by the wait: each modifier takes the
// cursor, then the handles and their entities are painted on top. A modifier whose entity
// left the drawing while the wait ran is passed over.
void dibujaArrastre(EditorDibujo& editor, PantallaCAD& p, const cursor_t& cursor)
{
    if (editor.modificadores.empty())
    {
        return;
    }
    // Copies: a reactor called from a move may cancel the command and empty the list.
    const auto activos = editor.modificadores.modificadores;
    for (const auto& m : activos)
    {
        if (m->vigente())
        {
            m->modificaTemporal(cursor);
        }
    }
    const auto restantes = editor.modificadores.modificadores;
    const uint32_t color = Configuracion::instancia().color(Configuracion::kSeleccionado).ABGR();
    for (const auto& m : restantes)
    {
        if (m->vigente())
        {
            m->dibuja(p, color);
        }
    }
    for (const auto& m : restantes)
    {
        if (m->vigente())
        {
            m->entidad()->dibuja(p);
        }
    }
}

// The marks of the entities still in the drawing and on a visible layer (a mark must not
// bring a hidden entity back on screen), each entity painted over its marks.
void dibujaMarcasVertices(EditorDibujo& editor, PantallaCAD& p)
{
    for (const auto& [entidad, marcas] : editor.marcasVertices)
    {
        if (marcas.empty() || !editor.dibujo()->contieneEntidad(entidad) || !entidad->capaVisible())
        {
            continue;
        }
        marcas.dibuja(p);
        entidad->dibuja(p);
    }
}

}  // namespace

void EditorDibujo::dibuja(PantallaCAD& p, bool entidadesDibujadas)
{
    (void)entidadesDibujadas;
    Configuracion& configuracion = Configuracion::instancia();
    if (haySistemaLocal && !dibujo_->existeSistemaLocal(sistemaLocalActivo.nombre))
    {
        quitaSistemaLocal();
    }
    p.inicioSuperposicion();
    cursor_t cursor;
    p.getCursor(cursor);
    cursorADocumento(cursor);
    if (cursor.posicion != invalido)
    {
        dibujo_->proyectaCursor(cursor);
    }
    {
        std::lock_guard<std::recursive_mutex> guardia(seccionCritica);
        if (lineaElastica != nullptr)
        {
            lineaElastica->cursor = cursor;
            p.getVista(lineaElastica->vista);
            p.getProyeccion(lineaElastica->proyeccion);
            lineaElastica->color = configuracion.color(Configuracion::kLineaElastica).ABGR();
            lineaElastica->dibuja(p);
        }
    }
    p.setPrimerPlano(true);
    {
        std::lock_guard<std::recursive_mutex> guardia(seccionCritica);
        // Drags and marks touch entities: they wait for a paint in which the drawing is not
        // in mid-change on another thread. Editor lock first, then the drawing's.
        std::unique_lock<std::recursive_mutex> documento(dibujo_->cerrojo(), std::try_to_lock);
        if (documento.owns_lock())
        {
            dibujaArrastre(*this, p, cursor);
        }
        if (dibujo_->mascaraReferencias != 0 && tipoMarcaReferencia != 0)
        {
            int simbolo = PantallaCAD::kMarcaPunto;
            switch (tipoMarcaReferencia)
            {
                case 2:
                    simbolo = PantallaCAD::kMarcaExtremo;
                    break;
                case 4:
                    simbolo = PantallaCAD::kMarcaMedio;
                    break;
                case 8:
                    simbolo = PantallaCAD::kMarcaCentro;
                    break;
                case 16:
                    simbolo = PantallaCAD::kMarcaInterseccion;
                    break;
                default:
                    break;
            }
            p.dibujaMarca(marcaReferencia, simbolo,
                          configuracion.color(Configuracion::kMarcaReferencia).ABGR());
        }
        // A snap mask of exactly 32 keeps the screen clear of marks.
        if (documento.owns_lock() && dibujo_->mascaraReferencias != 32)
        {
            dibujaMarcasVertices(*this, p);
        }
    }
    p.setPrimerPlano(false);
    p.finSuperposicion();
    p.setGrosor(1.0F);
    const int lado = configuracion.valor(Configuracion::kVentanaReferencia);
    const uint32_t colorCursor = configuracion.color(Configuracion::kCursor).ABGR();
    if (cursor.x < 0 || cursor.y < 0)
    {
        return;
    }
    // The glyphs are drawn in pixel coordinates of the viewport.
    const auto px = [](double x, double y) { return Punto3<double>(x, y, 0.0); };
    const double x = cursor.x;
    const double y = cursor.y;
    if (dibujo_->tipoCursor == kCursorSeleccionCoordenadas)
    {
        const double d = 2.0 * lado;
        const Punto3<double> horizontal[2] = {px(x - d, y), px(x + d, y)};
        const Punto3<double> vertical[2] = {px(x, y - d), px(x, y + d)};
        p.dibujaPolilinea(2, horizontal, false, colorCursor, nullptr);
        p.dibujaPolilinea(2, vertical, false, colorCursor, nullptr);
    }
    else if (dibujo_->tipoCursor == kCursorSeleccionEntidades)
    {
        const double h = lado;
        const Punto3<double> caja[4] = {px(x - h, y - h), px(x + h, y - h), px(x + h, y + h),
                                        px(x - h, y + h)};
        p.dibujaPolilinea(4, caja, true, colorCursor, nullptr);
    }
}

// -------------------------------------------------------------------------------------------
// Scopes

void EditorDibujo::iniciaComandoInteractivo(bool transparente)
{
    pilaTransparentes.push_back(transparente);
    ++nivelComando;
    cancelado = false;
    terminado = false;
    comandoInterrumpido = false;
    if (pantalla_ != nullptr && !pantalla_->es2D() && !dibujo_->hayPlanoReferencia())
    {
        Punto3<double> posicion;
        Punto3<double> objetivo;
        Vector3D<double> direccion;
        Vector3D<double> arriba;
        double zoom = 0.0;
        double angulo = 0.0;
        pantalla_->getCamara(posicion, objetivo, direccion, arriba, zoom, angulo);
        const Punto3<double> origen(0, 0, 0);
        dibujo_->setPlanoReferencia(origen, direccion);
        dibujo_->fijaPlanoTemporal(origen);
    }
    if (reactorComandoInteractivo)
    {
        reactorComandoInteractivo(kInicio);
    }
    if (pantalla_ != nullptr)
    {
        (void)posicionCursor();
        pantalla_->setModoInteraccion(PantallaCAD::kVisorSeleccion);
    }
    actualiza(kControl, false);
}

void EditorDibujo::finComandoInteractivo()
{
    marcaReferencia = Punto3<double>(0, 0, 0);
    tipoMarcaReferencia = 0;
    if (!pilaTransparentes.empty() && pilaTransparentes.back() && pantalla_ != nullptr)
    {
        // Swallows the click that ended the transparent command.
        cursor_t descarte;
        int estado = 0;
        pantalla_->getEvento(descarte, estado);
    }
    if (!pilaTransparentes.empty())
    {
        pilaTransparentes.pop_back();
    }
    if (!pilaTransparentes.empty() && pilaTransparentes.back())
    {
        // A command that ends inside a transparent command ends that one too.
        cancelado = true;
        cursor_t descarte;
        int estado = 0;
        leeEvento(descarte, estado);
    }
    else
    {
        cancelado = false;
    }
    --nivelComando;
    if (nivelComando > 0)
    {
        comandoInterrumpido = true;
    }
    else
    {
        nivelComando = 0;
        if (pantalla_ != nullptr)
        {
            pantalla_->setModoInteraccion(dibujo_->modo2D() ? PantallaCAD::kVisorPlano
                                                            : PantallaCAD::kVisorLibre);
        }
    }
    if (reactorComandoInteractivo)
    {
        reactorComandoInteractivo(kFin);
    }
    actualiza(kControl, false);
}

bool EditorDibujo::finEspera(bool interrupcionAntes)
{
    if (cancelado)
    {
        limpiaEntradaCompleta();
        mensaje("%s", texto(4, 16, kTextoCancelado));
        return true;
    }
    if (interrupcionAntes && atiendeInterrupcion())
    {
        return true;
    }
    if (terminado)
    {
        limpiaEntradaCompleta();
        return true;
    }
    return !interrupcionAntes && atiendeInterrupcion();
}

void EditorDibujo::descartaEvento()
{
    cursor_t descarte;
    int estado = 0;
    leeEvento(descarte, estado);
}

bool EditorDibujo::tomaCoordenadas(cursor_t& cursor)
{
    if (!coordenadasValidas)
    {
        return false;
    }
    // Typed coordinates are never snapped nor projected on the plane, and have no pixel: an
    // earlier click's pixel left in the cursor must not be taken for a pick.
    cursor.x = -1;
    cursor.y = -1;
    cursor.posicion = coordenadas;
    cursor.referencia = aDocumento(coordenadas);
    return true;
}

bool EditorDibujo::atiendeInterrupcion()
{
    if (!comandoInterrumpido)
    {
        return false;
    }
    comandoInterrumpido = false;
    if (reactorComandoInteractivo)
    {
        reactorComandoInteractivo(kCancelado);
    }
    actualiza(kControl, false);
    return true;
}

void EditorDibujo::repiteMensaje(const char* error)
{
    // Only the last text stands on the prompt line, so the prompt follows the error.
    const std::string prompt = ultimoMensaje;
    mensaje("%s", error);
    mensaje("%s", prompt.c_str());
}

// -------------------------------------------------------------------------------------------
// Local system

void EditorDibujo::activaSistemaLocal(const SistemaLocal& sistema)
{
    sistemaLocalActivo = sistema;
    haySistemaLocal = true;
    if (pantalla_ != nullptr)
    {
        pantalla_->setSistemaLocal(sistema.getEjeX(), sistema.getEjeY(), sistema.getEjeZ());
    }
    actualiza(kControl, false);
}

void EditorDibujo::quitaSistemaLocal()
{
    sistemaLocalActivo = SistemaLocal();
    haySistemaLocal = false;
    if (pantalla_ != nullptr)
    {
        pantalla_->quitaSistemaLocal();
    }
}

Punto3<double> EditorDibujo::aDocumento(const Punto3<double>& p) const
{
    if (!haySistemaLocal || p == invalido)
    {
        return p;
    }
    const SistemaLocal& s = sistemaLocalActivo;
    return s.origen + s.getEjeX() * p.x + s.getEjeY() * p.y + s.getEjeZ() * p.z;
}

void EditorDibujo::cursorADocumento(cursor_t& cursor) const
{
    cursor.posicion = aDocumento(cursor.posicion);
    cursor.direccion = aDocumento(cursor.direccion);
}

Vector3D<double> EditorDibujo::aDocumento(const Vector3D<double>& v) const
{
    if (!haySistemaLocal)
    {
        return v;
    }
    const SistemaLocal& s = sistemaLocalActivo;
    return s.getEjeX() * v.x + s.getEjeY() * v.y + s.getEjeZ() * v.z;
}

}  // namespace cad
