// The C interface: handles, messages, displays, the drawing's files and scripts, layers,
// materials, variables and views.
#include <filesystem>
#include <mutex>
#include <sstream>
#include <stdexcept>
#include <unordered_map>
#include <vector>

#include "Importa.h"
#include "TarveloC.h"
#include "base/Utf8.h"
#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "documento/Material.h"
#include "entidades/Entidad.h"

using tarvelo_c::enDibujo;
using tarvelo_c::falla;

namespace
{

std::mutex& mutexRegistro()
{
    static std::mutex m;
    return m;
}

// The objects behind the live handles of each kind, by handle. Never destroyed: drawings a
// host left open at exit would otherwise be torn down after the thread's message queue they
// use is gone.
template <typename T>
std::unordered_map<uintptr_t, std::unique_ptr<T>>& registro()
{
    static auto* r = new std::unordered_map<uintptr_t, std::unique_ptr<T>>();
    return *r;
}

// The next handle: one counter for both kinds, in steps that keep the values looking like
// aligned pointers to a debugger. It would take 2^60 handles to come round.
uintptr_t siguienteManejador = 0;

template <typename T>
T* registraEn(std::unique_ptr<T> objeto)
{
    const std::lock_guard<std::mutex> l(mutexRegistro());
    siguienteManejador += 16;
    registro<T>().emplace(siguienteManejador, std::move(objeto));
    return reinterpret_cast<T*>(siguienteManejador);
}

template <typename T>
T* buscaEn(const T* h)
{
    const std::lock_guard<std::mutex> l(mutexRegistro());
    const auto i = registro<T>().find(reinterpret_cast<uintptr_t>(h));
    return i != registro<T>().end() ? i->second.get() : nullptr;
}

thread_local std::string ultimoMensaje;

using Fendrix::WrapDibujoCAD;

// A call whose first argument is a text: checked (present, UTF-8) before `f` sees it.
template <typename F>
tv_estado conTexto(tv_dibujo* d, const char* texto, const char* que, F&& f)
{
    return enDibujo(d,
                    [&](tv_dibujo& x)
                    {
                        std::string valor;
                        if (!tarvelo_c::texto(x, texto, que, valor))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        return f(x, valor);
                    });
}

// A layer by name, or null after recording TV_ERROR_NO_ENCONTRADO.
cad::Capa* capa(tv_dibujo& d, const std::string& nombre)
{
    cad::Capa* c = d.dibujo().buscaCapa(nombre.c_str());
    if (c == nullptr)
    {
        falla(&d, TV_ERROR_NO_ENCONTRADO, "no hay ninguna capa \"" + nombre + "\"");
    }
    return c;
}

bool canal(int32_t v)
{
    return v >= 0 && v <= 255;
}

// A layer operation on a layer that exists; `f` gives the status.
template <typename F>
tv_estado operaCapa(tv_dibujo* d, const char* nombre, F&& f)
{
    return conTexto(d, nombre, "el nombre de la capa",
                    [&](tv_dibujo& x, const std::string& n)
                    {
                        if (capa(x, n) == nullptr)
                        {
                            return TV_ERROR_NO_ENCONTRADO;
                        }
                        return f(x, n);
                    });
}

// TV_OK when the facade did it; otherwise what the kernel said.
tv_estado hecho(tv_dibujo& x, bool ok)
{
    return ok ? TV_OK
              : falla(&x, TV_ERROR_RECHAZADO,
                      tarvelo_c::loDicho(x, "el dibujo no admite el cambio de la capa"));
}

bool existeVista(tv_dibujo& d, const std::string& nombre)
{
    return d.dibujo().vistas.busca(nombre) != nullptr;
}

}  // namespace

