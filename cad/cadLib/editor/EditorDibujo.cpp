#include "editor/EditorDibujo.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <vector>

#include "base/ColaMensajes.h"
#include "base/Configuracion.h"
#include "base/GestorMensajes.h"
#include "base/Admisible.h"
#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "editor/Comando.h"
#include "editor/LineaElastica.h"
#include "entidades/Entidad.h"
#include "entidades/Linea.h"
#include "entidades/Polilinea.h"
#include "entidades/Punto.h"

namespace cad
{

namespace
{

const char* const kTextoCancelado = "* Cancelado *";
const char* const kCoordenadaNoValida = "Coordenada no válida";
const char* const kCoordenadaUOpcion = "Se requiere una coordenada u opción";
const char* const kEntidadUOpcion = "Se requiere una entidad u opción";

int64_t handle(const Entidad* e)
{
    return static_cast<int64_t>(reinterpret_cast<intptr_t>(e));
}

}  // namespace

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
    for (auto& marca : marcasVertices)
    {
        delete marca.second;
    }
    marcasVertices.clear();
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
    std::lock_guard<std::recursive_mutex> guardia(seccionCritica);
    // Vertex drags are not made by any command yet, so there is nothing to cancel in them.
    modificadores.clear();
}

void EditorDibujo::deselecciona()
{
    dibujo_->deselecciona();
    dibujo_->redibujar = true;
    actualiza(kPropiedades, false);
}

// -------------------------------------------------------------------------------------------
// Overlay

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
    // Typed coordinates are never snapped nor projected on the plane.
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
// Typed waits

bool EditorDibujo::esperaEntrada(const char* prompt, std::string& respuesta)
{
    iniciaComandoInteractivo(false);
    // A line left over from an earlier wait (the Enter that ended a point loop) is no answer.
    limpiaEntrada();
    mensaje("%s", prompt);
    bool resultado = false;
    bool anulado = false;
    while (procesoEventos)
    {
        procesoEventos();
        if (cancelado)
        {
            anulado = true;
            break;
        }
        if (atiendeInterrupcion())
        {
            break;
        }
        respuesta = entrada;
        if (entradaRecibida)
        {
            resultado = true;
            break;
        }
    }
    if (anulado)
    {
        limpiaEntradaCompleta();
        mensaje("%s", texto(4, 16, kTextoCancelado));
    }
    limpiaEntradaCompleta();
    finComandoInteractivo();
    return resultado;
}

bool EditorDibujo::entradaTecleada(const char* prompt, bool aceptaVacio,
                                   const std::function<const char*(const std::string&)>& toma)
{
    for (;;)
    {
        std::string linea;
        if (!esperaEntrada(prompt, linea))
        {
            return false;
        }
        if (linea.empty())
        {
            if (aceptaVacio)
            {
                return true;
            }
            continue;
        }
        const char* error = toma(linea);
        if (error == nullptr)
        {
            return true;
        }
        mensaje("%s", error);
    }
}

bool EditorDibujo::entradaBool(const char* prompt, bool aceptaVacio, bool* resultado)
{
    return entradaTecleada(prompt, aceptaVacio,
                           [resultado](const std::string& linea) -> const char*
                           {
                               if (linea[0] == 'S' || linea[0] == 's')
                               {
                                   *resultado = true;
                                   return nullptr;
                               }
                               if (linea[0] == 'N' || linea[0] == 'n')
                               {
                                   *resultado = false;
                                   return nullptr;
                               }
                               return "Conteste Si o No";
                           });
}

bool EditorDibujo::entradaInt(const char* prompt, bool aceptaVacio, int* resultado)
{
    return entradaTecleada(prompt, aceptaVacio,
                           [resultado](const std::string& linea) -> const char*
                           {
                               // atoi gives 0 for a word: only a leading '0' makes 0 an answer.
                               const int v = std::atoi(linea.c_str());
                               if (v == 0 && linea[0] != '0')
                               {
                                   return "Introduzca un número entero";
                               }
                               *resultado = v;
                               return nullptr;
                           });
}

