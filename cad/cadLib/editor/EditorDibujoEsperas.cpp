// EditorDibujo: the waits of interactive commands for typed input, points and entities, and
// selection by contour.
#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <vector>

#include "base/Admisible.h"
#include "base/ColaMensajes.h"
#include "base/Configuracion.h"
#include "base/GestorMensajes.h"
#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "editor/Comando.h"
#include "editor/EditorDibujo.h"
#include "editor/LineaElastica.h"
#include "editor/TextosEditor.h"
#include "entidades/Entidad.h"
#include "entidades/Linea.h"
#include "entidades/Polilinea.h"
#include "entidades/Punto.h"

namespace cad
{

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

bool EditorDibujo::getPuntoEnPlano(const char* prompt, const Punto3<double>& base, cursor_t& cursor)
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

}  // namespace cad