namespace tarvelo_c
{

tv_dibujo* registra(std::unique_ptr<tv_dibujo> d)
{
    return registraEn(std::move(d));
}

tv_pantalla* registra(std::unique_ptr<tv_pantalla> p)
{
    return registraEn(std::move(p));
}

tv_pantalla* pantalla(const tv_pantalla* h)
{
    return buscaEn(h);
}

tv_dibujo* dibujoDe(const tv_dibujo* h)
{
    return buscaEn(h);
}

std::unique_ptr<tv_dibujo> retira(const tv_dibujo* h, tv_estado& e)
{
    const std::lock_guard<std::mutex> l(mutexRegistro());
    const auto i = registro<tv_dibujo>().find(reinterpret_cast<uintptr_t>(h));
    if (i == registro<tv_dibujo>().end())
    {
        e = TV_ERROR_MANEJADOR;
        return nullptr;
    }
    if (i->second->ocupado)
    {
        e = TV_ERROR_OCUPADO;
        return nullptr;
    }
    std::unique_ptr<tv_dibujo> d = std::move(i->second);
    registro<tv_dibujo>().erase(i);
    return d;
}

std::unique_ptr<tv_pantalla> retira(const tv_pantalla* h)
{
    const std::lock_guard<std::mutex> l(mutexRegistro());
    const auto i = registro<tv_pantalla>().find(reinterpret_cast<uintptr_t>(h));
    if (i == registro<tv_pantalla>().end())
    {
        return nullptr;
    }
    std::unique_ptr<tv_pantalla> p = std::move(i->second);
    registro<tv_pantalla>().erase(i);
    return p;
}

tv_dibujo* entra(const tv_dibujo* h, tv_estado& e) noexcept
{
    try
    {
        const std::lock_guard<std::mutex> l(mutexRegistro());
        const auto i = registro<tv_dibujo>().find(reinterpret_cast<uintptr_t>(h));
        if (i == registro<tv_dibujo>().end())
        {
            e = TV_ERROR_MANEJADOR;
        }
        else if (i->second->ocupado)
        {
            e = TV_ERROR_OCUPADO;
        }
        else
        {
            i->second->ocupado = true;
            return i->second.get();
        }
    }
    catch (...)
    {
        e = TV_ERROR_INTERNO;
    }
    // Only the thread's message: a busy drawing keeps the message of the call it is in.
    fallaSin(nullptr, e,
             e == TV_ERROR_MANEJADOR ? "el manejador no es un dibujo abierto"
             : e == TV_ERROR_OCUPADO
                 ? "el dibujo está dentro de otra llamada (una llamada desde su propio aviso)"
                 : "error interno",
             "");
    return nullptr;
}

void sale(tv_dibujo* d) noexcept
{
    try
    {
        const std::lock_guard<std::mutex> l(mutexRegistro());
        d->ocupado = false;
    }
    catch (...)
    {
        d->ocupado = false;
    }
}

tv_estado fallaSin(tv_dibujo* d, tv_estado e, const char* texto, const char* detalle) noexcept
{
    try
    {
        falla(d, e, std::string(texto) + detalle);
    }
    catch (...)
    {
        // No memory for the words: the status still tells.
    }
    return e;
}

std::string utf8Saneado(std::string s)
{
    try
    {
        cad::utf8AUtf16(s);
        return s;
    }
    catch (const std::logic_error&)
    {
    }
    std::string limpio;
    limpio.reserve(s.size() + 16);
    const auto* b = reinterpret_cast<const unsigned char*>(s.data());
    const size_t n = s.size();
    for (size_t i = 0; i < n;)
    {
        const unsigned char c = b[i];
        const size_t largo = c < 0x80           ? 1
                             : (c >> 5) == 0x6  ? 2
                             : (c >> 4) == 0xE  ? 3
                             : (c >> 3) == 0x1E ? 4
                                                : 0;
        bool bien = largo != 0 && i + largo <= n;
        for (size_t k = 1; bien && k < largo; ++k)
        {
            bien = (b[i + k] & 0xC0) == 0x80;
        }
        if (bien && largo > 1)
        {
            // Overlong forms, surrogates and values past U+10FFFF are not characters either.
            uint32_t v = c & (0x7F >> largo);
            for (size_t k = 1; k < largo; ++k)
            {
                v = (v << 6) | (b[i + k] & 0x3F);
            }
            const uint32_t minimo[] = {0, 0, 0x80, 0x800, 0x10000};
            bien = v >= minimo[largo] && v <= 0x10FFFF && (v < 0xD800 || v > 0xDFFF);
        }
        if (bien)
        {
            limpio.append(s, i, largo);
            i += largo;
        }
        else
        {
            limpio += "\xEF\xBF\xBD";
            ++i;
        }
    }
    return limpio;
}

tv_estado falla(tv_dibujo* d, tv_estado e, const std::string& texto)
{
    std::string limpio = utf8Saneado(texto);
    if (d != nullptr)
    {
        d->mensaje = limpio;
    }
    ultimoMensaje = std::move(limpio);
    return e;
}

std::string loDicho(tv_dibujo& d, const char* porDefecto)
{
    std::string s = d.salida.str();
    while (!s.empty() && (s.back() == '\n' || s.back() == ' '))
    {
        s.pop_back();
    }
    return s.empty() ? std::string(porDefecto) : s;
}

bool texto(tv_dibujo& d, const char* s, const char* que, std::string& valor)
{
    if (s == nullptr)
    {
        falla(&d, TV_ERROR_ARGUMENTO, std::string("falta ") + que);
        return false;
    }
    valor = s;
    try
    {
        cad::utf8AUtf16(valor);  // raises on a sequence that is not UTF-8
    }
    catch (const std::logic_error&)
    {
        falla(&d, TV_ERROR_ARGUMENTO, std::string(que) + " no es un texto UTF-8");
        return false;
    }
    return true;
}

bool salidaNoNula(tv_dibujo& d, const void* p)
{
    if (p == nullptr)
    {
        falla(&d, TV_ERROR_ARGUMENTO, "falta el puntero donde dejar el resultado");
        return false;
    }
    return true;
}

bool finitos(tv_dibujo& d, const double* v, size_t n)
{
    if (v == nullptr)
    {
        falla(&d, TV_ERROR_ARGUMENTO, "faltan las coordenadas");
        return false;
    }
    for (size_t i = 0; i < n; ++i)
    {
        if (!std::isfinite(v[i]))
        {
            falla(&d, TV_ERROR_ARGUMENTO,
                  "el número " + std::to_string(i + 1) + " de las coordenadas no es finito");
            return false;
        }
    }
    return true;
}

}  // namespace tarvelo_c