bool EditorDibujo::entradaDoble(const char* prompt, bool aceptaVacio, double* resultado)
{
    return entradaTecleada(prompt, aceptaVacio,
                           [resultado](const std::string& linea) -> const char*
                           {
                               const double v = std::atof(linea.c_str());
                               // atof also reads "nan", "inf" and overflows: no value to keep.
                               if ((v == 0.0 && linea[0] != '0') || !std::isfinite(v))
                               {
                                   return "Introduzca un número decimal";
                               }
                               *resultado = v;
                               return nullptr;
                           });
}

bool EditorDibujo::entradaString(const char* prompt, bool aceptaVacio, std::string* resultado)
{
    return entradaTecleada(prompt, aceptaVacio,
                           [resultado](const std::string& linea) -> const char*
                           {
                               *resultado = linea;
                               return nullptr;
                           });
}

// -------------------------------------------------------------------------------------------
// Point waits

bool EditorDibujo::getPunto(const char* prompt, cursor_t& cursor, bool abreAmbito)
{
    return getPunto(prompt, cursor, nullptr, nullptr, abreAmbito);
}

bool EditorDibujo::getPunto(const char* prompt, cursor_t& cursor, int* opcionElegida,
                            double* valorDado, bool abreAmbito)
{
    if (abreAmbito)
    {
        iniciaComandoInteractivo(false);
    }
    descartaEvento();
    limpiaEntrada();
    const int32_t tipoCursor = dibujo_->setTipoCursor(kCursorSeleccionCoordenadas);
    mensaje("%s", prompt);
    bool resultado = false;
    while (procesoEventos)
    {
        procesoEventos();
        if (finEspera(false))
        {
            break;
        }
        if (dibujo_->mascaraReferencias != 0 && pantalla_ != nullptr)
        {
            // Only keeps the marker up with the pointer; the answer comes from a click.
            cursor_t actual = posicionCursor();
            if (actual.x >= 0)
            {
                cursorADocumento(actual);
                compruebaPunto(actual);
            }
        }
        const char* error = nullptr;
        int estado = 0;
        if (leeEvento(cursor, estado) && estado == PantallaCAD::kBotonIzquierdo)
        {
            if (compruebaPunto(cursor))
            {
                resultado = true;
                break;
            }
            error = kCoordenadaNoValida;
        }
        if (entradaRecibida)
        {
            if (entradaVacia)
            {
                break;
            }
            if (tomaCoordenadas(cursor))
            {
                resultado = true;
                break;
            }
            error = kCoordenadaNoValida;
            if (!opciones.empty())
            {
                if (opcionElegida != nullptr)
                {
                    *opcionElegida = opcion;
                    if (opcion >= 0)
                    {
                        resultado = true;
                        break;
                    }
                }
                error = kCoordenadaUOpcion;
            }
            if (valorValido && valorDado != nullptr)
            {
                *valorDado = valor;
                resultado = true;
                break;
            }
        }
        if (error != nullptr)
        {
            repiteMensaje(error);
            borraEntradaLineaComandos();
        }
    }
    dibujo_->setTipoCursor(tipoCursor);
    mensaje("%s", "");
    if (abreAmbito)
    {
        finComandoInteractivo();
    }
    return resultado;
}

void EditorDibujo::planoHaciaVista(const Punto3<double>& base)
{
    Vector3D<double> normal(0, 0, 1);
    if (pantalla_ != nullptr)
    {
        Punto3<double> posicion;
        Punto3<double> objetivo;
        Vector3D<double> arriba;
        double zoom = 0.0;
        double angulo = 0.0;
        pantalla_->getCamara(posicion, objetivo, normal, arriba, zoom, angulo);
    }
    dibujo_->setPlanoReferencia(base, normal);
    dibujo_->fijaPlanoTemporal(base);
}

