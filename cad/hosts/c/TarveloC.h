// What the two halves of the C interface share: the handles behind the opaque types, the
// registry that tells a live handle from any other pointer, and the frame every call runs in.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <memory>
#include <sstream>
#include <string>

#include "Fendrix/WrapDibujoCAD.h"
#include "PantallaReferencia.h"
#include "Sesion.h"
#include "tarvelo.h"

struct tv_pantalla
{
    // Shared with the drawings made on it, so that freeing the handle first leaves them a
    // display to paint on.
    std::shared_ptr<cad::PantallaReferencia> pantalla;
};

struct tv_dibujo
{
    std::shared_ptr<cad::PantallaReferencia> pantalla;  // null: the session's own display
    std::istringstream sinEntrada;  // the session's input between scripts: nothing
    std::ostringstream salida;      // what the session and the editor write during a call
    std::unique_ptr<tarvelo::Sesion> sesion;
    std::string mensaje;
    // Strings handed out by the present call; a deque, so that adding one moves no other.
    std::deque<std::string> textos;
    // Inside a call; set and cleared only under the registry's lock (see entra).
    bool ocupado = false;

    Fendrix::WrapDibujoCAD& fachada() { return sesion->fachada(); }
    cad::Dibujo& dibujo() { return *sesion->fachada().mDibujo; }
    // Keeps `s` (made valid UTF-8) until the next call and gives its characters.
    const char* guarda(std::string s);
};

namespace tarvelo_c
{

// Handles are numbers handed out once, never addresses: a freed handle, one of the other
// kind or any other pointer finds nothing, and nothing is ever read through it.
tv_dibujo* registra(std::unique_ptr<tv_dibujo> d);
tv_pantalla* registra(std::unique_ptr<tv_pantalla> p);
// The display behind a handle, or null.
tv_pantalla* pantalla(const tv_pantalla* h);
// The drawing behind a handle, for its message only: it may be inside a call.
tv_dibujo* dibujoDe(const tv_dibujo* h);
// Takes the handle out of use and gives its object to be destroyed; null with the reason in
// `e` for a handle that is not live or a drawing inside a call.
std::unique_ptr<tv_dibujo> retira(const tv_dibujo* h, tv_estado& e);
std::unique_ptr<tv_pantalla> retira(const tv_pantalla* h);
// Marks the drawing inside a call and gives it; null, with the reason in `e`, for a handle that
// is not live or a drawing already inside one. `sale` ends the call.
tv_dibujo* entra(const tv_dibujo* h, tv_estado& e) noexcept;
void sale(tv_dibujo* d) noexcept;

// Records a failure: on the drawing when there is one, and as the thread's last message.
tv_estado falla(tv_dibujo* d, tv_estado e, const std::string& texto);
// The same where memory may be short: a failure to record it is swallowed.
tv_estado fallaSin(tv_dibujo* d, tv_estado e, const char* texto, const char* detalle) noexcept;
// `s` with every byte that does not belong to a UTF-8 sequence replaced by U+FFFD.
std::string utf8Saneado(std::string s);

// What the kernel said during the call (the editor's refusals reach the session's output),
// for a message; `porDefecto` when it said nothing.
std::string loDicho(tv_dibujo& d, const char* porDefecto);

// Runs `f(d)` for a live, idle drawing: strings of the previous call released, the message
// cleared, and whatever the kernel raises turned into TV_ERROR_INTERNO. Nothing escapes.
template <typename F>
tv_estado enDibujo(const tv_dibujo* h, F&& f) noexcept
{
    tv_estado e = TV_OK;
    tv_dibujo* d = entra(h, e);
    if (d == nullptr)
    {
        return e;
    }
    struct Fin
    {
        tv_dibujo* d;
        ~Fin() { sale(d); }
    } fin{d};
    try
    {
        d->textos.clear();
        d->mensaje.clear();
        d->salida.str("");
        d->salida.clear();
        return f(*d);
    }
    catch (const std::exception& ex)
    {
        return fallaSin(d, TV_ERROR_INTERNO, "error interno: ", ex.what());
    }
    catch (...)
    {
        return fallaSin(d, TV_ERROR_INTERNO, "error interno", "");
    }
}

// Argument checks; each records its failure and gives false.
bool texto(tv_dibujo& d, const char* s, const char* que, std::string& valor);
bool salidaNoNula(tv_dibujo& d, const void* p);
bool finitos(tv_dibujo& d, const double* v, size_t n);
// An entity of the drawing by handle, or null after recording TV_ERROR_ENTIDAD.
cad::Entidad* entidad(tv_dibujo& d, int64_t h);
// Copies `n` elements into the caller's array of `capacidad`, telling the count.
template <typename T>
tv_estado copia(tv_dibujo& d, const T* datos, size_t n, T* destino, size_t capacidad,
                size_t* cuenta)
{
    if (cuenta == nullptr)
    {
        return falla(&d, TV_ERROR_ARGUMENTO, "falta el puntero de la cuenta");
    }
    if (capacidad < n)
    {
        *cuenta = n;
        return falla(&d, TV_ERROR_LONGITUD,
                     "el vector de salida tiene sitio para " + std::to_string(capacidad) +
                         " elementos y hacen falta " + std::to_string(n));
    }
    if (n > 0 && destino == nullptr)
    {
        return falla(&d, TV_ERROR_ARGUMENTO, "falta el vector de salida");
    }
    for (size_t i = 0; i < n; ++i)
    {
        destino[i] = datos[i];
    }
    *cuenta = n;
    return TV_OK;
}

}  // namespace tarvelo_c