const char* tv_dibujo::guarda(std::string s)
{
    textos.push_back(tarvelo_c::utf8Saneado(std::move(s)));
    return textos.back().c_str();
}

namespace
{

// A variable written through the facade once its name (and text value) are checked.
template <typename F>
tv_estado ponVariable(tv_dibujo* d, const char* nombre, F&& f)
{
    return conTexto(d, nombre, "el nombre de la variable",
                    [&](tv_dibujo& x, const std::string& n)
                    {
                        if (n.empty())
                        {
                            return falla(&x, TV_ERROR_ARGUMENTO, "una variable necesita nombre");
                        }
                        return f(x, n);
                    });
}

}  // namespace

namespace
{

// A count the facade gives.
template <typename F>
tv_estado cuenta(tv_dibujo* d, int32_t* n, F&& f)
{
    return enDibujo(d,
                    [&](tv_dibujo& x)
                    {
                        if (!tarvelo_c::salidaNoNula(x, n))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        *n = f(x.fachada());
                        return TV_OK;
                    });
}

// The name of item `indice` of a list the facade counts (`total`) and names (`nombre`).
template <typename T, typename N>
tv_estado nombrePorIndice(tv_dibujo* d, int32_t indice, const char** nombre, const char* que,
                          T&& total, N&& nombreDe)
{
    return enDibujo(d,
                    [&](tv_dibujo& x)
                    {
                        if (!tarvelo_c::salidaNoNula(x, nombre))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        if (indice < 0 || indice >= total(x.fachada()))
                        {
                            return falla(
                                &x, TV_ERROR_NO_ENCONTRADO,
                                std::string("no hay ") + que + " número " + std::to_string(indice));
                        }
                        *nombre = x.guarda(nombreDe(x.fachada()));
                        return TV_OK;
                    });
}

}  // namespace

// The functions keep the C linkage of their declarations in tarvelo.h.
const char* tv_version(void)
{
    return TARVELO_VERSION;
}

const char* tv_mensaje(const tv_dibujo* d)
{
    const tv_dibujo* x = tarvelo_c::dibujoDe(d);
    return x != nullptr ? x->mensaje.c_str() : ultimoMensaje.c_str();
}

const char* tv_ultimo_mensaje(void)
{
    return ultimoMensaje.c_str();
}

const char* tv_nombre_estado(tv_estado e)
{
    switch (e)
    {
        case TV_OK:
            return "TV_OK";
        case TV_ERROR_MANEJADOR:
            return "TV_ERROR_MANEJADOR";
        case TV_ERROR_ARGUMENTO:
            return "TV_ERROR_ARGUMENTO";
        case TV_ERROR_LONGITUD:
            return "TV_ERROR_LONGITUD";
        case TV_ERROR_ENTIDAD:
            return "TV_ERROR_ENTIDAD";
        case TV_ERROR_NO_ENCONTRADO:
            return "TV_ERROR_NO_ENCONTRADO";
        case TV_ERROR_FICHERO:
            return "TV_ERROR_FICHERO";
        case TV_ERROR_RECHAZADO:
            return "TV_ERROR_RECHAZADO";
        case TV_ERROR_GUION:
            return "TV_ERROR_GUION";
        case TV_ERROR_OCUPADO:
            return "TV_ERROR_OCUPADO";
        case TV_ERROR_INTERNO:
            return "TV_ERROR_INTERNO";
    }
    return "TV_ESTADO_DESCONOCIDO";
}

// --- displays ------------------------------------------------------------------------

tv_estado tv_pantalla_nueva(int32_t ancho, int32_t alto, tv_pantalla** p)
{
    if (p == nullptr)
    {
        return falla(nullptr, TV_ERROR_ARGUMENTO, "falta el puntero donde dejar la pantalla");
    }
    if (ancho < 1 || ancho > 16384 || alto < 1 || alto > 16384)
    {
        return falla(nullptr, TV_ERROR_ARGUMENTO,
                     "una pantalla mide de 1 a 16384 pixeles de ancho y de alto");
    }
    try
    {
        auto nueva = std::make_unique<tv_pantalla>();
        nueva->pantalla = std::make_shared<cad::PantallaReferencia>();
        // Nothing reads the call record, which would otherwise grow with every repaint.
        nueva->pantalla->grabando = false;
        nueva->pantalla->setTamano(ancho, alto);
        *p = tarvelo_c::registra(std::move(nueva));
        return TV_OK;
    }
    catch (const std::exception& e)
    {
        return tarvelo_c::fallaSin(nullptr, TV_ERROR_INTERNO, "error interno: ", e.what());
    }
    catch (...)
    {
        return tarvelo_c::fallaSin(nullptr, TV_ERROR_INTERNO, "error interno", "");
    }
}