bool EditorDibujo::getPuntoEnPlano(const char* prompt, const Punto3<double>& base,
                                   cursor_t& cursor)
{
    iniciaComandoInteractivo(false);
    planoHaciaVista(base);
    descartaEvento();
    limpiaEntradaCompleta();
    const int32_t tipoCursor = dibujo_->setTipoCursor(kCursorSeleccionCoordenadas);
    mensaje("%s", prompt);
    bool resultado = false;
    while (procesoEventos)
    {
        procesoEventos();
        if (finEspera(false))
        {
            break;
        }
        const char* error = nullptr;
        int estado = 0;
        if (leeEvento(cursor, estado))
        {
            if (estado == PantallaCAD::kBotonDerecho)
            {
                // A right click finishes the wait without an answer. It ends here rather
                // than at the next pump step, which might never come.
                terminado = true;
                limpiaEntradaCompleta();
                break;
            }
            const bool enganchado = (dibujo_->mascaraReferencias & 32) == 0 &&
                                    pantalla_ != nullptr &&
                                    dibujo_->referenciaEntidades(*pantalla_, cursor);
            if (enganchado)
            {
                tipoMarcaReferencia = cursor.tipo;
                marcaReferencia = cursor.referencia;
            }
            else
            {
                cursor.referencia = invalido;
                tipoMarcaReferencia = 0;
            }
            dibujo_->proyectaCursor(cursor);
            if (cursor.get() != invalido)
            {
                resultado = true;
                break;
            }
            error = kCoordenadaNoValida;
        }
        if (entradaRecibida)
        {
            if (entradaVacia)
            {
                break;
            }
            if (tomaCoordenadas(cursor))
            {
                resultado = true;
                break;
            }
            error = kCoordenadaNoValida;
        }
        if (error != nullptr)
        {
            repiteMensaje(error);
            borraEntradaLineaComandos();
        }
    }
    dibujo_->planoTemporalActivo = false;
    dibujo_->setTipoCursor(tipoCursor);
    mensaje("%s", "");
    finComandoInteractivo();
    return resultado;
}

EditorDibujo::ajustesReferencia_t EditorDibujo::fuerzaReferencia(int32_t mascara)
{
    ajustesReferencia_t antes;
    dibujo_->getReferenciaEntidades(antes.global, antes.mascara);
    dibujo_->setReferenciaEntidades(true, mascara);
    return antes;
}

void EditorDibujo::restauraReferencia(const ajustesReferencia_t& a)
{
    dibujo_->setReferenciaEntidades(a.global, a.mascara);
}

bool EditorDibujo::getVentana(const char* prompt1, const char* prompt2, int* a, int* b)
{
    const ajustesReferencia_t antes = fuerzaReferencia(32);
    cursor_t cursor;
    if (!getPunto(prompt1, cursor, nullptr, nullptr, true))
    {
        restauraReferencia(antes);
        return false;
    }
    cursor_t actual = posicionCursor();
    a[0] = actual.x;
    a[1] = actual.y;
    bool resultado = false;
    {
        LineaElastica banda(this, 10, true);
        banda.nuevaAncla(Punto3<double>(actual.x, actual.y, 0.0));
        resultado = getPunto(prompt2, cursor, nullptr, nullptr, true);
        actual = posicionCursor();
        b[0] = actual.x;
        b[1] = actual.y;
    }
    restauraReferencia(antes);
    return resultado;
}

bool EditorDibujo::getVentana(const char* prompt1, const char* prompt2, Punto3<double>* a,
                              Punto3<double>* b)
{
    cursor_t cursor;
    if (!getPunto(prompt1, cursor, nullptr, nullptr, true))
    {
        return false;
    }
    *a = cursor.get();
    const cursor_t actual = posicionCursor();
    LineaElastica banda(this, 10, true);
    banda.nuevaAncla(Punto3<double>(actual.x, actual.y, 0.0));
    const bool resultado = getPunto(prompt2, cursor, nullptr, nullptr, true);
    *b = cursor.get();
    return resultado;
}

bool EditorDibujo::getCirculo(const char* prompt1, const char* prompt2, Punto3<double>* centro,
                              double* radio)
{
    Punto3<double> borde;
    Punto3<double> c;
    if (!getCirculo(prompt1, prompt2, &c, &borde))
    {
        return false;
    }
    *centro = c;
    *radio = c.distancia(borde);
    return true;
}

bool EditorDibujo::getCirculo(const char* prompt1, const char* prompt2, Punto3<double>* centro,
                              Punto3<double>* borde)
{
    iniciaComandoInteractivo(false);
    cursor_t cursor;
    if (!getPunto(prompt1, cursor, true))
    {
        finComandoInteractivo();
        return false;
    }
    const Punto3<double> p = cursor.get();
    dibujo_->setPlanoReferencia(p, Vector3D<double>(0, 0, 1));
    dibujo_->fijaPlanoTemporal(p);
    bool resultado = false;
    {
        LineaElastica banda(this, 9);
        banda.nuevaAncla(p);
        resultado = getPuntoEnPlano(prompt2, p, cursor);
        if (resultado)
        {
            *centro = p;
            *borde = cursor.get();
        }
    }
    dibujo_->planoTemporalActivo = false;
    finComandoInteractivo();
    return resultado;
}

