// Process-wide display settings: element colours, pick window size and point limits.
#pragma once

#include <cstdint>
#include <mutex>

#include "base/Color.h"

namespace cad
{

// One object for the whole process, shared by every drawing and never saved with a document.
// Every read and write takes the object's lock, so drawings painted on separate threads may
// read it while another thread changes it; a paint that overlaps a change may show either
// value of it.
class Configuracion
{
public:
    // The enumerations have a fixed underlying type so that any integer a host passes is a
    // valid value, and the range checks below are well defined.

    // Elements drawn with a configurable colour. kNumeroColores counts them.
    enum color_elemento : int32_t
    {
        kPuntosCalientes = 0,
        kAristasCalientes = 1,
        kCarasCalientes = 2,
        kVectoresCalientes = 3,
        kAzimutsCalientes = 4,
        kSeleccionado = 5,
        kCursor = 6,
        kLineaElastica = 7,
        kFondo = 8,
        kSeleccionNube = 9,
        kMarcaReferencia = 10,
        kNumeroColores = 11
    };

    enum valor_elemento : int32_t
    {
        kVentanaReferencia = 0,     // side in pixels of the pick window
        kNumeroPuntosVisibles = 1,  // most points drawn for one point group
        kNumeroValores = 2
    };

    // Held for the host; nothing in the library reads it.
    enum valor_flotante : int32_t
    {
        kFactorFlotante = 0,
        kNumeroFlotantes = 1
    };

    // The one object, built with its defaults on first use; safe to call first from any thread.
    static Configuracion& instancia();

    Configuracion(const Configuracion&) = delete;
    Configuracion& operator=(const Configuracion&) = delete;

    // A copy of the element's colour. An element outside the table gives Color().
    Color color(color_elemento elemento) const;
    // Copies index and bytes; the id and any unknown bytes of `c` stay behind. An element
    // outside the table is ignored.
    void setColor(color_elemento elemento, const Color& c);

    // 0 for an element outside the table.
    int valor(valor_elemento elemento) const;
    // Ignored for an element outside the table.
    void setValor(valor_elemento elemento, int v);

    // 0.0 for an element outside the table.
    double valorFlotante(valor_flotante elemento) const;
    // Ignored for an element outside the table.
    void setValorFlotante(valor_flotante elemento, double v);

    // Puts every table back to its built-in defaults.
    void restableceDefectos();

private:
    Configuracion();

    mutable std::mutex mCerrojo;
    Color mColores[kNumeroColores];
    int mValores[kNumeroValores];
    double mFlotantes[kNumeroFlotantes];
};

}  // namespace cad