tv_estado tv_pantalla_libera(tv_pantalla* p)
{
    if (p == nullptr)
    {
        return TV_OK;
    }
    if (tarvelo_c::retira(p) == nullptr)
    {
        return falla(nullptr, TV_ERROR_MANEJADOR, "el manejador no es una pantalla abierta");
    }
    return TV_OK;
}

tv_estado tv_pantalla_camara(tv_pantalla* h, const double posicion[3], const double objetivo[3],
                             const double arriba[3])
{
    tv_pantalla* p = tarvelo_c::pantalla(h);
    if (p == nullptr)
    {
        return falla(nullptr, TV_ERROR_MANEJADOR, "el manejador no es una pantalla abierta");
    }
    if (posicion == nullptr || objetivo == nullptr || arriba == nullptr)
    {
        return falla(nullptr, TV_ERROR_ARGUMENTO, "faltan las coordenadas de la cámara");
    }
    for (int i = 0; i < 3; ++i)
    {
        if (!std::isfinite(posicion[i]) || !std::isfinite(objetivo[i]) || !std::isfinite(arriba[i]))
        {
            return falla(nullptr, TV_ERROR_ARGUMENTO, "una coordenada de la cámara no es finita");
        }
    }
    const cad::Punto3<double> pos(posicion[0], posicion[1], posicion[2]);
    const cad::Punto3<double> obj(objetivo[0], objetivo[1], objetivo[2]);
    const cad::Vector3D<double> arr(arriba[0], arriba[1], arriba[2]);
    if (pos == obj || arr.modulo() == 0.0)
    {
        return falla(nullptr, TV_ERROR_ARGUMENTO,
                     "la cámara necesita un objetivo distinto de su posición y una dirección "
                     "hacia arriba");
    }
    cad::PantallaReferencia& pr = *p->pantalla;
    pr.setCamara(pos, obj, arr, pr.zoom, pr.angulo);
    return TV_OK;
}

tv_estado tv_pantalla_estado(const tv_pantalla* h, int32_t* ancho, int32_t* alto,
                             size_t* primitivas)
{
    const tv_pantalla* p = tarvelo_c::pantalla(h);
    if (p == nullptr)
    {
        return falla(nullptr, TV_ERROR_MANEJADOR, "el manejador no es una pantalla abierta");
    }
    const cad::PantallaReferencia& pr = *p->pantalla;
    if (ancho != nullptr)
    {
        *ancho = pr.ancho;
    }
    if (alto != nullptr)
    {
        *alto = pr.alto;
    }
    if (primitivas != nullptr)
    {
        *primitivas = pr.escena.size() + pr.superposicion.size();
    }
    return TV_OK;
}

// --- drawings ------------------------------------------------------------------------

tv_estado tv_dibujo_nuevo(tv_pantalla* p, tv_dibujo** d)
{
    if (d == nullptr)
    {
        return falla(nullptr, TV_ERROR_ARGUMENTO, "falta el puntero donde dejar el dibujo");
    }
    try
    {
        const tv_pantalla* pantalla = p != nullptr ? tarvelo_c::pantalla(p) : nullptr;
        if (p != nullptr && pantalla == nullptr)
        {
            return falla(nullptr, TV_ERROR_MANEJADOR, "el manejador no es una pantalla abierta");
        }
        auto nuevo = std::make_unique<tv_dibujo>();
        // A script echoes each line after its marker, and stops at the first failed order.
        tarvelo::Sesion::opciones_t opciones;
        opciones.eco = true;
        opciones.detieneAlFallar = true;
        if (pantalla != nullptr)
        {
            nuevo->pantalla = pantalla->pantalla;
            nuevo->sesion =
                std::make_unique<tarvelo::Sesion>(*nuevo->pantalla, nuevo->salida, opciones);
        }
        else
        {
            nuevo->sesion =
                std::make_unique<tarvelo::Sesion>(nuevo->sinEntrada, nuevo->salida, opciones);
        }
        *d = tarvelo_c::registra(std::move(nuevo));
        return TV_OK;
    }
    catch (const std::exception& e)
    {
        return tarvelo_c::fallaSin(nullptr, TV_ERROR_INTERNO, "error interno: ", e.what());
    }
    catch (...)
    {
        return tarvelo_c::fallaSin(nullptr, TV_ERROR_INTERNO, "error interno", "");
    }
}

tv_estado tv_dibujo_libera(tv_dibujo* d)
{
    if (d == nullptr)
    {
        return TV_OK;
    }
    tv_estado e = TV_OK;
    try
    {
        std::unique_ptr<tv_dibujo> retirado = tarvelo_c::retira(d, e);
        if (retirado == nullptr)
        {
            return falla(nullptr, e,
                         e == TV_ERROR_OCUPADO
                             ? "el dibujo no se puede liberar desde su propio aviso"
                             : "el manejador no es un dibujo abierto");
        }
        // Destroyed here, outside the registry's lock: a big drawing takes a while.
        retirado.reset();
        return TV_OK;
    }
    catch (...)
    {
        return tarvelo_c::fallaSin(nullptr, TV_ERROR_INTERNO, "error interno al liberar", "");
    }
}