cursor_t EditorDibujo::posicionCursor()
{
    cursor_t cursor;
    if (pantalla_ != nullptr)
    {
        pantalla_->getCursor(cursor);
    }
    return cursor;
}

bool EditorDibujo::leeEvento(cursor_t& cursor, int& estado)
{
    if (pantalla_ == nullptr)
    {
        return false;
    }
    cursor_t evento;
    if (!pantalla_->getEvento(evento, estado))
    {
        return false;
    }
    cursorADocumento(evento);
    cursor = evento;
    return true;
}

// -------------------------------------------------------------------------------------------
// Entity waits

bool EditorDibujo::seleccionaEntidad(const char* prompt, SeleccionEntidades& seleccion,
                                     cursor_t* cursor, int* opcionElegida)
{
    iniciaComandoInteractivo(false);
    cursor_t pick;
    descartaEvento();
    limpiaEntrada();
    const int32_t tipoCursor = dibujo_->setTipoCursor(kCursorSeleccionEntidades);
    mensaje("%s", prompt);
    bool encontrada = false;
    while (procesoEventos && !encontrada)
    {
        procesoEventos();
        if (finEspera(true))
        {
            break;
        }
        const char* error = nullptr;
        int estado = 0;
        if (leeEvento(pick, estado))
        {
            if (estado == PantallaCAD::kBotonIzquierdo)
            {
                encontrada = entidadesBajoPixel(pick, seleccion);
            }
            else if (estado == PantallaCAD::kBotonDerecho)
            {
                terminado = true;
                limpiaEntradaCompleta();
                break;
            }
        }
        if (!encontrada && entradaRecibida && !opciones.empty())
        {
            if (opcionElegida != nullptr && opcion >= 0)
            {
                *opcionElegida = opcion;
                break;
            }
            error = kEntidadUOpcion;
        }
        if (error != nullptr)
        {
            repiteMensaje(error);
            limpiaEntrada();
        }
    }
    if (encontrada && cursor != nullptr)
    {
        *cursor = pick;
    }
    dibujo_->setTipoCursor(tipoCursor);
    mensaje("%s", "");
    finComandoInteractivo();
    return encontrada;
}

bool EditorDibujo::seleccionaEntidadTipo(const char* etiqueta, const char* prompt,
                                         SeleccionEntidades& seleccion, cursor_t* cursor)
{
    if (!seleccionaEntidad(prompt, seleccion, cursor, nullptr))
    {
        return false;
    }
    if (seleccion.entidades.empty())
    {
        return false;
    }
    Entidad* e = seleccion.entidades.back();
    // The file tag, or the type name that the tag stands for ("Polilinea").
    if (std::strcmp(e->etiqueta(), etiqueta) == 0 || e->esTipo(etiqueta))
    {
        return true;
    }
    e->quitaSeleccion();
    seleccion.entidades.pop_back();
    return false;
}

bool EditorDibujo::seleccionaEntidades(const char* prompt, SeleccionEntidades& seleccion)
{
    iniciaComandoInteractivo(false);
    cursor_t pick;
    descartaEvento();
    limpiaEntrada();
    const int32_t tipoCursor = dibujo_->setTipoCursor(kCursorSeleccionEntidades);
    mensaje("%s", prompt);
    bool resultado = false;
    bool vaciar = false;
    while (procesoEventos)
    {
        procesoEventos();
        // A cancel or an interruption gives nothing back; `terminado` keeps what was picked.
        const bool soloTerminado = terminado && !cancelado && !comandoInterrumpido;
        if (finEspera(true))
        {
            vaciar = !soloTerminado;
            break;
        }
        int estado = 0;
        if (leeEvento(pick, estado) && estado == PantallaCAD::kBotonIzquierdo)
        {
            entidadesBajoPixel(pick, seleccion);
            for (Entidad* e : seleccion.entidades)
            {
                if ((e->estado & kEstadoResaltada) == 0)
                {
                    e->setResaltada(true);
                    dibujo_->vistaAplicada = false;
                    dibujo_->redibujar = true;
                }
            }
        }
        if (entradaRecibida)
        {
            if (entradaVacia)
            {
                resultado = !seleccion.entidades.empty();
                break;
            }
            if (!opciones.empty())
            {
                repiteMensaje(kEntidadUOpcion);
            }
            limpiaEntrada();
        }
    }
    for (Entidad* e : seleccion.entidades)
    {
        e->setResaltada(false);
    }
    dibujo_->redibujar = true;
    if (vaciar)
    {
        seleccion.entidades.clear();
    }
    dibujo_->setTipoCursor(tipoCursor);
    mensaje("%s", "");
    finComandoInteractivo();
    return resultado;
}

