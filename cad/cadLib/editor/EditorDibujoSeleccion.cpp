// EditorDibujo: picking and snapping, the entity waits and selection by contour.
#include <algorithm>
#include <cstring>
#include <vector>

#include "base/Configuracion.h"
#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "editor/FusionPolilineas.h"
#include "editor/LineaElastica.h"
#include "editor/TextosEditor.h"
#include "entidades/Entidad.h"
#include "entidades/Polilinea.h"

namespace cad
{

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
    // An undo run from inside the wait may have taken a picked entity away (and a later step
    // freed it): only those still in the drawing are answered.
    std::erase_if(seleccion.entidades, [this](Entidad* e) { return !dibujo_->contieneEntidad(e); });
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
        double t = 0.0;
        double u = 0.0;
        return cruceSegmentos(puntos[i], puntos[(i + 1) % n], puntos[j], puntos[(j + 1) % n], t, u);
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

void EditorDibujo::resalta(Entidad* e, bool si)
{
    e->setResaltada(si);
    dibujo_->vistaAplicada = false;
    dibujo_->redibujar = true;
}

}  // namespace cad