tv_estado tv_dibujo_vacia(tv_dibujo* d)
{
    return enDibujo(d,
                    [](tv_dibujo& x)
                    {
                        x.sesion->nuevo();
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_abre(tv_dibujo* d, const char* fichero, int64_t* danadas)
{
    return conTexto(d, fichero, "el nombre del fichero",
                    [&](tv_dibujo& x, const std::string& ruta)
                    {
                        std::string mensaje;
                        int64_t n = 0;
                        if (!x.sesion->abre(ruta, mensaje, n))
                        {
                            return falla(&x, TV_ERROR_FICHERO,
                                         "no se pudo leer el dibujo " + ruta + ": " + mensaje);
                        }
                        // A damaged file read in part: the message says so, and the call
                        // still succeeds.
                        x.mensaje = mensaje;
                        if (danadas != nullptr)
                        {
                            *danadas = n;
                        }
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_guarda(tv_dibujo* d, const char* fichero)
{
    return conTexto(d, fichero, "el nombre del fichero",
                    [&](tv_dibujo& x, const std::string& ruta)
                    {
                        std::string mensaje;
                        if (!x.fachada().guardaComprobado(ruta, mensaje))
                        {
                            return falla(&x, TV_ERROR_FICHERO,
                                         "no se pudo guardar " + ruta + ": " + mensaje);
                        }
                        // What is on disk is what the drawing holds.
                        x.fachada().borraMarcaCambios();
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_exporta_dxf(tv_dibujo* d, const char* fichero)
{
    return conTexto(d, fichero, "el nombre del fichero",
                    [&](tv_dibujo& x, const std::string& ruta)
                    {
                        std::string mensaje;
                        if (!x.fachada().exportaDXFComprobado(ruta, mensaje))
                        {
                            return falla(&x, TV_ERROR_FICHERO,
                                         "no se pudo escribir " + ruta + ": " + mensaje);
                        }
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_importa(tv_dibujo* d, const char* fichero, tv_progreso progreso, void* usuario,
                            const char** informe)
{
    return conTexto(d, fichero, "el nombre del fichero",
                    [&](tv_dibujo& x, const std::string& ruta)
                    {
                        if (!tarvelo::esImportable(ruta))
                        {
                            return falla(&x, TV_ERROR_ARGUMENTO, ruta + " no es .dxf ni .obj");
                        }
                        std::ostringstream texto;
                        std::string error;
                        std::function<void(double)> aviso;
                        if (progreso != nullptr)
                        {
                            // Only steps forward reach the caller: a reader may tell the end more
                            // than once.
                            aviso = [progreso, usuario, ultima = -1.0](double f) mutable
                            {
                                if (f > ultima)
                                {
                                    ultima = f;
                                    progreso(f, usuario);
                                }
                            };
                        }
                        if (!tarvelo::importaFichero(x.dibujo(), ruta, texto, aviso, error))
                        {
                            return falla(&x, TV_ERROR_FICHERO,
                                         "no se pudo importar " + ruta + ": " + error);
                        }
                        if (informe != nullptr)
                        {
                            *informe = x.guarda(texto.str());
                        }
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_hay_cambios(tv_dibujo* d, int* cambios)
{
    return enDibujo(d,
                    [&](tv_dibujo& x)
                    {
                        if (!tarvelo_c::salidaNoNula(x, cambios))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        *cambios = x.fachada().hayCambios() ? 1 : 0;
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_ejecuta(tv_dibujo* d, const char* lineas, const char** transcripcion)
{
    return conTexto(d, lineas, "el texto del guion",
                    [&](tv_dibujo& x, const std::string& guion)
                    {
                        std::istringstream entrada(guion);
                        const int codigo = x.sesion->ejecutaGuion(entrada);
                        const std::string dicho = x.salida.str();
                        if (transcripcion != nullptr)
                        {
                            *transcripcion = x.guarda(dicho);
                        }
                        if (codigo != 0)
                        {
                            // The transcript's last lines say which order failed and why.
                            size_t corte = dicho.size() > 2000 ? dicho.size() - 2000 : 0;
                            while (corte < dicho.size() && (dicho[corte] & 0xC0) == 0x80)
                            {
                                ++corte;  // not inside a character
                            }
                            return falla(&x, TV_ERROR_GUION,
                                         "el guion se detuvo: " + dicho.substr(corte));
                        }
                        return TV_OK;
                    });
}

// --- layers ------------------------------------------------------------------------

tv_estado tv_dibujo_numero_capas(tv_dibujo* d, int32_t* n)
{
    return cuenta(d, n, [](WrapDibujoCAD& f) { return f.numeroCapas(); });
}

tv_estado tv_dibujo_capa(tv_dibujo* d, int32_t indice, const char** nombre)
{
    return nombrePorIndice(
        d, indice, nombre, "capa", [](WrapDibujoCAD& f) { return f.numeroCapas(); },
        [&](WrapDibujoCAD& f) { return f.capa(indice); });
}

tv_estado tv_dibujo_nueva_capa(tv_dibujo* d, const char* nombre, int32_t r, int32_t g, int32_t b,
                               int actual)
{
    return conTexto(d, nombre, "el nombre de la capa",
                    [&](tv_dibujo& x, const std::string& n)
                    {
                        if (!canal(r) || !canal(g) || !canal(b))
                        {
                            return falla(&x, TV_ERROR_ARGUMENTO,
                                         "cada componente del color va de 0 a 255");
                        }
                        if (n.empty())
                        {
                            return falla(&x, TV_ERROR_ARGUMENTO, "una capa necesita nombre");
                        }
                        WrapDibujoCAD& f = x.fachada();
                        if (f.existeCapa(n, false))
                        {
                            return falla(&x, TV_ERROR_RECHAZADO, "ya hay una capa \"" + n + "\"");
                        }
                        if (!f.nuevaCapa(n, actual != 0) || !f.colorCapa(n, r, g, b))
                        {
                            return falla(&x, TV_ERROR_RECHAZADO,
                                         tarvelo_c::loDicho(x, "el dibujo no admite la capa"));
                        }
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_capa_actual(tv_dibujo* d, const char** nombre)
{
    return enDibujo(d,
                    [&](tv_dibujo& x)
                    {
                        if (!tarvelo_c::salidaNoNula(x, nombre))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        *nombre = x.guarda(x.fachada().capaActual());
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_set_capa_actual(tv_dibujo* d, const char* nombre)
{
    return operaCapa(d, nombre,
                     [](tv_dibujo& x, const std::string& n)
                     { return hecho(x, x.fachada().capaActual(n)); });
}

tv_estado tv_dibujo_datos_capa(tv_dibujo* d, const char* nombre, int32_t rgb[3], int* visible,
                               int* bloqueada)
{
    return conTexto(d, nombre, "el nombre de la capa",
                    [&](tv_dibujo& x, const std::string& n)
                    {
                        if (capa(x, n) == nullptr)
                        {
                            return TV_ERROR_NO_ENCONTRADO;
                        }
                        WrapDibujoCAD& f = x.fachada();
                        if (rgb != nullptr)
                        {
                            f.getColorCapa(n, rgb[0], rgb[1], rgb[2]);
                        }
                        if (visible != nullptr)
                        {
                            *visible = f.capaVisible(n) ? 1 : 0;
                        }
                        if (bloqueada != nullptr)
                        {
                            *bloqueada = f.capaBloqueada(n) ? 1 : 0;
                        }
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_color_capa(tv_dibujo* d, const char* nombre, int32_t r, int32_t g, int32_t b)
{
    if (!canal(r) || !canal(g) || !canal(b))
    {
        return enDibujo(
            d, [](tv_dibujo& x)
            { return falla(&x, TV_ERROR_ARGUMENTO, "cada componente del color va de 0 a 255"); });
    }
    return operaCapa(d, nombre,
                     [&](tv_dibujo& x, const std::string& n)
                     { return hecho(x, x.fachada().colorCapa(n, r, g, b)); });
}

tv_estado tv_dibujo_visibilidad_capa(tv_dibujo* d, const char* nombre, int visible)
{
    return operaCapa(d, nombre,
                     [&](tv_dibujo& x, const std::string& n)
                     { return hecho(x, x.fachada().visibilidadCapa(n, visible != 0)); });
}

tv_estado tv_dibujo_bloquea_capa(tv_dibujo* d, const char* nombre, int bloqueada)
{
    return operaCapa(d, nombre,
                     [&](tv_dibujo& x, const std::string& n)
                     { return hecho(x, x.fachada().bloqueaCapa(n, bloqueada != 0)); });
}

tv_estado tv_dibujo_renombra_capa(tv_dibujo* d, const char* nombre, const char* nuevo)
{
    return operaCapa(d, nombre,
                     [&](tv_dibujo& x, const std::string& n)
                     {
                         std::string otro;
                         if (!tarvelo_c::texto(x, nuevo, "el nombre nuevo", otro))
                         {
                             return TV_ERROR_ARGUMENTO;
                         }
                         if (otro.empty() || (otro != n && x.fachada().existeCapa(otro, false)))
                         {
                             return falla(&x, TV_ERROR_RECHAZADO,
                                          "el nombre nuevo está vacío o ya es de otra capa");
                         }
                         return hecho(x, x.fachada().renombraCapa(n, otro));
                     });
}

tv_estado tv_dibujo_borra_capa(tv_dibujo* d, const char* nombre)
{
    return operaCapa(
        d, nombre,
        [](tv_dibujo& x, const std::string& n)
        {
            if (n == "0" || n == x.fachada().capaActual())
            {
                return falla(&x, TV_ERROR_RECHAZADO, "la capa \"0\" y la capa actual no se borran");
            }
            // The kernel would take the layer's entities with it, and no undo
            // brings them back.
            const cad::Capa* c = capa(x, n);
            for (const cad::Entidad* e : x.dibujo().entidades)
            {
                if (e->capaEntidad() == c)
                {
                    return falla(
                        &x, TV_ERROR_RECHAZADO,
                        "la capa \"" + n + "\" tiene entidades; bórrelas o muévalas antes");
                }
            }
            return hecho(x, x.fachada().borraCapa(n));
        });
}

// --- materials ------------------------------------------------------------------------

tv_estado tv_dibujo_numero_materiales(tv_dibujo* d, int32_t* n)
{
    return cuenta(d, n, [](WrapDibujoCAD& f) { return f.numeroMateriales(); });
}

tv_estado tv_dibujo_nuevo_material(tv_dibujo* d, int32_t idExterno, uint32_t color, double brillo,
                                   const char* textura, int32_t* id)
{
    return enDibujo(
        d,
        [&](tv_dibujo& x)
        {
            std::string imagen;
            if (textura != nullptr &&
                !tarvelo_c::texto(x, textura, "el nombre de la textura", imagen))
            {
                return TV_ERROR_ARGUMENTO;
            }
            if (!(std::isfinite(brillo) && std::fabs(brillo) <= 1e30))
            {
                return falla(&x, TV_ERROR_ARGUMENTO, "el brillo no es un número admisible");
            }
            // Colour, shine and texture in one step: a refused texture leaves no material.
            const int16_t nuevo =
                x.dibujo().nuevoMaterial(idExterno, color, static_cast<float>(brillo), imagen);
            if (nuevo == 0)
            {
                return falla(&x, TV_ERROR_RECHAZADO,
                             "el dibujo no admite el material (¿una ruta de textura demasiado "
                             "larga?)");
            }
            x.dibujo().edicionHecha();
            if (id != nullptr)
            {
                *id = nuevo;
            }
            return TV_OK;
        });
}

tv_estado tv_dibujo_material(tv_dibujo* d, int32_t indice, int32_t* id, int32_t* idExterno,
                             uint32_t* color, double* brillo, const char** textura)
{
    return enDibujo(d,
                    [&](tv_dibujo& x)
                    {
                        int32_t i = 0;
                        int32_t e = 0;
                        uint32_t c = 0;
                        double b = 0.0;
                        std::string t;
                        if (indice < 0 || indice >= x.fachada().numeroMateriales() ||
                            !x.fachada().getMaterial(indice, i, e, c, b, t))
                        {
                            return falla(&x, TV_ERROR_NO_ENCONTRADO,
                                         "no hay material número " + std::to_string(indice));
                        }
                        if (id != nullptr)
                        {
                            *id = i;
                        }
                        if (idExterno != nullptr)
                        {
                            *idExterno = e;
                        }
                        if (color != nullptr)
                        {
                            *color = c;
                        }
                        if (brillo != nullptr)
                        {
                            *brillo = b;
                        }
                        if (textura != nullptr)
                        {
                            *textura = x.guarda(t);
                        }
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_borra_material(tv_dibujo* d, int32_t id)
{
    return enDibujo(d,
                    [&](tv_dibujo& x)
                    {
                        WrapDibujoCAD& f = x.fachada();
                        for (int32_t i = 0; i < f.numeroMateriales(); ++i)
                        {
                            if (f.idMaterial(i) == id)
                            {
                                f.borraMaterial(id);
                                return TV_OK;
                            }
                        }
                        return falla(&x, TV_ERROR_NO_ENCONTRADO,
                                     "no hay material de id " + std::to_string(id));
                    });
}

// --- variables and views -----------------------------------------------------------------

tv_estado tv_dibujo_set_variable_texto(tv_dibujo* d, const char* nombre, const char* valor)
{
    return ponVariable(d, nombre,
                       [&](tv_dibujo& x, const std::string& n)
                       {
                           std::string v;
                           if (!tarvelo_c::texto(x, valor, "el valor de la variable", v))
                           {
                               return TV_ERROR_ARGUMENTO;
                           }
                           x.fachada().setVariable(n, v);
                           std::string leido;
                           // The file limits names and texts; what it can't hold is refused.
                           if (!x.fachada().getVariable(n, leido) || leido != v)
                           {
                               return falla(&x, TV_ERROR_RECHAZADO,
                                            "la variable \"" + n + "\" no admite ese valor");
                           }
                           return TV_OK;
                       });
}

tv_estado tv_dibujo_set_variable_entero(tv_dibujo* d, const char* nombre, int32_t valor)
{
    return ponVariable(d, nombre,
                       [&](tv_dibujo& x, const std::string& n)
                       {
                           x.fachada().setVariable(n, valor);
                           return x.dibujo().existeVariable(n)
                                      ? TV_OK
                                      : falla(&x, TV_ERROR_RECHAZADO,
                                              "el nombre \"" + n + "\" es demasiado largo");
                       });
}

tv_estado tv_dibujo_set_variable_real(tv_dibujo* d, const char* nombre, double valor)
{
    return ponVariable(d, nombre,
                       [&](tv_dibujo& x, const std::string& n)
                       {
                           if (!std::isfinite(valor))
                           {
                               return falla(&x, TV_ERROR_ARGUMENTO, "el valor no es finito");
                           }
                           x.fachada().setVariable(n, valor);
                           return x.dibujo().existeVariable(n)
                                      ? TV_OK
                                      : falla(&x, TV_ERROR_RECHAZADO,
                                              "el nombre \"" + n + "\" es demasiado largo");
                       });
}

tv_estado tv_dibujo_set_variable_punto(tv_dibujo* d, const char* nombre, double px, double py,
                                       double pz)
{
    return ponVariable(d, nombre,
                       [&](tv_dibujo& x, const std::string& n)
                       {
                           const double v[3] = {px, py, pz};
                           if (!tarvelo_c::finitos(x, v, 3))
                           {
                               return TV_ERROR_ARGUMENTO;
                           }
                           x.fachada().setVariable(n, px, py, pz);
                           return x.dibujo().existeVariable(n)
                                      ? TV_OK
                                      : falla(&x, TV_ERROR_RECHAZADO,
                                              "el nombre \"" + n + "\" es demasiado largo");
                       });
}

tv_estado tv_dibujo_variable(tv_dibujo* d, const char* nombre, const char** valor)
{
    return ponVariable(d, nombre,
                       [&](tv_dibujo& x, const std::string& n)
                       {
                           std::string v;
                           if (!tarvelo_c::salidaNoNula(x, valor))
                           {
                               return TV_ERROR_ARGUMENTO;
                           }
                           if (!x.fachada().getVariable(n, v))
                           {
                               return falla(&x, TV_ERROR_NO_ENCONTRADO,
                                            "no hay ninguna variable \"" + n + "\"");
                           }
                           *valor = x.guarda(v);
                           return TV_OK;
                       });
}

tv_estado tv_dibujo_borra_variable(tv_dibujo* d, const char* nombre)
{
    return ponVariable(d, nombre,
                       [&](tv_dibujo& x, const std::string& n)
                       {
                           if (!x.dibujo().existeVariable(n))
                           {
                               return falla(&x, TV_ERROR_NO_ENCONTRADO,
                                            "no hay ninguna variable \"" + n + "\"");
                           }
                           x.fachada().borraVariable(n);
                           return TV_OK;
                       });
}

tv_estado tv_dibujo_numero_vistas(tv_dibujo* d, int32_t* n)
{
    return cuenta(d, n, [](WrapDibujoCAD& f) { return f.numeroVistas(); });
}

tv_estado tv_dibujo_vista(tv_dibujo* d, int32_t indice, const char** nombre)
{
    return nombrePorIndice(
        d, indice, nombre, "vista", [](WrapDibujoCAD& f) { return f.numeroVistas(); },
        [&](WrapDibujoCAD& f) { return f.nombreVista(indice); });
}

tv_estado tv_dibujo_guarda_vista(tv_dibujo* d, const char* nombre)
{
    return conTexto(d, nombre, "el nombre de la vista",
                    [&](tv_dibujo& x, const std::string& n)
                    {
                        if (n.empty())
                        {
                            return falla(&x, TV_ERROR_ARGUMENTO, "una vista necesita nombre");
                        }
                        x.fachada().guardaVistaActual(n);
                        return existeVista(x, n)
                                   ? TV_OK
                                   : falla(&x, TV_ERROR_RECHAZADO,
                                           "el dibujo no admite la vista \"" + n + "\"");
                    });
}

tv_estado tv_dibujo_activa_vista(tv_dibujo* d, const char* nombre)
{
    return conTexto(d, nombre, "el nombre de la vista",
                    [&](tv_dibujo& x, const std::string& n)
                    {
                        if (!existeVista(x, n))
                        {
                            return falla(&x, TV_ERROR_NO_ENCONTRADO,
                                         "no hay ninguna vista \"" + n + "\"");
                        }
                        x.fachada().activaVista(n);
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_borra_vista(tv_dibujo* d, const char* nombre)
{
    return conTexto(d, nombre, "el nombre de la vista",
                    [&](tv_dibujo& x, const std::string& n)
                    {
                        if (!existeVista(x, n))
                        {
                            return falla(&x, TV_ERROR_NO_ENCONTRADO,
                                         "no hay ninguna vista \"" + n + "\"");
                        }
                        x.fachada().borraVista(n);
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_zoom_extension(tv_dibujo* d)
{
    return enDibujo(d,
                    [](tv_dibujo& x)
                    {
                        x.fachada().comandoZoomExtension();
                        x.fachada().comandoRegen();
                        return TV_OK;
                    });
}