bool EditorDibujo::comandoSeleccionaEntidades(const char* prompt1, const char* prompt2,
                                              seleccion_e tipo)
{
    std::vector<Punto3<double>> contorno;
    iniciaComandoInteractivo(false);
    const bool capturado = capturaContorno(prompt1, prompt2, tipo, contorno);
    finComandoInteractivo();
    if (!capturado || contorno.empty())
    {
        return false;
    }
    const bool alguna = seleccionaContorno(contorno);
    if (alguna)
    {
        actualiza(kPropiedades, false);
    }
    return alguna;
}

bool EditorDibujo::capturaContorno(const char* prompt1, const char* prompt2, seleccion_e tipo,
                                   std::vector<Punto3<double>>& contorno)
{
    // Each contour asks with its own prompts; the caller's two texts are not shown.
    (void)prompt1;
    (void)prompt2;
    if (tipo == kEsfera)
    {
        cursor_t cursor;
        if (!getPunto(texto(10, 1, "Seleccione el centro de la esfera:"), cursor, true))
        {
            return false;
        }
        const Punto3<double> centro = cursor.get();
        LineaElastica banda(this, 9);
        banda.nuevaAncla(centro);
        if (!getPunto(texto(10, 2, "Seleccione el radio de la esfera:"), cursor, true))
        {
            return false;
        }
        contorno.push_back(centro);
        contorno.emplace_back(centro.distancia(cursor.get()), 0.0, 0.0);
        return true;
    }
    const ajustesReferencia_t antes = fuerzaReferencia(8);
    bool resultado = false;
    if (tipo == kVentana)
    {
        int a[2] = {0, 0};
        int b[2] = {0, 0};
        resultado = getVentana(texto(25, 1, "Seleccione primera esquina:"),
                               texto(25, 2, "Seleccione segunda esquina:"), a, b);
        if (resultado)
        {
            contorno = {Punto3<double>(a[0], a[1], 0), Punto3<double>(b[0], a[1], 0),
                        Punto3<double>(b[0], b[1], 0), Punto3<double>(a[0], b[1], 0),
                        Punto3<double>(a[0], a[1], 0)};
        }
    }
    else
    {
        auto* polilinea = new Polilinea();
        {
            LineaElastica banda(this, 4);
            cursor_t cursor;
            while (getPunto(texto(11, 19, "Seleccione vértice:"), cursor, true))
            {
                // Only a click has a pixel; typed coordinates leave the one before.
                if (cursor.x >= 0)
                {
                    contorno.emplace_back(cursor.x, cursor.y, 0.0);
                }
                cursor.x = -1;
                polilinea->vertices.push_back(cursor.get());
                banda.nuevaAncla(cursor.get());
            }
        }
        if (poligonoSimple(contorno))
        {
            polilinea->cerrada = true;
            contorno.push_back(contorno.front());
            if (!nuevaEntidad(polilinea))
            {
                delete polilinea;
            }
            resultado = true;
        }
        else
        {
            contorno.clear();
            delete polilinea;
        }
    }
    restauraReferencia(antes);
    return resultado;
}

