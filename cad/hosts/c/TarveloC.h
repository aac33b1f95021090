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
    bool ocupado = false;

    Fendrix::WrapDibujoCAD& fachada() { return sesion->fachada(); }
    cad::Dibujo& dibujo() { return *sesion->fachada().mDibujo; }
    // Keeps `s` until the next call and gives its characters.
    const char* guarda(std::string s)
    {
        textos.push_back(std::move(s));
        return textos.back().c_str();
    }
};

namespace tarvelo_c
{

// The registries of live handles, one per kind: a pointer is dereferenced only after it was
// found in its kind's, so that a display passed as a drawing is refused too.
void registra(const tv_dibujo* h);
void registra(const tv_pantalla* h);
void olvida(const tv_dibujo* h);
void olvida(const tv_pantalla* h);
bool vivo(const tv_dibujo* h);
bool vivo(const tv_pantalla* h);

// Records a failure: on the drawing when there is one, and as the thread's last message.
tv_estado falla(tv_dibujo* d, tv_estado e, const std::string& texto);

// What the kernel said during the call (the editor's refusals reach the session's output),
// for a message; `porDefecto` when it said nothing.
std::string loDicho(tv_dibujo& d, const char* porDefecto);

// Runs `f(d)` for a live, idle drawing: strings of the previous call released, the message
// cleared, and whatever the kernel raises turned into TV_ERROR_INTERNO.
template <typename F>
tv_estado enDibujo(tv_dibujo* d, F&& f)
{
    if (!vivo(d))
    {
        return falla(nullptr, TV_ERROR_MANEJADOR, "el manejador no es un dibujo abierto");
    }
    if (d->ocupado)
    {
        return falla(d, TV_ERROR_OCUPADO,
                     "el dibujo está dentro de otra llamada (una llamada desde su propio aviso)");
    }
    d->ocupado = true;
    d->textos.clear();
    d->mensaje.clear();
    d->salida.str("");
    d->salida.clear();
    tv_estado e = TV_ERROR_INTERNO;
    try
    {
        e = f(*d);
    }
    catch (const std::exception& ex)
    {
        e = falla(d, TV_ERROR_INTERNO, std::string("error interno: ") + ex.what());
    }
    catch (...)
    {
        e = falla(d, TV_ERROR_INTERNO, "error interno");
    }
    d->ocupado = false;
    return e;
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
    *cuenta = n;
    if (capacidad < n)
    {
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
    return TV_OK;
}

}  // namespace tarvelo_c