namespace
{

// Whether pixel (x, y) lies inside the closed contour, by counting crossings of a ray to +x.
bool dentroContorno(const std::vector<Punto3<double>>& c, double x, double y)
{
    if (c.size() < 4 || c.front() != c.back())
    {
        return false;
    }
    bool dentro = false;
    for (size_t i = 0, j = c.size() - 2; i + 1 < c.size(); j = i++)
    {
        const Punto3<double>& a = c[i];
        const Punto3<double>& b = c[j];
        if ((a.y > y) != (b.y > y) && x < (b.x - a.x) * (y - a.y) / (b.y - a.y) + a.x)
        {
            dentro = !dentro;
        }
    }
    return dentro;
}

}  // namespace

bool EditorDibujo::seleccionaContorno(const std::vector<Punto3<double>>& contorno)
{
    bool alguna = false;
    if (contorno.size() == 2)
    {
        const Punto3<double>& centro = contorno[0];
        const double radio = contorno[1].x;
        for (Entidad* e : dibujo_->entidades)
        {
            for (int i = 0; i < e->numCoordenadas(); ++i)
            {
                const Punto3<double>* q = e->coordenada(i);
                if (q != nullptr && q->distancia(centro) < radio)
                {
                    e->marcaSeleccion();
                    dibujo_->vistaAplicada = false;
                    dibujo_->redibujar = true;
                    alguna = true;
                    break;
                }
            }
        }
        return alguna;
    }
    if (pantalla_ == nullptr)
    {
        return false;
    }
    Matriz4<double> vista;
    Matriz4<double> proyeccion;
    pantalla_->getVista(vista);
    pantalla_->getProyeccion(proyeccion);
    Punto3<double> origen;
    pantalla_->getOrigenVista(origen);
    double ancho = 0.0;
    double alto = 0.0;
    pantalla_->getTamanoVista(ancho, alto);
    const Matriz4<double> m = proyeccion * vista;
    for (Entidad* e : dibujo_->entidades)
    {
        for (int i = 0; i < e->numCoordenadas(); ++i)
        {
            const Punto3<double>* q = e->coordenada(i);
            if (q == nullptr)
            {
                continue;
            }
            const Vector4D<double> c =
                m * Vector4D<double>(q->x - origen.x, q->y - origen.y, q->z - origen.z, 1.0);
            // A point at infinity has no pixel.
            if (c.w == 0.0)
            {
                continue;
            }
            const double sx = ((c.x / c.w) * 0.5 + 0.5) * ancho;
            const double sy = ((c.y / c.w) * 0.5 + 0.5) * alto;
            if (dentroContorno(contorno, sx, sy))
            {
                e->marcaSeleccion();
                dibujo_->vistaAplicada = false;
                dibujo_->redibujar = true;
                alguna = true;
                break;
            }
        }
    }
    return alguna;
}

bool poligonoSimple(const std::vector<Punto3<double>>& puntos)
{
    const size_t n = puntos.size();
    if (n < 3)
    {
        return false;
    }
    // Sides i: p[i] -> p[i+1], the last one closing back to p[0].
    const auto cruzan = [&](size_t i, size_t j)
    {
        const Punto3<double>& a = puntos[i];
        const Punto3<double>& b = puntos[(i + 1) % n];
        const Punto3<double>& c = puntos[j];
        const Punto3<double>& d = puntos[(j + 1) % n];
        const double rx = b.x - a.x;
        const double ry = b.y - a.y;
        const double sx = d.x - c.x;
        const double sy = d.y - c.y;
        const double det = rx * sy - ry * sx;
        if (det == 0.0)
        {
            return false;
        }
        const double t = ((c.x - a.x) * sy - (c.y - a.y) * sx) / det;
        const double u = ((c.x - a.x) * ry - (c.y - a.y) * rx) / det;
        return t >= 0.0 && t <= 1.0 && u >= 0.0 && u <= 1.0;
    };
    for (size_t i = 0; i < n; ++i)
    {
        for (size_t j = i + 2; j < n; ++j)
        {
            if (i == 0 && j == n - 1)
            {
                continue;  // adjacent through the closing side
            }
            if (cruzan(i, j))
            {
                return false;
            }
        }
    }
    return true;
}

// -------------------------------------------------------------------------------------------
// Picking and snapping

bool EditorDibujo::compruebaPunto(cursor_t& cursor)
{
    if ((dibujo_->mascaraReferencias & 32) != 0)
    {
        return true;
    }
    if (pantalla_ != nullptr && dibujo_->referenciaEntidades(*pantalla_, cursor))
    {
        tipoMarcaReferencia = cursor.tipo;
        marcaReferencia = cursor.referencia;
        return true;
    }
    dibujo_->proyectaCursor(cursor);
    tipoMarcaReferencia = 0;
    return !(cursor.referencia == invalido && cursor.plano == invalido);
}

bool EditorDibujo::entidadesBajoPixel(const cursor_t& cursor, SeleccionEntidades& seleccion)
{
    if (pantalla_ == nullptr)
    {
        return false;
    }
    const int t = Configuracion::instancia().valor(Configuracion::kVentanaReferencia);
    bool alguna = false;
    for (Entidad* e :
         dibujo_->entidadesCercaPixel(*pantalla_, cursor.x, cursor.y, t, incluyeOcultas))
    {
        if ((e->estado & (kEstadoSeleccionada | kEstadoResaltada)) != 0)
        {
            continue;
        }
        if (std::find(seleccion.entidades.begin(), seleccion.entidades.end(), e) ==
            seleccion.entidades.end())
        {
            seleccion.entidades.push_back(e);
        }
        alguna = true;
    }
    return alguna;
}

// -------------------------------------------------------------------------------------------
// Undo

void EditorDibujo::deshacer()
{
    if (comandosDeshacer.empty())
    {
        return;
    }
    Comando* c = comandosDeshacer.back();
    comandosDeshacer.pop_back();
    c->deshacer();
    comandosRehacer.push_back(c);
    actualiza(kControl, false);
}

void EditorDibujo::rehacer()
{
    if (comandosRehacer.empty())
    {
        return;
    }
    Comando* c = comandosRehacer.back();
    comandosRehacer.pop_back();
    c->rehacer();
    comandosDeshacer.push_back(c);
    actualiza(kControl, false);
}

void EditorDibujo::registraComando(Comando* comando)
{
    comandosDeshacer.push_back(comando);
    while (!comandosRehacer.empty())
    {
        delete comandosRehacer.back();
        comandosRehacer.pop_back();
    }
    comando->rehacer();
}

void EditorDibujo::vaciaComandos()
{
    // Newest first, so that a step's entity is freed by the step that holds it last.
    while (!comandosRehacer.empty())
    {
        delete comandosRehacer.back();
        comandosRehacer.pop_back();
    }
    while (!comandosDeshacer.empty())
    {
        delete comandosDeshacer.back();
        comandosDeshacer.pop_back();
    }
}

bool EditorDibujo::nuevaEntidad(Entidad* e)
{
    if (e == nullptr)
    {
        return false;
    }
    if (reactorInsercionEntidades && !reactorInsercionEntidades(handle(e), kEntidadInsertada))
    {
        return false;
    }
    registraComando(new ComandoNuevaEntidad(dibujo_, e));
    actualiza(kControl, false);
    return true;
}

bool EditorDibujo::borraEntidad(Entidad* e)
{
    if (e == nullptr)
    {
        return false;
    }
    if (reactorInsercionEntidades && !reactorInsercionEntidades(handle(e), kEntidadBorrada))
    {
        return false;
    }
    registraComando(new ComandoBorraEntidad(dibujo_, e));
    return true;
}

// -------------------------------------------------------------------------------------------
// Layers

bool EditorDibujo::nuevaCapa(Capa* capa, bool hacerActual)
{
    if (!admiteCadena(capa->nombre) || !dibujo_->nuevaCapa(capa))
    {
        return false;
    }
    if (hacerActual)
    {
        dibujo_->capaActual(capa->nombre.c_str());
        actualiza(kCapaActual, false);
    }
    actualiza(kCapas, false);
    return true;
}

bool EditorDibujo::posicionaCapa(Capa* capa)
{
    if (!admiteCadena(capa->nombre))
    {
        return false;
    }
    if (Capa* existente = dibujo_->buscaCapa(capa->nombre.c_str()))
    {
        registraComando(ComandoCapa::visibilidad(dibujo_, existente, true));
        actualiza(kCapas, false);
        actualiza(kControl, false);
        dibujo_->capaActual(existente->nombre.c_str());
        actualiza(kCapaActual, false);
        return true;
    }
    dibujo_->nuevaCapa(capa);
    actualiza(kCapas, false);
    return true;
}

bool EditorDibujo::capaActual(const char* nombre)
{
    const bool ok = dibujo_->capaActual(nombre);
    actualiza(kCapaActual, false);
    return ok;
}

bool EditorDibujo::muestraCapa(const char* nombre)
{
    Capa* capa = dibujo_->buscaCapa(nombre);
    if (capa == nullptr)
    {
        return false;
    }
    registraComando(ComandoCapa::visibilidad(dibujo_, capa, true));
    actualiza(kCapas, false);
    actualiza(kControl, false);
    return true;
}

bool EditorDibujo::colorCapa(const char* nombre, int32_t rgba)
{
    Capa* capa = dibujo_->buscaCapa(nombre);
    if (capa == nullptr)
    {
        return false;
    }
    const auto v = static_cast<uint32_t>(rgba);
    ColorCapa color;
    color.mColor.rojo = static_cast<uint8_t>(v >> 24);
    color.mColor.verde = static_cast<uint8_t>(v >> 16);
    color.mColor.azul = static_cast<uint8_t>(v >> 8);
    color.mColor.alfa = static_cast<uint8_t>(v);
    color.colorCAD = 512;
    registraComando(ComandoCapa::colorear(dibujo_, capa, color));
    actualiza(kCapas, false);
    return true;
}

bool EditorDibujo::renombraCapa(const char* nombre, const char* nuevoNombre)
{
    Capa* capa = dibujo_->buscaCapa(nombre);
    // Names are unique within a drawing.
    if (capa == nullptr || nuevoNombre == nullptr || dibujo_->buscaCapa(nuevoNombre) != nullptr ||
        !admiteCadena(nuevoNombre))
    {
        return false;
    }
    registraComando(ComandoCapa::renombrar(dibujo_, capa, nuevoNombre));
    actualiza(kCapas, false);
    return true;
}

bool EditorDibujo::borraCapa(const char* nombre)
{
    Capa* capa = dibujo_->buscaCapa(nombre);
    if (capa == nullptr)
    {
        return false;
    }
    registraComando(ComandoCapa::borrar(dibujo_, capa));
    actualiza(kCapas, false);
    return true;
}

bool EditorDibujo::setColorActualIndice(int indice)
{
    return dibujo_->setColorActualIndice(indice);
}

void EditorDibujo::setColorActualRGB(int32_t rgb)
{
    dibujo_->setColorActualRGB(static_cast<uint32_t>(rgb));
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

// -------------------------------------------------------------------------------------------
// Commands

int EditorDibujo::comandoPunto()
{
    iniciaComandoInteractivo(false);
    int creados = 0;
    cursor_t cursor;
    while (getPunto(texto(2, 1, "Seleccione coordenadas del punto:"), cursor, true))
    {
        auto* punto = new Punto(cursor.get());
        if (reactorInsercionEntidades &&
            !reactorInsercionEntidades(handle(punto), kEntidadInsertada))
        {
            // Refused by the host: nobody else holds it.
            delete punto;
            continue;
        }
        registraComando(new ComandoNuevaEntidad(dibujo_, punto));
        actualiza(kControl, false);
        ++creados;
    }
    finComandoInteractivo();
    return creados;
}

int EditorDibujo::comandoLinea()
{
    iniciaComandoInteractivo(false);
    cursor_t cursor;
    if (!getPunto(texto(3, 1, "Seleccione coordenada inicial de la linea:"), cursor, true))
    {
        finComandoInteractivo();
        return 0;
    }
    int creadas = 0;
    Punto3<double> anterior = cursor.get();
    {
        LineaElastica banda(this, 1);
        banda.nuevaAncla(anterior);
        while (getPunto(texto(3, 2, "Seleccione coordenada final de la linea:"), cursor, true))
        {
            const Punto3<double> punto = cursor.get();
            auto* linea = new Linea(anterior, punto);
            if (nuevaEntidad(linea))
            {
                ++creadas;
            }
            else
            {
                delete linea;
            }
            anterior = punto;
            banda.nuevaAncla(punto);
        }
        banda.vaciaAnclas();
    }
    finComandoInteractivo();
    return creadas;
}

}  // namespace cad
